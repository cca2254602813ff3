// The arithmetic vocabulary of the kernels: full vectors of the sample types, and the steps within 128-bit blocks that
// widening, packing and summing need. Widening within blocks reorders the samples of vectors of more than one block;
// packing the results undoes it.

#if defined(KIP_ENGINE_SIMD_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_SIMD_INL_H_
#undef KIP_ENGINE_SIMD_INL_H_
#else
#define KIP_ENGINE_SIMD_INL_H_
#endif

#include "engine/isa-inl.h"
#include "engine/permute64-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

// Formulas with constants.
#define KIP_WITH_CONSTANT(symbol)                                                   \
  KIP_INLINE F32 operator symbol(F32 a, float b) { return a symbol set<float>(b); } \
  KIP_INLINE F32 operator symbol(float a, F32 b) { return set<float>(a) symbol b; }
KIP_WITH_CONSTANT(+)
KIP_WITH_CONSTANT(-)
KIP_WITH_CONSTANT(*)
KIP_WITH_CONSTANT(/)
#undef KIP_WITH_CONSTANT

/// The lower and the upper bytes of each block as 16-bit lanes.
KIP_INLINE I16 lowerBytes(U8 v) { return as<int16_t>(hn::InterleaveLower(v, hn::Zero(Tag<uint8_t>()))); }
KIP_INLINE I16 upperBytes(U8 v) {
  return as<int16_t>(hn::InterleaveUpper(Tag<uint8_t>(), v, hn::Zero(Tag<uint8_t>())));
}

/// The lower and the upper 16-bit lanes of each block, zero-extended to 32 bits.
KIP_INLINE I32 lowerWords(U16 v) { return as<int32_t>(hn::InterleaveLower(v, hn::Zero(Tag<uint16_t>()))); }
KIP_INLINE I32 upperWords(U16 v) {
  return as<int32_t>(hn::InterleaveUpper(Tag<uint16_t>(), v, hn::Zero(Tag<uint16_t>())));
}

/// The lower and the upper 16-bit lanes of each block as floats.
KIP_INLINE F32 lowerFloats(U16 v) { return hn::ConvertTo(Tag<float>(), lowerWords(v)); }
KIP_INLINE F32 upperFloats(U16 v) { return hn::ConvertTo(Tag<float>(), upperWords(v)); }

/// v below 0 is 0, above 1 is 1; NaN stays.
KIP_INLINE F32 toUnit(F32 v) { return atMost(atLeast(v, set(0.f)), set(1.f)); }

/// The greater of v and another number; where v is NaN, that number.
KIP_INLINE F32 numberAtLeast(F32 v, F32 least) { return atLeast(least, v); }

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

/// Bytes of the lower or, if `half` is 1, of the upper halves of the blocks of two vectors side by side.
KIP_INLINE U8 sideBySideInBlocks(U8 first, U8 second, int half) {
  return half == 0 ? hn::InterleaveLower(first, second) : hn::InterleaveUpper(Tag<uint8_t>(), first, second);
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
  if constexpr (kHasByteShuffle) return shuffleBlocks(packBytes(even, odd), kAlternate);
  return hn::InterleaveLower(packBytes(even, even), packBytes(odd, odd));
}

/// The even, or the odd, 16-bit lanes of two vectors as pairs (a, b).
KIP_INLINE I16 pairEven(I16 a, I16 b) { return hn::OddEven(as<int16_t>(hn::ShiftLeft<16>(as<int32_t>(b))), a); }
KIP_INLINE I16 pairOdd(I16 a, I16 b) { return hn::OddEven(b, as<int16_t>(hn::ShiftRight<16>(as<uint32_t>(a)))); }

#if !KIP_HAS_64_ENTRY_TABLES
/// Eight bits of each 32-bit lane, from bit kFirst on: those of the first block of each vector, of the second block and
/// so on. (Permutes give all of the first vector, of the second and so on.)
template <int kFirst>
KIP_INLINE U8 bytesFrom(const I32 (&lanes)[4]) {
  const auto words = [&](int half) KIP_INLINE_LAMBDA {
    const auto byte = [](I32 v) KIP_INLINE_LAMBDA { return hn::And(hn::ShiftRight<kFirst>(v), set<int32_t>(0xFF)); };
    return packWords(byte(lanes[2 * half]), byte(lanes[2 * half + 1]));
  };
  return packBytes(words(0), words(1));
}
#endif

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

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
