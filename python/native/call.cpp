#include "call.h"

#include <cstring>

#include "describe.h"

namespace kip::python {
namespace {

/// What the fourth sample of a new result is where the function leaves it alone: as far as the source has one of the
/// same kind, that; else opaque.
void fillAlpha(const Callable& callable, const Picture& source, Picture& destination) {
  const size_t bytes = bytesOf(callable.destination.image.sample), pixelBytes = 4 * bytes;
  const bool sameKind = callable.source.type == callable.destination.type && callable.function.source.channels == 4;
  static constexpr Kip16u kFull16 = 65535;
  static constexpr Kip16s kFull16s = 32767;
  static constexpr Kip8u kFull8 = 255;
  const void* full = bytes == 1                               ? static_cast<const void*>(&kFull8)
                     : callable.destination.type == NPY_INT16 ? static_cast<const void*>(&kFull16s)
                                                              : &kFull16;
  const size_t rowBytes = destination.size.width * pixelBytes;
  for (npy_intp y = 0; y < destination.size.height; ++y) {
    char* to = static_cast<char*>(destination.argument.plane[0]) + y * destination.argument.step[0];
    if (sameKind) {
      std::memcpy(to, static_cast<char*>(source.argument.plane[0]) + y * source.argument.step[0], rowBytes);
      continue;
    }
    for (size_t x = 0; x < rowBytes; x += pixelBytes) std::memcpy(to + x + 3 * bytes, full, bytes);
  }
}

/// The region of a mosaic that is converted: all of it, or what was asked for.
void setRegion(Arguments& arguments) {
  Region& region = arguments.region;
  if (region.width == 0) region = {0, 0, arguments.size.width, arguments.size.height};
  if (region.x > arguments.size.width - region.width || region.y > arguments.size.height - region.height) {
    throw Refused{kipStatusBadArgument, "srcRoi is not within the source"};
  }
}

void run(const Function& function, const Arguments& arguments) {
  KipStatus status;
  {
    const Unlocked unlocked;
    status = function.call(arguments);
  }
  if (status < kipStatusOk) throw Refused{status, ""};
  if (status > kipStatusOk) warn(function.name.c_str(), status);
}

Ref callInPlace(const Callable& callable, PyObject* object, const Values& values) {
  const Picture picture = read(callable.destination, object, Access::kWrite, false);
  expectSize(callable.destination, picture, picture.size);
  expectApart({}, picture.arrays(), false);
  Settings settings(callable.function, callable.parameters, values);
  settings.arguments.destination = picture.argument;
  settings.arguments.size = picture.size;
  run(callable.function, settings.arguments);
  return Ref::to(object);
}

Ref callBetween(const Callable& callable, PyObject* object, const Values& values) {
  Settings settings(callable.function, callable.parameters, values);
  Arguments& arguments = settings.arguments;
  const Picture source = read(callable.source, object, Access::kRead, settings.copy);
  expectSize(callable.source, source, source.size);
  arguments.source = source.argument;
  arguments.size = source.size;
  KipiSize region = source.size;
  if (callable.function.shape.mosaic) {
    setRegion(arguments);
    region = {arguments.region.width, arguments.region.height};
  }
  PyObject* out = values.given(Parameter::kOut);
  Picture destination =
      out ? read(callable.destination, out, Access::kWrite, false) : make(callable.destination, region);
  if (out) {
    expectSize(callable.destination, destination, region);
    expectApart(source.arrays(), destination.arrays(), callable.sameImage);
  } else if (callable.function.contract.alpha == Alpha::kUntouched) {
    fillAlpha(callable, source, destination);
  }
  arguments.destination = destination.argument;
  run(callable.function, arguments);
  return out ? Ref::to(out) : asResult(destination.arrays());
}

}  // namespace

Callable::Callable(const Function& function, const char* brief)
    : function(function),
      source(function, Side::kSource),
      destination(function, Side::kDestination),
      parameters(function),
      sameImage(function.group == "twist"),
      doc(docOf(function, source, destination, parameters, brief)) {}

Ref call(const Callable& callable, PyObject* const* given, Py_ssize_t positional, PyObject* names) {
  const char* name = callable.function.name.c_str();
  if (positional != 1) {
    PyErr_Format(PyExc_TypeError, "%s() takes 1 positional argument, the picture, but %zd were given", name,
                 positional);
    throw Raised();
  }
  const Values values = sorted(name, callable.parameters, given + positional, names);
  return callable.function.shape.inPlace() ? callInPlace(callable, given[0], values)
                                           : callBetween(callable, given[0], values);
}

}  // namespace kip::python
