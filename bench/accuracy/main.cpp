// kipcc_accuracy: how far conversions are from their formulas in real numbers, and those of other libraries beside
// them, as the tables of docs/accuracy.md. Sources are all 2^24 triples of 8-bit samples, or as many that stand
// for the same colours in other samples; those whose result is out of range are left out.
//
// kipcc_accuracy PAGE measures a part of them, and fails unless the page has those figures.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "conversions.h"
#include "demosaic.h"
#include "measure.h"
#ifdef KIPCC_ACCURACY_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

using namespace accuracy;

constexpr Scale kUnit8 = {{1 / 255., 1 / 255., 1 / 255.}, {}, 0, 255};
constexpr Scale kUnit16 = {{1 / 65535., 1 / 65535., 1 / 65535.}, {}, 0, 65535};
constexpr Scale kUnitFloat = {{1, 1, 1}, {}, 0, 1};
constexpr Scale kLuv8 = {{100 / 255., 354 / 255., 262 / 255.}, {0, -134, -140}, 0, 255};
constexpr Scale kLuv16 = {{100 / 65535., 354 / 65535., 262 / 65535.}, {0, -134, -140}, 0, 65535};
constexpr Scale kLuvFloat = {{1, 1, 1}, {}, -1000, 1000};
constexpr Scale kLab8 = {{100 / 255., 1, 1}, {0, -128, -128}, 0, 255};
constexpr Scale kLab16 = {{100 / 65535., 1 / 255., 1 / 255.}, {0, -128, -128}, 0, 65535};
constexpr Scale kHue8 = {{1 / 255., 1 / 255., 1 / 255.}, {}, 0, 255, true};
constexpr Scale kHue16 = {{1 / 65535., 1 / 65535., 1 / 65535.}, {}, 0, 65535, true};
constexpr Scale kHueFloat = {{1, 1, 1}, {}, 0, 1, true};
constexpr Scale kRgb565 = {{1 / 31., 1 / 63., 1 / 31.}, {}, 0, 63};

// OpenCV's hues: 256 around the circle, but 255 in the other direction; degrees.
[[maybe_unused]] constexpr Scale kPeersHue8 = {{1 / 256., 1 / 255., 1 / 255.}, {}, 0, 255, true};
[[maybe_unused]] constexpr Scale kPeersHueFloat = {{1 / 360., 1, 1}, {}, 0, 360, true};

// ---------------------------------------------------------------------------------------------------------------------
// Functions with more arguments, or with packed results

template <class T, KipStatus (*kFunction)(const T*, int, T*, int, KipiSize, const Kip32f (*)[4])>
KipStatus twist(const T* src, int srcStep, T* dst, int dstStep, KipiSize size) {
  return kFunction(src, srcStep, dst, dstStep, size, kTwist);
}

template <KipStatus (*kFunction)(const Kip32f*, int, Kip32f*, int, KipiSize, Kip32f, Kip32f)>
KipStatus gammaOfUnit(const Kip32f* src, int srcStep, Kip32f* dst, int dstStep, KipiSize size) {
  return kFunction(src, srcStep, dst, dstStep, size, 0, 1);
}

/// The fields of RGB565 as three samples.
void unpack(const std::vector<Kip16u>& packed, Kip8u* fields) {
  for (const Kip16u pixel : packed) {
    *fields++ = pixel & 31;
    *fields++ = pixel >> 5 & 63;
    *fields++ = static_cast<Kip8u>(pixel >> 11);
  }
}
KipStatus toRgb565(const Kip8u* src, int srcStep, Kip8u* dst, int, KipiSize size) {
  std::vector<Kip16u> packed(static_cast<size_t>(size.width) * size.height);
  const KipStatus status = kipiRGBToRGB565_8u16u_C3R(src, srcStep, packed.data(), size.width * 2, size);
  unpack(packed, dst);
  return status;
}

// ---------------------------------------------------------------------------------------------------------------------
// OpenCV

#ifdef KIPCC_ACCURACY_OPENCV
template <class T, size_t kChannels>
cv::Mat matrix(const Pixels<T, kChannels>& pixels) {
  return cv::Mat(kSide, kSide, CV_MAKETYPE(cv::DataType<T>::depth, kChannels),
                 const_cast<std::array<T, kChannels>*>(pixels.data()));
}
template <class S, class D, size_t kChannels, int kCode>
void cvtColor(const Pixels<S>& source, Pixels<D, kChannels>& result) {
  cv::Mat to = matrix(result);
  cv::cvtColor(matrix(source), to, kCode, kChannels);
}
template <class T>
void transform(const Pixels<T>& source, Pixels<T>& result) {
  cv::Mat to = matrix(result);
  cv::transform(matrix(source), to, cv::Mat(3, 4, CV_32F, const_cast<float*>(kTwist[0])));
}
void toRgb565OfPeer(const Pixels<Kip8u>& source, Pixels<Kip8u>& result) {
  cv::Mat to;
  cv::cvtColor(matrix(source), to, cv::COLOR_BGR2BGR565);
  unpack(std::vector<Kip16u>(to.ptr<Kip16u>(), to.ptr<Kip16u>() + kSide * kSide), result[0].data());
}
#define PEER(S, D, channels, code) cvtColor<S, D, channels, cv::COLOR_##code>
#define PEER_FUNCTION(function) function
#else
#define PEER(S, D, channels, code) nullptr
#define PEER_FUNCTION(function) nullptr
#endif

// ---------------------------------------------------------------------------------------------------------------------
// The tables

/// Prints the rows of tables; or compares the library's figures with those of a page.
class Page {
 public:
  explicit Page(const char* path) : checks_(path != nullptr) {
    std::ifstream file(checks_ ? path : "");
    for (std::string line; std::getline(file, line);) addRow(line);
  }

  void title(const std::string& text) const {
    if (!checks_) std::printf("\n%s\n", text.c_str());
  }

  template <class S, class D, size_t kChannels = 3>
  void report(const Conversion<S, D, kChannels>& conversion) {
    report(conversion.name, accuracyOf(conversion, stride()));
  }
  void report(const PictureConversion& conversion) { report(conversion.name(), accuracyOf(conversion, stride())); }

  void reportRatio(const char* name, double decibels) {
    if (checks_) return compare(name, 0, decibels, 0.997, 1.003);
    std::printf("| %s | %.1f |\n", name, decibels);
  }

  int failures() const { return failures_; }

 private:
  /// A row's first cell, and the numbers of the others, such as 0.25 or 1.1 x 10^-7.
  void addRow(const std::string& line) {
    std::istringstream cells(line);
    std::string cell, name;
    std::getline(cells, cell, '|');
    std::getline(cells, name, '|');
    while (std::getline(cells, cell, '|')) {
      char* end;
      double value = std::strtod(cell.c_str(), &end);
      const std::string power = " x 10^";
      if (end == cell.c_str()) continue;
      if (std::string(end).rfind(power, 0) == 0) {
        value *= std::pow(10, std::strtod(end + power.size(), nullptr));
      }
      rows_[name].push_back(value);
    }
  }

  /// Of the pixels a part is measured when figures are compared.
  int stride() const { return checks_ ? 17 : 1; }

  void report(const std::string& name, const Accuracy& accuracy) {
    checks_ ? compareRow(name, accuracy) : printRow(name, accuracy);
  }

  static void printRow(const std::string& name, const Accuracy& accuracy) {
    std::printf("| %s |", name.c_str());
    for (const std::optional<Errors>& errors : accuracy) {
      errors ? std::printf(" %.2g | %.2g |", errors->largest, errors->mean()) : std::printf(" | |");
    }
    std::printf("\n");
    std::fflush(stdout);
  }

  /// The part that is measured need not have the largest error of all.
  void compareRow(const std::string& name, const Accuracy& accuracy) {
    size_t column = 0;
    for (const std::optional<Errors>& errors : accuracy) {
      if (!errors) continue;
      compare(name, column++, errors->largest, 0, 1.05);
      compare(name, column++, errors->mean(), 0.95, 1.05);
    }
  }

  void compare(const std::string& name, size_t column, double value, double least, double most) {
    const std::vector<double>& row = rows_[" " + name + " "];
    if (row.size() > column && value >= least * row[column] && value <= most * row[column]) return;
    std::printf("%s: %.3g is not on the page\n", name.c_str(), value);
    ++failures_;
  }

  bool checks_;
  std::map<std::string, std::vector<double>> rows_;
  int failures_ = 0;
};

std::string titleOf(KipFormat format) {
  std::string names = "| conversion |", line = "\n|---|";
  for (const std::string library : librariesOf(format)) {
    names += " " + library + ": largest | mean |";
    line += "---|---|";
  }
  return names + line;
}

}  // namespace

int main(int count, char** arguments) {
  Page page(count > 1 ? arguments[1] : nullptr);
  page.title("| conversion | largest | mean | OpenCV: largest | mean |\n|---|---|---|---|---|");
  // clang-format off
  page.report<Kip8u, Kip8u>({"RGB to XYZ 8u", kipiRGBToXYZ_8u_C3R, xyzOfRgb, kUnit8, kUnit8, kUnit8, {PEER(Kip8u, Kip8u, 3, RGB2XYZ)}});
  page.report<Kip8u, Kip8u>({"XYZ to RGB 8u", kipiXYZToRGB_8u_C3R, rgbOfXyz, kUnit8, kUnit8, kUnit8, {PEER(Kip8u, Kip8u, 3, XYZ2RGB)}});
  page.report<Kip16u, Kip16u>({"RGB to XYZ 16u", kipiRGBToXYZ_16u_C3R, xyzOfRgb, kUnit8, kUnit16, kUnit16, {PEER(Kip16u, Kip16u, 3, RGB2XYZ)}});
  page.report<Kip16u, Kip16u>({"XYZ to RGB 16u", kipiXYZToRGB_16u_C3R, rgbOfXyz, kUnit8, kUnit16, kUnit16, {PEER(Kip16u, Kip16u, 3, XYZ2RGB)}});
  page.report<Kip32f, Kip32f>({"RGB to XYZ 32f", kipiRGBToXYZ_32f_C3R, xyzOfRgb, kUnit8, kUnitFloat, kUnitFloat, {PEER(Kip32f, Kip32f, 3, RGB2XYZ)}});
  page.report<Kip32f, Kip32f>({"XYZ to RGB 32f", kipiXYZToRGB_32f_C3R, rgbOfXyz, kUnit8, kUnitFloat, kUnitFloat, {PEER(Kip32f, Kip32f, 3, XYZ2RGB)}});
  page.report<Kip8u, Kip8u>({"RGB to LUV 8u", kipiRGBToLUV_8u_C3R, luvOfRgb, kUnit8, kUnit8, kLuv8, {PEER(Kip8u, Kip8u, 3, LRGB2Luv)}});
  page.report<Kip8u, Kip8u>({"LUV to RGB 8u", kipiLUVToRGB_8u_C3R, rgbOfLuv, kLuv8, kLuv8, kUnit8, {PEER(Kip8u, Kip8u, 3, Luv2LRGB)}});
  page.report<Kip16u, Kip16u>({"RGB to LUV 16u", kipiRGBToLUV_16u_C3R, luvOfRgb, kUnit8, kUnit16, kLuv16});
  page.report<Kip16u, Kip16u>({"LUV to RGB 16u", kipiLUVToRGB_16u_C3R, rgbOfLuv, kLuv8, kLuv16, kUnit16});
  page.report<Kip32f, Kip32f>({"RGB to LUV 32f", kipiRGBToLUV_32f_C3R, luvOfRgb, kUnit8, kUnitFloat, kLuvFloat, {PEER(Kip32f, Kip32f, 3, LRGB2Luv)}});
  page.report<Kip32f, Kip32f>({"LUV to RGB 32f", kipiLUVToRGB_32f_C3R, rgbOfLuv, kLuv8, kUnitFloat, kUnitFloat, {PEER(Kip32f, Kip32f, 3, Luv2LRGB)}});
  page.report<Kip8u, Kip8u>({"BGR to Lab 8u", kipiBGRToLab_8u_C3R, labOfRgb, kUnit8, kUnit8, kLab8, {PEER(Kip8u, Kip8u, 3, LBGR2Lab)}});
  page.report<Kip8u, Kip8u>({"Lab to BGR 8u", kipiLabToBGR_8u_C3R, rgbOfLabCubes, kLab8, kLab8, kUnit8, {PEER(Kip8u, Kip8u, 3, Lab2LBGR), rgbOfLabLines}});
  page.report<Kip8u, Kip16u>({"BGR to Lab 8u16u", kipiBGRToLab_8u16u_C3R, labOfRgb, kUnit8, kUnit8, kLab16});
  page.report<Kip16u, Kip8u>({"Lab to BGR 16u8u", kipiLabToBGR_16u8u_C3R, rgbOfLabCubes, kLab8, kLab16, kUnit8});
  page.report<Kip8u, Kip8u>({"RGB to YCC 8u", kipiRGBToYCC_8u_C3R, yccOfRgb, kUnit8, kUnit8, kUnit8});
  page.report<Kip8u, Kip8u>({"YCC to RGB 8u", kipiYCCToRGB_8u_C3R, rgbOfYcc, kUnit8, kUnit8, kUnit8});
  page.report<Kip16u, Kip16u>({"RGB to YCC 16u", kipiRGBToYCC_16u_C3R, yccOfRgb, kUnit8, kUnit16, kUnit16});
  page.report<Kip16u, Kip16u>({"YCC to RGB 16u", kipiYCCToRGB_16u_C3R, rgbOfYcc, kUnit8, kUnit16, kUnit16});
  page.report<Kip32f, Kip32f>({"RGB to YCC 32f", kipiRGBToYCC_32f_C3R, yccOfRgb, kUnit8, kUnitFloat, kUnitFloat});
  page.report<Kip32f, Kip32f>({"YCC to RGB 32f", kipiYCCToRGB_32f_C3R, rgbOfYcc, kUnit8, kUnitFloat, kUnitFloat});
  page.report<Kip8u, Kip8u>({"RGB to HLS 8u", kipiRGBToHLS_8u_C3R, hlsOfRgb, kUnit8, kUnit8, kHue8, {PEER(Kip8u, Kip8u, 3, RGB2HLS_FULL), nullptr, &kPeersHue8}});
  page.report<Kip8u, Kip8u>({"HLS to RGB 8u", kipiHLSToRGB_8u_C3R, rgbOfHls, kHue8, kHue8, kUnit8, {PEER(Kip8u, Kip8u, 3, HLS2RGB_FULL)}});
  page.report<Kip8u, Kip8u>({"RGB to HSV 8u", kipiRGBToHSV_8u_C3R, hsvOfRgb, kUnit8, kUnit8, kHue8, {PEER(Kip8u, Kip8u, 3, RGB2HSV_FULL), nullptr, &kPeersHue8}});
  page.report<Kip8u, Kip8u>({"HSV to RGB 8u", kipiHSVToRGB_8u_C3R, rgbOfHsv, kHue8, kHue8, kUnit8, {PEER(Kip8u, Kip8u, 3, HSV2RGB_FULL)}});
  page.report<Kip16u, Kip16u>({"RGB to HLS 16u", kipiRGBToHLS_16u_C3R, hlsOfRgb, kUnit8, kUnit16, kHue16});
  page.report<Kip16u, Kip16u>({"HLS to RGB 16u", kipiHLSToRGB_16u_C3R, rgbOfHls, kHue8, kHue16, kUnit16});
  page.report<Kip16u, Kip16u>({"RGB to HSV 16u", kipiRGBToHSV_16u_C3R, hsvOfRgb, kUnit8, kUnit16, kHue16});
  page.report<Kip16u, Kip16u>({"HSV to RGB 16u", kipiHSVToRGB_16u_C3R, rgbOfHsv, kHue8, kHue16, kUnit16});
  page.report<Kip32f, Kip32f>({"RGB to HLS 32f", kipiRGBToHLS_32f_C3R, hlsOfRgb, kUnit8, kUnitFloat, kHueFloat, {PEER(Kip32f, Kip32f, 3, RGB2HLS), nullptr, &kPeersHueFloat}});
  page.report<Kip32f, Kip32f>({"HLS to RGB 32f", kipiHLSToRGB_32f_C3R, rgbOfHls, kHue8, kHueFloat, kUnitFloat});
  page.report<Kip8u, Kip8u, 1>({"RGB to grey 8u", kipiRGBToGray_8u_C3C1R, grayOfRgb, kUnit8, kUnit8, kUnit8, {PEER(Kip8u, Kip8u, 1, RGB2GRAY)}});
  page.report<Kip16u, Kip16u, 1>({"RGB to grey 16u", kipiRGBToGray_16u_C3C1R, grayOfRgb, kUnit8, kUnit16, kUnit16, {PEER(Kip16u, Kip16u, 1, RGB2GRAY)}});
  page.report<Kip32f, Kip32f, 1>({"RGB to grey 32f", kipiRGBToGray_32f_C3C1R, grayOfRgb, kUnit8, kUnitFloat, kUnitFloat, {PEER(Kip32f, Kip32f, 1, RGB2GRAY)}});
  page.report<Kip8u, Kip8u>({"colour twist 8u", twist<Kip8u, kipiColorTwist32f_8u_C3R>, twisted, kUnit8, kUnit8, kUnit8, {PEER_FUNCTION(transform<Kip8u>)}});
  page.report<Kip16u, Kip16u>({"colour twist 16u", twist<Kip16u, kipiColorTwist32f_16u_C3R>, twisted, kUnit8, kUnit16, kUnit16, {PEER_FUNCTION(transform<Kip16u>)}});
  page.report<Kip32f, Kip32f>({"colour twist 32f", twist<Kip32f, kipiColorTwist_32f_C3R>, twisted, kUnit8, kUnitFloat, kUnitFloat, {PEER_FUNCTION(transform<Kip32f>)}});
  page.report<Kip8u, Kip8u>({"gamma 8u", kipiGammaFwd_8u_C3R, gammaForward, kUnit8, kUnit8, kUnit8});
  page.report<Kip8u, Kip8u>({"inverse gamma 8u", kipiGammaInv_8u_C3R, gammaInverse, kUnit8, kUnit8, kUnit8});
  page.report<Kip16u, Kip16u>({"gamma 16u", kipiGammaFwd_16u_C3R, gammaForward, kUnit8, kUnit16, kUnit16});
  page.report<Kip16u, Kip16u>({"inverse gamma 16u", kipiGammaInv_16u_C3R, gammaInverse, kUnit8, kUnit16, kUnit16});
  page.report<Kip32f, Kip32f>({"gamma 32f", gammaOfUnit<kipiGammaFwd_32f_C3R>, gammaForward, kUnit8, kUnitFloat, kUnitFloat});
  page.report<Kip32f, Kip32f>({"inverse gamma 32f", gammaOfUnit<kipiGammaInv_32f_C3R>, gammaInverse, kUnit8, kUnitFloat, kUnitFloat});
  page.report<Kip8u, Kip8u>({"RGB to RGB565", toRgb565, same, kUnit8, kUnit8, kRgb565, {PEER_FUNCTION(toRgb565OfPeer)}});
  // clang-format on
  for (const KipFormat format : {kipFormatYUV444P, kipFormatYUV420P, kipFormatGray8}) {
    page.title(titleOf(format));
    for (const PictureConversion& conversion : pictureConversions(format)) page.report(conversion);
  }
  page.title("| demosaicing | PSNR, dB |\n|---|---|");
  for (const auto& [name, ratio] : demosaicingRatios()) page.reportRatio(name, ratio);
  return page.failures() ? EXIT_FAILURE : EXIT_SUCCESS;
}
