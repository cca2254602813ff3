// Packed 16-bit RGB: bands of few levels, and how dithering breaks them up.

#include <set>

#include "page.h"

namespace {

constexpr int kCloseUp = 48;  // pixels
constexpr int kZoom = 8;      // of close-ups

/// A space of words: how many bits its channels have, and what makes them.
struct Space {
  const char* name;
  int bits[3];  // of R, G, B, from the word's lowest bit up
  decltype(kipiYCbCrToRGB565_8u16u_P3C3R)*plain, *dither;
  const char *plainName, *ditherName;
};
#define KIP_SPACE(plain, dither) plain, dither, #plain, #dither
constexpr Space kSpaces[] = {
    {"RGB565", {5, 6, 5}, KIP_SPACE(kipiYCbCrToRGB565_8u16u_P3C3R, kipiYCbCrToRGB565Dither_8u16u_P3C3R)},
    {"RGB444", {4, 4, 4}, KIP_SPACE(kipiYCbCrToRGB444_8u16u_P3C3R, kipiYCbCrToRGB444Dither_8u16u_P3C3R)},
};
#undef KIP_SPACE

/// Words as a display shows them: the highest level of each channel is white.
Picture shown(const std::vector<Kip16u>& words, const Picture& like, const Space& space) {
  Picture picture(like.width, like.height);
  Kip8u* to = picture.data();
  for (int word : words) {
    for (const int bits : space.bits) {
      const int last = (1 << bits) - 1;
      *to++ = static_cast<Kip8u>((word & last) * 255 / last);
      word >>= bits;
    }
  }
  return picture;
}

Picture showWords(Page& page, const Picture& photo, Planes& ycbcr, const Space& space, bool dithers) {
  std::vector<Kip16u> words(size_t(photo.width) * photo.height);
  const int step = photo.width * int(sizeof(Kip16u));
  const auto convert = dithers ? space.dither : space.plain;
  const double speed =
      speedOf(photo, [&] { return convert(ycbcr.from, ycbcr.steps[0], words.data(), step, photo.size()); });
  const Picture picture = shown(words, photo, space);
  page.show({.picture = picture,
             .title = std::string(space.name) + (dithers ? " dithered" : ""),
             .text = dithers ? "Levels raised in patterns of 4 x 4 pixels." : "The upper bits of each channel.",
             .function = dithers ? space.ditherName : space.plainName,
             .speed = speed,
             .psnr = psnr(photo, picture)});
  return picture;
}

/// The top left corner of the square, of all those on a grid, with most colours: there bands meet.
Corner mostColours(const Picture& picture, int side) {
  Corner corner = {0, 0};
  size_t most = 0;
  for (int y = 0; y + side <= picture.height; y += side / 2) {
    for (int x = 0; x + side <= picture.width; x += side / 2) {
      std::set<std::array<Kip8u, 3>> colours;
      for (int i = 0; i < side * side; ++i) {
        const Kip8u* rgb = picture.at(x + i % side, y + i / side);
        colours.insert({rgb[0], rgb[1], rgb[2]});
      }
      if (colours.size() > most) most = colours.size(), corner = {x, y};
    }
  }
  return corner;
}

void show(Page& page, const Picture& photo) {
  page.section("Packed 16-bit RGB",
               "Three channels in one word: few levels, which show as bands where colours change slowly.");
  Planes ycbcr(photo.size());
  kipiRGBToYCbCr_8u_C3P3R(photo.data(), photo.step(), ycbcr.to, ycbcr.steps[0], photo.size());
  Picture plain, dithered;
  for (const Space& space : kSpaces) {
    page.row(space.name);
    plain = showWords(page, photo, ycbcr, space, false);
    dithered = showWords(page, photo, ycbcr, space, true);
  }

  const Corner corner = mostColours(plain, kCloseUp);
  page.row("Close up", "Where bands of " + std::string(kSpaces[1].name) + " meet.");
  const auto closeUp = [&](const Picture& picture, const std::string& title) {
    page.show({.picture = enlarge(crop(picture, corner.x, corner.y, kCloseUp, kCloseUp), kZoom, kZoom),
               .title = title + " close up"});
  };
  closeUp(photo, "Original");
  closeUp(plain, kSpaces[1].name);
  closeUp(dithered, std::string(kSpaces[1].name) + " dithered");
}

const Family kPacked16(35, show);

}  // namespace
