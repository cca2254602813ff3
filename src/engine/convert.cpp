#include "engine/convert.h"

#include "engine/threads.h"

namespace kip {
namespace {

KipStatus imagePointer(const ImageArg& image) {
  const bool given = image.planes == 1 ? image.single != nullptr : image.many != nullptr;
  return given ? kipStatusOk : kipStatusNullPointer;
}

KipStatus planePointers(const ImageArg& image) {
  if (image.planes == 1) return kipStatusOk;
  for (int p = 0; p < image.planesChecked; ++p) {
    if (image.plane(p) == nullptr) return kipStatusNullPointer;
  }
  return kipStatusOk;
}

KipStatus positiveStep(const ImageArg& image) { return image.step > 0 ? kipStatusOk : kipStatusBadStep; }

KipStatus regionSize(const Rules& rules, KipiSize size) {
  if (rules.emptyIsOk) return kipStatusOk;
  const bool large = size.width >= rules.minWidth && size.height >= rules.minHeight;
  const bool whole = size.width % rules.sizeUnit == 0 && size.height % rules.sizeUnit == 0;
  return large && whole ? kipStatusOk : kipStatusBadSize;
}

template <class Byte>
Image<Byte> openImage(const ImageArg& arg) {
  Image<Byte> image;
  for (int p = 0; p < arg.planes; ++p) {
    image.plane[p] = static_cast<Byte*>(arg.planes == 1 ? const_cast<void*>(arg.single) : arg.plane(p));
    image.step[p] = arg.steps ? arg.steps[p] : arg.step;
  }
  return image;
}

/// Steps as whole units; those of bottom-up images are rounded down too, away from zero.
template <class Byte>
void roundSteps(Image<Byte>& image, int unit) {
  for (ptrdiff_t& step : image.step) step &= -static_cast<ptrdiff_t>(unit);
}

bool splitsRows(Threads threads, KipiSize size) {
  constexpr int64_t kWorthAFork = 4096;  // pixels
  if (threads == Threads::kAbove4096Pixels) return int64_t{size.width} * size.height > kWorthAFork;
  if (threads == Threads::kFrom128By132) return size.width >= 128 && size.height >= 132;
  return threads == Threads::kAlways;
}

}  // namespace

KipStatus checkArguments(const Rules& rules, const ImageArg& src, const ImageArg& dst, KipiSize size,
                         const void* parameters) {
  if (imagePointer(src) || imagePointer(dst)) return kipStatusNullPointer;
  if (rules.needsParameters && parameters == nullptr) return kipStatusNullPointer;
  const bool planesMissing = planePointers(src) || planePointers(dst);
  const bool stepsBad = positiveStep(src) || positiveStep(dst);
  if (rules.planesBeforeSize && planesMissing) return kipStatusNullPointer;
  if (rules.steps == StepCheck::kBeforeSize && stepsBad) return kipStatusBadStep;
  if (const KipStatus status = regionSize(rules, size)) return status;
  if (planesMissing) return kipStatusNullPointer;
  if (rules.steps == StepCheck::kAfterSize && stepsBad) return kipStatusBadStep;
  return kipStatusOk;
}

Job makeJob(const ImageArg& src, const ImageArg& dst, KipiSize size) {
  return {.src = openImage<const Kip8u>(src), .dst = openImage<Kip8u>(dst), .width = size.width, .height = size.height};
}

KipStatus convert(Kernel kernel, const Rules& rules, const ImageArg& src, const ImageArg& dst, KipiSize size,
                  const Extras& extras) {
  if (const KipStatus status = checkArguments(rules, src, dst, size, extras.parameters)) return status;
  if (size.width < 1 || size.height < 1) return kipStatusOk;
  Job job = makeJob(src, dst, size);
  roundSteps(job.src, rules.stepUnit);
  roundSteps(job.dst, rules.stepUnit);
  job.alpha = extras.alpha;
  job.parameters = extras.parameters;
  const Team team = splitsRows(rules.threads, size) ? Team::kProcessors : Team::kCallerOnly;
  runKernel(kernel, job, size.height / rules.rowsPerGroup, team);
  return size.width % rules.warnWidth || size.height % rules.warnHeight ? kipStatusOddSize : kipStatusOk;
}

}  // namespace kip
