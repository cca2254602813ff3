// Integer matrices: exact 32-bit sums of 16-bit samples and factors, rounded once.
#include "kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/matrix.cpp"
#include "hwy/foreach_target.h"

#include "kernels/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using convert::IntegerMatrix;

/// Two vectors of 16-bit lanes: a batch of as many samples as a vector has bytes, in order; or, where all samples are
/// bytes, the lower and the upper ones of each block.
struct Halves {
  I16 of[2];
};

/// The samples of one input, less its centre.
template <class T, bool kBlocks>
class Input {
 public:
  KIP_INLINE Input(const IntegerMatrix& matrix, int i)
      : mask_(set<uint16_t>(matrix.mask[i])), centre_(set<uint16_t>(matrix.centre[i])), raise_(matrix.raise[i]) {}

  KIP_INLINE Halves load(const uint8_t* from) const {
    if constexpr (sizeof(T) == 2) {
      return {centred(hn::And(loadLane<uint16_t>(from, 0), mask_)),
              centred(hn::And(loadLane<uint16_t>(from, 1), mask_))};
    } else if constexpr (kBlocks) {
      const U8 v = loadLane<uint8_t>(from);
      return {centred(as<uint16_t>(lowerBytes(v))), centred(as<uint16_t>(upperBytes(v)))};
    } else {
      return {centred(as<uint16_t>(loadHalf(from))), centred(as<uint16_t>(loadHalf(from + kLanes<uint16_t>)))};
    }
  }

 private:
  KIP_INLINE I16 centred(U16 v) const { return as<int16_t>(hn::Sub(hn::ShiftLeftSame(v, raise_), centre_)); }

  U16 mask_, centre_;
  int raise_;
};

/// The lower and the upper lanes of each block of two vectors side by side.
struct Pairs {
  I16 lower, upper;
  KIP_INLINE Pairs(I16 a, I16 b) : lower(hn::InterleaveLower(a, b)), upper(hn::InterleaveUpper(Tag<int16_t>(), a, b)) {}
};

/// One result from up to three inputs: pairs of the first two, and of the third and nothing.
template <class T, int kInputs>
class Result {
 public:
  KIP_INLINE Result(const IntegerMatrix& matrix, int o, int row)
      : shift_(matrix.shift[o]),
        up_(matrix.up[o]),
        start_(hn::LoadDup128(Tag<int32_t>(), matrix.start[o][row % 4])),
        first_(factors(matrix.factor[o])),
        third_(setPairs(matrix.factor[o][2], 0)),
        lowFirst_(factors(matrix.low[o])),
        lowThird_(setPairs(matrix.low[o][2], 0)),
        most_(set<T>(static_cast<T>(matrix.most[o]))) {}

  KIP_INLINE I32 sum(I16 firstTwo, I16 third) const {
    I32 total = dotPairs(start_, firstTwo, first_);
    if constexpr (kInputs == 3) total = dotPairs(total, third, third_);
    if constexpr (sizeof(T) == 2) {
      I32 low = dotPairs(firstTwo, lowFirst_);
      if constexpr (kInputs == 3) low = dotPairs(low, third, lowThird_);
      total = hn::Add(total, hn::ShiftRight<IntegerMatrix::kLowBits>(low));
    }
    return hn::ShiftRightSame(total, shift_);
  }
  /// Results before saturation of two halves of a batch, each as the sums of its lower and upper lanes.
  template <bool kBlocks>
  KIP_INLINE void store(const I32 (&sums)[2][2], uint8_t* to) const {
    if constexpr (sizeof(T) == 1) {
      const I16 first = packWords(sums[0][0], sums[0][1]), second = packWords(sums[1][0], sums[1][1]);
      const U8 bytes = kBlocks ? packBytes(first, second) : packBytesInOrder(first, second);
      storeLane<uint8_t>(hn::Min(bytes, most_), to);
    } else {
      for (int half = 0; half < 2; ++half) {
        const U16 v = hn::Min(packUnsignedWords(sums[half][0], sums[half][1]), most_);
        storeLane<uint16_t>(hn::ShiftLeftSame(v, up_), to, half);
      }
    }
  }

 private:
  KIP_INLINE static I16 factors(const int16_t (&f)[3]) { return setPairs(f[0], f[1]); }

  int shift_, up_;
  I32 start_;
  I16 first_, third_, lowFirst_, lowThird_;
  Vector<T> most_;
};

template <class First, class Others, class T, int kOutputs>
struct Matrix {
  static constexpr bool kBlocks = sizeof(First) + sizeof(Others) + sizeof(T) == 3;
  static constexpr int kBatch = kLanes<uint8_t>;
  using Output = Result<T, 3>;

  static void run(const IntegerMatrix& matrix, const uint8_t* const* in, uint8_t* const* out, size_t samples, int row) {
    const Input<First, kBlocks> first(matrix, 0);
    const Input<Others, kBlocks> second(matrix, 1), third(matrix, 2);
    const Output a(matrix, 0, row), b(matrix, kOutputs > 1, row), c(matrix, kOutputs - 1, row);
    Out streams[kOutputs];
    for (int o = 0; o < kOutputs; ++o) streams[o] = laneOut<T>(out[o]);
    walk<kBatch>(samples, {laneIn<First>(in[0]), laneIn<Others>(in[1]), laneIn<Others>(in[2])}, streams,
                 [&](auto& from, auto& to) KIP_INLINE_LAMBDA {
                   const Halves x = first.load(from[0]), y = second.load(from[1]), z = third.load(from[2]);
                   const I16 zero = hn::Zero(Tag<int16_t>());
                   const Pairs firstTwo[2] = {{x.of[0], y.of[0]}, {x.of[1], y.of[1]}};
                   const Pairs thirds[2] = {{z.of[0], zero}, {z.of[1], zero}};
                   store(a, firstTwo, thirds, to[0]);
                   if constexpr (kOutputs > 1) store(b, firstTwo, thirds, to[1]);
                   if constexpr (kOutputs > 2) store(c, firstTwo, thirds, to[2]);
                 });
  }

 private:
  KIP_INLINE static void store(const Output& output, const Pairs (&firstTwo)[2], const Pairs (&thirds)[2],
                               uint8_t* to) {
    I32 sums[2][2];
    for (int half = 0; half < 2; ++half) {
      sums[half][0] = output.sum(firstTwo[half].lower, thirds[half].lower);
      sums[half][1] = output.sum(firstTwo[half].upper, thirds[half].upper);
    }
    output.template store<kBlocks>(sums, to);
  }
};

/// One channel.
template <class From, class T>
struct Scale {
  static constexpr bool kBlocks = sizeof(From) + sizeof(T) == 2;

  static void run(const IntegerMatrix& matrix, const uint8_t* const* in, uint8_t* const* out, size_t samples, int row) {
    const Input<From, kBlocks> input(matrix, 0);
    const Result<T, 1> output(matrix, 0, row);
    walk<kLanes<uint8_t>>(samples, {laneIn<From>(in[0])}, {laneOut<T>(out[0])},
                          [&](auto& from, auto& to) KIP_INLINE_LAMBDA {
                            const Halves x = input.load(from[0]);
                            const I16 zero = hn::Zero(Tag<int16_t>());
                            I32 sums[2][2];
                            for (int half = 0; half < 2; ++half) {
                              const Pairs pairs(x.of[half], zero);
                              sums[half][0] = output.sum(pairs.lower, zero);
                              sums[half][1] = output.sum(pairs.upper, zero);
                            }
                            output.template store<kBlocks>(sums, to[0]);
                          });
  }
};

constexpr convert::MatrixKernels makeKernels() {
  convert::MatrixKernels k{};
  const auto add = [&k]<class First, class Others, class T>(convert::MatrixTypes types, First, Others, T) {
    auto& row = k.matrix[static_cast<int>(types)];
    row[0] = Matrix<First, Others, T, 1>::run;
    row[1] = Matrix<First, Others, T, 2>::run;
    row[2] = Matrix<First, Others, T, 3>::run;
  };
  using enum convert::MatrixTypes;
  constexpr uint8_t kU8 = 0;
  constexpr uint16_t kU16 = 0;
  add(k888, kU8, kU8, kU8);
  add(k8168, kU8, kU16, kU8);
  add(k16168, kU16, kU16, kU8);
  add(k8816, kU8, kU8, kU16);
  add(k81616, kU8, kU16, kU16);
  add(k161616, kU16, kU16, kU16);
  k.scale[0][0] = Scale<uint8_t, uint8_t>::run;
  k.scale[0][1] = Scale<uint8_t, uint16_t>::run;
  k.scale[1][0] = Scale<uint16_t, uint8_t>::run;
  k.scale[1][1] = Scale<uint16_t, uint16_t>::run;
  return k;
}

}  // namespace

const convert::MatrixKernels* matrixKernels() {
  static constexpr convert::MatrixKernels kKernels = makeKernels();
  return &kKernels;
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
HWY_EXPORT(matrixKernels);
namespace convert {
const MatrixKernels& matrixKernels() { return *HWY_DYNAMIC_DISPATCH(matrixKernels)(); }
}  // namespace convert
}  // namespace kip
#endif
