// The BT.709 transfer curve and its inverse on floats of any range, one sample at a time and exactly; and the tables
// for doing it faster.
//
// V = 4.5 L for L < 0.018, else 1.099 L^0.45 - 0.099; inverse: L = V / 4.5 for V < 0.0812, else
// ((V + 0.099) / 1.099)^(1 / 0.45). All in double precision, with the divisions as multiplications by the nearest
// doubles, and the powers as if rounded from infinite precision.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kip {

enum class Curve { kForward, kInverse };

/// The range that float samples are taken to lie in.
struct ValueRange {
  float min, max;
  const void* self() const { return this; }
};

template <Curve kCurve>
struct CurveNumbers;
template <>
struct CurveNumbers<Curve::kForward> {
  static constexpr double kKnee = 0.018, kSlope = 4.5, kPower = 0.45;
  static constexpr int kRaised = 9, kRoot = 20;  // the power is their ratio
  static constexpr int kLowestExponent = -6;     // of what is raised to the power: 0.018 and more
  static constexpr double kScale = 1.099, kOffset = 0.099;
};
template <>
struct CurveNumbers<Curve::kInverse> {
  static constexpr double kKnee = 0.0812, kSlope = 0.2222222222222222, kPower = 2.2222222222222223;
  static constexpr int kRaised = 20, kRoot = 9;
  static constexpr int kLowestExponent = -3;  // (0.0812 + 0.099) / 1.099 and more
  static constexpr double kScale = 0.9099181073703366, kOffset = 0.099;
};

/// The curve for one sample.
template <Curve kCurve>
float curveOf(float v, const ValueRange& range);

/// The least x for which x / span, in double precision, is at least a knee.
float leastBeyond(double knee, double perSpan);

/// (1 + r)^p for small r, as a polynomial.
template <int kTerms>
struct Series {
  double factor[kTerms];
};

// x^p = c^p (1 + r)^p with r = x / c - 1, where c is the centre of the interval that x lies in. The top bits of x's
// fraction and the low ones of its exponent are the number of the interval.
constexpr int kOctaves = 16;  // from 2^kLowestExponent up

/// base^(kRaised / kRoot), to about 2^-50.
template <int kRaised, int kRoot>
constexpr double rationalPower(double base) {
  const auto whole = [](double x, int times) {
    double product = 1;
    for (int i = 0; i < times; ++i) product *= x;
    return product;
  };
  const double raised = whole(base, kRaised);
  double root = 1;
  while (whole(2 * root, kRoot) <= raised) root *= 2;
  while (whole(root, kRoot) > raised) root *= 0.5;
  double step = root;
  for (int bits = 1; bits < 10; ++bits) {
    step *= 0.5;
    if (whole(root + step, kRoot) <= raised) root += step;
  }
  for (int i = 0; i < 4; ++i) root += root * (raised / whole(root, kRoot) - 1) / kRoot;  // Newton's iteration
  return root;
}
constexpr double powerOfTwo(int exponent) {
  double power = 1;
  for (; exponent > 0; --exponent) power *= 2;
  for (; exponent < 0; ++exponent) power *= 0.5;
  return power;
}

/// 1 / c and c^p of kIntervals intervals within 1 .. 2.
template <Curve kCurve, int kIntervals>
struct FractionTables {
  alignas(64) double perCentre[kIntervals], power[kIntervals];
  constexpr FractionTables() : perCentre(), power() {
    using Numbers = CurveNumbers<kCurve>;
    for (int i = 0; i < kIntervals; ++i) {
      const double centre = 1 + (i + 0.5) / kIntervals;
      perCentre[i] = 1 / centre;
      power[i] = rationalPower<Numbers::kRaised, Numbers::kRoot>(1 / perCentre[i]);
    }
  }
};

/// 2^(e p) by the low bits of the exponent e as it is biased in floats and doubles alike.
template <Curve kCurve>
struct OctaveTable {
  alignas(64) double power[kOctaves];
  constexpr OctaveTable() : power() {
    using Numbers = CurveNumbers<kCurve>;
    constexpr int kBias = 1023;
    for (int i = 0; i < kOctaves; ++i) {
      const int exponent = Numbers::kLowestExponent + i;
      power[(exponent + kBias) % kOctaves] = rationalPower<Numbers::kRaised, Numbers::kRoot>(powerOfTwo(exponent));
    }
  }
};

/// Both at once: 1 / c and c^p for all intervals of all octaves.
template <Curve kCurve, int kIntervals>
struct PowerTable {
  struct alignas(16) Entry {
    double perCentre, power;
  };
  Entry entry[kOctaves * kIntervals];
  constexpr PowerTable() : entry() {
    constexpr FractionTables<kCurve, kIntervals> fractions;
    constexpr OctaveTable<kCurve> octaves;
    for (int o = 0; o < kOctaves; ++o) {
      const int exponent = CurveNumbers<kCurve>::kLowestExponent + o, place = (exponent + 1023) % kOctaves;
      for (int i = 0; i < kIntervals; ++i) {
        entry[place * kIntervals + i] = {fractions.perCentre[i] * powerOfTwo(-exponent),
                                         fractions.power[i] * octaves.power[place]};
      }
    }
  }
};

template <Curve kCurve, int kIntervals>
inline constexpr PowerTable<kCurve, kIntervals> kPowerTable{};

}  // namespace kip
