// The images that the benchmark converts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "support/registry.h"

namespace bench {

constexpr int kLevels = 8;  ///< that bits are reduced to

struct Plane {
  uint8_t* at = nullptr;
  int step = 0;
};

/// The images of one call, as the peers see them. Planes are tight and follow one another, as OpenCV expects.
struct Call {
  int width = 0, height = 0;
  Plane src[4], dst[4];
};

/// Planes in one piece of memory that starts at a cache line.
class Image {
 public:
  Image(kip::Sample sample, const std::vector<kip::Plane>& shape);

  /// A scene with smooth parts, edges and a little noise, from the lowest to the highest value of the sample type;
  /// floats from 0 to 1.
  void draw();

  const std::vector<Plane>& planes() const { return planes_; }
  size_t bytes() const { return bytes_; }

 private:
  kip::Sample sample_;
  std::vector<kip::Plane> shape_;
  std::vector<Plane> planes_;
  size_t bytes_ = 0;
  std::unique_ptr<uint8_t[]> memory_;
};

}  // namespace bench
