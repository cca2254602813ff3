// Look-ups in a constant table of 256 bytes that is nearly straight from one sixteenth to the next, such as a transfer
// curve: the very bytes of the table, by a few shuffles instead of 256 entries in memory. Where a shuffle reaches half
// of the table, it is looked up as it is.

#include <algorithm>

#if defined(KIP_ENGINE_BYTETABLE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_BYTETABLE_INL_H_
#undef KIP_ENGINE_BYTETABLE_INL_H_
#else
#define KIP_ENGINE_BYTETABLE_INL_H_
#endif

#include "engine/simd-inl.h"

#ifndef KIP_ENGINE_BYTETABLE_ONCE
#define KIP_ENGINE_BYTETABLE_ONCE
namespace kip {

/// A table of bytes as a line through each of its sixteenths. Entry i of sixteenth s is
/// base[s] + slope[s] i / 32, rounded down, and one more where bit i of the sixteenth is set. The first sixteenths may
/// be too curved for that.
struct TableLines {
  static constexpr int kStepsPerUnit = 32;  // of slope

  uint8_t base[16] = {};
  uint8_t slope[16] = {};
  uint8_t bits[2][16] = {};     // of the entries 0 .. 7 and 8 .. 15 of each sixteenth
  uint8_t curved[16][16] = {};  // sixteenth k is the sum of curved[k], curved[k + 1], ...
  int curvedCount = 0;

  constexpr explicit TableLines(const uint8_t (&table)[256]) {
    for (int s = 0; s < 16; ++s) {
      if (!fit(table + 16 * s, s)) curvedCount = s + 1;
    }
    for (int s = curvedCount - 1; s >= 0; --s) {
      base[s] = slope[s] = bits[0][s] = bits[1][s] = 0;
      for (int i = 0; i < 16; ++i) {
        curved[s][i] = table[16 * s + i] - (s + 1 < curvedCount ? table[16 * (s + 1) + i] : 0);
      }
    }
  }

 private:
  /// The least slope that leaves each entry at most 1 above the line.
  constexpr bool fit(const uint8_t* entries, int s) {
    for (int k = 0; k < 256; ++k) {
      int least = 255, most = -255;
      const auto above = [&](int i) { return entries[i] - k * i / kStepsPerUnit; };
      for (int i = 0; i < 16; ++i) least = std::min(least, above(i)), most = std::max(most, above(i));
      if (most - least > 1) continue;
      base[s] = static_cast<uint8_t>(least), slope[s] = static_cast<uint8_t>(k);
      for (int i = 0; i < 16; ++i) bits[i / 8][s] |= (above(i) - least) << i % 8;
      return true;
    }
    return false;
  }
};

}  // namespace kip
#endif

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

#if KIP_HAS_64_ENTRY_TABLES
/// Turns indices into the entries of any table: there are instructions for 128 entries.
class AnyByteTable {
 public:
  KIP_INLINE explicit AnyByteTable(const uint8_t (&table)[256]) {
    for (int i = 0; i < 4; ++i) quarters_[i] = hn::LoadU(Tag<uint8_t>(), table + 64 * i);
  }

  KIP_INLINE U8 operator()(U8 index) const {
    const auto inHalf = [&](int half) KIP_INLINE_LAMBDA {
      return as<int8_t>(permute(quarters_[2 * half], quarters_[2 * half + 1], index));
    };
    return as<uint8_t>(hn::IfNegativeThenElse(as<int8_t>(index), inHalf(1), inHalf(0)));
  }

 protected:
  U8 quarters_[4];
};

/// Turns indices into the entries of a constant table.
template <const uint8_t (&kTable)[256]>
class ByteTable : public AnyByteTable {
 public:
  KIP_INLINE ByteTable() : AnyByteTable(kTable) {
    for (U8& quarter : quarters_) quarter = opaque(quarter);  // stays in a register
  }
};
#else
/// Turns indices into the entries of a constant table.
template <const uint8_t (&kTable)[256]>
class ByteTable {
 public:
  KIP_INLINE ByteTable() {}

  KIP_INLINE U8 operator()(U8 index) const {
    if constexpr (!kHasByteShuffle) return lookUp(kTable, index);
    const U8 sixteenth = hn::ShiftRight<4>(index), place = hn::And(index, set<uint8_t>(15));
    U8 entry = hn::Add(lookUp(base_, sixteenth), line(lookUp(slope_, sixteenth), place));
    entry = hn::Sub(entry, as<uint8_t>(bit(sixteenth, place)));
    for (int k = 0; k < kLines.curvedCount; ++k) {
      // Indices within sixteenth k or before it keep their top bit clear.
      const U8 within = hn::SaturatedAdd(index, set<uint8_t>(128 - 16 * (k + 1)));
      entry = hn::Add(entry, lookUp(blockTable(kLines.curved[k]), within));
    }
    return entry;
  }

 private:
  static constexpr TableLines kLines = TableLines(kTable);
  static_assert(kLines.curvedCount <= 8, "the table is too curved");

  /// slope x place / 32, as the upper bytes of products by 256 / 32.
  KIP_INLINE static U8 line(U8 slope, U8 place) {
    static_assert(TableLines::kStepsPerUnit == 256 >> 3);
    const auto place8 = hn::ShiftLeft<3>(as<uint16_t>(place)), odd = set<uint16_t>(0xFF00);
    const I16 ofEven = dotBytes(slope, as<int8_t>(hn::AndNot(odd, place8)));
    const I16 ofOdd = dotBytes(slope, as<int8_t>(hn::And(odd, place8)));
    return hn::OddEven(as<uint8_t>(ofOdd), as<uint8_t>(hn::ShiftRight<8>(as<uint16_t>(ofEven))));
  }

  /// -1 where the bit of the entry is set.
  KIP_INLINE I8 bit(U8 sixteenth, U8 place) const {
    alignas(16) static constexpr uint8_t kBits[16] = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
    // IfNegativeThenElse of some targets takes each bit by itself.
    I8 upper = as<int8_t>(hn::ShiftLeft<4>(as<uint16_t>(place)));
    if constexpr (!kBlendsBySign) upper = hn::BroadcastSignBit(upper);
    const U8 bits = as<uint8_t>(hn::IfNegativeThenElse(upper, as<int8_t>(lookUp(blockTable(kLines.bits[1]), sixteenth)),
                                                       as<int8_t>(lookUp(blockTable(kLines.bits[0]), sixteenth))));
    const U8 one = lookUp(blockTable(kBits), place);
    return as<int8_t>(hn::VecFromMask(Tag<uint8_t>(), hn::Eq(hn::And(bits, one), one)));
  }

  U8 base_ = blockTable(kLines.base), slope_ = blockTable(kLines.slope);
};
#endif

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
