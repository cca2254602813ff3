// Calling any exported function through one set of arguments. The shape of a function's argument list is read off its
// type, parameter by parameter, so that nothing about it has to be written down a second time.
#pragma once

#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>

#include "kipcc.h"

namespace kip {

constexpr int kMostPlanes = 4;

enum class Sample { k8u, k8s, k16u, k16s, k32s, k32f };

constexpr int bytesOf(Sample sample) { return sample <= Sample::k8s ? 1 : sample <= Sample::k16s ? 2 : 4; }

template <class T>
constexpr Sample sampleOf() {
  if constexpr (std::is_same_v<T, Kip8u>) return Sample::k8u;
  if constexpr (std::is_same_v<T, Kip8s>) return Sample::k8s;
  if constexpr (std::is_same_v<T, Kip16u>) return Sample::k16u;
  if constexpr (std::is_same_v<T, Kip16s>) return Sample::k16s;
  if constexpr (std::is_same_v<T, Kip32s>) return Sample::k32s;
  if constexpr (std::is_same_v<T, Kip32f>) return Sample::k32f;
}

/// One image of a call. Interleaved images are plane 0.
struct ImageArgument {
  void* plane[kMostPlanes] = {};
  int step[kMostPlanes] = {};  ///< bytes; functions with one step for all planes get the first
  bool given = true;           ///< false: a null pointer in the image's place (for planes: in the array's)
};

struct Region {
  int x, y, width, height;
};

/// All that any function takes; each function picks its own.
struct Arguments {
  ImageArgument source = {};  ///< not used by functions in place
  ImageArgument destination = {};
  KipiSize size = {};
  Region region = {};  ///< demosaicing: the part of the image to convert
  int alpha = 0;
  int choice = 0;  ///< dither method, or Bayer grid
  int noise = 0, levels = 2;
  float low = 0, high = 1;  ///< value range of the 32f gamma functions
  const float* weights = nullptr;
  const float (*matrix)[4] = nullptr;
  void* work = nullptr;
  int workStep = 0;
};

/// How a function takes one of its images.
struct ImageShape {
  Sample sample = Sample::k8u;
  bool present = false, planar = false;
  bool hasStep = false, stepPerPlane = false;
};

/// Which arguments a function takes.
struct Shape {
  ImageShape source, destination;
  bool alpha = false, weights = false, matrix = false, range = false, reduction = false, mosaic = false;

  bool inPlace() const { return !source.present; }
  bool wholeImage() const { return !destination.hasStep; }
};

/// Enumerations travel as integers, as tests pass values that they do not have.
template <class P>
using Carried = typename std::conditional_t<std::is_enum_v<P>, std::type_identity<int>, std::type_identity<P>>::type;

/// Hands out the arguments of one call in the order of its parameters, and notes what it was asked for.
class Feeder {
 public:
  explicit Feeder(const Arguments& arguments) : arguments_(arguments) {}

  template <class P>
  Carried<P> next() {
    if constexpr (std::is_same_v<P, KipiSize>) {
      return arguments_.size;
    } else if constexpr (std::is_same_v<P, int>) {
      return nextInt();
    } else if constexpr (std::is_same_v<P, int*>) {
      open_->hasStep = open_->stepPerPlane = true;
      return takeImage()->step;
    } else if constexpr (std::is_same_v<P, Kip32f>) {
      return std::exchange(shape.range, true) ? arguments_.high : arguments_.low;
    } else if constexpr (std::is_enum_v<P>) {
      return arguments_.choice;
    } else if constexpr (std::is_integral_v<P>) {
      shape.alpha = true;
      return static_cast<P>(arguments_.alpha);
    } else if constexpr (std::is_same_v<P, const Kip32f(*)[4]>) {
      shape.matrix = true;
      return arguments_.matrix;
    } else if constexpr (std::is_same_v<P, void*>) {
      workStepNext_ = true;
      return arguments_.work;
    } else if constexpr (std::is_class_v<P>) {
      shape.mosaic = true;
      const Region& r = arguments_.region;
      return P{r.x, r.y, r.width, r.height};
    } else {
      return nextPointer<std::remove_pointer_t<P>>();
    }
  }

  Shape shape;

 private:
  /// The image whose pointer came last and whose step has not come yet.
  ImageArgument* takeImage() {
    ImageArgument* image = open_ == &shape.source ? &arguments_.source : &arguments_.destination;
    open_ = nullptr;
    return image;
  }

  int nextInt() {
    if (std::exchange(workStepNext_, false)) return arguments_.workStep;
    if (open_) {
      open_->hasStep = true;
      return takeImage()->step[0];
    }
    return std::exchange(shape.reduction, true) ? arguments_.levels : arguments_.noise;
  }

  /// The first pointer to constant samples is the source, the second one weights.
  template <class Pointee>
  Pointee* nextPointer() {
    constexpr bool kPlanar = std::is_pointer_v<Pointee>;
    using Element = std::remove_pointer_t<Pointee>;
    constexpr bool kSource = std::is_const_v<Element>;
    if (kSource && shape.source.present) {
      shape.weights = true;
      return reinterpret_cast<Pointee*>(const_cast<float*>(arguments_.weights));
    }
    open_ = kSource ? &shape.source : &shape.destination;
    ImageArgument& image = kSource ? arguments_.source : arguments_.destination;
    *open_ = {.sample = sampleOf<std::remove_const_t<Element>>(), .present = true, .planar = kPlanar};
    if (!image.given) return nullptr;
    return static_cast<Pointee*>(kPlanar ? static_cast<void*>(image.plane) : image.plane[0]);
  }

  Arguments arguments_;  // a copy: functions take its arrays
  ImageShape* open_ = nullptr;
  bool workStepNext_ = false;
};

template <class... P>
std::tuple<Carried<P>...> feed(Feeder& feeder) {
  return std::tuple<Carried<P>...>{feeder.next<P>()...};  // braces: in the order of the parameters
}

template <class... P>
Shape shapeOf(KipStatus (*)(P...)) {
  Feeder feeder({});
  feed<P...>(feeder);
  return feeder.shape;
}

template <class... P>
KipStatus callWith(KipStatus (*function)(P...), const Arguments& arguments) {
  Feeder feeder(arguments);
  const auto call = [&](const Carried<P>&... values) { return function(static_cast<P>(values)...); };
  return std::apply(call, feed<P...>(feeder));
}

}  // namespace kip
