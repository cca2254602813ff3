#include "picture.h"

#include <png.h>
#include <turbojpeg.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <stdexcept>

namespace {

using Bytes = std::vector<Kip8u>;

Bytes readFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot open " + file.string());
  return Bytes(std::istreambuf_iterator<char>(in), {});
}

Picture decodePng(const Bytes& bytes) {
  png_image png = {};
  png.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&png, bytes.data(), bytes.size())) throw std::runtime_error(png.message);
  png.format = PNG_FORMAT_RGB;
  Picture picture(png.width, png.height);
  const png_color white = {255, 255, 255};  // behind transparent pixels
  if (!png_image_finish_read(&png, &white, picture.data(), picture.step(), nullptr)) {
    throw std::runtime_error(png.message);
  }
  return picture;
}

Picture decodeJpeg(const Bytes& bytes) {
  const std::unique_ptr<void, int (*)(tjhandle)> jpeg(tjInitDecompress(), tjDestroy);
  const auto check = [&](int result) {
    // Warnings too: of a file that is cut short, the decoder gives a picture.
    if (result != 0) throw std::runtime_error(tjGetErrorStr2(jpeg.get()));
  };
  int width, height, subsampling, space;
  check(tjDecompressHeader3(jpeg.get(), bytes.data(), bytes.size(), &width, &height, &subsampling, &space));
  Picture picture(width, height);
  check(tjDecompress2(jpeg.get(), bytes.data(), bytes.size(), picture.data(), width, picture.step(), height, TJPF_RGB,
                      TJFLAG_ACCURATEDCT));
  return picture;
}

}  // namespace

Planes::Planes(KipiSize first, KipiSize others)
    : plane{Picture(first.width, first.height, 1), Picture(others.width, others.height, 1),
            Picture(others.width, others.height, 1)} {
  for (int p = 0; p < 3; ++p) {
    from[p] = to[p] = plane[p].data();
    steps[p] = plane[p].step();
  }
}

Picture readPicture(const std::filesystem::path& file) {
  const Bytes bytes = readFile(file);
  const auto startsWith = [&](const Bytes& magic) {
    return bytes.size() > magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin());
  };
  try {
    if (startsWith({0x89, 'P', 'N', 'G'})) return decodePng(bytes);
    if (startsWith({0xFF, 0xD8})) return decodeJpeg(bytes);
    throw std::runtime_error("neither PNG nor JPEG");
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(file.string() + ": " + error.what());
  }
}

void writePng(const Picture& picture, const std::filesystem::path& file) {
  png_image png = {};
  png.version = PNG_IMAGE_VERSION;
  png.width = picture.width;
  png.height = picture.height;
  png.format = picture.channels == 3 ? PNG_FORMAT_RGB : PNG_FORMAT_GRAY;
  if (!png_image_write_to_file(&png, file.c_str(), 0, picture.data(), picture.step(), nullptr)) {
    throw std::runtime_error(file.string() + ": " + png.message);
  }
}

Picture crop(const Picture& picture, int x, int y, int width, int height) {
  Picture part(width, height, picture.channels);
  for (int row = 0; row < height; ++row) std::copy_n(picture.at(x, y + row), part.step(), part.at(0, row));
  return part;
}

void split(const Picture& picture, Picture (&channels)[3]) {
  for (Picture& channel : channels) channel = Picture(picture.width, picture.height, 1);
  for (size_t i = 0; i < picture.samples.size(); ++i) channels[i % 3].samples[i / 3] = picture.samples[i];
}

Picture enlarge(const Picture& picture, int horizontally, int vertically) {
  Picture large(picture.width * horizontally, picture.height * vertically, picture.channels);
  for (int y = 0; y < large.height; ++y) {
    for (int x = 0; x < large.width; ++x) {
      std::copy_n(picture.at(x / horizontally, y / vertically), picture.channels, large.at(x, y));
    }
  }
  return large;
}

Picture difference(const Picture& a, const Picture& b, int gain) {
  Picture d(a.width, a.height, a.channels);
  std::transform(a.samples.begin(), a.samples.end(), b.samples.begin(), d.samples.begin(),
                 [&](int x, int y) { return static_cast<Kip8u>(std::clamp(128 + gain * (y - x), 0, 255)); });
  return d;
}

double psnr(const Picture& a, const Picture& b) {
  double squares = 0;
  for (size_t i = 0; i < a.samples.size(); ++i) {
    const double d = double(a.samples[i]) - b.samples[i];
    squares += d * d;
  }
  if (squares == 0) return std::numeric_limits<double>::infinity();
  return 10 * std::log10(255. * 255. * a.samples.size() / squares);
}

Corner worstSquare(const Picture& a, const Picture& b, int side) { return worstSquare({{a, b}}, side); }

Corner worstSquare(std::initializer_list<Pair> pairs, int side) {
  const KipiSize size = pairs.begin()->a.size();
  Corner worst = {0, 0};
  double lowest = std::numeric_limits<double>::infinity();
  for (int y = 0; y + side <= size.height; y += side / 2) {
    for (int x = 0; x + side <= size.width; x += side / 2) {
      double quality = 0;
      for (const auto& [a, b] : pairs) {
        quality = std::max(quality, psnr(crop(a, x, y, side, side), crop(b, x, y, side, side)));
      }
      if (quality < lowest) lowest = quality, worst = {x, y};
    }
  }
  return worst;
}
