// The image arguments of a call: as the caller gave them, and as the kernels see them.
#pragma once

#include <algorithm>
#include <cstddef>

#include "kipcc.h"

namespace kip {

constexpr int kMaxPlanes = 4;

/// One image argument as the caller gave it. Nothing is read through its pointers before they have been checked.
struct ImageArg {
  const void* single = nullptr;       ///< interleaved: the first sample
  const void* const* many = nullptr;  ///< planar: the array of plane pointers
  int planes = 1;
  int planesChecked = 1;       ///< how many of the plane pointers must not be null
  ptrdiff_t step = 0;          ///< bytes between rows, of all planes alike,
  const int* steps = nullptr;  ///< or of each plane
};

inline ImageArg interleaved(const void* first, ptrdiff_t step) { return {.single = first, .step = step}; }

template <class T>
ImageArg planar(T* const* array, int count, int step, int checked = kMaxPlanes) {
  return {.many = reinterpret_cast<const void* const*>(array),
          .planes = count,
          .planesChecked = std::min(count, checked),
          .step = step};
}

template <class T>
ImageArg planar(T* const* array, int count, const int* steps) {
  return {.many = reinterpret_cast<const void* const*>(array), .planes = count, .planesChecked = count, .steps = steps};
}

/// One image as the kernels see it: row y of plane p starts at plane[p] + y * step[p].
template <class Byte>
struct Image {
  Byte* plane[kMaxPlanes] = {};
  ptrdiff_t step[kMaxPlanes] = {};

  Byte* row(int p, int y) const { return plane[p] + y * step[p]; }
};

using SourceImage = Image<const Kip8u>;
using TargetImage = Image<Kip8u>;

/// All that a kernel needs to know about one call.
struct Job {
  SourceImage src;
  TargetImage dst;
  int width = 0;
  int height = 0;
  int alpha = 0;                     ///< what layouts with a given fourth sample write there
  bool reversed = false;             ///< B, G, R instead of R, G, B, for layouts that can be both
  const void* parameters = nullptr;  ///< what else the family's arithmetic needs
};

/// Converts the row groups first .. last - 1 of a job (a group is one row, or the two rows that share 4:2:0 chroma).
using Kernel = void (*)(const Job& job, int first, int last);

}  // namespace kip
