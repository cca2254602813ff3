// Demosaicing: the picture as a sensor behind a Bayer pattern would have seen it, and what two methods make of that.

#include "page.h"

namespace {

constexpr int kGain = 4;      // of the differences shown
constexpr int kCloseUp = 48;  // pixels
constexpr int kZoom = 8;      // of close-ups

/// Which channel an RGGB pattern lets through.
int channelAt(int x, int y) { return x % 2 + y % 2; }

Picture mosaicOf(const Picture& photo) {
  Picture mosaic(photo.width, photo.height, 1);
  for (int y = 0; y < photo.height; ++y) {
    for (int x = 0; x < photo.width; ++x) *mosaic.at(x, y) = photo.at(x, y)[channelAt(x, y)];
  }
  return mosaic;
}

/// Each sample in the colour of its filter.
Picture tinted(const Picture& mosaic) {
  Picture rgb(mosaic.width, mosaic.height);
  for (int y = 0; y < mosaic.height; ++y) {
    for (int x = 0; x < mosaic.width; ++x) rgb.at(x, y)[channelAt(x, y)] = *mosaic.at(x, y);
  }
  return rgb;
}

struct Method {
  const char* title;
  const char* text;
  const char* function;
  KipStatus (*convert)(const Picture& mosaic, KipiRect all, Picture& rgb);
};
constexpr Method kMethods[] = {
    {"Bilinear", "Means of direct neighbours, green along the smaller gradient.", "kipiCFAToRGB_8u_C1C3R",
     [](const Picture& mosaic, KipiRect all, Picture& rgb) {
       return kipiCFAToRGB_8u_C1C3R(mosaic.data(), all, mosaic.size(), mosaic.step(), rgb.data(), rgb.step(),
                                    kipiBayerRGGB);
     }},
    {"Adaptive homogeneity-directed", "Along the row or along the column, whichever makes calmer colours.",
     "kipiDemosaicAHD_8u_C1C3R", [](const Picture& mosaic, KipiRect all, Picture& rgb) {
       return kipiDemosaicAHD_8u_C1C3R(mosaic.data(), all, mosaic.size(), mosaic.step(), rgb.data(), rgb.step(),
                                       kipiBayerRGGB, nullptr, 0);
     }}};

void show(Page& page, const Picture& photo) {
  const Picture mosaic = mosaicOf(photo), seen = tinted(mosaic);
  const KipiRect all = {0, 0, photo.width, photo.height};
  page.section("Demosaicing", "A sensor sees one of red, green and blue at each pixel; the other two are guessed.");
  page.row("From one sample per pixel to three",
           "Differences are to the original, times " + std::to_string(kGain) + ".");
  page.show({.picture = seen, .title = "Mosaic", .text = "What the sensor sees: R G over G B."});

  Picture results[2];
  for (int i = 0; i < 2; ++i) {
    const Method& method = kMethods[i];
    Picture& result = results[i] = Picture(photo.width, photo.height);
    const double speed = speedOf(photo, [&] { return method.convert(mosaic, all, result); });
    page.show({.picture = result,
               .title = method.title,
               .text = method.text,
               .function = method.function,
               .speed = speed,
               .psnr = psnr(photo, result)});
    page.show({.picture = difference(photo, result, kGain), .title = std::string(method.title) + " difference"});
  }

  const auto closeUp = [&](const Corner& corner, const std::string& text) {
    page.row("Close up", text);
    const auto part = [&](const Picture& picture, const std::string& title) {
      const Picture square = crop(picture, corner.x, corner.y, kCloseUp, kCloseUp);
      page.show({.picture = enlarge(square, kZoom, kZoom), .title = title});
    };
    part(photo, "Original");
    part(seen, "Mosaic");
    for (int i = 0; i < 2; ++i) part(results[i], kMethods[i].title);
  };
  closeUp(worstSquare(results[0], results[1], kCloseUp), "Where the two differ most.");
  closeUp(worstSquare(photo, results[1], kCloseUp), "Where the better one is farthest from the original.");
}

const Family kDemosaic(80, show);

}  // namespace
