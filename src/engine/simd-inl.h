// The SIMD vocabulary of the kernels, on top of Highway: full vectors of the sample types, and the steps within
// 128-bit blocks that widening, packing and summing need. Widening within blocks reorders the samples of vectors of
// more than one block; packing the results undoes it.

#if defined(KIP_ENGINE_SIMD_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_SIMD_INL_H_
#undef KIP_ENGINE_SIMD_INL_H_
#else
#define KIP_ENGINE_SIMD_INL_H_
#endif

#include <cmath>
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
#undef KIP_AVX512
#define KIP_AVX512 (HWY_TARGET == HWY_AVX3_DL)
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
using I8 = Vector<int8_t>;
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

/// A constant that stays in a register, or is spilled to memory once, outside the loop. Left alone, the compiler builds
/// constants anew where it needs them, which costs three instructions each. A type with such members needs a
/// constructor of its own, if an empty one: an implicit one would not be compiled for the target.
template <class T>
KIP_INLINE Vector<T> keepInRegister(T value) {
  Vector<T> v = set<T>(value);
#if !KIP_EMULATED
#if KIP_AVX512
  asm("" : "+v"(v.raw));
#else
  asm("" : "+x"(v.raw));
#endif
#endif
  return v;
}

// Formulas with constants.
#define KIP_WITH_CONSTANT(symbol)                                                   \
  KIP_INLINE F32 operator symbol(F32 a, float b) { return a symbol set<float>(b); } \
  KIP_INLINE F32 operator symbol(float a, F32 b) { return set<float>(a) symbol b; }
KIP_WITH_CONSTANT(+)
KIP_WITH_CONSTANT(-)
KIP_WITH_CONSTANT(*)
KIP_WITH_CONSTANT(/)
#undef KIP_WITH_CONSTANT

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

/// The lesser, or the greater, of v and a limit; NaN stays NaN.
KIP_INLINE F32 atMost(F32 v, F32 limit) {
#if KIP_EMULATED
  return hn::IfThenElse(hn::Lt(limit, v), limit, v);
#else
  return F32{KIP_MM(min_ps)(limit.raw, v.raw)};
#endif
}
KIP_INLINE F32 atLeast(F32 v, F32 limit) {
#if KIP_EMULATED
  return hn::IfThenElse(hn::Lt(v, limit), limit, v);
#else
  return F32{KIP_MM(max_ps)(limit.raw, v.raw)};
#endif
}

/// v below 0 is 0, above 1 is 1; NaN stays.
KIP_INLINE F32 toUnit(F32 v) { return atMost(atLeast(v, set(0.f)), set(1.f)); }

/// v, or the one NaN that all NaNs become, so that the bits of a result do not depend on the order of operands.
KIP_INLINE F32 canonicalizeNaN(F32 v) { return hn::IfThenElse(hn::Eq(v, v), v, as<float>(set<int32_t>(0x7FC00000))); }

/// Whether any lane is NaN.
KIP_INLINE bool anyNaN(F32 a, F32 b, F32 c) {
#if KIP_EMULATED
  const auto has = [](F32 v) { return !hn::AllTrue(Tag<float>(), hn::Eq(v, v)); };
  return has(a) || has(b) || has(c);
#elif KIP_AVX512
  return !_kortestz_mask16_u8(_mm512_cmp_ps_mask(a.raw, b.raw, _CMP_UNORD_Q),
                              _mm512_cmp_ps_mask(c.raw, c.raw, _CMP_UNORD_Q));
#elif HWY_TARGET == HWY_AVX2
  return _mm256_movemask_ps(
      _mm256_or_ps(_mm256_cmp_ps(a.raw, b.raw, _CMP_UNORD_Q), _mm256_cmp_ps(c.raw, c.raw, _CMP_UNORD_Q)));
#else
  return _mm_movemask_ps(_mm_or_ps(_mm_cmpunord_ps(a.raw, b.raw), _mm_cmpunord_ps(c.raw, c.raw)));
#endif
}

/// Floats as 32-bit integers, truncated toward zero or rounded to nearest, ties to even. What does not fit, and NaN,
/// becomes the least integer.
#if KIP_EMULATED
KIP_INLINE int32_t fitting(float v) {
  return v >= -2147483648.f && v < 2147483648.f ? static_cast<int32_t>(v) : INT32_MIN;
}
KIP_INLINE I32 truncated(F32 v) {
  I32 result;
  for (int i = 0; i < kLanes<float>; ++i) result.raw[i] = fitting(v.raw[i]);
  return result;
}
KIP_INLINE I32 rounded(F32 v) {
  for (float& lane : v.raw) lane = std::nearbyint(lane);
  return truncated(v);
}
#else
KIP_INLINE I32 truncated(F32 v) { return I32{KIP_MM(cvttps_epi32)(v.raw)}; }
KIP_INLINE I32 rounded(F32 v) { return I32{KIP_MM(cvtps_epi32)(v.raw)}; }
#endif

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

/// Vectors of 32-bit lanes saturated to one vector of smaller ones, all in order.
KIP_INLINE U16 packInOrder(I32 first, I32 second) {
  const U16 packed = packUnsignedWords(first, second);
  if constexpr (kLanes<float> == 4) {
    return packed;
  } else {
    // A block holds the lanes of `first`'s block, then those of `second`'s: 64 bits of each.
    constexpr int kBlocks = kLanes<float> / 4;
    int32_t from[kLanes<float>];
    for (int i = 0; i < kLanes<float>; ++i) from[i] = i / 2 % kBlocks * 4 + i / 2 / kBlocks * 2 + i % 2;
    return as<uint16_t>(hn::TableLookupLanes(as<int32_t>(packed), hn::SetTableIndices(Tag<int32_t>(), from)));
  }
}
KIP_INLINE U8 packInOrder(I32 first, I32 second, I32 third, I32 fourth) {
  const U8 packed = packBytes(packWords(first, second), packWords(third, fourth));
  if constexpr (kLanes<float> == 4) {
    return packed;
  } else {
    constexpr int kBlocks = kLanes<float> / 4;
    int32_t from[kLanes<float>];
    for (int i = 0; i < kLanes<float>; ++i) from[i] = i % kBlocks * 4 + i / kBlocks;
    return as<uint8_t>(hn::TableLookupLanes(as<int32_t>(packed), hn::SetTableIndices(Tag<int32_t>(), from)));
  }
}

/// 16 bytes, in each block.
KIP_INLINE U8 blockTable(const uint8_t (&bytes)[16]) { return hn::LoadDup128(Tag<uint8_t>(), bytes); }

/// In each block, the bytes at the given places of its 16; 0 where a place has its top bit set.
KIP_INLINE U8 shuffleBlocks(U8 v, const uint8_t (&places)[16]) {
  return hn::TableLookupBytesOr0(v, blockTable(places));
}

/// Even and odd 16-bit lanes saturated to bytes and put side by side: the inverse of evenBytes and oddBytes.
KIP_INLINE U8 mergeBytes(I16 even, I16 odd) {
  alignas(16) static constexpr uint8_t kAlternate[16] = {0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15};
  return shuffleBlocks(packBytes(even, odd), kAlternate);
}

/// Of each block's 16 table bytes the one at the index's low four bits; 0 where the index's top bit is set.
KIP_INLINE U8 lookUp(U8 table, U8 index) {
#if KIP_EMULATED
  index = hn::And(index, set<uint8_t>(0x8F));
#endif
  return hn::TableLookupBytesOr0(table, index);
}

#if KIP_AVX512
/// The bytes at the given places of a vector, or of two vectors, one after the other.
KIP_INLINE U8 permute(U8 v, const uint8_t (&places)[64]) {
  return U8{_mm512_permutexvar_epi8(_mm512_load_si512(places), v.raw)};
}
KIP_INLINE U8 permute(U8 first, U8 second, const uint8_t (&places)[64]) {
  return U8{_mm512_permutex2var_epi8(first.raw, _mm512_load_si512(places), second.raw)};
}
/// The same with zeros for the odd bytes.
KIP_INLINE I16 permuteToWords(U8 first, U8 second, const uint8_t (&places)[64]) {
  constexpr __mmask64 kEven = 0x5555555555555555;
  return I16{_mm512_maskz_permutex2var_epi8(kEven, first.raw, _mm512_load_si512(places), second.raw)};
}
#endif

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

/// The same, added to a start.
KIP_INLINE I32 dotPairs(I32 start, I16 a, I16 b) {
#if KIP_AVX512
  // Highway does not tell the compiler that this target has the instruction.
  asm("vpdpwssd %2, %1, %0" : "+v"(start.raw) : "v"(a.raw), "v"(b.raw));
  return start;
#else
  return hn::Add(start, dotPairs(a, b));
#endif
}

/// Products of bytes and signed factors, summed over each even byte and its odd neighbour: exact where the sums fit.
KIP_INLINE I16 dotBytes(U8 bytes, I8 factors) {
#if KIP_EMULATED
  const I16 f = as<int16_t>(factors);
  const I16 evenFactors = hn::ShiftRight<8>(hn::ShiftLeft<8>(f)), oddFactors = hn::ShiftRight<8>(f);
  return hn::Add(hn::Mul(evenBytes(bytes), evenFactors), hn::Mul(oddBytes(bytes), oddFactors));
#else
  return I16{KIP_MM(maddubs_epi16)(bytes.raw, factors.raw)};
#endif
}

#if KIP_AVX512
/// Products of bytes and signed factors, summed over each four of them and a start.
KIP_INLINE I32 dotQuads(I32 start, U8 bytes, I8 factors) {
  asm("vpdpbusd %2, %1, %0" : "+v"(start.raw) : "v"(bytes.raw), "v"(factors.raw));
  return start;
}
#endif

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

/// The even, or the odd, 16-bit lanes of two vectors as pairs (a, b).
KIP_INLINE I16 pairEven(I16 a, I16 b) { return hn::OddEven(as<int16_t>(hn::ShiftLeft<16>(as<int32_t>(b))), a); }
KIP_INLINE I16 pairOdd(I16 a, I16 b) { return hn::OddEven(b, as<int16_t>(hn::ShiftRight<16>(as<uint32_t>(a)))); }

/// The upper 16 bits of 32-bit lanes, those of `even` and of `odd` in turn.
KIP_INLINE I16 interleaveHigh16(I32 even, I32 odd) {
#if KIP_AVX512
  alignas(64) static constexpr struct Table {
    uint16_t upper[32];
    constexpr Table() : upper() {
      for (int i = 0; i < 32; ++i) upper[i] = i % 2 * 32 + (i | 1);
    }
  } kTable;
  return I16{_mm512_permutex2var_epi16(even.raw, _mm512_load_si512(kTable.upper), odd.raw)};
#else
  return hn::OddEven(as<int16_t>(odd), as<int16_t>(hn::ShiftRight<16>(as<uint32_t>(even))));
#endif
}

/// One more where a mask says so.
KIP_INLINE U16 incrementWhere(hn::Mask<Tag<int16_t>> mask, U16 v) {
#if KIP_AVX512
  return U16{_mm512_mask_sub_epi16(v.raw, mask.raw, v.raw, _mm512_set1_epi16(-1))};
#else
  return hn::Sub(v, as<uint16_t>(hn::VecFromMask(Tag<int16_t>(), mask)));
#endif
}

/// Factors (even, odd) for dotPairs.
constexpr int32_t pairBits(int even, int odd) {
  return static_cast<int32_t>((static_cast<uint32_t>(odd) << 16) | (static_cast<uint32_t>(even) & 0xFFFF));
}
/// Weights (even, odd) for dotBytes.
constexpr int bytePair(int even, int odd) { return static_cast<int16_t>(odd * 256 + (even & 0xFF)); }
KIP_INLINE I16 setPairs(int even, int odd) { return as<int16_t>(set<int32_t>(pairBits(even, odd))); }
KIP_INLINE I16 keepPairs(int even, int odd) { return as<int16_t>(keepInRegister<int32_t>(pairBits(even, odd))); }

/// Factors (even, odd) for dotBytes.
KIP_INLINE I8 keepBytePairs(int even, int odd) {
  return as<int8_t>(keepInRegister<uint16_t>(static_cast<uint16_t>((odd << 8) | (even & 0xFF))));
}

// Table look-ups. Loads of single entries, with the places stored first and then taken one by one, are faster than
// gather instructions.
#if !KIP_AVX512 && !KIP_EMULATED
struct Places {
  alignas(32) uint32_t at[kLanes<float>];

  KIP_INLINE explicit Places(I32 places) {
    hn::Store(as<uint32_t>(places), Tag<uint32_t>(), at);
    asm("" : "+m"(at));  // or the compiler takes them out of the vector after all
  }

  /// The entries at the four places from the given one on.
  KIP_INLINE __m128i entries(const int32_t* table, int from) const {
    const auto entry = [&](int i) KIP_INLINE_LAMBDA { return _mm_cvtsi32_si128(table[at[from + i]]); };
    return _mm_unpacklo_epi64(_mm_unpacklo_epi32(entry(0), entry(1)), _mm_unpacklo_epi32(entry(2), entry(3)));
  }
};
#endif

/// The entries at the given places of a table.
KIP_INLINE I32 lookUp(const int32_t* table, I32 place) {
#if KIP_AVX512 || KIP_EMULATED
  return hn::GatherIndex(Tag<int32_t>(), table, place);
#else
  const Places places(place);
#if HWY_TARGET == HWY_AVX2
  return I32{_mm256_inserti128_si256(_mm256_castsi128_si256(places.entries(table, 0)), places.entries(table, 4), 1)};
#else
  return I32{places.entries(table, 0)};
#endif
#endif
}

/// The next half vector of bytes as 16-bit lanes, in order.
KIP_INLINE I16 loadHalf(const uint8_t* from) {
  return hn::PromoteTo(Tag<int16_t>(), hn::LoadU(hn::Half<Tag<uint8_t>>(), from));
}

/// The next half vectors of bytes side by side: first, second, first, second, ...
KIP_INLINE U8 loadSideBySide(const uint8_t* first, const uint8_t* second) {
  return as<uint8_t>(hn::Or(loadHalf(first), hn::ShiftLeft<8>(loadHalf(second))));
}

/// 16-bit lanes saturated to bytes, in order, to the next half vector of bytes.
KIP_INLINE void storeHalf(I16 v, uint8_t* to) {
  const auto half = hn::Half<Tag<uint8_t>>();
  hn::StoreU(hn::DemoteTo(half, v), half, to);
}

/// The next quarter vector of bytes as 16-bit lanes, in order, each of them twice.
KIP_INLINE I16 loadQuarterTwice(const uint8_t* from) {
  const I32 v = hn::PromoteTo(Tag<int32_t>(), hn::LoadU(hn::Rebind<uint8_t, Tag<int32_t>>(), from));
  return as<int16_t>(hn::Or(v, hn::ShiftLeft<16>(v)));
}

/// 32-bit lanes saturated to bytes, in order, to the next quarter vector of bytes.
KIP_INLINE void storeQuarter(I32 v, uint8_t* to) {
  const hn::Rebind<uint8_t, Tag<int32_t>> quarter;
  hn::StoreU(hn::DemoteTo(quarter, v), quarter, to);
}

/// The sum of v and `more` where the mask is set, v elsewhere.
template <class Mask>
KIP_INLINE F32 addWhere(Mask mask, F32 v, F32 more) {
#if KIP_AVX512
  return hn::IfThenElse(mask, hn::Add(v, more), v);  // one instruction
#else
  return hn::Add(v, hn::IfThenElseZero(mask, more));
#endif
}

/// Eight bits of each 32-bit lane, from bit kFirst on: with AVX-512 all of the first vector, of the second and so on,
/// otherwise those of the first block of each, of the second block and so on.
template <int kFirst>
KIP_INLINE U8 bytesFrom(const I32 (&lanes)[4]) {
#if KIP_AVX512
  alignas(64) static constexpr struct Table {
    uint8_t whole[64];   // bytes of two vectors, twice
    uint8_t shifts[64];  // to the bits of the two lanes in each 64
    uint8_t places[64];  // of these in each vector's turn
    constexpr Table() : whole(), shifts(), places() {
      for (int i = 0; i < 64; ++i) {
        whole[i] = i % 32 * 4 + kFirst / 8;
        shifts[i] = i % 2 * 32 + kFirst;
        places[i] = i % 16 / 2 * 8 + i / 16 * 2 + i % 2;
      }
    }
  } kTable;
  if constexpr (kFirst % 8 == 0) {
    const auto half = [&](int first) KIP_INLINE_LAMBDA {
      return permute(as<uint8_t>(lanes[first]), as<uint8_t>(lanes[first + 1]), kTable.whole);
    };
    return hn::ConcatUpperLower(Tag<uint8_t>(), half(2), half(0));
  } else {
    constexpr __mmask64 kFirstTwo = 0x0303030303030303;
    const __m512i shifts = _mm512_load_si512(kTable.shifts);
    __m512i bytes = _mm512_multishift_epi64_epi8(shifts, lanes[0].raw);
    for (int k = 1; k < 4; ++k) {
      bytes = _mm512_mask_multishift_epi64_epi8(bytes, kFirstTwo << 2 * k, shifts, lanes[k].raw);
    }
    return permute(U8{bytes}, kTable.places);
  }
#else
  const auto words = [&](int half) KIP_INLINE_LAMBDA {
    const auto byte = [](I32 v) KIP_INLINE_LAMBDA { return hn::And(hn::ShiftRight<kFirst>(v), set<int32_t>(0xFF)); };
    return packWords(byte(lanes[2 * half]), byte(lanes[2 * half + 1]));
  };
  return packBytes(words(0), words(1));
#endif
}

/// Barrier: keeps independent chains interleaved. GCC would group each chain and exhaust the processor's out-of-order
/// window. With fewer than the 32 registers of AVX-512 it is right to.
KIP_INLINE F32 schedulingBarrier(F32 v) {
#if KIP_AVX512
  asm("" : "+v"(v.raw));
#endif
  return v;
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
