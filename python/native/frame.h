// Pictures of libkipconvert's formats as arrays: how sizes are read off shapes, and where the planes lie.
#pragma once

#include <optional>
#include <span>

#include "kipconvert.h"
#include "python.h"

namespace kip::python {

/// A picture in arrays, which it keeps alive.
struct Frame {
  Ref planeArrays[4];
  int count = 0;  ///< of the arrays: one, or one for each plane
  KipiSize size;
  KipPlanes planes = {};
  bool writeable = true;

  std::span<const Ref> arrays() const { return {planeArrays, static_cast<size_t>(count)}; }
  void add(Ref array) { planeArrays[count++] = std::move(array); }
};

/// The picture that an object is: an array of the whole picture, or a sequence of its planes. The size is that of the
/// shapes, unless it is given. Refused where the samples' type, the shapes or the steps are not those of the format.
Frame readFrame(const KipFormatInfo& format, PyObject* object, std::optional<KipiSize> size, const char* name);

/// New arrays: one for the whole picture where numpy users know its shape, else one for each plane.
Frame makeFrame(const KipFormatInfo& format, KipiSize size);

/// A list of (shape, type) for the planes.
Ref describePlanes(const KipFormatInfo& format, KipiSize size);

}  // namespace kip::python
