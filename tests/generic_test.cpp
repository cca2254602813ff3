// What holds for every exported function: the same bytes on every target, in any memory, with any number of threads;
// nothing touched outside the rows; checks in their order; scratch memory that may fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "kipcore.h"
#include "support/allocation.h"
#include "support/call_case.h"
#include "support/faults.h"
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
    bestTarget().select();
  }
  void TearDown() override { kipSetNumThreads(0); }

  const Function& function() const { return *GetParam(); }

  /// Cases of these sizes, with the optional arguments in turn.
  std::vector<Case> casesOf(const std::vector<KipiSize>& sizes) const {
    const std::vector<Arguments> settings = settingsOf(function());
    std::vector<Case> cases;
    for (const KipiSize size : sizes) cases.emplace_back(function(), size, settings[cases.size() % settings.size()]);
    return cases;
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
  for (const Case& that : casesOf(awkwardSizes(function()))) {
    fallbackTarget().select();
    const Outcome reference = outcomeOf(that);
    const Content expected = reference.over(kFill);
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

/// Which bytes of a destination of this size the function promises to write.
std::vector<std::vector<bool>> promisedBytes(const Function& function, KipiSize size) {
  const std::vector<Plane> planes = function.planes(Side::kDestination, size);
  const std::vector<Plane> converted = function.convertedPlanes(Side::kDestination, size);
  const int sample = bytesOf(function.shape.destination.sample), pixel = 4 * sample;
  std::vector<std::vector<bool>> promised;
  for (size_t p = 0; p < planes.size(); ++p) {
    std::vector<bool> bytes;
    for (int y = 0; y < planes[p].rows; ++y) {
      for (int x = 0; x < planes[p].rowBytes; ++x) {
        const bool alpha = function.contract.alpha == Alpha::kUntouched && x % pixel >= 3 * sample;
        bytes.push_back(y < converted[p].rows && x < converted[p].rowBytes && !alpha);
      }
    }
    promised.push_back(std::move(bytes));
  }
  return promised;
}

/// Warnings, and whole blocks of odd sizes, and alpha that stays.
TEST_P(EveryFunction, WritesWhatItPromisesAndReportsIt) {
  for (const Case& that : casesOf(awkwardSizes(function()))) {
    const Outcome outcome = outcomeOf(that);
    EXPECT_EQ(outcome.status, function().contract.success(that.size)) << that.text();
    if (function().shape.inPlace()) continue;
    const auto promised = promisedBytes(function(), that.size);
    for (size_t p = 0; p < promised.size(); ++p) {
      const auto at = std::mismatch(promised[p].begin(), promised[p].end(), outcome.written[p].begin());
      const auto byte = at.first - promised[p].begin(), rowBytes = ptrdiff_t{outcome.content[p].plane.rowBytes};
      EXPECT_TRUE(at.first == promised[p].end())
          << that.text() << ": byte " << byte % rowBytes << " of row " << byte / rowBytes << " of plane " << p
          << (*at.first ? " is not written" : " is written but should stay");
    }
    if (HasFailure()) return;
  }
}

/// The bytes of an image's fourth channel.
std::vector<uint8_t> alphaOf(const Content& content, const Layout& layout, int sampleBytes) {
  if (layout.planar) return content[3].bytes;
  std::vector<uint8_t> alpha;
  const std::vector<uint8_t>& bytes = content[0].bytes;
  for (size_t i = 3 * sampleBytes; i < bytes.size(); i += 4 * sampleBytes) {
    alpha.insert(alpha.end(), &bytes[i], &bytes[i] + sampleBytes);
  }
  return alpha;
}

class FourthChannel : public EveryFunction {};

TEST_P(FourthChannel, IsGivenOrZeroOrCopied) {
  const Alpha alpha = function().contract.alpha;
  for (const Case& that : fullCases({{68, 4}, {132, 2}})) {  // whole blocks of every kind
    const int sample = bytesOf(function().shape.destination.sample);
    const std::vector<uint8_t> result = alphaOf(outcomeOf(that).content, function().destination, sample);
    if (alpha == Alpha::kCopied) {
      EXPECT_EQ(result, alphaOf(that.source, function().source, sample)) << that.text();
      continue;
    }
    const uint16_t given = alpha == Alpha::kGiven ? static_cast<uint16_t>(that.settings.alpha) : 0;
    for (size_t i = 0; i < result.size(); i += sample) {
      uint16_t value = 0;
      std::memcpy(&value, &result[i], sample);
      ASSERT_EQ(value, given) << that.text() << ", pixel " << i / sample;
    }
  }
}

/// Every fault by itself and together with every other one: the first check in the promised order decides.
TEST_P(EveryFunction, ChecksItsArgumentsInOrderAndWritesNothingOnFailure) {
  const Case that(function(), allowed(function(), {18, 8}), settingsOf(function()).front());
  Content untouched;
  for (const Plane& plane : function().planes(Side::kDestination, that.size)) {
    untouched.push_back({plane, std::vector<uint8_t>(static_cast<size_t>(plane.rowBytes) * plane.rows, kFill)});
  }
  if (function().shape.inPlace()) untouched = that.source;
  const std::vector<Fault> faults = faultsOf(function());
  for (const Fault& one : faults) {
    for (const Fault& other : faults) {
      Trial trial(that, plainPlacement(function()));
      one.put(trial.arguments);
      other.put(trial.arguments);
      const std::string text = one.text + " and " + other.text;
      EXPECT_EQ(trial(), reported(function(), one, other).status) << function().name << ": " << text;
      trial.expect(untouched, text);
      if (HasFailure()) return;
    }
  }
}

/// Row addresses are not computed in 32 bits.
TEST_P(EveryFunction, MayHaveRowsFarApart) {
  if (sizeof(void*) == 4 || function().shape.wholeImage()) return;
  const Case that(function(), allowed(function(), {21, 4}), settingsOf(function()).front());
  if (!fits(Placement::kFarApart, function().planes(Side::kDestination, that.size)[0])) return;
  const Content expected = outcomeOf(that).over(kFill);
  Trial trial(that, Placement::kFarApart);
  trial();
  trial.expect(expected, "");
}

bool diffuses(const Case& that) {
  return that.function.contract.diffusesErrors && that.settings.choice >= 1 && that.settings.choice <= 3;
}

TEST_P(EveryFunction, GivesTheSameBytesWithAnyNumberOfThreads) {
  // Above all thresholds: 4096 pixels, and 128 rows of 128.
  for (const Case& that : fullCases({{132, 140}, {131, 137}})) {
    if (diffuses(that)) continue;
    kipSetNumThreads(1);
    const Content expected = outcomeOf(that).over(kFill);
    for (const int threads : {2, 3, 5}) {
      kipSetNumThreads(threads);
      Trial trial(that, plainPlacement(function()));
      trial();
      trial.expect(expected, std::to_string(threads) + " threads");
    }
    if (HasFailure()) return;
  }
}

/// Calls from several threads at once do not meet.
TEST_P(EveryFunction, MayBeCalledFromSeveralThreadsAtOnce) {
  kipSetNumThreads(2);
  const Case that(function(), allowed(function(), {66, 66}), settingsOf(function()).back());
  const Content expected = outcomeOf(that).over(kFill);
  constexpr int kCallers = 3;
  std::vector<Content> results(kCallers, function().shape.inPlace() ? that.source : expected);
  std::vector<std::thread> callers;
  for (Content& result : results) {
    callers.emplace_back([&] {
      Arguments arguments = that.settings;
      Content source = that.source;
      const auto lay = [](Content& content, ImageArgument& image, uint8_t fill, bool clear) {
        for (size_t p = 0; p < content.size(); ++p) {
          if (clear) std::fill(content[p].bytes.begin(), content[p].bytes.end(), fill);
          image.plane[p] = content[p].bytes.data();
          image.step[p] = content[p].plane.rowBytes;
        }
      };
      lay(source, arguments.source, kFill, false);
      lay(result, arguments.destination, kFill, !function().shape.inPlace());
      arguments.size = that.size;
      arguments.region = {0, 0, that.size.width, that.size.height};
      function().call(arguments);
    });
  }
  for (std::thread& caller : callers) caller.join();
  for (const Content& result : results) {
    for (size_t p = 0; p < result.size(); ++p) EXPECT_EQ(result[p].bytes, expected[p].bytes) << that.text();
  }
}

/// Each allocation in turn fails: that is reported, nothing is written, and nothing is kept.
TEST_P(EveryFunction, SurvivesFailingAllocations) {
  kipSetNumThreads(3);
  for (const Case& that : fullCases({{66, 6}})) {
    failAllocation(0);
    const Outcome reference = outcomeOf(that);
    const int allocations = allocationsAsked() / 2;
    EXPECT_EQ(allocationsHeld(), 0) << that.text();
    Content untouched = reference.content;
    for (PlaneContent& plane : untouched) std::fill(plane.bytes.begin(), plane.bytes.end(), kFill);
    if (function().shape.inPlace()) untouched = that.source;
    for (int failing = 1; failing <= allocations; ++failing) {
      failAllocation(failing);
      Trial trial(that, plainPlacement(function()));
      EXPECT_EQ(trial(), kipStatusNoMemory) << that.text() << ", allocation " << failing << " of " << allocations;
      EXPECT_EQ(allocationsHeld(), 0) << that.text() << ", allocation " << failing << " of " << allocations;
      trial.expect(untouched, "failed allocation");
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
    Content expected = outcome.content;
    for (size_t p = 0; p < expected.size(); ++p) {
      for (size_t i = 0; i < expected[p].bytes.size(); ++i) {
        if (!outcome.written[p][i]) expected[p].bytes[i] = that.source[p].bytes[i];
      }
    }
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
