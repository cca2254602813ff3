// Develops a camera's raw file, which LibRaw reads, without taste: black level, white balance, demosaicing by one of
// two methods, colours to those of sRGB, the transfer curve of BT.709, 8 bits. The picture stays as the sensor lay.
#pragma once

#include <string>
#include <vector>

#include "kipcc.h"

namespace raw {

enum class Method { kLinear, kAhd };

/// R, G, B of 8 bits, without gaps.
struct Picture {
  KipiSize size;
  std::vector<Kip8u> pixels;
};

/// std::runtime_error with the reason where the file cannot be read, or is not from behind a Bayer pattern.
Picture develop(const std::string& file, Method method);

}  // namespace raw
