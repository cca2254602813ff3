// Interleaved samples of two, three and four channels in memory, and what else takes vectors apart and joins them.

#if defined(KIP_ENGINE_INTERLEAVE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_INTERLEAVE_INL_H_
#undef KIP_ENGINE_INTERLEAVE_INL_H_
#else
#define KIP_ENGINE_INTERLEAVE_INL_H_
#endif

#include "engine/simd-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// A vector whose block b holds the 16 bytes that at(b) points to.
template <class At>
KIP_INLINE U8 loadBlocksAt(const At& at) {
#if HWY_TARGET == HWY_AVX2 || KIP_AVX512
  const auto block = [&](int b) KIP_INLINE_LAMBDA { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at(b))); };
#endif
#if HWY_TARGET == HWY_AVX2
  return U8{_mm256_inserti128_si256(_mm256_castsi128_si256(block(0)), block(1), 1)};
#elif KIP_AVX512
  __m512i v = _mm512_castsi128_si512(block(0));
  v = _mm512_inserti32x4(v, block(1), 1);
  v = _mm512_inserti32x4(v, block(2), 2);
  return U8{_mm512_inserti32x4(v, block(3), 3)};
#else
  return hn::LoadU(Tag<uint8_t>(), at(0));
#endif
}

/// The blocks of two vectors alternately: the inverse of loadBlocks from two places.
KIP_INLINE void storeTwoBlocks(U8 first, U8 second, uint8_t* to) {
  const Tag<uint8_t> d;
#if HWY_TARGET == HWY_AVX2
  hn::StoreU(hn::ConcatLowerLower(d, second, first), d, to);
  hn::StoreU(hn::ConcatUpperUpper(d, second, first), d, to + 32);
#elif KIP_AVX512
  const __m512i lower = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
  const __m512i upper = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
  hn::StoreU(U8{_mm512_permutex2var_epi64(first.raw, lower, second.raw)}, d, to);
  hn::StoreU(U8{_mm512_permutex2var_epi64(first.raw, upper, second.raw)}, d, to + 64);
#else
  hn::StoreU(first, d, to);
  hn::StoreU(second, d, to + 16);
#endif
}

/// The inverse of loadBlocksAt.
template <class At>
KIP_INLINE void storeBlocksAt(U8 v, const At& at) {
#if HWY_TARGET == HWY_AVX2 || KIP_AVX512
  const auto store = [&](int b, __m128i block)
                         KIP_INLINE_LAMBDA { _mm_storeu_si128(reinterpret_cast<__m128i*>(at(b)), block); };
#endif
#if HWY_TARGET == HWY_AVX2
  store(0, _mm256_castsi256_si128(v.raw));
  store(1, _mm256_extracti128_si256(v.raw, 1));
#elif KIP_AVX512
  store(0, _mm512_castsi512_si128(v.raw));
  store(1, _mm512_extracti32x4_epi32(v.raw, 1));
  store(2, _mm512_extracti32x4_epi32(v.raw, 2));
  store(3, _mm512_extracti32x4_epi32(v.raw, 3));
#else
  hn::StoreU(v, Tag<uint8_t>(), at(0));
#endif
}

/// A vector whose block b holds the 16 bytes at from + b * distance.
KIP_INLINE U8 loadBlocks(const uint8_t* from, ptrdiff_t distance) {
  return loadBlocksAt([&](int b) KIP_INLINE_LAMBDA { return from + b * distance; });
}

/// In each block, the lanes of as many vectors as a block has lanes: the rows of a matrix become its columns.
template <class T>
KIP_INLINE void transposeBlocks(Vector<T> (&v)[16 / sizeof(T)]) {
  constexpr int kSide = 16 / sizeof(T);
  for (int halves = kSide; halves > 1; halves /= 2) {
    Vector<T> next[kSide];
    for (int i = 0; i < kSide / 2; ++i) {
      next[2 * i] = hn::InterleaveLower(v[i], v[i + kSide / 2]);
      next[2 * i + 1] = hn::InterleaveUpper(Tag<T>(), v[i], v[i + kSide / 2]);
    }
    for (int i = 0; i < kSide; ++i) v[i] = next[i];
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Units: what one shuffle reaches

/// The bytes that one shuffle reaches: a block or, with AVX-512, the whole vector.
constexpr int kUnit = KIP_AVX512 ? 64 : 16;

#if KIP_AVX512
KIP_INLINE U8 unitTable(const uint8_t (&bytes)[kUnit]) { return hn::Load(Tag<uint8_t>(), bytes); }
KIP_INLINE U8 shuffleUnits(U8 v, const uint8_t (&places)[kUnit]) { return permute(v, places); }
KIP_INLINE U8 loadUnits(const uint8_t* from, ptrdiff_t) { return hn::LoadU(Tag<uint8_t>(), from); }
KIP_INLINE U8 unitsInOrder(U8 packed) {
  return U8{_mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), packed.raw)};
}
#else
KIP_INLINE U8 unitTable(const uint8_t (&bytes)[kUnit]) { return blockTable(bytes); }
KIP_INLINE U8 shuffleUnits(U8 v, const uint8_t (&places)[kUnit]) { return shuffleBlocks(v, places); }
/// A vector whose unit u holds the bytes at from + u * distance.
KIP_INLINE U8 loadUnits(const uint8_t* from, ptrdiff_t distance) { return loadBlocks(from, distance); }
/// What the 16-bit lanes of two vectors of units, or of what became of them, are packed to, in order.
KIP_INLINE U8 unitsInOrder(U8 packed) { return packed; }
#endif

/// The inverse of loadUnits for three vectors whose units follow one another.
KIP_INLINE void storeThreeUnits(U8 first, U8 second, U8 third, uint8_t* to) {
  const Tag<uint8_t> d;
#if HWY_TARGET == HWY_AVX2
  hn::StoreU(hn::ConcatLowerLower(d, second, first), d, to);
  hn::StoreU(hn::ConcatUpperLower(d, first, third), d, to + 32);
  hn::StoreU(hn::ConcatUpperUpper(d, third, second), d, to + 64);
#else
  hn::StoreU(first, d, to);
  hn::StoreU(second, d, to + kUnit);
  hn::StoreU(third, d, to + 2 * kUnit);
#endif
}

// ---------------------------------------------------------------------------------------------------------------------
// Three channels

#if KIP_AVX512
/// Where samples of three channels lie in three vectors of N samples. 3 does not divide N, so those of one channel are
/// at three different residues mod 3 and vectors of them can be blended without collision.
template <class T>
struct ThreeChannelTables {
  static constexpr int kSamples = 64 / sizeof(T);  // in a vector
  uint8_t residue1[64];                            // 0xFF at positions of residue 1
  uint8_t third[3][64];                            // 0xFF where vector u has the third channel
  uint8_t gather[3][64];     // channel c in the vector that has it at residue 0, and in a blend of the others
  uint8_t scatter[3][64];    // the other two channels of vector u
  uint8_t scatterThird[64];  // the third channel, where it is in any vector
  constexpr ThreeChannelTables() : residue1(), third(), gather(), scatter(), scatterThird() {
    constexpr int kBytes = sizeof(T);
    for (int i = 0; i < 3 * 64; ++i) {
      const int byte = i % kBytes, channel = i / kBytes % 3, sample = i / kBytes / 3;
      const int vector = i / 64, place = i % 64, residue = place / kBytes % 3;
      const int to = sample * kBytes + byte;
      residue1[place] = residue == 1 ? 0xFF : 0;
      gather[channel][to] = (residue == 0 ? 0 : 64) + place;
      if (channel == 2) {
        third[vector][place] = 0xFF, scatterThird[place] = to;
      } else {
        scatter[vector][place] = channel * 64 + to;
      }
    }
  }
};

/// Three interleaved channels of samples of type T.
template <class T>
struct ThreeChannels {
  using V = Vector<T>;

  KIP_INLINE static void load(const T* samples, V& a, V& b, V& c) {
    U8 v[3];
    for (int u = 0; u < 3; ++u) v[u] = as<uint8_t>(hn::LoadU(Tag<T>(), samples + u * kN));
    const auto channel = [&](int which) KIP_INLINE_LAMBDA {
      const auto at = [&](int residue) { return v[(which - residue + 3) * kN % 3]; };
      return as<T>(permute(at(0), select(kTables.residue1, at(1), at(2)), kTables.gather[which]));
    };
    a = channel(0), b = channel(1), c = channel(2);
  }

  KIP_INLINE static void store(V a, V b, V c, T* samples) {
    const U8 third = permute(as<uint8_t>(c), kTables.scatterThird);
    for (int u = 0; u < 3; ++u) {
      const U8 others = permute(as<uint8_t>(a), as<uint8_t>(b), kTables.scatter[u]);
      hn::StoreU(as<T>(select(kTables.third[u], third, others)), Tag<T>(), samples + u * kN);
    }
  }

 private:
  alignas(64) static constexpr ThreeChannelTables<T> kTables{};
  static constexpr int kN = ThreeChannelTables<T>::kSamples;

  KIP_INLINE static U8 select(const uint8_t (&places)[64], U8 there, U8 elsewhere) {
    return hn::IfThenElse(hn::MaskFromVec(unitTable(places)), there, elsewhere);
  }
};
#else
/// Three interleaved channels of samples of type T. Three units hold N pixels, N samples to a unit; 3 does not divide
/// N, so the samples of one channel lie in the three units at three different residues mod 3 and can be blended to one
/// unit without collision, which a shuffle puts in order.
template <class T>
struct ThreeChannelTables {
  static constexpr int kSamples = kUnit / sizeof(T);  // in a unit
  uint8_t residue[3][kUnit];                          // 0xFF where the sample's position has that residue
  uint8_t gather[3][kUnit];                           // where channel c's sample i lies after blending: 3 i + c
  uint8_t scatter[3][kUnit];                          // the inverse
  constexpr ThreeChannelTables() : residue(), gather(), scatter() {
    constexpr int kBytes = sizeof(T);
    for (int c = 0; c < 3; ++c) {
      for (int i = 0; i < kSamples; ++i) {
        const int position = (3 * i + c) % kSamples;
        for (int b = 0; b < kBytes; ++b) {
          residue[c][i * kBytes + b] = i % 3 == c ? 0xFF : 0;
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
  alignas(kUnit) static constexpr ThreeChannelTables<T> kTables{};

  // Position j of unit u holds channel (N u + j) mod 3.
  static constexpr int kN = ThreeChannelTables<T>::kSamples;
  static constexpr int channelAt(int unit, int residue) { return (kN * unit + residue) % 3; }
  static constexpr int unitOf(int channel, int residue) { return (channel - residue + 3) * kN % 3; }

  /// The samples of one vector each at positions of residue 0, 1 and 2.
  KIP_INLINE static U8 blend(U8 at0, U8 at1, U8 at2) {
#if HWY_TARGET == HWY_SSE4 || HWY_TARGET == HWY_AVX2
    // Blends by constants; the bits are the positions of residue 0, and of residue 1, in each block.
    if constexpr (sizeof(T) == 4) {
      constexpr int kTwoBlocks = HWY_TARGET == HWY_AVX2 ? 0b10001 : 1;
      const auto floats = [](U8 v) KIP_INLINE_LAMBDA { return as<float>(v).raw; };
      const auto rest = KIP_MM(blend_ps)(floats(at2), floats(at1), kTwoBlocks * 0b0010);
      return as<uint8_t>(F32{KIP_MM(blend_ps)(rest, floats(at0), kTwoBlocks * 0b1001)});
    } else if constexpr (sizeof(T) == 2) {
      return U8{KIP_MM(blend_epi16)(KIP_MM(blend_epi16)(at2.raw, at1.raw, 0b10010010), at0.raw, 0b01001001)};
    }
#endif
    const auto is0 = hn::MaskFromVec(unitTable(kTables.residue[0]));
    const auto is1 = hn::MaskFromVec(unitTable(kTables.residue[1]));
    return hn::IfThenElse(is0, at0, hn::IfThenElse(is1, at1, at2));
  }

  KIP_INLINE static void load(const T* samples, V& a, V& b, V& c) {
    const auto* from = reinterpret_cast<const uint8_t*>(samples);
    U8 units[3];
    for (int u = 0; u < 3; ++u) units[u] = loadUnits(from + u * kUnit, 3 * kUnit);
    const auto channel = [&](int which) KIP_INLINE_LAMBDA {
      const U8 blended = blend(units[unitOf(which, 0)], units[unitOf(which, 1)], units[unitOf(which, 2)]);
      return as<T>(shuffleUnits(blended, kTables.gather[which]));
    };
    a = channel(0), b = channel(1), c = channel(2);
  }

  KIP_INLINE static void store(V a, V b, V c, T* samples) {
    const auto spread = [](V v, int which)
                            KIP_INLINE_LAMBDA { return shuffleUnits(as<uint8_t>(v), kTables.scatter[which]); };
    const U8 channels[3] = {spread(a, 0), spread(b, 1), spread(c, 2)};
    const auto unit = [&](int which) KIP_INLINE_LAMBDA {
      return blend(channels[channelAt(which, 0)], channels[channelAt(which, 1)], channels[channelAt(which, 2)]);
    };
    storeThreeUnits(unit(0), unit(1), unit(2), reinterpret_cast<uint8_t*>(samples));
  }
};
#endif

// ---------------------------------------------------------------------------------------------------------------------
// Two and four channels

#if KIP_AVX512
/// Where samples of kBytes bytes lie in two vectors, one after the other.
template <int kBytes>
struct ChannelTables {
  static constexpr int kSamples = 64 / kBytes;  // in a vector
  uint8_t ofTwo[2][64];                         // the first, and the second of two channels
  uint8_t ofFour[2][64];  // the first two, and the last two of four channels: all samples of one, then of the other
  uint8_t words[3][64];   // bytes of each of the first three of four channels, for every second byte
  uint8_t turns[2][64];   // a sample of each vector alternately: from their lower, and from their upper halves
  constexpr ChannelTables() : ofTwo(), ofFour(), words(), turns() {
    for (int i = 0; i < 64; ++i) {
      const int byte = i % kBytes, sample = i / kBytes, half = sample / (kSamples / 2);
      for (int k = 0; k < 2; ++k) {
        ofTwo[k][i] = (2 * sample + k) * kBytes + byte;
        ofFour[k][i] = (4 * (sample % (kSamples / 2)) + 2 * k + half) * kBytes + byte;
        turns[k][i] = sample % 2 * 64 + (k * kSamples / 2 + sample / 2) * kBytes + byte;
      }
      for (int c = 0; c < 3; ++c) words[c][i] = i / 2 * 4 + c;
    }
  }
};
template <int kBytes>
alignas(64) constexpr ChannelTables<kBytes> kChannels{};
#endif

/// The lanes of the lower and of the upper halves of two vectors side by side, in order.
template <class T>
KIP_INLINE void sideBySide(Vector<T> first, Vector<T> second, Vector<T>& lower, Vector<T>& upper) {
#if KIP_AVX512
  const auto& turns = kChannels<sizeof(T)>.turns;
  lower = as<T>(permute(as<uint8_t>(first), as<uint8_t>(second), turns[0]));
  upper = as<T>(permute(as<uint8_t>(first), as<uint8_t>(second), turns[1]));
#else
  const Tag<T> d;
  lower = hn::InterleaveLower(d, first, second);
  upper = hn::InterleaveUpper(d, first, second);
#if HWY_TARGET == HWY_AVX2
  const Vector<T> lowerHalves = lower;
  lower = hn::ConcatLowerLower(d, upper, lowerHalves);
  upper = hn::ConcatUpperUpper(d, upper, lowerHalves);
#endif
#endif
}

/// Two interleaved channels of bytes.
struct TwoInterleaved {
  KIP_INLINE static void load(const uint8_t* from, U8& a, U8& b) {
#if KIP_AVX512
    const U8 first = loadUnits(from, 0), second = loadUnits(from + kUnit, 0);
    a = permute(first, second, kChannels<1>.ofTwo[0]), b = permute(first, second, kChannels<1>.ofTwo[1]);
#else
    const U8 first = loadBlocks(from, 32), second = loadBlocks(from + 16, 32);
    a = packBytes(evenBytes(first), evenBytes(second)), b = packBytes(oddBytes(first), oddBytes(second));
#endif
  }
  KIP_INLINE static void store(U8 a, U8 b, uint8_t* to) {
    const Tag<uint8_t> d;
    U8 lower, upper;
    sideBySide<uint8_t>(a, b, lower, upper);
    hn::StoreU(lower, d, to);
    hn::StoreU(upper, d, to + kLanes<uint8_t>);
  }
};

#if KIP_AVX512
/// Four interleaved channels of samples of type T.
template <class T>
struct FourInterleaved {
  using V = Vector<T>;

  KIP_INLINE static void load(const T* samples, V& a, V& b, V& c, V& d) {
    const auto channels = [&](int half, int which) KIP_INLINE_LAMBDA {
      return as<T>(permute(vectorAt(samples, 2 * half), vectorAt(samples, 2 * half + 1), kTables.ofFour[which]));
    };
    const Tag<T> tag;
    const V ab[2] = {channels(0, 0), channels(1, 0)}, cd[2] = {channels(0, 1), channels(1, 1)};
    a = hn::ConcatLowerLower(tag, ab[1], ab[0]), b = hn::ConcatUpperUpper(tag, ab[1], ab[0]);
    c = hn::ConcatLowerLower(tag, cd[1], cd[0]), d = hn::ConcatUpperUpper(tag, cd[1], cd[0]);
  }

  /// Bytes of three channels as 16-bit lanes, those of the first or the second half of the pixels.
  KIP_INLINE static void loadWords(const uint8_t* bytes, int half, I16& a, I16& b, I16& c) {
    const auto words = [&](int channel) KIP_INLINE_LAMBDA {
      return permuteToWords(vectorAt(bytes, 2 * half), vectorAt(bytes, 2 * half + 1), kTables.words[channel]);
    };
    a = words(0), b = words(1), c = words(2);
  }

  KIP_INLINE static void store(V a, V b, V c, V d, T* samples) {
    U8 v[4];
    interleave(a, b, c, d, v);
    for (int k = 0; k < 4; ++k) storeAt(v[k], samples, k);
  }

  /// Leaves the fourth channel in memory as it is.
  KIP_INLINE static void storeThree(V a, V b, V c, T* samples) {
    U8 v[4];
    interleave(a, b, c, c, v);
    const hn::Mask<Tag<T>> firstThree{static_cast<decltype(firstThree.raw)>(0x7777777777777777)};
    for (int k = 0; k < 4; ++k) hn::BlendedStore(as<T>(v[k]), firstThree, Tag<T>(), samples + k * kLanes<T>);
  }

 private:
  static constexpr const auto& kTables = kChannels<sizeof(T)>;

  KIP_INLINE static U8 vectorAt(const T* samples, int k) {
    return hn::LoadU(Tag<uint8_t>(), reinterpret_cast<const uint8_t*>(samples) + 64 * k);
  }
  KIP_INLINE static void storeAt(U8 v, T* samples, int k) {
    hn::StoreU(v, Tag<uint8_t>(), reinterpret_cast<uint8_t*>(samples) + 64 * k);
  }
  KIP_INLINE static void interleave(V a, V b, V c, V d, U8 (&v)[4]) {
    for (int half = 0; half < 2; ++half) {
      const U8 ab = permute(as<uint8_t>(a), as<uint8_t>(b), kTables.turns[half]);
      const U8 cd = permute(as<uint8_t>(c), as<uint8_t>(d), kTables.turns[half]);
      for (int k = 0; k < 2; ++k) v[2 * half + k] = permute(ab, cd, kChannels<2 * sizeof(T)>.turns[k]);
    }
  }
};
#else
/// Four interleaved channels of samples of type T: four vectors, of which each holds a quarter of every block's pixels.
template <class T>
struct FourInterleaved {
  using V = Vector<T>;
  static constexpr int kVectors = 4;
  static constexpr int kBlockBytes = 16 * kVectors;

  KIP_INLINE static void load(const T* samples, V& a, V& b, V& c, V& d) {
    U32 v[kVectors];
    for (int k = 0; k < kVectors; ++k) v[k] = as<uint32_t>(shuffled(vectorAt(samples, k), kTables.gather));
    transposeBlocks<uint32_t>(v);
    a = as<T>(v[0]), b = as<T>(v[1]), c = as<T>(v[2]), d = as<T>(v[3]);
  }

  /// Bytes of three channels as 16-bit lanes, those of one half of each block, in the order that packing wants.
  KIP_INLINE static void loadWords(const uint8_t* bytes, int half, I16& a, I16& b, I16& c) {
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
    interleave(a, b, c, d, v);
    for (int k = 0; k < kVectors; ++k) storeAt(v[k], samples, k);
  }

  /// Leaves the fourth channel in memory as it is.
  KIP_INLINE static void storeThree(V a, V b, V c, T* samples) {
    U8 v[kVectors];
    interleave(a, b, c, hn::Zero(Tag<T>()), v);
    const U8 fourth = blockTable(kTables.fourth);
    for (int k = 0; k < kVectors; ++k) v[k] = hn::Or(v[k], hn::And(vectorAt(samples, k), fourth));
    for (int k = 0; k < kVectors; ++k) storeAt(v[k], samples, k);
  }

 private:
  static constexpr int kPixels = 16 / (4 * sizeof(T));  // in a vector's 128 bits
  struct Tables {
    uint8_t gather[16];                     // the samples of each channel side by side
    uint8_t firstWords[16], lastWords[16];  // bytes of the first two, and of the last two channels, as 16-bit lanes
    uint8_t fourth[16];                     // 0xFF where the fourth channel lies
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
  alignas(16) static constexpr Tables kTables{};

  KIP_INLINE static U8 shuffled(U8 v, const uint8_t (&places)[16]) {
    return sizeof(T) == 4 ? v : shuffleBlocks(v, places);
  }
  KIP_INLINE static U8 vectorAt(const T* samples, int k) {
    return loadBlocks(reinterpret_cast<const uint8_t*>(samples) + 16 * k, kBlockBytes);
  }
  KIP_INLINE static void storeAt(U8 v, T* samples, int k) {
    uint8_t* to = reinterpret_cast<uint8_t*>(samples) + 16 * k;
    storeBlocksAt(v, [&](int b) KIP_INLINE_LAMBDA { return to + b * kBlockBytes; });
  }
  KIP_INLINE static void interleave(V a, V b, V c, V d, U8 (&v)[kVectors]) {
    using Two = hwy::MakeUnsigned<hwy::MakeWide<hwy::MakeUnsigned<T>>>;
    const Tag<T> tag;
    const Tag<Two> two;
    const auto ab = as<Two>(hn::InterleaveLower(a, b)), abUpper = as<Two>(hn::InterleaveUpper(tag, a, b));
    const auto cd = as<Two>(hn::InterleaveLower(c, d)), cdUpper = as<Two>(hn::InterleaveUpper(tag, c, d));
    v[0] = as<uint8_t>(hn::InterleaveLower(ab, cd)), v[1] = as<uint8_t>(hn::InterleaveUpper(two, ab, cd));
    v[2] = as<uint8_t>(hn::InterleaveLower(abUpper, cdUpper));
    v[3] = as<uint8_t>(hn::InterleaveUpper(two, abUpper, cdUpper));
  }
};
#endif

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
