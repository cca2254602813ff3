// gallery FOLDER [IMAGE]: writes pictures of what the conversions do to IMAGE, a PNG or JPEG file, or else to a drawn
// test scene, and FOLDER/index.html that shows them side by side.

#include <cstdio>
#include <stdexcept>

#include "page.h"

namespace {

constexpr int kWholeBlocks = 4;  // the largest group of pixels that shares chroma
constexpr int kSmallest = 64;    // pictures below cannot be looked at closely

/// Without the last columns and rows that would not fill a chroma block.
Picture wholeBlocks(const Picture& picture) {
  const int width = picture.width / kWholeBlocks * kWholeBlocks, height = picture.height / kWholeBlocks * kWholeBlocks;
  if (width < kSmallest || height < kSmallest) throw std::runtime_error("the picture must be at least 64 x 64 pixels");
  return crop(picture, 0, 0, width, height);
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: gallery FOLDER [IMAGE]\n");
    return 2;
  }
  const Picture photo = wholeBlocks(argc == 3 ? readPicture(argv[2]) : drawScene());
  Page page(argv[1]);
  Family::showAll(page, photo);
  std::printf("%s\n", page.finish().c_str());
} catch (const std::exception& error) {
  std::fprintf(stderr, "gallery: %s\n", error.what());
  return 1;
}
