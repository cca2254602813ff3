// The noise of bit reduction: two tables of pseudo-random numbers, the same for every call, which the pixels of an
// image walk so that neighbours draw different ones.
#pragma once

#include <cstdint>

#include "engine/memory.h"

namespace kip {

class NoiseTables {
 public:
  static constexpr int kCount = 1024;
  static constexpr int kAhead = 128;

  /// Values from low to high.
  KipStatus make(float low, float high);

  /// The value of pixel (x, y) is row(y)[*columnsFrom(x)]; those of the pixels below it follow, up to the next multiple
  /// of four rows. The columns of the kAhead pixels from x on follow one another.
  const float* row(int y) const { return &values_[y % kColumn]; }
  static const Kip16s* columnsFrom(int64_t x);

 private:
  // A column takes every second of the values: the even ones, or the odd ones, from its own start on.
  static constexpr int kColumn = kCount / 2;

  Scratch<Kip32f> values_;  // the even ones, twice so that no index has to wrap, then the odd ones, twice
};

}  // namespace kip
