// Pictures as numpy arrays: what is checked about them, and how they become arguments of the library.
#pragma once

#include <array>
#include <span>

#include "python.h"
#include "registry/registry.h"

namespace kip::python {

/// What the array of a plane must be: (height, width), or (height, width, samples) where a pixel has several.
struct PlaneShape {
  int samples;
  npy_intp height, width;
  npy_intp heightLimit, widthLimit;  ///< chroma planes may be larger than what is read or written, up to this
};

/// What the arrays of one side of a function must be.
struct PictureShape {
  PictureShape(const Function& function, Side side);

  int count() const { return layout.planar ? layout.channels : 1; }
  int samples(int plane) const;
  std::array<PlaneShape, kMostPlanes> planes(KipiSize region) const;
  /// An array's shape in words, such as "(height, width // 2)".
  std::string text(int plane) const;

  const Function& function;
  Side side;
  const Layout& layout;
  const ImageShape& image;
  int type;  ///< numpy's number of the samples' type
};

/// Arrays, kept alive, and the argument that they are for the library.
struct Picture {
  Ref planes[kMostPlanes];
  int count = 0;
  KipiSize size = {};  ///< of the first plane
  ImageArgument argument;

  std::span<const Ref> arrays() const { return {planes, static_cast<size_t>(count)}; }
};

/// An array by itself, several as a tuple.
Ref asResult(std::span<const Ref> arrays);

enum class Access { kRead, kWrite };

/// The array that an object is, without a copy: an array, or anything with the buffer protocol or DLPack.
Ref asArray(PyObject* object);

/// The picture in an array or a sequence of planes. `copy` allows copies of arrays whose pixels are not contiguous.
/// Refused where they cannot be a side of the function; the sizes of planes other than the first are left to
/// expectSize.
Picture read(const PictureShape& shape, PyObject* object, Access access, bool copy);

/// New arrays, of zeros.
Picture make(const PictureShape& shape, KipiSize region);

/// Refuses pictures that are not of this region.
void expectSize(const PictureShape& shape, const Picture& picture, KipiSize region);

/// Refuses destinations that share memory with each other or with a source. With `sameImage` a source and the
/// destination in its place may be one array.
void expectApart(std::span<const Ref> sources, std::span<const Ref> destinations, bool sameImage);

}  // namespace kip::python
