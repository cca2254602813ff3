// Images to convert: random samples that also hit the ends of the range, grey pixels and flat runs.
#pragma once

#include <cstdint>
#include <vector>

#include "support/registry.h"

namespace kip {

/// The bytes of one plane, row after row without gaps.
struct PlaneContent {
  Plane plane;
  std::vector<uint8_t> bytes;

  const uint8_t* row(int y) const { return bytes.data() + static_cast<size_t>(y) * plane.rowBytes; }
};

using Content = std::vector<PlaneContent>;

/// The same content for the same arguments, on every machine.
Content randomContent(const std::vector<Plane>& planes, Sample sample, uint32_t seed);

/// Different optional arguments to call a function with: dither methods and noise, Bayer grids, weights, ranges, alpha.
std::vector<Arguments> settingsOf(const Function& function);

}  // namespace kip
