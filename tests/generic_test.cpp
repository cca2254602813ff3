// What holds for every exported function: the same bytes on every target, in any memory, with any number of threads;
// nothing touched outside the rows; checks in their order; scratch memory that may fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "kipcore.h"
#include "support/allocation.h"
#include "support/faults.h"
#include "support/float_state.h"
#include "support/golden.h"
#include "support/processors.h"
#include "support/reference.h"
#include "support/targets.h"

namespace kip {
namespace {

class EveryFunction : public testing::TestWithParam<const Function*> {
 protected:
  static void SetUpTestSuite() {
    std::string names = fallbackTarget().name() + " (reference)";
    for (const Target& target : vectorTargets()) names += ", " + target.name();
    std::cout << registry().size() << " functions; targets: " << names << "\n";
  }

  void SetUp() override {
    kipSetNumThreads(1);
    pretendProcessors(8);
    bestTarget().select();
  }
  void TearDown() override {
    kipSetNumThreads(0);
    pretendProcessors(0);
  }

  const Function& function() const { return *GetParam(); }

  /// Cases of these sizes, with the optional arguments and the kinds of values in turn.
  std::vector<Case> casesOf(const std::vector<KipiSize>& sizes, std::span<const Values> values) const {
    const std::vector<Arguments> settings = settingsOf(function());
    std::vector<Case> cases;
    for (const KipiSize size : sizes) {
      const size_t i = cases.size();
      cases.emplace_back(function(), size, settings[i % settings.size()], values[i / settings.size() % values.size()]);
    }
    return cases;
  }

  /// What a destination holds before a call.
  Content contentBefore(const Case& that) const {
    return function().shape.inPlace() ? that.source : untouched(function(), Side::kDestination, that.size);
  }

  /// A few sizes, each with all optional arguments.
  std::vector<Case> fullCases(const std::vector<KipiSize>& sizes) const {
    std::vector<Case> cases;
    for (const KipiSize size : sizes) {
      for (const Arguments& settings : settingsOf(function())) {
        cases.emplace_back(function(), allowed(function(), size), settings);
      }
    }
    return cases;
  }
};

/// Exactness, and touching nothing but the rows, where a kernel could break either: on each target, with every
/// remainder of a row, against unmapped pages.
TEST_P(EveryFunction, GivesTheSameBytesOnEveryTargetInAnyMemory) {
  int variation = 0;
  for (const Case& that : casesOf(awkwardSizes(function()), valuesOf(function()))) {
    fallbackTarget().select();
    const Outcome reference = outcomeOf(that);
    const Content expected = reference.over(contentBefore(that));
    const std::vector<Placement> placements = placementsFor(that);
    for (const Placement placement : placements) {
      std::vector<Target> targets = vectorTargets();
      // The slow reference itself meets one kind of memory for each size.
      if (placement == placements[that.size.width % placements.size()]) targets.push_back(fallbackTarget());
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

/// Warnings, and whole blocks of odd sizes, and alpha that stays.
TEST_P(EveryFunction, WritesWhatItPromisesAndReportsIt) {
  const Contract& contract = function().contract;
  const int sample = bytesOf(function().shape.destination.sample), pixel = 4 * sample;
  for (const Case& that : casesOf(awkwardSizes(function()), valuesOf(function()).first(1))) {
    const Outcome outcome = outcomeOf(that);
    EXPECT_EQ(outcome.status, contract.success(that.size)) << that.text();
    if (function().shape.inPlace()) continue;
    const std::vector<Plane> converted = function().planes(Side::kDestination, contract.converted(that.size));
    for (size_t p = 0; p < converted.size(); ++p) {
      for (size_t i = 0; i < outcome.written[p].size(); ++i) {
        const int rowBytes = outcome.content[p].plane.rowBytes, y = int(i) / rowBytes, x = int(i) % rowBytes;
        const bool alphaStays = contract.alpha == Alpha::kUntouched && x % pixel >= 3 * sample;
        ASSERT_EQ(outcome.written[p][i], y < converted[p].rows && x < converted[p].rowBytes && !alphaStays)
            << that.text() << ": byte " << x << " of row " << y << " of plane " << p;
      }
    }
  }
}

/// In the families that look at it, a step that is no whole number of samples counts as the whole ones in it.
TEST(Steps, AreRoundedDownToSamples) {
  for (const Function& function : registry()) {
    const int sample = bytesOf(function.shape.source.sample);
    const bool cie = function.parts.has("XYZ") || function.parts.has("LUV");
    if (sample == 1 || !(cie || (function.parts.has("ToGray") && sample == 4))) continue;
    const Case that(function, {5, 3}, {});
    const Outcome expected = outcomeOf(that);
    Trial trial(that, plainPlacement(function));
    trial.arguments.source.step[0] += sample - 1, trial.arguments.destination.step[0] += sample - 1;
    EXPECT_EQ(trial(), kipStatusOk);
    trial.expect(expected.content, "longer steps");
  }
}

class FourthChannel : public EveryFunction {};

TEST_P(FourthChannel, IsGivenOrZeroOrCopied) {
  const Alpha alpha = function().contract.alpha;
  for (Case& that : fullCases({{68, 4}, {132, 2}})) {  // whole blocks of every kind
    Content content = outcomeOf(that).content;
    const Samples from(function(), Side::kSource, that.source), to(function(), Side::kDestination, content);
    for (int i = 0; i < that.size.width * that.size.height; ++i) {
      const int x = i % that.size.width, y = i / that.size.width;
      const double expected = alpha == Alpha::kCopied  ? from.value(3, x, y)
                              : alpha == Alpha::kGiven ? that.settings.alpha
                                                       : 0;
      ASSERT_EQ(to.value(3, x, y), expected) << that.text() << " at " << x << ", " << y;
    }
  }
}

/// Every fault by itself and together with every other one: the first check in the promised order decides.
TEST_P(EveryFunction, ChecksItsArgumentsInOrderAndWritesNothingOnFailure) {
  const Case that(function(), allowed(function(), {18, 8}), settingsOf(function()).front());
  const Content before = contentBefore(that);
  const std::vector<Fault> faults = faultsOf(function());
  for (const Fault& one : faults) {
    for (const Fault& other : faults) {
      Trial trial(that, plainPlacement(function()));
      one.put(trial.arguments);
      other.put(trial.arguments);
      const std::string text = one.text + " and " + other.text;
      EXPECT_EQ(trial(), reported(function(), one, other).status) << function().name << ": " << text;
      trial.expect(before, text);
      if (HasFailure()) return;
    }
  }
}

/// Row addresses are not computed in 32 bits.
TEST_P(EveryFunction, MayHaveRowsFarApart) {
  if (sizeof(void*) == 4 || function().shape.wholeImage()) return;
  const Case that(function(), allowed(function(), {21, 4}), settingsOf(function()).front());
  if (!fits(Placement::kFarApart, function().planes(Side::kDestination, that.size)[0])) return;
  const Content expected = outcomeOf(that).over(contentBefore(that));
  Trial trial(that, Placement::kFarApart);
  trial();
  trial.expect(expected, "");
}

/// The outcome of one thread, with so many.
void expectSameWithThreads(const Case& that, const Content& expected, int threads) {
  kipSetNumThreads(threads);
  Trial trial(that, plainPlacement(that.function));
  trial();
  trial.expect(expected, std::to_string(threads) + " threads");
}

bool diffuses(const Case& that) {
  return that.function.contract.diffusesErrors && that.settings.choice >= 1 && that.settings.choice <= 3;
}

TEST_P(EveryFunction, GivesTheSameBytesWithAnyNumberOfThreads) {
  // Above all thresholds: 4096 pixels, and 128 rows of 128.
  for (const Case& that : fullCases({{132, 140}, {131, 137}})) {
    if (diffuses(that)) continue;
    kipSetNumThreads(1);
    const Content expected = outcomeOf(that).over(contentBefore(that));
    for (const int threads : {2, 3, 5}) expectSameWithThreads(that, expected, threads);
    if (HasFailure()) return;
  }
}

/// Whatever the worker threads' own floating-point state is.
TEST_P(EveryFunction, RoundsOnEveryThreadAsItsCallerDoes) {
  constexpr int kThreads = 3;
  for (const Case& that : fullCases({{132, 140}})) {
    if (diffuses(that)) continue;
    kipSetNumThreads(kThreads);
    convert(function(), that.size, that.source, that.settings);  // starts them in the usual state
    const UnusualFloatState state;
    kipSetNumThreads(1);
    const Content expected = outcomeOf(that).over(contentBefore(that));
    expectSameWithThreads(that, expected, kThreads);
  }
}

/// Calls from several threads at once do not meet.
TEST_P(EveryFunction, MayBeCalledFromSeveralThreadsAtOnce) {
  kipSetNumThreads(2);
  const Case that(function(), allowed(function(), {66, 66}), settingsOf(function()).back());
  const Content expected = convertInPlainMemory(that).destination;
  std::vector<Content> results(3);
  std::vector<std::thread> callers;
  for (Content& result : results) {
    callers.emplace_back([&] { result = convertInPlainMemory(that).destination; });
  }
  for (std::thread& caller : callers) caller.join();
  for (const Content& result : results) expectEqual(result, expected, that.text());
}

/// Each allocation in turn fails: that is reported, nothing is written, and nothing is kept.
TEST_P(EveryFunction, SurvivesFailingAllocations) {
  kipSetNumThreads(3);
  for (const Case& that : fullCases({{66, 6}})) {
    failAllocation(0);
    convert(function(), that.size, that.source, that.settings);
    const int allocations = allocationsAsked();
    EXPECT_EQ(allocationsHeld(), 0) << that.text();
    for (int failing = 1; failing <= allocations; ++failing) {
      failAllocation(failing);
      Trial trial(that, plainPlacement(function()));
      EXPECT_EQ(trial(), kipStatusNoMemory) << that.text() << ", allocation " << failing << " of " << allocations;
      EXPECT_EQ(allocationsHeld(), 0) << that.text() << ", allocation " << failing << " of " << allocations;
      trial.expect(contentBefore(that), "failed allocation");
    }
    failAllocation(0);
  }
}

/// A function in place does what its twin with two images does.
class InPlace : public EveryFunction {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(InPlace);

TEST_P(InPlace, DoesWhatItsTwinDoes) {
  std::string name = function().name;
  const size_t planar = name.find("_IP3R"), mark = planar == name.npos ? name.rfind("IR") : planar + 1;
  const Function* twin = find(name.erase(mark, 1));
  ASSERT_NE(twin, nullptr) << name;
  for (const Case& that : fullCases({{1, 1}, {37, 3}, {66, 2}})) {
    const Case twinCase(*twin, that.size, that.settings, that.source);
    const Outcome outcome = outcomeOf(twinCase);
    const Content expected = outcome.over(that.source);
    Trial trial(that, Placement::kPadded);
    EXPECT_EQ(trial(), outcome.status);
    trial.expect(expected, twin->name);
  }
}

template <class Condition>
auto functionsWhere(const Condition& condition) {
  std::vector<const Function*> chosen;
  for (const Function& function : registry()) {
    if (condition(function)) chosen.push_back(&function);
  }
  return testing::ValuesIn(chosen);
}

std::string nameOf(const testing::TestParamInfo<const Function*>& info) { return info.param->name; }

bool fillsFourthChannel(const Function& f) {
  const Alpha alpha = f.contract.alpha;
  return alpha == Alpha::kGiven || alpha == Alpha::kZero || alpha == Alpha::kCopied;
}

INSTANTIATE_TEST_SUITE_P(Library, EveryFunction, functionsWhere([](const Function&) { return true; }), nameOf);
INSTANTIATE_TEST_SUITE_P(Library, FourthChannel, functionsWhere(fillsFourthChannel), nameOf);
INSTANTIATE_TEST_SUITE_P(Library, InPlace, functionsWhere([](const Function& f) { return f.shape.inPlace(); }), nameOf);

}  // namespace
}  // namespace kip
