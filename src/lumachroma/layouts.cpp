// Conversions between the layouts and the samplings of YCbCr with subsampled chroma. Luma is copied. A row of chroma
// comes from one row of the source or from several, each resampled across and then combined.

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lumachroma/layouts.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// Batches of chroma. Their lanes, and what resampling moves, are the samples of two planes where both sides have three
// planes; otherwise the pairs (Cb, Cr), or (Cr, Cb) where the source or the destination has that order.

using Sample = uint8_t;
using Pair = uint16_t;

/// Pixels of a batch: with chroma on every second column that is two vectors, on every fourth it is one.
constexpr int kPixels = 2 * kLanes<uint8_t>;

/// Two vectors: the first and the second plane's samples, or the pairs. One vector: either in its two halves.
template <int kAcross>
struct Chroma {
  U8 part[4 / kAcross];
};

KIP_INLINE U8 loadBytes(const Kip8u* from) { return hn::LoadU(Tag<uint8_t>(), from); }
KIP_INLINE void storeBytes(U8 v, Kip8u* to) { hn::StoreU(v, Tag<uint8_t>(), to); }

/// The luma of a batch, and rows of it as a layout.
struct Luma {
  static constexpr int kPointers = 1;
  static constexpr int kBatch = kPixels;
  static constexpr bool kKeeps = false;
  static constexpr size_t bytes(int, size_t pixels) { return pixels; }

  KIP_INLINE static Luma load(const Kip8u* from) { return {{loadBytes(from), loadBytes(from + kLanes<uint8_t>)}}; }
  KIP_INLINE void store(Kip8u* to) const { storeBytes(part[0], to), storeBytes(part[1], to + kLanes<uint8_t>); }

  U8 part[2];
};

KIP_INLINE Chroma<2> samplesOf(const Chroma<2>& pairs) {
  const Tag<uint8_t> d;
  return {{hn::ConcatEven(d, pairs.part[1], pairs.part[0]), hn::ConcatOdd(d, pairs.part[1], pairs.part[0])}};
}
KIP_INLINE Chroma<4> samplesOf(const Chroma<4>& pairs) {
  return {{hn::ConcatEven(Tag<uint8_t>(), as<uint8_t>(oddBytes(pairs.part[0])), pairs.part[0])}};
}

// ---------------------------------------------------------------------------------------------------------------------
// Layouts: where a row of chroma lies. A sample serves kAcross columns and kDown rows.

template <int kAcross_, int kDown_, int kPlanes_, bool kCrFirst_ = false>
struct Sampled {
  static constexpr int kAcross = kAcross_;
  static constexpr int kDown = kDown_;
  static constexpr int kPlanes = kPlanes_;
  static constexpr bool kCrFirst = kCrFirst_;
  static constexpr bool kPacked = kPlanes == 1;
  static constexpr int kPointers = kPlanes == 3 ? 2 : 1;  // of one row of chroma
  static constexpr int kBatch = kPixels;
  static constexpr bool kKeeps = false;

  template <class Byte>
  static Rows<Byte, kPointers> rows(const Image<Byte>& image, int row, bool exchange) {
    Rows<Byte, kPointers> rows;
    for (int p = 0; p < kPointers; ++p) rows.at[p] = image.row(kPacked ? 0 : 1 + (p ^ int{exchange}), row);
    return rows;
  }
};

template <int kAcross, int kDown, bool kCrFirst = false>
struct ThreePlanes : Sampled<kAcross, kDown, 3, kCrFirst> {
  static constexpr size_t bytes(int, size_t pixels) { return pixels / kAcross; }

  KIP_INLINE static Chroma<kAcross> load(const Rows<const Kip8u, 2>& from, Sample) {
    if constexpr (kAcross == 2) {
      return {{loadBytes(from.at[0]), loadBytes(from.at[1])}};
    } else {
      const hn::Half<Tag<uint8_t>> half;
      return {{hn::Combine(Tag<uint8_t>(), hn::LoadU(half, from.at[1]), hn::LoadU(half, from.at[0]))}};
    }
  }
  KIP_INLINE static Chroma<kAcross> load(const Rows<const Kip8u, 2>& from, Pair) {
    Chroma<kAcross> c;
    if constexpr (kAcross == 2) {
      sideBySide<uint8_t>(loadBytes(from.at[0]), loadBytes(from.at[1]), c.part[0], c.part[1]);
    } else {
      c.part[0] = loadSideBySide(from.at[0], from.at[1]);
    }
    return c;
  }

  KIP_INLINE static void store(const Chroma<kAcross>& c, const Rows<Kip8u, 2>& to, Sample) {
    if constexpr (kAcross == 2) {
      storeBytes(c.part[0], to.at[0]), storeBytes(c.part[1], to.at[1]);
    } else {
      const hn::Half<Tag<uint8_t>> half;
      hn::StoreU(hn::LowerHalf(half, c.part[0]), half, to.at[0]);
      hn::StoreU(hn::UpperHalf(half, c.part[0]), half, to.at[1]);
    }
  }
  KIP_INLINE static void store(const Chroma<kAcross>& c, const Rows<Kip8u, 2>& to, Pair) {
    store(samplesOf(c), to, Sample());
  }
};

template <int kAcross, int kDown>
struct TwoPlanes : Sampled<kAcross, kDown, 2> {
  static constexpr size_t bytes(int, size_t pixels) { return 2 * (pixels / kAcross); }

  KIP_INLINE static Chroma<kAcross> load(const Rows<const Kip8u, 1>& from, Pair) {
    Chroma<kAcross> c;
    for (int i = 0; i < 4 / kAcross; ++i) c.part[i] = loadBytes(from.at[0] + i * kLanes<uint8_t>);
    return c;
  }
  KIP_INLINE static void store(const Chroma<kAcross>& c, const Rows<Kip8u, 1>& to, Pair) {
    for (int i = 0; i < 4 / kAcross; ++i) storeBytes(c.part[i], to.at[0] + i * kLanes<uint8_t>);
  }
};

/// Packed 4:2:2: luma and the pairs' samples in turn.
template <bool kLumaFirst, bool kCrFirst = false>
struct Packed : Sampled<2, 1, 1, kCrFirst> {
  static constexpr size_t bytes(int, size_t pixels) { return 2 * pixels; }

  KIP_INLINE static Chroma<2> load(const Rows<const Kip8u, 1>& from, Pair) {
    Chroma<2> c;
    for (int i = 0; i < 2; ++i) c.part[i] = every(from.at[0] + 2 * i * kLanes<uint8_t>, kLumaFirst);
    return c;
  }
  KIP_INLINE static Luma luma(const Kip8u* from) {
    return {{every(from, !kLumaFirst), every(from + 2 * kLanes<uint8_t>, !kLumaFirst)}};
  }
  KIP_INLINE static void store(const Luma& y, const Chroma<2>& c, const Rows<Kip8u, 1>& to) {
    for (int i = 0; i < 2; ++i) {
      TwoInterleaved::store(kLumaFirst ? y.part[i] : c.part[i], kLumaFirst ? c.part[i] : y.part[i],
                            to.at[0] + 2 * i * kLanes<uint8_t>);
    }
  }

 private:
  /// The odd or the even ones of the next bytes.
  KIP_INLINE static U8 every(const Kip8u* from, bool odd) {
    U8 even, odds;
    TwoInterleaved::load(from, even, odds);
    return odd ? odds : even;
  }
};

using YCbCr422C2 = Packed<true>;
using YCrCb422C2 = Packed<true, true>;
using CbYCr422C2 = Packed<false>;
using YCbCr422P3 = ThreePlanes<2, 1>;
using YCrCb422P3 = ThreePlanes<2, 1, true>;
using YCbCr420P3 = ThreePlanes<2, 2>;
using YCrCb420P3 = ThreePlanes<2, 2, true>;
using YCbCr420P2 = TwoPlanes<2, 2>;
using YCbCr411P3 = ThreePlanes<4, 1>;
using YCbCr411P2 = TwoPlanes<4, 1>;
using YCbCr1620P3 = ThreePlanes<4, 4>;

/// Rows of chroma of a layout, behind rows of luma.
template <class Layout, int kLumas, int kTimes = 1>
struct RowsOf : Layout {
  static constexpr int kEach = Layout::kPointers;
  static constexpr int kPointers = kLumas + kTimes * kEach;
  static constexpr size_t bytes(int p, size_t pixels) {
    return p < kLumas ? Luma::bytes(0, pixels) : Layout::bytes((p - kLumas) % kEach, pixels);
  }
  template <class Byte>
  static void set(Rows<Byte, kPointers>& rows, int which, const Rows<Byte, kEach>& row) {
    for (int p = 0; p < kEach; ++p) rows.at[kLumas + which * kEach + p] = row.at[p];
  }
  template <class Byte>
  KIP_INLINE static Rows<Byte, kEach> get(const Rows<Byte, kPointers>& rows, int which) {
    Rows<Byte, kEach> row;
    for (int p = 0; p < kEach; ++p) row.at[p] = rows.at[kLumas + which * kEach + p];
    return row;
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Rules: which rows of the source a row of chroma comes from, and how

/// A row of the destination's chroma.
struct Place {
  int row;
  int nearest;  ///< the source's row at the same height
  int rows;     ///< of chroma in the source
};

/// What most rules have in common.
struct RuleBase {
  static constexpr int kGroup = 1;           ///< rows of luma that belong together, if more than the layouts say
  static constexpr bool kAlike = true;       ///< whether all rows of chroma are made in the same way
  static bool copies(int) { return false; }  ///< whether Nearest gives this row, too
};

/// Every sample from one other: decimation and repetition.
struct Nearest : RuleBase {
  static constexpr int kTaps = 1;

  int taps[kTaps];

  explicit Nearest(const Place& place) : taps{place.nearest} {}
  KIP_INLINE U8 operator()(const U8 (&v)[kTaps]) const { return v[0]; }

  /// One for two neighbours.
  template <class D, class V>
  KIP_INLINE static V halve(D d, V lower, V upper) {
    return hn::ConcatEven(d, upper, lower);
  }
};

struct AverageColumns : Nearest {
  using Nearest::Nearest;

  template <class D, class V>
  KIP_INLINE static V halve(D d, V lower, V upper) {
    return hn::AverageRound(hn::ConcatEven(d, upper, lower), hn::ConcatOdd(d, upper, lower));
  }
};

struct AverageRows : RuleBase {
  static constexpr int kTaps = 2;

  int taps[kTaps];

  explicit AverageRows(const Place& place) : taps{place.nearest, place.nearest + 1} {}
  KIP_INLINE U8 operator()(const U8 (&v)[kTaps]) const { return hn::AverageRound(v[0], v[1]); }
};

/// Sums of weighted bytes of two rows, for bytes in 16-bit lanes that pack to the bytes' order.
KIP_INLINE I16 lowerSums(U8 a, U8 b, I8 weights) { return dotBytes(hn::InterleaveLower(a, b), weights); }
KIP_INLINE I16 upperSums(U8 a, U8 b, I8 weights) {
  return dotBytes(hn::InterleaveUpper(Tag<uint8_t>(), a, b), weights);
}

/// Twice the rows: the even ones are the source's, the odd ones (9 (b + c) - a - d + 8) >> 4 of the four rows around.
struct FourTap : RuleBase {
  static constexpr int kTaps = 4;
  static constexpr bool kAlike = false;
  static bool copies(int row) { return row % 2 == 0; }

  int taps[kTaps];
  I8 inner = keepBytePairs(9, 9), outer = keepBytePairs(-1, -1);
  I16 half = keepInRegister<int16_t>(8);

  KIP_INLINE explicit FourTap(const Place& place) {
    for (int t = 0; t < kTaps; ++t) taps[t] = std::clamp(place.nearest - 1 + t, 0, place.rows - 1);
  }
  KIP_INLINE U8 operator()(const U8 (&v)[kTaps]) const {
    const auto scaled = [&](I16 a, I16 b) KIP_INLINE_LAMBDA { return hn::ShiftRight<4>(hn::Add(hn::Add(a, b), half)); };
    return packBytes(scaled(lowerSums(v[1], v[2], inner), lowerSums(v[0], v[3], outer)),
                     scaled(upperSums(v[1], v[2], inner), upperSums(v[0], v[3], outer)));
  }
};

/// Two rows of one field with weights that sum to 2^kBits. Rows of different fields never mix.
template <int kBits>
struct OfField : RuleBase {
  static constexpr int kTaps = 2;
  static constexpr int kGroup = 4;
  static constexpr bool kAlike = false;

  int taps[kTaps];
  I8 weights;
  I16 half = keepInRegister<int16_t>(1 << (kBits - 1));

  KIP_INLINE OfField(int upper, int upperWeight)
      : taps{upper, upper + 2}, weights(keepBytePairs(upperWeight, (1 << kBits) - upperWeight)) {}
  KIP_INLINE U8 operator()(const U8 (&v)[kTaps]) const {
    const auto scaled = [&](I16 sums) KIP_INLINE_LAMBDA { return hn::ShiftRight<kBits>(hn::Add(sums, half)); };
    return packBytes(scaled(lowerSums(v[0], v[1], weights)), scaled(upperSums(v[0], v[1], weights)));
  }
};

/// Four rows to two, one of each field.
struct FieldsToHalf : OfField<2> {
  KIP_INLINE explicit FieldsToHalf(const Place& place)
      : OfField(4 * (place.row / 2) + place.row % 2, place.row % 2 == 0 ? 3 : 1) {}
};

/// Two rows, one of each field, to four. Above the first row and below the last row of a field that row stands in.
struct FieldsToDouble : OfField<3> {
  KIP_INLINE explicit FieldsToDouble(const Place& place) : OfField(upper(place.row), upperWeight(place.row)) {
    if (taps[0] < 0) taps[0] = taps[1];
    if (taps[1] >= place.rows) taps[1] = taps[0];
  }

 private:
  static int upper(int row) { return 2 * (row / 4) - (row % 4 < 2 ? 2 : 0) + row % 2; }
  static int upperWeight(int row) {
    constexpr int kWeights[4] = {1, 3, 5, 7};
    return kWeights[row % 4];
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// The walks

template <class Rule, class Lane, int kTo, int kFrom>
KIP_INLINE Chroma<kTo> resample(const Chroma<kFrom>& c) {
  if constexpr (kTo == kFrom) {
    return c;
  } else if constexpr (kTo > kFrom) {
    return {{as<uint8_t>(Rule::halve(Tag<Lane>(), as<Lane>(c.part[0]), as<Lane>(c.part[1])))}};
  } else {
    const Vector<Lane> v = as<Lane>(c.part[0]);
    Vector<Lane> lower, upper;
    sideBySide<Lane>(v, v, lower, upper);
    return {{as<uint8_t>(lower), as<uint8_t>(upper)}};
  }
}

/// Calls batch(in, out) for all of the rows that rowsAt tells, some pixels at a time.
template <class From, class To, class RowsAt, class Batch>
KIP_INLINE void forBatchesOfRows(int first, int last, size_t pixels, const RowsAt& rowsAt, const Batch& batch) {
  forRows<From, To>(first, last, pixels, rowsAt, [&](const auto& from, const auto& to, size_t count) KIP_INLINE_LAMBDA {
    forBatches<From, To>(from, to, 0, count, batch);
  });
}

/// In pieces below the non-temporal threshold of memcpy, which is slower above it here.
void copyRow(const Kip8u* from, Kip8u* to, size_t bytes) {
  if (from == to) return;
  constexpr size_t kPiece = 512 << 10;
  for (size_t at = 0; at < bytes; at += kPiece) std::memcpy(to + at, from + at, std::min(kPiece, bytes - at));
}

void copyLuma(const Job& job, int first, int last, size_t columns) {
  forJobRows<C1<>, C1<>>(job, first, last, columns,
                         [](const auto& from, const auto& to, size_t bytes) { copyRow(from.at[0], to.at[0], bytes); });
}

/// A conversion between two layouts: whole batches of columns only.
template <class Src, class Dst, class Rule = Nearest>
struct Relayout {
  static constexpr int kColumns = std::max(Src::kAcross, Dst::kAcross);
  static constexpr int kRows = std::max({Src::kDown, Dst::kDown, Rule::kGroup});

  static void rows(const Job& job, int first, int last) {
    const int top = first * kRows, bottom = last * kRows;
    if (!Src::kPacked && !Dst::kPacked) copyLuma(job, top, bottom, columns(job));
    chroma(job, top / Dst::kDown, bottom / Dst::kDown);
  }

 private:
  using Lane = std::conditional_t<Src::kPlanes == 3 && Dst::kPlanes == 3, Sample, Pair>;
  static constexpr bool kExchange = Src::kCrFirst != Dst::kCrFirst;
  static_assert(!kExchange || Src::kPlanes == 3 || Dst::kPlanes == 3, "Cb and Cr change places where they are planes");

  /// Rows of luma that are unpacked along with a row of chroma: those from which it is made, and the next ones.
  static constexpr int kUnpacked = Src::kPacked && !Dst::kPacked ? Dst::kDown : 0;

  static size_t columns(const Job& job) { return job.width / kColumns * kColumns; }

  /// Rows of the destination's chroma.
  static void chroma(const Job& job, int first, int last) {
    if constexpr (Rule::kAlike) {
      chroma<Rule>(job, first, last);
    } else {
      for (int row = first; row < last; ++row) {
        if (Rule::copies(row)) {
          chroma<Nearest>(job, row, row + 1);
        } else {
          chroma<Rule>(job, row, row + 1);
        }
      }
    }
  }

  static Place placeOf(const Job& job, int row) {
    constexpr int kWhole = kRows / Src::kDown;
    return {row, row * Dst::kDown / Src::kDown, job.height / kRows * kWhole};
  }

  /// Rows that have the rule of the first one in common.
  template <class R>
  static void chroma(const Job& job, int first, int last) {
    constexpr int kRead = std::max(R::kTaps, kUnpacked);
    using From = RowsOf<Src, Dst::kPacked, kRead>;
    using To = RowsOf<Dst, kUnpacked>;
    const auto rowsAt = [&](int row, Rows<const Kip8u, From::kPointers>& from, Rows<Kip8u, To::kPointers>& to) {
      const Place place = placeOf(job, row);
      const R rule(place);
      if (Dst::kPacked) from.at[0] = job.src.row(0, row);
      for (int i = 0; i < kRead; ++i) {
        const int read = i < R::kTaps ? rule.taps[i] : place.nearest + i;
        From::set(from, i, Src::rows(job.src, read, kExchange && Src::kPlanes == 3));
        if (i < kUnpacked) to.at[i] = job.dst.row(0, read);
      }
      To::set(to, 0, Dst::rows(job.dst, row, kExchange && Src::kPlanes != 3));
    };
    const R rule(placeOf(job, first));
    const auto batch = [&](const auto& in, const auto& out) KIP_INLINE_LAMBDA {
      const Unpacked luma = unpackLuma<From>(in);
      Chroma<Dst::kAcross> taps[R::kTaps], c;
      for (int t = 0; t < R::kTaps; ++t) taps[t] = resample<R, Lane, Dst::kAcross>(Src::load(From::get(in, t), Lane()));
      for (int i = 0; i < 4 / Dst::kAcross; ++i) {
        U8 parts[R::kTaps];
        for (int t = 0; t < R::kTaps; ++t) parts[t] = taps[t].part[i];
        c.part[i] = rule(parts);
      }
      if constexpr (Dst::kPacked) {
        Dst::store(Luma::load(in.at[0]), c, out);
      } else {
        for (int i = 0; i < kUnpacked; ++i) luma.row[i].store(out.at[i]);
        Dst::store(c, To::get(out, 0), Lane());
      }
    };
    forBatchesOfRows<From, To>(first, last, columns(job), rowsAt, batch);
  }

  struct Unpacked {
    Luma row[std::max(kUnpacked, 1)];
  };
  template <class From>
  KIP_INLINE static Unpacked unpackLuma(const Rows<const Kip8u, From::kPointers>& from) {
    Unpacked luma;
    if constexpr (kUnpacked > 0) {
      for (int i = 0; i < kUnpacked; ++i) luma.row[i] = Src::luma(From::get(from, i).at[0]);
    }
    return luma;
  }
};

/// Chroma of every fourth column and row to every second: the new columns, then the new rows, are rounded averages of
/// their neighbours. Where there is no neighbour to the right or below, the nearest sample stands in.
struct Double1620 {
  using Src = YCbCr1620P3;
  using Dst = YCbCr420P3;

  static void rows(const Job& job, int first, int last) {
    copyLuma(job, first * Src::kDown, last * Src::kDown, job.width);
    for (int row = 2 * first; row < 2 * last; ++row) chroma(job, row);
  }

 private:
  static void chroma(const Job& job, int row) {
    const int upper = row / 2, lower = std::min(upper + 1, job.height / Src::kDown - 1);
    if (row % 2 == 0) {
      chroma<1>(job, row, {upper});
    } else {
      chroma<2>(job, row, {upper, lower});
    }
  }

  /// From kTaps rows, each twice: as it is and one sample further on.
  template <int kTaps>
  static void chroma(const Job& job, int row, const int (&taps)[kTaps]) {
    using From = RowsOf<Src, 0, 2 * kTaps>;
    Rows<const Kip8u, From::kPointers> inner, last;
    const size_t end = job.width - Src::kAcross;
    for (int t = 0; t < kTaps; ++t) {
      const auto samples = Src::rows(job.src, taps[t], false);
      From::set(inner, 2 * t, samples), From::set(inner, 2 * t + 1, advance<Src>(samples, Src::kAcross));
      From::set(last, 2 * t, samples), From::set(last, 2 * t + 1, samples);
    }
    const auto to = Dst::rows(job.dst, row, false);
    forBatches<From, Dst>(inner, to, 0, end, Batch<kTaps>());
    forBatches<From, Dst>(last, to, end, job.width, Batch<kTaps>());
  }

  template <int kTaps>
  struct Batch {
    template <class From>
    KIP_INLINE void operator()(const From& in, const Rows<Kip8u, Dst::kPointers>& out) const {
      Chroma<2> c = doubled(in, 0);
      if constexpr (kTaps == 2) {
        const Chroma<2> lower = doubled(in, 1);
        for (int i = 0; i < 2; ++i) c.part[i] = hn::AverageRound(c.part[i], lower.part[i]);
      }
      Dst::store(c, out, Sample());
    }

   private:
    template <class From>
    KIP_INLINE static Chroma<2> doubled(const From& in, int tap) {
      using Source = RowsOf<Src, 0, 2 * kTaps>;
      const U8 here = Src::load(Source::get(in, 2 * tap), Sample()).part[0];
      const U8 next = Src::load(Source::get(in, 2 * tap + 1), Sample()).part[0];
      Chroma<2> c;
      sideBySide<uint8_t>(here, hn::AverageRound(here, next), c.part[0], c.part[1]);
      return c;
    }
  };
};

/// Packed 4:2:2 with the four bytes of each pixel pair in another order.
template <uint8_t k0, uint8_t k1, uint8_t k2, uint8_t k3>
struct Reorder {
  static void rows(const Job& job, int first, int last) {
    const auto rowsAt = [&](int y, Rows<const Kip8u, 1>& from, Rows<Kip8u, 1>& to) {
      from.at[0] = job.src.row(0, y), to.at[0] = job.dst.row(0, y);
    };
    const size_t bytes = 4 * static_cast<size_t>(job.width / 2);
    forBatchesOfRows<Luma, Luma>(first, last, bytes, rowsAt, [&](const auto& in, const auto& out) KIP_INLINE_LAMBDA {
      const auto [left, right] = Luma::load(in.at[0]).part;
      Luma{{reordered(left), reordered(right)}}.store(out.at[0]);
    });
  }

 private:
  KIP_INLINE static U8 reordered(U8 v) {
    if constexpr (kHasByteShuffle) return shuffleBlocks(v, kOrder);
    return LaneShuffle<k0, k1, k2, k3>::of(v);
  }

  alignas(16) static constexpr uint8_t kOrder[16] = {k0,      k1,      k2,      k3,     4 + k0, 4 + k1,
                                                     4 + k2,  4 + k3,  8 + k0,  8 + k1, 8 + k2, 8 + k3,
                                                     12 + k0, 12 + k1, 12 + k2, 12 + k3};
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "lumachroma/rules.h"

namespace kip {
constexpr Rules k420 = {.minWidth = 2, .planesBeforeSize = true, .rowsPerGroup = 2, .warnWidth = 2, .warnHeight = 2};
constexpr Rules k411And420 = {
    .minWidth = 4, .planesBeforeSize = true, .rowsPerGroup = 2, .warnWidth = 4, .warnHeight = 2};
constexpr Rules k1620 = {.minWidth = 4, .minHeight = 4, .sizeUnit = 4, .planesBeforeSize = true, .rowsPerGroup = 4};
constexpr Rules kInterlaced = {.minWidth = 2,
                               .planesBeforeSize = true,
                               .rowsPerGroup = 4,
                               .warnWidth = 2,
                               .warnHeight = 4,
                               .threads = Threads::kFrom128By132};
constexpr Rules kInterlacedFrom4Rows = {.minWidth = 2,
                                        .minHeight = 4,
                                        .planesBeforeSize = true,
                                        .rowsPerGroup = 4,
                                        .warnWidth = 2,
                                        .warnHeight = 4,
                                        .threads = Threads::kFrom128By132};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "lumachroma/layouts-functions.inc"
#include "engine/functions-inl.h"
