// The image arguments of a call: as the caller gave them, and as the kernels see them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "kipcc.h"

namespace kip {

constexpr int kMaxPlanes = 4;

/// One image argument as the caller gave it. Nothing is read through its pointers before they have been checked.
struct ImageArg {
  const void* single = nullptr;  ///< interleaved: the first sample
  const void* many = nullptr;    ///< planar: the array of plane pointers
  int planes = 1;
  int planesChecked = 1;       ///< how many of the plane pointers must not be null
  ptrdiff_t step = 0;          ///< bytes between rows, of all planes alike,
  const int* steps = nullptr;  ///< or of each plane

  /// Where plane p begins. The arrays' elements have the types of the callers' samples.
  void* plane(int p) const {
    void* first;
    std::memcpy(&first, static_cast<const Kip8u*>(many) + p * sizeof first, sizeof first);
    return first;
  }
};

inline ImageArg interleaved(const void* first, ptrdiff_t step) { return {.single = first, .step = step}; }

template <class T>
ImageArg planar(T* const* array, int count, int step, int checked = kMaxPlanes) {
  return {.many = array, .planes = count, .planesChecked = std::min(count, checked), .step = step};
}

template <class T>
ImageArg planar(T* const* array, int count, const int* steps) {
  return {.many = array, .planes = count, .planesChecked = count, .steps = steps};
}

/// One image as the kernels see it: row y of plane p starts at plane[p] + y * step[p].
template <class Byte>
struct Image {
  Byte* plane[kMaxPlanes] = {};
  ptrdiff_t step[kMaxPlanes] = {};

  Byte* row(int p, int y) const { return plane[p] + y * step[p]; }
};

/// A sample at any address: rows of 16-bit and 32-bit samples may begin at odd ones.
template <class T>
T loadSample(const void* from) {
  T sample;
  std::memcpy(&sample, from, sizeof sample);
  return sample;
}
template <class T>
void storeSample(T sample, void* to) {
  std::memcpy(to, &sample, sizeof sample);
}

using SourceImage = Image<const Kip8u>;
using TargetImage = Image<Kip8u>;

/// All that a kernel needs to know about one call.
struct Job {
  SourceImage src;
  TargetImage dst;
  int width = 0;
  int height = 0;
  int alpha = 0;                     ///< what layouts with a given fourth sample write there
  const void* parameters = nullptr;  ///< what else the family's arithmetic needs
};

/// Converts the row groups first .. last - 1 of a job (a group is one row, or the two rows that share 4:2:0 chroma).
using Kernel = void (*)(const Job& job, int first, int last);

}  // namespace kip
