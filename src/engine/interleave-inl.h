// Interleaved samples of two, three and four channels in memory: by permutes of whole vectors, or by shuffles within
// blocks.

#if defined(KIP_ENGINE_INTERLEAVE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_INTERLEAVE_INL_H_
#undef KIP_ENGINE_INTERLEAVE_INL_H_
#else
#define KIP_ENGINE_INTERLEAVE_INL_H_
#endif

#include "engine/blocks-inl.h"
#include "engine/interleave64-inl.h"

#if !KIP_HAS_64_ENTRY_TABLES
HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// The bytes that one shuffle reaches: a unit.
constexpr int kUnit = 16;

KIP_INLINE U8 unitTable(const uint8_t (&bytes)[kUnit]) { return blockTable(bytes); }
KIP_INLINE U8 shuffleUnits(U8 v, const uint8_t (&places)[kUnit]) { return shuffleBlocks(v, places); }
/// A vector whose unit u holds the bytes at from + u * distance.
KIP_INLINE U8 loadUnits(const uint8_t* from, ptrdiff_t distance) { return loadBlocks(from, distance); }
/// What the 16-bit lanes of two vectors of units, or of what became of them, are packed to, in order.
KIP_INLINE U8 unitsInOrder(U8 packed) { return packed; }
/// The inverse of loadUnits for three vectors whose units follow one another.
KIP_INLINE void storeThreeUnits(U8 first, U8 second, U8 third, uint8_t* to) {
  const Tag<uint8_t> d;
  if constexpr (kBlocksPerVector == 1) {
    hn::StoreU(first, d, to);
    hn::StoreU(second, d, to + kUnit);
    hn::StoreU(third, d, to + 2 * kUnit);
  } else {
    hn::StoreU(hn::ConcatLowerLower(d, second, first), d, to);
    hn::StoreU(hn::ConcatUpperLower(d, first, third), d, to + 32);
    hn::StoreU(hn::ConcatUpperUpper(d, third, second), d, to + 64);
  }
}

/// The lower, and the upper, halves of the blocks of two vectors, as units to storeTwoUnits.
KIP_INLINE void unzipHalves(U8 first, U8 second, U8& lower, U8& upper) {
  const auto a = as<uint64_t>(first), b = as<uint64_t>(second);
  lower = as<uint8_t>(hn::InterleaveLower(a, b)), upper = as<uint8_t>(hn::InterleaveUpper(Tag<uint64_t>(), a, b));
}
/// The inverse of loadUnits for two, and for four vectors whose units follow one another.
KIP_INLINE void storeTwoUnits(U8 first, U8 second, uint8_t* to) { storeTwoBlocks(first, second, to); }
KIP_INLINE void storeFourUnits(const U8 (&v)[4], uint8_t* to) {
  for (int k = 0; k < 4; ++k) {
    storeBlocksAt(v[k], [&](int b) KIP_INLINE_LAMBDA { return to + kUnit * (4 * b + k); });
  }
}

/// The samples of four vectors side by side: of each unit, its first quarter to the first vector.
template <class T>
KIP_INLINE void interleaveFour(Vector<T> a, Vector<T> b, Vector<T> c, Vector<T> d, U8 (&v)[4]) {
  using Two = hwy::MakeUnsigned<hwy::MakeWide<hwy::MakeUnsigned<T>>>;
  const Tag<T> tag;
  const Tag<Two> two;
  const auto ab = as<Two>(hn::InterleaveLower(a, b)), abUpper = as<Two>(hn::InterleaveUpper(tag, a, b));
  const auto cd = as<Two>(hn::InterleaveLower(c, d)), cdUpper = as<Two>(hn::InterleaveUpper(tag, c, d));
  v[0] = as<uint8_t>(hn::InterleaveLower(ab, cd)), v[1] = as<uint8_t>(hn::InterleaveUpper(two, ab, cd));
  v[2] = as<uint8_t>(hn::InterleaveLower(abUpper, cdUpper));
  v[3] = as<uint8_t>(hn::InterleaveUpper(two, abUpper, cdUpper));
}

// ---------------------------------------------------------------------------------------------------------------------
// Three channels

/// Three interleaved channels of samples of type T. Three units hold N pixels, N samples to a unit; 3 does not divide
/// N, so the samples of one channel lie in the three units at three different residues mod 3 and can be blended to one
/// unit without collision, which a shuffle puts in order.
template <class T>
struct ThreeChannelTables {
  static constexpr int kSamples = kUnit / sizeof(T);  // in a unit
  alignas(kUnit) uint8_t gather[3][kUnit];            // where channel c's sample i lies after blending: 3 i + c
  alignas(kUnit) uint8_t scatter[3][kUnit];           // the inverse
  constexpr ThreeChannelTables() : gather(), scatter() {
    constexpr int kBytes = sizeof(T);
    for (int c = 0; c < 3; ++c) {
      for (int i = 0; i < kSamples; ++i) {
        const int position = (3 * i + c) % kSamples;
        for (int b = 0; b < kBytes; ++b) {
          gather[c][i * kBytes + b] = position * kBytes + b;
          scatter[c][position * kBytes + b] = i * kBytes + b;
        }
      }
    }
  }
};

template <class T>
struct ThreeChannels {
  using V = Vector<T>;
  static constexpr ThreeChannelTables<T> kTables{};

  // Position j of unit u holds channel (N u + j) mod 3.
  static constexpr int kN = ThreeChannelTables<T>::kSamples;
  static constexpr int channelAt(int unit, int residue) { return (kN * unit + residue) % 3; }
  static constexpr int unitOf(int channel, int residue) { return (channel - residue + 3) * kN % 3; }

  /// The samples of one vector each at positions of residue 0, 1 and 2.
  KIP_INLINE static U8 blend(U8 at0, U8 at1, U8 at2) {
    constexpr int kResidue0 = 0x9249, kResidue1 = 0x2492, kAll = (1 << kN) - 1;
    const V others = blendInBlocks<kResidue1 & kAll>(as<T>(at1), as<T>(at2));
    return as<uint8_t>(blendInBlocks<kResidue0 & kAll>(as<T>(at0), others));
  }

  KIP_INLINE static void load(const T* samples, V& a, V& b, V& c) {
    const auto* from = reinterpret_cast<const uint8_t*>(samples);
    if constexpr (!kHasByteShuffle) {
      V v[3];
      for (int k = 0; k < 3; ++k) v[k] = as<T>(loadBlocks(from + k * kUnit, kUnit));
      deinterleave<T>(v);
      a = v[0], b = v[1], c = v[2];
      return;
    }
    U8 units[3];
    for (int u = 0; u < 3; ++u) units[u] = loadUnits(from + u * kUnit, 3 * kUnit);
    const auto channel = [&](int which) KIP_INLINE_LAMBDA {
      const U8 blended = blend(units[unitOf(which, 0)], units[unitOf(which, 1)], units[unitOf(which, 2)]);
      return as<T>(shuffleUnits(blended, kTables.gather[which]));
    };
    a = channel(0), b = channel(1), c = channel(2);
  }

  KIP_INLINE static void store(V a, V b, V c, T* samples) {
    auto* to = reinterpret_cast<uint8_t*>(samples);
    if constexpr (!kHasByteShuffle) {
      U8 v[4];
      interleaveFour<T>(a, b, c, hn::Zero(Tag<T>()), v);
      return storeWithoutFourths<T>(v, to);
    }
    const auto spread = [](V v, int which)
                            KIP_INLINE_LAMBDA { return shuffleUnits(as<uint8_t>(v), kTables.scatter[which]); };
    const U8 channels[3] = {spread(a, 0), spread(b, 1), spread(c, 2)};
    const auto unit = [&](int which) KIP_INLINE_LAMBDA {
      return blend(channels[channelAt(which, 0)], channels[channelAt(which, 1)], channels[channelAt(which, 2)]);
    };
    storeThreeUnits(unit(0), unit(1), unit(2), to);
  }

  using Half = hn::Vec<hn::Half<Tag<T>>>;

  /// Half vectors, by unpacks.
  KIP_INLINE static void loadHalves(const uint8_t* from, Half& a, Half& b, Half& c) {
    const Tag<uint8_t> d;
    const U8 first = hn::LoadU(d, from), last = hn::ZeroExtendVector(d, hn::LoadU(hn::Half<Tag<uint8_t>>(), from + 16));
    V v[3] = {as<T>(first), as<T>(shiftDown<8>(first)), as<T>(last)};
    deinterleave<T, 3, 8>(v);
    const hn::Half<Tag<T>> half;
    a = hn::LowerHalf(half, v[0]), b = hn::LowerHalf(half, v[1]), c = hn::LowerHalf(half, v[2]);
  }
  KIP_INLINE static void storeHalves(Half a, Half b, Half c, uint8_t* to) {
    const Tag<T> d;
    const auto whole = [&](Half v) KIP_INLINE_LAMBDA { return hn::ZeroExtendVector(d, v); };
    U8 v[4];
    interleaveFour<T>(whole(a), whole(b), whole(c), hn::Zero(d), v);
    storeTwoWithoutFourths<T>(v[0], v[1], to);
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Two and four channels

/// The lanes of the lower and of the upper halves of two vectors side by side, in order.
template <class T>
KIP_INLINE void sideBySide(Vector<T> first, Vector<T> second, Vector<T>& lower, Vector<T>& upper) {
  const Tag<T> d;
  interleaveBlocks(hn::InterleaveLower(d, first, second), hn::InterleaveUpper(d, first, second), lower, upper);
}

/// Two interleaved channels of bytes.
struct TwoInterleaved {
  KIP_INLINE static void load(const uint8_t* from, U8& a, U8& b) {
    const U8 first = loadBlocks(from, 32), second = loadBlocks(from + 16, 32);
    a = packBytes(evenBytes(first), evenBytes(second)), b = packBytes(oddBytes(first), oddBytes(second));
  }
  KIP_INLINE static void store(U8 a, U8 b, uint8_t* to) {
    const Tag<uint8_t> d;
    U8 lower, upper;
    sideBySide<uint8_t>(a, b, lower, upper);
    hn::StoreU(lower, d, to);
    hn::StoreU(upper, d, to + kLanes<uint8_t>);
  }
};

/// Four interleaved channels of samples of type T: four vectors, of which each holds a quarter of every block's pixels.
template <class T>
struct FourInterleaved {
  using V = Vector<T>;
  static constexpr int kVectors = 4;
  static constexpr int kBlockBytes = 16 * kVectors;

  KIP_INLINE static void load(const T* samples, V& a, V& b, V& c, V& d) {
    // Samples of the size of which there are four in a block need no shuffle.
    using Part = std::conditional_t<kHasByteShuffle, uint32_t, T>;
    Vector<Part> v[kVectors];
    for (int k = 0; k < kVectors; ++k) v[k] = as<Part>(shuffled(vectorAt(samples, k), kTables.gather));
    if constexpr (kHasByteShuffle) {
      transposeBlocks<Part>(v);
    } else {
      deinterleave<Part>(v);
    }
    a = as<T>(v[0]), b = as<T>(v[1]), c = as<T>(v[2]), d = as<T>(v[3]);
  }

  /// Bytes of three channels as 16-bit lanes, those of one half of each block, in the order that packing wants.
  KIP_INLINE static void loadWords(const uint8_t* bytes, int half, I16& a, I16& b, I16& c) {
    if constexpr (!kHasByteShuffle) {
      const U8 first = vectorAt(bytes, 2 * half), second = vectorAt(bytes, 2 * half + 1);
      const auto lower = [](I16 pair) KIP_INLINE_LAMBDA { return hn::And(as<int32_t>(pair), set<int32_t>(0xFFFF)); };
      const auto upper = [](I16 pair) KIP_INLINE_LAMBDA { return hn::ShiftRight<16>(as<int32_t>(pair)); };
      a = packWords(lower(evenBytes(first)), lower(evenBytes(second)));
      b = packWords(lower(oddBytes(first)), lower(oddBytes(second)));
      c = packWords(upper(evenBytes(first)), upper(evenBytes(second)));
      return;
    }
    const auto words = [&](int k, const auto& places)
                           KIP_INLINE_LAMBDA { return as<uint64_t>(shuffled(vectorAt(bytes, 2 * half + k), places)); };
    const Tag<uint64_t> d64;
    const Vector<uint64_t> ab0 = words(0, kTables.firstWords), ab1 = words(1, kTables.firstWords);
    a = as<int16_t>(hn::InterleaveLower(ab0, ab1));
    b = as<int16_t>(hn::InterleaveUpper(d64, ab0, ab1));
    c = as<int16_t>(hn::InterleaveLower(words(0, kTables.lastWords), words(1, kTables.lastWords)));
  }

  KIP_INLINE static void store(V a, V b, V c, V d, T* samples) {
    U8 v[kVectors];
    interleaveFour<T>(a, b, c, d, v);
    storeFourUnits(v, reinterpret_cast<uint8_t*>(samples));
  }

  /// Leaves the fourth channel in memory as it is.
  KIP_INLINE static void storeThree(V a, V b, V c, T* samples) {
    U8 v[kVectors];
    interleaveFour<T>(a, b, c, hn::Zero(Tag<T>()), v);
    for (int k = 0; k < kVectors; ++k) v[k] = withFourth(v[k], vectorAt(samples, k));
    storeFourUnits(v, reinterpret_cast<uint8_t*>(samples));
  }

 private:
  static constexpr int kPixels = 16 / (4 * sizeof(T));  // in a vector's 128 bits
  struct Tables {
    alignas(16) uint8_t gather[16];  // the samples of each channel side by side
    alignas(16) uint8_t firstWords[16],
        lastWords[16];               // bytes of the first two, and of the last two channels, as 16-bit lanes
    alignas(16) uint8_t fourth[16];  // 0xFF where the fourth channel lies
    constexpr Tables() : gather(), firstWords(), lastWords(), fourth() {
      constexpr int kGap = 0x80;
      for (int i = 0; i < 16; ++i) {
        const int byte = i % sizeof(T), sample = i / sizeof(T);
        gather[i] = (sample % kPixels * 4 + sample / kPixels) * sizeof(T) + byte;
        fourth[i] = sample % 4 == 3 ? 0xFF : 0;
        const int word = i / 2;
        firstWords[i] = i % 2 == 1 ? kGap : word % 4 * 4 + word / 4;
        lastWords[i] = i % 2 == 1 ? kGap : word % 4 * 4 + word / 4 + 2;
      }
    }
  };
  static constexpr Tables kTables{};

  KIP_INLINE static U8 shuffled(U8 v, const uint8_t (&places)[16]) {
    return sizeof(T) == 4 || !kHasByteShuffle ? v : shuffleBlocks(v, places);
  }
  /// Samples whose fourth ones are zero, with those of old ones.
  KIP_INLINE static U8 withFourth(U8 v, U8 old) {
    constexpr int kFirstThree = sizeof(T) == 4 ? 0x7 : 0x77;
    if constexpr (sizeof(T) == 1) {
      return hn::Or(v, hn::And(old, blockTable(kTables.fourth)));
    } else {
      return as<uint8_t>(blendInBlocks<kFirstThree>(as<T>(v), as<T>(old)));
    }
  }
  KIP_INLINE static U8 vectorAt(const T* samples, int k) {
    return loadBlocks(reinterpret_cast<const uint8_t*>(samples) + 16 * k, kBlockBytes);
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();
#endif  // !KIP_HAS_64_ENTRY_TABLES

#endif  // include guard per target
