// Tables of the CIE spaces, computed by the compiler: cube-root seeds and the lightness of 8-bit luma.
#pragma once

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
  float pair[kCells][2];

  /// `scale` is what t is multiplied by to find its cell.
  explicit constexpr CubeRootSeeds(double scale) : pair() {
    for (int i = 0; i < kCells; ++i) {
      const float r = static_cast<float>(cubeRoot((i + 1.0128) / scale));
      pair[i][0] = r;
      pair[i][1] = 1.f / (r * r * r);
    }
  }
};

inline constexpr float kUnitScale = 127.998046875f;  // 128 - 1/512: t = 1 is in the last cell
inline constexpr CubeRootSeeds kUnitSeeds{kUnitScale};
inline constexpr CubeRootSeeds kWordSeeds{128};      // cells of 512 of the 65536 values of 16-bit luma

/// L* of relative luminance.
constexpr double lightness(double y) { return y > 0.008856 ? 116 * cubeRoot(y) - 16 : 903.3 * y; }

/// The lightness of 8-bit luma, as 0 .. 255. Dark luma has four entries to a step.
struct LightnessTable {
  static constexpr int kDarkEntries = 128, kDarkEnd = 32;   // luma below kDarkEnd is dark
  static constexpr int kBright = kDarkEntries - kDarkEnd;   // where the entries of bright luma begin
  int32_t entry[kDarkEntries + 256 - kDarkEnd];

  constexpr LightnessTable() : entry() {
    for (int j = 0; j < kDarkEntries; ++j) {
      const int quarters = static_cast<int>(4 * 2.55 * lightness(j / (4 * 255.)) + 0.5);
      entry[j] = (quarters + 2) >> 2;
    }
    for (int i = kDarkEnd; i < 256; ++i) entry[kBright + i] = static_cast<int>(2.55 * lightness(i / 255.) + 0.5);
  }
};
inline constexpr LightnessTable kLightness;

}  // namespace kip::cie
