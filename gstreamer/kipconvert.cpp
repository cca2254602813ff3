// kipconvert: raw video of any format and colorimetry to any other.

#include <gst/video/gstvideofilter.h>
#include <gst/video/video.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "conversion.h"
#include "elements.h"
#include "formats.h"
#include "negotiation.h"
#include "properties.h"

GST_DEBUG_CATEGORY_STATIC(kipconvert_debug);
#define GST_CAT_DEFAULT kipconvert_debug

namespace {

using gstkip::Conversion;

enum Property { kThreads = 1, kDither, kChromaFilter };

/// What plans depend on besides the caps.
struct Settings {
  KipDitherType dither;
  KipChromaFilter chroma;
  bool operator==(const Settings&) const = default;
};

struct State {
  gstkip::Properties properties;
  // Of the streaming thread.
  std::optional<Settings> planned;  // none without plans
  Conversion frames, fields[2];
  gstkip::Workers workers;

  Settings settings() const {
    return {static_cast<KipDitherType>(properties[kDither]), static_cast<KipChromaFilter>(properties[kChromaFilter])};
  }
};

struct KipConvert {
  GstVideoFilter filter;
  State* state;
};

struct KipConvertClass {
  GstVideoFilterClass filter;
};

G_DEFINE_TYPE(KipConvert, kip_convert, GST_TYPE_VIDEO_FILTER)

State& stateOf(void* element) { return *static_cast<KipConvert*>(element)->state; }

// Caps.

GstCaps* transformCaps(GstBaseTransform*, GstPadDirection, GstCaps* caps, GstCaps* filter) {
  return gstkip::otherCaps(caps, filter);
}

GstCaps* fixateCaps(GstBaseTransform* transform, GstPadDirection side, GstCaps* caps, GstCaps* others) {
  GstCaps* best = gstkip::bestCaps(side, caps, others);
  GST_DEBUG_OBJECT(transform, "%" GST_PTR_FORMAT " goes with %" GST_PTR_FORMAT, best, caps);
  return best;
}

// Plans.

/// Rows of one field alternate with the other's, so that 4:2:0 shares chroma with the row after the next. Its site is
/// the caps' in either field: that the chroma of MPEG-2 lies a quarter of a field's row above the middle of two in the
/// first field, and below it in the second, has no name among libkipconvert's sites.
bool fieldsMatter(const GstVideoInfo& in, const GstVideoInfo& out) {
  const bool fewerRows = GST_VIDEO_FORMAT_INFO_H_SUB(in.finfo, 1) > 0 || GST_VIDEO_FORMAT_INFO_H_SUB(out.finfo, 1) > 0;
  return fewerRows && GST_VIDEO_INFO_IS_INTERLACED(&in);
}

/// Luma of grey is taken as it is, and so is chroma of a matrix that is the same, whichever it is.
bool needsMatrix(const GstVideoInfo& in, const GstVideoInfo& out) {
  return GST_VIDEO_INFO_IS_RGB(&in) || GST_VIDEO_INFO_IS_RGB(&out) ||
         (GST_VIDEO_INFO_IS_YUV(&in) && GST_VIDEO_INFO_IS_YUV(&out) && in.colorimetry.matrix != out.colorimetry.matrix);
}

KipStatus makePlans(State& state, const GstVideoInfo& in, const GstVideoInfo& out) {
  const Settings settings = state.settings();
  const KipPlanOptions options = {
      .size = sizeof options, .chroma = settings.chroma, .dither = settings.dither, .demosaic = {}, .threads = 1};
  KipPicture from = gstkip::pictureOf(in), to = gstkip::pictureOf(out);
  if (!needsMatrix(in, out)) from.matrix = to.matrix = kipMatrixUnspecified;
  state.planned.reset();
  KipStatus status = state.frames.make(from, to, options);
  if (status == kipStatusOk && fieldsMatter(in, out)) {
    const int rows = in.height;
    for (const int field : {0, 1}) {
      from.height = to.height = (rows + 1 - field) / 2;
      if (status == kipStatusOk && from.height > 0) status = state.fields[field].make(from, to, options);
    }
  }
  if (status == kipStatusOk) state.planned = settings;
  return status;
}

bool isSame(const GstVideoInfo& in, const GstVideoInfo& out) {
  const KipPicture a = gstkip::pictureOf(in), b = gstkip::pictureOf(out);
  return GST_VIDEO_INFO_FORMAT(&in) == GST_VIDEO_INFO_FORMAT(&out) && a.width == b.width && a.height == b.height &&
         in.colorimetry.matrix == out.colorimetry.matrix && a.range == b.range && a.site == b.site;
}

/// The site that the caps tell, or GStreamer's default for such frames. gst_video_info_from_caps looks at either only
/// where a colorimetry is there, or is not.
void readSite(GstVideoInfo* info, const GstCaps* caps) {
  GstVideoInfo defaults;
  gst_video_info_set_format(&defaults, GST_VIDEO_INFO_FORMAT(info), info->width, info->height);
  const char* site = gst_structure_get_string(gst_caps_get_structure(caps, 0), "chroma-site");
  info->chroma_site = site ? gst_video_chroma_site_from_string(site) : defaults.chroma_site;
}

gboolean setInfo(GstVideoFilter* filter, GstCaps* inCaps, GstVideoInfo* in, GstCaps* outCaps, GstVideoInfo* out) {
  State& state = stateOf(filter);
  readSite(in, inCaps);
  readSite(out, outCaps);
  const bool same = isSame(*in, *out);
  gst_base_transform_set_passthrough(GST_BASE_TRANSFORM(filter), same);
  if (same) return TRUE;
  const KipStatus status = makePlans(state, *in, *out);
  if (status != kipStatusOk) {
    GST_ELEMENT_ERROR(filter, STREAM, FORMAT, ("%s", kipStatusText(status)),
                      ("%" GST_PTR_FORMAT " to %" GST_PTR_FORMAT, inCaps, outCaps));
    return FALSE;
  }
  GST_DEBUG_OBJECT(filter, "%s to %s:\n%s", GST_VIDEO_INFO_NAME(in), GST_VIDEO_INFO_NAME(out),
                   state.frames.description());
  return TRUE;
}

// Frames.

KipPlanes fieldOf(KipPlanes planes, int field) {
  for (int p = 0; p < 4; ++p) {
    planes.plane[p] = static_cast<char*>(planes.plane[p]) + field * planes.step[p];
    planes.step[p] *= 2;
  }
  return planes;
}

KipStatus convert(State& state, GstVideoFrame* in, GstVideoFrame* out) {
  const KipPlanes from = gstkip::planesOf(in), to = gstkip::planesOf(out);
  if (!GST_VIDEO_FRAME_IS_INTERLACED(in) || !fieldsMatter(in->info, out->info)) {
    return state.frames.run(from, to, state.workers);
  }
  KipStatus status = kipStatusOk;
  for (int field = 0; field < std::min(2, GST_VIDEO_FRAME_HEIGHT(in)) && status == kipStatusOk; ++field) {
    status = state.fields[field].run(fieldOf(from, field), fieldOf(to, field), state.workers);
  }
  return status;
}

GstFlowReturn transformFrame(GstVideoFilter* filter, GstVideoFrame* in, GstVideoFrame* out) {
  State& state = stateOf(filter);
  state.workers.setCount(state.properties[kThreads]);
  KipStatus status = kipStatusOk;
  if (state.planned != state.settings()) status = makePlans(state, filter->in_info, filter->out_info);
  if (status == kipStatusOk) status = convert(state, in, out);
  if (status == kipStatusOk) return GST_FLOW_OK;
  GST_ELEMENT_ERROR(filter, LIBRARY, FAILED, ("%s", kipStatusText(status)), (nullptr));
  return GST_FLOW_ERROR;
}

/// What is said of the video and its size holds after a conversion, what is said of colours does not.
gboolean transformMeta(GstBaseTransform* transform, GstBuffer* out, GstMeta* meta, GstBuffer* in) {
  constexpr std::string_view kKept[] = {GST_META_TAG_VIDEO_STR, GST_META_TAG_VIDEO_ORIENTATION_STR,
                                        GST_META_TAG_VIDEO_SIZE_STR};
  const gchar* const* tag = gst_meta_api_type_get_tags(meta->info->api);
  while (tag && *tag && std::find(std::begin(kKept), std::end(kKept), *tag) != std::end(kKept)) ++tag;
  if (tag && !*tag) return TRUE;
  return GST_BASE_TRANSFORM_CLASS(kip_convert_parent_class)->transform_meta(transform, out, meta, in);
}

gboolean stop(GstBaseTransform* transform) {
  State& state = stateOf(transform);
  state.planned.reset();
  state.frames = {};
  for (Conversion& field : state.fields) field = {};
  state.workers.stop();
  return TRUE;
}

// The object.

void finalize(GObject* object) {
  delete static_cast<KipConvert*>(static_cast<void*>(object))->state;
  G_OBJECT_CLASS(kip_convert_parent_class)->finalize(object);
}

void kip_convert_init(KipConvert* element) { element->state = new State; }

GType ditherType() {
  static const GEnumValue values[] = {{kipDitherNone, "Rounded to the nearest", "none"},
                                      {kipDitherBayer, "Ordered, in a pattern of 4 x 4", "bayer"},
                                      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("KipConvertDither", values);
  return type;
}

GType chromaType() {
  static const GEnumValue values[] = {
      {kipChromaLinear, "Interpolated and averaged linearly, by the chroma's site", "linear"},
      {kipChromaNearest, "One sample for all pixels of its group", "nearest"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("KipConvertChromaFilter", values);
  return type;
}

void installProperties(GObjectClass* object) {
  using gstkip::kPropertyFlags;
  gstkip::installAccess<KipConvert>(object);
  g_object_class_install_property(object, kThreads, gstkip::threadsProperty());
  g_object_class_install_property(
      object, kDither,
      g_param_spec_enum("dither", "Dither", "How samples lose bits", ditherType(), kipDitherBayer, kPropertyFlags));
  g_object_class_install_property(
      object, kChromaFilter,
      g_param_spec_enum("chroma-filter", "Chroma filter", "How chroma is interpolated and averaged", chromaType(),
                        kipChromaLinear, kPropertyFlags));
  gst_type_mark_as_plugin_api(ditherType(), static_cast<GstPluginAPIFlags>(0));
  gst_type_mark_as_plugin_api(chromaType(), static_cast<GstPluginAPIFlags>(0));
}

GstCaps* templateCaps() {
  GstCaps* caps = gstkip::capsOfFormats(nullptr);
  gst_caps_append(caps, gstkip::capsOfFormats("ANY"));
  return caps;
}

void kip_convert_class_init(KipConvertClass* type) {
  GObjectClass* object = G_OBJECT_CLASS(type);
  object->finalize = finalize;
  installProperties(object);

  GstElementClass* element = GST_ELEMENT_CLASS(type);
  gst_element_class_set_static_metadata(element, "Video colour converter", "Filter/Converter/Video/Colorspace",
                                        "Converts raw video between formats, matrices, ranges and chroma sites",
                                        "The kipcc authors");
  gstkip::addTemplate(element, "sink", GST_PAD_SINK, templateCaps());
  gstkip::addTemplate(element, "src", GST_PAD_SRC, templateCaps());

  GstBaseTransformClass* transform = GST_BASE_TRANSFORM_CLASS(type);
  transform->transform_caps = transformCaps;
  transform->fixate_caps = fixateCaps;
  transform->transform_meta = transformMeta;
  transform->stop = stop;
  transform->passthrough_on_same_caps = TRUE;
  transform->transform_ip_on_passthrough = FALSE;
  GstVideoFilterClass* filter = GST_VIDEO_FILTER_CLASS(type);
  filter->set_info = setInfo;
  filter->transform_frame = transformFrame;

  GST_DEBUG_CATEGORY_INIT(kipconvert_debug, "kipconvert", 0, "Video colour converter");
}

}  // namespace

GST_ELEMENT_REGISTER_DEFINE(kipconvert, "kipconvert", GST_RANK_NONE, kip_convert_get_type())
