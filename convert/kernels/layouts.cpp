// Loads and stores: from the rows of a plane to lanes, one for each of its samples, and back.
#include "kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/layouts.cpp"
#include "hwy/foreach_target.h"

#include "engine/interleave-inl.h"
#include "kernels/v210-inl.h"
#include "kernels/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using Lanes = uint8_t* const*;
using ConstLanes = const uint8_t* const*;

/// Two interleaved samples of 16 bits.
struct TwoInterleaved16 {
  KIP_INLINE static void load(const uint8_t* from, U16& a, U16& b) {
    const U8 first = loadBlocks(from, 32), second = loadBlocks(from + 16, 32);
    const auto even = [](U8 v) KIP_INLINE_LAMBDA { return hn::And(as<int32_t>(v), set<int32_t>(0xFFFF)); };
    const auto odd = [](U8 v) KIP_INLINE_LAMBDA { return as<int32_t>(hn::ShiftRight<16>(as<uint32_t>(v))); };
    a = packUnsignedWords(even(first), even(second));
    b = packUnsignedWords(odd(first), odd(second));
  }
  KIP_INLINE static void store(U16 a, U16 b, uint8_t* to) {
    U16 lower, upper;
    sideBySide<uint16_t>(a, b, lower, upper);
    storeLane<uint16_t>(lower, to, 0);
    storeLane<uint16_t>(upper, to, 1);
  }
};

template <class T>
struct Pair {
  static constexpr int kBatch = kLanes<T>;
  using Two = std::conditional_t<sizeof(T) == 1, TwoInterleaved, TwoInterleaved16>;

  static void load(const uint8_t* row, Lanes lanes, size_t width) {
    walk<kBatch>(width, {In{row, 1, 2 * sizeof(T)}}, {laneOut<T>(lanes[0]), laneOut<T>(lanes[1])},
                 [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   Vector<T> a, b;
                   Two::load(in[0], a, b);
                   storeLane<T>(a, out[0]);
                   storeLane<T>(b, out[1]);
                 });
  }
  static void store(ConstLanes lanes, uint8_t* row, size_t width) {
    walk<kBatch>(width, {laneIn<T>(lanes[0]), laneIn<T>(lanes[1])}, {Out{row, 1, 2 * sizeof(T)}},
                 [](auto& in, auto& out)
                     KIP_INLINE_LAMBDA { Two::store(loadLane<T>(in[0]), loadLane<T>(in[1]), out[0]); });
  }
};

template <class T>
struct Triple {
  static constexpr int kBatch = kLanes<T>;

  static void load(const uint8_t* row, Lanes lanes, size_t width) {
    walk<kBatch>(width, {In{row, 1, 3 * sizeof(T)}}, {laneOut<T>(lanes[0]), laneOut<T>(lanes[1]), laneOut<T>(lanes[2])},
                 [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   Vector<T> v[3];
                   ThreeChannels<T>::load(reinterpret_cast<const T*>(in[0]), v[0], v[1], v[2]);
                   for (int k = 0; k < 3; ++k) storeLane<T>(v[k], out[k]);
                 });
  }
  static void store(ConstLanes lanes, uint8_t* row, size_t width) {
    walk<kBatch>(width, {laneIn<T>(lanes[0]), laneIn<T>(lanes[1]), laneIn<T>(lanes[2])}, {Out{row, 1, 3 * sizeof(T)}},
                 [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   ThreeChannels<T>::store(loadLane<T>(in[0]), loadLane<T>(in[1]), loadLane<T>(in[2]),
                                           reinterpret_cast<T*>(out[0]));
                 });
  }
};

template <class T>
struct Quad {
  static constexpr int kBatch = kLanes<T>;

  static void load(const uint8_t* row, Lanes lanes, size_t width) {
    walk<kBatch>(width, {In{row, 1, 4 * sizeof(T)}},
                 {laneOut<T>(lanes[0]), laneOut<T>(lanes[1]), laneOut<T>(lanes[2]), laneOut<T>(lanes[3])},
                 [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   Vector<T> v[4];
                   FourInterleaved<T>::load(reinterpret_cast<const T*>(in[0]), v[0], v[1], v[2], v[3]);
                   for (int k = 0; k < 4; ++k) storeLane<T>(v[k], out[k]);
                 });
  }
  static void store(ConstLanes lanes, uint8_t* row, size_t width) {
    walk<kBatch>(width, {laneIn<T>(lanes[0]), laneIn<T>(lanes[1]), laneIn<T>(lanes[2]), laneIn<T>(lanes[3])},
                 {Out{row, 1, 4 * sizeof(T)}}, [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   FourInterleaved<T>::store(loadLane<T>(in[0]), loadLane<T>(in[1]), loadLane<T>(in[2]),
                                             loadLane<T>(in[3]), reinterpret_cast<T*>(out[0]));
                 });
  }
};

/// 16 bits a pixel: channels of so many bits, the first one in the upper ones.
template <int kFirst, int kSecond, int kThird>
struct Packed16 {
  static constexpr int kBatch = kLanes<uint8_t>;

  static void load(const uint8_t* row, Lanes lanes, size_t width) {
    walk<kBatch>(width, {In{row, 1, 2}},
                 {laneOut<uint8_t>(lanes[0]), laneOut<uint8_t>(lanes[1]), laneOut<uint8_t>(lanes[2])},
                 [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   const U16 v[2] = {loadLane<uint16_t>(in[0], 0), loadLane<uint16_t>(in[0], 1)};
                   storeLane<uint8_t>(channel<kSecond + kThird, kFirst>(v), out[0]);
                   storeLane<uint8_t>(channel<kThird, kSecond>(v), out[1]);
                   storeLane<uint8_t>(channel<0, kThird>(v), out[2]);
                 });
  }
  static void store(ConstLanes lanes, uint8_t* row, size_t width) {
    walk<kBatch>(width, {laneIn<uint8_t>(lanes[0]), laneIn<uint8_t>(lanes[1]), laneIn<uint8_t>(lanes[2])},
                 {Out{row, 1, 2}}, [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   for (int half = 0; half < 2; ++half) {
                     const auto wide = [&](int k) KIP_INLINE_LAMBDA {
                       return as<uint16_t>(loadHalf(in[k] + half * kLanes<uint16_t>));
                     };
                     const U16 upper = hn::ShiftLeft<kSecond + kThird>(wide(0));
                     storeLane<uint16_t>(hn::Or(upper, hn::Or(hn::ShiftLeft<kThird>(wide(1)), wide(2))), out[0], half);
                   }
                 });
  }

 private:
  template <int kShift, int kBits>
  KIP_INLINE static U8 channel(const U16 (&v)[2]) {
    const auto bits = [](U16 pixels) KIP_INLINE_LAMBDA {
      return as<int16_t>(hn::And(hn::ShiftRight<kShift>(pixels), set<uint16_t>((1 << kBits) - 1)));
    };
    return packBytesInOrder(bits(v[0]), bits(v[1]));
  }
};

/// 4:2:2 in one plane: lanes luma, first and second chroma.
template <class T, bool kLumaFirst>
struct Packed422 {
  static constexpr int kBatch = 2 * kLanes<T>;
  using Two = std::conditional_t<sizeof(T) == 1, TwoInterleaved, TwoInterleaved16>;

  static void load(const uint8_t* row, Lanes lanes, size_t width) {
    walk<kBatch>(width, {In{row, 2, 4 * sizeof(T)}}, {laneOut<T>(lanes[0]), chromaOut(lanes[1]), chromaOut(lanes[2])},
                 [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   Vector<T> luma[2], chroma[2];
                   for (int half = 0; half < 2; ++half) {
                     Vector<T> first, second;
                     Two::load(in[0] + half * 2 * kLanes<uint8_t>, first, second);
                     luma[half] = kLumaFirst ? first : second;
                     chroma[half] = kLumaFirst ? second : first;
                     storeLane<T>(luma[half], out[0], half);
                   }
                   alignas(64) uint8_t pairs[2 * kLanes<uint8_t>];
                   for (int half = 0; half < 2; ++half) storeLane<T>(chroma[half], pairs, half);
                   Vector<T> u, v;
                   Two::load(pairs, u, v);
                   storeLane<T>(u, out[1]);
                   storeLane<T>(v, out[2]);
                 });
  }
  static void store(ConstLanes lanes, uint8_t* row, size_t width) {
    // The second luma sample of a last, single pixel is that of the first.
    const size_t pairs = width / 2 * 2;
    walk<kBatch>(pairs, {laneIn<T>(lanes[0]), chromaIn(lanes[1]), chromaIn(lanes[2])}, {Out{row, 2, 4 * sizeof(T)}},
                 [](auto& in, auto& out) KIP_INLINE_LAMBDA {
                   alignas(64) uint8_t chroma[2 * kLanes<uint8_t>];
                   Two::store(loadLane<T>(in[1]), loadLane<T>(in[2]), chroma);
                   for (int half = 0; half < 2; ++half) {
                     const Vector<T> y = loadLane<T>(in[0], half), c = loadLane<T>(chroma, half);
                     Two::store(kLumaFirst ? y : c, kLumaFirst ? c : y, out[0] + half * 2 * kLanes<uint8_t>);
                   }
                 });
    if (width % 2 != 0) storeLast(lanes, row, pairs);
  }

 private:
  KIP_INLINE static In chromaIn(const uint8_t* at) { return {at, 2, sizeof(T)}; }
  KIP_INLINE static Out chromaOut(uint8_t* at) { return {at, 2, sizeof(T)}; }

  static void storeLast(ConstLanes lanes, uint8_t* row, size_t pairs) {
    constexpr size_t kSize = sizeof(T);
    uint8_t* to = row + 2 * pairs * kSize;
    const uint8_t* y = lanes[0] + pairs * kSize;
    constexpr size_t kLuma = kLumaFirst ? 0 : kSize, kChroma = kSize - kLuma;
    std::memcpy(to + kLuma, y, kSize);
    std::memcpy(to + kLuma + 2 * kSize, y, kSize);
    std::memcpy(to + kChroma, lanes[1] + pairs / 2 * kSize, kSize);
    std::memcpy(to + kChroma + 2 * kSize, lanes[2] + pairs / 2 * kSize, kSize);
  }
};

/// The samples of a batch by way of a buffer, where their order is a matter of addresses.
template <bool kFromQuad, bool kToQuad>
void reorder(const uint8_t* row, const uint8_t* order, uint8_t* to, size_t width) {
  constexpr int kBatch = kLanes<uint8_t>;
  alignas(64) uint8_t lanes[convert::kOpaque + 1][kBatch];
  std::memset(lanes[convert::kOpaque], 0xFF, kBatch);
  const uint8_t* lane[4];
  for (int k = 0; k < (kToQuad ? 4 : 3); ++k) lane[k] = lanes[order[k]];
  walk<kBatch>(width, {In{row, 1, kFromQuad ? 4 : 3}}, {Out{to, 1, kToQuad ? 4 : 3}},
               [&](auto& in, auto& out) KIP_INLINE_LAMBDA {
                 U8 v[4];
                 if constexpr (kFromQuad) {
                   FourInterleaved<uint8_t>::load(in[0], v[0], v[1], v[2], v[3]);
                 } else {
                   ThreeChannels<uint8_t>::load(in[0], v[0], v[1], v[2]);
                 }
                 for (int k = 0; k < (kFromQuad ? 4 : 3); ++k) storeLane<uint8_t>(v[k], lanes[k]);
                 const auto sample = [&](int k) KIP_INLINE_LAMBDA { return loadLane<uint8_t>(lane[k]); };
                 if constexpr (kToQuad) {
                   FourInterleaved<uint8_t>::store(sample(0), sample(1), sample(2), sample(3), out[0]);
                 } else {
                   ThreeChannels<uint8_t>::store(sample(0), sample(1), sample(2), out[0]);
                 }
               });
}

constexpr convert::LayoutKernels makeKernels() {
  convert::LayoutKernels k{};
  const auto add = [&k]<class Kernels>(convert::Packing packing, Kernels) {
    k.load[static_cast<int>(packing)] = Kernels::load;
    k.store[static_cast<int>(packing)] = Kernels::store;
  };
  using enum convert::Packing;
  add(kPair8, Pair<uint8_t>());
  add(kPair16, Pair<uint16_t>());
  add(kTriple8, Triple<uint8_t>());
  add(kTriple16, Triple<uint16_t>());
  add(kTripleF32, Triple<float>());
  add(kQuad8, Quad<uint8_t>());
  add(kQuad16, Quad<uint16_t>());
  add(k565, Packed16<5, 6, 5>());
  add(k555, Packed16<5, 5, 5>());
  add(k444, Packed16<4, 4, 4>());
  add(kLumaFirst8, Packed422<uint8_t, true>());
  add(kChromaFirst8, Packed422<uint8_t, false>());
  add(kLumaFirst16, Packed422<uint16_t, true>());
  add(kV210, V210());
  k.reorder[0][0] = reorder<false, false>;
  k.reorder[0][1] = reorder<false, true>;
  k.reorder[1][0] = reorder<true, false>;
  k.reorder[1][1] = reorder<true, true>;
  return k;
}

}  // namespace

const convert::LayoutKernels* layoutKernels() {
  static constexpr convert::LayoutKernels kKernels = makeKernels();
  return &kKernels;
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
HWY_EXPORT(layoutKernels);
namespace convert {
const LayoutKernels& layoutKernels() { return *HWY_DYNAMIC_DISPATCH(layoutKernels)(); }
}  // namespace convert
}  // namespace kip
#endif
