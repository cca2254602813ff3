// Peers from OpenCV: cvtColor, transform, LUT and demosaicing. Its 4:2:0 encoder takes the chroma of the top-left pixel
// of a block; its 8-bit luma and chroma have 14 or 15 bits per coefficient. On the way back to RGB it takes three
// channels, also where it makes four.

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "peers/peers.h"

namespace bench {
namespace {

/// An image as OpenCV sees it. The planes of 4:2:0 are one matrix of 3/2 times the rows.
struct Shape {
  int type;
  bool planar420 = false;
};

cv::Mat matrix(const Call& call, const Plane& first, const Shape& shape) {
  return cv::Mat(shape.planar420 ? call.height * 3 / 2 : call.height, call.width, shape.type, first.at);
}

/// Planar images are read and written as interleaved ones of as many samples.
Prepare color(int code, Shape from, Shape to) {
  return [=](const Call& call) -> std::function<void()> {
    cv::setNumThreads(1);
    const cv::Mat src = matrix(call, call.src[0], from);
    const cv::Mat dst = matrix(call, call.dst[0], to);
    return [=] { cv::cvtColor(src, dst, code, dst.channels()); };
  };
}

/// A 3 x 4 matrix on three channels, or the same with a row for alpha.
Prepare transform(int type) {
  return [=](const Call& call) -> std::function<void()> {
    cv::setNumThreads(1);
    const int channels = CV_MAT_CN(type);
    cv::Mat weights = cv::Mat::eye(channels, channels + 1, CV_32F) * 0.75f + 0.0625f;
    const cv::Mat src = matrix(call, call.src[0], {type}), dst = matrix(call, call.dst[0], {type});
    return [=] { cv::transform(src, dst, weights); };
  };
}

Prepare lookUp(int type) {
  return [=](const Call& call) -> std::function<void()> {
    cv::setNumThreads(1);
    cv::Mat entries(1, 256, CV_8U);
    for (int i = 0; i < 256; ++i) entries.at<uint8_t>(i) = static_cast<uint8_t>(255 - i);
    const cv::Mat src = matrix(call, call.src[0], {type}), dst = matrix(call, call.dst[0], {type});
    return [=] { cv::LUT(src, entries, dst); };
  };
}

constexpr Result kSame = Result::kExact, kCoarse = Result::kCoarser;
constexpr Shape kC1 = {CV_8UC1}, kC2 = {CV_8UC2}, kC3 = {CV_8UC3}, kC4 = {CV_8UC4}, kI420 = {CV_8UC1, true};
constexpr Shape k16C1 = {CV_16UC1}, k16C3 = {CV_16UC3}, k16C4 = {CV_16UC4};
constexpr Shape kF1 = {CV_32FC1}, kF3 = {CV_32FC3}, kF4 = {CV_32FC4};

// clang-format off
const PeerTable table("OpenCV", {
  // RGB, YUV and YCbCr
  {{"kipiRGBToYUV_8u_C3R", "kipiRGBToYUV_8u_C3P3R", "kipiRGBToYUV_8u_P3R"}, "RGB2YUV", kSame, color(cv::COLOR_RGB2YUV, kC3, kC3)},
  {{"kipiRGBToYUV_8u_AC4R", "kipiRGBToYUV_8u_AC4P4R"}, "RGB2YUV", kSame, color(cv::COLOR_RGB2YUV, kC4, kC3)},
  {{"kipiYUVToRGB_8u_C3R", "kipiYUVToRGB_8u_P3C3R", "kipiYUVToRGB_8u_P3R"}, "YUV2RGB", kSame, color(cv::COLOR_YUV2RGB, kC3, kC3)},
  {{"kipiYUVToRGB_8u_AC4R"}, "YUV2RGB", kSame, color(cv::COLOR_YUV2RGB, kC3, kC4)},
  {{"kipiRGBToYCbCr_8u_C3R", "kipiRGBToYCbCr_8u_C3P3R", "kipiRGBToYCbCr_8u_P3R"}, "RGB2YCrCb", kSame, color(cv::COLOR_RGB2YCrCb, kC3, kC3)},
  {{"kipiRGBToYCbCr_8u_AC4R", "kipiRGBToYCbCr_8u_AC4P3R"}, "RGB2YCrCb", kSame, color(cv::COLOR_RGB2YCrCb, kC4, kC3)},
  {{"kipiYCbCrToRGB_8u_C3R", "kipiYCbCrToRGB_8u_P3C3R", "kipiYCbCrToRGB_8u_P3R"}, "YCrCb2RGB", kSame, color(cv::COLOR_YCrCb2RGB, kC3, kC3)},
  {{"kipiYCbCrToRGB_8u_AC4R"}, "YCrCb2RGB", kSame, color(cv::COLOR_YCrCb2RGB, kC3, kC4)},
  {{"kipiYCbCrToRGB_8u_P3C4R"}, "YCrCb2RGB", kSame, color(cv::COLOR_YCrCb2RGB, kC3, kC4)},
  {{"kipiYCbCrToBGR_8u_P3C3R", "kipiYCbCrToBGR_709CSC_8u_P3C3R"}, "YCrCb2BGR", kSame, color(cv::COLOR_YCrCb2BGR, kC3, kC3)},
  {{"kipiYCbCrToBGR_8u_P3C4R", "kipiYCbCrToBGR_709CSC_8u_P3C4R"}, "YCrCb2BGR", kSame, color(cv::COLOR_YCrCb2BGR, kC3, kC4)},

  // Subsampled chroma
  {{"kipiRGBToYUV420_8u_C3P3R", "kipiRGBToYUV420_8u_C3P3", "kipiRGBToYCbCr420_8u_C3P3R"}, "RGB2YUV_I420", kCoarse, color(cv::COLOR_RGB2YUV_I420, kC3, kI420)},
  {{"kipiBGRToYCbCr420_8u_C3P3R", "kipiBGRToYCrCb420_8u_C3P3R", "kipiBGRToYCbCr420_709CSC_8u_C3P3R", "kipiBGRToYCrCb420_709CSC_8u_C3P3R"},
    "BGR2YUV_I420", kCoarse, color(cv::COLOR_BGR2YUV_I420, kC3, kI420)},
  {{"kipiBGRToYUV420_8u_AC4P3R", "kipiBGRToYCbCr420_8u_AC4P3R", "kipiBGRToYCrCb420_8u_AC4P3R", "kipiBGRToYCbCr420_709CSC_8u_AC4P3R",
    "kipiBGRToYCrCb420_709CSC_8u_AC4P3R", "kipiBGRToYCbCr420_709HDTV_8u_AC4P3R"}, "BGRA2YUV_I420", kCoarse, color(cv::COLOR_BGRA2YUV_I420, kC4, kI420)},
  {{"kipiRGBToYCrCb420_8u_AC4P3R"}, "RGBA2YUV_I420", kCoarse, color(cv::COLOR_RGBA2YUV_I420, kC4, kI420)},
  {{"kipiYUV420ToRGB_8u_P3C3R", "kipiYUV420ToRGB_8u_P3C3", "kipiYCbCr420ToRGB_8u_P3C3R"}, "YUV2RGB_I420", kSame, color(cv::COLOR_YUV2RGB_I420, kI420, kC3)},
  {{"kipiYUV420ToBGR_8u_P3C3R", "kipiYCbCr420ToBGR_8u_P3C3R", "kipiYCbCr420ToBGR_709CSC_8u_P3C3R"}, "YUV2BGR_I420", kSame, color(cv::COLOR_YUV2BGR_I420, kI420, kC3)},
  {{"kipiYUV420ToRGB_8u_P3AC4R", "kipiYCrCb420ToRGB_8u_P3C4R"}, "YUV2RGBA_I420", kSame, color(cv::COLOR_YUV2RGBA_I420, kI420, kC4)},
  {{"kipiYCbCr420ToBGR_8u_P3C4R", "kipiYCbCr420ToBGR_709HDTV_8u_P3C4R"}, "YUV2BGRA_I420", kSame, color(cv::COLOR_YUV2BGRA_I420, kI420, kC4)},
  {{"kipiYUV422ToRGB_8u_C2C3R", "kipiYCbCr422ToRGB_8u_C2C3R"}, "YUV2RGB_YUY2", kSame, color(cv::COLOR_YUV2RGB_YUY2, kC2, kC3)},
  {{"kipiYCrCb422ToRGB_8u_C2C3R"}, "YUV2RGB_YVYU", kSame, color(cv::COLOR_YUV2RGB_YVYU, kC2, kC3)},
  {{"kipiYCbCr422ToBGR_8u_C2C3R"}, "YUV2BGR_YUY2", kSame, color(cv::COLOR_YUV2BGR_YUY2, kC2, kC3)},
  {{"kipiYCbCr422ToBGR_8u_C2C4R"}, "YUV2BGRA_YUY2", kSame, color(cv::COLOR_YUV2BGRA_YUY2, kC2, kC4)},
  {{"kipiCbYCr422ToRGB_8u_C2C3R"}, "YUV2RGB_UYVY", kSame, color(cv::COLOR_YUV2RGB_UYVY, kC2, kC3)},
  {{"kipiCbYCr422ToBGR_709HDTV_8u_C2C3R"}, "YUV2BGR_UYVY", kSame, color(cv::COLOR_YUV2BGR_UYVY, kC2, kC3)},
  {{"kipiCbYCr422ToBGR_8u_C2C4R", "kipiCbYCr422ToBGR_709HDTV_8u_C2C4R"}, "YUV2BGRA_UYVY", kSame, color(cv::COLOR_YUV2BGRA_UYVY, kC2, kC4)},

  // Packed 16-bit RGB
  {{"kipiRGBToRGB565_8u16u_C3R", "kipiBGRToBGR565_8u16u_C3R"}, "BGR2BGR565", kSame, color(cv::COLOR_BGR2BGR565, kC3, kC2)},
  {{"kipiRGB565ToRGB_16u8u_C3R", "kipiBGR565ToBGR_16u8u_C3R"}, "BGR5652BGR", kSame, color(cv::COLOR_BGR5652BGR, kC2, kC3)},

  // CIE spaces
  {{"kipiRGBToXYZ_8u_C3R"}, "RGB2XYZ", kSame, color(cv::COLOR_RGB2XYZ, kC3, kC3)},
  {{"kipiRGBToXYZ_8u_AC4R"}, "RGB2XYZ", kSame, color(cv::COLOR_RGB2XYZ, kC4, kC3)},
  {{"kipiRGBToXYZ_16u_C3R"}, "RGB2XYZ", kSame, color(cv::COLOR_RGB2XYZ, k16C3, k16C3)},
  {{"kipiRGBToXYZ_16u_AC4R"}, "RGB2XYZ", kSame, color(cv::COLOR_RGB2XYZ, k16C4, k16C3)},
  {{"kipiRGBToXYZ_32f_C3R"}, "RGB2XYZ", kSame, color(cv::COLOR_RGB2XYZ, kF3, kF3)},
  {{"kipiRGBToXYZ_32f_AC4R"}, "RGB2XYZ", kSame, color(cv::COLOR_RGB2XYZ, kF4, kF3)},
  {{"kipiXYZToRGB_8u_C3R"}, "XYZ2RGB", kSame, color(cv::COLOR_XYZ2RGB, kC3, kC3)},
  {{"kipiXYZToRGB_8u_AC4R"}, "XYZ2RGB", kSame, color(cv::COLOR_XYZ2RGB, kC3, kC4)},
  {{"kipiXYZToRGB_16u_C3R"}, "XYZ2RGB", kSame, color(cv::COLOR_XYZ2RGB, k16C3, k16C3)},
  {{"kipiXYZToRGB_16u_AC4R"}, "XYZ2RGB", kSame, color(cv::COLOR_XYZ2RGB, k16C3, k16C4)},
  {{"kipiXYZToRGB_32f_C3R"}, "XYZ2RGB", kSame, color(cv::COLOR_XYZ2RGB, kF3, kF3)},
  {{"kipiXYZToRGB_32f_AC4R"}, "XYZ2RGB", kSame, color(cv::COLOR_XYZ2RGB, kF3, kF4)},
  {{"kipiRGBToLUV_8u_C3R"}, "LRGB2Luv", kSame, color(cv::COLOR_LRGB2Luv, kC3, kC3)},
  {{"kipiRGBToLUV_8u_AC4R"}, "LRGB2Luv", kSame, color(cv::COLOR_LRGB2Luv, kC4, kC3)},
  {{"kipiRGBToLUV_32f_C3R"}, "LRGB2Luv", kSame, color(cv::COLOR_LRGB2Luv, kF3, kF3)},
  {{"kipiRGBToLUV_32f_AC4R"}, "LRGB2Luv", kSame, color(cv::COLOR_LRGB2Luv, kF4, kF3)},
  {{"kipiLUVToRGB_8u_C3R"}, "Luv2LRGB", kSame, color(cv::COLOR_Luv2LRGB, kC3, kC3)},
  {{"kipiLUVToRGB_8u_AC4R"}, "Luv2LRGB", kSame, color(cv::COLOR_Luv2LRGB, kC3, kC4)},
  {{"kipiLUVToRGB_32f_C3R"}, "Luv2LRGB", kSame, color(cv::COLOR_Luv2LRGB, kF3, kF3)},
  {{"kipiLUVToRGB_32f_AC4R"}, "Luv2LRGB", kSame, color(cv::COLOR_Luv2LRGB, kF3, kF4)},
  {{"kipiBGRToLab_8u_C3R", "kipiBGRToLab_8u16u_C3R"}, "LBGR2Lab", kSame, color(cv::COLOR_LBGR2Lab, kC3, kC3)},
  {{"kipiBGRToLab_8u_C3R", "kipiBGRToLab_8u16u_C3R"}, "BGR2Lab", kSame, color(cv::COLOR_BGR2Lab, kC3, kC3)},
  {{"kipiLabToBGR_8u_C3R", "kipiLabToBGR_16u8u_C3R"}, "Lab2LBGR", kSame, color(cv::COLOR_Lab2LBGR, kC3, kC3)},

  // Hue spaces
  {{"kipiRGBToHLS_8u_C3R", "kipiBGRToHLS_8u_C3P3R", "kipiBGRToHLS_8u_P3C3R", "kipiBGRToHLS_8u_P3R"}, "RGB2HLS_FULL", kSame, color(cv::COLOR_RGB2HLS_FULL, kC3, kC3)},
  {{"kipiRGBToHLS_8u_AC4R", "kipiBGRToHLS_8u_AC4R", "kipiBGRToHLS_8u_AC4P4R", "kipiBGRToHLS_8u_AP4C4R", "kipiBGRToHLS_8u_AP4R"},
    "RGB2HLS_FULL", kSame, color(cv::COLOR_RGB2HLS_FULL, kC4, kC3)},
  {{"kipiRGBToHLS_32f_C3R"}, "RGB2HLS", kSame, color(cv::COLOR_RGB2HLS, kF3, kF3)},
  {{"kipiRGBToHLS_32f_AC4R"}, "RGB2HLS", kSame, color(cv::COLOR_RGB2HLS, kF4, kF3)},
  {{"kipiHLSToRGB_8u_C3R", "kipiHLSToBGR_8u_C3P3R", "kipiHLSToBGR_8u_P3C3R", "kipiHLSToBGR_8u_P3R"}, "HLS2RGB_FULL", kSame, color(cv::COLOR_HLS2RGB_FULL, kC3, kC3)},
  {{"kipiHLSToRGB_8u_AC4R", "kipiHLSToBGR_8u_AC4P4R", "kipiHLSToBGR_8u_AP4C4R", "kipiHLSToBGR_8u_AP4R"}, "HLS2RGB_FULL", kSame, color(cv::COLOR_HLS2RGB_FULL, kC3, kC4)},
  {{"kipiHLSToRGB_32f_C3R"}, "HLS2RGB", kSame, color(cv::COLOR_HLS2RGB, kF3, kF3)},
  {{"kipiHLSToRGB_32f_AC4R"}, "HLS2RGB", kSame, color(cv::COLOR_HLS2RGB, kF3, kF4)},
  {{"kipiRGBToHSV_8u_C3R"}, "RGB2HSV_FULL", kSame, color(cv::COLOR_RGB2HSV_FULL, kC3, kC3)},
  {{"kipiRGBToHSV_8u_AC4R"}, "RGB2HSV_FULL", kSame, color(cv::COLOR_RGB2HSV_FULL, kC4, kC3)},
  {{"kipiHSVToRGB_8u_C3R"}, "HSV2RGB_FULL", kSame, color(cv::COLOR_HSV2RGB_FULL, kC3, kC3)},
  {{"kipiHSVToRGB_8u_AC4R"}, "HSV2RGB_FULL", kSame, color(cv::COLOR_HSV2RGB_FULL, kC3, kC4)},

  // Grey, colour twist, gamma
  {{"kipiRGBToGray_8u_C3C1R", "kipiColorToGray_8u_C3C1R"}, "RGB2GRAY", kSame, color(cv::COLOR_RGB2GRAY, kC3, kC1)},
  {{"kipiRGBToGray_8u_AC4C1R", "kipiColorToGray_8u_AC4C1R"}, "RGBA2GRAY", kSame, color(cv::COLOR_RGBA2GRAY, kC4, kC1)},
  {{"kipiRGBToGray_16u_C3C1R", "kipiColorToGray_16u_C3C1R"}, "RGB2GRAY", kSame, color(cv::COLOR_RGB2GRAY, k16C3, k16C1)},
  {{"kipiRGBToGray_16u_AC4C1R", "kipiColorToGray_16u_AC4C1R"}, "RGBA2GRAY", kSame, color(cv::COLOR_RGBA2GRAY, k16C4, k16C1)},
  {{"kipiRGBToGray_32f_C3C1R", "kipiColorToGray_32f_C3C1R"}, "RGB2GRAY", kSame, color(cv::COLOR_RGB2GRAY, kF3, kF1)},
  {{"kipiRGBToGray_32f_AC4C1R", "kipiColorToGray_32f_AC4C1R"}, "RGBA2GRAY", kSame, color(cv::COLOR_RGBA2GRAY, kF4, kF1)},
  {{"kipiColorTwist32f_8u_C3R", "kipiColorTwist32f_8u_P3R", "kipiColorTwist32f_8u_C3IR", "kipiColorTwist32f_8u_IP3R"}, "transform", kCoarse, transform(CV_8UC3)},
  {{"kipiColorTwist32f_8u_AC4R", "kipiColorTwist32f_8u_AC4IR"}, "transform", kCoarse, transform(CV_8UC4)},
  {{"kipiColorTwist32f_16u_C3R", "kipiColorTwist32f_16u_P3R", "kipiColorTwist32f_16u_C3IR", "kipiColorTwist32f_16u_IP3R"}, "transform", kSame, transform(CV_16UC3)},
  {{"kipiColorTwist32f_16s_C3R", "kipiColorTwist32f_16s_P3R", "kipiColorTwist32f_16s_C3IR", "kipiColorTwist32f_16s_IP3R"}, "transform", kSame, transform(CV_16SC3)},
  {{"kipiColorTwist_32f_C3R", "kipiColorTwist_32f_P3R", "kipiColorTwist_32f_C3IR", "kipiColorTwist_32f_IP3R"}, "transform", kSame, transform(CV_32FC3)},
  {{"kipiColorTwist32f_16u_AC4R", "kipiColorTwist32f_16u_AC4IR"}, "transform", kSame, transform(CV_16UC4)},
  {{"kipiColorTwist32f_16s_AC4R", "kipiColorTwist32f_16s_AC4IR"}, "transform", kSame, transform(CV_16SC4)},
  {{"kipiColorTwist_32f_AC4R", "kipiColorTwist_32f_C4R", "kipiColorTwist_32f_AC4IR"}, "transform", kSame, transform(CV_32FC4)},
  {{"kipiGammaFwd_8u_C3R", "kipiGammaInv_8u_C3R", "kipiGammaFwd_8u_P3R", "kipiGammaInv_8u_P3R", "kipiGammaFwd_8u_C3IR", "kipiGammaInv_8u_C3IR",
    "kipiGammaFwd_8u_IP3R", "kipiGammaInv_8u_IP3R"}, "LUT", kSame, lookUp(CV_8UC3)},
  {{"kipiGammaFwd_8u_AC4R", "kipiGammaInv_8u_AC4R", "kipiGammaFwd_8u_AC4IR", "kipiGammaInv_8u_AC4IR"}, "LUT", kSame, lookUp(CV_8UC4)},

  // Demosaicing
  {{"kipiCFAToRGB_8u_C1C3R"}, "BayerBG2BGR", kCoarse, color(cv::COLOR_BayerBG2BGR, kC1, kC3)},
  {{"kipiCFAToRGB_8u_C1C3R"}, "BayerBG2BGR_EA", kCoarse, color(cv::COLOR_BayerBG2BGR_EA, kC1, kC3)},
  {{"kipiCFAToRGB_16u_C1C3R"}, "BayerBG2BGR", kCoarse, color(cv::COLOR_BayerBG2BGR, k16C1, k16C3)},
  {{"kipiCFAToRGB_16u_C1C3R"}, "BayerBG2BGR_EA", kCoarse, color(cv::COLOR_BayerBG2BGR_EA, k16C1, k16C3)},
});
// clang-format on

}  // namespace
}  // namespace bench
