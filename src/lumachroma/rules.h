// What luma-chroma conversions ask of their arguments, and what they promise. Named after the sizes: any, or whole
// pairs, fours and 2 x 2 groups of pixels that share chroma, where at least one is asked for; planes are looked at
// before the size where the name says Planes.
#pragma once

#include "engine/convert.h"

namespace kip {

constexpr Rules kAnySize = {};
constexpr Rules kPositiveSteps = {.steps = StepCheck::kAfterSize};
constexpr Rules kPairs = {.minWidth = 2};
constexpr Rules kFoursWarn = {.minWidth = 4, .warnWidth = 4};
constexpr Rules kGroups420 = {.minWidth = 2, .minHeight = 2, .rowsPerGroup = 2, .warnWidth = 2, .warnHeight = 2};

/// 4:2:0 of any size, of which the whole groups are converted.
constexpr Rules kAnySize420 = {.rowsPerGroup = 2, .warnWidth = 2, .warnHeight = 2};

constexpr Rules kPlanes = {.planesBeforeSize = true};
constexpr Rules kPlanePairs = {.minWidth = 2, .planesBeforeSize = true};
constexpr Rules kPlanePairsWarn = {.minWidth = 2, .planesBeforeSize = true, .warnWidth = 2};
constexpr Rules kPlaneFours = {.minWidth = 4, .planesBeforeSize = true};
constexpr Rules kPlaneFoursWarn = {.minWidth = 4, .planesBeforeSize = true, .warnWidth = 4};

}  // namespace kip
