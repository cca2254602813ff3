// Look-ups in a constant table of 256 bytes, for vectors of indices.

#if defined(KIP_FRAME_BYTETABLE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_FRAME_BYTETABLE_INL_H_
#undef KIP_FRAME_BYTETABLE_INL_H_
#else
#define KIP_FRAME_BYTETABLE_INL_H_
#endif

#include "frame/simd-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// A table as sixteen shuffles. A shuffle gives 0 where the index's top bit is set and else looks only at the low four
/// bits. So each sixteenth of the table is kept as its differences (exclusive or) to the sixteenth before: while 16 is
/// taken off the index step by step, what it passes adds up to its own entry. Indices from 128 do the same with the
/// upper half.
template <const uint8_t (&kTable)[256]>
class ByteTable {
 public:
  /// Each index becomes its entry. Several vectors at once do not wait for each other.
  template <int kVectors>
  KIP_INLINE static void lookUp(U8 (&v)[kVectors]) {
    const U8 sixteen = set<uint8_t>(16);
    U8 lower[kVectors], upper[kVectors];
    for (int k = 0; k < kVectors; ++k) {
      lower[k] = staying(v[k]), upper[k] = staying(hn::Xor(v[k], set<uint8_t>(0x80)));
      v[k] = hn::Zero(Tag<uint8_t>());
    }
    for (int part = 0; part < 8; ++part) {
      for (int k = 0; k < kVectors; ++k) {
        const U8 below = HWY_NAMESPACE::lookUp(differences(part), lower[k]);
        const U8 above = HWY_NAMESPACE::lookUp(differences(8 + part), upper[k]);
        v[k] = hn::Xor(v[k], hn::Xor(below, above));
        lower[k] = hn::Sub(lower[k], sixteen), upper[k] = hn::Sub(upper[k], sixteen);
      }
    }
  }

 private:
  /// Indices with the top bit set keep it through all steps.
  KIP_INLINE static U8 staying(U8 index) { return hn::Or(index, as<uint8_t>(hn::BroadcastSignBit(as<int8_t>(index)))); }

  struct Parts {
    uint8_t of[16][16];
    constexpr Parts() : of() {
      for (int part = 0; part < 16; ++part) {
        for (int i = 0; i < 16; ++i) {
          of[part][i] = kTable[16 * part + i] ^ (part % 8 == 0 ? 0 : kTable[16 * (part - 1) + i]);
        }
      }
    }
  };
  KIP_INLINE static U8 differences(int part) {
    alignas(16) static constexpr Parts kParts;
    return hn::LoadDup128(Tag<uint8_t>(), kParts.of[part]);
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
