// YCbCr: the coefficient sets, and their arithmetic in 32-bit sums, exact to the last bit for every pixel.

#if defined(KIP_LUMACHROMA_YCBCR_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_LUMACHROMA_YCBCR_INL_H_
#undef KIP_LUMACHROMA_YCBCR_INL_H_
#else
#define KIP_LUMACHROMA_YCBCR_INL_H_
#endif

#include <cstdlib>

#include "lumachroma/subsampling-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

constexpr int kOne = 1 << 16;  // the scale of all factors
constexpr int kHalf = kOne / 2;
constexpr int kEighth = kOne / 8;
constexpr int kChromaZero = 128;

/// even x kEven + odd x kOdd of each pair of 16-bit lanes, exactly, for any factors. What a factor has beyond 16 bits
/// is multiples of 2^16, which are shifts.
template <int kEven, int kOdd>
class WeighPairs {
 public:
  KIP_INLINE WeighPairs() {}

  KIP_INLINE I32 operator()(I16 pairs) const { return addWholes(dotPairs(pairs, rests_), pairs); }
  /// Added to a start.
  KIP_INLINE I32 operator()(I32 start, I16 pairs) const { return addWholes(dotPairs(start, pairs, rests_), pairs); }

 private:
  KIP_INLINE I32 addWholes(I32 sum, I16 pairs) const {
    const I32 both = as<int32_t>(pairs);
    if constexpr (wholes(kEven) != 0) sum = addTimes<wholes(kEven)>(sum, hn::ShiftLeft<16>(both));
    if constexpr (wholes(kOdd) != 0) sum = addTimes<wholes(kOdd)>(sum, hn::And(both, upperHalf_));
    return sum;
  }

  static constexpr int wholes(int factor) { return (factor + kHalf) >> 16; }
  static constexpr int rest(int factor) { return factor - wholes(factor) * kOne; }

  template <int kTimes>
  KIP_INLINE static I32 addTimes(I32 sum, I32 v) {
    static_assert(kTimes == -1 || kTimes == 1 || kTimes == 2);
    if constexpr (kTimes == -1) return hn::Sub(sum, v);
    if constexpr (kTimes == 1) return hn::Add(sum, v);
    return hn::Add(sum, hn::Add(v, v));
  }

  I16 rests_ = keepPairs(rest(kEven), rest(kOdd));
  I32 upperHalf_ = as<int32_t>(keepPairs(0, -1));
};

/// By what samples are multiplied while they are widened, so that the rest of a factor of more than 16 bits fits: its
/// least divisor that does. A factor without one is left as it is.
constexpr int scaleOf(int factor) {
  for (int scale = 1; scale <= 127; ++scale) {
    const int scaled = factor / scale;
    if (factor % scale == 0 && -32767 <= scaled && scaled <= 32767) return scale;
  }
  return 1;
}
constexpr int afterScale(int factor) { return factor / scaleOf(factor); }

// Packed 4:2:2 in the spaces' three orders.
using YCbYCr = Packed422<true, false>;
using YCrYCb = Packed422<true, true>;
using CbYCrY = Packed422<false, false>;

// ---------------------------------------------------------------------------------------------------------------------
// From RGB

/// Factors x 2^16 of R, G and B.
struct Row {
  int r, g, b;
};

struct ForwardSet {
  Row y;
  int lumaZero;  // Y of black
  Row cb, cr;
};

constexpr ForwardSet kBt601 = {{16843, 33030, 6423}, 16, {-9699, -19071, 28770}, {28770, -24117, -4653}};
constexpr ForwardSet kBt709Csc = {{11993, 40239, 4063}, 16, {-6619, -22151, 28770}, {28770, -26149, -2621}};
constexpr ForwardSet kBt709Hdtv = {{13959, 46858, 4719}, 0, {-7668, -25821, 33489}, {33489, -30409, -3080}};

/// A chroma sum from pairs (B - G, R - G): the factors of R, G and B add up to zero, so these differences say all.
template <Row kRow>
struct WeighDifferences : WeighPairs<kRow.b, kRow.r> {
  static_assert(kRow.r + kRow.g + kRow.b == 0);
  KIP_INLINE WeighDifferences() {}
};

/// The sums x 2^16 of a coefficient set, from pairs (B, R) and (G, G) and their differences.
template <const ForwardSet& kSet>
struct Forward {
  KIP_INLINE Forward() {}

  WeighPixels y{kSet.y.b, kSet.y.g, kSet.y.r};
  WeighDifferences<kSet.cb> cb;
  WeighDifferences<kSet.cr> cr;
};

// ---------------------------------------------------------------------------------------------------------------------
// To RGB

/// Factors x 2^16.
struct Factors {
  int y, crToR, cbToG, crToG, cbToB;
};

struct InverseSet {
  Factors factors;
  int lumaZero;  // Y of black
  Row rounding;  // added to the sums before they are floored
};

// BT.601 comes in four renderings of the same matrix. Each function's results are promised to the bit, so they stay
// apart.
constexpr Factors kBt601Factors1 = {76284, 104595, 25690, 53281, 132186};
constexpr Factors kBt601Factors2 = {76282, 104593, 25689, 53279, 132184};
constexpr Factors kBt601Factors3 = {76294, 104595, 25625, 53281, 132186};
constexpr Factors kBt601Factors4 = {76309, 104597, 25675, 53279, 132201};
constexpr Factors kBt709CscFactors = {76284, 117506, 13959, 34996, 138609};
constexpr Factors kBt709HdtvFactors = {65536, 100925, 11993, 30081, 119013};

constexpr Row kDown = {0, 0, 0};
constexpr Row kNearest = {kHalf, kHalf, kHalf};
constexpr Row kBiasedDown = {-57, -14, -13};  // a bias that is meant

constexpr InverseSet kFloored1 = {kBt601Factors1, 16, kDown};
constexpr InverseSet kBiased1 = {kBt601Factors1, 16, kBiasedDown};
constexpr InverseSet kRounded1 = {kBt601Factors1, 16, kNearest};
constexpr InverseSet kFloored2 = {kBt601Factors2, 16, kDown};
constexpr InverseSet kRounded2 = {kBt601Factors2, 16, kNearest};
constexpr InverseSet kFloored3 = {kBt601Factors3, 16, kDown};
constexpr InverseSet kFloored4 = {kBt601Factors4, 16, kDown};
constexpr InverseSet kRounded709Csc = {kBt709CscFactors, 16, kNearest};
constexpr InverseSet kRounded709Hdtv = {kBt709HdtvFactors, 0, kNearest};

/// What the zeros of luma and chroma, and the rounding, come to in the sum of a channel with that factor of chroma.
constexpr int constantOf(const InverseSet& set, int rounding, int chroma) {
  return rounding - set.lumaZero * set.factors.y - kChromaZero * chroma;
}

/// RGB from subsampled luma and chroma. Layout says where in their lanes the samples are.
template <const InverseSet& kSet, class Layout>
class InversePairs {
 public:
  KIP_INLINE InversePairs() {}

  /// What chroma adds to the sums of each channel, with all constants.
  KIP_INLINE Pixels<I32> terms(U8 chroma) const {
    const I16 forRb = dotBytes(chroma, rbScale_), forG = dotBytes(chroma, gScale_);
    return {toR_(r_, forRb), toG_(g_, forG), toB_(b_, forRb)};
  }

  /// Pixels, before saturation, from their luma and the terms of the even and of the odd ones.
  KIP_INLINE Pixels<I16> pixels(U8 y, const Pixels<I32>& even, const Pixels<I32>& odd) const {
    const I16 scaled = dotBytes(y, lumaScale_);
    const I32 evenLuma = evenLuma_(scaled), oddLuma = oddLuma_(scaled);
    const auto channel = [&](I32 evenTerm, I32 oddTerm) KIP_INLINE_LAMBDA {
      return interleaveHigh16(hn::Add(evenLuma, evenTerm), hn::Add(oddLuma, oddTerm));
    };
    return {channel(even.a, odd.a), channel(even.b, odd.b), channel(even.c, odd.c)};
  }

 private:
  static constexpr Factors kX = kSet.factors;

  /// Factors for (Cb, Cr), or (Cr, Cb).
  template <int kCb, int kCr>
  using Weigh = std::conditional_t<Layout::kChromaSwapped, WeighPairs<kCr, kCb>, WeighPairs<kCb, kCr>>;

  static constexpr int only(int byte, int scale) { return byte == 0 ? bytePair(scale, 0) : bytePair(0, scale); }
  KIP_INLINE static I8 chromaScale(int cb, int cr) {
    const int forCb = only(Layout::kChromaByte, cb), forCr = only(Layout::kChromaByte, cr);
    return as<int8_t>(Layout::kChromaSwapped ? keepPairs(forCr, forCb) : keepPairs(forCb, forCr));
  }

  I8 lumaScale_ = as<int8_t>(keepInRegister<int16_t>(only(Layout::kLumaByte, scaleOf(kX.y))));
  WeighPairs<afterScale(kX.y), 0> evenLuma_;
  WeighPairs<0, afterScale(kX.y)> oddLuma_;
  I8 rbScale_ = chromaScale(scaleOf(kX.cbToB), scaleOf(kX.crToR));
  I8 gScale_ = chromaScale(scaleOf(kX.cbToG), scaleOf(kX.crToG));
  Weigh<0, afterScale(kX.crToR)> toR_;
  Weigh<-afterScale(kX.cbToG), -afterScale(kX.crToG)> toG_;
  Weigh<afterScale(kX.cbToB), 0> toB_;
  I32 r_ = keepInRegister<int32_t>(constantOf(kSet, kSet.rounding.r, kX.crToR));
  I32 g_ = keepInRegister<int32_t>(constantOf(kSet, kSet.rounding.g, -kX.cbToG - kX.crToG));
  I32 b_ = keepInRegister<int32_t>(constantOf(kSet, kSet.rounding.b, kX.cbToB));
};

/// The sums of a channel at full resolution, x 2^16: 32 bits for the even and for the odd pixels, and what is to be
/// added to the upper halves of both.
struct Sums {
  I32 even, odd;
  I16 upper;

  KIP_INLINE I16 floored() const { return hn::Add(interleaveHigh16(even, odd), upper); }
};

/// A sample's distance from its zero, times a factor. Bytes come in pairs of sample and zero.
template <int kFactor>
class WeighSample {
 public:
  KIP_INLINE WeighSample() {}

  KIP_INLINE Sums addTo(const Sums& sums, U8 sampleAndZero) const {
    const I16 v = dotBytes(sampleAndZero, scale_);
    I16 upper = sums.upper;
    if constexpr (kWholes == -1) upper = hn::Sub(upper, v);
    if constexpr (kWholes == 2) upper = hn::Add(upper, hn::Add(v, v));
    return {dotPairs(sums.even, v, even_), dotPairs(sums.odd, v, odd_), upper};
  }

 private:
  // What no scale brings down to 16 bits is multiples of 2^16.
  static constexpr int kWholes = (afterScale(kFactor) + kHalf) >> 16;
  static constexpr int kRest = afterScale(kFactor) - kWholes * kOne;
  static_assert(kWholes == 0 || kWholes == -1 || kWholes == 2);

  I8 scale_ = keepBytePairs(scaleOf(kFactor), -scaleOf(kFactor));
  I16 even_ = keepPairs(kRest, 0), odd_ = keepPairs(0, kRest);
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
