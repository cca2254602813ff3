// CIE spaces, photo YCC and YCoCg: the planes of each space, and the picture that comes back.

#include <utility>

#include "model.h"
#include "page.h"

namespace {

constexpr Model kModels[] = {
    {"XYZ",
     "What the three receptors of the standard observer add up to; Y is luminance. The picture is taken as linear "
     "light.",
     {"X", "Y", "Z"},
     kipiRGBToXYZ_8u_C3R,
     kipiXYZToRGB_8u_C3R,
     "kipiRGBToXYZ_8u_C3R",
     "kipiXYZToRGB_8u_C3R"},
    {"L*u*v*",
     "Lightness as the eye judges it, and how far a colour is from white, scaled by lightness.",
     {"L*", "u*", "v*"},
     kipiRGBToLUV_8u_C3R,
     kipiLUVToRGB_8u_C3R,
     "kipiRGBToLUV_8u_C3R",
     "kipiLUVToRGB_8u_C3R"},
    {"L*a*b*",
     "The same lightness, and differences of cube roots: a* from green to red, b* from blue to yellow.",
     {"L*", "a*", "b*"},
     kipiBGRToLab_8u_C3R,
     kipiLabToBGR_8u_C3R,
     "kipiBGRToLab_8u_C3R",
     "kipiLabToBGR_8u_C3R",
     true},
    {"Photo YCC",
     "Luma with headroom above white, which is 181 of 255, and two colour differences.",
     {"Y", "C1", "C2"},
     kipiRGBToYCC_8u_C3R,
     kipiYCCToRGB_8u_C3R,
     "kipiRGBToYCC_8u_C3R",
     "kipiYCCToRGB_8u_C3R"}};

/// The first and the third channel change places.
Picture swapped(const Picture& picture) {
  Picture result = picture;
  for (size_t i = 0; i < result.samples.size(); i += 3) std::swap(result.samples[i], result.samples[i + 2]);
  return result;
}

/// The planes of a space, and what comes back from them.
void showPlanes(Page& page, const Picture& photo, const Model& model, const Picture (&planes)[3], double speed,
                const Picture& back, double backSpeed) {
  page.row(model.name, model.text);
  for (int c = 0; c < 3; ++c) {
    page.show({.picture = planes[c],
               .title = std::string(model.name) + " " + model.titles[c],
               .function = c == 0 ? model.forwardName : "",
               .speed = c == 0 ? speed : 0});
  }
  page.show({.picture = back,
             .title = std::string(model.name) + " there and back",
             .function = model.backName,
             .speed = backSpeed,
             .psnr = psnr(photo, back)});
}

void showModel(Page& page, const Picture& photo, const Model& model) {
  const Picture source = model.bgr ? swapped(photo) : photo;
  Picture coded(photo.width, photo.height), back = coded, planes[3];
  const KipiSize size = photo.size();
  const double speed =
      speedOf(photo, [&] { return model.forward(source.data(), source.step(), coded.data(), coded.step(), size); });
  const double backSpeed =
      speedOf(photo, [&] { return model.back(coded.data(), coded.step(), back.data(), back.step(), size); });
  split(coded, planes);
  showPlanes(page, photo, model, planes, speed, model.bgr ? swapped(back) : back, backSpeed);
}

void showYCoCg(Page& page, const Picture& photo) {
  constexpr Model kYCoCg = {"YCoCg",
                            "Luma, orange against blue, green against magenta: additions and halvings alone.",
                            {"Y", "Co", "Cg"},
                            nullptr,
                            nullptr,
                            "kipiRGBToYCoCg_8u_C3P3R",
                            "kipiYCoCgToRGB_8u_P3C3R"};
  Planes coded(photo.size());
  Picture back(photo.width, photo.height);
  const double speed = speedOf(photo, [&] {
    return kipiRGBToYCoCg_8u_C3P3R(photo.data(), photo.step(), coded.to, coded.steps[0], photo.size());
  });
  const double backSpeed = speedOf(photo, [&] {
    return kipiYCoCgToRGB_8u_P3C3R(coded.from, coded.steps[0], back.data(), back.step(), photo.size());
  });
  const Picture planes[3] = {coded.plane[0], coded.plane[1], coded.plane[2]};
  showPlanes(page, photo, kYCoCg, planes, speed, back, backSpeed);
}

void show(Page& page, const Picture& photo) {
  page.section("CIE spaces, photo YCC and YCoCg", "Colour as the eye sees it, as film scanners store it, and cheaply.");
  for (const Model& model : kModels) showModel(page, photo, model);
  showYCoCg(page, photo);
}

const Family kCie(45, show);

}  // namespace
