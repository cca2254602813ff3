// Switching the SIMD target that the library's kernels are picked for. Library and test share Highway's state, as
// both use its shared object; this only works when the test is built with the library's own target definitions.
#pragma once

#include <hwy/highway.h>

#include <string>
#include <vector>

namespace kip {

/// One of the sets of kernels that the library was built with and that this processor runs.
class Target {
 public:
  explicit Target(int64_t bit) : bit_(bit) {}

  std::string name() const { return hwy::TargetName(bit_); }
  void select() const { hwy::GetChosenTarget().Update(bit_); }

 private:
  int64_t bit_;
};

/// The portable kernels, which every other target is measured against.
inline Target fallbackTarget() { return Target(HWY_STATIC_TARGET); }

/// The others, the best one first.
inline std::vector<Target> vectorTargets() {
  std::vector<Target> targets;
  for (const int64_t bit : hwy::SupportedAndGeneratedTargets()) {
    if (bit != HWY_STATIC_TARGET) targets.emplace_back(bit);
  }
  return targets;
}

/// The one that the library would choose by itself.
inline Target bestTarget() {
  const std::vector<Target> targets = vectorTargets();
  return targets.empty() ? fallbackTarget() : targets.front();
}

}  // namespace kip
