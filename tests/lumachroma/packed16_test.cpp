// Packed 16-bit RGB against plain integer arithmetic, one pixel at a time.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/reference.h"

namespace kip {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// The words

/// How many bits the fields of a word have, and whether red is the lowest one.
struct Packing {
  explicit Packing(const NameParts& name) {
    const std::string& space = name.has("16u8u") ? name.source : name.destination;
    bits[1] = space.find("444") != std::string::npos ? 4 : space.find("565") != std::string::npos ? 6 : 5;
    bits[0] = bits[2] = std::min(bits[1], 5);
    redLow = space.rfind("RGB", 0) == 0;
  }

  /// Where a channel's field begins.
  int at(int channel) const {
    if (channel == 1) return bits[0];
    return (channel == 0) == redLow ? 0 : bits[0] + bits[1];
  }
  int level(int word, int channel) const { return word >> at(channel) & ((1 << bits[channel]) - 1); }
  int word(const Pixel& levels) const {
    int word = 0;
    for (int c = 0; c < 3; ++c) word |= levels[c] << at(c);
    return word;
  }

  int bits[3];  // of R, G, B
  bool redLow;
};

constexpr int kBayersOrder[16] = {0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5};

/// A level, or the next one where the rest is above the threshold of the pixel's place. The sixteen thresholds divide
/// what lies between two levels in steps of 17/256; those of 6 bits are half of those of 5.
int dithered(int value, int bits, int x, int y) {
  const int last = (1 << bits) - 1, level = last * value >> 8, rest = 256 * value - 65280 / last * level;
  const int threshold = kBayersOrder[4 * (y % 4) + x % 4] * 255 * 17 / (bits == 4 ? 15 : 31);
  return level + (rest > (bits == 6 ? threshold >> 1 : threshold));
}

// ---------------------------------------------------------------------------------------------------------------------
// The colours

Pixel floored(const Pixel& c) {
  const int y = 76284 * (c[0] - 16), b = c[1] - 128, r = c[2] - 128;
  return {clampByte((y + 104595 * r) >> 16), clampByte((y - 25690 * b - 53281 * r) >> 16),
          clampByte((y + 132186 * b) >> 16)};
}

Pixel flooredEachProduct(const Pixel& c) {
  const int t = (c[0] - 16) * 1220480 >> 16, b = c[1] - 128, r = c[2] - 128;
  return {clampByte((t + (r * 1673472 >> 16)) >> 4), clampByte((t - (b * 411008 >> 16) - (r * 852480 >> 16)) >> 4),
          clampByte((t + (b * 2114944 >> 16)) >> 4)};
}

Pixel fromYuv(const Pixel& c) {
  const int y = 2 * c[0], u = 16 * c[1] - 2048, v = 16 * c[2] - 2048;
  return {clampByte((y + (v * 9338 >> 16)) >> 1), clampByte((y + (u * -3227 >> 16) + (v * -4759 >> 16)) >> 1),
          clampByte((y + (u * 16645 >> 16)) >> 1)};
}

/// Words from luma and chroma.
Plain words(const Function& function) {
  const bool dither = function.parts.has("Dither");
  const auto colour = function.parts.has("YUV") ? fromYuv : dither ? flooredEachProduct : floored;
  const Packing packing(function.parts);
  return [=](const Task& task) {
    for (int y = 0; y < task.whole.height; ++y) {
      for (int x = 0; x < task.whole.width; ++x) {
        Pixel c = colour(task.from.get(x, y));
        for (int i = 0; i < 3; ++i) {
          c[i] = dither ? dithered(c[i], packing.bits[i], x, y) : c[i] >> (8 - packing.bits[i]);
        }
        task.to.put(0, x, y, packing.word(c));
      }
    }
  };
}

TEST(Packed16, WordsAreExact) {
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.destination.packed16 || !function.parts.has("kipiY")) continue;
    ++functions;
    expectExactForAllSizes(function, words(function));
  }
  EXPECT_EQ(functions, 74);
  for (const char* name :
       {"kipiYCbCrToRGB565_8u16u_C3R", "kipiYCbCrToBGR565Dither_8u16u_C3R", "kipiYCbCrToRGB444Dither_8u16u_C3R"}) {
    // An odd width, so that colours meet all thresholds.
    expectExactForAllColours(*find(name), 4095, words(*find(name)));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Words as a source

/// The 8-bit function that does the same from bytes.
const Function& twinOf(const Function& function) {
  std::string name = function.name;
  if (function.parts.has("ToYUV")) name.replace(4, 3, "RGB");  // there is none from BGR without alpha
  name.erase(7, 3).replace(name.find("16u8u"), 5, "8u");
  return *find(name);
}

TEST(Packed16, WordsAreReadAsBytesWithTheFieldsOnTop) {
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.source.packed16 || !function.destination.subsampled()) continue;
    ++functions;
    const Function& twin = twinOf(function);
    const Packing packing(function.parts);
    for (int width = 2; width <= 70; ++width) {
      const int height = width < 70 ? 2 + width % 5 : 1000;  // in the end enough pixels for all words
      const KipiSize size = function.contract.converted(allowed(function, {width, height}));
      Content words = Case(function, size, {}).source, bytes = untouched(twin, Side::kSource, size);
      const Samples from(function, Side::kSource, words), pixels(twin, Side::kSource, bytes);
      for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
          const int word = static_cast<int>(from.value(0, x, y));
          for (int c = 0; c < 3; ++c) pixels.at(c, x, y) = packing.level(word, c) << (8 - packing.bits[c]);
        }
      }
      expectEqual(convert(function, size, words), convert(twin, size, bytes), function.name);
      if (HasFailure()) return;
    }
  }
  EXPECT_EQ(functions, 14);
}

TEST(Packed16, RepackingKeepsWordsAndUpperBits) {
  const KipiSize size = {256, 256};
  for (const auto& [from, to] : {std::pair{"kipiRGB565ToRGB_16u8u_C3R", "kipiRGBToRGB565_8u16u_C3R"},
                                 {"kipiBGR565ToBGR_16u8u_C3R", "kipiBGRToBGR565_8u16u_C3R"}}) {
    const Function &unpack = *find(from), &pack = *find(to);
    Content words = untouched(unpack, Side::kSource, size);
    for (int i = 0; i < 65536; ++i) Samples(unpack, Side::kSource, words).put(0, i % 256, i / 256, i);
    Content bytes = convert(unpack, size, words);
    for (int i = 0; i < 65536; ++i) {
      // The first byte has the lowest field, in either order.
      const uint8_t* pixel = &bytes[0].bytes[3 * i];
      ASSERT_EQ(pixel[0], (i & 31) << 3) << from;
      ASSERT_EQ(pixel[1], (i >> 5 & 63) << 2) << from;
      ASSERT_EQ(pixel[2], (i >> 11) << 3) << from;
    }
    // What is below the fields does not matter.
    for (size_t i = 0; i < bytes[0].bytes.size(); ++i) bytes[0].bytes[i] |= i % 3 == 1 ? 3 : 7;
    expectEqual(convert(pack, size, bytes), words, to);
  }
}

}  // namespace
}  // namespace kip
