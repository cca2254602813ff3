#include "reducebits/noise.h"

#include <algorithm>

#include "frame/random.h"

namespace kip {
namespace {

constexpr uint32_t kSeed = 0;

KipStatus draw(Kip32f* values, int count, Kip32f low, Kip32f high) {
  KipsRandUniformState_32f* state = nullptr;
  if (const KipStatus status = kipsRandUniformInitAlloc_32f(&state, low, high, kSeed)) return status;
  const KipStatus status = kipsRandUniform_32f(values, count, state);
  kipsRandUniformFree_32f(state);
  return status;
}

KipStatus draw(Kip16s* values, int count, Kip16s low, Kip16s high) {
  KipsRandUniformState_16s* state = nullptr;
  if (const KipStatus status = kipsRandUniformInitAlloc_16s(&state, low, high, kSeed)) return status;
  const KipStatus status = kipsRandUniform_16s(values, count, state);
  kipsRandUniformFree_16s(state);
  return status;
}

}  // namespace

KipStatus NoiseTables::make(float low, float high) {
  values_.reset(kipsMalloc_32f(2 * kCount));
  columns_.reset(kipsMalloc_16s(kCount));
  if (!values_ || !columns_) return kipStatusNoMemory;
  Kip32f drawn[kCount];
  if (const KipStatus status = draw(drawn, kCount, low, high)) return status;
  if (const KipStatus status = draw(columns_.get(), kCount, Kip16s{0}, Kip16s{kCount})) return status;
  for (int odd = 0; odd < 2; ++odd) {
    float* half = &values_[odd * kCount];
    for (int i = 0; i < kColumn; ++i) half[i] = drawn[2 * i + odd];
    std::copy_n(half, kColumn, half + kColumn);
  }
  for (unsigned x = 0; x < kCount; ++x) {
    const unsigned start = (columns_[x] + x) % kCount;
    columns_[x] = static_cast<Kip16s>(start % 2 * kCount + start / 2);
  }
  return kipStatusOk;
}

}  // namespace kip
