// Conversions between colour models in real numbers: what the library's functions come close to. R, G, B and X, Y, Z
// are 0 .. 1, as is all that has no unit of its own.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>

namespace accuracy {

using Real = std::array<double, 3>;

constexpr double kWhite[3] = {0.950456, 1, 1.088754}, kWhiteU = 0.197839, kWhiteV = 0.468342;
constexpr double kDarkEnd = 0.008856, kDarkSlope = 903.3;

inline Real xyzOfRgb(const Real& c) {
  return {0.412453 * c[0] + 0.357580 * c[1] + 0.180423 * c[2], 0.212671 * c[0] + 0.715160 * c[1] + 0.072169 * c[2],
          0.019334 * c[0] + 0.119193 * c[1] + 0.950227 * c[2]};
}
inline Real rgbOfXyz(const Real& c) {
  return {3.240479 * c[0] - 1.537150 * c[1] - 0.498535 * c[2], -0.969256 * c[0] + 1.875991 * c[1] + 0.041556 * c[2],
          0.055648 * c[0] - 0.204043 * c[1] + 1.057311 * c[2]};
}

inline double lightness(double y) { return y > kDarkEnd ? 116 * std::cbrt(y) - 16 : kDarkSlope * y; }

inline Real luvOfRgb(const Real& rgb) {
  const auto [x, y, z] = xyzOfRgb(rgb);
  const double sum = x + 15 * y + 3 * z, l = lightness(y);
  if (sum == 0) return {0, 0, 0};
  return {l, 13 * l * (4 * x / sum - kWhiteU), 13 * l * (9 * y / sum - kWhiteV)};
}
inline Real rgbOfLuv(const Real& c) {
  const auto [l, u, v] = c;
  if (l <= 0) return {0, 0, 0};
  const double root = (l + 16) / 116, y = l > kDarkSlope * kDarkEnd ? root * root * root : l / kDarkSlope;
  const double u1 = u / (13 * l) + kWhiteU, v1 = v / (13 * l) + kWhiteV;
  const double x = 2.25 * y * u1 / v1;
  return rgbOfXyz({x, y, 3 * y / v1 - 5 * y - x / 3});
}

inline double labOf(double t) { return t > kDarkEnd ? std::cbrt(t) : 7.787 * t + 16 / 116.; }
inline Real labOfRgb(const Real& rgb) {
  const Real xyz = xyzOfRgb(rgb);
  const double fx = labOf(xyz[0] / kWhite[0]), fy = labOf(xyz[1]), fz = labOf(xyz[2] / kWhite[2]);
  return {lightness(xyz[1]), 500 * (fx - fy), 200 * (fy - fz)};
}
template <class Inverse>
Real rgbOfLab(const Real& lab, const Inverse& inverse) {
  const double fy = (lab[0] + 16) / 116;
  return rgbOfXyz({inverse(fy + lab[1] / 500) * kWhite[0], inverse(fy), inverse(fy - lab[2] / 200) * kWhite[2]});
}
/// The cube for every L*, as the library has it.
inline Real rgbOfLabCubes(const Real& lab) {
  return rgbOfLab(lab, [](double f) { return f * f * f; });
}
/// With a line in the dark.
inline Real rgbOfLabLines(const Real& lab) {
  return rgbOfLab(lab, [](double f) { return f * f * f > kDarkEnd ? f * f * f : (f - 16 / 116.) / 7.787; });
}

inline Real yccOfRgb(const Real& c) {
  const double l = 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
  return {0.7132668 * l, (c[2] - l) * 0.4368627 + 156 / 255., (c[0] - l) * 0.53192 + 137 / 255.};
}
inline Real rgbOfYcc(const Real& c) {
  const double l = 1.3584 * c[0], c1 = (c[1] - 156 / 255.) * 2.2179, c2 = (c[2] - 137 / 255.) * 1.8215;
  return {l + c2, l - 0.194 * c1 - 0.509 * c2, l + c1};
}

// Hue is 0 .. 1 around the circle; of two largest channels red goes before green before blue.
inline double hueOf(const Real& c, double max, double delta) {
  const auto [r, g, b] = c;
  if (delta == 0) return 0;
  const double sextants = r == max ? (g - b) / delta : g == max ? (b - r) / delta + 2 : (r - g) / delta + 4;
  return (sextants < 0 ? sextants + 6 : sextants) / 6;
}
inline Real hlsOfRgb(const Real& c) {
  const auto [min, max] = std::minmax({c[0], c[1], c[2]});
  const double sum = max + min, delta = max - min;
  if (delta == 0) return {0, sum / 2, 0};
  return {hueOf(c, max, delta), sum / 2, delta / (sum <= 1 ? sum : 2 - sum)};
}
inline Real hsvOfRgb(const Real& c) {
  const auto [min, max] = std::minmax({c[0], c[1], c[2]});
  return {hueOf(c, max, max - min), max == 0 ? 0 : (max - min) / max, max};
}
/// The pure colour of a hue.
inline Real rgbOfHue(double hue) {
  const auto channel = [&](double shift) {
    const double x = std::fmod(6 * hue + shift, 6);
    return x < 1 ? x : x < 3 ? 1 : x < 4 ? 4 - x : 0;
  };
  return {channel(2), channel(0), channel(4)};
}
inline Real rgbOfHls(const Real& c) {
  const double high = c[1] <= 0.5 ? c[1] * (1 + c[2]) : c[1] + c[2] - c[1] * c[2], low = 2 * c[1] - high;
  Real rgb = rgbOfHue(c[0]);
  for (double& v : rgb) v = low + v * (high - low);
  return rgb;
}
inline Real rgbOfHsv(const Real& c) {
  Real rgb = rgbOfHue(c[0]);
  for (double& v : rgb) v = c[2] * (1 - c[1] * (1 - v));
  return rgb;
}

inline Real grayOfRgb(const Real& c) { return {0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2]}; }

inline Real gammaForward(const Real& c) {
  Real v;
  std::transform(c.begin(), c.end(), v.begin(),
                 [](double l) { return l < 0.018 ? 4.5 * l : 1.099 * std::pow(l, 0.45) - 0.099; });
  return v;
}
inline Real gammaInverse(const Real& c) {
  Real l;
  std::transform(c.begin(), c.end(), l.begin(),
                 [](double v) { return v < 0.0812 ? v / 4.5 : std::pow((v + 0.099) / 1.099, 1 / 0.45); });
  return l;
}

/// A mild mixture of the channels; the last column is in steps of an 8-bit sample, and added to samples of any type.
constexpr float kTwist[3][4] = {{0.8f, 0.1f, 0.1f, 0}, {0.05f, 0.9f, 0.05f, 0}, {0.1f, 0, 0.85f, 0}};
inline Real twisted(const Real& c) {
  Real to;
  for (int i = 0; i < 3; ++i) to[i] = kTwist[i][0] * c[0] + kTwist[i][1] * c[1] + kTwist[i][2] * c[2];
  return to;
}

inline Real same(const Real& c) { return c; }

}  // namespace accuracy
