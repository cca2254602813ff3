// Pictures of a sensor behind a Bayer pattern, converted to a frame.
#pragma once

#include <gst/video/video.h>

#include <memory>
#include <string>
#include <vector>

#include "kipcc.h"
#include "rgbpack.h"
#include "workers.h"

namespace gstkip {

enum BayerMethod { kBayerBilinear, kBayerAhd };

/// A format of video/x-bayer. Samples of more than 8 bits are little-endian, in the low bits of 16.
struct BayerFormat {
  std::string name;
  KipiBayerGrid grid;
  int bits;

  size_t sampleBytes() const { return bits == 8 ? 1 : 2; }
  /// Rows are padded to whole multiples of 4 bytes.
  size_t step(int width) const { return GST_ROUND_UP_4(width * sampleBytes()); }
};

/// All of them, those of few bits first.
const std::vector<BayerFormat>& bayerFormats();

/// Null for a name that is none of theirs.
const BayerFormat* bayerFormatByName(const char* name);

/// Converts pictures of one size and format to frames of one format. Deep samples are spread over 16 bits before they
/// are interpolated, and lose bits after that.
class BayerConverter {
 public:
  BayerConverter(const BayerFormat& from, const GstVideoInfo& to);

  /// The frame is of the format and size that the converter was made for.
  KipStatus run(const Kip8u* samples, GstVideoFrame* frame, BayerMethod method, Workers& workers);

 private:
  struct Mosaic {
    const Kip8u* samples;
    size_t step;
  };
  /// What one thread works in: R, G, B of some rows, and of one row in bytes.
  struct Scratch {
    std::vector<Kip8u> rgb, bytes;
  };

  size_t rgbStep() const { return 3 * size_t(size_.width) * (wide_ ? sizeof(Kip16u) : sizeof(Kip8u)); }
  Mosaic spread(const Mosaic& mosaic, Workers& workers);
  KipStatus demosaic(const Mosaic& mosaic, BayerMethod method, KipiRect rows, void* rgb, size_t step) const;
  KipStatus convertRows(const Mosaic& mosaic, BayerMethod method, KipiRect rows, GstVideoFrame* frame,
                        Scratch& scratch) const;
  void finishRow(const Kip8u* rgb, Kip8u* pixels, Kip8u* bytes) const;

  const BayerFormat from_;
  const KipiSize size_;
  const bool narrow_;  // pixels are of 8 bits
  const bool wide_;    // samples are interpolated in 16 bits
  const RgbPacker packer_;
  std::vector<Kip16u> spread_;
  std::vector<Scratch> scratch_;
};

}  // namespace gstkip
