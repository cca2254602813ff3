// Conversions between full-resolution pixels and subsampled chroma: the layouts, and the walk over groups of pixels
// that share their chroma. What is computed comes from the families' arithmetic types.
//
// Encoding works on pixels in lanes for dot products, half a batch of them at a time. An encoder is a type with
//   luma(pixels)                      their luma: I16 at the encoder's own scale, or LumaSums
//   I16 toByte(I16 luma)              that luma as samples
//   part(pixels, luma)                what chroma is computed from, which is added up over the rows of a group
//   Sums sums(part)                   the same for the groups of half a batch
//   void chroma(Sums[2], samples)     sets the chroma samples from both halves
//
// A decoder is a type with
//   load(layout, rows)                the source's samples in the lanes that it works on
//   terms(samples)                    what the chroma adds to each channel
//   Pixels<U8> row(samples, r, terms) the pixels of luma row r

#if defined(KIP_LUMACHROMA_SUBSAMPLING_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_LUMACHROMA_SUBSAMPLING_INL_H_
#undef KIP_LUMACHROMA_SUBSAMPLING_INL_H_
#else
#define KIP_LUMACHROMA_SUBSAMPLING_INL_H_
#endif

#include "engine/pairs-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

// ---------------------------------------------------------------------------------------------------------------------
// Layouts of subsampled images

/// y[] is one vector per luma row; u and v are 16-bit lanes, one per pixel pair, in order.
struct Subsampled {
  U8 y[2];
  I16 u, v;
};

/// The same with chroma for four pixels in a row: 32-bit lanes, one per four pixels, in order.
struct Subsampled4 {
  U8 y[1];
  I32 u, v;
};

/// Samples in 16-bit lanes, half a batch of pixels in each vector. The layout's kLumaByte tells which of the two
/// bytes of a lane is the sample of luma. Luma by row and half, which the layout puts in order once they are packed;
/// chroma by half, bytes u, v, u, v, or v, u, v, u if kChromaSwapped, for each two pixels of the luma beside it.
struct InLanes {
  U8 y[2][2];
  U8 chroma[2];
};

/// Packed 4:2:2, four bytes for a pixel pair. kLumaFirst: Y0 u Y1 v, else u Y0 v Y1; kSwapped: v and u change places.
template <bool kLumaFirst = true, bool kSwapped = false>
struct Packed422 : Interleaved<Tag<uint8_t>, 2> {
  using Samples = Subsampled;
  static constexpr int kLumaRows = 1, kGroupWidth = 2;
  static constexpr int kLumaByte = kLumaFirst ? 0 : 1, kChromaByte = 1 - kLumaByte;
  static constexpr bool kChromaSwapped = kSwapped;

  KIP_INLINE Subsampled load(const Rows<const Kip8u, 1>& from) const {
    U8 first, second;
    TwoInterleaved::load(from.at[0], first, second);
    Subsampled s;
    s.y[0] = kLumaFirst ? first : second;
    const U8 chroma = kLumaFirst ? second : first;
    s.u = kSwapped ? oddBytes(chroma) : evenBytes(chroma);
    s.v = kSwapped ? evenBytes(chroma) : oddBytes(chroma);
    return s;
  }
  KIP_INLINE void store(const Subsampled& s, const Rows<Kip8u, 1>& to) const {
    const U8 chroma = kSwapped ? mergeBytes(s.v, s.u) : mergeBytes(s.u, s.v);
    const U8 first = kLumaFirst ? s.y[0] : chroma, second = kLumaFirst ? chroma : s.y[0];
    TwoInterleaved::store(first, second, to.at[0]);
  }
  KIP_INLINE InLanes loadInLanes(const Rows<const Kip8u, 1>& from) const {
    InLanes s;
    for (int half = 0; half < 2; ++half) {
      s.y[0][half] = loadUnits(from.at[0] + kUnit * half, 2 * kUnit);
      s.chroma[half] = chromaTwice(s.y[0][half]);
    }
    return s;
  }
  KIP_INLINE static U8 packedInOrder(U8 packed) { return unitsInOrder(packed); }

 private:
  KIP_INLINE static U8 chromaTwice(U8 v) {
    constexpr int kFirst = kChromaByte, kSecond = kFirst + 2;
    alignas(16) static constexpr struct Table {
      uint8_t places[16];
      constexpr Table() : places() {
        for (int i = 0; i < 16; ++i) places[i] = i / 4 * 4 + (i % 2 == 0 ? kFirst : kSecond);
      }
    } kTable;
    if constexpr (kHasByteShuffle) return shuffleBlocks(v, kTable.places);
    return LaneShuffle<kFirst, kSecond, kFirst, kSecond>::of(v);
  }
};

/// What planar layouts have in common: samples in the lower bytes of their lanes.
struct InLowerBytes {
  static constexpr int kLumaByte = 0;
  static constexpr bool kChromaSwapped = false;

  KIP_INLINE static U8 packedInOrder(U8 packed) { return packed; }

 protected:
  KIP_INLINE static void widenLuma(U8 y, U8 (&halves)[2]) {
    halves[0] = as<uint8_t>(lowerBytes(y)), halves[1] = as<uint8_t>(upperBytes(y));
  }
  /// From the samples of each pixel pair, in order.
  KIP_INLINE static void pairChroma(I16 u, I16 v, U8 (&halves)[2]) {
    const I16 uv = hn::Or(u, hn::ShiftLeft<8>(v));
    halves[0] = as<uint8_t>(hn::InterleaveLower(uv, uv));
    halves[1] = as<uint8_t>(hn::InterleaveUpper(Tag<int16_t>(), uv, uv));
  }
};

/// Planar 4:2:2 (one luma row) and 4:2:0 (two luma rows, which come first among the pointers). kSwapped: the plane of v
/// comes before that of u.
template <int kRows, bool kSwapped = false>
struct PlanarChroma : InLowerBytes {
  using Samples = Subsampled;
  static constexpr int kBatch = kLanes<uint8_t>;
  static constexpr int kLumaRows = kRows, kGroupWidth = 2;
  static constexpr int kPointers = kRows + 2;
  static constexpr bool kKeeps = false;
  static constexpr bool kTakesAlpha = false;
  static constexpr size_t bytes(int p, size_t pixels) { return p < kRows ? pixels : (pixels + 1) / 2; }

  template <class Byte>
  static Rows<Byte, kPointers> rows(const Image<Byte>& image, int group) {
    Rows<Byte, kPointers> rows;
    for (int r = 0; r < kRows; ++r) rows.at[r] = image.row(0, kRows * group + r);
    rows.at[kRows] = image.row(kSwapped ? 2 : 1, group);
    rows.at[kRows + 1] = image.row(kSwapped ? 1 : 2, group);
    return rows;
  }
  KIP_INLINE Subsampled load(const Rows<const Kip8u, kPointers>& from) const {
    Subsampled s;
    for (int r = 0; r < kRows; ++r) s.y[r] = hn::LoadU(Tag<uint8_t>(), from.at[r]);
    s.u = loadHalf(from.at[kRows]);
    s.v = loadHalf(from.at[kRows + 1]);
    return s;
  }
  KIP_INLINE void store(const Subsampled& s, const Rows<Kip8u, kPointers>& to) const {
    for (int r = 0; r < kRows; ++r) hn::StoreU(s.y[r], Tag<uint8_t>(), to.at[r]);
    storeHalf(s.u, to.at[kRows]);
    storeHalf(s.v, to.at[kRows + 1]);
  }
  KIP_INLINE InLanes loadInLanes(const Rows<const Kip8u, kPointers>& from) const {
    InLanes s;
    const Subsampled bytes = load(from);
    for (int r = 0; r < kRows; ++r) widenLuma(bytes.y[r], s.y[r]);
    pairChroma(bytes.u, bytes.v, s.chroma);
    return s;
  }
};
using Planar422 = PlanarChroma<1>;
using Planar420 = PlanarChroma<2>;
using Planar420Swapped = PlanarChroma<2, true>;

/// Planar 4:1:1: a chroma sample for four pixels in a row. Only whole groups are loaded and stored.
struct Planar411 : InLowerBytes {
  using Samples = Subsampled4;
  static constexpr int kBatch = kLanes<uint8_t>;
  static constexpr int kLumaRows = 1, kGroupWidth = 4;
  static constexpr int kPointers = 3;
  static constexpr bool kKeeps = false;
  static constexpr bool kTakesAlpha = false;
  static constexpr size_t bytes(int p, size_t pixels) { return p == 0 ? pixels : pixels / 4; }

  template <class Byte>
  static Rows<Byte, kPointers> rows(const Image<Byte>& image, int y) {
    return {{image.row(0, y), image.row(1, y), image.row(2, y)}};
  }
  KIP_INLINE InLanes loadInLanes(const Rows<const Kip8u, kPointers>& from) const {
    InLanes s;
    widenLuma(hn::LoadU(Tag<uint8_t>(), from.at[0]), s.y[0]);
    pairChroma(loadQuarterTwice(from.at[1]), loadQuarterTwice(from.at[2]), s.chroma);
    return s;
  }
  KIP_INLINE void store(const Subsampled4& s, const Rows<Kip8u, kPointers>& to) const {
    hn::StoreU(s.y[0], Tag<uint8_t>(), to.at[0]);
    storeQuarter(s.u, to.at[1]);
    storeQuarter(s.v, to.at[2]);
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Sums over groups of pixels

/// A pair of 16-bit channels of each pixel in half a batch.
struct ChannelPairs {
  I16 of[2];
};
KIP_INLINE ChannelPairs operator+(const ChannelPairs& a, const ChannelPairs& b) {
  return {{hn::Add(a.of[0], b.of[0]), hn::Add(a.of[1], b.of[1])}};
}

/// The luma of PixelQuads x 2^16, no sample of which needs to be limited.
struct LumaSums {
  I32 of[2];
};

/// Sums over neighbouring pixels: one pair of 16-bit sums for each two lanes of `lower`, then of `upper`.
KIP_INLINE I16 addNeighbours(I16 lower, I16 upper) {
  const I32 a = as<int32_t>(lower), b = as<int32_t>(upper);
  return hn::Add(as<int16_t>(evenLanes(a, b)), as<int16_t>(oddLanes(a, b)));
}

// ---------------------------------------------------------------------------------------------------------------------
// The walks

/// The pixels of a row that make whole groups of a subsampled layout.
template <class Layout>
constexpr int wholeGroups(int width) {
  return width - width % Layout::kGroupWidth;
}

/// Pixels to subsampled chroma. Pixels beyond a row's last whole group are left out.
template <class Op, class Src, class Dst>
class Encode {
 public:
  using GroupOf = std::conditional_t<Dst::kLumaRows == 2, TwoRows<Src>, Src>;

  KIP_INLINE explicit Encode(const Job& job) : op_(makeFor<Op>(job)), dst_(makeFor<Dst>(job)) {}

  static void rows(const Job& job, int first, int last) {
    const Encode encode(job);
    forJobRows<GroupOf, Dst>(job, first, last, wholeGroups<Dst>(job.width),
                             [&](const auto& from, const auto& to, size_t pixels)
                                 KIP_INLINE_LAMBDA { encode.group(from, to, pixels); });
  }

  /// The first pixels of a row group.
  KIP_INLINE void group(const Rows<const Kip8u, GroupOf::kPointers>& from, const Rows<Kip8u, Dst::kPointers>& to,
                        size_t pixels) const {
    forBatches<GroupOf, Dst>(from, to, 0, pixels,
                             [this](const auto& in, const auto& out) KIP_INLINE_LAMBDA { dst_.store(batch(in), out); });
  }

 private:
  static constexpr int kRows = Dst::kLumaRows;

  KIP_INLINE typename Dst::Samples batch(const Rows<const Kip8u, GroupOf::kPointers>& from) const {
    using Half = decltype(pixelsOf(Src(), rowOf(from, 0), 0));
    using Luma = decltype(op_.luma(Half()));
    typename Op::Sums sums[2];
    Luma luma[kRows][2];
    for (int half = 0; half < 2; ++half) {
      const auto part = [&](int r) KIP_INLINE_LAMBDA {
        const auto px = pixelsOf(Src(), rowOf(from, r), half);
        luma[r][half] = op_.luma(px);
        return op_.part(px, luma[r][half]);
      };
      if constexpr (kRows == 2) {
        const auto upper = part(0);
        sums[half] = op_.sums(upper + part(1));
      } else {
        sums[half] = op_.sums(part(0));
      }
    }
    typename Dst::Samples s;
    for (int r = 0; r < kRows; ++r) s.y[r] = lumaSamples<Half>(luma[r]);
    op_.chroma(sums, s);
    s.u = inPixelOrder<Half>(s.u), s.v = inPixelOrder<Half>(s.v);
    return s;
  }

  template <class Half>
  KIP_INLINE U8 lumaSamples(const I16 (&half)[2]) const {
    return inPixelOrder<Half>(packBytes(op_.toByte(half[0]), op_.toByte(half[1])));
  }
  template <class Half>
  KIP_INLINE static U8 lumaSamples(const LumaSums (&half)[2]) {
    return bytesFrom<16>({half[0].of[0], half[0].of[1], half[1].of[0], half[1].of[1]});
  }

  KIP_INLINE static auto rowOf(const Rows<const Kip8u, GroupOf::kPointers>& from, int which) {
    if constexpr (kRows == 2) {
      return GroupOf::row(from, which);
    } else {
      return from;
    }
  }

  Op op_;
  Dst dst_;
};

/// One pixel as the order of its space has it: what is left of odd widths.
struct Pixel {
  int a, b, c;
};
template <class Src>
Pixel pixelAt(const Rows<const Kip8u, Src::kPointers>& row, size_t x) {
  const Rows<const Kip8u, Src::kPointers> px = advance<Src>(row, x);
  if constexpr (Src::kPointers == 3) {
    return {*px.at[0], *px.at[1], *px.at[2]};
  } else {
    const Kip8u* p = px.at[0];
    return Src::kReversed ? Pixel{p[2], p[1], p[0]} : Pixel{p[0], p[1], p[2]};
  }
}

/// Subsampled chroma to pixels, each chroma sample serving its group.
template <class Op, class Src, class Dst>
class Decode {
 public:
  using GroupOf = std::conditional_t<Src::kLumaRows == 2, TwoRows<Dst>, Dst>;

  KIP_INLINE explicit Decode(const Job& job, const Op& op = Op())
      : job_(job), op_(op), src_(makeFor<Src>(job)), dst_(makeFor<Dst>(job)) {}

  static void rows(const Job& job, int first, int last) { rows(job, Op(), first, last); }
  KIP_INLINE static void rows(const Job& job, const Op& op, int first, int last) {
    const Decode decode(job, op);
    forJobRows<Src, GroupOf>(job, first, last, wholeGroups<Src>(job.width),
                             [&](const auto& from, const auto& to, size_t pixels)
                                 KIP_INLINE_LAMBDA { decode.group(from, to, 0, pixels); });
  }

  /// Pixels first .. last - 1 of a row group.
  KIP_INLINE void pixels(int group, size_t first, size_t last) const {
    this->group(Src::rows(job_.src, group), GroupOf::rows(job_.dst, group), first, last);
  }
  KIP_INLINE void group(const Rows<const Kip8u, Src::kPointers>& from, const Rows<Kip8u, GroupOf::kPointers>& to,
                        size_t first, size_t last) const {
    forBatches<Src, GroupOf>(from, to, first, last,
                             [this](const auto& in, const auto& out) KIP_INLINE_LAMBDA { this->batch(in, out); });
  }

 private:
  template <class From, class To>
  KIP_INLINE void batch(const From& from, const To& to) const {
    const auto s = op_.load(src_, from);
    const auto terms = op_.terms(s);
    for (int r = 0; r < Src::kLumaRows; ++r) {
      if constexpr (Src::kLumaRows == 2) {
        dst_.store(op_.row(s, r, terms), GroupOf::row(to, r));
      } else {
        dst_.store(op_.row(s, r, terms), to);
      }
    }
  }

  const Job& job_;
  Op op_;
  Src src_;
  Dst dst_;
};

/// The last pixel of an odd width in packed 4:2:2, made a pair. It has luma and one chroma byte, and borrows the chroma
/// of the pair before it; where there is none, its byte serves as both.
template <class Src>
void lastPair(const Job& job, int y, Kip8u (&pair)[4]) {
  const size_t x = job.width - 1;
  const Kip8u* from = job.src.row(0, y) + 2 * x;
  std::memcpy(pair, from, 2);
  std::memcpy(pair + 2, from, 2);
  if (x > 0) {
    constexpr int kFirst = Src::kChromaByte, kSecond = kFirst + 2;
    pair[kFirst] = from[kFirst - 4], pair[kSecond] = from[kSecond - 4];
  }
}

/// As Decode from packed 4:2:2, and the last pixel of an odd width.
template <class Op, class Src, class Dst>
struct DecodePacked {
  static void rows(const Job& job, int first, int last) { rows(job, Op(), first, last); }
  KIP_INLINE static void rows(const Job& job, const Op& op, int first, int last) {
    Decode<Op, Src, Dst>::rows(job, op, first, last);
    if (job.width % 2 == 0) return;
    for (int y = first; y < last; ++y) lastPixel(job, op, y);
  }

 private:
  static void lastPixel(const Job& job, const Op& op, int y) {
    Kip8u pair[4];
    lastPair<Src>(job, y, pair);
    const auto to = advance<Dst>(Dst::rows(job.dst, y), job.width - 1);
    PaddedBatch<Dst> out;
    out.copyFrom(to, 1);
    Decode<Op, Src, Dst>(job, op).group({{pair}}, out.rows, 0, 2);
    out.copyTo(to, 1);
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
