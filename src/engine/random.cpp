#include "engine/random.h"

#include <new>

#include "engine/memory.h"

namespace kip {
namespace {

/// What differs between the types of values.
template <class T>
struct Values;

template <>
struct Values<Kip32f> {
  static constexpr int32_t kTag = 37;
  static void* allocate(int count) { return kipsMalloc_32f(count); }
};

template <>
struct Values<Kip16s> {
  static constexpr int32_t kTag = 36;
  static void* allocate(int count) { return kipsMalloc_16s(count); }
};

template <class T>
KipStatus initAlloc(UniformState<T>** state, T low, T high, uint32_t seed) {
  if (state == nullptr) return kipStatusNullPointer;
  void* memory = Values<T>::allocate((sizeof(UniformState<T>) + sizeof(T) - 1) / sizeof(T));
  if (memory == nullptr) return kipStatusNoMemory;
  *state = new (memory) UniformState<T>{.tag = Values<T>::kTag,
                                        .seed = seed,
                                        .low = low,
                                        .high = high,
                                        .value = Uniform<T>(low, high),
                                        .numbers = RandomNumbers(seed)};
  return kipStatusOk;
}

template <class T>
KipStatus fill(T* values, int count, UniformState<T>* state) {
  if (values == nullptr || state == nullptr) return kipStatusNullPointer;
  if (count < 1) return kipStatusBadSize;
  if (state->tag != Values<T>::kTag) return kipStatusContextMismatch;
  RandomNumbers numbers = state->numbers;
  for (int i = 0; i < count; ++i) values[i] = state->value(numbers.next());
  state->numbers = numbers;
  return kipStatusOk;
}

}  // namespace

KipStatus kipsRandUniformInitAlloc_32f(KipsRandUniformState_32f** pState, Kip32f low, Kip32f high, uint32_t seed) {
  return initAlloc(pState, low, high, seed);
}
KipStatus kipsRandUniformInitAlloc_16s(KipsRandUniformState_16s** pState, Kip16s low, Kip16s high, uint32_t seed) {
  return initAlloc(pState, low, high, seed);
}

KipStatus kipsRandUniform_32f(Kip32f* pDst, int len, KipsRandUniformState_32f* state) { return fill(pDst, len, state); }
KipStatus kipsRandUniform_16s(Kip16s* pDst, int len, KipsRandUniformState_16s* state) { return fill(pDst, len, state); }

void kipsRandUniformFree_32f(KipsRandUniformState_32f* state) { kipsFree(state); }
void kipsRandUniformFree_16s(KipsRandUniformState_16s* state) { kipsFree(state); }

}  // namespace kip
