// Luma and chroma of one side of a function, whatever its layout and sampling.
#pragma once

#include "support/call_case.h"

namespace kip {

class Samples {
 public:
  Samples(const Function& function, Side side, Content& content) {
    const Layout& layout = function.layout(side);
    const std::string& space = side == Side::kSource ? function.parts.source : function.parts.destination;
    const bool pairs = layout.planar && layout.channels == 2;
    const int lumaByte = space.rfind("CbYCr", 0) == 0 ? 1 : 0;
    packed_ = !layout.planar && layout.subsampled();
    crFirst_ = space.rfind("YCrCb", 0) == 0 && !pairs;
    const Chroma chroma = layout.chroma;
    widthBits_ = chroma == Chroma::kFull ? 0 : chroma == Chroma::k411 || chroma == Chroma::k1620 ? 2 : 1;
    heightBits_ = chroma == Chroma::k1620 ? 2 : chroma == Chroma::k420 ? 1 : 0;

    const auto channel = [&](int plane, int byte, int sampleBytes) {
      return Channel{content[plane].bytes.data() + byte, sampleBytes, content[plane].plane.rowBytes};
    };
    luma_ = channel(0, packed_ ? lumaByte : 0, layout.planar ? 1 : layout.channels);
    for (int which = 0; which < 2; ++which) {
      const int place = which ^ int { crFirst_ };
      chroma_[which] = packed_         ? channel(0, 2 * place + 1 - lumaByte, 4)
                       : pairs         ? channel(1, place, 2)
                       : layout.planar ? channel(1 + place, 0, 1)
                                       : channel(0, 1 + place, layout.channels);
    }
  }

  /// The columns and rows that a sample of chroma serves.
  int groupWidth() const { return 1 << widthBits_; }
  int groupHeight() const { return 1 << heightBits_; }
  bool packed() const { return packed_; }

  uint8_t& luma(int x, int y) const { return luma_.at(x, y); }
  /// Sample k of row j of Cb (0) or Cr (1).
  uint8_t& chroma(int which, int k, int j) const { return chroma_[which].at(k, j); }
  /// The samples that serve a pixel.
  uint8_t& cb(int x, int y) const { return chroma(0, x >> widthBits_, y >> heightBits_); }
  uint8_t& cr(int x, int y) const { return chroma(1, x >> widthBits_, y >> heightBits_); }
  /// The one that a lone pixel has in packed rows.
  uint8_t& firstChroma(int x, int y) const { return crFirst_ ? cr(x, y) : cb(x, y); }
  bool crFirst() const { return crFirst_; }

 private:
  struct Channel {
    uint8_t* first;
    ptrdiff_t sampleBytes, rowBytes;

    uint8_t& at(int k, int j) const { return first[j * rowBytes + k * sampleBytes]; }
  };

  Channel luma_, chroma_[2];
  bool packed_, crFirst_;
  int widthBits_, heightBits_;
};

}  // namespace kip
