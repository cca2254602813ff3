// Grey and colour twist against plain arithmetic in the order that they promise.
#include <gtest/gtest.h>

#include <xmmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "kipcc.h"

namespace kip {
namespace {

constexpr KipiSize kSize = {67, 3};  // not whole vectors
constexpr size_t kPixels = static_cast<size_t>(kSize.width) * kSize.height;
constexpr Kip32f kIdentity[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};

template <class T>
std::vector<T> randomSamples(size_t count) {
  std::mt19937 random(7);
  std::vector<T> samples(count);
  for (T& s : samples) s = static_cast<T>(std::is_floating_point_v<T> ? random() * 0x1p-32 : random());
  return samples;
}

/// A row of three-channel pixels, in bytes.
template <class T>
constexpr int kRow3 = 3 * kSize.width* static_cast<int>(sizeof(T));

template <class T>
using TwistFunction = KipStatus (*)(const T*, int, T*, int, KipiSize, const Kip32f[3][4]);

template <class T>
std::vector<T> twisted(TwistFunction<T> function, const std::vector<T>& pixels, const Kip32f twist[3][4]) {
  std::vector<T> result(pixels.size());
  EXPECT_EQ(function(pixels.data(), kRow3<T>, result.data(), kRow3<T>, kSize, twist), kipStatusOk);
  return result;
}

/// One channel of a twisted pixel, summed from left to right.
float twistedChannel(const float (&px)[3], const Kip32f (&row)[4]) {
  float sum = row[0] * px[0];
  sum = sum + row[1] * px[1];
  sum = sum + row[2] * px[2];
  return sum + row[3];
}

template <class T>
void expectTwist(TwistFunction<T> function) {
  const std::vector<T> pixels = randomSamples<T>(3 * kPixels);
  EXPECT_EQ(twisted(function, pixels, kIdentity), pixels);

  const float large = std::numeric_limits<T>::max();
  const Kip32f twist[3][4] = {
      {0.9f, -0.3f, 0.41f, 0.5f}, {0.2f, 1.3f, -0.41f, large / 25}, {-0.1f, 0.33f, 3.777f, -large / 70}};
  const std::vector<T> result = twisted(function, pixels, twist);
  for (size_t i = 0; i < kPixels; ++i) {
    const float px[3] = {float(pixels[3 * i]), float(pixels[3 * i + 1]), float(pixels[3 * i + 2])};
    for (int c = 0; c < 3; ++c) {
      const float exact = twistedChannel(px, twist[c]);
      if constexpr (std::is_floating_point_v<T>) {
        ASSERT_EQ(result[3 * i + c], exact);
      } else {
        const float least = std::numeric_limits<T>::min();
        ASSERT_EQ(result[3 * i + c], static_cast<T>(std::clamp(std::nearbyint(exact), least, large))) << i << ", " << c;
      }
    }
  }
}

TEST(ColorTwist, IsTheMatrixInSinglePrecisionRoundedAndSaturated) {
  expectTwist<Kip32f>(kipiColorTwist_32f_C3R);
  expectTwist<Kip8u>(kipiColorTwist32f_8u_C3R);
  expectTwist<Kip8s>(kipiColorTwist32f_8s_C3R);
  expectTwist<Kip16u>(kipiColorTwist32f_16u_C3R);
  expectTwist<Kip16s>(kipiColorTwist32f_16s_C3R);
}

TEST(ColorTwist, RoundsTiesToEvenWhateverTheCallersModeAndPutsItBack) {
  const Kip32f half[3][4] = {{0, 0, 0, 0.5f}, {0, 0, 0, 1.5f}, {0, 0, 0, 2.5f}};
  const unsigned before = _MM_GET_ROUNDING_MODE();
  _MM_SET_ROUNDING_MODE(_MM_ROUND_UP);
  const auto result = twisted<Kip8u>(kipiColorTwist32f_8u_C3R, std::vector<Kip8u>(3 * kPixels, 9), half);
  const unsigned after = _MM_GET_ROUNDING_MODE();
  _MM_SET_ROUNDING_MODE(before);
  EXPECT_EQ(after, unsigned{_MM_ROUND_UP});
  EXPECT_EQ(std::vector<Kip8u>(result.begin(), result.begin() + 3), (std::vector<Kip8u>{0, 2, 2}));
}

template <class T>
void expectSaturation(TwistFunction<T> function) {
  const Kip32f huge[3][4] = {{1e20f, 0, 0, 0}, {-1e20f, 0, 0, 0}, {0, 0, 0, 3}};
  const auto result = twisted<T>(function, std::vector<T>(3 * kPixels, 9), huge);
  using Limits = std::numeric_limits<T>;
  EXPECT_EQ(std::vector<T>(result.begin(), result.begin() + 3), (std::vector<T>{Limits::max(), Limits::min(), 3}));
}

TEST(ColorTwist, SaturatesWhatNoIntegerHolds) {
  expectSaturation<Kip8u>(kipiColorTwist32f_8u_C3R);
  expectSaturation<Kip16u>(kipiColorTwist32f_16u_C3R);
  expectSaturation<Kip16s>(kipiColorTwist32f_16s_C3R);
}

TEST(ColorTwist, FollowedByItsInverseStaysWithinOne) {
  // A quarter turn of the colour circle in two halves that undo each other.
  const Kip32f there[3][4] = {{0.7f, 0.1f, 0.1f, 10}, {0.1f, 0.7f, 0.1f, 10}, {0.1f, 0.1f, 0.7f, 10}};
  const float d = 1 / 0.54f, a = 0.8f * d, b = -0.1f * d, offset = -10 * (a + 2 * b);
  const Kip32f back[3][4] = {{a, b, b, offset}, {b, a, b, offset}, {b, b, a, offset}};
  const auto pixels = randomSamples<Kip8u>(3 * kPixels);
  const auto result =
      twisted<Kip8u>(kipiColorTwist32f_8u_C3R, twisted<Kip8u>(kipiColorTwist32f_8u_C3R, pixels, there), back);
  for (size_t i = 0; i < pixels.size(); ++i) ASSERT_NEAR(result[i], pixels[i], 1);
}

TEST(ColorTwist, OfFourChannelsTakesAlphaIn) {
  const auto pixels = randomSamples<Kip32f>(4 * kPixels);
  std::vector<Kip32f> result(pixels.size());
  const Kip32f twist[4][4] = {{0, 0, 0, 1}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0.5f, 0.25f, -1, 2}};
  const int row = kSize.width * 16;
  ASSERT_EQ(kipiColorTwist_32f_C4R(pixels.data(), row, result.data(), row, kSize, twist), kipStatusOk);
  for (size_t i = 0; i < pixels.size(); i += 4) {
    const float* px = &pixels[i];
    EXPECT_EQ(result[i], px[3]);
    float alpha = 0.5f * px[0] + 0.25f * px[1];
    alpha = alpha - px[2];
    ASSERT_EQ(result[i + 3], alpha + 2 * px[3]);
  }
}

TEST(Gray, OfBytesIsTheExactSumRounded) {
  const auto pixels = randomSamples<Kip8u>(3 * kPixels);
  std::vector<Kip8u> gray(kPixels), weighted(kPixels), large(kPixels);
  const Kip32f blueOnly[3] = {0, 0, 1}, largest[3] = {7.99f, -8, 7.99f};
  kipiRGBToGray_8u_C3C1R(pixels.data(), kRow3<Kip8u>, gray.data(), kSize.width, kSize);
  kipiColorToGray_8u_C3C1R(pixels.data(), kRow3<Kip8u>, weighted.data(), kSize.width, kSize, blueOnly);
  kipiColorToGray_8u_C3C1R(pixels.data(), kRow3<Kip8u>, large.data(), kSize.width, kSize, largest);
  for (size_t i = 0; i < kPixels; ++i) {
    const Kip8u* px = &pixels[3 * i];
    ASSERT_EQ(gray[i], (1225 * px[0] + 2404 * px[1] + 467 * px[2] + 2048) >> 12);
    ASSERT_EQ(weighted[i], px[2]);
    ASSERT_EQ(large[i], static_cast<Kip8u>((32727 * (px[0] + px[2]) - 32767 * px[1] + 2048) >> 12));
  }
}

template <class T>
void expectGray(KipStatus (*function)(const T*, int, T*, int, KipiSize, const Kip32f[3]), int bias) {
  const auto pixels = randomSamples<T>(3 * kPixels);
  std::vector<T> gray(kPixels);
  const int row = kSize.width * static_cast<int>(sizeof(T));
  ASSERT_EQ(function(pixels.data(), 3 * row, gray.data(), row, kSize, nullptr), kipStatusOk);
  for (size_t i = 0; i < kPixels; ++i) {
    const T* px = &pixels[3 * i];
    float sum = 0.299f * static_cast<float>(px[0] + bias) + 0.587f * static_cast<float>(px[1] + bias);
    sum = sum + 0.114f * static_cast<float>(px[2] + bias);
    ASSERT_EQ(gray[i],
              std::is_floating_point_v<T> ? static_cast<T>(sum) : static_cast<T>(static_cast<int>(sum) - bias));
  }
}

TEST(Gray, OfLargerSamplesIsTheSumInSinglePrecision) {
  expectGray<Kip16u>(kipiColorToGray_16u_C3C1R, 0);
  expectGray<Kip16s>(kipiColorToGray_16s_C3C1R, 32768);
  expectGray<Kip32f>(kipiColorToGray_32f_C3C1R, 0);
}

}  // namespace
}  // namespace kip
