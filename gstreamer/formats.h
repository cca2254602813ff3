// GStreamer's terms for video in those of libkipconvert.
#pragma once

#include <gst/video/video.h>

#include <span>

#include "kipconvert.h"

namespace gstkip {

/// A format that both sides know.
struct Format {
  GstVideoFormat gst;
  KipFormat kip;
  int planes[4];  // GStreamer's number for each of kip's planes
};

/// All of them, those that lose least first.
std::span<const Format> formats();

/// Null for formats that libkipconvert lacks.
const Format* formatOf(GstVideoFormat gst);

/// Caps of these formats, in any size, with all the memory that `features` names, or in system memory for null.
GstCaps* capsOfFormats(const char* features);

/// Formats are compared by what is lost on the way from one to the other, the worst first; smaller is better.
struct Loss {
  int colour, chromaRows, chromaColumns, alpha, bits, model, changes;
  auto operator<=>(const Loss&) const = default;
};
Loss lossBetween(const GstVideoFormatInfo* from, const GstVideoFormatInfo* to);

/// What frames of this kind are, taken from their caps or else from GStreamer's defaults. A matrix that kip lacks is
/// unspecified.
KipPicture pictureOf(const GstVideoInfo& info);

/// Where a frame lies.
KipPlanes planesOf(GstVideoFrame* frame);

}  // namespace gstkip
