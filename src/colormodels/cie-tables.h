// Tables of the CIE spaces, computed by the compiler: cube-root seeds, lines for Lab, the lightness of 8-bit luma.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>

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
inline constexpr CubeRootSeeds kWordSeeds{128};  // cells of 512 of the 65536 values of 16-bit luma

/// The binomial series of (1 + x)^(1/3) from x on.
inline constexpr double kCubeRootSeries[] = {1. / 3,    -1. / 9,      5. / 81,      -10. / 243,
                                             22. / 729, -154. / 6561, 374. / 19683, -935. / 59049};

/// Below this luminance L* is kDarkSlope Y, above it a cube root.
inline constexpr float kDarkEnd = 0.008856f, kDarkSlope = 903.3f;

/// f of Lab, with the series up to x^6, as straight lines of t: 256 to an octave, and one for the dark.
struct LabLines {
  static constexpr int kShift = 15;  // the bits of a float t that do not tell which line it is on
  static constexpr int32_t kFirst = std::bit_cast<int32_t>(kDarkEnd) + 1 - (1 << kShift);
  static constexpr int kLines = ((std::bit_cast<int32_t>(1.00001f) - kFirst) >> kShift) + 1;
  float line[kLines][2];  // f = line[0] + line[1] t

  constexpr LabLines() : line{{0.137931f, 7.787f}} {
    for (int i = 1; i < kLines; ++i) {
      const double from = start(i), to = start(i + 1), middle = (from + to) / 2;
      const double slope = (f(from, middle) - f(to, middle)) / (from - to);
      // Between the chord and the tangent that is parallel to it.
      const double chord = f(from, middle) - slope * from, tangent = f(middle, middle) - slope * middle;
      line[i][0] = static_cast<float>((chord + tangent) / 2);
      line[i][1] = static_cast<float>(slope);
      // Where the second cell of the seeds ends, f makes a step that is too high for any line.
      if (cell(from) == 1 && cell(to) == 2) line[i][0] = std::numeric_limits<float>::quiet_NaN();
    }
  }

 private:
  static constexpr double start(int i) { return std::bit_cast<float>(kFirst + (i << kShift)); }
  static constexpr int cell(double t) {
    const int i = static_cast<int>(t * kUnitScale);
    return i < CubeRootSeeds::kCells ? i : CubeRootSeeds::kCells - 1;
  }
  /// f of t, with the seed of `in`.
  static constexpr double f(double t, double in) {
    const auto& [r, inverseCube] = kUnitSeeds.pair[cell(in)];
    const double x = t * inverseCube - 1;
    double sum = 0;
    for (int k = 5; k >= 0; --k) sum = (sum + kCubeRootSeries[k]) * x;
    return r * (1 + sum);
  }
};
inline constexpr LabLines kLabLines;

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
