// YCbCr to RGB: the arithmetic of the coefficient sets for pixels with and without chroma of their own.

#if defined(KIP_LUMACHROMA_YCBCR_DECODE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_LUMACHROMA_YCBCR_DECODE_INL_H_
#undef KIP_LUMACHROMA_YCBCR_DECODE_INL_H_
#else
#define KIP_LUMACHROMA_YCBCR_DECODE_INL_H_
#endif

#include "engine/lanes-inl.h"
#include "lumachroma/ycbcr-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// The sums of a channel at full resolution, x 2^16: 32 bits for the even and for the odd pixels, and what is to be
/// added to the upper halves of both.
struct Sums {
  I32 even, odd;
  I16 upper;

  KIP_INLINE I16 floored() const { return hn::Add(interleaveHigh16(even, odd), upper); }
};

/// A sample's distance from its zero, times a factor. Bytes come in pairs of sample and zero.
template <int kFactor>
class WeighSample {
 public:
  KIP_INLINE WeighSample() {}

  KIP_INLINE Sums addTo(const Sums& sums, U8 sampleAndZero) const {
    const I16 v = dotBytes(sampleAndZero, scale_);
    I16 upper = sums.upper;
    if constexpr (kWholes == -1) upper = hn::Sub(upper, v);
    if constexpr (kWholes == 2) upper = hn::Add(upper, hn::Add(v, v));
    return {dotPairs(sums.even, v, even_), dotPairs(sums.odd, v, odd_), upper};
  }

 private:
  // What no scale brings down to 16 bits is multiples of 2^16.
  static constexpr int kWholes = (afterScale(kFactor) + kHalf) >> 16;
  static constexpr int kRest = afterScale(kFactor) - kWholes * kOne;
  static_assert(kWholes == 0 || kWholes == -1 || kWholes == 2);

  I8 scale_ = keepBytePairs(scaleOf(kFactor), -scaleOf(kFactor));
  I16 even_ = keepPairs(kRest, 0), odd_ = keepPairs(0, kRest);
};

/// Full-resolution pixels (Y, Cb, Cr).
template <const InverseSet& kSet>
class PerPixel {
 public:
  using Lane = uint8_t;

  KIP_INLINE PerPixel() {}
  KIP_INLINE Pixels<U8> operator()(const Pixels<U8>& px) const {
    const Halves cb = beside(px.b, chromaZero_), cr = beside(px.c, chromaZero_), y = beside(px.a, lumaZero_);
    const Sums luma[2] = {y_.addTo(start(), y.lower), y_.addTo(start(), y.upper)};
    const auto channel = [&](const auto& add) KIP_INLINE_LAMBDA {
      return packBytes(add(luma[0], cb.lower, cr.lower).floored(), add(luma[1], cb.upper, cr.upper).floored());
    };
    return {
        channel([&](const Sums& s, U8, U8 r) KIP_INLINE_LAMBDA { return crToR_.addTo(s, r); }),
        channel([&](const Sums& s, U8 b, U8 r) KIP_INLINE_LAMBDA { return crToG_.addTo(cbToG_.addTo(s, b), r); }),
        channel([&](const Sums& s, U8 b, U8) KIP_INLINE_LAMBDA { return cbToB_.addTo(s, b); }),
    };
  }

 private:
  struct Halves {
    U8 lower, upper;
  };
  /// Each sample beside its zero.
  KIP_INLINE static Halves beside(U8 v, U8 zero) {
    return {hn::InterleaveLower(v, zero), hn::InterleaveUpper(Tag<uint8_t>(), v, zero)};
  }
  KIP_INLINE Sums start() const {
    const I32 rounding = kSet.rounding.r == 0 ? hn::Zero(Tag<int32_t>()) : rounding_;
    return {rounding, rounding, hn::Zero(Tag<int16_t>())};
  }

  static constexpr Factors kX = kSet.factors;
  static_assert(kSet.rounding.r == kSet.rounding.g && kSet.rounding.g == kSet.rounding.b);

  WeighSample<kX.y> y_;
  WeighSample<kX.crToR> crToR_;
  WeighSample<-kX.cbToG> cbToG_;
  WeighSample<-kX.crToG> crToG_;
  WeighSample<kX.cbToB> cbToB_;
  U8 lumaZero_ = keepInRegister<uint8_t>(kSet.lumaZero), chromaZero_ = keepInRegister<uint8_t>(kChromaZero);
  I32 rounding_ = keepInRegister<int32_t>(kSet.rounding.r);
};

/// Weights of lanes Cr, Cb, Y, Cr. B has no Cr, so that its second pair is luma alone, which serves G as well.
constexpr InverseWeights laneWeights(const InverseSet& set, bool reversed) {
  const auto& [y, crToR, cbToG, crToG, cbToB] = set.factors;
  InverseWeights w = groupWeights(set, reversed);
  const Shares red = share(crToR, w.luma), green = share(-crToG, -cbToG);
  w.channel[reversed ? 2 : 0] = {{red.inFree, 0, w.lumaScale, red.inKnown}, red.free, fitting(w.luma)};
  w.channel[1] = {{green.inKnown, 1, 0, green.inFree}, -cbToG, green.free};
  w.channel[reversed ? 0 : 2] = {{0, scaleOf(cbToB), w.lumaScale, 0}, fitting(afterScale(cbToB)), w.luma};
  return w;
}

/// The same for pixels in 32-bit lanes, to R, G, B or, if reversed, to B, G, R.
template <bool kReversed>
class PerLane {
 public:
  using Lane = PixelLanes;

  KIP_INLINE explicit PerLane(const InverseWeights& w) : luma_(keepPairs(0, w.luma)) {
    for (int c = 0; c < 3; ++c) {
      channel_[c] = WeighQuads(w.channel[c]);
      offset_[c] = keepInRegister<int32_t>(w.offset[c]);
    }
  }
  KIP_INLINE U8 operator()(U8 px) const {
    const I16 first = channel_[0].pairs(px), last = channel_[2].pairs(px);
    const I32 luma = dotPairs(offset_[1], kReversed ? first : last, luma_);
    return packLanes({channel_[0].sum(offset_[0], first), channel_[1](luma, px), channel_[2].sum(offset_[2], last)});
  }

 private:
  WeighQuads channel_[3];
  I32 offset_[3];
  I16 luma_;
};

/// Full resolution to interleaved pixels, by lanes.
template <class Src, class Dst, bool kReversed>
HWY_NOINLINE void convertLanes(const InverseWeights& weights, const Job& job, int first, int last) {
  Convert<PerLane<kReversed>, Whole<Src, kThirdAgain>, Whole<Dst>>::rows(job, PerLane<kReversed>(weights), first, last);
}

/// Pixels that share chroma, in 16-bit lanes.
template <class Layout, int kWholes = 0>
struct PerGroup {
  struct Terms {
    Pixels<I32> half[2];
  };
  InversePairs<Layout, kWholes> inverse;

  KIP_INLINE explicit PerGroup(const InverseWeights& weights) : inverse(weights) {}
  template <class Src, class From>
  KIP_INLINE static InLanes load(const Src& src, const From& from) {
    return src.loadInLanes(from);
  }
  KIP_INLINE Terms terms(const InLanes& s) const { return {{inverse.terms(s.chroma[0]), inverse.terms(s.chroma[1])}}; }
  KIP_INLINE Pixels<U8> row(const InLanes& s, int r, const Terms& terms) const {
    const auto half = [&](int h) KIP_INLINE_LAMBDA { return inverse.pixels(s.y[r][h], terms.half[h], terms.half[h]); };
    return eachChannel(pack(half(0), half(1)), [](U8 v) KIP_INLINE_LAMBDA { return Layout::packedInOrder(v); });
  }
};

/// Subsampled pixels, and the last one of an odd width of packed 4:2:2. The coefficients are data: they do not multiply
/// the code.
template <class Src, class Dst>
HWY_NOINLINE void decodeGroups(const InverseWeights& weights, const Job& job, int first, int last) {
  Decode<PerGroup<Src>, Src, Dst>::rows(job, PerGroup<Src>(weights), first, last);
}
template <class Src, class Dst>
HWY_NOINLINE void decodePacked(const InverseWeights& weights, const Job& job, int first, int last) {
  DecodePacked<PerGroup<Src>, Src, Dst>::rows(job, PerGroup<Src>(weights), first, last);
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
