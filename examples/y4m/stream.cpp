#include "stream.h"

#include <charconv>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace {

constexpr int kLargestSide = 16384;
constexpr size_t kLongestLine = 4096;
const std::string kMagic = "YUV4MPEG2", kFrameMagic = "FRAME";

[[noreturn]] void fail(const std::string& why) { throw std::runtime_error(why); }

int parseSide(const std::string& text) {
  int side = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), side);
  if (error != std::errc() || end != text.data() + text.size() || side < 1 || side > kLargestSide) {
    fail("'" + text + "' is not a size of 1 to " + std::to_string(kLargestSide));
  }
  return side;
}

/// A line without its end; nothing when the file ends before it begins.
std::optional<std::string> readLine(std::FILE* file) {
  std::string line;
  for (int c = std::fgetc(file); c != '\n'; c = std::fgetc(file)) {
    if (c == EOF) {
      if (std::ferror(file)) fail("cannot read");
      if (line.empty()) return {};
      fail("the stream ends within a header");
    }
    line += static_cast<char>(c);
    if (line.size() > kLongestLine) fail("a header has no end");
  }
  return line;
}

/// The words of a line, of which the first must be `magic`.
std::vector<std::string> wordsAfter(const std::string& magic, const std::string& line, const std::string& what) {
  std::istringstream words(line);
  std::string word;
  if (!(words >> word) || word != magic) fail(what);
  std::vector<std::string> rest;
  while (words >> word) rest.push_back(word);
  return rest;
}

const Format& formatOf(const std::string& tag) {
  for (const char* name : {"420", "420jpeg", "420mpeg2", "420paldv"}) {
    if (tag == name) return k420;
  }
  for (const Format* format : {&k422, &k411, &k444}) {
    if (tag == format->tag) return *format;
  }
  fail("chroma sampling '" + tag + "' is not supported; 420, 422, 411 and 444 of 8 bits are");
}

char parseScan(const std::string& value) {
  if (value.size() != 1 || std::string("ptbm?").find(value) == std::string::npos) {
    fail("'I" + value + "' is not a way of scanning");
  }
  return value[0];
}

void take(const std::string& word, Header& header) {
  const std::string value = word.substr(1);
  switch (word[0]) {
    case 'W':
      header.picture.width = parseSide(value);
      break;
    case 'H':
      header.picture.height = parseSide(value);
      break;
    case 'C':
      header.format = &formatOf(value);
      break;
    case 'F':
      header.rate = parseRatio(value);
      break;
    case 'A':
      header.aspect = parseRatio(value);
      break;
    case 'I':
      header.scan = parseScan(value);
      break;
    case 'X':
      header.fullRange |= value == "COLORRANGE=FULL";
      break;
    default:
      fail("'" + word + "' has no meaning in a header");
  }
}

}  // namespace

KipiSize parseSize(const std::string& text) {
  const size_t x = text.find('x');
  if (x == std::string::npos) fail("'" + text + "' is not a size like 640x480");
  return {parseSide(text.substr(0, x)), parseSide(text.substr(x + 1))};
}

std::string parseRatio(const std::string& text) {
  constexpr size_t kLongest = 40;  // for the expression, which takes up stack for every character
  if (text.size() > kLongest || !std::regex_match(text, std::regex("[0-9]+:[0-9]+"))) {
    fail("'" + text + "' is not a ratio like 25:1");
  }
  return text;
}

Header readHeader(std::FILE* file) {
  const std::string what = "this is not a YUV4MPEG2 stream";
  Header header;
  header.format = &k420;
  for (const std::string& word : wordsAfter(kMagic, readLine(file).value_or(""), what)) take(word, header);
  if (header.picture.width == 0 || header.picture.height == 0) fail("the header does not say how large the frames are");
  return header;
}

void writeHeader(const Header& header, std::FILE* file) {
  if (header.format->tag.empty()) return;
  std::fprintf(file, "%s W%d H%d F%s I%c A%s C%s XCOLORRANGE=%s\n", kMagic.c_str(), header.picture.width,
               header.picture.height, header.rate.c_str(), header.scan, header.aspect.c_str(),
               header.format->tag.c_str(), header.fullRange ? "FULL" : "LIMITED");
}

std::optional<FrameHeader> readFrameHeader(const Header& header, std::FILE* file) {
  FrameHeader frame = {header.scan == 't' || header.scan == 'b' ? Scan::kInterlaced : Scan::kProgressive};
  if (header.format->tag.empty()) return frame;
  const std::optional<std::string> line = readLine(file);
  if (!line) return {};
  for (const std::string& word : wordsAfter(kFrameMagic, *line, "there is something else where a frame should begin")) {
    // Of a stream that is mixed, the third letter tells to which rows the chroma belongs.
    if (header.scan == 'm' && word.size() == 4 && word[0] == 'I') {
      frame = {word[3] == 'i' ? Scan::kInterlaced : Scan::kProgressive, word.substr(1, 2)};
    }
  }
  return frame;
}

void writeFrameHeader(const Header& header, const FrameHeader& frame, std::FILE* file) {
  if (header.format->tag.empty()) return;
  const std::string mixed = " I" + frame.timing + (frame.scan == Scan::kInterlaced ? 'i' : 'p');
  std::fprintf(file, "%s%s\n", kFrameMagic.c_str(), header.scan == 'm' ? mixed.c_str() : "");
}

bool readPixels(Frame& frame, Scan scan, std::FILE* file) {
  size_t got = 0;
  frame.forRows([&](Kip8u* row, size_t bytes) { got += std::fread(row, 1, bytes, file); });
  if (std::ferror(file)) fail("cannot read");
  if (got == 0 && frame.format().tag.empty()) return false;
  if (got < frame.bytes()) {
    fail("it is cut short: " + std::to_string(got) + " of " + std::to_string(frame.bytes()) + " bytes");
  }
  frame.repeatEdges(scan == Scan::kInterlaced ? 2 : 1);
  return true;
}

void writePixels(const Frame& frame, std::FILE* file) {
  frame.forRows([&](const Kip8u* row, size_t bytes) { std::fwrite(row, 1, bytes, file); });
  if (std::ferror(file)) fail("cannot write");
}
