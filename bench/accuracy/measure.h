// Measuring a conversion, and a peer's beside it, against the formula in real numbers.
#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <type_traits>
#include <vector>

#include "formulas.h"
#include "kipcc.h"

namespace accuracy {

/// How samples stand for channels: value = sample x step + zero, with samples of least .. most.
struct Scale {
  double step[3], zero[3], least, most;
  bool circular = false;  ///< the first channel is hue, 0 .. 1 around the circle

  Real value(const Real& sample) const {
    return {sample[0] * step[0] + zero[0], sample[1] * step[1] + zero[1], sample[2] * step[2] + zero[2]};
  }
  Real sample(const Real& value) const {
    return {(value[0] - zero[0]) / step[0], (value[1] - zero[1]) / step[1], (value[2] - zero[2]) / step[2]};
  }
  bool holds(const Real& value) const {
    for (double s : sample(value)) {
      if (!(s >= least && s <= most)) return false;
    }
    return true;
  }
};
struct Errors {
  double largest = 0, sum = 0;
  size_t samples = 0;

  double mean() const { return samples ? sum / static_cast<double>(samples) : 0; }
  void add(double error) {
    largest = std::max(largest, error), sum += error;
    ++samples;
  }
};

template <class T, size_t kChannels = 3>
using Pixels = std::vector<std::array<T, kChannels>>;
constexpr int kSide = 256;  // of an image with all the triples that have one first sample

/// Another library's conversion of such an image.
template <class S, class D, size_t kChannels>
struct Peer {
  void (*convert)(const Pixels<S>&, Pixels<D, kChannels>&) = nullptr;
  Real (*formula)(const Real&) = nullptr;  ///< where it is another one
  const Scale* result = nullptr;           ///< the same
};

template <class S, class D, size_t kChannels = 3>
struct Conversion {
  const char* name;
  KipStatus (*convert)(const S*, int, D*, int, KipiSize);
  Real (*formula)(const Real&);
  const Scale &bytes, &source, &result;  ///< `bytes` is the scale of the 8-bit samples that sources are made of
  Peer<S, D, kChannels> peer = {};

  bool fromBgr() const { return std::strncmp(name, "BGR", 3) == 0; }
  bool toBgr() const { return std::strstr(name, "to BGR"); }
};

template <class T, size_t kChannels>
std::array<T, kChannels> ordered(std::array<T, kChannels> px, bool reverse) {
  if (reverse) std::swap(px.front(), px.back());
  return px;
}

template <class S, class D, size_t kChannels>
Pixels<S> sourceOf(const Conversion<S, D, kChannels>& conversion, int first) {
  Pixels<S> pixels;
  for (int i = 0; i < kSide * kSide; ++i) {
    const Real real =
        conversion.source.sample(conversion.bytes.value({double(first), double(i >> 8), double(i & 255)}));
    const auto sample = [](double v) { return static_cast<S>(std::is_integral_v<S> ? std::round(v) : v); };
    pixels.push_back(ordered<S, 3>({sample(real[0]), sample(real[1]), sample(real[2])}, conversion.fromBgr()));
  }
  return pixels;
}

template <class S, class D, size_t kChannels>
void measure(const Conversion<S, D, kChannels>& conversion, const Pixels<S>& source, const Pixels<D, kChannels>& result,
             size_t from, int stride, Errors& errors) {
  for (size_t i = from; i < source.size(); i += stride) {
    const auto px = ordered(source[i], conversion.fromBgr());
    const auto is = ordered(result[i], conversion.toBgr());
    const Real value = conversion.formula(conversion.source.value({double(px[0]), double(px[1]), double(px[2])}));
    if (!conversion.result.holds(value)) continue;
    const Real should = conversion.result.sample(value);
    for (size_t c = 0; c < kChannels; ++c) {
      const double error = std::fabs(is[c] - should[c]);
      const bool around = conversion.result.circular && c == 0;
      errors.add(around ? std::min(error, std::fabs(1 / conversion.result.step[0] - error)) : error);
    }
  }
}

/// The errors of the library, then those of others where they have the conversion.
using Accuracy = std::vector<std::optional<Errors>>;

/// Of one pixel out of so many.
template <class S, class D, size_t kChannels>
Accuracy accuracyOf(const Conversion<S, D, kChannels>& conversion, int stride) {
  constexpr int kSourceStep = kSide * sizeof(std::array<S, 3>), kStep = kSide * sizeof(std::array<D, kChannels>);
  const Peer<S, D, kChannels>& peer = conversion.peer;
  const Conversion<S, D, kChannels> peers = {
      conversion.name,  conversion.convert, peer.formula ? peer.formula : conversion.formula,
      conversion.bytes, conversion.source,  peer.result ? *peer.result : conversion.result};
  Errors ours;
  std::optional<Errors> theirs;
  if (peer.convert && stride == 1) theirs.emplace();
  Pixels<D, kChannels> result(kSide * kSide);
  for (int first = 0; first < 256; ++first) {
    const Pixels<S> source = sourceOf(conversion, first);
    conversion.convert(source[0].data(), kSourceStep, result[0].data(), kStep, {kSide, kSide});
    measure(conversion, source, result, first % stride, stride, ours);
    if (!theirs) continue;
    peer.convert(source, result);
    measure(peers, source, result, first % stride, stride, *theirs);
  }
  return {ours, theirs};
}

}  // namespace accuracy
