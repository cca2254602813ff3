// Three-channel colours of any sample type, as floats, to compare a function with a plain computation of what it should
// do.
#pragma once

#include <gtest/gtest.h>

#include "support/reference.h"

namespace kip {

using Colour = std::array<float, 3>;

/// The colours of one side of a function. Signed samples count from their least one.
class Colours {
 public:
  Colours(const Function& function, Side side, Content& content)
      : samples_(function, side, content), zero_(function.image(side).sample == Sample::k16s ? -32768 : 0) {}

  Colour get(int x, int y) const {
    const auto channel = [&](int c) { return static_cast<float>(samples_.value(c, x, y) - zero_); };
    return {channel(0), channel(1), channel(2)};
  }
  void set(int x, int y, const Colour& colour) const {
    for (int c = 0; c < 3; ++c) samples_.put(c, x, y, colour[c] + zero_);
  }

 private:
  Samples samples_;
  double zero_;
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
