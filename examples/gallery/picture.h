// Pictures: 8-bit images without gaps between rows, and what one does with them.
#pragma once

#include <array>
#include <filesystem>
#include <initializer_list>
#include <vector>

#include "kipcc.h"

/// Interleaved samples: 3 channels are RGB, 1 is grey.
struct Picture {
  int width = 0, height = 0, channels = 3;
  std::vector<Kip8u> samples;

  Picture() = default;
  Picture(int width, int height, int channels = 3, Kip8u value = 0)
      : width(width), height(height), channels(channels), samples(size_t(width) * height * channels, value) {}

  KipiSize size() const { return {width, height}; }
  int step() const { return width * channels; }
  Kip8u* at(int x, int y) { return samples.data() + (size_t(y) * width + x) * channels; }
  const Kip8u* at(int x, int y) const { return samples.data() + (size_t(y) * width + x) * channels; }
  Kip8u* data() { return samples.data(); }
  const Kip8u* data() const { return samples.data(); }
};

/// Three grey pictures and the arrays by which functions take them. The second and third may be smaller.
struct Planes {
  std::array<Picture, 3> plane;
  Kip8u* to[3];
  const Kip8u* from[3];
  int steps[3];

  Planes(KipiSize first, KipiSize others);
  explicit Planes(KipiSize all) : Planes(all, all) {}
  Planes(const Planes&) = delete;
};

/// A PNG or JPEG file as RGB. Both of these throw std::runtime_error.
Picture readPicture(const std::filesystem::path& file);
void writePng(const Picture& picture, const std::filesystem::path& file);

/// The test scene: colour bars, a zone plate, saturated edges, gradients, a colour wheel, skin tones.
Picture drawScene();

Picture crop(const Picture& picture, int x, int y, int width, int height);

/// The channels of an interleaved picture, as grey pictures.
void split(const Picture& picture, Picture (&channels)[3]);

/// Each pixel repeated.
Picture enlarge(const Picture& picture, int horizontally, int vertically);

/// Mid grey where the pictures agree; their differences times `gain` above and below it.
Picture difference(const Picture& a, const Picture& b, int gain);

/// Peak signal to noise ratio in dB; infinite when the pictures are equal.
double psnr(const Picture& a, const Picture& b);

/// The top left corner of the square, of all those on a grid, in which the pictures differ most.
struct Corner {
  int x, y;
};
Corner worstSquare(const Picture& a, const Picture& b, int side);
/// The same for several pairs of pictures: the pair that differs least decides.
struct Pair {
  const Picture &a, &b;
};
Corner worstSquare(std::initializer_list<Pair> pairs, int side);
