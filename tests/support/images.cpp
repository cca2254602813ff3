#include "support/images.h"

#include <algorithm>
#include <cstring>

namespace kip {
namespace {

/// A small generator whose sequence is fixed, unlike that of the standard library's distributions.
class Random {
 public:
  explicit Random(uint32_t seed) : state_(seed * 2654435761u + 12345) {}
  uint32_t next() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<uint32_t>(state_ >> 32);
  }
  uint32_t below(uint32_t limit) { return next() % limit; }

 private:
  uint64_t state_;
};

/// Mostly any value, some on the ends of the range and in its middle; floats mostly of the nominal range 0 .. 1, some
/// on its ends and some beyond.
void put(uint8_t* to, Sample sample, uint32_t value) {
  const uint32_t kind = value % 16;
  if (sample == Sample::k32f) {
    const float unit = static_cast<float>(value >> 8) / (1 << 24);
    const float chosen = kind < 2 ? static_cast<float>(kind) : kind == 2 ? 2 * unit - 0.5f : unit;
    std::memcpy(to, &chosen, sizeof chosen);
    return;
  }
  constexpr uint32_t kSpecial[] = {0, ~0u, 0x80808080u, 0x7F7F7F7Fu};
  const uint32_t chosen = kind < 4 ? kSpecial[kind] : value >> 4;
  // 32-bit samples carry what 16-bit colours turn into.
  const int32_t bits = sample == Sample::k32s ? static_cast<int32_t>(chosen) >> 12 : static_cast<int32_t>(chosen);
  std::memcpy(to, &bits, bytesOf(sample));
}

}  // namespace

Content randomContent(const std::vector<Plane>& planes, Sample sample, uint32_t seed) {
  Random random(seed);
  const size_t size = bytesOf(sample);
  Content content;
  for (const Plane& plane : planes) {
    std::vector<uint8_t> bytes(static_cast<size_t>(plane.rowBytes) * plane.rows);
    const std::vector<uint8_t>* other = content.empty() ? nullptr : &content.front().bytes;
    for (size_t at = 0; at < bytes.size();) {
      const uint32_t kind = random.below(8);
      if (other && kind == 0 && at + size <= other->size()) {  // what the first plane has there
        std::memcpy(&bytes[at], &(*other)[at], size);
        at += size;
        continue;
      }
      const uint32_t value = random.next();
      for (size_t run = kind == 1 ? 1 + random.below(9) : 1; run > 0 && at < bytes.size(); --run, at += size) {
        put(&bytes[at], sample, value);
      }
    }
    content.push_back({plane, std::move(bytes)});
  }
  return content;
}

std::vector<Arguments> settingsOf(const Function& function) {
  static constexpr float kWeights[3] = {0.25f, 0.5f, 0.125f};
  static constexpr float kMatrix[4][4] = {
      {0.5f, 0.25f, -0.125f, 3.0f}, {-0.3f, 1.2f, 0.1f, -2.5f}, {0.1f, -0.7f, 1.4f, 0.25f}, {0.2f, 0.1f, 0.3f, 0.9f}};
  Arguments plain;
  plain.alpha = 77;
  plain.matrix = kMatrix;
  const Shape& shape = function.shape;
  std::vector<Arguments> all(shape.mosaic ? 4 : shape.reduction ? 10 : shape.weights || shape.range ? 2 : 1, plain);
  for (int i = 0; i < static_cast<int>(all.size()); ++i) {
    constexpr int kMethods = 5, kLevels[] = {2, 7, 16, 256};
    Arguments& a = all[i];
    a.choice = shape.reduction ? i % kMethods : i;  // of a method, or of a grid
    if (shape.reduction) a.noise = i / kMethods * 30, a.levels = kLevels[i % std::size(kLevels)];
    if (shape.weights && i == 1) a.weights = kWeights;
    if (shape.range && i == 1) a.low = -0.25f, a.high = 3.5f;
  }
  return all;
}

}  // namespace kip
