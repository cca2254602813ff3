// kipcc_accuracy: how far conversions between colour models are from their formulas in real numbers, and OpenCV's
// beside them, as the tables of docs/accuracy.md. Sources are all 2^24 triples of 8-bit samples, or as many that stand
// for the same colours in other samples; those whose result is out of range are left out.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <type_traits>
#include <vector>

#include "kipcc.h"
#ifdef KIPCC_ACCURACY_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

using Real = std::array<double, 3>;

// ---------------------------------------------------------------------------------------------------------------------
// The formulas. R, G, B and X, Y, Z are 0 .. 1.

constexpr double kWhite[3] = {0.950456, 1, 1.088754}, kWhiteU = 0.197839, kWhiteV = 0.468342;
constexpr double kDarkEnd = 0.008856, kDarkSlope = 903.3;

Real xyzOfRgb(const Real& c) {
  return {0.412453 * c[0] + 0.357580 * c[1] + 0.180423 * c[2], 0.212671 * c[0] + 0.715160 * c[1] + 0.072169 * c[2],
          0.019334 * c[0] + 0.119193 * c[1] + 0.950227 * c[2]};
}
Real rgbOfXyz(const Real& c) {
  return {3.240479 * c[0] - 1.537150 * c[1] - 0.498535 * c[2], -0.969256 * c[0] + 1.875991 * c[1] + 0.041556 * c[2],
          0.055648 * c[0] - 0.204043 * c[1] + 1.057311 * c[2]};
}

double lightness(double y) { return y > kDarkEnd ? 116 * std::cbrt(y) - 16 : kDarkSlope * y; }

Real luvOfRgb(const Real& rgb) {
  const auto [x, y, z] = xyzOfRgb(rgb);
  const double sum = x + 15 * y + 3 * z, l = lightness(y);
  if (sum == 0) return {0, 0, 0};
  return {l, 13 * l * (4 * x / sum - kWhiteU), 13 * l * (9 * y / sum - kWhiteV)};
}
Real rgbOfLuv(const Real& c) {
  const auto [l, u, v] = c;
  if (l <= 0) return {0, 0, 0};
  const double root = (l + 16) / 116, y = l > kDarkSlope * kDarkEnd ? root * root * root : l / kDarkSlope;
  const double u1 = u / (13 * l) + kWhiteU, v1 = v / (13 * l) + kWhiteV;
  const double x = 2.25 * y * u1 / v1;
  return rgbOfXyz({x, y, 3 * y / v1 - 5 * y - x / 3});
}

double labOf(double t) { return t > kDarkEnd ? std::cbrt(t) : 7.787 * t + 16 / 116.; }
Real labOfRgb(const Real& rgb) {
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
Real rgbOfLabCubes(const Real& lab) {
  return rgbOfLab(lab, [](double f) { return f * f * f; });
}
/// With a line in the dark.
Real rgbOfLabLines(const Real& lab) {
  return rgbOfLab(lab, [](double f) { return f * f * f > kDarkEnd ? f * f * f : (f - 16 / 116.) / 7.787; });
}

Real yccOfRgb(const Real& c) {
  const double l = 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
  return {0.7132668 * l, (c[2] - l) * 0.4368627 + 156 / 255., (c[0] - l) * 0.53192 + 137 / 255.};
}
Real rgbOfYcc(const Real& c) {
  const double l = 1.3584 * c[0], c1 = (c[1] - 156 / 255.) * 2.2179, c2 = (c[2] - 137 / 255.) * 1.8215;
  return {l + c2, l - 0.194 * c1 - 0.509 * c2, l + c1};
}

// ---------------------------------------------------------------------------------------------------------------------
// The samples

/// How samples stand for channels: value = sample x step + zero, with samples of least .. most.
struct Scale {
  double step[3], zero[3], least, most;

  Real value(const Real& sample) const {
    return {sample[0] * step[0] + zero[0], sample[1] * step[1] + zero[1], sample[2] * step[2] + zero[2]};
  }
  Real sample(const Real& value) const {
    return {(value[0] - zero[0]) / step[0], (value[1] - zero[1]) / step[1], (value[2] - zero[2]) / step[2]};
  }
  bool holds(const Real& value) const {
    for (double s : sample(value)) {
      if (!(s >= least && s <= most)) return false;
    }
    return true;
  }
};
constexpr Scale kUnit8 = {{1 / 255., 1 / 255., 1 / 255.}, {}, 0, 255};
constexpr Scale kUnit16 = {{1 / 65535., 1 / 65535., 1 / 65535.}, {}, 0, 65535};
constexpr Scale kUnitFloat = {{1, 1, 1}, {}, 0, 1};
constexpr Scale kLuv8 = {{100 / 255., 354 / 255., 262 / 255.}, {0, -134, -140}, 0, 255};
constexpr Scale kLuv16 = {{100 / 65535., 354 / 65535., 262 / 65535.}, {0, -134, -140}, 0, 65535};
constexpr Scale kLuvFloat = {{1, 1, 1}, {}, -1000, 1000};
constexpr Scale kLab8 = {{100 / 255., 1, 1}, {0, -128, -128}, 0, 255};
constexpr Scale kLab16 = {{100 / 65535., 1 / 255., 1 / 255.}, {0, -128, -128}, 0, 65535};

// ---------------------------------------------------------------------------------------------------------------------
// The measurement

struct Errors {
  double largest = 0, sum = 0;
  size_t samples = 0;

  void add(double error) {
    largest = std::max(largest, error), sum += error;
    ++samples;
  }
};

template <class T>
using Pixels = std::vector<std::array<T, 3>>;
constexpr int kSide = 256;  // of an image with all the triples that have one first sample

template <class S, class D>
struct Conversion {
  const char* name;
  KipStatus (*convert)(const S*, int, D*, int, KipiSize);
  Real (*formula)(const Real&);
  const Scale &bytes, &source, &result;  ///< `bytes` is the scale of the 8-bit samples that sources are made of
  int peer = -1;                         ///< the conversion code of OpenCV
  Real (*peerFormula)(const Real&) = formula;

  bool fromBgr() const { return std::strncmp(name, "BGR", 3) == 0; }
  bool toBgr() const { return std::strstr(name, "to BGR"); }
};

template <class T>
std::array<T, 3> ordered(const std::array<T, 3>& px, bool reverse) {
  return reverse ? std::array<T, 3>{px[2], px[1], px[0]} : px;
}

template <class S, class D>
Pixels<S> sourceOf(const Conversion<S, D>& conversion, int first) {
  Pixels<S> pixels;
  for (int i = 0; i < kSide * kSide; ++i) {
    const Real real =
        conversion.source.sample(conversion.bytes.value({double(first), double(i >> 8), double(i & 255)}));
    const auto sample = [](double v) { return static_cast<S>(std::is_integral_v<S> ? std::round(v) : v); };
    pixels.push_back(ordered<S>({sample(real[0]), sample(real[1]), sample(real[2])}, conversion.fromBgr()));
  }
  return pixels;
}

template <class S, class D>
void measure(const Conversion<S, D>& conversion, const Pixels<S>& source, const Pixels<D>& result,
             Real (*formula)(const Real&), Errors& errors) {
  for (size_t i = 0; i < source.size(); ++i) {
    const auto px = ordered(source[i], conversion.fromBgr()), is = ordered(result[i], conversion.toBgr());
    const Real value = formula(conversion.source.value({double(px[0]), double(px[1]), double(px[2])}));
    if (!conversion.result.holds(value)) continue;
    const Real should = conversion.result.sample(value);
    for (int c = 0; c < 3; ++c) errors.add(std::fabs(is[c] - should[c]));
  }
}

#ifdef KIPCC_ACCURACY_OPENCV
template <class T>
cv::Mat matrix(const Pixels<T>& pixels) {
  return cv::Mat(kSide, kSide, CV_MAKETYPE(cv::DataType<T>::depth, 3), const_cast<std::array<T, 3>*>(pixels.data()));
}
template <class S, class D>
bool convertWithPeer(const Conversion<S, D>& conversion, const Pixels<S>& source, Pixels<D>& result) {
  if (conversion.peer < 0) return false;
  cv::Mat to = matrix(result);
  cv::cvtColor(matrix(source), to, conversion.peer, 3);
  return true;
}
#else
template <class S, class D>
bool convertWithPeer(const Conversion<S, D>&, const Pixels<S>&, Pixels<D>&) {
  return false;
}
#endif

void print(const Errors& errors) {
  if (errors.samples == 0) {
    std::printf(" | |");
  } else {
    std::printf(" %.2g | %.2g |", errors.largest, errors.sum / static_cast<double>(errors.samples));
  }
}

template <class S, class D>
void report(const Conversion<S, D>& conversion) {
  Errors ours, peers;
  constexpr int kSourceStep = kSide * sizeof(std::array<S, 3>), kStep = kSide * sizeof(std::array<D, 3>);
  Pixels<D> result(kSide * kSide);
  for (int first = 0; first < 256; ++first) {
    const Pixels<S> source = sourceOf(conversion, first);
    conversion.convert(source[0].data(), kSourceStep, result[0].data(), kStep, {kSide, kSide});
    measure(conversion, source, result, conversion.formula, ours);
    if (convertWithPeer(conversion, source, result)) {
      measure(conversion, source, result, conversion.peerFormula, peers);
    }
  }
  std::printf("| %s |", conversion.name);
  print(ours), print(peers);
  std::printf("\n");
  std::fflush(stdout);
}

#ifdef KIPCC_ACCURACY_OPENCV
#define KIPCC_PEER(code) cv::COLOR_##code
#else
#define KIPCC_PEER(code) -1
#endif

}  // namespace

int main() {
  std::printf("| conversion | largest | mean | OpenCV: largest | mean |\n|---|---|---|---|---|\n");
  // clang-format off
  report<Kip8u, Kip8u>({"RGB to XYZ 8u", kipiRGBToXYZ_8u_C3R, xyzOfRgb, kUnit8, kUnit8, kUnit8, KIPCC_PEER(RGB2XYZ)});
  report<Kip8u, Kip8u>({"XYZ to RGB 8u", kipiXYZToRGB_8u_C3R, rgbOfXyz, kUnit8, kUnit8, kUnit8, KIPCC_PEER(XYZ2RGB)});
  report<Kip16u, Kip16u>({"RGB to XYZ 16u", kipiRGBToXYZ_16u_C3R, xyzOfRgb, kUnit8, kUnit16, kUnit16, KIPCC_PEER(RGB2XYZ)});
  report<Kip16u, Kip16u>({"XYZ to RGB 16u", kipiXYZToRGB_16u_C3R, rgbOfXyz, kUnit8, kUnit16, kUnit16, KIPCC_PEER(XYZ2RGB)});
  report<Kip32f, Kip32f>({"RGB to XYZ 32f", kipiRGBToXYZ_32f_C3R, xyzOfRgb, kUnit8, kUnitFloat, kUnitFloat, KIPCC_PEER(RGB2XYZ)});
  report<Kip32f, Kip32f>({"XYZ to RGB 32f", kipiXYZToRGB_32f_C3R, rgbOfXyz, kUnit8, kUnitFloat, kUnitFloat, KIPCC_PEER(XYZ2RGB)});
  report<Kip8u, Kip8u>({"RGB to LUV 8u", kipiRGBToLUV_8u_C3R, luvOfRgb, kUnit8, kUnit8, kLuv8, KIPCC_PEER(LRGB2Luv)});
  report<Kip8u, Kip8u>({"LUV to RGB 8u", kipiLUVToRGB_8u_C3R, rgbOfLuv, kLuv8, kLuv8, kUnit8, KIPCC_PEER(Luv2LRGB)});
  report<Kip16u, Kip16u>({"RGB to LUV 16u", kipiRGBToLUV_16u_C3R, luvOfRgb, kUnit8, kUnit16, kLuv16});
  report<Kip16u, Kip16u>({"LUV to RGB 16u", kipiLUVToRGB_16u_C3R, rgbOfLuv, kLuv8, kLuv16, kUnit16});
  report<Kip32f, Kip32f>({"RGB to LUV 32f", kipiRGBToLUV_32f_C3R, luvOfRgb, kUnit8, kUnitFloat, kLuvFloat, KIPCC_PEER(LRGB2Luv)});
  report<Kip32f, Kip32f>({"LUV to RGB 32f", kipiLUVToRGB_32f_C3R, rgbOfLuv, kLuv8, kUnitFloat, kUnitFloat, KIPCC_PEER(Luv2LRGB)});
  report<Kip8u, Kip8u>({"BGR to Lab 8u", kipiBGRToLab_8u_C3R, labOfRgb, kUnit8, kUnit8, kLab8, KIPCC_PEER(LBGR2Lab)});
  report<Kip8u, Kip8u>({"Lab to BGR 8u", kipiLabToBGR_8u_C3R, rgbOfLabCubes, kLab8, kLab8, kUnit8, KIPCC_PEER(Lab2LBGR), rgbOfLabLines});
  report<Kip8u, Kip16u>({"BGR to Lab 8u16u", kipiBGRToLab_8u16u_C3R, labOfRgb, kUnit8, kUnit8, kLab16});
  report<Kip16u, Kip8u>({"Lab to BGR 16u8u", kipiLabToBGR_16u8u_C3R, rgbOfLabCubes, kLab8, kLab16, kUnit8});
  report<Kip8u, Kip8u>({"RGB to YCC 8u", kipiRGBToYCC_8u_C3R, yccOfRgb, kUnit8, kUnit8, kUnit8});
  report<Kip8u, Kip8u>({"YCC to RGB 8u", kipiYCCToRGB_8u_C3R, rgbOfYcc, kUnit8, kUnit8, kUnit8});
  report<Kip16u, Kip16u>({"RGB to YCC 16u", kipiRGBToYCC_16u_C3R, yccOfRgb, kUnit8, kUnit16, kUnit16});
  report<Kip16u, Kip16u>({"YCC to RGB 16u", kipiYCCToRGB_16u_C3R, rgbOfYcc, kUnit8, kUnit16, kUnit16});
  report<Kip32f, Kip32f>({"RGB to YCC 32f", kipiRGBToYCC_32f_C3R, yccOfRgb, kUnit8, kUnitFloat, kUnitFloat});
  report<Kip32f, Kip32f>({"YCC to RGB 32f", kipiYCCToRGB_32f_C3R, rgbOfYcc, kUnit8, kUnitFloat, kUnitFloat});
  // clang-format on
}
