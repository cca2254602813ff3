// The table of formats: what a format's rows look like to the loads and stores.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kipconvert.h"

namespace kip::convert {

/// What a sample is while it is on its way.
enum class SampleType : uint8_t { kU8, kU16, kF32 };
constexpr int bytesOf(SampleType type) { return type == SampleType::kU8 ? 1 : type == SampleType::kU16 ? 2 : 4; }

/// How the samples of one plane lie in its rows: one load and one store each, but for kPlane, whose rows are lanes
/// already.
enum class Packing : uint8_t {
  kPlane,
  kPair8,         ///< two interleaved samples of 8 bits
  kPair16,        ///< and of 16
  kTriple8,       ///< three
  kTriple16,      ///< and of 16
  kTripleF32,     ///< and floats
  kQuad8,         ///< four
  kQuad16,        ///< and of 16
  k565,           ///< 16 bits, channels from the upper bits down
  k555,           ///< the same, without the top bit
  k444,           ///< the same, without the four top bits
  kLumaFirst8,    ///< 4:2:2: luma, chroma, luma, chroma
  kChromaFirst8,  ///< 4:2:2: chroma, luma, chroma, luma
  kLumaFirst16,   ///< 4:2:2 of 16 bits
  kV210,          ///< 4:2:2, three samples of 10 bits in each 32
  kBayer,         ///< one sample of 8 or 16 bits a pixel, or packed ones
};
constexpr int kPackings = static_cast<int>(Packing::kBayer);  // those with a load and a store

/// One plane's samples: the lanes of a load, or of a store, and the channels that they are. Channels are 0 to 3, in the
/// order of KipFormatInfo::bits.
struct Part {
  int8_t plane;
  Packing packing;
  int8_t lanes;
  int8_t channel[4];
};
/// A sample without a meaning.
constexpr int8_t kUnused = -1;

/// A format: the public description, and what conversions need besides.
struct Format {
  KipFormatInfo info;
  SampleType type;  ///< of its lanes
  int shift;        ///< samples lie so many bits up in their lanes
  Part part[4];     ///< those with lanes
  int bayerGrid;    ///< KipiBayerGrid
};

/// The row of a format; null if there is none.
const Format* findFormat(KipFormat format);

/// Bytes of a row of a plane, and rows of it.
int64_t rowBytes(const KipFormatInfo& info, int plane, int64_t width);
int64_t planeRows(const KipFormatInfo& info, int plane, int64_t height);

/// kipStatusOk, or kipStatusBadSize where a picture is too small or too large for the format.
KipStatus checkSize(const KipFormatInfo& info, int width, int height);

}  // namespace kip::convert
