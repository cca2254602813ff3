// Which caps a converter has on one side, given those on the other.
#pragma once

#include <gst/gst.h>

namespace gstkip {

/// What is common to caps and a filter, in the filter's order; the caps where that is null. Takes the caps over.
GstCaps* filtered(GstCaps* caps, GstCaps* filter);

/// What these caps may become, in the order of preference: format and colours may change in system memory, elsewhere
/// frames only pass through. Nothing that `filter`, unless it is null, excludes.
GstCaps* otherCaps(GstCaps* caps, GstCaps* filter);

/// The best of `others`, fixed: those that pass frames through, or else the format that loses least and the colours
/// that `caps` have. `side` is the pad of the fixed `caps`. Takes `others` over.
GstCaps* bestCaps(GstPadDirection side, GstCaps* caps, GstCaps* others);

}  // namespace gstkip
