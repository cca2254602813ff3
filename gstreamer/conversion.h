// A plan of libkipconvert, run on the threads of an element.
#pragma once

#include <memory>
#include <vector>

#include "kipconvert.h"
#include "workers.h"

namespace gstkip {

class Conversion {
 public:
  /// Replaces the plan. After a failure there is none.
  KipStatus make(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options);

  /// Converts a picture.
  KipStatus run(const KipPlanes& from, const KipPlanes& to, Workers& workers);

  const char* description() const { return kipPlanDescription(plan_.get()); }

 private:
  struct Free {
    void operator()(KipPlan* plan) const { kipPlanFree(plan); }
  };

  std::unique_ptr<KipPlan, Free> plan_;
  int rows_ = 0;
  std::vector<std::vector<char>> scratch_;  // of each worker
};

}  // namespace gstkip
