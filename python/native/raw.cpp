// The module kipcc._raw: camera raw files, which LibRaw reads. It stands apart, so that the rest works without LibRaw.
#define KIPCC_MODULE_INIT
#include "python.h"

#include <cstring>
#include <stdexcept>

#include "develop.h"

namespace kip::python {
namespace {

PyObject* develop(PyObject*, PyObject* arguments) {
  const char *file, *method;
  if (!PyArg_ParseTuple(arguments, "ss", &file, &method)) return nullptr;
  const bool ahd = std::strcmp(method, "ahd") == 0;
  if (!ahd && std::strcmp(method, "linear") != 0) {
    PyErr_SetString(PyExc_ValueError, "the method is 'linear' or 'ahd'");
    return nullptr;
  }
  try {
    raw::Picture picture;
    {
      const Unlocked unlocked;
      picture = raw::develop(file, ahd ? raw::Method::kAhd : raw::Method::kLinear);
    }
    npy_intp shape[] = {picture.size.height, picture.size.width, 3};
    Ref array = owned(PyArray_SimpleNew(3, shape, NPY_UINT8));
    std::memcpy(PyArray_DATA(array.array()), picture.pixels.data(), picture.pixels.size());
    return array.release();
  } catch (const Raised&) {
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_OSError, error.what());
  }
  return nullptr;
}

PyMethodDef methods[] = {
    {"develop", develop, METH_VARARGS,
     "develop(file, method, /)\n--\n\n"
     "A camera's raw file as uint8 of shape (height, width, 3), R, G, B: black level, white balance, demosaicing by\n"
     "'linear' or 'ahd', colours to those of sRGB, the transfer curve of BT.709. OSError with the reason where the\n"
     "file cannot be read."},
    {}};

PyModuleDef definition = {
    PyModuleDef_HEAD_INIT, "kipcc._raw", nullptr, -1, methods, nullptr, nullptr, nullptr, nullptr};

}  // namespace
}  // namespace kip::python

PyMODINIT_FUNC PyInit__raw() {
  if (_import_array() < 0) return nullptr;
  return PyModule_Create(&kip::python::definition);
}
