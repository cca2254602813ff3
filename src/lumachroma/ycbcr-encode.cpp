// RGB to YCbCr, 8 bits: full resolution, 4:2:2, 4:2:0 and 4:1:1.

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lumachroma/ycbcr-encode.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "frame/bytetable-inl.h"
#include "lumachroma/ycbcr-encode-inl.h"
#include "frame/transfer709.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

// ---------------------------------------------------------------------------------------------------------------------
// Full resolution

template <const ForwardSet& kSet>
struct PerPixel {
  using Lane = int16_t;
  Forward<kSet> forward;
  I32 lumaZero = pinned<int32_t>(lumaOffset(kSet, kHalf)), chromaZero = pinned<int32_t>(chromaOffset(kHalf, 1));

  KIP_INLINE PerPixel() {}
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Sums even = sums(pairEven(px.c, px.a), pairEven(px.b, px.b));
    const Sums odd = sums(pairOdd(px.c, px.a), pairOdd(px.b, px.b));
    return {mergeUpper(even.y, odd.y), mergeUpper(even.cb, odd.cb), mergeUpper(even.cr, odd.cr)};
  }

 private:
  struct Sums {
    I32 y, cb, cr;
  };
  KIP_INLINE Sums sums(I16 br, I16 gg) const {
    const I16 d = forward.differences(br, gg);
    return {hn::Add(forward.y(br, gg), lumaZero), hn::Add(forward.cb(d), chromaZero),
            hn::Add(forward.cr(d), chromaZero)};
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// The chroma of a pair from its first pixel and both neighbours of that, weighted 2, 1, 1; factors x 2^15

constexpr int kOne15 = 1 << 15;
constexpr Row kY15 = {8422, 16515, 3212};
constexpr Row kCb15 = {-1213, -2385, 3596}, kCbCentre15 = {-2426, -4769, 7193};
constexpr Row kCr15 = {3596, -3015, -582}, kCrCentre15 = {7193, -6030, -1164};

/// RGB pixels that can see those two to their left: a pointer to each.
struct WithLeft : C3<> {
  static constexpr int kPointers = 2;
};
struct PairsWithLeft : PixelPairs {
  PixelPairs left;
};
KIP_INLINE PairsWithLeft pairsOf(const WithLeft&, const Rows<const Kip8u, 2>& from, int half) {
  return {pairsOf(C3<>(), {{from.at[0]}}, half), pairsOf(C3<>(), {{from.at[1]}}, half)};
}

/// Weighted sums of (B, R) and (G, G), the weights different for even and odd pixels.
class WeighAlternately {
 public:
  KIP_INLINE WeighAlternately(const Row& even, const Row& odd)
      : br_(as<int16_t>(pinnedPerPixel(pairBits(even.b, even.r), pairBits(odd.b, odd.r)))),
        gg_(as<int16_t>(pinnedPerPixel(pairBits(even.g, 0), pairBits(odd.g, 0)))) {}
  KIP_INLINE I32 operator()(I16 br, I16 gg) const { return hn::Add(dotPairs(br, br_), dotPairs(gg, gg_)); }

 private:
  I16 br_, gg_;
};

struct ThreeTaps {
  struct Sums {
    I32 cb, cr;
  };
  WeighAlternately y{kY15, kY15}, cb{kCbCentre15, kCb15}, cr{kCrCentre15, kCr15};
  I16 oddPixels = as<int16_t>(pinnedPerPixel(0, -1));
  I32 lumaZero = pinned<int32_t>(16 * kOne15 + kOne15 / 2);
  I32 chromaZero = pinned<int32_t>(kChromaZero * kOne15 + kOne15 / 2 - 1);  // one less than to the nearest, on purpose

  KIP_INLINE ThreeTaps() {}

  KIP_INLINE I16 luma(const PixelPairs& px) const {
    return packPixels(
        px, [this](I16 br, I16 gg) KIP_INLINE_LAMBDA { return hn::ShiftRight<15>(hn::Add(y(br, gg), lumaZero)); });
  }
  KIP_INLINE static I16 toByte(I16 luma) { return luma; }
  KIP_INLINE Sums sums(const PairsWithLeft& px, I16) const {
    PixelPairs taps;  // the first pixel of each pair, and the sum of both neighbours
    for (int k = 0; k < 2; ++k) {
      taps.br[k] = hn::Add(px.br[k], hn::And(px.left.br[k], oddPixels));
      taps.gg[k] = hn::Add(px.gg[k], hn::And(px.left.gg[k], oddPixels));
    }
    return {chromaOf(taps, cb), chromaOf(taps, cr)};
  }
  KIP_INLINE static void chroma(const Sums (&half)[2], Subsampled& s) {
    s.u = packWords(half[0].cb, half[1].cb);
    s.v = packWords(half[0].cr, half[1].cr);
  }

 private:
  KIP_INLINE I32 chromaOf(const PixelPairs& px, const WeighAlternately& weigh) const {
    const I32 lower = weigh(px.br[0], px.gg[0]), upper = weigh(px.br[1], px.gg[1]);
    const I32 sum = hn::Add(evenLanes(lower, upper), oddLanes(lower, upper));
    return hn::ShiftRight<15>(hn::Add(sum, chromaZero));
  }
};

/// What happens to the source samples first: nothing, or the transfer curve. There may be some more behind them, so
/// that they make whole vectors.
struct Linear {
  static void transfer(Kip8u*, size_t) {}
};
struct Transferred {
  static constexpr int kTogether = 4;
  static constexpr size_t kBytes = kTogether * kLanes<uint8_t>;

  static void transfer(Kip8u* samples, size_t count) {
    const Tag<uint8_t> d;
    for (size_t i = 0; i < count; i += kBytes) {
      U8 v[kTogether];
      for (int k = 0; k < kTogether; ++k) v[k] = hn::LoadU(d, samples + i + k * kLanes<uint8_t>);
      ByteTable<kTransfer709>::lookUp(v);
      for (int k = 0; k < kTogether; ++k) hn::StoreU(v[k], d, samples + i + k * kLanes<uint8_t>);
    }
  }
};

/// A row goes through a piece of memory that has two pixels more on the left. At the row's start they are black: the
/// missing neighbour has no chroma.
template <class Curve>
struct Smoothed {
  using Taps = Encode<ThreeTaps, WithLeft, CbYCrY>;

  static void rows(const Job& job, int first, int last) {
    const Taps encode(job);
    for (int y = first; y < last; ++y) row(encode, job.width, job.src.row(0, y), job.dst.row(0, y));
  }

 private:
  static constexpr int kPixelBytes = 3, kLeftBytes = 2 * kPixelBytes;
  static constexpr int kPiece = 512;  // pixels: whole vectors, however many the curve takes at once

  static void row(const Taps& encode, int width, const Kip8u* from, Kip8u* to) {
    Kip8u memory[kLeftBytes + kPiece * kPixelBytes] = {};
    Kip8u* const pixels = memory + kLeftBytes;
    for (int left = width; left > 0; left -= kPiece) {
      const int count = std::min(left, kPiece), pairs = wholeGroups<CbYCrY>(count);
      std::memcpy(pixels, from, count * kPixelBytes);
      Curve::transfer(pixels, count * kPixelBytes);
      encode.group({{pixels, memory}}, {{to}}, pairs);
      if (pairs < count) {
        writeLonePixel<kBt601, kToNearest, CbYCrY>(pixelAt<C3<>>({{pixels}}, pairs), to + CbYCrY::bytes(0, pairs));
      }
      std::memcpy(memory, memory + kPiece * kPixelBytes, kLeftBytes);
      from += count * kPixelBytes;
      to += CbYCrY::bytes(0, count);
    }
  }
};

// ---------------------------------------------------------------------------------------------------------------------

template <const ForwardSet& kSet, class Src, class Dst>
using Full = Convert<PerPixel<kSet>, Src, Dst>;

using Rgb = C3<>;
using Bgr = C3<uint8_t, Order::kReverse>;
using BgrAlpha = AC4<uint8_t, Order::kReverse>;
using RgbAlpha = AC4<>;

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "frame/convert.h"

namespace kip {
constexpr Rules kAnySize = {};
constexpr Rules kWide = {.minWidth = 2};
constexpr Rules kPlanes422Warn = {.minWidth = 2, .planesBeforeSize = true, .warnWidth = 2};
constexpr Rules kPlanes422 = {.minWidth = 2, .planesBeforeSize = true};
constexpr Rules kPlanes411 = {.minWidth = 4, .planesBeforeSize = true, .warnWidth = 4};
constexpr Rules kPlanes420Any = {.rowsPerGroup = 2, .warnWidth = 2, .warnHeight = 2};
constexpr Rules kPlanes420 = {
    .minWidth = 2, .minHeight = 2, .planesBeforeSize = true, .rowsPerGroup = 2, .warnWidth = 2, .warnHeight = 2};
constexpr Rules kPositiveSteps = {.steps = StepCheck::kAfterSize};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "lumachroma/ycbcr-encode-functions.h"
#include "frame/functions-inl.h"
