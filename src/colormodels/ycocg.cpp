// RGB and BGR to and from YCoCg: luma, orange chroma, green chroma; plain, and the reversible form by lifting steps.
//
// Plain: Y = (R + 2 G + B + 2) >> 2, Co = (R - B + 1) >> 1, Cg = (2 G - R - B + 2) >> 2, and back
// R = Y + Co - Cg, G = Y + Cg, B = Y - Co - Cg.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/ycocg.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// Plain, from samples in lanes that are wide enough for all sums.
template <class T>
struct Forward {
  using Lane = T;
  using V = Vector<T>;
  KIP_INLINE Pixels<V> operator()(const Pixels<V>& rgb) const {
    const V g2 = hn::Add(rgb.b, rgb.b), rb = hn::Add(rgb.a, rgb.c);
    return {roundedShift<2>(hn::Add(g2, rb)), roundedShift<1>(hn::Sub(rgb.a, rgb.c)), roundedShift<2>(hn::Sub(g2, rb))};
  }

 private:
  template <int kBits>
  KIP_INLINE static V roundedShift(V v) {
    return hn::ShiftRight<kBits>(hn::Add(v, set<T>(1 << (kBits - 1))));
  }
};

/// Plain, within the samples' own unsigned type T by means of averages. With c the rounded and f the floored average of
/// R and B, Y is the rounded average of f and G, and Cg is half of G - c. Half of a - b, rounded up, is the middle of
/// the range less the rounded average of the complement of a and b.
template <class T>
struct Averages {
  using V = Vector<T>;
  V y, co, cg;  // Co and Cg as the averages

  KIP_INLINE explicit Averages(const Pixels<V>& rgb) {
    const V ceiling = hn::AverageRound(rgb.a, rgb.c);
    const V floor = hn::Sub(ceiling, hn::And(hn::Xor(rgb.a, rgb.c), set<T>(1)));
    y = hn::AverageRound(floor, rgb.b);
    co = hn::AverageRound(hn::Not(rgb.a), rgb.c);
    cg = hn::AverageRound(hn::Not(rgb.b), ceiling);
  }
};

/// Chroma of bytes is 128 higher, and saturates at 255.
struct ForwardBytes {
  using Lane = uint8_t;
  KIP_INLINE Pixels<U8> operator()(const Pixels<U8>& rgb) const {
    const Averages<uint8_t> of(rgb);
    return {of.y, from256(of.co), from256(of.cg)};
  }

 private:
  KIP_INLINE static U8 from256(U8 v) { return hn::Not(hn::SaturatedSub(v, set<uint8_t>(1))); }
};

/// Signed 16-bit samples to planes of the same.
struct ForwardWords {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& rgb) const {
    const U16 middle = set<uint16_t>(0x8000);
    const Averages<uint16_t> of(
        eachChannel(rgb, [&](I16 v) KIP_INLINE_LAMBDA { return hn::Xor(as<uint16_t>(v), middle); }));
    return {as<int16_t>(hn::Xor(of.y, middle)), as<int16_t>(hn::Sub(middle, of.co)),
            as<int16_t>(hn::Sub(middle, of.cg))};
  }
};

/// Plain inverse, in lanes that wrap around.
template <class T>
struct Inverse {
  using Lane = T;
  using V = Vector<T>;
  KIP_INLINE Pixels<V> operator()(const Pixels<V>& px) const {
    const V rb = hn::Sub(px.a, px.c);
    return {hn::Add(rb, px.b), hn::Add(px.a, px.c), hn::Sub(rb, px.b)};
  }
};

/// The offsets of the chroma of bytes cancel in R.
struct InverseBytes {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const I16 zero = set<int16_t>(128);
    return Inverse<int16_t>()(Pixels<I16>(px.a, hn::Sub(px.b, zero), hn::Sub(px.c, zero)));
  }
};

/// Reversible: every step can be undone exactly, since the lanes wrap around.
template <class T>
struct Lift {
  using Lane = T;
  using V = Vector<T>;
  KIP_INLINE Pixels<V> operator()(const Pixels<V>& rgb) const {
    const V co = hn::Sub(rgb.a, rgb.c);
    const V t = hn::Add(rgb.c, hn::ShiftRight<1>(co));
    const V cg = hn::Sub(rgb.b, t);
    return {hn::Add(t, hn::ShiftRight<1>(cg)), co, cg};
  }
};

template <class T>
struct Unlift {
  using Lane = T;
  using V = Vector<T>;
  KIP_INLINE Pixels<V> operator()(const Pixels<V>& px) const {
    const V t = hn::Sub(px.a, hn::ShiftRight<1>(px.c));
    const V b = hn::Sub(t, hn::ShiftRight<1>(px.b));
    return {hn::Add(b, px.b), hn::Add(px.c, t), b};
  }
};

/// B, G, R of type T, as many at a time as there are of samples of another type; with a fourth sample that is ignored,
/// or one that is given.
template <class T, class Other>
using Bgr = C3<T, Order::kReverse, SamplesLike<T, Other>>;
template <class T, class Other>
using Bgrx = AC4<T, Order::kReverse, SamplesLike<T, Other>>;
template <class T, class Other>
using Bgra = C4<T, Order::kReverse, SamplesLike<T, Other>>;

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "engine/convert.h"

namespace kip {
constexpr Rules kPointersOnly = {.planesBeforeSize = true, .emptyIsOk = true};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "colormodels/ycocg-functions.inc"
#include "engine/functions-inl.h"
