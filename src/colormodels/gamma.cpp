// Gamma: the BT.709 transfer curve on each colour sample, and its inverse.
//
// Bytes go through constant tables, 16-bit samples through a table of all 65536 values. Floats are the curve in double
// precision with an exact power: a much faster one is tried first, and kept wherever its error cannot change the
// single-precision result.

#include <array>
#include <cstring>

#include "engine/transfer709.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/gamma.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "colormodels/floatcurve-inl.h"
#include "engine/bytetable-inl.h"
#include "engine/pixels-inl.h"

#ifndef KIP_COLORMODELS_GAMMA_ONCE
#define KIP_COLORMODELS_GAMMA_ONCE
namespace kip {

constexpr int kWordValues = 65536;

}  // namespace kip
#endif

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// Rows as samples that are all mapped alike

/// Vectors that go through a curve at once: what one of them waits for, the others need not. With AVX-512, a look-up
/// among bytes waits for next to nothing, and floats leave no registers for a second vector.
template <class T>
constexpr int kAtOnce = kHas64EntryTables ? 1 : 2;
template <class T>
struct Several {
  Vector<T> v[kAtOnce<T>];
};

/// The samples of a plane, or of interleaved pixels, one after the other.
template <class T, bool kKeepsFourth = false>
struct Samples : Planar<Tag<T>, 1> {
  static constexpr int kBatch = kAtOnce<T> * kLanes<T>;
  static constexpr bool kKeeps = kKeepsFourth;

  KIP_INLINE static Several<T> load(const Kip8u* from) {
    Several<T> s;
    for (int k = 0; k < kAtOnce<T>; ++k) s.v[k] = hn::LoadU(Tag<T>(), samples<T>(from) + k * kLanes<T>);
    return s;
  }
  KIP_INLINE static void store(const Several<T>& s, Kip8u* to) {
    const Several<T> old = load(to);
    for (int k = 0; k < kAtOnce<T>; ++k) {
      hn::StoreU(kKeepsFourth ? withFourth(s.v[k], old.v[k]) : s.v[k], Tag<T>(), samples<T>(to) + k * kLanes<T>);
    }
  }

 private:
  KIP_INLINE static Vector<T> withFourth(Vector<T> v, Vector<T> old) {
    using Bits = hwy::MakeUnsigned<T>;
    alignas(16) static constexpr std::array<Bits, 16 / sizeof(T)> kFourth = [] {
      std::array<Bits, 16 / sizeof(T)> bits{};
      for (size_t i = 3; i < bits.size(); i += 4) bits[i] = static_cast<Bits>(-1);
      return bits;
    }();
    return hn::IfThenElse(hn::MaskFromVec(as<T>(hn::LoadDup128(Tag<Bits>(), kFourth.data()))), old, v);
  }
};

/// Maps every sample of kPlanes planes that have kChannels samples to a pixel.
template <class T, class Map, int kPlanes, int kChannels, bool kKeepsFourth>
struct MapSamples {
  static void rows(const Job& job, int first, int last) {
    using From = Samples<T>;
    using To = Samples<T, kKeepsFourth>;
    const Map map(job);
    for (int y = first; y < last; ++y) {
      for (int p = 0; p < kPlanes; ++p) {
        forBatches<From, To>({{job.src.row(p, y)}}, {{job.dst.row(p, y)}}, 0,
                             static_cast<size_t>(kChannels) * job.width,
                             [&](const auto& from, const auto& to) KIP_INLINE_LAMBDA {
                               Several<T> s = From::load(from.at[0]);
                               map(s);
                               To::store(s, to.at[0]);
                             });
      }
    }
  }
};
template <class T, class Map>
using Interleaved3 = MapSamples<T, Map, 1, 3, false>;
template <class T, class Map>
using Interleaved4 = MapSamples<T, Map, 1, 4, true>;
template <class T, class Map>
using Planes3 = MapSamples<T, Map, 3, 1, false>;

// ---------------------------------------------------------------------------------------------------------------------
// Bytes

template <const Kip8u (&kTable)[256]>
class ByteCurve {
 public:
  KIP_INLINE explicit ByteCurve(const Job&) {}
  KIP_INLINE void operator()(Several<uint8_t>& s) const {
    for (U8& v : s.v) v = table_(v);
  }

 private:
  ByteTable<kTable> table_;
};

// ---------------------------------------------------------------------------------------------------------------------
// 16-bit samples

/// The job's table of all values.
struct WordTable {};

/// Four samples at a time go through a general register: vectors would be taken apart and put together one by one.
template <int kPlanes, int kChannels, bool kKeepsFourth>
struct MapSamples<uint16_t, WordTable, kPlanes, kChannels, kKeepsFourth> {
  static void rows(const Job& job, int first, int last) {
    const auto* table = static_cast<const Kip16u*>(job.parameters);
    for (int y = first; y < last; ++y) {
      for (int p = 0; p < kPlanes; ++p) {
        row(table, samples<Kip16u>(job.src.row(p, y)), samples<Kip16u>(job.dst.row(p, y)),
            static_cast<size_t>(kChannels) * job.width);
      }
    }
  }

 private:
  static void row(const Kip16u* table, const Kip16u* src, Kip16u* dst, size_t count) {
    size_t i = 0;
    for (; i + 4 <= count; i += 4) {
      uint64_t from, to = 0;
      std::memcpy(&from, src + i, sizeof from);
      if constexpr (kKeepsFourth) std::memcpy(&to, dst + i, sizeof to);
      to = kKeepsFourth ? to & ~uint64_t{0} << 48 : uint64_t{table[from >> 48]} << 48;
      for (const int bit : {0, 16, 32}) to |= uint64_t{table[from >> bit & 0xFFFF]} << bit;
      std::memcpy(dst + i, &to, sizeof to);
    }
    for (; i < count; ++i) {
      Kip16u value;  // at any address
      std::memcpy(&value, src + i, sizeof value);
      std::memcpy(dst + i, &table[value], sizeof value);
    }
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Floats

/// A curve on the range that the job has as its parameters.
template <Curve kCurve>
struct FloatCurve {};

template <Curve kCurve, int kPlanes, int kChannels, bool kKeepsFourth>
struct MapSamples<float, FloatCurve<kCurve>, kPlanes, kChannels, kKeepsFourth> {
  static void rows(const Job& job, int first, int last) {
    const ValueRange& range = *static_cast<const ValueRange*>(job.parameters);
    const float span = range.max - range.min;
    if (range.min == 0 && span > 0x1p-100f && span < 0x1p100f) {
      rows(RangeCurve<kCurve, true>(range), job, first, last);
    } else {
      rows(RangeCurve<kCurve, false>(range), job, first, last);
    }
  }

 private:
  using Batch = Samples<float, kKeepsFourth>;

  template <class Range>
  static void rows(const Range& curve, const Job& job, int first, int last) {
    for (int y = first; y < last; ++y) {
      for (int p = 0; p < kPlanes; ++p) row(curve, job.src.row(p, y), job.dst.row(p, y), kChannels * size_t(job.width));
    }
  }

  template <class Range>
  static void row(const Range& curve, const Kip8u* src, Kip8u* dst, size_t count) {
    size_t left = count;
    while (left >= Batch::kBatch) {
      left = fastBatches(curve, src, dst, count, left);
      if (left < Batch::kBatch) break;
      const size_t done = Batch::bytes(0, count - left);
      exactBatch(curve, src + done, dst + done);
      left -= Batch::kBatch;
    }
    if (left == 0) return;
    const size_t done = Batch::bytes(0, count - left);
    PaddedBatch<Batch> in, out;
    in.template copyFrom<const Kip8u>({{src + done}}, left);
    out.template copyFrom<Kip8u>({{dst + done}}, left);
    exactBatch(curve, in.rows.at[0], out.rows.at[0]);
    out.copyTo({{dst + done}}, left);
  }

  /// Converts whole batches while the fast curve is right, and tells what is left. There is no call in the loop, so
  /// that the curve's many constants stay in registers.
  template <class Range>
  KIP_INLINE static size_t fastBatches(const Range& range, const Kip8u* src, Kip8u* dst, size_t count, size_t left) {
    const Range curve = range;
    for (; left >= Batch::kBatch; left -= Batch::kBatch) {
      const size_t done = Batch::bytes(0, count - left);
      hn::Mask<Tag<float>> doubtful[kAtOnce<float>];
      const Several<float> s = Batch::load(src + done);
      Several<float> curved;
      curve.template fast<kAtOnce<float>>(s.v, curved.v, doubtful);
      for (int k = 1; k < kAtOnce<float>; ++k) doubtful[0] = hn::Or(doubtful[0], doubtful[k]);
      if (HWY_UNLIKELY(!hn::AllFalse(Tag<float>(), doubtful[0]))) return left;
      Batch::store(curved, dst + done);
    }
    return left;
  }

  template <class Range>
  KIP_INLINE static void exactBatch(const Range& curve, const Kip8u* src, Kip8u* dst) {
    Several<float> s = Batch::load(src);
    for (F32& v : s.v) v = curve(v);
    Batch::store(s, dst);
  }
};

/// The table of a curve for 16-bit samples: the float curve over 0 .. 65535, truncated.
template <Curve kCurve>
void fillTable(Kip16u* table) {
  const RangeCurve<kCurve, true> curve({0, kWordValues - 1});
  const Tag<float> d;
  for (int i = 0; i < kWordValues;) {
    alignas(64) int32_t whole[kLanes<float>];
    hn::Store(truncated(curve(hn::Iota(d, static_cast<float>(i)))), Tag<int32_t>(), whole);
    for (const int32_t value : whole) table[i++] = static_cast<Kip16u>(value);
  }
}
void fillForwardTable(Kip16u* table) { fillTable<Curve::kForward>(table); }
void fillInverseTable(Kip16u* table) { fillTable<Curve::kInverse>(table); }

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "engine/convert.h"
#include "engine/memory.h"
#include "engine/rounding.h"

namespace kip {

HWY_EXPORT(fillForwardTable);
HWY_EXPORT(fillInverseTable);

using WordValues = std::array<Kip16u, kWordValues>;

/// The constant table of a curve, made on first use, by whatever caller.
const WordValues& wordValues(Curve curve) {
  const auto filled = [](const auto& fill) {
    const RoundToNearest mode;
    WordValues values;
    fill(values.data());
    return values;
  };
  static const WordValues forward = filled(HWY_DYNAMIC_DISPATCH(fillForwardTable));
  static const WordValues inverse = filled(HWY_DYNAMIC_DISPATCH(fillInverseTable));
  return curve == Curve::kForward ? forward : inverse;
}

constexpr Rules kBytes = {.planesBeforeSize = true, .steps = StepCheck::kAfterSize};

/// 16-bit samples: as bytes, but a call fails where there is no memory for a table of its own. None is filled: what
/// it would hold is constant.
struct Words {
  Curve curve;
};
KipStatus convert(Kernel kernel, Words words, const ImageArg& src, const ImageArg& dst, KipiSize size, const Extras&) {
  if (const KipStatus status = checkArguments(kBytes, src, dst, size)) return status;
  const Scratch<Kip16u> table(kipsMalloc_16u(kWordValues));
  if (!table) return kipStatusNoMemory;
  return convert(kernel, kBytes, src, dst, size, {.parameters = wordValues(words.curve).data()});
}

/// Floats: the value range is looked at before anything else.
struct Floats {};
constexpr Floats kFloats;
KipStatus convert(Kernel kernel, Floats, const ImageArg& src, const ImageArg& dst, KipiSize size,
                  const Extras& extras) {
  const auto& range = *static_cast<const ValueRange*>(extras.parameters);
  if (range.max - range.min <= 0) return kipStatusGammaRange;
  return convert(kernel, kBytes, src, dst, size, extras);
}

}  // namespace kip

// The value range of floats.
#define KIP_RANGE (Kip32f vMin, Kip32f vMax), ({.parameters = ValueRange{vMin, vMax}.self()})
#endif

#define KIP_FUNCTIONS "colormodels/gamma-functions.inc"
#include "engine/functions-inl.h"
