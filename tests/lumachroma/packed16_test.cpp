// Packed 16-bit RGB against plain integer arithmetic, one pixel at a time.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/reference.h"
#include "support/samples.h"

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

/// The words of an image.
class Words {
 public:
  explicit Words(Content& content) : plane_(content[0]) {}

  int get(int x, int y) const {
    uint16_t word;
    std::memcpy(&word, at(x, y), sizeof word);
    return word;
  }
  void set(int x, int y, int value) const {
    const auto word = static_cast<uint16_t>(value);
    std::memcpy(at(x, y), &word, sizeof word);
  }

 private:
  uint8_t* at(int x, int y) const {
    return plane_.bytes.data() + static_cast<size_t>(y) * plane_.plane.rowBytes + 2 * x;
  }

  PlaneContent& plane_;
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

/// The luma and chroma that a pixel is made from.
Pixel sampleAt(const Samples& from, int x, int y, int width) {
  const bool lone = from.packed() && width % 2 == 1 && x == width - 1;
  if (lone && width == 1) return {from.luma(x, y), from.cb(x, y), from.cb(x, y)};
  const int at = lone ? x - 1 : x;
  return {from.luma(x, y), from.cb(at, y), from.cr(at, y)};
}

int wordAt(const NameParts& name, const Pixel& sample, int x, int y) {
  const bool dither = name.has("Dither");
  const Pixel colour = name.has("YUV") ? fromYuv(sample) : dither ? flooredEachProduct(sample) : floored(sample);
  const Packing packing(name);
  Pixel levels;
  for (int c = 0; c < 3; ++c) {
    levels[c] = dither ? dithered(colour[c], packing.bits[c], x, y) : colour[c] >> (8 - packing.bits[c]);
  }
  return packing.word(levels);
}

std::vector<const Function*> functionsToWords() {
  std::vector<const Function*> all;
  for (const Function& function : registry()) {
    if (function.destination.packed16 && function.parts.has("kipiY")) all.push_back(&function);
  }
  return all;
}

void compare(const Function& function, KipiSize size, Content source) {
  Content expected = untouched(function, Side::kDestination, size);
  const Samples from(function, Side::kSource, source);
  const KipiSize whole = function.contract.converted(size);
  for (int y = 0; y < whole.height; ++y) {
    for (int x = 0; x < whole.width; ++x) {
      Words(expected).set(x, y, wordAt(function.parts, sampleAt(from, x, y, size.width), x, y));
    }
  }
  expectEqual(convert(function, size, source), expected, function.name);
}

TEST(Packed16, EveryFunctionInEverySizeAndPhase) {
  const std::vector<const Function*> functions = functionsToWords();
  ASSERT_EQ(functions.size(), 74u);
  for (const Function* function : functions) {
    std::vector<KipiSize> sizes = {{300, 7}};
    for (int width = 1; width <= 70; ++width) sizes.push_back({width, 1 + width % 6});
    for (const KipiSize& size : sizes) {
      compare(*function, size, randomContent(function->planes(Side::kSource, size), Sample::k8u, size.width));
      if (HasFailure()) return;
    }
  }
}

TEST(Packed16, ExactForAllColours) {
  for (const char* name :
       {"kipiYCbCrToRGB565_8u16u_C3R", "kipiYCbCrToBGR565Dither_8u16u_C3R", "kipiYCbCrToRGB444Dither_8u16u_C3R"}) {
    const Function& function = *find(name);
    forAllColours(4095, [&](const PixelImage& colours) {  // an odd width, so that colours meet all thresholds
      Content source = untouched(function, Side::kSource, colours.size);
      const Pixels8 pixels(function, Side::kSource, source);
      for (int y = 0; y < colours.size.height; ++y) {
        for (int x = 0; x < colours.size.width; ++x) pixels.set(x, y, colours.at(x, y));
      }
      compare(function, colours.size, source);
    });
    if (HasFailure()) return;
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Flat fields

/// What a function of full resolution or 4:2:0 makes of a field of one colour.
Content flatField(const Function& function, KipiSize size, const Pixel& colour) {
  Content source = untouched(function, Side::kSource, size);
  const Samples samples(function, Side::kSource, source);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      samples.luma(x, y) = static_cast<uint8_t>(colour[0]);
      samples.cb(x, y) = static_cast<uint8_t>(colour[1]);
      samples.cr(x, y) = static_cast<uint8_t>(colour[2]);
    }
  }
  return convert(function, size, source);
}

TEST(Packed16, WhiteIsWhite) {
  const Pixel white = {235, 128, 128};
  for (const auto& [name, word] : {std::pair{"kipiYCbCrToRGB565_8u16u_C3R", 0xFFFF},
                                   {"kipiYCbCrToBGR555_8u16u_P3C3R", 0x7FFF},
                                   {"kipiYCbCr420ToRGB444_8u16u_P3C3R", 0x0FFF}}) {
    Content result = flatField(*find(name), {2, 2}, white);
    EXPECT_EQ(Words(result).get(1, 1), word) << name;
  }
  // Which is 254: dithered, it is one level lower where the thresholds are highest.
  Content result = flatField(*find("kipiYCbCrToRGB565Dither_8u16u_C3R"), {4, 4}, white);
  const int words[16] = {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFDF, 0xFFFF, 0xF7DE, 0xFFFF,
                         0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xF7DE, 0xFFFF, 0xFFDF, 0xFFFF};
  for (int i = 0; i < 16; ++i) EXPECT_EQ(Words(result).get(i % 4, i / 4), words[i]) << "place " << i;
}

/// Between two levels, pixels of a 4 x 4 square are raised one by one in Bayer's order, as grey grows; the same in
/// every square, from the region's first pixel on, and as many as the grey asks for.
TEST(Packed16, DitherPatternsGrowInBayersOrder) {
  for (const char* name : {"kipiYUV420ToRGB565Dither_8u16u_P3C3R", "kipiYUV420ToBGR555Dither_8u16u_P3C3R",
                           "kipiYUV420ToRGB444Dither_8u16u_P3C3R"}) {
    const Function& function = *find(name);
    const Packing packing(function.parts);
    for (int grey = 0; grey < 256; ++grey) {
      Content result = flatField(function, {12, 8}, {grey, 128, 128});
      const Words words(result);
      for (int c = 0; c < 3; ++c) {
        const auto level = [&](int x, int y) { return packing.level(words.get(x, y), c); };
        int lowest = 255, raised = 0;
        for (int i = 0; i < 16; ++i) lowest = std::min(lowest, level(i % 4, i / 4));
        for (int i = 0; i < 16; ++i) raised += level(i % 4, i / 4) - lowest;
        // In sixteenths of a level; a level is at most one above the floor of grey x last / 256, which costs light
        // greys up to a quarter of one.
        const double ideal = grey * 16 * ((1 << packing.bits[c]) - 1) / 255.0;
        EXPECT_NEAR(16 * lowest + raised, ideal, 4.2) << name << ", grey " << grey;
        for (int i = 0; i < 12 * 8; ++i) {
          const int x = i % 12, y = i / 12, wanted = lowest + (kBayersOrder[4 * (y % 4) + x % 4] < raised);
          ASSERT_EQ(level(x, y), wanted) << name << ", grey " << grey << " at " << x << ", " << y;
        }
      }
    }
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

/// A word's fields at the top of a byte each.
Pixel bytesOf(const Packing& packing, int word) {
  Pixel pixel;
  for (int c = 0; c < 3; ++c) pixel[c] = packing.level(word, c) << (8 - packing.bits[c]);
  return pixel;
}

TEST(Packed16, WordsAreReadAsBytes) {
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.source.packed16 || !function.destination.subsampled()) continue;
    ++functions;
    const Function& twin = twinOf(function);
    const Packing packing(function.parts);
    std::vector<KipiSize> sizes = {{256, 258}};
    for (int width = 2; width <= 70; ++width) sizes.push_back({width, 2 + width % 5});
    for (KipiSize size : sizes) {
      size = function.contract.converted(allowed(function, size));
      Content words = randomContent(function.planes(Side::kSource, size), Sample::k16u, size.width);
      Content bytes = untouched(twin, Side::kSource, size);
      const Pixels8 pixels(twin, Side::kSource, bytes);
      for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) pixels.set(x, y, bytesOf(packing, Words(words).get(x, y)));
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
    for (int i = 0; i < 65536; ++i) Words(words).set(i % 256, i / 256, i);
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
