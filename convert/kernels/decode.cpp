// YCbCr of more than 8 bits to interleaved RGB of 8 bits, without lanes in between.
#include "kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/decode.cpp"
#include "hwy/foreach_target.h"

#include "kernels/decode-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using convert::ChromaColumns;
using convert::DecodeWork;
using convert::IntegerMatrix;

template <ChromaColumns kOf>
class Decode {
 public:
  using Luma = uint16_t;
  using Chroma = uint16_t;
  static constexpr ChromaColumns kColumns = kOf;

  KIP_INLINE explicit Decode(const DecodeWork& work)
      : mask_(set<uint16_t>(work.matrix->mask[0])),
        centre_(set<uint16_t>(work.matrix->centre[0])),
        raise_(work.matrix->raise[0]) {
    const IntegerMatrix& m = *work.matrix;
    for (int o = 0; o < 3; ++o) {
      start_[o] = hn::LoadDup128(Tag<int32_t>(), m.start[o][work.row % 4]);
      shift_[o] = m.shift[o];
    }
    firstFactors_ = setPairs(m.factor[0][0], m.factor[0][1]);
    secondFactors_[0] = setPairs(m.factor[1][0], m.factor[1][1]);
    secondFactors_[1] = setPairs(0, m.factor[1][2]);
    thirdFactors_ = setPairs(m.factor[2][0], m.factor[2][2]);
  }

  KIP_INLINE void decode(const uint8_t* luma, const uint8_t* first, const uint8_t* third, U8 (&v)[3]) const {
    const Halves y = loadLuma(luma), a = loadChroma(first), b = loadChroma(third);
    I16 sums[3][2];
    for (int half = 0; half < 2; ++half) convert(y.of[half], a.of[half], b.of[half], half, sums);
    for (int o = 0; o < 3; ++o) v[o] = packBytesInOrder(sums[o][0], sums[o][1]);
  }

 private:
  KIP_INLINE Halves loadLuma(const uint8_t* from) const {
    const auto half = [&](int which) KIP_INLINE_LAMBDA {
      const U16 masked = hn::And(loadLane<uint16_t>(from, which), mask_);
      return as<int16_t>(hn::Sub(hn::ShiftLeftSame(masked, raise_), centre_));
    };
    return {{half(0), half(1)}};
  }

  KIP_INLINE static I16 loadShared(const uint8_t* from, int offset) {
    return as<int16_t>(loadLane<uint16_t>(from + offset * 2));
  }
  KIP_INLINE static Halves loadChroma(const uint8_t* from) {
    if constexpr (kColumns == ChromaColumns::kEach) {
      return {{as<int16_t>(loadLane<uint16_t>(from, 0)), as<int16_t>(loadLane<uint16_t>(from, 1))}};
    } else {
      const I16 own = loadShared(from, 0);
      I16 even = own, odd = own;
      if constexpr (kColumns == ChromaColumns::kCosited) {
        even = hn::Add(own, own), odd = hn::Add(own, loadShared(from, 1));
      } else if constexpr (kColumns == ChromaColumns::kMiddle) {
        const I16 three = hn::Add(own, hn::Add(own, own));
        even = hn::Add(three, loadShared(from, -1)), odd = hn::Add(three, loadShared(from, 1));
      }
      Halves v;
      sideBySide<int16_t>(even, odd, v.of[0], v.of[1]);
      return v;
    }
  }

  KIP_INLINE void convert(I16 y, I16 a, I16 b, int half, I16 (&sums)[3][2]) const {
    const auto upper = [](I16 v, I16 w) KIP_INLINE_LAMBDA { return hn::InterleaveUpper(Tag<int16_t>(), v, w); };
    const I16 withFirst[2] = {hn::InterleaveLower(y, a), upper(y, a)};
    const I16 withThird[2] = {hn::InterleaveLower(y, b), upper(y, b)};
    I32 v[3][2];
    for (int k = 0; k < 2; ++k) {
      v[0][k] = dotPairs(start_[0], withFirst[k], firstFactors_);
      v[1][k] = dotPairs(dotPairs(start_[1], withFirst[k], secondFactors_[0]), withThird[k], secondFactors_[1]);
      v[2][k] = dotPairs(start_[2], withThird[k], thirdFactors_);
    }
    for (int o = 0; o < 3; ++o) {
      sums[o][half] = packWords(hn::ShiftRightSame(v[o][0], shift_[o]), hn::ShiftRightSame(v[o][1], shift_[o]));
    }
  }

  U16 mask_, centre_;
  int raise_;
  int shift_[3];
  I32 start_[3];
  I16 firstFactors_, secondFactors_[2], thirdFactors_;
};

}  // namespace

const convert::DecodeKernels* decodeKernels() {
  using enum ChromaColumns;
  static constexpr convert::DecodeKernels kKernels = {{DecodeRow<Decode<kEach>>::run, DecodeRow<Decode<kPairs>>::run,
                                                       DecodeRow<Decode<kCosited>>::run,
                                                       DecodeRow<Decode<kMiddle>>::run}};
  return &kKernels;
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
HWY_EXPORT(decodeKernels);
namespace convert {
const DecodeKernels& decodeKernels() { return *HWY_DYNAMIC_DISPATCH(decodeKernels)(); }
}  // namespace convert
}  // namespace kip
#endif
