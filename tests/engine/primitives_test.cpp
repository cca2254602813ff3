// The internal primitives, which are not exported: these tests are linked with a copy of them.
#include "engine/primitives.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "engine/memory.h"
#include "support/allocation.h"
#include "support/memory.h"
#include "support/targets.h"

namespace kip {
namespace {

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

/// Planes with gaps of large values between the rows.
struct FloatPlane {
  explicit FloatPlane(KipiSize size) : size(size), samples(static_cast<size_t>(size.width + 3) * size.height, 1e30f) {
    std::mt19937 random(static_cast<unsigned>(size.width));
    for (int i = 0; i < size.width * size.height; ++i) {
      at(i % size.width, i / size.width) = static_cast<float>(random()) / 65536 - 40000;
    }
  }
  float& at(int x, int y) { return samples[static_cast<size_t>(y) * (size.width + 3) + x]; }

  KipiSize size;
  int step = (size.width + 3) * static_cast<int>(sizeof(float));
  std::vector<float> samples;
};

/// Runs a test for each target and for widths with every remainder of a vector.
template <class Test>
void forPlanes(const Test& test) {
  std::vector<Target> targets = vectorTargets();
  targets.push_back(fallbackTarget());
  for (const Target& target : targets) {
    target.select();
    for (int width = 1; width <= 67; ++width) {
      SCOPED_TRACE(target.name() + ", width " + std::to_string(width));
      FloatPlane plane({width, 3});
      test(plane);
    }
  }
  bestTarget().select();
}

TEST(Primitives, TheLargestSampleIsFoundAnywhereAmongOthersThatAreNoNumbers) {
  forPlanes([](FloatPlane& plane) {
    for (int x = 0; x < plane.size.width; ++x) {
      FloatPlane peak = plane;
      peak.at(x, 1) = 50000;
      if (x > 0) peak.at(x - 1, 1) = kNotANumber;
      float largest = 0;
      ASSERT_EQ(kipiMax_32f_C1R(peak.samples.data(), peak.step, peak.size, &largest), kipStatusOk);
      ASSERT_EQ(largest, 50000) << "at " << x;
    }
  });
}

TEST(Primitives, FastSumsAddSixteenColumnsApart) {
  forPlanes([](FloatPlane& plane) {
    long double expected = 0;
    for (int y = 0; y < plane.size.height; ++y) {
      float p[16] = {}, lane[4];
      for (int x = 0; x < plane.size.width; ++x) p[x % 16] += plane.at(x, y);
      for (int i = 0; i < 4; ++i) lane[i] = (p[i] + p[4 + i]) + (p[8 + i] + p[12 + i]);
      expected += (lane[0] + lane[1]) + (lane[2] + lane[3]);
    }
    double sum = 0, mean = 0;
    ASSERT_EQ(kipiSum_32f_C1R(plane.samples.data(), plane.step, plane.size, &sum), kipStatusOk);
    ASSERT_EQ(kipiMean_32f_C1R(plane.samples.data(), plane.step, plane.size, &mean), kipStatusOk);
    EXPECT_EQ(sum, static_cast<double>(expected));
    EXPECT_EQ(mean, sum / (3 * plane.size.width));
  });
}

TEST(Primitives, FillWritesTheRowsOnly) {
  for (const Placement placement : {Placement::kPadded, Placement::kRowEnds, Placement::kBottomUp}) {
    const Plane plane = {37, 4};
    const PlaneMemory memory(placement, 0, plane, 5);
    memory.clear(0xA5);
    ASSERT_EQ(kipiSet_8u_C1R(9, memory.first, memory.step, {37, 4}), kipStatusOk);
    EXPECT_EQ(memory.difference({plane, std::vector<uint8_t>(37 * 4, 9)}, 0xA5), "") << nameOf(placement);
  }
}

TEST(Primitives, CheckPointersBeforeTheSize) {
  float sample = 1, result;
  double sum;
  Kip8u byte;
  EXPECT_EQ(kipiMax_32f_C1R(nullptr, 4, {0, 1}, &result), kipStatusNullPointer);
  EXPECT_EQ(kipiMax_32f_C1R(&sample, 4, {1, 1}, nullptr), kipStatusNullPointer);
  EXPECT_EQ(kipiMax_32f_C1R(&sample, 4, {1, 0}, &result), kipStatusBadSize);
  EXPECT_EQ(kipiMean_32f_C1R(nullptr, 4, {0, 1}, &sum), kipStatusNullPointer);
  EXPECT_EQ(kipiMean_32f_C1R(&sample, 4, {1, 1}, nullptr), kipStatusNullPointer);
  EXPECT_EQ(kipiMean_32f_C1R(&sample, 4, {0, 1}, &sum), kipStatusBadSize);
  EXPECT_EQ(kipiSet_8u_C1R(1, nullptr, 1, {0, 1}), kipStatusNullPointer);
  EXPECT_EQ(kipiSet_8u_C1R(1, &byte, 1, {1, -1}), kipStatusBadSize);
}

TEST(ScratchMemory, HoldsAllElementsOrIsNull) {
  failAllocation(0);
  for (const int none : {0, -1}) EXPECT_EQ(kipsMalloc_16u(none), nullptr);
  EXPECT_EQ(kipsMalloc_32f(std::numeric_limits<int>::min()), nullptr);
  EXPECT_EQ(allocationsAsked(), 0);
  for (const int count : {1, 1000}) {
    const Scratch<Kip32f> floats(kipsMalloc_32f(count));
    const Scratch<Kip16u> words(kipsMalloc_16u(count));
    std::fill_n(floats.get(), count, 1.0f);
    std::fill_n(words.get(), count, Kip16u{1});
  }
  EXPECT_EQ(allocationsHeld(), 0);
  failAllocation(1);
  EXPECT_EQ(kipsMalloc_16u(10), nullptr);
  failAllocation(0);
  if (sizeof(size_t) == 4) {
    EXPECT_EQ(kipsMalloc_32f(0x40000001), nullptr);  // 4 bytes, in 32 bits
  }
}

}  // namespace
}  // namespace kip
