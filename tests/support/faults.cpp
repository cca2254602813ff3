#include "support/faults.h"

#include <algorithm>
#include <limits>

namespace kip {
namespace {

ImageArgument& of(Arguments& a, Side side) { return side == Side::kSource ? a.source : a.destination; }

std::vector<Fault> faultsOfImage(const Function& function, Side side) {
  const Contract& contract = function.contract;
  const bool isSource = side == Side::kSource;
  const std::string name = isSource ? "source " : "destination ";
  std::vector<Fault> faults;
  if (isSource || contract.destinationChecked) {
    faults.push_back(
        {name + "null", Check::kImages, kipStatusNullPointer, [=](Arguments& a) { of(a, side).given = false; }});
  }
  const int planes = function.image(side).planar ? static_cast<int>(function.planes(side, {8, 8}).size()) : 0;
  for (int p = 0; p < planes - !(isSource || contract.everyDestinationPlaneChecked); ++p) {
    faults.push_back({name + "null plane " + std::to_string(p), Check::kPlanes, kipStatusNullPointer,
                      [=](Arguments& a) { of(a, side).plane[p] = nullptr; }});
  }
  for (const int step : {0, -64}) {
    faults.push_back({name + "step " + std::to_string(step), Check::kSteps, kipStatusBadStep,
                      [=](Arguments& a) { of(a, side).step[0] = step; }});
  }
  return faults;
}

std::vector<Fault> faultsOfSize(const Contract& contract) {
  // Functions that do not look at the size have nothing to do for an empty region.
  const KipStatus status = contract.checks(Check::kSize) ? kipStatusBadSize : kipStatusOk;
  std::vector<Fault> faults;
  for (const bool isWidth : {true, false}) {
    std::vector<int> bad = {0, -1, std::numeric_limits<int>::min(),
                            (isWidth ? contract.minWidth : contract.minHeight) - 1};
    for (int more = 1; more < contract.multiple; ++more) bad.push_back(contract.multiple + more);
    for (const int value : bad) {
      faults.push_back({(isWidth ? "width " : "height ") + std::to_string(value), Check::kSize, status,
                        [=](Arguments& a) { (isWidth ? a.size.width : a.size.height) = value; }});
    }
  }
  return faults;
}

}  // namespace

std::vector<Fault> faultsOf(const Function& function) {
  const Contract& contract = function.contract;
  const int mostLevels = function.image(Side::kDestination).sample == Sample::k8u ? 256 : 65536;
  std::vector<Fault> faults = {
      {"empty range", Check::kRange, kipStatusGammaRange, [](Arguments& a) { a.high = a.low; }},
      {"reversed range", Check::kRange, kipStatusGammaRange, [](Arguments& a) { a.high = a.low - 1; }},
      {"noise -1", Check::kNoise, kipStatusNoiseRange, [](Arguments& a) { a.noise = -1; }},
      {"noise 101", Check::kNoise, kipStatusNoiseRange, [](Arguments& a) { a.noise = 101; }},
      {"1 level", Check::kLevels, kipStatusDitherLevels, [](Arguments& a) { a.levels = 1; }},
      {"too many levels", Check::kLevels, kipStatusDitherLevels, [=](Arguments& a) { a.levels = mostLevels + 1; }},
      // An unknown method is a silent success that writes nothing.
      {"method 5", Check::kMethod, kipStatusOk, [](Arguments& a) { a.choice = 5; }},
      {"method -1", Check::kMethod, kipStatusOk, [](Arguments& a) { a.choice = -1; }},
      {"grid 4", Check::kGrid, kipStatusBadArgument, [](Arguments& a) { a.choice = 4; }},
      {"grid -1", Check::kGrid, kipStatusBadArgument, [](Arguments& a) { a.choice = -1; }},
  };
  const auto add = [&](std::vector<Fault> more) { faults.insert(faults.end(), more.begin(), more.end()); };
  if (!function.shape.inPlace()) add(faultsOfImage(function, Side::kSource));
  add(faultsOfImage(function, Side::kDestination));
  if (function.shape.matrix) {
    add({{"null matrix", Check::kImages, kipStatusNullPointer, [](Arguments& a) { a.matrix = nullptr; }}});
  }
  std::erase_if(faults, [&](const Fault& fault) { return !contract.checks(fault.check); });
  add(faultsOfSize(contract));
  return faults;
}

const Fault& reported(const Function& function, const Fault& one, const Fault& other) {
  const std::vector<Check>& order = function.contract.order;
  const auto place = [&](const Fault& f) { return std::find(order.begin(), order.end(), f.check); };
  return place(other) < place(one) ? other : one;
}

}  // namespace kip
