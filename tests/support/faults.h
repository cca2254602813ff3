// Everything that can be wrong with the arguments of a call.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "registry/registry.h"

namespace kip {

struct Fault {
  std::string text;
  Check check;       ///< the one that notices it
  KipStatus status;  ///< what it reports
  std::function<void(Arguments&)> put;
};

/// All faults that a function is promised to notice.
std::vector<Fault> faultsOf(const Function& function);

/// Which of two faults in one call is reported: the one that is checked for first.
const Fault& reported(const Function& function, const Fault& one, const Fault& other);

}  // namespace kip
