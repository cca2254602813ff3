// Reduction of samples to a number of levels, to the same or a narrower type, with five methods of dithering.

#include <climits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "reducebits/reducebits.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "reducebits/bytes-inl.h"
#include "reducebits/diffusion-inl.h"
#include "reducebits/fewlevels-inl.h"
#include "reducebits/levels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// The methods that reduce each sample by itself: rows first .. last - 1.
template <class S, class D>
struct ReduceEach {
  static void rows(const Job& job, int first, int last) {
    const auto& reduction = *static_cast<const Reduction*>(job.parameters);
    if (reduction.method == kipDitherNone) return withoutNoise<Plain<S, D>>(reduction, job, first, last);
    if constexpr (!std::is_same_v<S, float>) {
      if (reduction.noise == nullptr) return withoutNoise<Scaled<S, D>>(reduction, job, first, last);
    }
    if constexpr (sizeof(D) == 1) {
      if (PreciseBytes<S>::suffices(reduction.intervals)) {
        return Levels<S, D, PreciseBytes<S>>::rows(job, first, last);
      }
    }
    return Levels<S, D, Precise<S, D>>::rows(job, first, last);
  }

 private:
  static constexpr int kWorthwhile = 1 << 12;  // samples, for which the constants of few levels are looked for

  template <class Op>
  static void withoutNoise(const Reduction& reduction, const Job& job, int first, int last) {
    if constexpr (!std::is_same_v<S, float> && sizeof(D) == 1) {
      if (int64_t{last - first} * job.width * reduction.channels.perPixel >= kWorthwhile) {
        const FewLevels<S> few(Op(reduction.intervals), reduction);
        if (few.suffice()) return ReduceToFew<S>::rows(few, job, first, last);
      }
    }
    Levels<S, D, Op>::rows(job, first, last);
  }
};
#if KIP_HAS_64_ENTRY_TABLES
template <>
struct ReduceEach<Kip8u, Kip8u> : ReduceBytes {};
#endif

/// All methods from samples of type S to samples of type D: rows first .. last - 1, or channels when errors diffuse.
template <class S, class D>
struct Reduce {
  /// Not inlined: several functions call it.
  static HWY_NOINLINE void rows(const Job& job, int first, int last) {
    const KipiDitherType method = static_cast<const Reduction*>(job.parameters)->method;
    const bool diffuses = method != kipDitherNone && method != kipDitherBayer;
    return diffuses ? Diffuse<S, D>::channels(job, first, last) : ReduceEach<S, D>::rows(job, first, last);
  }
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "engine/convert.h"
#include "engine/threads.h"

namespace kip {
namespace {

/// The types of samples that a function reduces from and to.
struct Depths {
  int srcBytes, dstBytes;
  float fullScale;  ///< of the destination
  int mostLevels;
};
template <class S, class D>
constexpr Depths depths(int mostLevels) {
  return {sizeof(S), sizeof(D), sizeof(D) == 1 ? 255.f : 65535.f, mostLevels};
}
constexpr Depths k8u = depths<Kip8u, Kip8u>(256);
constexpr Depths k16u = depths<Kip16u, Kip16u>(65536);
constexpr Depths k16s = depths<Kip16s, Kip16s>(65536);
constexpr Depths k16u8u = depths<Kip16u, Kip8u>(256);
constexpr Depths k16s8u = depths<Kip16s, Kip8u>(256);
constexpr Depths k32f8u = depths<Kip32f, Kip8u>(256);
constexpr Depths k32f16u = depths<Kip32f, Kip16u>(256);  // 256 although 16 bits hold more
constexpr Depths k32f16s = depths<Kip32f, Kip16s>(256);

constexpr Channels kC1 = {1, 1}, kC3 = {3, 3}, kC4 = {4, 4}, kAC4 = {3, 4};

/// What a caller asks for.
struct Request {
  Channels channels;
  int noise;  ///< percent of an interval
  KipiDitherType method;
  int levels;
};

KipStatus checkRequest(const Request& request, const Depths& depths) {
  if (request.noise < 0 || request.noise > 100) return kipStatusNoiseRange;
  if (request.levels < 2 || request.levels > depths.mostLevels) return kipStatusDitherLevels;
  return kipStatusOk;
}

bool diffuses(KipiDitherType method) {
  return method == kipDitherFS || method == kipDitherJJN || method == kipDitherStucki;
}

/// Noise around the threshold of half an interval when errors diffuse, and around zero, in intervals, otherwise.
KipStatus makeNoise(NoiseTables& tables, const Request& request, const Reduction& reduction, const Depths& depths) {
  if (!diffuses(request.method)) {
    const float amplitude = static_cast<float>(request.noise) / 100;
    return tables.make(-amplitude, amplitude);
  }
  const float interval = intervalOf(reduction.intervals, depths.fullScale);
  const auto percent = [&](int of) { return interval * static_cast<float>(of) / 100; };
  return tables.make(percent(50 - request.noise), percent(50 + request.noise));
}

/// What error diffusion works in: the caller's rows may be long, and the stacks of threads short.
struct DiffusionMemory {
  Scratch<Kip32f> errorRows, bands;

  KipStatus allocate(Reduction& reduction, int width) {
    const int64_t rowLength = int64_t{width} + kErrorRowPad;
    const int64_t inRows = kErrorRows * rowLength * reduction.channels.reduced;
    if (inRows > INT_MAX) return kipStatusNoMemory;
    errorRows.reset(kipsMalloc_32f(static_cast<int>(inRows)));
    bands.reset(kipsMalloc_32f(kBandFloats * reduction.channels.reduced));
    if (!errorRows || !bands) return kipStatusNoMemory;
    reduction.errorRowLength = static_cast<size_t>(rowLength);
    reduction.errorRows = errorRows.get();
    reduction.bands = bands.get();
    return kipStatusOk;
  }
};

/// Steps as whole samples, rounded toward zero.
ImageArg wholeSamples(ImageArg image, int sampleBytes) {
  image.step -= image.step % sampleBytes;
  return image;
}

KipStatus convert(Kernel kernel, const Depths& depths, const ImageArg& src, const ImageArg& dst, KipiSize size,
                  const Request& request) {
  if (const KipStatus status = checkArguments({}, src, dst, size)) return status;
  if (const KipStatus status = checkRequest(request, depths)) return status;
  const bool known = request.method == kipDitherNone || request.method == kipDitherBayer || diffuses(request.method);
  if (!known) return kipStatusOk;

  Reduction reduction = {
      .method = request.method, .channels = request.channels, .intervals = static_cast<float>(request.levels - 1)};
  NoiseTables noise;
  if (request.noise != 0 && request.method != kipDitherNone) {
    if (const KipStatus status = makeNoise(noise, request, reduction, depths)) return status;
    reduction.noise = &noise;
  }
  DiffusionMemory memory;
  if (diffuses(request.method)) {
    if (const KipStatus status = memory.allocate(reduction, size.width)) return status;
  }

  Job job = makeJob(wholeSamples(src, depths.srcBytes), wholeSamples(dst, depths.dstBytes), size);
  job.parameters = &reduction;
  if (diffuses(request.method)) {
    // The threads share out the channels; how many threads there are, the result shows.
    runKernel(kernel, job, request.channels.reduced, Team::kAsTold);
  } else {
    runKernel(kernel, job, size.height, request.method == kipDitherNone ? Team::kCallerOnly : Team::kProcessors);
  }
  return kipStatusOk;
}

}  // namespace
}  // namespace kip

#define KIP_REQUEST(channels) (int noise, KipiDitherType dtype, int levels), ({channels, noise, dtype, levels})
#endif

#define KIP_FUNCTIONS "reducebits/reducebits-functions.inc"
#include "engine/functions-inl.h"
