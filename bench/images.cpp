#include "images.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace bench {
namespace {

/// The cosine and the sine of 60 t^2 for t from 0 to 1, of which a zone plate is made.
class Chirp {
 public:
  explicit Chirp(size_t count) {
    for (size_t i = 0; i < count; ++i) {
      const double t = double(i) / double(count);
      cos.push_back(std::cos(60 * t * t));
      sin.push_back(std::sin(60 * t * t));
    }
  }
  std::vector<double> cos, sin;
};

/// A zone plate over a gradient, with noise of 3 %.
template <class T>
void drawPlane(const kip::Plane& shape, const Plane& plane) {
  constexpr bool kFloat = std::is_floating_point_v<T>;
  const double lowest = kFloat ? 0 : double(std::numeric_limits<T>::lowest());
  const double highest = kFloat ? 1 : double(std::numeric_limits<T>::max());
  std::vector<T> row(shape.rowBytes / sizeof(T));
  const Chirp across(row.size()), down(shape.rows);
  uint32_t random = 1;
  for (int y = 0; y < shape.rows; ++y) {
    for (size_t x = 0; x < row.size(); ++x) {
      random = random * 1664525u + 1013904223u;
      const double noise = double(random >> 8) / (1 << 24);
      const double rings = across.cos[x] * down.cos[y] - across.sin[x] * down.sin[y];
      const double gradient = 0.5 * (double(x) / double(row.size()) + double(y) / shape.rows);
      const double value = 0.03 * noise + 0.97 * (0.25 * (1 + rings) + 0.5 * gradient);
      row[x] = static_cast<T>(lowest + value * (highest - lowest));
    }
    std::memcpy(plane.at + y * static_cast<ptrdiff_t>(plane.step), row.data(), shape.rowBytes);
  }
}

size_t bytesOf(const kip::Plane& plane) { return static_cast<size_t>(plane.rowBytes) * plane.rows; }

}  // namespace

size_t bytesOf(const std::vector<kip::Plane>& planes) {
  size_t bytes = 0;
  for (const kip::Plane& plane : planes) bytes += bytesOf(plane);
  return bytes;
}

Image::Image(kip::Sample sample, const std::vector<kip::Plane>& shape, size_t pageOffset, size_t leastBytes)
    : sample_(sample), shape_(shape), memory_(2 * kPage + std::max(bytesOf(shape), leastBytes)) {
  uint8_t* at = memory_.data() + (kPage - reinterpret_cast<uintptr_t>(memory_.data()) % kPage) + pageOffset;
  for (const kip::Plane& plane : shape_) {
    planes_.push_back({at, plane.rowBytes});
    at += bytesOf(plane);
  }
}

void Image::draw() {
  for (size_t p = 0; p < planes_.size(); ++p) {
    switch (sample_) {
      case kip::Sample::k8u:
        drawPlane<Kip8u>(shape_[p], planes_[p]);
        break;
      case kip::Sample::k8s:
        drawPlane<Kip8s>(shape_[p], planes_[p]);
        break;
      case kip::Sample::k16u:
        drawPlane<Kip16u>(shape_[p], planes_[p]);
        break;
      case kip::Sample::k16s:
        drawPlane<Kip16s>(shape_[p], planes_[p]);
        break;
      case kip::Sample::k32s:
        drawPlane<Kip32s>(shape_[p], planes_[p]);
        break;
      case kip::Sample::k32f:
        drawPlane<Kip32f>(shape_[p], planes_[p]);
        break;
    }
  }
}

}  // namespace bench
