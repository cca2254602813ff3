#include "keywords.h"

#include <cstring>

namespace kip::python {

Keywords::Keywords(std::span<const char* const> names) : names_(names) {
  for (size_t i = 0; i < names.size(); ++i) interned_[i] = owned(PyUnicode_InternFromString(names[i])).release();
}

int Keywords::find(PyObject* name) const {
  const int count = static_cast<int>(names_.size());
  for (int i = 0; i < count; ++i) {
    if (interned_[i] == name) return i;
  }
  int i = 0;
  while (i < count && PyUnicode_CompareWithASCIIString(name, names_[i]) != 0) ++i;
  return i;
}

void raiseUnexpected(const char* function, PyObject* name) {
  PyErr_Format(PyExc_TypeError, "%s() got an unexpected keyword argument '%U'", function, name);
  throw Raised();
}

void raiseMissing(const char* function, const char* name) {
  PyErr_Format(PyExc_TypeError, "%s() missing required argument '%s'", function, name);
  throw Raised();
}

int valueOf(PyObject* word, std::span<const Word> words, const char* argument) {
  if (word == Py_None) return words[0].value;
  const char* text = PyUnicode_Check(word) ? PyUnicode_AsUTF8(word) : nullptr;
  for (const Word& w : words.subspan(1)) {
    if (text && std::strcmp(text, w.word) == 0) return w.value;
  }
  PyErr_Clear();
  std::string known;
  for (const Word& w : words.subspan(1)) known += std::string(known.empty() ? "'" : ", '") + w.word + "'";
  throw Refused{kipStatusBadArgument, std::string(argument) + " must be one of " + known};
}

int integer(PyObject* object, long low, long high, const char* argument) {
  const long value = PyLong_AsLong(object);
  if (value == -1 && PyErr_Occurred()) throw Raised();
  if (value < low || value > high) {
    throw Refused{kipStatusBadArgument, std::string(argument) + " must be within " + std::to_string(low) + ".." +
                                            std::to_string(high) + ", and not " + std::to_string(value)};
  }
  return static_cast<int>(value);
}

}  // namespace kip::python
