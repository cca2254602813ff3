// Images to convert: random samples that also hit the ends of the range, grey pixels and flat runs. They are made of
// integers and of bit patterns only, so that they are the same on every machine.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "registry/registry.h"

namespace kip {

/// The bytes of one plane, row after row without gaps.
struct PlaneContent {
  Plane plane;
  std::vector<uint8_t> bytes;

  const uint8_t* row(int y) const { return bytes.data() + static_cast<size_t>(y) * plane.rowBytes; }
};

using Content = std::vector<PlaneContent>;

/// What floats an image holds. Integers are always ordinary: every value of a type is.
enum class Values {
  kOrdinary,   ///< mostly of the nominal range 0 .. 1, some beyond
  kExtreme,    ///< infinities, subnormal numbers, the largest, zeros of both signs, and any other number
  kNotNumbers  ///< NaN among those
};
const char* nameOf(Values values);

/// The values that tell kernels of this function apart.
std::span<const Values> valuesOf(const Function& function);

/// The same content for the same arguments, on every machine.
Content randomContent(const std::vector<Plane>& planes, Sample sample, uint32_t seed,
                      Values values = Values::kOrdinary);

/// Gives all NaN the same bits: which ones a function makes is not promised.
void canonicalizeNan(Content& content);

/// Different optional arguments to call a function with: dither methods and noise, Bayer grids, weights, ranges, alpha.
std::vector<Arguments> settingsOf(const Function& function);

}  // namespace kip
