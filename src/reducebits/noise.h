// The noise of bit reduction: two tables of pseudo-random numbers, the same for every call, which the pixels of an
// image walk so that neighbours draw different ones.
#pragma once

#include "frame/memory.h"

namespace kip {

class NoiseTables {
 public:
  static constexpr int kCount = 1024;

  /// Draws values from low to high.
  KipStatus make(float low, float high);

  /// The value of pixel (x, y) is row(y)[column[x % kCount]].
  const float* row(int y) const { return &values_[2 * static_cast<unsigned>(y) % kCount]; }
  const Kip16s* columns() const { return columns_.get(); }

 private:
  Scratch<Kip32f> values_;   // kCount values, twice, so that no index has to wrap
  Scratch<Kip16s> columns_;  // where each column begins to walk the values: its random offset and its number
};

}  // namespace kip
