// Weighted sums of rows, and of neighbours in a row: chroma between grids, without rounding.
#include "kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/resampling.cpp"
#include "hwy/foreach_target.h"

#include "engine/interleave-inl.h"
#include "kernels/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using convert::Taps;

/// The next vector of results' samples, widened to T.
template <class From, class T>
KIP_INLINE Vector<T> loadWidened(const uint8_t* from) {
  if constexpr (std::is_same_v<From, T>) {
    return loadLane<T>(from);
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    return as<uint16_t>(loadHalf(from));
  } else {
    const hn::Rebind<From, Tag<int32_t>> narrow;
    const auto samples = hn::LoadU(narrow, reinterpret_cast<const From*>(from));
    return hn::ConvertTo(Tag<float>(), hn::PromoteTo(Tag<int32_t>(), samples));
  }
}

/// Sums of kCount rows, or of as many as there are where that is 0.
template <class From, class T, int kCount>
class RowSum {
 public:
  static void run(const convert::RowsWork& work) {
    constexpr int kBatch = kLanes<T>;
    const RowSum sums(work);
    const uint8_t* rows[Taps::kMost];
    for (int t = 0; t < sums.count(); ++t) rows[t] = work.row[t];
    size_t at = 0;
    for (; at + kBatch <= work.samples; at += kBatch) {
      storeLane<T>(sums.sum(rows, at), work.out + at * sizeof(T));
    }
    const size_t left = work.samples - at;
    if (left == 0) return;
    alignas(64) uint8_t tails[Taps::kMost][kLanes<uint8_t>] = {};
    for (int t = 0; t < sums.count(); ++t) {
      std::memcpy(tails[t], rows[t] + at * sizeof(From), left * sizeof(From));
      rows[t] = tails[t];
    }
    alignas(64) uint8_t result[kLanes<uint8_t>];
    storeLane<T>(sums.sum(rows, 0), result);
    std::memcpy(work.out + at * sizeof(T), result, left * sizeof(T));
  }

 private:
  KIP_INLINE explicit RowSum(const convert::RowsWork& work) : work_(work) {
    for (int t = 0; t < kCount; ++t) weight_[t] = set<T>(static_cast<T>(work.weight[t]));
  }
  KIP_INLINE int count() const { return kCount == 0 ? work_.count : kCount; }

  KIP_INLINE Vector<T> sum(const uint8_t* const* rows, size_t at) const {
    Vector<T> total = hn::Zero(Tag<T>());
    for (int t = 0; t < count(); ++t) {
      const auto weight = kCount == 0 ? set<T>(static_cast<T>(work_.weight[t])) : weight_[t];
      total = hn::Add(total, hn::Mul(samples(work_, rows[t] + at * sizeof(From)), weight));
    }
    return total;
  }
  KIP_INLINE static Vector<T> samples(const convert::RowsWork& work, const uint8_t* from) {
    if constexpr (std::is_same_v<From, uint16_t> && std::is_same_v<T, uint16_t>) {
      const U16 masked = hn::And(loadLane<uint16_t>(from), set<uint16_t>(work.mask));
      return hn::ShiftRightSame(masked, work.shift);
    } else if constexpr (std::is_same_v<From, uint16_t>) {
      const hn::Rebind<uint16_t, Tag<int32_t>> narrow;
      const auto masked =
          hn::And(hn::LoadU(narrow, reinterpret_cast<const uint16_t*>(from)), hn::Set(narrow, work.mask));
      const auto wide = hn::PromoteTo(Tag<int32_t>(), masked);
      return hn::ConvertTo(Tag<float>(), hn::ShiftRightSame(wide, work.shift));
    } else {
      return loadWidened<From, T>(from);
    }
  }

  const convert::RowsWork& work_;
  Vector<T> weight_[kCount == 0 ? 1 : kCount];
};

/// Two rows of bytes with weights of 7 bits.
void addTwoRowsOfBytes(const convert::RowsWork& work) {
  const I8 weights = as<int8_t>(set<uint16_t>(static_cast<uint16_t>(work.weight[1] << 8 | work.weight[0])));
  walk<kLanes<uint8_t>>(work.samples, {laneIn<uint8_t>(work.row[0]), laneIn<uint8_t>(work.row[1])},
                        {laneOut<uint16_t>(work.out)}, [&](auto& in, auto& out) KIP_INLINE_LAMBDA {
                          U8 lower, upper;
                          sideBySide<uint8_t>(loadLane<uint8_t>(in[0]), loadLane<uint8_t>(in[1]), lower, upper);
                          storeLane<uint16_t>(as<uint16_t>(dotBytes(lower, weights)), out[0], 0);
                          storeLane<uint16_t>(as<uint16_t>(dotBytes(upper, weights)), out[0], 1);
                        });
}

template <class From, class T>
void addRows(const convert::RowsWork& work) {
  if constexpr (sizeof(From) == 1 && sizeof(T) == 2) {
    // Sums must fit in 16 signed bits.
    const bool fits = work.count == 2 && work.weight[0] + work.weight[1] <= 127;
    if (fits) return addTwoRowsOfBytes(work);
  }
  if (work.count == 2) return RowSum<From, T, 2>::run(work);
  RowSum<From, T, 0>::run(work);
}

/// One after the other: for taps that have no kernel of their own.
template <class From, class T>
void columnsOneByOne(const Taps& taps, const From* in, T* out, size_t samples) {
  for (size_t i = 0; i < samples; ++i) {
    const int phase = i % taps.phases;
    const From* from = in + static_cast<ptrdiff_t>(i / taps.phases * taps.advance) + taps.first[phase];
    T sum = 0;
    for (int t = 0; t < taps.count; ++t) sum += static_cast<T>(taps.weight[phase][t]) * static_cast<T>(from[t]);
    out[i] = sum;
  }
}

template <class From, class T>
struct ColumnSum {
  static constexpr int kBatch = 2 * kLanes<T>;

  static void run(const Taps& taps, const uint8_t* in, uint8_t* out, size_t samples) {
    size_t done = 0;
    if (taps.phases == 2 && taps.count <= 2) {
      done = taps.count == 1 ? twice(in, out, samples) : doubled(taps, in, out, samples);
    } else if (taps.advance == 2 && taps.phases == 1 && taps.count <= 3) {
      done = halved(taps, in, out, samples);
    }
    // What is left begins with the first phase.
    const From* from = reinterpret_cast<const From*>(in) + done / taps.phases * taps.advance;
    columnsOneByOne(taps, from, reinterpret_cast<T*>(out) + done, samples - done);
  }

 private:
  KIP_INLINE static Vector<T> at(const uint8_t* in, ptrdiff_t sample) {
    return loadWidened<From, T>(in + sample * static_cast<ptrdiff_t>(sizeof(From)));
  }
  KIP_INLINE static void storePairs(Vector<T> even, Vector<T> odd, uint8_t* to) {
    Vector<T> lower, upper;
    sideBySide<T>(even, odd, lower, upper);
    storeLane<T>(lower, to, 0);
    storeLane<T>(upper, to, 1);
  }

  static size_t twice(const uint8_t* in, uint8_t* out, size_t samples) {
    size_t i = 0;
    for (; i + kBatch <= samples; i += kBatch) {
      const Vector<T> v = at(in, i / 2);
      storePairs(v, v, out + i * sizeof(T));
    }
    return i;
  }

  static size_t doubled(const Taps& taps, const uint8_t* in, uint8_t* out, size_t samples) {
    const auto weight = [&](int phase, int t) { return set<T>(static_cast<T>(taps.weight[phase][t])); };
    const Vector<T> w00 = weight(0, 0), w01 = weight(0, 1), w10 = weight(1, 0), w11 = weight(1, 1);
    size_t i = 0;
    for (; i + kBatch <= samples; i += kBatch) {
      const ptrdiff_t even = i / 2 + taps.first[0], odd = i / 2 + taps.first[1];
      storePairs(hn::Add(hn::Mul(at(in, even), w00), hn::Mul(at(in, even + 1), w01)),
                 hn::Add(hn::Mul(at(in, odd), w10), hn::Mul(at(in, odd + 1), w11)), out + i * sizeof(T));
    }
    return i;
  }

  static size_t halved(const Taps& taps, const uint8_t* in, uint8_t* out, size_t samples) {
    Vector<T> weight[3];
    for (int t = 0; t < 3; ++t) weight[t] = set<T>(static_cast<T>(t < taps.count ? taps.weight[0][t] : 0));
    size_t i = 0;
    for (; i + kLanes<T> <= samples; i += kLanes<T>) {
      const ptrdiff_t first = 2 * static_cast<ptrdiff_t>(i) + taps.first[0];
      Vector<T> even, odd, next, unused;
      split(in, first, even, odd);
      Vector<T> sum = hn::Add(hn::Mul(even, weight[0]), hn::Mul(odd, weight[1]));
      if (taps.count == 3) {
        split(in, first + 2, next, unused);
        sum = hn::Add(sum, hn::Mul(next, weight[2]));
      }
      storeLane<T>(sum, out + i * sizeof(T));
    }
    return i;
  }

  /// The even and the odd ones of two vectors of samples.
  KIP_INLINE static void split(const uint8_t* in, ptrdiff_t first, Vector<T>& even, Vector<T>& odd) {
    if constexpr (std::is_same_v<From, uint8_t> && std::is_same_v<T, uint16_t>) {
      const U8 v = loadLane<uint8_t>(in + first);
      even = as<uint16_t>(evenBytes(v)), odd = as<uint16_t>(oddBytes(v));
    } else if constexpr (std::is_same_v<T, uint16_t>) {
      const U32 a = as<uint32_t>(at(in, first)), b = as<uint32_t>(at(in, first + kLanes<T>));
      const U32 mask = set<uint32_t>(0xFFFF);
      even = packInOrder(as<int32_t>(hn::And(a, mask)), as<int32_t>(hn::And(b, mask)));
      odd = packInOrder(as<int32_t>(hn::ShiftRight<16>(a)), as<int32_t>(hn::ShiftRight<16>(b)));
    } else if constexpr (std::is_same_v<T, float>) {
      const Vector<T> a = at(in, first), b = at(in, first + kLanes<T>);
      even = hn::ConcatEven(Tag<T>(), b, a), odd = hn::ConcatOdd(Tag<T>(), b, a);
    } else {
      const U8 a = at(in, first), b = at(in, first + kLanes<T>);
      even = packBytesInOrder(evenBytes(a), evenBytes(b)), odd = packBytesInOrder(oddBytes(a), oddBytes(b));
    }
  }
};

/// Samples of 8 bits are selected only: their one weight is 1.
struct SelectBytes {
  static void run(const Taps& taps, const uint8_t* in, uint8_t* out, size_t samples) {
    size_t i = 0;
    if (taps.phases == 2) {
      for (; i + 2 * kLanes<uint8_t> <= samples; i += 2 * kLanes<uint8_t>) {
        const U8 v = loadLane<uint8_t>(in + i / 2);
        TwoInterleaved::store(v, v, out + i);
      }
    } else if (taps.phases == 1 && taps.advance == 2) {
      for (; i + kLanes<uint8_t> <= samples; i += kLanes<uint8_t>) {
        U8 even, odd;
        TwoInterleaved::load(in + 2 * i, even, odd);
        storeLane<uint8_t>(even, out + i);
      }
    }
    columnsOneByOne(taps, in + i / taps.phases * taps.advance, out + i, samples - i);
  }
};

template <bool kTwoRows, bool kThree>
void halveRows(const convert::HalveWork& work) {
  // Sources have room behind the last sample.
  const auto sum = [](const uint8_t* from) KIP_INLINE_LAMBDA {
    const U8 v = loadLane<uint8_t>(from);
    const I16 pair = hn::Add(evenBytes(v), oddBytes(v));
    if constexpr (!kThree) return pair;
    const U8 next = loadLane<uint8_t>(from + 1);
    return hn::Add(pair, hn::Add(evenBytes(next), oddBytes(next)));
  };
  const auto sums = [&](size_t at) KIP_INLINE_LAMBDA {
    I16 v = sum(work.row[0] + 2 * at);
    if constexpr (kTwoRows) v = hn::Add(v, sum(work.row[1] + 2 * at));
    return as<uint16_t>(v);
  };
  constexpr size_t kBatch = kLanes<uint16_t>;
  size_t at = 0;
  for (; at + kBatch <= work.samples; at += kBatch) storeLane<uint16_t>(sums(at), work.out + 2 * at);
  if (at < work.samples) storeLane<uint16_t>(sums(at), work.out + 2 * at);  // so have results
}

void halve(const convert::HalveWork& work) {
  const auto run = work.three ? (work.twoRows ? halveRows<true, true> : halveRows<false, true>)
                              : (work.twoRows ? halveRows<true, false> : halveRows<false, false>);
  run(work);
}

constexpr convert::ResamplingKernels makeKernels() {
  constexpr int kU8 = 0, kU16 = 1, kF32 = 2;
  convert::ResamplingKernels k{};
  k.rows[kU8][kU16] = addRows<uint8_t, uint16_t>;
  k.rows[kU16][kU16] = addRows<uint16_t, uint16_t>;
  k.rows[kU8][kF32] = addRows<uint8_t, float>;
  k.rows[kU16][kF32] = addRows<uint16_t, float>;
  k.rows[kF32][kF32] = addRows<float, float>;
  k.columns[kU8][kU8] = SelectBytes::run;
  k.columns[kU8][kU16] = ColumnSum<uint8_t, uint16_t>::run;
  k.columns[kU16][kU16] = ColumnSum<uint16_t, uint16_t>::run;
  k.columns[kF32][kF32] = ColumnSum<float, float>::run;
  k.halve = halve;
  return k;
}

}  // namespace

const convert::ResamplingKernels* resamplingKernels() {
  static constexpr convert::ResamplingKernels kKernels = makeKernels();
  return &kKernels;
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
HWY_EXPORT(resamplingKernels);
namespace convert {
const ResamplingKernels& resamplingKernels() { return *HWY_DYNAMIC_DISPATCH(resamplingKernels)(); }
}  // namespace convert
}  // namespace kip
#endif
