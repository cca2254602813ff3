#include "elements.h"

namespace {

gboolean registerElements(GstPlugin* plugin) {
  const bool bayer = GST_ELEMENT_REGISTER(kipbayer2rgb, plugin), convert = GST_ELEMENT_REGISTER(kipconvert, plugin);
  return bayer && convert;
}

}  // namespace

GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, kipcc, "Exact and fast colour conversion and demosaicing",
                  registerElements, PLUGIN_VERSION, "BSD", "gstreamer1.0-kipcc", "https://kipcc.example")
