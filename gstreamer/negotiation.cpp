#include "negotiation.h"

#include <optional>

#include "formats.h"

namespace gstkip {
namespace {

bool inSystemMemory(const GstCapsFeatures* features) {
  return gst_caps_features_is_equal(features, GST_CAPS_FEATURES_MEMORY_SYSTEM_MEMORY);
}

const GstVideoFormatInfo* formatNamed(const char* name) {
  const GstVideoFormat format = name ? gst_video_format_from_string(name) : GST_VIDEO_FORMAT_UNKNOWN;
  return format == GST_VIDEO_FORMAT_UNKNOWN ? nullptr : gst_video_format_get_info(format);
}

/// Calls `look` with each format that the structure allows.
template <class Look>
void forEachFormat(const GstStructure* structure, const Look& look) {
  const GValue* value = gst_structure_get_value(structure, "format");
  const bool list = value && GST_VALUE_HOLDS_LIST(value);
  const guint count = list ? gst_value_list_get_size(value) : value ? 1 : 0;
  for (guint i = 0; i < count; ++i) {
    const GValue* name = list ? gst_value_list_get_value(value, i) : value;
    const GstVideoFormatInfo* info = G_VALUE_HOLDS_STRING(name) ? formatNamed(g_value_get_string(name)) : nullptr;
    if (info) look(info);
  }
}

struct Choice {
  guint structure;
  const GstVideoFormatInfo* format;
  Loss loss;
};

/// The format that loses least, the first of those that lose the same.
std::optional<Choice> chooseFormat(const GstVideoFormatInfo* here, GstPadDirection side, const GstCaps* there) {
  std::optional<Choice> best;
  for (guint i = 0; i < gst_caps_get_size(there); ++i) {
    forEachFormat(gst_caps_get_structure(there, i), [&](const GstVideoFormatInfo* format) {
      const Loss loss = side == GST_PAD_SINK ? lossBetween(here, format) : lossBetween(format, here);
      if (!best || loss < best->loss) best = Choice{i, format, loss};
    });
  }
  return best;
}

/// Keeps a field of text as it is on the other side, where that is allowed.
void keepField(GstStructure* structure, const GstStructure* other, const char* field) {
  const char* text = gst_structure_get_string(other, field);
  if (!text) return;
  if (gst_structure_has_field(structure, field)) {
    gst_structure_fixate_field_string(structure, field, text);
  } else {
    gst_structure_set(structure, field, G_TYPE_STRING, text, nullptr);
  }
}

/// Colours stay what they are where nobody asks for others: formats of one model have the same colorimetry, and those
/// with less chroma the same site.
void keepColours(GstStructure* structure, const GstVideoFormatInfo* format, const GstStructure* other,
                 const GstVideoFormatInfo* otherFormat) {
  constexpr unsigned kModels = GST_VIDEO_FORMAT_FLAG_YUV | GST_VIDEO_FORMAT_FLAG_RGB | GST_VIDEO_FORMAT_FLAG_GRAY;
  const unsigned common = GST_VIDEO_FORMAT_INFO_FLAGS(format) & GST_VIDEO_FORMAT_INFO_FLAGS(otherFormat) & kModels;
  if (common) keepField(structure, other, "colorimetry");
  const bool lessChroma = GST_VIDEO_FORMAT_INFO_W_SUB(format, 1) > 0 && GST_VIDEO_FORMAT_INFO_W_SUB(otherFormat, 1) > 0;
  if (common == GST_VIDEO_FORMAT_FLAG_YUV && lessChroma) keepField(structure, other, "chroma-site");
}

}  // namespace

GstCaps* filtered(GstCaps* caps, GstCaps* filter) {
  if (!filter) return caps;
  GstCaps* both = gst_caps_intersect_full(filter, caps, GST_CAPS_INTERSECT_FIRST);
  gst_caps_unref(caps);
  return both;
}

GstCaps* otherCaps(GstCaps* caps, GstCaps* filter) {
  GstCaps* other = gst_caps_new_empty();
  for (guint i = 0; i < gst_caps_get_size(caps); ++i) {
    GstCapsFeatures* features = gst_caps_get_features(caps, i);
    GstStructure* structure = gst_structure_copy(gst_caps_get_structure(caps, i));
    if (inSystemMemory(features)) {
      gst_structure_remove_fields(structure, "format", "colorimetry", "chroma-site", nullptr);
    }
    if (gst_caps_is_subset_structure_full(other, structure, features)) {
      gst_structure_free(structure);
    } else {
      gst_caps_append_structure_full(other, structure, gst_caps_features_copy(features));
    }
  }
  return filtered(other, filter);
}

GstCaps* bestCaps(GstPadDirection side, GstCaps* caps, GstCaps* others) {
  GstCaps* best = gst_caps_intersect_full(others, caps, GST_CAPS_INTERSECT_FIRST);  // passes through
  const GstStructure* here = gst_caps_get_structure(caps, 0);
  const GstVideoFormatInfo* format = formatNamed(gst_structure_get_string(here, "format"));
  const auto choice = format && gst_caps_is_empty(best) ? chooseFormat(format, side, others) : std::nullopt;
  if (choice) {
    gst_caps_unref(best);
    best = gst_caps_copy_nth(others, choice->structure);
    GstStructure* structure = gst_caps_get_structure(best, 0);
    gst_structure_set(structure, "format", G_TYPE_STRING, GST_VIDEO_FORMAT_INFO_NAME(choice->format), nullptr);
    keepColours(structure, choice->format, here, format);
  } else if (gst_caps_is_empty(best)) {
    gst_caps_replace(&best, others);
  }
  gst_caps_unref(others);
  return gst_caps_fixate(best);
}

}  // namespace gstkip
