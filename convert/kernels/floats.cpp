// Matrices in single precision, and floats to integers.
#include "kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/floats.cpp"
#include "hwy/foreach_target.h"

#include "kernels/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

template <int kInputs, int kOutputs>
void floatMatrixOf(const convert::FloatMatrix& matrix, const uint8_t* const* in, uint8_t* const* out, size_t samples) {
  In from[kInputs];
  Out to[kOutputs];
  for (int i = 0; i < kInputs; ++i) from[i] = laneIn<float>(in[i]);
  for (int o = 0; o < kOutputs; ++o) to[o] = laneOut<float>(out[o]);
  walk<kLanes<float>>(samples, from, to, [&](auto& source, auto& result) KIP_INLINE_LAMBDA {
    F32 v[kInputs];
    for (int i = 0; i < kInputs; ++i) v[i] = loadLane<float>(source[i]);
    for (int o = 0; o < kOutputs; ++o) {
      F32 sum = v[0] * matrix.factor[o][0];
      for (int i = 1; i < kInputs; ++i) sum = sum + v[i] * matrix.factor[o][i];
      storeLane<float>(sum + matrix.constant[o], result[o]);
    }
  });
}

void floatMatrix(const convert::FloatMatrix& matrix, int inputs, int outputs, const uint8_t* const* in,
                 uint8_t* const* out, size_t samples) {
  if (inputs == 1) return floatMatrixOf<1, 1>(matrix, in, out, samples);
  if (outputs == 1) return floatMatrixOf<3, 1>(matrix, in, out, samples);
  if (outputs == 2) return floatMatrixOf<3, 2>(matrix, in, out, samples);
  floatMatrixOf<3, 3>(matrix, in, out, samples);
}

/// To integers of type T.
template <class T>
void roundTo(const convert::Rounding& rounding, const uint8_t* in, uint8_t* out, size_t samples, int row) {
  constexpr int kVectors = 4 / sizeof(T);
  const F32 threshold = hn::LoadDup128(Tag<float>(), rounding.threshold[row % 4]), most = set(rounding.most);
  // Not below 0 after the threshold; NaN is not above 0.
  const auto integers = [&](F32 v) KIP_INLINE_LAMBDA {
    const F32 raised = v + threshold;
    return truncated(atMost(hn::IfThenElseZero(hn::Gt(raised, hn::Zero(Tag<float>())), raised), most));
  };
  walk<kVectors * kLanes<float>>(samples, {laneIn<float>(in)}, {laneOut<T>(out)},
                                 [&](auto& from, auto& to) KIP_INLINE_LAMBDA {
                                   I32 v[kVectors];
                                   for (int k = 0; k < kVectors; ++k) v[k] = integers(loadLane<float>(from[0], k));
                                   if constexpr (sizeof(T) == 1) {
                                     storeLane<T>(packInOrder(v[0], v[1], v[2], v[3]), to[0]);
                                   } else {
                                     storeLane<T>(hn::ShiftLeftSame(packInOrder(v[0], v[1]), rounding.up), to[0]);
                                   }
                                 });
}

}  // namespace

const convert::FloatKernels* floatKernels() {
  static constexpr convert::FloatKernels kKernels = {floatMatrix, {roundTo<uint8_t>, roundTo<uint16_t>}};
  return &kKernels;
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
HWY_EXPORT(floatKernels);
namespace convert {
const FloatKernels& floatKernels() { return *HWY_DYNAMIC_DISPATCH(floatKernels)(); }
}  // namespace convert
}  // namespace kip
#endif
