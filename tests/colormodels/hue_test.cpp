// Hue spaces against plain float arithmetic, one pixel at a time, and against the formulas of hue.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>

#include "support/colours.h"

namespace kip {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// The arithmetic: integers of 0 .. full

/// 1 / x to 12 significant bits, then one step of Newton and Raphson.
float reciprocal(float x) {
  const float r = std::bit_cast<float>((std::bit_cast<uint32_t>(1 / x) + 0x800) & 0xFFFFF000u);
  const float error = x * r * r;
  return r * 2 - error;
}

/// A result as a sample: truncated and limited.
float sample(float v, float full) { return std::clamp(static_cast<float>(static_cast<int>(v)), 0.f, full); }

/// Offset + step x difference / delta, for the channel that is the largest; red before green before blue.
float position(const Colour& c, float max, float delta, float step) {
  const auto [r, g, b] = c;
  const float per = reciprocal(delta);
  float hue;
  if (r == max) {
    hue = step * (g - b) * per;
  } else if (g == max) {
    hue = step * (b - r) * per + 2 * step;
  } else {
    hue = step * (r - g) * per + 4 * step;
  }
  return hue < 0 ? hue + 6 * step : hue;
}

Colour toHls(const Colour& c, float full) {
  const float max = std::max({c[0], c[1], c[2]}), min = std::min({c[0], c[1], c[2]});
  const float delta = max - min, sum = max + min, lightness = sample(sum * .5f, full);
  if (delta == 0) return {0, lightness, 0};
  const float saturation = delta * reciprocal(sum * .5f <= full / 2 ? sum : 2 * full - sum) * full;
  return {sample(position(c, max, delta, 60) * (full / 360), full), lightness, sample(saturation, full)};
}

Colour toHsv(const Colour& c, float full) {
  const float max = std::max({c[0], c[1], c[2]}), delta = max - std::min({c[0], c[1], c[2]});
  if (delta == 0) return {0, 0, max};
  const float saturation = delta * reciprocal(max) * full;
  return {sample(position(c, max, delta, 1) * (full / 6), full), sample(saturation, full), max};
}

Colour fromHls(const Colour& c, float full) {
  if (c[2] == 0) return {c[1], c[1], c[1]};
  const float h = c[0] * (360 / full), l = c[1] * (1 / full), s = c[2] * (1 / full);
  const float ls = l * s, m2 = l <= .5f ? l + ls : l + s - ls, m1 = 2 * l - m2, d = m2 - m1;
  const auto value = [&](float x) {
    if (x < 60) return x * (1 / 60.f) * d + m1;
    if (x < 180) return m2;
    return x < 240 ? (240 - x) * (1 / 60.f) * d + m1 : m1;
  };
  const float ahead = h + 120, behind = h - 120;
  return {sample(value(ahead > 360 ? ahead - 360 : ahead) * full, full), sample(value(h) * full, full),
          sample(value(behind < 0 ? behind + 360 : behind) * full, full)};
}

Colour fromHsv(const Colour& c, float full) {
  const float x = c[0] * (360 / full) * (1 / 60.f), s = c[1] * (1 / full), v = c[2] * (1 / full);
  const int sextant = static_cast<int>(x);
  const float f = x - static_cast<float>(sextant);
  const float vs = sample(v * full, full), p = sample(v * (1 - s) * full, full);
  const float q = sample(v * (1 - s * f) * full, full), t = sample(v * (1 - s * (1 - f)) * full, full);
  const Colour assigned[6] = {{vs, t, p}, {q, vs, p}, {p, vs, t}, {p, q, vs}, {t, p, vs}, {vs, p, q}};
  return assigned[sextant % 6];
}

// Floats

Colour toHls32f(const Colour& c) {
  const auto [r, g, b] = c;
  const float max = std::max({r, g, b}), min = std::min({r, g, b}), delta = max - min, sum = max + min;
  if (delta <= 1.1920929e-7f) return {0, .5f * sum, 0};
  float hue;
  if (r == max) {
    hue = (g - b) * 60 / delta;
  } else if (g == max) {
    hue = (b - r) * 60 / delta + 120;
  } else {
    hue = (r - g) * 60 / delta + 240;
  }
  return {(hue < 0 ? hue + 360 : hue) / 360, .5f * sum, delta / (.5f * sum <= .5f ? sum : 2 - sum)};
}

Colour fromHls32f(const Colour& c, bool inRun) {
  const auto [hue, l, s] = c;
  if (s == 0) return {l, l, l};
  const float h = hue * 360, m2 = l <= .5f ? l * (1 + s) : l + s - l * s, m1 = 2 * l - m2, d = m2 - m1;
  const auto sloping = [&](float x) { return m1 + (inRun ? d * x * (1 / 60.f) : d * x / 60); };
  const auto value = [&](float x) {
    if (x < 60) return sloping(x);
    if (x < 180) return m2;
    return x < 240 ? sloping(240 - x) : m1;
  };
  const float ahead = h + 120, behind = h - 120;
  return {value(ahead > 360 ? ahead - 360 : ahead), value(h), value(behind < 0 ? behind + 360 : behind)};
}

// ---------------------------------------------------------------------------------------------------------------------
// The functions

std::vector<const Function*> hueFunctions() {
  std::vector<const Function*> functions;
  for (const Function& function : registry()) {
    if (function.parts.has("HLS") || function.parts.has("HSV")) functions.push_back(&function);
  }
  return functions;
}

Colour expected(const Function& function, const Colour& colour, int x, int width) {
  const bool back = function.parts.source.front() == 'H', hls = function.parts.has("HLS");
  if (function.shape.source.sample == Sample::k32f) {
    return back ? fromHls32f(colour, x < width - width % 4) : toHls32f(colour);
  }
  const float full = function.shape.source.sample == Sample::k8u ? 255 : 65535;
  if (back) return hls ? fromHls(colour, full) : fromHsv(colour, full);
  return hls ? toHls(colour, full) : toHsv(colour, full);
}

void compare(const Function& function, KipiSize size, const Content& source) {
  expectColours(function, size, source,
                [&](const Colour& colour, int x) { return expected(function, colour, x, size.width); });
}

TEST(Hue, EveryFunctionIsExact) {
  for (const Function* function : hueFunctions()) {
    compare(*function, {1023, 64}, Case(*function, {1023, 64}, {}).source);
    for (int width = 1; width <= 40; ++width) compare(*function, {width, 2}, Case(*function, {width, 2}, {}).source);
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// All 8-bit colours

/// The real numbers that 8-bit results approximate.
using Real = std::array<double, 3>;

double realHue(const Pixel& c, int max, int delta) {
  const auto [r, g, b] = c;
  const double sextants = r == max   ? double(g - b) / delta
                          : g == max ? 2 + double(b - r) / delta
                                     : 4 + double(r - g) / delta;
  return (sextants < 0 ? sextants + 6 : sextants) * 42.5;
}
Real realHls(const Pixel& c) {
  const int max = std::max({c[0], c[1], c[2]}), min = std::min({c[0], c[1], c[2]}), delta = max - min;
  if (delta == 0) return {0, double(max), 0};
  return {realHue(c, max, delta), (max + min) / 2., 255. * delta / std::min(max + min, 510 - max - min)};
}
Real realHsv(const Pixel& c) {
  const int max = std::max({c[0], c[1], c[2]}), delta = max - std::min({c[0], c[1], c[2]});
  if (delta == 0) return {0, 0, double(max)};
  return {realHue(c, max, delta), 255. * delta / max, double(max)};
}

/// A channel that is `high` for half of the circle around its own hue and `low` on the far third.
double realChannel(double sextants, double low, double high) {
  const double around = std::fabs(sextants), away = std::min(around, 6 - around);
  return low + (high - low) * std::clamp(2 - away, 0., 1.);
}
Real realRgb(double hue, double low, double high) {
  const double x = hue / 42.5;
  return {realChannel(x, low, high), realChannel(x - 2, low, high), realChannel(x - 4, low, high)};
}
Real realRgbOfHls(const Pixel& c) {
  const double reach = c[2] / 255. * std::min(c[1], 255 - c[1]);
  return realRgb(c[0], c[1] - reach, c[1] + reach);
}
Real realRgbOfHsv(const Pixel& c) { return realRgb(c[0], c[2] * (1 - c[1] / 255.), c[2]); }

struct ByteFunction {
  const char* name;
  Colour (*exact)(const Colour&, float full);
  Real (*real)(const Pixel&);
};
constexpr ByteFunction kByteFunctions[] = {{"kipiRGBToHLS_8u_C3R", toHls, realHls},
                                           {"kipiHLSToRGB_8u_C3R", fromHls, realRgbOfHls},
                                           {"kipiRGBToHSV_8u_C3R", toHsv, realHsv},
                                           {"kipiHSVToRGB_8u_C3R", fromHsv, realRgbOfHsv}};

/// Truncated, so up to one step below; the rounding of floats adds what it does to numbers that should be whole.
TEST(Hue, AllBytesAreExactAndWithinOneOfTheFormulas) {
  for (const ByteFunction& byteFunction : kByteFunctions) {
    const Function& function = *find(byteFunction.name);
    double above = 0, below = 0;
    forAllColours(4096, [&](const PixelImage& colours) {
      Content source = untouched(function, Side::kSource, colours.size);
      Content expected = untouched(function, Side::kDestination, colours.size);
      const Samples from(function, Side::kSource, source), to(function, Side::kDestination, expected);
      for (int x = 0; x < static_cast<int>(colours.pixels.size()); ++x) {
        const Pixel& pixel = colours.pixels[x];
        const Colour exact = byteFunction.exact({float(pixel[0]), float(pixel[1]), float(pixel[2])}, 255);
        const Real real = byteFunction.real(pixel);
        Pixel result;
        for (int c = 0; c < 3; ++c) {
          result[c] = static_cast<int>(exact[c]);
          above = std::max(above, result[c] - real[c]), below = std::max(below, real[c] - result[c]);
        }
        from.set(x, 0, pixel), to.set(x, 0, result);
      }
      expectEqual(convert(function, colours.size, source), expected, function.name);
    });
    EXPECT_LT(above, 2e-4) << function.name;
    EXPECT_LT(below, 1.0002) << function.name;
    RecordProperty(function.name + " above", std::to_string(above));
    RecordProperty(function.name + " below", std::to_string(below));
    if (HasFailure()) return;
  }
}

/// Every 16-bit hue, at saturations and lightnesses that find the ends of the sextants.
TEST(Hue, AllHuesOf16BitsAreExact) {
  constexpr KipiSize kSize = {512, 128};
  for (const char* name : {"kipiHLSToRGB_16u_C3R", "kipiHSVToRGB_16u_C3R"}) {
    const Function& function = *find(name);
    for (const Colour& other : {Colour{0, 32767, 65535}, Colour{0, 32768, 1}, Colour{0, 65535, 40000}}) {
      Content source = untouched(function, Side::kSource, kSize);
      const Colours from(function, Side::kSource, source);
      for (int hue = 0; hue < 65536; ++hue) from.set(hue % 512, hue / 512, {float(hue), other[1], other[2]});
      compare(function, kSize, source);
    }
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Known colours

TEST(Hue, GreyHasNoHue) {
  for (int grey = 0; grey < 256; ++grey) {
    const float g = static_cast<float>(grey);
    EXPECT_EQ(converted("kipiRGBToHLS_8u_C3R", {g, g, g}), (Colour{0, g, 0}));
    EXPECT_EQ(converted("kipiHLSToRGB_8u_C3R", {200, g, 0}), (Colour{g, g, g}));
    EXPECT_EQ(converted("kipiRGBToHLS_16s_C3R", {257 * g, 257 * g, 257 * g}), (Colour{0, 257 * g, 0}));
    EXPECT_EQ(converted("kipiHLSToRGB_16u_C3R", {200, 257 * g, 0}), (Colour{257 * g, 257 * g, 257 * g}));
    EXPECT_EQ(converted("kipiRGBToHSV_16u_C3R", {257 * g, 257 * g, 257 * g}), (Colour{0, 0, 257 * g}));
    EXPECT_EQ(converted("kipiRGBToHLS_32f_C3R", {g / 255, g / 255, g / 255}), (Colour{0, g / 255, 0}));
  }
}

/// The refined reciprocal of 255 is a little short, so that truncation takes a step off full saturation.
TEST(Hue, PrimariesHaveTheirAngles) {
  EXPECT_EQ(converted("kipiRGBToHLS_8u_C3R", {255, 0, 0}), (Colour{0, 127, 254}));
  EXPECT_EQ(converted("kipiRGBToHSV_8u_C3R", {0, 255, 0}), (Colour{85, 254, 255}));
  EXPECT_EQ(converted("kipiBGRToHLS_8u_P3R", {0, 0, 255}), (Colour{170, 127, 254}));
  EXPECT_EQ(converted("kipiRGBToHLS_32f_C3R", {0, 0, 1}), (Colour{240 / 360.f, .5f, 1}));
  // A product that underflows keeps its sign; only angles below zero are turned.
  EXPECT_TRUE(std::signbit(converted("kipiRGBToHLS_32f_C3R", {1e30f, 1e-30f, 2e-30f})[0]));
}

/// A whole turn is red again.
TEST(Hue, TheCircleCloses) {
  for (const int width : {1, 4}) EXPECT_EQ(converted("kipiHLSToRGB_32f_C3R", {1, .5f, 1}, width), (Colour{1, 0, 0}));
  EXPECT_EQ(converted("kipiHLSToRGB_8u_C3R", {255, 127, 255}), converted("kipiHLSToRGB_8u_C3R", {0, 127, 255}));
  EXPECT_EQ(converted("kipiHSVToRGB_16u_C3R", {65535, 65535, 65535}), (Colour{65535, 0, 0}));
}

/// In runs of 4 the slopes are products with 1 / 60, after them quotients.
TEST(Hue, TheLastPixelsOfARowAreDivided) {
  const Colour colour = {.1f, .3f, .7f};
  EXPECT_NE(fromHls32f(colour, true), fromHls32f(colour, false));
  EXPECT_EQ(converted("kipiHLSToRGB_32f_C3R", colour, 4), fromHls32f(colour, true));
  EXPECT_EQ(converted("kipiHLSToRGB_32f_C3R", colour, 3), fromHls32f(colour, false));
}

}  // namespace
}  // namespace kip
