#include "conversion.h"

namespace gstkip {

KipStatus Conversion::make(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options) {
  KipPlan* plan = nullptr;
  const KipStatus status = kipPlanMake(&from, &to, &options, &plan);
  plan_.reset(plan);
  rows_ = from.height;
  scratch_.clear();
  return status;
}

KipStatus Conversion::run(const KipPlanes& from, const KipPlanes& to, Workers& workers) {
  scratch_.resize(workers.count(), std::vector<char>(kipPlanScratchBytes(plan_.get())));
  return workers.run(rows_, kipPlanRowUnit(plan_.get()), [&](int worker, int first, int rows) {
    return kipPlanRunRows(plan_.get(), &from, &to, first, rows, scratch_[worker].data());
  });
}

}  // namespace gstkip
