// Byte pixels as pairs of 16-bit channels in 32-bit lanes, (B, R) and (G, G), so that dotPairs weights them exactly. G
// is there twice for coefficients above 32767, which are split over both.

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
  I16 br[2], gg[2];
};

/// Interleaved pixels: each block is loaded where its pixels are and spread by a byte shuffle.
template <int kSamples, Order kOrder>
KIP_INLINE PixelPairs loadPairs(const Rows<const Kip8u, 1>& from, int half) {
  constexpr int kRed = kOrder == Order::kForward ? 0 : 2, kBlue = 2 - kRed, kGap = 0x80;
  constexpr int kPixelsBytes = 4 * kSamples;  // of the four pixels of a block
  constexpr int kBack = 16 - kPixelsBytes;    // the last load ends where the pixels end
  alignas(16) static constexpr struct Table {
    uint8_t br[2][16], gg[2][16];
    constexpr Table() : br(), gg() {
      for (int last = 0; last < 2; ++last) {
        for (int p = 0; p < 4; ++p) {
          const int at = p * kSamples + last * kBack;
          br[last][4 * p] = at + kBlue, br[last][4 * p + 2] = at + kRed;
          gg[last][4 * p] = gg[last][4 * p + 2] = at + 1;
          br[last][4 * p + 1] = br[last][4 * p + 3] = gg[last][4 * p + 1] = gg[last][4 * p + 3] = kGap;
        }
      }
    }
  } kTable;
  const Tag<uint8_t> d;
  PixelPairs pairs;
  for (int k = 0; k < 2; ++k) {
    const int place = 2 * half + k, last = place == 3;
    const U8 bytes = loadBlocks(from.at[0] + place * kPixelsBytes - last * kBack, 4 * kPixelsBytes);
    if constexpr (kSamples == 4 && kOrder == Order::kReverse) {
      pairs.br[k] = evenBytes(bytes);  // they lie like that
    } else {
      pairs.br[k] = as<int16_t>(hn::TableLookupBytesOr0(bytes, hn::LoadDup128(d, kTable.br[last])));
    }
    pairs.gg[k] = as<int16_t>(hn::TableLookupBytesOr0(bytes, hn::LoadDup128(d, kTable.gg[last])));
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
  pairs.br[0] = hn::InterleaveLower(px.c, px.a);
  pairs.gg[0] = hn::InterleaveLower(px.b, px.b);
  pairs.br[1] = hn::InterleaveUpper(d, px.c, px.a);
  pairs.gg[1] = hn::InterleaveUpper(d, px.b, px.b);
  return pairs;
}
KIP_INLINE PixelPairs pairsOf(const P3<uint8_t>& layout, const Rows<const Kip8u, 3>& from, int half) {
  return pairsOf(eachChannel(layout.load(from),
                             [half](U8 v) KIP_INLINE_LAMBDA { return half == 0 ? lowerBytes(v) : upperBytes(v); }));
}

/// One 32-bit result per pixel from function(br, gg), saturated to 16-bit lanes in order.
template <class Function>
KIP_INLINE I16 packPixels(const PixelPairs& px, const Function& function) {
  return packWords(function(px.br[0], px.gg[0]), function(px.br[1], px.gg[1]));
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
