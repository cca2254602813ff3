#include "rgbpack.h"

#include <algorithm>
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

/// Whole blocks of so many bytes on either side; those of a vector beyond are the next block's.
template <int kFrom, int kTo>
void packBlocks(const uint8_t* from, uint8_t* to, int blocks, const uint8_t* places, const uint8_t* fourth) {
  const Block block;
  const auto shuffle = hn::LoadU(block, places), full = hn::LoadU(block, fourth);
#pragma GCC unroll 8
  for (int i = 0; i < blocks; ++i) {
    const auto rgb = hn::LoadU(block, from + i * ptrdiff_t{kFrom});
    hn::StoreU(hn::Or(hn::TableLookupBytesOr0(rgb, shuffle), full), block, to + i * ptrdiff_t{kTo});
  }
}

void packFour(const uint8_t* from, uint8_t* to, int blocks, const uint8_t* places, const uint8_t* fourth) {
  packBlocks<12, 16>(from, to, blocks, places, fourth);
}

/// The same past the caches: whole vectors of results at multiples of their size, and blocks before and behind them.
void streamFour(const uint8_t* from, uint8_t* to, int blocks, const uint8_t* places, const uint8_t* fourth) {
  const hn::ScalableTag<uint8_t> vector;
  const hn::ScalableTag<uint32_t> lanes;
  constexpr int kLanes = HWY_LANES(uint32_t), kBlocks = kLanes / 4, kVectorBytes = 4 * kLanes;
  if (reinterpret_cast<uintptr_t>(to) % 16 != 0) return packFour(from, to, blocks, places, fourth);
  const int before = static_cast<int>(-reinterpret_cast<uintptr_t>(to) % kVectorBytes / 16);
  const int first = std::min(before, blocks), end = first + (blocks - first) / kBlocks * kBlocks;
  packFour(from, to, first, places, fourth);

  HWY_ALIGN uint32_t begin[kLanes];  // the source's lanes of each block, whose fourth is not used
  for (int i = 0; i < kLanes; ++i) begin[i] = static_cast<uint32_t>(i / 4 * 3 + i % 4);
  const auto apart = hn::IndicesFromVec(lanes, hn::Load(lanes, begin));
  const auto shuffle = hn::LoadDup128(vector, places), full = hn::LoadDup128(vector, fourth);
  for (int i = first; i < end; i += kBlocks) {
    const auto rgb = hn::BitCast(lanes, hn::LoadU(vector, from + i * ptrdiff_t{12}));
    const auto spread = hn::BitCast(vector, hn::TableLookupLanes(rgb, apart));
    hn::Stream(hn::Or(hn::TableLookupBytesOr0(spread, shuffle), full), vector, to + i * ptrdiff_t{16});
  }
  packFour(from + end * ptrdiff_t{12}, to + end * ptrdiff_t{16}, blocks - end, places, fourth);
}

void packThree(const uint8_t* from, uint8_t* to, int blocks, const uint8_t* places, const uint8_t* fourth) {
  packBlocks<15, 15>(from, to, blocks, places, fourth);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace gstkip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace gstkip {

HWY_EXPORT(packFour);
HWY_EXPORT(streamFour);
HWY_EXPORT(packThree);

RgbPacker::RgbPacker(const GstVideoFormatInfo* format, bool pastCaches)
    : pastCaches_(pastCaches), toBytes_(GST_VIDEO_FORMAT_INFO_PSTRIDE(format, 0)) {
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
  const bool three = fromBytes_ == toBytes_;
  const auto packSome = three ? HWY_DYNAMIC_DISPATCH(packThree) : HWY_DYNAMIC_DISPATCH(packFour);
  const auto packMost = pastCaches_ && !three ? HWY_DYNAMIC_DISPATCH(streamFour) : packSome;
  packMost(rgb, pixels, blocks, places_, fourth_);
  uint8_t last[kBlock];
  packSome(rgb + blocks * perBlock * fromBytes_, last, 1, places_, fourth_);
  memcpy(pixels + blocks * perBlock * toBytes_, last, static_cast<size_t>(rest) * toBytes_);
}

}  // namespace gstkip
#endif
