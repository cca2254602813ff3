// Memory that is hostile to kernels: images that end, or begin, right at unmapped pages, row by row if wanted, with
// known bytes in every gap; and a call that reports a touched unmapped page instead of dying of it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/images.h"

namespace kip {

enum class Placement {
  kPadded,      ///< gaps between the rows, filled with known bytes
  kOddPadded,   ///< likewise, at an odd address
  kTightEnd,    ///< no gaps; unmapped memory behind the last row
  kTightStart,  ///< no gaps; unmapped memory in front of the first row
  kRowEnds,     ///< unmapped memory behind every row
  kRowStarts,   ///< unmapped memory in front of every row
  kBottomUp,    ///< as kRowEnds, with a negative step
  kFarApart,    ///< rows more than a gigabyte apart; for 64 bits only
};

const char* nameOf(Placement placement);

/// One plane laid out in such memory.
class PlaneMemory {
 public:
  /// `slot` tells the planes of one call apart. `gap` is the bytes between padded rows, and moves their first one.
  PlaneMemory(Placement placement, int slot, Plane plane, int gap);

  Plane plane;
  uint8_t* first;
  int step;

  uint8_t* row(int y) const { return first + static_cast<ptrdiff_t>(y) * step; }

  /// Fills rows and gaps with one byte.
  void clear(uint8_t fill) const;
  void put(const PlaneContent& content) const;
  Content::value_type get() const;

  /// Where memory is not `expected` in the rows or not `fill` in the gaps.
  std::string difference(const PlaneContent& expected, uint8_t fill) const;

 private:
  struct Extent {
    uint8_t* begin;
    size_t size;
  };
  std::vector<Extent> extents_;  ///< all the mapped memory around the rows
};

/// Whether a plane of this size fits in memory of this kind.
bool fits(Placement placement, Plane plane);

/// Runs the function; where it touched unmapped memory, the address.
std::optional<const uint8_t*> faultOf(const std::function<void()>& function);

}  // namespace kip
