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
  KIP_INLINE static Pixels<F32> encode(const Pixels<F32>& lab) { return {lab.a * 2.55f, lab.b + 128.f, lab.c + 128.f}; }
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

/// One over 255 Xn, 255 and 255 Zn.
constexpr float kOverWhite[3] = {0.004126f, 0.0039216f, 0.0036019f};

KIP_INLINE Pixels<F32> overWhite(const Pixels<F32>& rgb) {
  const Pixels<F32> xyz = kRgbToXyz(rgb);
  return {xyz.a * kOverWhite[0], xyz.b * kOverWhite[1], xyz.c * kOverWhite[2]};
}

template <class Encoding>
struct Encode {
  using Lane = float;
  static constexpr int kInterleavedChains = 2;

  template <int kCount, class R>
  KIP_INLINE void convert(const Pixels<F32>* rgb, Pixels<R>* result) const {
    constexpr int kRoots = 3 * kCount;
    F32 t[kRoots], f[kRoots];
    I32 cell[kRoots];
    for (int i = 0; i < kCount; ++i) {
      const Pixels<F32> xyz = overWhite(rgb[i]);
      t[3 * i] = xyz.a, t[3 * i + 1] = xyz.b, t[3 * i + 2] = xyz.c;
    }
    // Bytes do not exceed 1 by more than rounding, which stays in the last cell.
    for (int i = 0; i < kRoots; ++i) cell[i] = truncated(t[i] * cie::kUnitScale);
    cubeRoots<cie::kUnitSeeds, Encoding::kTerms>(t, cell, f);
    for (int i = 0; i < kCount; ++i) result[i] = encoded(t + 3 * i, f + 3 * i);
  }

 private:
  KIP_INLINE static Pixels<I32> encoded(const F32* t, F32* f) {
    const F32 l = select(t[1], 116.f * f[1] - 16.f, cie::kDarkSlope * t[1]);
    for (int i = 0; i < 3; ++i) f[i] = select(t[i], f[i], 7.787f * t[i] + 0.137931f);
    return rounded(Encoding::encode(Pixels<F32>(l, 500.f * (f[0] - f[1]), 200.f * (f[1] - f[2]))));
  }
  KIP_INLINE static F32 select(F32 t, F32 bright, F32 dark) {
    return hn::IfThenElse(hn::Gt(t, set(cie::kDarkEnd)), bright, dark);
  }
};

constexpr Weights scaled(const Weights& weights, float factor) {
  return {weights.a * factor, weights.b * factor, weights.c * factor};
}

/// Bytes, by polynomials instead of cube roots where that gives the same bytes: unless a number that is yet to be
/// rounded is so close to halfway between two integers that the error of the polynomials matters. It does not matter
/// how their sums are rounded.
struct EncodeBytes {
  using Lane = float;
  static constexpr int kInterleavedChains = 2;

  template <int kCount>
  KIP_INLINE void convert(const Pixels<F32>* rgb, Pixels<I32>* result) const {
    F32 f[3 * kCount];
    polynomials<kCount>(rgb, f);
    for (int i = 0; i < kCount; ++i) {
      const F32 x = f[3 * i], y = f[3 * i + 1], z = f[3 * i + 2];
      // The margins are above the largest errors of all colours, 0.00022, 0.00047 and 0.00021.
      const auto l = round<12>(295.8f, y, -40.8f, result[i].a);  // 2.55 L*
      const auto a = round<11>(500.f, x - y, 128.f, result[i].b);
      const auto b = round<12>(200.f, y - z, 128.f, result[i].c);
      if (HWY_UNLIKELY(!hn::AllFalse(Tag<int32_t>(), hn::Or(hn::Or(l, a), b)))) exactly(rgb + i, result + i);
    }
  }

 private:
  static constexpr cie::LabPieces<kHasFloatTables ? 4 : 1, kHasFloatTables ? 3 : 9> kPieces{};

  static constexpr Weights kWeights[3] = {scaled(kRgbToXyz.rows[0], kOverWhite[0] * kPieces.kScale),
                                          scaled(kRgbToXyz.rows[1], kOverWhite[1] * kPieces.kScale),
                                          scaled(kRgbToXyz.rows[2], kOverWhite[2] * kPieces.kScale)};

  /// f of X, Y and Z of each.
  template <int kCount>
  KIP_INLINE static void polynomials(const Pixels<F32>* rgb, F32 (&f)[3 * kCount]) {
    constexpr int kDegree = kPieces.kDegree;
    F32 s[3 * kCount];
    I32 place[3 * kCount];
    for (int i = 0; i < 3 * kCount; ++i) {
      const F32 shifted = sum(kWeights[i % 3], rgb[i / 3]);
      place[i] = FloatRows<kPieces>::wrapped(hn::ShiftRight<kPieces.kShift>(as<int32_t>(shifted)));
      s[i] = shifted - kPieces.kOffset;
    }
    for (int i = 0; i < 3 * kCount; ++i) {
      const FloatRows<kPieces> coefficients(place[i]);
      f[i] = coefficients.column(kDegree);
      for (int k = kDegree - 1; k >= 0; --k) f[i] = hn::MulAdd(f[i], s[i], coefficients.column(k));
    }
  }
  KIP_INLINE static F32 sum(const Weights& weights, const Pixels<F32>& rgb) {
    const F32 offset = set(kPieces.kOffset);
    return hn::MulAdd(set(weights.c), rgb.c,
                      hn::MulAdd(set(weights.b), rgb.b, hn::MulAdd(set(weights.a), rgb.a, offset)));
  }

  /// The integer next to factor v + offset, which is between 0 and 255.5, and where that is within 2^-kMargin of
  /// halfway to another.
  template <int kMargin>
  KIP_INLINE static hn::Mask<Tag<int32_t>> round(float factor, F32 v, float offset, I32& nearest) {
    // In floats from 256 to 512 there are 15 bits after the point.
    constexpr float kMagic = 256.5f + 1.f / (1 << kMargin);
    constexpr int kFraction = (1 << 15) - 1, kBelowMargin = (1 << (16 - kMargin)) - 1;
    const I32 fixed = as<int32_t>(hn::MulAdd(set(factor), v, set(offset + kMagic)));
    nearest = hn::And(hn::ShiftRight<15>(fixed), set<int32_t>(255));
    return hn::Eq(hn::And(fixed, set<int32_t>(kFraction & ~kBelowMargin)), hn::Zero(Tag<int32_t>()));
  }
  static HWY_NOINLINE void exactly(const Pixels<F32>* rgb, Pixels<I32>* result) {
    Encode<Bytes>().convert<1>(rgb, result);
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
#include "engine/convert.h"

namespace kip {
constexpr Rules kAlwaysSplit = {.threads = Threads::kAlways};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "colormodels/pccciepx-functions.inc"
#include "engine/functions-inl.h"
