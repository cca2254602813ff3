// Plans: what they refuse, and that results depend on nothing but pictures and options.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "../support/float_state.h"
#include "../support/targets.h"
#include "kipcore.h"
#include "reference.h"

namespace kip::test {
namespace {

using Bytes = std::vector<uint8_t>;

KipPicture picture(KipFormat format, int width, int height, KipMatrix matrix = kipMatrixUnspecified,
                   KipRange range = kipRangeUnspecified, KipChromaSite site = kipSiteUnspecified) {
  return {format, width, height, matrix, range, site};
}

KipPlanOptions defaults() {
  KipPlanOptions options = {};
  options.size = sizeof options, options.threads = 1;
  return options;
}

KipPlan* make(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options) {
  KipPlan* plan = nullptr;
  EXPECT_EQ(kipPlanMake(&from, &to, &options, &plan), kipStatusOk);
  return plan;
}

/// A picture of any format with all that it has to say.
KipPicture saying(int format, int width, int height, KipRange range, KipChromaSite site) {
  const KipFormatInfo& info = *kipFormatInfo(static_cast<KipFormat>(format));
  const bool ycc = info.family == kipFamilyYCbCr, gray = info.family == kipFamilyGray;
  return picture(info.format, width, height, ycc || gray ? kipMatrixBT709 : kipMatrixIdentity,
                 ycc ? range : kipRangeUnspecified, site);
}

TEST(Formats, AreKnownByTheirNames) {
  for (int f = 1; const KipFormatInfo* info = kipFormatInfo(static_cast<KipFormat>(f)); ++f) {
    EXPECT_EQ(kipFormatByName(info->name), f);
    const std::string others = info->otherNames;
    for (size_t at = 0; at < others.size();) {
      const size_t end = std::min(others.find(' ', at), others.size());
      EXPECT_EQ(kipFormatByName(others.substr(at, end - at).c_str()), f) << others.substr(at, end - at);
      at = end + 1;
    }
  }
  EXPECT_EQ(kipFormatByName("NV12"), kipFormatNV12);
  EXPECT_EQ(kipFormatByName("Y16 "), kipFormatGray16);
  EXPECT_EQ(kipFormatByName("P010"), kipFormatP010);
  for (const char* name : {"", "nv", "nv12x", "le"}) EXPECT_EQ(kipFormatByName(name), kipFormatUnknown) << name;
  EXPECT_EQ(kipFormatByName(nullptr), kipFormatUnknown);
}

TEST(Formats, LayOutPictures) {
  const auto layoutOf = [](KipPicture p, size_t alignment, KipStatus expected = kipStatusOk) {
    KipLayout layout = {};
    EXPECT_EQ(kipPictureLayout(&p, alignment, &layout), expected);
    return layout;
  };
  const KipLayout i420 = layoutOf(picture(kipFormatYUV420P, 5, 3), 4);
  EXPECT_EQ(i420.step[0], 8);
  EXPECT_EQ(i420.step[2], 4);
  EXPECT_EQ(i420.offset[2], 32u);
  EXPECT_EQ(i420.bytes, 40u);
  EXPECT_EQ(layoutOf(picture(kipFormatV210, 7, 1), 1).bytes, 32u);
  EXPECT_EQ(layoutOf(picture(kipFormatBayerGBRG10P, 5, 2), 1).bytes, 20u);
  layoutOf(picture(kipFormatRGB24, 0, 3), 1, kipStatusBadSize);
  layoutOf(picture(kipFormatRGBF32, 1 << 28, 1), 1, kipStatusBadSize);
  layoutOf(picture(kipFormatGray8, 1, 1), 3, kipStatusBadArgument);
  layoutOf(picture(static_cast<KipFormat>(0), 1, 1), 1, kipStatusUnknownFormat);
}

TEST(Plans, RefuseWhatTheyCannotKnow) {
  constexpr auto k709 = kipMatrixBT709;
  constexpr auto kLimited = kipRangeLimited;
  const KipPicture rgb = picture(kipFormatRGB24, 8, 8), nv12 = picture(kipFormatNV12, 8, 8, k709, kLimited);
  const auto refused = [](KipPicture from, KipPicture to, const KipPlanOptions* options = nullptr) {
    KipPlan* plan = reinterpret_cast<KipPlan*>(1);
    const KipStatus status = kipPlanMake(&from, &to, options, &plan);
    EXPECT_EQ(plan == nullptr, status != kipStatusOk);
    EXPECT_GT(std::strlen(kipStatusText(status)), 10u);
    EXPECT_STRNE(kipStatusText(status), kipStatusText(static_cast<KipStatus>(60)));
    if (status == kipStatusOk) kipPlanFree(plan);
    return status;
  };
  EXPECT_EQ(refused(nv12, rgb), kipStatusOk);
  EXPECT_EQ(refused(picture(static_cast<KipFormat>(99), 8, 8), rgb), kipStatusUnknownFormat);
  EXPECT_EQ(refused(rgb, picture(kipFormatBayerRGGB8, 8, 8)), kipStatusSourceOnly);
  EXPECT_EQ(refused(rgb, picture(kipFormatBGR24, 8, 9)), kipStatusSizesDiffer);
  EXPECT_EQ(refused(picture(kipFormatRGB24, 8, -1), rgb), kipStatusBadSize);
  EXPECT_EQ(refused(picture(kipFormatBayerRGGB8, 1, 8), picture(kipFormatRGB24, 1, 8)), kipStatusBadSize);
  // Matrices.
  EXPECT_EQ(refused(picture(kipFormatNV12, 8, 8, kipMatrixUnspecified, kLimited), rgb), kipStatusNeedsMatrix);
  EXPECT_EQ(refused(picture(kipFormatNV12, 8, 8, kipMatrixIdentity, kLimited), rgb), kipStatusNeedsMatrix);
  EXPECT_EQ(refused(picture(kipFormatNV12, 8, 8, static_cast<KipMatrix>(4), kLimited), rgb), kipStatusBadMatrix);
  EXPECT_EQ(refused(nv12, picture(kipFormatRGB24, 8, 8, k709)), kipStatusBadMatrix);
  EXPECT_EQ(refused(rgb, picture(kipFormatGray8, 8, 8)), kipStatusNeedsMatrix);
  EXPECT_EQ(refused(picture(kipFormatGray8, 8, 8), rgb), kipStatusOk);
  EXPECT_EQ(refused(nv12, picture(kipFormatYUV420P, 8, 8, kipMatrixUnspecified, kLimited)), kipStatusNeedsMatrix);
  EXPECT_EQ(refused(nv12, picture(kipFormatGray8, 8, 8)), kipStatusOk);
  // Ranges.
  EXPECT_EQ(refused(picture(kipFormatNV12, 8, 8, k709), rgb), kipStatusNeedsRange);
  EXPECT_EQ(refused(picture(kipFormatNV12, 8, 8, k709), picture(kipFormatYUV420P, 8, 8, k709)), kipStatusOk);
  EXPECT_EQ(refused(picture(kipFormatNV12, 8, 8), picture(kipFormatP010, 8, 8)), kipStatusNeedsRange);
  EXPECT_EQ(refused(picture(kipFormatNV12, 8, 8, k709, static_cast<KipRange>(3)), rgb), kipStatusBadRange);
  EXPECT_EQ(refused(picture(kipFormatRGBF32, 8, 8, kipMatrixIdentity, kLimited), rgb), kipStatusBadRange);
  EXPECT_EQ(refused(picture(kipFormatNV12, 8, 8, k709, kLimited, static_cast<KipChromaSite>(4)), rgb),
            kipStatusBadSite);
  // Options.
  KipPlanOptions options = defaults();
  options.dither = kipDitherFS;
  EXPECT_EQ(refused(nv12, rgb, &options), kipStatusDitherMethod);
  options = defaults(), options.threads = -1;
  EXPECT_EQ(refused(nv12, rgb, &options), kipStatusBadOptions);
  options = defaults(), options.size = 1;
  EXPECT_EQ(refused(nv12, rgb, &options), kipStatusBadOptions);
  options = defaults(), options.size = offsetof(KipPlanOptions, dither), options.dither = kipDitherFS;
  EXPECT_EQ(refused(nv12, rgb, &options), kipStatusOk) << "fields beyond the size are not looked at";
}

TEST(Plans, RefuseRowsAndPointers) {
  const KipPicture from = picture(kipFormatRGB24, 6, 5),
                   to = picture(kipFormatNV12, 6, 5, kipMatrixBT601, kipRangeFull);
  KipPlan* plan = make(from, to, defaults());
  EXPECT_EQ(kipPlanRowUnit(plan), 2);
  EXPECT_NE(std::string(kipPlanDescription(plan)).find("matrix"), std::string::npos);
  Memory in(from), out(to);
  const Bytes untouched = out.rows();
  std::vector<uint8_t> scratch(kipPlanScratchBytes(plan));
  const auto rows = [&](int first, int count, void* memory) {
    return kipPlanRunRows(plan, &in.planes, &out.planes, first, count, memory);
  };
  EXPECT_EQ(rows(0, 4, nullptr), kipStatusNullPointer);
  for (const auto& [first, count] : {std::pair{1, 2}, {0, 3}, {-2, 2}, {4, 2}, {0, -2}, {2, INT32_MAX}}) {
    EXPECT_EQ(rows(first, count, scratch.data()), kipStatusBadRows) << first << ", " << count;
  }
  KipPlanes missing = out.planes;
  missing.plane[1] = nullptr;
  EXPECT_EQ(kipPlanRun(plan, &in.planes, &missing), kipStatusNullPointer);
  EXPECT_EQ(kipPlanRun(plan, nullptr, &out.planes), kipStatusNullPointer);
  EXPECT_EQ(out.rows(), untouched);
  EXPECT_EQ(rows(4, 1, scratch.data()), kipStatusOk);
  kipPlanFree(plan);
  kipPlanFree(nullptr);
}

/// The bytes of a conversion by the portable kernels, in one go on one thread.
Bytes convertPlainly(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options, uint32_t seed) {
  fallbackTarget().select();
  Memory in(from), out(to);
  in.fillRandom(seed);
  KipPlan* plan = make(from, to, options);
  EXPECT_EQ(kipPlanRun(plan, &in.planes, &out.planes), kipStatusOk);
  kipPlanFree(plan);
  return out.rows();
}

/// On all targets, upside down, and in pieces.
void expectSameBytes(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options, uint32_t seed) {
  const Bytes expected = convertPlainly(from, to, options, seed);
  KipPlan* plan = make(from, to, options);
  Memory in(from, true), out(to, true);
  in.fillRandom(seed);
  for (const Target& target : vectorTargets()) {
    target.select();
    EXPECT_EQ(kipPlanRun(plan, &in.planes, &out.planes), kipStatusOk);
    EXPECT_EQ(out.rows(), expected) << target.name();
  }
  Memory pieces(to);
  Bytes scratch(kipPlanScratchBytes(plan));
  const int unit = kipPlanRowUnit(plan);
  for (int y = (to.height - 1) / unit * unit; y >= 0; y -= unit) {
    const int rows = std::min(unit, to.height - y);
    EXPECT_EQ(kipPlanRunRows(plan, &in.planes, &pieces.planes, y, rows, scratch.data()), kipStatusOk);
  }
  EXPECT_EQ(pieces.rows(), expected) << "row by row, from the last one";
  EXPECT_TRUE(pieces.gapsAreWhole());
  kipPlanFree(plan);
  bestTarget().select();
}

class SameBytes : public testing::TestWithParam<int> {};

TEST_P(SameBytes, OnEveryTargetInAnyPieces) {
  for (int f = 1; const KipFormatInfo* to = kipFormatInfo(static_cast<KipFormat>(f)); ++f) {
    if (to->sourceOnly) continue;
    SCOPED_TRACE(to->name);
    KipPlanOptions options = defaults();
    if (f % 2 == 0) options.dither = kipDitherBayer;
    const bool odd = f % 3 == 0;
    const auto range = odd ? kipRangeFull : kipRangeLimited;
    const int width = odd ? 131 : 197, height = odd ? 6 : 19;
    expectSameBytes(saying(GetParam(), width, height, range, kipSiteUnspecified),
                    saying(f, width, height, kipRangeLimited, odd ? kipSiteTopLeft : kipSiteLeft), options, f);
  }
}

std::vector<int> allFormats() {
  std::vector<int> formats;
  for (int f = 1; kipFormatInfo(static_cast<KipFormat>(f)); ++f) formats.push_back(f);
  return formats;
}
INSTANTIATE_TEST_SUITE_P(Convert, SameBytes, testing::ValuesIn(allFormats()), [](const auto& info) {
  return std::string(kipFormatInfo(static_cast<KipFormat>(info.param))->name);
});

TEST(Plans, GiveTheSameBytesOnSeveralThreads) {
  const KipPicture from = picture(kipFormatP010, 2050, 133, kipMatrixBT2020, kipRangeLimited);
  const KipPicture to = picture(kipFormatYUV420P, 2050, 133, kipMatrixBT709, kipRangeFull);
  KipPlanOptions options = defaults();
  const Bytes expected = convertPlainly(from, to, options, 1);
  bestTarget().select();
  Memory in(from), out(to);
  in.fillRandom(1);
  for (const int threads : {2, 3, 0}) {
    options.threads = threads;
    KipPlan* plan = make(from, to, options);
    EXPECT_EQ(kipPlanRun(plan, &in.planes, &out.planes), kipStatusOk);
    EXPECT_EQ(out.rows(), expected) << threads;
    kipPlanFree(plan);
  }
}

/// Worker threads are started by a call that rounds upwards. Later calls do not, nor does a forked process, which has
/// no workers and must not wait for them.
TEST(Plans, KeepNothingOfWhoeverStartedTheWorkers) {
  const KipPicture from = picture(kipFormatRGB24, 64, 64), to = picture(kipFormatRGBF32, 64, 64);
  KipPlanOptions options = defaults();
  const Bytes expected = convertPlainly(from, to, options, 1);
  Memory in(from), out(to);
  in.fillRandom(1);
  options.threads = 2;
  KipPlan* plan = make(from, to, options);
  {
    const UnusualFloatState state;
    EXPECT_EQ(kipPlanRun(plan, &in.planes, &out.planes), kipStatusOk);
    EXPECT_NE(out.rows(), expected);
  }
  const auto isAsExpected = [&] {
    return kipPlanRun(plan, &in.planes, &out.planes) == kipStatusOk && out.rows() == expected;
  };
  EXPECT_TRUE(isAsExpected());
  const pid_t child = fork();
  if (child == 0) {
    alarm(20);  // ends a child that waits for ever
    _exit(isAsExpected() ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  kipPlanFree(plan);
}

/// The planes of a picture without its first x columns, of which each sample has a byte.
KipPlanes withoutColumns(const KipPicture& picture, const KipPlanes& planes, int x) {
  KipPlanes rest = planes;
  for (int p = 0; p < 4 && planes.plane[p] != nullptr; ++p) {
    rest.plane[p] = static_cast<uint8_t*>(planes.plane[p]) + rowBytes(*kipFormatInfo(picture.format), p, x);
  }
  return rest;
}

/// Long rows are converted in segments. A picture without its first columns has them elsewhere, and the same results
/// but at its own left edge.
TEST(Plans, GiveTheSameBytesAcrossSegments) {
  constexpr int kWidth = 4100, kHeight = 5, kCut = 1000, kEdge = 4;
  constexpr KipFormat kPairs[][2] = {{kipFormatRGB24, kipFormatYUV420P}, {kipFormatBGRA, kipFormatNV12},
                                     {kipFormatRGB24, kipFormatYUV422P}, {kipFormatBGRA, kipFormatYUV444P},
                                     {kipFormatYUV420P, kipFormatRGB24}, {kipFormatNV12, kipFormatBGRA},
                                     {kipFormatYUV422P, kipFormatRGB24}, {kipFormatYUV444P, kipFormatBGRA}};
  for (const auto& pair : kPairs) {
    for (const KipChromaSite site : {kipSiteLeft, kipSiteCenter}) {
      const auto say = [&](KipFormat format, int width) {
        return saying(format, width, kHeight, kipRangeLimited, site);
      };
      const KipPicture from = say(pair[0], kWidth), to = say(pair[1], kWidth);
      Memory in(from), whole(to), part(to);
      in.fillRandom(1);
      KipPlan *ofWhole = make(from, to, defaults()),
              *ofPart = make(say(pair[0], kWidth - kCut), say(pair[1], kWidth - kCut), defaults());
      ASSERT_EQ(kipPlanRun(ofWhole, &in.planes, &whole.planes), kipStatusOk);
      const KipPlanes source = withoutColumns(from, in.planes, kCut), result = withoutColumns(to, part.planes, kCut);
      ASSERT_EQ(kipPlanRun(ofPart, &source, &result), kipStatusOk);
      kipPlanFree(ofWhole), kipPlanFree(ofPart);
      const KipFormatInfo& info = *kipFormatInfo(to.format);
      const KipPlanes expected = withoutColumns(to, whole.planes, kCut + kEdge),
                      found = withoutColumns(to, part.planes, kCut + kEdge);
      for (int p = 0; p < info.planes; ++p) {
        for (int y = 0; y < rowCount(info, p, kHeight); ++y) {
          const auto row = [&](const KipPlanes& planes) {
            return static_cast<const uint8_t*>(planes.plane[p]) + y * planes.step[p];
          };
          const size_t bytes = rowBytes(info, p, kWidth) - rowBytes(info, p, kCut + kEdge);
          ASSERT_EQ(std::memcmp(row(expected), row(found), bytes), 0) << info.name << " plane " << p << " row " << y;
        }
      }
    }
  }
}

TEST(Plans, DitherKeepsTheMean) {
  const KipPicture from = picture(kipFormatGray16, 64, 64), to = picture(kipFormatGray8, 64, 64);
  KipPlanOptions options = defaults();
  options.dither = kipDitherBayer;
  KipPlan* plan = make(from, to, options);
  std::vector<uint16_t> in(64 * 64, 100 * 257 + 64);  // 100.249
  Bytes out(64 * 64);
  const KipPlanes src = {{in.data()}, {128}}, dst = {{out.data()}, {64}};
  EXPECT_EQ(kipPlanRun(plan, &src, &dst), kipStatusOk);
  EXPECT_EQ(std::count(out.begin(), out.end(), 101), 64 * 64 / 4);
  EXPECT_EQ(std::count(out.begin(), out.end(), 100), 64 * 64 * 3 / 4);
  kipPlanFree(plan);
}

TEST(Plans, DemosaicAsTheirFunctions) {
  constexpr int kWidth = 37, kHeight = 41;
  const KipPicture from = picture(kipFormatBayerGRBG8, kWidth, kHeight), to = picture(kipFormatRGB24, kWidth, kHeight);
  Memory in(from);
  in.fillRandom(3);
  for (const KipDemosaic method : {kipDemosaicBilinear, kipDemosaicAHD}) {
    KipPlanOptions options = defaults();
    options.demosaic = method;
    Bytes expected(3 * kWidth * kHeight);
    const auto* first = static_cast<const Kip8u*>(in.planes.plane[0]);
    const int step = static_cast<int>(in.planes.step[0]);
    const KipiSize size = {kWidth, kHeight};
    const KipiRect all = {0, 0, kWidth, kHeight};
    if (method == kipDemosaicBilinear) {
      kipiCFAToRGB_8u_C1C3R(first, all, size, step, expected.data(), 3 * kWidth, kipiBayerGRBG);
    } else {
      kipiDemosaicAHD_8u_C1C3R(first, all, size, step, expected.data(), 3 * kWidth, kipiBayerGRBG, nullptr, 0);
    }
    KipPlan* plan = make(from, to, options);
    Memory out(to);
    EXPECT_EQ(kipPlanRun(plan, &in.planes, &out.planes), kipStatusOk);
    EXPECT_EQ(out.rows(), expected) << method;
    kipPlanFree(plan);
  }
}

/// Packed samples of a sensor give what the same samples give in 16 bits.
TEST(Plans, UnpackSensorSamples) {
  constexpr int kWidth = 24, kHeight = 50;
  for (const KipFormat packed : {kipFormatBayerBGGR10P, kipFormatBayerBGGR12P}) {
    const KipPicture from = picture(packed, kWidth, kHeight), wide = picture(kipFormatBayerBGGR16, kWidth, kHeight);
    const KipPicture to = picture(kipFormatRGB48, kWidth, kHeight);
    const int bits = kipFormatInfo(packed)->bits[0], group = bits == 10 ? 4 : 2;
    Memory in(from), same(wide), out(to), expected(to);
    in.fillRandom(5);
    for (int y = 0; y < kHeight; ++y) {
      const auto* row = static_cast<const uint8_t*>(in.planes.plane[0]) + y * in.planes.step[0];
      auto* to16 = static_cast<uint8_t*>(same.planes.plane[0]) + y * same.planes.step[0];
      for (int x = 0; x < kWidth; ++x) {
        const uint8_t* bytes = row + x / group * (group + 1);
        const int low = bytes[group] >> (bits - 8) * (x % group) & ((1 << (bits - 8)) - 1);
        to16[2 * x] = static_cast<uint8_t>(low << (16 - bits)), to16[2 * x + 1] = bytes[x % group];
      }
    }
    for (const KipDemosaic method : {kipDemosaicBilinear, kipDemosaicAHD}) {
      KipPlanOptions options = defaults();
      options.demosaic = method;
      KipPlan *plan = make(from, to, options), *plain = make(wide, to, options);
      EXPECT_EQ(kipPlanRun(plan, &in.planes, &out.planes), kipStatusOk);
      EXPECT_EQ(kipPlanRun(plain, &same.planes, &expected.planes), kipStatusOk);
      const Samples have = readSamples(to, out.planes), want = readSamples(to, expected.planes);
      const double white = (1 << bits) - 1, scale = 65535 / (white * (1 << (16 - bits)));
      for (size_t i = 0; i < have.channel[1].at.size(); ++i) {
        EXPECT_NEAR(have.channel[1].at[i], std::min(65535.0, want.channel[1].at[i] * scale), 0.51);
      }
      kipPlanFree(plan), kipPlanFree(plain);
    }
  }
}

}  // namespace
}  // namespace kip::test
