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

constexpr int kChromaZero = 128;
constexpr int kR15 = 9798, kG15 = 19235, kB15 = 3736;  // luma weights x 2^15
constexpr int kU15 = 16121, kV15 = 28737;              // 0.492, 0.877 x 2^15

template <int kBits>
KIP_INLINE I16 shiftLeft(I16 v) {
  return hn::ShiftLeft<kBits>(v);
}

/// A factor whose products are floored to their upper 16 bits.
class Factor {
 public:
  KIP_INLINE explicit Factor(int value) : value_(pinned<int16_t>(value)) {}
  KIP_INLINE I16 operator()(I16 v) const { return hn::MulHigh(v, value_); }

 private:
  I16 value_;
};

class UnsignedFactor {
 public:
  KIP_INLINE explicit UnsignedFactor(int value) : value_(pinned<uint16_t>(value)) {}
  KIP_INLINE U16 operator()(U16 v) const { return hn::MulHigh(v, value_); }

 private:
  U16 value_;
};

class ChromaZero {
 public:
  KIP_INLINE ChromaZero() {}
  KIP_INLINE I16 plus(I16 v) const { return hn::Add(v, zero_); }
  template <int kBits>
  KIP_INLINE I16 centre(I16 chroma) const {
    return shiftLeft<kBits>(hn::Sub(chroma, zero_));
  }

 private:
  I16 zero_ = pinned<int16_t>(kChromaZero);
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

/// 2 Y from pairs of channels: the weighted R and G floored together, B by itself.
struct DoubledLuma {
  I16 rgWeights = pinnedPairs(kR15, kG15), bWeight = pinnedPairs(0, kB15);

  KIP_INLINE DoubledLuma() {}

  KIP_INLINE I32 operator()(I16 rg, I16 gb) const {
    return hn::Add(hn::ShiftRight<14>(dotPairs(rg, rgWeights)), hn::ShiftRight<14>(dotPairs(gb, bWeight)));
  }
};

/// Chroma from the differences of blue and of red to luma, all doubled.
struct Differences {
  Factor uFactor{kU15}, vFactor{kV15};
  ChromaZero zero;

  KIP_INLINE Differences() {}

  KIP_INLINE I16 u(I16 doubledBlue, I16 doubledLuma) const {
    return zero.plus(uFactor(hn::Sub(doubledBlue, doubledLuma)));
  }
  KIP_INLINE I16 v(I16 doubledRed, I16 doubledLuma) const {
    return zero.plus(vFactor(hn::Sub(doubledRed, doubledLuma)));
  }
};

/// Pixels left over after the runs of ForwardRun and ForwardRunAlpha.
struct ForwardRest {
  using Lane = int16_t;
  DoubledLuma luma;
  Differences chroma;

  KIP_INLINE ForwardRest() {}

  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Tag<int16_t> d;
    const I16 y2 = packWords(luma(hn::InterleaveLower(px.a, px.b), hn::InterleaveLower(px.b, px.c)),
                             luma(hn::InterleaveUpper(d, px.a, px.b), hn::InterleaveUpper(d, px.b, px.c)));
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

/// Encodes by the sums of a group's colours and luma. Of the arithmetic it wants
///   I32 luma(rg, gb)                  the luma of one vector of pixels, at the arithmetic's scale
///   I16 toByte(luma)                  that luma as a sample
///   I16 u(blues, lumas), v(reds, lumas)   the chroma of groups from their sums
template <class Arithmetic>
struct EncodeSums : Arithmetic {
  struct Sums {
    PixelPairs px;
    I16 luma[2];
  };

  KIP_INLINE EncodeSums() {}

  KIP_INLINE Sums row(const PixelPairs& px, U8& y) const {
    Sums sums;
    sums.px = px;
    for (int half = 0; half < 2; ++half) {
      sums.luma[half] =
          packWords(this->luma(px.rg[2 * half], px.gb[2 * half]), this->luma(px.rg[2 * half + 1], px.gb[2 * half + 1]));
    }
    y = packBytes(this->toByte(sums.luma[0]), this->toByte(sums.luma[1]));
    return sums;
  }
  KIP_INLINE Sums add(const Sums& upper, const Sums& lower) const {
    Sums sums;
    for (int k = 0; k < 4; ++k) {
      sums.px.rg[k] = hn::Add(upper.px.rg[k], lower.px.rg[k]);
      sums.px.gb[k] = hn::Add(upper.px.gb[k], lower.px.gb[k]);
    }
    for (int half = 0; half < 2; ++half) sums.luma[half] = hn::Add(upper.luma[half], lower.luma[half]);
    return sums;
  }
  KIP_INLINE void chroma(const Sums& sums, Subsampled& s) const {
    const I16 one = set<int16_t>(1);
    const I16 luma = packWords(dotPairs(sums.luma[0], one), dotPairs(sums.luma[1], one));
    const auto& [rg, gb] = sums.px;
    const I16 red[2] = {addNeighbours(rg[0], rg[1]), addNeighbours(rg[2], rg[3])};
    const I16 blue[2] = {addNeighbours(gb[0], gb[1]), addNeighbours(gb[2], gb[3])};
    s.u = this->u(packWords(upper(blue[0]), upper(blue[1])), luma);
    s.v = this->v(packWords(lower(red[0]), lower(red[1])), luma);
  }

 private:
  /// One channel of pairs of sums.
  KIP_INLINE static I32 lower(I16 pairs) { return hn::And(as<int32_t>(pairs), set<int32_t>(0xFFFF)); }
  KIP_INLINE static I32 upper(I16 pairs) { return hn::ShiftRight<16>(as<int32_t>(pairs)); }
};

/// Sums of a pixel pair; the mean luma is floored, so S = (Y2 + Y2) >> 1 against R + R.
struct Mean422 {
  DoubledLuma luma;
  Differences differences;

  KIP_INLINE Mean422() {}

  KIP_INLINE I16 toByte(I16 y2) const { return hn::ShiftRight<1>(y2); }
  KIP_INLINE I16 u(I16 blues, I16 lumas) const { return differences.u(blues, hn::ShiftRight<1>(lumas)); }
  KIP_INLINE I16 v(I16 reds, I16 lumas) const { return differences.v(reds, hn::ShiftRight<1>(lumas)); }
};

/// Sums of a 2 x 2 block, brought to the scale of one doubled pixel.
struct Mean420 {
  I16 rgWeights = pinnedPairs(kR15, kG15), bWeight = pinnedPairs(0, kB15);
  Differences differences;

  KIP_INLINE Mean420() {}

  KIP_INLINE I32 luma(I16 rg, I16 gb) const {
    return hn::ShiftRight<14>(hn::Add(dotPairs(rg, rgWeights), dotPairs(gb, bWeight)));
  }
  KIP_INLINE I16 toByte(I16 y2) const { return hn::ShiftRight<1>(y2); }
  KIP_INLINE I16 u(I16 blues, I16 lumas) const {
    return differences.u(hn::ShiftRight<1>(blues), hn::ShiftRight<2>(lumas));
  }
  KIP_INLINE I16 v(I16 reds, I16 lumas) const {
    return differences.v(hn::ShiftRight<1>(reds), hn::ShiftRight<2>(lumas));
  }
};

/// The last pixel of an odd width by itself, written behind the row's pairs: Y, U and, in planes, V.
struct LonePixel {
  int y, u, v;

  explicit LonePixel(const Pixel& rgb) {
    const auto [r, g, b] = rgb;
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
    Encode<EncodeSums<Mean422>, Src, Dst>::rows(job, first, last);
    if (job.width % 2 == 0) return;
    const size_t x = job.width - 1;
    for (int y = first; y < last; ++y) {
      const LonePixel px(pixelAt<Src>(Src::rows(job.src, y), x));
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

struct Factors {
  int vToR, uToG, vToG, uToB;
};
constexpr Factors kFactors1 = {9339, -3228, -4760, 16646};  // x 2^13
constexpr Factors kFactors2 = {9338, -3227, -4759, 16645};

/// Luma and chroma terms added as they are.
struct Direct {
  ChromaZero zero;

  KIP_INLINE Direct() {}

  KIP_INLINE Pixels<I16> pixel(I16 y, const Pixels<I16>& t) const {
    return {hn::Add(y, t.a), hn::Add(y, t.b), hn::Add(y, t.c)};
  }
};

/// Luma doubled and the sums halved, so that the terms carry one more bit.
struct Doubled {
  ChromaZero zero;

  KIP_INLINE Doubled() {}

  KIP_INLINE Pixels<I16> pixel(I16 y, const Pixels<I16>& t) const {
    const I16 y2 = shiftLeft<1>(y);
    return {hn::ShiftRight<1>(hn::Add(y2, t.a)), hn::ShiftRight<1>(hn::Add(y2, t.b)),
            hn::ShiftRight<1>(hn::Add(y2, t.c))};
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

template <const Factors& kFactors>
struct InverseDoubled : Doubled {
  Factor vToR{kFactors.vToR}, uToG{kFactors.uToG}, vToG{kFactors.vToG}, uToB{kFactors.uToB};

  KIP_INLINE InverseDoubled() {}

  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = zero.centre<4>(chromaU), v = zero.centre<4>(chromaV);
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
/// 133169 u for B. Factors above 32767 are split into whole multiples of 65536 and a rest.
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

// ---------------------------------------------------------------------------------------------------------------------
// Inverse, by source. Of the arithmetic these want
//   Pixels<I16> terms(u, v)       what the chroma adds to each channel
//   Pixels<I16> pixel(y, terms)   a pixel, before saturation

/// An arithmetic for full-resolution pixels.
template <class Arithmetic>
struct PerPixel {
  using Lane = int16_t;
  Arithmetic arithmetic;

  KIP_INLINE PerPixel() {}
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    return arithmetic.pixel(px.a, arithmetic.terms(px.b, px.c));
  }
};

/// An arithmetic for subsampled pixels.
template <class Arithmetic>
struct PerPair {
  Arithmetic arithmetic;

  KIP_INLINE PerPair() {}
  template <class Src, class From>
  KIP_INLINE static Subsampled load(const Src& src, const From& from) {
    return src.load(from);
  }
  KIP_INLINE Pixels<I16> terms(const Subsampled& s) const { return arithmetic.terms(s.u, s.v); }
  KIP_INLINE Pixels<U8> row(const Subsampled& s, int r, const Pixels<I16>& terms) const {
    const Pixels<I16> even = arithmetic.pixel(evenBytes(s.y[r]), terms);
    const Pixels<I16> odd = arithmetic.pixel(oddBytes(s.y[r]), terms);
    return {mergeBytes(even.a, odd.a), mergeBytes(even.b, odd.b), mergeBytes(even.c, odd.c)};
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
    for (int y = first; y < last; ++y) Decode<PerPair<Op>, Src, Dst>::pixels(job, y, 0, converted<Src>(job.width));
  }
};

/// As DecodeAll, with another arithmetic for the pixels after the last whole run of kRun.
template <int kRun, class Op, class Rest, class Src, class Dst>
struct DecodeRuns {
  static void rows(const Job& job, int first, int last) {
    const int end = converted<Src>(job.width), runs = end - end % kRun;
    for (int y = first; y < last; ++y) {
      Decode<PerPair<Op>, Src, Dst>::pixels(job, y, 0, runs);
      Decode<PerPair<Rest>, Src, Dst>::pixels(job, y, runs, end);
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
using Inverse2 = InverseDoubled<kFactors2>;
template <class Src, class Dst>
using Decode2 = DecodeAll<Inverse2, Src, Dst>;
template <class Src>
using Encode420 = Encode<EncodeSums<Mean420>, Src, Planar420>;
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
