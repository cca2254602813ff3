// Conversions of 8-bit pictures between R, G, B and Y, Cb, Cr or grey: the library's and those of its peers.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "kipconvert.h"
#include "measure.h"

namespace accuracy {

/// What Y, Cb, Cr mean.
struct Coding {
  const char* name;
  KipMatrix matrix;
  KipRange range;
  double red, blue;  ///< the weights Kr and Kb of luma
};

struct PictureConversion {
  KipFormat format;  ///< of Y, Cb, Cr: 4:4:4 or 4:2:0, in planes; or grey, which is Y alone
  bool encodes;      ///< from R, G, B, else to them
  Coding coding;

  int planes() const { return kipFormatInfo(format)->planes; }
  bool sharesChroma() const { return format == kipFormatYUV420P; }
  bool isLimited() const { return coding.range == kipRangeLimited; }
  std::string name() const;
};

/// One picture as RGB24 and as planes Y, Cb, Cr, one after the other, both without gaps. It has kSide x kSide colours,
/// all the triples with one first sample: each is a pixel, or a group of 2 x 2 where chroma is shared.
class Pictures {
 public:
  explicit Pictures(const PictureConversion& conversion);

  int side() const { return group_ * kSide; }  ///< in pixels
  size_t pixels() const { return static_cast<size_t>(side()) * side(); }
  Kip8u* rgb() { return rgb_.data(); }
  Kip8u* plane(int p) { return yuv_.data() + (p == 0 ? 0 : pixels() + static_cast<size_t>(p - 1) * kSide * kSide); }
  int step(int p) const { return p == 0 ? side() : kSide; }

  /// Changes the source's first sample.
  void setFirst(Kip8u first);
  /// The result's triple of a colour, counted row by row.
  Real result(size_t colour);

 private:
  bool encodes_;
  int group_;  // pixels, in both directions
  std::vector<Kip8u> rgb_, yuv_;
};

/// Makes the result from the source. Empty where a library lacks the conversion.
using Convert = std::function<void(Pictures&)>;

Convert kipconvertConvert(const PictureConversion& conversion);
Convert kipcct7Convert(const PictureConversion& conversion);
// Peers, where they are installed; OpenCV for 4:2:0, swscale and zimg for 4:4:4, libyuv for both; all of them for grey.
Convert opencvConvert(const PictureConversion& conversion);
Convert libyuvConvert(const PictureConversion& conversion);
Convert swscaleConvert(const PictureConversion& conversion);
Convert zimgConvert(const PictureConversion& conversion);

/// The names of the libraries that are measured with a format.
std::vector<const char*> librariesOf(KipFormat format);
std::vector<PictureConversion> pictureConversions(KipFormat format);
/// The errors of each of them, of one colour out of so many; those of the peers of all colours only.
Accuracy accuracyOf(const PictureConversion& conversion, int stride);

}  // namespace accuracy
