// What the elements have in common as GObjects.
#pragma once

#include <gst/gst.h>

namespace gstkip {

constexpr auto kPropertyFlags =
    static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | GST_PARAM_MUTABLE_PLAYING);

constexpr unsigned kDefaultThreads = 1;

inline GParamSpec* threadsProperty() {
  return g_param_spec_uint("n-threads", "Threads", "Maximum number of threads to use, 0 for one per processor", 0,
                           G_MAXUINT, kDefaultThreads, kPropertyFlags);
}

/// Takes the caps.
inline void addTemplate(GstElementClass* element, const char* name, GstPadDirection direction, GstCaps* caps) {
  gst_element_class_add_pad_template(element, gst_pad_template_new(name, direction, GST_PAD_ALWAYS, caps));
  gst_caps_unref(caps);
}

}  // namespace gstkip
