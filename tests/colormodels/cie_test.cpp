// CIE spaces against plain arithmetic, one pixel at a time: exact integers, or single precision from left to right.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/colours.h"

namespace kip {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// XYZ

using Coefficients = int[3][3];

Colour fixedPoint(const Coefficients& rows, int bits, const Colour& c) {
  Colour result;
  for (int i = 0; i < 3; ++i) {
    const int sum = rows[i][0] * int(c[0]) + rows[i][1] * int(c[1]) + rows[i][2] * int(c[2]);
    result[i] = float(clampByte(sum >> bits));
  }
  return result;
}

Colour xyzOfBytes(const Colour& c, bool inRun) {
  constexpr Coefficients kRun = {{13515, 11717, 5912}, {6969, 23434, 2365}, {634, 3906, 31137}};
  constexpr Coefficients kRest = {{27030, 23434, 11824}, {13937, 46868, 4729}, {1267, 7811, 62274}};
  return inRun ? fixedPoint(kRun, 15, c) : fixedPoint(kRest, 16, c);
}
Colour bytesOfXyz(const Colour& c, bool inRun) {
  constexpr Coefficients kRun = {{26546, -12591, -4083}, {-7939, 15368, 340}, {456, -1671, 8661}};
  constexpr Coefficients kRest = {{212368, -100738, -32671}, {-63521, 122944, 2723}, {3646, -13372, 69291}};
  return inRun ? fixedPoint(kRun, 13, c) : fixedPoint(kRest, 16, c);
}

Colour toXyz(const Colour& c) {
  const auto [r, g, b] = c;
  return {0.412453f * r + 0.35758f * g + 0.180423f * b, 0.212671f * r + 0.71516f * g + 0.072169f * b,
          0.019334f * r + 0.119193f * g + 0.950227f * b};
}
Colour toRgb(const Colour& c) {
  const auto [x, y, z] = c;
  return {3.240479f * x - 1.53715f * y - 0.498535f * z, -0.969256f * x + 1.875991f * y + 0.041556f * z,
          0.055648f * x - 0.204043f * y + 1.057311f * z};
}

float unit(float v) { return std::clamp(v, 0.f, 1.f); }
float word(float v) { return std::clamp(std::trunc(v), 0.f, 65535.f); }

Colour xyzOfWords(const Colour& c, bool) {
  const auto [x, y, z] = toXyz(c);
  return {word(x), word(y), word(z)};
}
Colour wordsOfXyz(const Colour& c, bool) {
  const auto [r, g, b] = toRgb(c);
  return {word(r), word(g), word(b)};
}
Colour xyzOfFloats(const Colour& c, bool) {
  const auto [x, y, z] = toXyz(c);
  return {x, y, unit(z)};
}
Colour floatsOfXyz(const Colour& c, bool) {
  const auto [r, g, b] = toRgb(c);
  return {unit(r), unit(g), unit(b)};
}

// ---------------------------------------------------------------------------------------------------------------------
// The cube root: from a seed r near the upper end of one of 128 cells, r^3 = (cell + 1.0128) / scale, by the binomial
// series.

float cubeRoot(float t, int cell, double scale, int terms) {
  constexpr double kSeries[] = {1. / 3,    -1. / 9,      5. / 81,      -10. / 243,
                                22. / 729, -154. / 6561, 374. / 19683, -935. / 59049};
  const float r = float(std::cbrt((cell + 1.0128) / scale)), cube = r * r * r;
  const float x = (t - cube) * (1 / cube);
  float sum = float(kSeries[terms - 1]);
  for (int i = terms - 2; i >= 0; --i) sum = sum * x + float(kSeries[i]);
  return r * (sum * x + 1);
}
/// Of 0 .. 1. What is beyond takes the nearest cell.
float unitCubeRoot(float t, int terms) {
  constexpr float kScale = 128 - 1 / 512.f;
  return cubeRoot(t, int(std::clamp(t * kScale, 0.f, 127.f)), kScale, terms);
}

// ---------------------------------------------------------------------------------------------------------------------
// LUV

constexpr float kWhiteU = 0.197839f, kWhiteV = 0.468342f;

double lightness(double y) { return y > 0.008856 ? 116 * std::cbrt(y) - 16 : 903.3 * y; }

Colour luvOfBytes(const Colour& c, bool) {
  const auto [xs, luma, zs] = toXyz(c);
  const float x = xs / 255, y = luma / 255, z = zs / 255;
  const int nearest = int(luma + .5f), quarters = int(4 * luma + .5f);
  const bool dark = nearest < 32;
  const int fine = (std::lround(10.2 * lightness(quarters / 1020.)) + 2) >> 2;
  const float l = float(dark ? fine : std::lround(2.55 * lightness(nearest / 255.)));
  float u = 0, v = 0;
  if ((dark ? quarters : nearest) != 0) {
    const float d = 3 * z + x + 15 * y;
    u = 4 * x / d, v = 9 * y / d;
  }
  // The low bytes.
  const int u8 = int(3.6723163f * l * (u - kWhiteU) + 97.02543f), v8 = int(4.961832f * l * (v - kWhiteV) + 136.75955f);
  return {l, float(u8 & 255), float(v8 & 255)};
}

Colour luvFrom(const Colour& xyz, float l) {
  const auto [x, y, z] = xyz;
  const float d = x + 15 * y + 3 * z;
  const float u = d == 0 ? 0 : 4 * x / d, v = d == 0 ? 0 : 9 * y / d;
  return {l, 13 * l * (u - kWhiteU), 13 * l * (v - kWhiteV)};
}
Colour luvOfFloats(const Colour& c, bool) {
  const Colour xyz = toXyz(c);
  return luvFrom(xyz, xyz[1] > 0.008856f ? 116 * unitCubeRoot(xyz[1], 8) - 16 : 903.3f * xyz[1]);
}
Colour luvOfWords(const Colour& c, bool) {
  const Colour xyz = toXyz(c);
  const float luma = xyz[1];
  const auto [l, u, v] = luvFrom(
      xyz, luma > 580.378f ? 116 * cubeRoot(luma / 65535, int(luma) >> 9, 128, 6) - 16 : 903.3f * luma * 1.5259e-5f);
  return {word(l * 655.35f + .5f), word((u + 134) * 185.127121f + .5f), word((v + 140) * 250.1335907f + .5f)};
}

/// The pixels after the runs of 4 have another white.
Colour fromLuv(const Colour& c, bool inRun) {
  const auto [l, u, v] = c;
  if (l < 9e-5f) return {0, 0, 0};
  const float root = (l + 16) / 116, y = l >= 7.9996247f ? root * root * root : l / 903.3f;
  const float u1 = u / (13 * l) + (inRun ? kWhiteU : 0.1978394f);
  float v1 = v / (13 * l) + (inRun ? kWhiteV : 0.4683422f);
  if (std::fabs(v1) < 1.1920929e-7f) v1 += 9e-5f;
  const float t = y / v1, x = 2.25f * t * u1, z = 3 * t - 5 * y - x / 3;
  return floatsOfXyz({x, y, z}, inRun);
}
Colour fullScale(const Colour& rgb, float full) {
  const auto sample = [&](float v) { return std::clamp(std::trunc(full * v + .5f), 0.f, full); };
  return {sample(rgb[0]), sample(rgb[1]), sample(rgb[2])};
}
Colour bytesOfLuv(const Colour& c, bool inRun) {
  return fullScale(fromLuv({c[0] * 0.3921569f, c[1] * 1.3882353f - 134, c[2] * 1.027451f - 140}, inRun), 255);
}
Colour wordsOfLuv(const Colour& c, bool inRun) {
  return fullScale(fromLuv({c[0] * 100 / 65535, c[1] * 354 / 65535 - 134, c[2] * 262 / 65535 - 140}, inRun), 65535);
}
Colour floatsOfLuv(const Colour& c, bool) { return fromLuv(c, true); }

// ---------------------------------------------------------------------------------------------------------------------
// Lab

Colour toLab(const Colour& c, int terms) {
  const auto [xs, ys, zs] = toXyz(c);
  const float x = xs * 0.004126f, y = ys * 0.0039216f, z = zs * 0.0036019f;
  const auto f = [&](float t) { return t > 0.008856f ? unitCubeRoot(t, terms) : 7.787f * t + 0.137931f; };
  const float l = y > 0.008856f ? 116 * unitCubeRoot(y, terms) - 16 : 903.3f * y;
  return {l, 500 * (f(x) - f(y)), 200 * (f(y) - f(z))};
}
Colour fromLab(const Colour& c) {
  const float fy = (c[0] + 16) * 0.0086207f, fx = fy + c[1] * 0.002f, fz = fy - c[2] * 0.005f;
  const auto [r, g, b] = toRgb({fx * fx * fx * 242.366f, fy * fy * fy * 255, fz * fz * fz * 277.632f});
  const auto byte = [](float v) { return std::clamp(std::nearbyint(v), 0.f, 255.f); };
  return {byte(r), byte(g), byte(b)};
}

Colour labBytes(const Colour& c, bool) {
  const auto [l, a, b] = toLab(c, 6);
  const auto byte = [](float v) { return std::clamp(std::nearbyint(v), 0.f, 255.f); };
  return {byte(l * 2.55f), byte(a + 128), byte(b + 128)};
}
Colour labWords(const Colour& c, bool) {
  const auto [l, a, b] = toLab(c, 8);
  const auto word = [](float v) { return std::clamp(std::nearbyint(v), 0.f, 65535.f); };
  return {word(l * 655.35f), word((a + 128) * 255), word((b + 128) * 255)};
}
Colour bytesOfLabBytes(const Colour& c, bool) { return fromLab({c[0] * 0.3921569f, c[1] - 128, c[2] - 128}); }
Colour bytesOfLabWords(const Colour& c, bool) {
  return fromLab({c[0] * 0.0015259f, c[1] * 0.0039216f - 128, c[2] * 0.0039216f - 128});
}

// ---------------------------------------------------------------------------------------------------------------------
// The functions

struct Plain {
  const char* name;  ///< how the functions' names begin
  int run;           ///< pixels
  Colour (*convert)(const Colour&, bool inRun);
};
constexpr Plain kPlain[] = {
    {"kipiRGBToXYZ_8u_", 8, xyzOfBytes},  {"kipiXYZToRGB_8u_", 8, bytesOfXyz},
    {"kipiRGBToXYZ_16", 1, xyzOfWords},   {"kipiXYZToRGB_16", 1, wordsOfXyz},
    {"kipiRGBToXYZ_32f", 1, xyzOfFloats}, {"kipiXYZToRGB_32f", 1, floatsOfXyz},
    {"kipiRGBToLUV_8u_", 1, luvOfBytes},  {"kipiLUVToRGB_8u_", 4, bytesOfLuv},
    {"kipiRGBToLUV_16", 1, luvOfWords},   {"kipiLUVToRGB_16", 4, wordsOfLuv},
    {"kipiRGBToLUV_32f", 1, luvOfFloats}, {"kipiLUVToRGB_32f", 1, floatsOfLuv},
    {"kipiBGRToLab_8u_", 1, labBytes},    {"kipiLabToBGR_8u_", 1, bytesOfLabBytes},
    {"kipiBGRToLab_8u16u_", 1, labWords}, {"kipiLabToBGR_16u8u_", 1, bytesOfLabWords},
};

void compare(const Function& function, const Plain& plain, KipiSize size, const Content& source) {
  const int runs = size.width - size.width % plain.run;
  expectColours(function, size, source, [&](const Colour& c, int x) { return plain.convert(c, x < runs); });
}

/// Random colours; L, U and V of floats beyond the range of colours.
Content randomColours(const Function& function, KipiSize size) {
  Content source = Case(function, size, {}).source;
  if (function.parts.source == "LUV" && function.image(Side::kSource).sample == Sample::k32f) {
    const Colours colours(function, Side::kSource, source);
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) {
        const auto [l, u, v] = colours.get(x, y);
        colours.set(x, y, {l * 110 - 5, u * 354 - 134, v * 262 - 140});
      }
    }
  }
  return source;
}

TEST(Cie, EveryFunctionIsExact) {
  for (const Plain& plain : kPlain) {
    int functions = 0;
    for (const Function& function : registry()) {
      if (function.name.rfind(plain.name, 0) != 0) continue;
      ++functions;
      compare(function, plain, {1023, 64}, randomColours(function, {1023, 64}));
      for (int width = 1; width <= 40; ++width)
        compare(function, plain, {width, 2}, randomColours(function, {width, 2}));
    }
    EXPECT_GE(functions, 1) << plain.name;
  }
}

/// In rows of 2 run - 1 pixels half of the colours are in runs and half after them.
TEST(Cie, BytesOfAllKindsAreExact) {
  for (const Plain& plain : kPlain) {
    const Function* function = find(std::string(plain.name) + "C3R");
    if (!function || function->image(Side::kSource).sample != Sample::k8u) continue;
    const int width = plain.run == 1 ? 4096 : 2 * plain.run - 1;
    const auto convertsExactly = [&](const PixelImage& colours) {
      Content source = untouched(*function, Side::kSource, colours.size);
      const Samples from(*function, Side::kSource, source);
      for (int x = 0; x < static_cast<int>(colours.pixels.size()); ++x) from.set(x, 0, colours.pixels[x]);
      compare(*function, plain, colours.size, source);
    };
    // Lab takes short cuts, whose errors are known to be small enough for all colours only.
    forAllColours(width, convertsExactly, plain.convert == labBytes ? 1 : 17);
    if (HasFailure()) return;
  }
}

/// Every luma that 16 bits have, as grey and as green.
TEST(Cie, AllLuminancesOf16BitsAreExact) {
  constexpr KipiSize kSize = {512, 256};
  const Function& function = *find("kipiRGBToLUV_16u_C3R");
  Content source = untouched(function, Side::kSource, kSize);
  const Colours from(function, Side::kSource, source);
  for (int i = 0; i < 65536; ++i) {
    const float v = float(i);
    from.set(i % 512, i / 512, {v, v, v}), from.set(i % 512, 128 + i / 512, {0, v, 0});
  }
  compare(function, {"kipiRGBToLUV_16", 1, luvOfWords}, kSize, source);
}

// ---------------------------------------------------------------------------------------------------------------------
// Known colours

/// In runs the coefficients of Y sum to 1, after them to a little less.
TEST(Cie, WhiteIsOneLowerAfterTheRunsOfXyz) {
  EXPECT_EQ(converted("kipiRGBToXYZ_8u_C3R", {255, 255, 255}, 8), (Colour{242, 255, 255}));
  EXPECT_EQ(converted("kipiRGBToXYZ_8u_C3R", {255, 255, 255}, 7), (Colour{242, 254, 255}));
}

TEST(Cie, BlackIsBlack) {
  EXPECT_EQ(converted("kipiRGBToLUV_8u_C3R", {0, 0, 0}), (Colour{0, 97, 136}));
  EXPECT_EQ(converted("kipiRGBToLUV_16s_C3R", {0, 0, 0}), (Colour{0, 24807, 35019}));
  EXPECT_EQ(converted("kipiRGBToLUV_32f_C3R", {0, 0, 0}), (Colour{0, 0, 0}));
  EXPECT_EQ(converted("kipiBGRToLab_8u_C3R", {0, 0, 0}), (Colour{0, 128, 128}));
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float l : {0.f, -3.f, 8.9e-5f}) {
    EXPECT_EQ(converted("kipiLUVToRGB_32f_C3R", {l, 50, -infinity}), (Colour{0, 0, 0})) << l;
  }
  for (const int width : {1, 4}) {
    EXPECT_EQ(converted("kipiLUVToRGB_16s_C3R", {0, 40000, 9}, width), (Colour{0, 0, 0}));
  }
}

TEST(Cie, WhiteIsWhite) {
  EXPECT_EQ(converted("kipiRGBToLUV_8u_C3R", {255, 255, 255}), (Colour{255, 97, 136}));
  EXPECT_EQ(converted("kipiBGRToLab_8u_C3R", {255, 255, 255}), (Colour{255, 128, 128}));
  EXPECT_EQ(converted("kipiBGRToLab_8u16u_C3R", {255, 255, 255}), (Colour{65535, 32640, 32640}));
  EXPECT_EQ(converted("kipiLabToBGR_8u_C3R", {255, 128, 128}), (Colour{255, 255, 255}));
}

/// L* = 50 with v' = 0 exactly, which nothing can be divided by.
TEST(Cie, NoVIsMovedAwayFromZero) {
  float v = -kWhiteV * 650;
  while (v / 650 + kWhiteV > 0) v = std::nextafter(v, -std::numeric_limits<float>::infinity());
  ASSERT_EQ(v / 650 + kWhiteV, 0);
  const Colour rgb = converted("kipiLUVToRGB_32f_C3R", {50, -100, v});
  EXPECT_EQ(rgb, floatsOfLuv({50, -100, v}, true));
  EXPECT_GT(rgb[2], 0);
}

}  // namespace
}  // namespace kip
