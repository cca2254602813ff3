// BGR to and from CIE L*a*b*.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/pccciepx.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "colormodels/cie-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// How samples stand for L* of 0 .. 100 and a*, b* of -128 .. 127.
struct Bytes {
  static constexpr int kTerms = 6;
  KIP_INLINE static Pixels<F32> encode(const Pixels<F32>& lab) {
    return {lab.a * 2.55f, lab.b + 128.f, lab.c + 128.f};
  }
  KIP_INLINE static Pixels<F32> decode(const Pixels<F32>& px) {
    return {px.a * 0.3921569f, px.b - 128.f, px.c - 128.f};
  }
};
struct Words {
  static constexpr int kTerms = 8;
  KIP_INLINE static Pixels<F32> encode(const Pixels<F32>& lab) {
    return {lab.a * 655.35f, (lab.b + 128.f) * 255.f, (lab.c + 128.f) * 255.f};
  }
  KIP_INLINE static Pixels<F32> decode(const Pixels<F32>& px) {
    return {px.a * 0.0015259f, px.b * 0.0039216f - 128.f, px.c * 0.0039216f - 128.f};
  }
};

template <class Encoding>
struct Encode {
  using Lane = float;
  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& rgb) const {
    const Pixels<F32> xyz = kRgbToXyz(rgb);
    // Over 255 Xn, 255 and 255 Zn. Bytes do not exceed 1 by more than rounding, which stays in the last cell.
    const F32 t[3] = {xyz.a * 0.004126f, xyz.b * 0.0039216f, xyz.c * 0.0036019f};
    const I32 cell[3] = {cellOf(t[0]), cellOf(t[1]), cellOf(t[2])};
    F32 f[3];
    cubeRoots<Encoding::kTerms>(cie::kUnitSeeds, t, cell, f);
    const F32 l = select(t[1], 116.f * f[1] - 16.f, kDarkSlope * t[1]);
    for (int i = 0; i < 3; ++i) f[i] = select(t[i], f[i], 7.787f * t[i] + 0.137931f);
    return rounded(Encoding::encode(Pixels<F32>(l, 500.f * (f[0] - f[1]), 200.f * (f[1] - f[2]))));
  }

 private:
  KIP_INLINE static I32 cellOf(F32 t) { return truncated(t * cie::kUnitScale); }
  KIP_INLINE static F32 select(F32 t, F32 bright, F32 dark) {
    return hn::IfThenElse(hn::Gt(t, set(kDarkEnd)), bright, dark);
  }
};

/// No line in the dark on this side: the cube is taken for every L*.
template <class Encoding>
struct Decode {
  using Lane = float;
  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& px) const {
    const Pixels<F32> lab = Encoding::decode(px);
    const F32 fy = (lab.a + 16.f) * 0.0086207f;  // 1 / 116
    const F32 fx = fy + lab.b * 0.002f, fz = fy - lab.c * 0.005f;
    // Times 255 Xn, 255 and 255 Zn.
    const Pixels<F32> xyz(fx * fx * fx * 242.366f, fy * fy * fy * 255.f, fz * fz * fz * 277.632f);
    return rounded(kXyzToRgb(xyz));
  }
};

/// BGR bytes, as many at a time as there are of samples of another type.
template <class Other>
using Bgr = C3<Kip8u, Order::kReverse, SamplesLike<Kip8u, Other>>;

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "frame/convert.h"

namespace kip {
constexpr Rules kAlwaysSplit = {.threads = Threads::kAlways};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "colormodels/pccciepx-functions.h"
#include "frame/functions-inl.h"
