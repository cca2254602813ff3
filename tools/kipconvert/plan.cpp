#include <stdexcept>

#include "sides.h"
#include "steps.h"

namespace {

class Plan : public Step {
 public:
  Plan(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options) {
    KipPlan* plan = nullptr;
    const KipStatus status = kipPlanMake(&from, &to, &options, &plan);
    if (status != kipStatusOk) throw std::runtime_error(explainFailure(status, from, to));
    plan_.reset(plan);
  }

  void run(const KipPlanes& from, const KipPlanes& to) override {
    const KipStatus status = kipPlanRun(plan_.get(), &from, &to);
    if (status != kipStatusOk) throw std::runtime_error(kipStatusText(status));
  }

  std::string description() const override { return kipPlanDescription(plan_.get()); }

 private:
  struct Free {
    void operator()(KipPlan* plan) const { kipPlanFree(plan); }
  };
  std::unique_ptr<KipPlan, Free> plan_;
};

}  // namespace

std::unique_ptr<Step> makePlan(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options) {
  return std::make_unique<Plan>(from, to, options);
}
