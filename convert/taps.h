// Chroma between grids: the weights by which samples of one grid become those of another along one axis.
#pragma once

#include "kipconvert.h"

namespace kip::convert {

/// Where the samples of a channel lie along one axis: every 2^shift pixels, the first one so many quarter pixels in.
struct Grid {
  int shift;
  int offset4;
};
constexpr Grid kEveryPixel = {0, 0};

/// Sample i * phases + p of the result is the sum over t of weight[p][t] * source[i * advance + first[p] + t], where
/// the source goes on with its edge samples. The weights of each phase add up to `sum`, a power of two.
struct Taps {
  static constexpr int kMost = 12, kPhases = 4;
  int phases, advance, count, sum;
  int first[kPhases];
  int weight[kPhases][kMost];

  bool isIdentity() const { return phases == 1 && advance == 1 && count == 1 && first[0] == 0; }
  /// A source sample each, unchanged.
  bool isSelection() const { return count == 1; }
  /// The first source sample that sample `at` of the result takes part of.
  int firstOf(int at) const { return at / phases * advance + first[at % phases]; }
};

/// Linear interpolation between the samples of `from`, and its mean over the distance of two samples of `to`; or, for
/// kipChromaNearest, the sample of the group.
Taps makeTaps(Grid from, Grid to, KipChromaFilter filter);

}  // namespace kip::convert
