// Three-channel colours of any sample type, as floats, to compare a function with a plain computation of what it should
// do.
#pragma once

#include <gtest/gtest.h>

#include <cstring>

#include "support/reference.h"

namespace kip {

using Colour = std::array<float, 3>;

/// The colours of one side of a function, whatever its layout and its samples; channels in the order R, G, B.
class Colours {
 public:
  Colours(const Function& function, Side side, Content& content)
      : content_(content),
        layout_(function.layout(side)),
        sample_(function.image(side).sample),
        reverse_((side == Side::kSource ? function.parts.source : function.parts.destination) == "BGR") {}

  Colour get(int x, int y) const {
    Colour colour;
    for (int c = 0; c < 3; ++c) colour[c] = read(at(x, y, c));
    return colour;
  }
  void set(int x, int y, const Colour& colour) const {
    for (int c = 0; c < 3; ++c) write(at(x, y, c), colour[c]);
  }

 private:
  uint8_t* at(int x, int y, int c) const {
    const int channel = reverse_ ? 2 - c : c;
    PlaneContent& plane = content_[layout_.planar ? channel : 0];
    const int inRow = layout_.planar ? x : x * layout_.channels + channel;
    return plane.bytes.data() + static_cast<size_t>(y) * plane.plane.rowBytes + inRow * bytesOf(sample_);
  }
  template <class T>
  static float as(const uint8_t* from) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return static_cast<float>(value);
  }
  /// Signed samples count from their least one.
  float read(const uint8_t* from) const {
    switch (sample_) {
      case Sample::k8u:
        return *from;
      case Sample::k16u:
        return as<uint16_t>(from);
      case Sample::k16s:
        return as<int16_t>(from) + 32768;
      default:
        return as<float>(from);
    }
  }
  void write(uint8_t* to, float value) const {
    if (sample_ == Sample::k32f) {
      std::memcpy(to, &value, sizeof value);
    } else {
      const int bits = static_cast<int>(value) - (sample_ == Sample::k16s ? 32768 : 0);
      std::memcpy(to, &bits, bytesOf(sample_));
    }
  }

  Content& content_;
  const Layout& layout_;
  Sample sample_;
  bool reverse_;
};

/// Converts an image and compares every colour with expected(colour, column).
template <class Expected>
void expectColours(const Function& function, KipiSize size, Content source, const Expected& expected) {
  Content result = convert(function, size, source);
  const Colours from(function, Side::kSource, source), to(function, Side::kDestination, result);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      const Colour colour = from.get(x, y);
      ASSERT_EQ(to.get(x, y), expected(colour, x)) << function.name << " of " << colour[0] << ", " << colour[1] << ", "
                                                   << colour[2] << " at " << x << " of " << size.width;
    }
  }
}

/// What a function makes of one colour, at the start of a row of so many of them.
inline Colour converted(const char* name, const Colour& colour, int width = 1) {
  const Function& function = *find(name);
  Content source = untouched(function, Side::kSource, {width, 1});
  for (int x = 0; x < width; ++x) Colours(function, Side::kSource, source).set(x, 0, colour);
  Content result = convert(function, {width, 1}, source);
  return Colours(function, Side::kDestination, result).get(0, 0);
}

}  // namespace kip
