// Look-ups in constant tables whose rows are floats: a vector for each column of the rows.

#if defined(KIP_ENGINE_FLOATTABLE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_FLOATTABLE_INL_H_
#undef KIP_ENGINE_FLOATTABLE_INL_H_
#else
#define KIP_ENGINE_FLOATTABLE_INL_H_
#endif

#include <type_traits>

#include "engine/simd-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// The rows of a table, a power of two of them.
template <const auto& kTable>
constexpr int kTableRows = std::extent_v<std::remove_reference_t<decltype(kTable.row)>, 0>;
template <const auto& kTable>
constexpr int kTableColumns = std::extent_v<std::remove_reference_t<decltype(kTable.row)>, 1>;

/// By permutes of vectors that hold the columns, between which bits of the place choose.
template <const auto& kTable>
class PermutedFloatRows {
  static constexpr int kRows = kTableRows<kTable>, kColumns = kTableColumns<kTable>;

 public:
  KIP_INLINE static I32 wrapped(I32 place) { return place; }  // permutes take the lower bits themselves

  KIP_INLINE explicit PermutedFloatRows(I32 place) : place_(place) {}
  KIP_INLINE F32 column(int c) const { return part<0, kRows>(kTurned.of[c]); }

 private:
  struct Columns {
    alignas(64) float of[kColumns][kRows];
    constexpr Columns() : of() {
      for (int i = 0; i < kRows; ++i) {
        for (int c = 0; c < kColumns; ++c) of[c][i] = kTable.row[i][c];
      }
    }
  };
  static constexpr Columns kTurned{};

  /// From the kCount rows of which kFrom is the first.
  template <int kFrom, int kCount>
  KIP_INLINE F32 part(const float* column) const {
    constexpr int kHalf = kCount / 2;
    if constexpr (kHalf == kLanes<float>) {
      return lookUpInTwo(column + kFrom, place_);
    } else {
      return hn::IfThenElse(hn::RebindMask(Tag<float>(), hn::TestBit(place_, set<int32_t>(kHalf))),
                            part<kFrom + kHalf, kHalf>(column), part<kFrom, kHalf>(column));
    }
  }

  I32 place_;
};

/// By loads of whole rows, of two columns each.
template <const auto& kTable>
class LoadedFloatRows {
  static_assert(kTableColumns<kTable> == 2);

 public:
  KIP_INLINE static I32 wrapped(I32 place) { return hn::And(place, set<int32_t>(kTableRows<kTable> - 1)); }

  KIP_INLINE explicit LoadedFloatRows(I32 place) { lookUpRows(kTable.row, place, column_[0], column_[1]); }
  KIP_INLINE F32 column(int c) const { return column_[c]; }

 private:
  F32 column_[2];
};

/// The floats at places in a table. kTable.row is float[rows][columns]; the rows are a power of two.
template <const auto& kTable>
using FloatRows = std::conditional_t<kHasFloatTables, PermutedFloatRows<kTable>, LoadedFloatRows<kTable>>;

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
