// RGB and YUV against plain integer arithmetic, one pixel at a time.
#include <gtest/gtest.h>

#include <set>

#include "support/reference.h"

namespace kip {
namespace {

/// The upper half of a 32-bit product.
int hi(int64_t a, int b) { return static_cast<int>((a * b) >> 16); }

struct Weights {
  int r, g, b;
};

int hiSum(const Pixel& c, int scale, const Weights& w) {
  return hi(scale * c[0], w.r) + hi(scale * c[1], w.g) + hi(scale * c[2], w.b);
}

int chroma(const Pixel& c, const Weights& w) { return clampByte((hiSum(c, 128, w) >> 6) + 128); }

// ---------------------------------------------------------------------------------------------------------------------
// RGB to YUV at full resolution: for each function one arithmetic for whole runs and one for the rest of a row

Pixel forwardRun(const Pixel& c) {
  return {hiSum(c, 256, {19595, 38469, 7471}) >> 8, chroma(c, {-4816, -9469, 14286}),
          chroma(c, {20152, -16875, -3276})};
}

Pixel forwardRunAlpha(const Pixel& c) {
  return {hiSum(c, 128, {9798, 19235, 3736}) >> 6, chroma(c, {-4817, -9470, 14287}), chroma(c, {20152, -16876, -3277})};
}

Pixel forwardRest(const Pixel& c) {
  const int y2 = ((2 * c[0] * 9798 + 2 * c[1] * 19235) >> 15) + ((2 * c[2] * 3736) >> 15);
  return {clampByte(y2 >> 1), clampByte(hi(2 * c[2] - y2, 16121) + 128), clampByte(hi(2 * c[0] - y2, 28737) + 128)};
}

Pixel differenceRun(const Pixel& c) {
  const int y = forwardRunAlpha(c)[0];
  return {y, clampByte(((c[2] - y) * 16121 >> 15) + 128), clampByte(((c[0] - y) * 28737 >> 15) + 128)};
}

Pixel differenceRest(const Pixel& c) {
  const int s = 19595 * c[0] + 38470 * c[1] + 7471 * c[2];
  const int u = ((((c[2] << 16) - s + 32767) >> 16) * 32244 >> 16) + 128;
  const int v = ((((c[0] << 16) - s + 32767) >> 16) * 57475 >> 16) + 128;
  return {s >> 16, u & 255, clampByte(v)};
}

// ---------------------------------------------------------------------------------------------------------------------
// YUV to RGB

struct Factors {
  int vToR, uToG, vToG, uToB;
};
constexpr Factors kFactors1 = {9339, -3228, -4760, 16646}, kFactors2 = {9338, -3227, -4759, 16645};

Pixel inverse1(const Pixel& c) {
  const int u = (c[1] - 128) * 8, v = (c[2] - 128) * 8;
  return {clampByte(c[0] + hi(v, kFactors1.vToR)), clampByte(c[0] + hi(u, kFactors1.uToG) + hi(v, kFactors1.vToG)),
          clampByte(c[0] + hi(u, kFactors1.uToB))};
}

Pixel inverseDoubled(const Pixel& c, const Factors& k) {
  const int y = 2 * c[0], u = (c[1] - 128) * 16, v = (c[2] - 128) * 16;
  return {clampByte((y + hi(v, k.vToR)) >> 1), clampByte((y + hi(u, k.uToG) + hi(v, k.vToG)) >> 1),
          clampByte((y + hi(u, k.uToB)) >> 1)};
}
Pixel inverse2(const Pixel& c) { return inverseDoubled(c, kFactors2); }
Pixel inverseToBgr(const Pixel& c) { return inverseDoubled(c, kFactors1); }

Pixel inverse3(const Pixel& c) {
  const int u = c[1] - 128, v = c[2] - 128;
  return {clampByte(c[0] + (v * 18677 >> 14)), clampByte(c[0] - (u * 6455 >> 14) - (v * 9519 >> 14)),
          clampByte(c[0] + (u * 16646 >> 13))};
}

Pixel inverse4(const Pixel& c) {
  const int y = 2 * c[0], u = (c[1] - 128) * 16, v = (c[2] - 128) * 16;
  return {clampByte((y + hi(v, 9338)) >> 1), clampByte((y - hi(u, 3227) - hi(v, 4759)) >> 1),
          clampByte((y + hi(u, 16646)) >> 1)};
}

Pixel inverse4Rest(const Pixel& c) {
  const int y = (c[0] << 16) + 32768, u = c[1] - 128, v = c[2] - 128;
  return {clampByte((y + 74711 * v) >> 16), clampByte((y - 25821 * u - 38076 * v) >> 16),
          clampByte((y + 133169 * u) >> 16)};
}

// ---------------------------------------------------------------------------------------------------------------------
// Functions of one pixel

using Arithmetic = Pixel (*)(const Pixel&);

/// What a function does to the pixels of the whole runs that a row begins with, and to the rest.
struct PixelFunction {
  const char* name;
  int run;
  Arithmetic inRun, inRest;

  Pixel operator()(const Pixel& pixel, int x, int width) const {
    return x < width - width % run ? inRun(pixel) : inRest(pixel);
  }
};

constexpr PixelFunction kPixelFunctions[] = {
    {"kipiRGBToYUV_8u_C3R", 16, forwardRun, forwardRest},
    {"kipiRGBToYUV_8u_AC4R", 16, forwardRunAlpha, forwardRest},
    {"kipiRGBToYUV_8u_C3P3R", 16, forwardRun, forwardRest},
    {"kipiRGBToYUV_8u_P3R", 16, forwardRun, forwardRest},
    {"kipiRGBToYUV_8u_AC4P4R", 8, differenceRun, differenceRest},
    {"kipiYUVToRGB_8u_C3R", 1, inverse1, inverse1},
    {"kipiYUVToRGB_8u_AC4R", 1, inverse1, inverse1},
    {"kipiYUVToRGB_8u_P3C3R", 1, inverse2, inverse2},
    {"kipiYUVToRGB_8u_P3R", 1, inverse3, inverse3},
};

/// Converts one image and compares every byte.
void compare(const PixelFunction& pixelFunction, const PixelImage& image) {
  const Function& function = *find(pixelFunction.name);
  const KipiSize size = image.size;
  Content source = untouched(function, Side::kSource, size);
  Content expected = untouched(function, Side::kDestination, size);
  const Pixels8 from(function, Side::kSource, source), to(function, Side::kDestination, expected);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      from.set(x, y, image.at(x, y));
      to.set(x, y, pixelFunction(image.at(x, y), x, size.width));
    }
  }
  expectEqual(convert(function, size, source), expected, pixelFunction.name);
}

TEST(Yuv, FullResolutionIsExactForAllColours) {
  std::set<std::pair<Arithmetic, Arithmetic>> done;  // functions of other layouts share arithmetics
  for (const PixelFunction& function : kPixelFunctions) {
    if (!done.insert({function.inRun, function.inRest}).second) continue;
    const auto image = [&](const PixelImage& colours) { compare(function, colours); };
    forAllColours(4096, image);
    if (function.inRest != function.inRun) forAllColours(function.run - 1, image);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(Yuv, RunsEndAtTheLastWholeOneInEveryLayout) {
  for (const PixelFunction& function : kPixelFunctions) {
    for (int width = 1; width <= 70; ++width) {
      PixelImage image = {{width, 3}, {}};
      for (int i = 0; i < 3 * width; ++i) image.pixels.push_back({i * 37 & 255, i * i & 255, i * 149 >> 2 & 255});
      compare(function, image);
    }
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Subsampled chroma

/// Luma and chroma of one side, whatever its layout: 4:2:2 packed as Y0 U Y1 V or in planes, and 4:2:0 in planes.
class Chroma8 {
 public:
  Chroma8(const Function& function, Side side, Content& content)
      : content_(content),
        packed_(!function.layout(side).planar),
        rows_(function.layout(side).chroma == Chroma::k420 ? 2 : 1) {}

  uint8_t& luma(int x, int y) { return at(0, packed_ ? 2 * x : x, y); }
  uint8_t& u(int x, int y) { return packed_ ? at(0, x / 2 * 4 + 1, y) : at(1, x / 2, y / rows_); }
  uint8_t& v(int x, int y) { return packed_ ? at(0, x / 2 * 4 + 3, y) : at(2, x / 2, y / rows_); }
  bool packed() const { return packed_; }
  int rows() const { return rows_; }

 private:
  uint8_t& at(int plane, int byte, int y) {
    return content_[plane].bytes[static_cast<size_t>(y) * content_[plane].plane.rowBytes + byte];
  }

  Content& content_;
  bool packed_;
  int rows_;
};

int doubledLuma422(const Pixel& c) { return ((c[0] * 9798 + c[1] * 19235) >> 14) + ((c[2] * 3736) >> 14); }
int doubledLuma420(const Pixel& c) { return (9798 * c[0] + 19235 * c[1] + 3736 * c[2]) >> 14; }

/// The chroma of a pair, or of a 2 x 2 block, of the doubled sums of its luma, R and B.
void putChroma(Chroma8& to, int x, int y, int luma, int red, int blue) {
  to.v(x, y) = static_cast<uint8_t>(clampByte(hi(red - luma, 28737) + 128));
  to.u(x, y) = static_cast<uint8_t>(clampByte(hi(blue - luma, 16121) + 128));
}

void encodePair(Chroma8& to, const Pixels8& from, int x, int y) {
  const Pixel a = from.get(x, y), b = from.get(x + 1, y);
  to.luma(x, y) = static_cast<uint8_t>(clampByte(doubledLuma422(a) >> 1));
  to.luma(x + 1, y) = static_cast<uint8_t>(clampByte(doubledLuma422(b) >> 1));
  putChroma(to, x, y, (doubledLuma422(a) + doubledLuma422(b)) >> 1, a[0] + b[0], a[2] + b[2]);
}

/// The last pixel of an odd width, by itself. In packed rows there is no room for its V.
void encodeLone(Chroma8& to, const Pixel& c, int x, int y) {
  const int s = 9798 * c[0] + 19235 * c[1] + 3736 * c[2];
  to.luma(x, y) = static_cast<uint8_t>(s >> 15);
  to.u(x, y) = static_cast<uint8_t>(((((c[2] << 15) - s + 16383) >> 15) * 16121 >> 15) + 128);
  if (to.packed()) return;
  to.v(x, y) = static_cast<uint8_t>(clampByte(((((c[0] << 15) - s + 32767) >> 15) * 28737 >> 15) + 128));
}

void encodeBlock(Chroma8& to, const Pixels8& from, int x, int y) {
  int luma = 0, red = 0, blue = 0;
  for (int i = 0; i < 4; ++i) {
    const Pixel c = from.get(x + i % 2, y + i / 2);
    to.luma(x + i % 2, y + i / 2) = static_cast<uint8_t>(clampByte(doubledLuma420(c) >> 1));
    luma += doubledLuma420(c), red += c[0], blue += c[2];
  }
  putChroma(to, x, y, luma >> 2, red >> 1, blue >> 1);
}

/// What an encoder should make of a source.
Content encoded(const Function& function, KipiSize size, Content source) {
  Content expected = untouched(function, Side::kDestination, size);
  const Pixels8 from(function, Side::kSource, source);
  Chroma8 to(function, Side::kDestination, expected);
  for (int y = 0; y + to.rows() <= size.height; y += to.rows()) {
    for (int x = 0; x + 2 <= size.width; x += 2) {
      to.rows() == 2 ? encodeBlock(to, from, x, y) : encodePair(to, from, x, y);
    }
    if (size.width % 2 && to.rows() == 1) encodeLone(to, from.get(size.width - 1, y), size.width - 1, y);
  }
  return expected;
}

/// The pixel of a packed region one wide: its one chroma byte is U and V.
Pixel singlePixel(int luma, int chromaByte) {
  const int y = luma << 16, c = chromaByte - 128;
  return {clampByte((y + c * 74711) >> 16), clampByte((y - c * 63897) >> 16), clampByte((y + c * 133169) >> 16)};
}

/// What a decoder should make of a source.
Content decoded(const Function& function, KipiSize size, Content source, const PixelFunction& arithmetic) {
  Content expected = untouched(function, Side::kDestination, size);
  Chroma8 from(function, Side::kSource, source);
  Pixels8 to(function, Side::kDestination, expected);
  const KipiSize whole = function.contract.converted(size);
  for (int y = 0; y < whole.height; ++y) {
    for (int x = 0; x < whole.width; ++x) {
      const int luma = from.luma(x, y);
      if (from.packed() && size.width == 1) {
        to.set(x, y, singlePixel(luma, from.u(x, y)));
        continue;
      }
      // The last packed pixel of an odd width has no chroma of its own.
      const int at = from.packed() ? std::min(x, size.width / 2 * 2 - 1) : x;
      to.set(x, y, arithmetic({luma, from.u(at, y), from.v(at, y)}, x, whole.width));
      if (function.destination.channels == 4) to.fourth(x, y) = 0;
    }
  }
  return expected;
}

constexpr const char* kEncoders[] = {"kipiRGBToYUV422_8u_C3C2R", "kipiRGBToYUV422_8u_C3P3R", "kipiRGBToYUV422_8u_P3R",
                                     "kipiRGBToYUV422_8u_C3P3",  "kipiRGBToYUV422_8u_P3",    "kipiRGBToYUV420_8u_C3P3R",
                                     "kipiRGBToYUV420_8u_P3R",   "kipiRGBToYUV420_8u_C3P3",  "kipiRGBToYUV420_8u_P3",
                                     "kipiBGRToYUV420_8u_AC4P3R"};

constexpr PixelFunction kDecoders[] = {
    {"kipiYUV422ToRGB_8u_C2C3R", 1, inverse2, inverse2},
    {"kipiYUV422ToRGB_8u_P3C3R", 1, inverse2, inverse2},
    {"kipiYUV422ToRGB_8u_P3R", 1, inverse2, inverse2},
    {"kipiYUV422ToRGB_8u_P3AC4R", 8, inverse4, inverse4Rest},
    {"kipiYUV422ToRGB_8u_P3", 1, inverse2, inverse2},
    {"kipiYUV422ToRGB_8u_P3C3", 1, inverse2, inverse2},
    {"kipiYUV420ToRGB_8u_P3C3R", 1, inverse2, inverse2},
    {"kipiYUV420ToRGB_8u_P3R", 1, inverse2, inverse2},
    {"kipiYUV420ToRGB_8u_P3AC4R", 8, inverse4, inverse4Rest},
    {"kipiYUV420ToRGB_8u_P3", 1, inverse2, inverse2},
    {"kipiYUV420ToRGB_8u_P3C3", 1, inverse2, inverse2},
    {"kipiYUV420ToBGR_8u_P3C3R", 1, inverseToBgr, inverseToBgr},
};

/// Every width that a kernel might treat apart, and images with enough pixels for all pairs of chroma values.
std::vector<KipiSize> sizes() {
  std::vector<KipiSize> sizes = {{1024, 256}, {263, 31}};
  for (int width = 1; width <= 70; ++width) sizes.push_back({width, 1 + width % 4});
  return sizes;
}

TEST(Yuv, SubsampledFunctionsAreExact) {
  for (const KipiSize size : sizes()) {
    for (const char* name : kEncoders) {
      const Function& function = *find(name);
      const Content source = Case(function, size, {}).source;
      expectEqual(convert(function, size, source), encoded(function, size, source), name);
    }
    for (const PixelFunction& decoder : kDecoders) {
      const Function& function = *find(decoder.name);
      const Content source = Case(function, size, {}).source;
      expectEqual(convert(function, size, source), decoded(function, size, source, decoder), decoder.name);
    }
  }
}

/// The functions with alpha decode with factors of their own, in runs and after them.
TEST(Yuv, DecodersWithRunsAreExactForAllColours) {
  const PixelFunction& decoder = kDecoders[3];
  const Function& function = *find(decoder.name);
  ASSERT_EQ(function.name, "kipiYUV422ToRGB_8u_P3AC4R");
  for (const int width : {4096, 6}) {
    forAllColours(width, [&](const PixelImage& colours) {
      Content source = untouched(function, Side::kSource, colours.size);
      Chroma8 to(function, Side::kSource, source);
      for (int y = 0; y < colours.size.height; ++y) {
        for (int x = 0; x < width; ++x) {
          // Neighbours share their chroma, so it comes from the slower channels.
          const auto [u, v, luma] = colours.at(x, y);
          to.luma(x, y) = static_cast<uint8_t>(luma);
          to.u(x, y) = static_cast<uint8_t>(u), to.v(x, y) = static_cast<uint8_t>(v);
        }
      }
      expectEqual(convert(function, colours.size, source), decoded(function, colours.size, source, decoder),
                  decoder.name);
    });
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Worked values, and what the conversions are for

/// Grey comes out one step darker, and in runs not quite grey.
TEST(Yuv, GreyDependsOnTheRun) {
  for (int grey = 0; grey < 256; ++grey) {
    const std::vector<Kip8u> from(17 * 3, static_cast<Kip8u>(grey));
    std::vector<Kip8u> to(17 * 3);
    ASSERT_EQ(kipiRGBToYUV_8u_C3R(from.data(), 51, to.data(), 51, {17, 1}), kipStatusOk);
    const int luma = std::max(grey - 1, 0);
    EXPECT_EQ(to[45], luma) << grey;
    if (grey != 0 && grey != 100 && grey != 255) continue;
    const int chroma = grey == 0 ? 128 : 127;
    EXPECT_EQ(Pixel({to[45], to[46], to[47]}), Pixel({luma, chroma, chroma})) << grey;
    EXPECT_EQ(Pixel({to[48], to[49], to[50]}), Pixel({luma, 128, 128})) << grey;
  }
}

/// The first byte after luma stands for both chroma channels where a packed row is one pixel wide.
TEST(Yuv, OnePixelOfPackedYuvHasOneChroma) {
  const Kip8u from[] = {100, 148};
  Kip8u to[3];
  ASSERT_EQ(kipiYUV422ToRGB_8u_C2C3R(from, 2, to, 3, {1, 1}), kipStatusOk);
  EXPECT_EQ(Pixel({to[0], to[1], to[2]}), Pixel({122, 80, 140}));  // 1.140, -0.975 and 2.032 times 20
}

/// There and back at full resolution, for the colours whose V is within range.
TEST(Yuv, RoundTripStaysClose) {
  const Function &there = *find("kipiRGBToYUV_8u_C3R"), &back = *find("kipiYUVToRGB_8u_C3R");
  int worst = 0;
  forAllColours(4096, [&](const PixelImage& colours) {
    Content source = untouched(there, Side::kSource, colours.size);
    const Pixels8 from(there, Side::kSource, source);
    for (int i = 0; i < static_cast<int>(colours.pixels.size()); ++i) from.set(i, 0, colours.pixels[i]);
    Content yuv = convert(there, colours.size, source), rgb = convert(back, colours.size, yuv);
    const Pixels8 between(there, Side::kDestination, yuv), result(back, Side::kDestination, rgb);
    for (int i = 0; i < static_cast<int>(colours.pixels.size()); ++i) {
      const int v = between.get(i, 0)[2];
      if (v == 0 || v == 255) continue;
      for (int c = 0; c < 3; ++c) worst = std::max(worst, std::abs(colours.pixels[i][c] - result.get(i, 0)[c]));
    }
  });
  EXPECT_LE(worst, 4);
}

}  // namespace
}  // namespace kip
