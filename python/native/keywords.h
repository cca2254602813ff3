// Arguments by name in CPython's vector convention.
#pragma once

#include <span>

#include "python.h"

namespace kip::python {

/// A fixed list of names.
class Keywords {
 public:
  explicit Keywords(std::span<const char* const> names);

  /// The place of a name in the list; its length where it is not there. Names in a program's text are interned, and
  /// found by their address.
  int find(PyObject* name) const;

 private:
  std::span<const char* const> names_;
  PyObject* interned_[24];
};

/// Sets a TypeError: an argument that the function does not have, or one without which it cannot be called.
[[noreturn]] void raiseUnexpected(const char* function, PyObject* name);
[[noreturn]] void raiseMissing(const char* function, const char* name);

/// The places of words in a list, for arguments that say what they want: `word` must be one of them, or None for the
/// first.
struct Word {
  const char* word;
  int value;
};
int valueOf(PyObject* word, std::span<const Word> words, const char* argument);

/// A whole number within limits; Refused beyond them.
int integer(PyObject* object, long low, long high, const char* argument);

}  // namespace kip::python
