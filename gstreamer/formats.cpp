#include "formats.h"

#include <algorithm>
#include <cstdlib>

namespace gstkip {
namespace {

constexpr Format kFormats[] = {
    {GST_VIDEO_FORMAT_RGBA64_LE, kipFormatRGBA64, {0}},
    {GST_VIDEO_FORMAT_BGRA, kipFormatBGRA, {0}},
    {GST_VIDEO_FORMAT_RGBA, kipFormatRGBA, {0}},
    {GST_VIDEO_FORMAT_ARGB, kipFormatARGB, {0}},
    {GST_VIDEO_FORMAT_ABGR, kipFormatABGR, {0}},
    {GST_VIDEO_FORMAT_VUYA, kipFormatVUYA, {0}},
    {GST_VIDEO_FORMAT_A420, kipFormatYUVA420P, {0, 1, 2, 3}},
    {GST_VIDEO_FORMAT_Y444_16LE, kipFormatYUV444P16, {0, 1, 2}},
    {GST_VIDEO_FORMAT_P016_LE, kipFormatP016, {0, 1}},
    {GST_VIDEO_FORMAT_Y444_12LE, kipFormatYUV444P12, {0, 1, 2}},
    {GST_VIDEO_FORMAT_I422_12LE, kipFormatYUV422P12, {0, 1, 2}},
    {GST_VIDEO_FORMAT_I420_12LE, kipFormatYUV420P12, {0, 1, 2}},
    {GST_VIDEO_FORMAT_P012_LE, kipFormatP012, {0, 1}},
    {GST_VIDEO_FORMAT_Y444_10LE, kipFormatYUV444P10, {0, 1, 2}},
    {GST_VIDEO_FORMAT_GBR_10LE, kipFormatGBRP10, {0, 1, 2}},
    {GST_VIDEO_FORMAT_I422_10LE, kipFormatYUV422P10, {0, 1, 2}},
    {GST_VIDEO_FORMAT_Y210, kipFormatY210, {0}},
    {GST_VIDEO_FORMAT_v210, kipFormatV210, {0}},
    {GST_VIDEO_FORMAT_I420_10LE, kipFormatYUV420P10, {0, 1, 2}},
    {GST_VIDEO_FORMAT_P010_10LE, kipFormatP010, {0, 1}},
    {GST_VIDEO_FORMAT_Y444, kipFormatYUV444P, {0, 1, 2}},
    {GST_VIDEO_FORMAT_NV24, kipFormatNV24, {0, 1}},
    {GST_VIDEO_FORMAT_GBR, kipFormatGBRP, {0, 1, 2}},
    {GST_VIDEO_FORMAT_RGBP, kipFormatGBRP, {1, 2, 0}},
    {GST_VIDEO_FORMAT_BGRP, kipFormatGBRP, {1, 0, 2}},
    {GST_VIDEO_FORMAT_BGRx, kipFormatBGR0, {0}},
    {GST_VIDEO_FORMAT_RGBx, kipFormatRGB0, {0}},
    {GST_VIDEO_FORMAT_xRGB, kipFormat0RGB, {0}},
    {GST_VIDEO_FORMAT_xBGR, kipFormat0BGR, {0}},
    {GST_VIDEO_FORMAT_RGB, kipFormatRGB24, {0}},
    {GST_VIDEO_FORMAT_BGR, kipFormatBGR24, {0}},
    {GST_VIDEO_FORMAT_Y42B, kipFormatYUV422P, {0, 1, 2}},
    {GST_VIDEO_FORMAT_NV16, kipFormatNV16, {0, 1}},
    {GST_VIDEO_FORMAT_NV61, kipFormatNV61, {0, 1}},
    {GST_VIDEO_FORMAT_YUY2, kipFormatYUYV422, {0}},
    {GST_VIDEO_FORMAT_UYVY, kipFormatUYVY422, {0}},
    {GST_VIDEO_FORMAT_YVYU, kipFormatYVYU422, {0}},
    {GST_VIDEO_FORMAT_I420, kipFormatYUV420P, {0, 1, 2}},
    {GST_VIDEO_FORMAT_YV12, kipFormatYUV420P, {0, 2, 1}},
    {GST_VIDEO_FORMAT_NV12, kipFormatNV12, {0, 1}},
    {GST_VIDEO_FORMAT_NV21, kipFormatNV21, {0, 1}},
    {GST_VIDEO_FORMAT_Y41B, kipFormatYUV411P, {0, 1, 2}},
    {GST_VIDEO_FORMAT_YUV9, kipFormatYUV410P, {0, 1, 2}},
    {GST_VIDEO_FORMAT_YVU9, kipFormatYUV410P, {0, 2, 1}},
    {GST_VIDEO_FORMAT_RGB16, kipFormatRGB565, {0}},
    {GST_VIDEO_FORMAT_BGR16, kipFormatBGR565, {0}},
    {GST_VIDEO_FORMAT_RGB15, kipFormatRGB555, {0}},
    {GST_VIDEO_FORMAT_BGR15, kipFormatBGR555, {0}},
    {GST_VIDEO_FORMAT_GRAY16_LE, kipFormatGray16, {0}},
    {GST_VIDEO_FORMAT_GRAY8, kipFormatGray8, {0}},
};

// Of YUV and Gray, the second component is the first of the chroma.
int chromaColumnsShift(const GstVideoFormatInfo* f) { return GST_VIDEO_FORMAT_INFO_W_SUB(f, 1); }
int chromaRowsShift(const GstVideoFormatInfo* f) { return GST_VIDEO_FORMAT_INFO_H_SUB(f, 1); }
bool hasColour(const GstVideoFormatInfo* f) { return !GST_VIDEO_FORMAT_INFO_IS_GRAY(f); }
bool hasAlpha(const GstVideoFormatInfo* f) { return GST_VIDEO_FORMAT_INFO_HAS_ALPHA(f); }

/// Green's, where RGB has fewer bits of red and blue.
int bitsOf(const GstVideoFormatInfo* f) {
  return GST_VIDEO_FORMAT_INFO_DEPTH(f, std::min(1u, GST_VIDEO_FORMAT_INFO_N_COMPONENTS(f) - 1));
}

KipMatrix matrixOf(GstVideoColorMatrix matrix) {
  switch (matrix) {
    case GST_VIDEO_COLOR_MATRIX_RGB:
      return kipMatrixIdentity;
    case GST_VIDEO_COLOR_MATRIX_BT601:
      return kipMatrixBT601;
    case GST_VIDEO_COLOR_MATRIX_BT709:
      return kipMatrixBT709;
    case GST_VIDEO_COLOR_MATRIX_BT2020:
      return kipMatrixBT2020;
    default:
      return kipMatrixUnspecified;
  }
}

KipRange rangeOf(const GstVideoInfo& info) {
  switch (info.colorimetry.range) {
    case GST_VIDEO_COLOR_RANGE_0_255:
      return kipRangeFull;
    case GST_VIDEO_COLOR_RANGE_16_235:
      return kipRangeLimited;
    default:
      return GST_VIDEO_INFO_IS_YUV(&info) ? kipRangeLimited : kipRangeFull;
  }
}

KipChromaSite siteOf(const GstVideoInfo& info) {
  const int site = GST_VIDEO_INFO_CHROMA_SITE(&info);
  if (site == GST_VIDEO_CHROMA_SITE_UNKNOWN || !GST_VIDEO_INFO_IS_YUV(&info)) return kipSiteUnspecified;
  if (!(site & GST_VIDEO_CHROMA_SITE_H_COSITED)) return kipSiteCenter;
  return site & GST_VIDEO_CHROMA_SITE_V_COSITED ? kipSiteTopLeft : kipSiteLeft;
}

}  // namespace

std::span<const Format> formats() { return kFormats; }

const Format* formatOf(GstVideoFormat gst) {
  const auto found =
      std::find_if(std::begin(kFormats), std::end(kFormats), [&](const Format& f) { return f.gst == gst; });
  return found == std::end(kFormats) ? nullptr : found;
}

GstCaps* capsOfFormats(const char* features) {
  GstVideoFormat all[std::size(kFormats)];
  std::transform(std::begin(kFormats), std::end(kFormats), all, [](const Format& f) { return f.gst; });
  return gst_video_make_raw_caps_with_features(all, std::size(all),
                                               features ? gst_caps_features_from_string(features) : nullptr);
}

Loss lossBetween(const GstVideoFormatInfo* from, const GstVideoFormatInfo* to) {
  const int columns = chromaColumnsShift(to) - chromaColumnsShift(from);
  const int rows = chromaRowsShift(to) - chromaRowsShift(from);
  const int alpha = hasAlpha(from) - hasAlpha(to), bits = bitsOf(from) - bitsOf(to);
  const bool yuv = GST_VIDEO_FORMAT_INFO_IS_YUV(from) && GST_VIDEO_FORMAT_INFO_IS_YUV(to);
  const bool rgb = GST_VIDEO_FORMAT_INFO_IS_RGB(from) && GST_VIDEO_FORMAT_INFO_IS_RGB(to);
  const bool gray = !hasColour(from) && !hasColour(to), sameModel = yuv || rgb || gray;
  const bool chroma = hasColour(from) && hasColour(to);
  return {
      .colour = hasColour(from) && !hasColour(to),
      .chromaRows = chroma ? std::max(rows, 0) : 0,
      .chromaColumns = chroma ? std::max(columns, 0) : 0,
      .alpha = std::max(alpha, 0),
      .bits = std::max(bits, 0),
      .model = !sameModel,
      .changes = (from != to) + std::abs(columns) + std::abs(rows) + std::abs(alpha) + std::abs(bits),
  };
}

KipPicture pictureOf(const GstVideoInfo& info) {
  const Format* format = formatOf(GST_VIDEO_INFO_FORMAT(&info));
  return {
      .format = format ? format->kip : kipFormatUnknown,
      .width = GST_VIDEO_INFO_WIDTH(&info),
      .height = GST_VIDEO_INFO_HEIGHT(&info),
      .matrix = matrixOf(info.colorimetry.matrix),
      .range = rangeOf(info),
      .site = siteOf(info),
  };
}

KipPlanes planesOf(GstVideoFrame* frame) {
  const Format* format = formatOf(GST_VIDEO_FRAME_FORMAT(frame));
  KipPlanes planes = {};
  for (unsigned p = 0; p < GST_VIDEO_FRAME_N_PLANES(frame); ++p) {
    planes.plane[p] = GST_VIDEO_FRAME_PLANE_DATA(frame, format->planes[p]);
    planes.step[p] = GST_VIDEO_FRAME_PLANE_STRIDE(frame, format->planes[p]);
  }
  return planes;
}

}  // namespace gstkip
