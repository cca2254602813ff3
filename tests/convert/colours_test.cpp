// All 2^24 colours through the matrices, both ways.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "kipconvert.h"

namespace kip::test {
namespace {

struct Weights {
  KipMatrix matrix;
  double r, b;
  const char* name;
};
constexpr Weights kMatrices[] = {{kipMatrixBT601, 0.299, 0.114, "BT601"},
                                 {kipMatrixBT709, 0.2126, 0.0722, "BT709"},
                                 {kipMatrixBT2020, 0.2627, 0.0593, "BT2020"}};

struct Case {
  Weights weights;
  KipRange range;
};

class Colours : public testing::TestWithParam<Case> {
 protected:
  using Triple = std::array<double, 3>;
  static constexpr int kSide = 256;

  /// 256 x 256 triples whose first channel is given: RGB, interleaved or in planes, or YCbCr in planes.
  class Square {
   public:
    explicit Square(KipFormat format) : format_(format), memory_(3 * kSize) {}
    uint8_t& at(int channel, int i) {
      return format_ == kipFormatRGB24 ? memory_[3 * i + channel] : memory_[channel * kSize + i];
    }
    KipPlanes planes() {
      if (format_ == kipFormatRGB24) return {{memory_.data()}, {3 * kSide}};
      constexpr std::array<int, 3> kGbr = {1, 2, 0}, kYcc = {0, 1, 2};
      KipPlanes p = {};
      for (int i = 0; i < 3; ++i) {
        p.plane[i] = memory_.data() + (format_ == kipFormatGBRP ? kGbr : kYcc)[i] * kSize, p.step[i] = kSide;
      }
      return p;
    }

   private:
    static constexpr int kSize = kSide * kSide;
    KipFormat format_;
    std::vector<uint8_t> memory_;
  };

  double lumaScale() const { return GetParam().range == kipRangeFull ? 255 : 219; }
  double chromaScale() const { return GetParam().range == kipRangeFull ? 255 : 224; }
  double lumaZero() const { return GetParam().range == kipRangeFull ? 0 : 16; }

  Triple encode(const Triple& rgb) const {
    const auto& [matrix, kr, kb, name] = GetParam().weights;
    const double r = rgb[0] / 255, g = rgb[1] / 255, b = rgb[2] / 255, y = kr * r + (1 - kr - kb) * g + kb * b;
    return {y * lumaScale() + lumaZero(), (b - y) / (2 - 2 * kb) * chromaScale() + 128,
            (r - y) / (2 - 2 * kr) * chromaScale() + 128};
  }
  Triple decode(const Triple& ycc) const {
    const auto& [matrix, kr, kb, name] = GetParam().weights;
    const double y = (ycc[0] - lumaZero()) / lumaScale(), cb = (ycc[1] - 128) / chromaScale(),
                 cr = (ycc[2] - 128) / chromaScale();
    const double r = y + (2 - 2 * kr) * cr, b = y + (2 - 2 * kb) * cb;
    return {r * 255, (y - kr * r - kb * b) / (1 - kr - kb) * 255, b * 255};
  }

  /// The largest distance of any colour from `formula`.
  template <class Formula>
  double largestError(KipFormat from, KipFormat to, const Formula& formula) const {
    const auto picture = [](KipFormat format) -> KipPicture {
      const bool ycc = format == kipFormatYUV444P;
      return {format,
              kSide,
              kSide,
              ycc ? GetParam().weights.matrix : kipMatrixIdentity,
              ycc ? GetParam().range : kipRangeFull,
              kipSiteUnspecified};
    };
    const KipPicture source = picture(from), result = picture(to);
    KipPlan* plan;
    EXPECT_EQ(kipPlanMake(&source, &result, nullptr, &plan), kipStatusOk);
    Square in(from), out(to);
    double largest = 0;
    for (int first = 0; first < kSide; ++first) {
      for (int i = 0; i < kSide * kSide; ++i) in.at(0, i) = first, in.at(1, i) = i / kSide, in.at(2, i) = i % kSide;
      const KipPlanes src = in.planes(), dst = out.planes();
      EXPECT_EQ(kipPlanRun(plan, &src, &dst), kipStatusOk);
      for (int i = 0; i < kSide * kSide; ++i) {
        const Triple exact = formula(Triple{double(first), double(i / kSide), double(i % kSide)});
        for (int c = 0; c < 3; ++c) {
          largest = std::max(largest, std::abs(out.at(c, i) - std::clamp(exact[c], 0.0, 255.0)));
        }
      }
    }
    kipPlanFree(plan);
    return largest;
  }
};

/// By way of planes, and straight from and to interleaved samples, which has kernels of its own.
TEST_P(Colours, AreWithin53HundredthsOfAStep) {
  for (const KipFormat rgb : {kipFormatGBRP, kipFormatRGB24}) {
    EXPECT_LE(largestError(rgb, kipFormatYUV444P, [this](const Triple& v) { return encode(v); }), 0.53);
    EXPECT_LE(largestError(kipFormatYUV444P, rgb, [this](const Triple& v) { return decode(v); }), 0.53);
  }
}

/// Greys have no colour, and black and white are what they are.
TEST_P(Colours, GreysStayGrey) {
  const KipPicture rgb = {kipFormatRGB24, 256, 1, kipMatrixIdentity, kipRangeFull, kipSiteUnspecified};
  const KipPicture ycc = {kipFormatYUV444P, 256, 1, GetParam().weights.matrix, GetParam().range, kipSiteUnspecified};
  std::vector<uint8_t> greys(3 * 256), planes(3 * 256), back(3 * 256);
  for (int i = 0; i < 3 * 256; ++i) greys[i] = i / 3;
  const KipPlanes in = {{greys.data()}, {768}}, out = {{back.data()}, {768}};
  const KipPlanes between = {{planes.data(), planes.data() + 256, planes.data() + 512}, {256, 256, 256}};
  EXPECT_EQ(kipConvertPicture(&rgb, &in, &ycc, &between), kipStatusOk);
  EXPECT_EQ(std::count(planes.begin() + 256, planes.end(), 128), 512);
  EXPECT_EQ(planes[0], lumaZero());
  EXPECT_EQ(planes[255], lumaZero() + lumaScale());
  EXPECT_EQ(kipConvertPicture(&ycc, &between, &rgb, &out), kipStatusOk);
  for (int i = 0; i < 256; ++i) {
    EXPECT_EQ(back[3 * i], back[3 * i + 1]) << i;
    EXPECT_EQ(back[3 * i], back[3 * i + 2]) << i;
    const bool exact = GetParam().range == kipRangeFull;
    EXPECT_TRUE(!exact || back[3 * i] == i) << i;
  }
}

std::vector<Case> allCases() {
  std::vector<Case> cases;
  for (const Weights& weights : kMatrices) {
    for (const KipRange range : {kipRangeLimited, kipRangeFull}) cases.push_back({weights, range});
  }
  return cases;
}
INSTANTIATE_TEST_SUITE_P(Convert, Colours, testing::ValuesIn(allCases()), [](const auto& info) {
  return std::string(info.param.weights.name) + (info.param.range == kipRangeFull ? "Full" : "Limited");
});

}  // namespace
}  // namespace kip::test
