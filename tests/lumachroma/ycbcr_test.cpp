// RGB and YCbCr against plain 32-bit sums, one pixel and one group of pixels at a time.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "support/reference.h"
#include "support/samples.h"

namespace kip {
namespace {

int dot(const Pixel& weights, const Pixel& c) { return std::inner_product(c.begin(), c.end(), weights.begin(), 0); }

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

/// An encoder's offsets: of the chroma sums of a group of 2^groupBits pixels, and of a lone pixel.
struct Encoder {
  const char* name;
  const ForwardSet& set;
  int groupBits, cbOffset, crOffset, loneOffset;
  int oddLumaLess = 0;
};

// clang-format off
constexpr Encoder kEncoders[] = {
    {"kipiRGBToYCbCr_8u_C3R", kBt601, 0, 8421376, 8421376, 0},
    {"kipiRGBToYCbCr_8u_AC4R", kBt601, 0, 8421376, 8421376, 0},
    {"kipiRGBToYCbCr_8u_C3P3R", kBt601, 0, 8421376, 8421376, 0},
    {"kipiRGBToYCbCr_8u_P3R", kBt601, 0, 8421376, 8421376, 0},
    {"kipiRGBToYCbCr_8u_AC4P3R", kBt601, 0, 8421376, 8421376, 0},
    // The second luma of each pair is truncated.
    {"kipiRGBToYCbCr422_8u_C3C2R", kBt601, 1, 16842752, 16842752, 8421376, 32768},
    {"kipiRGBToYCbCr422_8u_P3C2R", kBt601, 1, 16842752, 16842752, 8421376, 32768},
    {"kipiRGBToYCrCb422_8u_C3C2R", kBt601, 1, 16842752, 16842752, 8421376, 32768},
    {"kipiRGBToYCrCb422_8u_P3C2R", kBt601, 1, 16842752, 16842752, 8421376, 32768},
    {"kipiRGBToYCbCr422_8u_C3P3R", kBt601, 1, 16793600, 16793600, 0},
    {"kipiRGBToYCbCr420_8u_C3P3R", kBt601, 2, 33587200, 33587200, 0},
    {"kipiRGBToYCrCb420_8u_AC4P3R", kBt601, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCbCr422_8u_C3C2R", kBt601, 1, 16793600, 16793600, 8396800},
    {"kipiBGRToYCbCr422_8u_AC4C2R", kBt601, 1, 16793600, 16793600, 8396800},
    {"kipiBGRToYCbCr422_8u_C3P3R", kBt601, 1, 16793600, 16793600, 0},
    {"kipiBGRToYCbCr422_8u_AC4P3R", kBt601, 1, 16793600, 16793600, 0},
    {"kipiBGRToYCbCr420_8u_C3P3R", kBt601, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCbCr420_8u_AC4P3R", kBt601, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCrCb420_8u_C3P3R", kBt601, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCrCb420_8u_AC4P3R", kBt601, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCbCr411_8u_C3P3R", kBt601, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCbCr411_8u_AC4P3R", kBt601, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCbCr420_709CSC_8u_C3P3R", kCsc, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCbCr420_709CSC_8u_AC4P3R", kCsc, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCrCb420_709CSC_8u_C3P3R", kCsc, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCrCb420_709CSC_8u_AC4P3R", kCsc, 2, 33587200, 33587200, 0},
    {"kipiBGRToYCbCr420_709HDTV_8u_AC4P3R", kHdtv, 2, 33587200, 33587200, 0},
    // Cr gets two less than Cb.
    {"kipiBGRToCbYCr422_8u_AC4C2R", kBt601, 1, 16842752, 16842750, 8421376},
    {"kipiBGRToCbYCr422_709HDTV_8u_AC4C2R", kHdtv, 1, 16842752, 16842750, 8421376},
    {"kipiBGRToCbYCr422_709HDTV_8u_C3C2R", kHdtv, 1, 16842752, 16842750, 8421376},
};
// clang-format on

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

struct Decoder {
  const char* name;
  const InverseSet& set;
};

constexpr Decoder kDecoders[] = {
    {"kipiYCbCrToRGB_8u_C3R", kFloored1},
    {"kipiYCbCrToRGB_8u_AC4R", kFloored1},
    {"kipiYCbCrToRGB_8u_P3R", kFloored1},
    {"kipiYCbCrToRGB_8u_P3C3R", kFloored2},
    {"kipiYCbCrToRGB_8u_P3C4R", kFloored2},
    {"kipiYCbCrToBGR_8u_P3C3R", kFloored2},
    {"kipiYCbCrToBGR_8u_P3C4R", kFloored2},
    {"kipiYCbCrToBGR_709CSC_8u_P3C3R", kCscBack},
    {"kipiYCbCrToBGR_709CSC_8u_P3C4R", kCscBack},
    {"kipiYCbCr422ToRGB_8u_C2C3R", kBiased1},
    {"kipiYCbCr422ToRGB_8u_C2P3R", kBiased1},
    {"kipiYCbCr422ToRGB_8u_P3C3R", kRounded2},
    {"kipiYCbCr422ToBGR_8u_C2C3R", kBiased1},
    {"kipiYCbCr422ToBGR_8u_C2C4R", kBiased1},
    {"kipiYCbCr422ToBGR_8u_P3C3R", kBiased1},
    {"kipiYCrCb422ToRGB_8u_C2C3R", kBiased1},
    {"kipiYCrCb422ToRGB_8u_C2P3R", kBiased1},
    {"kipiCbYCr422ToRGB_8u_C2C3R", kRounded2},
    {"kipiCbYCr422ToBGR_8u_C2C4R", kRounded2},
    {"kipiCbYCr422ToBGR_709HDTV_8u_C2C3R", kHdtvBack},
    {"kipiCbYCr422ToBGR_709HDTV_8u_C2C4R", kHdtvBack},
    {"kipiYCbCr420ToRGB_8u_P3C3R", kRounded1},
    {"kipiYCbCr420ToBGR_8u_P3C3R", kRounded1},
    {"kipiYCbCr420ToBGR_8u_P3C4R", kRounded1},
    {"kipiYCrCb420ToRGB_8u_P3C4R", kRounded1},
    {"kipiYCbCr420ToBGR_709CSC_8u_P3C3R", kCscBack},
    {"kipiYCbCr420ToBGR_709HDTV_8u_P3C4R", kHdtvBack},
    {"kipiYCrCb420ToBGR_Filter_8u_P3C4R", kFloored4},
    {"kipiYCbCr411ToBGR_8u_P3C3R", kFloored3},
    {"kipiYCbCr411ToBGR_8u_P3C4R", kFloored3},
};

// ---------------------------------------------------------------------------------------------------------------------

uint8_t sample(int sum, int bits) { return static_cast<uint8_t>(clampByte(sum >> bits)); }

/// What an encoder should make of a source.
Content encoded(const Encoder& encoder, const Function& function, KipiSize size, Content source) {
  Content expected = untouched(function, Side::kDestination, size);
  const Pixels8 from(function, Side::kSource, source);
  Samples to(function, Side::kDestination, expected);
  const ForwardSet& set = encoder.set;
  const auto luma = [&](int x, int y) {
    const int offset = set.lumaOffset - (x % 2 ? encoder.oddLumaLess : 0);
    to.luma(x, y) = sample(dot(set.y, from.get(x, y)) + offset, 16);
  };
  const int width = to.groupWidth(), height = to.groupHeight(), bits = 16 + encoder.groupBits;
  for (int y = 0; y + height <= size.height; y += height) {
    int x = 0;
    for (; x + width <= size.width; x += width) {
      Pixel sums = {};
      for (int i = 0; i < width * height; ++i) {
        const int px = x + i % width, py = y + i / width;
        luma(px, py);
        for (int c = 0; c < 3; ++c) sums[c] += from.get(px, py)[c];
      }
      to.cb(x, y) = sample(dot(set.cb, sums) + encoder.cbOffset, bits);
      to.cr(x, y) = sample(dot(set.cr, sums) + encoder.crOffset, bits);
    }
    if (x == size.width || !to.packed()) continue;
    // The last pixel of an odd width, by itself: its luma and the chroma that comes first.
    Pixel lone = from.get(x, y);
    if (function.parts.is("kipiBGRToCbYCr422_8u_AC4C2R")) std::swap(lone[0], lone[2]);  // read as R, G, B
    to.luma(x, y) = sample(dot(set.y, lone) + set.lumaOffset, 16);
    to.firstChroma(x, y) = sample(dot(to.crFirst() ? set.cr : set.cb, lone) + encoder.loneOffset, 16);
  }
  return expected;
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
Content decoded(const Decoder& decoder, const Function& function, KipiSize size, Content source) {
  Content expected = untouched(function, Side::kDestination, size);
  Samples from(function, Side::kSource, source);
  const Pixels8 to(function, Side::kDestination, expected);
  const KipiSize whole = function.contract.converted(size);
  const InverseSet& set = decoder.set;
  for (int y = 0; y < whole.height; ++y) {
    for (int x = 0; x < whole.width; ++x) {
      const Pixel c = withChroma(from, x, y, size, function.parts.has("Filter"));
      to.set(x, y,
             {sample(dot(set.r, c) + set.offset[0], 16), sample(dot(set.g, c) + set.offset[1], 16),
              sample(dot(set.b, c) + set.offset[2], 16)});
      if (function.shape.alpha) to.fourth(x, y) = kAlpha;
    }
  }
  return expected;
}

Arguments withAlpha() {
  Arguments arguments;
  arguments.alpha = kAlpha;
  return arguments;
}

template <class Coder>
void expectExact(const Coder& coder, KipiSize size, const Content& source) {
  const Function& function = *find(coder.name);
  const Content result = convert(function, size, source, withAlpha());
  if constexpr (std::is_same_v<Coder, Encoder>) {
    expectEqual(result, encoded(coder, function, size, source), coder.name);
  } else {
    expectEqual(result, decoded(coder, function, size, source), coder.name);
  }
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
    const Function& function = *find(coder.name);
    for (const KipiSize size : sizesOf(function)) {
      SCOPED_TRACE(size.width);
      expectExact(coder, size, Case(function, size, {}).source);
    }
  };
  for (const Encoder& encoder : kEncoders) check(encoder);
  for (const Decoder& decoder : kDecoders) check(decoder);
}

/// One function for each arithmetic.
TEST(YCbCr, EncodersAreExactForAllColours) {
  for (const char* name : {"kipiRGBToYCbCr_8u_P3R", "kipiRGBToYCbCr422_8u_C3C2R", "kipiBGRToYCbCr422_8u_C3P3R",
                           "kipiBGRToYCbCr420_709CSC_8u_C3P3R", "kipiBGRToCbYCr422_709HDTV_8u_C3C2R"}) {
    const Encoder& encoder = *std::find_if(std::begin(kEncoders), std::end(kEncoders),
                                           [&](const Encoder& e) { return std::string(e.name) == name; });
    const Function& function = *find(name);
    forAllColours(4096, [&](const PixelImage& colours) {
      Content source = untouched(function, Side::kSource, colours.size);
      const Pixels8 to(function, Side::kSource, source);
      for (int y = 0; y < colours.size.height; ++y) {
        for (int x = 0; x < colours.size.width; ++x) to.set(x, y, colours.at(x, y));
      }
      expectExact(encoder, colours.size, source);
    });
    if (testing::Test::HasFailure()) return;
  }
}

/// One function for each arithmetic. Tiles of 128 x 2 pixels hold all luma values and share their chroma.
TEST(YCbCr, DecodersAreExactForAllColours) {
  constexpr int kTile = 128;
  for (const char* name :
       {"kipiYCbCrToRGB_8u_P3R", "kipiYCbCrToRGB_8u_P3C3R", "kipiYCbCrToBGR_709CSC_8u_P3C3R",
        "kipiYCbCr422ToRGB_8u_C2P3R", "kipiCbYCr422ToRGB_8u_C2C3R", "kipiYCbCr420ToRGB_8u_P3C3R",
        "kipiYCbCr420ToBGR_709HDTV_8u_P3C4R", "kipiYCrCb420ToBGR_Filter_8u_P3C4R", "kipiYCbCr411ToBGR_8u_P3C3R"}) {
    const Decoder& decoder = *std::find_if(std::begin(kDecoders), std::end(kDecoders),
                                           [&](const Decoder& d) { return std::string(d.name) == name; });
    const Function& function = *find(name);
    forAllColours(256 * kTile, [&](const PixelImage& colours) {
      const int cb = colours.at(0, 0)[0];
      const KipiSize size = colours.size;
      Content source = untouched(function, Side::kSource, size);
      Samples to(function, Side::kSource, source);
      for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
          to.luma(x, y) = static_cast<uint8_t>(y % 2 * kTile + x % kTile);
          to.cb(x, y) = static_cast<uint8_t>(cb), to.cr(x, y) = static_cast<uint8_t>(x / kTile);
        }
      }
      expectExact(decoder, size, source);
    });
    if (testing::Test::HasFailure()) return;
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Chroma from three pixels

int transferred(int v) {
  const double light = v / 255.0;
  return static_cast<int>(std::nearbyint(255 * (light < 0.018 ? 4.5 * light : 1.099 * std::pow(light, 0.45) - 0.099)));
}

/// The output row of a source row of R, G, B.
std::vector<Kip8u> smoothed(std::vector<Pixel> row, bool gamma) {
  constexpr Pixel kCentre[2] = {{-2426, -4769, 7193}, {7193, -6030, -1164}};
  constexpr Pixel kSide[2] = {{-1213, -2385, 3596}, {3596, -3015, -582}};
  if (gamma) {
    for (Pixel& pixel : row) {
      for (int& v : pixel) v = transferred(v);
    }
  }
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

TEST(YCbCr, SmoothedChromaIsExactForEveryWidth) {
  for (const bool gamma : {false, true}) {
    const auto function = gamma ? kipiRGBToCbYCr422Gamma_8u_C3C2R : kipiRGBToCbYCr422_8u_C3C2R;
    for (int width = 1; width <= 1100; width += width < 140 ? 1 : 67) {
      std::vector<Kip8u> from(3 * width), to(2 * width);
      std::vector<Pixel> row;
      for (int x = 0; x < width; ++x) {
        row.push_back({x * 37 & 255, x * x & 255, x * 149 >> 2 & 255});
        std::copy(row[x].begin(), row[x].end(), &from[3 * x]);
      }
      ASSERT_EQ(function(from.data(), 3 * width, to.data(), 2 * width, {width, 1}), kipStatusOk);
      ASSERT_EQ(to, smoothed(row, gamma)) << width;
    }
  }
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

/// Full-resolution encoder and decoder, for all colours.
TEST(YCbCr, RoundTripStaysWithinTwo) {
  const Function &there = *find("kipiRGBToYCbCr_8u_P3R"), &back = *find("kipiYCbCrToRGB_8u_P3R");
  int worst = 0;
  forAllColours(4096, [&](const PixelImage& colours) {
    Content source = untouched(there, Side::kSource, colours.size);
    const Pixels8 from(there, Side::kSource, source);
    for (int i = 0; i < static_cast<int>(colours.pixels.size()); ++i) from.set(i, 0, colours.pixels[i]);
    const Content rgb = convert(back, colours.size, convert(there, colours.size, source));
    for (int c = 0; c < 3; ++c) {
      for (size_t i = 0; i < rgb[c].bytes.size(); ++i) {
        worst = std::max(worst, std::abs(rgb[c].bytes[i] - source[c].bytes[i]));
      }
    }
  });
  EXPECT_EQ(worst, 2);
}

}  // namespace
}  // namespace kip
