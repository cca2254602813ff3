// What the program tells instead of converting.
#pragma once

#include <string>

#include "sides.h"

/// A table of all formats, in Markdown.
std::string formatTable();

/// What is converted to what, what nobody said, and the plan.
std::string explanation(const Sides& sides, const std::string& plan);
