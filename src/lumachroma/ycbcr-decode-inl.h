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

/// The same for pixels in 32-bit lanes.
template <const InverseSet& kSet>
class PerLane {
 public:
  using Lane = PixelLanes;

  KIP_INLINE PerLane() {}
  KIP_INLINE U8 operator()(U8 px) const {
    const I16 crAndLuma = dotBytes(px, forR_);
    return packLanes({crAndYToR_(r_, crAndLuma), toG_(y_(g_, crAndLuma), dotBytes(px, forG_)),
                      toB_(y_(b_, crAndLuma), dotBytes(px, forB_))});
  }

 private:
  static constexpr Factors kX = kSet.factors;

  // Bytes Cr, Cb, Y, Cb of a lane to two 16-bit samples, Cr and Y or Cb, scaled so that the rest of a factor fits.
  KIP_INLINE static I8 scales(int cr, int y, int cb) { return as<int8_t>(keepPairs(bytePair(cr, 0), bytePair(y, cb))); }
  I8 forR_ = scales(scaleOf(kX.crToR), scaleOf(kX.y), 0);
  I8 forG_ = scales(scaleOf(kX.crToG), 0, scaleOf(kX.cbToG));
  I8 forB_ = scales(0, 0, scaleOf(kX.cbToB));
  WeighPairs<0, afterScale(kX.y)> y_;
  WeighPairs<afterScale(kX.crToR), afterScale(kX.y)> crAndYToR_;
  WeighPairs<-afterScale(kX.crToG), -afterScale(kX.cbToG)> toG_;
  WeighPairs<0, afterScale(kX.cbToB)> toB_;
  I32 r_ = keepInRegister<int32_t>(constantOf(kSet, kSet.rounding.r, kX.crToR));
  I32 g_ = keepInRegister<int32_t>(constantOf(kSet, kSet.rounding.g, -kX.cbToG - kX.crToG));
  I32 b_ = keepInRegister<int32_t>(constantOf(kSet, kSet.rounding.b, kX.cbToB));
};

/// Pixels that share chroma, in 16-bit lanes.
template <const InverseSet& kSet, class Layout>
struct PerGroup {
  struct Terms {
    Pixels<I32> half[2];
  };
  InversePairs<kSet, Layout> inverse;

  KIP_INLINE PerGroup() {}
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

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
