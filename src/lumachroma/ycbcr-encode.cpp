// RGB to YCbCr, 8 bits: full resolution, 4:2:2, 4:2:0 and 4:1:1.

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lumachroma/ycbcr-encode.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/bytetable-inl.h"
#include "engine/lanes-inl.h"
#include "lumachroma/ycbcr-encode-inl.h"
#include "engine/transfer709.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// Full resolution

template <const ForwardSet& kSet>
struct PerPixel {
  using Lane = int16_t;
  Forward<kSet> forward;
  I32 lumaZero = keepInRegister<int32_t>(lumaOffset(kSet, kHalf)),
      chromaZero = keepInRegister<int32_t>(chromaOffset(kHalf, 1));

  KIP_INLINE PerPixel() {}
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Sums even = sums({pairEven(px.c, px.a), pairEven(px.b, px.b)});
    const Sums odd = sums({pairOdd(px.c, px.a), pairOdd(px.b, px.b)});
    return {interleaveHigh16(even.y, odd.y), interleaveHigh16(even.cb, odd.cb), interleaveHigh16(even.cr, odd.cr)};
  }

 private:
  struct Sums {
    I32 y, cb, cr;
  };
  KIP_INLINE Sums sums(const PixelPairs& px) const {
    const I16 d = differencesOf(px);
    return {hn::Add(forward.y(px), lumaZero), forward.cb(chromaZero, d), forward.cr(chromaZero, d)};
  }
};

/// The same for pixels in 32-bit lanes.
template <const ForwardSet& kSet>
struct PerLane {
  using Lane = PixelLanes;
  Forward<kSet> forward;
  I32 chromaZero = keepInRegister<int32_t>(chromaOffset(kHalf, 1));
  I8 lessGreen = keepBytePairs(1, -1);

  KIP_INLINE PerLane() {}
  KIP_INLINE U8 operator()(U8 px) const {
    const I16 d = dotBytes(px, lessGreen);
    return packLanes({luma(px), forward.cb(chromaZero, d), forward.cr(chromaZero, d)});
  }

 private:
  KIP_INLINE I32 luma(U8 px) const {
    if constexpr (kHasDotQuads) {
      return forward.y(PixelQuads{px}, lumaZero);
    } else {
      return hn::Add(forward.y(PixelPairs{evenBytes(px), oddBytes(px)}), lumaZero);
    }
  }
  I32 lumaZero = keepInRegister<int32_t>(lumaOffset(kSet, kHalf) / (kHasDotQuads ? 256 : 1));
};

// ---------------------------------------------------------------------------------------------------------------------
// The chroma of a pair from its first pixel and both neighbours of that, weighted 2, 1, 1; factors x 2^15

constexpr int kOne15 = 1 << 15;
constexpr Row kY15 = {8422, 16515, 3212};
constexpr Row kCb15 = {-1213, -2385, 3596}, kCbCentre15 = {-2426, -4769, 7193};
constexpr Row kCr15 = {3596, -3015, -582}, kCrCentre15 = {7193, -6030, -1164};

/// RGB pixels, and before each of their pairs the one to its left. The pointer is one pixel and a byte before them: so
/// a load of 16 bytes has four pixels and the one before.
struct WithLeft : C3<> {
  static constexpr int kBefore = 4;  // bytes
};
struct Taps : PixelPairs {  // in gg, the second pixel of a pair has the left one's G beside its own
  I16 leftBr;               // to the second pixel of each pair; the first one has zeros
};
KIP_INLINE HalfBatch<Taps> pixelsOf(const WithLeft&, const Rows<const Kip8u, 1>& from, int half) {
  static constexpr struct Table {
    alignas(16) uint8_t br[16], gg[16], leftBr[16];
    constexpr Table() : br(), gg(), leftBr() {
      for (int p = 0; p < 4; ++p) {
        const int at = WithLeft::kBefore + 3 * p, left = at - 2 * 3;
        const bool second = p % 2 == 1;
        br[4 * p] = at + 2, br[4 * p + 2] = at;
        gg[4 * p] = at + 1, gg[4 * p + 2] = second ? left + 1 : kNoByte;
        leftBr[4 * p] = second ? left + 2 : kNoByte, leftBr[4 * p + 2] = second ? left : kNoByte;
        for (uint8_t* table : {br, gg, leftBr}) table[4 * p + 1] = table[4 * p + 3] = kNoByte;
      }
    }
  } kTable;
  HalfBatch<Taps> taps;
  for (int k = 0; k < 2; ++k) {
    const U8 bytes = loadBlocks(from.at[0] + (2 * half + k) * 12, 48);
    if constexpr (!kHasByteShuffle) {
      constexpr int kHere = WithLeft::kBefore;
      const U8 px = threesToLanes<kHere>(bytes);
      const U8 left = as<uint8_t>(hn::ShiftLeft<32>(as<uint64_t>(threesToLanes<kHere - 3>(bytes))));
      const auto br = [](U8 v) KIP_INLINE_LAMBDA { return as<int16_t>(LaneShuffle<2, kNoByte, 0, kNoByte>::of(v)); };
      const U8 leftG = LaneShuffle<kNoByte, kNoByte, 1, kNoByte>::of(left);
      const U8 gg = hn::Or(LaneShuffle<1, kNoByte, kNoByte, kNoByte>::of(px), leftG);
      taps.of[k] = {{br(px), as<int16_t>(gg)}, br(left)};
      continue;
    }
    const auto spread = [&](const uint8_t(&table)[16])
                            KIP_INLINE_LAMBDA { return as<int16_t>(shuffleBlocks(bytes, table)); };
    taps.of[k] = {{spread(kTable.br), spread(kTable.gg)}, spread(kTable.leftBr)};
  }
  return taps;
}

/// Weighted sums of (B, R) and (G, left G), the weights different for even and odd pixels.
class WeighTaps {
 public:
  KIP_INLINE WeighTaps(const Row& even, const Row& odd, int leftG)
      : br_(as<int16_t>(keepPerPixel(pairBits(even.b, even.r), pairBits(odd.b, odd.r)))),
        gg_(as<int16_t>(keepPerPixel(pairBits(even.g, 0), pairBits(odd.g, leftG)))) {}
  KIP_INLINE I32 operator()(I16 br, I16 gg) const { return dotPairs(dotPairs(br, br_), gg, gg_); }

 private:
  I16 br_, gg_;
};

struct ThreeTaps {
  struct Sums {
    I32 cb, cr;
  };
  WeighTaps y{kY15, kY15, 0}, cb{kCbCentre15, kCb15, kCb15.g}, cr{kCrCentre15, kCr15, kCr15.g};
  I32 lumaZero = keepInRegister<int32_t>(16 * kOne15 + kOne15 / 2);
  I32 chromaZero = keepInRegister<int32_t>(kChromaZero * kOne15 + kOne15 / 2 - 1);  // one less than to the nearest

  KIP_INLINE ThreeTaps() {}

  KIP_INLINE I16 luma(const HalfBatch<Taps>& px) const {
    return packPixels(px, [this](const Taps& taps)
                              KIP_INLINE_LAMBDA { return hn::ShiftRight<15>(hn::Add(y(taps.br, taps.gg), lumaZero)); });
  }
  KIP_INLINE static I16 toByte(I16 luma) { return luma; }
  KIP_INLINE static const HalfBatch<Taps>& part(const HalfBatch<Taps>& px, I16) { return px; }
  KIP_INLINE Sums sums(const HalfBatch<Taps>& px) const {
    const auto chromaOf = [&](const WeighTaps& weigh) KIP_INLINE_LAMBDA {
      const auto weighed = [&](const Taps& taps)
                               KIP_INLINE_LAMBDA { return weigh(hn::Add(taps.br, taps.leftBr), taps.gg); };
      const I32 lower = weighed(px.of[0]), upper = weighed(px.of[1]);
      const I32 sum = hn::Add(evenLanes(lower, upper), oddLanes(lower, upper));
      return hn::ShiftRight<15>(hn::Add(sum, chromaZero));
    };
    return {chromaOf(cb), chromaOf(cr)};
  }
  KIP_INLINE static void chroma(const Sums (&half)[2], Subsampled& s) {
    s.u = packWords(half[0].cb, half[1].cb);
    s.v = packWords(half[0].cr, half[1].cr);
  }
};

/// What happens to the source samples first: nothing, or the transfer curve. There may be some more behind them, so
/// that they make whole vectors.
struct Linear {
  static void transfer(Kip8u*, size_t) {}
};
struct Transferred {
  static void transfer(Kip8u* samples, size_t count) {
    const Tag<uint8_t> d;
    const ByteTable<kTransfer709> curve;
    for (size_t i = 0; i < count; i += kLanes<uint8_t>) hn::StoreU(curve(hn::LoadU(d, samples + i)), d, samples + i);
  }
};

/// A row goes through a piece of memory that has the pixel to the left before it, and whole batches. At the row's start
/// that pixel is black: the missing neighbour has no chroma.
template <class Curve>
class Smoothed {
 public:
  static void rows(const Job& job, int first, int last) {
    const Walk encode(job);
    for (int y = first; y < last; ++y) row(encode, job.width, job.src.row(0, y), job.dst.row(0, y));
  }

 private:
  using Walk = Encode<ThreeTaps, WithLeft, CbYCrY>;
  static constexpr int kBefore = WithLeft::kBefore;
  static constexpr int kPiece = 512;  // pixels: whole batches

  static void row(const Walk& encode, int width, const Kip8u* from, Kip8u* to) {
    Kip8u memory[kBefore + WithLeft::bytes(0, kPiece)] = {}, result[CbYCrY::bytes(0, kPiece)];
    Kip8u* const pixels = memory + kBefore;
    for (int left = width; left > 0; left -= kPiece) {
      const int count = std::min(left, kPiece), pairs = wholeGroups<CbYCrY>(count);
      std::memcpy(pixels, from, WithLeft::bytes(0, count));
      Curve::transfer(pixels, WithLeft::bytes(0, count));
      encode.group({{memory}}, {{count == kPiece ? to : result}}, hwy::RoundUpTo(count, CbYCrY::kBatch));
      if (count < kPiece) std::memcpy(to, result, CbYCrY::bytes(0, pairs));
      if (pairs < count) {
        writeTrailingPixel<kBt601, kToNearest, CbYCrY>(pixelAt<C3<>>({{pixels}}, pairs), to + CbYCrY::bytes(0, pairs));
      }
      std::memcpy(memory, memory + WithLeft::bytes(0, kPiece), kBefore);
      from += WithLeft::bytes(0, count);
      to += CbYCrY::bytes(0, count);
    }
  }
};

// ---------------------------------------------------------------------------------------------------------------------

template <const ForwardSet& kSet, class Src, class Dst>
using Full = Convert<PerPixel<kSet>, Src, Dst>;
template <const ForwardSet& kSet, class Layout>
using FullInterleaved = Convert<PerLane<kSet>, Whole<Layout>, Whole<Layout>>;

using Rgb = C3<>;
using Bgr = C3<uint8_t, Order::kReverse>;
using BgrAlpha = AC4<uint8_t, Order::kReverse>;
using RgbAlpha = AC4<>;

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "lumachroma/rules.h"

namespace kip {
constexpr Rules kPlaneGroups420 = {
    .minWidth = 2, .minHeight = 2, .planesBeforeSize = true, .rowsPerGroup = 2, .warnWidth = 2, .warnHeight = 2};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "lumachroma/ycbcr-encode-functions.inc"
#include "engine/functions-inl.h"
