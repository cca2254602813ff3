// The samples of one side of a function, whatever its layout and sampling.
#pragma once

#include <array>
#include <cstring>

#include "support/call_case.h"

namespace kip {

using Pixel = std::array<int, 3>;

inline int clampByte(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

/// Channels are R, G, B or Y, Cb, Cr in this order, whatever the order in memory, then the fourth one if there is one.
/// What a pixel does not have for itself is the sample that it shares.
class Samples {
 public:
  Samples(const Function& function, Side side, Content& content);

  /// The columns and rows that a sample of chroma serves.
  int groupWidth() const { return 1 << widthBits_; }
  int groupHeight() const { return 1 << heightBits_; }
  /// Packed 4:2:2, where the last pixel of an odd width has room for one sample of chroma only.
  bool packed() const { return packed_; }
  int firstChroma() const { return firstChroma_; }

  /// Samples of 8 bits.
  uint8_t& at(int channel, int x, int y) const { return *address(channel, x, y); }
  void set(int x, int y, const Pixel& pixel) const {
    for (int c = 0; c < 3; ++c) at(c, x, y) = static_cast<uint8_t>(pixel[c]);
  }
  /// A lone packed pixel gets the chroma of the pair before it, or else its one sample for both.
  Pixel get(int x, int y) const {
    if (x < alone_) return {at(0, x, y), at(1, x, y), at(2, x, y)};
    if (x == 0) return {at(0, 0, y), at(firstChroma_, 0, y), at(firstChroma_, 0, y)};
    return {at(0, x, y), at(1, x - 1, y), at(2, x - 1, y)};
  }

  /// Samples of any type.
  double value(int channel, int x, int y) const;
  void put(int channel, int x, int y, double value) const;

 private:
  struct Channel {
    uint8_t* first = nullptr;
    ptrdiff_t sampleBytes = 0, rowBytes = 0;
    int widthBits = 0, heightBits = 0;
  };

  uint8_t* address(int channel, int x, int y) const {
    const Channel& c = channels_[channel];
    return c.first + (y >> c.heightBits) * c.rowBytes + (x >> c.widthBits) * c.sampleBytes;
  }

  Sample sample_;
  Channel channels_[kMostPlanes];
  int widthBits_, heightBits_, firstChroma_, alone_;
  bool packed_;
};

}  // namespace kip
