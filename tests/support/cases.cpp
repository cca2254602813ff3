#include "support/cases.h"

#include <algorithm>
#include <sstream>

namespace kip {
namespace {

Content randomSource(const Function& function, KipiSize size, Values values) {
  const Side side = function.input();
  uint32_t seed = static_cast<uint32_t>(size.width * 1000 + size.height);
  for (const char c : function.name) seed = (seed ^ static_cast<uint8_t>(c)) * 16777619u;
  return randomContent(function.planes(side, size), function.image(side).sample, seed, values);
}

}  // namespace

Case::Case(const Function& function, KipiSize size, const Arguments& settings, Values values)
    : Case(function, size, settings, randomSource(function, size, values)) {}

Case::Case(const Function& function, KipiSize size, const Arguments& settings, Content source)
    : function(function), size(size), settings(settings), source(std::move(source)) {}

std::string Case::text() const {
  return function.name + " " + std::to_string(size.width) + "x" + std::to_string(size.height) +
         textOf(function, settings);
}

std::string textOf(const Function& function, const Arguments& settings) {
  std::ostringstream text;
  const Shape& shape = function.shape;
  if (shape.reduction) {
    text << ", dither " << settings.choice << ", noise " << settings.noise << ", levels " << settings.levels;
  }
  if (shape.mosaic) text << ", grid " << settings.choice;
  if (shape.range) text << ", range " << settings.low << " to " << settings.high;
  if (shape.matrix && settings.matrix) text << ", matrix from " << settings.matrix[0][0];
  if (shape.weights && settings.weights) text << ", weights from " << settings.weights[0];
  return text.str();
}

KipiSize allowed(const Function& function, KipiSize size) {
  const Contract& contract = function.contract;
  const auto up = [&](int value) { return (value + contract.multiple - 1) / contract.multiple * contract.multiple; };
  return {up(std::max(size.width, contract.minWidth)), up(std::max(size.height, contract.minHeight))};
}

std::vector<KipiSize> awkwardSizes(const Function& function) {
  std::vector<KipiSize> sizes = {{511, 2}, {3, 67}};
  for (int width = 1; width <= 67; ++width) sizes.push_back({width, 1 + width % 5});
  for (const int width : {79, 80, 81, 95, 96, 97, 127, 128, 129, 130}) sizes.push_back({width, 1 + width % 3});
  for (KipiSize& size : sizes) size = allowed(function, size);
  const auto same = [](KipiSize a, KipiSize b) { return a.width == b.width && a.height == b.height; };
  sizes.erase(std::unique(sizes.begin(), sizes.end(), same), sizes.end());
  return sizes;
}

}  // namespace kip
