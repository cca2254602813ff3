#include "develop.h"

#include <libraw/libraw.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace raw {
namespace {

constexpr float kFullScale = 65535;

/// The visible part of a sensor, black at 0 and balanced: grey things have equal samples, white is full scale.
struct Mosaic {
  KipiSize size;
  KipiBayerGrid grid;
  std::vector<Kip16u> samples;
};

struct DeepPicture {
  explicit DeepPicture(KipiSize size) : size(size), pixels(3 * size_t(size.width) * size.height) {}
  int step() const { return size.width * 3 * int(sizeof(Kip16u)); }

  KipiSize size;
  std::vector<Kip16u> pixels;
};

void check(int error, const std::string& file) {
  if (error != LIBRAW_SUCCESS) throw std::runtime_error(file + ": " + libraw_strerror(error));
}

void check(KipStatus status) {
  if (status != kipStatusOk) throw std::runtime_error("a conversion failed with status " + std::to_string(status));
}

void open(LibRaw& raw, const std::string& file) {
  check(raw.open_file(file.c_str()), file);
  check(raw.unpack(), file);
  if (!raw.imgdata.rawdata.raw_image) throw std::runtime_error(file + ": not one sample for each pixel");
}

KipiBayerGrid gridOf(LibRaw& raw) {
  // LibRaw's number for the filters has 2 bits for each of 8 x 2 samples; Bayer's repeat every second row.
  const unsigned filters = raw.imgdata.idata.filters, twoRows = filters & 0xFF;
  if (filters != 0 && filters == twoRows * 0x01010101) {
    const auto letter = [&](int y, int x) { return raw.imgdata.idata.cdesc[raw.COLOR(y, x)]; };
    const std::string cell = {letter(0, 0), letter(0, 1), letter(1, 0), letter(1, 1)};
    if (cell == "BGGR") return kipiBayerBGGR;
    if (cell == "RGGB") return kipiBayerRGGB;
    if (cell == "GBRG") return kipiBayerGBRG;
    if (cell == "GRBG") return kipiBayerGRBG;
  }
  throw std::runtime_error("its filters are not a Bayer pattern of red, green and blue");
}

/// The level of a sample without light: a common one, one for each filter, and a pattern.
float blackAt(const libraw_colordata_t& color, int filter, int y, int x) {
  const unsigned rows = color.cblack[4], columns = color.cblack[5];
  const unsigned inPattern = rows * columns == 0 ? 0 : color.cblack[6 + y % rows * columns + x % columns];
  return static_cast<float>(color.black + color.cblack[filter] + inPattern);
}

/// Factors for the filters that make white things grey, as the camera measured it or else for daylight. The smallest is
/// 1, so that what overflows in the sensor is white.
std::vector<float> gainsOf(const libraw_colordata_t& color) {
  const float* camera = color.cam_mul[0] > 0 ? color.cam_mul : color.pre_mul;
  std::vector<float> gains(camera, camera + 4);
  if (gains[3] == 0) gains[3] = gains[1];  // the second green
  const float smallest = *std::min_element(gains.begin(), gains.end());
  if (!(smallest > 0)) throw std::runtime_error("it has no white balance");
  for (float& gain : gains) gain /= smallest;
  return gains;
}

Mosaic mosaicOf(LibRaw& raw) {
  const libraw_image_sizes_t& sizes = raw.imgdata.sizes;
  const libraw_colordata_t& color = raw.imgdata.color;
  const std::vector<float> gains = gainsOf(color);
  const float white = float(color.maximum);
  Mosaic mosaic = {{sizes.width, sizes.height}, gridOf(raw), {}};
  mosaic.samples.reserve(size_t(sizes.width) * sizes.height);
  for (int y = 0; y < sizes.height; ++y) {
    const ushort* row = raw.imgdata.rawdata.raw_image + size_t(sizes.top_margin + y) * sizes.raw_pitch / sizeof(ushort);
    for (int x = 0; x < sizes.width; ++x) {
      const int filter = raw.COLOR(y, x);
      const float black = blackAt(color, filter, y, x);
      if (!(black < white)) throw std::runtime_error("its white level is not above its black level");
      const float light = (float(row[sizes.left_margin + x]) - black) / (white - black);
      const float balanced = std::clamp(light * gains[filter], 0.F, 1.F);
      mosaic.samples.push_back(Kip16u(std::lround(balanced * kFullScale)));
    }
  }
  return mosaic;
}

DeepPicture demosaic(const Mosaic& mosaic, Method method) {
  DeepPicture picture(mosaic.size);
  const KipiRect whole = {0, 0, mosaic.size.width, mosaic.size.height};
  const int step = mosaic.size.width * int(sizeof(Kip16u));
  if (method == Method::kAhd) {
    check(kipiDemosaicAHD_16u_C1C3R(mosaic.samples.data(), whole, mosaic.size, step, picture.pixels.data(),
                                    picture.step(), mosaic.grid, nullptr, 0));
  } else {
    check(kipiCFAToRGB_16u_C1C3R(mosaic.samples.data(), whole, mosaic.size, step, picture.pixels.data(), picture.step(),
                                 mosaic.grid));
  }
  return picture;
}

/// From the camera's colours to those of sRGB, in linear light.
void twist(DeepPicture& picture, const libraw_colordata_t& color) {
  Kip32f matrix[3][4] = {};
  for (int to = 0; to < 3; ++to) std::copy_n(color.rgb_cam[to], 3, matrix[to]);
  check(kipiColorTwist32f_16u_C3IR(picture.pixels.data(), picture.step(), picture.size, matrix));
}

Picture curved(DeepPicture& picture) {
  check(kipiGammaFwd_16u_C3IR(picture.pixels.data(), picture.step(), picture.size));
  Picture bytes = {picture.size, std::vector<Kip8u>(picture.pixels.size())};
  constexpr int kAllLevels = 256, kNoNoise = 0;
  check(kipiReduceBits_16u8u_C3R(picture.pixels.data(), picture.step(), bytes.pixels.data(), picture.size.width * 3,
                                 picture.size, kNoNoise, kipDitherNone, kAllLevels));
  return bytes;
}

}  // namespace

Picture develop(const std::string& file, Method method) {
  LibRaw raw;
  open(raw, file);
  DeepPicture picture = demosaic(mosaicOf(raw), method);
  twist(picture, raw.imgdata.color);
  return curved(picture);
}

}  // namespace raw
