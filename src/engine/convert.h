// Common path of every exported function: check the arguments, walk the rows on one thread or on several, decide the
// status.
#pragma once

#include "engine/image.h"

namespace kip {

enum class StepCheck { kNone, kBeforeSize, kAfterSize };
enum class Threads { kOne, kAbove4096Pixels, kFrom128By132, kAlways };

/// What the functions of a family ask of their arguments, and what they promise about them.
struct Rules {
  int minWidth = 1;
  int minHeight = 1;
  int sizeUnit = 1;                    ///< width and height must be multiples of this
  bool planesBeforeSize = false;       ///< plane pointers are looked at before the size
  bool needsParameters = false;        ///< a null parameter pointer is refused with the image pointers
  bool emptyIsOk = false;              ///< an empty region is no error, but nothing to do
  StepCheck steps = StepCheck::kNone;  ///< whether and when steps below 1 are refused
  int stepUnit = 1;                    ///< steps are rounded down to a multiple of these bytes, a power of two
  int rowsPerGroup = 1;                ///< rows that a kernel takes at a time; rows beyond the last group stay
  int warnWidth = 1;                   ///< kipStatusOddSize when the width is no multiple of this,
  int warnHeight = 1;                  ///< or the height of this
  Threads threads = Threads::kOne;
};

/// The first failing check of a call in its family's order, or kipStatusOk.
KipStatus checkArguments(const Rules& rules, const ImageArg& src, const ImageArg& dst, KipiSize size,
                         const void* parameters = nullptr);

/// The images of a call whose arguments have been checked.
Job makeJob(const ImageArg& src, const ImageArg& dst, KipiSize size);

/// The optional arguments of a call.
struct Extras {
  int alpha = 0;
  const void* parameters = nullptr;
};

/// A whole call: checks, conversion, status.
KipStatus convert(Kernel kernel, const Rules& rules, const ImageArg& src, const ImageArg& dst, KipiSize size,
                  const Extras& extras = {});

}  // namespace kip
