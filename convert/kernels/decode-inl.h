// What decoders to interleaved RGB of 8 bits have in common: the batches of a row, its tail, and stores.

#if defined(KIP_CONVERT_DECODE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_CONVERT_DECODE_INL_H_
#undef KIP_CONVERT_DECODE_INL_H_
#else
#define KIP_CONVERT_DECODE_INL_H_
#endif

#include "engine/interleave-inl.h"
#include "kernels/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// A batch of 16-bit values in two vectors, in the decoder's order.
struct Halves {
  I16 of[2];
};

/// Rows through a decoder, which is made of the work and has
///   Luma, Chroma                          the types of its samples
///   kColumns                              how chroma lies
///   decode(luma, first, third, v)         the three results of a batch, in order
template <class Decoder>
class DecodeRow {
 public:
  static void run(const convert::DecodeWork& work) {
    const DecodeRow row(work);
    size_t x = 0;
    for (; x + kBatch <= work.pixels; x += kBatch) {
      row.batch(work.luma + x * sizeof(Luma), work.first + chromaBytes(x), work.third + chromaBytes(x), work.alpha + x,
                work.out + x * row.bytesPerPixel());
    }
    if (x < work.pixels) row.tail(work, x);
  }

 private:
  using Luma = typename Decoder::Luma;
  using Chroma = typename Decoder::Chroma;
  using Interleaving = convert::Interleaving;
  static constexpr int kBatch = kLanes<uint8_t>;
  static constexpr bool kShared = Decoder::kColumns != convert::ChromaColumns::kEach;  // by two pixels each

  KIP_INLINE explicit DecodeRow(const convert::DecodeWork& work) : interleaving_(work.interleaving), decoder_(work) {}

  KIP_INLINE int bytesPerPixel() const { return interleaving_ == Interleaving::kTriple ? 3 : 4; }
  static constexpr size_t chromaBytes(size_t pixels) { return (kShared ? pixels / 2 : pixels) * sizeof(Chroma); }

  // Not inlined: it is the rare end of a row.
  HWY_NOINLINE void tail(const convert::DecodeWork& work, size_t x) const {
    const size_t left = work.pixels - x;
    alignas(64) uint8_t luma[kBatch * sizeof(Luma)] = {}, alpha[kBatch] = {}, out[4 * kBatch];
    alignas(64) uint8_t chroma[2][kBatch * sizeof(Chroma)] = {};
    std::memcpy(luma, work.luma + x * sizeof(Luma), left * sizeof(Luma));
    if (interleaving_ != Interleaving::kTriple) std::memcpy(alpha, work.alpha + x, left);
    // Shared chroma is in memory of our own, with room on both sides.
    const uint8_t* from[2] = {work.first + chromaBytes(x), work.third + chromaBytes(x)};
    for (int i = 0; i < 2 && !kShared; ++i) {
      std::memcpy(chroma[i], from[i], chromaBytes(left));
      from[i] = chroma[i];
    }
    batch(luma, from[0], from[1], alpha, out);
    std::memcpy(work.out + x * bytesPerPixel(), out, left * bytesPerPixel());
  }

  KIP_INLINE void batch(const uint8_t* luma, const uint8_t* first, const uint8_t* third, const uint8_t* alpha,
                        uint8_t* out) const {
    U8 v[3];
    decoder_.decode(luma, first, third, v);
    switch (interleaving_) {
      case Interleaving::kTriple:
        return ThreeChannels<uint8_t>::store(v[0], v[1], v[2], out);
      case Interleaving::kQuad:
        return FourInterleaved<uint8_t>::store(v[0], v[1], v[2], loadLane<uint8_t>(alpha), out);
      case Interleaving::kQuadAlphaFirst:
        return FourInterleaved<uint8_t>::store(loadLane<uint8_t>(alpha), v[0], v[1], v[2], out);
    }
  }

  Interleaving interleaving_;
  Decoder decoder_;
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
