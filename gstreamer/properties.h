// What the elements have in common as GObjects.
#pragma once

#include <gst/gst.h>

#include <atomic>

namespace gstkip {

/// They are set once at construction, to their defaults.
constexpr auto kPropertyFlags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_CONSTRUCT |
                                                         G_PARAM_STATIC_STRINGS | GST_PARAM_MUTABLE_PLAYING);

/// Values of properties that are numbers or enumerators. Any thread may set them, and the streaming thread reads them
/// for each frame.
class Properties {
 public:
  static constexpr guint kLargestId = 4;

  unsigned operator[](guint id) const { return values_[id]; }
  void set(guint id, const GValue* value) {
    values_[id] = G_VALUE_HOLDS_ENUM(value) ? static_cast<unsigned>(g_value_get_enum(value)) : g_value_get_uint(value);
  }
  void get(guint id, GValue* value) const {
    const unsigned current = values_[id];
    G_VALUE_HOLDS_ENUM(value) ? g_value_set_enum(value, static_cast<gint>(current)) : g_value_set_uint(value, current);
  }

 private:
  std::atomic<unsigned> values_[kLargestId + 1] = {};
};

/// Gives a class access to the properties in its elements' states.
template <class Element>
void installAccess(GObjectClass* type) {
  type->set_property = [](GObject* object, guint id, const GValue* value, GParamSpec*) {
    reinterpret_cast<Element*>(object)->state->properties.set(id, value);
  };
  type->get_property = [](GObject* object, guint id, GValue* value, GParamSpec*) {
    reinterpret_cast<Element*>(object)->state->properties.get(id, value);
  };
}

inline GParamSpec* threadsProperty() {
  return g_param_spec_uint("n-threads", "Threads", "Maximum number of threads to use, 0 for one per processor", 0,
                           G_MAXUINT, 1, kPropertyFlags);
}

/// Takes the caps.
inline void addTemplate(GstElementClass* element, const char* name, GstPadDirection direction, GstCaps* caps) {
  gst_element_class_add_pad_template(element, gst_pad_template_new(name, direction, GST_PAD_ALWAYS, caps));
  gst_caps_unref(caps);
}

}  // namespace gstkip
