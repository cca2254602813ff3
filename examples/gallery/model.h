// Colour spaces as the gallery shows them.
#pragma once

#include <kipcc.h>

using Conversion = KipStatus (*)(const Kip8u*, int, Kip8u*, int, KipiSize);

/// A space of three interleaved 8-bit channels, and how its pages speak of it.
struct Model {
  const char* name;
  const char* text;
  const char* titles[3];
  Conversion forward, back;
  const char *forwardName, *backName;
  bool bgr = false;  ///< whether it goes with B, G, R
};
