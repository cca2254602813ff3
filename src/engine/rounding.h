// The processor's rounding of floats.
#pragma once

#include <cfenv>

namespace kip {

/// Makes the processor round to nearest for as long as it lives, whatever the caller's mode is. All of the caller's
/// floating-point state is as before afterwards.
class RoundToNearest {
 public:
  RoundToNearest() {
    std::fegetenv(&callers_);
    std::fesetround(FE_TONEAREST);
  }
  ~RoundToNearest() { std::fesetenv(&callers_); }
  RoundToNearest(const RoundToNearest&) = delete;

 private:
  std::fenv_t callers_;
};

}  // namespace kip
