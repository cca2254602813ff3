// kipcc.convert: pictures of any format, as arrays, through libkipconvert's plans.
#pragma once

#include "python.h"

namespace kip::python {

PyObject* convert(PyObject*, PyObject* const* given, Py_ssize_t positional, PyObject* names);
PyObject* formats(PyObject*, PyObject*);
PyObject* formatName(PyObject*, PyObject* name);
PyObject* planesOf(PyObject*, PyObject* arguments);

extern const char* const convertDoc;
extern const char* const planesDoc;

}  // namespace kip::python
