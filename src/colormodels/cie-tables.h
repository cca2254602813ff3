// Tables of the CIE spaces, computed by the compiler: cube-root seeds, polynomials for Lab, the lightness of 8-bit
// luma.
#pragma once

#include <bit>
#include <cstdint>

namespace kip::cie {

/// The cube root of 0 <= t < 8 by Newton's method, from above: the steps go down until they have converged.
constexpr double cubeRoot(double t) {
  const auto better = [t](double root) { return (2 * root + t / (root * root)) / 3; };
  double root = 2;
  while (better(root) < root) root = better(root);
  return root;
}

/// Seeds r for the cube roots of t = 0 .. 1, one for each of 128 cells, near the upper end of the cell; and 1 / r^3.
struct alignas(64) CubeRootSeeds {
  static constexpr int kCells = 128;
  float row[kCells][2];

  /// `scale` is what t is multiplied by to find its cell.
  explicit constexpr CubeRootSeeds(double scale) : row() {
    for (int i = 0; i < kCells; ++i) {
      const float r = static_cast<float>(cubeRoot((i + 1.0128) / scale));
      row[i][0] = r;
      row[i][1] = 1.f / (r * r * r);
    }
  }
};

inline constexpr float kUnitScale = 127.998046875f;  // 128 - 1/512: t = 1 is in the last cell
inline constexpr CubeRootSeeds kUnitSeeds{kUnitScale};
inline constexpr CubeRootSeeds kWordSeeds{128};  // cells of 512 of the 65536 values of 16-bit luma

/// The binomial series of (1 + x)^(1/3) from x on.
inline constexpr double kCubeRootSeries[] = {1. / 3,    -1. / 9,      5. / 81,      -10. / 243,
                                             22. / 729, -154. / 6561, 374. / 19683, -935. / 59049};

/// Below this luminance L* is kDarkSlope Y, above it a cube root.
inline constexpr float kDarkEnd = 0.008856f, kDarkSlope = 903.3f;

/// f of Lab, with the series up to x^6, in pieces, each of them a polynomial of the scaled t, s = kScale t. The leading
/// bits of the float s + kOffset tell which piece t is on: there are 2^kPieceBits to an octave, and four octaves. Scale
/// and offset put the two places where f is not smooth at the edges of pieces, even where there are but eight to an
/// octave: the end of the dark and that of the second cell of the seeds, where f makes a step.
template <int kDegreeOfPieces, int kPieceBits>
class LabPieces {
  static constexpr double kStep = 2 / double{kUnitScale};
  static constexpr double kWidth = 1 / 64.;  // of an eighth of the octave from 1/8 on
  static constexpr int kFirstEighth = 4;     // the edge at the end of the dark

 public:
  static constexpr int kDegree = kDegreeOfPieces;
  static constexpr float kScale = static_cast<float>(kWidth / (kStep - kDarkEnd));
  static constexpr float kOffset = static_cast<float>((8 + kFirstEighth) * kWidth - kScale * double{kDarkEnd});
  static constexpr int kShift = 23 - kPieceBits;  // of bits that do not tell the piece
  static constexpr int kRows = 4 << kPieceBits;
  alignas(16) float row[kRows][kDegree + 1];  // for piece i modulo kRows, the coefficients of 1, s, ... s^kDegree

  constexpr LabPieces() : row() {
    constexpr int kFirst = std::bit_cast<int32_t>(kOffset) >> kShift;
    for (int i = kFirst; i < kFirst + kRows; ++i) fit(start(i) - kOffset, start(i + 1) - kOffset, row[i % kRows]);
  }

 private:
  static constexpr double start(int i) { return std::bit_cast<float>(i << kShift); }

  /// The polynomial through the Chebyshev nodes, by Newton's divided differences.
  static constexpr void fit(double from, double to, float (&coefficients)[kDegree + 1]) {
    constexpr double kNodes[2][5] = {{-0.70710678, 0.70710678}, {-0.95105652, -0.58778525, 0, 0.58778525, 0.95105652}};
    double s[kDegree + 1] = {}, difference[kDegree + 1] = {}, sum[kDegree + 1] = {};
    for (int k = 0; k <= kDegree; ++k) {
      s[k] = (from + to) / 2 + (to - from) / 2 * kNodes[kDegree / 4][k];
      difference[k] = f(s[k] / kScale);
    }
    for (int order = 1; order <= kDegree; ++order) {
      for (int k = kDegree; k >= order; --k) {
        difference[k] = (difference[k] - difference[k - 1]) / (s[k] - s[k - order]);
      }
    }
    for (int k = kDegree; k >= 0; --k) {
      for (int power = kDegree; power > 0; --power) sum[power] = sum[power - 1] - s[k] * sum[power];
      sum[0] = difference[k] - s[k] * sum[0];
    }
    for (int power = 0; power <= kDegree; ++power) coefficients[power] = static_cast<float>(sum[power]);
  }

  static constexpr double f(double t) {
    if (t <= kDarkEnd) return 7.787f * t + 0.137931f;
    const int cell = static_cast<int>(t * kUnitScale);
    const auto& [r, inverseCube] = kUnitSeeds.row[cell < CubeRootSeeds::kCells ? cell : CubeRootSeeds::kCells - 1];
    const double x = t * inverseCube - 1;
    double sum = 0;
    for (int k = 5; k >= 0; --k) sum = (sum + kCubeRootSeries[k]) * x;
    return r * (1 + sum);
  }
};

/// L* of relative luminance.
constexpr double lightness(double y) { return y > 0.008856 ? 116 * cubeRoot(y) - 16 : 903.3 * y; }

/// The lightness of 8-bit luma, as 0 .. 255, for each eighth of a step. Luma is rounded, in the dark to quarters.
struct LightnessTable {
  static constexpr int kParts = 8;
  int32_t entry[kParts * 255 + 1];

  constexpr LightnessTable() : entry() {
    for (int i = 0; i <= kParts * 255; ++i) {
      const int nearest = (i + kParts / 2) / kParts, quarters = (i + 1) / 2;
      entry[i] = nearest < 32 ? (scaled(4 * 2.55 * lightness(quarters / (4 * 255.))) + 2) >> 2
                              : scaled(2.55 * lightness(nearest / 255.));
    }
  }

 private:
  static constexpr int scaled(double l) { return static_cast<int>(l + 0.5); }
};
inline constexpr LightnessTable kLightness;

}  // namespace kip::cie
