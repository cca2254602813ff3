// Gamma: the BT.709 transfer curve on each colour sample, and its inverse.
//
// Bytes go through constant tables, 16-bit samples through a table of all 65536 values. Floats are the curve in double
// precision with the results of the standard library's pow: a much faster power is tried first, and kept wherever its
// error cannot change the single-precision result.

#include <algorithm>
#include <array>
#include <cmath>

#include "engine/transfer709.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/gamma.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/bytetable-inl.h"
#include "engine/pixels-inl.h"

#ifndef KIP_COLORMODELS_GAMMA_ONCE
#define KIP_COLORMODELS_GAMMA_ONCE
namespace kip {

enum class Curve { kForward, kInverse };

/// The range that float samples are taken to lie in.
struct ValueRange {
  float min, max;
  const void* self() const { return this; }
};

constexpr int kWordValues = 65536;

/// V = 4.5 L for L < 0.018, else 1.099 L^0.45 - 0.099; inverse: L = V / 4.5 for V < 0.0812, else
/// ((V + 0.099) / 1.099)^(1 / 0.45), with the divisions as multiplications by the nearest doubles.
constexpr double kForwardKnee = 0.018, kForwardSlope = 4.5, kForwardPower = 0.45;
constexpr double kInverseKnee = 0.0812, kInverseSlope = 0.2222222222222222, kInversePower = 2.2222222222222223;
constexpr double kScale = 1.099, kOffset = 0.099, kInverseScale = 0.9099181073703366;

/// The curve for one sample with the standard library's pow.
template <Curve kCurve>
float curveWithPow(float v, const ValueRange& range) {
  const double min = range.min, span = range.max - range.min, x = v - range.min, n = x * (1 / span);
  if constexpr (kCurve == Curve::kForward) {
    if (n < kForwardKnee) return static_cast<float>(min + kForwardSlope * x);
    return static_cast<float>((kScale * std::pow(n, kForwardPower) - kOffset) * span + min);
  } else {
    if (n < kInverseKnee) return static_cast<float>(min + x * kInverseSlope);
    return static_cast<float>(std::pow((n + kOffset) * kInverseScale, kInversePower) * span + min);
  }
}

}  // namespace kip
#endif

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

using F64 = Vector<double>;
using DoubleTag = Tag<double>;

// ---------------------------------------------------------------------------------------------------------------------
// Rows as samples that are all mapped alike

/// Vectors that go through a curve at once: what one of them waits for, the others need not. With AVX-512, a look-up
/// among bytes waits for next to nothing.
template <class T>
constexpr int kAtOnce = sizeof(T) > 1 ? 4
                        : KIP_AVX512  ? 1
                                      : 2;
template <class T>
struct Several {
  Vector<T> v[kAtOnce<T>];
};

/// The samples of a plane, or of interleaved pixels, one after the other.
template <class T, bool kKeepsFourth = false>
struct Samples : Planar<Tag<T>, 1> {
  static constexpr int kBlock = kAtOnce<T> * kLanes<T>;
  static constexpr bool kKeeps = kKeepsFourth;

  KIP_INLINE static Several<T> load(const Kip8u* from) {
    Several<T> s;
    for (int k = 0; k < kAtOnce<T>; ++k) s.v[k] = hn::LoadU(Tag<T>(), samples<T>(from) + k * kLanes<T>);
    return s;
  }
  KIP_INLINE static void store(const Several<T>& s, Kip8u* to) {
    const Several<T> old = load(to);
    for (int k = 0; k < kAtOnce<T>; ++k) {
      hn::StoreU(kKeepsFourth ? withFourth(s.v[k], old.v[k]) : s.v[k], Tag<T>(), samples<T>(to) + k * kLanes<T>);
    }
  }

 private:
  KIP_INLINE static Vector<T> withFourth(Vector<T> v, Vector<T> old) {
    using Bits = hwy::MakeUnsigned<T>;
    alignas(16) static constexpr std::array<Bits, 16 / sizeof(T)> kFourth = [] {
      std::array<Bits, 16 / sizeof(T)> bits{};
      for (size_t i = 3; i < bits.size(); i += 4) bits[i] = static_cast<Bits>(-1);
      return bits;
    }();
    return hn::IfThenElse(hn::MaskFromVec(as<T>(hn::LoadDup128(Tag<Bits>(), kFourth.data()))), old, v);
  }
};

/// Maps every sample of kPlanes planes that have kChannels samples to a pixel.
template <class T, class Map, int kPlanes, int kChannels, bool kKeepsFourth>
struct MapSamples {
  static void rows(const Job& job, int first, int last) {
    using From = Samples<T>;
    using To = Samples<T, kKeepsFourth>;
    const Map map(job);
    for (int y = first; y < last; ++y) {
      for (int p = 0; p < kPlanes; ++p) {
        forBlocks<From, To>({{job.src.row(p, y)}}, {{job.dst.row(p, y)}}, 0, static_cast<size_t>(kChannels) * job.width,
                            [&](const auto& from, const auto& to) KIP_INLINE_LAMBDA {
                              Several<T> s = From::load(from.at[0]);
                              map(s);
                              To::store(s, to.at[0]);
                            });
      }
    }
  }
};
template <class T, class Map>
using Interleaved3 = MapSamples<T, Map, 1, 3, false>;
template <class T, class Map>
using Interleaved4 = MapSamples<T, Map, 1, 4, true>;
template <class T, class Map>
using Planes3 = MapSamples<T, Map, 3, 1, false>;

// ---------------------------------------------------------------------------------------------------------------------
// Bytes

template <const Kip8u (&kTable)[256]>
class ByteCurve {
 public:
  KIP_INLINE explicit ByteCurve(const Job&) {}
  KIP_INLINE void operator()(Several<uint8_t>& s) const {
    for (U8& v : s.v) v = table_(v);
  }

 private:
  ByteTable<kTable> table_;
};

// ---------------------------------------------------------------------------------------------------------------------
// 16-bit samples

/// The job's table of all values.
class WordTable {
 public:
  KIP_INLINE explicit WordTable(const Job& job) : table_(static_cast<const Kip16u*>(job.parameters)) {}

  KIP_INLINE void operator()(Several<uint16_t>& s) const {
    for (U16& v : s.v) {
      alignas(64) Kip16u values[kLanes<uint16_t>];
      hn::Store(v, Tag<uint16_t>(), values);
      for (Kip16u& value : values) value = table_[value];
      v = hn::Load(Tag<uint16_t>(), values);
    }
  }

 private:
  const Kip16u* table_;
};

// ---------------------------------------------------------------------------------------------------------------------
// Floats

/// x^(-1 / kRoot) of floats from 2^-16 to 2^16, to a relative error below 2^-21. The root makes the logarithm's error
/// small, so that a short series is enough.
template <int kRoot>
KIP_INLINE F32 inverseRoot(F32 x) {
  constexpr float kLn2 = 0.69314718f;
  const F32 one = set(1.0f);
  // x = 2^e m with m within sqrt(1/2) .. sqrt(2); log2 m = 2 / ln 2 (s + s^3 / 3 + s^5 / 5), s = (m - 1) / (m + 1).
  constexpr int32_t kRootHalf = 0x3F3504F3;
  const I32 raised = hn::Sub(as<int32_t>(x), set(kRootHalf));
  const I32 e = hn::ShiftRight<23>(raised);
  const F32 m = as<float>(hn::Sub(as<int32_t>(x), hn::ShiftLeft<23>(e)));
  const F32 s = hn::Div(hn::Sub(m, one), hn::Add(m, one)), z = hn::Mul(s, s);
  const F32 series = hn::Add(set(2 / kLn2), hn::Mul(z, hn::Add(set(2 / kLn2 / 3), hn::Mul(z, set(2 / kLn2 / 5)))));
  const F32 log2 = hn::Add(hn::ConvertTo(Tag<float>(), e), hn::Mul(s, series));
  // 2^t = 2^k e^y with |y| <= ln 2 / 2.
  const F32 t = hn::Mul(log2, set(-1.0f / kRoot));
  const F32 rounder = set(12582912.0f);  // 1.5 x 2^23: leaves the integer in the low bits
  const F32 shifted = hn::Add(t, rounder);
  const F32 y = hn::Mul(hn::Sub(t, hn::Sub(shifted, rounder)), set(kLn2)), y2 = hn::Mul(y, y);
  const F32 upper = hn::Add(hn::Add(set(1.0f / 24), hn::Mul(y, set(1.0f / 120))), hn::Mul(y2, set(1.0f / 720)));
  const F32 lower = hn::Add(set(0.5f), hn::Mul(y, set(1.0f / 6)));
  const F32 exp = hn::Add(hn::Add(one, y), hn::Mul(y2, hn::Add(lower, hn::Mul(y2, upper))));
  return as<float>(hn::Add(as<int32_t>(exp), hn::ShiftLeft<23>(as<int32_t>(shifted))));
}

/// x^0.45 or x^2.2222222222222223, which are x z^11 with z = x^(-1/20) and x^3 z^7 with z = x^(-1/9) to far more digits
/// than are needed, from z as a float: one step of Newton's iteration squares z's error. Relative error below 2^-35.
template <Curve kCurve>
struct FastPower {
  static constexpr int kRoot = kCurve == Curve::kForward ? 20 : 9;

  KIP_INLINE static F64 refine(F64 x, F64 z) {
    const F64 z2 = hn::Mul(z, z), z4 = hn::Mul(z2, z2), z8 = hn::Mul(z4, z4);
    const F64 power = kCurve == Curve::kForward ? hn::Mul(hn::Mul(z8, z8), z4) : hn::Mul(z8, z);
    const F64 excess = hn::Sub(set(1.0), hn::Mul(x, power));
    return hn::Add(z, hn::Mul(z, hn::Mul(excess, set(1.0 / kRoot))));
  }
  KIP_INLINE static F64 power(F64 x, F64 rough) {
    const F64 z = refine(x, rough), z2 = hn::Mul(z, z), z4 = hn::Mul(z2, z2), z3 = hn::Mul(z2, z);
    if constexpr (kCurve == Curve::kForward) {
      return hn::Mul(hn::Mul(x, z3), hn::Mul(z4, z4));
    } else {
      return hn::Mul(hn::Mul(hn::Mul(x, x), x), hn::Mul(z4, z3));
    }
  }
};

template <Curve kCurve>
class FloatCurve {
 public:
  KIP_INLINE explicit FloatCurve(const Job& job)
      : range_(*static_cast<const ValueRange*>(job.parameters)),
        min32_(set(range_.min)),
        min_(set<double>(range_.min)),
        span_(set<double>(range_.max - range_.min)),
        perSpan_(set(1 / static_cast<double>(range_.max - range_.min))),
        least_(set(std::fabs(static_cast<double>(range_.min)))) {}

  KIP_INLINE void operator()(Several<float>& s) const {
    const Tag<float> d;
    const HalfTag half;
    Halves halves[kAtOnce<float>];
    F32 rough[kAtOnce<float>];
    for (int k = 0; k < kAtOnce<float>; ++k) {
      halves[k] = Halves(hn::Sub(s.v[k], min32_), perSpan_);
      rough[k] = inverseRoot<FastPower<kCurve>::kRoot>(
          hn::Combine(d, hn::DemoteTo(half, halves[k].upper.base), hn::DemoteTo(half, halves[k].lower.base)));
    }
    for (int k = 0; k < kAtOnce<float>; ++k) {
      bool sure = true;
      const auto low = finish(halves[k].lower, hn::LowerHalf(rough[k]), sure);
      const auto high = finish(halves[k].upper, hn::UpperHalf(half, rough[k]), sure);
      s.v[k] = HWY_LIKELY(sure) ? hn::Combine(d, high, low) : withPow(s.v[k]);
    }
  }

 private:
  using HalfTag = hn::Half<Tag<float>>;
  using HalfFloats = hn::Vec<HalfTag>;
  static constexpr bool kIsForward = kCurve == Curve::kForward;

  /// v - vMin, the same on 0..1, and what is raised to a power.
  struct Argument {
    F64 x, n, base;

    Argument() = default;
    KIP_INLINE Argument(HalfFloats v, F64 perSpan) : x(hn::PromoteTo(DoubleTag(), v)), n(hn::Mul(x, perSpan)) {
      base = kIsForward ? n : hn::Mul(hn::Add(n, set(kOffset)), set(kInverseScale));
    }
  };
  struct Halves {
    Argument lower, upper;

    Halves() = default;
    KIP_INLINE Halves(F32 x, F64 perSpan)
        : lower(hn::LowerHalf(x), perSpan), upper(hn::UpperHalf(HalfTag(), x), perSpan) {}
  };

  /// The curve, and whether the power's error cannot have changed it.
  KIP_INLINE HalfFloats finish(const Argument& a, HalfFloats rough, bool& sure) const {
    const DoubleTag d;
    const HalfTag half;
    const auto linear = hn::Lt(a.n, set(kIsForward ? kForwardKnee : kInverseKnee));
    const F64 fast = FastPower<kCurve>::power(a.base, hn::PromoteTo(d, rough));
    const F64 power = kIsForward ? hn::Mul(set(kScale), fast) : fast;
    const F64 curve = hn::Mul(kIsForward ? hn::Sub(power, set(kOffset)) : power, span_);
    const F64 line = hn::Mul(set(kIsForward ? kForwardSlope : kInverseSlope), a.x);
    const F64 result = hn::Add(hn::IfThenElse(linear, line, curve), min_);
    // The power's error, and the rounding of what follows, in units of the terms that enter the result.
    const F64 error = hn::Mul(hn::Add(hn::Mul(power, span_), least_), set(0x1p-34));
    const F64 doubt = hn::IfThenZeroElse(linear, error);
    const auto low = hn::DemoteTo(half, hn::Sub(result, doubt)), high = hn::DemoteTo(half, hn::Add(result, doubt));
    const auto inDomain = hn::Or(linear, hn::Lt(a.base, set(0x1p16)));
    const auto finite = hn::Lt(hn::Abs(result), set(0x1p127));
    sure = sure && hn::AllTrue(half, hn::Eq(low, high)) && hn::AllTrue(d, hn::And(inDomain, finite));
    return low;
  }

  HWY_NOINLINE F32 withPow(F32 v) const {
    const Tag<float> d;
    alignas(64) float lanes[kLanes<float>];
    hn::Store(v, d, lanes);
    for (float& lane : lanes) lane = curveWithPow<kCurve>(lane, range_);
    return hn::Load(d, lanes);
  }

  ValueRange range_;
  F32 min32_;
  F64 min_, span_, perSpan_, least_;
};

/// The table of a curve for 16-bit samples: the float curve over 0 .. 65535, truncated.
template <Curve kCurve>
void fillTable(Kip16u* table) {
  const ValueRange range = {0, kWordValues - 1};
  Job job;
  job.parameters = &range;
  const FloatCurve<kCurve> curve(job);
  const Tag<float> d;
  for (int i = 0; i < kWordValues;) {
    Several<float> s;
    for (int k = 0; k < kAtOnce<float>; ++k) s.v[k] = hn::Iota(d, static_cast<float>(i + k * kLanes<float>));
    curve(s);
    for (const F32& v : s.v) {
      alignas(64) int32_t whole[kLanes<float>];
      hn::Store(truncated(v), Tag<int32_t>(), whole);
      for (const int32_t value : whole) table[i++] = static_cast<Kip16u>(value);
    }
  }
}
void fillForwardTable(Kip16u* table) { fillTable<Curve::kForward>(table); }
void fillInverseTable(Kip16u* table) { fillTable<Curve::kInverse>(table); }

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "engine/convert.h"
#include "engine/memory.h"
#include "engine/rounding.h"

namespace kip {

HWY_EXPORT(fillForwardTable);
HWY_EXPORT(fillInverseTable);

using WordValues = std::array<Kip16u, kWordValues>;

/// The constant table of a curve, made on first use, by whatever caller.
const WordValues& wordValues(Curve curve) {
  const auto filled = [](const auto& fill) {
    const RoundToNearest mode;
    WordValues values;
    fill(values.data());
    return values;
  };
  static const WordValues forward = filled(HWY_DYNAMIC_DISPATCH(fillForwardTable));
  static const WordValues inverse = filled(HWY_DYNAMIC_DISPATCH(fillInverseTable));
  return curve == Curve::kForward ? forward : inverse;
}

constexpr Rules kBytes = {.planesBeforeSize = true, .steps = StepCheck::kAfterSize};

/// 16-bit samples: as bytes, and each call takes a table of its own.
struct Words {
  Curve curve;
};
KipStatus convert(Kernel kernel, Words words, const ImageArg& src, const ImageArg& dst, KipiSize size, const Extras&) {
  if (const KipStatus status = checkArguments(kBytes, src, dst, size)) return status;
  const Scratch<Kip16u> table(kipsMalloc_16u(kWordValues));
  if (!table) return kipStatusNoMemory;
  const WordValues& values = wordValues(words.curve);
  std::copy(values.begin(), values.end(), table.get());
  return convert(kernel, kBytes, src, dst, size, {.parameters = table.get()});
}

/// Floats: the value range is looked at before anything else.
struct Floats {};
constexpr Floats kFloats;
KipStatus convert(Kernel kernel, Floats, const ImageArg& src, const ImageArg& dst, KipiSize size,
                  const Extras& extras) {
  const auto& range = *static_cast<const ValueRange*>(extras.parameters);
  if (range.max - range.min <= 0) return kipStatusGammaRange;
  return convert(kernel, kBytes, src, dst, size, extras);
}

}  // namespace kip

// The value range of floats.
#define KIP_RANGE (Kip32f vMin, Kip32f vMax), ({.parameters = ValueRange{vMin, vMax}.self()})
#endif

#define KIP_FUNCTIONS "colormodels/gamma-functions.inc"
#include "engine/functions-inl.h"
