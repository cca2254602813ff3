// The SIMD vocabulary of the kernels, on top of Highway: full vectors of the sample types, and the steps within
// 128-bit blocks that widening, packing and summing need. Widening within blocks reorders the samples of vectors of
// more than one block; packing the results undoes it.

#if defined(KIP_FRAME_SIMD_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_FRAME_SIMD_INL_H_
#undef KIP_FRAME_SIMD_INL_H_
#else
#define KIP_FRAME_SIMD_INL_H_
#endif

#include <cstdint>

#include "hwy/highway.h"

// Everything a kernel is made of is part of its loop. Not so in the emulated target, where each step is a loop itself
// and inlining them all would only make the compiler slow.
#undef KIP_INLINE
#undef KIP_INLINE_LAMBDA
#if HWY_TARGET == HWY_EMU128
#define KIP_INLINE inline __attribute__((noinline))
#define KIP_INLINE_LAMBDA __attribute__((noinline))
#else
#define KIP_INLINE inline __attribute__((always_inline))
#define KIP_INLINE_LAMBDA __attribute__((always_inline))
#endif

#undef KIP_MM
#undef KIP_EMULATED
#if HWY_TARGET == HWY_EMU128
#define KIP_EMULATED 1
#else
#define KIP_EMULATED 0
#if HWY_TARGET == HWY_SSSE3 || HWY_TARGET == HWY_SSE4
#define KIP_MM(operation) _mm_##operation
#elif HWY_TARGET == HWY_AVX2
#define KIP_MM(operation) _mm256_##operation
#else
#define KIP_MM(operation) _mm512_##operation
#endif
#endif

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

template <class T>
using Tag = hn::ScalableTag<T>;
template <class T>
using Vector = hn::Vec<Tag<T>>;

using U8 = Vector<uint8_t>;
using I16 = Vector<int16_t>;
using U16 = Vector<uint16_t>;
using I32 = Vector<int32_t>;
using U32 = Vector<uint32_t>;
using F32 = Vector<float>;

/// Samples of type T in a vector.
template <class T>
constexpr int kLanes = static_cast<int>(hn::MaxLanes(Tag<T>()));

template <class T>
KIP_INLINE Vector<T> set(T value) {
  return hn::Set(Tag<T>(), value);
}

/// The same bits as lanes of another type.
template <class T, class V>
KIP_INLINE Vector<T> as(V v) {
  return hn::BitCast(Tag<T>(), v);
}

/// The lower and the upper bytes of each block as 16-bit lanes.
KIP_INLINE I16 lowerBytes(U8 v) { return as<int16_t>(hn::InterleaveLower(v, hn::Zero(Tag<uint8_t>()))); }
KIP_INLINE I16 upperBytes(U8 v) {
  return as<int16_t>(hn::InterleaveUpper(Tag<uint8_t>(), v, hn::Zero(Tag<uint8_t>())));
}

/// The even and the odd bytes as 16-bit lanes, in order.
KIP_INLINE I16 evenBytes(U8 v) { return hn::And(as<int16_t>(v), set<int16_t>(0xFF)); }
KIP_INLINE I16 oddBytes(U8 v) { return as<int16_t>(hn::ShiftRight<8>(as<uint16_t>(v))); }

/// The lower and the upper 16-bit lanes of each block, zero-extended to 32 bits.
KIP_INLINE I32 lowerWords(U16 v) { return as<int32_t>(hn::InterleaveLower(v, hn::Zero(Tag<uint16_t>()))); }
KIP_INLINE I32 upperWords(U16 v) {
  return as<int32_t>(hn::InterleaveUpper(Tag<uint16_t>(), v, hn::Zero(Tag<uint16_t>())));
}

/// The lower and the upper 16-bit lanes of each block as floats.
KIP_INLINE F32 lowerFloats(U16 v) { return hn::ConvertTo(Tag<float>(), lowerWords(v)); }
KIP_INLINE F32 upperFloats(U16 v) { return hn::ConvertTo(Tag<float>(), upperWords(v)); }

/// 16-bit lanes saturated to bytes: in each block those of `lower`, then those of `upper`.
KIP_INLINE U8 packBytes(I16 lower, I16 upper) {
#if KIP_EMULATED
  const auto half = hn::Half<Tag<uint8_t>>();
  return hn::Combine(Tag<uint8_t>(), hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
#else
  return U8{KIP_MM(packus_epi16)(lower.raw, upper.raw)};
#endif
}

/// 32-bit lanes saturated to signed 16 bits: in each block those of `lower`, then those of `upper`.
KIP_INLINE I16 packWords(I32 lower, I32 upper) {
#if KIP_EMULATED
  const auto half = hn::Half<Tag<int16_t>>();
  return hn::Combine(Tag<int16_t>(), hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
#else
  return I16{KIP_MM(packs_epi32)(lower.raw, upper.raw)};
#endif
}

/// 32-bit lanes saturated to unsigned 16 bits: in each block those of `lower`, then those of `upper`.
KIP_INLINE U16 packUnsignedWords(I32 lower, I32 upper) {
#if KIP_EMULATED
  const auto half = hn::Half<Tag<uint16_t>>();
  return hn::Combine(Tag<uint16_t>(), hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
#elif HWY_TARGET == HWY_SSSE3
  // Only signed saturation exists: bias by half the range, not below zero, and back.
  const I32 bias = set<int32_t>(32768);
  const auto biased = [&](I32 v) { return hn::Sub(hn::And(v, hn::Not(hn::BroadcastSignBit(v))), bias); };
  return hn::Xor(as<uint16_t>(packWords(biased(lower), biased(upper))), set<uint16_t>(0x8000));
#else
  return U16{KIP_MM(packus_epi32)(lower.raw, upper.raw)};
#endif
}

/// Even and odd 16-bit lanes saturated to bytes and put side by side: the inverse of evenBytes and oddBytes.
KIP_INLINE U8 mergeBytes(I16 even, I16 odd) {
  alignas(16) static constexpr uint8_t kAlternate[16] = {0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15};
  return hn::TableLookupBytes(packBytes(even, odd), hn::LoadDup128(Tag<uint8_t>(), kAlternate));
}

/// Products of 16-bit lanes, summed over each even lane and its odd neighbour: exact in 32 bits.
KIP_INLINE I32 dotPairs(I16 a, I16 b) {
#if KIP_EMULATED
  const auto even = [](I16 v) { return hn::ShiftRight<16>(hn::ShiftLeft<16>(as<int32_t>(v))); };
  const auto odd = [](I16 v) { return hn::ShiftRight<16>(as<int32_t>(v)); };
  return hn::Add(hn::Mul(even(a), even(b)), hn::Mul(odd(a), odd(b)));
#else
  return I32{KIP_MM(madd_epi16)(a.raw, b.raw)};
#endif
}

/// The even, or the odd, 32-bit lanes: in each block those of `lower`, then those of `upper`.
KIP_INLINE I32 evenLanes(I32 lower, I32 upper) {
#if KIP_EMULATED
  return hn::ConcatEven(Tag<int32_t>(), upper, lower);
#else
  return as<int32_t>(F32{KIP_MM(shuffle_ps)(as<float>(lower).raw, as<float>(upper).raw, _MM_SHUFFLE(2, 0, 2, 0))});
#endif
}
KIP_INLINE I32 oddLanes(I32 lower, I32 upper) {
#if KIP_EMULATED
  return hn::ConcatOdd(Tag<int32_t>(), upper, lower);
#else
  return as<int32_t>(F32{KIP_MM(shuffle_ps)(as<float>(lower).raw, as<float>(upper).raw, _MM_SHUFFLE(3, 1, 3, 1))});
#endif
}

/// A vector of pairs (even, odd) for dotPairs.
KIP_INLINE I16 setPairs(int even, int odd) {
  return as<int16_t>(set<int32_t>(static_cast<int32_t>((static_cast<uint32_t>(odd) << 16) | (even & 0xFFFF))));
}

/// A vector whose block b holds the 16 bytes at from + b * distance.
KIP_INLINE U8 loadBlocks(const uint8_t* from, [[maybe_unused]] ptrdiff_t distance) {
#if HWY_TARGET == HWY_AVX2
  const auto block = [&](int b) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + b * distance)); };
  return U8{_mm256_inserti128_si256(_mm256_castsi128_si256(block(0)), block(1), 1)};
#elif HWY_TARGET == HWY_AVX3
  const auto block = [&](int b) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + b * distance)); };
  __m512i v = _mm512_castsi128_si512(block(0));
  v = _mm512_inserti32x4(v, block(1), 1);
  v = _mm512_inserti32x4(v, block(2), 2);
  return U8{_mm512_inserti32x4(v, block(3), 3)};
#else
  return hn::LoadU(Tag<uint8_t>(), from);
#endif
}

/// The next half vector of bytes as 16-bit lanes, in order.
KIP_INLINE I16 loadHalf(const uint8_t* from) {
  return hn::PromoteTo(Tag<int16_t>(), hn::LoadU(hn::Half<Tag<uint8_t>>(), from));
}

/// 16-bit lanes saturated to bytes, in order, to the next half vector of bytes.
KIP_INLINE void storeHalf(I16 v, uint8_t* to) {
  const auto half = hn::Half<Tag<uint8_t>>();
  hn::StoreU(hn::DemoteTo(half, v), half, to);
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
