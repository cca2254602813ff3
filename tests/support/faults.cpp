#include "support/faults.h"

#include <algorithm>

namespace kip {
namespace {

class Collector {
 public:
  explicit Collector(const Function& function) : function_(function), contract_(function.contract) {}

  std::vector<Fault> all() {
    if (!function_.shape.inPlace()) image(Side::kSource);
    image(Side::kDestination);
    if (function_.shape.matrix) {
      add("null matrix", Check::kImages, kipStatusNullPointer, [](Arguments& a) { a.matrix = nullptr; });
    }
    size();
    parameters();
    return std::move(faults_);
  }

 private:
  static ImageArgument& of(Arguments& a, Side side) { return side == Side::kSource ? a.source : a.destination; }

  void add(std::string text, Check check, KipStatus status, std::function<void(Arguments&)> put) {
    faults_.push_back({std::move(text), check, status, std::move(put)});
  }

  void image(Side side) {
    const bool isSource = side == Side::kSource;
    const std::string name = isSource ? "source" : "destination";
    if (isSource || contract_.destinationChecked) {
      add("null " + name, Check::kImages, kipStatusNullPointer, [=](Arguments& a) { of(a, side).given = false; });
    }
    if (function_.image(side).planar) {
      const int all = static_cast<int>(function_.planes(side, {8, 8}).size());
      const int checked = isSource || contract_.everyDestinationPlaneChecked ? all : all - 1;
      for (int p = 0; p < checked; ++p) {
        add("null " + name + " plane " + std::to_string(p), Check::kPlanes, kipStatusNullPointer,
            [=](Arguments& a) { of(a, side).plane[p] = nullptr; });
      }
    }
    if (!contract_.checks(Check::kSteps)) return;
    for (const int step : {0, -64}) {
      add(name + " step " + std::to_string(step), Check::kSteps, kipStatusBadStep,
          [=](Arguments& a) { of(a, side).step[0] = step; });
    }
  }

  void size() {
    // Functions that do not look at the size have nothing to do for an empty region.
    const KipStatus status = contract_.checks(Check::kSize) ? kipStatusBadSize : kipStatusOk;
    const auto bad = [&](int KipiSize::*side, const char* name, int value) {
      add(std::string(name) + ' ' + std::to_string(value), Check::kSize, status,
          [=](Arguments& a) { a.size.*side = value; });
    };
    for (const int value : {0, -1, -2147483647 - 1, contract_.minWidth - 1}) bad(&KipiSize::width, "width", value);
    for (const int value : {0, -1, -2147483647 - 1, contract_.minHeight - 1}) bad(&KipiSize::height, "height", value);
    for (int more = 1; more < contract_.multiple; ++more) {
      bad(&KipiSize::width, "width", contract_.multiple + more);
      bad(&KipiSize::height, "height", contract_.multiple + more);
    }
  }

  void parameters() {
    const auto set = [&](const char* text, Check check, KipStatus status, std::function<void(Arguments&)> put) {
      if (contract_.checks(check)) add(text, check, status, std::move(put));
    };
    set("empty range", Check::kRange, kipStatusGammaRange, [](Arguments& a) { a.high = a.low; });
    set("reversed range", Check::kRange, kipStatusGammaRange, [](Arguments& a) { a.high = a.low - 1; });
    set("noise -1", Check::kNoise, kipStatusNoiseRange, [](Arguments& a) { a.noise = -1; });
    set("noise 101", Check::kNoise, kipStatusNoiseRange, [](Arguments& a) { a.noise = 101; });
    const bool deep = function_.parts.has("_16u_") || function_.parts.has("_16s_");
    const int tooMany = deep ? 65537 : 257;
    set("1 level", Check::kLevels, kipStatusDitherLevels, [](Arguments& a) { a.levels = 1; });
    set("too many levels", Check::kLevels, kipStatusDitherLevels, [=](Arguments& a) { a.levels = tooMany; });
    // An unknown method is a silent success that writes nothing.
    set("method 5", Check::kMethod, kipStatusOk, [](Arguments& a) { a.choice = 5; });
    set("method -1", Check::kMethod, kipStatusOk, [](Arguments& a) { a.choice = -1; });
    set("grid 4", Check::kGrid, kipStatusBadArgument, [](Arguments& a) { a.choice = 4; });
    set("grid -1", Check::kGrid, kipStatusBadArgument, [](Arguments& a) { a.choice = -1; });
  }

  const Function& function_;
  const Contract& contract_;
  std::vector<Fault> faults_;
};

}  // namespace

std::vector<Fault> faultsOf(const Function& function) { return Collector(function).all(); }

const Fault& reported(const Function& function, const Fault& one, const Fault& other) {
  const std::vector<Check>& order = function.contract.order;
  const auto place = [&](const Fault& f) { return std::find(order.begin(), order.end(), f.check); };
  return place(other) < place(one) ? other : one;
}

}  // namespace kip
