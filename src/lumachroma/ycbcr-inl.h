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

/// Weights of four bytes, the sums exact: the first two and the last two are brought to 16 bits by small factors, and
/// those two to 32 bits by factors of 16 bits.
struct QuadWeights {
  int bytes[4];
  int first, last;
};

/// For constants only: what does not fit in 16 bits does not compile.
constexpr int fitting(int factor) {
  if (factor < -32767 || factor > 32767) std::abort();
  return factor;
}

/// A factor as inKnown x known + inFree x free, where inKnown and inFree are small and `free` fits in 16 bits.
struct Shares {
  int inKnown, inFree, free;
};
constexpr Shares share(int factor, int known) {
  for (int n = 0; n <= 2 * 127; ++n) {
    const int inKnown = n % 2 == 0 ? n / 2 : -(n / 2) - 1;
    for (int inFree = 1; inFree <= 64; ++inFree) {
      const int rest = factor - inKnown * known, free = rest / inFree;
      if (rest % inFree == 0 && -32767 <= free && free <= 32767) return {inKnown, inFree, free};
    }
  }
  std::abort();  // a constant that does not compile
}

/// For bytes Cb, Cr, Cb, Cr. The factor of Cb fits in 16 bits.
constexpr QuadWeights weighChroma(int cb, int cr) {
  const int first = cb == 0 ? 1 : cb;
  const Shares s = share(cr, first);
  return {{cb == 0 ? 0 : 1, s.inKnown, 0, s.inFree}, fitting(first), s.free};
}
/// The same for Cr, Cb, Cr, Cb.
constexpr QuadWeights exchanged(const QuadWeights& w) {
  return {{w.bytes[1], w.bytes[0], w.bytes[3], w.bytes[2]}, w.first, w.last};
}

/// What the zeros of luma and chroma, and the rounding, come to in the sum of a channel with that factor of chroma.
constexpr int constantOf(const InverseSet& set, int rounding, int chroma) {
  return rounding - set.lumaZero * set.factors.y - kChromaZero * chroma;
}

/// What comes of a coefficient set for each channel, in the order of the pixels: R, G, B or B, G, R.
struct InverseWeights {
  int lumaScale, luma;  // factors of bytes and of what they get to
  QuadWeights channel[3];
  int offset[3];
};

/// Weights of luma and of chroma in bytes Cb, Cr, Cb, Cr.
constexpr InverseWeights groupWeights(const InverseSet& set, bool reversed) {
  const auto& [y, crToR, cbToG, crToG, cbToB] = set.factors;
  const QuadWeights r = weighChroma(0, crToR), b = exchanged(weighChroma(0, cbToB));
  const int rOffset = constantOf(set, set.rounding.r, crToR), bOffset = constantOf(set, set.rounding.b, cbToB);
  return {
      scaleOf(y),
      afterScale(y),
      {reversed ? b : r, weighChroma(-cbToG, -crToG), reversed ? r : b},
      {reversed ? bOffset : rOffset, constantOf(set, set.rounding.g, -cbToG - crToG), reversed ? rOffset : bOffset}};
}

class WeighQuads {
 public:
  KIP_INLINE WeighQuads() {}
  KIP_INLINE explicit WeighQuads(const QuadWeights& w)
      : bytes_(as<int8_t>(keepPairs(bytePair(w.bytes[0], w.bytes[1]), bytePair(w.bytes[2], w.bytes[3])))),
        pairs_(keepPairs(w.first, w.last)) {}

  KIP_INLINE I16 pairs(U8 quads) const { return dotBytes(quads, bytes_); }
  KIP_INLINE I32 sum(I32 start, I16 pairs) const { return dotPairs(start, pairs, pairs_); }
  KIP_INLINE I32 operator()(I32 start, U8 quads) const { return sum(start, pairs(quads)); }

 private:
  I8 bytes_;
  I16 pairs_;
};

/// RGB from subsampled luma and chroma. Layout says where in their lanes the samples of luma are. kWholes is what the
/// factor of luma has beyond 16 bits, if no scale divides it.
template <class Layout, int kWholes = 0>
class InversePairs {
 public:
  KIP_INLINE explicit InversePairs(const InverseWeights& w) {
    const int scale = Layout::kLumaByte == 0 ? bytePair(w.lumaScale, 0) : bytePair(0, w.lumaScale);
    lumaScale_ = as<int8_t>(keepInRegister<int16_t>(static_cast<int16_t>(scale)));
    evenLuma_ = keepPairs(w.luma - kWholes * kOne, 0), oddLuma_ = keepPairs(0, w.luma - kWholes * kOne);
    for (int c = 0; c < 3; ++c) {
      channel_[c] = WeighQuads(Layout::kChromaSwapped ? exchanged(w.channel[c]) : w.channel[c]);
      offset_[c] = keepInRegister<int32_t>(w.offset[c]);
    }
  }

  /// What chroma adds to the sums of each channel, with all constants.
  KIP_INLINE Pixels<I32> terms(U8 chroma) const {
    return {channel_[0](offset_[0], chroma), channel_[1](offset_[1], chroma), channel_[2](offset_[2], chroma)};
  }

  /// Pixels, before saturation, from their luma and the terms of the even and of the odd ones.
  KIP_INLINE Pixels<I16> pixels(U8 y, const Pixels<I32>& even, const Pixels<I32>& odd) const {
    const I16 scaled = dotBytes(y, lumaScale_);
    I32 evenLuma = dotPairs(scaled, evenLuma_), oddLuma = dotPairs(scaled, oddLuma_);
    if constexpr (kWholes != 0) {
      static_assert(kWholes == 1);
      evenLuma = hn::Add(evenLuma, hn::ShiftLeft<16>(as<int32_t>(scaled)));
      oddLuma = hn::Add(oddLuma, hn::And(as<int32_t>(scaled), as<int32_t>(setPairs(0, -1))));
    }
    const auto channel = [&](I32 evenTerm, I32 oddTerm) KIP_INLINE_LAMBDA {
      return interleaveHigh16(hn::Add(evenLuma, evenTerm), hn::Add(oddLuma, oddTerm));
    };
    return {channel(even.a, odd.a), channel(even.b, odd.b), channel(even.c, odd.c)};
  }

 private:
  I8 lumaScale_;
  I16 evenLuma_, oddLuma_;
  WeighQuads channel_[3];
  I32 offset_[3];
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
