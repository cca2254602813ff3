// Bit reduction: every method at 2, 4 and 8 levels, on a gradient and on the photo.

#include "page.h"

namespace {

struct Method {
  KipiDitherType type;
  int noise;
  const char* title;
  const char* text;
};

constexpr Method kMethods[] = {
    {kipDitherNone, 0, "no dither", "The nearest level: gradients turn into steps."},
    {kipDitherBayer, 0, "ordered", "Thresholds from a 4 x 4 matrix: a regular texture."},
    {kipDitherBayer, 40, "ordered with noise", "The thresholds moved by up to 40 % of an interval."},
    {kipDitherFS, 0, "Floyd-Steinberg", "Errors handed on to four neighbours."},
    {kipDitherFS, 40, "Floyd-Steinberg with noise", "The threshold spread by 40 % of an interval to either side."},
    {kipDitherJJN, 0, "Jarvis-Judice-Ninke", "Errors handed on to twelve neighbours: smoother, and sharper edges."},
    {kipDitherStucki, 0, "Stucki", "Twelve neighbours, other weights."},
};

Picture gradient(int width, int height) {
  Picture picture(width, height, 1);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) *picture.at(x, y) = static_cast<Kip8u>(x * 255 / (width - 1));
  }
  return picture;
}

/// A picture reduced and its speed. Grey ones and colours are the same functions with another layout.
double reduce(const Picture& picture, const Method& method, int levels, Picture& result) {
  const auto function = picture.channels == 1 ? kipiReduceBits_8u_C1R : kipiReduceBits_8u_C3R;
  result = Picture(picture.width, picture.height, picture.channels);
  return speedOf(picture, [&] {
    return function(picture.data(), picture.step(), result.data(), result.step(), picture.size(), method.noise,
                    method.type, levels);
  });
}

void show(Page& page, const Picture& photo) {
  page.section("Bit reduction", "Few levels per channel, and what dithering makes of them.");
  const Picture grey = gradient(512, 64);
  const int side = std::min({photo.width, photo.height, 360});
  const Picture part = crop(photo, (photo.width - side) / 2, (photo.height - side) / 2, side, side);
  for (const int levels : {2, 4, 8}) {
    const std::string text = std::to_string(levels) + " levels";
    page.row("A gradient at " + text);
    for (const Method& method : kMethods) {
      Picture result;
      reduce(grey, method, levels, result);
      page.show({.picture = result, .title = method.title, .function = "kipiReduceBits_8u_C1R"});
    }
    page.row("The photo at " + text);
    for (const Method& method : kMethods) {
      Picture result;
      const double speed = reduce(part, method, levels, result);
      page.show({.picture = result,
                 .title = method.title,
                 .text = method.text,
                 .function = "kipiReduceBits_8u_C3R",
                 .speed = speed});
    }
  }
}

const Family kReduceBits(70, show);

}  // namespace
