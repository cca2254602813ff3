// Byte pixels as pairs of 16-bit channels in 32-bit lanes, (R, G) and (G, B), so that dotPairs weights them exactly.
// Splitting a coefficient for G over both pairs allows coefficients above 32767.

#if defined(KIP_FRAME_PAIRS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_FRAME_PAIRS_INL_H_
#undef KIP_FRAME_PAIRS_INL_H_
#else
#define KIP_FRAME_PAIRS_INL_H_
#endif

#include "frame/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// Half a block of pixels in two vectors, four pixels to each 128 bits; packing the two gives the pixels' order. (The
/// whole block would not fit in the registers of an arithmetic.)
struct PixelPairs {
  I16 rg[2], gb[2];
};

/// Interleaved pixels: each block is loaded where its pixels are and spread by a byte shuffle.
template <int kSamples, Order kOrder>
KIP_INLINE PixelPairs loadPairs(const Rows<const Kip8u, 1>& from, int half) {
  constexpr int kRed = kOrder == Order::kForward ? 0 : 2, kBlue = 2 - kRed, kGap = 0x80;
  constexpr int kPixelsBytes = 4 * kSamples;  // of the four pixels of a block
  constexpr int kBack = 16 - kPixelsBytes;    // the last load ends where the pixels end
  alignas(16) static constexpr struct Table {
    uint8_t rg[2][16], gb[2][16];
    constexpr Table() : rg(), gb() {
      for (int last = 0; last < 2; ++last) {
        for (int p = 0; p < 4; ++p) {
          const int at = p * kSamples + last * kBack;
          rg[last][4 * p] = at + kRed, gb[last][4 * p + 2] = at + kBlue;
          rg[last][4 * p + 2] = gb[last][4 * p] = at + 1;
          rg[last][4 * p + 1] = rg[last][4 * p + 3] = gb[last][4 * p + 1] = gb[last][4 * p + 3] = kGap;
        }
      }
    }
  } kTable;
  const Tag<uint8_t> d;
  PixelPairs pairs;
  for (int k = 0; k < 2; ++k) {
    const int place = 2 * half + k, last = place == 3;
    const U8 bytes = loadBlocks(from.at[0] + place * kPixelsBytes - last * kBack, 4 * kPixelsBytes);
    pairs.rg[k] = as<int16_t>(hn::TableLookupBytesOr0(bytes, hn::LoadDup128(d, kTable.rg[last])));
    pairs.gb[k] = as<int16_t>(hn::TableLookupBytesOr0(bytes, hn::LoadDup128(d, kTable.gb[last])));
  }
  return pairs;
}

template <Order kOrder>
KIP_INLINE PixelPairs pairsOf(const C3<uint8_t, kOrder>&, const Rows<const Kip8u, 1>& from, int half) {
  return loadPairs<3, kOrder>(from, half);
}
template <Order kOrder>
KIP_INLINE PixelPairs pairsOf(const AC4<uint8_t, kOrder>&, const Rows<const Kip8u, 1>& from, int half) {
  return loadPairs<4, kOrder>(from, half);
}
/// Channels in 16-bit lanes, in order.
KIP_INLINE PixelPairs pairsOf(const Pixels<I16>& px) {
  const Tag<int16_t> d;
  PixelPairs pairs;
  pairs.rg[0] = hn::InterleaveLower(px.a, px.b);
  pairs.gb[0] = hn::InterleaveLower(px.b, px.c);
  pairs.rg[1] = hn::InterleaveUpper(d, px.a, px.b);
  pairs.gb[1] = hn::InterleaveUpper(d, px.b, px.c);
  return pairs;
}
KIP_INLINE PixelPairs pairsOf(const P3<uint8_t>& layout, const Rows<const Kip8u, 3>& from, int half) {
  return pairsOf(eachChannel(layout.load(from),
                             [half](U8 v) KIP_INLINE_LAMBDA { return half == 0 ? lowerBytes(v) : upperBytes(v); }));
}

/// One 32-bit result per pixel from function(rg, gb), saturated to 16-bit lanes in order.
template <class Function>
KIP_INLINE I16 packPixels(const PixelPairs& px, const Function& function) {
  return packWords(function(px.rg[0], px.gb[0]), function(px.rg[1], px.gb[1]));
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
