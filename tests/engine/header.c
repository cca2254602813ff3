/* The public headers in plain C, with every warning on: this file only has to compile. */
#include "kipcc.h"
#include "kipconvert.h"
#include "kipcore.h"

#include "kipcc.h"
#include "kipconvert.h"
#include "kipcore.h"

KipStatus convertFromC(const Kip8u* planes[3], Kip8u* pixels, KipiSize size);
KipStatus convertFromC(const Kip8u* planes[3], Kip8u* pixels, KipiSize size) {
  return ownGetNumThreads() > 0 ? kipiYUVToRGB_8u_P3C3R(planes, size.width, pixels, 3 * size.width, size)
                                : kipStatusBadArgument;
}
