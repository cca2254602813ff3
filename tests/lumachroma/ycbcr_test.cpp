// RGB and YCbCr against plain 32-bit sums, one pixel and one group of pixels at a time.
#include <gtest/gtest.h>

#include <cmath>
#include <span>

#include "support/reference.h"
#include "support/samples.h"

namespace kip {
namespace {

int dot(const Pixel& weights, const Pixel& c) { return weights[0] * c[0] + weights[1] * c[1] + weights[2] * c[2]; }

// ---------------------------------------------------------------------------------------------------------------------
// What is to be computed, x 2^16

struct ForwardSet {
  Pixel y;
  int lumaOffset;
  Pixel cb, cr;
};
constexpr ForwardSet kBt601 = {{16843, 33030, 6423}, 1081344, {-9699, -19071, 28770}, {28770, -24117, -4653}};
constexpr ForwardSet kCsc = {{11993, 40239, 4063}, 1081344, {-6619, -22151, 28770}, {28770, -26149, -2621}};
constexpr ForwardSet kHdtv = {{13959, 46858, 4719}, 32768, {-7668, -25821, 33489}, {33489, -30409, -3080}};

/// An arithmetic, with its offsets of the chroma sums of a group of 2^groupBits pixels, and the functions that have it.
struct Encoder {
  const ForwardSet& set;
  int groupBits, cbOffset, crOffset, oddLumaLess;
  std::vector<const char*> names;
};

const Encoder kEncoders[] = {
    {kBt601, 0, 8421376, 8421376, 0, {"kipiRGBToYCbCr_8u_C3R", "kipiRGBToYCbCr_8u_AC4R"}},
    {kBt601, 0, 8421376, 8421376, 0, {"kipiRGBToYCbCr_8u_C3P3R", "kipiRGBToYCbCr_8u_P3R", "kipiRGBToYCbCr_8u_AC4P3R"}},
    // The second luma of each pair is truncated.
    {kBt601,
     1,
     16842752,
     16842752,
     32768,
     {"kipiRGBToYCbCr422_8u_C3C2R", "kipiRGBToYCbCr422_8u_P3C2R", "kipiRGBToYCrCb422_8u_C3C2R",
      "kipiRGBToYCrCb422_8u_P3C2R"}},
    {kBt601,
     1,
     16793600,
     16793600,
     0,
     {"kipiRGBToYCbCr422_8u_C3P3R", "kipiBGRToYCbCr422_8u_C3C2R", "kipiBGRToYCbCr422_8u_AC4C2R",
      "kipiBGRToYCbCr422_8u_C3P3R", "kipiBGRToYCbCr422_8u_AC4P3R"}},
    {kBt601,
     2,
     33587200,
     33587200,
     0,
     {"kipiRGBToYCbCr420_8u_C3P3R", "kipiRGBToYCrCb420_8u_AC4P3R", "kipiBGRToYCbCr420_8u_C3P3R",
      "kipiBGRToYCbCr420_8u_AC4P3R", "kipiBGRToYCrCb420_8u_C3P3R", "kipiBGRToYCrCb420_8u_AC4P3R"}},
    {kBt601, 2, 33587200, 33587200, 0, {"kipiBGRToYCbCr411_8u_C3P3R", "kipiBGRToYCbCr411_8u_AC4P3R"}},
    {kCsc,
     2,
     33587200,
     33587200,
     0,
     {"kipiBGRToYCbCr420_709CSC_8u_C3P3R", "kipiBGRToYCbCr420_709CSC_8u_AC4P3R", "kipiBGRToYCrCb420_709CSC_8u_C3P3R",
      "kipiBGRToYCrCb420_709CSC_8u_AC4P3R"}},
    {kHdtv, 2, 33587200, 33587200, 0, {"kipiBGRToYCbCr420_709HDTV_8u_AC4P3R"}},
    // Cr gets two less than Cb.
    {kBt601, 1, 16842752, 16842750, 0, {"kipiBGRToCbYCr422_8u_AC4C2R"}},
    {kHdtv, 1, 16842752, 16842750, 0, {"kipiBGRToCbYCr422_709HDTV_8u_AC4C2R", "kipiBGRToCbYCr422_709HDTV_8u_C3C2R"}},
};

/// The sums of R, G and B are weights times (Y, Cb, Cr) and an offset.
struct InverseSet {
  Pixel r, g, b, offset;
};

constexpr InverseSet centred(int y, int crToR, int cbToG, int crToG, int cbToB, int black, int rounding) {
  const int luma = rounding - black * y;
  return {{y, 0, crToR},
          {y, -cbToG, -crToG},
          {y, cbToB, 0},
          {luma - 128 * crToR, luma + 128 * (cbToG + crToG), luma - 128 * cbToB}};
}
constexpr InverseSet kFloored1 = centred(76284, 104595, 25690, 53281, 132186, 16, 0);
constexpr InverseSet kRounded1 = centred(76284, 104595, 25690, 53281, 132186, 16, 32768);
constexpr InverseSet kFloored2 = centred(76282, 104593, 25689, 53279, 132184, 16, 0);
constexpr InverseSet kRounded2 = centred(76282, 104593, 25689, 53279, 132184, 16, 32768);
constexpr InverseSet kFloored3 = centred(76294, 104595, 25625, 53281, 132186, 16, 0);
constexpr InverseSet kFloored4 = centred(76309, 104597, 25675, 53279, 132201, 16, 0);
constexpr InverseSet kCscBack = centred(76284, 117506, 13959, 34996, 138609, 16, 32768);
constexpr InverseSet kHdtvBack = centred(65536, 100925, 11993, 30081, 119013, 0, 32768);
constexpr InverseSet kBiased1 = {
    {76284, 0, 104595}, {76284, -25690, -53281}, {76284, 132186, 0}, {-14608761, 8887730, -18140365}};

/// An arithmetic on pixels of one kind, and the functions that have both.
struct Decoder {
  const InverseSet& set;
  std::vector<const char*> names;
};

const Decoder kDecoders[] = {
    {kFloored1, {"kipiYCbCrToRGB_8u_C3R", "kipiYCbCrToRGB_8u_AC4R"}},
    {kFloored1, {"kipiYCbCrToRGB_8u_P3R"}},
    {kFloored2,
     {"kipiYCbCrToRGB_8u_P3C3R", "kipiYCbCrToRGB_8u_P3C4R", "kipiYCbCrToBGR_8u_P3C3R", "kipiYCbCrToBGR_8u_P3C4R"}},
    {kCscBack, {"kipiYCbCrToBGR_709CSC_8u_P3C3R", "kipiYCbCrToBGR_709CSC_8u_P3C4R"}},
    {kBiased1,
     {"kipiYCbCr422ToRGB_8u_C2C3R", "kipiYCbCr422ToRGB_8u_C2P3R", "kipiYCbCr422ToBGR_8u_C2C3R",
      "kipiYCbCr422ToBGR_8u_C2C4R", "kipiYCrCb422ToRGB_8u_C2C3R", "kipiYCrCb422ToRGB_8u_C2P3R"}},
    {kBiased1, {"kipiYCbCr422ToBGR_8u_P3C3R"}},
    {kRounded2, {"kipiYCbCr422ToRGB_8u_P3C3R"}},
    {kRounded2, {"kipiCbYCr422ToRGB_8u_C2C3R", "kipiCbYCr422ToBGR_8u_C2C4R"}},
    {kHdtvBack, {"kipiCbYCr422ToBGR_709HDTV_8u_C2C3R", "kipiCbYCr422ToBGR_709HDTV_8u_C2C4R"}},
    {kRounded1,
     {"kipiYCbCr420ToRGB_8u_P3C3R", "kipiYCbCr420ToBGR_8u_P3C3R", "kipiYCbCr420ToBGR_8u_P3C4R",
      "kipiYCrCb420ToRGB_8u_P3C4R"}},
    {kCscBack, {"kipiYCbCr420ToBGR_709CSC_8u_P3C3R"}},
    {kHdtvBack, {"kipiYCbCr420ToBGR_709HDTV_8u_P3C4R"}},
    {kFloored4, {"kipiYCrCb420ToBGR_Filter_8u_P3C4R"}},
    {kFloored3, {"kipiYCbCr411ToBGR_8u_P3C3R", "kipiYCbCr411ToBGR_8u_P3C4R"}},
};

// ---------------------------------------------------------------------------------------------------------------------

uint8_t sample(int sum, int bits) { return static_cast<uint8_t>(clampByte(sum >> bits)); }

/// What an encoder should make of a source.
Content expected(const Encoder& encoder, const Function& function, KipiSize size, Content source) {
  Content result = untouched(function, Side::kDestination, size);
  const Pixels8 from(function, Side::kSource, source);
  Samples to(function, Side::kDestination, result);
  const ForwardSet& set = encoder.set;
  const int width = to.groupWidth(), height = to.groupHeight(), bits = 16 + encoder.groupBits;
  for (int y = 0; y + height <= size.height; y += height) {
    int x = 0;
    for (; x + width <= size.width; x += width) {
      Pixel sums = {};
      for (int py = y; py < y + height; ++py) {
        for (int px = x; px < x + width; ++px) {
          const Pixel pixel = from.get(px, py);
          to.luma(px, py) = sample(dot(set.y, pixel) + set.lumaOffset - px % 2 * encoder.oddLumaLess, 16);
          for (int c = 0; c < 3; ++c) sums[c] += pixel[c];
        }
      }
      to.cb(x, y) = sample(dot(set.cb, sums) + encoder.cbOffset, bits);
      to.cr(x, y) = sample(dot(set.cr, sums) + encoder.crOffset, bits);
    }
    if (x == size.width || !to.packed()) continue;
    // The last pixel of an odd width, by itself: its luma and the chroma that comes first.
    Pixel lone = from.get(x, y);
    if (function.parts.is("kipiBGRToCbYCr422_8u_AC4C2R")) std::swap(lone[0], lone[2]);  // read as R, G, B
    to.luma(x, y) = sample(dot(set.y, lone) + set.lumaOffset, 16);
    to.firstChroma(x, y) = sample(dot(to.crFirst() ? set.cr : set.cb, lone) + encoder.cbOffset / 2, 16);
  }
  return result;
}

/// The chroma that a pixel receives.
Pixel withChroma(Samples& from, int x, int y, KipiSize size, bool filter) {
  const int luma = from.luma(x, y);
  if (from.packed() && size.width == 1) {
    const int only = from.firstChroma(0, y);
    return {luma, only, only};
  }
  // The last packed pixel of an odd width has no chroma of its own.
  const int at = from.packed() ? std::min(x, size.width / 2 * 2 - 1) : x;
  Pixel c = {luma, from.cb(at, y), from.cr(at, y)};
  if (filter && x % 2 && x + 2 < size.width / 2 * 2) {
    c[1] = (c[1] + from.cb(x + 1, y) + 1) >> 1, c[2] = (c[2] + from.cr(x + 1, y) + 1) >> 1;
  }
  return c;
}

constexpr int kAlpha = 77;

/// What a decoder should make of a source.
Content expected(const Decoder& decoder, const Function& function, KipiSize size, Content source) {
  Content result = untouched(function, Side::kDestination, size);
  Samples from(function, Side::kSource, source);
  const Pixels8 to(function, Side::kDestination, result);
  const bool filter = function.parts.has("Filter");
  const KipiSize whole = function.contract.converted(size);
  const InverseSet& set = decoder.set;
  for (int y = 0; y < whole.height; ++y) {
    for (int x = 0; x < whole.width; ++x) {
      const Pixel c = withChroma(from, x, y, size, filter);
      to.set(x, y,
             {sample(dot(set.r, c) + set.offset[0], 16), sample(dot(set.g, c) + set.offset[1], 16),
              sample(dot(set.b, c) + set.offset[2], 16)});
      if (function.shape.alpha) to.fourth(x, y) = kAlpha;
    }
  }
  return result;
}

Arguments withAlpha() {
  Arguments arguments;
  arguments.alpha = kAlpha;
  return arguments;
}

template <class Coder>
void expectExact(const Coder& coder, const Function& function, KipiSize size, const Content& source) {
  expectEqual(convert(function, size, source, withAlpha()), expected(coder, function, size, source), function.name);
}

/// Every width that a kernel might treat apart, and larger images.
std::vector<KipiSize> sizesOf(const Function& function) {
  std::vector<KipiSize> sizes = {{1031, 67}};
  for (int width = function.contract.minWidth; width <= 70; ++width) {
    sizes.push_back({width, std::max(function.contract.minHeight, 1 + width % 4)});
  }
  return sizes;
}

TEST(YCbCr, EveryFunctionIsExactForEveryWidth) {
  const auto check = [](const auto& coder) {
    for (const char* name : coder.names) {
      const Function& function = *find(name);
      for (const KipiSize size : sizesOf(function)) {
        SCOPED_TRACE(size.width);
        expectExact(coder, function, size, Case(function, size, {}).source);
      }
    }
  };
  for (const Encoder& encoder : kEncoders) check(encoder);
  for (const Decoder& decoder : kDecoders) check(decoder);
}

TEST(YCbCr, EncodersAreExactForAllColours) {
  for (const Encoder& encoder : kEncoders) {
    const Function& function = *find(encoder.names[0]);
    forAllColours(4096, [&](const PixelImage& colours) {
      Content source = untouched(function, Side::kSource, colours.size);
      const Pixels8 to(function, Side::kSource, source);
      for (int y = 0; y < colours.size.height; ++y) {
        for (int x = 0; x < colours.size.width; ++x) to.set(x, y, colours.at(x, y));
      }
      expectExact(encoder, function, colours.size, source);
    });
    if (HasFailure()) return;
  }
}

/// Tiles of 128 x 2 pixels hold all luma values and share their chroma.
TEST(YCbCr, DecodersAreExactForAllColours) {
  constexpr int kTile = 128;
  for (const Decoder& decoder : kDecoders) {
    const Function& function = *find(decoder.names[0]);
    forAllColours(256 * kTile, [&](const PixelImage& colours) {
      const int cb = colours.at(0, 0)[0];
      Content source = untouched(function, Side::kSource, colours.size);
      Samples to(function, Side::kSource, source);
      for (int y = 0; y < colours.size.height; ++y) {
        for (int x = 0; x < colours.size.width; ++x) {
          to.luma(x, y) = static_cast<uint8_t>(y % 2 * kTile + x % kTile);
          to.cb(x, y) = static_cast<uint8_t>(cb), to.cr(x, y) = static_cast<uint8_t>(x / kTile);
        }
      }
      expectExact(decoder, function, colours.size, source);
    });
    if (HasFailure()) return;
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Chroma from three pixels

int transferred(int v) {
  const double light = v / 255.0;
  return static_cast<int>(std::nearbyint(255 * (light < 0.018 ? 4.5 * light : 1.099 * std::pow(light, 0.45) - 0.099)));
}

/// The output row of a source row of R, G, B.
std::vector<Kip8u> smoothed(const std::vector<Pixel>& row) {
  constexpr Pixel kCentre[2] = {{-2426, -4769, 7193}, {7193, -6030, -1164}};
  constexpr Pixel kSide[2] = {{-1213, -2385, 3596}, {3596, -3015, -582}};
  std::vector<Kip8u> out(2 * row.size());
  for (size_t x = 0; x + 1 < row.size(); x += 2) {
    for (int i = 0; i < 2; ++i) {
      out[2 * (x + i) + 1] = sample(dot({8422, 16515, 3212}, row[x + i]) + 540672, 15);
      const int left = x > 0 ? dot(kSide[i], row[x - 1]) : 0;
      out[2 * (x + i)] = sample(dot(kCentre[i], row[x]) + dot(kSide[i], row[x + 1]) + left + 4210687, 15);
    }
  }
  if (row.size() % 2) {
    out[out.size() - 2] = sample(dot(kBt601.cb, row.back()) + 8421376, 16);
    out[out.size() - 1] = sample(dot(kBt601.y, row.back()) + 1081344, 16);
  }
  return out;
}

/// Through both functions: as it is, and with the transfer curve before it.
void expectSmoothed(std::vector<Pixel> row) {
  static const auto curve = [] {
    std::array<int, 256> values;
    for (int v = 0; v < 256; ++v) values[v] = transferred(v);
    return values;
  }();
  const int width = static_cast<int>(row.size());
  std::vector<Kip8u> from, to(2 * width);
  for (const Pixel& pixel : row) from.insert(from.end(), pixel.begin(), pixel.end());
  ASSERT_EQ(kipiRGBToCbYCr422_8u_C3C2R(from.data(), 3 * width, to.data(), 2 * width, {width, 1}), kipStatusOk);
  ASSERT_TRUE(to == smoothed(row)) << width;
  for (Pixel& pixel : row) {
    for (int& v : pixel) v = curve[v];
  }
  ASSERT_EQ(kipiRGBToCbYCr422Gamma_8u_C3C2R(from.data(), 3 * width, to.data(), 2 * width, {width, 1}), kipStatusOk);
  ASSERT_TRUE(to == smoothed(row)) << width;
}

TEST(YCbCr, SmoothedChromaIsExactForEveryWidthAndAllColours) {
  for (int width = 1; width <= 1100; width += width < 140 ? 1 : 67) {
    std::vector<Pixel> row;
    for (int x = 0; x < width; ++x) row.push_back({x * 37 & 255, x * x & 255, x * 149 >> 2 & 255});
    expectSmoothed(row);
  }
  forAllColours(1 << 15, [&](const PixelImage& colours) { expectSmoothed(colours.pixels); });
}

// ---------------------------------------------------------------------------------------------------------------------
// Worked values, and what is odd on purpose

/// Two halves that are ties go to the even neighbour.
TEST(YCbCr, TransferCurveHasItsPublishedValues) {
  for (const auto& [from, to] : {std::pair{0, 0}, {1, 4}, {2, 9}, {3, 14}, {4, 18}, {5, 23}, {128, 180}, {255, 255}}) {
    EXPECT_EQ(transferred(from), to);
  }
}

template <size_t N>
std::array<int, N> ints(const Kip8u (&bytes)[N]) {
  std::array<int, N> values;
  std::copy(bytes, bytes + N, values.begin());
  return values;
}

TEST(YCbCr, BlackAndWhite) {
  Kip8u rgb[] = {0, 0, 0, 255, 255, 255}, ycc[6], back[6], bgr[6];
  ASSERT_EQ(kipiRGBToYCbCr_8u_C3R(rgb, 6, ycc, 6, {2, 1}), kipStatusOk);
  EXPECT_EQ(ints(ycc), (std::array{16, 128, 128, 235, 128, 128}));
  ASSERT_EQ(kipiYCbCrToRGB_8u_C3R(ycc, 6, back, 6, {2, 1}), kipStatusOk);
  EXPECT_EQ(ints(back), (std::array{0, 0, 0, 254, 254, 254}));  // floored
  const Kip8u y[] = {16, 235}, grey[] = {128, 128};
  const Kip8u* planes[3] = {y, grey, grey};
  ASSERT_EQ(kipiYCbCrToBGR_709CSC_8u_P3C3R(planes, 2, bgr, 6, {2, 1}), kipStatusOk);
  EXPECT_EQ(ints(bgr), (std::array{0, 0, 0, 255, 255, 255}));
}

/// Looks wrong, but is promised: a pair of equal pixels whose second luma is one less.
TEST(YCbCr, SecondLumaIsTruncated) {
  const Kip8u rgb[] = {2, 0, 0, 2, 0, 0};  // 16.51
  Kip8u ycc[4];
  ASSERT_EQ(kipiRGBToYCbCr422_8u_C3C2R(rgb, 6, ycc, 4, {2, 1}), kipStatusOk);
  EXPECT_EQ(ycc[0], 17);
  EXPECT_EQ(ycc[2], 16);
}

/// Looks wrong, but is promised: a lone pixel of BGR is read as RGB.
TEST(YCbCr, LonePixelOfBgrIsReadAsRgb) {
  const Kip8u blue[] = {255, 0, 0, 0};
  Kip8u ycc[2], hdtv[2];
  ASSERT_EQ(kipiBGRToCbYCr422_8u_AC4C2R(blue, 4, ycc, 2, {1, 1}), kipStatusOk);
  EXPECT_EQ(ints(ycc), (std::array{90, 82}));  // those of red
  ASSERT_EQ(kipiBGRToCbYCr422_709HDTV_8u_AC4C2R(blue, 4, hdtv, 2, {1, 1}), kipStatusOk);
  EXPECT_EQ(ints(hdtv), (std::array{255, 18}));  // those of blue, clamped
}

/// The first pair has no left neighbour, and that counts as having no chroma.
TEST(YCbCr, FirstSmoothedPairHasThreeQuartersOfTheChroma) {
  std::vector<Kip8u> red(3 * 8), ycc(2 * 8);
  for (size_t i = 0; i < red.size(); i += 3) red[i] = 255;
  ASSERT_EQ(kipiRGBToCbYCr422_8u_C3C2R(red.data(), 24, ycc.data(), 16, {8, 1}), kipStatusOk);
  EXPECT_EQ(ycc[2], 212);  // Cr
  EXPECT_EQ(ycc[6], 240);
}

// ---------------------------------------------------------------------------------------------------------------------
// Round trips

/// There and back over blocks of one colour, large enough that the two pixels in a block's middle have neither chroma
/// nor a filter's neighbour from other blocks.
struct RoundTrip {
  const char *there, *back;
  KipiSize block;
  int largestError;
};

constexpr RoundTrip kRoundTrips[] = {
    {"kipiRGBToYCbCr_8u_C3R", "kipiYCbCrToRGB_8u_C3R", {2, 1}, 2},
    {"kipiRGBToYCbCr_8u_C3P3R", "kipiYCbCrToRGB_8u_P3C3R", {2, 1}, 2},
    {"kipiRGBToYCbCr422_8u_C3C2R", "kipiYCbCr422ToRGB_8u_C2C3R", {2, 1}, 3},
    {"kipiBGRToYCbCr422_8u_C3C2R", "kipiYCbCr422ToBGR_8u_C2C3R", {2, 1}, 3},
    {"kipiRGBToYCbCr422_8u_C3P3R", "kipiYCbCr422ToRGB_8u_P3C3R", {2, 1}, 3},
    {"kipiBGRToCbYCr422_8u_AC4C2R", "kipiCbYCr422ToBGR_8u_C2C4R", {2, 1}, 2},
    {"kipiRGBToCbYCr422_8u_C3C2R", "kipiCbYCr422ToRGB_8u_C2C3R", {6, 1}, 2},
    {"kipiBGRToCbYCr422_709HDTV_8u_AC4C2R", "kipiCbYCr422ToBGR_709HDTV_8u_C2C4R", {2, 1}, 6},
    {"kipiBGRToYCbCr420_8u_C3P3R", "kipiYCbCr420ToBGR_8u_P3C3R", {2, 2}, 3},
    {"kipiBGRToYCrCb420_8u_AC4P3R", "kipiYCrCb420ToBGR_Filter_8u_P3C4R", {6, 2}, 3},
    {"kipiBGRToYCbCr420_709CSC_8u_C3P3R", "kipiYCbCr420ToBGR_709CSC_8u_P3C3R", {2, 2}, 3},
    {"kipiBGRToYCbCr420_709HDTV_8u_AC4P3R", "kipiYCbCr420ToBGR_709HDTV_8u_P3C4R", {2, 2}, 6},
    {"kipiBGRToYCbCr411_8u_C3P3R", "kipiYCbCr411ToBGR_8u_P3C3R", {4, 1}, 3},
};

/// How far samples came back from what they were.
struct Errors {
  int64_t samples = 0, sum = 0;
  int largest = 0;

  void add(int error) { ++samples, sum += error, largest = std::max(largest, error); }
};

void add(const RoundTrip& trip, std::span<const Pixel> colours, Errors& errors) {
  const Function &there = *find(trip.there), &back = *find(trip.back);
  const auto [width, height] = trip.block;
  const int blocks = static_cast<int>(colours.size());
  const KipiSize size = {blocks * width, height};
  Content source = untouched(there, Side::kSource, size);
  const Pixels8 from(there, Side::kSource, source);
  for (int y = 0; y < height; ++y) {
    for (int k = 0; k < blocks; ++k) {
      for (int x = k * width; x < (k + 1) * width; ++x) from.set(x, y, colours[k]);
    }
  }
  Content result = convert(back, size, convert(there, size, source));
  const Pixels8 to(back, Side::kDestination, result);
  for (int k = 0; k < blocks; ++k) {
    const int middle = k * width + width / 2;
    for (const int x : {middle - 1, middle}) {
      for (int c = 0; c < 3; ++c) errors.add(std::abs(to.get(x, 0)[c] - colours[k][c]));
    }
  }
}

/// Prints the figures of docs/accuracy.md.
TEST(YCbCr, RoundTripsOfAllColours) {
  for (const RoundTrip& trip : kRoundTrips) {
    Errors errors;
    forAllColours(1 << 12, [&](const PixelImage& colours) {
      for (int y = 0; y < colours.size.height; ++y) {
        add(trip, {&colours.at(0, y), static_cast<size_t>(colours.size.width)}, errors);
      }
    });
    std::printf("%-36s %-36s largest %d, mean %.3f\n", trip.there, trip.back, errors.largest,
                static_cast<double>(errors.sum) / static_cast<double>(errors.samples));
    EXPECT_LE(errors.largest, trip.largestError) << trip.there;
    const bool all = errors.samples >= int64_t{2 * 3} << 24;  // of two pixels each, not of a sample of the colours
    if (all) {
      EXPECT_EQ(errors.largest, trip.largestError) << trip.there;
    }
  }
}

}  // namespace
}  // namespace kip
