// Hue spaces: RGB to and from HLS (hue, lightness, saturation) and HSV (hue, saturation, value).
//
// Hue is an angle in six sextants, from red over yellow, green, cyan, blue and magenta back to red. In each sextant one
// channel is the largest, one the smallest, and the third moves between them.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/hue.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "colormodels/huefloats-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

template <class T>
constexpr T kFull = static_cast<T>(~T{0});  // the largest sample, for 1

template <class V>
KIP_INLINE auto atLeastSample(V v, V limit) {
  return hn::Eq(hn::Max(v, limit), v);  // x86 has no unsigned comparison
}

// ---------------------------------------------------------------------------------------------------------------------
// To hue, integer samples

/// 1 / x: an estimate of 12 significant bits, the same on every processor, and one Newton-Raphson step from it.
class Reciprocal {
 public:
  KIP_INLINE Reciprocal() {}
  KIP_INLINE F32 operator()(F32 x) const {
    const U32 quotient = as<uint32_t>(hn::Div(one_, x));
    const F32 r = as<float>(hn::And(hn::Add(quotient, half_), keep_));
    return hn::Sub(hn::Add(r, r), hn::Mul(hn::Mul(x, r), r));
  }

 private:
  F32 one_ = keepInRegister(1.f);
  U32 half_ = keepInRegister<uint32_t>(1 << 11), keep_ = keepInRegister<uint32_t>(~0u << 12);
};

/// What hue is made of: its position is offset + step x (from - to) / delta.
template <class T>
struct HueParts {
  Vector<T> delta, from, to, offset;
};

/// Samples of one half of a vector as floats, in two parts.
struct Floats {
  F32 lower, upper;
};

KIP_INLINE Floats floats(U16 v) { return {lowerFloats(v), upperFloats(v)}; }

/// 16-bit lanes x 2^16 as floats. Widening so keeps the sign; the power of two changes no rounding.
KIP_INLINE Floats floats65536(I16 v) {
  const Tag<int16_t> d;
  const auto convert = [](I16 lanes) KIP_INLINE_LAMBDA { return hn::ConvertTo(Tag<float>(), as<int32_t>(lanes)); };
  return {convert(hn::InterleaveLower(hn::Zero(d), v)), convert(hn::InterleaveUpper(d, hn::Zero(d), v))};
}

/// Hue and saturation, with Model's scale and denominator. Integer samples make up the parts, so that floats are left
/// with the quotients.
template <class T, class Model>
class ToHue {
 public:
  using Lane = T;
  using V = Vector<T>;
  KIP_INLINE ToHue() {}

  KIP_INLINE Pixels<V> operator()(const Pixels<V>& px) const {
    const V max = hn::Max(hn::Max(px.a, px.b), px.c), min = hn::Min(hn::Min(px.a, px.b), px.c);
    // At least 1: grey has a difference and a delta of 0, and so hue and saturation of 0.
    const V denominator = hn::Max(Model::denominator(max, min), one_);
    V hue, saturation;
    quotients(partsOf(px, max, min), denominator, hue, saturation);
    return Model::order(hue, saturation, max, min);
  }

 private:
  struct Words {
    I32 hue[2], saturation[2];
  };

  KIP_INLINE HueParts<T> partsOf(const Pixels<V>& px, V max, V min) const {
    const auto red = hn::Eq(px.a, max), green = hn::Eq(px.b, max), noWrap = atLeastSample(px.b, px.c);
    const auto pick = [&](V r, V g, V b)
                          KIP_INLINE_LAMBDA { return hn::IfThenElse(red, r, hn::IfThenElse(green, g, b)); };
    return {hn::Sub(max, min), pick(px.b, px.c, px.a), pick(px.c, px.a, px.b),
            pick(hn::IfThenZeroElse(noWrap, wrap_), green_, blue_)};
  }

  KIP_INLINE void quotients(const HueParts<uint8_t>& parts, U8 denominator, U8& hue, U8& saturation) const {
    const Tag<uint8_t> d;
    const auto words = [&](I16 difference, I16 delta, I16 denominators, I16 offset) KIP_INLINE_LAMBDA {
      return throughFloats(floats65536(difference), as<uint16_t>(delta), as<uint16_t>(denominators), offset);
    };
    const Words lower = words(dotBytes(hn::InterleaveLower(parts.from, parts.to), steps_), lowerBytes(parts.delta),
                              lowerBytes(denominator), lowerBytes(parts.offset));
    const Words upper = words(dotBytes(hn::InterleaveUpper(d, parts.from, parts.to), steps_), upperBytes(parts.delta),
                              upperBytes(denominator), upperBytes(parts.offset));
    hue = packBytes(packWords(lower.hue[0], lower.hue[1]), packWords(upper.hue[0], upper.hue[1]));
    saturation = packBytes(packWords(lower.saturation[0], lower.saturation[1]),
                           packWords(upper.saturation[0], upper.saturation[1]));
  }

  KIP_INLINE void quotients(const HueParts<uint16_t>& parts, U16 denominator, U16& hue, U16& saturation) const {
    const Floats from = floats(parts.from), to = floats(parts.to);
    const Floats difference = {hn::Mul(hn::Sub(from.lower, to.lower), step65536_),
                               hn::Mul(hn::Sub(from.upper, to.upper), step65536_)};
    const Words words = throughFloats(difference, parts.delta, denominator, as<int16_t>(parts.offset));
    hue = packUnsignedWords(words.hue[0], words.hue[1]);
    saturation = packUnsignedWords(words.saturation[0], words.saturation[1]);
  }

  KIP_INLINE Words throughFloats(const Floats& difference, U16 delta, U16 denominator, I16 offset) const {
    const Floats deltas = floats(delta), denominators = floats(denominator), offsets = floats65536(offset);
    Words words;
    lanes(difference.lower, deltas.lower, denominators.lower, offsets.lower, words.hue[0], words.saturation[0]);
    lanes(difference.upper, deltas.upper, denominators.upper, offsets.upper, words.hue[1], words.saturation[1]);
    return words;
  }

  /// Difference and offset are x 2^16.
  KIP_INLINE void lanes(F32 difference, F32 delta, F32 denominator, F32 offset, I32& hue, I32& saturation) const {
    const F32 position65536 = hn::Add(hn::Mul(difference, reciprocal_(hn::Max(delta, oneF_))), offset);
    hue = truncated(hn::Mul(position65536, hueScale_));
    saturation = truncated(hn::Mul(hn::Mul(delta, reciprocal_(denominator)), full_));
  }

  Reciprocal reciprocal_;
  V one_ = keepInRegister<T>(1);
  V wrap_ = keepInRegister<T>(Model::kOffsets[0]), green_ = keepInRegister<T>(Model::kOffsets[1]),
    blue_ = keepInRegister<T>(Model::kOffsets[2]);
  I8 steps_ = keepBytePairs(Model::kStep, -Model::kStep);
  F32 step65536_ = keepInRegister(Model::kStep * 65536.f);
  F32 hueScale_ = keepInRegister(Model::template kHueScale<T> / 65536);
  F32 full_ = keepInRegister<float>(kFull<T>), oneF_ = keepInRegister(1.f);
};

/// Hue in half degrees, so that offsets fit in bytes: the rounding is that of degrees.
struct Hls {
  static constexpr int kStep = 30, kOffsets[3] = {180, 60, 120};  // of red when negative, of green, of blue
  template <class T>
  static constexpr float kHueScale = 2 * (kFull<T> / 360.f);

  /// max + min, or the same of what is left to 1 where that is less: it never exceeds 1.
  template <class V>
  KIP_INLINE static V denominator(V max, V min) {
    return hn::Min(hn::SaturatedAdd(max, min), hn::SaturatedAdd(hn::Not(max), hn::Not(min)));
  }
  /// Lightness is (max + min) / 2, rounded down.
  template <class V>
  KIP_INLINE static Pixels<V> order(V hue, V saturation, V max, V min) {
    const auto odd = hn::And(hn::Xor(max, min), hn::Set(hn::DFromV<V>(), 1));
    return {hue, hn::Sub(hn::AverageRound(max, min), odd), saturation};
  }
};

/// Hue in sextants.
struct Hsv {
  static constexpr int kStep = 1, kOffsets[3] = {6, 2, 4};
  template <class T>
  static constexpr float kHueScale = kFull<T> / 6.f;

  template <class V>
  KIP_INLINE static V denominator(V max, V) {
    return max;
  }
  template <class V>
  KIP_INLINE static Pixels<V> order(V hue, V saturation, V max, V) {
    return {hue, saturation, max};
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// From hue, integer samples

/// The largest, the moving and the smallest channel as the hue's sextant has them: (max, mid, min) (mid, max, min)
/// (min, max, mid) (min, mid, max) (mid, min, max) (max, min, mid). The full circle is red again.
template <class T>
class Sextants {
 public:
  using V = Vector<T>;
  KIP_INLINE Sextants() {}

  KIP_INLINE Pixels<V> operator()(V hue, V max, V mid, V min) const {
    const V h = hn::IfThenZeroElse(hn::Eq(hue, full_), hue);
    const auto second = atLeastSample(h, third_), third = atLeastSample(h, twoThirds_);
    const auto odd = atLeastSample(withinThird(withinThird(h)), sixth_);
    const V x = hn::IfThenElse(odd, mid, max), y = hn::IfThenElse(odd, max, mid);
    const auto pick = [&](V inFirst, V inSecond, V inThird) KIP_INLINE_LAMBDA {
      return hn::IfThenElse(third, inThird, hn::IfThenElse(second, inSecond, inFirst));
    };
    return {pick(x, min, y), pick(y, x, min), pick(min, y, x)};
  }

 private:
  /// Less a third of the circle where that is not negative.
  KIP_INLINE V withinThird(V h) const { return hn::Min(h, hn::Sub(h, third_)); }

  static constexpr T kThird = kFull<T> / 3;
  V full_ = keepInRegister<T>(kFull<T>), third_ = keepInRegister<T>(kThird), twoThirds_ = keepInRegister<T>(2 * kThird);
  V sixth_ = keepInRegister<T>((kThird + 1) / 2);  // 42.5, or 10922.5
};

/// The three channels of HLS, as integers, in the order largest, moving, smallest.
template <class T>
class HlsShades {
 public:
  using Lane = float;
  KIP_INLINE HlsShades() {}

  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& px) const {
    const F32 l = hn::Mul(px.b, perFull_), s = hn::Mul(px.c, perFull_);
    const F32 product = hn::Mul(l, s);
    const F32 max = hn::IfThenElse(hn::Le(l, half_), hn::Add(l, product), hn::Sub(hn::Add(l, s), product));
    const F32 min = hn::Sub(hn::Add(l, l), max);
    const F32 mid = hn::Add(hn::Mul(hn::Mul(slope(hn::Mul(px.a, degrees_)), per60_), hn::Sub(max, min)), min);
    const auto sample = [this](F32 v) KIP_INLINE_LAMBDA { return truncated(hn::Mul(v, full_)); };
    return {sample(max), sample(mid), sample(min)};
  }

  KIP_INLINE static Pixels<Vector<T>> channels(const Sextants<T>& sextants, const Pixels<Vector<T>>& hls,
                                               const Pixels<Vector<T>>& shades) {
    if constexpr (sizeof(T) == 1) {
      return sextants(hls.a, shades.a, shades.b, shades.c);
    } else {
      // Grey is lightness itself. So it is for bytes: there, lightness / 255 x 255 comes out whole.
      const auto gray = hn::Eq(hls.c, hn::Zero(Tag<T>()));
      const auto pick = [&](Vector<T> shade) KIP_INLINE_LAMBDA { return hn::IfThenElse(gray, hls.b, shade); };
      return sextants(hls.a, pick(shades.a), pick(shades.b), pick(shades.c));
    }
  }

 private:
  /// The height, in degrees, of the moving channel above the smallest. Each channel rises for 60 degrees, stays for
  /// 120 and falls for 60; its height is below 0 where it is the smallest and above 60 where it is the largest, so the
  /// moving one is the median of the three.
  KIP_INLINE F32 slope(F32 h) const {
    const F32 ahead = hn::Add(h, d120_), behind = hn::Sub(h, d120_);
    const F32 r = hn::Max(hn::Sub(d240_, ahead), hn::Sub(ahead, d360_));
    const F32 g = hn::Min(h, hn::Sub(d240_, h)), b = hn::Min(behind, hn::Sub(d240_, behind));
    return hn::Max(hn::Min(r, g), hn::Min(hn::Max(r, g), b));
  }

  F32 degrees_ = keepInRegister(360.f / kFull<T>), perFull_ = keepInRegister(1.f / kFull<T>),
      full_ = keepInRegister<float>(kFull<T>);
  F32 half_ = keepInRegister(.5f), per60_ = keepInRegister(kPer60), d120_ = keepInRegister(120.f),
      d240_ = keepInRegister(240.f), d360_ = keepInRegister(360.f);
};

/// The three channels of HSV. The moving one is V (1 - S g), with g from 1 to 0 in even sextants and back in odd ones.
template <class T>
class HsvShades {
 public:
  using Lane = float;
  KIP_INLINE HsvShades() {}

  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& px) const {
    const F32 s = hn::Mul(px.b, perFull_), v = hn::Mul(px.c, perFull_);
    const F32 g = distance(hn::Mul(hn::Mul(px.a, degrees_), per60_));
    const auto sample = [this](F32 shade) KIP_INLINE_LAMBDA { return truncated(hn::Mul(shade, full_)); };
    const auto less = [&](F32 part) KIP_INLINE_LAMBDA { return sample(hn::Mul(v, hn::Sub(one_, part))); };
    return {sample(v), less(hn::Mul(s, g)), less(s)};
  }

  KIP_INLINE static Pixels<Vector<T>> channels(const Sextants<T>& sextants, const Pixels<Vector<T>>& hsv,
                                               const Pixels<Vector<T>>& shades) {
    // For bytes, value / 255 x 255 comes out whole.
    return sextants(hsv.a, sizeof(T) == 1 ? hsv.c : shades.a, shades.b, shades.c);
  }

 private:
  /// How far a position 0 .. 6 is from the nearest odd number. Adding what has steps of 2 rounds to an even number.
  KIP_INLINE F32 distance(F32 position) const {
    const F32 above = hn::Sub(position, one_);
    return hn::Abs(hn::Sub(above, hn::Sub(hn::Add(above, stepsOf2_), stepsOf2_)));
  }

  F32 degrees_ = keepInRegister(360.f / kFull<T>), perFull_ = keepInRegister(1.f / kFull<T>),
      full_ = keepInRegister<float>(kFull<T>);
  F32 per60_ = keepInRegister(kPer60), one_ = keepInRegister(1.f), stepsOf2_ = keepInRegister(1.5f * (1 << 24));
};

template <class T, class Shades>
class FromHue {
 public:
  using Lane = T;
  KIP_INLINE FromHue() {}
  KIP_INLINE Pixels<Vector<T>> operator()(const Pixels<Vector<T>>& px) const {
    return Shades::channels(sextants_, px, applyWidened(shades_, px));
  }

 private:
  Shades shades_;
  Sextants<T> sextants_;
};

// ---------------------------------------------------------------------------------------------------------------------
// Layouts

/// Four interleaved samples whose fourth is the source's.
template <Order kOrder = Order::kForward>
struct CopyingC4 : AC4<uint8_t, kOrder> {
  static constexpr bool kKeeps = false, kTakesAlpha = true;
  KIP_INLINE void store(const Pixels<U8>& px, const Rows<Kip8u, 1>& to) const {
    C4<uint8_t, kOrder>::storeWith(px, px.alpha, to);
  }
};

template <class Src, class Dst = Src>
using RgbToHls = Convert<ToHue<typename Src::T, Hls>, Src, Dst>;
template <class Src, class Dst = Src>
using HlsToRgb = Convert<FromHue<typename Src::T, HlsShades<typename Src::T>>, Src, Dst>;
template <class Layout>
using RgbToHsv = Convert<ToHue<typename Layout::T, Hsv>, Layout>;
template <class Layout>
using HsvToRgb = Convert<FromHue<typename Layout::T, HsvShades<typename Layout::T>>, Layout>;
template <class Layout>
using RgbToHls32f = Convert<ToHls32f, Layout>;
template <class Layout>
using HlsToRgb32f = ConvertRuns<4, FromHls32f<TimesPer60>, FromHls32f<Over60>, Layout, Layout>;

using Bgr = C3<uint8_t, Order::kReverse>;
using BgrA = AC4<uint8_t, Order::kReverse>;
using BgrCopiedA = CopyingC4<Order::kReverse>;
using BgrPlanes = Reversed<P3<>>;
using BgrAPlanes = Reversed<P4<>>;

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "engine/convert.h"

namespace kip {
constexpr Rules kHue = {.threads = Threads::kAbove4096Pixels};
constexpr Rules kBgrAlpha = {.steps = StepCheck::kAfterSize, .threads = Threads::kAlways};
constexpr Rules kBgrPlanar = {.planesBeforeSize = true, .steps = StepCheck::kBeforeSize, .threads = Threads::kAlways};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "colormodels/hue-functions.inc"
#include "engine/functions-inl.h"
