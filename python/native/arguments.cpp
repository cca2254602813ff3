#include "arguments.h"

#include <limits>

#include "keywords.h"

namespace kip::python {
namespace {

/// The parameters' names, those of the C functions, and their defaults; null where there is none. The alpha that is
/// opaque depends on the function.
constexpr struct {
  const char* name;
  const char* standard;
} kTable[kParameters] = {{"out", "None"},    {"copy", "False"},   {"aval", ""},      {"coeffs", "None"},
                         {"twist", nullptr}, {"vMin", "0.0"},     {"vMax", "1.0"},   {"noise", "0"},
                         {"dtype", "0"},     {"levels", nullptr}, {"grid", nullptr}, {"srcRoi", "None"}};

int opaque(const Function& function) {
  return function.shape.destination.sample == Sample::k8u ? 255 : std::numeric_limits<Kip16s>::max();
}

/// The place of a parameter's name in the table.
int parameterOf(PyObject* name) {
  static const Keywords keywords = [] {
    static const char* names[kParameters];
    for (int i = 0; i < kParameters; ++i) names[i] = kTable[i].name;
    return Keywords(names);
  }();
  return keywords.find(name);
}

constexpr long kLeast = std::numeric_limits<int>::min(), kLargest = std::numeric_limits<int>::max();

float number(PyObject* object) {
  const double value = PyFloat_AsDouble(object);
  if (value == -1 && PyErr_Occurred()) throw Raised();
  return static_cast<float>(value);
}

/// Rows x columns floats; a single row may have one dimension.
Ref floats(PyObject* object, npy_intp rows, npy_intp columns, const char* name) {
  Ref array = owned(PyArray_FROMANY(object, NPY_FLOAT32, 1, 2, NPY_ARRAY_CARRAY_RO | NPY_ARRAY_FORCECAST));
  const int dimensions = PyArray_NDIM(array.array());
  const npy_intp* shape = PyArray_DIMS(array.array());
  const bool fits =
      rows == 1 ? dimensions == 1 && shape[0] == columns : dimensions == 2 && shape[0] == rows && shape[1] == columns;
  if (!fits) {
    const std::string wanted = (rows > 1 ? std::to_string(rows) + " x " : "") + std::to_string(columns);
    throw Refused{kipStatusBadArgument, std::string(name) + " must be " + wanted + " numbers"};
  }
  return array;
}

Region region(PyObject* object) {
  const Ref sequence = owned(PySequence_Fast(object, "srcRoi must be (x, y, width, height)"));
  if (PySequence_Fast_GET_SIZE(sequence.get()) != 4) {
    throw Refused{kipStatusBadArgument, "srcRoi must be (x, y, width, height)"};
  }
  int side[4];
  for (int i = 0; i < 4; ++i) {
    side[i] = integer(PySequence_Fast_GET_ITEM(sequence.get(), i), i < 2 ? 0 : 1, kLargest, "srcRoi");
  }
  return {side[0], side[1], side[2], side[3]};
}

}  // namespace

Parameters::Parameters(const Function& function) : function_(function) {
  const Shape& shape = function.shape;
  const auto add = [&](bool has, auto... parameters) {
    if (has) ((mask_ |= 1U << static_cast<int>(parameters)), ...);
  };
  using enum Parameter;
  add(!shape.inPlace(), kOut, kCopy);
  add(shape.alpha, kAlpha);
  add(shape.weights, kWeights);
  add(shape.matrix, kMatrix);
  add(shape.range, kLow, kHigh);
  add(shape.reduction, kNoise, kMethod, kLevels);
  add(shape.mosaic, kGrid, kRegion);
}

std::string Parameters::text() const {
  std::string text;
  for (int i = 0; i < kParameters; ++i) {
    if (!has(static_cast<Parameter>(i))) continue;
    const bool alpha = static_cast<Parameter>(i) == Parameter::kAlpha;
    const char* standard = kTable[i].standard;
    text.append(text.empty() ? "" : ", ").append(kTable[i].name);
    if (standard) text.append("=").append(alpha ? std::to_string(opaque(function_)) : standard);
  }
  return text;
}

PyObject* Values::given(Parameter parameter) const {
  PyObject* value = (*this)[parameter];
  return value == Py_None ? nullptr : value;
}

Values sorted(const char* function, const Parameters& parameters, PyObject* const* given, PyObject* names) {
  Values values;
  const Py_ssize_t count = names ? PyTuple_GET_SIZE(names) : 0;
  for (Py_ssize_t i = 0; i < count; ++i) {
    const int which = parameterOf(PyTuple_GET_ITEM(names, i));
    if (which == kParameters || !parameters.has(static_cast<Parameter>(which))) {
      raiseUnexpected(function, PyTuple_GET_ITEM(names, i));
    }
    values.value[which] = given[i];
  }
  for (int i = 0; i < kParameters; ++i) {
    const bool required = parameters.has(static_cast<Parameter>(i)) && !kTable[i].standard;
    if (required && !values.value[i]) raiseMissing(function, kTable[i].name);
  }
  return values;
}

Settings::Settings(const Function& function, const Parameters& parameters, const Values& values) {
  using enum Parameter;
  if (values[kCopy]) copy = PyObject_IsTrue(values[kCopy]) == 1;
  if (parameters.has(kAlpha)) arguments.alpha = opaque(function);
  if (values[kAlpha])
    arguments.alpha =
        integer(values[kAlpha], opaque(function) == 255 ? 0 : -opaque(function) - 1, opaque(function), "aval");
  if (values.given(kWeights)) {
    weights_ = floats(values[kWeights], 1, 3, "coeffs");
    arguments.weights = static_cast<const float*>(PyArray_DATA(weights_.array()));
  }
  if (parameters.has(kMatrix)) {
    const bool linear = function.destination.channels == 4 && !function.destination.alpha;
    matrix_ = floats(values[kMatrix], linear ? 4 : 3, 4, "twist");
    arguments.matrix = static_cast<const float(*)[4]>(PyArray_DATA(matrix_.array()));
  }
  if (values[kLow]) arguments.low = number(values[kLow]);
  if (values[kHigh]) arguments.high = number(values[kHigh]);
  if (values[kNoise]) arguments.noise = integer(values[kNoise], kLeast, kLargest, "noise");
  if (values[kMethod]) arguments.choice = integer(values[kMethod], kipDitherNone, kipDitherBayer, "dtype");
  if (values[kLevels]) arguments.levels = integer(values[kLevels], kLeast, kLargest, "levels");
  if (values[kGrid]) arguments.choice = integer(values[kGrid], kLeast, kLargest, "grid");
  if (values.given(kRegion)) arguments.region = region(values[kRegion]);
}

}  // namespace kip::python
