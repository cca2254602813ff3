// A band of rows in vectors whose lanes are rows, each row further to the left than the one above it: how the samples
// of one channel come into such vectors, and levels out of them.

#if defined(KIP_REDUCEBITS_BAND_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_REDUCEBITS_BAND_INL_H_
#undef KIP_REDUCEBITS_BAND_INL_H_
#else
#define KIP_REDUCEBITS_BAND_INL_H_
#endif

#include <utility>

#include "reducebits/levels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

constexpr int kVectors = kBand / kLanes<float>;
constexpr int kSteps = 64;  // done at a time: whole vectors of pixels of every type

template <class Function, int... kIndex>
KIP_INLINE void forEachIndex(const Function& function, std::integer_sequence<int, kIndex...>) {
  (function(std::integral_constant<int, kIndex>()), ...);
}
/// Calls the function with 0 .. kCount - 1 as types, so that arrays indexed with them are registers.
template <int kCount, class Function>
KIP_INLINE void unrolled(const Function& function) {
  forEachIndex(function, std::make_integer_sequence<int, kCount>());
}

/// The row in a lane of the band's vectors, lanes counted through: the row above a row is in the same lane of the
/// vector before.
constexpr int rowAt(int lane) { return lane % kLanes<float> * kVectors + lane / kLanes<float>; }
constexpr int laneOf(int row) { return row % kVectors * kLanes<float> + row / kVectors; }

/// Numbers that belong to samples of a band, row by row, each row from the column on that it is at in the first of the
/// steps; and step by step, in the order of the lanes.
template <class T>
struct BandRows {
  alignas(64) T at[kBand][kSteps];
};
template <class T>
struct BandSteps {
  alignas(64) T at[kSteps][kBand];
};

/// Turns the one into the other: in each block of a vector, as many rows and as many steps as the block has lanes.
template <class T>
constexpr int kSide = 16 / sizeof(T);
template <class Square>
KIP_INLINE void forSquares(int lanes, int side, const Square& square) {
  for (int lane = 0; lane < kBand; lane += lanes) {
    for (int step = 0; step < kSteps; step += side) square(lane, step);
  }
}
/// rowFrom(row) is where a row's numbers are, one for each step.
template <class T, class RowFrom>
void toSteps(const RowFrom& rowFrom, BandSteps<T>& steps) {
  forSquares(kLanes<T>, kSide<T>, [&](int lane, int step) KIP_INLINE_LAMBDA {
    Vector<T> v[kSide<T>];
    for (int i = 0; i < kSide<T>; ++i) {
      v[i] = as<T>(loadBlocksAt([&](int block) KIP_INLINE_LAMBDA {
        return reinterpret_cast<const uint8_t*>(rowFrom(rowAt(lane + block * kSide<T> + i)) + step);
      }));
    }
    transposeBlocks<T>(v);
    for (int i = 0; i < kSide<T>; ++i) hn::Store(v[i], Tag<T>(), &steps.at[step + i][lane]);
  });
}
template <class T>
void toRows(const BandSteps<T>& steps, BandRows<T>& rows) {
  forSquares(kLanes<T>, kSide<T>, [&](int lane, int step) KIP_INLINE_LAMBDA {
    Vector<T> v[kSide<T>];
    for (int i = 0; i < kSide<T>; ++i) v[i] = hn::Load(Tag<T>(), &steps.at[step + i][lane]);
    transposeBlocks<T>(v);
    for (int i = 0; i < kSide<T>; ++i) {
      storeBlocksAt(as<uint8_t>(v[i]), [&](int block) KIP_INLINE_LAMBDA {
        return reinterpret_cast<uint8_t*>(&rows.at[rowAt(lane + block * kSide<T> + i)][step]);
      });
    }
  });
}

/// Pixels of one, three or four samples, as layouts that write all that they read.
template <class T, int kPerPixel>
struct WholePixels : C3<T> {};
template <class T>
struct WholePixels<T, 1> : Interleaved<Tag<T>, 1> {
  using V = Vector<T>;
  KIP_INLINE Pixels<V> load(const Rows<const Kip8u, 1>& from) const {
    Pixels<V> px;
    px.a = hn::LoadU(Tag<T>(), samples<T>(from.at[0]));
    return px;
  }
  KIP_INLINE void store(const Pixels<V>& px, const Rows<Kip8u, 1>& to) const {
    hn::StoreU(px.a, Tag<T>(), samples<T>(to.at[0]));
  }
};
template <class T>
struct WholePixels<T, 4> : AC4<T> {
  KIP_INLINE void store(const Pixels<Vector<T>>& px, const Rows<Kip8u, 1>& to) const {
    C4<T>::storeWith(px, px.alpha, to);
  }
};

/// Samples as they are diffused: words, signed ones 32768 higher, or floats.
KIP_INLINE void storeSamples(U8 v, uint16_t* to) {
  const Tag<uint16_t> d;
  hn::StoreU(hn::PromoteTo(d, hn::LowerHalf(v)), d, to);
  hn::StoreU(hn::PromoteTo(d, hn::UpperHalf(hn::Half<Tag<uint8_t>>(), v)), d, to + kLanes<uint16_t>);
}
KIP_INLINE void storeSamples(U16 v, uint16_t* to) { hn::StoreU(v, Tag<uint16_t>(), to); }
KIP_INLINE void storeSamples(I16 v, uint16_t* to) { storeSamples(hn::Xor(as<uint16_t>(v), set<uint16_t>(0x8000)), to); }
KIP_INLINE void storeSamples(F32 v, float* to) { hn::StoreU(v, Tag<float>(), to); }

/// Levels as samples.
KIP_INLINE void loadLevels(const uint16_t* from, U8& v) {
  const hn::Half<Tag<uint8_t>> half;
  const auto bytes = [&](const uint16_t* words) KIP_INLINE_LAMBDA {
    return hn::DemoteTo(half, as<int16_t>(hn::LoadU(Tag<uint16_t>(), words)));
  };
  v = hn::Combine(Tag<uint8_t>(), bytes(from + kLanes<uint16_t>), bytes(from));
}
KIP_INLINE void loadLevels(const uint16_t* from, U16& v) { v = hn::LoadU(Tag<uint16_t>(), from); }
KIP_INLINE void loadLevels(const uint16_t* from, I16& v) {
  v = as<int16_t>(hn::Xor(hn::LoadU(Tag<uint16_t>(), from), set<uint16_t>(0x8000)));
}

template <int kChannel, class V>
KIP_INLINE auto& channelOf(Pixels<V>& px) {
  return kChannel == 0 ? px.a : kChannel == 1 ? px.b : kChannel == 2 ? px.c : px.alpha;
}

/// One channel of kSteps pixels. Which one is known to the compiler, so that it leaves out what is for the others.
template <class T, int kPerPixel, class Sample>
KIP_INLINE void takeChannel(const uint8_t* from, int channel, Sample* to) {
  using Layout = WholePixels<T, kPerPixel>;
  unrolled<kPerPixel>([&](auto candidate) KIP_INLINE_LAMBDA {
    if (candidate != channel) return;
    for (int i = 0; i < kSteps; i += Layout::kBatch) {
      auto px = Layout().load({{from + Layout::bytes(0, i)}});
      storeSamples(channelOf<candidate>(px), to + i);
    }
  });
}

/// Levels to one channel of kSteps pixels whose other channels stay.
template <class T, int kPerPixel>
KIP_INLINE void replaceChannel(const uint16_t* levels, int channel, uint8_t* to) {
  using Layout = WholePixels<T, kPerPixel>;
  unrolled<kPerPixel>([&](auto candidate) KIP_INLINE_LAMBDA {
    if (candidate != channel) return;
    for (int i = 0; i < kSteps; i += Layout::kBatch) {
      uint8_t* pixels = to + Layout::bytes(0, i);
      auto px = Layout().load({{pixels}});
      loadLevels(levels + i, channelOf<candidate>(px));
      Layout().store(px, {{pixels}});
    }
  });
}

/// Levels to one channel of pixels whose other channels may be another thread's at this moment.
template <class T, int kPerPixel>
KIP_INLINE void putChannel(const uint16_t* levels, uint8_t* to, int count) {
#pragma GCC unroll 8
  for (int i = 0; i < count; ++i, to += kPerPixel * sizeof(T)) {
    storeSample(static_cast<T>(levels[i] - (std::is_signed_v<T> ? 32768 : 0)), to);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
