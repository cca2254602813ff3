#include "colormodels/floatcurve.h"

#include <cmath>
#include <limits>

namespace kip {
namespace {

/// A number as the sum of two doubles, of which the second is at most half a unit in the last place of the first.
struct DoubleDouble {
  double high, low;
};

/// Of |a| >= |b|.
DoubleDouble sumOfOrdered(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

/// A product, exactly: the factors are split into halves whose products are exact.
DoubleDouble product(double a, double b) {
  const auto split = [](double v) -> DoubleDouble {
    const double scaled = v * 134217729, high = scaled - (scaled - v);  // 2^27 + 1
    return {high, v - high};
  };
  const DoubleDouble x = split(a), y = split(b);
  const double high = a * b;
  return {high, ((x.high * y.high - high) + x.high * y.low + x.low * y.high) + x.low * y.low};
}
DoubleDouble operator*(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble p = product(a.high, b.high);
  return sumOfOrdered(p.high, p.low + (a.high * b.low + a.low * b.high));
}

DoubleDouble whole(double base, int times) {
  DoubleDouble power = {base, 0};
  for (int i = 1; i < times; ++i) power = power * DoubleDouble{base, 0};
  return power;
}

/// x^kPower, correctly rounded. It is z + z (e / kRoot + d ln x), where z is a guess to some 50 bits,
/// e = x^kRaised / z^kRoot - 1, and d = kPower - kRaised / kRoot, by which the double differs from the ratio.
template <Curve kCurve>
double exactPower(double x) {
  using Numbers = CurveNumbers<kCurve>;
  const double guess = std::pow(x, Numbers::kPower);
  if (!(guess < std::numeric_limits<double>::max())) return guess;  // NaN and infinity
  // Whole powers of 2^kRoot are taken out first: they become whole powers of 2^kRaised.
  const int out = std::ilogb(x) / Numbers::kRoot;
  const double base = std::scalbn(x, -out * Numbers::kRoot), z = std::scalbn(guess, -out * Numbers::kRaised);
  const DoubleDouble raised = whole(base, Numbers::kRaised), back = whole(z, Numbers::kRoot);
  const double excess = ((raised.high - back.high) + (raised.low - back.low)) / back.high;
  const double exponentError = std::fma(Numbers::kPower, Numbers::kRoot, -Numbers::kRaised) / Numbers::kRoot;
  return std::scalbn(z + z * (excess / Numbers::kRoot + exponentError * std::log(x)), out * Numbers::kRaised);
}

/// The curve beyond its knee, from the power.
template <Curve kCurve>
float beyondKnee(double power, double span, double min) {
  using Numbers = CurveNumbers<kCurve>;
  const double curve = kCurve == Curve::kForward ? Numbers::kScale * power - Numbers::kOffset : power;
  return static_cast<float>(curve * span + min);
}

}  // namespace

template <Curve kCurve>
float curveOf(float v, const ValueRange& range) {
  using Numbers = CurveNumbers<kCurve>;
  const double min = range.min, span = range.max - range.min, x = v - range.min, n = x * (1 / span);
  if (n < Numbers::kKnee) return static_cast<float>(min + Numbers::kSlope * x);
  const double base = kCurve == Curve::kForward ? n : (n + Numbers::kOffset) * Numbers::kScale;
  // The standard library's power is right to a unit in the last place or so: mostly that is enough.
  constexpr double kDoubt = 0x1p-50;
  const double power = std::pow(base, Numbers::kPower);
  const float low = beyondKnee<kCurve>(power * (1 - kDoubt), span, min);
  const float high = beyondKnee<kCurve>(power * (1 + kDoubt), span, min);
  return low == high ? low : beyondKnee<kCurve>(exactPower<kCurve>(base), span, min);
}
template float curveOf<Curve::kForward>(float, const ValueRange&);
template float curveOf<Curve::kInverse>(float, const ValueRange&);

float leastBeyond(double knee, double perSpan) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  float least = static_cast<float>(knee / perSpan);
  while (least * perSpan >= knee) least = std::nextafter(least, 0.f);
  while (least * perSpan < knee) least = std::nextafter(least, kInfinity);
  return least;
}

}  // namespace kip
