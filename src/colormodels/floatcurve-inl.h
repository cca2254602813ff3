// The curves of floatcurve.h on vectors of floats: a fast power, and the scalar curve wherever the power's error might
// change the single-precision result. Fused multiply-adds are free to be there: how exact the power is decides how many
// samples the scalar curve is asked for, not what comes out.

#if defined(KIP_COLORMODELS_FLOATCURVE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_COLORMODELS_FLOATCURVE_INL_H_
#undef KIP_COLORMODELS_FLOATCURVE_INL_H_
#else
#define KIP_COLORMODELS_FLOATCURVE_INL_H_
#endif

#include <cmath>

#include "colormodels/floatcurve.h"
#include "engine/simd-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using DoubleTag = Tag<double>;
using HalfTag = hn::Half<Tag<float>>;
using HalfFloats = hn::Vec<HalfTag>;

/// 1 / c and c^p of the intervals that doubles lie in.
struct Factors {
  F64 perCentre, power;
};

// A way of finding them is a type with
//   kSeries      of (1 + r)^p, right to the relative error
//   kErrorBits   2^-kErrorBits, the curve's steps included
//   Places       what it notes of vectors of floats
//   factors()    of a half of such a vector, whose floats are `base` as doubles; it may divide `base` by a power of two

/// 16 intervals to an octave, in registers; the power of the fraction times that of the exponent. The series
/// interpolate at the Chebyshev nodes of -1/33 .. 1/33.
template <Curve kCurve>
class IntervalsInRegisters {
  static constexpr int kIntervals = 16;
  static constexpr int64_t kOne = 0x3FF0000000000000, kFraction = 0x000FFFFFFFFFFFFF;
  static constexpr FractionTables<kCurve, kIntervals> kFractions{};
  static constexpr OctaveTable<kCurve> kOctavePowers{};

 public:
  static constexpr int kErrorBits = 39;
  static constexpr Series<6> kSeries =
      kCurve == Curve::kForward ? Series<6>{{0.9999999999994684, 0.45000000000042145, -0.12374998958132392,
                                             0.06393749173906517, -0.040790405718391556, 0.02896369537878288}}
                                : Series<6>{{0.9999999999999221, 2.2222222222222645, 1.358024692885918,
                                             0.10059442075743183, -0.019564462912369955, 0.006957070509306573}};

  template <int kCount>
  struct Places {
    KIP_INLINE explicit Places(const F32*) {}
  };

  template <class Places>
  KIP_INLINE Factors factors(const Places&, int, F64& base) const {
    const auto bits = as<int64_t>(base), fraction = hn::ShiftRight<48>(bits), exponent = hn::ShiftRight<52>(bits);
    base = as<double>(hn::OrAnd(set(kOne), bits, set(kFraction)));
    const F64 power = hn::Mul(lookUpInTwo(kFractions.power, fraction), lookUpInTwo(kOctavePowers.power, exponent));
    return {lookUpInTwo(kFractions.perCentre, fraction), power};
  }
};

/// 32 intervals to an octave, in memory. The series interpolate at the Chebyshev nodes of -1/65 .. 1/65.
template <Curve kCurve>
class IntervalsInMemory {
  static constexpr int kIntervals = 32, kFractionBits = 5;

 public:
  static constexpr int kErrorBits = 37;
  static constexpr Series<5> kSeries =
      kCurve == Curve::kForward
          ? Series<5>{{1.0, 0.44999999949325975, -0.12374999961571652, 0.06394606343457711, -0.040766650261522916}}
          : Series<5>{{1.0, 2.222222222100457, 1.3580246914143987, 0.10059647934139046, -0.0195609791014258}};

  template <int kCount>
  struct Places {
    alignas(32) uint32_t at[kCount * kLanes<float>];

    KIP_INLINE explicit Places(const F32* base) {
      constexpr uint32_t kLast = kOctaves * kIntervals - 1;
      for (int i = 0; i < kCount; ++i) {
        const auto place = hn::ShiftRight<23 - kFractionBits - 1>(as<uint32_t>(base[i]));
        hn::Store(hn::And(place, set(2 * kLast)), Tag<uint32_t>(), at + i * kLanes<float>);
      }
      keepInMemory(at);
    }
  };

  template <class Places>
  KIP_INLINE Factors factors(const Places& places, int half, F64&) const {
    Factors factors;
    lookUpPairs(&kPowerTable<kCurve, kIntervals>.entry->perCentre, places.at + half * kLanes<double>, factors.perCentre,
                factors.power);
    return factors;
  }
};

template <Curve kCurve>
using Intervals = std::conditional_t<kHasFloatTables, IntervalsInRegisters<kCurve>, IntervalsInMemory<kCurve>>;

/// A curve on the floats of a range. Ranges from zero spare some steps; their results and spans are taken to be far
/// from the least and the greatest floats.
template <Curve kCurve, bool kFromZero>
class RangeCurve {
  using Numbers = CurveNumbers<kCurve>;
  template <int kCount>
  using Places = typename Intervals<kCurve>::template Places<kCount>;
  static constexpr bool kIsForward = kCurve == Curve::kForward;
  static constexpr auto& kSeries = Intervals<kCurve>::kSeries;
  static constexpr int kTerms = sizeof(kSeries.factor) / sizeof(double);

 public:
  KIP_INLINE explicit RangeCurve(const ValueRange& range) : RangeCurve(range, range.max - range.min) {}

  /// The fast curve of kCount vectors, and for which floats it might be wrong. The vectors go through each step
  /// together: what one of them waits for, the others need not.
  template <int kCount>
  KIP_INLINE void fast(const F32* v, F32* result, hn::Mask<Tag<float>>* doubtful) const {
    const Tag<float> d;
    const HalfTag half;
    F32 x[kCount], base[kCount];
    for (int i = 0; i < kCount; ++i) {
      x[i] = kFromZero ? v[i] : hn::Sub(v[i], min32_);
      base[i] =
          kIsForward ? hn::Mul(x[i], perSpan32_) : hn::MulAdd(x[i], perSpan32_, set(static_cast<float>(kBaseOffset)));
    }
    const Places<kCount> places(base);
    F64 wide[2 * kCount], low[2 * kCount], high[2 * kCount];
    for (int i = 0; i < kCount; ++i) {
      wide[2 * i] = hn::PromoteTo(DoubleTag(), hn::LowerHalf(x[i]));
      wide[2 * i + 1] = hn::PromoteTo(DoubleTag(), hn::UpperHalf(half, x[i]));
    }
    halves<2 * kCount>(places, wide, low, high);
    for (int i = 0; i < kCount; ++i) {
      const auto linear = hn::Lt(x[i], knee_);
      result[i] = toFloats(low[2 * i], low[2 * i + 1]);
      if constexpr (kFromZero) {
        if constexpr (kIsForward) {
          result[i] = hn::IfThenElse(linear, hn::MulAdd(x[i], slope32_, hn::Zero(d)), result[i]);
        }
        doubtful[i] = hn::RebindMask(d, nearTie(low[2 * i], low[2 * i + 1]));
      } else {
        doubtful[i] = hn::Ne(result[i], toFloats(high[2 * i], high[2 * i + 1]));
      }
      doubtful[i] = hn::Or(hn::AndNot(linear, doubtful[i]), hn::Not(hn::Lt(base[i], limit_)));
    }
  }

  /// The curve.
  HWY_NOINLINE F32 operator()(F32 v) const {
    F32 result;
    hn::Mask<Tag<float>> doubtful;
    fast<1>(&v, &result, &doubtful);
    return corrected(v, result, doubtful);
  }

 private:
  /// The curve for halves of floats: at the least, and at the most, what it can be. In a range from zero, itself.
  template <int kHalves, class Places>
  KIP_INLINE void halves(const Places& places, const F64* x, F64* low, F64* high) const {
    const DoubleTag d;
    F64 r[kHalves], power[kHalves], series[kHalves];
    for (int i = 0; i < kHalves; ++i) {
      F64 base = kIsForward ? hn::Mul(x[i], perSpan_) : hn::MulAdd(x[i], perSpan_, set(kBaseOffset));
      const Factors factors = intervals_.factors(places, i, base);
      r[i] = hn::MulSub(base, factors.perCentre, set(1.0)), power[i] = factors.power;
      series[i] = series_[kTerms - 1];
    }
    for (int k = kTerms - 2; k >= 0; --k) {
      for (int i = 0; i < kHalves; ++i) series[i] = schedulingBarrier(hn::MulAdd(series[i], r[i], series_[k]));
    }
    for (int i = 0; i < kHalves; ++i) {
      if constexpr (kFromZero && kIsForward) {
        low[i] = hn::MulAdd(series[i], power[i], start_);
        continue;
      }
      const auto linear = hn::Lt(x[i], kneeAsDouble_);
      const F64 raised = hn::Mul(series[i], power[i]);
      if constexpr (kFromZero) {
        low[i] = hn::IfThenElse(linear, hn::MulAdd(x[i], slope_, hn::Zero(d)), raised);
      } else {
        const F64 line = hn::Add(hn::Mul(slope_, x[i]), min_), middle = hn::Add(raised, start_);
        const F64 error = hn::IfThenZeroElse(linear, hn::MulAdd(raised, error_, leastError_));
        const F64 curve = hn::IfThenElse(linear, line, middle);
        low[i] = hn::Sub(curve, error), high[i] = hn::Add(curve, error);
      }
    }
  }

  /// Whether doubles are so near the middle between two floats that an error of 2^-kErrorBits could take them across.
  /// The 29 bits that floats lack tell.
  KIP_INLINE static auto nearTie(F64 lower, F64 upper) {
    constexpr int kLostBits = 29, kErrorBits = Intervals<kCurve>::kErrorBits;
    constexpr int32_t kTie = 1 << (kLostBits - 1), kError = 1 << (53 - kErrorBits);
    const I32 bits = hn::ConcatEven(Tag<int32_t>(), as<int32_t>(upper), as<int32_t>(lower));
    const I32 aboveTie = hn::Add(bits, set<int32_t>(kError - kTie));
    return hn::Eq(hn::And(aboveTie, set<int32_t>(2 * kTie - 2 * kError)), hn::Zero(Tag<int32_t>()));
  }

  F32 corrected(F32 v, F32 result, hn::Mask<Tag<float>> doubtful) const {
    const Tag<float> d;
    alignas(64) float from[kLanes<float>], to[kLanes<float>];
    alignas(64) int32_t marked[kLanes<float>];
    hn::Store(v, d, from);
    hn::Store(result, d, to);
    hn::Store(as<int32_t>(hn::VecFromMask(d, doubtful)), Tag<int32_t>(), marked);
    for (int i = 0; i < kLanes<float>; ++i) {
      if (marked[i]) to[i] = curveOf<kCurve>(from[i], range_);
    }
    return hn::Load(d, to);
  }

  KIP_INLINE RangeCurve(const ValueRange& range, double span) : range_(range) {
    const double perSpan = 1 / span, knee = leastBeyond(Numbers::kKnee, perSpan);
    const double basePerX = kIsForward ? perSpan : perSpan * Numbers::kScale;
    const double scale = kIsForward ? Numbers::kScale * span : span;
    const double start = range.min - (kIsForward ? Numbers::kOffset * span : 0);
    for (int k = 0; k < kTerms; ++k) series_[k] = keepInRegister(kSeries.factor[k] * scale);
    perSpan_ = keepInRegister(basePerX), perSpan32_ = keepInRegister(static_cast<float>(basePerX));
    min32_ = set(range.min), min_ = set<double>(range.min), start_ = keepInRegister(start);
    knee_ = set(static_cast<float>(knee)), kneeAsDouble_ = set(knee);
    slope_ = set(Numbers::kSlope), slope32_ = set(static_cast<float>(Numbers::kSlope));
    error_ = set(1.0 / (int64_t{1} << Intervals<kCurve>::kErrorBits));
    leastError_ = set((std::fabs(static_cast<double>(range.min)) + span) * 0x1p-50);
    limit_ = set(static_cast<float>(powerOfTwo(Numbers::kLowestExponent + kOctaves)));
  }

  static constexpr double kBaseOffset = kIsForward ? 0 : Numbers::kOffset * Numbers::kScale;

  ValueRange range_;
  Intervals<kCurve> intervals_;
  F32 min32_, perSpan32_, knee_, slope32_, limit_;
  F64 series_[kTerms], perSpan_, min_, start_, kneeAsDouble_, slope_, error_, leastError_;
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
