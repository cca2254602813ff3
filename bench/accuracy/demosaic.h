// How well demosaicing restores a picture.
#pragma once

#include <utility>
#include <vector>

namespace accuracy {

/// The peak signal-to-noise ratio in decibels of each method on one test picture: the library's, then the peers'.
std::vector<std::pair<const char*, double>> demosaicingRatios();

}  // namespace accuracy
