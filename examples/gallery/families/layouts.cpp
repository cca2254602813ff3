// Chroma layouts: what becomes of interlaced chroma that is halved row by row, and field by field.

#include "page.h"

namespace {

constexpr int kMotion = 12;   // pixels from one field to the next
constexpr int kGain = 4;      // of the differences shown
constexpr int kCloseUp = 48;  // pixels
constexpr int kZoom = 8;      // of close-ups

/// A frame of two fields: the odd rows are taken a moment later, when everything has moved to the right.
Picture interlaced(const Picture& photo) {
  Picture frame = photo;
  for (int y = 1; y < frame.height; y += 2) {
    std::copy(photo.at(0, y), photo.at(frame.width - kMotion, y), frame.at(kMotion, y));
  }
  return frame;
}

/// A way from 4:2:2 to 4:2:0 and back.
struct Way {
  const char* name;
  const char* text;
  decltype(kipiYCbCr422ToYCbCr420_8u_P3R)* there;
  decltype(kipiYCbCr420ToYCbCr422_8u_P3R)* back;
  const char* functions;
};
#define KIP_WAY(there, back) there, back, #there ", " #back
constexpr Way kWays[] = {
    {"Row by row",
     "Every second row of chroma is kept and used twice: the later field gets the chroma of the earlier one.",
     KIP_WAY(kipiYCbCr422ToYCbCr420_8u_P3R, kipiYCbCr420ToYCbCr422_8u_P3R)},
    {"Field by field", "Each field keeps its own chroma.",
     KIP_WAY(kipiYCbCr422To420_Interlace_8u_P3R, kipiYCbCr420To422_Interlace_8u_P3R)},
};
#undef KIP_WAY

struct Travelled {
  Picture picture;
  double speed;
};

Travelled travel(const Picture& frame, const Way& way) {
  const KipiSize size = frame.size(), pairs = {frame.width / 2, frame.height};
  Planes before(size, pairs), between(size, {frame.width / 2, frame.height / 2}), after(size, pairs);
  kipiRGBToYUV422_8u_C3P3R(frame.data(), frame.step(), before.to, before.steps, size);
  const double speed =
      speedOf(frame, [&] { return way.there(before.from, before.steps, between.to, between.steps, size); });
  way.back(between.from, between.steps, after.to, after.steps, size);
  Travelled result = {Picture(frame.width, frame.height), speed};
  kipiYUV422ToRGB_8u_P3C3R(after.from, after.steps, result.picture.data(), result.picture.step(), size);
  return result;
}

void show(Page& page, const Picture& photo) {
  page.section("Chroma layouts", "The same luma, with chroma of fewer rows and columns, in planes, pairs or packed.");
  const Picture frame = interlaced(photo);
  Picture results[2];
  page.row("An interlaced frame to 4:2:0 and back", "The odd rows show the scene a moment later than the even ones.");
  page.show({.picture = frame, .title = "Frame", .text = "Two fields, woven."});
  for (int i = 0; i < 2; ++i) {
    const Travelled travelled = travel(frame, kWays[i]);
    results[i] = travelled.picture;
    page.show({.picture = results[i],
               .title = kWays[i].name,
               .text = kWays[i].text,
               .function = kWays[i].functions,
               .speed = travelled.speed,
               .psnr = psnr(frame, results[i])});
  }

  const Corner corner = worstSquare(frame, results[0], kCloseUp);
  const auto closeUp = [&](const Picture& picture, const std::string& title) {
    page.show(
        {.picture = enlarge(crop(picture, corner.x, corner.y, kCloseUp, kCloseUp), kZoom, kZoom), .title = title});
  };
  page.row("Close up",
           "Where the colours comb most, and the differences to the frame, times " + std::to_string(kGain) + ".");
  closeUp(frame, "Frame close up");
  for (int i = 0; i < 2; ++i) closeUp(results[i], std::string(kWays[i].name) + " close up");
  for (int i = 0; i < 2; ++i) closeUp(difference(frame, results[i], kGain), std::string(kWays[i].name) + " difference");
}

const Family kLayouts(30, show);

}  // namespace
