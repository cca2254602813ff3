#include "subject.h"

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

Setting::Setting(const Subject& subject, int width, int height) : function_(*subject.function) {
  const auto make = [&](kip::Side side, size_t pageOffset, Plane* planes, kip::ImageArgument& argument) {
    auto image =
        std::make_unique<Image>(function_.image(side).sample, function_.planes(side, {width, height}), pageOffset);
    image->draw();
    for (size_t p = 0; p < image->planes().size(); ++p) {
      planes[p] = image->planes()[p];
      argument.plane[p] = planes[p].at;
      argument.step[p] = planes[p].step;
    }
    return image;
  };
  call_.width = width, call_.height = height;
  destination_ = make(kip::Side::kDestination, 2048, call_.dst, arguments_.destination);
  if (function_.shape.inPlace()) {
    std::copy(std::begin(call_.dst), std::end(call_.dst), call_.src);
  } else {
    source_ = make(kip::Side::kSource, 0, call_.src, arguments_.source);
  }
  arguments_.size = {width, height};
  arguments_.region = {0, 0, width, height};
  arguments_.choice = subject.choice;
  arguments_.noise = subject.noise;
  arguments_.levels = kLevels;
  arguments_.weights = kWeights;
  arguments_.matrix = kMatrix;
}

size_t Setting::bytes() const { return destination_->bytes() + (source_ ? source_ : destination_)->bytes(); }

}  // namespace bench
