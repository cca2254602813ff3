// The images that the benchmark converts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "registry/registry.h"

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
  std::string target;  ///< the SIMD target that the library is measured with
};

constexpr size_t kPage = 4096;

size_t bytesOf(const std::vector<kip::Plane>& planes);

/// Planes in one piece of memory.
class Image {
 public:
  /// The memory starts at `pageOffset` from the beginning of a page and has at least `leastBytes`. Where a store is
  /// followed by a load whose address agrees with it in the last twelve bits the processor waits, so sources and
  /// destinations had better differ in them.
  Image(kip::Sample sample, const std::vector<kip::Plane>& shape, size_t pageOffset, size_t leastBytes);

  /// A scene with smooth parts, edges and a little noise, from the lowest to the highest value of the sample type;
  /// floats from 0 to 1.
  void draw();

  const std::vector<Plane>& planes() const { return planes_; }

 private:
  kip::Sample sample_;
  std::vector<kip::Plane> shape_;
  std::vector<Plane> planes_;
  std::vector<uint8_t> memory_;
};

}  // namespace bench
