#include "text.h"

#include <charconv>
#include <stdexcept>

int parseInteger(const std::string& text, int least) {
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || parsed != end || value < least) {
    throw std::runtime_error("'" + text + "' is not a whole number of " + std::to_string(least) + " or more");
  }
  return value;
}

Size parseSize(const std::string& text) {
  const size_t x = text.find('x');
  if (x == std::string::npos) throw std::runtime_error("'" + text + "' is not a size like 640x480");
  return {parseInteger(text.substr(0, x), 1), parseInteger(text.substr(x + 1), 1)};
}

std::string parseRatio(const std::string& text) {
  constexpr char kDigits[] = "0123456789";
  const size_t colon = text.find_first_not_of(kDigits);
  const bool isRatio = colon != 0 && colon != std::string::npos && text[colon] == ':' && colon + 1 < text.size() &&
                       text.find_first_not_of(kDigits, colon + 1) == std::string::npos;
  if (!isRatio) throw std::runtime_error("'" + text + "' is not a ratio like 25:1");
  return text;
}
