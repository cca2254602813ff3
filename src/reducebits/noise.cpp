#include "reducebits/noise.h"

#include <algorithm>

#include "engine/random.h"

namespace kip {
namespace {

constexpr int kCount = NoiseTables::kCount;
constexpr uint32_t kSeed = 0;

/// What all noise has in common.
struct Drawn {
  int32_t numbers[2][kCount / 2];  // behind the values: the even ones, then the odd ones
  // Where among the values each column begins: at its random offset and its number.
  Kip16s columns[kCount + NoiseTables::kAhead];

  constexpr Drawn() : numbers(), columns() {
    RandomNumbers random(kSeed);
    const Uniform<Kip16s> offset(0, kCount);
    for (int i = 0; i < kCount; ++i) {
      const int32_t number = random.next();
      numbers[i % 2][i / 2] = number;
      const int start = (offset(number) + i) % kCount;
      columns[i] = static_cast<Kip16s>(start % 2 * kCount + start / 2);
    }
    std::copy_n(columns, NoiseTables::kAhead, columns + kCount);
  }
};
constexpr Drawn kDrawn;

}  // namespace

KipStatus NoiseTables::make(float low, float high) {
  values_.reset(kipsMalloc_32f(2 * kCount));
  if (!values_) return kipStatusNoMemory;
  const Uniform<Kip32f> value(low, high);
  for (int odd = 0; odd < 2; ++odd) {
    float* half = &values_[odd * kCount];
    for (int i = 0; i < kColumn; ++i) half[i] = value(kDrawn.numbers[odd][i]);
    std::copy_n(half, kColumn, half + kColumn);
  }
  return kipStatusOk;
}

const Kip16s* NoiseTables::columnsFrom(int64_t x) { return kDrawn.columns + (x & (kCount - 1)); }

}  // namespace kip
