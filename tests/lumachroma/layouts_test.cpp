// Chroma layouts against plain resampling of one sample at a time.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/reference.h"

namespace kip {
namespace {

/// One channel of chroma of the source, and where in the destination a sample of it is wanted.
struct Resampling {
  const Task& task;
  int channel;

  /// Sample k of row j of the source, or the nearest one that there is.
  int at(int k, int j) const {
    const int width = task.from.groupWidth(), height = task.from.groupHeight();
    return task.from.at(channel, std::clamp(k, 0, task.whole.width / width - 1) * width,
                        std::clamp(j, 0, rows() - 1) * height);
  }
  int rows() const { return task.whole.height / task.from.groupHeight(); }
  int column(int k) const { return k * task.to.groupWidth() / task.from.groupWidth(); }
  int row(int j) const { return j * task.to.groupHeight() / task.from.groupHeight(); }
};

int mean(int a, int b) { return (a + b + 1) >> 1; }

int nearest(const Resampling& r, int k, int j) { return r.at(r.column(k), r.row(j)); }

int meanOfColumns(const Resampling& r, int k, int j) { return mean(r.at(2 * k, r.row(j)), r.at(2 * k + 1, r.row(j))); }

int meanOfRows(const Resampling& r, int k, int j) {
  return mean(r.at(r.column(k), 2 * j), r.at(r.column(k), 2 * j + 1));
}

int between(const Resampling& r, int k, int j) {
  const auto inRow = [&](int row) { return k % 2 ? mean(r.at(k / 2, row), r.at(k / 2 + 1, row)) : r.at(k / 2, row); };
  return j % 2 ? mean(inRow(j / 2), inRow(j / 2 + 1)) : inRow(j / 2);
}

int fourTap(const Resampling& r, int k, int j) {
  const int i = j / 2;
  if (j % 2 == 0) return r.at(k, i);
  return clampByte((9 * (r.at(k, i) + r.at(k, i + 1)) - r.at(k, i - 1) - r.at(k, i + 2) + 8) >> 4);
}

// Fields never mix.

int fieldsToHalf(const Resampling& r, int k, int j) {
  const int i = j / 2 * 4;
  return j % 2 == 0 ? (3 * r.at(k, i) + r.at(k, i + 2) + 2) >> 2 : (r.at(k, i + 1) + 3 * r.at(k, i + 3) + 2) >> 2;
}

int fieldsToDouble(const Resampling& r, int k, int j) {
  if (j < 2) return r.at(k, j);
  if (j >= 2 * r.rows() - 2) return r.at(k, j - r.rows());
  constexpr int kWeights[4] = {5, 7, 1, 3};
  const int upper = (j - 2) / 4 * 2 + j % 2, weight = kWeights[(j - 2) % 4];
  return (weight * r.at(k, upper) + (8 - weight) * r.at(k, upper + 2) + 4) >> 3;
}

using Rule = int (*)(const Resampling&, int k, int j);

Rule ruleOf(const Function& function) {
  const NameParts& name = function.parts;
  if (name.is("kipiYCbCr420To411_8u_P3R")) return meanOfColumns;
  if (name.is("kipiYCbCr411To420_8u_P3R")) return meanOfRows;
  if (name.is("kipiYCbCr1620To420_8u_P3R")) return between;
  const bool toDouble = function.source.chroma == Chroma::k420 && function.destination.chroma == Chroma::k422;
  if (name.has("Filter") && toDouble) return fourTap;
  if (name.has("Interlace")) return toDouble ? fieldsToDouble : fieldsToHalf;
  return nearest;
}

void resample(const Task& task) {
  const int width = task.to.groupWidth(), height = task.to.groupHeight();
  const Rule rule = ruleOf(task.function);
  for (int y = 0; y < task.whole.height; ++y) {
    for (int x = 0; x < task.whole.width; ++x) {
      task.to.at(0, x, y) = task.from.at(0, x, y);
      if (x % width || y % height) continue;
      for (int c = 1; c < 3; ++c) {
        task.to.at(c, x, y) = static_cast<uint8_t>(rule({task, c}, x / width, y / height));
      }
    }
  }
}

TEST(Layouts, EveryConversionIsExact) {
  int functions = 0;
  for (const Function& function : registry()) {
    if (!function.source.subsampled() || !function.destination.subsampled()) continue;
    ++functions;
    expectExactForAllSizes(function, resample);
  }
  EXPECT_EQ(functions, 62);
}

/// Another order twice, another layout and back; repeated or interpolated, then every second kept.
TEST(Layouts, WhatIsUndoneIsAsBefore) {
  constexpr const char* kPairs[][2] = {{"kipiYCbCr422ToCbYCr422_8u_C2R", "kipiYCbCr422ToCbYCr422_8u_C2R"},
                                       {"kipiYCbCr422ToYCrCb422_8u_C2R", "kipiYCbCr422ToYCrCb422_8u_C2R"},
                                       {"kipiCbYCr422ToYCbCr422_8u_C2R", "kipiYCbCr422ToCbYCr422_8u_C2R"},
                                       {"kipiYCbCr422_8u_C2P3R", "kipiYCbCr422_8u_P3C2R"},
                                       {"kipiYCbCr420_8u_P3P2R", "kipiYCbCr420_8u_P2P3R"},
                                       {"kipiYCbCr420ToYCrCb420_8u_P2P3R", "kipiYCrCb420ToYCbCr420_8u_P3P2R"},
                                       {"kipiYCbCr411_8u_P3P2R", "kipiYCbCr411_8u_P2P3R"},
                                       {"kipiYCbCr420ToYCbCr422_8u_P3R", "kipiYCbCr422ToYCbCr420_8u_P3R"},
                                       {"kipiYCrCb420ToCbYCr422_8u_P3C2R", "kipiCbYCr422ToYCrCb420_8u_C2P3R"},
                                       {"kipiYCbCr411ToYCbCr422_8u_P3R", "kipiYCbCr422ToYCbCr411_8u_P3R"},
                                       {"kipiYCbCr411ToYCbCr422_8u_P2C2R", "kipiYCbCr422ToYCbCr411_8u_C2P2R"},
                                       {"kipiYCbCr1620To420_8u_P3R", "kipiYCbCr420To1620_8u_P3R"},
                                       {"kipiYCbCr420ToYCbCr422_Filter_8u_P3R", "kipiYCbCr422ToYCbCr420_8u_P3R"}};
  constexpr KipiSize kSize = {208, 24};
  for (const auto& [there, back] : kPairs) {
    const Content source = Case(*find(there), kSize, {}).source;
    expectEqual(convert(*find(back), kSize, convert(*find(there), kSize, source)), source, there);
  }
}

/// Converts rows of chroma, each with one value, and compares the rows that become of them.
void expectRows(const Function& function, int (*given)(int row), int (*expected)(int row), int margin) {
  constexpr KipiSize kSize = {72, 32};
  Content source = untouched(function, Side::kSource, kSize);
  const Samples from(function, Side::kSource, source);
  for (int y = 0; y < kSize.height; ++y) {
    for (int x = 0; x < kSize.width; ++x) {
      for (int c = 1; c < 3; ++c) from.at(c, x, y) = static_cast<uint8_t>(given(y / from.groupHeight()));
    }
  }
  Content result = convert(function, kSize, source);
  const Samples to(function, Side::kDestination, result);
  const int rows = kSize.height / to.groupHeight();
  for (int row = margin; row < rows - margin; ++row) {
    for (int c = 1; c < 3; ++c) {
      EXPECT_EQ(to.at(c, 8, row * to.groupHeight()), expected(row)) << function.name << ", row " << row;
    }
  }
}

TEST(Layouts, FlatAndRampsStaySoAndFieldsNeverMix) {
  const auto byField = [](int row) { return row % 2 == 0 ? 3 : 250; };
  const auto fieldRamps = [](int row) { return row % 2 * 100 + row / 2 * 8; };
  const auto doubledRamps = [](int row) {
    constexpr int kEighths[4] = {-1, -3, 3, 1};  // of the way from one row of the field to the next
    return row % 2 * 100 + row / 4 * 8 + kEighths[row % 4];
  };
  for (const char* name : {"kipiYCbCr422To420_Interlace_8u_P3R", "kipiYCbCr420To422_Interlace_8u_P3R"}) {
    expectRows(*find(name), byField, byField, 0);
  }
  expectRows(*find("kipiYCbCr420ToCbYCr422_Interlace_8u_P3C2R"), fieldRamps, doubledRamps, 4);
  for (const char* name : {"kipiYCbCr420ToYCbCr422_Filter_8u_P3R", "kipiYCbCr420ToYCbCr422_Filter_8u_P2C2R"}) {
    expectRows(
        *find(name), [](int) { return 255; }, [](int) { return 255; }, 0);
    expectRows(
        *find(name), [](int row) { return 8 * row; }, [](int row) { return 4 * row; }, 4);
  }
}

}  // namespace
}  // namespace kip
