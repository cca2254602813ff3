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
    const int gap = 1 + (variation + (shape.stepPerPlane ? slot : firstSlot)) % 16;
    memory.emplace_back(placement, slot, plane, gap * bytesOf(shape.sample));
  }
  return memory;
}

ImageArgument imageArgument(const std::vector<PlaneMemory>& planes) {
  ImageArgument image;
  for (size_t p = 0; p < planes.size(); ++p) image.plane[p] = planes[p].first, image.step[p] = planes[p].step;
  return image;
}

}  // namespace

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

void Trial::expect(Content destination, const std::string& who) const {
  if (case_.function.image(Side::kDestination).sample == Sample::k32f) {
    Content result = this->destination();
    for (Content* content : {&result, &destination}) canonicalizeNan(*content);
    for (size_t p = 0; p < result.size(); ++p) destination_[p].put(result[p]);
  }
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
    const auto wide = [&](Side side) { return bytesOf(that.function.image(side).sample) > 1; };
    if (wide(that.function.input()) || wide(Side::kDestination)) all.push_back(Placement::kOddPadded);
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

}  // namespace kip
