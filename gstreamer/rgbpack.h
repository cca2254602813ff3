// From R, G, B as the demosaicing functions give it to the order of samples that a frame has.
#pragma once

#include <gst/video/video.h>

#include <cstdint>

namespace gstkip {

/// Takes pixels apart and together by bytes, a block at a time.
class RgbPacker {
 public:
  static constexpr int kBlock = 16;  // bytes that are loaded and stored at a time

  /// For an interleaved RGB format with samples of 8 or 16 bits. Pixels with a fourth sample may be written past the
  /// caches: a memory fence must come before another thread is told of them.
  RgbPacker(const GstVideoFormatInfo* format, bool pastCaches);

  /// Whether pixels are R, G, B already.
  bool isIdle() const { return idle_; }

  /// Writes a row of pixels from their R, G, B, samples of the same size; a fourth sample is full scale. Up to kBlock
  /// bytes behind the source may be read.
  void pack(const uint8_t* rgb, uint8_t* pixels, int count) const;

 private:
  bool idle_, pastCaches_;
  int fromBytes_, toBytes_;  // of a pixel
  uint8_t places_[kBlock];   // where each byte of a block comes from; 0x80 for 0
  uint8_t fourth_[kBlock];   // the bytes of fourth samples
};

}  // namespace gstkip
