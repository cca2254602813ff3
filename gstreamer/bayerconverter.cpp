#include "bayerconverter.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace gstkip {
namespace {

constexpr Kip16u kFull16 = 0xFFFF;

/// Rows that are converted at a time: few, to stay in the first-level cache, or many, where each call looks at some
/// rows above and below besides.
constexpr size_t kBilinearBytes = 24 * 1024;
constexpr int kAhdRows = 64;

/// Frames of so many bytes have left a processor's own caches when they are looked at next. Written past them, they do
/// not have to be read from memory first.
constexpr size_t kLargeFrame = 1 << 20;

std::vector<BayerFormat> makeFormats() {
  const struct {
    const char* name;
    KipiBayerGrid grid;
  } grids[] = {{"bggr", kipiBayerBGGR}, {"gbrg", kipiBayerGBRG}, {"grbg", kipiBayerGRBG}, {"rggb", kipiBayerRGGB}};
  std::vector<BayerFormat> formats;
  for (const int bits : {8, 10, 12, 14, 16}) {
    const std::string suffix = bits == 8 ? "" : std::to_string(bits) + "le";
    for (const auto& grid : grids) formats.push_back({grid.name + suffix, grid.grid, bits});
  }
  return formats;
}

/// v x (2^16 - 1) / (2^bits - 1), rounded: v in the upper bits, and the rest of the quotient below. Samples that have
/// more bits are full scale.
void spreadRow(const Kip16u* from, Kip16u* to, int count, int bits) {
  const int shift = 16 - bits;
  const Kip16u largest = static_cast<Kip16u>((1 << bits) - 1);
  const float rest = static_cast<float>((1 << shift) - 1) / static_cast<float>(largest);
  for (int x = 0; x < count; ++x) {
    const Kip16u sample = std::min(from[x], largest);
    to[x] = static_cast<Kip16u>((sample << shift) + static_cast<int>(static_cast<float>(sample) * rest + 0.5f));
  }
}

void spreadBytes(const Kip8u* from, Kip16u* to, int count) {
  for (int x = 0; x < count; ++x) to[x] = static_cast<Kip16u>(from[x] * (kFull16 / 255));
}

/// v x 255 / 65535, rounded.
void narrowRow(const Kip16u* from, Kip8u* to, int count) {
  for (int x = 0; x < count; ++x) to[x] = static_cast<Kip8u>((from[x] * 255u + 0x807F) >> 16);
}

}  // namespace

const std::vector<BayerFormat>& bayerFormats() {
  static const std::vector<BayerFormat> formats = makeFormats();
  return formats;
}

const BayerFormat* bayerFormatByName(const char* name) {
  const auto& all = bayerFormats();
  const auto found = std::find_if(all.begin(), all.end(), [&](const BayerFormat& f) { return name && f.name == name; });
  return found == all.end() ? nullptr : &*found;
}

BayerConverter::BayerConverter(const BayerFormat& from, const GstVideoInfo& to)
    : from_(from),
      size_{GST_VIDEO_INFO_WIDTH(&to), GST_VIDEO_INFO_HEIGHT(&to)},
      narrow_(GST_VIDEO_INFO_COMP_DEPTH(&to, 0) == 8),
      wide_(from.bits > 8 || !narrow_),
      packer_(to.finfo, GST_VIDEO_INFO_SIZE(&to) > kLargeFrame) {}

BayerConverter::Mosaic BayerConverter::spread(const Mosaic& mosaic, Workers& workers) {
  if (!wide_ || from_.bits == 16) return mosaic;
  spread_.resize(size_t(size_.width) * size_.height);
  workers.run(size_.height, 1, [&](int, int first, int rows) {
    for (int y = first; y < first + rows; ++y) {
      const Kip8u* from = mosaic.samples + y * mosaic.step;
      Kip16u* to = spread_.data() + size_t(y) * size_.width;
      if (from_.bits == 8) {
        spreadBytes(from, to, size_.width);
      } else {
        spreadRow(reinterpret_cast<const Kip16u*>(from), to, size_.width, from_.bits);
      }
    }
    return kipStatusOk;
  });
  return {reinterpret_cast<const Kip8u*>(spread_.data()), size_.width * sizeof(Kip16u)};
}

KipStatus BayerConverter::demosaic(const Mosaic& mosaic, BayerMethod method, KipiRect rows, void* rgb,
                                   size_t step) const {
  const int from = static_cast<int>(mosaic.step), to = static_cast<int>(step);
  if (wide_) {
    const auto samples = reinterpret_cast<const Kip16u*>(mosaic.samples);
    const auto pixels = static_cast<Kip16u*>(rgb);
    return method == kBayerAhd
               ? kipiDemosaicAHD_16u_C1C3R(samples, rows, size_, from, pixels, to, from_.grid, nullptr, 0)
               : kipiCFAToRGB_16u_C1C3R(samples, rows, size_, from, pixels, to, from_.grid);
  }
  const auto pixels = static_cast<Kip8u*>(rgb);
  return method == kBayerAhd
             ? kipiDemosaicAHD_8u_C1C3R(mosaic.samples, rows, size_, from, pixels, to, from_.grid, nullptr, 0)
             : kipiCFAToRGB_8u_C1C3R(mosaic.samples, rows, size_, from, pixels, to, from_.grid);
}

void BayerConverter::finishRow(const Kip8u* rgb, Kip8u* pixels, Kip8u* bytes) const {
  if (wide_ && narrow_) {
    Kip8u* to = packer_.isIdle() ? pixels : bytes;
    narrowRow(reinterpret_cast<const Kip16u*>(rgb), to, 3 * size_.width);
    rgb = to;
  }
  if (!packer_.isIdle()) packer_.pack(rgb, pixels, size_.width);
}

KipStatus BayerConverter::convertRows(const Mosaic& mosaic, BayerMethod method, KipiRect rows, GstVideoFrame* frame,
                                      Scratch& scratch) const {
  const auto frameStep = static_cast<size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(frame, 0));
  Kip8u* pixels = static_cast<Kip8u*>(GST_VIDEO_FRAME_PLANE_DATA(frame, 0)) + rows.y * frameStep;
  if (packer_.isIdle() && !wide_) return demosaic(mosaic, method, rows, pixels, frameStep);

  const int fit = std::max(1, static_cast<int>(kBilinearBytes / rgbStep()));
  const int end = rows.y + rows.height, atOnce = method == kBayerAhd ? kAhdRows : fit;
  scratch.rgb.resize(rgbStep() * atOnce + RgbPacker::kBlock);
  scratch.bytes.resize(3 * size_t(size_.width) + RgbPacker::kBlock);
  for (int y = rows.y; y < end; y += atOnce) {
    const KipiRect some = {0, y, size_.width, std::min(atOnce, end - y)};
    const KipStatus status = demosaic(mosaic, method, some, scratch.rgb.data(), rgbStep());
    if (status != kipStatusOk) return status;
    for (int row = 0; row < some.height; ++row, pixels += frameStep) {
      finishRow(scratch.rgb.data() + row * rgbStep(), pixels, scratch.bytes.data());
    }
  }
  std::atomic_thread_fence(std::memory_order_seq_cst);  // as the packer wants it
  return kipStatusOk;
}

KipStatus BayerConverter::run(const Kip8u* samples, GstVideoFrame* frame, BayerMethod method, Workers& workers) {
  const Mosaic mosaic = spread({samples, from_.step(size_.width)}, workers);
  scratch_.resize(workers.count());
  return workers.run(size_.height, 1, [&](int worker, int first, int rows) {
    return convertRows(mosaic, method, {0, first, size_.width, rows}, frame, scratch_[worker]);
  });
}

}  // namespace gstkip
