// Any function of the library with any arguments, as the input has them: what one target makes on one thread in plain
// memory, every other target must make in guarded memory, with threads, and with one fault among the arguments or with
// a failing allocation it must report that and write nothing.
#include <gtest/gtest.h>

#include <algorithm>

#include "input.h"
#include "kipcore.h"
#include "support/allocation.h"
#include "support/call_case.h"
#include "support/faults.h"
#include "support/targets.h"

namespace {

using fuzz::Input;
using kip::Arguments;
using kip::Case;
using kip::Content;
using kip::Function;
using kip::Placement;
using kip::Target;
using kip::Trial;

/// Optional arguments that outlive the call.
struct Parameters {
  float weights[3], matrix[4][4];
};

Arguments settingsFrom(Input& in, const Function& function, Parameters& parameters) {
  const std::vector<Arguments> known = settingsOf(function);
  const size_t which = in.below(2 * known.size());
  if (which < known.size()) return known[which];
  Arguments settings = known.front();
  settings.choice = static_cast<int>(in.below(5));
  settings.noise = static_cast<int>(in.below(101));
  settings.levels = 2 + static_cast<int>(in.below(255));
  settings.alpha = in.take<uint8_t>();
  if (function.shape.mosaic) settings.choice %= 4;
  if (function.shape.range) {
    const float low = in.take<float>(), high = in.take<float>();
    if (high - low > 0) settings.low = low, settings.high = high;
  }
  parameters = in.take<Parameters>();
  settings.weights = parameters.weights;
  settings.matrix = parameters.matrix;
  return settings;
}

/// Random samples, or the rest of the input again and again.
Content sourceFrom(Input& in, const Function& function, KipiSize size) {
  const kip::Side side = function.input();
  const std::span<const kip::Values> values = valuesOf(function);
  const size_t kind = in.below(values.size() + 1);
  const uint32_t seed = in.take<uint16_t>();
  const kip::Values chosen = values[std::min(kind, values.size() - 1)];
  Content content = randomContent(function.planes(side, size), function.image(side).sample, seed, chosen);
  const std::span<const uint8_t> rest = in.left();
  if (kind < values.size() || rest.empty()) return content;
  size_t at = 0;
  for (kip::PlaneContent& plane : content) {
    for (uint8_t& byte : plane.bytes) byte = rest[at++ % rest.size()];
  }
  return content;
}

/// The whole mosaic, or any rectangle.
kip::Region regionFrom(Input& in, KipiSize size) {
  if (in.below(2) == 0) return {0, 0, size.width, size.height};
  const auto near = [&](int length) { return static_cast<int>(in.below(2 * length + 8)) - length / 2 - 4; };
  const int x = near(size.width), y = near(size.height);
  return {x, y, near(size.width), near(size.height)};
}

/// How a call is made, beside what is asked of the function.
struct Manner {
  kip::Region region;
  Placement placement;
  int variation, threads, failingAllocation;
  const kip::Fault* fault;
};

/// A destination that nothing has been written to.
Content untouched(const Case& that) {
  if (that.function.shape.inPlace()) return that.source;
  Content content;
  for (const kip::Plane& plane : that.function.planes(kip::Side::kDestination, that.size)) {
    content.push_back({plane, std::vector<uint8_t>(static_cast<size_t>(plane.rowBytes) * plane.rows, kip::kFill)});
  }
  return content;
}

void callEverywhere(const Case& that, const Manner& manner) {
  const bool diffuses = that.function.contract.diffusesErrors;
  kipSetNumThreads(diffuses ? manner.threads : 1);  // what error diffusion makes follows the number of threads
  kip::bestTarget().select();
  Trial reference(that, plainPlacement(that.function));
  reference.arguments.region = manner.region;
  const KipStatus expected = reference();
  const Content result = reference.destination();

  kipSetNumThreads(manner.threads);
  std::vector<Target> targets = kip::vectorTargets();
  targets.push_back(kip::fallbackTarget());
  for (const Target& target : targets) {
    target.select();
    Trial trial(that, manner.placement, manner.variation);
    trial.arguments.region = manner.region;
    if (manner.fault) manner.fault->put(trial.arguments);
    kip::failAllocation(manner.failingAllocation);
    const KipStatus status = trial();
    const bool outOfMemory = manner.failingAllocation && kip::allocationsAsked() >= manner.failingAllocation;
    EXPECT_EQ(kip::allocationsHeld(), 0) << that.text();
    kip::failAllocation(0);
    const bool nothing = manner.fault || outOfMemory;
    EXPECT_EQ(status, manner.fault ? manner.fault->status : outOfMemory ? kipStatusNoMemory : expected) << that.text();
    trial.expect(nothing ? untouched(that) : result, target.name());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  testing::FLAGS_gtest_break_on_failure = true;  // the fuzzer keeps the input that breaks
  Input in(data, size);
  const Function& function = kip::registry()[in.below(kip::registry().size())];
  Parameters parameters;
  const int width = 1 + static_cast<int>(in.below(600)), height = 1 + in.take<uint8_t>() % 40;
  const KipiSize wanted = {width, height};
  const KipiSize area = allowed(function, wanted);
  const Arguments settings = settingsFrom(in, function, parameters);
  Manner manner;
  manner.region = regionFrom(in, area);
  manner.variation = in.take<uint8_t>();
  manner.threads = 1 + static_cast<int>(in.below(4));
  manner.failingAllocation = static_cast<int>(in.below(4));
  const std::vector<kip::Fault> faults = faultsOf(function);
  const size_t fault = in.below(4 * faults.size());
  manner.fault = fault < faults.size() ? &faults[fault] : nullptr;
  const size_t place = in.take<uint8_t>();
  const Case that(function, area, settings, sourceFrom(in, function, area));
  const std::vector<Placement> placements = placementsFor(that);
  manner.placement = placements[place % placements.size()];
  callEverywhere(that, manner);
  return 0;
}
