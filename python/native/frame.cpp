#include "frame.h"

#include <limits>
#include <vector>

#include "image.h"

namespace kip::python {
namespace {

constexpr npy_intp kLargest = std::numeric_limits<int>::max();

npy_intp ceilDivide(npy_intp value, npy_intp by) { return (value + by - 1) / by; }

/// A format as arrays have it: rows of elements, which are samples, pixels of 16 bits, or bytes where samples share
/// them.
struct ArrayFormat {
  explicit ArrayFormat(const KipFormatInfo& info) : info(info) {
    elementBytes = info.sampleBytes ? info.sampleBytes : info.groupPixels[0] == 1 ? info.groupBytes[0] : 1;
    type = info.isFloat ? NPY_FLOAT32 : elementBytes == 1 ? NPY_UINT8 : NPY_UINT16;
  }

  npy_intp rows(int plane, KipiSize size) const { return ceilDivide(size.height, npy_intp{1} << info.rowShift[plane]); }
  npy_intp columns(int plane, npy_intp width) const {
    return ceilDivide(width, info.groupPixels[plane]) * info.groupBytes[plane] / elementBytes;
  }
  npy_intp total(KipiSize size) const {
    npy_intp sum = 0;
    for (int i = 0; i < info.planes; ++i) sum += rows(i, size) * columns(i, size.width);
    return sum;
  }
  /// Whether samples of several pixels share bytes, so that the width cannot be read off a row's length.
  bool sharedBytes() const { return !info.sampleBytes && info.groupPixels[0] > 1; }
  /// The length of an array's third axis: the samples of a pixel, or of a chroma pair.
  int depth(int plane) const {
    if (sharedBytes()) return 1;
    const int elements = info.groupBytes[plane] / elementBytes;
    return plane == 0 ? elements / info.groupPixels[0] : elements;
  }
  bool planesAlike() const {
    if (info.chromaShiftX || info.chromaShiftY) return false;
    for (int i = 0; i < info.planes; ++i) {
      if (depth(i) > 1) return false;
    }
    return info.planes > 1;
  }

  const KipFormatInfo& info;
  int elementBytes;
  int type;
};

/// Reads one object as a picture of a format.
class Reader {
 public:
  Reader(const KipFormatInfo& info, std::optional<KipiSize> size, const char* name)
      : format_(info), size_(size), name_(name) {}

  Frame read(PyObject* object) {
    if (PyTuple_Check(object) || PyList_Check(object)) {
      readPlanes(object);
    } else {
      frame_.add(asArray(object));
      readWhole(frame_.planeArrays[0].array());
    }
    for (const Ref& array : frame_.arrays()) frame_.writeable = frame_.writeable && PyArray_ISWRITEABLE(array.array());
    frame_.size = *size_;
    return std::move(frame_);
  }

 private:
  [[noreturn]] void refuse(const std::string& what) const {
    throw Refused{kipStatusBadArgument, std::string(name_) + ", " + format_.info.name + ": " + what};
  }

  void readPlanes(PyObject* object) {
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(object);
    if (count != format_.info.planes) {
      refuse("it has " + std::to_string(format_.info.planes) + " planes, and not " + std::to_string(count));
    }
    for (Py_ssize_t i = 0; i < count; ++i) frame_.add(asArray(PySequence_Fast_GET_ITEM(object, i)));
    for (int i = 0; i < count; ++i) readPlane(i, frame_.planeArrays[i].array());
  }

  void readWhole(PyArrayObject* array) {
    const int dimensions = PyArray_NDIM(array);
    if (dimensions == 1) return readSequence(array);
    if (format_.info.planes == 1) return readPlane(0, array);
    if (dimensions == 3 && format_.planesAlike()) return readStack(array);
    if (dimensions != 2) refuse("an array of 2 dimensions, or a tuple of planes, is wanted");
    readBlock(array);
  }

  void expectType(PyArrayObject* array) const {
    if (PyArray_TYPE(array) == format_.type && PyArray_ISNOTSWAPPED(array)) return;
    const Ref wanted(reinterpret_cast<PyObject*>(PyArray_DescrFromType(format_.type)));
    const Ref text = owned(PyUnicode_FromFormat("%S is wanted, and not %S", wanted.get(), PyArray_DESCR(array)));
    refuse(PyUnicode_AsUTF8(text.get()));
  }

  /// Whether the axes from this one on are elements one after the other.
  bool contiguousFrom(PyArrayObject* array, int axis) const {
    npy_intp step = format_.elementBytes;
    for (int i = PyArray_NDIM(array) - 1; i >= axis; step *= PyArray_DIM(array, i--)) {
      if (PyArray_DIM(array, i) != 1 && PyArray_STRIDE(array, i) != step) return false;
    }
    return true;
  }

  void set(int plane, void* data, npy_intp step) {
    frame_.planes.plane[plane] = data;
    frame_.planes.step[plane] = step;
  }

  /// The size of the shape, unless it is given; checked in any case.
  void takeSize(npy_intp width, npy_intp height) {
    if (width > kLargest || height > kLargest) throw Refused{kipStatusBadSize, ""};
    if (!size_) size_ = KipiSize{static_cast<int>(width), static_cast<int>(height)};
  }

  /// (rows, columns) or (rows, columns, samples).
  void readPlane(int plane, PyArrayObject* array) {
    expectType(array);
    const int dimensions = PyArray_NDIM(array), depth = format_.depth(plane);
    if (dimensions < 2) refuse("an array of 2 or 3 dimensions is wanted");
    if (!size_) {
      const bool known =
          !format_.sharedBytes() && (depth > 1 ? dimensions == 3 && PyArray_DIM(array, 2) == depth : dimensions == 2);
      if (!known) refuse("its size cannot be read off this shape; give size=(width, height)");
      takeSize(PyArray_DIM(array, 1), PyArray_DIM(array, 0));
    }
    npy_intp columns = 1;
    for (int axis = 1; axis < dimensions; ++axis) columns *= PyArray_DIM(array, axis);
    const npy_intp wantedRows = format_.rows(plane, *size_), wantedColumns = format_.columns(plane, size_->width);
    if (PyArray_DIM(array, 0) != wantedRows || columns != wantedColumns) {
      refuse("plane " + std::to_string(plane) + " has " + std::to_string(wantedRows) + " rows of " +
             std::to_string(wantedColumns) + " samples, and not " + std::to_string(PyArray_DIM(array, 0)) + " of " +
             std::to_string(columns));
    }
    if (!contiguousFrom(array, 1)) refuse("the pixels of a row are not contiguous");
    const npy_intp rowBytes = columns * format_.elementBytes;
    set(plane, PyArray_DATA(array), wantedRows > 1 ? PyArray_STRIDE(array, 0) : rowBytes);
  }

  /// (planes, height, width).
  void readStack(PyArrayObject* array) {
    expectType(array);
    if (PyArray_DIM(array, 0) != format_.info.planes) refuse("the first axis is that of the planes");
    takeSize(PyArray_DIM(array, 2), PyArray_DIM(array, 1));
    if (PyArray_DIM(array, 1) != size_->height || PyArray_DIM(array, 2) != size_->width) {
      refuse("its shape is not that of the size given");
    }
    if (!contiguousFrom(array, 2)) refuse("the pixels of a row are not contiguous");
    for (int i = 0; i < format_.info.planes; ++i) {
      set(i, PyArray_BYTES(array) + i * PyArray_STRIDE(array, 0), PyArray_STRIDE(array, 1));
    }
  }

  /// Rows as long as those of the first plane: that, and below it the other planes.
  void readBlock(PyArrayObject* array) {
    expectType(array);
    const npy_intp rows = PyArray_DIM(array, 0), columns = PyArray_DIM(array, 1);
    if (!size_) takeSize(columns, heightOf(rows, columns));
    if (columns != format_.columns(0, size_->width) || format_.total(*size_) != rows * columns) {
      refuse(
          "this shape is not that of its planes one above the other; give a tuple of planes, or size=(width, height)");
    }
    if (contiguousFrom(array, 0)) return setSequence(PyArray_BYTES(array));
    if (!contiguousFrom(array, 1)) refuse("the pixels of a row are not contiguous");
    npy_intp offset = 0;
    for (int i = 0; i < format_.info.planes; ++i) {
      if (format_.columns(i, size_->width) != columns)
        refuse("the planes have rows of different lengths, so gaps cannot be");
      set(i, PyArray_BYTES(array) + offset, PyArray_STRIDE(array, 0));
      offset += format_.rows(i, *size_) * PyArray_STRIDE(array, 0);
    }
  }

  /// The height of a picture whose planes make so many rows; 0 where there is none.
  npy_intp heightOf(npy_intp rows, npy_intp columns) const {
    constexpr int kRows = 4;  // the most rows that a chroma sample serves
    npy_intp elements = 0;
    for (int i = 0; i < format_.info.planes; ++i)
      elements += format_.columns(i, columns) * (kRows >> format_.info.rowShift[i]);
    return elements == 0 || rows > kLargest || rows * columns * kRows % elements ? 0
                                                                                 : rows * columns * kRows / elements;
  }

  /// All samples one after the other, without gaps.
  void readSequence(PyArrayObject* array) {
    if (!size_) refuse("give size=(width, height) with a sequence of samples");
    const npy_intp bytes = format_.total(*size_) * format_.elementBytes;
    if (PyArray_TYPE(array) != NPY_UINT8) expectType(array);
    if (PyArray_NBYTES(array) != bytes) {
      refuse("a picture has " + std::to_string(bytes) + " bytes, and not " + std::to_string(PyArray_NBYTES(array)));
    }
    if (PyArray_SIZE(array) > 1 && PyArray_STRIDE(array, 0) != PyArray_ITEMSIZE(array)) {
      refuse("the samples are not contiguous");
    }
    setSequence(PyArray_BYTES(array));
  }

  void setSequence(char* data) {
    for (int i = 0; i < format_.info.planes; ++i) {
      const npy_intp step = format_.columns(i, size_->width) * format_.elementBytes;
      set(i, data, step);
      data += format_.rows(i, *size_) * step;
    }
  }

  ArrayFormat format_;
  std::optional<KipiSize> size_;
  const char* name_;
  Frame frame_;
};

/// The shape of a plane's array; the third axis is missing where it would be 1.
std::vector<npy_intp> shapeOf(const ArrayFormat& format, int plane, KipiSize size) {
  const npy_intp depth = format.depth(plane);
  std::vector<npy_intp> shape = {format.rows(plane, size), format.columns(plane, size.width) / depth};
  if (depth > 1) shape.push_back(depth);
  return shape;
}

Ref zeros(const ArrayFormat& format, std::vector<npy_intp> shape) {
  return owned(PyArray_ZEROS(static_cast<int>(shape.size()), shape.data(), format.type, false));
}

Ref newArrays(const ArrayFormat& format, KipiSize size) {
  const KipFormatInfo& info = format.info;
  if (info.planes == 1) return zeros(format, shapeOf(format, 0, size));
  if (format.planesAlike()) return zeros(format, {info.planes, size.height, size.width});
  const npy_intp columns = format.columns(0, size.width), total = format.total(size);
  const bool wholeGroups = size.width % (1 << info.chromaShiftX) == 0 && size.height % (1 << info.chromaShiftY) == 0;
  if (wholeGroups && total % columns == 0) return zeros(format, {total / columns, columns});
  Ref planes = owned(PyTuple_New(info.planes));
  for (int i = 0; i < info.planes; ++i) {
    PyTuple_SET_ITEM(planes.get(), i, zeros(format, shapeOf(format, i, size)).release());
  }
  return planes;
}

}  // namespace

Frame readFrame(const KipFormatInfo& format, PyObject* object, std::optional<KipiSize> size, const char* name) {
  return Reader(format, size, name).read(object);
}

Frame makeFrame(const KipFormatInfo& info, KipiSize size) {
  const Ref arrays = newArrays(ArrayFormat(info), size);
  return readFrame(info, arrays.get(), size, "out");
}

Ref describePlanes(const KipFormatInfo& info, KipiSize size) {
  const ArrayFormat format(info);
  Ref list = owned(PyList_New(0));
  for (int i = 0; i < info.planes; ++i) {
    const std::vector<npy_intp> lengths = shapeOf(format, i, size);
    Ref shape = owned(PyTuple_New(static_cast<Py_ssize_t>(lengths.size())));
    for (size_t axis = 0; axis < lengths.size(); ++axis) {
      PyTuple_SET_ITEM(shape.get(), static_cast<Py_ssize_t>(axis), owned(PyLong_FromSsize_t(lengths[axis])).release());
    }
    const Ref row = owned(Py_BuildValue("(NN)", shape.release(), PyArray_DescrFromType(format.type)));
    if (PyList_Append(list.get(), row.get()) < 0) throw Raised();
  }
  return list;
}

}  // namespace kip::python
