// What the demosaicing functions share: the raw sensor image and the region of it that a call asks for.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "kipcc.h"

namespace kip {

/// Coordinate i of n, where an image goes on beyond its edges as in a mirror that does not repeat the edge sample. So
/// a missing neighbour is replaced by the one opposite it, and the Bayer pattern goes on undisturbed. Coordinates have
/// 64 bits: those beyond the edges of the largest images overflow int.
inline int mirrored(int64_t i, int n) {
  while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (int64_t{n} - 1) - i;
  return static_cast<int>(i);
}

/// Columns left .. right - 1 and rows top .. bottom - 1 of the image.
struct Region {
  int left, top, right, bottom;

  bool empty() const { return left >= right || top >= bottom; }
};

/// The part of a rectangle with a valid origin that lies in the image.
inline Region cutTo(KipiSize image, KipiRect rect) {
  const auto end = [](int first, int count, int limit) {
    return static_cast<int>(std::min<int64_t>(int64_t{first} + count, limit));
  };
  return {rect.x, rect.y, end(rect.x, rect.width, image.width), end(rect.y, rect.height, image.height)};
}

/// One call: the whole sensor image, the region to convert, and where its top-left pixel goes.
struct BayerJob {
  const Kip8u* samples;
  ptrdiff_t step;
  KipiSize size;
  KipiBayerGrid grid;
  Region region;
  Kip8u* dst;
  ptrdiff_t dstStep;

  /// Row y of the mirrored image.
  const Kip8u* row(int64_t y) const { return samples + mirrored(y, size.height) * step; }
  Kip8u* dstRow(int64_t y) const { return dst + static_cast<ptrdiff_t>(y - region.top) * dstStep; }

  /// Grids come in pairs: the odd ones have red in their first row, those from 2 on begin with green.
  bool hasRed(int64_t y) const { return (grid ^ y) & 1; }
  bool isGreen(int64_t x, int64_t y) const { return ((grid >> 1) ^ x ^ y) & 1; }
};

/// The argument checks, in their order.
inline KipStatus checkBayer(const void* src, const void* dst, KipiSize size, int smallest, KipiBayerGrid grid) {
  if (!src || !dst) return kipStatusNullPointer;
  if (size.width < smallest || size.height < smallest) return kipStatusBadSize;
  const bool known = grid >= kipiBayerBGGR && grid <= kipiBayerGRBG;
  return known ? kipStatusOk : kipStatusBadArgument;
}

}  // namespace kip
