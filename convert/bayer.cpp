#include "bayer.h"

#include <algorithm>
#include <cstring>

#include "kipcc.h"

namespace kip::convert {
namespace {

/// Packed samples of 10 bits: four upper bytes, then the lower two bits of each, from the lowest up.
void unpack10(const uint8_t* row, uint16_t* to, int width) {
  for (int x = 0; x < width; ++x) {
    const uint8_t* group = row + x / 4 * 5;
    to[x] = static_cast<uint16_t>(group[x % 4] << 8 | (group[4] >> 2 * (x % 4) & 3) << 6);
  }
}

/// Of 12 bits: two upper bytes, then the lower four bits of each.
void unpack12(const uint8_t* row, uint16_t* to, int width) {
  for (int x = 0; x < width; ++x) {
    const uint8_t* group = row + x / 2 * 3;
    to[x] = static_cast<uint16_t>(group[x % 2] << 8 | (group[2] >> 4 * (x % 2) & 15) << 4);
  }
}

/// What to demosaic: an image of the sensor, and the region of it.
struct Sensor {
  const uint8_t* first;
  ptrdiff_t step;
  KipiSize size;
  KipiRect region;
};

template <class T, class Linear, class Directed>
void demosaicTo(const Sensor& s, const BayerSource& bayer, uint8_t* rgb, const Linear& linear,
                const Directed& directed) {
  const auto* from = reinterpret_cast<const T*>(s.first);
  auto* to = reinterpret_cast<T*>(rgb);
  const auto grid = static_cast<KipiBayerGrid>(bayer.grid);
  const int step = static_cast<int>(s.step), rgbStep = static_cast<int>(bayer.rgbStep);
  if (bayer.method == kipDemosaicAHD) {
    directed(from, s.region, s.size, step, to, rgbStep, grid, nullptr, 0);
  } else {
    linear(from, s.region, s.size, step, to, rgbStep, grid);
  }
}

}  // namespace

const uint8_t* BayerRows::row(int y) {
  const BayerSource& bayer = plan_.bayer;
  if (y < first_ || y >= first_ + rows_) {
    first_ = y, rows_ = std::min(kBayerBlockRows, plan_.height - y);
    demosaic(first_, rows_);
  }
  return scratch_ + bayer.rgbOffset + (y - first_) * bayer.rgbStep;
}

void BayerRows::demosaic(int first, int rows) {
  const BayerSource& bayer = plan_.bayer;
  Sensor sensor = {static_cast<const uint8_t*>(src_.plane[0]),
                   src_.step[0],
                   {plan_.width, plan_.height},
                   {0, first, plan_.width, rows}};
  if (bayer.packedBits != 0) {
    const int from = std::max(0, first - kBayerMargin), to = std::min(plan_.height, first + rows + kBayerMargin);
    unpack(from, to);
    sensor = {scratch_ + bayer.rawOffset,
              static_cast<ptrdiff_t>(bayer.rawStep),
              {plan_.width, to - from},
              {0, first - from, plan_.width, rows}};
  }
  uint8_t* rgb = scratch_ + bayer.rgbOffset;
  if (bayer.type == SampleType::kU8) {
    demosaicTo<Kip8u>(sensor, bayer, rgb, kipiCFAToRGB_8u_C1C3R, kipiDemosaicAHD_8u_C1C3R);
  } else {
    demosaicTo<Kip16u>(sensor, bayer, rgb, kipiCFAToRGB_16u_C1C3R, kipiDemosaicAHD_16u_C1C3R);
  }
}

void BayerRows::unpack(int first, int last) {
  const BayerSource& bayer = plan_.bayer;
  for (int y = first; y < last; ++y) {
    const uint8_t* row = static_cast<const uint8_t*>(src_.plane[0]) + y * src_.step[0];
    auto* to = reinterpret_cast<uint16_t*>(scratch_ + bayer.rawOffset + (y - first) * bayer.rawStep);
    (bayer.packedBits == 10 ? unpack10 : unpack12)(row, to, plan_.width);
  }
}

}  // namespace kip::convert
