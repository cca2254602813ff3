#include "demosaic.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "kipcc.h"
#ifdef KIPCC_ACCURACY_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace accuracy {
namespace {

constexpr int kSide = 512, kMargin = 8;  // pixels; the margin is not measured
constexpr KipiSize kSize = {kSide, kSide};
using Picture = std::vector<std::array<Kip8u, 3>>;

/// Detail of all directions and of all sizes down to three pixels, which fades from grey into colours that change
/// slowly, as in photographs; and edges between colours.
Picture testPicture() {
  Picture picture;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const double u = double(x) / kSide - 0.5, v = double(y) / kSide - 0.5;
      const double rings = std::cos(kSide / 3. * std::numbers::pi * (u * u + v * v) * 1.4);
      const bool inside = std::fabs(u + 0.4 * v) < 0.08;  // a slanted bar
      const std::array<double, 3> tint = {0.5 + 0.3 * std::cos(7 * u), 0.5 + 0.3 * std::sin(5 * v),
                                          0.5 + 0.3 * std::cos(6 * (u - v))};
      std::array<Kip8u, 3> pixel;
      for (int c = 0; c < 3; ++c) {
        const double value = (inside ? 1 - tint[c] : tint[c]) + 0.2 * rings;
        pixel[c] = static_cast<Kip8u>(std::lround(255 * std::fmin(std::fmax(value, 0), 1)));
      }
      picture.push_back(pixel);
    }
  }
  return picture;
}

/// What a sensor with red in its first corner sees of it.
std::vector<Kip8u> mosaicOf(const Picture& picture) {
  std::vector<Kip8u> mosaic;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) mosaic.push_back(picture[y * kSide + x][(y & 1) + (x & 1)]);
  }
  return mosaic;
}

double ratio(const Picture& picture, const Picture& result) {
  double squares = 0;
  for (int y = kMargin; y < kSide - kMargin; ++y) {
    for (int x = kMargin; x < kSide - kMargin; ++x) {
      for (int c = 0; c < 3; ++c) {
        const double error = double(picture[y * kSide + x][c]) - result[y * kSide + x][c];
        squares += error * error;
      }
    }
  }
  const double samples = 3. * (kSide - 2 * kMargin) * (kSide - 2 * kMargin);
  return 10 * std::log10(255 * 255 / (squares / samples));
}

}  // namespace

std::vector<std::pair<const char*, double>> demosaicingRatios() {
  const Picture picture = testPicture();
  std::vector<Kip8u> mosaic = mosaicOf(picture);
  Picture result(picture.size());
  std::vector<std::pair<const char*, double>> ratios;
  const KipiRect all = {0, 0, kSide, kSide};
  kipiCFAToRGB_8u_C1C3R(mosaic.data(), all, kSize, kSide, result[0].data(), kSide * 3, kipiBayerRGGB);
  ratios.emplace_back("CFAToRGB", ratio(picture, result));
  kipiDemosaicAHD_8u_C1C3R(mosaic.data(), all, kSize, kSide, result[0].data(), kSide * 3, kipiBayerRGGB, nullptr, 0);
  ratios.emplace_back("DemosaicAHD", ratio(picture, result));
#ifdef KIPCC_ACCURACY_OPENCV
  const auto add = [&](const char* name, int code) {
    cv::Mat to(kSide, kSide, CV_8UC3, result.data());
    cv::demosaicing(cv::Mat(kSide, kSide, CV_8UC1, mosaic.data()), to, code);
    ratios.emplace_back(name, ratio(picture, result));
  };
  // OpenCV names the grid by its second row and column.
  add("OpenCV, bilinear", cv::COLOR_BayerBG2RGB);
  add("OpenCV, edge aware", cv::COLOR_BayerBG2RGB_EA);
#endif
  return ratios;
}

}  // namespace accuracy
