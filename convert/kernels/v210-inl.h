// v210: three samples of 10 bits in each little-endian 32 bits, six pixels of 4:2:2 in four of these.

#if defined(KIP_CONVERT_V210_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_CONVERT_V210_INL_H_
#undef KIP_CONVERT_V210_INL_H_
#else
#define KIP_CONVERT_V210_INL_H_
#endif

#include <algorithm>
#include <cstring>

#include "engine/simd-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

struct V210 {
  static void load(const uint8_t* row, uint8_t* const* lanes, size_t width) {
    for (size_t x = 0; x < width; x += kPixels, row += kBytes) {
      uint16_t samples[kSamples], luma[kPixels], first[kPixels / 2], second[kPixels / 2];
      unpack(row, samples);
      for (int i = 0; i < kPixels; ++i) luma[i] = samples[2 * i + 1];
      for (int i = 0; i < kPixels / 2; ++i) first[i] = samples[4 * i], second[i] = samples[4 * i + 2];
      const size_t pixels = std::min<size_t>(kPixels, width - x), pairs = (pixels + 1) / 2;
      std::memcpy(lanes[0] + 2 * x, luma, 2 * pixels);
      std::memcpy(lanes[1] + x, first, 2 * pairs);
      std::memcpy(lanes[2] + x, second, 2 * pairs);
    }
  }

  static void store(const uint8_t* const* lanes, uint8_t* row, size_t width) {
    for (size_t x = 0; x < width; x += kPixels, row += kBytes) {
      uint16_t samples[kSamples] = {}, luma[kPixels] = {}, first[kPixels / 2] = {}, second[kPixels / 2] = {};
      const size_t pixels = std::min<size_t>(kPixels, width - x), pairs = (pixels + 1) / 2;
      std::memcpy(luma, lanes[0] + 2 * x, 2 * pixels);
      std::memcpy(first, lanes[1] + x, 2 * pairs);
      std::memcpy(second, lanes[2] + x, 2 * pairs);
      if (pixels % 2 != 0) luma[pixels] = luma[pixels - 1];
      for (int i = 0; i < kPixels; ++i) samples[2 * i + 1] = luma[i];
      for (int i = 0; i < kPixels / 2; ++i) samples[4 * i] = first[i], samples[4 * i + 2] = second[i];
      pack(samples, row);
    }
  }

 private:
  static constexpr int kPixels = 6, kSamples = 12, kBytes = 16, kBits = 10, kMask = (1 << kBits) - 1;

  static void unpack(const uint8_t* group, uint16_t (&samples)[kSamples]) {
    for (int i = 0; i < kSamples; i += 3) {
      uint32_t three;
      std::memcpy(&three, group + i / 3 * 4, 4);
      for (int k = 0; k < 3; ++k) samples[i + k] = three >> k * kBits & kMask;
    }
  }
  static void pack(const uint16_t (&samples)[kSamples], uint8_t* group) {
    for (int i = 0; i < kSamples; i += 3) {
      uint32_t three = 0;
      for (int k = 0; k < 3; ++k) three |= uint32_t{samples[i + k]} % (kMask + 1) << k * kBits;
      std::memcpy(group + i / 3 * 4, &three, 4);
    }
  }
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
