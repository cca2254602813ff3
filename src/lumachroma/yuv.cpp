// RGB to and from YUV: BT.601 colour differences at full range, 8 bits, at full resolution, 4:2:2 and 4:2:0.

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lumachroma/yuv.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "lumachroma/yuv-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {
using namespace yuv;

class UnsignedFactor {
 public:
  KIP_INLINE explicit UnsignedFactor(int value) : value_(keepInRegister<uint16_t>(value)) {}
  KIP_INLINE U16 operator()(U16 v) const { return hn::MulHigh(v, value_); }

 private:
  U16 value_;
};

// ---------------------------------------------------------------------------------------------------------------------
// Forward, full resolution

/// A weighted sum of channels x 128 with weights x 2^15, back at the scale of samples; every product is floored.
struct Weighted {
  Factor r, g, b;

  KIP_INLINE I16 operator()(const Pixels<I16>& px128) const {
    return hn::ShiftRight<6>(hn::Add(hn::Add(r(px128.a), g(px128.b)), b(px128.c)));
  }
};

KIP_INLINE Pixels<I16> times128(const Pixels<I16>& px) {
  return {shiftLeft<7>(px.a), shiftLeft<7>(px.b), shiftLeft<7>(px.c)};
}

/// Luma weights x 2^16, summing to 65535, unsigned.
struct ForwardRun {
  using Lane = int16_t;
  UnsignedFactor r{19595}, g{38469}, b{7471};
  Weighted u{Factor(-4816), Factor(-9469), Factor(14286)};
  Weighted v{Factor(20152), Factor(-16875), Factor(-3276)};
  ChromaZero zero;

  KIP_INLINE ForwardRun() {}

  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Pixels<I16> px128 = times128(px);
    const auto times256 = [](I16 channel) KIP_INLINE_LAMBDA { return as<uint16_t>(hn::ShiftLeft<8>(channel)); };
    // The sum reaches 65277: 16 unsigned bits.
    const U16 sum = hn::Add(hn::Add(r(times256(px.a)), g(times256(px.b))), b(times256(px.c)));
    return {as<int16_t>(hn::ShiftRight<8>(sum)), zero.plus(u(px128)), zero.plus(v(px128))};
  }
};

/// The same with luma weights x 2^15 and chroma weights one step further from zero.
struct ForwardRunAlpha {
  using Lane = int16_t;
  Weighted y{Factor(kR15), Factor(kG15), Factor(kB15)};
  Weighted u{Factor(-4817), Factor(-9470), Factor(14287)};
  Weighted v{Factor(20152), Factor(-16876), Factor(-3277)};
  ChromaZero zero;

  KIP_INLINE ForwardRunAlpha() {}

  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Pixels<I16> px128 = times128(px);
    return {y(px128), zero.plus(u(px128)), zero.plus(v(px128))};
  }
};

/// Pixels left over after the runs of ForwardRun and ForwardRunAlpha.
struct ForwardRest {
  using Lane = int16_t;
  DoubledLuma luma;
  Differences chroma;

  KIP_INLINE ForwardRest() {}

  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const I16 y2 = packPixels(pairsOf(px), luma);
    return {hn::ShiftRight<1>(y2), chroma.u(shiftLeft<1>(px.c), y2), chroma.v(shiftLeft<1>(px.a), y2)};
  }
};

/// Luma first, chroma from B - Y and R - Y.
struct DifferenceRun {
  using Lane = int16_t;
  Weighted luma{Factor(kR15), Factor(kG15), Factor(kB15)};
  Differences chroma;

  KIP_INLINE DifferenceRun() {}

  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const I16 y = luma(times128(px)), y2 = shiftLeft<1>(y);
    return {y, chroma.u(shiftLeft<1>(px.c), y2), chroma.v(shiftLeft<1>(px.a), y2)};
  }
};

/// Pixels left over after the runs of DifferenceRun, weights x 2^16: S = 19595 R + 38470 G + 7471 B, Y = S >> 16,
/// U = ((((B << 16) - S + 32767) >> 16) x 32244 >> 16) + 128 and V likewise with R and 57475.
struct DifferenceRest {
  using Lane = int16_t;
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const HalfBatch<PixelPairs> pairs = pairsOf(px);
    const Pixels<I32> lower = samples(pairs.of[0].br, pairs.of[0].gg), upper = samples(pairs.of[1].br, pairs.of[1].gg);
    return packChannels(lower, upper, [](I32 l, I32 u) KIP_INLINE_LAMBDA { return packWords(l, u); });
  }

 private:
  KIP_INLINE static Pixels<I32> samples(I16 br, I16 gg) {
    constexpr int kGreenHalf = 38470 / 2;  // too large for one signed 16-bit factor
    const I32 s = hn::Add(dotPairs(br, setPairs(7471, 19595)), dotPairs(gg, setPairs(kGreenHalf, kGreenHalf)));
    const auto chroma = [&](I32 channel16, int factor) {
      const I32 rounded = hn::ShiftRight<16>(hn::Add(hn::Sub(channel16, s), set<int32_t>(32767)));
      return hn::Add(hn::ShiftRight<16>(hn::Mul(rounded, set<int32_t>(factor))), set<int32_t>(kChromaZero));
    };
    const I32 both = as<int32_t>(br);
    const I32 blue16 = hn::ShiftLeft<16>(both), red16 = hn::And(both, as<int32_t>(setPairs(0, -1)));
    return {hn::ShiftRight<16>(s), chroma(blue16, 32244), chroma(red16, 57475)};
  }
};

/// The last pixel of an odd width by itself, written behind the row's pairs: Y, U and, in planes, V.
struct TrailingPixel {
  int y, u, v;

  explicit TrailingPixel(const Pixel& rgb) {
    const auto [r, g, b] = rgb;
    const int sum = kR15 * r + kG15 * g + kB15 * b;
    y = sum >> 15;
    // The rounding constants of U and V differ.
    u = (((((b << 15) - sum + 16383) >> 15) * kU15) >> 15) + kChromaZero;
    v = (((((r << 15) - sum + 32767) >> 15) * kV15) >> 15) + kChromaZero;
  }
};

/// As Encode to 4:2:2, and the last pixel of an odd width.
template <class Src, class Dst>
struct Encode422 {
  static void rows(const Job& job, int first, int last) {
    Encode<EncodeSums<Mean422>, Src, Dst>::rows(job, first, last);
    if (job.width % 2 == 0) return;
    const size_t x = job.width - 1;
    for (int y = first; y < last; ++y) {
      const TrailingPixel px(pixelAt<Src>(Src::rows(job.src, y), x));
      const auto to = advance<Dst>(Dst::rows(job.dst, y), x);
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

/// Luma and chroma terms added as they are.
struct Direct {
  ChromaZero zero;

  KIP_INLINE Direct() {}

  KIP_INLINE Pixels<I16> pixel(I16 y, const Pixels<I16>& t) const {
    return {hn::Add(y, t.a), hn::Add(y, t.b), hn::Add(y, t.c)};
  }
};

struct Inverse1 : Direct {
  Factor vToR{kFactors1.vToR}, uToG{kFactors1.uToG}, vToG{kFactors1.vToG}, uToB{kFactors1.uToB};

  KIP_INLINE Inverse1() {}

  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = zero.centre<3>(chromaU), v = zero.centre<3>(chromaV);
    return {vToR(v), hn::Add(uToG(u), vToG(v)), uToB(u)};
  }
};

/// Factors x 2^14 (U to B: x 2^13), each green product floored and then subtracted.
struct Inverse3 : Direct {
  Factor vToR{18677}, uToG{6455}, vToG{9519}, uToB{16646};

  KIP_INLINE Inverse3() {}

  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = zero.centre<2>(chromaU), v = zero.centre<2>(chromaV);
    return {vToR(v), hn::Neg(hn::Add(uToG(u), vToG(v))), uToB(shiftLeft<1>(u))};
  }
};

struct Inverse1Doubled : InverseDoubled {
  KIP_INLINE Inverse1Doubled() : InverseDoubled(kFactors1) {}
};

/// As InverseDoubled, each green product floored and then subtracted.
struct Inverse4 : Doubled {
  Factor vToR{9338}, uToG{3227}, vToG{4759}, uToB{16646};

  KIP_INLINE Inverse4() {}

  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = zero.centre<4>(chromaU), v = zero.centre<4>(chromaV);
    return {vToR(v), hn::Neg(hn::Add(uToG(u), vToG(v))), uToB(u)};
  }
};

/// Pixels left over after the runs of Inverse4: ((Y << 16) + 74711 v + 32768) >> 16 for R, -25821 u - 38076 v for G and
/// 133169 u for B. Factors above 32767 are split into whole multiples of 65536 and a tail.
struct Inverse4Rest : Direct {
  KIP_INLINE Inverse4Rest() {}

  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = zero.centre<0>(chromaU), v = zero.centre<0>(chromaV);
    return {hn::Add(v, rounded(u, v, 0, 74711 - 65536)), hn::Sub(rounded(u, v, -25821, 65536 - 38076), v),
            hn::Add(shiftLeft<1>(u), rounded(u, v, 133169 - 2 * 65536, 0))};
  }

 private:
  KIP_INLINE static I16 rounded(I16 u, I16 v, int uFactor, int vFactor) {
    const I16 factors = setPairs(uFactor, vFactor);
    const auto scaled = [&](I16 pairs) KIP_INLINE_LAMBDA {
      return hn::ShiftRight<16>(hn::Add(dotPairs(pairs, factors), set<int32_t>(32768)));
    };
    return packWords(scaled(hn::InterleaveLower(u, v)), scaled(hn::InterleaveUpper(Tag<int16_t>(), u, v)));
  }
};

/// The pixels of a row that are converted: that of an odd width has chroma of its own in 4:2:2, and is left in 4:2:0.
template <class Src>
constexpr int converted(int width) {
  return Src::kLumaRows == 2 ? wholeGroups<Src>(width) : width;
}

template <class Op, class Src, class Dst>
struct DecodeAll {
  static void rows(const Job& job, int first, int last) {
    const Decode<PerPair<Op>, Src, Dst> decode(job);
    for (int y = first; y < last; ++y) decode.pixels(y, 0, converted<Src>(job.width));
  }
};

/// As DecodeAll, with another arithmetic for the pixels after the last whole run of kRun.
template <int kRun, class Op, class Tail, class Src, class Dst>
struct DecodeRuns {
  static void rows(const Job& job, int first, int last) {
    const int end = converted<Src>(job.width), runs = end - end % kRun;
    const Decode<PerPair<Op>, Src, Dst> run(job);
    const Decode<PerPair<Tail>, Src, Dst> tail(job);
    for (int y = first; y < last; ++y) {
      run.pixels(y, 0, runs);
      tail.pixels(y, runs, end);
    }
  }
};

/// Packed 4:2:2. A lone pixel has factors of its own.
template <class Op, class Src, class Dst>
struct DecodeC2 {
  static void rows(const Job& job, int first, int last) {
    if (job.width == 1) return single(job, first, last);
    DecodePacked<PerPair<Op>, Src, Dst>::rows(job, first, last);
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
template <class Src, class Dst>
using Decode2 = DecodeAll<Inverse2, Src, Dst>;
template <class Src>
using Encode420 = Encode<EncodeSums<Mean420>, Src, Planar420>;
template <class Src>
using Decode4 = DecodeRuns<8, Inverse4, Inverse4Rest, Src, C4<>>;

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "lumachroma/rules.h"
#endif

#define KIP_FUNCTIONS "lumachroma/yuv-functions.inc"
#include "engine/functions-inl.h"

#if HWY_ONCE
namespace {

/// An interleaved image without gaps, whose step may be more than an int holds.
ImageArg tightC3(const Kip8u* first, KipiSize size) {
  return interleaved(first, static_cast<ptrdiff_t>(size_t{3} * static_cast<unsigned>(size.width)));
}

/// The steps of planes without gaps.
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
  return convert(KIP_KERNEL(kipiRGBToYUV422_8u_C3P3R), kAnySize, tightC3(pSrc, imgSize),
                 planar(pDst, 3, tight422(imgSize).of), imgSize);
}
KipStatus kipiRGBToYUV422_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize) {
  return kipiRGBToYUV422_8u_P3R(pSrc, imgSize.width, pDst, tight422(imgSize).of, imgSize);
}
KipStatus kipiRGBToYUV420_8u_C3P3(const Kip8u* pSrc, Kip8u* pDst[3], KipiSize imgSize) {
  return convert(KIP_KERNEL(kipiRGBToYUV420_8u_C3P3R), kAnySize420, tightC3(pSrc, imgSize),
                 planar(pDst, 3, tight420(imgSize).of), imgSize);
}
KipStatus kipiRGBToYUV420_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize) {
  return kipiRGBToYUV420_8u_P3R(pSrc, imgSize.width, pDst, tight420(imgSize).of, imgSize);
}
KipStatus kipiYUV422ToRGB_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize) {
  return kipiYUV422ToRGB_8u_P3R(pSrc, tight422(imgSize).of, pDst, imgSize.width, imgSize);
}
KipStatus kipiYUV422ToRGB_8u_P3C3(const Kip8u* pSrc[3], Kip8u* pDst, KipiSize imgSize) {
  return convert(KIP_KERNEL(kipiYUV422ToRGB_8u_P3C3R), kAnySize, planar(pSrc, 3, tight422(imgSize).of),
                 tightC3(pDst, imgSize), imgSize);
}
KipStatus kipiYUV420ToRGB_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize) {
  return kipiYUV420ToRGB_8u_P3R(pSrc, tight420(imgSize).of, pDst, imgSize.width, imgSize);
}
KipStatus kipiYUV420ToRGB_8u_P3C3(const Kip8u* pSrc[3], Kip8u* pDst, KipiSize imgSize) {
  return convert(KIP_KERNEL(kipiYUV420ToRGB_8u_P3C3R), kAnySize420, planar(pSrc, 3, tight420(imgSize).of),
                 tightC3(pDst, imgSize), imgSize);
}
#endif  // HWY_ONCE
