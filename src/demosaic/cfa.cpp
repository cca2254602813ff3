// Bilinear interpolation of a Bayer pattern, with green along the smaller of two gradients.

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "demosaic/cfa.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "demosaic/bayer.h"
#include "engine/pixels-inl.h"

#ifndef KIP_DEMOSAIC_CFA_
#define KIP_DEMOSAIC_CFA_
namespace kip {

/// Green looks at gradients except on this many outermost lines, which is also how far it looks.
constexpr int kGradientReach = 2;
constexpr int kRows = 2 * kGradientReach + 1;

/// The row to interpolate, and those above and below that take part.
template <class T>
struct RowsAround {
  const T* at[kRows];

  const T* row(int dy) const { return at[kGradientReach + dy]; }
};

}  // namespace kip
#endif

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

template <class V>
KIP_INLINE V difference(V a, V b) {
  return hn::Or(hn::SaturatedSub(a, b), hn::SaturatedSub(b, a));
}

/// Two samples and their mean.
template <class V>
struct Two {
  KIP_INLINE Two(V first, V second) : a(first), b(second), mean(hn::AverageRound(a, b)) {}
  V a, b, mean;
};

/// The mean of four: that of two means, less one where these have been rounded up and so is their mean.
template <class V>
KIP_INLINE V meanOf(const Two<V>& p, const Two<V>& q) {
  const V someRoundedUp = hn::Or(hn::Xor(p.a, p.b), hn::Xor(q.a, q.b));
  const V excess = hn::And(someRoundedUp, hn::Xor(p.mean, q.mean));
  return hn::Sub(hn::AverageRound(p.mean, q.mean), hn::And(excess, hn::Set(hn::DFromV<V>(), 1)));
}

/// One phase of the pattern: the row's own colour beside green is red or blue. Lanes that are 0 in `chroma` are green.
template <class T, bool kOwnIsRed, bool kSteered>
struct Phase {
  using V = Vector<T>;

  KIP_INLINE static Pixels<V> interpolate(const RowsAround<T>& rows, ptrdiff_t x, V chroma) {
    const auto at = [&](int dx, int dy) KIP_INLINE_LAMBDA { return hn::LoadU(Tag<T>(), rows.row(dy) + x + dx); };
    const auto isChroma = hn::MaskFromVec(chroma);
    const V centre = at(0, 0);
    const Two<V> beside(at(-1, 0), at(1, 0)), stacked(at(0, -1), at(0, 1));
    const V corners = meanOf(Two<V>(at(-1, -1), at(1, -1)), Two<V>(at(-1, 1), at(1, 1)));
    V green = meanOf(beside, stacked);
    if constexpr (kSteered) {
      const V dV = difference(at(0, -2), at(0, 2)), dH = difference(at(-2, 0), at(2, 0));
      const V directed =
          hn::IfThenElse(hn::Eq(hn::SaturatedSub(dV, dH), hn::Zero(Tag<T>())), stacked.mean, beside.mean);
      green = hn::IfThenElse(hn::Eq(dV, dH), green, directed);
    }
    const V own = hn::IfThenElse(isChroma, centre, beside.mean);
    const V other = hn::IfThenElse(isChroma, corners, stacked.mean);
    green = hn::IfThenElse(isChroma, green, centre);
    return kOwnIsRed ? Pixels<V>(own, green, other) : Pixels<V>(other, green, own);
  }
};

/// One row of a call. Columns are those of the image.
template <class T>
struct RowJob {
  RowsAround<T> rows;
  int imageWidth;
  bool startsGreen;
  Region region;
  Kip8u* to;  ///< where the region's first column goes

  /// What is not green among the columns from x on.
  KIP_INLINE Vector<T> chromaFrom(int x) const {
    const auto low = as<T>(hn::Set(Tag<hwy::MakeWide<T>>(), static_cast<T>(-1)));
    return startsGreen == (x % 2 == 0) ? hn::Not(low) : low;
  }
  KIP_INLINE Rows<Kip8u, 1> toColumn(int x) const {
    return {{to + static_cast<ptrdiff_t>(x - region.left) * ptrdiff_t{3 * sizeof(T)}}};
  }
};

/// Columns first .. last - 1, fewer than a vector, from a copy of the mirrored neighbourhood.
template <class T, bool kOwnIsRed, bool kSteered>
void fewColumns(const RowJob<T>& job, int first, int last) {
  constexpr int kWidth = kLanes<T> + 2 * kGradientReach;
  T around[kRows][kWidth] = {};
  RowsAround<T> rows;
  for (int i = 0; i < kRows; ++i) {
    for (int64_t x = first - kGradientReach; x < int64_t{last} + kGradientReach; ++x) {
      around[i][x - first + kGradientReach] = loadSample<T>(job.rows.at[i] + mirrored(x, job.imageWidth));
    }
    rows.at[i] = around[i] + kGradientReach;
  }
  PaddedBatch<C3<T>> out;
  C3<T>().store(Phase<T, kOwnIsRed, kSteered>::interpolate(rows, 0, job.chromaFrom(first)), out.rows);
  out.copyTo(job.toColumn(first), last - first);
}

/// Columns first .. last - 1, all of which have kGradientReach neighbours on both sides. The last vector overlaps the
/// one before.
template <class T, bool kOwnIsRed, bool kSteered>
void columns(const RowJob<T>& job, int first, int last) {
  constexpr int kStep = kLanes<T>;
  if (last - first < kStep) return fewColumns<T, kOwnIsRed, kSteered>(job, first, last);
  const auto vector = [&](int x, Vector<T> chroma) KIP_INLINE_LAMBDA {
    C3<T>().store(Phase<T, kOwnIsRed, kSteered>::interpolate(job.rows, x, chroma), job.toColumn(x));
  };
  const Vector<T> chroma = job.chromaFrom(first);
  int x = first;
  for (; last - x >= kStep; x += kStep) vector(x, chroma);
  if (x < last) vector(last - kStep, job.chromaFrom(last));
}

template <class T, bool kOwnIsRed, bool kSteered>
void interpolateRow(const RowJob<T>& job) {
  const auto [left, top, right, bottom] = job.region;
  const int firstInner = kGradientReach, lastInner = std::max(job.imageWidth - kGradientReach, firstInner);
  const auto within = [&, left = left, right = right](int first, int last, auto&& convert) {
    first = std::max(first, left), last = std::min(last, right);
    if (first < last) convert(job, first, last);
  };
  within(0, firstInner, fewColumns<T, kOwnIsRed, false>);
  within(firstInner, lastInner, columns<T, kOwnIsRed, kSteered>);
  within(lastInner, job.imageWidth, fewColumns<T, kOwnIsRed, false>);
}

template <class T>
void interpolateRegion(const BayerJob& job) {
  static constexpr void (*kInterpolate[2][2])(const RowJob<T>&) = {
      {interpolateRow<T, false, false>, interpolateRow<T, false, true>},
      {interpolateRow<T, true, false>, interpolateRow<T, true, true>}};
  for (int64_t y = job.region.top; y < job.region.bottom; ++y) {
    const bool steered = y >= kGradientReach && y < job.size.height - kGradientReach;
    RowJob<T> row = {{}, job.size.width, job.isGreen(0, y), job.region, job.dstRow(y)};
    for (int i = 0; i < kRows; ++i) row.rows.at[i] = reinterpret_cast<const T*>(job.row(y - kGradientReach + i));
    kInterpolate[job.hasRed(y)][steered](row);
  }
}

void interpolate8u(const BayerJob& job) { interpolateRegion<Kip8u>(job); }
void interpolate16u(const BayerJob& job) { interpolateRegion<Kip16u>(job); }

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
namespace {

HWY_EXPORT(interpolate8u);
HWY_EXPORT(interpolate16u);

constexpr int kSmallest = 2;

template <class T>
KipStatus interpolate(void (*kernel)(const BayerJob&), const T* src, KipiRect rect, KipiSize size, int step, T* dst,
                      int dstStep, KipiBayerGrid grid) {
  if (const KipStatus status = checkBayer(src, dst, size, kSmallest, grid)) return status;
  const Region region = cutTo(size, rect);
  if (rect.x < 0 || rect.y < 0 || region.empty()) return kipStatusOk;
  kernel({reinterpret_cast<const Kip8u*>(src), step, size, grid, region, reinterpret_cast<Kip8u*>(dst), dstStep});
  return kipStatusOk;
}

}  // namespace
}  // namespace kip

using namespace kip;

KipStatus kipiCFAToRGB_8u_C1C3R(const Kip8u* pSrc, KipiRect srcRoi, KipiSize srcSize, int srcStep, Kip8u* pDst,
                                int dstStep, KipiBayerGrid grid) {
  return interpolate(HWY_DYNAMIC_DISPATCH(interpolate8u), pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid);
}
KipStatus kipiCFAToRGB_16u_C1C3R(const Kip16u* pSrc, KipiRect srcRoi, KipiSize srcSize, int srcStep, Kip16u* pDst,
                                 int dstStep, KipiBayerGrid grid) {
  return interpolate(HWY_DYNAMIC_DISPATCH(interpolate16u), pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid);
}
#endif  // HWY_ONCE
