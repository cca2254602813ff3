// Sample layouts: where the pixels of a row group lie, and how a batch of them is loaded and stored.
//
// A layout is a type with
//   kPointers            how many row pointers one row group has
//   rows(image, y)       those pointers for row group y
//   bytes(p, n)          what n pixels take up behind pointer p
//   kKeeps               whether the destination's old bytes take part in a store
//   kTakesAlpha          whether a store takes the source's fourth sample along
//   kBatch               how many pixels a load or a store is
// and loads or stores of one batch of pixels; byte layouts may have a loadWide besides, for pixels in 16-bit lanes. Its
// parameter D says how many those are: a full vector, or, where source and destination samples differ in size, as many
// as a full vector of the larger ones (SamplesLike).

#if defined(KIP_ENGINE_PIXELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_PIXELS_INL_H_
#undef KIP_ENGINE_PIXELS_INL_H_
#else
#define KIP_ENGINE_PIXELS_INL_H_
#endif

#include <cstring>
#include <utility>

#include "engine/image.h"
#include "engine/interleave-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// Where one row group's pixels lie.
template <class Byte, int kCount>
struct Rows {
  Byte* at[kCount];
};

/// Pixels as one vector per channel, in the order of the space's name (R, G, B for BGR too), and the fourth sample.
template <class V>
struct Pixels {
  Pixels() = default;
  KIP_INLINE Pixels(V first, V second, V third) : a(first), b(second), c(third) {}

  V a, b, c;
  V alpha;
};

/// The order of interleaved channels in memory: the space's own, or the reverse.
enum class Order { kForward, kReverse };

/// Byte pixels widened to 16-bit lanes: the lower and the upper half of each block, or of all.
struct WidePixels {
  Pixels<I16> lower, upper;
};

/// The tag for samples of type T, as many as there are Larger ones in a full vector.
template <class T, class Larger>
using SamplesLike = hn::Rebind<T, Tag<Larger>>;

template <class D>
constexpr bool kFullVectors = std::is_same_v<D, Tag<hn::TFromD<D>>>;
/// Half vectors, of which Highway interleaves three by byte shuffles, on targets that have none.
template <class D>
constexpr bool kUnpackedHalves = !kHasByteShuffle && std::is_same_v<D, hn::Half<Tag<hn::TFromD<D>>>>;

/// What interleaved layouts have in common.
template <class D, int kSamples>
struct Interleaved {
  using T = hn::TFromD<D>;
  static constexpr int kBatch = static_cast<int>(hn::MaxLanes(D()));
  static constexpr int kPointers = 1;
  static constexpr bool kKeeps = false;
  static constexpr bool kTakesAlpha = false;
  static constexpr size_t bytes(int, size_t pixels) { return pixels * kSamples * sizeof(T); }
  template <class Byte>
  static Rows<Byte, 1> rows(const Image<Byte>& image, int y) {
    return {{image.row(0, y)}};
  }
};

/// What planar layouts have in common.
template <class D, int kPlanes>
struct Planar {
  using T = hn::TFromD<D>;
  static constexpr int kBatch = static_cast<int>(hn::MaxLanes(D()));
  static constexpr int kPointers = kPlanes;
  static constexpr bool kKeeps = false;
  static constexpr bool kTakesAlpha = false;
  static constexpr size_t bytes(int, size_t pixels) { return pixels * sizeof(T); }
  template <class Byte>
  static Rows<Byte, kPlanes> rows(const Image<Byte>& image, int y) {
    Rows<Byte, kPlanes> rows;
    for (int p = 0; p < kPlanes; ++p) rows.at[p] = image.row(p, y);
    return rows;
  }
};

template <class T>
const T* samples(const Kip8u* p) {
  return reinterpret_cast<const T*>(p);
}
template <class T>
T* samples(Kip8u* p) {
  return reinterpret_cast<T*>(p);
}

/// Three interleaved samples.
template <class T = uint8_t, Order kOrder = Order::kForward, class D = Tag<T>>
struct C3 : Interleaved<D, 3> {
  using V = hn::Vec<D>;
  static constexpr bool kReversed = kOrder == Order::kReverse;

  KIP_INLINE Pixels<V> load(const Rows<const Kip8u, 1>& from) const {
    Pixels<V> px;
    auto& first = kOrder == Order::kForward ? px.a : px.c;
    auto& last = kOrder == Order::kForward ? px.c : px.a;
    if constexpr (kFullVectors<D>) {
      ThreeChannels<T>::load(samples<T>(from.at[0]), first, px.b, last);
    } else if constexpr (kUnpackedHalves<D>) {
      ThreeChannels<T>::loadHalves(from.at[0], first, px.b, last);
    } else {
      loadInterleaved(D(), from.at[0], first, px.b, last);
    }
    return px;
  }
  KIP_INLINE void store(const Pixels<V>& px, const Rows<Kip8u, 1>& to) const {
    const V first = kOrder == Order::kForward ? px.a : px.c, last = kOrder == Order::kForward ? px.c : px.a;
    if constexpr (kFullVectors<D>) {
      ThreeChannels<T>::store(first, px.b, last, samples<T>(to.at[0]));
    } else if constexpr (kUnpackedHalves<D>) {
      ThreeChannels<T>::storeHalves(first, px.b, last, to.at[0]);
    } else {
      storeInterleaved(D(), to.at[0], first, px.b, last);
    }
  }
};

/// Four interleaved samples, all four written: the fourth is the caller's alpha.
template <class T = uint8_t, Order kOrder = Order::kForward, class D = Tag<T>>
struct C4 : Interleaved<D, 4> {
  using V = hn::Vec<D>;

  explicit C4(const Job& job) : alpha(hn::Set(D(), static_cast<T>(job.alpha))) {}

  KIP_INLINE void store(const Pixels<V>& px, const Rows<Kip8u, 1>& to) const { storeWith(px, alpha, to); }

  KIP_INLINE static void storeWith(const Pixels<V>& px, V fourth, const Rows<Kip8u, 1>& to) {
    const V first = kOrder == Order::kForward ? px.a : px.c, last = kOrder == Order::kForward ? px.c : px.a;
    if constexpr (kFullVectors<D>) {
      FourInterleaved<T>::store(first, px.b, last, fourth, samples<T>(to.at[0]));
    } else {
      storeInterleaved(D(), to.at[0], first, px.b, last, fourth);
    }
  }

  V alpha;
};

/// Four interleaved samples whose fourth is alpha: a source gives it along, a destination keeps its own.
template <class T = uint8_t, Order kOrder = Order::kForward, class D = Tag<T>>
struct AC4 : Interleaved<D, 4> {
  using V = hn::Vec<D>;

  static constexpr bool kReversed = kOrder == Order::kReverse;
  static constexpr bool kKeeps = true;

  KIP_INLINE Pixels<V> load(const Rows<const Kip8u, 1>& from) const {
    Pixels<V> px;
    auto& first = kOrder == Order::kForward ? px.a : px.c;
    auto& last = kOrder == Order::kForward ? px.c : px.a;
    if constexpr (kFullVectors<D>) {
      FourInterleaved<T>::load(samples<T>(from.at[0]), first, px.b, last, px.alpha);
    } else {
      loadInterleaved(D(), from.at[0], first, px.b, last, px.alpha);
    }
    return px;
  }
  KIP_INLINE WidePixels loadWide(const Rows<const Kip8u, 1>& from) const requires std::is_same_v<T, uint8_t> {
    WidePixels px;
    for (int half = 0; half < 2; ++half) {
      Pixels<I16>& part = half == 0 ? px.lower : px.upper;
      auto& first = kOrder == Order::kForward ? part.a : part.c;
      auto& last = kOrder == Order::kForward ? part.c : part.a;
      FourInterleaved<T>::loadWords(from.at[0], half, first, part.b, last);
    }
    return px;
  }
  /// What pixels from loadWide are packed to, in order.
  KIP_INLINE static U8 packedInOrder(U8 v) { return unitsInOrder(v); }

  KIP_INLINE void store(const Pixels<V>& px, const Rows<Kip8u, 1>& to) const {
    if constexpr (kFullVectors<D>) {
      const V first = kOrder == Order::kForward ? px.a : px.c, last = kOrder == Order::kForward ? px.c : px.a;
      FourInterleaved<T>::storeThree(first, px.b, last, samples<T>(to.at[0]));
    } else {
      const Pixels<V> old = load({{to.at[0]}});
      C4<T, kOrder, D>::storeWith(px, old.alpha, to);
    }
  }
};

/// One plane, from the first of the channels.
template <class T = uint8_t, class D = Tag<T>>
struct C1 : Planar<D, 1> {
  using V = hn::Vec<D>;

  KIP_INLINE void store(const Pixels<V>& px, const Rows<Kip8u, 1>& to) const {
    hn::StoreU(px.a, D(), samples<T>(to.at[0]));
  }
};

/// Three planes.
template <class T = uint8_t, class D = Tag<T>>
struct P3 : Planar<D, 3> {
  using V = hn::Vec<D>;

  KIP_INLINE Pixels<V> load(const Rows<const Kip8u, 3>& from) const {
    const D d;
    return {hn::LoadU(d, samples<T>(from.at[0])), hn::LoadU(d, samples<T>(from.at[1])),
            hn::LoadU(d, samples<T>(from.at[2]))};
  }
  KIP_INLINE void store(const Pixels<V>& px, const Rows<Kip8u, 3>& to) const {
    const D d;
    hn::StoreU(px.a, d, samples<T>(to.at[0]));
    hn::StoreU(px.b, d, samples<T>(to.at[1]));
    hn::StoreU(px.c, d, samples<T>(to.at[2]));
  }
};

/// Four planes, the fourth alpha.
template <class T = uint8_t, class D = Tag<T>>
struct P4 : Planar<D, 4> {
  using V = hn::Vec<D>;
  static constexpr bool kTakesAlpha = true;

  KIP_INLINE Pixels<V> load(const Rows<const Kip8u, 4>& from) const {
    Pixels<V> px = P3<T, D>().load({{from.at[0], from.at[1], from.at[2]}});
    px.alpha = hn::LoadU(D(), samples<T>(from.at[3]));
    return px;
  }
  KIP_INLINE void store(const Pixels<V>& px, const Rows<Kip8u, 4>& to) const {
    P3<T, D>().store(px, {{to.at[0], to.at[1], to.at[2]}});
    hn::StoreU(px.alpha, D(), samples<T>(to.at[3]));
  }
};

/// A layout whose pixels are changed after they are loaded and back before they are stored: Change::of is its own
/// inverse.
template <class Layout, class Change>
struct Changed : Layout {
  using Layout::Layout;
  using P = Pixels<typename Layout::V>;

  template <class From>
  KIP_INLINE P load(const From& from) const {
    return Change::of(Layout::load(from));
  }
  template <class From>
  void loadWide(const From&) const = delete;  // the layout's own would not change them
  template <class To>
  KIP_INLINE void store(const P& px, const To& to) const {
    Layout::store(Change::of(px), to);
  }
};

struct FlipTopBits {
  template <class V>
  KIP_INLINE static Pixels<V> of(Pixels<V> px) {
    using T = hn::TFromV<V>;
    const auto top = set<T>(static_cast<T>(1u << (8 * sizeof(T) - 1)));
    px.a = hn::Xor(px.a, top), px.b = hn::Xor(px.b, top), px.c = hn::Xor(px.c, top);
    return px;
  }
};
/// A layout of signed samples as one of unsigned ones, higher by half their range.
template <class Layout>
using Biased = Changed<Layout, FlipTopBits>;

struct ReverseChannels {
  template <class V>
  KIP_INLINE static Pixels<V> of(Pixels<V> px) {
    std::swap(px.a, px.c);
    return px;
  }
};
/// Planes B, G, R as pixels in the order R, G, B.
template <class Layout>
using Reversed = Changed<Layout, ReverseChannels>;

/// Two rows of a full-resolution layout, for conversions that share chroma vertically.
template <class Layout>
struct TwoRows : Layout {
  using Layout::Layout;
  static constexpr int kEach = Layout::kPointers;
  static constexpr int kPointers = 2 * kEach;
  static constexpr size_t bytes(int p, size_t pixels) { return Layout::bytes(p % kEach, pixels); }
  template <class Byte>
  static Rows<Byte, kPointers> rows(const Image<Byte>& image, int pair) {
    const auto upper = Layout::rows(image, 2 * pair), lower = Layout::rows(image, 2 * pair + 1);
    Rows<Byte, kPointers> both;
    for (int p = 0; p < kEach; ++p) both.at[p] = upper.at[p], both.at[kEach + p] = lower.at[p];
    return both;
  }
  /// One of the two rows.
  template <class Byte>
  static Rows<Byte, kEach> row(const Rows<Byte, kPointers>& both, int which) {
    Rows<Byte, kEach> one;
    for (int p = 0; p < kEach; ++p) one.at[p] = both.at[which * kEach + p];
    return one;
  }
};

/// A layout or an arithmetic that may want to know the job.
template <class T>
T makeFor(const Job& job) {
  if constexpr (std::is_constructible_v<T, const Job&>) {
    return T(job);
  } else {
    return T();
  }
}

template <class Layout, class Byte>
KIP_INLINE Rows<Byte, Layout::kPointers> advance(Rows<Byte, Layout::kPointers> rows, size_t pixels) {
  for (int p = 0; p < Layout::kPointers; ++p) rows.at[p] += Layout::bytes(p, pixels);
  return rows;
}

/// A batch of a layout's pixels in memory of our own, so that the last, partial batch of a row can be loaded and
/// stored whole without touching anything outside the row.
template <class Layout>
class PaddedBatch {
 public:
  PaddedBatch() {
    for (int p = 0; p < Layout::kPointers; ++p) rows.at[p] = memory_[p];
  }
  template <class Byte>
  void copyFrom(const Rows<Byte, Layout::kPointers>& from, size_t pixels) {
    for (int p = 0; p < Layout::kPointers; ++p) {
      const size_t used = Layout::bytes(p, pixels);
      std::memcpy(memory_[p], from.at[p], used);
      std::memset(memory_[p] + used, 0, kBytes - used);
    }
  }
  void copyTo(const Rows<Kip8u, Layout::kPointers>& to, size_t pixels) const {
    for (int p = 0; p < Layout::kPointers; ++p) std::memcpy(to.at[p], memory_[p], Layout::bytes(p, pixels));
  }
  Rows<const Kip8u, Layout::kPointers> constRows() const {
    Rows<const Kip8u, Layout::kPointers> copy;
    for (int p = 0; p < Layout::kPointers; ++p) copy.at[p] = memory_[p];
    return copy;
  }

  Rows<Kip8u, Layout::kPointers> rows;

 private:
  static constexpr size_t mostBytes() {
    size_t most = 0;
    for (int p = 0; p < Layout::kPointers; ++p) most = HWY_MAX(most, Layout::bytes(p, Layout::kBatch));
    return most;
  }
  static constexpr size_t kBytes = mostBytes();
  alignas(64) Kip8u memory_[Layout::kPointers][kBytes];
};

/// Calls batch(source rows, destination rows) for pixels first .. last - 1 of a row group, a batch at a time.
template <class Src, class Dst, class Batch>
KIP_INLINE void forBatches(const Rows<const Kip8u, Src::kPointers>& src, const Rows<Kip8u, Dst::kPointers>& dst,
                           size_t first, size_t last, const Batch& batch) {
  static_assert(Src::kBatch == Dst::kBatch, "source and destination take the same number of pixels at a time");
  constexpr int kBatch = Src::kBatch;
  PaddedBatch<Src> in;
  PaddedBatch<Dst> out;
  auto from = advance<Src>(src, first);
  auto to = advance<Dst>(dst, first);
  // One call of `batch` for whole and partial batches alike: it is all of the code, and inlined.
  for (size_t left = last - first; left != 0;) {
    const bool whole = left >= kBatch;
    auto batchFrom = from;
    auto batchTo = to;
    if (HWY_UNLIKELY(!whole)) {
      in.copyFrom(from, left);
      if constexpr (Dst::kKeeps) out.copyFrom(to, left);
      batchFrom = in.constRows();
      batchTo = out.rows;
    }
    batch(batchFrom, batchTo);
    if (HWY_UNLIKELY(!whole)) return out.copyTo(to, left);
    from = advance<Src>(from, kBatch);
    to = advance<Dst>(to, kBatch);
    left -= kBatch;
  }
}

/// Whether the pixels of a row end where those of the next one begin.
template <class Layout, class Byte>
bool isContiguous(const Rows<Byte, Layout::kPointers>& row, const Rows<Byte, Layout::kPointers>& next, size_t pixels) {
  for (int p = 0; p < Layout::kPointers; ++p) {
    if (next.at[p] - row.at[p] != static_cast<ptrdiff_t>(Layout::bytes(p, pixels))) return false;
  }
  return true;
}

/// Calls convertRow(from, to, pixels) for the rows first .. last - 1 that rowsAt(row, from, to) tells: for all at once
/// where they are contiguous.
template <class Src, class Dst, class RowsAt, class ConvertRow>
KIP_INLINE void forRows(int first, int last, size_t pixels, const RowsAt& rowsAt, const ConvertRow& convertRow) {
  Rows<const Kip8u, Src::kPointers> from, nextFrom;
  Rows<Kip8u, Dst::kPointers> to, nextTo;
  if (last - first > 1) {
    rowsAt(first, from, to);
    rowsAt(first + 1, nextFrom, nextTo);
    if (isContiguous<Src>(from, nextFrom, pixels) && isContiguous<Dst>(to, nextTo, pixels)) {
      pixels *= last - first;
      last = first + 1;
    }
  }
  for (int row = first; row < last; ++row) {
    rowsAt(row, from, to);
    convertRow(from, to, pixels);
  }
}

/// The same for the first pixels of each row, or row group, of a job.
template <class Src, class Dst, class ConvertRow>
KIP_INLINE void forJobRows(const Job& job, int first, int last, size_t pixels, const ConvertRow& convertRow) {
  const auto rowsAt = [&](int y, auto& from, auto& to)
                          KIP_INLINE_LAMBDA { from = Src::rows(job.src, y), to = Dst::rows(job.dst, y); };
  forRows<Src, Dst>(first, last, pixels, rowsAt, convertRow);
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
