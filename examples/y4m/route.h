// Which functions of the library lead from one format to another.
#pragma once

#include <memory>
#include <vector>

#include "frame.h"

enum class Scan { kProgressive, kInterlaced };

struct Conversion;

/// The shortest way from one format to another, with the frames in between.
class Route {
 public:
  Route(const Format& from, const Format& to, Scan scan, KipiSize picture);

  /// Colours are computed, rather than chroma samples moved, somewhere on the way.
  bool hasRgb() const;

  Frame& first() { return *frames_.front(); }
  const Frame& last() const { return *frames_.back(); }

  /// Converts what the first frame holds into the last one.
  void run();

 private:
  std::vector<const Conversion*> conversions_;
  std::vector<std::unique_ptr<Frame>> frames_;
};
