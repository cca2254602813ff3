// Bytes to bytes, where there are instructions for tables of 256 bytes: what can become of each byte is found out once
// per call, by the arithmetics of samples, and looked up.

#if defined(KIP_REDUCEBITS_BYTES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_REDUCEBITS_BYTES_INL_H_
#undef KIP_REDUCEBITS_BYTES_INL_H_
#else
#define KIP_REDUCEBITS_BYTES_INL_H_
#endif

#include "frame/bytetable-inl.h"
#include "reducebits/levels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

#if KIP_AVX512

/// A table of the results of an arithmetic on floats.
template <class Entry>
AnyByteTable tableOf(const Entry& entry) {
  alignas(64) uint8_t table[256];
  F32 bytes = hn::Iota(Tag<float>(), 0.f);
  for (int i = 0; i < 256; i += kLanes<uint8_t>) {
    I32 of[4];
    for (I32& v : of) {
      v = entry(bytes);
      bytes = bytes + static_cast<float>(kLanes<float>);
    }
    hn::Store(samplesFrom(of, uint8_t()), Tag<uint8_t>(), table + i);
  }
  return AnyByteTable(table);
}

template <class Op>
KIP_INLINE F32 lowerLevel(const Op& op, F32 v) {
  return hn::Mul(op.interval(v), op.q);
}

/// No dither.
class NearestByte {
 public:
  NearestByte(const Plain<uint8_t, uint8_t>& op, float intervals)
      : nearest_(tableOf([&](F32 v) { return reduced(op, op.normal(v), set(0.5f / intervals)); })) {}
  KIP_INLINE U8 operator()(U8 v, const uint8_t*) const { return nearest_(v); }

 private:
  AnyByteTable nearest_;
};

/// Ordered dither by thresholds that are entries of its matrix.
class DitheredByte {
 public:
  explicit DitheredByte(const Scaled<uint8_t, uint8_t>& op)
      : lower_(tableOf([&](F32 v) { return op.written(lowerLevel(op, v)); })),
        upper_(tableOf([&](F32 v) { return op.written(hn::Add(lowerLevel(op, v), op.q)); })),
        exceeded_(tableOf([&](F32 v) { return exceeded(op, hn::Sub(v, lowerLevel(op, v))); })) {}
  KIP_INLINE U8 operator()(U8 v, const uint8_t* thresholds) const {
    const auto up = hn::Gt(exceeded_(v), hn::Load(Tag<uint8_t>(), thresholds));
    return hn::IfThenElse(up, upper_(v), lower_(v));
  }

 private:
  static F32 lower(const Scaled<uint8_t, uint8_t>& op, F32 v) { return hn::Mul(op.interval(v), op.q); }

  /// How many of the matrix's entries, 0 .. 15, a distance to the lower level exceeds.
  static KIP_INLINE I32 exceeded(const Scaled<uint8_t, uint8_t>& op, F32 distance) {
    I32 count = set(0);
#pragma GCC unroll 16
    for (int entry = 0; entry < 16; ++entry) {
      const F32 threshold = hn::Mul(set(static_cast<float>(entry) / 15), op.q);
      const auto exceeds = hn::RebindMask(Tag<int32_t>(), hn::Gt(distance, threshold));
      count = hn::IfThenElse(exceeds, hn::Add(count, set(1)), count);
    }
    return count;
  }

  AnyByteTable lower_, upper_, exceeded_;
};

/// Ordered dither with noise, an arithmetic of Levels.
class NoisyByte : public Precise<uint8_t, uint8_t> {
 public:
  explicit NoisyByte(float intervals)
      : Precise(intervals),
        lower_(tableOf([&](F32 v) { return written(lowerLevel(*this, normal(v))); })),
        upper_(tableOf([&](F32 v) { return written(hn::Add(lowerLevel(*this, normal(v)), q)); })) {}

  KIP_INLINE U8 reduced(const uint8_t* from, const float* thresholds) const {
    __mmask16 up[4];
    for (int i = 0; i < 4; ++i) {
      const F32 v = normal(loadFloats(from + i * kLanes<float>));
      up[i] = hn::Gt(hn::Sub(v, lowerLevel(*this, v)), hn::Load(Tag<float>(), thresholds + i * kLanes<float>)).raw;
    }
    const __mmask64 all = _mm512_kunpackd(_mm512_kunpackw(up[3], up[2]), _mm512_kunpackw(up[1], up[0]));
    const U8 v = hn::LoadU(Tag<uint8_t>(), from);
    return U8{_mm512_mask_blend_epi8(all, lower_(v).raw, upper_(v).raw)};
  }

 private:
  AnyByteTable lower_, upper_;
};

/// The dither's matrix as the samples of four rows of pixels have it, again and again.
template <int kPerPixel>
struct BayerOfSamples {
  static constexpr int kSamples = kLanes<uint8_t> * (kPerPixel == 3 ? 3 : 1);

  constexpr BayerOfSamples() {
    for (int y = 0; y < 4; ++y) {
      for (int i = 0; i < kSamples; ++i) row[y][i] = static_cast<uint8_t>(kBayer[y][i / kPerPixel % 4]);
    }
  }
  alignas(64) uint8_t row[4][kSamples] = {};
};

/// Reduces whole rows byte by byte.
struct ReduceBytes {
  static void rows(const Job& job, int first, int last) {
    const auto& reduction = *static_cast<const Reduction*>(job.parameters);
    if (reduction.noise != nullptr) return Levels<uint8_t, uint8_t, NoisyByte>::rows(job, first, last);
    if (reduction.method == kipDitherNone) {
      const Plain<uint8_t, uint8_t> op(reduction.intervals);
      return rows(NearestByte(op, reduction.intervals), job, first, last);
    }
    rows(DitheredByte(Scaled<uint8_t, uint8_t>(reduction.intervals)), job, first, last);
  }

 private:
  template <class Op>
  static void rows(const Op& op, const Job& job, int first, int last) {
    const Channels& channels = static_cast<const Reduction*>(job.parameters)->channels;
    switch (channels.perPixel) {
      case 1:
        return rows<1, false>(op, job, first, last);
      case 3:
        return rows<3, false>(op, job, first, last);
      default:
        return channels.reduced == 3 ? rows<4, true>(op, job, first, last) : rows<4, false>(op, job, first, last);
    }
  }

  template <int kPerPixel, bool kKeepsFourth, class Op>
  static void rows(const Op& op, const Job& job, int first, int last) {
    static constexpr BayerOfSamples<kPerPixel> kThresholds;
    using From = Flat<uint8_t, uint8_t, false>;
    using To = Flat<uint8_t, uint8_t, kKeepsFourth>;
    const size_t samples = static_cast<size_t>(job.width) * kPerPixel;
    for (int y = first; y < last; ++y) {
      const auto& thresholds = kThresholds.row[y % 4];
      const uint8_t* threshold = thresholds;
      forBlocks<From, To>({{job.src.row(0, y)}}, {{job.dst.row(0, y)}}, 0, samples,
                          [&](const auto& from, const auto& to) KIP_INLINE_LAMBDA {
                            storeReduced<kKeepsFourth>(op(hn::LoadU(Tag<uint8_t>(), from.at[0]), threshold), to.at[0]);
                            threshold += kLanes<uint8_t>;
                            if (threshold == std::end(thresholds)) threshold = thresholds;
                          });
    }
  }
};

#endif

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
