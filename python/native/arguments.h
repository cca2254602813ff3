// What functions take besides pictures, by the names of their parameters.
#pragma once

#include "python.h"
#include "registry/registry.h"

namespace kip::python {

enum class Parameter { kOut, kCopy, kAlpha, kWeights, kMatrix, kLow, kHigh, kNoise, kMethod, kLevels, kGrid, kRegion };
constexpr int kParameters = static_cast<int>(Parameter::kRegion) + 1;

/// Which parameters a function has.
class Parameters {
 public:
  explicit Parameters(const Function& function);

  bool has(Parameter parameter) const { return mask_ >> static_cast<int>(parameter) & 1; }
  /// As Python shows them: "out=None, copy=False".
  std::string text() const;

 private:
  const Function& function_;
  unsigned mask_ = 0;
};

/// The values of a call, as they were given: borrowed, or null.
struct Values {
  PyObject* value[kParameters] = {};

  PyObject* operator[](Parameter parameter) const { return value[static_cast<int>(parameter)]; }
  /// Null also for None.
  PyObject* given(Parameter parameter) const;
};

/// Sorts the arguments by name of a call in CPython's vector convention. TypeError for those that a function does not
/// have, and where one is missing that has no default.
Values sorted(const char* function, const Parameters& parameters, PyObject* const* given, PyObject* names);

/// Arguments other than pictures, checked as far as the library does not, and what they refer to.
struct Settings {
  Settings(const Function& function, const Parameters& parameters, const Values& values);

  Arguments arguments;
  bool copy = false;

 private:
  Ref weights_, matrix_;
};

}  // namespace kip::python
