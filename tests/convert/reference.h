// Conversions in real numbers, sample by sample, as kipconvert.h defines them.
#pragma once

#include <cstdint>
#include <vector>

#include "kipconvert.h"

namespace kip::test {

/// The bytes of a row of a plane, and how many rows it has.
int64_t rowBytes(const KipFormatInfo& info, int plane, int width);
int rowCount(const KipFormatInfo& info, int plane, int height);

/// A picture in memory of its own.
class Memory {
 public:
  /// Rows further apart than they need be, on odd addresses, from the last to the first where asked to; all bytes are
  /// `value` at first.
  Memory(const KipPicture& picture, bool bottomUp = false, uint8_t value = 0xA5);

  KipPlanes planes;
  /// Whether the bytes between and around the rows have been left alone.
  bool gapsAreWhole() const;
  /// The bytes of the rows, one after the other.
  std::vector<uint8_t> rows() const;
  /// Fills rows with what a generator makes of a seed; floats are within 0..1.
  void fillRandom(uint32_t seed);

 private:
  KipPicture picture_;
  uint8_t value_;
  std::vector<uint8_t> bytes_;
};

/// The samples of a picture by channel, each on its own grid, as the numbers that they are in memory.
struct Samples {
  struct Channel {
    int width = 0, height = 0;
    std::vector<double> at;
  };
  Channel channel[4];
};
Samples readSamples(const KipPicture& picture, const KipPlanes& planes);

/// What a conversion of samples should give, before rounding and saturation.
Samples convertReal(const KipPicture& from, const Samples& samples, const KipPicture& to, KipChromaFilter filter);

}  // namespace kip::test
