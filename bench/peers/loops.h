// Plain loops, compiled once for each SIMD target and left to the compiler's own vectoriser: peers for conversions that
// no library has. Images have no gaps between rows, and three interleaved channels but in tone mapping.
#pragma once

namespace bench {

struct LoopImages {
  const void* src;
  void* dst;
  int width, height;
};
using Loop = void (*)(const LoopImages&);

/// The loops of one target.
struct Loops {
  const char* target;  ///< its name
  Loop toneMapLinear, toneMapMean;
  Loop encodeYcc8u, encodeYcc16u, encodeYcc16s, encodeYcc32f;
  Loop decodeYcc8u, decodeYcc16u, decodeYcc16s, decodeYcc32f;
  Loop encodeLuv16u, encodeLuv16s, decodeLuv16u, decodeLuv16s;
  Loop encodeLab8u16u, decodeLab16u8u;
  Loop encodeHls16u, encodeHls16s, decodeHls16u, decodeHls16s, encodeHsv16u, decodeHsv16u;
  Loop noise8u, noise16u, noise16u8u, noise32f8u;
};

}  // namespace bench
