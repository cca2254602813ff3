// What the documentation promises about a function, derived from its name alone: which bytes of which planes a region
// covers, what is checked in which order, what is reported. Nothing here looks at the library's code.
#pragma once

#include <string>
#include <vector>

#include "support/call.h"

namespace kip {

enum class Chroma { kFull, k422, k420, k411, k1620 };

/// The parts of a name: kipi <source> To <destination> <variant> _ <types> _ <layouts>.
struct NameParts {
  explicit NameParts(const std::string& name);

  std::string whole, source, destination, variant;
  std::string sourceLayout, destinationLayout;  ///< such as C3, AC4, P3, C2

  bool has(const char* word) const { return whole.find(word) != std::string::npos; }
};

/// How one side of a function lies in memory.
struct Layout {
  Layout(const std::string& space, const std::string& descriptor);

  bool planar;
  int channels;  ///< samples per pixel, or planes
  Chroma chroma;
  bool word;       ///< 16-bit packed RGB: one sample per pixel
  bool packed422;  ///< two bytes per pixel
  bool alpha;      ///< the last channel is alpha
};

enum class Check { kImages, kPlanes, kSize, kSteps, kRange, kNoise, kLevels, kMethod, kGrid };

/// What becomes of a destination's fourth channel.
enum class Alpha { kNone, kChannel, kUntouched, kGiven, kZero, kCopied };

struct Contract {
  Contract(const NameParts& name, const Layout& source, const Layout& destination, const Shape& shape);

  std::vector<Check> order = {Check::kImages, Check::kSize, Check::kPlanes};
  int minWidth = 1, minHeight = 1;
  int multiple = 1;                     ///< sizes that are no multiple of this are bad
  bool emptyIsOk = false;               ///< an empty region is nothing to do, and no error
  int blockWidth = 1, blockHeight = 1;  ///< only whole blocks of a region are converted
  int warnWidth = 1, warnHeight = 1;    ///< other sizes than multiples of these get a warning
  bool everyDestinationPlaneChecked = true;
  bool destinationChecked = true;
  bool threadsMatter = false;  ///< error diffusion over several channels
  Alpha alpha = Alpha::kNone;

  KipiSize converted(KipiSize region) const {
    return {region.width - region.width % blockWidth, region.height - region.height % blockHeight};
  }
  KipStatus success(KipiSize region) const {
    return region.width % warnWidth || region.height % warnHeight ? kipStatusOddSize : kipStatusOk;
  }

 private:
  void setBlocks(const NameParts& name, Chroma source, Chroma destination, bool packed422, bool words);
  void setMinimum(const NameParts& name, Chroma source, Chroma destination, bool words);
  void setOrder(const NameParts& name, const Layout& source, const Layout& destination);
  void setAlpha(const NameParts& name, const Layout& destination, const Shape& shape);
};

}  // namespace kip
