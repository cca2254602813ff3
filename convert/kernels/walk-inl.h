// Rows in batches: whole vectors straight from and to the rows, the tail by way of buffers.

#if defined(KIP_CONVERT_WALK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_CONVERT_WALK_INL_H_
#undef KIP_CONVERT_WALK_INL_H_
#else
#define KIP_CONVERT_WALK_INL_H_
#endif

#include <cstring>

#include "engine/simd-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// A row, and what a group of its samples takes up.
template <class Byte>
struct Stream {
  Byte* at;
  int groupPixels, groupBytes;

  KIP_INLINE size_t bytes(size_t pixels) const {
    return (pixels + groupPixels - 1) / groupPixels * static_cast<size_t>(groupBytes);
  }
};
using In = Stream<const uint8_t>;
using Out = Stream<uint8_t>;

template <class T>
KIP_INLINE In laneIn(const uint8_t* at) {
  return {at, 1, sizeof(T)};
}
template <class T>
KIP_INLINE Out laneOut(uint8_t* at) {
  return {at, 1, sizeof(T)};
}

/// Calls body(in, out) with pointers for every kBatch pixels. What a batch reads or writes of one row is at most four
/// vectors. One call of body for batches and tails alike: it is all of the code, and inlined.
template <int kBatch, int kIn, int kOut, class Body>
KIP_INLINE void walk(size_t pixels, const In (&in)[kIn], const Out (&out)[kOut], const Body& body) {
  constexpr int kBytes = 4 * kLanes<uint8_t>;
  alignas(64) uint8_t inTail[kIn][kBytes];
  alignas(64) uint8_t outTail[kOut][kBytes];
  const uint8_t* from[kIn];
  uint8_t* to[kOut];
  for (int i = 0; i < kIn; ++i) from[i] = in[i].at;
  for (int o = 0; o < kOut; ++o) to[o] = out[o].at;
  while (pixels != 0) {
    const bool whole = pixels >= kBatch;
    const uint8_t* bodyFrom[kIn];
    uint8_t* bodyTo[kOut];
    for (int i = 0; i < kIn; ++i) bodyFrom[i] = from[i];
    for (int o = 0; o < kOut; ++o) bodyTo[o] = to[o];
    if (HWY_UNLIKELY(!whole)) {
      for (int i = 0; i < kIn; ++i) {
        std::memset(inTail[i], 0, kBytes);
        std::memcpy(inTail[i], from[i], in[i].bytes(pixels));
        bodyFrom[i] = inTail[i];
      }
      for (int o = 0; o < kOut; ++o) bodyTo[o] = outTail[o];
    }
    body(bodyFrom, bodyTo);
    if (HWY_UNLIKELY(!whole)) {
      for (int o = 0; o < kOut; ++o) std::memcpy(to[o], outTail[o], out[o].bytes(pixels));
      return;
    }
    for (int i = 0; i < kIn; ++i) from[i] += in[i].bytes(kBatch);
    for (int o = 0; o < kOut; ++o) to[o] += out[o].bytes(kBatch);
    pixels -= kBatch;
  }
}

template <class T>
KIP_INLINE Vector<T> loadLane(const uint8_t* from, int vector = 0) {
  return hn::LoadU(Tag<T>(), reinterpret_cast<const T*>(from) + vector * kLanes<T>);
}
template <class T>
KIP_INLINE void storeLane(Vector<T> v, uint8_t* to, int vector = 0) {
  hn::StoreU(v, Tag<T>(), reinterpret_cast<T*>(to) + vector * kLanes<T>);
}

/// 16-bit lanes saturated to bytes, all in order.
KIP_INLINE U8 packBytesInOrder(I16 first, I16 second) {
  const U8 packed = packBytes(first, second);
  if constexpr (kLanes<uint8_t> == 16) {
    return packed;
  } else {
    // A block holds 8 bytes of `first`, then 8 of `second`.
    constexpr int kBlocks = kLanes<uint8_t> / 16;
    int32_t from[kLanes<int32_t>];
    for (int i = 0; i < kLanes<int32_t>; ++i) from[i] = i / 2 % kBlocks * 4 + i / 2 / kBlocks * 2 + i % 2;
    return as<uint8_t>(hn::TableLookupLanes(as<int32_t>(packed), hn::SetTableIndices(Tag<int32_t>(), from)));
  }
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
