#include "colour.h"

#include <cmath>

namespace kip::convert {
namespace {

struct Matrix3 {
  double at[3][3];
};

Matrix3 product(const Matrix3& a, const Matrix3& b) {
  Matrix3 p{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      for (int k = 0; k < 3; ++k) p.at[i][j] += a.at[i][k] * b.at[k][j];
    }
  }
  return p;
}

struct LumaWeights {
  double r, b;
};
LumaWeights lumaWeights(KipMatrix matrix) {
  switch (matrix) {
    case kipMatrixBT709:
      return {0.2126, 0.0722};
    case kipMatrixBT2020:
      return {0.2627, 0.0593};
    default:
      return {0.299, 0.114};
  }
}

constexpr Matrix3 kSame = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr Matrix3 kAllLuma = {{{1, 0, 0}, {1, 0, 0}, {1, 0, 0}}};
constexpr Matrix3 kToYCgCo = {{{0.25, 0.5, 0.25}, {-0.25, 0.5, -0.25}, {0.5, 0, -0.5}}};
constexpr Matrix3 kFromYCgCo = {{{1, -1, 1}, {1, 1, 0}, {1, -1, -1}}};

/// Y, Cb, Cr from R, G, B.
Matrix3 encoder(KipMatrix matrix) {
  if (matrix == kipMatrixYCgCo) return kToYCgCo;
  const auto [r, b] = lumaWeights(matrix);
  const double g = 1 - r - b, cb = 2 - 2 * b, cr = 2 - 2 * r;
  return {{{r, g, b}, {-r / cb, -g / cb, (1 - b) / cb}, {(1 - r) / cr, -g / cr, -b / cr}}};
}

/// R, G, B from Y, Cb, Cr.
Matrix3 decoder(KipMatrix matrix) {
  if (matrix == kipMatrixYCgCo) return kFromYCgCo;
  const auto [r, b] = lumaWeights(matrix);
  const double g = 1 - r - b, cb = 2 - 2 * b, cr = 2 - 2 * r;
  return {{{1, 0, cr}, {1, -b * cb / g, -r * cr / g}, {1, cb, 0}}};
}

/// R, G, B from a picture's channels.
Matrix3 toRgb(const Meaning& m) {
  if (m.family == kipFamilyYCbCr) return decoder(m.matrix);
  return m.family == kipFamilyGray ? kAllLuma : kSame;
}

/// A picture's channels from R, G, B.
Matrix3 fromRgb(const Meaning& m) {
  return m.family == kipFamilyYCbCr || m.family == kipFamilyGray ? encoder(m.matrix) : kSame;
}

bool hasOwnColours(const Meaning& m) { return m.family == kipFamilyYCbCr || m.family == kipFamilyGray; }

/// Numbers to numbers.
Matrix3 numbersToNumbers(const Meaning& from, const Meaning& to) {
  if (hasOwnColours(from) && hasOwnColours(to) && from.matrix == to.matrix) return kSame;
  return product(fromRgb(to), toRgb(from));
}

}  // namespace

Coding Meaning::coding(int channel) const {
  if (isFloat) return {1, 0};
  const double full = std::ldexp(1, bits[channel]) - 1, step = std::ldexp(1, bits[channel] - 8);
  const bool chroma = family == kipFamilyYCbCr && (channel == 1 || channel == 2);
  const bool limited = range == kipRangeLimited && channel != 3;
  if (!limited) return {full, chroma ? 128 * step : 0};
  return {(chroma && matrix != kipMatrixYCgCo ? 224 : 219) * step, (chroma ? 128 : 16) * step};
}

AffineRow colourMap(const Meaning& from, const Meaning& to, int channel) {
  const Matrix3 map = numbersToNumbers(from, to);
  const Coding out = to.coding(channel);
  AffineRow row = {{}, {}, out.zero};
  const int inputs = from.family == kipFamilyGray ? 1 : 3;
  for (int k = 0; k < inputs; ++k) {
    constexpr double kNoise = 1e-12;  // what is left of terms that cancel
    const Coding in = from.coding(k);
    row.inputZero[k] = in.zero;
    if (std::abs(map.at[channel][k]) > kNoise) row.factor[k] = map.at[channel][k] * out.scale / in.scale;
  }
  return row;
}

AffineRow alphaMap(const Meaning& from, const Meaning& to) {
  return {{to.coding(3).scale / from.coding(3).scale, 0, 0}, {}, 0};
}

}  // namespace kip::convert
