// The stages' kernels, one set for each SIMD target. Rows are bytes, whatever the samples; every kernel reads and
// writes exactly the samples that it is asked for.
#pragma once

#include "formats.h"
#include "taps.h"

namespace kip::convert {

/// Plane rows to lanes, one lane per sample of a pixel or group, and back.
using LoadKernel = void (*)(const uint8_t* row, uint8_t* const* lanes, size_t width);
using StoreKernel = void (*)(const uint8_t* const* lanes, uint8_t* row, size_t width);

/// Weighted sums of rows. Samples of 16 bits are masked and shifted down first.
struct RowsWork {
  const uint8_t* row[Taps::kMost];
  const int* weight;
  int count;
  uint16_t mask;
  int shift;
  uint8_t* out;
  size_t samples;
};
using RowsKernel = void (*)(const RowsWork& work);

/// Weighted sums of neighbours: result samples 0 to samples - 1. Source samples beyond them are there to be read, where
/// the taps reach, and a vector further.
using ColumnsKernel = void (*)(const Taps& taps, const uint8_t* in, uint8_t* out, size_t samples);

/// Integer sums: result o is
///   (start + sum over i of factor[o][i] * (((input[i] & mask[i]) << raise[i]) - centre[i])) >> shift,
/// saturated to 0..most and shifted up. Factors of 16-bit results have 14 more bits, in `low`.
struct IntegerMatrix {
  static constexpr int kLowBits = 14;
  uint16_t mask[3], centre[3];
  int raise[3];
  int16_t factor[3][3], low[3][3];
  alignas(16) int32_t start[3][4][4];  ///< with the rounding, or the thresholds of a 4 x 4 pattern
  int shift[3];
  uint16_t most[3];
  int up[3];
};
/// `row` of the picture, for the pattern; columns begin at a multiple of 4.
using MatrixKernel = void (*)(const IntegerMatrix& matrix, const uint8_t* const* in, uint8_t* const* out,
                              size_t samples, int row);

/// Sums of floats: ((factor[o][0] * in[0] + factor[o][1] * in[1]) + factor[o][2] * in[2]) + constant[o].
struct FloatMatrix {
  float factor[3][3], constant[3];
};
using FloatMatrixKernel = void (*)(const FloatMatrix& matrix, int inputs, int outputs, const uint8_t* const* in,
                                   uint8_t* const* out, size_t samples);

/// Floats to integers: floor(v + threshold), saturated to 0..most and shifted up; NaN is 0.
struct Rounding {
  alignas(16) float threshold[4][4];
  float most;
  int up;
};
using RoundKernel = void (*)(const Rounding& rounding, const uint8_t* in, uint8_t* out, size_t samples, int row);

/// Integer sums are compiled for these types of the first input, of the others, and of results.
enum class MatrixTypes : uint8_t { k888, k8168, k16168, k8816, k81616, k161616 };
constexpr int kMatrixTypes = 6;

/// Interleaved bytes in another order: sample k of a pixel is sample order[k] of the source's; kOpaque is 255.
constexpr uint8_t kOpaque = 4;
using ReorderKernel = void (*)(const uint8_t* in, const uint8_t* order, uint8_t* out, size_t width);

struct LayoutKernels {
  LoadKernel load[kPackings];    ///< by packing; null for kPlane
  StoreKernel store[kPackings];  ///< by packing; null for kPlane
  ReorderKernel reorder[2][2];   ///< by whether pixels have four samples: from, to
};
/// Half of the columns of bytes: 16-bit sums of two neighbours, or of three with weights 1, 2, 1, of one row or of two.
struct HalveWork {
  const uint8_t* row[2];  ///< from the first sample that the sums are of
  bool twoRows, three;
  uint8_t* out;
  size_t samples;
};
using HalveKernel = void (*)(const HalveWork& work);

struct ResamplingKernels {
  RowsKernel rows[3][3];        ///< by sample types: from, to; null where there is none
  ColumnsKernel columns[3][3];  ///< the same
  HalveKernel halve;
};
struct MatrixKernels {
  MatrixKernel matrix[kMatrixTypes][3];  ///< by types and by results less one
  MatrixKernel scale[2][2];              ///< one channel, by integer types: from, to
};
struct FloatKernels {
  FloatMatrixKernel matrix;
  RoundKernel round[2];  ///< by integer type
};

/// YCbCr of 8 bits to RGB of 8 bits in 16-bit arithmetic. Sums are in units of 1 / kByteScale of a result's step:
///   sum = luma * (code * 2^8) / 2^16 - lumaZero + the chroma terms, factor * ((code - 128) * 2^8) / 2^15 each,
///   result = sum * kByteUnit / 2^15, rounded and saturated.
/// The first term is rounded down, chroma terms to the nearest; with what factors lose in their own rounding each is
/// within 0.009 of a step, so a result is within 0.53 of a step of the formula. Codes may be sums of several: chroma of
/// `unit` times its code is shifted up by `chromaShift` instead of 8 bits.
constexpr int kByteUnit = 283;
constexpr double kByteScale = 32768.0 / kByteUnit;  // so that luma of 0..255 stays within 16 signed bits
struct ByteColours {
  uint16_t luma;
  int16_t lumaZero;
  int16_t first, second[2], third;  ///< of the chroma of the first result, and of the third
  int chromaShift;
};

/// YCbCr to interleaved RGB of 8 bits in one go, chroma between its columns included. Inputs are luma, the chroma of
/// the first result in memory and the chroma of the third, of which the first and the third result take theirs only,
/// and the second both. Chroma has no centre in the integer matrix.
enum class ChromaColumns : uint8_t { kEach, kPairs, kCosited, kMiddle };
constexpr int kChromaColumns = 4;
enum class Interleaving : uint8_t { kTriple, kQuad, kQuadAlphaFirst };
struct DecodeWork {
  const ByteColours* colours;   ///< where luma has 8 bits
  const IntegerMatrix* matrix;  ///< where it has 16
  Interleaving interleaving;
  const uint8_t *luma, *first, *third, *alpha;
  uint8_t* out;
  size_t pixels;
  int row;
};
using DecodeKernel = void (*)(const DecodeWork& work);
struct DecodeKernels {
  DecodeKernel decode[kChromaColumns];  ///< luma and chroma of 16 bits
};
struct DecodeBytesKernels {
  DecodeKernel decode[kChromaColumns][2];  ///< luma of 8 bits; by the integer type of chroma
};

/// Interleaved RGB of 8 bits to YCbCr or grey in one go: result o is
///   (start[o] + sum over k of factor[o][k] * byte k of the pixel, or of sums of pixels) >> shift[o],
/// saturated to a byte. Pixels of three bytes count as having a fourth one without a factor.
struct ByteMatrix {
  int16_t factor[3][4];
  int32_t start[3];
  int shift[3];
};
/// What results are of: every pixel; or of every second one the pixel alone, the sum with its right neighbour, or with
/// both neighbours, where its own weight is 2.
enum class PixelMean : uint8_t { kNone, kFirst, kPair, kThree };
struct EncodeWork {
  const ByteMatrix* matrix;
  const uint8_t* row[2];  ///< from the first result's pixel on
  int rows;               ///< whose sums are taken: 1, or 2 where every second pixel has results
  PixelMean mean;
  bool hasLeft;  ///< there is a pixel before the first one
  int results;   ///< 1 to 3; 2 where every second pixel has them, which have the same shift
  uint8_t* out[3];
  bool interleaved;  ///< two results, both to the first row
  size_t pixels;
};
using EncodeKernel = void (*)(const EncodeWork& work);
struct EncodeKernels {
  EncodeKernel pixels[2], means[2];  ///< of three bytes, of four
};

/// Those of the processor's best target.
const LayoutKernels& layoutKernels();
const ResamplingKernels& resamplingKernels();
const MatrixKernels& matrixKernels();
const FloatKernels& floatKernels();
const DecodeKernels& decodeKernels();
const DecodeBytesKernels& decodeBytesKernels();
const EncodeKernels& encodeKernels();

}  // namespace kip::convert
