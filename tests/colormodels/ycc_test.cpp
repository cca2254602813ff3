// Photo YCC against plain arithmetic and against its definition, YCoCg against plain integers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/colours.h"

namespace kip {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// Photo YCC

int high(int a, int b) { return (a * b) >> 16; }
Colour bytes(int a, int b, int c) { return {float(clampByte(a)), float(clampByte(b)), float(clampByte(c))}; }

Colour yccOfBytes(const Colour& c) {
  const int r = int(c[0]), g = int(c[1]), b = int(c[2]);
  const int luma = (4898 * r + 9617 * g + 1867 * b) >> 7;
  return bytes(high(luma, 2921) >> 3, (high((b << 7) - luma, 1789) + 1248) >> 3,
               (high((r << 7) - luma, 2178) + 1096) >> 3);
}
Colour bytesOfYcc(const Colour& c) {
  const int luma = high(int(c[0]) << 7, 5563);
  const int c1 = high((int(c[1]) - 156) * 128, 18168), c2 = high((int(c[2]) - 137) * 128, 14921);
  return bytes((luma + (c2 >> 1)) >> 3, (luma + high(c1, -6357) + high(c2, -16679)) >> 3, (luma + (c1 >> 1)) >> 3);
}

template <class T>
struct Offsets {
  T c1, c2, c2Factor;
};

template <class T>
std::array<T, 3> toYcc(const std::array<T, 3>& c, const Offsets<T>& of) {
  const auto [r, g, b] = c;
  const T luma = T(0.299) * r + T(0.587) * g + T(0.114) * b;
  return {luma * T(0.7132668), (b - luma) * T(0.4368627) + of.c1, (r - luma) * of.c2Factor + of.c2};
}
template <class T>
std::array<T, 3> fromYcc(const std::array<T, 3>& c, const Offsets<T>& of) {
  const T luma = T(1.3584) * c[0], c1 = (c[1] - of.c1) * T(2.2179), c2 = (c[2] - of.c2) * T(1.8215);
  return {luma + c2, luma - T(0.194) * c1 - T(0.509) * c2, luma + c1};
}

template <class T, class Function>
std::array<T, 3> each(const std::array<T, 3>& c, const Function& f) {
  return {f(c[0]), f(c[1]), f(c[2])};
}

constexpr Offsets<float> kOfFloats = {0.6117647f, 0.5372549f, 0.53192f}, kOfWords = {40092, 35209, 0.5319216f};

Colour expectedYcc(const Function& function, const Colour& c) {
  const bool back = function.parts.source == "YCC";
  switch (function.image(Side::kSource).sample) {
    case Sample::k8u:
      return back ? bytesOfYcc(c) : yccOfBytes(c);
    case Sample::k32f:
      return back ? each(fromYcc(c, kOfFloats), [](float v) { return std::clamp(v, 0.f, 1.f); }) : toYcc(c, kOfFloats);
    default:
      return each(back ? fromYcc(c, kOfWords) : toYcc(c, kOfWords),
                  [](float v) { return std::clamp(std::trunc(v), 0.f, 65535.f); });
  }
}

TEST(PhotoYcc, EveryFunctionIsExact) {
  int functions = 0;
  for (const Function& function : registry()) {
    if (function.parts.source != "YCC" && function.parts.destination != "YCC") continue;
    ++functions;
    for (const KipiSize size : {KipiSize{1023, 64}, {17, 3}}) {
      expectColours(function, size, Case(function, size, {}).source,
                    [&](const Colour& c, int) { return expectedYcc(function, c); });
    }
  }
  EXPECT_EQ(functions, 16);
}

/// Fixed point floors, and has fewer bits than the definition.
TEST(PhotoYcc, BytesAreNearTheDefinition) {
  using Real = std::array<double, 3>;
  constexpr Offsets<double> kReal = {156, 137, 0.53192};
  for (const char* name : {"kipiRGBToYCC_8u_C3R", "kipiYCCToRGB_8u_C3R"}) {
    const Function& function = *find(name);
    const bool back = function.parts.source == "YCC";
    double largest = 0;
    const auto measure = [&](const PixelImage& colours) {
      Content source = untouched(function, Side::kSource, colours.size);
      const Pixels8 from(function, Side::kSource, source);
      const int count = static_cast<int>(colours.pixels.size());
      for (int x = 0; x < count; ++x) from.set(x, 0, colours.pixels[x]);
      Content result = convert(function, colours.size, source);
      const Pixels8 to(function, Side::kDestination, result);
      for (int x = 0; x < count; ++x) {
        const Pixel &px = colours.pixels[x], is = to.get(x, 0);
        const Real c = {double(px[0]), double(px[1]), double(px[2])};
        const Real real = back ? fromYcc(c, kReal) : toYcc(c, kReal);
        for (int i = 0; i < 3; ++i) largest = std::max(largest, std::fabs(is[i] - std::clamp(real[i], 0., 255.)));
      }
    };
    forAllColours(4096, measure, 7);
    EXPECT_LT(largest, back ? 1.29 : 1.06) << name;
  }
}

/// White would be 181.88, floored.
TEST(PhotoYcc, KnownColours) {
  EXPECT_EQ(converted("kipiRGBToYCC_8u_C3R", {255, 255, 255}), (Colour{181, 156, 137}));
  EXPECT_EQ(converted("kipiRGBToYCC_16s_C3R", {0, 0, 0}), (Colour{0, 40092, 35209}));
}

// ---------------------------------------------------------------------------------------------------------------------
// YCoCg

using Triple = std::array<int, 3>;  // R, G, B or Y, Co, Cg

Triple plain(const Triple& c) {
  const auto [r, g, b] = c;
  return {(r + 2 * g + b + 2) >> 2, (r - b + 1) >> 1, (2 * g - r - b + 2) >> 2};
}
Triple plainBack(const Triple& c) {
  const auto [y, co, cg] = c;
  return {y + co - cg, y + cg, y - co - cg};
}
/// With Co and Cg cut to the planes' bits before they are halved.
template <class Plane>
Triple lifted(const Triple& c) {
  const auto [r, g, b] = c;
  const int co = Plane(r - b), t = b + (co >> 1), cg = Plane(g - t);
  return {t + (cg >> 1), co, cg};
}
Triple liftedBack(const Triple& c) {
  const auto [y, co, cg] = c;
  const int t = y - (cg >> 1), b = t - (co >> 1);
  return {b + co, cg + t, b};
}
Triple plainOfBytes(const Triple& c) {
  const auto [y, co, cg] = plain(c);
  return {y, clampByte(co + 128), clampByte(cg + 128)};
}
Triple bytesOfPlain(const Triple& c) {
  const auto [y, co, cg] = c;
  return {clampByte(y + co - cg), clampByte(y + cg - 128), clampByte(y - co - cg + 256)};
}

/// Samples by channel, in the order R, G, B or Y, Co, Cg.
class Channels {
 public:
  Channels(const Function& function, Side side, Content& content) : content_(content), layout_(function.layout(side)) {
    sample_ = function.image(side).sample;
    const std::string& space = side == Side::kSource ? function.parts.source : function.parts.destination;
    reverse_ = space == "BGR" || space == "SBGR";
  }

  Triple get(int x) const { return {read(at(x, 0)), read(at(x, 1)), read(at(x, 2))}; }
  /// A result as these samples hold it.
  Triple stored(const Triple& c) const {
    return each(c, [this](int v) { return stored(v); });
  }

 private:
  const uint8_t* at(int x, int c) const {
    const int inRow = layout_.planar ? x : x * layout_.channels + (reverse_ ? 2 - c : c);
    return content_[layout_.planar ? c : 0].bytes.data() + inRow * bytesOf(sample_);
  }
  int read(const uint8_t* from) const {
    int value = 0;
    std::memcpy(&value, from, bytesOf(sample_));
    return sample_ == Sample::k16s ? int16_t(value) : value;
  }
  int stored(int v) const {
    return sample_ == Sample::k8u ? clampByte(int16_t(v)) : sample_ == Sample::k16s ? int16_t(v) : v;
  }

  Content& content_;
  const Layout& layout_;
  Sample sample_;
  bool reverse_;
};

Triple expectedYCoCg(const Function& function, const Triple& c) {
  const bool back = function.parts.source == "YCoCg", rev = function.parts.has("_Rev");
  if (function.parts.destination == "RGB") return bytesOfPlain(c);
  if (function.parts.source == "RGB") return plainOfBytes(c);
  if (back) return rev ? liftedBack(c) : plainBack(c);
  if (!rev) return plain(c);
  return function.image(Side::kDestination).sample == Sample::k16s ? lifted<int16_t>(c) : lifted<int32_t>(c);
}

TEST(YCoCg, EveryFunctionIsExact) {
  constexpr KipiSize kSize = {20011, 1};
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.parts.has("YCoCg")) continue;
    ++functions;
    Content source = Case(function, kSize, {}).source;
    Content result = convert(function, kSize, source);
    const Channels from(function, Side::kSource, source), to(function, Side::kDestination, result);
    for (int x = 0; x < kSize.width; ++x) {
      ASSERT_EQ(to.get(x), to.stored(expectedYCoCg(function, from.get(x)))) << function.name << " at " << x;
    }
  }
  EXPECT_EQ(functions, 26);
}

/// There and back through planes.
Content thereAndBack(const Function& there, const Function& back, KipiSize size, const Content& source) {
  return convert(back, size, convert(there, size, source));
}

/// Every 8-bit colour comes back from the reversible form, though not from the plain one.
TEST(YCoCg, AllBytesAreReversible) {
  const Function &there = *find("kipiBGRToYCoCg_Rev_8u16s_C3P3R"), &back = *find("kipiYCoCgToBGR_Rev_16s8u_P3C3R");
  const Function& plainThere = *find("kipiBGRToYCoCg_8u16s_C3P3R");
  const Function& plainBack = *find("kipiYCoCgToBGR_16s8u_P3C3R");
  bool plainIsToo = true;
  forAllColours(4096, [&](const PixelImage& colours) {
    Content source = untouched(there, Side::kSource, colours.size);
    const Pixels8 from(there, Side::kSource, source);
    for (int x = 0; x < static_cast<int>(colours.pixels.size()); ++x) from.set(x, 0, colours.pixels[x]);
    expectEqual(thereAndBack(there, back, colours.size, source), source, there.name);
    plainIsToo &= thereAndBack(plainThere, plainBack, colours.size, source)[0].bytes == source[0].bytes;
  });
  EXPECT_FALSE(plainIsToo);
}

/// Differences of 16-bit samples need 17 bits. In 16-bit planes they wrap around, and back again.
TEST(YCoCg, WordsAreReversibleThroughPlanesThatWrap) {
  constexpr KipiSize kSize = {4096, 4};
  struct Pair {
    const char *there, *back;
    Triple planes;  // of R = 32767, G = 0, B = -32768
  };
  for (const Pair& pair : {Pair{"kipiSBGRToYCoCg_Rev_16s_C3P3R", "kipiYCoCgToSBGR_Rev_16s_P3C3R", {16383, -1, -32767}},
                           {"kipiSBGRToYCoCg_Rev_16s32s_C3P3R", "kipiYCoCgToSBGR_Rev_32s16s_P3C3R", {-1, 65535, 1}}}) {
    const Function &there = *find(pair.there), &back = *find(pair.back);
    const Content random = Case(there, kSize, {}).source;
    expectEqual(thereAndBack(there, back, kSize, random), random, pair.there);

    const Kip16s pixel[3] = {-32768, 0, 32767};
    Content source = untouched(there, Side::kSource, {1, 1});
    std::memcpy(source[0].bytes.data(), pixel, sizeof pixel);
    Content planes = convert(there, {1, 1}, source);
    EXPECT_EQ(Channels(there, Side::kDestination, planes).get(0), pair.planes) << pair.there;
  }
}

TEST(YCoCg, KnownBytes) {
  const Function& function = *find("kipiRGBToYCoCg_8u_C3P3R");
  const auto of = [&](const Pixel& pixel) {
    Content source = untouched(function, Side::kSource, {1, 1});
    Pixels8(function, Side::kSource, source).set(0, 0, pixel);
    Content result = convert(function, {1, 1}, source);
    return Pixels8(function, Side::kDestination, result).get(0, 0);
  };
  EXPECT_EQ(of({0, 0, 0}), (Pixel{0, 128, 128}));
  EXPECT_EQ(of({255, 255, 255}), (Pixel{255, 128, 128}));
  EXPECT_EQ(of({255, 0, 0}), (Pixel{64, 255, 64}));  // 256 is out of range
}

}  // namespace
}  // namespace kip
