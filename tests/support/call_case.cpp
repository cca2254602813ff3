#include "support/call_case.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace kip {
namespace {

std::vector<PlaneMemory> place(const Case& that, Side side, Placement placement, int variation) {
  const ImageShape& shape = that.function.image(side);
  const int firstSlot = side == Side::kSource ? 0 : kMostPlanes;
  std::vector<PlaneMemory> memory;
  for (const Plane& plane : that.function.planes(side, that.size)) {
    const int slot = firstSlot + static_cast<int>(memory.size());
    // All steps differ that may; the bases have every alignment that the sample type allows.
    const int gap = 1 + (variation + (shape.stepPerPlane ? slot : firstSlot)) % 7;
    memory.emplace_back(placement, slot, plane, gap * bytesOf(shape.sample));
  }
  return memory;
}

ImageArgument imageArgument(const std::vector<PlaneMemory>& planes) {
  ImageArgument image;
  for (size_t p = 0; p < planes.size(); ++p) image.plane[p] = planes[p].first, image.step[p] = planes[p].step;
  return image;
}

Content randomSource(const Function& function, KipiSize size) {
  const Side side = function.input();
  uint32_t seed = static_cast<uint32_t>(size.width * 1000 + size.height);
  for (const char c : function.name) seed = (seed ^ static_cast<uint8_t>(c)) * 16777619u;
  return randomContent(function.planes(side, size), function.image(side).sample, seed);
}

}  // namespace

Case::Case(const Function& function, KipiSize size, const Arguments& settings)
    : Case(function, size, settings, randomSource(function, size)) {}

Case::Case(const Function& function, KipiSize size, const Arguments& settings, Content source)
    : function(function), size(size), settings(settings), source(std::move(source)) {}

std::string Case::text() const {
  std::ostringstream text;
  text << function.name << " " << size.width << "x" << size.height;
  if (function.shape.reduction) {
    text << ", dither " << settings.choice << ", noise " << settings.noise << ", levels " << settings.levels;
  }
  if (function.shape.mosaic) text << ", grid " << settings.choice;
  return text.str();
}

Content Outcome::over(Content before) const {
  for (size_t p = 0; p < before.size(); ++p) {
    for (size_t i = 0; i < before[p].bytes.size(); ++i) {
      if (written[p][i]) before[p].bytes[i] = content[p].bytes[i];
    }
  }
  return before;
}

Trial::Trial(const Case& that, Placement placement, int variation)
    : arguments(that.settings), case_(that), placement_(placement) {
  if (!that.function.shape.inPlace()) source_ = place(that, Side::kSource, placement, variation);
  destination_ = place(that, Side::kDestination, placement, variation);
  arguments.source = imageArgument(source_);
  arguments.destination = imageArgument(destination_);
  arguments.size = that.size;
  arguments.region = {0, 0, that.size.width, that.size.height};
}

KipStatus Trial::operator()(uint8_t fill) {
  for (const PlaneMemory& plane : source_) plane.clear(kFill);
  for (const PlaneMemory& plane : destination_) plane.clear(fill);
  const std::vector<PlaneMemory>& from = case_.function.shape.inPlace() ? destination_ : source_;
  for (size_t p = 0; p < from.size(); ++p) from[p].put(case_.source[p]);
  KipStatus status = kipStatusOk;
  const auto fault = faultOf([&] { status = case_.function.call(arguments); });
  if (fault) {
    std::ostringstream where;
    for (const auto* planes : {&source_, &destination_}) {
      for (const PlaneMemory& plane : *planes) {
        where << (planes == &source_ ? "\n  source" : "\n  destination") << " plane of rows of " << plane.plane.rowBytes
              << " bytes, step " << plane.step << ": byte " << *fault - plane.first;
      }
    }
    ADD_FAILURE() << case_.text() << ", " << nameOf(placement_) << ": touches unmapped memory" << where.str();
  }
  return status;
}

void Trial::expect(const Content& destination, const std::string& who) const {
  const auto check = [&](const char* side, const std::vector<PlaneMemory>& planes, const Content& content) {
    for (size_t p = 0; p < planes.size(); ++p) {
      EXPECT_EQ(planes[p].difference(content[p], kFill), "")
          << case_.text() << ", " << who << ", " << nameOf(placement_) << ", " << side << " plane " << p << ", step "
          << planes[p].step;
    }
  };
  check("destination", destination_, destination);
  check("source", source_, case_.source);
}

Content Trial::destination() const {
  Content content;
  for (const PlaneMemory& plane : destination_) content.push_back(plane.get());
  return content;
}

Outcome outcomeOf(const Case& that) {
  constexpr uint8_t kOtherFill = 0x5A;
  Trial trial(that, plainPlacement(that.function));
  trial(kOtherFill);
  const Content other = trial.destination();
  Outcome outcome;
  outcome.status = trial(kFill);
  outcome.content = trial.destination();
  for (size_t p = 0; p < other.size(); ++p) {
    std::vector<bool> written(other[p].bytes.size());
    for (size_t i = 0; i < written.size(); ++i) written[i] = other[p].bytes[i] == outcome.content[p].bytes[i];
    outcome.written.push_back(std::move(written));
  }
  return outcome;
}

Content convert(const Function& function, KipiSize size, const Content& source, const Arguments& settings) {
  const Case that(function, size, settings, source);
  Trial trial(that, plainPlacement(function));
  EXPECT_EQ(trial(), function.contract.success(size)) << that.text();
  return trial.destination();
}

Placement plainPlacement(const Function& function) {
  return function.shape.wholeImage() ? Placement::kTightEnd : Placement::kPadded;
}

std::vector<Placement> placementsFor(const Case& that) {
  std::vector<Placement> all = {Placement::kTightEnd, Placement::kTightStart};
  if (!that.function.shape.wholeImage()) {
    all.insert(all.begin(), Placement::kPadded);
    all.insert(all.end(), {Placement::kRowEnds, Placement::kRowStarts});
    if (!that.function.contract.checks(Check::kSteps)) all.push_back(Placement::kBottomUp);
  }
  std::erase_if(all, [&](Placement placement) {
    for (const Side side : {Side::kSource, Side::kDestination}) {
      for (const Plane& plane : that.function.planes(side, that.size)) {
        if (!fits(placement, plane)) return true;
      }
    }
    return false;
  });
  return all;
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
