// For tests of one family: comparing functions with a plain computation of what they should do, for all sizes and for
// all colours.
#pragma once

#include <functional>

#include "support/samples.h"

namespace kip {

/// Planes of the right size, all bytes kFill: what a destination holds before a call.
Content untouched(const Function& function, Side side, KipiSize size);

/// Fails the test at the first byte that differs.
void expectEqual(const Content& result, const Content& expected, const std::string& what);

/// One image to be converted by a plain computation.
struct Task {
  const Function& function;
  KipiSize size, whole;  ///< the region, and as much of it as is converted
  Samples from, to;
};

/// Writes what a function should write, except for a fourth channel.
using Plain = std::function<void(const Task&)>;

/// Converts each pixel by itself: of(pixel, column, row).
template <class Of>
Plain eachPixel(const Of& of) {
  return [of](const Task& task) {
    const Samples from = task.from, to = task.to;  // copies, which writing samples cannot change: far faster
    for (int y = 0; y < task.whole.height; ++y) {
      for (int x = 0; x < task.whole.width; ++x) to.set(x, y, of(from.get(x, y), x, y));
    }
  };
}

/// Compares every byte of an image.
void expectExact(const Function& function, KipiSize size, Content source, const Plain& plain);

/// The same for random images with every width that a kernel might treat apart.
void expectExactForAllSizes(const Function& function, const Plain& plain);

/// The same for all colours, in images of so many groups of pixels that share their chroma to a row.
void expectExactForAllColours(const Function& function, int groups, const Plain& plain);

/// Calls with source images that hold all 2^24 triples of bytes between them, or one of so many; only a sample of the
/// triples where the sanitizers slow everything down.
void forAllColours(const Function& function, int groups, const std::function<void(KipiSize, const Content&)>& with,
                   int oneOf = 1);

/// An image of full-resolution pixels.
struct PixelImage {
  KipiSize size;
  std::vector<Pixel> pixels;

  const Pixel& at(int x, int y) const { return pixels[static_cast<size_t>(y) * size.width + x]; }
};

/// The same as images without a layout.
void forAllColours(int width, const std::function<void(const PixelImage&)>& with, int oneOf = 1);

}  // namespace kip
