// Matrix, range and chroma: one picture, read as what it is and as what it is not.

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "kipconvert.h"
#include "page.h"

namespace {

constexpr int kZoom = 6;
constexpr int kCloseUp = 40;  // pixels

/// NV12 of BT.709 at limited range, as video has it, unless said otherwise.
KipPicture video(const Picture& photo) {
  return {kipFormatNV12, photo.width, photo.height, kipMatrixBT709, kipRangeLimited, kipSiteLeft};
}

KipPicture rgb(const Picture& photo) {
  return {kipFormatRGB24, photo.width, photo.height, kipMatrixUnspecified, kipRangeFull, kipSiteUnspecified};
}

/// A picture in memory, in any format.
struct Memory {
  std::vector<Kip8u> bytes;
  KipPlanes planes = {};

  explicit Memory(const KipPicture& picture) {
    KipLayout layout;
    if (kipPictureLayout(&picture, 1, &layout) != kipStatusOk) throw std::runtime_error("the picture is too large");
    bytes.resize(layout.bytes);
    for (int p = 0; p < kipFormatInfo(picture.format)->planes; ++p) {
      planes.plane[p] = bytes.data() + layout.offset[p];
      planes.step[p] = layout.step[p];
    }
  }
};

KipPlanes planesOf(Picture& picture) { return {{picture.data()}, {picture.step()}}; }

void require(KipStatus status) {
  if (status != kipStatusOk) throw std::runtime_error(kipStatusText(status));
}

/// The photo coded as one kind of picture, and shown as if it were another.
struct Reading {
  const char *title, *text;
  KipPicture coded, taken;
  KipChromaFilter chroma = kipChromaLinear;
  Picture shown = {};
  double speed = 0;
};

/// Fills in what it looks like.
void read(Reading& reading, const Picture& photo) {
  Picture source = photo;
  const KipPicture pixels = rgb(photo);
  const KipPlanes from = planesOf(source);
  const Memory coded(reading.coded);
  require(kipConvertPicture(&pixels, &from, &reading.coded, &coded.planes));

  reading.shown = Picture(photo.width, photo.height);
  const KipPlanes to = planesOf(reading.shown);
  const KipPlanOptions options = {sizeof options, reading.chroma, kipDitherNone, kipDemosaicBilinear, 1};
  KipPlan* plan;
  require(kipPlanMake(&reading.taken, &pixels, &options, &plan));
  reading.speed = speedOf(photo, [&] { return kipPlanRun(plan, &coded.planes, &to); });
  kipPlanFree(plan);
}

/// A detail at the upper right, where the drawn scene has sectors with hard edges.
Picture closeUp(const Picture& picture) {
  const int x = std::min(picture.width * 13 / 16, picture.width - kCloseUp);
  const int y = std::min(picture.height / 16, picture.height - kCloseUp);
  return enlarge(crop(picture, x, y, kCloseUp, kCloseUp), kZoom, kZoom);
}

/// Pictures of one size in a row, with gaps.
Picture sideBySide(const std::vector<Picture>& parts) {
  constexpr int kGap = 4;
  const int width = parts[0].width;
  Picture row(static_cast<int>(parts.size()) * (width + kGap) - kGap, parts[0].height, 3, 255);
  for (size_t i = 0; i < parts.size(); ++i) {
    for (int y = 0; y < row.height; ++y) {
      std::copy_n(parts[i].at(0, y), parts[i].step(), row.at(static_cast<int>(i) * (width + kGap), y));
    }
  }
  return row;
}

/// A bit of the middle, towards the lower right.
Picture middle(const Picture& picture) {
  constexpr int kWidth = 208, kHeight = 176;
  const int width = std::min(kWidth, picture.width), height = std::min(kHeight, picture.height);
  return crop(picture, (picture.width - width) * 7 / 10, (picture.height - height) * 7 / 10, width, height);
}

void show(Page& page, const Picture& photo) {
  const KipPicture right = video(photo);
  KipPicture full = right, bt601 = right, exchanged = right, center = right;
  full.range = kipRangeFull;
  bt601.matrix = kipMatrixBT601;
  exchanged.format = kipFormatNV21;
  center.site = kipSiteCenter;

  page.section(
      "Right and wrong colours",
      "NV12 to RGB. The same samples mean other colours with another matrix or range, and nothing in them says "
      "which.");
  Reading colours[] = {
      {"Right", "BT.709, limited range, as it was made.", right, right},
      {"Limited taken for full", "Black is grey, white is dull.", right, full},
      {"Full taken for limited", "Shadows and lights are cut off.", full, right},
      {"BT.709 taken for BT.601", "Greens and reds are off; grey is right.", right, bt601},
      {"Cb and Cr exchanged", "NV12 taken for NV21: red is blue.", right, exchanged},
  };
  page.row("What the samples mean");
  for (Reading& reading : colours) {
    read(reading, photo);
    page.show({.picture = reading.shown,
               .title = reading.title,
               .text = reading.text,
               .function = "kipPlanRun",
               .speed = reading.speed,
               .psnr = psnr(photo, reading.shown)});
  }

  std::vector<Picture> parts;
  for (const Reading& reading : colours) parts.push_back(middle(reading.shown));
  page.row("", "A part of each, from right to exchanged.");
  page.show({.picture = sideBySide(parts), .title = "Colours side by side"});

  Reading sites[] = {
      {"Chroma at its site", "Left, as it was made, interpolated.", right, right},
      {"Left taken for center", "Colours lie half a pixel beside their edges.", right, center},
      {"Nearest", "Each sample for its group of pixels: edges have steps.", right, right, kipChromaNearest},
  };
  for (Reading& reading : sites) read(reading, photo);
  page.row("Where the chroma lies");
  parts = {closeUp(photo)};
  for (const Reading& reading : sites) {
    page.show({.picture = reading.shown,
               .title = reading.title,
               .text = reading.text,
               .function = "kipPlanRun",
               .speed = reading.speed,
               .psnr = psnr(photo, reading.shown)});
    parts.push_back(closeUp(reading.shown));
  }
  page.row("", "A detail of the photo, and of the three in the same order.");
  page.show({.picture = sideBySide(parts), .title = "Chroma side by side"});
}

const Family kColour(5, show);

}  // namespace
