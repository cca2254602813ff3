#include "frame/primitives.h"

#include <algorithm>
#include <cstring>
#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "frame/primitives.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "frame/simd-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// Some samples of a row, as vectors that are worked on side by side.
template <int kVectors>
struct Samples {
  static constexpr int kCount = kVectors * kLanes<float>;
  F32 part[kVectors];

  explicit Samples(float value) {
    for (F32& v : part) v = set(value);
  }

  /// Calls combine(samples, part) -> part with each vector of the row; what lacks at the row's end is `padding`.
  template <class Combine>
  KIP_INLINE void take(const float* row, int width, float padding, const Combine& combine) {
    const auto takeCount = [&](const float* from) KIP_INLINE_LAMBDA {
      for (int i = 0; i < kVectors; ++i) part[i] = combine(hn::LoadU(Tag<float>(), from + i * kLanes<float>), part[i]);
    };
    int x = 0;
    for (; x <= width - kCount; x += kCount) takeCount(row + x);
    if (x == width) return;
    float rest[kCount];
    std::fill_n(rest, kCount, padding);
    std::copy(row + x, row + width, rest);
    takeCount(rest);
  }

  void store(float* to) const {
    for (int i = 0; i < kVectors; ++i) hn::StoreU(part[i], Tag<float>(), to + i * kLanes<float>);
  }
};

float largest(const float* row, int width) {
  using Best = Samples<4>;
  constexpr float kNone = -std::numeric_limits<float>::infinity();
  Best best(kNone);
  // The second argument is the result when the first one is not a number.
  best.take(row, width, kNone, [](F32 v, F32 sofar) KIP_INLINE_LAMBDA { return hn::Max(v, sofar); });
  float all[Best::kCount];
  best.store(all);
  return *std::max_element(all, all + Best::kCount);
}

/// Column x is added to partial sum x mod 16, whatever the size of a vector.
float sumOfRow(const float* row, int width) {
  using Sums = Samples<16 / kLanes<float>>;
  Sums sums(0);
  sums.take(row, width, 0, [](F32 v, F32 sum) KIP_INLINE_LAMBDA { return hn::Add(sum, v); });
  float p[Sums::kCount], lane[4];
  sums.store(p);
  for (int i = 0; i < 4; ++i) lane[i] = (p[i] + p[4 + i]) + (p[8 + i] + p[12 + i]);
  return (lane[0] + lane[1]) + (lane[2] + lane[3]);
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
namespace {

HWY_EXPORT(largest);
HWY_EXPORT(sumOfRow);

KipStatus checkPlane(const void* plane, const void* result, KipiSize size) {
  if (plane == nullptr || result == nullptr) return kipStatusNullPointer;
  return size.width < 1 || size.height < 1 ? kipStatusBadSize : kipStatusOk;
}

const Kip32f* rowOf(const Kip32f* plane, int step, int y) {
  return reinterpret_cast<const Kip32f*>(reinterpret_cast<const Kip8u*>(plane) + y * static_cast<ptrdiff_t>(step));
}

/// Even and odd columns apart, the last column of an odd width with the even ones.
double accurateSumOfRow(const float* row, int width) {
  double even = 0, odd = 0;
  for (int x = 0; x < width; ++x) (x % 2 ? odd : even) += row[x];
  return even + odd;
}

}  // namespace

KipStatus kipiSet_8u_C1R(Kip8u value, Kip8u* pDst, int dstStep, KipiSize roiSize) {
  if (const KipStatus status = checkPlane(pDst, pDst, roiSize)) return status;
  for (int y = 0; y < roiSize.height; ++y)
    std::memset(pDst + y * static_cast<ptrdiff_t>(dstStep), value, roiSize.width);
  return kipStatusOk;
}

KipStatus kipiMax_32f_C1R(const Kip32f* pSrc, int srcStep, KipiSize roiSize, Kip32f* pMax) {
  if (const KipStatus status = checkPlane(pSrc, pMax, roiSize)) return status;
  const auto largestOfRow = HWY_DYNAMIC_DISPATCH(largest);
  *pMax = -std::numeric_limits<Kip32f>::infinity();
  for (int y = 0; y < roiSize.height; ++y) {
    *pMax = std::max(*pMax, largestOfRow(rowOf(pSrc, srcStep, y), roiSize.width));
  }
  return kipStatusOk;
}

KipStatus kipiSum_32f_C1R(const Kip32f* pSrc, int srcStep, KipiSize roiSize, double* pSum, SumHint hint) {
  if (const KipStatus status = checkPlane(pSrc, pSum, roiSize)) return status;
  const auto fastSumOfRow = HWY_DYNAMIC_DISPATCH(sumOfRow);
  long double sum = 0;
  for (int y = 0; y < roiSize.height; ++y) {
    const Kip32f* row = rowOf(pSrc, srcStep, y);
    sum += hint == SumHint::kAccurate ? accurateSumOfRow(row, roiSize.width) : fastSumOfRow(row, roiSize.width);
  }
  *pSum = static_cast<double>(sum);
  return kipStatusOk;
}

KipStatus kipiMean_32f_C1R(const Kip32f* pSrc, int srcStep, KipiSize roiSize, double* pMean, SumHint hint) {
  const KipStatus status = kipiSum_32f_C1R(pSrc, srcStep, roiSize, pMean, hint);
  if (status == kipStatusOk) *pMean /= static_cast<double>(roiSize.width) * roiSize.height;
  return status;
}

}  // namespace kip
#endif  // HWY_ONCE
