#include "subject.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>

namespace bench {
namespace {

/// A way of reducing bits: the number of the dither type, and noise in percent.
struct Method {
  const char* name;
  int dither, noise;
};
constexpr Method kMethods[] = {{"None", 0, 0},  {"FS", 1, 0},          {"JJN", 2, 0},     {"Stucki", 3, 0},
                               {"Bayer", 4, 0}, {"BayerNoise", 4, 50}, {"FSNoise", 1, 50}};

// A mild mixture of the channels, and weights of grey.
constexpr float kMatrix[4][4] = {
    {0.8f, 0.1f, 0.1f, 0.02f}, {0.05f, 0.9f, 0.05f, 0}, {0.1f, 0, 0.85f, 0.01f}, {0, 0, 0, 1}};
constexpr float kWeights[3] = {0.25f, 0.5f, 0.25f};

}  // namespace

std::vector<Subject> allSubjects() {
  std::vector<Subject> subjects;
  for (const kip::Function& function : kip::registry()) {
    if (!function.shape.reduction) {
      subjects.push_back({function.name, &function});
      continue;
    }
    for (const Method& method : kMethods) {
      subjects.push_back({function.name + "/" + method.name, &function, method.dither, method.noise});
    }
  }
  return subjects;
}

Setting::Setting(const Subject& subject, int width, int height, const std::string& target)
    : function_(*subject.function) {
  const KipiSize size = {width, height};
  const bool inPlace = function_.shape.inPlace();
  const auto from = function_.planes(inPlace ? kip::Side::kDestination : kip::Side::kSource, size);
  const auto to = function_.planes(kip::Side::kDestination, size);
  bytes_ = bytesOf(from) + bytesOf(to);

  const auto make = [&](kip::Side side, const std::vector<kip::Plane>& shape, size_t pageOffset, Plane* planes,
                        kip::ImageArgument& argument) {
    auto image = std::make_unique<Image>(function_.image(side).sample, shape, pageOffset, bytes_ / 2);
    image->draw();
    for (size_t p = 0; p < image->planes().size(); ++p) {
      planes[p] = image->planes()[p];
      argument.plane[p] = planes[p].at;
      argument.step[p] = planes[p].step;
    }
    return image;
  };
  kip::ImageArgument unused;
  call_.width = width, call_.height = height, call_.target = target;
  source_ = make(inPlace ? kip::Side::kDestination : kip::Side::kSource, from, 0, call_.src,
                 inPlace ? unused : arguments_.source);
  destination_ = make(kip::Side::kDestination, to, kPage / 2, call_.dst, arguments_.destination);
  if (inPlace) std::copy(std::begin(call_.dst), std::end(call_.dst), call_.src);
  arguments_.size = size;
  arguments_.region = {0, 0, width, height};
  arguments_.choice = subject.choice;
  arguments_.noise = subject.noise;
  arguments_.levels = kLevels;
  arguments_.weights = kWeights;
  arguments_.matrix = kMatrix;
}

void Setting::copy() {
  std::memcpy(destination_->planes()[0].at, source_->planes()[0].at, bytes_ / 2);
  benchmark::ClobberMemory();
}

}  // namespace bench
