#include "sums.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace kip::convert {
namespace {

/// The order in which the pixels of a 4 x 4 square are raised.
constexpr int kOrder[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};

/// What is added before a result is floored: a half, or the middles of sixteenths.
double threshold(const ResultCode& result, int row, int column) {
  return result.dithered ? (kOrder[row][column] + 0.5) / 16 : 0.5;
}

/// What does not fit in 16 signed bits is taken around the middle.
int centreOf(const InputCode& input) {
  constexpr int kMiddle = 0x8000;
  return input.most < kMiddle ? 0 : kMiddle;
}

/// The least and the greatest sum of a row, before rounding.
struct Bounds {
  double least, most;
};
Bounds boundsOf(const AffineRow& row, const InputCode (&inputs)[3], int count) {
  Bounds bounds = {row.constant(), row.constant()};
  for (int k = 0; k < count; ++k) {
    const double most = row.factor[k] * static_cast<double>(inputs[k].most) / inputs[k].unit;
    bounds.least += std::min(0.0, most), bounds.most += std::max(0.0, most);
  }
  return bounds;
}

/// By how many bits factors can be scaled so that they fit in 16 bits and their sums in 32.
int shiftOf(const AffineRow& row, const InputCode (&inputs)[3], int count) {
  const Bounds bounds = boundsOf(row, inputs, count);
  const double largest = std::max(std::abs(bounds.least), std::abs(bounds.most)) + 1;
  constexpr double kMostFactor = 32766, kMostSum = 2147483647.0;
  int shift = 0;
  for (; shift < 28; ++shift) {
    const double next = std::ldexp(1, shift + 1);
    bool fits = largest * next < kMostSum;
    for (int k = 0; k < count; ++k) fits &= std::abs(row.factor[k]) / inputs[k].unit * next < kMostFactor;
    if (!fits) break;
  }
  return shift;
}

/// Factors whose inputs have one scale are rounded so that their sum is right: greys stay exact.
void roundFactors(const double (&exact)[3], int count, bool oneScale, int16_t (&factor)[3]) {
  double total = 0;
  int sum = 0, largest = 0;
  for (int k = 0; k < count; ++k) {
    factor[k] = static_cast<int16_t>(std::lround(exact[k]));
    total += exact[k], sum += factor[k];
    if (std::abs(exact[k]) > std::abs(exact[largest])) largest = k;
  }
  if (oneScale) factor[largest] = static_cast<int16_t>(factor[largest] + std::lround(total) - sum);
}

/// Inputs of smaller units are raised to the largest one, so that all factors can have as many bits; for results of 16
/// bits, all to what fits, so that sums have bits to be rounded away.
void raiseUnits(InputCode (&inputs)[3], int count, bool wide, IntegerMatrix& matrix) {
  int largest = 1;
  for (int k = 0; k < count; ++k) largest = std::max(largest, inputs[k].unit);
  constexpr int kMostWide = 0x8000;
  if (wide) largest = kMostWide;
  for (int k = 0; k < count; ++k) {
    matrix.raise[k] = 0;
    while (inputs[k].unit < largest && 2 * inputs[k].most <= 0xFFFF) {
      inputs[k].unit *= 2, inputs[k].most *= 2, ++matrix.raise[k];
    }
  }
}

}  // namespace

void fillMatrix(IntegerMatrix& matrix, int o, const AffineRow& row, const InputCode (&lanes)[3], int count,
                const ResultCode& result, SampleType type) {
  InputCode inputs[3] = {lanes[0], lanes[1], lanes[2]};
  raiseUnits(inputs, count, type == SampleType::kU16, matrix);
  const int shift = shiftOf(row, inputs, count);
  const double one = std::ldexp(1, shift);
  double exact[3] = {};
  bool oneScale = count == 3;
  for (int k = 0; k < count; ++k) {
    matrix.mask[k] = static_cast<uint16_t>(inputs[k].mask);
    matrix.centre[k] = static_cast<uint16_t>(centreOf(inputs[k]));
    exact[k] = row.factor[k] / inputs[k].unit * one;
    oneScale &= row.factor[k] != 0 && inputs[k].unit == inputs[0].unit && row.inputZero[k] == row.inputZero[0];
  }
  const bool hasLow = type == SampleType::kU16;
  roundFactors(exact, count, oneScale && !hasLow, matrix.factor[o]);
  double constant = row.zero * one;
  for (int k = 0; k < count; ++k) {
    const double low = hasLow ? std::round(std::ldexp(exact[k] - matrix.factor[o][k], IntegerMatrix::kLowBits)) : 0;
    matrix.low[o][k] = static_cast<int16_t>(low);
    const double factor = matrix.factor[o][k] + std::ldexp(low, -IntegerMatrix::kLowBits);
    constant += factor * (matrix.centre[k] - row.inputZero[k] * inputs[k].unit);
  }
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) {
      const double start = std::floor(constant + threshold(result, y, x) * one + 0.5);
      matrix.start[o][y][x] = static_cast<int32_t>(static_cast<uint32_t>(static_cast<int64_t>(start)));
    }
  }
  matrix.shift[o] = shift;
  matrix.most[o] = static_cast<uint16_t>(result.most);
  matrix.up[o] = result.up;
}

bool fillByteColours(ByteColours& colours, const AffineRow (&rows)[3], int chromaOfFirst, int chromaOfThird, int unit) {
  constexpr int kCodes = 256;
  const AffineRow& row = rows[0];
  const double luma = std::round(std::ldexp(row.factor[0] * kByteScale, 8));
  if (luma > UINT16_MAX || unit > kCodes) return false;
  colours.luma = static_cast<uint16_t>(luma);
  colours.chromaShift = 8 - (std::bit_width(static_cast<unsigned>(unit)) - 1);
  // The zero is such that errors, which are in one direction, are as far up as down.
  double least = INFINITY, most = -INFINITY;
  for (int code = 0; code < kCodes; ++code) {
    const double exact = (row.factor[0] * (code - row.inputZero[0]) + row.zero) * kByteScale;
    const double error = (static_cast<uint32_t>(code << 8) * colours.luma >> 16) - exact;
    least = std::min(least, error), most = std::max(most, error);
    if (std::abs(exact) > INT16_MAX - 1) return false;
  }
  colours.lumaZero = static_cast<int16_t>(std::lround((least + most) / 2));

  bool fits = true;
  const auto term = [&](int o, int channel) {
    const double factor = std::round(std::ldexp(rows[o].factor[channel] * kByteScale, 15 - 8));
    fits &= std::abs(factor) <= INT16_MAX;
    return static_cast<int16_t>(factor);
  };
  colours.first = term(0, chromaOfFirst), colours.third = term(2, chromaOfThird);
  colours.second[0] = term(1, chromaOfFirst), colours.second[1] = term(1, chromaOfThird);
  return fits;
}

Rounding makeRounding(const ResultCode& result) {
  Rounding rounding = {};
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) rounding.threshold[y][x] = static_cast<float>(threshold(result, y, x));
  }
  rounding.most = static_cast<float>(result.most), rounding.up = result.up;
  return rounding;
}

}  // namespace kip::convert
