// What the CIE spaces share: the matrices between RGB (sRGB primaries, white D65) and XYZ, the white point, and the
// cube root. All floats are single precision; sums are taken from left to right, and a product is rounded before it is
// added.

#if defined(KIP_COLORMODELS_CIE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_COLORMODELS_CIE_INL_H_
#undef KIP_COLORMODELS_CIE_INL_H_
#else
#define KIP_COLORMODELS_CIE_INL_H_
#endif

#include "colormodels/cie-tables.h"
#include "engine/convert-inl.h"
#include "engine/floattable-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// A weighted sum of three channels.
struct Weights {
  float a, b, c;

  KIP_INLINE F32 operator()(const Pixels<F32>& px) const { return a * px.a + b * px.b + c * px.c; }
};

struct Matrix {
  Weights rows[3];

  KIP_INLINE Pixels<F32> operator()(const Pixels<F32>& px) const { return {rows[0](px), rows[1](px), rows[2](px)}; }
};

constexpr Matrix kRgbToXyz = {{{0.412453f, 0.357580f, 0.180423f},    // X: white is 0.950456
                               {0.212671f, 0.715160f, 0.072169f},    // Y: white is 1
                               {0.019334f, 0.119193f, 0.950227f}}};  // Z: white is 1.088754
constexpr Matrix kXyzToRgb = {
    {{3.240479f, -1.537150f, -0.498535f}, {-0.969256f, 1.875991f, 0.041556f}, {0.055648f, -0.204043f, 1.057311f}}};

/// The cube roots of several t, side by side. t lies in the given cell of the seeds: the root is r (1 + x)^(1/3) with r
/// the cell's seed and x = t / r^3 - 1, its series up to x^kTerms.
template <const cie::CubeRootSeeds& kSeeds, int kTerms, int kCount>
KIP_INLINE void cubeRoots(const F32 (&t)[kCount], const I32 (&cell)[kCount], F32 (&root)[kCount]) {
  F32 x[kCount], sum[kCount];
  for (int i = 0; i < kCount; ++i) {
    const FloatRows<kSeeds> seed(cell[i]);
    root[i] = seed.column(0);
    x[i] = (t[i] - root[i] * root[i] * root[i]) * seed.column(1);
    sum[i] = set(static_cast<float>(cie::kCubeRootSeries[kTerms - 1]));
  }
  for (int k = kTerms - 2; k >= 0; --k) {
    for (int i = 0; i < kCount; ++i)
      sum[i] = schedulingBarrier(sum[i] * x[i] + static_cast<float>(cie::kCubeRootSeries[k]));
  }
  for (int i = 0; i < kCount; ++i) root[i] = root[i] * (sum[i] * x[i] + 1.f);
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
