// Interleaved samples of two, three and four channels by permutes of whole vectors.

#if defined(KIP_ENGINE_INTERLEAVE64_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_INTERLEAVE64_INL_H_
#undef KIP_ENGINE_INTERLEAVE64_INL_H_
#else
#define KIP_ENGINE_INTERLEAVE64_INL_H_
#endif

#include "engine/blocks-inl.h"

#if KIP_HAS_64_ENTRY_TABLES
HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// The bytes that one shuffle reaches: a unit.
constexpr int kUnit = 64;

KIP_INLINE U8 unitTable(const uint8_t (&bytes)[kUnit]) { return tableOf64(bytes); }
KIP_INLINE U8 shuffleUnits(U8 v, const uint8_t (&places)[kUnit]) { return permute(v, places); }
/// A vector whose unit u holds the bytes at from + u * distance.
KIP_INLINE U8 loadUnits(const uint8_t* from, ptrdiff_t) { return hn::LoadU(Tag<uint8_t>(), from); }
/// The inverse of loadUnits for three vectors whose units follow one another.
KIP_INLINE void storeThreeUnits(U8 first, U8 second, U8 third, uint8_t* to) {
  const Tag<uint8_t> d;
  hn::StoreU(first, d, to);
  hn::StoreU(second, d, to + kUnit);
  hn::StoreU(third, d, to + 2 * kUnit);
}
/// What the 16-bit lanes of two vectors of units, or of what became of them, are packed to, in order.
KIP_INLINE U8 unitsInOrder(U8 packed) {
  alignas(64) static constexpr int64_t kOrder[8] = {0, 2, 4, 6, 1, 3, 5, 7};
  const Tag<int64_t> d;
  return as<uint8_t>(hn::TableLookupLanes(as<int64_t>(packed), hn::SetTableIndices(d, kOrder)));
}

// ---------------------------------------------------------------------------------------------------------------------
// Three channels

/// Where samples of three channels lie in three vectors of N samples. 3 does not divide N, so those of one channel are
/// at three different residues mod 3 and vectors of them can be blended without collision.
template <class T>
struct ThreeChannelTables {
  static constexpr int kSamples = 64 / sizeof(T);  // in a vector
  alignas(64) uint8_t residue1[64];                // 0xFF at positions of residue 1
  alignas(64) uint8_t third[3][64];                // 0xFF where vector u has the third channel
  alignas(64) uint8_t gather[3][64];   // channel c in the vector that has it at residue 0, and in a blend of the others
  alignas(64) uint8_t scatter[3][64];  // the other two channels of vector u
  alignas(64) uint8_t scatterThird[64];  // the third channel, where it is in any vector
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
  static constexpr ThreeChannelTables<T> kTables{};
  static constexpr int kN = ThreeChannelTables<T>::kSamples;

  KIP_INLINE static U8 select(const uint8_t (&places)[64], U8 there, U8 elsewhere) {
    return hn::IfThenElse(hn::MaskFromVec(unitTable(places)), there, elsewhere);
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Two and four channels

/// Where samples of kBytes bytes lie in two vectors, one after the other.
template <int kBytes>
struct ChannelTables {
  static constexpr int kSamples = 64 / kBytes;  // in a vector
  alignas(64) uint8_t ofTwo[2][64];             // the first, and the second of two channels
  alignas(64)
      uint8_t ofFour[2][64];  // the first two, and the last two of four channels: all samples of one, then of the other
  alignas(64) uint8_t words[3][64];  // bytes of each of the first three of four channels, for every second byte
  alignas(
      64) uint8_t turns[2][64];  // a sample of each vector alternately: from their lower, and from their upper halves
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
constexpr ChannelTables<kBytes> kChannels{};

/// The lanes of the lower and of the upper halves of two vectors side by side, in order.
template <class T>
KIP_INLINE void sideBySide(Vector<T> first, Vector<T> second, Vector<T>& lower, Vector<T>& upper) {
  const auto& turns = kChannels<sizeof(T)>.turns;
  lower = as<T>(permute(as<uint8_t>(first), as<uint8_t>(second), turns[0]));
  upper = as<T>(permute(as<uint8_t>(first), as<uint8_t>(second), turns[1]));
}

/// Two interleaved channels of bytes.
struct TwoInterleaved {
  KIP_INLINE static void load(const uint8_t* from, U8& a, U8& b) {
    const U8 first = loadUnits(from, 0), second = loadUnits(from + kUnit, 0);
    a = permute(first, second, kChannels<1>.ofTwo[0]), b = permute(first, second, kChannels<1>.ofTwo[1]);
  }
  KIP_INLINE static void store(U8 a, U8 b, uint8_t* to) {
    const Tag<uint8_t> d;
    U8 lower, upper;
    sideBySide<uint8_t>(a, b, lower, upper);
    hn::StoreU(lower, d, to);
    hn::StoreU(upper, d, to + kLanes<uint8_t>);
  }
};

/// The lower, and the upper, halves of the blocks of two vectors, as units to storeTwoUnits.
KIP_INLINE void unzipHalves(U8 first, U8 second, U8& lower, U8& upper) {
  const Tag<uint64_t> d;
  const auto a = as<uint64_t>(first), b = as<uint64_t>(second);
  lower = as<uint8_t>(hn::ConcatEven(d, b, a)), upper = as<uint8_t>(hn::ConcatOdd(d, b, a));
}
/// The inverse of loadUnits for two, and for four vectors whose units follow one another.
KIP_INLINE void storeTwoUnits(U8 first, U8 second, uint8_t* to) {
  hn::StoreU(first, Tag<uint8_t>(), to);
  hn::StoreU(second, Tag<uint8_t>(), to + kUnit);
}
KIP_INLINE void storeFourUnits(const U8 (&v)[4], uint8_t* to) {
  for (int k = 0; k < 4; ++k) hn::StoreU(v[k], Tag<uint8_t>(), to + kUnit * k);
}

/// The samples of four vectors side by side: their first quarters to the first vector.
template <class T>
KIP_INLINE void interleaveFour(Vector<T> a, Vector<T> b, Vector<T> c, Vector<T> d, U8 (&v)[4]) {
  if constexpr (sizeof(T) == 1) {
    // Unpacking works within blocks: what it shall put in order is transposed first. The permutes with two sources that
    // would do without take twice as long on some processors.
    const auto apart = [](U8 of) KIP_INLINE_LAMBDA {
      alignas(64) static constexpr int32_t kTransposed[16] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
      return as<uint8_t>(hn::TableLookupLanes(as<int32_t>(of), hn::SetTableIndices(Tag<int32_t>(), kTransposed)));
    };
    const Tag<uint8_t> bytes;
    const Tag<uint16_t> pairs;
    const U8 ofA = apart(a), ofB = apart(b), ofC = apart(c), ofD = apart(d);
    const auto ab = as<uint16_t>(hn::InterleaveLower(ofA, ofB)),
               abUpper = as<uint16_t>(hn::InterleaveUpper(bytes, ofA, ofB));
    const auto cd = as<uint16_t>(hn::InterleaveLower(ofC, ofD)),
               cdUpper = as<uint16_t>(hn::InterleaveUpper(bytes, ofC, ofD));
    v[0] = as<uint8_t>(hn::InterleaveLower(ab, cd)), v[1] = as<uint8_t>(hn::InterleaveUpper(pairs, ab, cd));
    v[2] = as<uint8_t>(hn::InterleaveLower(abUpper, cdUpper));
    v[3] = as<uint8_t>(hn::InterleaveUpper(pairs, abUpper, cdUpper));
  } else {
    for (int half = 0; half < 2; ++half) {
      const auto& turns = kChannels<sizeof(T)>.turns[half];
      const U8 ab = permute(as<uint8_t>(a), as<uint8_t>(b), turns), cd = permute(as<uint8_t>(c), as<uint8_t>(d), turns);
      for (int k = 0; k < 2; ++k) v[2 * half + k] = permute(ab, cd, kChannels<2 * sizeof(T)>.turns[k]);
    }
  }
}

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
    interleaveFour<T>(a, b, c, d, v);
    storeFourUnits(v, reinterpret_cast<uint8_t*>(samples));
  }

  /// Leaves the fourth channel in memory as it is.
  KIP_INLINE static void storeThree(V a, V b, V c, T* samples) {
    U8 v[4];
    interleaveFour<T>(a, b, c, c, v);
    const hn::Mask<Tag<T>> firstThree{static_cast<decltype(firstThree.raw)>(0x7777777777777777)};
    for (int k = 0; k < 4; ++k) hn::BlendedStore(as<T>(v[k]), firstThree, Tag<T>(), samples + k * kLanes<T>);
  }

 private:
  static constexpr const auto& kTables = kChannels<sizeof(T)>;

  KIP_INLINE static U8 vectorAt(const T* samples, int k) {
    return hn::LoadU(Tag<uint8_t>(), reinterpret_cast<const uint8_t*>(samples) + 64 * k);
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();
#endif  // KIP_HAS_64_ENTRY_TABLES

#endif  // include guard per target
