// YCbCr of more than 8 bits to interleaved RGB of 8 bits, without lanes in between.
#include "kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/decode.cpp"
#include "hwy/foreach_target.h"

#include "engine/interleave-inl.h"
#include "kernels/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using convert::ChromaColumns;
using convert::DecodeWork;
using convert::IntegerMatrix;
using convert::Interleaving;

/// A batch of samples in two vectors of 16-bit lanes.
struct Halves {
  I16 of[2];
};

template <ChromaColumns kColumns>
class Decode {
 public:
  static constexpr int kBatch = kLanes<uint8_t>;

  static void run(const DecodeWork& work) {
    const Decode decode(work);
    size_t x = 0;
    for (; x + kBatch <= work.pixels; x += kBatch) {
      decode.batch(work.luma + x * sizeof(uint16_t), work.first + chromaBytes(x), work.third + chromaBytes(x),
                   work.alpha + x, work.out + x * decode.bytesPerPixel());
    }
    if (x < work.pixels) decode.tail(work, x);
  }

 private:
  static constexpr bool kShared = kColumns != ChromaColumns::kEach;  // chroma samples of two pixels each

  KIP_INLINE explicit Decode(const DecodeWork& work)
      : interleaving_(work.interleaving),
        mask_(set<uint16_t>(work.matrix->mask[0])),
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

  KIP_INLINE int bytesPerPixel() const { return interleaving_ == Interleaving::kTriple ? 3 : 4; }
  static constexpr size_t chromaBytes(size_t pixels) { return (kShared ? pixels / 2 : pixels) * sizeof(uint16_t); }

  // Not inlined: it is the rare end of a row.
  HWY_NOINLINE void tail(const DecodeWork& work, size_t x) const {
    const size_t left = work.pixels - x;
    alignas(64) uint8_t luma[kBatch * sizeof(uint16_t)] = {}, alpha[kBatch] = {}, out[4 * kBatch];
    alignas(64) uint8_t chroma[2][kBatch * sizeof(uint16_t)] = {};
    std::memcpy(luma, work.luma + x * sizeof(uint16_t), left * sizeof(uint16_t));
    if (interleaving_ != Interleaving::kTriple) std::memcpy(alpha, work.alpha + x, left);
    // Shared chroma is in memory of our own, with room on both sides.
    const uint8_t* from[2] = {work.first + chromaBytes(x), work.third + chromaBytes(x)};
    for (int i = 0; i < 2 && !kShared; ++i) {
      std::memcpy(chroma[i], from[i], chromaBytes(left));
      from[i] = chroma[i];
    }
    batch(luma, from[0], from[1], alpha, out);
    std::memcpy(work.out + x * bytesPerPixel(), out, left * bytesPerPixel());
  }

  KIP_INLINE void batch(const uint8_t* luma, const uint8_t* first, const uint8_t* third, const uint8_t* alpha,
                        uint8_t* out) const {
    const Halves y = loadLuma(luma), a = loadChroma(first), b = loadChroma(third);
    I16 sums[3][2];
    for (int half = 0; half < 2; ++half) convert(y.of[half], a.of[half], b.of[half], half, sums);
    const auto pack = [](const I16(&v)[2]) KIP_INLINE_LAMBDA { return packBytesInOrder(v[0], v[1]); };
    const U8 v[3] = {pack(sums[0]), pack(sums[1]), pack(sums[2])};
    switch (interleaving_) {
      case Interleaving::kTriple:
        return ThreeChannels<uint8_t>::store(v[0], v[1], v[2], out);
      case Interleaving::kQuad:
        return FourInterleaved<uint8_t>::store(v[0], v[1], v[2], loadLane<uint8_t>(alpha), out);
      case Interleaving::kQuadAlphaFirst:
        return FourInterleaved<uint8_t>::store(loadLane<uint8_t>(alpha), v[0], v[1], v[2], out);
    }
  }

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
    if constexpr (!kShared) {
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

  Interleaving interleaving_;
  U16 mask_, centre_;
  int raise_;
  int shift_[3];
  I32 start_[3];
  I16 firstFactors_, secondFactors_[2], thirdFactors_;
};

}  // namespace

const convert::DecodeKernels* decodeKernels() {
  using enum ChromaColumns;
  static constexpr convert::DecodeKernels kKernels = {
      {Decode<kEach>::run, Decode<kPairs>::run, Decode<kCosited>::run, Decode<kMiddle>::run}};
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
