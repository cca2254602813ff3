// What holds for every exported function: the same bytes on every target, in any memory, with any number of threads;
// nothing touched outside the rows; checks in their order; scratch memory that may fail.
#include <gtest/gtest.h>

#include "kipcore.h"
#include "support/call_case.h"
#include "support/targets.h"

namespace kip {
namespace {

class EveryFunction : public testing::TestWithParam<const Function*> {
 protected:
  void SetUp() override {
    kipSetNumThreads(1);
    bestTarget().select();
  }
  void TearDown() override { kipSetNumThreads(0); }

  const Function& function() const { return *GetParam(); }

  /// Cases of all sizes, with the optional arguments in turn.
  std::vector<Case> cases() const {
    const std::vector<Arguments> settings = settingsOf(function());
    std::vector<Case> cases;
    for (const KipiSize size : awkwardSizes(function())) {
      cases.emplace_back(function(), size, settings[cases.size() % settings.size()]);
    }
    return cases;
  }
};

/// The promise of exactness, and the one of touching the rows only, where a kernel could break it: on each target.
TEST_P(EveryFunction, GivesTheSameBytesOnEveryTargetInAnyMemory) {
  int variation = 0;
  for (const Case& that : cases()) {
    fallbackTarget().select();
    const Outcome reference = outcomeOf(that);
    const Content expected = reference.over(kFill);
    std::vector<Target> targets = vectorTargets();
    for (const Placement placement : placementsFor(that)) {
      for (const Target& target : targets) {
        target.select();
        Trial trial(that, placement, ++variation);
        EXPECT_EQ(trial(), reference.status) << that.text() << ", " << target.name();
        trial.expect(expected, target.name());
      }
    }
    if (HasFailure()) return;
  }
}

std::vector<const Function*> pointers() {
  std::vector<const Function*> all;
  for (const Function& function : registry()) all.push_back(&function);
  return all;
}

INSTANTIATE_TEST_SUITE_P(Library, EveryFunction, testing::ValuesIn(pointers()),
                         [](const auto& info) { return info.param->name; });

}  // namespace
}  // namespace kip
