#include "image.h"

#include <limits>

namespace kip::python {
namespace {

constexpr npy_intp kLargest = std::numeric_limits<int>::max();

int numpyType(Sample sample) {
  constexpr int kTypes[] = {NPY_UINT8, NPY_INT8, NPY_UINT16, NPY_INT16, NPY_INT32, NPY_FLOAT32};
  return kTypes[static_cast<int>(sample)];
}

/// What an array is, to read: "float64 of shape (3, 4)".
std::string describe(PyArrayObject* array) {
  const Ref type = owned(PyObject_Str(reinterpret_cast<PyObject*>(PyArray_DESCR(array))));
  const Ref shape = owned(PyObject_GetAttrString(reinterpret_cast<PyObject*>(array), "shape"));
  const Ref text = owned(PyObject_Str(shape.get()));
  return std::string(PyUnicode_AsUTF8(type.get())) + " of shape " + PyUnicode_AsUTF8(text.get());
}

const char* nameOf(Side side) { return side == Side::kSource ? "source" : "out"; }

[[noreturn]] void refuse(const PictureShape& shape, int plane, const std::string& what) {
  std::string who = nameOf(shape.side);
  if (shape.layout.planar) who.append("[").append(std::to_string(plane)).append("]");
  throw Refused{kipStatusBadArgument, who + ": " + what};
}

npy_intp ceilDivide(npy_intp value, npy_intp by) { return (value + by - 1) / by; }

/// Samples of a pixel and pixels of a row one after the other, rows whole samples apart. Steps along axes of length 1
/// have no meaning.
bool contiguousPixels(PyArrayObject* array, int samples) {
  const npy_intp* shape = PyArray_DIMS(array);
  const npy_intp* step = PyArray_STRIDES(array);
  const npy_intp bytes = PyArray_ITEMSIZE(array);
  if (samples > 1 && step[2] != bytes) return false;
  if (shape[1] > 1 && step[1] != samples * bytes) return false;
  return shape[0] <= 1 || (step[0] % bytes == 0 && step[0] <= kLargest && step[0] >= -kLargest);
}

void expectKind(const PictureShape& shape, int plane, PyArrayObject* array) {
  const int samples = shape.samples(plane), dimensions = samples > 1 ? 3 : 2;
  const bool fits = PyArray_TYPE(array) == shape.type && PyArray_ISNOTSWAPPED(array) &&
                    PyArray_NDIM(array) == dimensions && (samples == 1 || PyArray_DIM(array, 2) == samples);
  if (fits) return;
  const Ref type = Ref(reinterpret_cast<PyObject*>(PyArray_DescrFromType(shape.type)));
  const Ref name = owned(PyObject_Str(type.get()));
  refuse(shape, plane,
         std::string(PyUnicode_AsUTF8(name.get())) + " of shape " + shape.text(plane) + " is wanted, and not " +
             describe(array));
}

Ref readPlane(const PictureShape& shape, int plane, PyObject* object, Access access, bool copy) {
  Ref array = asArray(object);
  expectKind(shape, plane, array.array());
  if (access == Access::kWrite && !PyArray_ISWRITEABLE(array.array())) refuse(shape, plane, "the array is read-only");
  if (PyArray_DIM(array.array(), 0) > kLargest || PyArray_DIM(array.array(), 1) > kLargest) {
    throw Refused{kipStatusBadSize, ""};
  }
  if (contiguousPixels(array.array(), shape.samples(plane))) return array;
  if (!copy) {
    refuse(shape, plane,
           access == Access::kRead ? "the pixels of a row are not contiguous; copy=True takes a copy"
                                   : "the pixels of a row are not contiguous");
  }
  return owned(PyArray_NewCopy(array.array(), NPY_CORDER));
}

npy_intp rowBytes(PyArrayObject* array, int samples) {
  return PyArray_DIM(array, 1) * samples * PyArray_ITEMSIZE(array);
}

/// The step of an array's rows; of a single one, its length.
npy_intp stepOf(PyArrayObject* array, int samples) {
  return PyArray_DIM(array, 0) > 1 ? PyArray_STRIDE(array, 0) : rowBytes(array, samples);
}

/// Whether the function can take these planes: some have one step for all planes, or none.
bool fitSteps(const PictureShape& shape, const Picture& picture) {
  for (int i = 0; i < picture.count; ++i) {
    const int step = picture.argument.step[i];
    if (!shape.image.hasStep && step != rowBytes(picture.planes[i].array(), shape.samples(i))) return false;
    if (!shape.image.stepPerPlane && shape.image.hasStep && step != picture.argument.step[0]) return false;
  }
  return true;
}

void setArgument(const PictureShape& shape, Picture& picture) {
  PyArrayObject* first = picture.planes[0].array();
  picture.size = {static_cast<int>(PyArray_DIM(first, 1)), static_cast<int>(PyArray_DIM(first, 0))};
  for (int i = 0; i < picture.count; ++i) {
    PyArrayObject* plane = picture.planes[i].array();
    const npy_intp step = stepOf(plane, shape.samples(i));
    if (step > kLargest) throw Refused{kipStatusBadSize, "the rows are longer than 2^31 - 1 bytes"};
    picture.argument.plane[i] = PyArray_DATA(plane);
    picture.argument.step[i] = static_cast<int>(step);
  }
}

bool shareMemory(const Ref& a, const Ref& b) {
  static PyObject* const function = [] {
    const Ref numpy = owned(PyImport_ImportModule("numpy"));
    return owned(PyObject_GetAttrString(numpy.get(), "shares_memory")).release();
  }();
  const Ref shared = owned(PyObject_CallFunctionObjArgs(function, a.get(), b.get(), nullptr));
  return PyObject_IsTrue(shared.get());
}

/// The addresses between which an array's samples lie.
std::pair<const char*, const char*> extent(PyArrayObject* array) {
  const char* low = PyArray_BYTES(array);
  const char* high = low + PyArray_ITEMSIZE(array);
  for (int axis = 0; axis < PyArray_NDIM(array); ++axis) {
    if (PyArray_DIM(array, axis) == 0) return {low, low};
    const npy_intp reach = PyArray_STRIDE(array, axis) * (PyArray_DIM(array, axis) - 1);
    (reach < 0 ? low : high) += reach;
  }
  return {low, high};
}

bool overlap(const Ref& a, const Ref& b) {
  const auto [aLow, aHigh] = extent(a.array());
  const auto [bLow, bHigh] = extent(b.array());
  return aLow < bHigh && bLow < aHigh && shareMemory(a, b);
}

/// Whether two arrays of a kind and size have the same rows.
bool sameArray(const Ref& a, const Ref& b) {
  return PyArray_DATA(a.array()) == PyArray_DATA(b.array()) &&
         PyArray_STRIDE(a.array(), 0) == PyArray_STRIDE(b.array(), 0);
}

}  // namespace

PictureShape::PictureShape(const Function& function, Side side)
    : function(function),
      side(side),
      layout(function.layout(side)),
      image(function.image(side)),
      type(numpyType(image.sample)) {}

int PictureShape::samples(int plane) const {
  if (layout.planar) return layout.channels == 2 && plane == 1 ? 2 : 1;
  return layout.channels;
}

std::array<PlaneShape, kMostPlanes> PictureShape::planes(KipiSize region) const {
  std::array<PlaneShape, kMostPlanes> shapes = {};
  const KipiSize group = groupOf(layout.chroma);
  int i = 0;
  for (const Plane& needed : function.planes(side, region)) {
    const int samples = this->samples(i);
    const npy_intp height = needed.rows, width = needed.rowBytes / (samples * bytesOf(image.sample));
    const bool mayBeLarger = i > 0 && image.hasStep;
    shapes[i++] = {samples, height, width, mayBeLarger ? ceilDivide(region.height, group.height) : height,
                   mayBeLarger ? ceilDivide(region.width, group.width) : width};
  }
  return shapes;
}

std::string PictureShape::text(int plane) const {
  const KipiSize group = layout.planar && plane > 0 ? groupOf(layout.chroma) : KipiSize{1, 1};
  const auto part = [](const char* whole, int by, int block) {
    if (by == 1) return std::string(whole);
    const std::string divisor = std::to_string(by), more = std::to_string(by - 1);
    return block % by == 0 ? std::string(whole).append(" // ").append(divisor)
                           : std::string("(").append(whole).append(" + ").append(more).append(") // ").append(divisor);
  };
  const Contract& contract = function.contract;
  std::string text = "(";
  text += part("height", group.height, contract.blockHeight) + ", " + part("width", group.width, contract.blockWidth);
  if (samples(plane) > 1) text += ", " + std::to_string(samples(plane));
  return text + ")";
}

Ref asResult(std::span<const Ref> arrays) {
  if (arrays.size() == 1) return Ref::to(arrays[0].get());
  Ref tuple = owned(PyTuple_New(static_cast<Py_ssize_t>(arrays.size())));
  for (size_t i = 0; i < arrays.size(); ++i) {
    PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), Py_NewRef(arrays[i].get()));
  }
  return tuple;
}

Ref asArray(PyObject* object) {
  if (PyArray_Check(object)) return Ref::to(object);
  static PyObject* const function = [] {
    const Ref module = owned(PyImport_ImportModule("kipcc._arrays"));
    return owned(PyObject_GetAttrString(module.get(), "as_array")).release();
  }();
  return owned(PyObject_CallOneArg(function, object));
}

Picture read(const PictureShape& shape, PyObject* object, Access access, bool copy) {
  Picture picture;
  picture.count = shape.count();
  if (shape.layout.planar) {
    const Ref sequence = owned(PySequence_Fast(object, "planes come as a tuple of arrays"));
    if (PySequence_Fast_GET_SIZE(sequence.get()) != picture.count) {
      throw Refused{kipStatusBadArgument, std::string(nameOf(shape.side)) + ": " + std::to_string(picture.count) +
                                              " planes are wanted, and not " +
                                              std::to_string(PySequence_Fast_GET_SIZE(sequence.get()))};
    }
    for (int i = 0; i < picture.count; ++i) {
      picture.planes[i] = readPlane(shape, i, PySequence_Fast_GET_ITEM(sequence.get(), i), access, copy);
    }
  } else {
    picture.planes[0] = readPlane(shape, 0, object, access, copy);
  }
  setArgument(shape, picture);
  if (fitSteps(shape, picture)) return picture;
  if (!copy) {
    refuse(shape, 0, shape.image.hasStep ? "the rows of all planes must have one step" : "gaps between rows");
  }
  for (int i = 0; i < picture.count; ++i) {
    picture.planes[i] = owned(PyArray_NewCopy(picture.planes[i].array(), NPY_CORDER));
  }
  setArgument(shape, picture);
  return picture;
}

Picture make(const PictureShape& shape, KipiSize region) {
  Picture picture;
  picture.count = shape.count();
  const auto planes = shape.planes(region);
  for (int i = 0; i < picture.count; ++i) {
    const PlaneShape& plane = planes[i];
    npy_intp dimensions[] = {plane.height, plane.width, plane.samples};
    picture.planes[i] = owned(PyArray_ZEROS(plane.samples > 1 ? 3 : 2, dimensions, shape.type, false));
  }
  setArgument(shape, picture);
  return picture;
}

void expectSize(const PictureShape& shape, const Picture& picture, KipiSize region) {
  const auto planes = shape.planes(region);
  for (int i = 0; i < picture.count; ++i) {
    const PlaneShape& wanted = planes[i];
    const npy_intp height = PyArray_DIM(picture.planes[i].array(), 0);
    const npy_intp width = PyArray_DIM(picture.planes[i].array(), 1);
    if (height >= wanted.height && height <= wanted.heightLimit && width >= wanted.width &&
        width <= wanted.widthLimit) {
      continue;
    }
    refuse(shape, i,
           std::to_string(wanted.height) + " rows of " + std::to_string(wanted.width) + " are wanted, and not " +
               std::to_string(height) + " of " + std::to_string(width));
  }
}

void expectApart(std::span<const Ref> sources, std::span<const Ref> destinations, bool sameImage) {
  for (size_t i = 0; i < destinations.size(); ++i) {
    for (const Ref& other : destinations.first(i)) {
      if (overlap(destinations[i], other)) throw Refused{kipStatusBadArgument, "out: two planes share memory"};
    }
    for (size_t j = 0; j < sources.size(); ++j) {
      if (sameImage && i == j && sameArray(sources[j], destinations[i])) continue;
      if (overlap(destinations[i], sources[j]))
        throw Refused{kipStatusBadArgument, "out shares memory with the source"};
    }
  }
}

}  // namespace kip::python
