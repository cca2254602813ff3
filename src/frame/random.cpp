#include "frame/random.h"

#include <bit>
#include <new>

#include "frame/memory.h"

namespace kip {
namespace {

constexpr uint32_t kFactor = 69069, kIncrement = 1013904243;
constexpr uint32_t kFirstCongruential = 1131199209;
constexpr uint32_t kShortOf2To32 = 18;  // differences are modulo 2^32 - 18
constexpr double kTwoToMinus32 = 2.3283064365387e-10;

/// What differs between the types of values.
template <class T>
struct Values;

template <>
struct Values<Kip32f> {
  static constexpr int32_t kTag = 37;
  static void* allocate(int count) { return kipsMalloc_32f(count); }
  static Kip32f from(double v) { return static_cast<Kip32f>(v); }
};

template <>
struct Values<Kip16s> {
  static constexpr int32_t kTag = 36;
  static void* allocate(int count) { return kipsMalloc_16s(count); }
  static Kip16s from(double v) {
    constexpr double kRounder = 1.5 * (uint64_t{1} << 52);  // what is added to it loses its fraction
    return static_cast<Kip16s>(std::bit_cast<uint64_t>(v + kRounder));
  }
};

uint32_t congruent(uint32_t v) { return v * kFactor + kIncrement; }

template <class T>
KipStatus initAlloc(UniformState<T>** state, T low, T high, uint32_t seed) {
  if (state == nullptr) return kipStatusNullPointer;
  void* memory = Values<T>::allocate((sizeof(UniformState<T>) + sizeof(T) - 1) / sizeof(T));
  if (memory == nullptr) return kipStatusNoMemory;
  const double from = low, to = high;
  const uint32_t second = congruent(seed);
  *state = new (memory) UniformState<T>{.tag = Values<T>::kTag,
                                        .seed = seed,
                                        .low = low,
                                        .high = high,
                                        .mid = (from + to) / 2,
                                        .scale = (to - from) * kTwoToMinus32,
                                        .congruential = kFirstCongruential,
                                        .lag = {seed, second, congruent(second)},
                                        .borrow = UINT32_MAX};
  return kipStatusOk;
}

template <class T>
int32_t nextNumber(UniformState<T>& s) {
  s.congruential = congruent(s.congruential);
  const uint32_t difference = s.lag[1] - s.lag[2] + s.borrow;
  s.borrow = 0 - (difference >> 31);  // no branch: half of them are negative
  s.lag[2] = s.lag[1];
  s.lag[1] = s.lag[0];
  s.lag[0] = difference - (kShortOf2To32 & s.borrow);
  return static_cast<int32_t>(s.lag[0] + s.congruential);
}

template <class T>
KipStatus fill(T* values, int count, UniformState<T>* state) {
  if (values == nullptr || state == nullptr) return kipStatusNullPointer;
  if (count < 1) return kipStatusBadSize;
  if (state->tag != Values<T>::kTag) return kipStatusContextMismatch;
  UniformState<T> s = *state;
  for (int i = 0; i < count; ++i) values[i] = Values<T>::from(nextNumber(s) * s.scale + s.mid);
  *state = s;
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
