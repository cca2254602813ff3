// The processor's rounding of floats.
#pragma once

#include <xmmintrin.h>

namespace kip {

/// Makes the processor round to nearest for as long as it lives, whatever the caller's mode is.
class RoundToNearest {
 public:
  RoundToNearest() : callers_(_MM_GET_ROUNDING_MODE()) { _MM_SET_ROUNDING_MODE(_MM_ROUND_NEAREST); }
  ~RoundToNearest() { _MM_SET_ROUNDING_MODE(callers_); }
  RoundToNearest(const RoundToNearest&) = delete;

 private:
  unsigned callers_;
};

}  // namespace kip
