// Frames: pictures in memory, as files have them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "kipconvert.h"

/// How a frame was scanned: whole, or as two fields, which have the even and the odd rows.
enum class Scan { kProgressive, kInterlaced };

/// Where the samples of a picture lie: rows and planes one after the other, without gaps. Memory may have more rows
/// than the file, see Frame::repeatLastRows.
class Shape {
 public:
  /// Throws std::runtime_error for pictures that are too large. `memoryRows` is the picture's height or more.
  Shape(const KipPicture& picture, int memoryRows);
  explicit Shape(const KipPicture& picture) : Shape(picture, picture.height) {}

  int planes() const { return planes_; }
  size_t offset(int plane) const { return memory_.offset[plane]; }
  size_t step(int plane) const { return memory_.step[plane]; }
  int rows(int plane) const { return plane_[plane].rows; }
  int memoryRows(int plane) const { return plane_[plane].memoryRows; }
  /// Of the picture's rows, as in the file.
  size_t bytes(int plane) const { return step(plane) * rows(plane); }

  size_t fileBytes() const;
  size_t memoryBytes() const { return memory_.bytes; }

 private:
  struct Rows {
    int rows, memoryRows;
  };
  int planes_;
  KipLayout memory_ = {};
  Rows plane_[4] = {};
};

class Frame {
 public:
  explicit Frame(const Shape& shape) : shape_(shape) {}

  const Shape& shape() const { return shape_; }

  /// Makes sure that the first bytes are there, and returns where they begin, which may be elsewhere than before.
  /// Memory grows by doubling, so that a header that promises much costs no more than the pixels which follow it.
  uint8_t* reserve(size_t bytes);
  uint8_t* reserveAll() { return reserve(shape_.memoryBytes()); }

  const uint8_t* plane(int plane) const { return memory_.get() + shape_.offset(plane); }
  KipPlanes planes() const;

  /// Fills the rows beyond the picture with its last row, or the last of each field. Then fields have the same height,
  /// and every group of rows that shares chroma is whole.
  void repeatLastRows();

  Scan scan = Scan::kProgressive;
  std::string timing = "1p";  ///< in YUV4MPEG2: how the fields follow one another in time

 private:
  struct Free {
    void operator()(uint8_t* memory) const { std::free(memory); }
  };
  const Shape& shape_;
  std::unique_ptr<uint8_t, Free> memory_;
  size_t reserved_ = 0;
};
