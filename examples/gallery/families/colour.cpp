// Matrix, range and chroma: one picture, read as what it is and as what it is not.

#include <stdexcept>

#include "kipconvert.h"
#include "page.h"

namespace {

constexpr int kZoom = 8;
constexpr int kCloseUp = 48;  // pixels

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

Picture closeUp(const Picture& picture, Corner at) {
  return enlarge(crop(picture, at.x, at.y, kCloseUp, kCloseUp), kZoom, kZoom);
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

  Reading sites[] = {
      {"Chroma at its site", "Left, as it was made, interpolated.", right, right},
      {"Left taken for center", "Colours lie half a pixel beside their edges.", right, center},
      {"Nearest", "Each sample for its group of pixels: edges have steps.", right, right, kipChromaNearest},
  };
  for (Reading& reading : sites) read(reading, photo);
  const Corner at = worstSquare({{sites[0].shown, sites[1].shown}, {sites[0].shown, sites[2].shown}}, kCloseUp);
  page.row("Where the chroma lies", "The detail where these differ most.");
  page.show({.picture = closeUp(photo, at), .title = "The photo close up"});
  for (const Reading& reading : sites) {
    page.show({.picture = closeUp(reading.shown, at),
               .title = reading.title,
               .text = reading.text,
               .psnr = psnr(photo, reading.shown)});
  }
}

const Family kColour(5, show);

}  // namespace
