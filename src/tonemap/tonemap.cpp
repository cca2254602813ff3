// Tone mapping: floats to bytes by one scale for the whole region.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tonemap/tonemap.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// As many floats as there are bytes in a vector.
struct Floats : C1<float> {
  static constexpr int kBatch = kLanes<uint8_t>;
};

/// Products as integers from 255 down, which packing clamps at 0. What 32 bits cannot hold, and what is not a number,
/// becomes -2^31.
struct Clamped {
  KIP_INLINE static I32 of(F32 v) { return truncated(atMost(v, set(255.0f))); }
};

/// The low bytes of products, none of which is above 255 where the maximum becomes 255, unless the scale is infinite.
struct LowByte {
  KIP_INLINE static I32 of(F32 v) { return hn::And(Clamped::of(v), set<int32_t>(0xFF)); }
};

template <class Byte>
void scale(const Job& job, int first, int last) {
  const F32 factor = set(*static_cast<const float*>(job.parameters));
  for (int y = first; y < last; ++y) {
    forBatches<Floats, C1<>>(Floats::rows(job.src, y), C1<>::rows(job.dst, y), 0, job.width,
                             [&](const auto& from, const auto& to) KIP_INLINE_LAMBDA {
                               const auto integers = [&](int i) KIP_INLINE_LAMBDA {
                                 const float* floats = samples<float>(from.at[0]) + i * kLanes<float>;
                                 return Byte::of(hn::Mul(hn::LoadU(Tag<float>(), floats), factor));
                               };
                               const U8 bytes = packInOrder(integers(0), integers(1), integers(2), integers(3));
                               hn::StoreU(bytes, Tag<uint8_t>(), to.at[0]);
                             });
  }
}

void scaleToLowByte(const Job& job, int first, int last) { scale<LowByte>(job, first, last); }
void scaleClamped(const Job& job, int first, int last) { scale<Clamped>(job, first, last); }

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <limits>

#include "engine/convert.h"
#include "engine/primitives.h"

namespace kip {
namespace {

HWY_EXPORT(scaleToLowByte);
HWY_EXPORT(scaleClamped);

/// Scales so that `white` becomes 255; without any light the destination is black.
template <class Float>
KipStatus mapWhite(Kernel kernel, Float white, const Kip32f* src, int srcStep, Kip8u* dst, int dstStep, KipiSize size) {
  if (white < 0) return kipStatusNoOperation;
  if (!(white > std::numeric_limits<float>::min())) return kipiSet_8u_C1R(0, dst, dstStep, size);
  const float factor = static_cast<float>(Float{255} / white);
  Job job = makeJob(interleaved(src, srcStep), interleaved(dst, dstStep), size);
  job.parameters = &factor;
  kernel(job, 0, size.height);
  return kipStatusOk;
}

}  // namespace
}  // namespace kip

using namespace kip;

KipStatus kipiToneMapLinear_32f8u_C1R(const Kip32f* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize) {
  Kip32f most;
  if (const KipStatus status = kipiMax_32f_C1R(pSrc, srcStep, roiSize, &most)) return status;
  return mapWhite(HWY_DYNAMIC_DISPATCH(scaleToLowByte), most, pSrc, srcStep, pDst, dstStep, roiSize);
}

KipStatus kipiToneMapMean_32f8u_C1R(const Kip32f* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize) {
  double mean;
  if (const KipStatus status = kipiMean_32f_C1R(pSrc, srcStep, roiSize, &mean)) return status;
  return mapWhite(HWY_DYNAMIC_DISPATCH(scaleClamped), 2 * mean, pSrc, srcStep, pDst, dstStep, roiSize);
}
#endif  // HWY_ONCE
