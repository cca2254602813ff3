// The test scene: six panels, each of which is hard on some conversion.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "picture.h"

namespace {

constexpr int kPanel = 320;  // pixels
constexpr double kPi = std::numbers::pi;

struct Color {
  double r, g, b;  // 0..1
};
Color operator*(Color c, double f) { return {c.r * f, c.g * f, c.b * f}; }
Color operator+(Color a, Color b) { return {a.r + b.r, a.g + b.g, a.b + b.b}; }
Color mix(Color a, Color b, double t) { return a * (1 - t) + b * t; }

/// How much of a pixel at this distance from a disc's centre the disc covers.
double cover(double radius, double distance) { return std::clamp(radius - distance + .5, 0., 1.); }

constexpr Color kBlack = {0, 0, 0}, kWhite = {1, 1, 1}, kRed = {1, 0, 0}, kGreen = {0, 1, 0}, kBlue = {0, 0, 1},
                kYellow = {1, 1, 0}, kCyan = {0, 1, 1}, kMagenta = {1, 0, 1}, kGrey = {.5, .5, .5};

/// Pixel x, y of a panel, and its distance and angle from the centre.
struct Place {
  int x, y;
  double radius() const { return std::hypot(x - (kPanel - 1) / 2., y - (kPanel - 1) / 2.); }
  double angle() const { return std::atan2(y - (kPanel - 1) / 2., x - (kPanel - 1) / 2.); }
};

/// Full and three-quarter colour bars, and a staircase of greys.
Color bars(Place p) {
  constexpr Color kBars[] = {kWhite, kYellow, kCyan, kGreen, kMagenta, kRed, kBlue, kBlack};
  const int bar = p.x * 8 / kPanel, band = p.y * 5 / kPanel;
  if (band < 2) return kBars[bar];
  if (band < 4) return kBars[bar] * .75;
  return kWhite * (bar / 7.);
}

/// A pattern that gets finer outwards, up to black and white pixels in turn at the panel's edge.
Color zonePlate(Place p) {
  const double r = p.radius(), contrast = std::clamp((kPanel / 2. - r) / 4, 0., 1.);
  return kGrey + kWhite * (.5 * contrast * std::cos(kPi * r * r / kPanel));
}

/// A star of saturated sectors that meet in hard edges, around it lines one pixel wide.
Color edges(Place p) {
  constexpr Color kSectors[] = {kRed, kBlue, kGreen, kMagenta, kYellow, kBlue, kRed, kCyan, kMagenta, kGreen};
  constexpr int kCount = 40;
  if (p.radius() < kPanel * .46) return kSectors[int((p.angle() + kPi) / (2 * kPi) * kCount + kCount) % 10];
  const bool right = p.x > kPanel / 2, low = p.y > kPanel / 2;
  const bool line = (right ? p.x : low ? p.y : p.x + p.y) % 4 == 0;
  return line ? (right == low ? kRed : kBlue) : (right == low ? kCyan * .8 : kYellow);
}

/// Ramps: grey, the primaries, between complements, and a dusk sky, where banding shows first.
Color gradients(Place p) {
  constexpr struct {
    Color from, to;
  } kRamps[] = {{kBlack, kWhite},
                {kBlack, kRed},
                {kBlack, kGreen},
                {kBlack, kBlue},
                {kYellow, kBlue},
                {kGreen, kMagenta},
                {{.05, .07, .2}, {.95, .6, .4}},
                {{.42, .44, .46}, {.52, .5, .48}}};
  const auto& ramp = kRamps[p.y * 8 / kPanel];
  return mix(ramp.from, ramp.to, p.x / (kPanel - 1.));
}

/// Every hue, more saturated outwards.
Color wheel(Place p) {
  constexpr double kRadius = kPanel * .47;
  const double saturation = std::min(p.radius() / kRadius, 1.);
  const auto channel = [&](double turn) {  // a trapezoid over the hue
    const double h = std::fmod(p.angle() / kPi * 3 + 6 + turn, 6);
    return std::clamp(2 - std::abs(h - 3), 0., 1.);
  };
  return mix(kGrey, mix(kWhite, {channel(3), channel(1), channel(5)}, saturation), cover(kRadius, p.radius()));
}

/// Balls in skin tones under a soft light.
Color skin(Place p) {
  constexpr Color kTones[3][3] = {{{.98, .87, .80}, {.96, .80, .69}, {.90, .70, .56}},
                                  {{.82, .60, .44}, {.72, .50, .36}, {.60, .40, .28}},
                                  {{.47, .31, .22}, {.36, .23, .17}, {.25, .16, .13}}};
  constexpr double kCell = kPanel / 3., kRadius = .44 * kCell;
  const int column = int(p.x / kCell), line = int(p.y / kCell);
  const double x = (p.x + .5 - (column + .5) * kCell) / kRadius, y = (p.y + .5 - (line + .5) * kCell) / kRadius;
  const double distance = std::hypot(x, y);
  const double light = std::max(0., -.45 * x - .6 * y + .66 * std::sqrt(std::max(0., 1 - distance * distance)));
  const Color wall = mix({.30, .36, .38}, {.16, .20, .22}, p.y / double(kPanel));
  const Color ball = kTones[line][column] * (.35 + .65 * light) + kWhite * (.12 * std::pow(light, 24));
  return mix(wall, ball, cover(kRadius, distance * kRadius));
}

Kip8u sample(double value) { return static_cast<Kip8u>(std::lround(std::clamp(value, 0., 1.) * 255)); }

}  // namespace

Picture drawScene() {
  constexpr Color (*kPanels[2][3])(Place) = {{bars, zonePlate, edges}, {gradients, wheel, skin}};
  Picture scene(3 * kPanel, 2 * kPanel);
  for (int y = 0; y < scene.height; ++y) {
    for (int x = 0; x < scene.width; ++x) {
      const Color c = kPanels[y / kPanel][x / kPanel]({x % kPanel, y % kPanel});
      Kip8u* px = scene.at(x, y);
      px[0] = sample(c.r), px[1] = sample(c.g), px[2] = sample(c.b);
    }
  }
  return scene;
}
