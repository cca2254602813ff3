// Gamma against the curve in double precision with the standard library's pow.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

#include "support/reference.h"
#include "support/targets.h"

namespace kip {
namespace {

double forward(double n) { return n < 0.018 ? 4.5 * n : 1.099 * std::pow(n, 0.45) - 0.099; }
double inverse(double n) { return n < 0.0812 ? n / 4.5 : std::pow((n + 0.099) / 1.099, 1 / 0.45); }

/// One float through the curve, in the promised steps.
float throughCurve(bool isForward, float v, float vMin, float vMax) {
  const double x = v - vMin, span = vMax - vMin, n = x * (1 / span);
  if (isForward) {
    if (n < 0.018) return static_cast<float>(vMin + 4.5 * x);
    return static_cast<float>((1.099 * std::pow(n, 0.45) - 0.099) * span + vMin);
  }
  if (n < 0.0812) return static_cast<float>(vMin + x * 0.2222222222222222);
  return static_cast<float>(std::pow((n + 0.099) * 0.9099181073703366, 2.2222222222222223) * span + vMin);
}

TEST(Gamma, OfBytesIsTheCurveRounded) {
  std::vector<Kip8u> all(3 * 256), coded(all.size()), linear(all.size()), back(all.size());
  for (size_t i = 0; i < all.size(); ++i) all[i] = static_cast<Kip8u>(i / 3);
  const KipiSize size = {256, 1};
  kipiGammaFwd_8u_C3R(all.data(), 768, coded.data(), 768, size);
  kipiGammaInv_8u_C3R(all.data(), 768, linear.data(), 768, size);
  for (int v = 0; v < 256; ++v) {
    ASSERT_EQ(coded[3 * v], std::nearbyint(255 * forward(v / 255.0))) << v;  // 4.5 and 13.5 go to even
    ASSERT_EQ(linear[3 * v], std::floor(255 * inverse(v / 255.0) + 0.5)) << v;
  }
  kipiGammaInv_8u_C3R(coded.data(), 768, back.data(), 768, size);
  for (int v = 0; v < 256; ++v) ASSERT_NEAR(back[3 * v], v, 1);
}

/// Also in a process whose first caller rounds otherwise.
TEST(Gamma, OfWordsIsTheFloatCurveTruncated) {
  std::vector<Kip16u> all(65536 * 3), result(all.size());
  for (size_t i = 0; i < all.size(); ++i) all[i] = static_cast<Kip16u>(i / 3);
  const int row = 65536 * 6;
  for (const bool isForward : {true, false}) {
    const auto function = isForward ? kipiGammaFwd_16u_C3R : kipiGammaInv_16u_C3R;
    std::fesetround(FE_UPWARD);
    const KipStatus status = function(all.data(), row, result.data(), row, {65536, 1});
    std::fesetround(FE_TONEAREST);
    ASSERT_EQ(status, kipStatusOk);
    for (int v = 0; v < 65536; ++v) {
      ASSERT_EQ(result[3 * v], static_cast<int>(throughCurve(isForward, static_cast<float>(v), 0, 65535))) << v;
    }
  }
}

TEST(Gamma, OfFloatsHasTheBytesOfPow) {
  constexpr int kWidth = 20011;
  constexpr float kInfinity = INFINITY;
  const float ranges[][2] = {{0, 1},      {0, 255},       {0, 1e-40f}, {-3, 1000}, {1e6f, 1e6f + 10},
                             {0, 1e-30f}, {-1e30f, 2e30f}};
  for (const auto& [vMin, vMax] : ranges) {
    std::mt19937 random(3);
    std::vector<float> values(3 * kWidth), result(values.size());
    for (float& v : values) v = (random() * 0x1p-32f * 1.2f - 0.1f) * (vMax - vMin) + vMin;
    for (size_t i = 0; i < values.size(); i += 97) values[i] *= 1e5f;  // far outside the range
    values[1] = vMin, values[2] = vMax, values[3] = kInfinity, values[4] = -kInfinity, values[5] = NAN;
    for (const bool isForward : {true, false}) {
      const auto function = isForward ? kipiGammaFwd_32f_C3R : kipiGammaInv_32f_C3R;
      const int row = 12 * kWidth;
      std::vector<float> expected;
      for (const float v : values) expected.push_back(throughCurve(isForward, v, vMin, vMax));
      for (const Target& target : vectorTargets()) {
        target.select();
        ASSERT_EQ(function(values.data(), row, result.data(), row, {kWidth, 1}, vMin, vMax), kipStatusOk);
        for (size_t i = 0; i < values.size(); ++i) {
          if (std::isnan(expected[i]) && std::isnan(result[i])) continue;
          ASSERT_EQ(std::memcmp(&result[i], &expected[i], sizeof(float)), 0)
              << target.name() << ": " << values[i] << " in " << vMin << ".." << vMax << ": " << result[i]
              << " instead of " << expected[i];
        }
      }
      bestTarget().select();
    }
  }
}

TEST(Gamma, IsTheSameInEveryLayout) {
  const KipiSize size = {70, 3};
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.parts.has("kipiGamma")) continue;
    ++functions;
    const Function& plain = *find(function.name.substr(0, function.name.rfind('_')) + "_C3R");
    Content source = Case(function, size, {}).source, pixels = untouched(plain, Side::kSource, size);
    const Samples from(function, function.input(), source);
    const Samples triples(plain, Side::kSource, pixels);
    const auto forSamples = [&](const auto& with) {
      for (int i = 0; i < 3 * size.width * size.height; ++i) with(i % 3, i / 3 % size.width, i / 3 / size.width);
    };
    forSamples([&](int c, int x, int y) { triples.put(c, x, y, from.value(c, x, y)); });
    Content result = convert(function, size, source), expected = convert(plain, size, pixels);
    const Samples is(function, Side::kDestination, result), should(plain, Side::kDestination, expected);
    forSamples([&](int c, int x, int y) { EXPECT_EQ(is.value(c, x, y), should.value(c, x, y)) << function.name; });
    if (HasFailure()) return;
  }
  EXPECT_EQ(functions, 36);
}

TEST(Gamma, LooksAtTheRangeBeforeThePointers) {
  EXPECT_EQ(kipiGammaFwd_32f_C3R(nullptr, 0, nullptr, 0, {0, 0}, 1, 1), kipStatusGammaRange);
  EXPECT_EQ(kipiGammaInv_32f_IP3R(nullptr, 0, {0, 0}, 2, 1), kipStatusGammaRange);
  EXPECT_EQ(kipiGammaFwd_32f_C3R(nullptr, 0, nullptr, 0, {0, 0}, 0, 1), kipStatusNullPointer);
}

}  // namespace
}  // namespace kip
