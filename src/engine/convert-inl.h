// Full-resolution conversion of rows: load pixels, apply an arithmetic, store pixels.
//
// An arithmetic is a type with
//   using Lane                     the lanes that it works on: int16_t for bytes, float for everything, or the samples'
//                                  own type
//   operator()(Pixels) const       the arithmetic on full vectors of those lanes
// or, for floats, on several vectors at once (a long chain of operations waits for its own results; some chains side by
// side use that time):
//   kInterleavedChains                      how many it wants at most, and, if it does more than the operator on each,
//   convert<kCount>(px, result)    the arithmetic on that many Pixels, instead of the operator
// Samples are widened to its lanes before it. Its results are 16-bit lanes, or 32-bit ones (already rounded) from
// floats, and are packed with saturation; or lanes of the samples' own type, which are stored as they are. Where source
// and destination differ in size, the arithmetic is one from and to the larger samples.

#if defined(KIP_ENGINE_CONVERT_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_CONVERT_INL_H_
#undef KIP_ENGINE_CONVERT_INL_H_
#else
#define KIP_ENGINE_CONVERT_INL_H_
#endif

#include "engine/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// Full vectors of any kind, one per channel, through a function of one vector.
template <class V, class Function>
KIP_INLINE auto eachChannel(const Pixels<V>& px, const Function& function) {
  return Pixels<decltype(function(px.a))>(function(px.a), function(px.b), function(px.c));
}

KIP_INLINE Pixels<I32> truncated(const Pixels<F32>& px) {
  return eachChannel(px, [](F32 v) KIP_INLINE_LAMBDA { return truncated(v); });
}
KIP_INLINE Pixels<I32> rounded(const Pixels<F32>& px) {
  return eachChannel(px, [](F32 v) KIP_INLINE_LAMBDA { return rounded(v); });
}
KIP_INLINE Pixels<F32> toUnit(const Pixels<F32>& px) {
  return eachChannel(px, [](F32 v) KIP_INLINE_LAMBDA { return toUnit(v); });
}

/// Results in two parts, packed to one vector per channel.
template <class V, class Function>
KIP_INLINE auto packChannels(const Pixels<V>& lower, const Pixels<V>& upper, const Function& pack) {
  return Pixels<decltype(pack(lower.a, upper.a))>(pack(lower.a, upper.a), pack(lower.b, upper.b),
                                                  pack(lower.c, upper.c));
}

KIP_INLINE Pixels<U8> pack(const Pixels<I16>& lower, const Pixels<I16>& upper) {
  return packChannels(lower, upper, [](I16 l, I16 u) KIP_INLINE_LAMBDA { return packBytes(l, u); });
}

/// Vectors of floats through an arithmetic, as many of them at once as it wants.
template <class Op, class R, int kParts>
KIP_INLINE void applyFloats(const Op& op, const Pixels<F32> (&px)[kParts], Pixels<R> (&result)[kParts]) {
  if constexpr (requires { op.template convert<1>(px, result); }) {
    constexpr int kCount = HWY_MIN(Op::kInterleavedChains, kParts);
    for (int p = 0; p < kParts; p += kCount) op.template convert<kCount>(px + p, result + p);
  } else {
    for (int p = 0; p < kParts; ++p) result[p] = op(px[p]);
  }
}

template <class V>
KIP_INLINE Pixels<F32> lowerFloats(const Pixels<V>& px) {
  return eachChannel(px, [](V v) KIP_INLINE_LAMBDA { return lowerFloats(as<uint16_t>(v)); });
}
template <class V>
KIP_INLINE Pixels<F32> upperFloats(const Pixels<V>& px) {
  return eachChannel(px, [](V v) KIP_INLINE_LAMBDA { return upperFloats(as<uint16_t>(v)); });
}

/// Bytes through an arithmetic on 16-bit lanes or on floats.
template <class Op>
KIP_INLINE Pixels<U8> applyWidened(const Op& op, const WidePixels& px) {
  const auto& [lower, upper] = px;
  if constexpr (std::is_same_v<typename Op::Lane, int16_t>) {
    return pack(op(lower), op(upper));
  } else {
    Pixels<I32> of[4];
    applyFloats(op, {lowerFloats(lower), upperFloats(lower), lowerFloats(upper), upperFloats(upper)}, of);
    const auto words = [](I32 l, I32 u) KIP_INLINE_LAMBDA { return packWords(l, u); };
    return pack(packChannels(of[0], of[1], words), packChannels(of[2], of[3], words));
  }
}
template <class Op>
KIP_INLINE Pixels<U8> applyWidened(const Op& op, const Pixels<U8>& px) {
  return applyWidened(op, WidePixels{eachChannel(px, [](U8 v) KIP_INLINE_LAMBDA { return lowerBytes(v); }),
                                     eachChannel(px, [](U8 v) KIP_INLINE_LAMBDA { return upperBytes(v); })});
}

/// 16-bit samples through an arithmetic on floats.
template <class Op>
KIP_INLINE Pixels<U16> applyWidened(const Op& op, const Pixels<U16>& px) {
  Pixels<I32> of[2];
  applyFloats(op, {lowerFloats(px), upperFloats(px)}, of);
  return packChannels(of[0], of[1], [](I32 l, I32 u) KIP_INLINE_LAMBDA { return packUnsignedWords(l, u); });
}

/// Samples through an arithmetic whose results are samples of the same size.
template <class T, class Op, class V>
KIP_INLINE Pixels<V> applyTo(const Op& op, const Pixels<V>& px) {
  if constexpr (!std::is_same_v<typename Op::Lane, T>) {
    return applyWidened(op, px);
  } else {
    return op(px);
  }
}

/// Samples as samples of twice the size.
template <class T, class V>
KIP_INLINE Pixels<Vector<T>> widened(const Pixels<V>& px) {
  return eachChannel(px, [](V v) KIP_INLINE_LAMBDA { return hn::PromoteTo(Tag<T>(), v); });
}

/// Samples as samples of half the size: bytes saturate, signed 16-bit samples keep the low bits.
KIP_INLINE auto narrowed(I16 v) { return hn::DemoteTo(SamplesLike<uint8_t, int16_t>(), v); }
KIP_INLINE auto narrowed(U16 v) { return narrowed(as<int16_t>(hn::Min(v, set<uint16_t>(INT16_MAX)))); }
KIP_INLINE auto narrowed(I32 v) {
  const SamplesLike<uint16_t, uint32_t> half;
  return hn::BitCast(SamplesLike<int16_t, int32_t>(), hn::TruncateTo(half, as<uint32_t>(v)));
}

/// Samples of type S through an arithmetic to samples of type D, on as many pixels as a full vector of the larger ones.
template <class S, class D, class Op, class V>
KIP_INLINE auto convertPixels(const Op& op, const Pixels<V>& px) {
  if constexpr (sizeof(S) < sizeof(D)) {
    return applyTo<D>(op, widened<D>(px));
  } else if constexpr (sizeof(S) > sizeof(D)) {
    return eachChannel(applyTo<S>(op, px), [](Vector<S> v) KIP_INLINE_LAMBDA { return narrowed(v); });
  } else {
    return applyTo<S>(op, px);
  }
}

/// Converts rows with one arithmetic for every pixel. The arithmetic and the layouts are made once for all rows.
template <class Op, class Src, class Dst = Src>
class Convert {
 public:
  KIP_INLINE explicit Convert(const Job& job) : Convert(job, makeFor<Op>(job)) {}
  KIP_INLINE Convert(const Job& job, const Op& op)
      : job_(job), op_(op), src_(makeFor<Src>(job)), dst_(makeFor<Dst>(job)) {}

  static void rows(const Job& job, int first, int last) { rows(job, makeFor<Op>(job), first, last); }
  KIP_INLINE static void rows(const Job& job, const Op& op, int first, int last) {
    const Convert convert(job, op);
    forJobRows<Src, Dst>(job, first, last, job.width,
                         [&](const auto& from, const auto& to, size_t pixels)
                             KIP_INLINE_LAMBDA { convert.row(from, to, 0, pixels); });
  }

  /// Pixels first .. last - 1 of row y.
  KIP_INLINE void pixels(int y, size_t first, size_t last) const {
    row(Src::rows(job_.src, y), Dst::rows(job_.dst, y), first, last);
  }

 private:
  KIP_INLINE void row(const Rows<const Kip8u, Src::kPointers>& from, const Rows<Kip8u, Dst::kPointers>& to,
                      size_t first, size_t last) const {
    forBatches<Batches<Src>, Batches<Dst>>(
        from, to, first, last, [this](const auto& in, const auto& out) KIP_INLINE_LAMBDA { this->batch(in, out); });
  }

  /// Samples that are floats make one vector per load: there it takes several loads to get several vectors.
  static constexpr int batchesTogether() {
    if constexpr (requires { Op::kInterleavedChains; } && std::is_same_v<typename Src::T, float>) {
      return Op::kInterleavedChains;
    } else {
      return 1;
    }
  }
  template <class Layout>
  struct Batches : Layout {
    static constexpr int kBatch = batchesTogether() * Layout::kBatch;
  };

  /// Bytes that the source can give in the lanes which the arithmetic needs.
  static constexpr bool kWideBytes = requires(const Src& src, Rows<const Kip8u, Src::kPointers> from) {
    src.loadWide(from);
  }
  &&std::is_same_v<typename Dst::T, uint8_t> && !Dst::kTakesAlpha &&
      (std::is_same_v<typename Op::Lane, int16_t> || std::is_same_v<typename Op::Lane, float>);

  template <class From, class To>
  KIP_INLINE void batch(const From& from, const To& to) const {
    if constexpr (kWideBytes) {
      const auto result = applyWidened(op_, src_.loadWide(from));
      dst_.store(eachChannel(result, [](U8 v) KIP_INLINE_LAMBDA { return Src::packedInOrder(v); }), to);
    } else if constexpr (batchesTogether() == 1) {
      const auto px = src_.load(from);
      auto result = convertPixels<typename Src::T, typename Dst::T>(op_, px);
      if constexpr (Dst::kTakesAlpha) result.alpha = px.alpha;
      dst_.store(result, to);
    } else {
      Pixels<F32> px[batchesTogether()], result[batchesTogether()];
      for (int i = 0; i < batchesTogether(); ++i) px[i] = src_.load(advance<Src>(from, i * Src::kBatch));
      applyFloats(op_, px, result);
      for (int i = 0; i < batchesTogether(); ++i) dst_.store(result[i], advance<Dst>(to, i * Dst::kBatch));
    }
  }

  const Job& job_;
  Op op_;
  Src src_;
  Dst dst_;
};

/// Converts rows with one arithmetic for the runs of kRun pixels that each row begins with, and another one for the
/// pixels left over at its end.
template <int kRun, class Op, class Tail, class Src, class Dst>
struct ConvertRuns {
  static void rows(const Job& job, int first, int last) {
    Job runs = job;
    runs.width -= job.width % kRun;
    const bool hasTails = runs.width < job.width;
    const Convert<Tail, Src, Dst> tail(job);
    for (int y = first, next; y < last; y = next) {
      next = hasTails ? y + 1 : last;
      Convert<Op, Src, Dst>::rows(runs, y, next);
      if (hasTails) tail.pixels(y, runs.width, job.width);
    }
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
