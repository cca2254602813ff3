// Every pair of formats against real numbers, in odd sizes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "reference.h"

namespace kip::test {
namespace {

bool isYcc(const KipFormatInfo& info) { return info.family == kipFamilyYCbCr; }

KipPicture makePicture(const KipFormatInfo& info, int width, int height, KipMatrix matrix, KipRange range,
                       KipChromaSite site) {
  const bool colours = isYcc(info) || info.family == kipFamilyGray;
  return {
      info.format, width, height, colours ? matrix : kipMatrixUnspecified, isYcc(info) ? range : kipRangeUnspecified,
      site};
}

/// By how many steps a result may miss the formula before saturation.
double boundOf(const KipFormatInfo& from, const KipFormatInfo& to, int channel) {
  if (to.isFloat) return 4e-7;
  if (to.bits[channel] <= 8) return 0.53;
  return from.bits[0] >= 16 && to.bits[channel] == 16 ? 0.52 : 0.51;
}

/// The largest distance from real numbers beyond what is allowed; not above 0 if all is well.
double worstExcess(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options, uint32_t seed) {
  const KipFormatInfo &source = *kipFormatInfo(from.format), &result = *kipFormatInfo(to.format);
  Memory in(from), out(to);
  in.fillRandom(seed);
  KipPlan* plan;
  const KipStatus status = kipPlanMake(&from, &to, &options, &plan);
  EXPECT_EQ(status, kipStatusOk) << kipStatusText(status);
  if (status) return 1;
  EXPECT_EQ(kipPlanRun(plan, &in.planes, &out.planes), kipStatusOk);
  kipPlanFree(plan);
  EXPECT_TRUE(out.gapsAreWhole());
  const Samples expected = convertReal(from, readSamples(from, in.planes), to, options.chroma);
  const Samples made = readSamples(to, out.planes);
  double worst = -1;
  for (int c = 0; c < 4; ++c) {
    const auto &want = expected.channel[c].at, &have = made.channel[c].at;
    EXPECT_EQ(want.size(), have.size());
    for (size_t i = 0; i < std::min(want.size(), have.size()); ++i) {
      const double most = result.isFloat ? INFINITY : std::exp2(result.bits[c]) - 1;
      const double wanted = result.isFloat ? want[i] : std::clamp(want[i], 0.0, most);
      worst = std::max(worst, std::abs(have[i] - wanted) - boundOf(source, result, c));
    }
  }
  return worst;
}

/// From one format to all others.
class Pairs : public testing::TestWithParam<int> {};

TEST_P(Pairs, AreTheFormulaRounded) {
  const KipFormatInfo& from = *kipFormatInfo(static_cast<KipFormat>(GetParam()));
  struct Case {
    int width, height;
    KipMatrix matrices[2];
    KipRange ranges[2];
    KipChromaSite sites[2];
    KipChromaFilter filter;
  };
  constexpr auto kLeft = kipSiteLeft, kCenter = kipSiteCenter, kTopLeft = kipSiteTopLeft;
  constexpr Case kCases[] = {
      {1, 1, {kipMatrixBT601, kipMatrixBT709}, {kipRangeFull, kipRangeLimited}, {kLeft, kLeft}, kipChromaLinear},
      {75, 7, {kipMatrixBT709, kipMatrixBT709}, {kipRangeLimited, kipRangeLimited}, {kLeft, kCenter}, kipChromaLinear},
      {6, 9, {kipMatrixBT2020, kipMatrixBT601}, {kipRangeLimited, kipRangeFull}, {kTopLeft, kLeft}, kipChromaLinear},
      {141,
       6,
       {kipMatrixYCgCo, kipMatrixYCgCo},
       {kipRangeFull, kipRangeLimited},
       {kCenter, kTopLeft},
       kipChromaNearest},
      {34, 5, {kipMatrixBT601, kipMatrixBT2020}, {kipRangeFull, kipRangeFull}, {kCenter, kCenter}, kipChromaLinear},
  };
  for (int f = 1; const KipFormatInfo* to = kipFormatInfo(static_cast<KipFormat>(f)); ++f) {
    if (to->sourceOnly) continue;
    for (const Case& c : kCases) {
      const KipPicture source = makePicture(from, c.width, c.height, c.matrices[0], c.ranges[0], c.sites[0]);
      const KipPicture result = makePicture(*to, c.width, c.height, c.matrices[1], c.ranges[1], c.sites[1]);
      KipPlanOptions options = {};
      options.size = sizeof options, options.chroma = c.filter;
      EXPECT_LE(worstExcess(source, result, options, f), 0) << from.name << " to " << to->name << ", " << c.width;
    }
  }
}

std::vector<int> convertible() {
  std::vector<int> formats;
  for (int f = 1; const KipFormatInfo* info = kipFormatInfo(static_cast<KipFormat>(f)); ++f) {
    if (info->family != kipFamilyBayer) formats.push_back(f);
  }
  return formats;
}
INSTANTIATE_TEST_SUITE_P(Convert, Pairs, testing::ValuesIn(convertible()), [](const auto& info) {
  return std::string(kipFormatInfo(static_cast<KipFormat>(info.param))->name);
});

}  // namespace
}  // namespace kip::test
