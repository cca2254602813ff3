// Tone mapping against plain arithmetic, one sample at a time.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "kipcc.h"
#include "support/targets.h"

namespace kip {
namespace {

constexpr Kip8u kUnwritten = 0xA5;
constexpr float kInfinity = std::numeric_limits<float>::infinity(), kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kSmallestNormal = std::numeric_limits<float>::min();

using ToneMap = KipStatus(const Kip32f*, int, Kip8u*, int, KipiSize);

struct Plane {
  int width, height;
  std::vector<float> samples;

  float at(int x, int y) const { return samples[static_cast<size_t>(y) * width + x]; }
};

struct Result {
  KipStatus status;
  std::vector<Kip8u> bytes;

  bool operator==(const Result&) const = default;
};

Result map(ToneMap* function, const Plane& plane) {
  Result result = {kipStatusOk, std::vector<Kip8u>(plane.samples.size(), kUnwritten)};
  result.status = function(plane.samples.data(), plane.width * static_cast<int>(sizeof(float)), result.bytes.data(),
                           plane.width, {plane.width, plane.height});
  return result;
}

std::vector<Kip8u> mapRow(ToneMap* function, std::vector<float> row) {
  return map(function, Plane{static_cast<int>(row.size()), 1, row}).bytes;
}

TEST(ToneMapLinear, MakesTheMaximumWhiteAndWrapsAround) {
  const auto linear = kipiToneMapLinear_32f8u_C1R;
  EXPECT_EQ(mapRow(linear, {1, 2, 0, 0.5f}), (std::vector<Kip8u>{127, 255, 0, 63}));
  // A maximum of 255 scales by 1.
  EXPECT_EQ(mapRow(linear, {255, -1.5f, -255.9f, -256, -257, -1e9f}), (std::vector<Kip8u>{255, 255, 1, 0, 255, 0}));
  EXPECT_EQ(mapRow(linear, {255, -1e30f, -kInfinity, kNaN}), (std::vector<Kip8u>{255, 0, 0, 0}));
  EXPECT_EQ(mapRow(linear, {kInfinity, 5, -5}), (std::vector<Kip8u>{0, 0, 0}));
  // The scale itself overflows.
  EXPECT_EQ(mapRow(linear, {1.5e-38f, 1e-40f, 0, -1e-40f}), (std::vector<Kip8u>{255, 255, 0, 0}));
}

TEST(ToneMapMean, MakesTwiceTheMeanWhiteAndClamps) {
  const auto mean = kipiToneMapMean_32f8u_C1R;
  EXPECT_EQ(mapRow(mean, {0.5f, 1, 1.5f, -1}), (std::vector<Kip8u>{127, 255, 255, 0}));
  EXPECT_EQ(mapRow(mean, {1e30f, -1e30f, 1, 1}), (std::vector<Kip8u>{255, 0, 255, 255}));
  EXPECT_EQ(mapRow(mean, {kInfinity, 1}), (std::vector<Kip8u>{0, 0}));
  // A mean that is not a number is not above zero either.
  EXPECT_EQ(mapRow(mean, {kNaN, 1, kInfinity}), (std::vector<Kip8u>{0, 0, 0}));
}

/// Rows that cancel except for what double precision could not hold.
TEST(ToneMapMean, AddsRowsInExtendedPrecision) {
  const float large = 0x1p60f;
  const Plane plane = {1, 3, {large, 1, -large}};
  EXPECT_EQ(map(kipiToneMapMean_32f8u_C1R, plane).bytes, (std::vector<Kip8u>{255, 255, 0}));
}

/// Below zero nothing is written; up to the smallest normal number everything is black. Only then is the destination
/// looked at.
TEST(ToneMap, KnowsDarkness) {
  for (ToneMap* function : {kipiToneMapLinear_32f8u_C1R, kipiToneMapMean_32f8u_C1R}) {
    const float darkest = function == kipiToneMapLinear_32f8u_C1R ? kSmallestNormal : kSmallestNormal / 2;
    const std::vector<Kip8u> unwritten(3, kUnwritten), black(3, 0);
    EXPECT_EQ(map(function, Plane{3, 1, {-0.5f, -1, -2}}), (Result{kipStatusNoOperation, unwritten}));
    for (const float dark : {0.0f, -0.0f, darkest}) {
      EXPECT_EQ(map(function, Plane{3, 1, {dark, dark, dark}}), (Result{kipStatusOk, black}));
    }
    const float lightest = 4 * darkest, negative[] = {-1}, zero[] = {0};
    EXPECT_EQ(mapRow(function, {lightest, lightest}), std::vector<Kip8u>(2, 255));
    EXPECT_EQ(function(negative, 4, nullptr, 1, {1, 1}), kipStatusNoOperation);
    EXPECT_EQ(function(zero, 4, nullptr, 1, {1, 1}), kipStatusNullPointer);
  }
  EXPECT_EQ(map(kipiToneMapLinear_32f8u_C1R, Plane{1, 1, {kNaN}}).status, kipStatusNoOperation);
}

float maximum(const Plane& plane) {
  float most = -kInfinity;
  for (const float v : plane.samples) most = v > most ? v : most;
  return most;
}

double mean(const Plane& plane) {
  long double sum = 0;
  for (int y = 0; y < plane.height; ++y) {
    float partial[16] = {}, lane[4];
    for (int x = 0; x < plane.width; ++x) partial[x % 16] += plane.at(x, y);
    for (int i = 0; i < 4; ++i) lane[i] = (partial[i] + partial[4 + i]) + (partial[8 + i] + partial[12 + i]);
    sum += (lane[0] + lane[1]) + (lane[2] + lane[3]);
  }
  return static_cast<double>(sum) / (double(plane.width) * plane.height);
}

TEST(ToneMap, IsPlainArithmeticOnEveryTarget) {
  std::mt19937 random(3);
  std::vector<Target> targets = vectorTargets();
  targets.push_back(fallbackTarget());
  for (int width = 1; width < 200; width += 1 + width / 20) {
    Plane plane = {width, 5, {}};
    const float exposure = std::ldexp(1.0f, static_cast<int>(random() % 60) - 30);
    for (int i = 0; i < width * 5; ++i) {
      plane.samples.push_back(exposure * (static_cast<float>(random() % 100000) / 60000 - 0.5f));
    }
    plane.samples[0] = exposure;
    const float linear = 255.0f / maximum(plane), centred = static_cast<float>(255 / (2 * mean(plane)));
    for (const Target& target : targets) {
      target.select();
      const Result low = map(kipiToneMapLinear_32f8u_C1R, plane), clamped = map(kipiToneMapMean_32f8u_C1R, plane);
      for (size_t i = 0; i < plane.samples.size(); ++i) {
        const float v = plane.samples[i];
        ASSERT_EQ(int{low.bytes[i]}, static_cast<int>(v * linear) & 255) << target.name() << ", width " << width;
        ASSERT_EQ(int{clamped.bytes[i]},
                  centred > 0 ? static_cast<int>(std::fmin(std::fmax(v * centred, 0), 255)) : int{kUnwritten})
            << target.name() << ", width " << width;
      }
    }
  }
  bestTarget().select();
}

}  // namespace
}  // namespace kip
