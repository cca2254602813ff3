// RGB and YCbCr: what sharing chroma does to one detail, and what interpolating it gives back.

#include "page.h"

namespace {

constexpr int kCloseUp = 32;  // pixels
constexpr int kZoom = 12;

/// R and B exchanged; of four channels the fourth is dropped.
Picture reversed(const Kip8u* samples, KipiSize size, int channels) {
  Picture result(size.width, size.height);
  for (size_t i = 0; i < size_t(size.width) * size.height; ++i) {
    for (int c = 0; c < 3; ++c) result.samples[3 * i + c] = samples[channels * i + 2 - c];
  }
  return result;
}
Picture reversed(const Picture& picture) { return reversed(picture.data(), picture.size(), 3); }

/// A way there and back, and what it made.
struct Trip {
  std::string name, text, function;
  Picture back = {};
  double speed = 0;
};

Trip over422(const Picture& photo) {
  Planes ycc(photo.size(), {photo.width / 2, photo.height});
  Trip trip = {"4:2:2", "Two pixels side by side share their chroma.", "kipiYCbCr422ToRGB_8u_P3C3R"};
  trip.back = Picture(photo.width, photo.height);
  kipiRGBToYCbCr422_8u_C3P3R(photo.data(), photo.step(), ycc.to, ycc.steps, photo.size());
  trip.speed = speedOf(photo, [&] {
    return kipiYCbCr422ToRGB_8u_P3C3R(ycc.from, ycc.steps, trip.back.data(), trip.back.step(), photo.size());
  });
  return trip;
}

Trip over411(const Picture& photo) {
  Planes ycc(photo.size(), {photo.width / 4, photo.height});
  const Picture bgr = reversed(photo);
  Picture back(photo.width, photo.height);
  kipiBGRToYCbCr411_8u_C3P3R(bgr.data(), bgr.step(), ycc.to, ycc.steps, photo.size());
  const double speed = speedOf(
      photo, [&] { return kipiYCbCr411ToBGR_8u_P3C3R(ycc.from, ycc.steps, back.data(), back.step(), photo.size()); });
  return {"4:1:1", "Four pixels in a row share theirs.", "kipiYCbCr411ToBGR_8u_P3C3R", reversed(back), speed};
}

Trip over420(const Picture& photo) {
  Planes ycc(photo.size(), {photo.width / 2, photo.height / 2});
  Trip trip = {"4:2:0", "Blocks of two by two share theirs.", "kipiYCbCr420ToRGB_8u_P3C3R"};
  trip.back = Picture(photo.width, photo.height);
  kipiRGBToYCbCr420_8u_C3P3R(photo.data(), photo.step(), ycc.to, ycc.steps, photo.size());
  trip.speed = speedOf(photo, [&] {
    return kipiYCbCr420ToRGB_8u_P3C3R(ycc.from, ycc.steps, trip.back.data(), trip.back.step(), photo.size());
  });
  return trip;
}

Trip over420Filtered(const Picture& photo) {
  Planes ycc(photo.size(), {photo.width / 2, photo.height / 2});
  kipiRGBToYCbCr420_8u_C3P3R(photo.data(), photo.step(), ycc.to, ycc.steps, photo.size());
  const Kip8u* crFirst[3] = {ycc.from[0], ycc.from[2], ycc.from[1]};
  const int steps[3] = {ycc.steps[0], ycc.steps[2], ycc.steps[1]};
  std::vector<Kip8u> bgra(size_t(photo.width) * photo.height * 4);
  const double speed = speedOf(photo, [&] {
    return kipiYCrCb420ToBGR_Filter_8u_P3C4R(crFirst, const_cast<int*>(steps), bgra.data(), photo.width * 4,
                                             photo.size(), 255);
  });
  return {"4:2:0 filtered", "The same planes, chroma interpolated along the rows.", "kipiYCrCb420ToBGR_Filter_8u_P3C4R",
          reversed(bgra.data(), photo.size(), 4), speed};
}

void show(Page& page, const Picture& photo) {
  // Whole groups of every kind.
  const Picture even = crop(photo, 0, 0, photo.width / 4 * 4, photo.height / 2 * 2);
  const Trip trips[] = {over422(even), over420(even), over420Filtered(even), over411(even)};
  page.section("RGB and YCbCr",
               "Digital television's luma and chroma. The eye sees less detail in colour than in light, "
               "so pixels share their chroma.");
  page.row("There and back");
  for (const Trip& trip : trips) {
    page.show({.picture = trip.back,
               .title = trip.name,
               .text = trip.text,
               .function = trip.function,
               .speed = trip.speed,
               .psnr = psnr(even, trip.back)});
  }
  const Picture& shared = trips[1].back;
  const Corner corner =
      worstSquare({{shared, trips[0].back}, {shared, trips[2].back}, {shared, trips[3].back}}, kCloseUp);
  page.row("The same detail", "Where the other three differ most from 4:2:0.");
  const auto closeUp = [&](const Picture& picture, const std::string& title) {
    const Picture part = crop(picture, corner.x, corner.y, kCloseUp, kCloseUp);
    page.show({.picture = enlarge(part, kZoom, kZoom), .title = title + " close up"});
  };
  closeUp(even, "YCbCr source");
  for (const Trip& trip : trips) closeUp(trip.back, "YCbCr " + trip.name);
}

const Family kYCbCr(20, show);

}  // namespace
