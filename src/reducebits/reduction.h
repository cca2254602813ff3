// Bit reduction as the kernels see it.
#pragma once

#include <cstddef>

#include "kipcc.h"
#include "reducebits/noise.h"

namespace kip {

/// The samples of a pixel: the first `reduced` of `perPixel` are reduced, the others (alpha) stay as they are.
struct Channels {
  int reduced;
  int perPixel;
};

/// What the kernels need to know besides the images.
struct Reduction {
  KipiDitherType method;
  Channels channels;
  float intervals;  ///< between the levels: one less than there are levels
  const NoiseTables* noise = nullptr;
  // For error diffusion, of each channel:
  float* errorRows = nullptr;  ///< kErrorRows rows
  size_t errorRowLength = 0;
  float* bands = nullptr;  ///< kBandFloats, aligned to 64 bytes: what a band of rows is worked on in
};

constexpr int kErrorRows = 2;       // the rows above a band of rows: as many as the widest diffusion reaches back
constexpr int kBandFloats = 20480;  // enough for every target and type of samples
constexpr int kBand = 32;           // rows whose errors are diffused at the same time
constexpr int kErrorRowPad = 256;   // zeros behind an error row, for the rows behind the first one of a band

/// The size of an interval on a scale, which the contract wants computed as 65280 / 256 where the scale is 255.
inline float intervalOf(float intervals, float fullScale) {
  return fullScale == 255 ? 65280 / intervals * 0.00390625f : fullScale / intervals;
}

/// 4 x 4 ordered dither, in fifteenths of an interval.
constexpr int kBayer[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};

/// In intervals, at a pixel.
inline float bayerAt(size_t x, int y) { return static_cast<float>(kBayer[y % 4][x % 4]) / 15; }

}  // namespace kip
