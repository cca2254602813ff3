// Uniform pseudo-random numbers: a subtract-with-borrow generator and a congruential one, added.
#pragma once

#include <cstdint>

#include "kipcc.h"

namespace kip {

/// What a generator of values of type T remembers between calls.
template <class T>
struct UniformState {
  int32_t tag;  ///< says that this is a state, and of which type
  uint32_t seed;
  T low, high;
  double mid, scale;  ///< a signed 32-bit number x scale + mid is a value
  uint32_t congruential;
  uint32_t lag[3];  ///< the last three numbers, the latest first
  uint32_t borrow;  ///< all ones or zero
};
using KipsRandUniformState_32f = UniformState<Kip32f>;
using KipsRandUniformState_16s = UniformState<Kip16s>;

/// Makes a state for values from low to high. The same seed gives the same values.
KipStatus kipsRandUniformInitAlloc_32f(KipsRandUniformState_32f** pState, Kip32f low, Kip32f high, uint32_t seed);
KipStatus kipsRandUniformInitAlloc_16s(KipsRandUniformState_16s** pState, Kip16s low, Kip16s high, uint32_t seed);

/// Writes the next `len` values; integers are rounded to nearest, ties to even.
KipStatus kipsRandUniform_32f(Kip32f* pDst, int len, KipsRandUniformState_32f* state);
KipStatus kipsRandUniform_16s(Kip16s* pDst, int len, KipsRandUniformState_16s* state);

void kipsRandUniformFree_32f(KipsRandUniformState_32f* state);
void kipsRandUniformFree_16s(KipsRandUniformState_16s* state);

}  // namespace kip
