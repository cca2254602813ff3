// RGB to and from YUV: BT.601 colour differences at full range, 8 bits, at full resolution, 4:2:2 and 4:2:0.
//
// Y = 0.299 R + 0.587 G + 0.114 B, U = 0.492 (B - Y) + 128, V = 0.877 (R - Y) + 128. The integers below are these
// decimals at scale 2^15 (2^16 where a comment says so), some of them one step apart from kernel to kernel: each
// kernel's results are promised to the bit, so they stay apart.

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lumachroma/yuv.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "lumachroma/subsampling-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// The upper 16 bits of v x factor.
KIP_INLINE I16 high(I16 v, int factor) { return hn::MulHigh(v, set<int16_t>(factor)); }
KIP_INLINE U16 high(U16 v, int factor) { return hn::MulHigh(v, set<uint16_t>(factor)); }

template <int kBits>
KIP_INLINE I16 shiftLeft(I16 v) {
  return hn::ShiftLeft<kBits>(v);
}

constexpr int kChromaZero = 128;
constexpr int kR15 = 9798, kG15 = 19235, kB15 = 3736;  // luma weights x 2^15
constexpr int kU15 = 16121, kV15 = 28737;              // 0.492, 0.877 x 2^15

KIP_INLINE I16 plusChromaZero(I16 v) { return hn::Add(v, set<int16_t>(kChromaZero)); }

// ---------------------------------------------------------------------------------------------------------------------
// Forward, full resolution

/// Y, U and V as three products each of the channels x 128 with weights x 2^15: every product is floored by itself.
struct Weighted {
  struct Row {
    int r, g, b;
  };
  KIP_INLINE static I16 sum(const Pixels<I16>& px128, const Row& w) {
    return hn::Add(hn::Add(high(px128.a, w.r), high(px128.b, w.g)), high(px128.c, w.b));
  }
  KIP_INLINE static I16 chroma(const Pixels<I16>& px128, const Row& w) {
    return plusChromaZero(hn::ShiftRight<6>(sum(px128, w)));
  }
  KIP_INLINE static Pixels<I16> times128(const Pixels<I16>& px) {
    return {shiftLeft<7>(px.a), shiftLeft<7>(px.b), shiftLeft<7>(px.c)};
  }
};

/// Luma weights x 2^16, summing to 65535, unsigned.
struct ForwardRun {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Pixels<I16> px128 = Weighted::times128(px);
    const auto times256 = [](I16 v) { return as<uint16_t>(hn::ShiftLeft<8>(v)); };
    // The sum reaches 65277: 16 unsigned bits.
    const U16 sum = hn::Add(hn::Add(high(times256(px.a), 19595), high(times256(px.b), 38469)), high(times256(px.c), 7471));
    return {as<int16_t>(hn::ShiftRight<8>(sum)), Weighted::chroma(px128, {-4816, -9469, 14286}),
            Weighted::chroma(px128, {20152, -16875, -3276})};
  }
};

/// The same with luma weights x 2^15 and chroma weights one step further from zero.
struct ForwardRunAlpha {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Pixels<I16> px128 = Weighted::times128(px);
    return {luma(px128), Weighted::chroma(px128, {-4817, -9470, 14287}),
            Weighted::chroma(px128, {20152, -16876, -3277})};
  }
  KIP_INLINE static I16 luma(const Pixels<I16>& px128) {
    return hn::ShiftRight<6>(Weighted::sum(px128, {kR15, kG15, kB15}));
  }
};

/// 2 Y from pairs of channels: the weighted R and G floored together, B by itself.
KIP_INLINE I32 doubledLuma(I16 rg, I16 bg) {
  return hn::Add(hn::ShiftRight<14>(dotPairs(rg, setPairs(kR15, kG15))),
                 hn::ShiftRight<14>(dotPairs(bg, setPairs(kB15, 0))));
}

/// Chroma from the difference to luma, both doubled.
KIP_INLINE I16 difference(I16 doubled, I16 doubledLuma, int factor) {
  return plusChromaZero(high(hn::Sub(doubled, doubledLuma), factor));
}

/// Pixels left over after the runs of ForwardRun and ForwardRunAlpha.
struct ForwardRest {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Tag<int16_t> d;
    const I16 y2 = packWords(doubledLuma(hn::InterleaveLower(px.a, px.b), hn::InterleaveLower(px.c, px.b)),
                             doubledLuma(hn::InterleaveUpper(d, px.a, px.b), hn::InterleaveUpper(d, px.c, px.b)));
    return {hn::ShiftRight<1>(y2), difference(shiftLeft<1>(px.c), y2, kU15), difference(shiftLeft<1>(px.a), y2, kV15)};
  }
};

/// Luma first, chroma from B - Y and R - Y.
struct DifferenceRun {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const I16 y = ForwardRunAlpha::luma(Weighted::times128(px)), y2 = shiftLeft<1>(y);
    return {y, difference(shiftLeft<1>(px.c), y2, kU15), difference(shiftLeft<1>(px.a), y2, kV15)};
  }
};

/// Pixels left over after the runs of DifferenceRun, weights x 2^16: S = 19595 R + 38470 G + 7471 B, Y = S >> 16,
/// U = ((((B << 16) - S + 32767) >> 16) x 32244 >> 16) + 128 and V likewise with R and 57475.
struct DifferenceRest {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Tag<int16_t> d;
    const Sums lower = sums(hn::InterleaveLower(px.a, px.b), hn::InterleaveLower(px.c, px.b));
    const Sums upper = sums(hn::InterleaveUpper(d, px.a, px.b), hn::InterleaveUpper(d, px.c, px.b));
    return {packWords(lower.y, upper.y), packWords(lower.u, upper.u), packWords(lower.v, upper.v)};
  }

 private:
  struct Sums {
    I32 y, u, v;
  };
  KIP_INLINE static Sums sums(I16 rg, I16 bg) {
    constexpr int kGreenHalf = 38470 / 2;  // too large for one signed 16-bit factor
    const I32 s = hn::Add(dotPairs(rg, setPairs(19595, kGreenHalf)), dotPairs(bg, setPairs(7471, kGreenHalf)));
    const auto chroma = [&](I16 pairs, int factor) {
      const I32 channel16 = hn::ShiftLeft<16>(as<int32_t>(pairs));  // the even channel x 2^16
      const I32 rounded = hn::ShiftRight<16>(hn::Add(hn::Sub(channel16, s), set<int32_t>(32767)));
      return hn::Add(hn::ShiftRight<16>(hn::Mul(rounded, set<int32_t>(factor))), set<int32_t>(kChromaZero));
    };
    return {hn::ShiftRight<16>(s), chroma(bg, 32244), chroma(rg, 57475)};
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Forward, subsampled: the chroma of a group is that of its mean colour

/// Sums of a pixel pair; the mean luma is floored, so S = (Y2 + Y2) >> 1 against R + R.
struct Encoder422 {
  KIP_INLINE I32 luma(I16 rg, I16 bg) const { return doubledLuma(rg, bg); }
  KIP_INLINE I16 toByte(I16 y2) const { return hn::ShiftRight<1>(y2); }
  KIP_INLINE void chroma(const I16 (&rg)[2], const I16 (&bg)[2], I16 lumaSums, I16& u, I16& v) const {
    const I16 s = hn::ShiftRight<1>(lumaSums);
    u = difference(evenChannel(bg[0], bg[1]), s, kU15);
    v = difference(evenChannel(rg[0], rg[1]), s, kV15);
  }
};

/// Sums of a 2 x 2 block, brought to the scale of one doubled pixel.
struct Encoder420 {
  KIP_INLINE I32 luma(I16 rg, I16 bg) const {
    return hn::ShiftRight<14>(hn::Add(dotPairs(rg, setPairs(kR15, kG15)), dotPairs(bg, setPairs(kB15, 0))));
  }
  KIP_INLINE I16 toByte(I16 y2) const { return hn::ShiftRight<1>(y2); }
  KIP_INLINE void chroma(const I16 (&rg)[2], const I16 (&bg)[2], I16 lumaSums, I16& u, I16& v) const {
    const I16 s = hn::ShiftRight<2>(lumaSums);
    u = difference(hn::ShiftRight<1>(evenChannel(bg[0], bg[1])), s, kU15);
    v = difference(hn::ShiftRight<1>(evenChannel(rg[0], rg[1])), s, kV15);
  }
};

/// The last pixel of an odd width by itself, written behind the row's pairs: Y, U and, in planes, V.
struct LonePixel {
  int y, u, v;

  LonePixel(int r, int g, int b) {
    const int sum = kR15 * r + kG15 * g + kB15 * b;
    y = sum >> 15;
    // The two rounding constants differ on purpose.
    u = (((((b << 15) - sum + 16383) >> 15) * kU15) >> 15) + kChromaZero;
    v = (((((r << 15) - sum + 32767) >> 15) * kV15) >> 15) + kChromaZero;
  }
};

/// As Encode to 4:2:2, and the last pixel of an odd width.
template <class Src, class Dst>
struct Encode422 {
  static void rows(const Job& job, int first, int last) {
    Encode<Encoder422, Src, Dst>::rows(job, first, last);
    if (job.width % 2 == 0) return;
    const size_t x = job.width - 1;
    for (int y = first; y < last; ++y) {
      const auto from = advance<Src>(Src::rows(job.src, y), x);
      const auto to = advance<Dst>(Dst::rows(job.dst, y), x);
      const LonePixel px = Src::kPointers == 3 ? LonePixel(*from.at[0], *from.at[1 % Src::kPointers], *from.at[2 % Src::kPointers])
                                               : LonePixel(from.at[0][0], from.at[0][1], from.at[0][2]);
      to.at[0][0] = static_cast<Kip8u>(px.y);
      if constexpr (Dst::kPointers == 1) {
        to.at[0][1] = static_cast<Kip8u>(px.u);
      } else {
        to.at[1][0] = static_cast<Kip8u>(px.u);
        to.at[2][0] = static_cast<Kip8u>(std::clamp(px.v, 0, 255));
      }
    }
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Inverse: R = Y + 1.140 V, G = Y - 0.394 U - 0.581 V, B = Y + 2.032 U

struct Factors {
  int vToR, uToG, vToG, uToB;
};
constexpr Factors kFactors1 = {9339, -3228, -4760, 16646};  // x 2^13
constexpr Factors kFactors2 = {9338, -3227, -4759, 16645};

template <int kBits>
KIP_INLINE I16 centred(I16 chroma) {
  return shiftLeft<kBits>(hn::Sub(chroma, set<int16_t>(kChromaZero)));
}

/// Luma and chroma terms added as they are.
struct Direct {
  KIP_INLINE Pixels<I16> pixel(I16 y, const Pixels<I16>& t) const {
    return {hn::Add(y, t.a), hn::Add(y, t.b), hn::Add(y, t.c)};
  }
};

/// Luma doubled and the sums halved, so that the terms carry one more bit.
struct Doubled {
  KIP_INLINE Pixels<I16> pixel(I16 y, const Pixels<I16>& t) const {
    const I16 y2 = shiftLeft<1>(y);
    return {hn::ShiftRight<1>(hn::Add(y2, t.a)), hn::ShiftRight<1>(hn::Add(y2, t.b)),
            hn::ShiftRight<1>(hn::Add(y2, t.c))};
  }
};

struct Inverse1 : Direct {
  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = centred<3>(chromaU), v = centred<3>(chromaV);
    return {high(v, kFactors1.vToR), hn::Add(high(u, kFactors1.uToG), high(v, kFactors1.vToG)), high(u, kFactors1.uToB)};
  }
};

template <const Factors& kFactors>
struct InverseDoubled : Doubled {
  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = centred<4>(chromaU), v = centred<4>(chromaV);
    return {high(v, kFactors.vToR), hn::Add(high(u, kFactors.uToG), high(v, kFactors.vToG)), high(u, kFactors.uToB)};
  }
};

/// Factors x 2^14 (U to B: x 2^13), each green product floored and then subtracted.
struct Inverse3 : Direct {
  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = centred<2>(chromaU), v = centred<2>(chromaV);
    return {high(v, 18677), hn::Neg(hn::Add(high(u, 6455), high(v, 9519))), high(centred<3>(chromaU), 16646)};
  }
};

/// As InverseDoubled, each green product floored and then subtracted.
struct Inverse4 : Doubled {
  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = centred<4>(chromaU), v = centred<4>(chromaV);
    return {high(v, 9338), hn::Neg(hn::Add(high(u, 3227), high(v, 4759))), high(u, 16646)};
  }
};

/// Pixels left over after the runs of Inverse4: ((Y << 16) + 74711 v + 32768) >> 16 for R, -25821 u - 38076 v for G and
/// 133169 u for B. Factors above 32767 are split into whole multiples of 65536 and a rest.
struct Inverse4Rest : Direct {
  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = centred<0>(chromaU), v = centred<0>(chromaV);
    return {hn::Add(v, rounded(u, v, 0, 74711 - 65536)), hn::Sub(rounded(u, v, -25821, 65536 - 38076), v),
            hn::Add(shiftLeft<1>(u), rounded(u, v, 133169 - 2 * 65536, 0))};
  }

 private:
  KIP_INLINE static I16 rounded(I16 u, I16 v, int uFactor, int vFactor) {
    const I16 factors = setPairs(uFactor, vFactor);
    const auto scaled = [&](I16 pairs) {
      return hn::ShiftRight<16>(hn::Add(dotPairs(pairs, factors), set<int32_t>(32768)));
    };
    return packWords(scaled(hn::InterleaveLower(u, v)), scaled(hn::InterleaveUpper(Tag<int16_t>(), u, v)));
  }
};

/// Packed 4:2:2. The last pixel of an odd width has luma and one chroma byte: it borrows the pair before it.
template <class Op, class Src, class Dst>
struct DecodePacked {
  static void rows(const Job& job, int first, int last) {
    if (job.width == 1) return single(job, first, last);
    const int pairs = job.width / 2 * 2;
    for (int y = first; y < last; ++y) {
      Decode<Op, Src, Dst>::pixels(job, y, 0, pairs);
      if (job.width % 2 == 0) continue;
      const Kip8u* end = job.src.row(0, y) + 2 * static_cast<size_t>(pairs);
      const Kip8u borrowed[4] = {end[0], end[-3], end[0], end[-1]};
      PaddedBlock<Dst> out;
      Decode<Op, Src, Dst>::walk(job, {{borrowed}}, out.rows, 0, 2);
      out.copyTo(advance<Dst>(Dst::rows(job.dst, y), pairs), 1);
    }
  }

 private:
  /// One pixel per row: its one chroma byte is U and V, factors x 2^16, truncated.
  static void single(const Job& job, int first, int last) {
    for (int y = first; y < last; ++y) {
      const Kip8u* from = job.src.row(0, y);
      const int luma = from[0] << 16, c = from[1] - kChromaZero;
      const auto byte = [](int v) { return static_cast<Kip8u>(std::clamp(v >> 16, 0, 255)); };
      Kip8u* to = job.dst.row(0, y);
      to[0] = byte(luma + 74711 * c), to[1] = byte(luma - 63897 * c), to[2] = byte(luma + 133169 * c);
    }
  }
};

using Rgb = C3<>;
using Bgr = C3<uint8_t, Order::kReverse>;
using BgrAlpha = AC4<uint8_t, Order::kReverse>;
using Inverse2 = InverseDoubled<kFactors2>;
template <class Src, class Dst>
using Decode2 = Decode<Inverse2, Src, Dst>;
template <class Src>
using Encode420 = Encode<Encoder420, Src, Planar420>;
template <class Src>
using Decode4 = DecodeRuns<8, Inverse4, Inverse4Rest, Src, C4<>>;

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "frame/convert.h"

namespace kip {
constexpr Rules kEveryPixel = {};
constexpr Rules kWholeBlocks420 = {.rowsPerGroup = 2, .warnWidth = 2, .warnHeight = 2};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "lumachroma/yuv-functions.h"
#include "frame/functions-inl.h"

#if HWY_ONCE
namespace {

/// The steps of an image without gaps: a row of `samples` bytes per pixel, and planes whose chroma is `chroma` wide.
int tightStep(KipiSize size, int samples) { return static_cast<int>(static_cast<unsigned>(size.width) * samples); }

struct TightSteps {
  int of[3];
};
TightSteps tight422(KipiSize size) {
  const int chroma = size.width / 2 + size.width % 2;
  return {{size.width, chroma, chroma}};
}
TightSteps tight420(KipiSize size) { return {{size.width, size.width / 2, size.width / 2}}; }

}  // namespace

KipStatus kipiRGBToYUV422_8u_C3P3(const Kip8u* pSrc, Kip8u* pDst[3], KipiSize imgSize) {
  return kipiRGBToYUV422_8u_C3P3R(pSrc, tightStep(imgSize, 3), pDst, tight422(imgSize).of, imgSize);
}
KipStatus kipiRGBToYUV422_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize) {
  return kipiRGBToYUV422_8u_P3R(pSrc, imgSize.width, pDst, tight422(imgSize).of, imgSize);
}
KipStatus kipiRGBToYUV420_8u_C3P3(const Kip8u* pSrc, Kip8u* pDst[3], KipiSize imgSize) {
  return kipiRGBToYUV420_8u_C3P3R(pSrc, tightStep(imgSize, 3), pDst, tight420(imgSize).of, imgSize);
}
KipStatus kipiRGBToYUV420_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize) {
  return kipiRGBToYUV420_8u_P3R(pSrc, imgSize.width, pDst, tight420(imgSize).of, imgSize);
}
KipStatus kipiYUV422ToRGB_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize) {
  return kipiYUV422ToRGB_8u_P3R(pSrc, tight422(imgSize).of, pDst, imgSize.width, imgSize);
}
KipStatus kipiYUV422ToRGB_8u_P3C3(const Kip8u* pSrc[3], Kip8u* pDst, KipiSize imgSize) {
  return kipiYUV422ToRGB_8u_P3C3R(pSrc, tight422(imgSize).of, pDst, tightStep(imgSize, 3), imgSize);
}
KipStatus kipiYUV420ToRGB_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize) {
  return kipiYUV420ToRGB_8u_P3R(pSrc, tight420(imgSize).of, pDst, imgSize.width, imgSize);
}
KipStatus kipiYUV420ToRGB_8u_P3C3(const Kip8u* pSrc[3], Kip8u* pDst, KipiSize imgSize) {
  return kipiYUV420ToRGB_8u_P3C3R(pSrc, tight420(imgSize).of, pDst, tightStep(imgSize, 3), imgSize);
}
#endif  // HWY_ONCE
