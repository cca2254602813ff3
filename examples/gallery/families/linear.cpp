// Grey, colour twist and gamma: a weighted sum, turns of the colour circle by a matrix, and the transfer curve.

#include <numbers>

#include "page.h"

namespace {

using Matrix = Kip32f[3][4];

/// The turn about the grey axis by an angle in degrees: greys stay, and hues move along the circle.
void turnAboutGrey(double degrees, Matrix& twist) {
  const double angle = degrees * std::numbers::pi / 180, c = std::cos(angle), s = std::sin(angle);
  const double same = (1 + 2 * c) / 3, next = (1 - c) / 3 - s / std::sqrt(3.0), last = (1 - c) / 3 + s / std::sqrt(3.0);
  const double rows[3] = {same, next, last};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) twist[row][column] = static_cast<Kip32f>(rows[(column - row + 3) % 3]);
    twist[row][3] = 0;
  }
}

void showGrey(Page& page, const Picture& photo) {
  Picture grey(photo.width, photo.height, 1), blue = grey;
  const double speed = speedOf(photo, [&] {
    return kipiRGBToGray_8u_C3C1R(photo.data(), photo.step(), grey.data(), grey.step(), photo.size());
  });
  const Kip32f blueOnly[3] = {0, 0, 1};
  kipiColorToGray_8u_C3C1R(photo.data(), photo.step(), blue.data(), blue.step(), photo.size(), blueOnly);
  page.row("Grey", "One luminance sample for three of colour.");
  page.show({.picture = grey, .title = "luminance", .function = "kipiRGBToGray_8u_C3C1R", .speed = speed});
  page.show(
      {.picture = blue, .title = "blue alone", .text = "Weights 0, 0, 1.", .function = "kipiColorToGray_8u_C3C1R"});
}

void showTwist(Page& page, const Picture& photo) {
  page.row("Colour twist", "A matrix that turns colours about the grey axis.");
  for (const int degrees : {60, 120, 180}) {
    Matrix twist;
    turnAboutGrey(degrees, twist);
    Picture turned(photo.width, photo.height);
    const double speed = speedOf(photo, [&] {
      return kipiColorTwist32f_8u_C3R(photo.data(), photo.step(), turned.data(), turned.step(), photo.size(), twist);
    });
    page.show({.picture = turned,
               .title = std::to_string(degrees) + " degrees",
               .function = "kipiColorTwist32f_8u_C3R",
               .speed = speed});
  }
}

void showGamma(Page& page, const Picture& photo) {
  Picture coded(photo.width, photo.height), linear = coded, back = coded;
  const double speed = speedOf(
      photo, [&] { return kipiGammaFwd_8u_C3R(photo.data(), photo.step(), coded.data(), coded.step(), photo.size()); });
  const double backSpeed = speedOf(photo, [&] {
    return kipiGammaInv_8u_C3R(photo.data(), photo.step(), linear.data(), linear.step(), photo.size());
  });
  kipiGammaInv_8u_C3R(coded.data(), coded.step(), back.data(), back.step(), photo.size());
  page.row("Gamma", "The transfer curve of BT.709, as if the picture were linear light, and as if it were coded.");
  page.show({.picture = coded, .title = "forward", .function = "kipiGammaFwd_8u_C3R", .speed = speed});
  page.show({.picture = linear, .title = "inverse", .function = "kipiGammaInv_8u_C3R", .speed = backSpeed});
  page.show({.picture = back, .title = "forward, then inverse", .psnr = psnr(photo, back)});
}

void show(Page& page, const Picture& photo) {
  page.section("Grey, colour twist, gamma", "Linear maps of the channels, and a curve on each.");
  showGrey(page, photo);
  showTwist(page, photo);
  showGamma(page, photo);
}

const Family kLinear(50, show);

}  // namespace
