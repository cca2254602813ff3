// Hue, lightness and saturation as floats.

#if defined(KIP_COLORMODELS_HUEFLOATS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_COLORMODELS_HUEFLOATS_INL_H_
#undef KIP_COLORMODELS_HUEFLOATS_INL_H_
#else
#define KIP_COLORMODELS_HUEFLOATS_INL_H_
#endif

#include "engine/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

constexpr float kPer60 = 1 / 60.f;

/// Hue, lightness and saturation from 0 to 1.
class ToHls32f {
 public:
  using Lane = float;
  static constexpr int kInterleavedChains = 4;
  KIP_INLINE ToHls32f() {}

  template <int kCount>
  KIP_INLINE void convert(const Pixels<F32>* px, Pixels<F32>* hls) const {
    F32 delta[kCount], angle[kCount], offset[kCount];
    hn::Mask<Tag<float>> red[kCount];
    for (int k = 0; k < kCount; ++k) {
      const F32 r = px[k].a, g = px[k].b, b = px[k].c;
      const F32 max = atLeast(atLeast(r, g), b), min = atMost(atMost(g, r), b), sum = hn::Add(max, min);
      delta[k] = hn::Sub(max, min), hls[k].b = hn::Mul(half_, sum);
      // The lesser of the two is max + min up to a lightness of one half.
      hls[k].c = hn::Min(hn::Sub(two_, sum), sum);

      const auto green = hn::Eq(g, max);
      red[k] = hn::Eq(r, max);
      const auto pick = [&](F32 inRed, F32 inGreen, F32 inBlue) KIP_INLINE_LAMBDA {
        return hn::IfThenElse(red[k], inRed, hn::IfThenElse(green, inGreen, inBlue));
      };
      angle[k] = hn::Mul(hn::Sub(pick(g, b, r), pick(b, r, g)), d60_);
      offset[k] = hn::IfThenElse(red[k], minusZero_, hn::IfThenElse(green, d120_, d240_));  // -0 changes no angle
    }
    for (int k = 0; k < kCount; ++k) {
      angle[k] = hn::Div(angle[k], delta[k]);
      hls[k].c = hn::Div(delta[k], hls[k].c);
    }
    for (int k = 0; k < kCount; ++k) {
      const F32 zero = hn::Zero(Tag<float>());
      // Angles below zero are red's: from green and from blue they are at most 60 degrees.
      const auto wraps = hn::And(hn::Lt(angle[k], zero), red[k]);
      const auto gray = hn::Le(delta[k], epsilon_);
      const F32 hue = hn::Div(hn::Add(angle[k], hn::IfThenElse(wraps, d360_, offset[k])), d360_);
      hls[k].a = hn::IfThenZeroElse(gray, hue), hls[k].c = hn::IfThenZeroElse(gray, hls[k].c);
    }
  }

 private:
  F32 half_ = keepInRegister(.5f), two_ = keepInRegister(2.f), minusZero_ = keepInRegister(-0.f),
      epsilon_ = keepInRegister(1.1920929e-7f);
  F32 d60_ = keepInRegister(60.f), d120_ = keepInRegister(120.f), d240_ = keepInRegister(240.f),
      d360_ = keepInRegister(360.f);
};

/// How the slopes of 60 degrees are taken: by a factor, or by a division.
struct TimesPer60 {
  F32 value = keepInRegister(kPer60);
  KIP_INLINE TimesPer60() {}
  KIP_INLINE F32 operator()(F32 v) const { return hn::Mul(v, value); }
};
struct Over60 {
  F32 value = keepInRegister(60.f);
  KIP_INLINE Over60() {}
  KIP_INLINE F32 operator()(F32 v) const { return hn::Div(v, value); }
};

/// Back, for any hue, lightness and saturation; nothing is limited.
template <class Sixtieth>
class FromHls32f {
 public:
  using Lane = float;
  static constexpr int kInterleavedChains = 4;
  KIP_INLINE FromHls32f() {}

  KIP_INLINE Pixels<F32> operator()(const Pixels<F32>& px) const {
    const F32 h = hn::Mul(px.a, d360_), l = px.b, s = px.c;
    const F32 high =
        hn::IfThenElse(hn::Le(l, half_), hn::Mul(l, hn::Add(one_, s)), hn::Sub(hn::Add(l, s), hn::Mul(l, s)));
    const F32 low = hn::Sub(hn::Add(l, l), high), span = hn::Sub(high, low);
    const F32 ahead = hn::Add(h, d120_), behind = hn::Sub(h, d120_);
    const auto gray = hn::Eq(s, hn::Zero(Tag<float>()));
    const auto channel = [&](F32 x) KIP_INLINE_LAMBDA { return hn::IfThenElse(gray, l, value(x, high, low, span)); };
    const auto aheadWraps = hn::Gt(ahead, d360_), behindWraps = hn::Lt(behind, hn::Zero(Tag<float>()));
    return {channel(hn::IfThenElse(aheadWraps, hn::Sub(ahead, d360_), ahead)), channel(h),
            channel(hn::IfThenElse(behindWraps, hn::Add(behind, d360_), behind))};
  }

 private:
  /// A channel at the angle x: it rises up to 60 degrees, is high up to 180, falls up to 240 and is low beyond.
  KIP_INLINE F32 value(F32 x, F32 high, F32 low, F32 span) const {
    const F32 slope = sixtieth_(hn::Mul(span, hn::Min(x, hn::Sub(d240_, x))));
    const F32 sloping = hn::Add(low, slope);
    const auto isHigh = hn::And(hn::Ge(x, d60_), hn::Lt(x, d180_));
    return hn::IfThenElse(isHigh, high, hn::IfThenElse(hn::Lt(x, d240_), sloping, low));
  }

  Sixtieth sixtieth_;
  F32 half_ = keepInRegister(.5f), one_ = keepInRegister(1.f);
  F32 d60_ = keepInRegister(60.f), d120_ = keepInRegister(120.f), d180_ = keepInRegister(180.f),
      d240_ = keepInRegister(240.f), d360_ = keepInRegister(360.f);
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
