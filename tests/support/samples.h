// Luma and chroma of one side of a function, whatever its layout and sampling.
#pragma once

#include "support/call_case.h"

namespace kip {

class Samples {
 public:
  Samples(const Function& function, Side side, Content& content) : content_(content), layout_(function.layout(side)) {
    const bool isSource = side == Side::kSource;
    const std::string& space = isSource ? function.parts.source : function.parts.destination;
    pairs_ = layout_.planar && layout_.channels == 2;
    crFirst_ = space.rfind("YCrCb", 0) == 0 && !pairs_;
    lumaByte_ = space.rfind("CbYCr", 0) == 0 ? 1 : 0;
  }

  /// The columns and rows that a sample of chroma serves.
  int groupWidth() const {
    if (layout_.chroma == Chroma::kFull) return 1;
    return layout_.chroma == Chroma::k411 || layout_.chroma == Chroma::k1620 ? 4 : 2;
  }
  int groupHeight() const { return layout_.chroma == Chroma::k1620 ? 4 : layout_.chroma == Chroma::k420 ? 2 : 1; }
  bool packed() const { return !layout_.planar && layout_.subsampled(); }

  uint8_t& luma(int x, int y) const {
    if (packed()) return at(0, 2 * x + lumaByte_, y);
    return layout_.planar ? at(0, x, y) : at(0, x * layout_.channels, y);
  }
  /// Sample k of row j of Cb (0) or Cr (1).
  uint8_t& chroma(int which, int k, int j) const {
    const int place = which ^ int { crFirst_ };
    if (packed()) return at(0, 4 * k + 2 * place + 1 - lumaByte_, j);
    if (pairs_) return at(1, 2 * k + place, j);
    return layout_.planar ? at(1 + place, k, j) : at(0, k * layout_.channels + 1 + place, j);
  }
  /// The samples that serve a pixel.
  uint8_t& cb(int x, int y) const { return chroma(0, x / groupWidth(), y / groupHeight()); }
  uint8_t& cr(int x, int y) const { return chroma(1, x / groupWidth(), y / groupHeight()); }
  /// The one that a lone pixel has in packed rows.
  uint8_t& firstChroma(int x, int y) const { return crFirst_ ? cr(x, y) : cb(x, y); }
  bool crFirst() const { return crFirst_; }

 private:
  uint8_t& at(int plane, int byte, int y) const {
    return content_[plane].bytes[static_cast<size_t>(y) * content_[plane].plane.rowBytes + byte];
  }

  Content& content_;
  const Layout& layout_;
  bool pairs_;  ///< chroma as pairs in one plane
  bool crFirst_;
  int lumaByte_;  ///< of packed pixels
};

}  // namespace kip
