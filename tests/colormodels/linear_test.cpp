// Grey and colour twist against plain arithmetic in the order that they promise.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <limits>

#include "support/reference.h"

namespace kip {
namespace {

constexpr KipiSize kSize = {67, 3};  // not whole vectors
constexpr Kip32f kIdentity[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};

/// The least and the largest sample of a type.
struct Range {
  float least, most;
};
Range rangeOf(Sample sample) {
  switch (sample) {
    case Sample::k8u:
      return {0, 255};
    case Sample::k8s:
      return {-128, 127};
    case Sample::k16u:
      return {0, 65535};
    case Sample::k16s:
      return {-32768, 32767};
    default:
      return {-std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity()};
  }
}

using Triple = std::array<float, 3>;
Triple tripleAt(const Samples& samples, int x, int y) {
  return {float(samples.value(0, x, y)), float(samples.value(1, x, y)), float(samples.value(2, x, y))};
}

/// Weighted samples, summed from left to right.
float weighted(const Triple& px, const float* weights) {
  float sum = weights[0] * px[0];
  sum = sum + weights[1] * px[1];
  return sum + weights[2] * px[2];
}

// ---------------------------------------------------------------------------------------------------------------------
// Twist

/// A channel as a sample.
float twisted(Sample sample, const Triple& px, const Kip32f (&row)[4]) {
  const float sum = weighted(px, row) + row[3];
  if (sample == Sample::k32f) return sum;
  return std::clamp(std::nearbyint(sum), rangeOf(sample).least, rangeOf(sample).most);
}

void expectTwist(const Function& function, const Kip32f (&twist)[3][4]) {
  Content source = Case(function, kSize, {}).source;
  Content expected = function.shape.inPlace() ? source : untouched(function, Side::kDestination, kSize);
  const Samples from(function, function.input(), source);
  const Samples to(function, Side::kDestination, expected);
  for (int y = 0; y < kSize.height; ++y) {
    for (int x = 0; x < kSize.width; ++x) {
      const Triple px = tripleAt(from, x, y);
      for (int c = 0; c < 3; ++c) to.put(c, x, y, twisted(function.shape.destination.sample, px, twist[c]));
    }
  }
  expectEqual(convert(function, kSize, source, {.matrix = twist}), expected, function.name);
}

TEST(ColorTwist, IsTheMatrixInSinglePrecisionRoundedAndSaturated) {
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.parts.has("ColorTwist") || function.parts.is("kipiColorTwist_32f_C4R")) continue;
    ++functions;
    const float large = std::min(rangeOf(function.shape.destination.sample).most, 65535.f);
    expectTwist(function, kIdentity);
    expectTwist(function, {{.9f, -.3f, .41f, .5f}, {.2f, 1.3f, -.41f, large / 25}, {-.1f, .33f, 3.777f, -large / 70}});
    expectTwist(function, {{1e20f, 0, 0, 0}, {-1e20f, 0, 0, 0}, {0, 0, 0, 3}});
  }
  EXPECT_EQ(functions, 30);
}

TEST(ColorTwist, RoundsTiesToEvenWhateverTheCallersModeAndPutsItBack) {
  const Function& function = *find("kipiColorTwist32f_8u_C3R");
  const Kip32f half[3][4] = {{0, 0, 0, .5f}, {0, 0, 0, 1.5f}, {0, 0, 0, 2.5f}};
  Content source = untouched(function, Side::kSource, kSize);
  const int before = std::fegetround();
  std::fesetround(FE_UPWARD);
  Content result = convert(function, kSize, source, {.matrix = half});
  const int after = std::fegetround();
  std::fesetround(before);
  EXPECT_EQ(after, FE_UPWARD);
  EXPECT_EQ(Samples(function, Side::kDestination, result).get(0, 0), (Pixel{0, 2, 2}));
}

TEST(ColorTwist, FollowedByItsInverseStaysWithinOne) {
  const Kip32f there[3][4] = {{.7f, .1f, .1f, 10}, {.1f, .7f, .1f, 10}, {.1f, .1f, .7f, 10}};
  const float d = 1 / .54f, a = .8f * d, b = -.1f * d, offset = -10 * (a + 2 * b);
  const Kip32f back[3][4] = {{a, b, b, offset}, {b, a, b, offset}, {b, b, a, offset}};
  const Function& function = *find("kipiColorTwist32f_8u_C3R");
  const Content source = Case(function, kSize, {}).source;
  const Content result =
      convert(function, kSize, convert(function, kSize, source, {.matrix = there}), {.matrix = back});
  for (size_t i = 0; i < source[0].bytes.size(); ++i) ASSERT_NEAR(result[0].bytes[i], source[0].bytes[i], 1);
}

TEST(ColorTwist, OfFourChannelsTakesAlphaIn) {
  const Function& function = *find("kipiColorTwist_32f_C4R");
  const Kip32f twist[4][4] = {{0, 0, 0, 1}, {0, 1, 0, 0}, {0, 0, 1, 0}, {.5f, .25f, -1, 2}};
  Content source = Case(function, kSize, {}).source, result = convert(function, kSize, source, {.matrix = twist});
  const Samples from(function, Side::kSource, source), to(function, Side::kDestination, result);
  for (int x = 0; x < kSize.width; ++x) {
    const Triple px = tripleAt(from, x, 0);
    const float alpha = static_cast<float>(from.value(3, x, 0));
    ASSERT_EQ(to.value(0, x, 0), alpha);
    ASSERT_EQ(to.value(3, x, 0), weighted(px, twist[3]) + 2 * alpha);
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Grey

/// The sample of a pixel with these weights; those of bytes have 12 bits of fraction.
double gray(Sample sample, const Triple& px, const float* weights) {
  if (sample == Sample::k8u) {
    const auto weight = [&](int c) { return static_cast<int16_t>(int(weights[c] * 4096. + .5)); };
    return static_cast<Kip8u>((weight(0) * int(px[0]) + weight(1) * int(px[1]) + weight(2) * int(px[2]) + 2048) >> 12);
  }
  if (sample == Sample::k32f) return weighted(px, weights);
  if (sample == Sample::k16u) return static_cast<Kip16u>(static_cast<int>(weighted(px, weights)));
  const Triple raised = {px[0] + 32768, px[1] + 32768, px[2] + 32768};
  return std::clamp(std::trunc(weighted(raised, weights)), 0.f, 65535.f) - 32768;
}

void expectGray(const Function& function, const float* weights) {
  static constexpr float kBt601[3] = {.299f, .587f, .114f};
  Content source = Case(function, kSize, {}).source, expected = untouched(function, Side::kDestination, kSize);
  const Samples from(function, Side::kSource, source), to(function, Side::kDestination, expected);
  for (int y = 0; y < kSize.height; ++y) {
    for (int x = 0; x < kSize.width; ++x) {
      const Triple px = tripleAt(from, x, y);
      to.put(0, x, y, gray(function.shape.source.sample, px, weights ? weights : kBt601));
    }
  }
  expectEqual(convert(function, kSize, source, {.weights = weights}), expected, function.name);
}

TEST(Gray, IsTheWeightedSum) {
  constexpr float kWeights[][3] = {{0, 0, 1}, {7.99f, -8, 7.99f}, {1e4f, -9e3f, .5f}},
                  kBeyondIntegers[3] = {1e5f, -2e5f, 0};
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.parts.has("ToGray")) continue;
    ++functions;
    expectGray(function, nullptr);
    if (!function.shape.weights) continue;
    for (const auto& weights : kWeights) expectGray(function, weights);
    if (function.shape.source.sample == Sample::k16s) expectGray(function, kBeyondIntegers);
  }
  EXPECT_EQ(functions, 16);
}

TEST(Gray, OfBytesTakesAWeightThatIsNoNumberForZero) {
  const Function& function = *find("kipiColorToGray_8u_C3C1R");
  const Content source = Case(function, kSize, {}).source;
  const float weights[3] = {std::numeric_limits<float>::quiet_NaN(), .5f, .5f}, zero[3] = {0, .5f, .5f};
  expectEqual(convert(function, kSize, source, {.weights = weights}),
              convert(function, kSize, source, {.weights = zero}), function.name);
}

}  // namespace
}  // namespace kip
