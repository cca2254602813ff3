// Affine rows as the constants of kernels: integer factors, roundings, thresholds.
#pragma once

#include "colour.h"
#include "kernels.h"

namespace kip::convert {

/// What an input's lane holds: codes times `unit`, from 0 to `most`, in the bits of `mask`.
struct InputCode {
  int unit = 1;
  int mask = 0xFFFF;
  int64_t most = 0;
};

/// What a result's lane holds: codes 0..most, shifted up.
struct ResultCode {
  int most;
  int up;
  bool dithered;
};

/// Row `o` of a matrix for lanes of integers. There are `count` inputs.
void fillMatrix(IntegerMatrix& matrix, int o, const AffineRow& row, const InputCode (&inputs)[3], int count,
                const ResultCode& result, SampleType type);

/// RGB in the order of memory, from luma and from the channels of chroma that the first and the third result take.
/// Codes of chroma come as sums of `unit` of them. False where sums may not fit in 16 bits.
bool fillByteColours(ByteColours& colours, const AffineRow (&rows)[3], int chromaOfFirst, int chromaOfThird, int unit);

Rounding makeRounding(const ResultCode& result);

}  // namespace kip::convert
