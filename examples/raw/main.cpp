// raw linear|ahd IN OUT.png
//
// Develops a camera's raw file.

#include <png.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "develop.h"

namespace {

void writePng(const raw::Picture& picture, const std::string& file) {
  png_image png = {};
  png.version = PNG_IMAGE_VERSION;
  png.width = picture.size.width;
  png.height = picture.size.height;
  png.format = PNG_FORMAT_RGB;
  if (!png_image_write_to_file(&png, file.c_str(), 0, picture.pixels.data(), 0, nullptr)) {
    throw std::runtime_error(file + ": " + png.message);
  }
}

}  // namespace

int main(int argc, char** argv) try {
  const std::string method = argc == 4 ? argv[1] : "";
  if (method != "linear" && method != "ahd") {
    std::fprintf(stderr, "usage: raw linear|ahd IN OUT.png\n");
    return 2;
  }
  writePng(raw::develop(argv[2], method == "ahd" ? raw::Method::kAhd : raw::Method::kLinear), argv[3]);
} catch (const std::exception& error) {
  std::fprintf(stderr, "raw: %s\n", error.what());
  return 1;
}
