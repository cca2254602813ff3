// Permutes of the bytes of whole vectors, for targets with tables of 64 bytes: AVX-512 with VBMI.

#if defined(KIP_ENGINE_PERMUTE64_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_PERMUTE64_INL_H_
#undef KIP_ENGINE_PERMUTE64_INL_H_
#else
#define KIP_ENGINE_PERMUTE64_INL_H_
#endif

#include "engine/isa-inl.h"

#if KIP_HAS_64_ENTRY_TABLES
HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

KIP_INLINE U8 tableOf64(const uint8_t (&bytes)[64]) { return hn::Load(Tag<uint8_t>(), bytes); }

/// The bytes at the given places of a vector, or of two vectors, one after the other.
KIP_INLINE U8 permute(U8 v, const uint8_t (&places)[64]) {
  return U8{_mm512_permutexvar_epi8(tableOf64(places).raw, v.raw)};
}
KIP_INLINE U8 permute(U8 first, U8 second, U8 places) {
  return U8{_mm512_permutex2var_epi8(first.raw, places.raw, second.raw)};
}
KIP_INLINE U8 permute(U8 first, U8 second, const uint8_t (&places)[64]) {
  return permute(first, second, tableOf64(places));
}
/// The same with zeros for the odd bytes.
KIP_INLINE I16 permuteToWords(U8 first, U8 second, const uint8_t (&places)[64]) {
  constexpr __mmask64 kEven = 0x5555555555555555;
  return I16{_mm512_maskz_permutex2var_epi8(kEven, first.raw, tableOf64(places).raw, second.raw)};
}

/// Eight bits of each 32-bit lane, from bit kFirst on: all of the first vector, of the second and so on.
template <int kFirst>
KIP_INLINE U8 bytesFrom(const I32 (&lanes)[4]) {
  static constexpr struct Table {
    alignas(64) uint8_t whole[64];   // bytes of two vectors, twice
    alignas(64) uint8_t shifts[64];  // to the bits of the two lanes in each 64
    alignas(64) uint8_t places[64];  // of these in each vector's turn
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
    const __m512i shifts = tableOf64(kTable.shifts).raw;
    __m512i bytes = _mm512_multishift_epi64_epi8(shifts, lanes[0].raw);
    for (int k = 1; k < 4; ++k) {
      bytes = _mm512_mask_multishift_epi64_epi8(bytes, kFirstTwo << 2 * k, shifts, lanes[k].raw);
    }
    return permute(U8{bytes}, kTable.places);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();
#endif  // KIP_HAS_64_ENTRY_TABLES

#endif  // include guard per target
