// Where things lie in the scratch memory of a run.
#include "plan.h"

namespace kip::convert {
namespace {

// Lanes at the same place of 4096 bytes would have loads wait for stores to others.
constexpr size_t kStagger = 9 * 64;

size_t aligned(size_t bytes) { return (bytes + 63) / 64 * 64; }
int shifted(int size, int shift) { return (size + (1 << shift) - 1) >> shift; }

class Layout {
 public:
  size_t bytes() const { return bytes_; }
  size_t take(size_t bytes) {
    const size_t at = bytes_;
    bytes_ += aligned(bytes);
    return at;
  }

 private:
  size_t bytes_ = 0;
};

void layOutBayer(KipPlan& plan, Layout& layout) {
  BayerSource& bayer = plan.bayer;
  const Format& from = *plan.from;
  bayer.grid = from.bayerGrid, bayer.type = from.type;
  bayer.packedBits = from.info.sampleBytes == 0 ? from.info.bits[0] : 0;
  bayer.rgbStep = aligned(size_t(plan.width) * 3 * bytesOf(from.type));
  bayer.rgbOffset = layout.take(bayer.rgbStep * kBayerBlockRows);
  if (bayer.packedBits == 0) return;
  bayer.rawStep = aligned(size_t(plan.width) * 2);
  bayer.rawOffset = layout.take(bayer.rawStep * (1 + kBayerBlockRows + 2 * kBayerMargin));
}

}  // namespace

void layOutScratch(KipPlan& plan) {
  Layout layout;
  if (plan.isBayer) layOutBayer(plan, layout);
  for (SourcePart& source : plan.sources) {
    if (!source.needed || !source.cached) continue;
    const size_t samples = shifted(plan.width, source.shiftX);
    source.laneBytes = kMarginBytes + aligned(samples * bytesOf(plan.from->type)) + kMarginBytes + kStagger;
    source.offset = layout.take(source.laneBytes * source.part.lanes * source.rowsKept);
  }
  for (OwnLane& lane : plan.lanes) {
    lane.offset =
        layout.take(kMarginBytes + size_t(plan.segment) * bytesOf(lane.type) + kMarginBytes + kStagger) + kMarginBytes;
  }
  plan.scratchBytes = layout.bytes() + 64;  // to align it
}

}  // namespace kip::convert
