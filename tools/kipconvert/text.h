// Numbers in text. Errors are std::runtime_error.
#pragma once

#include <string>

struct Size {
  int width, height;
};

/// An integer of `least` or more.
int parseInteger(const std::string& text, int least);
/// Integers of 1 or more around an x.
Size parseSize(const std::string& text);
/// Digits around a colon; returns the text.
std::string parseRatio(const std::string& text);
