// Photo YCC and YCoCg against plain arithmetic.
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

struct Offsets {
  float c1, c2, c2Factor;
};
constexpr Offsets kOfFloats = {0.6117647f, 0.5372549f, 0.53192f}, kOfWords = {40092, 35209, 0.5319216f};

Colour toYcc(const Colour& c, const Offsets& of) {
  const auto [r, g, b] = c;
  const float luma = 0.299f * r + 0.587f * g + 0.114f * b;
  return {luma * 0.7132668f, (b - luma) * 0.4368627f + of.c1, (r - luma) * of.c2Factor + of.c2};
}
Colour fromYcc(const Colour& c, const Offsets& of) {
  const float luma = 1.3584f * c[0], c1 = (c[1] - of.c1) * 2.2179f, c2 = (c[2] - of.c2) * 1.8215f;
  return {luma + c2, luma - 0.194f * c1 - 0.509f * c2, luma + c1};
}

template <class T, class Function>
std::array<T, 3> each(const std::array<T, 3>& c, const Function& f) {
  return {f(c[0]), f(c[1]), f(c[2])};
}

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

Triple expectedYCoCg(const Function& function, const Triple& c) {
  const bool back = function.parts.source == "YCoCg", rev = function.parts.has("_Rev");
  if (function.parts.destination == "RGB") return bytesOfPlain(c);
  if (function.parts.source == "RGB") return plainOfBytes(c);
  if (back) return rev ? liftedBack(c) : plainBack(c);
  if (!rev) return plain(c);
  return function.image(Side::kDestination).sample == Sample::k16s ? lifted<int16_t>(c) : lifted<int32_t>(c);
}

/// A result as samples hold it. What goes to bytes has 16 bits before.
int stored(int v, Sample sample) {
  if (sample == Sample::k32s) return v;
  return sample == Sample::k8u ? clampByte(int16_t(v)) : int16_t(v);
}

TEST(YCoCg, EveryFunctionIsExact) {
  constexpr KipiSize kSize = {20011, 1};
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.parts.has("YCoCg")) continue;
    ++functions;
    Content source = Case(function, kSize, {}).source;
    Content result = convert(function, kSize, source);
    const Samples from(function, Side::kSource, source), to(function, Side::kDestination, result);
    for (int x = 0; x < kSize.width; ++x) {
      const auto triple = [x](const Samples& of) {
        return Triple{int(of.value(0, x, 0)), int(of.value(1, x, 0)), int(of.value(2, x, 0))};
      };
      const Sample sample = function.image(Side::kDestination).sample;
      const Triple expected = each(expectedYCoCg(function, triple(from)), [&](int v) { return stored(v, sample); });
      ASSERT_EQ(triple(to), expected) << function.name << " at " << x;
    }
  }
  EXPECT_EQ(functions, 26);
}

TEST(YCoCg, AllBytesAreReversible) {
  const Function &there = *find("kipiBGRToYCoCg_Rev_8u16s_C3P3R"), &back = *find("kipiYCoCgToBGR_Rev_16s8u_P3C3R");
  forAllColours(there, 4096, [&](KipiSize size, const Content& source) {
    expectEqual(convert(back, size, convert(there, size, source)), source, there.name);
  });
}

}  // namespace
}  // namespace kip
