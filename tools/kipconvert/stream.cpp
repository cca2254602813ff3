#include "stream.h"

#include <algorithm>
#include <stdexcept>

namespace {

/// Reads in pieces that grow with what has been read; returns how much there was.
size_t readGrowing(Input& input, Frame& frame, size_t offset, size_t bytes) {
  constexpr size_t kFirst = 1 << 20;
  size_t got = 0;
  while (got < bytes) {
    const size_t piece = std::min(bytes - got, std::max(kFirst, offset + got));
    const size_t more = input.read(frame.reserve(offset + got + piece) + offset + got, piece);
    got += more;
    if (more < piece) break;
  }
  return got;
}

}  // namespace

bool readSamples(Input& input, Frame& frame, bool mayEnd) {
  const Shape& shape = frame.shape();
  size_t got = 0;
  for (int p = 0; p < shape.planes(); ++p) {
    const size_t read = readGrowing(input, frame, shape.offset(p), shape.bytes(p));
    got += read;
    if (read < shape.bytes(p)) break;
  }
  if (got == 0 && mayEnd) return false;
  if (got < shape.fileBytes()) {
    throw std::runtime_error("it is cut short: " + std::to_string(got) + " of " + std::to_string(shape.fileBytes()) +
                             " bytes");
  }
  return true;
}

void writeSamples(const Frame& frame, Output& output) {
  const Shape& shape = frame.shape();
  for (int p = 0; p < shape.planes(); ++p) output.write({frame.plane(p), shape.bytes(p)});
}
