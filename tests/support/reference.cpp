#include "support/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace kip {
namespace {

constexpr int kColours = 1 << 24;

int strideOf(int oneOf) {
#ifdef KIP_FEWER_COLOURS
  return std::max(oneOf, 61);
#else
  return oneOf;
#endif
}

template <class T>
double read(const uint8_t* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}
template <class T>
void write(uint8_t* to, double from) {
  const T value = static_cast<T>(from);
  std::memcpy(to, &value, sizeof value);
}

}  // namespace

Samples::Samples(const Function& function, Side side, Content& content) : sample_(function.image(side).sample) {
  const Layout& layout = function.layout(side);
  const std::string& space = side == Side::kSource ? function.parts.source : function.parts.destination;
  const auto begins = [&](const char* with) { return space.rfind(with, 0) == 0; };
  const bool reverse = layout.channels >= 3 && (begins("BGR") || begins("SBGR")), lumaLast = begins("CbYCr");
  const bool pairs = layout.planar && layout.channels == 2, crFirst = begins("YCrCb") && !pairs;
  const int bytes = bytesOf(sample_), count = layout.subsampled() ? 3 : layout.channels;
  packed_ = layout.subsampled() && !layout.planar;
  firstChroma_ = crFirst ? 2 : 1;
  const int width = content[0].plane.rowBytes / 2;
  alone_ = packed_ ? width - width % 2 : std::numeric_limits<int>::max();
  const KipiSize group = groupOf(layout.chroma);
  widthBits_ = group.width / 2, heightBits_ = group.height / 2;  // of 1, 2 and 4
  for (int c = 0; c < count; ++c) {
    const int place = reverse && c < 3 ? 2 - c : crFirst && c > 0 ? 3 - c : c;
    const auto lies = [&](int plane, int byte, int sampleBytes) {
      channels_[c] = {content[plane].bytes.data() + byte, sampleBytes, content[plane].plane.rowBytes,
                      c == 0 ? 0 : widthBits_, c == 0 ? 0 : heightBits_};
    };
    if (packed_) {
      c == 0 ? lies(0, lumaLast, 2) : lies(0, 2 * place - 1 - lumaLast, 4);
    } else if (pairs) {
      c == 0 ? lies(0, 0, 1) : lies(1, place - 1, 2);
    } else {
      layout.planar ? lies(place, 0, bytes) : lies(0, place * bytes, layout.channels * bytes);
    }
  }
}

double Samples::value(int channel, int x, int y) const {
  const uint8_t* from = address(channel, x, y);
  switch (sample_) {
    case Sample::k8s:
      return read<int8_t>(from);
    case Sample::k16u:
      return read<uint16_t>(from);
    case Sample::k16s:
      return read<int16_t>(from);
    case Sample::k32s:
      return read<int32_t>(from);
    case Sample::k32f:
      return read<float>(from);
    default:
      return *from;
  }
}

void Samples::put(int channel, int x, int y, double value) const {
  uint8_t* to = address(channel, x, y);
  if (sample_ == Sample::k32f) return write<float>(to, value);
  const int32_t bits = static_cast<int32_t>(value);
  std::memcpy(to, &bits, bytesOf(sample_));
}

Content untouched(const Function& function, Side side, KipiSize size) {
  Content content;
  for (const Plane& plane : function.planes(side, size)) {
    content.push_back({plane, std::vector<uint8_t>(static_cast<size_t>(plane.rowBytes) * plane.rows, kFill)});
  }
  return content;
}

void expectEqual(const Content& result, const Content& expected, const std::string& what) {
  ASSERT_EQ(result.size(), expected.size()) << what;
  for (size_t p = 0; p < result.size(); ++p) {
    const std::vector<uint8_t>&is = result[p].bytes, &should = expected[p].bytes;
    ASSERT_EQ(is.size(), should.size()) << what;
    if (is == should) continue;
    const auto at = std::mismatch(is.begin(), is.end(), should.begin());
    const auto byte = at.first - is.begin();
    const int rowBytes = result[p].plane.rowBytes;
    FAIL() << what << ": plane " << p << " row " << byte / rowBytes << " byte " << byte % rowBytes << " is "
           << int{*at.first} << " instead of " << int{*at.second};
  }
}

void expectExact(const Function& function, KipiSize size, Content source, const Plain& plain) {
  Content expected = untouched(function, Side::kDestination, size);
  const Task task = {function, size, function.contract.converted(size), Samples(function, Side::kSource, source),
                     Samples(function, Side::kDestination, expected)};
  plain(task);
  const Alpha alpha = function.contract.alpha;
  if (alpha == Alpha::kZero || alpha == Alpha::kCopied) {
    for (int y = 0; y < task.whole.height; ++y) {
      for (int x = 0; x < task.whole.width; ++x) {
        task.to.at(3, x, y) = alpha == Alpha::kCopied ? task.from.at(3, x, y) : 0;
      }
    }
  }
  Arguments arguments;
  arguments.alpha = kFill;
  expectEqual(convert(function, size, source, arguments), expected, Case(function, size, arguments, {}).text());
}

void expectExactForAllSizes(const Function& function, const Plain& plain) {
  std::vector<KipiSize> sizes = {{1031, 67}, {513, 2}, {1, 999}};
  for (int width = 1; width <= 70; ++width) sizes.push_back({width, 1 + width % 6});
  for (KipiSize size : sizes) {
    size = allowed(function, size);
    expectExact(function, size, Case(function, size, {}).source, plain);
    if (testing::Test::HasFailure()) return;
  }
}

void expectExactForAllColours(const Function& function, int groups, const Plain& plain) {
  forAllColours(function, groups, [&](KipiSize size, const Content& source) {
    if (!testing::Test::HasFailure()) expectExact(function, size, source, plain);
  });
}

void forAllColours(const Function& function, int groups, const std::function<void(KipiSize, const Content&)>& with,
                   int oneOf) {
  constexpr int kPixels = 1 << 16;
  const auto [width, height] = groupOf(function.source.chroma);
  const int area = width * height;
  const KipiSize size = {groups * width, std::max(2, kPixels / area / groups) * height};
  Content source = untouched(function, Side::kSource, size);
  const Samples made(function, Side::kSource, source), samples = made;  // see eachPixel
  for (int colour = 0; colour < kColours;) {
    for (int y = 0; y < size.height; y += height) {
      for (int x = 0; x < size.width; x += width, colour += area * strideOf(oneOf)) {
        // The channel that is not shared counts fastest, so that all values of it meet all others.
        for (int p = 0; p < area; ++p) samples.at(0, x + p % width, y + p / width) = (colour + p) & 255;
        samples.at(1, x, y) = colour >> 8 & 255;
        samples.at(2, x, y) = colour >> 16 & 255;
      }
    }
    with(size, source);
  }
}

void forAllColours(int width, const std::function<void(const PixelImage&)>& with, int oneOf) {
  constexpr int kPixels = 1 << 16;
  PixelImage image = {{width, std::max(2, kPixels / width)}, {}};
  image.pixels.resize(static_cast<size_t>(width) * image.size.height);
  for (int colour = 0; colour < kColours;) {
    for (Pixel& pixel : image.pixels) {
      pixel = {colour >> 16 & 255, colour >> 8 & 255, colour & 255};
      colour += strideOf(oneOf);
    }
    with(image);
  }
}

}  // namespace kip
