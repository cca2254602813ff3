// A sum with the 64-bit significand that x87 has, whatever long double is.
#pragma once

#include <cfloat>

namespace kip {

class ExtendedSum {
 public:
  void add(long double v) { total_ = rounded(total_ + v); }
  explicit operator double() const { return static_cast<double>(total_); }

 private:
  static_assert(LDBL_MANT_DIG >= 64, "long double must hold 64 bits");

  /// To 64 bits: a product with 2^k + 1 pushes the k bits beyond them out.
  static long double rounded(long double v) {
    if constexpr (LDBL_MANT_DIG == 64) {
      return v;
    } else {
      constexpr long double kSplitter = static_cast<long double>(1ull << (LDBL_MANT_DIG - 64)) + 1;
      const long double pushed = v * kSplitter, high = pushed - (pushed - v);
      return high - high == 0 ? high : v;  // infinities and NaN as they are
    }
  }

  long double total_ = 0;
};

}  // namespace kip
