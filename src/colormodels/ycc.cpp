// RGB to and from photo YCC: L = 0.299 R + 0.587 G + 0.114 B, and with samples of 0 .. 1
// Y = L x 0.7132668 (a full white is 182 of 255), C1 = (B - L) x 0.4368627 + 156/255, C2 = (R - L) x 0.53192 + 137/255.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/ycc.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// Bytes, in fixed point

constexpr int kC1Zero = 156, kC2Zero = 137;

KIP_INLINE I16 high(I16 v, int factor) { return hn::MulHigh(v, set<int16_t>(factor)); }
KIP_INLINE I16 times128(I16 v) { return hn::ShiftLeft<7>(v); }

struct EncodeBytes {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Tag<int16_t> d;
    const I16 zero = hn::Zero(d);
    const I16 luma = packWords(luma128(hn::InterleaveLower(px.a, px.b), hn::InterleaveLower(px.c, zero)),
                               luma128(hn::InterleaveUpper(d, px.a, px.b), hn::InterleaveUpper(d, px.c, zero)));
    // The constants added are the offsets at scale 8, and what makes up for flooring.
    return {hn::ShiftRight<3>(high(luma, 2921)), chroma(px.c, luma, 1789, 8 * kC1Zero),
            chroma(px.a, luma, 2178, 8 * kC2Zero)};
  }

 private:
  /// L x 128, from weights at scale 2^14.
  KIP_INLINE static I32 luma128(I16 rg, I16 b) {
    return hn::ShiftRight<7>(hn::Add(dotPairs(rg, setPairs(4898, 9617)), dotPairs(b, setPairs(1867, 0))));
  }
  KIP_INLINE static I16 chroma(I16 channel, I16 luma, int factor, int zero) {
    return hn::ShiftRight<3>(hn::Add(high(hn::Sub(times128(channel), luma), factor), set<int16_t>(zero)));
  }
};

struct DecodeBytes {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const I16 luma = high(times128(px.a), 5563);
    const I16 c1 = high(times128(hn::Sub(px.b, set<int16_t>(kC1Zero))), 18168);
    const I16 c2 = high(times128(hn::Sub(px.c, set<int16_t>(kC2Zero))), 14921);
    const I16 green = hn::Add(hn::Add(luma, high(c1, -6357)), high(c2, -16679));
    return {hn::ShiftRight<3>(hn::Add(luma, hn::ShiftRight<1>(c2))), hn::ShiftRight<3>(green),
            hn::ShiftRight<3>(hn::Add(luma, hn::ShiftRight<1>(c1)))};
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// 16-bit samples and floats, in single precision

struct Scale {
  float c1Zero, c2Zero, c2Factor;
};
constexpr Scale kWordScale = {40092.f, 35209.f, 0.5319216f};       // 156 / 255 and 137 / 255 of 65535
constexpr Scale kFloatScale = {0.6117647f, 0.5372549f, 0.53192f};  // 156 / 255 and 137 / 255

template <const Scale& kScale>
KIP_INLINE Pixels<F32> encode(const Pixels<F32>& rgb) {
  const F32 luma = 0.299f * rgb.a + 0.587f * rgb.b + 0.114f * rgb.c;
  return {luma * 0.7132668f, (rgb.c - luma) * 0.4368627f + kScale.c1Zero,
          (rgb.a - luma) * kScale.c2Factor + kScale.c2Zero};
}

template <const Scale& kScale>
KIP_INLINE Pixels<F32> decode(const Pixels<F32>& ycc) {
  const F32 luma = 1.3584f * ycc.a;
  const F32 c1 = (ycc.b - kScale.c1Zero) * 2.2179f, c2 = (ycc.c - kScale.c2Zero) * 1.8215f;
  return {luma + c2, luma - 0.194f * c1 - 0.509f * c2, luma + c1};
}

struct EncodeWords {
  using Lane = float;
  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& rgb) const { return truncated(encode<kWordScale>(rgb)); }
};
struct DecodeWords {
  using Lane = float;
  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& ycc) const { return truncated(decode<kWordScale>(ycc)); }
};

struct EncodeFloats {
  using Lane = float;
  KIP_INLINE Pixels<F32> operator()(const Pixels<F32>& rgb) const { return encode<kFloatScale>(rgb); }
};
struct DecodeFloats {
  using Lane = float;
  KIP_INLINE Pixels<F32> operator()(const Pixels<F32>& ycc) const { return toUnit(decode<kFloatScale>(ycc)); }
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "colormodels/rules.h"
#endif

#define KIP_FUNCTIONS "colormodels/ycc-functions.inc"
#include "engine/functions-inl.h"
