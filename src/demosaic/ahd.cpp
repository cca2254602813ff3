// Adaptive homogeneity-directed demosaicing: K. Hirakawa and T. W. Parks, "Adaptive homogeneity-directed demosaicing
// algorithm", IEEE Transactions on Image Processing 14(3), 2005.
//
// Every pixel is interpolated twice, along its row and along its column, and the candidate wins whose neighbourhood is
// the more homogeneous in CIE L*a*b*. Everything is single precision. Up to and including the candidates the values are
// multiples of 1/16 that fit 20 bits, so nothing is rounded and the order of operations does not matter. From then on
// the evaluation order is that of the code, and it does not tell rows from columns: the transpose of an
// image gives the transpose of the result.
//
// The region is done in tiles of some hundred columns, and each tile row by row, in five stages, each as many rows
// behind the one before as it needs. What they hand on lies in rings of three to five rows and stays in the cache.
// Beyond the edges all stages work on the mirrored image, so edges are no special case.

#include <cstdint>

#include "hwy/cache_control.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "demosaic/ahd.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "demosaic/bayer.h"
#include "engine/pixels-inl.h"

#ifndef KIP_DEMOSAIC_AHD_
#define KIP_DEMOSAIC_AHD_
namespace kip {

/// Linear RGB to XYZ over the white point over the samples' full scale: D65 white becomes X = Y = Z = 1.
struct ToXyz {
  float x[3], y[3], z[3];
  float fullScale;
};
constexpr double kWhiteX = 0.950456, kWhiteZ = 1.088754;
constexpr float over255(double xyz, double white) { return static_cast<float>(xyz / white / 255); }
constexpr ToXyz kToXyz8u = {{over255(0.412453, kWhiteX), over255(0.357580, kWhiteX), over255(0.180423, kWhiteX)},
                            {over255(0.212671, 1), over255(0.715160, 1), over255(0.072169, 1)},
                            {over255(0.019334, kWhiteZ), over255(0.119193, kWhiteZ), over255(0.950227, kWhiteZ)},
                            255};
constexpr ToXyz kToXyz16u = {{6.6216944e-6f, 5.74074e-6f, 2.896587e-6f},
                             {3.2451514e-6f, 1.0912642e-5f, 1.1012283e-6f},
                             {2.7096837e-7f, 1.6705045e-6f, 1.3317548e-5f},
                             65535};

/// A pixel depends on votes one row and one column around it, those on colours one further, those on greens one
/// further, those on samples two further.
constexpr int kGreenReach = 3;
constexpr int kSampleReach = kGreenReach + 2;

constexpr int kWidest = 16;  // floats in the widest vector
constexpr int kRow = 256;    // columns in whole vectors
constexpr int kTile = kRow - 2 * kGreenReach;

/// One value for each column of a tile and kGreenReach columns around it. The stages compute whole vectors and look at
/// neighbours, so there is space on both sides that may be read.
template <class T>
class Row {
 public:
  T* at(int x) { return values_ + kWidest + x; }
  const T* at(int x) const { return values_ + kWidest + x; }

 private:
  alignas(64) T values_[kWidest + kRow + kWidest];
};

struct Green {
  Row<float> value;
  Row<float> difference;  ///< sample - green at red and blue samples, 0 at green ones
};
struct Colours {
  Row<float> r, g, b;
};
struct Labs {
  Row<float> l, a, b;
};

/// The same as interpolated in the one and in the other direction.
template <class T>
struct Both {
  T horizontal, vertical;
};

/// The last kDepth rows of something, by their number in the tile, which begins above 0.
template <class T, int kDepth>
class Ring {
 public:
  T& operator[](int64_t y) { return rows_[(y + kSampleReach * kDepth) % kDepth]; }

 private:
  T rows_[kDepth];
};

/// What the stages hand on.
struct TileRows {
  Ring<Row<float>, 5> samples;
  Ring<Both<Green>, 3> greens;
  Ring<Both<Colours>, 3> colours;
  Ring<Both<Labs>, 3> labs;
  Ring<Row<int32_t>, 3> votes;
  alignas(64) Kip16u pixels[3][kRow];  ///< planes of the finished row, or of bytes
};

}  // namespace kip
#endif

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

constexpr int kFloats = kLanes<float>;

KIP_INLINE F32 load(const float* from) { return hn::LoadU(Tag<float>(), from); }
KIP_INLINE void store(F32 v, float* to) { hn::Store(v, Tag<float>(), to); }
KIP_INLINE F32 limit(F32 v, F32 low, F32 high) { return hn::Min(hn::Max(v, low), high); }

// ---------------------------------------------------------------------------------------------------------------------
// Samples

/// Columns first .. last - 1 of the mirrored image's row as floats.
template <class T>
void samples(const T* row, int width, int64_t first, int64_t last, float* to) {
  const hn::Rebind<T, Tag<float>> d;
  const auto single = [&](int64_t x) { to[x - first] = loadSample<T>(row + mirrored(x, width)); };
  int64_t x = first;
  for (; x < 0; ++x) single(x);
  for (; x + kFloats <= std::min<int64_t>(last, width); x += kFloats) {
    const I32 whole = hn::PromoteTo(Tag<int32_t>(), hn::LoadU(d, row + x));
    hn::StoreU(hn::ConvertTo(Tag<float>(), whole), Tag<float>(), to + x - first);
  }
  for (; x < last; ++x) single(x);
}

// ---------------------------------------------------------------------------------------------------------------------
// Green

/// Green amid two green samples a and b and, one further, two samples of the centre's own colour.
KIP_INLINE F32 greenAmid(F32 a2, F32 a, F32 centre, F32 b, F32 b2) {
  const F32 sum = hn::Add(hn::Add(a, centre), b);
  const F32 g = hn::Mul(hn::Sub(hn::Add(sum, sum), hn::Add(a2, b2)), set(0.25f));
  return limit(g, hn::Min(a, b), hn::Max(a, b));
}

/// Green in both directions at the row's red or blue samples, which are all but every other column.
void greens(const float* const rows[5], bool startsGreen, int count, Both<Green>& to) {
  const auto odd = hn::Eq(hn::And(hn::Iota(Tag<int32_t>(), 0), set<int32_t>(1)), set<int32_t>(1));
  const auto isGreen = hn::RebindMask(Tag<float>(), startsGreen ? hn::Not(odd) : odd);
  for (int x = 0; x < count; x += kFloats) {
    const float* row = rows[2] + x;
    const F32 centre = load(row);
    const auto put = [&](F32 amid, Green& green) KIP_INLINE_LAMBDA {
      const F32 g = hn::IfThenElse(isGreen, centre, amid);
      store(g, green.value.at(x));
      store(hn::Sub(centre, g), green.difference.at(x));
    };
    put(greenAmid(load(row - 2), load(row - 1), centre, load(row + 1), load(row + 2)), to.horizontal);
    put(greenAmid(load(rows[0] + x), load(rows[1] + x), centre, load(rows[3] + x), load(rows[4] + x)), to.vertical);
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Red and blue

struct Weights {
  explicit Weights(const float (&w)[3]) : r(keepInRegister(w[0])), g(keepInRegister(w[1])), b(keepInRegister(w[2])) {}
  KIP_INLINE F32 sum(F32 red, F32 green, F32 blue) const {
    return hn::Add(hn::Add(hn::Mul(red, r), hn::Mul(green, g)), hn::Mul(blue, b));
  }
  F32 r, g, b;
};

/// The candidates of a row in one direction, and their X, Y and Z in the place of L*, a* and b*.
///
/// A row has samples of one of red and blue, its own colour, and the rows above and below have the other's. Differences
/// are 0 at green samples, so one sum serves all columns: for the own colour the sample's own difference, or the mean
/// of those left and right of a green sample; for the other the mean of the four around, or of the two above and below
/// a green sample.
template <bool kOwnIsRed>
void colours(const Green& above, const Green& row, const Green& below, const ToXyz& toXyz, int count, Colours& to,
             Labs& xyz) {
  const Weights toX(toXyz.x), toY(toXyz.y), toZ(toXyz.z);
  const F32 low = hn::Zero(Tag<float>()), high = keepInRegister(toXyz.fullScale), half = keepInRegister(0.5f),
            quarter = keepInRegister(0.25f);
  for (int x = 0; x < count; x += kFloats) {
    const auto sum = [](const Green& p, int px, const Green& q, int qx)
                         KIP_INLINE_LAMBDA { return hn::Add(load(p.difference.at(px)), load(q.difference.at(qx))); };
    const F32 beside = sum(row, x - 1, row, x + 1), stacked = sum(above, x, below, x);
    const F32 around = hn::Add(sum(above, x - 1, below, x + 1), sum(above, x + 1, below, x - 1));
    const F32 ownDifference = hn::Add(load(row.difference.at(x)), hn::Mul(beside, half));
    const F32 otherDifference = hn::Add(hn::Mul(stacked, half), hn::Mul(around, quarter));
    const F32 g = load(row.value.at(x));
    const F32 own = limit(hn::Add(g, ownDifference), low, high);
    const F32 other = limit(hn::Add(g, otherDifference), low, high);
    const F32 r = kOwnIsRed ? own : other, b = kOwnIsRed ? other : own;
    store(r, to.r.at(x)), store(g, to.g.at(x)), store(b, to.b.at(x));
    store(toX.sum(r, g, b), xyz.l.at(x)), store(toY.sum(r, g, b), xyz.a.at(x)), store(toZ.sum(r, g, b), xyz.b.at(x));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// L*a*b*

struct Lab {
  F32 l, a, b;
};
KIP_INLINE Lab loadLab(const Labs& row, int x) { return {load(row.l.at(x)), load(row.a.at(x)), load(row.b.at(x))}; }

/// X, Y and Z over the white point to L*a*b*.
class ToLab {
 public:
  ToLab() {}

  KIP_INLINE Lab operator()(F32 x, F32 y, F32 z) const {
    const F32 fx = compressed(x), fy = compressed(y), fz = compressed(z);
    return {hn::Sub(hn::Mul(fy, k116_), k16_), hn::Mul(hn::Sub(fx, fy), k500_), hn::Mul(hn::Sub(fy, fz), k200_)};
  }

 private:
  KIP_INLINE F32 compressed(F32 t) const {
    const F32 linear = hn::Add(hn::Mul(t, slope_), offset_);
    return hn::IfThenElse(hn::Gt(t, smallest_), cubeRoot(t), linear);
  }

  /// The cube root of t > 0, less than one unit in the last place off: a third of exponent and mantissa as a first
  /// guess, then twice Halley's iteration.
  KIP_INLINE F32 cubeRoot(F32 t) const {
    const F32 third = hn::Mul(hn::ConvertTo(Tag<float>(), as<int32_t>(t)), third_);
    F32 y = as<float>(hn::Add(truncated(third), twoThirdsOfBias_));
    for (int i = 0; i < 2; ++i) {
      const F32 y3 = hn::Mul(hn::Mul(y, y), y);
      y = hn::Sub(y, hn::Mul(y, hn::Div(hn::Sub(y3, t), hn::Add(hn::Add(y3, y3), t))));
    }
    return y;
  }

  F32 k116_ = keepInRegister(116.0f), k16_ = keepInRegister(16.0f), k500_ = keepInRegister(500.0f),
      k200_ = keepInRegister(200.0f);
  F32 smallest_ = keepInRegister(0.008856f), slope_ = keepInRegister(7.787037f), offset_ = keepInRegister(0.13793103f);
  F32 third_ = keepInRegister(0.33333334f);
  I32 twoThirdsOfBias_ = keepInRegister<int32_t>(709958130);
};

/// A loop of its own: the roots are long chains of operations, and the shorter the loop, the more of them overlap.
void labs(int count, Labs& row) {
  const ToLab toLab;
  for (int x = 0; x < count; x += kFloats) {
    const Lab xyz = loadLab(row, x), lab = toLab(xyz.l, xyz.a, xyz.b);
    store(lab.l, row.l.at(x)), store(lab.a, row.a.at(x)), store(lab.b, row.b.at(x));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Homogeneity

/// How far two colours are apart in lightness, and in chroma, squared.
struct Distance {
  F32 l, c;
};
KIP_INLINE Distance distance(const Lab& p, const Lab& q) {
  const F32 a = hn::Sub(p.a, q.a), b = hn::Sub(p.b, q.b);
  return {hn::Abs(hn::Sub(p.l, q.l)), hn::Add(hn::Mul(a, a), hn::Mul(b, b))};
}
KIP_INLINE Distance larger(const Distance& p, const Distance& q) { return {hn::Max(p.l, q.l), hn::Max(p.c, q.c)}; }
KIP_INLINE Distance smaller(const Distance& p, const Distance& q) { return {hn::Min(p.l, q.l), hn::Min(p.c, q.c)}; }

/// -1 where a distance is within the tolerance, else 0.
KIP_INLINE I32 within(const Distance& distance, const Distance& tolerance) {
  const auto both = hn::And(hn::Le(distance.l, tolerance.l), hn::Le(distance.c, tolerance.c));
  return as<int32_t>(hn::VecFromMask(Tag<float>(), both));
}

/// For each pixel, how many of its eight neighbours look like it when interpolated along the row, less how many when
/// interpolated along the column. How different they may look is up to the less busy of the two directions: as much as
/// the two neighbours along it.
void votes(const Both<Labs>& above, const Both<Labs>& row, const Both<Labs>& below, int count, Row<int32_t>& to) {
  for (int x = 0; x < count; x += kFloats) {
    const Lab h = loadLab(row.horizontal, x), v = loadLab(row.vertical, x);
    const auto across = [&](const Both<Labs>& q, int qx)
                            KIP_INLINE_LAMBDA { return distance(h, loadLab(q.horizontal, qx)); };
    const auto down = [&](const Both<Labs>& q, int qx)
                          KIP_INLINE_LAMBDA { return distance(v, loadLab(q.vertical, qx)); };
    const Distance tolerance =
        smaller(larger(across(row, x - 1), across(row, x + 1)), larger(down(above, x), down(below, x)));
    const auto alike = [&](const auto& apart) KIP_INLINE_LAMBDA {
      const auto at = [&](const Both<Labs>& q, int qx) KIP_INLINE_LAMBDA { return within(apart(q, qx), tolerance); };
      const auto three = [&](const Both<Labs>& q)
                             KIP_INLINE_LAMBDA { return hn::Add(hn::Add(at(q, x - 1), at(q, x + 1)), at(q, x)); };
      return hn::Add(hn::Add(at(row, x - 1), at(row, x + 1)), hn::Add(three(above), three(below)));
    };
    // Counts are negative.
    hn::Store(hn::Sub(alike(down), alike(across)), Tag<int32_t>(), to.at(x));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Choice

KIP_INLINE I32 sumOfThree(const Row<int32_t>& row, int x) {
  const auto at = [&](int i) KIP_INLINE_LAMBDA { return hn::LoadU(Tag<int32_t>(), row.at(i)); };
  return hn::Add(hn::Add(at(x - 1), at(x + 1)), at(x));
}

/// The candidates with the more votes around them, or the mean of both, as planes of whole samples.
template <class T>
void choose(const Row<int32_t>& above, const Row<int32_t>& row, const Row<int32_t>& below,
            const Both<Colours>& candidates, int width, T* const planes[3]) {
  const Colours& h = candidates.horizontal;
  const Colours& v = candidates.vertical;
  for (int x = 0; x < width; x += kFloats) {
    const int from = x + kGreenReach;
    const I32 sum = hn::Add(hn::Add(sumOfThree(above, from), sumOfThree(below, from)), sumOfThree(row, from));
    const I32 draw = hn::Zero(Tag<int32_t>());
    const auto isHorizontal = hn::RebindMask(Tag<float>(), hn::Gt(sum, draw));
    const auto isDraw = hn::RebindMask(Tag<float>(), hn::Eq(sum, draw));
    const auto channel = [&](const Row<float>& first, const Row<float>& second, T* to) KIP_INLINE_LAMBDA {
      const F32 p = load(first.at(from)), q = load(second.at(from));
      const F32 mean = hn::Mul(hn::Add(p, q), set(0.5f));
      const F32 chosen = hn::IfThenElse(isDraw, mean, hn::IfThenElse(isHorizontal, p, q));
      const hn::Rebind<T, Tag<float>> d;
      hn::StoreU(hn::DemoteTo(d, rounded(chosen)), d, to + x);
    };
    channel(h.r, v.r, planes[0]);
    channel(h.g, v.g, planes[1]);
    channel(h.b, v.b, planes[2]);
  }
}

template <class T>
void interleave(T* const planes[3], int width, Kip8u* to) {
  const auto bytes = [&](int c) { return reinterpret_cast<const Kip8u*>(planes[c]); };
  forBatches<P3<T>, C3<T>>({{bytes(0), bytes(1), bytes(2)}}, {{to}}, 0, width,
                           [](const auto& from, const auto& to)
                               KIP_INLINE_LAMBDA { C3<T>().store(P3<T>().load(from), to); });
}

// ---------------------------------------------------------------------------------------------------------------------

/// Fetches bytes ahead of their use: the rows of a tile lie too far apart for the processor to foresee them.
void prefetch(const Kip8u* from, ptrdiff_t count) {
  constexpr ptrdiff_t kCacheLine = 64;
  for (ptrdiff_t i = 0; i < count; i += kCacheLine) hwy::Prefetch(from + i);
}

/// Some columns of the region.
template <class T>
class Tile {
 public:
  Tile(const BayerJob& job, int left, int right, const ToXyz& toXyz, TileRows& rows)
      : job_(job), toXyz_(toXyz), rows_(rows), top_(job.region.top), left_(left), width_(right - left) {
    for (int c = 0; c < 3; ++c) planes_[c] = reinterpret_cast<T*>(rows.pixels[c]);
  }

  void run() {
    const int64_t height = job_.region.bottom - top_;
    for (int64_t y = -kSampleReach; y < height + kSampleReach; ++y) {
      // A stage that lags that many rows behind the first one begins as many rows below it.
      const auto stage = [&](int lag, void (Tile::*row)(int64_t)) {
        if (y - lag >= lag - kSampleReach) (this->*row)(y - lag);
      };
      stage(0, &Tile::sampleRow);
      stage(2, &Tile::greenRow);
      stage(3, &Tile::colourRow);
      stage(4, &Tile::voteRow);
      stage(5, &Tile::finalRow);
    }
  }

 private:
  void sampleRow(int64_t y) {
    const T* row = reinterpret_cast<const T*>(job_.row(top_ + y));
    samples(row, job_.size.width, firstColumn_ - 2, int64_t{firstColumn_} + count_ + 2, rows_.samples[y].at(-2));
    prefetch(job_.row(top_ + y + 1) + left_ * ptrdiff_t{sizeof(T)}, width_ * ptrdiff_t{sizeof(T)});
  }

  void greenRow(int64_t y) {
    const float* five[5];
    for (int i = 0; i < 5; ++i) five[i] = rows_.samples[y - 2 + i].at(0);
    greens(five, job_.isGreen(firstColumn_, top_ + y), count_, rows_.greens[y]);
  }

  void colourRow(int64_t y) {
    const auto candidates = job_.hasRed(top_ + y) ? colours<true> : colours<false>;
    const Both<Green>&above = rows_.greens[y - 1], &row = rows_.greens[y], &below = rows_.greens[y + 1];
    Both<Colours>& to = rows_.colours[y];
    Both<Labs>& lab = rows_.labs[y];
    candidates(above.horizontal, row.horizontal, below.horizontal, toXyz_, count_, to.horizontal, lab.horizontal);
    candidates(above.vertical, row.vertical, below.vertical, toXyz_, count_, to.vertical, lab.vertical);
    labs(count_, lab.horizontal);
    labs(count_, lab.vertical);
  }

  void voteRow(int64_t y) { votes(rows_.labs[y - 1], rows_.labs[y], rows_.labs[y + 1], count_, rows_.votes[y]); }

  void finalRow(int64_t y) {
    constexpr ptrdiff_t kPixel = 3 * sizeof(T);
    Kip8u* const to = job_.dstRow(top_ + y) + (left_ - job_.region.left) * kPixel;
    prefetch(to, width_ * kPixel);
    choose(rows_.votes[y - 1], rows_.votes[y], rows_.votes[y + 1], rows_.colours[y], width_, planes_);
    interleave(planes_, width_, to);
  }

  const BayerJob& job_;
  const ToXyz& toXyz_;
  TileRows& rows_;
  const int64_t top_;
  const int left_, width_;
  const int firstColumn_ = left_ - kGreenReach;
  const int count_ = (width_ + 2 * kGreenReach + kFloats - 1) / kFloats * kFloats;  // whole vectors from there
  T* planes_[3];
};

template <class T>
void demosaic(const BayerJob& job, const ToXyz& toXyz, TileRows& rows) {
  const int width = job.region.right - job.region.left, tiles = (width - 1) / kTile + 1;
  const auto edge = [&](int i) { return job.region.left + static_cast<int>(int64_t{width} * i / tiles); };
  for (int i = 0; i < tiles; ++i) Tile<T>(job, edge(i), edge(i + 1), toXyz, rows).run();
}

void demosaic8u(const BayerJob& job, TileRows& rows) { demosaic<Kip8u>(job, kToXyz8u, rows); }
void demosaic16u(const BayerJob& job, TileRows& rows) { demosaic<Kip16u>(job, kToXyz16u, rows); }

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <cstring>

#include "engine/memory.h"

namespace kip {
namespace {

HWY_EXPORT(demosaic8u);
HWY_EXPORT(demosaic16u);

constexpr int kSmallest = 5;

template <class T>
KipStatus demosaicAhd(void (*kernel)(const BayerJob&, TileRows&), const T* src, KipiRect rect, KipiSize size, int step,
                      T* dst, int dstStep, KipiBayerGrid grid) {
  if (const KipStatus status = checkBayer(src, dst, size, kSmallest, grid)) return status;
  rect.x = std::max(rect.x, 0), rect.y = std::max(rect.y, 0);
  const Region region = cutTo(size, rect);
  if (region.empty()) return kipStatusOk;
  const Scratch<Kip32f> memory(kipsMalloc_32f(sizeof(TileRows) / sizeof(Kip32f)));
  if (!memory) return kipStatusNoMemory;
  // What a stage reads beside the columns that matter is any number but must be one.
  std::memset(memory.get(), 0, sizeof(TileRows));
  kernel({reinterpret_cast<const Kip8u*>(src), step, size, grid, region, reinterpret_cast<Kip8u*>(dst), dstStep},
         *reinterpret_cast<TileRows*>(memory.get()));
  return kipStatusOk;
}

}  // namespace
}  // namespace kip

using namespace kip;

KipStatus kipiDemosaicAHD_8u_C1C3R(const Kip8u* pSrc, KipiRect srcRoi, KipiSize srcSize, int srcStep, Kip8u* pDst,
                                   int dstStep, KipiBayerGrid grid, void*, int) {
  return demosaicAhd(HWY_DYNAMIC_DISPATCH(demosaic8u), pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid);
}
KipStatus kipiDemosaicAHD_16u_C1C3R(const Kip16u* pSrc, KipiRect srcRoi, KipiSize srcSize, int srcStep, Kip16u* pDst,
                                    int dstStep, KipiBayerGrid grid, void*, int) {
  return demosaicAhd(HWY_DYNAMIC_DISPATCH(demosaic16u), pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid);
}
#endif  // HWY_ONCE
