// The formulas of H.273 as affine maps between the codes of two pictures, in real numbers.
#pragma once

#include "formats.h"

namespace kip::convert {

/// A result from the channels of a pixel, all in codes: the sum of factor * (channel - its zero), and the result's
/// zero.
struct AffineRow {
  double factor[3];
  double inputZero[3];
  double zero;

  /// Channels that take part.
  int inputs() const { return (factor[0] != 0) + (factor[1] != 0) + (factor[2] != 0); }
  /// The same with the zeros in one.
  double constant() const {
    return zero - factor[0] * inputZero[0] - factor[1] * inputZero[1] - factor[2] * inputZero[2];
  }
};

/// How numbers of 0..1 (chroma: -0.5..0.5) are coded: code = scale * number + zero.
struct Coding {
  double scale, zero;
};

/// What a picture's samples mean.
struct Meaning {
  KipFormatFamily family;  ///< grey, RGB or YCbCr; Bayer is RGB
  KipMatrix matrix;        ///< unspecified where it does not matter
  KipRange range;          ///< limited or full
  int bits[4];             ///< of the channels; 0 for those that there are not
  bool isFloat;

  /// Of a channel: 0 to 2, 3 is alpha.
  Coding coding(int channel) const;
};

/// Channel 0 to 2 of `to` from the channels of `from`.
AffineRow colourMap(const Meaning& from, const Meaning& to, int channel);
/// Alpha from alpha, as the first of the inputs.
AffineRow alphaMap(const Meaning& from, const Meaning& to);

}  // namespace kip::convert
