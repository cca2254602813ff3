// Bit reduction sample by sample, with nothing but the formulas: what the library is compared with.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "kipcc.h"

namespace kip::plain {

/// A reduction to ask for.
struct Setting {
  KipiDitherType method;
  int noise;
  int levels;
};

/// Samples row after row without gaps, the first `reduced` of every `perPixel` to be reduced.
struct Raster {
  int width, height, perPixel, reduced;

  size_t at(int x, int y, int c) const { return (static_cast<size_t>(y) * width + x) * perPixel + c; }
};

/// The seeded numbers that noise is made of, as signed 32-bit integers.
class Numbers {
 public:
  double next() {
    c_ = c_ * 69069u + 1013904243u;
    uint32_t t = x_[1] - x_[2] + borrow_;
    borrow_ = t & 0x80000000u ? 0xFFFFFFFFu : 0;
    if (borrow_) t -= 18;
    x_[2] = x_[1], x_[1] = x_[0], x_[0] = t;
    return static_cast<int32_t>(t + c_);
  }

 private:
  uint32_t c_ = 1131199209u, borrow_ = 0xFFFFFFFFu;
  uint32_t x_[3] = {0, 1013904243u, 1013904243u * 69069u + 1013904243u};
};

/// Both tables of noise, walked by the pixels.
class Noise {
 public:
  Noise(float low, float high) {
    constexpr double kScale = 2.3283064365387e-10;
    const double mid = (static_cast<double>(low) + high) / 2, span = static_cast<double>(high) - low;
    Numbers forValues, forOffsets;
    for (float& v : values_) v = static_cast<float>(forValues.next() * (span * kScale) + mid);
    for (int& o : offsets_) o = static_cast<int>(std::nearbyint(forOffsets.next() * (1024 * kScale) + 512));
  }
  float at(int x, int y) const { return values_[(offsets_[x % 1024] + 2 * y + x) % 1024]; }

 private:
  float values_[1024];
  int offsets_[1024];
};

template <class T>
constexpr float kFull = sizeof(T) == 1 ? 255.0f : 65535.0f;

/// A sample in its own units, signed ones 32768 higher, and on the scale 0..1.
template <class S>
float raw(S v) {
  return static_cast<float>(v) + (std::is_same_v<S, Kip16s> ? 32768.0f : 0.0f);
}
template <class S>
float normal(S v) {
  if constexpr (std::is_same_v<S, Kip32f>) return v;
  return raw(v) * (sizeof(S) == 1 ? 0.003921568859368563f : 1.5259021893143654e-05f);
}

template <class D>
D written(double level) {
  const int whole = static_cast<int>(std::clamp(level, 0.0, double{kFull<D>}));
  return static_cast<D>(whole - (std::is_same_v<D, Kip16s> ? 32768 : 0));
}

inline float interval(float full, int intervals) {
  return full == 255 ? (65280.0f / intervals) * 0.00390625f : full / intervals;
}

constexpr int kMatrix[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};

inline float matrixAt(int x, int y) { return static_cast<float>(kMatrix[y % 4][x % 4] / 15.0); }

template <class S, class D>
D nearest(S v, int intervals) {
  const float step = 1.0f / intervals, half = 0.5f / intervals, n = normal(v);
  float level = static_cast<float>(static_cast<int>(n * intervals)) * step;
  if (n - level > half) level = level + step;
  return written<D>(level * kFull<D>);
}

/// Ordered dither in the units of an integer source.
template <class S, class D>
D ordered(S sample, int intervals, float matrix) {
  const float q = interval(kFull<S>, intervals), v = raw(sample);
  float level = static_cast<float>(static_cast<int>(v * (intervals / kFull<S>))) * q;
  if (v - level > matrix * q) level = level + q;
  return written<D>(static_cast<int>(level) >> 8 * (sizeof(S) - sizeof(D)));
}

/// Ordered dither on the scale 0..1: float sources, and noise, which is part of the threshold.
template <class S, class D>
D orderedPrecisely(S sample, int intervals, float threshold) {
  const float q = 1.0f / intervals, v = normal(sample);
  float level = static_cast<float>(static_cast<int>(double{v} * intervals + 9e-6)) * q;
  if (v - level > threshold * q) level = level + q;
  return written<D>(double{level} * kFull<D> + 9e-6);
}

/// The weights of the errors from columns x - 2 .. x + 2, two rows above, one row above, and of the same row.
struct Kernel {
  float divisor;
  int weights[3][5];
};

inline const Kernel& kernelOf(KipiDitherType method) {
  static constexpr Kernel kFs = {16, {{}, {0, 1, 5, 3, 0}, {0, 7}}};
  static constexpr Kernel kJjn = {48, {{1, 3, 5, 3, 1}, {3, 5, 7, 5, 3}, {5, 7}}};
  static constexpr Kernel kStucki = {42, {{1, 2, 4, 2, 1}, {2, 4, 8, 4, 2}, {4, 8}}};
  return method == kipDitherFS ? kFs : method == kipDitherJJN ? kJjn : kStucki;
}

/// Error diffusion of the channels from `first` to before `last`, one after the other over the same rows of errors.
template <class S, class D>
void diffuse(const Raster& image, const Setting& setting, int first, int last, const std::vector<S>& src,
             std::vector<D>& dst) {
  const int intervals = setting.levels - 1;
  const float full = kFull<D>, q = interval(full, intervals), p = intervals / full;
  const Noise noise((q * (50 - setting.noise)) / 100.0f, (q * (50 + setting.noise)) / 100.0f);
  const Kernel& kernel = kernelOf(setting.method);
  std::vector<float> errors[3];                                // of this row, and of those one and two above
  for (auto& row : errors) row.assign(image.width + 4, 0.0f);  // from column -2 on
  for (int c = first; c < last; ++c) {
    for (int y = 0; y < image.height; ++y) {
      for (int x = 0; x < image.width; ++x) {
        float sum = 0;
        for (int row = 0; row < 3; ++row) {
          for (int i = 0; i < 5; ++i) sum = sum + errors[2 - row][x + i] * static_cast<float>(kernel.weights[row][i]);
        }
        const S sample = src[image.at(x, y, c)];
        const bool sameScale = !std::is_same_v<S, Kip32f> && sizeof(S) == sizeof(D);
        const float wanted = (sameScale ? raw(sample) : normal(sample) * full) + sum * (1.0f / kernel.divisor);
        float level = wanted >= full ? full : 0.0f, error = 0;
        if (wanted >= 0 && wanted < full) {
          level = static_cast<float>(static_cast<int>(wanted * p)) * q;
          if (wanted - level > (setting.noise ? noise.at(x, y) : q * 0.5f)) level = level + q;
          error = wanted - level;
        }
        errors[0][x + 2] = error;
        dst[image.at(x, y, c)] = written<D>(level);
      }
      std::rotate(errors, errors + 2, errors + 3);
    }
  }
}

/// The whole reduction, of samples that are not reduced nothing but what `dst` held. Errors go from channel to channel
/// as they do with so many threads.
template <class S, class D>
void reduce(const Raster& image, const Setting& setting, int threads, const std::vector<S>& src, std::vector<D>& dst) {
  if (setting.method != kipDitherNone && setting.method != kipDitherBayer) {
    const int workers = std::min(threads, image.reduced);
    for (int w = 0, first = 0; w < workers; ++w) {
      const int last = first + image.reduced / workers + (w < image.reduced % workers ? 1 : 0);
      diffuse(image, setting, first, last, src, dst);
      first = last;
    }
    return;
  }
  const int intervals = setting.levels - 1;
  const float amplitude = static_cast<float>(setting.noise) / 100.0f;
  const Noise noise(-amplitude, amplitude);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const float matrix = matrixAt(x, y);
      for (int c = 0; c < image.reduced; ++c) {
        const size_t i = image.at(x, y, c);
        if (setting.method == kipDitherNone) {
          dst[i] = nearest<S, D>(src[i], intervals);
        } else if (setting.noise == 0 && !std::is_same_v<S, Kip32f>) {
          dst[i] = ordered<S, D>(src[i], intervals, matrix);
        } else {
          dst[i] = orderedPrecisely<S, D>(src[i], intervals, setting.noise ? matrix + noise.at(x, y) : matrix);
        }
      }
    }
  }
}

}  // namespace kip::plain
