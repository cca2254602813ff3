// Tone mapping: the picture's light with a lamp in it that is far brighter than the rest.

#include <cmath>

#include "page.h"

namespace {

constexpr float kLampLight = 40;  // where the picture's white is 1

/// Linear light, and a round lamp in the upper right that fades into its surroundings.
std::vector<Kip32f> litScene(const Picture& photo) {
  std::vector<Kip32f> light;
  const float radius = photo.height / 10.0f, lampX = photo.width * 0.8f, lampY = photo.height * 0.25f;
  for (int y = 0; y < photo.height; ++y) {
    for (int x = 0; x < photo.width; ++x) {
      const Kip8u* px = photo.at(x, y);
      const float grey = (0.299f * px[0] + 0.587f * px[1] + 0.114f * px[2]) / 255;
      const float distance = std::hypot(x - lampX, y - lampY) / radius;
      light.push_back(std::pow(grey, 2.2f) + kLampLight * std::exp(-distance * distance * distance));
    }
  }
  return light;
}

void show(Page& page, const Picture& photo) {
  const std::vector<Kip32f> light = litScene(photo);
  Picture linear(photo.width, photo.height, 1), mean = linear;
  const int step = photo.width * static_cast<int>(sizeof(Kip32f));
  const double linearSpeed = speedOf(photo, [&] {
    return kipiToneMapLinear_32f8u_C1R(light.data(), step, linear.data(), linear.step(), linear.size());
  });
  const double meanSpeed = speedOf(
      photo, [&] { return kipiToneMapMean_32f8u_C1R(light.data(), step, mean.data(), mean.step(), mean.size()); });

  page.section("Tone mapping", "Linear light of any range to 8 bits, by one scale for the whole picture.");
  page.row("A lamp of 40 times the picture's white");
  page.show({.picture = linear,
             .title = "By the maximum",
             .text = "The lamp is white, and nothing else has a chance.",
             .function = "kipiToneMapLinear_32f8u_C1R",
             .speed = linearSpeed});
  page.show({.picture = mean,
             .title = "By twice the mean",
             .text = "The scene shows, and the lamp is blown out.",
             .function = "kipiToneMapMean_32f8u_C1R",
             .speed = meanSpeed});
}

const Family kToneMap(90, show);

}  // namespace
