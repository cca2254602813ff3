// For tests of one family: images as pixels, to compare a function with a plain computation of what it should do, and
// all the colours there are.
#pragma once

#include <array>
#include <functional>

#include "support/call_case.h"

namespace kip {

using Pixel = std::array<int, 3>;

inline int clampByte(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

/// The full-resolution 8-bit pixels of one side of a function, channels in the order R, G, B for BGR too.
class Pixels8 {
 public:
  Pixels8(const Function& function, Side side, Content& content);

  Pixel get(int x, int y) const {
    const ptrdiff_t at = y * rowBytes_ + x * pixelBytes_;
    return {channel_[0][at], channel_[1][at], channel_[2][at]};
  }
  void set(int x, int y, const Pixel& pixel) const {
    const ptrdiff_t at = y * rowBytes_ + x * pixelBytes_;
    for (int c = 0; c < 3; ++c) channel_[c][at] = static_cast<uint8_t>(pixel[c]);
  }
  uint8_t& fourth(int x, int y) const { return channel_[3][y * rowBytes_ + x * pixelBytes_]; }

 private:
  uint8_t* channel_[kMostPlanes] = {};
  ptrdiff_t pixelBytes_, rowBytes_;
};

/// Planes of the right size, all bytes kFill: what a destination holds before a call.
Content untouched(const Function& function, Side side, KipiSize size);

/// Fails the test at the first byte that differs.
void expectEqual(const Content& result, const Content& expected, const std::string& what);

/// An image of full-resolution pixels.
struct PixelImage {
  KipiSize size;
  std::vector<Pixel> pixels;

  const Pixel& at(int x, int y) const { return pixels[static_cast<size_t>(y) * size.width + x]; }
};

/// Calls with images of this width that hold all 2^24 triples of bytes between them, or one of so many; only a sample
/// of the triples where the sanitizers slow everything down.
void forAllColours(int width, const std::function<void(const PixelImage&)>& with, int oneOf = 1);

}  // namespace kip
