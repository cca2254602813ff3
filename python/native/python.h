// What all parts of the module share: the interpreter, numpy, owned references, and how a call is refused.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#define NPY_NO_DEPRECATED_API NPY_1_7_API_VERSION
#define PY_ARRAY_UNIQUE_SYMBOL kipcc_numpy
#ifndef KIPCC_MODULE_INIT
#define NO_IMPORT_ARRAY
#endif
#include <numpy/arrayobject.h>

#include <string>
#include <utility>

#include "kipcc.h"

namespace kip::python {

/// An owned reference, or null.
class Ref {
 public:
  Ref() = default;
  explicit Ref(PyObject* owned) : object_(owned) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Ref& operator=(Ref&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() { Py_XDECREF(object_); }

  static Ref to(PyObject* borrowed) { return Ref(Py_XNewRef(borrowed)); }

  PyObject* get() const { return object_; }
  PyArrayObject* array() const { return reinterpret_cast<PyArrayObject*>(object_); }
  PyObject* release() { return std::exchange(object_, nullptr); }
  explicit operator bool() const { return object_; }

 private:
  PyObject* object_ = nullptr;
};

/// Thrown where Python's error indicator is set.
struct Raised {};

/// Thrown where a call is refused: becomes a kipcc.Error with the function's name.
struct Refused {
  KipStatus status;
  std::string sentence;  ///< the status in words where this is empty
};

/// The object, or Raised where a call into Python failed.
inline Ref owned(PyObject* object) {
  if (!object) throw Raised();
  return Ref(object);
}

/// Lets other Python threads run as long as it lives.
class Unlocked {
 public:
  Unlocked() : state_(PyEval_SaveThread()) {}
  ~Unlocked() { PyEval_RestoreThread(state_); }
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;

 private:
  PyThreadState* state_;
};

/// Sets a kipcc.Error with the function's name.
void raise(const char* function, const Refused& refused);

/// Gives a positive status as a kipcc.ConversionWarning; Raised where warnings are errors.
void warn(const char* function, KipStatus status);

/// Turns what `body` throws into Python's error indicator and null.
template <class Body>
PyObject* guarded(const char* function, Body body) {
  try {
    return body();
  } catch (const Raised&) {
  } catch (const Refused& refused) {
    raise(function, refused);
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  }
  return nullptr;
}

}  // namespace kip::python
