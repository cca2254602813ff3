// Chroma layouts against plain resampling of one sample at a time, and what must hold however it is done.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/reference.h"
#include "support/samples.h"

namespace kip {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// What a sample of chroma should be

/// One plane of chroma of the source, and where in the destination a sample of it is wanted.
struct Resampling {
  const Samples& from;
  int which, columns, rows;       // of the source's chroma
  double acrossRatio, downRatio;  // source samples to a destination sample

  int at(int k, int j) const { return from.chroma(which, std::clamp(k, 0, columns - 1), std::clamp(j, 0, rows - 1)); }
  int column(int k) const { return static_cast<int>(k * acrossRatio); }
  int row(int j) const { return static_cast<int>(j * downRatio); }
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

int fieldsToHalf(const Resampling& r, int k, int j) {
  const int i = j / 2 * 4;
  return j % 2 == 0 ? (3 * r.at(k, i) + r.at(k, i + 2) + 2) >> 2 : (r.at(k, i + 1) + 3 * r.at(k, i + 3) + 2) >> 2;
}

int fieldsToDouble(const Resampling& r, int k, int j) {
  if (j < 2) return r.at(k, j);
  if (j >= 2 * r.rows - 2) return r.at(k, j - r.rows);
  const int m = (j - 2) / 4;
  switch ((j - 2) % 4) {
    case 0:
      return (5 * r.at(k, 2 * m) + 3 * r.at(k, 2 * m + 2) + 4) >> 3;
    case 1:
      return (7 * r.at(k, 2 * m + 1) + r.at(k, 2 * m + 3) + 4) >> 3;
    case 2:
      return (r.at(k, 2 * m) + 7 * r.at(k, 2 * m + 2) + 4) >> 3;
    default:
      return (3 * r.at(k, 2 * m + 1) + 5 * r.at(k, 2 * m + 3) + 4) >> 3;
  }
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

bool isLayoutConversion(const Function& function) {
  return function.source.subsampled() && function.destination.subsampled();
}

std::vector<const Function*> layoutConversions() {
  std::vector<const Function*> all;
  for (const Function& function : registry()) {
    if (isLayoutConversion(function)) all.push_back(&function);
  }
  return all;
}

Content randomSource(const Function& function, KipiSize size) {
  return randomContent(function.planes(Side::kSource, size), Sample::k8u, 1);
}

/// What a conversion should make of a source.
Content expectedOf(const Function& function, KipiSize size, Content source) {
  Content expected = untouched(function, Side::kDestination, size);
  const Samples from(function, Side::kSource, source), to(function, Side::kDestination, expected);
  const KipiSize whole = function.contract.converted(size);
  for (int y = 0; y < whole.height; ++y) {
    for (int x = 0; x < whole.width; ++x) to.luma(x, y) = from.luma(x, y);
  }
  const Rule rule = ruleOf(function);
  for (int which = 0; which < 2; ++which) {
    const Resampling resampling = {from,
                                   which,
                                   whole.width / from.groupWidth(),
                                   whole.height / from.groupHeight(),
                                   double(to.groupWidth()) / from.groupWidth(),
                                   double(to.groupHeight()) / from.groupHeight()};
    for (int j = 0; j < whole.height / to.groupHeight(); ++j) {
      for (int k = 0; k < whole.width / to.groupWidth(); ++k) {
        to.chroma(which, k, j) = static_cast<uint8_t>(rule(resampling, k, j));
      }
    }
  }
  return expected;
}

TEST(Layouts, EveryConversionMovesEverySample) {
  const std::vector<const Function*> functions = layoutConversions();
  ASSERT_EQ(functions.size(), 62u);
  for (const Function* function : functions) {
    std::vector<KipiSize> sizes = {{1920, 8}, {260, 33}};
    for (int width = 1; width <= 150; ++width) sizes.push_back({width, 1 + width % 13});
    for (const KipiSize& size : sizes) {
      const KipiSize region = allowed(*function, size);
      const Content source = randomSource(*function, region);
      expectEqual(convert(*function, region, source), expectedOf(*function, region, source), function->name);
      if (HasFailure()) return;
    }
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// There and back

struct RoundTrip {
  const char *there, *back;
};

// clang-format off
constexpr RoundTrip kRoundTrips[] = {
    // Another order, twice
    {"kipiYCbCr422ToCbYCr422_8u_C2R", "kipiYCbCr422ToCbYCr422_8u_C2R"},
    {"kipiYCbCr422ToYCrCb422_8u_C2R", "kipiYCbCr422ToYCrCb422_8u_C2R"},
    {"kipiCbYCr422ToYCbCr422_8u_C2R", "kipiYCbCr422ToCbYCr422_8u_C2R"},
    // Another layout
    {"kipiYCbCr422_8u_C2P3R", "kipiYCbCr422_8u_P3C2R"},
    {"kipiYCbCr422ToYCrCb422_8u_P3C2R", "kipiYCrCb422ToYCbCr422_8u_C2P3R"},
    {"kipiYCbCr420_8u_P3P2R", "kipiYCbCr420_8u_P2P3R"},
    {"kipiYCbCr420ToYCrCb420_8u_P2P3R", "kipiYCrCb420ToYCbCr420_8u_P3P2R"},
    {"kipiYCbCr420ToYCrCb420_Filter_8u_P2P3R", "kipiYCrCb420ToYCbCr420_8u_P3P2R"},
    {"kipiYCbCr411_8u_P3P2R", "kipiYCbCr411_8u_P2P3R"},
    // Repeated, then every second kept
    {"kipiYCbCr420ToYCbCr422_8u_P3R", "kipiYCbCr422ToYCbCr420_8u_P3R"},
    {"kipiYCbCr420ToYCbCr422_8u_P2C2R", "kipiYCbCr422ToYCbCr420_8u_C2P2R"},
    {"kipiYCbCr420ToCbYCr422_8u_P2C2R", "kipiCbYCr422ToYCbCr420_8u_C2P2R"},
    {"kipiYCbCr420ToYCbCr422_8u_P2P3R", "kipiYCbCr422ToYCbCr420_8u_P3P2R"},
    {"kipiYCrCb420ToYCbCr422_8u_P3C2R", "kipiYCbCr422ToYCrCb420_8u_C2P3R"},
    {"kipiYCrCb420ToCbYCr422_8u_P3C2R", "kipiCbYCr422ToYCrCb420_8u_C2P3R"},
    {"kipiYCbCr411ToYCbCr422_8u_P3R", "kipiYCbCr422ToYCbCr411_8u_P3R"},
    {"kipiYCbCr411ToYCbCr422_8u_P3C2R", "kipiYCbCr422ToYCbCr411_8u_C2P3R"},
    {"kipiYCbCr411ToYCrCb422_8u_P3C2R", "kipiYCrCb422ToYCbCr411_8u_C2P3R"},
    {"kipiYCbCr411ToYCbCr422_8u_P2C2R", "kipiYCbCr422ToYCbCr411_8u_C2P2R"},
    {"kipiYCbCr411ToYCbCr422_8u_P2P3R", "kipiYCbCr422ToYCbCr411_8u_P3P2R"},
    // Interpolated, then every second kept
    {"kipiYCbCr1620To420_8u_P3R", "kipiYCbCr420To1620_8u_P3R"},
    {"kipiYCbCr420ToYCbCr422_Filter_8u_P3R", "kipiYCbCr422ToYCbCr420_8u_P3R"},
    {"kipiYCbCr420ToYCbCr422_Filter_8u_P2C2R", "kipiYCbCr422ToYCbCr420_8u_C2P2R"},
    {"kipiYCbCr420ToYCbCr422_Filter_8u_P2P3R", "kipiYCbCr422ToYCbCr420_8u_P3P2R"},
};
// clang-format on

TEST(Layouts, WhatIsUndoneIsAsBefore) {
  const KipiSize size = {208, 24};
  for (const RoundTrip& trip : kRoundTrips) {
    const Function &there = *find(trip.there), &back = *find(trip.back);
    const Content source = randomSource(there, size);
    expectEqual(convert(back, size, convert(there, size, source)), source, trip.there);
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Chroma of simple shapes. Cb and Cr are given by row; luma is 0.

using OfRow = std::function<uint8_t(int which, int j)>;

Content convertRows(const Function& function, KipiSize size, const OfRow& value) {
  Content source = untouched(function, Side::kSource, size);
  const Samples from(function, Side::kSource, source);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) from.luma(x, y) = 0;
  }
  for (int j = 0; j < size.height / from.groupHeight(); ++j) {
    for (int k = 0; k < size.width / from.groupWidth(); ++k) {
      for (int which = 0; which < 2; ++which) from.chroma(which, k, j) = value(which, j);
    }
  }
  return convert(function, size, source);
}

/// Calls with each sample of chroma of a conversion's result.
template <class Visit>
void visitChroma(const Function& function, KipiSize size, Content result, const Visit& visit) {
  const Samples to(function, Side::kDestination, result);
  for (int j = 0; j < size.height / to.groupHeight(); ++j) {
    for (int k = 0; k < size.width / to.groupWidth(); ++k) {
      for (int which = 0; which < 2; ++which) visit(which, j, int{to.chroma(which, k, j)});
    }
  }
}

/// Flat chroma stays flat, and in functions for interlaced images each field by itself: fields never mix.
TEST(Layouts, FlatFieldsStayFlat) {
  const KipiSize size = {72, 16};
  for (const Function* function : layoutConversions()) {
    const bool interlaced = function->parts.has("Interlace");
    for (const int level : {0, 3, 255}) {
      const auto flat = [&](int which, int j) {
        return static_cast<uint8_t>((which == 0) == (interlaced && j % 2 == 1) ? 255 - level : level);
      };
      visitChroma(*function, size, convertRows(*function, size, flat), [&](int which, int j, int value) {
        EXPECT_EQ(value, flat(which, j)) << function->name << ", row " << j;
      });
    }
  }
}

/// Where a ramp of 8 from row to row, or from one row of a field to the next, is met by the new rows.
TEST(Layouts, RampsAreInterpolatedWhereTheNewRowsLie) {
  const KipiSize size = {72, 32};
  const auto ramp = [](int which, int j) { return static_cast<uint8_t>(which == 0 ? 8 * j : 250 - 8 * j); };
  const auto inner = [&](int j) { return j >= 4 && j < size.height - 4; };

  for (const char* name : {"kipiYCbCr420ToYCbCr422_Filter_8u_P3R", "kipiYCbCr420ToYCbCr422_Filter_8u_P2C2R"}) {
    const Function& function = *find(name);
    visitChroma(function, size, convertRows(function, size, ramp), [&](int which, int j, int value) {
      if (!inner(j)) return;
      EXPECT_EQ(value, which == 0 ? 4 * j : 250 - 4 * j) << name << ", row " << j;
    });
  }

  // Rows 4 m, 4 m + 2 of the doubled upper field lie at -1/8 and 3/8 of the way on from the field's row m, those of the
  // lower field at -3/8 and 1/8.
  for (const char* name : {"kipiYCbCr420To422_Interlace_8u_P3R", "kipiYCbCr420ToCbYCr422_Interlace_8u_P3C2R"}) {
    const Function& function = *find(name);
    const auto byField = [](int which, int j) { return static_cast<uint8_t>((which == 0 ? 0 : 100) + j / 2 * 8); };
    visitChroma(function, size, convertRows(function, size, byField), [&](int which, int j, int value) {
      constexpr int kEighths[4] = {-1, -3, 3, 1};
      if (!inner(j)) return;
      EXPECT_EQ(value, (which == 0 ? 0 : 100) + j / 4 * 8 + kEighths[j % 4]) << name << ", row " << j;
    });
  }
}

}  // namespace
}  // namespace kip
