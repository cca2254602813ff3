// RGB to and from CIE L*u*v*.
//
// L* is 116 Y^(1/3) - 16, or 903.3 Y in the dark; u' = 4 X / (X + 15 Y + 3 Z) and v' = 9 Y / (X + 15 Y + 3 Z) are the
// chromaticity; u* = 13 L* (u' - un) and v* = 13 L* (v' - vn) its distance to that of white.

#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/cie-luv.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "colormodels/cie-inl.h"

#ifndef KIP_COLORMODELS_CIE_LUV_ONCE
#define KIP_COLORMODELS_CIE_LUV_ONCE
namespace kip {

/// A factor of 16-bit samples, over 65535. One 65535th is 2^-16 and a small rest: the sum of the two products is the
/// rounded quotient of each of the samples.
struct Over65535 {
  float times, large = times / 65536, rest = static_cast<float>(times * 2.32834215e-10);

  constexpr bool isExact() const {
    for (int i = 0; i < 65536; ++i) {
      const float v = i, product = v * times, most = v * large, least = v * rest;
      if (most + least != product / 65535) return false;
    }
    return true;
  }
};
constexpr Over65535 kL{100}, kU{354}, kV{262};
static_assert(kL.isExact());
static_assert(kU.isExact());
static_assert(kV.isExact());

}  // namespace kip
#endif

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

struct Chromaticity {
  float u, v;
};
constexpr Chromaticity kWhite = {0.197839f, 0.468342f};
constexpr Chromaticity kWhiteTail = {0.1978394f, 0.4683422f};

// ---------------------------------------------------------------------------------------------------------------------
// Encoders

/// u' - un and v' - vn, from X, Y and X + 15 Y + 3 Z summed in the encoder's own order. Where that sum is 0, for black,
/// u' and v' are 0.
struct Offsets {
  F32 u, v;

  KIP_INLINE Offsets(F32 x, F32 y, F32 sum) {
    const F32 infinity = set(std::numeric_limits<float>::infinity());
    const F32 divisor = hn::IfThenElse(hn::Eq(sum, set(0.f)), infinity, sum);
    u = 4.f * x / divisor - kWhite.u;
    v = 9.f * y / divisor - kWhite.v;
  }
  KIP_INLINE explicit Offsets(const Pixels<F32>& xyz) : Offsets(xyz.a, xyz.b, xyz.a + 15.f * xyz.b + 3.f * xyz.c) {}
};

/// L* of luma 0 .. 255, on the same scale.
KIP_INLINE I32 lightness(F32 luma) {
  return lookUp(cie::kLightness.entry, truncated(cie::LightnessTable::kParts * luma));
}

/// Samples 0 .. 255.
struct EncodeBytes {
  using Lane = float;
  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& rgb) const {
    const Pixels<F32> xyz = kRgbToXyz(rgb);
    const F32 x = xyz.a / 255.f, y = xyz.b / 255.f, z = xyz.c / 255.f;
    const Offsets offset(x, y, 3.f * z + x + 15.f * y);
    const I32 l = lightness(xyz.b);
    const F32 lf = hn::ConvertTo(Tag<float>(), l);
    // 1300 / 354 and 1300 / 262: 13 L* with L* from 0 .. 255 over the ranges of u* and v*; 134 and 140 are their
    // offsets, and another half rounds. Of all colours U is 37 .. 223 and V 5 .. 241: they fit.
    return {l, truncated(3.6723163f * lf * offset.u + 97.02543f), truncated(4.961832f * lf * offset.v + 136.75955f)};
  }
};

/// Other samples, in three steps: X, Y and Z; the cube roots that L* of bright pixels needs; and the rest.
/// Scale says how luma, L* and results depend on the type of the samples.
template <class Scale>
struct Encode {
  using Lane = float;
  static constexpr int kInterleavedChains = 4;

  template <int kCount, class R>
  KIP_INLINE void convert(const Pixels<F32>* rgb, Pixels<R>* result) const {
    F32 luma[kCount], u[kCount], v[kCount], t[kCount], root[kCount];
    I32 cell[kCount];
    for (int i = 0; i < kCount; ++i) {
      const Pixels<F32> xyz = kRgbToXyz(rgb[i]);
      luma[i] = xyz.b;
      t[i] = Scale::toUnit(luma[i]);
      cell[i] = Scale::cell(luma[i]);
      const Offsets offset(xyz);
      u[i] = offset.u, v[i] = offset.v;
    }
    cubeRoots<Scale::kSeeds, Scale::kTerms>(t, cell, root);
    for (int i = 0; i < kCount; ++i) {
      const F32 l = hn::IfThenElse(Scale::isDark(luma[i]), Scale::darkLightness(luma[i]), 116.f * root[i] - 16.f);
      const F32 l13 = 13.f * l;
      result[i] = Scale::encoded(Pixels<F32>(l, l13 * u[i], l13 * v[i]));
    }
  }
};

/// 0 .. 65535, X, Y and Z on the same scale.
struct WordScale {
  static constexpr int kTerms = 6;
  static constexpr auto& kSeeds = cie::kWordSeeds;
  KIP_INLINE static F32 toUnit(F32 luma) { return luma / 65535.f; }
  KIP_INLINE static I32 cell(F32 luma) { return hn::ShiftRight<9>(truncated(luma)); }
  KIP_INLINE static auto isDark(F32 luma) { return hn::Le(luma, set(580.378f)); }
  KIP_INLINE static F32 darkLightness(F32 luma) { return cie::kDarkSlope * luma * 1.5259e-05f; }
  KIP_INLINE static Pixels<I32> encoded(const Pixels<F32>& luv) {
    return truncated(
        {luv.a * 655.35f + 0.5f, (luv.b + 134.f) * 185.127121f + 0.5f, (luv.c + 140.f) * 250.1335907f + 0.5f});
  }
};

struct FloatScale {
  static constexpr int kTerms = 8;
  static constexpr auto& kSeeds = cie::kUnitSeeds;
  KIP_INLINE static F32 toUnit(F32 luma) { return luma; }
  KIP_INLINE static I32 cell(F32 luma) {
    const F32 below = atMost(luma * cie::kUnitScale, set(cie::CubeRootSeeds::kCells - 1.f));
    return hn::Max(truncated(below), hn::Zero(Tag<int32_t>()));
  }
  KIP_INLINE static auto isDark(F32 luma) { return hn::Le(luma, set(cie::kDarkEnd)); }
  KIP_INLINE static F32 darkLightness(F32 luma) { return cie::kDarkSlope * luma; }
  KIP_INLINE static Pixels<F32> encoded(const Pixels<F32>& luv) { return luv; }
};

// ---------------------------------------------------------------------------------------------------------------------
// Decoders

/// L*, u*, v* to R, G, B of 0 .. 1, several side by side: each division waits for the one before it.
template <const Chromaticity& kWhitePoint, int kCount>
KIP_INLINE void decode(const Pixels<F32>* luv, Pixels<F32>* rgb) {
  constexpr float kBlack = 9e-5f;        // L* below which nothing is left but black
  constexpr float kDarkL = 7.9996247f;   // 903.3 x 0.008856
  constexpr float kNoV = 1.1920929e-7f;  // |v'| below this is moved away from 0
  F32 y[kCount], u[kCount], t[kCount], x[kCount];
  for (int i = 0; i < kCount; ++i) {
    const F32 l = luv[i].a, l13 = 13.f * l;
    // L* / 903.3 in the dark, else ((L* + 16) / 116)^3.
    const auto dark = hn::Lt(l, set(kDarkL));
    const F32 quotient = hn::IfThenElse(dark, l, l + 16.f) / hn::IfThenElse(dark, set(cie::kDarkSlope), set(116.f));
    y[i] = hn::IfThenElse(dark, quotient, quotient * quotient * quotient);
    u[i] = luv[i].b / l13 + kWhitePoint.u;
    const F32 anyV = luv[i].c / l13 + kWhitePoint.v;
    t[i] = y[i] / hn::IfThenElse(hn::Lt(hn::Abs(anyV), set(kNoV)), anyV + 9e-5f, anyV);
  }
  for (int i = 0; i < kCount; ++i) x[i] = 2.25f * t[i] * u[i];
  for (int i = 0; i < kCount; ++i) {
    const Pixels<F32> xyz(x[i], y[i], 3.f * t[i] - 5.f * y[i] - x[i] / 3.f);
    const auto black = hn::Lt(luv[i].a, set(kBlack));
    rgb[i] = eachChannel(toUnit(kXyzToRgb(xyz)),
                         [&](F32 channel) KIP_INLINE_LAMBDA { return hn::IfThenZeroElse(black, channel); });
  }
}

constexpr int kDecodedTogether = 4;

template <class Encoding, const Chromaticity& kWhitePoint>
struct DecodeIntegers {
  using Lane = float;
  static constexpr int kInterleavedChains = kDecodedTogether;

  template <int kCount>
  KIP_INLINE void convert(const Pixels<F32>* px, Pixels<I32>* result) const {
    Pixels<F32> luv[kCount], rgb[kCount];
    for (int i = 0; i < kCount; ++i) luv[i] = Encoding::luv(px[i]);
    decode<kWhitePoint, kCount>(luv, rgb);
    for (int i = 0; i < kCount; ++i) {
      result[i] = truncated(eachChannel(rgb[i], [](F32 v) KIP_INLINE_LAMBDA { return Encoding::kFull * v + 0.5f; }));
    }
  }
};

// How integer samples stand for L* of 0 .. 100, u* of -134 .. 220 and v* of -140 .. 122.

struct Bytes {
  static constexpr float kFull = 255;
  KIP_INLINE static Pixels<F32> luv(const Pixels<F32>& px) {
    return {px.a * 0.3921569f, px.b * 1.3882353f - 134.f, px.c * 1.027451f - 140.f};
  }
};

struct Words {
  static constexpr float kFull = 65535;
  KIP_INLINE static Pixels<F32> luv(const Pixels<F32>& px) {
    return {times(px.a, kL), times(px.b, kU) - 134.f, times(px.c, kV) - 140.f};
  }

 private:
  KIP_INLINE static F32 times(F32 v, const Over65535& factor) { return v * factor.large + v * factor.rest; }
};

struct DecodeFloats {
  using Lane = float;
  static constexpr int kInterleavedChains = kDecodedTogether;

  template <int kCount>
  KIP_INLINE void convert(const Pixels<F32>* luv, Pixels<F32>* rgb) const {
    decode<kWhite, kCount>(luv, rgb);
  }
};

/// The pixels left over after the runs of 4 are measured against a slightly different white.
template <class Encoding, class Layout>
using Decode = ConvertRuns<4, DecodeIntegers<Encoding, kWhite>, DecodeIntegers<Encoding, kWhiteTail>, Layout, Layout>;

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "colormodels/rules.h"
#endif

#define KIP_FUNCTIONS "colormodels/cie-luv-functions.inc"
#include "engine/functions-inl.h"
