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

/// The floats at places in a table. kTable.row is float[rows][columns]; the rows are a power of two.
template <const auto& kTable>
class FloatRows {
  static constexpr int kRows = std::extent_v<std::remove_reference_t<decltype(kTable.row)>, 0>;
  static constexpr int kColumns = std::extent_v<std::remove_reference_t<decltype(kTable.row)>, 1>;
  static_assert((kRows & (kRows - 1)) == 0);

 public:
  /// Any place modulo the number of rows.
  KIP_INLINE static I32 wrapped(I32 place) {
    return KIP_AVX512 ? place : hn::And(place, set<int32_t>(kRows - 1));  // permutes take the lower bits themselves
  }

#if KIP_AVX512
  KIP_INLINE explicit FloatRows(I32 place) : place_(place) {}
  KIP_INLINE F32 column(int c) const { return part<0, kRows>(kTurned.of[c]); }

 private:
  struct Columns {
    float of[kColumns][kRows];
    constexpr Columns() : of() {
      for (int i = 0; i < kRows; ++i) {
        for (int c = 0; c < kColumns; ++c) of[c][i] = kTable.row[i][c];
      }
    }
  };
  alignas(64) static constexpr Columns kTurned{};

  /// From the kCount rows of which kFrom is the first: permutes of two vectors, between which bits of the place choose.
  template <int kFrom, int kCount>
  KIP_INLINE F32 part(const float* column) const {
    constexpr int kHalf = kCount / 2;
    if constexpr (kHalf == kLanes<float>) {
      const float* from = column + kFrom;
      return F32{_mm512_permutex2var_ps(_mm512_load_ps(from), place_.raw, _mm512_load_ps(from + kHalf))};
    } else {
      return hn::IfThenElse(hn::RebindMask(Tag<float>(), hn::TestBit(place_, set<int32_t>(kHalf))),
                            part<kFrom + kHalf, kHalf>(column), part<kFrom, kHalf>(column));
    }
  }

  I32 place_;
#elif KIP_EMULATED
  explicit FloatRows(I32 place) : place_(place) {}
  F32 column(int c) const {
    F32 column;
    for (int i = 0; i < kLanes<float>; ++i) column.raw[i] = kTable.row[place_.raw[i]][c];
    return column;
  }

 private:
  I32 place_;
#else
  // Loads of single rows, with the places stored first and then taken one by one, are faster than gather instructions.
  static_assert(kColumns == 2);
  KIP_INLINE explicit FloatRows(I32 place) {
    alignas(32) uint32_t at[kLanes<float>];
    hn::Store(as<uint32_t>(place), Tag<uint32_t>(), at);
    asm("" : "+m"(at));  // or the compiler takes them out of the vector after all
    const I32 a = blocks([&](int i) KIP_INLINE_LAMBDA { return rows(at[i], at[i + 1]); });
    const I32 b = blocks([&](int i) KIP_INLINE_LAMBDA { return rows(at[i + 2], at[i + 3]); });
    column_[0] = as<float>(evenLanes(a, b));
    column_[1] = as<float>(oddLanes(a, b));
  }
  KIP_INLINE F32 column(int c) const { return column_[c]; }

 private:
  KIP_INLINE static __m128 rows(uint32_t first, uint32_t second) {
    const auto row = [](uint32_t at) KIP_INLINE_LAMBDA { return reinterpret_cast<const __m64*>(kTable.row[at]); };
    return _mm_loadh_pi(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(row(first)))), row(second));
  }
  /// A vector of blocks for the lanes 0 .. 3, 4 .. 7.
  template <class Block>
  KIP_INLINE static I32 blocks(const Block& block) {
#if HWY_TARGET == HWY_AVX2
    return as<int32_t>(F32{_mm256_insertf128_ps(_mm256_castps128_ps256(block(0)), block(4), 1)});
#else
    return as<int32_t>(F32{block(0)});
#endif
  }

  F32 column_[kColumns];
#endif
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
