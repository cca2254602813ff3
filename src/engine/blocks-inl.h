// Blocks of vectors in memory: loads and stores of vectors whose blocks lie apart, and transposition within blocks.

#if defined(KIP_ENGINE_BLOCKS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_BLOCKS_INL_H_
#undef KIP_ENGINE_BLOCKS_INL_H_
#else
#define KIP_ENGINE_BLOCKS_INL_H_
#endif

#include "engine/unpack-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// The blocks of a vector with tag d, the first of them at at(first).
template <class D, class At>
KIP_INLINE hn::Vec<D> loadBlocksOf(D d, const At& at, int first) {
  constexpr int kBlocks = hn::MaxLanes(d) / 16;
  if constexpr (kBlocks == 1) {
    return hn::LoadU(d, at(first));
  } else {
    const hn::Half<D> half;
    return hn::Combine(d, loadBlocksOf(half, at, first + kBlocks / 2), loadBlocksOf(half, at, first));
  }
}
template <class D, class At>
KIP_INLINE void storeBlocksOf(D d, hn::Vec<D> v, const At& at, int first) {
  constexpr int kBlocks = hn::MaxLanes(d) / 16;
  if constexpr (kBlocks == 1) {
    hn::StoreU(v, d, at(first));
  } else {
    const hn::Half<D> half;
    storeBlocksOf(half, hn::LowerHalf(half, v), at, first);
    storeBlocksOf(half, hn::UpperHalf(half, v), at, first + kBlocks / 2);
  }
}

/// A vector whose block b holds the 16 bytes that at(b) points to, and the inverse.
template <class At>
KIP_INLINE U8 loadBlocksAt(const At& at) {
  return loadBlocksOf(Tag<uint8_t>(), at, 0);
}
template <class At>
KIP_INLINE void storeBlocksAt(U8 v, const At& at) {
  storeBlocksOf(Tag<uint8_t>(), v, at, 0);
}

/// A vector whose block b holds the 16 bytes at from + b * distance.
KIP_INLINE U8 loadBlocks(const uint8_t* from, ptrdiff_t distance) {
  return loadBlocksAt([&](int b) KIP_INLINE_LAMBDA { return from + b * distance; });
}

/// The blocks of two vectors alternately: the inverse of loadBlocks from two places.
KIP_INLINE void storeTwoBlocks(U8 first, U8 second, uint8_t* to) {
  U8 lower, upper;
  interleaveBlocks(first, second, lower, upper);
  hn::StoreU(lower, Tag<uint8_t>(), to);
  hn::StoreU(upper, Tag<uint8_t>(), to + kLanes<uint8_t>);
}

/// In each block, the lanes of as many vectors as a block has lanes: the rows of a matrix become its columns.
template <class T>
KIP_INLINE void transposeBlocks(Vector<T> (&v)[16 / sizeof(T)]) {
  constexpr int kSide = 16 / sizeof(T);
  for (int halves = kSide; halves > 1; halves /= 2) {
    Vector<T> next[kSide];
    for (int i = 0; i < kSide / 2; ++i) {
      next[2 * i] = hn::InterleaveLower(v[i], v[i + kSide / 2]);
      next[2 * i + 1] = hn::InterleaveUpper(Tag<T>(), v[i], v[i + kSide / 2]);
    }
    for (int i = 0; i < kSide; ++i) v[i] = next[i];
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
