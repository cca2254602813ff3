// What help() shows of a function.
#pragma once

#include "arguments.h"
#include "image.h"

namespace kip::python {

/// A docstring that begins with the signature in CPython's manner, from the manual's line about the function.
std::string docOf(const Function& function, const PictureShape& source, const PictureShape& destination,
                  const Parameters& parameters, const char* brief);

}  // namespace kip::python
