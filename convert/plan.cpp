// The exported functions of plans.
#include "plan.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "engine/team.h"
#include "kipcore.h"

namespace {

using namespace kip::convert;

bool hasPlanes(const KipFormatInfo& info, const KipPlanes& planes) {
  return std::all_of(planes.plane, planes.plane + info.planes, [](const void* p) { return p != nullptr; });
}

KipStatus checkPlanes(const KipPlan* plan, const KipPlanes* src, const KipPlanes* dst) {
  if (plan == nullptr || src == nullptr || dst == nullptr) return kipStatusNullPointer;
  const bool given = hasPlanes(plan->from->info, *src) && hasPlanes(plan->to->info, *dst);
  return given ? kipStatusOk : kipStatusNullPointer;
}

uint8_t* aligned64(void* scratch) {
  const auto at = reinterpret_cast<uintptr_t>(scratch);
  return static_cast<uint8_t*>(scratch) + (64 - at % 64) % 64;
}

int workersFor(const KipPlan& plan) {
  const int wanted = plan.threads == 0 ? ownGetNumThreads() : plan.threads;
  constexpr int kLeastRows = 16;  // for each
  return kip::teamSizeOnProcessors(std::min(wanted, plan.height / kLeastRows));
}

/// A conversion on a team of threads, each with scratch memory of its own.
struct Work {
  const KipPlan& plan;
  const KipPlanes &src, &dst;
  uint8_t* scratch;
  size_t scratchShare;

  static void part(const void* context, int me, int team) {
    const Work& work = *static_cast<const Work*>(context);
    const KipPlan& plan = work.plan;
    const int units = (plan.height + plan.unit - 1) / plan.unit;
    const auto boundary = [&](int i) {
      return static_cast<int>(std::min<int64_t>(int64_t{units} * i / team * plan.unit, plan.height));
    };
    runRows(plan, work.src, work.dst, boundary(me), boundary(me + 1), work.scratch + me * work.scratchShare);
  }
};

}  // namespace

KipStatus kipPlanMake(const KipPicture* from, const KipPicture* to, const KipPlanOptions* options, KipPlan** plan) {
  if (plan != nullptr) *plan = nullptr;
  if (from == nullptr || to == nullptr || plan == nullptr) return kipStatusNullPointer;
  try {
    auto made = std::make_unique<KipPlan>();
    if (const KipStatus status = checkPlan(*from, *to, options, *made)) return status;
    buildStages(*made);
    joinStages(*made);
    layOutScratch(*made);
    describe(*made);
    *plan = made.release();
    return kipStatusOk;
  } catch (const std::bad_alloc&) {
    return kipStatusNoMemory;
  }
}

KipStatus kipPlanRun(const KipPlan* plan, const KipPlanes* src, const KipPlanes* dst) {
  if (const KipStatus status = checkPlanes(plan, src, dst)) return status;
  const int workers = workersFor(*plan);
  const size_t share = (plan->scratchBytes + 63) / 64 * 64;
  if (share > PTRDIFF_MAX / static_cast<size_t>(workers)) return kipStatusNoMemory;
  std::unique_ptr<void, void (*)(void*)> scratch(kipMalloc(share * workers), kipFree);
  if (scratch == nullptr) return kipStatusNoMemory;
  const Work work = {*plan, *src, *dst, static_cast<uint8_t*>(scratch.get()), share};
  kip::runTeam(workers, Work::part, &work);
  return kipStatusOk;
}

KipStatus kipPlanRunRows(const KipPlan* plan, const KipPlanes* src, const KipPlanes* dst, int firstRow, int rows,
                         void* scratch) {
  if (const KipStatus status = checkPlanes(plan, src, dst)) return status;
  if (scratch == nullptr) return kipStatusNullPointer;
  if (firstRow < 0 || rows < 0 || firstRow > plan->height || rows > plan->height - firstRow) return kipStatusBadRows;
  const int last = firstRow + rows;
  if (firstRow % plan->unit != 0 || (last % plan->unit != 0 && last != plan->height)) return kipStatusBadRows;
  runRows(*plan, *src, *dst, firstRow, last, aligned64(scratch));
  return kipStatusOk;
}

int kipPlanRowUnit(const KipPlan* plan) { return plan ? plan->unit : 0; }

size_t kipPlanScratchBytes(const KipPlan* plan) { return plan ? plan->scratchBytes : 0; }

const char* kipPlanDescription(const KipPlan* plan) { return plan ? plan->description.c_str() : ""; }

void kipPlanFree(KipPlan* plan) { delete plan; }

KipStatus kipConvertPicture(const KipPicture* from, const KipPlanes* src, const KipPicture* to, const KipPlanes* dst) {
  KipPlan* plan;
  if (const KipStatus status = kipPlanMake(from, to, nullptr, &plan)) return status;
  const KipStatus status = kipPlanRun(plan, src, dst);
  kipPlanFree(plan);
  return status;
}
