// Hue spaces: what hue, saturation and lightness or value are of a picture, and a turn of the hue.

#include "model.h"
#include "page.h"

namespace {

constexpr int kTurn = 85;  // a third of the circle, which 255 stands for

/// A plane of hue in the pure colours that it stands for.
Picture painted(const Picture& hue) {
  Picture hsv(hue.width, hue.height), rgb = hsv;
  for (size_t i = 0; i < hsv.samples.size(); ++i) hsv.samples[i] = i % 3 == 0 ? hue.samples[i / 3] : 255;
  kipiHSVToRGB_8u_C3R(hsv.data(), hsv.step(), rgb.data(), rgb.step(), rgb.size());
  return rgb;
}

constexpr Model kModels[] = {
    {"HLS",
     "Lightness is halfway between the largest and the smallest channel: pure colours are half as light as white.",
     {"hue", "lightness", "saturation"},
     kipiRGBToHLS_8u_C3R,
     kipiHLSToRGB_8u_C3R,
     "kipiRGBToHLS_8u_C3R",
     "kipiHLSToRGB_8u_C3R"},
    {"HSV",
     "Value is the largest channel: pure colours are as bright as white.",
     {"hue", "saturation", "value"},
     kipiRGBToHSV_8u_C3R,
     kipiHSVToRGB_8u_C3R,
     "kipiRGBToHSV_8u_C3R",
     "kipiHSVToRGB_8u_C3R"}};

void showModel(Page& page, const Picture& photo, const Model& model) {
  const KipiSize size = photo.size();
  Picture hue(photo.width, photo.height), back = hue, turned = hue, planes[3];
  const double speed =
      speedOf(photo, [&] { return model.forward(photo.data(), photo.step(), hue.data(), hue.step(), size); });
  const double backSpeed =
      speedOf(photo, [&] { return model.back(hue.data(), hue.step(), back.data(), back.step(), size); });
  split(hue, planes);

  page.row(model.name, model.text);
  page.show({.picture = painted(planes[0]),
             .title = std::string(model.name) + " hue",
             .text = "In pure colours.",
             .function = model.forwardName,
             .speed = speed});
  for (int c : {1, 2}) page.show({.picture = planes[c], .title = std::string(model.name) + " " + model.titles[c]});

  for (size_t i = 0; i < hue.samples.size(); i += 3) hue.samples[i] = Kip8u((hue.samples[i] + kTurn) % 255);
  model.back(hue.data(), hue.step(), turned.data(), turned.step(), size);
  page.row(std::string(model.name) + " back");
  page.show({.picture = back,
             .title = std::string(model.name) + " there and back",
             .text = "To RGB.",
             .function = model.backName,
             .speed = backSpeed,
             .psnr = psnr(photo, back)});
  page.show({.picture = turned, .title = std::string(model.name) + " turned", .text = "Hue by a third of the circle."});
}

void show(Page& page, const Picture& photo) {
  page.section("Hue spaces", "Colour as an angle, and how far it is from grey.");
  for (const Model& model : kModels) showModel(page, photo, model);
}

const Family kHue(40, show);

}  // namespace
