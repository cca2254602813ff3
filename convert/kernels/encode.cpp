// Interleaved RGB of 8 bits to luma, chroma or both, without lanes in between: means of neighbours and the matrix in
// one go.
#include "kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/encode.cpp"
#include "hwy/foreach_target.h"

#include "engine/interleave-inl.h"
#include "kernels/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using convert::ByteMatrix;
using convert::EncodeWork;
using convert::PixelMean;

/// Pixels of kBytes bytes as 32-bit lanes; the fourth byte is any.
template <int kBytes>
struct Pixels {
  static constexpr int kVector = kLanes<uint32_t>;
  static constexpr int kBatch = 4 * kVector;
  /// Pixels behind a batch that must be there to be read.
  static constexpr int kBeyond = kBytes == 4 ? 0 : (kUnit / 4 + 2) / 3;

  struct Tables {
    alignas(kUnit) uint8_t lanes[kUnit];  // a pixel after the other
    alignas(kUnit) uint8_t pairs[kUnit];  // samples of one channel of two pixels side by side
    constexpr Tables() : lanes(), pairs() {
      for (int i = 0; i < kUnit; ++i) {
        const auto place = [](int pixel, int sample) { return pixel * kBytes + (sample < kBytes ? sample : 0); };
        lanes[i] = static_cast<uint8_t>(place(i / 4, i % 4));
        pairs[i] = static_cast<uint8_t>(place(i / 8 * 2 + i % 2, i / 2 % 4));
      }
    }
  };
  static constexpr Tables kTables{};

  KIP_INLINE static U8 lanes(const uint8_t* from) {
    if constexpr (kBytes == 4) return loadLane<uint8_t>(from);
    if constexpr (!kHasByteShuffle) return threesToLanes<0>(loadBlocks(from, 12));
    return shuffleUnits(loadUnits(from, 12), kTables.lanes);
  }
  KIP_INLINE static U8 pairs(const uint8_t* from) {
    if constexpr (!kHasByteShuffle) {
      const U8 v = lanes(from), next = shiftDown<4>(v);
      const auto lower = as<uint64_t>(hn::InterleaveLower(v, next));
      const auto upper = as<uint64_t>(hn::InterleaveUpper(Tag<uint8_t>(), v, next));
      return as<uint8_t>(hn::InterleaveLower(lower, upper));
    }
    return shuffleUnits(loadUnits(from, kUnit / 4 * kBytes), kTables.pairs);
  }
};

/// Every pixel to kResults lanes.
template <int kBytes, int kResults>
class EncodePixels {
  using From = Pixels<kBytes>;

 public:
  static void run(const EncodeWork& work) {
    const EncodePixels encode(*work.matrix);
    constexpr size_t kBatch = From::kBatch;
    alignas(64) uint8_t in[(kBatch + From::kBeyond) * kBytes] = {}, out[kResults][kBatch];
    for (size_t x = 0; x < work.pixels; x += kBatch) {
      const size_t left = work.pixels - x;
      const uint8_t* from = work.row[0] + x * kBytes;
      uint8_t* to[kResults];
      for (int o = 0; o < kResults; ++o) to[o] = work.out[o] + x;
      if (HWY_UNLIKELY(left < kBatch + From::kBeyond)) {
        std::memcpy(in, from, std::min(left, kBatch) * kBytes);
        from = in;
        for (int o = 0; o < kResults; ++o) to[o] = out[o];
      }
      encode.batch(from, to);
      if (HWY_UNLIKELY(from == in)) {
        for (int o = 0; o < kResults; ++o) std::memcpy(work.out[o] + x, out[o], std::min(left, kBatch));
      }
    }
  }

 private:
  KIP_INLINE explicit EncodePixels(const ByteMatrix& matrix) {
    for (int o = 0; o < kResults; ++o) {
      start_[o] = set(matrix.start[o]), shift_[o] = matrix.shift[o];
      even_[o] = setPairs(matrix.factor[o][0], matrix.factor[o][2]);
      odd_[o] = setPairs(matrix.factor[o][1], matrix.factor[o][3]);
    }
  }

  KIP_INLINE void batch(const uint8_t* from, uint8_t* const* to) const {
    I32 sums[kResults][4];
    for (int k = 0; k < 4; ++k) {
      const U8 v = From::lanes(from + k * From::kVector * kBytes);
      const I16 even = evenBytes(v), odd = oddBytes(v);
      for (int o = 0; o < kResults; ++o) {
        const I32 sum = dotPairs(dotPairs(start_[o], even, even_[o]), odd, odd_[o]);
        sums[o][k] = hn::ShiftRightSame(sum, shift_[o]);
      }
    }
    for (int o = 0; o < kResults; ++o) {
      storeLane<uint8_t>(packInOrder(sums[o][0], sums[o][1], sums[o][2], sums[o][3]), to[o]);
    }
  }

  I32 start_[kResults];
  I16 even_[kResults], odd_[kResults];
  int shift_[kResults];
};

/// Every second pixel, or means around these, to two lanes or to pairs.
template <int kBytes, bool kThree, bool kTwoRows>
class EncodeMeans {
  using From = Pixels<kBytes>;
  static constexpr int kRows = kTwoRows ? 2 : 1;
  static constexpr size_t kBatch = From::kBatch;

 public:
  static void run(const EncodeWork& work) {
    const EncodeMeans encode(work);
    Edges edges;
    for (size_t x = 0; x < work.pixels; x += kBatch) {
      const size_t left = work.pixels - x;
      const bool atLeft = kThree && x == 0 && !work.hasLeft, atRight = left < kBatch + From::kBeyond;
      const uint8_t* from[kRows];
      for (int r = 0; r < kRows; ++r) from[r] = work.row[r] + x * kBytes;
      if (HWY_UNLIKELY(atLeft || atRight)) edges.fill(from, !atLeft, std::min(left, kBatch));
      uint8_t* to[2];
      for (int o = 0; o < 2; ++o) to[o] = work.out[o] + x / 2;
      if (work.interleaved) to[0] = work.out[0] + x / 2 * 2;
      encode.batch(from, to, left >= kBatch ? kBatch / 2 : (left + 1) / 2);
    }
  }

 private:
  /// A batch at the end of a row, with a pixel before it; where the row ends, its last pixel goes on.
  class Edges {
   public:
    KIP_INLINE void fill(const uint8_t* (&from)[kRows], bool hasLeft, size_t pixels) {
      for (int r = 0; r < kRows; ++r) {
        uint8_t* first = row_[r] + kBytes;
        if (kThree) std::memcpy(row_[r], hasLeft ? from[r] - kBytes : from[r], kBytes);
        std::memcpy(first, from[r], pixels * kBytes);
        if (pixels % 2 != 0) std::memcpy(first + pixels * kBytes, from[r] + (pixels - 1) * kBytes, kBytes);
        from[r] = first;
      }
    }

   private:
    alignas(64) uint8_t row_[kRows][(1 + kBatch + 1 + From::kBeyond) * kBytes] = {};
  };

  KIP_INLINE explicit EncodeMeans(const EncodeWork& work)
      : interleaved_(work.interleaved),
        shift_(work.matrix->shift[0]),
        weights_(as<int8_t>(set<uint16_t>(work.mean == PixelMean::kFirst ? 1 : 0x0101))) {
    const ByteMatrix& m = *work.matrix;
    alignas(16) const int32_t start[4] = {m.start[0], m.start[0], m.start[1], m.start[1]};
    start_ = hn::LoadDup128(Tag<int32_t>(), start);
    for (int o = 0; o < 2; ++o) {
      alignas(16)
          const int32_t pairs[4] = {pairBits(m.factor[o][0], m.factor[o][1]), pairBits(m.factor[o][2], m.factor[o][3]),
                                    pairBits(m.factor[o][0], m.factor[o][1]), pairBits(m.factor[o][2], m.factor[o][3])};
      factors_[o] = as<int16_t>(hn::LoadDup128(Tag<int32_t>(), pairs));
    }
  }

  KIP_INLINE void batch(const uint8_t* const (&from)[kRows], uint8_t* const* to, size_t results) const {
    I32 v[4];
    for (int k = 0; k < 4; ++k) {
      const ptrdiff_t at = static_cast<ptrdiff_t>(k) * From::kVector * kBytes;
      I16 sums = mean(from[0] + at);
      if constexpr (kTwoRows) sums = hn::Add(sums, mean(from[kRows - 1] + at));
      // Of a block's two places the first result, then the second one.
      const I32 first = dotPairs(sums, factors_[0]), second = dotPairs(sums, factors_[1]);
      const I32 totals = hn::Add(start_, hn::Add(evenLanes(first, second), oddLanes(first, second)));
      v[k] = hn::ShiftRightSame(totals, shift_);
    }
    store(packInOrder(v[0], v[1], v[2], v[3]), to, results);
  }
  /// The four channels' sums over two pixels, or three.
  KIP_INLINE I16 mean(const uint8_t* from) const {
    const I16 pair = dotBytes(From::pairs(from), weights_);
    if constexpr (!kThree) return pair;
    return hn::Add(pair, dotBytes(From::pairs(from - kBytes), weights_));
  }

  /// Two of the first result, two of the second one, and so on.
  KIP_INLINE void store(U8 v, uint8_t* const* to, size_t results) const {
    alignas(16) static constexpr uint8_t kPairs[16] = {0, 2, 1, 3, 4, 6, 5, 7, 8, 10, 9, 11, 12, 14, 13, 15};
    alignas(16) static constexpr uint8_t kApart[16] = {0, 1, 4, 5, 8, 9, 12, 13, 2, 3, 6, 7, 10, 11, 14, 15};
    constexpr size_t kWhole = kBatch / 2;
    if (interleaved_) {
      const U8 pairs = shuffleBlocks(v, kPairs);
      if (HWY_LIKELY(results == kWhole)) return hn::StoreU(pairs, Tag<uint8_t>(), to[0]);
      return storeFirst(pairs, to[0], 2 * results);
    }
    const Tag<uint64_t> d;
    const auto apart = as<uint64_t>(shuffleBlocks(v, kApart));
    const U8 lane[2] = {as<uint8_t>(hn::ConcatEven(d, apart, apart)), as<uint8_t>(hn::ConcatOdd(d, apart, apart))};
    const hn::Half<Tag<uint8_t>> half;
    for (int o = 0; o < 2; ++o) {
      if (HWY_LIKELY(results == kWhole)) {
        hn::StoreU(hn::LowerHalf(half, lane[o]), half, to[o]);
      } else {
        storeFirst(lane[o], to[o], results);
      }
    }
  }
  HWY_NOINLINE static void storeFirst(U8 v, uint8_t* to, size_t bytes) {
    alignas(64) uint8_t buffer[kLanes<uint8_t>];
    hn::Store(v, Tag<uint8_t>(), buffer);
    std::memcpy(to, buffer, bytes);
  }

  bool interleaved_;
  int shift_;
  I8 weights_;
  I32 start_;
  I16 factors_[2];
};

template <int kBytes>
void encodePixels(const EncodeWork& work) {
  const auto run = work.results == 1   ? EncodePixels<kBytes, 1>::run
                   : work.results == 2 ? EncodePixels<kBytes, 2>::run
                                       : EncodePixels<kBytes, 3>::run;
  run(work);
}
template <int kBytes>
void encodeMeans(const EncodeWork& work) {
  const bool three = work.mean == PixelMean::kThree;
  const auto run =
      three ? (work.rows == 2 ? EncodeMeans<kBytes, true, true>::run : EncodeMeans<kBytes, true, false>::run)
            : (work.rows == 2 ? EncodeMeans<kBytes, false, true>::run : EncodeMeans<kBytes, false, false>::run);
  run(work);
}

}  // namespace

const convert::EncodeKernels* encodeKernels() {
  static constexpr convert::EncodeKernels kKernels = {{encodePixels<3>, encodePixels<4>},
                                                      {encodeMeans<3>, encodeMeans<4>}};
  return &kKernels;
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
HWY_EXPORT(encodeKernels);
namespace convert {
const EncodeKernels& encodeKernels() { return *HWY_DYNAMIC_DISPATCH(encodeKernels)(); }
}  // namespace convert
}  // namespace kip
#endif
