#include "support/images.h"

#include <bit>
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

void putBits(uint8_t* to, Sample sample, uint32_t bits) {
  const uint16_t low16 = static_cast<uint16_t>(bits);
  const uint8_t low8 = static_cast<uint8_t>(bits);
  switch (bytesOf(sample)) {
    case 1:
      *to = low8;
      return;
    case 2:
      std::memcpy(to, &low16, sizeof low16);
      return;
    default:
      std::memcpy(to, &bits, sizeof bits);
  }
}

/// Mostly any value, some on the ends of the range and in its middle.
uint32_t integerBits(Sample sample, uint32_t value) {
  constexpr uint32_t kSpecial[] = {0, ~0u, 0x80808080u, 0x7F7F7F7Fu};
  const uint32_t kind = value % 16, chosen = kind < 4 ? kSpecial[kind] : value >> 4;
  // 32-bit samples carry what 16-bit colours turn into.
  return sample == Sample::k32s ? static_cast<uint32_t>(static_cast<int32_t>(chosen) >> 12) : chosen;
}

/// Mostly of the nominal range 0 .. 1, some on its ends and some beyond. No operation rounds.
uint32_t ordinaryBits(uint32_t value) {
  const uint32_t kind = value % 16;
  const float unit = static_cast<float>(value >> 8) / (1 << 24);
  return std::bit_cast<uint32_t>(kind < 2 ? static_cast<float>(kind) : kind == 2 ? 2 * unit - 0.5f : unit);
}

constexpr uint32_t kInfinity = 0x7F800000, kSign = 0x80000000;

bool isNan(uint32_t bits) { return (bits & ~kSign) > kInfinity; }

uint32_t extremeBits(uint32_t value, bool withNan) {
  constexpr uint32_t kSpecial[] = {
      0,          0x00000001,  // zero, the smallest subnormal number
      0x007FFFFF, 0x00800000,  // the largest subnormal number, the smallest normal one
      0x7F7FFFFF, kInfinity,   // the largest number
      0x3F7FFFFF, 0x3F800001,  // around 1
      0x437F0000, 0x477FFF00,  // 255, 65535
      0x4B000000, 0x4EFFFFFF,  // 2^23, the last before 2^31
      0x4F000000, 0x5F000000,  // 2^31, 2^63
      0x0DA24260, 0x7149F2CA,  // 1e-30, 1e30
  };
  constexpr uint32_t kNan[] = {0x7FC00000, 0xFFC00000, 0x7F800001, 0xFFFFFFFF};
  const uint32_t kind = value % 16, rest = value >> 8;
  if (kind == 0 && withNan) return kNan[rest % std::size(kNan)];
  if (kind < 6) return kSpecial[rest % std::size(kSpecial)] | (rest & 0x100 ? kSign : 0);
  if (kind > 7) return ordinaryBits(rest << 8 | (value >> 4) % 16);
  const uint32_t any = value * 2654435761u;
  return isNan(any) ? any & ~0x00800000u : any;
}

uint32_t bitsOf(Sample sample, uint32_t value, Values values) {
  if (sample != Sample::k32f) return integerBits(sample, value);
  return values == Values::kOrdinary ? ordinaryBits(value) : extremeBits(value, values == Values::kNotNumbers);
}

}  // namespace

const char* nameOf(Values values) {
  constexpr const char* kNames[] = {"ordinary", "extreme", "not numbers"};
  return kNames[static_cast<int>(values)];
}

std::span<const Values> valuesOf(const Function& function) {
  static constexpr Values kAll[] = {Values::kOrdinary, Values::kExtreme, Values::kNotNumbers};
  return std::span(kAll).first(function.image(function.input()).sample == Sample::k32f ? 3 : 1);
}

Content randomContent(const std::vector<Plane>& planes, Sample sample, uint32_t seed, Values values) {
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
      const uint32_t bits = bitsOf(sample, random.next(), values);
      for (size_t run = kind == 1 ? 1 + random.below(9) : 1; run > 0 && at < bytes.size(); --run, at += size) {
        putBits(&bytes[at], sample, bits);
      }
    }
    content.push_back({plane, std::move(bytes)});
  }
  return content;
}

void canonicalizeNan(Content& content) {
  constexpr uint32_t kOneNan = 0x7FC00000;
  for (PlaneContent& plane : content) {
    for (size_t at = 0; at < plane.bytes.size(); at += sizeof(float)) {
      uint32_t bits;
      std::memcpy(&bits, &plane.bytes[at], sizeof bits);
      if (isNan(bits)) std::memcpy(&plane.bytes[at], &kOneNan, sizeof kOneNan);
    }
  }
}

std::vector<Arguments> settingsOf(const Function& function) {
  static constexpr float kWeights[][3] = {{0.25f, 0.5f, 0.125f}, {-3.5f, 1e9f, 0.3f}};
  static constexpr float kMatrices[][4][4] = {
      {{0.5f, 0.25f, -0.125f, 3.0f}, {-0.3f, 1.2f, 0.1f, -2.5f}, {0.1f, -0.7f, 1.4f, 0.25f}, {0.2f, 0.1f, 0.3f, 0.9f}},
      {{-1e9f, 70.0f, 1e30f, 0.0f}, {31.5f, -0.001f, 3e38f, -1e9f}, {-3e38f, 0.3f, 1e-40f, 5.0f}, {1, -1, 0.5f, 900}}};
  // The last one is wider than the largest float.
  static constexpr float kRanges[][2] = {{0, 1}, {-0.25f, 3.5f}, {0, 65535}, {-3e38f, 3e38f}};
  static constexpr struct {
    KipiDitherType method;
    int noise, levels;
  } kReductions[] = {{kipDitherNone, 0, 2},     {kipDitherFS, 0, 7},     {kipDitherJJN, 0, 16},
                     {kipDitherStucki, 0, 256}, {kipDitherBayer, 0, 2},  {kipDitherNone, 30, 7},
                     {kipDitherFS, 30, 16},     {kipDitherJJN, 30, 256}, {kipDitherStucki, 30, 2},
                     {kipDitherBayer, 30, 7},   {kipDitherNone, 0, 16},  {kipDitherNone, 0, 256},
                     {kipDitherBayer, 0, 7},    {kipDitherBayer, 0, 16}, {kipDitherBayer, 0, 256}};
  const Shape& shape = function.shape;
  const size_t count = shape.mosaic      ? 4
                       : shape.reduction ? std::size(kReductions)
                       : shape.weights   ? 1 + std::size(kWeights)
                       : shape.matrix    ? std::size(kMatrices)
                       : shape.range     ? std::size(kRanges)
                                         : 1;
  std::vector<Arguments> all(count);
  for (size_t i = 0; i < count; ++i) {
    Arguments& a = all[i];
    a.alpha = bytesOf(shape.destination.sample) == 1 ? 77 : 19754;
    a.choice = static_cast<int>(i);  // of a grid
    if (shape.reduction) {
      a.choice = kReductions[i].method, a.noise = kReductions[i].noise, a.levels = kReductions[i].levels;
    }
    if (shape.weights && i > 0) a.weights = kWeights[i - 1];
    if (shape.matrix) a.matrix = kMatrices[i];
    if (shape.range) a.low = kRanges[i][0], a.high = kRanges[i][1];
  }
  return all;
}

}  // namespace kip
