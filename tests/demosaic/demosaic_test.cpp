// Demosaicing against plain arithmetic on whole mirrored images.
#include <gtest/gtest.h>

#include <random>

#include "demosaic/plain.h"
#include "support/targets.h"

namespace kip {
namespace {

/// A function, how it treats a region, and what it should make of a whole image.
template <class T>
struct Method {
  const char* name;
  int smallest;
  bool negativeIsZero;
  std::vector<Pixel> (*plain)(const Mosaic<T>&);
  KipStatus (*run)(const T*, KipiRect, KipiSize, int, T*, int, KipiBayerGrid);
};

template <class T>
std::vector<Method<T>> methods();
template <>
std::vector<Method<Kip8u>> methods() {
  const auto ahd = [](auto... arguments) { return kipiDemosaicAHD_8u_C1C3R(arguments..., nullptr, 0); };
  return {{"CFAToRGB 8u", 2, false, bilinear<Kip8u>, kipiCFAToRGB_8u_C1C3R},
          {"DemosaicAHD 8u", 5, true, homogeneityDirected<Kip8u>, ahd}};
}
template <>
std::vector<Method<Kip16u>> methods() {
  const auto ahd = [](auto... arguments) { return kipiDemosaicAHD_16u_C1C3R(arguments..., nullptr, 0); };
  return {{"CFAToRGB 16u", 2, false, bilinear<Kip16u>, kipiCFAToRGB_16u_C1C3R},
          {"DemosaicAHD 16u", 5, true, homogeneityDirected<Kip16u>, ahd}};
}

template <class T>
class Demosaicing : public testing::Test {
 protected:
  void TearDown() override { bestTarget().select(); }

  static constexpr T kUnwritten = static_cast<T>(0xA5A5);
  static constexpr int kFull = static_cast<T>(-1);

  /// Noise, edges of all directions with a little noise, few levels such that gradients and votes often draw, or the
  /// darkest few percent, where L*a*b* changes its formula.
  Mosaic<T> scene(int width, int height, int grid) {
    Mosaic<T> m{width, height, static_cast<KipiBayerGrid>(grid), {}};
    const uint32_t kind = random_() % 4;
    for (int i = 0; i < width * height; ++i) {
      const int x = i % width, y = i / width;
      const int wave = kFull / 2 + static_cast<int>(0.4 * kFull * std::sin(0.02 * (x * x + y * x) + 0.9 * y));
      const uint32_t noise = random_(),
                     values[] = {noise, wave + noise % 5, noise % 3 * (kFull / 2), noise % (kFull / 50)};
      m.samples.push_back(static_cast<T>(values[kind]));
    }
    return m;
  }

  /// Converts to a destination of the rectangle's size and returns it, its rows without gaps.
  std::vector<T> convert(const Method<T>& method, const Mosaic<T>& m, KipiRect rect, int width, int height) {
    std::vector<T> result(static_cast<size_t>(width) * height * 3, kUnwritten);
    const int step = width * 3 * static_cast<int>(sizeof(T)), sourceStep = m.width * static_cast<int>(sizeof(T));
    EXPECT_EQ(method.run(m.samples.data(), rect, {m.width, m.height}, sourceStep, result.data(), step, m.grid),
              kipStatusOk);
    return result;
  }

  /// Expects the part of the image that lies in the rectangle, and nothing written around it.
  void expectPart(const Method<T>& method, const Mosaic<T>& m, const std::vector<Pixel>& whole, KipiRect rect) {
    const std::vector<T> result = convert(method, m, rect, rect.width, rect.height);
    for (int i = 0; i < rect.width * rect.height * 3; ++i) {
      const int c = i % 3, column = i / 3 % rect.width, row = i / 3 / rect.width;
      const int x = std::max(rect.x, 0) + column, y = std::max(rect.y, 0) + row;
      const bool empty = !method.negativeIsZero && (rect.x < 0 || rect.y < 0);
      const int expected = empty || x >= m.width || y >= m.height ? kUnwritten : whole[y * m.width + x][c];
      ASSERT_EQ(int{result[i]}, expected) << method.name << ", image " << m.width << "x" << m.height << ", grid "
                                          << m.grid << ", region at " << rect.x << "," << rect.y << " of " << rect.width
                                          << "x" << rect.height << ": channel " << c << " at " << column << "," << row;
    }
  }

  std::mt19937 random_{7};
};

using SampleTypes = testing::Types<Kip8u, Kip16u>;
TYPED_TEST_SUITE(Demosaicing, SampleTypes);

/// Every grid with every combination of borders, and so with every position of a border within vectors and tiles;
/// regions inside, at and beyond the edges.
TYPED_TEST(Demosaicing, GivesThePartOfThePlainResultThatTheRegionIs) {
  std::vector<KipiSize> sizes;
  for (int i = 0; i < 49; ++i) sizes.push_back({2 + i % 7, 2 + i / 7});
  for (const int width : {16, 33, 36, 67, 131, 250, 251, 512}) sizes.push_back({width, 9 + width % 4});
  for (const Target& target : {fallbackTarget(), bestTarget()}) {
    target.select();
    for (const Method<TypeParam>& method : methods<TypeParam>()) {
      for (const auto& [width, height] : sizes) {
        if (width < method.smallest || height < method.smallest) continue;
        for (int grid = 0; grid < 4; ++grid) {
          const Mosaic<TypeParam> m = this->scene(width, height, grid);
          const std::vector<Pixel> whole = method.plain(m);
          this->expectPart(method, m, whole, {0, 0, width, height});
          for (int i = 0; i < 4; ++i) {
            const auto below = [&](int limit) { return static_cast<int>(this->random_() % limit); };
            const int x = below(width + 4) - 3, y = below(height + 4) - 3;
            this->expectPart(method, m, whole, {x, y, 1 + below(width + 3), 1 + below(height + 3)});
          }
          if (this->HasFatalFailure()) return;
        }
      }
    }
  }
}

TYPED_TEST(Demosaicing, WritesNothingOfAnEmptyRegionAndCutsAHugeOne) {
  const Mosaic<TypeParam> m = this->scene(8, 6, kipiBayerGRBG);
  for (const Method<TypeParam>& method : methods<TypeParam>()) {
    for (const KipiRect rect : {KipiRect{8, 0, 4, 4}, KipiRect{0, 6, 4, 4}, KipiRect{2, 2, 0, 4}, KipiRect{2, 2, 4, -3},
                                KipiRect{INT32_MAX, 1, INT32_MAX, 2}}) {
      for (const TypeParam sample : this->convert(method, m, rect, 8, 6)) ASSERT_EQ(sample, this->kUnwritten);
    }
    EXPECT_EQ(this->convert(method, m, {0, 0, INT32_MAX, INT32_MAX}, 8, 6),
              this->convert(method, m, {0, 0, 8, 6}, 8, 6));
  }
}

TYPED_TEST(Demosaicing, DoesNotTellRowsFromColumns) {
  constexpr KipiBayerGrid kTransposed[] = {kipiBayerBGGR, kipiBayerRGGB, kipiBayerGRBG, kipiBayerGBRG};
  for (int i = 0; i < 40; ++i) {
    const Mosaic<TypeParam> m = this->scene(5 + i % 31, 5 + i % 17, i % 4);
    Mosaic<TypeParam> t{m.height, m.width, kTransposed[m.grid], {}};
    for (int s = 0; s < m.width * m.height; ++s) t.samples.push_back(m.at(s / t.width, s % t.width));
    for (const Method<TypeParam>& method : methods<TypeParam>()) {
      const auto upright = this->convert(method, m, {0, 0, m.width, m.height}, m.width, m.height);
      const auto turned = this->convert(method, t, {0, 0, t.width, t.height}, t.width, t.height);
      for (int s = 0; s < m.width * m.height * 3; ++s) {
        const int c = s % 3, x = s / 3 % m.width, y = s / 3 / m.width;
        ASSERT_EQ(turned[(x * t.width + y) * 3 + c], upright[s]) << method.name << " at " << x << "," << y;
      }
    }
  }
}

}  // namespace
}  // namespace kip
