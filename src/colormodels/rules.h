// What the interleaved colour models ask of their arguments.
#pragma once

#include "engine/convert.h"

namespace kip {

/// Large regions are split over threads.
constexpr Rules kSplit = {.threads = Threads::kAbove4096Pixels};

/// The same, and steps are taken in whole samples.
template <class T>
constexpr Rules kWholeSteps = {.stepUnit = sizeof(T), .threads = Threads::kAbove4096Pixels};

}  // namespace kip
