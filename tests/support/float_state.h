// A calling thread that computes in other ways than programs do when they start.
#pragma once

#include <cfenv>
#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace kip {

/// Rounds upwards and, where the processor can be told so here, takes subnormal results for 0.
class UnusualFloatState {
 public:
  UnusualFloatState() {
    fegetenv(&before_);
    fesetround(FE_UPWARD);
#if defined(__SSE__)
    _MM_SET_FLUSH_ZERO_MODE(_MM_FLUSH_ZERO_ON);
#endif
  }
  ~UnusualFloatState() { fesetenv(&before_); }
  UnusualFloatState(const UnusualFloatState&) = delete;

 private:
  fenv_t before_;
};

}  // namespace kip
