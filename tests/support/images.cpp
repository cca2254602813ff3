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

void put(uint8_t* to, Sample sample, uint32_t value) {
  if (sample == Sample::k32f) {
    // Mostly the nominal range, with some samples on its ends and some beyond.
    const uint32_t kind = value % 16;
    const float unit = static_cast<float>(value >> 8) / (1 << 24);
    const float chosen = kind == 0 ? 0.0f : kind == 1 ? 1.0f : kind == 2 ? 2 * unit - 0.5f : unit;
    std::memcpy(to, &chosen, sizeof chosen);
    return;
  }
  const uint32_t kind = value % 16;
  const uint32_t chosen = kind == 0   ? 0
                          : kind == 1 ? ~0u
                          : kind == 2 ? 0x80808080u
                          : kind == 3 ? 0x7F7F7F7Fu
                                      : value >> 4;
  // 32-bit samples carry what 16-bit colours turn into.
  const int32_t limited = static_cast<int32_t>(chosen) >> 12;
  if (sample == Sample::k32s) {
    std::memcpy(to, &limited, sizeof limited);
  } else {
    std::memcpy(to, &chosen, bytesOf(sample));
  }
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
  if (shape.weights) {
    Arguments weighted = plain;
    weighted.weights = kWeights;
    return {plain, weighted};
  }
  if (shape.mosaic) {
    std::vector<Arguments> grids(4, plain);
    for (int grid = 0; grid < 4; ++grid) grids[grid].choice = grid;
    return grids;
  }
  if (shape.range) {
    Arguments wide = plain;
    wide.low = -0.25f, wide.high = 3.5f;
    return {plain, wide};
  }
  if (shape.reduction) {
    std::vector<Arguments> methods;
    constexpr int kMethods = 5, kLevels[] = {2, 7, 16, 256};
    for (int i = 0; i < 2 * kMethods; ++i) {
      Arguments method = plain;
      method.choice = i % kMethods;
      method.noise = i / kMethods * 30;
      method.levels = kLevels[i % std::size(kLevels)];
      methods.push_back(method);
    }
    return methods;
  }
  return {plain};
}

}  // namespace kip
