#include "engine/primitives.h"

#include <algorithm>
#include <cstring>
#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/primitives.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/extendedsum.h"
#include "engine/simd-inl.h"

#ifndef KIP_ENGINE_PRIMITIVES_ONCE
#define KIP_ENGINE_PRIMITIVES_ONCE
namespace kip {

inline const float* rowOf(const float* plane, int step, int y) {
  return reinterpret_cast<const float*>(reinterpret_cast<const uint8_t*>(plane) + y * static_cast<ptrdiff_t>(step));
}

}  // namespace kip
#endif

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// Some samples of each of kRows rows, as vectors that are worked on side by side.
template <int kRows, int kVectors>
struct Samples {
  static constexpr int kCount = kVectors * kLanes<float>;
  F32 part[kRows][kVectors];

  KIP_INLINE explicit Samples(float value) {
    for (auto& row : part) {
      for (F32& v : row) v = set(value);
    }
  }

  /// Calls combine(samples, part) -> part with each vector of the rows; what lacks at their end is `padding`.
  template <class Combine>
  KIP_INLINE void take(const float* const (&rows)[kRows], int width, float padding, const Combine& combine) {
    const auto takeCount = [&](F32(&into)[kVectors], const float* from) KIP_INLINE_LAMBDA {
      for (int i = 0; i < kVectors; ++i) into[i] = combine(hn::LoadU(Tag<float>(), from + i * kLanes<float>), into[i]);
    };
    int x = 0;
    for (; x <= width - kCount; x += kCount) {
      for (int y = 0; y < kRows; ++y) takeCount(part[y], rows[y] + x);
    }
    if (x == width) return;
    for (int y = 0; y < kRows; ++y) {
      float rest[kCount];
      std::fill_n(rest, kCount, padding);
      std::copy(rows[y] + x, rows[y] + width, rest);
      takeCount(part[y], rest);
    }
  }

  KIP_INLINE void store(int row, float* to) const {
    for (int i = 0; i < kVectors; ++i) hn::StoreU(part[row][i], Tag<float>(), to + i * kLanes<float>);
  }
};

float largest(const float* plane, int step, KipiSize size) {
  using Best = Samples<1, 4>;
  constexpr float kNone = -std::numeric_limits<float>::infinity();
  Best best(kNone);
  for (int y = 0; y < size.height; ++y) {
    best.take({rowOf(plane, step, y)}, size.width, kNone,
              [](F32 v, F32 sofar) KIP_INLINE_LAMBDA { return numberAtLeast(v, sofar); });
  }
  float all[Best::kCount];
  best.store(0, all);
  return *std::max_element(all, all + Best::kCount);
}

/// Column x is added to partial sum x mod 16, whatever the size of a vector. Some rows at a time, so that the sums of
/// one need not wait for each other.
ExtendedSum sum(const float* plane, int step, KipiSize size) {
  constexpr int kInterleavedChains = kLanes<float> == 4 ? 2 : 4;  // as many as there are registers for
  using Sums = Samples<kInterleavedChains, 16 / kLanes<float>>;
  ExtendedSum total;
  for (int y = 0; y < size.height; y += kInterleavedChains) {
    const float* rows[kInterleavedChains];
    for (int i = 0; i < kInterleavedChains; ++i) rows[i] = rowOf(plane, step, std::min(y + i, size.height - 1));
    Sums sums(0);
    sums.take(rows, size.width, 0, [](F32 v, F32 sum) KIP_INLINE_LAMBDA { return hn::Add(sum, v); });
    for (int row = 0; row < std::min(kInterleavedChains, size.height - y); ++row) {
      float p[Sums::kCount], lane[4];
      sums.store(row, p);
      for (int i = 0; i < 4; ++i) lane[i] = (p[i] + p[4 + i]) + (p[8 + i] + p[12 + i]);
      total.add((lane[0] + lane[1]) + (lane[2] + lane[3]));
    }
  }
  return total;
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
namespace {

HWY_EXPORT(largest);
HWY_EXPORT(sum);

KipStatus checkPlane(const void* plane, const void* result, KipiSize size) {
  if (plane == nullptr || result == nullptr) return kipStatusNullPointer;
  return size.width < 1 || size.height < 1 ? kipStatusBadSize : kipStatusOk;
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
  *pMax = HWY_DYNAMIC_DISPATCH(largest)(pSrc, srcStep, roiSize);
  return kipStatusOk;
}

KipStatus kipiSum_32f_C1R(const Kip32f* pSrc, int srcStep, KipiSize roiSize, double* pSum) {
  if (const KipStatus status = checkPlane(pSrc, pSum, roiSize)) return status;
  *pSum = static_cast<double>(HWY_DYNAMIC_DISPATCH(sum)(pSrc, srcStep, roiSize));
  return kipStatusOk;
}

KipStatus kipiMean_32f_C1R(const Kip32f* pSrc, int srcStep, KipiSize roiSize, double* pMean) {
  const KipStatus status = kipiSum_32f_C1R(pSrc, srcStep, roiSize, pMean);
  if (status == kipStatusOk) *pMean /= static_cast<double>(roiSize.width) * roiSize.height;
  return status;
}

}  // namespace kip
#endif  // HWY_ONCE
