// Calling the functions of kipcc.h with arrays.
#pragma once

#include <vector>

#include "arguments.h"
#include "image.h"

namespace kip::python {

/// A function, and what is known about its calls beforehand.
struct Callable {
  /// With the manual's line about the function.
  Callable(const Function& function, const char* brief);

  const Function& function;
  PictureShape source, destination;
  Parameters parameters;
  bool sameImage;   ///< source and destination may be one image
  std::string doc;  ///< begins with the signature, as CPython has it
};

/// Converts: `given` has `positional` arguments and then those by the names. The result, or an exception.
Ref call(const Callable& callable, PyObject* const* given, Py_ssize_t positional, PyObject* names);

}  // namespace kip::python
