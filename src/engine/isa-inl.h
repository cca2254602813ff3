// What depends on the instruction set: the only header that knows targets. It says what a target is good at, how long
// its vectors are, and has what Highway lacks or some compilers must be told. Each function has a portable body, which
// serves every target that is not named here.

#if defined(KIP_ENGINE_ISA_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_ISA_INL_H_
#undef KIP_ENGINE_ISA_INL_H_
#else
#define KIP_ENGINE_ISA_INL_H_
#endif

#include <cmath>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "hwy/highway.h"

// The x86 instruction sets that have bodies of their own; the better one has the greater number. A better target has a
// lesser number in Highway, so that targets which are not named here count as the next lesser one.
#undef KIP_ISA
#define KIP_ISA_PORTABLE 0
#define KIP_ISA_SSE2 1
#define KIP_ISA_SSSE3 2
#define KIP_ISA_SSE4 3
#define KIP_ISA_AVX2 4
#define KIP_ISA_AVX512 5  // with VBMI and VNNI
#if HWY_TARGET <= HWY_AVX3_DL
#define KIP_ISA KIP_ISA_AVX512
#elif HWY_TARGET <= HWY_AVX2
#define KIP_ISA KIP_ISA_AVX2
#elif HWY_TARGET <= HWY_SSE4
#define KIP_ISA KIP_ISA_SSE4
#elif HWY_TARGET <= HWY_SSSE3
#define KIP_ISA KIP_ISA_SSSE3
#elif defined(HWY_SSE2) && HWY_TARGET == HWY_SSE2  // Highway 1.0.4 and later
#define KIP_ISA KIP_ISA_SSE2
#else
#define KIP_ISA KIP_ISA_PORTABLE
#endif

// The instruction of that vector length.
#undef KIP_MM
#if KIP_ISA == KIP_ISA_AVX512
#define KIP_MM(operation) _mm512_##operation
#elif KIP_ISA == KIP_ISA_AVX2
#define KIP_MM(operation) _mm256_##operation
#else
#define KIP_MM(operation) _mm_##operation
#endif

// Everything a kernel is made of is part of its loop. Not so in the emulated target, where each step is a loop itself
// and inlining them all would only make the compiler slow.
#undef KIP_INLINE
#undef KIP_INLINE_LAMBDA
#if HWY_TARGET == HWY_EMU128
#define KIP_INLINE inline __attribute__((noinline))
#define KIP_INLINE_LAMBDA HWY_ATTR __attribute__((noinline))
#else
#define KIP_INLINE inline __attribute__((always_inline))
#define KIP_INLINE_LAMBDA HWY_ATTR __attribute__((always_inline))
#endif

// For the files that exist for targets with tables of 64 bytes: kHas64EntryTables as the preprocessor sees it.
#undef KIP_HAS_64_ENTRY_TABLES
#define KIP_HAS_64_ENTRY_TABLES (KIP_ISA == KIP_ISA_AVX512)

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// ---------------------------------------------------------------------------------------------------------------------
// What the target is good at

/// Look-ups of bytes in tables of a whole vector, or of two: permutes by tables of 64 places.
constexpr bool kHas64EntryTables = KIP_HAS_64_ENTRY_TABLES;
/// Look-ups in tables of two vectors of floats.
constexpr bool kHasFloatTables = KIP_ISA == KIP_ISA_AVX512;
/// Shuffles of the bytes of a block by a table.
constexpr bool kHasByteShuffle = KIP_ISA != KIP_ISA_SSE2;
/// Sums of four products of bytes in one step.
constexpr bool kHasDotQuads = KIP_ISA == KIP_ISA_AVX512;
/// Blends by the top bits of bytes.
constexpr bool kBlendsBySign = KIP_ISA >= KIP_ISA_SSE4;
/// A multiplication and an addition in one step, rounded once.
constexpr bool kHasFusedMultiplyAdd = HWY_NATIVE_FMA;

// ---------------------------------------------------------------------------------------------------------------------
// Vectors

/// Bytes in a vector: what the bodies here are made for, one block on targets that are not named.
constexpr int kVectorBytes = KIP_ISA == KIP_ISA_AVX512 ? 64 : KIP_ISA == KIP_ISA_AVX2 ? 32 : 16;
constexpr int kBlocksPerVector = kVectorBytes / 16;

template <class T>
using Tag = hn::CappedTag<T, kVectorBytes / sizeof(T)>;
template <class T>
using Vector = hn::Vec<Tag<T>>;

using U8 = Vector<uint8_t>;
using I8 = Vector<int8_t>;
using I16 = Vector<int16_t>;
using U16 = Vector<uint16_t>;
using I32 = Vector<int32_t>;
using U32 = Vector<uint32_t>;
using I64 = Vector<int64_t>;
using F32 = Vector<float>;
using F64 = Vector<double>;

/// Samples of type T in a vector.
template <class T>
constexpr int kLanes = static_cast<int>(kVectorBytes / sizeof(T));

template <class T>
KIP_INLINE Vector<T> set(T value) {
  return hn::Set(Tag<T>(), value);
}

/// The same bits as lanes of another type.
template <class T, class V>
KIP_INLINE Vector<T> as(V v) {
  return hn::BitCast(Tag<T>(), v);
}

// ---------------------------------------------------------------------------------------------------------------------
// What the compiler must be told

/// The vector, of which the compiler knows nothing from here on.
template <class V>
KIP_INLINE V opaque(V v) {
#if KIP_ISA == KIP_ISA_AVX512
  asm("" : "+v"(v.raw));
#elif KIP_ISA != KIP_ISA_PORTABLE
  asm("" : "+x"(v.raw));
#elif HWY_ARCH_ARM_A64 && HWY_TARGET != HWY_EMU128
  asm("" : "+w"(v.raw));
#endif
  return v;
}

/// A constant that stays in a register, or is spilled to memory once, outside the loop. Left alone, the compiler builds
/// constants anew where it needs them, which costs three instructions each. A type with such members needs a
/// constructor of its own, if an empty one: an implicit one would not be compiled for the target.
template <class T>
KIP_INLINE Vector<T> keepInRegister(T value) {
  return opaque(set<T>(value));
}

/// Barrier: keeps independent chains interleaved. GCC would group each chain and exhaust the processor's out-of-order
/// window. With fewer than the 32 registers of AVX-512 it is right to.
template <class V>
KIP_INLINE V schedulingBarrier(V v) {
  return KIP_ISA == KIP_ISA_AVX512 ? opaque(v) : v;
}

/// Barrier: what is in memory is loaded when it is needed, not kept in registers that would have to be spilled.
KIP_INLINE void reloadBarrier() {
#if HWY_TARGET != HWY_EMU128  // where vectors are in memory
  asm("" ::: "memory");
#endif
}

// ---------------------------------------------------------------------------------------------------------------------
// Floats

#if KIP_ISA == KIP_ISA_PORTABLE
/// The limit where the mask is set, v elsewhere. clang 14 takes `v < 0 ? 0 : v` for 64-bit Arm's maximum, which is 0
/// for v = -0, unless the mask is opaque.
KIP_INLINE F32 limited(hn::Mask<Tag<float>> exceeds, F32 limit, F32 v) {
  return hn::IfThenElse(hn::MaskFromVec(opaque(hn::VecFromMask(Tag<float>(), exceeds))), limit, v);
}
#endif

/// The lesser, or the greater, of v and a limit; NaN stays NaN.
KIP_INLINE F32 atMost(F32 v, F32 limit) {
#if KIP_ISA == KIP_ISA_PORTABLE
  return limited(hn::Lt(limit, v), limit, v);
#else
  return F32{KIP_MM(min_ps)(limit.raw, v.raw)};
#endif
}
KIP_INLINE F32 atLeast(F32 v, F32 limit) {
#if KIP_ISA == KIP_ISA_PORTABLE
  return limited(hn::Lt(v, limit), limit, v);
#else
  return F32{KIP_MM(max_ps)(limit.raw, v.raw)};
#endif
}

/// Floats as 32-bit integers, truncated toward zero or rounded as the processor is set to. What does not fit, and NaN,
/// becomes the least integer.
#if KIP_ISA == KIP_ISA_PORTABLE
KIP_INLINE I32 truncated(F32 v) {
  const auto fits = hn::And(hn::Ge(v, set(-2147483648.f)), hn::Lt(v, set(2147483648.f)));
  const I32 integers = hn::ConvertTo(Tag<int32_t>(), hn::IfThenElseZero(fits, v));
  return hn::IfThenElse(hn::RebindMask(Tag<int32_t>(), fits), integers, set<int32_t>(INT32_MIN));
}
KIP_INLINE I32 rounded(F32 v) {
#if HWY_ARCH_ARM_A64 && HWY_TARGET != HWY_EMU128
  return truncated(F32{vrndiq_f32(v.raw)});
#else
  alignas(16) float lanes[kLanes<float>];
  hn::Store(v, Tag<float>(), lanes);
  for (float& lane : lanes) lane = std::nearbyint(lane);
  return truncated(hn::Load(Tag<float>(), lanes));
#endif
}
#else
KIP_INLINE I32 truncated(F32 v) { return I32{KIP_MM(cvttps_epi32)(v.raw)}; }
KIP_INLINE I32 rounded(F32 v) { return I32{KIP_MM(cvtps_epi32)(v.raw)}; }
#endif

/// Doubles as floats, those of `lower` first; what is too large becomes infinite.
KIP_INLINE F32 toFloats(F64 lower, F64 upper) {
#if HWY_TARGET == HWY_EMU128  // there Highway saturates at the largest float
  F32 floats;
  for (int i = 0; i < kLanes<double>; ++i) {
    floats.raw[i] = static_cast<float>(lower.raw[i]), floats.raw[kLanes<double> + i] = static_cast<float>(upper.raw[i]);
  }
  return floats;
#else
  const hn::Half<Tag<float>> half;
  return hn::Combine(Tag<float>(), hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
#endif
}

/// The sum of v and `more` where the mask is set, v elsewhere.
template <class Mask>
KIP_INLINE F32 addWhere(Mask mask, F32 v, F32 more) {
  // With mask registers, that is one instruction.
  if constexpr (KIP_ISA == KIP_ISA_AVX512) return hn::IfThenElse(mask, hn::Add(v, more), v);
  return hn::Add(v, hn::IfThenElseZero(mask, more));
}

// ---------------------------------------------------------------------------------------------------------------------
// Narrowing, within blocks

/// 16-bit lanes saturated to bytes: in each block those of `lower`, then those of `upper`.
KIP_INLINE U8 packBytes(I16 lower, I16 upper) {
#if KIP_ISA == KIP_ISA_PORTABLE
  const auto half = hn::Half<Tag<uint8_t>>();
  return hn::Combine(Tag<uint8_t>(), hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
#else
  return U8{KIP_MM(packus_epi16)(lower.raw, upper.raw)};
#endif
}

/// 32-bit lanes saturated to signed 16 bits: in each block those of `lower`, then those of `upper`.
KIP_INLINE I16 packWords(I32 lower, I32 upper) {
#if KIP_ISA == KIP_ISA_PORTABLE
  const auto half = hn::Half<Tag<int16_t>>();
  return hn::Combine(Tag<int16_t>(), hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
#else
  return I16{KIP_MM(packs_epi32)(lower.raw, upper.raw)};
#endif
}

/// 32-bit lanes saturated to unsigned 16 bits: in each block those of `lower`, then those of `upper`.
KIP_INLINE U16 packUnsignedWords(I32 lower, I32 upper) {
#if KIP_ISA == KIP_ISA_PORTABLE
  const auto half = hn::Half<Tag<uint16_t>>();
  return hn::Combine(Tag<uint16_t>(), hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
#elif KIP_ISA <= KIP_ISA_SSSE3
  // Only signed saturation exists: bias by half the range, not below zero, and back.
  const I32 bias = set<int32_t>(32768);
  const auto biased = [&](I32 v)
                          KIP_INLINE_LAMBDA { return hn::Sub(hn::And(v, hn::Not(hn::BroadcastSignBit(v))), bias); };
  return hn::Xor(as<uint16_t>(packWords(biased(lower), biased(upper))), set<uint16_t>(0x8000));
#else
  return U16{KIP_MM(packus_epi32)(lower.raw, upper.raw)};
#endif
}

/// The even, or the odd, 32-bit lanes: in each block those of `lower`, then those of `upper`.
KIP_INLINE I32 evenLanes(I32 lower, I32 upper) {
#if KIP_ISA == KIP_ISA_PORTABLE
  return hn::ConcatEven(Tag<int32_t>(), upper, lower);
#else
  return as<int32_t>(F32{KIP_MM(shuffle_ps)(as<float>(lower).raw, as<float>(upper).raw, _MM_SHUFFLE(2, 0, 2, 0))});
#endif
}
KIP_INLINE I32 oddLanes(I32 lower, I32 upper) {
#if KIP_ISA == KIP_ISA_PORTABLE
  return hn::ConcatOdd(Tag<int32_t>(), upper, lower);
#else
  return as<int32_t>(F32{KIP_MM(shuffle_ps)(as<float>(lower).raw, as<float>(upper).raw, _MM_SHUFFLE(3, 1, 3, 1))});
#endif
}

// ---------------------------------------------------------------------------------------------------------------------
// Products

/// The even and the odd bytes as 16-bit lanes, in order.
KIP_INLINE I16 evenBytes(U8 v) { return hn::And(as<int16_t>(v), set<int16_t>(0xFF)); }
KIP_INLINE I16 oddBytes(U8 v) { return as<int16_t>(hn::ShiftRight<8>(as<uint16_t>(v))); }
/// The same of signed bytes.
KIP_INLINE I16 evenBytes(I8 v) { return hn::ShiftRight<8>(hn::ShiftLeft<8>(as<int16_t>(v))); }
KIP_INLINE I16 oddBytes(I8 v) { return hn::ShiftRight<8>(as<int16_t>(v)); }

/// Products of 16-bit lanes, summed over each even lane and its odd neighbour: exact in 32 bits.
KIP_INLINE I32 dotPairs(I16 a, I16 b) {
#if KIP_ISA == KIP_ISA_PORTABLE
  const auto even = [](I16 v) KIP_INLINE_LAMBDA { return hn::ShiftRight<16>(hn::ShiftLeft<16>(as<int32_t>(v))); };
  const auto odd = [](I16 v) KIP_INLINE_LAMBDA { return hn::ShiftRight<16>(as<int32_t>(v)); };
  return hn::Add(hn::Mul(even(a), even(b)), hn::Mul(odd(a), odd(b)));
#else
  return I32{KIP_MM(madd_epi16)(a.raw, b.raw)};
#endif
}

/// The same, added to a start.
KIP_INLINE I32 dotPairs(I32 start, I16 a, I16 b) {
#if KIP_ISA == KIP_ISA_AVX512
  // Highway 1.0.3 does not tell the compiler that this target has the instruction.
  asm("vpdpwssd %2, %1, %0" : "+v"(start.raw) : "v"(a.raw), "v"(b.raw));
  return start;
#else
  return hn::Add(start, dotPairs(a, b));
#endif
}

/// Products of bytes and signed factors, summed over each even byte and its odd neighbour: exact where the sums fit.
KIP_INLINE I16 dotBytes(U8 bytes, I8 factors) {
#if KIP_ISA <= KIP_ISA_SSE2
  return hn::Add(hn::Mul(evenBytes(bytes), evenBytes(factors)), hn::Mul(oddBytes(bytes), oddBytes(factors)));
#else
  return I16{KIP_MM(maddubs_epi16)(bytes.raw, factors.raw)};
#endif
}

/// Products of bytes and signed factors, summed over each four of them and a start.
KIP_INLINE I32 dotQuads(I32 start, U8 bytes, I8 factors) {
#if KIP_ISA == KIP_ISA_AVX512
  asm("vpdpbusd %2, %1, %0" : "+v"(start.raw) : "v"(bytes.raw), "v"(factors.raw));
  return start;
#else
  return dotPairs(dotPairs(start, evenBytes(bytes), evenBytes(factors)), oddBytes(bytes), oddBytes(factors));
#endif
}

// ---------------------------------------------------------------------------------------------------------------------
// Lanes of two vectors

/// The upper 16 bits of 32-bit lanes, those of `even` and of `odd` in turn.
KIP_INLINE I16 interleaveHigh16(I32 even, I32 odd) {
#if KIP_ISA == KIP_ISA_AVX512
  // One instruction on every processor, unlike a permute of two sources.
  const __m512i lower = _mm512_set1_epi32(0x80800302);
  const __m512i ofBlocks = _mm512_add_epi32(lower, _mm512_set4_epi32(0x0C0C, 0x0808, 0x0404, 0));
  return I16{_mm512_mask_shuffle_epi8(odd.raw, 0x3333333333333333, even.raw, ofBlocks)};
#else
  return hn::OddEven(as<int16_t>(odd), as<int16_t>(hn::ShiftRight<16>(as<uint32_t>(even))));
#endif
}

/// One more where a mask says so.
KIP_INLINE U16 incrementWhere(hn::Mask<Tag<int16_t>> mask, U16 v) {
#if KIP_ISA == KIP_ISA_AVX512
  return U16{_mm512_mask_sub_epi16(v.raw, mask.raw, v.raw, _mm512_set1_epi16(-1))};
#else
  return hn::Sub(v, as<uint16_t>(hn::VecFromMask(Tag<int16_t>(), mask)));
#endif
}

/// The blocks of two vectors alternately, in two vectors.
template <class V>
KIP_INLINE void interleaveBlocks(V first, V second, V& lower, V& upper) {
#if KIP_ISA == KIP_ISA_AVX512
  const __m512i ofLower = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
  const __m512i ofUpper = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
  const V from = first;
  lower = V{_mm512_permutex2var_epi64(from.raw, ofLower, second.raw)};
  upper = V{_mm512_permutex2var_epi64(from.raw, ofUpper, second.raw)};
#else
  if constexpr (kBlocksPerVector == 1) {
    lower = first, upper = second;
  } else {
    const hn::DFromV<V> d;
    lower = hn::ConcatLowerLower(d, second, first), upper = hn::ConcatUpperUpper(d, second, first);
  }
#endif
}

/// Of 32-bit or 16-bit lanes, those of the first vector where the bits of kFirst are set, elsewhere those of the second
/// vector; the bits are those of a block's lanes.
template <int kFirst, class V>
KIP_INLINE V blendInBlocks(V first, V second) {
  constexpr int kLanesPerBlock = 16 / sizeof(hn::TFromV<V>);
#if KIP_ISA == KIP_ISA_SSE4 || KIP_ISA == KIP_ISA_AVX2
  if constexpr (kLanesPerBlock == 8) return V{KIP_MM(blend_epi16)(second.raw, first.raw, kFirst)};
  if constexpr (kLanesPerBlock == 4) {
    constexpr int kEachBlock = kBlocksPerVector == 2 ? kFirst * 0b10001 : kFirst;
    return as<hn::TFromV<V>>(F32{KIP_MM(blend_ps)(as<float>(second).raw, as<float>(first).raw, kEachBlock)});
  }
#endif
  using Bits = hwy::MakeUnsigned<hn::TFromV<V>>;
  alignas(16) static constexpr struct Table {
    Bits lanes[kLanesPerBlock];
    constexpr Table() : lanes() {
      for (int i = 0; i < kLanesPerBlock; ++i) lanes[i] = kFirst >> i & 1 ? static_cast<Bits>(-1) : 0;
    }
  } kTable;
  const auto isFirst = as<hn::TFromV<V>>(hn::LoadDup128(Tag<Bits>(), kTable.lanes));
  return hn::IfThenElse(hn::MaskFromVec(isFirst), first, second);
}

/// Three or four interleaved channels at any address, of fewer lanes than a vector has, and the inverse. Highway's
/// emulation takes samples one by one, which want to be aligned.
template <class D, class... V>
KIP_INLINE void loadInterleaved(D d, const uint8_t* bytes, V&... channels) {
  using T = hn::TFromD<D>;
  const T* from = reinterpret_cast<const T*>(bytes);
#if HWY_TARGET == HWY_EMU128
  T aligned[sizeof...(V) * hn::MaxLanes(d)];
  from = static_cast<const T*>(std::memcpy(aligned, bytes, sizeof(aligned)));
#endif
  if constexpr (sizeof...(V) == 3) {
    hn::LoadInterleaved3(d, from, channels...);
  } else {
    hn::LoadInterleaved4(d, from, channels...);
  }
}
template <class D, class... V>
KIP_INLINE void storeInterleaved(D d, uint8_t* bytes, V... channels) {
  using T = hn::TFromD<D>;
  T* to = reinterpret_cast<T*>(bytes);
#if HWY_TARGET == HWY_EMU128
  T aligned[sizeof...(V) * hn::MaxLanes(d)];
  to = aligned;
#endif
  if constexpr (sizeof...(V) == 3) {
    hn::StoreInterleaved3(channels..., d, to);
  } else {
    hn::StoreInterleaved4(channels..., d, to);
  }
#if HWY_TARGET == HWY_EMU128
  std::memcpy(bytes, aligned, sizeof(aligned));
#endif
}

// ---------------------------------------------------------------------------------------------------------------------
// Look-ups. On x86, loads of single entries, with the places stored first and then taken one by one, are faster than
// gather instructions.

/// Places that have been stored stay in memory: the compiler would take them out of the vector after all.
template <size_t kCount>
KIP_INLINE void keepInMemory([[maybe_unused]] uint32_t (&places)[kCount]) {
#if HWY_TARGET != HWY_EMU128  // where vectors are in memory
  asm("" : "+m"(places));
#endif
}

#if KIP_ISA_SSE2 <= KIP_ISA && KIP_ISA <= KIP_ISA_AVX2
/// The places of a table in memory.
class Places {
 public:
  KIP_INLINE explicit Places(I32 places) {
    hn::Store(as<uint32_t>(places), Tag<uint32_t>(), at_);
    keepInMemory(at_);
  }

  KIP_INLINE I32 entries(const int32_t* table) const {
    const auto entry = [&](int i) KIP_INLINE_LAMBDA { return _mm_cvtsi32_si128(table[at_[i]]); };
    return vectorOf([&](int i) KIP_INLINE_LAMBDA {
      return _mm_unpacklo_epi64(_mm_unpacklo_epi32(entry(i), entry(i + 1)),
                                _mm_unpacklo_epi32(entry(i + 2), entry(i + 3)));
    });
  }
  /// Rows of two floats: of each four places, those of the first two, or of the last two.
  template <int kHalf>
  KIP_INLINE I32 rows(const float (*table)[2]) const {
    const auto row = [&](int i) KIP_INLINE_LAMBDA { return reinterpret_cast<const __m64*>(table[at_[i]]); };
    return vectorOf([&](int i) KIP_INLINE_LAMBDA {
      const __m128i first = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(row(i + 2 * kHalf)));
      return _mm_castps_si128(_mm_loadh_pi(_mm_castsi128_ps(first), row(i + 2 * kHalf + 1)));
    });
  }

 private:
  /// The blocks for the places from 0 on, from 4 on.
  template <class Block>
  KIP_INLINE static I32 vectorOf(const Block& block) {
#if KIP_ISA == KIP_ISA_AVX2
    return I32{_mm256_inserti128_si256(_mm256_castsi128_si256(block(0)), block(4), 1)};
#else
    return I32{block(0)};
#endif
  }

  alignas(32) uint32_t at_[kLanes<float>];
};
#endif

/// Of each block's 16 table bytes the one at the index's low four bits; 0 where the index's top bit is set.
KIP_INLINE U8 lookUp(U8 table, U8 index) {
  if constexpr (KIP_ISA < KIP_ISA_SSSE3) index = hn::And(index, set<uint8_t>(0x8F));
  return hn::TableLookupBytesOr0(table, index);
}

/// The entries of a table of 256 bytes.
KIP_INLINE U8 lookUp(const uint8_t (&table)[256], U8 index) {
#if KIP_ISA == KIP_ISA_SSE2
  __m128i entries = index.raw;
  const auto two = [&](auto lane) KIP_INLINE_LAMBDA {
    const int places = _mm_extract_epi16(index.raw, lane);
    entries = _mm_insert_epi16(entries, table[places & 0xFF] | table[places >> 8] << 8, lane);
  };
  two(std::integral_constant<int, 0>()), two(std::integral_constant<int, 1>());
  two(std::integral_constant<int, 2>()), two(std::integral_constant<int, 3>());
  two(std::integral_constant<int, 4>()), two(std::integral_constant<int, 5>());
  two(std::integral_constant<int, 6>()), two(std::integral_constant<int, 7>());
  return U8{entries};
#else
  alignas(64) uint8_t bytes[kLanes<uint8_t>];
  hn::Store(index, Tag<uint8_t>(), bytes);
  for (uint8_t& byte : bytes) byte = table[byte];
  return hn::Load(Tag<uint8_t>(), bytes);
#endif
}

/// The entries at the given places of a table.
KIP_INLINE I32 lookUp(const int32_t* table, I32 place) {
#if KIP_ISA_SSE2 <= KIP_ISA && KIP_ISA <= KIP_ISA_AVX2
  return Places(place).entries(table);
#else
  return hn::GatherIndex(Tag<int32_t>(), table, place);
#endif
}

/// The rows at the given places of a table of two columns.
KIP_INLINE void lookUpRows(const float (*table)[2], I32 place, F32& first, F32& second) {
#if KIP_ISA_SSE2 <= KIP_ISA && KIP_ISA <= KIP_ISA_AVX2
  const Places places(place);
  const I32 lower = places.rows<0>(table), upper = places.rows<1>(table);
  first = as<float>(evenLanes(lower, upper));
  second = as<float>(oddLanes(lower, upper));
#else
  const I32 start = hn::Add(place, place);
  first = hn::GatherIndex(Tag<float>(), table[0], start);
  second = hn::GatherIndex(Tag<float>(), table[0] + 1, start);
#endif
}

/// The entries at the given places, modulo their number, of a table of two vectors.
KIP_INLINE F32 lookUpInTwo(const float* table, I32 place) {
#if KIP_ISA == KIP_ISA_AVX512
  return F32{_mm512_permutex2var_ps(_mm512_load_ps(table), place.raw, _mm512_load_ps(table + kLanes<float>))};
#else
  return hn::GatherIndex(Tag<float>(), table, hn::And(place, set<int32_t>(2 * kLanes<float> - 1)));
#endif
}
KIP_INLINE F64 lookUpInTwo(const double* table, I64 place) {
#if KIP_ISA == KIP_ISA_AVX512
  return F64{_mm512_permutex2var_pd(_mm512_load_pd(table), place.raw, _mm512_load_pd(table + kLanes<double>))};
#else
  return hn::GatherIndex(Tag<double>(), table, hn::And(place, set<int64_t>(2 * kLanes<double> - 1)));
#endif
}

/// The pairs of doubles at the places of the next lanes, counted in doubles, of a table that is aligned to pairs: the
/// first of each, and the second of each.
KIP_INLINE void lookUpPairs(const double* table, const uint32_t* places, F64& first, F64& second) {
  const auto pair = [&](int i) KIP_INLINE_LAMBDA { return hn::Load(hn::CappedTag<double, 2>(), table + places[i]); };
  // The pairs of lanes 0, 2, 4 ... and of lanes 1, 3, 5 ..., a block each.
  const auto blocks = [&](int from) KIP_INLINE_LAMBDA {
#if KIP_ISA == KIP_ISA_AVX512
    const auto half = [&](int i)
                          KIP_INLINE_LAMBDA { return hn::Combine(hn::CappedTag<double, 4>(), pair(i + 2), pair(i)); };
    return hn::Combine(Tag<double>(), half(from + 4), half(from));
#elif KIP_ISA == KIP_ISA_AVX2
    return hn::Combine(Tag<double>(), pair(from + 2), pair(from));
#else
    return pair(from);
#endif
  };
  const F64 even = blocks(0), odd = blocks(1);
  first = hn::InterleaveLower(even, odd), second = hn::InterleaveUpper(Tag<double>(), even, odd);
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
