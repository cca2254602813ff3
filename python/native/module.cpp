// The module kipcc._native: all functions of kipcc.h by their names, made from the registry; kipcc.convert; threads.
#define KIPCC_MODULE_INIT
#include "python.h"

#include <utility>
#include <vector>

#include "call.h"
#include "keywords.h"
#include "kipconvert.h"
#include "kipcore.h"
#include "plan.h"

namespace kip::python {
namespace {

PyObject* errorClass = nullptr;
PyObject* warningClass = nullptr;

constexpr const char* kBriefs[] = {
#include "briefs.inc"
};
constexpr size_t kFunctions = std::size(kBriefs);

const std::vector<Callable>& callables() {
  static const std::vector<Callable> all = [] {
    std::vector<Callable> made;
    made.reserve(kFunctions);
    for (const Function& function : registry()) made.emplace_back(function, kBriefs[made.size()]);
    return made;
  }();
  return all;
}

/// The C function of one entry of the registry. Builtin functions are found again by their names when they are
/// pickled, which those that are bound to an object are not.
template <size_t kIndex>
PyObject* entry(PyObject*, PyObject* const* given, Py_ssize_t positional, PyObject* names) {
  const Callable& callable = callables()[kIndex];
  return guarded(callable.function.name.c_str(), [&] { return call(callable, given, positional, names).release(); });
}

using Vector = PyObject* (*)(PyObject*, PyObject* const*, Py_ssize_t, PyObject*);

PyCFunction asMethod(Vector function) { return reinterpret_cast<PyCFunction>(reinterpret_cast<void*>(function)); }

template <size_t... kIndex>
std::vector<PyMethodDef> methods(std::index_sequence<kIndex...>) {
  std::vector<PyMethodDef> made;
  for (const Vector function : {&entry<kIndex>...}) {
    const Callable& callable = callables()[made.size()];
    made.push_back(
        {callable.function.name.c_str(), asMethod(function), METH_FASTCALL | METH_KEYWORDS, callable.doc.c_str()});
  }
  made.push_back({});
  return made;
}

PyObject* setThreads(PyObject*, PyObject* count) {
  return guarded("kipSetNumThreads", [&] {
    kipSetNumThreads(integer(count, 1, 1 << 15, "count"));
    return Py_NewRef(Py_None);
  });
}

PyObject* getThreads(PyObject*, PyObject*) { return PyLong_FromLong(ownGetNumThreads()); }

PyObject* version(PyObject*, PyObject*) { return PyUnicode_FromString(kipccGetLibVersion()->Version); }

/// One picture of a function's side: (numpy's type, planes, samples of a pixel of the first plane, columns and rows
/// that a sample of the last plane serves).
PyObject* sideOf(const PictureShape& shape, bool present) {
  if (!present) return Py_NewRef(Py_None);
  const KipiSize group = shape.layout.planar ? groupOf(shape.layout.chroma) : KipiSize{1, 1};
  return Py_BuildValue("(Niiii)", PyArray_DescrFromType(shape.type), shape.count(), shape.samples(0), group.width,
                       group.height);
}

/// What kipcc.functions is made of.
PyObject* functions(PyObject*, PyObject*) {
  return guarded("functions", [] {
    Ref all = owned(PyDict_New());
    for (const Callable& callable : callables()) {
      const Function& function = callable.function;
      const Ref row = owned(Py_BuildValue(
          "(sssNN)", function.group.c_str(), function.parts.source.c_str(), function.parts.destination.c_str(),
          sideOf(callable.source, !function.shape.inPlace()), sideOf(callable.destination, true)));
      if (PyDict_SetItemString(all.get(), function.name.c_str(), row.get()) < 0) throw Raised();
    }
    return all.release();
  });
}

PyMethodDef others[] = {
    {"convert", asMethod(convert), METH_FASTCALL | METH_KEYWORDS, convertDoc},
    {"planes_of", planesOf, METH_VARARGS, planesDoc},
    {"format_name", formatName, METH_O, "format_name(name, /)\n--\n\nThe first name of a format that has several."},
    {"formats", formats, METH_NOARGS, "formats()\n--\n\nThe formats of convert as rows of a table."},
    {"kipSetNumThreads", setThreads, METH_O,
     "kipSetNumThreads(count, /)\n--\n\nSets the number of threads that functions which split their rows use."},
    {"ownGetNumThreads", getThreads, METH_NOARGS,
     "ownGetNumThreads()\n--\n\nThe number of threads that functions which split their rows use."},
    {"version", version, METH_NOARGS, "version()\n--\n\nThe library's version and its build."},
    {"functions", functions, METH_NOARGS, "functions()\n--\n\nThe functions of kipcc.h as rows of a table."},
    {}};

PyModuleDef definition = {
    PyModuleDef_HEAD_INIT, "kipcc._native", nullptr, -1, others, nullptr, nullptr, nullptr, nullptr};

PyObject* makeModule() {
  if (PyArray_API == nullptr && _import_array() < 0) throw Raised();
  const Ref errors = owned(PyImport_ImportModule("kipcc._errors"));
  errorClass = owned(PyObject_GetAttrString(errors.get(), "Error")).release();
  warningClass = owned(PyObject_GetAttrString(errors.get(), "ConversionWarning")).release();
  Ref module = owned(PyModule_Create(&definition));
  static std::vector<PyMethodDef> all = methods(std::make_index_sequence<kFunctions>());
  if (PyModule_AddFunctions(module.get(), all.data()) < 0) throw Raised();
  return module.release();
}

}  // namespace

void raise(const char* function, const Refused& refused) {
  const std::string sentence = refused.sentence.empty() ? kipStatusText(refused.status) : refused.sentence;
  const Ref error(PyObject_CallFunction(errorClass, "sis", function, refused.status, sentence.c_str()));
  if (error) PyErr_SetObject(errorClass, error.get());
}

void warn(const char* function, KipStatus status) {
  if (PyErr_WarnFormat(warningClass, 1, "%s: %s", function, kipStatusText(status)) < 0) throw Raised();
}

}  // namespace kip::python

PyMODINIT_FUNC PyInit__native() {
  return kip::python::guarded("kipcc._native", [] { return kip::python::makeModule(); });
}
