// Interleaved samples by unpacks and shifts: for targets without byte shuffles, whose vectors are one block.

#if defined(KIP_ENGINE_UNPACK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_UNPACK_INL_H_
#undef KIP_ENGINE_UNPACK_INL_H_
#else
#define KIP_ENGINE_UNPACK_INL_H_
#endif

#include "engine/simd-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

template <int kBytes>
KIP_INLINE U8 shiftUp(U8 v) {
  return hn::ShiftLeftBytes<kBytes>(Tag<uint8_t>(), v);
}
template <int kBytes>
KIP_INLINE U8 shiftDown(U8 v) {
  return hn::ShiftRightBytes<kBytes>(Tag<uint8_t>(), v);
}

/// Two, three or four channels taken apart: kCount vectors of samples; of three channels, the first kBytes of each
/// vector. Each step puts samples of the first and of the second half of all side by side, which takes sample i to 2 i
/// modulo one less than their number; so log2(N) steps take sample kCount i + c to i + N c.
template <class T, int kCount, int kBytes = 16>
KIP_INLINE void deinterleave(Vector<T> (&v)[kCount]) {
  static_assert(kCount == 3 || kBytes == 16);
  const Tag<T> d;
  for (int n = kBytes / sizeof(T); n > 1; n /= 2) {
    Vector<T> next[kCount];
    if constexpr (kCount == 3) {
      const auto upperHalf = [](Vector<T> of)
                                 KIP_INLINE_LAMBDA { return as<T>(shiftDown<kBytes / 2>(as<uint8_t>(of))); };
      next[0] = hn::InterleaveLower(d, v[0], upperHalf(v[1]));
      next[1] = hn::InterleaveLower(d, upperHalf(v[0]), v[2]);
      next[2] = hn::InterleaveLower(d, v[1], upperHalf(v[2]));
    } else {
      for (int i = 0; i < kCount / 2; ++i) {
        next[2 * i] = hn::InterleaveLower(d, v[i], v[i + kCount / 2]);
        next[2 * i + 1] = hn::InterleaveUpper(d, v[i], v[i + kCount / 2]);
      }
    }
    for (int i = 0; i < kCount; ++i) v[i] = next[i];
  }
}

/// The twelve bytes from kFrom on as 32-bit lanes of three; the fourth byte of each is any.
template <int kFrom>
KIP_INLINE U8 threesToLanes(U8 v) {
  const auto twoPixels = [](U8 bytes) KIP_INLINE_LAMBDA { return as<uint64_t>(bytes); };
  const auto both = hn::InterleaveLower(twoPixels(shiftDown<kFrom>(v)), twoPixels(shiftDown<kFrom + 6>(v)));
  return as<uint8_t>(hn::OddEven(as<uint32_t>(hn::ShiftLeft<8>(both)), as<uint32_t>(both)));
}

/// Groups of four samples of type T of which each fourth is zero: the others side by side, then zeros.
template <class T>
KIP_INLINE U8 withoutFourths(U8 v) {
  if constexpr (sizeof(T) == 1) {
    const auto pixels = as<uint64_t>(v), low = set<uint64_t>(0xFFFFFF);
    v = as<uint8_t>(hn::Or(hn::And(low, pixels), hn::ShiftRight<8>(hn::AndNot(low, pixels))));
  }
  if constexpr (sizeof(T) <= 2) {
    const U8 lower = as<uint8_t>(hn::InterleaveLower(as<uint64_t>(v), hn::Zero(Tag<uint64_t>())));
    v = hn::Or(lower, shiftUp<6>(shiftDown<8>(v)));
  }
  return v;
}

/// The same of four vectors, to three vectors in memory.
template <class T>
KIP_INLINE void storeWithoutFourths(const U8 (&groups)[4], uint8_t* to) {
  U8 v[4];
  for (int k = 0; k < 4; ++k) v[k] = withoutFourths<T>(groups[k]);
  const Tag<uint8_t> d;
  hn::StoreU(hn::Or(v[0], shiftUp<12>(v[1])), d, to);
  hn::StoreU(hn::Or(shiftDown<4>(v[1]), shiftUp<8>(v[2])), d, to + 16);
  hn::StoreU(hn::Or(shiftDown<8>(v[2]), shiftUp<4>(v[3])), d, to + 32);
}

/// The same of two vectors, to one and a half.
template <class T>
KIP_INLINE void storeTwoWithoutFourths(U8 lower, U8 upper, uint8_t* to) {
  const Tag<uint8_t> d;
  const hn::Half<Tag<uint8_t>> half;
  const U8 first = withoutFourths<T>(lower), last = withoutFourths<T>(upper);
  hn::StoreU(hn::Or(first, shiftUp<12>(last)), d, to);
  hn::StoreU(hn::LowerHalf(half, shiftDown<4>(last)), half, to + 16);
}

/// What kNoByte stands for: a byte of zero.
constexpr int kNoByte = 0x80;

/// The bytes of each 32-bit lane that were at places k0, k1, k2, k3.
template <int k0, int k1, int k2, int k3>
class LaneShuffle {
 public:
  KIP_INLINE static U8 of(U8 v) { return as<uint8_t>(sum<-3>(as<uint32_t>(v))); }

 private:
  /// The bytes that move up by kUp places, at their new ones.
  static constexpr uint32_t moved(int up) {
    const int places[4] = {k0, k1, k2, k3};
    uint32_t mask = 0;
    for (int i = 0; i < 4; ++i) {
      if (places[i] != kNoByte && i - places[i] == up) mask |= uint32_t{0xFF} << 8 * i;
    }
    return mask;
  }
  template <int kUp>
  KIP_INLINE static U32 part(U32 v) {
    constexpr uint32_t kShifted = kUp >= 0 ? ~uint32_t{0} << 8 * kUp : ~uint32_t{0} >> -8 * kUp;
    U32 bytes = v;
    if constexpr (kUp > 0) bytes = hn::ShiftLeft<8 * kUp>(v);
    if constexpr (kUp < 0) bytes = hn::ShiftRight<-8 * kUp>(v);
    return moved(kUp) == kShifted ? bytes : hn::And(bytes, set(moved(kUp)));
  }
  template <int kUp>
  KIP_INLINE static U32 sum(U32 v) {
    if constexpr (kUp > 3) {
      return hn::Zero(Tag<uint32_t>());
    } else if constexpr (moved(kUp) == 0) {
      return sum<kUp + 1>(v);
    } else {
      return hn::Or(part<kUp>(v), sum<kUp + 1>(v));
    }
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
