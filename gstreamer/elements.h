// The elements of the plugin.
#pragma once

#include <gst/gst.h>

GST_ELEMENT_REGISTER_DECLARE(kipbayer2rgb)
GST_ELEMENT_REGISTER_DECLARE(kipconvert)
