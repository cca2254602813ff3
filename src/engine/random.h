// Uniform pseudo-random numbers.
#pragma once

#include <bit>
#include <cstdint>

#include "kipcc.h"

namespace kip {

/// Signed 32-bit numbers: a subtract-with-borrow generator and a congruential one, added. The same seed gives the same
/// numbers.
class RandomNumbers {
 public:
  constexpr explicit RandomNumbers(uint32_t seed)
      : lag_{seed, congruent(seed), congruent(congruent(seed))}, congruential_(kFirstCongruential) {}

  constexpr int32_t next() {
    congruential_ = congruent(congruential_);
    const uint32_t difference = lag_[1] - lag_[2] + borrow_;
    borrow_ = 0 - (difference >> 31);  // no branch: half of them are negative
    lag_[2] = lag_[1];
    lag_[1] = lag_[0];
    lag_[0] = difference - (kShortOf2To32 & borrow_);
    return static_cast<int32_t>(lag_[0] + congruential_);
  }

 private:
  static constexpr uint32_t kFactor = 69069, kIncrement = 1013904243;
  static constexpr uint32_t kFirstCongruential = 1131199209;
  static constexpr uint32_t kShortOf2To32 = 18;  // differences are modulo 2^32 - 18

  static constexpr uint32_t congruent(uint32_t v) { return v * kFactor + kIncrement; }

  uint32_t lag_[3];  // the last three differences, the latest first
  uint32_t congruential_;
  uint32_t borrow_ = UINT32_MAX;  // all ones or zero
};

/// Values from low to high as such numbers give them; integers are rounded to nearest, ties to even.
template <class T>
class Uniform {
 public:
  constexpr Uniform(T low, T high)
      : mid_((static_cast<double>(low) + high) / 2), scale_((static_cast<double>(high) - low) * kTwoToMinus32) {}

  constexpr T operator()(int32_t number) const { return value(number * scale_ + mid_, T()); }

 private:
  static constexpr double kTwoToMinus32 = 2.3283064365387e-10;

  static constexpr Kip32f value(double v, Kip32f) { return static_cast<Kip32f>(v); }
  static constexpr Kip16s value(double v, Kip16s) {
    constexpr double kRounder = 1.5 * (uint64_t{1} << 52);  // what is added to it loses its fraction
    return static_cast<Kip16s>(std::bit_cast<uint64_t>(v + kRounder));
  }

  double mid_, scale_;
};

}  // namespace kip
