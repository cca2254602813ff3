#include "support/golden.h"

#include <algorithm>
#include <cstring>

#include "kipcore.h"

namespace kip {
namespace {

/// A hash of numbers, not of bytes in memory, which machines order differently.
class Hash {
 public:
  void add(uint32_t number) {
    value_ = (value_ ^ number) * 1099511628211u;
    value_ ^= value_ >> 32;
  }
  uint64_t value() const { return value_; }

 private:
  uint64_t value_ = 14695981039346656037u;
};

template <class T>
void addSamples(Hash& hash, const std::vector<uint8_t>& bytes) {
  for (size_t at = 0; at < bytes.size(); at += sizeof(T)) {
    T sample;
    std::memcpy(&sample, &bytes[at], sizeof sample);
    hash.add(sample);
  }
}

void addContent(Hash& hash, Sample sample, Content& content) {
  if (sample == Sample::k32f) canonicalizeNan(content);
  for (const PlaneContent& plane : content) {
    switch (bytesOf(sample)) {
      case 1:
        addSamples<uint8_t>(hash, plane.bytes);
        break;
      case 2:
        addSamples<uint16_t>(hash, plane.bytes);
        break;
      default:
        addSamples<uint32_t>(hash, plane.bytes);
    }
  }
}

bool diffusesErrors(const Function& function, const Arguments& settings) {
  return function.shape.reduction && settings.choice != kipDitherNone && settings.choice != kipDitherBayer;
}

/// Every remainder of a row after the vectors of any target; of ordinary values also rows and columns around larger
/// steps of the kernels, and an image that is large enough for worker threads and for most values of 16-bit samples.
/// Errors are diffused in bands of 64 columns, which takes long and does not depend on what remains after vectors.
std::vector<KipiSize> goldenSizes(const Function& function, const GoldenSet& set) {
  std::vector<KipiSize> sizes = awkwardSizes(function);
  const bool diffuses = diffusesErrors(function, set.settings);
  if (diffuses) std::erase_if(sizes, [](KipiSize size) { return size.width > 5 && (size.width + 1) % 32 > 2; });
  if (set.values != Values::kOrdinary) return sizes;
  if (!diffuses) {
    for (const int width : {191, 192, 193, 255, 256, 257, 258, 511, 512, 513}) sizes.push_back({width, 1 + width % 4});
  }
  sizes.push_back({5, 131});
  if (!diffuses) sizes.push_back({1021, 6});
  sizes.push_back(function.shape.reduction ? KipiSize{253, 67} : KipiSize{509, 137});
  for (KipiSize& size : sizes) size = allowed(function, size);
  return sizes;
}

/// Memory for one side of a call, filled with the known byte. Its rows are as long as their steps.
Content spread(const Function& function, Side side, KipiSize size, int gap) {
  const ImageShape& shape = function.image(side);
  Content content;
  for (const Plane& plane : function.planes(side, size)) {
    const int samples = !shape.hasStep || gap == 0 ? 0
                        : shape.stepPerPlane       ? gap + static_cast<int>(content.size())
                                                   : gap;
    const Plane spread = {plane.rowBytes + samples * bytesOf(shape.sample), plane.rows};
    content.push_back({spread, std::vector<uint8_t>(static_cast<size_t>(spread.rowBytes) * spread.rows, kFill)});
  }
  return content;
}

void copyRows(const Content& from, Content& to) {
  for (size_t p = 0; p < from.size(); ++p) {
    for (int y = 0; y < from[p].plane.rows; ++y) {
      uint8_t* row = to[p].bytes.data() + static_cast<size_t>(y) * to[p].plane.rowBytes;
      std::copy_n(from[p].row(y), from[p].plane.rowBytes, row);
    }
  }
}

ImageArgument imageArgument(Content& content) {
  ImageArgument image;
  for (size_t p = 0; p < content.size(); ++p) {
    image.plane[p] = content[p].bytes.data();
    image.step[p] = content[p].plane.rowBytes;
  }
  return image;
}

}  // namespace

std::vector<GoldenSet> goldenSets(const Function& function) {
  std::vector<GoldenSet> sets;
  for (const Arguments& settings : settingsOf(function)) {
    for (const Values values : valuesOf(function)) sets.push_back({settings, values});
  }
  return sets;
}

PlainResult convertInPlainMemory(const Case& that, int gap) {
  const Function& function = that.function;
  const bool inPlace = function.shape.inPlace();
  Content source, destination = spread(function, Side::kDestination, that.size, gap);
  if (!inPlace) source = spread(function, Side::kSource, that.size, gap);
  copyRows(that.source, inPlace ? destination : source);
  Arguments arguments = that.settings;
  arguments.source = imageArgument(source);
  arguments.destination = imageArgument(destination);
  arguments.size = that.size;
  const int margin = gap ? 1 : 0;  // where there are gaps, the inner part of a mosaic
  arguments.region = {margin, margin, that.size.width - 2 * margin, that.size.height - 2 * margin};
  const KipStatus status = function.call(arguments);
  return {status, std::move(destination)};
}

std::vector<uint64_t> goldenHashes(const Function& function, const GoldenSet& set, std::span<const Target> targets) {
  std::vector<Hash> hashes(targets.size());
  // What error diffusion makes follows the number of threads.
  kipSetNumThreads(diffusesErrors(function, set.settings) ? 1 : 3);
  int index = 0;
  for (const KipiSize size : goldenSizes(function, set)) {
    const Case that(function, size, set.settings, set.values);
    const int gap = index++ % 4;
    for (size_t t = 0; t < targets.size(); ++t) {
      targets[t].select();
      PlainResult result = convertInPlainMemory(that, gap);
      hashes[t].add(static_cast<uint32_t>(result.status));
      addContent(hashes[t], function.image(Side::kDestination).sample, result.destination);
    }
  }
  std::vector<uint64_t> values;
  for (const Hash& hash : hashes) values.push_back(hash.value());
  return values;
}

}  // namespace kip
