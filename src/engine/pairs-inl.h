// Byte pixels in 32-bit lanes, so that dot products weigh their channels exactly: as pairs of 16-bit channels, (B, R)
// and (G, G), or, where four products are summed in one step, as four bytes, B, G, R, G. G is there twice for
// coefficients above 32767, which are split over both.

#if defined(KIP_ENGINE_PAIRS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_PAIRS_INL_H_
#undef KIP_ENGINE_PAIRS_INL_H_
#else
#define KIP_ENGINE_PAIRS_INL_H_
#endif

#include "engine/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// A vector of pixels as pairs of channels.
struct PixelPairs {
  I16 br, gg;
};
KIP_INLINE I16 brOf(const PixelPairs& px) { return px.br; }
KIP_INLINE I16 ggOf(const PixelPairs& px) { return px.gg; }
/// (B - G, R - G)
KIP_INLINE I16 differencesOf(const PixelPairs& px) { return hn::Sub(px.br, px.gg); }

/// Half a batch of pixels in two vectors, four pixels to each 128 bits; packing the two gives the pixels' order. (The
/// whole batch would not fit in the registers of an arithmetic.)
template <class Px>
struct HalfBatch {
  Px of[2];
};

/// A vector of pixels as four bytes each. In a batch, each vector has the pixels that follow those of the one before.
struct PixelQuads {
  U8 bytes;
};
KIP_INLINE I16 brOf(const PixelQuads& px) { return evenBytes(px.bytes); }
KIP_INLINE I16 ggOf(const PixelQuads& px) { return oddBytes(px.bytes); }
KIP_INLINE I16 differencesOf(const PixelQuads& px) {
  return dotBytes(px.bytes, as<int8_t>(set<int16_t>(bytePair(1, -1))));
}

/// Lanes of packed results, 32 bits for each four pixels or two pixel pairs, in the order of the pixels.
template <class Half, class V>
KIP_INLINE V inPixelOrder(V v) {
  if constexpr (std::is_same_v<Half, HalfBatch<PixelQuads>>) {
    // Lane 4 b + 2 h + k is of vector k of half h.
    const Tag<int32_t> d;
    int32_t from[kLanes<int32_t>];
    for (int i = 0; i < kLanes<int32_t>; ++i) from[i] = i % kBlocksPerVector * 4 + i / kBlocksPerVector;
    return as<hn::TFromV<V>>(hn::TableLookupLanes(as<int32_t>(v), hn::SetTableIndices(d, from)));
  } else {
    return v;
  }
}

/// Channels in 16-bit lanes, in order.
KIP_INLINE HalfBatch<PixelPairs> pairsOf(const Pixels<I16>& px) {
  const Tag<int16_t> d;
  return {{{hn::InterleaveLower(px.c, px.a), hn::InterleaveLower(px.b, px.b)},
           {hn::InterleaveUpper(d, px.c, px.a), hn::InterleaveUpper(d, px.b, px.b)}}};
}

#if KIP_HAS_64_ENTRY_TABLES
/// Interleaved pixels: 16 of them are loaded where they are and spread by a byte permute.
template <int kSamples, Order kOrder>
KIP_INLINE HalfBatch<PixelQuads> loadPixels(const Rows<const Kip8u, 1>& from, int half) {
  constexpr int kRed = kOrder == Order::kForward ? 0 : 2;
  constexpr int kBytes = 16 * kSamples, kBack = 64 - kBytes;  // the last load ends where the pixels end
  static constexpr struct Table {
    alignas(64) uint8_t spread[2][64];
    constexpr Table() : spread() {
      for (int last = 0; last < 2; ++last) {
        for (int i = 0; i < 64; ++i) {
          const int channel = i % 2 == 1 ? 1 : i % 4 == 2 ? kRed : 2 - kRed;
          spread[last][i] = i / 4 * kSamples + channel + last * kBack;
        }
      }
    }
  } kTable;
  HalfBatch<PixelQuads> px;
  for (int k = 0; k < 2; ++k) {
    const int place = 2 * half + k, last = place == 3;
    px.of[k].bytes =
        permute(hn::LoadU(Tag<uint8_t>(), from.at[0] + place * kBytes - last * kBack), kTable.spread[last]);
  }
  return px;
}
#else
/// Interleaved pixels: each block is loaded where its pixels are and spread by a byte shuffle.
template <int kSamples, Order kOrder>
KIP_INLINE HalfBatch<PixelPairs> loadPixels(const Rows<const Kip8u, 1>& from, int half) {
  constexpr int kRed = kOrder == Order::kForward ? 0 : 2, kBlue = 2 - kRed;
  constexpr int kPixelsBytes = 4 * kSamples;  // of the four pixels of a block
  constexpr int kBack = 16 - kPixelsBytes;    // the last load ends where the pixels end
  static constexpr struct Table {
    alignas(16) uint8_t br[2][16], gg[2][16];
    constexpr Table() : br(), gg() {
      for (int last = 0; last < 2; ++last) {
        for (int p = 0; p < 4; ++p) {
          const int at = p * kSamples + last * kBack;
          br[last][4 * p] = at + kBlue, br[last][4 * p + 2] = at + kRed;
          gg[last][4 * p] = gg[last][4 * p + 2] = at + 1;
          br[last][4 * p + 1] = br[last][4 * p + 3] = gg[last][4 * p + 1] = gg[last][4 * p + 3] = kNoByte;
        }
      }
    }
  } kTable;
  HalfBatch<PixelPairs> px;
  for (int k = 0; k < 2; ++k) {
    const int place = 2 * half + k, last = place == 3;
    const U8 bytes = loadBlocks(from.at[0] + place * kPixelsBytes - last * kBack, 4 * kPixelsBytes);
    if constexpr (!kHasByteShuffle) {
      const U8 lanes = kSamples == 4 ? bytes : last ? threesToLanes<kBack>(bytes) : threesToLanes<0>(bytes);
      px.of[k].br = as<int16_t>(LaneShuffle<kBlue, kNoByte, kRed, kNoByte>::of(lanes));
      px.of[k].gg = as<int16_t>(LaneShuffle<1, kNoByte, 1, kNoByte>::of(lanes));
      continue;
    }
    if constexpr (kSamples == 4 && kOrder == Order::kReverse) {
      px.of[k].br = evenBytes(bytes);  // they lie like that
    } else {
      px.of[k].br = as<int16_t>(shuffleBlocks(bytes, kTable.br[last]));
    }
    px.of[k].gg = as<int16_t>(shuffleBlocks(bytes, kTable.gg[last]));
  }
  return px;
}
#endif

template <Order kOrder>
KIP_INLINE auto pixelsOf(const C3<uint8_t, kOrder>&, const Rows<const Kip8u, 1>& from, int half) {
  return loadPixels<3, kOrder>(from, half);
}
template <Order kOrder>
KIP_INLINE auto pixelsOf(const AC4<uint8_t, kOrder>&, const Rows<const Kip8u, 1>& from, int half) {
  return loadPixels<4, kOrder>(from, half);
}

KIP_INLINE HalfBatch<PixelPairs> pixelsOf(const P3<uint8_t>& layout, const Rows<const Kip8u, 3>& from, int half) {
  return pairsOf(eachChannel(layout.load(from),
                             [half](U8 v) KIP_INLINE_LAMBDA { return half == 0 ? lowerBytes(v) : upperBytes(v); }));
}

/// One 32-bit result per pixel from function(pixels), saturated to 16-bit lanes.
template <class Px, class Function>
KIP_INLINE I16 packPixels(const HalfBatch<Px>& px, const Function& function) {
  return packWords(function(px.of[0]), function(px.of[1]));
}

/// Sums of the channels of pixels, weighted by factors of up to 32639 (that of G may be twice as large).
class WeighPixels {
 public:
  KIP_INLINE WeighPixels(int b, int g, int r) : br_(keepPairs(b, r)), gg_(keepPairs(g / 2, g - g / 2)) {
    const auto quads = [&](auto part) KIP_INLINE_LAMBDA {
      return as<int8_t>(keepPairs(bytePair(part(b), part(g / 2)), bytePair(part(r), part(g - g / 2))));
    };
    high_ = quads([](int factor) { return highByte(factor); });
    low_ = quads([](int factor) { return lowByte(factor); });
  }

  KIP_INLINE I32 operator()(const PixelPairs& px) const { return hn::Add(dotPairs(px.br, br_), dotPairs(px.gg, gg_)); }
  /// More by 256 times an addend.
  KIP_INLINE I32 operator()(const PixelQuads& px, I32 addend256 = hn::Zero(Tag<int32_t>())) const {
    return dotQuads(hn::ShiftLeft<8>(dotQuads(addend256, px.bytes, high_)), px.bytes, low_);
  }

 private:
  I16 br_, gg_;
  // Factors as 256 high + low, both of them signed bytes.
  static constexpr int lowByte(int factor) { return static_cast<int8_t>(factor & 0xFF); }
  static constexpr int highByte(int factor) { return (factor - lowByte(factor)) / 256; }
  I8 high_, low_;
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
