// What the documentation promises about a function, derived from its name alone: which bytes of which planes a region
// covers, what is checked in which order, what is reported. Nothing here looks at the library's code.
#pragma once

#include <string>
#include <vector>

#include "registry/call.h"

namespace kip {

enum class Chroma { kFull, k422, k420, k411, k1620 };

/// The columns and rows that a sample serves.
constexpr KipiSize groupOf(Chroma chroma) {
  constexpr KipiSize kGroups[] = {{1, 1}, {2, 1}, {2, 2}, {4, 1}, {4, 4}};
  return kGroups[static_cast<int>(chroma)];
}

/// The parts of a name: kipi <source> To <destination> <variant> _ <types> _ <layouts>.
struct NameParts {
  explicit NameParts(const std::string& name);

  bool has(const char* word) const { return whole.find(word) != std::string::npos; }
  bool is(const char* name) const { return whole == name; }

  std::string whole, source, destination;
  std::string sourceLayout, destinationLayout;  ///< such as C3, AC4, P3, C2
};

/// How one side of a function lies in memory.
struct Layout {
  Layout(const std::string& space, const std::string& descriptor);

  bool planar;
  int channels;  ///< samples per pixel, or planes
  Chroma chroma;
  bool packed16;  ///< RGB in one 16-bit sample per pixel
  bool alpha;     ///< the last channel is alpha

  bool subsampled() const { return chroma != Chroma::kFull; }
};

enum class Check { kImages, kPlanes, kSize, kSteps, kRange, kNoise, kLevels, kMethod, kGrid };

/// What becomes of a destination's fourth channel.
enum class Alpha { kNone, kChannel, kUntouched, kGiven, kZero, kCopied };

struct Contract {
  Contract(const NameParts& name, const Layout& source, const Layout& destination, const Shape& shape);

  std::vector<Check> order;
  int minWidth = 1, minHeight = 1;
  int multiple = 1;                     ///< sizes that are no multiples of this are bad
  int blockWidth = 1, blockHeight = 1;  ///< only whole blocks of a region are converted
  int warnWidth = 1, warnHeight = 1;    ///< sizes that are no multiples of these get a warning
  bool everyDestinationPlaneChecked;
  bool destinationChecked;
  bool diffusesErrors;  ///< with some methods the result depends on the number of threads
  Alpha alpha;

  void setLeast(KipiSize size) { minWidth = size.width, minHeight = size.height; }
  void setBlock(KipiSize size) { blockWidth = size.width, blockHeight = size.height, setWarned(size); }
  void setWarned(KipiSize size) { warnWidth = size.width, warnHeight = size.height; }

  bool checks(Check check) const;
  KipiSize converted(KipiSize region) const {
    return {region.width - region.width % blockWidth, region.height - region.height % blockHeight};
  }
  KipStatus success(KipiSize region) const {
    return region.width % warnWidth || region.height % warnHeight ? kipStatusOddSize : kipStatusOk;
  }
};

}  // namespace kip
