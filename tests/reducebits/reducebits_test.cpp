// Bit reduction against the formulas applied sample by sample, and what dithering is for.
#include <gtest/gtest.h>

#include <bit>
#include <numeric>
#include <random>
#include <vector>

#include "engine/random.h"
#include "kipcore.h"
#include "reducebits/plain.h"

namespace kip {
namespace {

using plain::Raster;
using plain::Setting;

constexpr KipiDitherType kMethods[] = {kipDitherNone, kipDitherFS, kipDitherJJN, kipDitherStucki, kipDitherBayer};
constexpr KipiDitherType kDiffusions[] = {kipDitherFS, kipDitherJJN, kipDitherStucki};

template <class S, class D>
using Function = KipStatus (*)(const S*, int, D*, int, KipiSize, int, KipiDitherType, int);

/// One pair of types with its four layouts.
template <class Source, class Destination, int kMost, Function<Source, Destination> kC1,
          Function<Source, Destination> kC3, Function<Source, Destination> kC4, Function<Source, Destination> kAC4>
struct Types {
  using S = Source;
  using D = Destination;
  static constexpr int kMostLevels = kMost;
  struct Layout {
    Function<S, D> function;
    int perPixel, reduced;
  };
  static constexpr Layout kLayouts[] = {{kC1, 1, 1}, {kC3, 3, 3}, {kC4, 4, 4}, {kAC4, 4, 3}};
};

#define KIP_TYPES(S, D, most, suffix)                                                                            \
  Types<S, D, most, kipiReduceBits_##suffix##_C1R, kipiReduceBits_##suffix##_C3R, kipiReduceBits_##suffix##_C4R, \
        kipiReduceBits_##suffix##_AC4R>
using AllTypes = testing::Types<KIP_TYPES(Kip8u, Kip8u, 256, 8u), KIP_TYPES(Kip16u, Kip16u, 65536, 16u),
                                KIP_TYPES(Kip16s, Kip16s, 65536, 16s), KIP_TYPES(Kip16u, Kip8u, 256, 16u8u),
                                KIP_TYPES(Kip16s, Kip8u, 256, 16s8u), KIP_TYPES(Kip32f, Kip8u, 256, 32f8u),
                                KIP_TYPES(Kip32f, Kip16u, 256, 32f16u), KIP_TYPES(Kip32f, Kip16s, 256, 32f16s)>;

template <class T>
class ReduceBits : public testing::Test {
 protected:
  using S = typename T::S;
  using D = typename T::D;

  void SetUp() override { kipSetNumThreads(1); }
  void TearDown() override { kipSetNumThreads(0); }

  /// Dark, bright and any samples, and runs of the same: errors that travel, saturate and vanish. Floats within a
  /// little more than their nominal range.
  std::vector<S> picture(const Raster& image) {
    std::vector<S> samples(static_cast<size_t>(image.width) * image.height * image.perPixel);
    uint32_t run = 0, kind = 0, same = 0;
    for (S& v : samples) {
      if (run-- == 0) run = random_() % 40, kind = random_() % 4, same = random_();
      const uint32_t value = kind < 2 ? random_() : same >> (kind == 2 ? 0 : 9);
      v = std::is_same_v<S, Kip32f> ? static_cast<S>(value * 0x1p-32 * 1.2 - 0.1) : static_cast<S>(value);
    }
    return samples;
  }

  void expectFormulas(const typename T::Layout& layout, KipiSize size, const Setting& setting, int threads) {
    const Raster image = {size.width, size.height, layout.perPixel, layout.reduced};
    const std::vector<S> src = picture(image);
    std::vector<D> expected(src.size(), D{77}), result = expected;
    plain::reduce(image, setting, threads, src, expected);
    kipSetNumThreads(threads);
    const int samples = size.width * layout.perPixel;
    ASSERT_EQ(layout.function(src.data(), samples * int{sizeof(S)}, result.data(), samples * int{sizeof(D)}, size,
                              setting.noise, setting.method, setting.levels),
              kipStatusOk);
    const auto wrong = std::mismatch(result.begin(), result.end(), expected.begin());
    if (wrong.first == result.end()) return;
    const auto at = wrong.first - result.begin();
    ADD_FAILURE() << layout.perPixel << " samples per pixel, " << size.width << " x " << size.height << ", method "
                  << setting.method << ", noise " << setting.noise << ", " << setting.levels << " levels, " << threads
                  << " threads: row " << at / samples << ", sample " << at % samples << " of it is " << +*wrong.first
                  << " instead of " << +*wrong.second;
  }

  std::mt19937 random_{7};
};
TYPED_TEST_SUITE(ReduceBits, AllTypes);

TYPED_TEST(ReduceBits, FollowsTheFormulas) {
  // One row and the row after a band of rows; narrower than the rows of a band trail each other; more than the noise.
  constexpr KipiSize kSizes[] = {{1, 1}, {70, 1}, {2, 70}, {133, 33}, {37, 65}, {1100, 5}};
  int turn = 0;
  for (const auto& layout : TypeParam::kLayouts) {
    for (const KipiDitherType method : kMethods) {
      for (const KipiSize size : kSizes) {
        const int noise[] = {0, 1, 0, 30, 60, 100}, levels[] = {2, 3, 8, 60, 256, TypeParam::kMostLevels};
        this->expectFormulas(layout, size, {method, noise[turn % 6], levels[turn / 6 % 6]}, 1);
        ++turn;
        if (this->HasFailure()) return;
      }
    }
  }
}

/// Narrow images, where a row is done before the one that trails it has begun. The bytes of those with more channels
/// than threads depend on the number of threads, in the promised way.
TYPED_TEST(ReduceBits, HandsErrorsFromRowToRowAndFromChannelToChannelOfAThread) {
  constexpr int kHeights[] = {1, 2, 40, 3, 33, 64, 66};
  for (const auto& layout : TypeParam::kLayouts) {
    for (const KipiDitherType method : kDiffusions) {
      for (int width = 1; width <= 40; ++width) {
        const int threads = width % 4 == 0 ? 1 + width / 4 % 5 : 1;
        this->expectFormulas(layout, {width, kHeights[width % 7]}, {method, width % 3 * 20, 5}, threads);
      }
    }
    if (this->HasFailure()) return;
  }
}

TYPED_TEST(ReduceBits, ToTwoLevelsIsBinary) {
  using D = typename TypeParam::D;
  const D white = static_cast<D>(std::is_signed_v<D> ? 32767 : plain::kFull<D>);
  const D black = static_cast<D>(std::is_signed_v<D> ? -32768 : 0);
  auto src = this->picture({97, 41, 1, 1});
  if constexpr (std::is_same_v<typename TypeParam::S, Kip32f>) {  // whatever a float can be
    for (Kip32f& v : src) v = std::bit_cast<Kip32f>(static_cast<uint32_t>(this->random_()));
  }
  std::vector<D> dst(src.size());
  for (const KipiDitherType method : kMethods) {
    for (const int noise : {0, 25}) {
      TypeParam::kLayouts[0].function(src.data(), 97 * int{sizeof src[0]}, dst.data(), 97 * int{sizeof(D)}, {97, 41},
                                      noise, method, 2);
      EXPECT_TRUE(std::all_of(dst.begin(), dst.end(), [&](D v) { return v == black || v == white; })) << method;
    }
  }
}

/// All bytes at all numbers of levels, among them those where a level's fraction is lost in rounding.
TEST(ReduceBitsOfBytes, FollowsTheFormulasAtEveryNumberOfLevels) {
  constexpr int kRows = 16;
  const Raster image = {256, kRows, 1, 1};
  std::vector<Kip8u> all(256 * kRows), expected(all.size()), result(all.size());
  for (size_t i = 0; i < all.size(); ++i) all[i] = static_cast<Kip8u>(i + i / 256);  // each under each threshold
  for (int levels = 2; levels <= 256; ++levels) {
    for (const auto& [method, noise] : {std::pair(kipDitherNone, 0), {kipDitherBayer, 0}, {kipDitherBayer, 40}}) {
      plain::reduce(image, {method, noise, levels}, 1, all, expected);
      kipiReduceBits_8u_C1R(all.data(), 256, result.data(), 256, {256, kRows}, noise, method, levels);
      ASSERT_EQ(result, expected) << levels << " levels, method " << method << ", noise " << noise;
    }
  }
}

TEST(ReduceBitsOfFlatFields, KeepsTheirMean) {
  constexpr KipiSize kSize = {240, 240};
  constexpr int kSamples = 240 * 240;
  std::vector<Kip16u> flat(kSamples), result(kSamples);
  for (const KipiDitherType method : {kipDitherFS, kipDitherJJN, kipDitherStucki, kipDitherBayer}) {
    for (const int levels : {2, 4, 8}) {
      for (const int sixteenth : {3, 5, 8, 14}) {
        const int value = sixteenth * 65535 / 16;
        std::fill(flat.begin(), flat.end(), static_cast<Kip16u>(value));
        for (const int noise : {0, 30}) {
          // Noise moves ordered thresholds out of the interval, and between two levels errors off the scale.
          if (noise != 0 && (method == kipDitherBayer || levels == 2)) continue;
          kipiReduceBits_16u_C1R(flat.data(), 480, result.data(), 480, kSize, noise, method, levels);
          const double mean = std::accumulate(result.begin(), result.end(), 0.0) / kSamples;
          EXPECT_NEAR(mean, value, 0.005 * 65535)
              << "method " << method << ", noise " << noise << ", " << levels << " levels";
        }
      }
    }
  }
}

TEST(ReduceBitsOfFloats, SaturatesWhatIsOutsideTheScale) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
  const float high[] = {1.5f, 3e9f, 1e38f, kInfinity}, low[] = {-0.1f, -3e9f, -kInfinity, kNone};
  for (const KipiDitherType method : kMethods) {
    for (const int noise : {0, 20}) {
      Kip16u words[4];
      Kip8u bytes[4];
      kipiReduceBits_32f16u_C4R(high, 16, words, 8, {1, 1}, noise, method, 6);
      kipiReduceBits_32f8u_C4R(low, 16, bytes, 4, {1, 1}, noise, method, 6);
      for (int i = 0; i < 4; ++i) EXPECT_EQ(words[i], 65535) << high[i] << ", method " << method;
      for (int i = 0; i < 4; ++i) EXPECT_EQ(bytes[i], 0) << low[i] << ", method " << method;
    }
  }
  // No value is lost in what is not a number either.
  const float row[] = {0.4f, kNone, 0.4f, 0.4f, 0.4f, 0.4f};
  Kip8u reduced[6];
  kipiReduceBits_32f8u_C1R(row, 24, reduced, 6, {6, 1}, 0, kipDitherFS, 2);
  EXPECT_GT(std::accumulate(reduced, reduced + 6, 0), 0);
}

/// Rows whose errors are more than a size can tell in 32 bits. There are no such pixels: nothing may be touched.
TEST(ErrorDiffusion, HasNoMemoryForTheLongestRows) {
  Kip8u pixel[4] = {};
  struct Row {
    Function<Kip8u, Kip8u> reduce;
    int width;
  };
  for (const auto& [reduce, width] : {Row{kipiReduceBits_8u_C4R, 1 << 29}, Row{kipiReduceBits_8u_C3R, 715827883},
                                      Row{kipiReduceBits_8u_C1R, 2147483500}}) {
    EXPECT_EQ(reduce(pixel, 4, pixel, 4, {width, 1}, 0, kipDitherFS, 2), kipStatusNoMemory) << width;
  }
}

TEST(ReduceBitsSteps, AreRoundedTowardZeroToSamples) {
  const Kip16u src[] = {0, 65535, 30000, 40000};
  Kip16u dst[] = {1, 1, 1, 1};
  kipiReduceBits_16u_C1R(src + 2, -5, dst + 2, -5, {2, 2}, 0, kipDitherNone, 2);
  EXPECT_EQ(std::vector<Kip16u>(dst, dst + 4), (std::vector<Kip16u>{0, 65535, 0, 65535}));
}

TEST(ReduceBitsMethods, ThatDoNotExistDoNothing) {
  const Kip8u src = 200;
  Kip8u dst = 9;
  const auto reduce = [&](int noise, int method, int levels) {
    return kipiReduceBits_8u_C1R(&src, 1, &dst, 1, {1, 1}, noise, static_cast<KipiDitherType>(method), levels);
  };
  for (const int method : {5, 7, 1000, -1}) EXPECT_EQ(reduce(0, method, 2), kipStatusOk);
  EXPECT_EQ(dst, 9);
  EXPECT_EQ(reduce(101, 7, 2), kipStatusNoiseRange);
  EXPECT_EQ(reduce(101, kipDitherNone, 1), kipStatusNoiseRange);
  EXPECT_EQ(reduce(0, 7, 257), kipStatusDitherLevels);
}

TEST(UniformNumbers, AreTheSameForTheSameSeed) {
  RandomNumbers forFloats(0), forWords(0);
  const Uniform<Kip32f> floats(-1, 1);
  for (const float expected : {-0.998087525f, -0.739681304f, -0.576587498f}) {
    EXPECT_EQ(floats(forFloats.next()), expected);
  }
  const Uniform<Kip16s> words(0, 1024);
  for (const int expected : {1, 133, 217, 413}) EXPECT_EQ(words(forWords.next()), expected);
}

}  // namespace
}  // namespace kip
