#include "rgbpack.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "rgbpack.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace gstkip {
namespace HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

using Block = hn::FixedTag<uint8_t, RgbPacker::kBlock>;

/// Whole blocks, `fromStep` and `toStep` bytes apart; the bytes of a block beyond `toStep` are the next one's.
void packBlocks(const uint8_t* from, int fromStep, uint8_t* to, int toStep, int blocks, const uint8_t* places,
                const uint8_t* fourth) {
  const Block block;
  const auto shuffle = hn::LoadU(block, places), full = hn::LoadU(block, fourth);
  for (; blocks > 0; --blocks, from += fromStep, to += toStep) {
    hn::StoreU(hn::Or(hn::TableLookupBytesOr0(hn::LoadU(block, from), shuffle), full), block, to);
  }
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace gstkip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace gstkip {

HWY_EXPORT(packBlocks);

RgbPacker::RgbPacker(const GstVideoFormatInfo* format) : toBytes_(GST_VIDEO_FORMAT_INFO_PSTRIDE(format, 0)) {
  const int sample = GST_VIDEO_FORMAT_INFO_DEPTH(format, 0) / 8;
  fromBytes_ = 3 * sample;
  memset(places_, 0x80, sizeof places_);
  memset(fourth_, 0xFF, sizeof fourth_);
  idle_ = fromBytes_ == toBytes_;
  for (int pixel = 0; pixel < kBlock / toBytes_; ++pixel) {
    for (int byte = 0; byte < fromBytes_; ++byte) {
      const int to = GST_VIDEO_FORMAT_INFO_POFFSET(format, byte / sample) + byte % sample;
      places_[pixel * toBytes_ + to] = static_cast<uint8_t>(pixel * fromBytes_ + byte);
      fourth_[pixel * toBytes_ + to] = 0;
      idle_ = idle_ && to == byte;
    }
  }
}

void RgbPacker::pack(const uint8_t* rgb, uint8_t* pixels, int count) const {
  const int perBlock = kBlock / toBytes_, blocks = (count - 1) / perBlock, rest = count - blocks * perBlock;
  const auto packSome = HWY_DYNAMIC_DISPATCH(packBlocks);
  packSome(rgb, perBlock * fromBytes_, pixels, perBlock * toBytes_, blocks, places_, fourth_);
  uint8_t last[kBlock];
  packSome(rgb + blocks * perBlock * fromBytes_, 0, last, 0, 1, places_, fourth_);
  memcpy(pixels + blocks * perBlock * toBytes_, last, static_cast<size_t>(rest) * toBytes_);
}

}  // namespace gstkip
#endif
