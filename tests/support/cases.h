// The calls that tests make: a function, a size, optional arguments and a source.
#pragma once

#include <string>
#include <vector>

#include "support/images.h"

namespace kip {

constexpr uint8_t kFill = 0xA5;  ///< the known byte around, and before a call also in, the destination

struct Case {
  /// With a random source.
  Case(const Function& function, KipiSize size, const Arguments& settings, Values values = Values::kOrdinary);
  Case(const Function& function, KipiSize size, const Arguments& settings, Content source);

  const Function& function;
  KipiSize size;
  Arguments settings;
  Content source;  ///< of functions in place: what the image holds before

  std::string text() const;
};

/// The optional arguments, in words.
std::string textOf(const Function& function, const Arguments& settings);

/// Widths around the vector sizes with a few heights, one long and one high region; none below the function's minimum.
std::vector<KipiSize> awkwardSizes(const Function& function);

/// The size as the function accepts it.
KipiSize allowed(const Function& function, KipiSize size);

}  // namespace kip
