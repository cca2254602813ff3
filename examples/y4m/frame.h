// Frames in the formats that the program knows.
#pragma once

#include <string>
#include <vector>

#include "kipcc.h"

/// One plane of a format: a sample of `bytes` bytes for every `perColumn` columns and `perRow` rows of the picture.
struct PlaneShape {
  int bytes, perColumn, perRow;
};

struct Format {
  std::string name;
  std::vector<PlaneShape> planes;
  std::string tag;  ///< in the header of a YUV4MPEG2 stream; none for what such a stream does not hold
};

// Pixels; those without a tag travel as raw video, yuy2 and rgba only between two conversions.
extern const Format k420, k422, k411, k444, kRgb24, kBgra, kYuy2, kRgba;

/// A picture in one format. What lies in memory is larger, in whole blocks of every sampling of chroma; beyond the
/// picture the nearest samples are repeated, so that the last block is like any other.
class Frame {
 public:
  Frame(const Format& format, KipiSize picture);
  Frame(const Frame&) = delete;

  KipiSize size() const { return padded_; }
  Kip8u* const* planes() const { return planes_; }
  const int* steps() const { return steps_; }

  /// Calls `row` with the first byte and the number of bytes of each row of the picture, in the order of files.
  template <class Row>
  void forRows(const Row& row) const {
    for (size_t p = 0; p < format_.planes.size(); ++p) {
      for (int y = 0; y < rowsOf(format_.planes[p]); ++y) row(planes_[p] + y * steps_[p], bytesOf(format_.planes[p]));
    }
  }

  size_t bytes() const;
  const Format& format() const { return format_; }

  /// Fills what is beyond the picture; `fields` is 2 where rows belong to two fields in turn, else 1.
  void repeatEdges(int fields);

 private:
  int bytesOf(const PlaneShape& plane) const;
  int rowsOf(const PlaneShape& plane) const;

  const Format& format_;
  KipiSize picture_, padded_;
  std::vector<Kip8u> memory_;
  Kip8u* planes_[3] = {};
  int steps_[3] = {};
};
