// RGB and YUV: the planes, and what subsampled chroma costs.

#include "page.h"

namespace {

constexpr int kGain = 8;      // of the differences shown
constexpr int kCloseUp = 48;  // pixels
constexpr int kZoom = 8;      // of close-ups

/// One chroma plane in the colours that it stands for, on flat grey.
Picture tinted(const Picture& chroma, bool isU) {
  const Picture flat(chroma.width, chroma.height, 1, 128);
  const Kip8u* planes[3] = {flat.data(), isU ? chroma.data() : flat.data(), isU ? flat.data() : chroma.data()};
  Picture rgb(chroma.width, chroma.height);
  kipiYUVToRGB_8u_P3C3R(planes, flat.step(), rgb.data(), rgb.step(), rgb.size());
  return rgb;
}

void showPlanes(Page& page, const Picture& photo) {
  Planes yuv(photo.size());
  const double speed = speedOf(
      photo, [&] { return kipiRGBToYUV_8u_C3P3R(photo.data(), photo.step(), yuv.to, yuv.steps[0], photo.size()); });
  const std::string function = "kipiRGBToYUV_8u_C3P3R";
  page.row("Planes", "Luma is a picture of its own; what is left is the distance of blue and of red from it.");
  page.show({.picture = photo, .title = "RGB", .text = "The picture itself."});
  page.show({.picture = yuv.plane[0], .title = "Y", .text = "Luma.", .function = function, .speed = speed});
  page.show({.picture = tinted(yuv.plane[1], true), .title = "U", .text = "Blue against luma, on flat grey."});
  page.show({.picture = tinted(yuv.plane[2], false), .title = "V", .text = "Red against luma, on flat grey."});
}

/// A way there and back. Both calls take the RGB picture of their side and the planes between.
struct RoundTrip {
  const char* name;
  const char* text;
  int chromaWidth, chromaHeight;  // pixels that share a chroma sample
  KipStatus (*forward)(const Picture& rgb, Planes& yuv);
  const char* forwardName;
  KipStatus (*back)(Planes& yuv, Picture& rgb);
  const char* backName;
};

#define KIP_CALL(function, ...) [](auto& from, auto& to) { return function(__VA_ARGS__); }, #function
constexpr RoundTrip kRoundTrips[] = {
    {"4:4:4",
     "Every pixel keeps its chroma. What is lost is rounding, and that the purest reds and cyans are beyond V's range.",
     1, 1, KIP_CALL(kipiRGBToYUV_8u_C3P3R, from.data(), from.step(), to.to, to.steps[0], from.size()),
     KIP_CALL(kipiYUVToRGB_8u_P3C3R, from.from, from.steps[0], to.data(), to.step(), to.size())},
    {"4:2:2", "Two pixels side by side share their chroma.", 2, 1,
     KIP_CALL(kipiRGBToYUV422_8u_C3P3R, from.data(), from.step(), to.to, to.steps, from.size()),
     KIP_CALL(kipiYUV422ToRGB_8u_P3C3R, from.from, from.steps, to.data(), to.step(), to.size())},
    {"4:2:0", "Blocks of two by two pixels share their chroma.", 2, 2,
     KIP_CALL(kipiRGBToYUV420_8u_C3P3R, from.data(), from.step(), to.to, to.steps, from.size()),
     KIP_CALL(kipiYUV420ToRGB_8u_P3C3R, from.from, from.steps, to.data(), to.step(), to.size())}};
#undef KIP_CALL

Picture showRoundTrip(Page& page, const Picture& photo, const RoundTrip& trip) {
  Planes yuv(photo.size(), {photo.width / trip.chromaWidth, photo.height / trip.chromaHeight});
  Picture back(photo.width, photo.height);
  const double forwardSpeed = speedOf(photo, [&] { return trip.forward(photo, yuv); });
  const double backSpeed = speedOf(photo, [&] { return trip.back(yuv, back); });
  const std::string name = trip.name;

  page.row(name + ", there and back", trip.text);
  const Picture chroma = enlarge(tinted(yuv.plane[1], true), trip.chromaWidth, trip.chromaHeight);
  page.show({.picture = chroma,
             .title = name + " U",
             .text = "As it is kept.",
             .function = trip.forwardName,
             .speed = forwardSpeed});
  page.show({.picture = back,
             .title = name + " back",
             .text = "To RGB.",
             .function = trip.backName,
             .speed = backSpeed,
             .psnr = psnr(photo, back)});
  page.show({.picture = difference(photo, back, kGain),
             .title = name + " difference",
             .text = "To the original, times " + std::to_string(kGain) + "."});
  return back;
}

void show(Page& page, const Picture& photo) {
  page.section("RGB and YUV", "The colour-difference space of analogue television, at full range.");
  showPlanes(page, photo);

  Picture backs[3];
  for (int i = 0; i < 3; ++i) backs[i] = showRoundTrip(page, photo, kRoundTrips[i]);

  const Corner corner = worstSquare(photo, backs[2], kCloseUp);
  page.row("Close up", "Where 4:2:0 changes most.");
  const auto closeUp = [&](const Picture& picture, const std::string& title) {
    const Picture part = crop(picture, corner.x, corner.y, kCloseUp, kCloseUp);
    page.show({.picture = enlarge(part, kZoom, kZoom), .title = title + " close up"});
  };
  closeUp(photo, "RGB");
  for (int i = 0; i < 3; ++i) closeUp(backs[i], kRoundTrips[i].name);
}

const Family kYuv(10, show);

}  // namespace
