// kipbayer2rgb: video/x-bayer to RGB.

#include <gst/base/gstbasetransform.h>
#include <gst/video/gstvideopool.h>
#include <gst/video/video.h>

#include <memory>

#include "bayerconverter.h"
#include "elements.h"
#include "negotiation.h"
#include "properties.h"
#include "workers.h"

GST_DEBUG_CATEGORY_STATIC(kipbayer2rgb_debug);
#define GST_CAT_DEFAULT kipbayer2rgb_debug

namespace {

using gstkip::BayerConverter;
using gstkip::BayerFormat;
using gstkip::BayerMethod;

constexpr char kBayerCaps[] = "video/x-bayer";
constexpr char kRawCaps[] = "video/x-raw";
constexpr int kSmallest = 2;  // one cell of the pattern

// In the order of preference.
constexpr const char* k8BitFormats[] = {"RGBx", "xRGB", "BGRx", "xBGR", "RGBA", "ARGB", "BGRA", "ABGR", "RGB", "BGR"};
constexpr const char* k16BitFormats[] = {"ARGB64", "ARGB64_LE", "RGBA64_LE", "BGRA64_LE", "ABGR64_LE"};

enum Property { kMethod = 1, kThreads };

struct KipBayer2Rgb {
  GstBaseTransform transform;
  struct State* state;
};

struct State {
  gstkip::Properties properties;
  // Of the streaming thread.
  GstVideoInfo out;
  size_t pictureBytes;
  std::unique_ptr<BayerConverter> converter;
  gstkip::Workers workers;
};

struct KipBayer2RgbClass {
  GstBaseTransformClass transform;
};

G_DEFINE_TYPE(KipBayer2Rgb, kip_bayer2rgb, GST_TYPE_BASE_TRANSFORM)

State& stateOf(void* element) { return *static_cast<KipBayer2Rgb*>(element)->state; }

// Caps.

template <class Names>
GValue listOf(const Names& names) {
  GValue list = G_VALUE_INIT;
  g_value_init(&list, GST_TYPE_LIST);
  for (const char* name : names) {
    GValue value = G_VALUE_INIT;
    g_value_init(&value, G_TYPE_STRING);
    g_value_set_string(&value, name);
    gst_value_list_append_and_take_value(&list, &value);
  }
  return list;
}

/// Gives the structure these formats, the media type, and no colours, which are of the old type.
template <class Names>
void appendWith(GstCaps* caps, const GstStructure* structure, const char* media, const Names& formats) {
  GstStructure* copy = gst_structure_copy(structure);
  gst_structure_set_name(copy, media);
  gst_structure_remove_fields(copy, "colorimetry", "chroma-site", nullptr);
  GValue list = listOf(formats);
  gst_structure_take_value(copy, "format", &list);
  gst_caps_append_structure(caps, copy);
}

std::vector<const char*> bayerNames() {
  std::vector<const char*> names;
  for (const BayerFormat& format : gstkip::bayerFormats()) names.push_back(format.name.c_str());
  return names;
}

/// Whether the structure is of one format, and that has more than 8 bits.
bool isDeep(const GstStructure* structure) {
  const BayerFormat* format = gstkip::bayerFormatByName(gst_structure_get_string(structure, "format"));
  return format && format->bits > 8;
}

/// 16 bits come first for deep samples, else 8.
void appendRaw(GstCaps* caps, const GstStructure* bayer) {
  const bool deep = isDeep(bayer);
  if (deep) appendWith(caps, bayer, kRawCaps, k16BitFormats);
  appendWith(caps, bayer, kRawCaps, k8BitFormats);
  if (!deep) appendWith(caps, bayer, kRawCaps, k16BitFormats);
}

GstCaps* transformCaps(GstBaseTransform*, GstPadDirection direction, GstCaps* caps, GstCaps* filter) {
  GstCaps* other = gst_caps_new_empty();
  for (guint i = 0; i < gst_caps_get_size(caps); ++i) {
    const GstStructure* structure = gst_caps_get_structure(caps, i);
    if (direction == GST_PAD_SINK) {
      appendRaw(other, structure);
    } else {
      appendWith(other, structure, kBayerCaps, bayerNames());
    }
  }
  return gstkip::filtered(other, filter);
}

const BayerFormat* bayerOf(const GstCaps* caps, int* width, int* height) {
  const GstStructure* structure = gst_caps_get_structure(caps, 0);
  if (!gst_structure_get_int(structure, "width", width)) return nullptr;
  if (!gst_structure_get_int(structure, "height", height)) return nullptr;
  return gstkip::bayerFormatByName(gst_structure_get_string(structure, "format"));
}

gboolean getUnitSize(GstBaseTransform*, GstCaps* caps, gsize* size) {
  if (gst_structure_has_name(gst_caps_get_structure(caps, 0), kBayerCaps)) {
    int width, height;
    const BayerFormat* format = bayerOf(caps, &width, &height);
    if (format) *size = format->step(width) * height;
    return format != nullptr;
  }
  GstVideoInfo info;
  if (!gst_video_info_from_caps(&info, caps)) return FALSE;
  *size = GST_VIDEO_INFO_SIZE(&info);
  return TRUE;
}

gboolean setCaps(GstBaseTransform* transform, GstCaps* in, GstCaps* out) {
  State& state = stateOf(transform);
  int width, height;
  const BayerFormat* format = bayerOf(in, &width, &height);
  if (!format || !gst_video_info_from_caps(&state.out, out)) {
    GST_ERROR_OBJECT(transform, "not understood: %" GST_PTR_FORMAT " to %" GST_PTR_FORMAT, in, out);
    return FALSE;
  }
  state.pictureBytes = format->step(width) * height;
  state.converter = std::make_unique<BayerConverter>(*format, state.out);
  GST_DEBUG_OBJECT(transform, "%s to %s", format->name.c_str(), GST_VIDEO_INFO_NAME(&state.out));
  return TRUE;
}

/// Asks for strides and offsets of downstream's own where it can tell them.
gboolean decideAllocation(GstBaseTransform* transform, GstQuery* query) {
  GstBufferPool* pool = nullptr;
  guint size, least, most;
  if (gst_query_get_n_allocation_pools(query) > 0) {
    gst_query_parse_nth_allocation_pool(query, 0, &pool, &size, &least, &most);
  }
  const bool tells = pool && gst_query_find_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr) &&
                     gst_buffer_pool_has_option(pool, GST_BUFFER_POOL_OPTION_VIDEO_META);
  if (tells) {
    GstStructure* config = gst_buffer_pool_get_config(pool);
    gst_buffer_pool_config_add_option(config, GST_BUFFER_POOL_OPTION_VIDEO_META);
    gst_buffer_pool_set_config(pool, config);
  }
  gst_clear_object(&pool);
  return GST_BASE_TRANSFORM_CLASS(kip_bayer2rgb_parent_class)->decide_allocation(transform, query);
}

// Pictures.

KipStatus convert(State& state, const GstMapInfo& picture, GstVideoFrame* frame) {
  state.workers.setCount(state.properties[kThreads]);
  const auto method = static_cast<BayerMethod>(state.properties[kMethod]);
  return state.converter->run(picture.data, frame, method, state.workers);
}

GstFlowReturn transformPicture(GstBaseTransform* transform, GstBuffer* in, GstBuffer* out) {
  State& state = stateOf(transform);
  GstMapInfo picture;
  if (!gst_buffer_map(in, &picture, GST_MAP_READ)) {
    GST_ELEMENT_ERROR(transform, RESOURCE, READ, (nullptr), ("a picture cannot be mapped"));
    return GST_FLOW_ERROR;
  }
  GstFlowReturn flow = GST_FLOW_ERROR;
  GstVideoFrame frame;
  if (picture.size < state.pictureBytes) {
    GST_ELEMENT_ERROR(
        transform, STREAM, FORMAT, (nullptr),
        ("a picture has %" G_GSIZE_FORMAT " bytes and not %" G_GSIZE_FORMAT, picture.size, state.pictureBytes));
  } else if (!gst_video_frame_map(&frame, &state.out, out, GST_MAP_WRITE)) {
    GST_ELEMENT_ERROR(transform, RESOURCE, WRITE, (nullptr), ("a frame cannot be mapped"));
  } else {
    const KipStatus status = convert(state, picture, &frame);
    gst_video_frame_unmap(&frame);
    if (status == kipStatusOk) {
      flow = GST_FLOW_OK;
    } else {
      GST_ELEMENT_ERROR(transform, LIBRARY, FAILED, (nullptr), ("demosaicing failed with status %d", status));
    }
  }
  gst_buffer_unmap(in, &picture);
  return flow;
}

gboolean stop(GstBaseTransform* transform) {
  State& state = stateOf(transform);
  state.converter.reset();
  state.workers.stop();
  return TRUE;
}

// The object.

void finalize(GObject* object) {
  delete static_cast<KipBayer2Rgb*>(static_cast<void*>(object))->state;
  G_OBJECT_CLASS(kip_bayer2rgb_parent_class)->finalize(object);
}

void kip_bayer2rgb_init(KipBayer2Rgb* element) { element->state = new State; }

GType methodType() {
  static const GEnumValue values[] = {
      {gstkip::kBayerBilinear, "Between neighbours, green along the smaller gradient", "bilinear"},
      {gstkip::kBayerAhd, "Adaptive homogeneity-directed: slower, with fewer coloured fringes; 5 x 5 pixels or more",
       "ahd"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("KipBayerMethod", values);
  return type;
}

void installProperties(GObjectClass* object) {
  gstkip::installAccess<KipBayer2Rgb>(object);
  g_object_class_install_property(object, kMethod,
                                  g_param_spec_enum("method", "Method", "How the missing colours are interpolated",
                                                    methodType(), gstkip::kBayerBilinear, gstkip::kPropertyFlags));
  g_object_class_install_property(object, kThreads, gstkip::threadsProperty());
}

void addTemplates(GstElementClass* element) {
  GstStructure* any =
      gst_structure_new("any", "width", GST_TYPE_INT_RANGE, kSmallest, G_MAXINT, "height", GST_TYPE_INT_RANGE,
                        kSmallest, G_MAXINT, "framerate", GST_TYPE_FRACTION_RANGE, 0, 1, G_MAXINT, 1, nullptr);
  GstCaps* bayer = gst_caps_new_empty();
  appendWith(bayer, any, kBayerCaps, bayerNames());
  gstkip::addTemplate(element, "sink", GST_PAD_SINK, bayer);
  GstCaps* raw = gst_caps_new_empty();
  appendRaw(raw, any);
  gstkip::addTemplate(element, "src", GST_PAD_SRC, raw);
  gst_structure_free(any);
}

void kip_bayer2rgb_class_init(KipBayer2RgbClass* type) {
  GObjectClass* object = G_OBJECT_CLASS(type);
  object->finalize = finalize;
  installProperties(object);

  GstElementClass* element = GST_ELEMENT_CLASS(type);
  gst_element_class_set_static_metadata(
      element, "Bayer to RGB converter", "Filter/Converter/Video",
      "Demosaics the pictures of a Bayer sensor of 8 to 16 bits, whose rows are padded to multiples of 4 bytes",
      "The kipcc authors");
  addTemplates(element);

  GstBaseTransformClass* transform = GST_BASE_TRANSFORM_CLASS(type);
  transform->transform_caps = transformCaps;
  transform->get_unit_size = getUnitSize;
  transform->set_caps = setCaps;
  transform->decide_allocation = decideAllocation;
  transform->transform = transformPicture;
  transform->stop = stop;

  gst_type_mark_as_plugin_api(methodType(), static_cast<GstPluginAPIFlags>(0));
  GST_DEBUG_CATEGORY_INIT(kipbayer2rgb_debug, "kipbayer2rgb", 0, "Bayer to RGB converter");
}

}  // namespace

GST_ELEMENT_REGISTER_DEFINE(kipbayer2rgb, "kipbayer2rgb", GST_RANK_NONE, kip_bayer2rgb_get_type())
