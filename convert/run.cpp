// Rows through the stages of a plan.
#include <algorithm>
#include <cstring>

#include "bayer.h"
#include "plan.h"

namespace kip::convert {
namespace {

int shifted(int size, int shift) { return (size + (1 << shift) - 1) >> shift; }

/// A fixed-size constant, sample by sample.
void fill(uint8_t* to, SampleType type, int value, size_t samples) {
  if (type == SampleType::kU8) {
    std::memset(to, value, samples);
    return;
  }
  const uint16_t sample = static_cast<uint16_t>(value);
  for (size_t i = 0; i < samples; ++i) std::memcpy(to + 2 * i, &sample, sizeof sample);
}

/// The first and the last sample go on beyond a row.
template <int kBytes>
void fillMarginsOf(uint8_t* row, size_t samples) {
  for (int i = 1; i <= kMarginSamples; ++i) {
    std::memcpy(row - i * kBytes, row, kBytes);
    std::memcpy(row + (samples + i - 1) * kBytes, row + (samples - 1) * kBytes, kBytes);
  }
}
void fillMargins(uint8_t* row, size_t samples, SampleType type) {
  switch (type) {
    case SampleType::kU8:
      return fillMarginsOf<1>(row, samples);
    case SampleType::kU16:
      return fillMarginsOf<2>(row, samples);
    case SampleType::kF32:
      return fillMarginsOf<4>(row, samples);
  }
}

/// What a run of rows is working on.
class Run {
 public:
  Run(const KipPlan& plan, const KipPlanes& src, const KipPlanes& dst, uint8_t* scratch)
      : plan_(plan), src_(src), dst_(dst), scratch_(scratch), bayer_(plan, src, scratch) {
    for (auto& rows : loaded_) std::fill(std::begin(rows), std::end(rows), -1);
    for (size_t i = 0; i < plan.lanes.size(); ++i) {
      const OwnLane& own = plan.lanes[i];
      lane_[kFirstOwnLane + i] = scratch + own.offset;
      if (own.isConstant) fill(scratch + own.offset, own.type, own.value, plan.segment);
    }
  }

  void row(int y) {
    for (int x = 0; x < plan_.width; x += plan_.segment) {
      const int end = std::min(plan_.width - x, plan_.segment) + x;
      for (const Program& program : plan_.programs) {
        if (y % (1 << program.shiftY) == 0) run(program, y, x, end);
      }
      store(y, x, end);
    }
  }

 private:
  // -------------------------------------------------------------------------------------------------------------------
  // Where samples are

  /// Row r of the channel's plane, from the first sample on.
  const uint8_t* sourceRow(int channel, int r) {
    const int i = plan_.sourceOf[channel];
    const SourcePart& source = plan_.sources[i];
    r = std::clamp(r, 0, shifted(plan_.height, source.shiftY) - 1);
    if (!source.cached) return planeRow(source.part.plane, r);
    const int slot = r & (source.rowsKept - 1);
    uint8_t* rows = scratch_ + source.offset + slot * source.part.lanes * source.laneBytes + kMarginBytes;
    if (loaded_[i][slot] != r) {
      load(source, r, rows);
      loaded_[i][slot] = r;
    }
    return rows + plan_.placeOf[channel] * source.laneBytes;
  }

  const uint8_t* planeRow(int plane, int r) const {
    return static_cast<const uint8_t*>(src_.plane[plane]) + r * src_.step[plane];
  }

  void load(const SourcePart& source, int r, uint8_t* rows) {
    const size_t samples = shifted(plan_.width, source.shiftX);
    uint8_t* lanes[4];
    for (int k = 0; k < source.part.lanes; ++k) lanes[k] = rows + k * source.laneBytes;
    const uint8_t* from = plan_.isBayer ? bayer_.row(r) : planeRow(source.part.plane, r);
    const int bytes = bytesOf(plan_.from->type);
    if (source.part.packing == Packing::kPlane) {
      std::memcpy(rows, from, samples * bytes);
    } else {
      layouts_.load[static_cast<int>(source.part.packing)](from, lanes, samples);
    }
    if (!source.margins) return;
    for (int k = 0; k < source.part.lanes; ++k) {
      const bool chroma = source.part.packing >= Packing::kLumaFirst8 && k > 0;
      fillMargins(lanes[k], chroma ? shifted(plan_.width, plan_.from->info.chromaShiftX) : samples, plan_.from->type);
    }
  }

  // -------------------------------------------------------------------------------------------------------------------
  // Stages

  void run(const Program& program, int y, int x, int end) {
    const int row = y >> program.shiftY;
    for (int c = 0; c < 4; ++c) {
      if (!program.uses[c]) continue;
      lane_[kSourceLane + c] = const_cast<uint8_t*>(sourceRow(c, program.rowTaps[c].firstOf(row)) + sourceBytes(c, x));
    }
    placeResults(row, x);
    for (const Stage& stage : program.stages) run(program, stage, row, x, end);
  }

  size_t sourceBytes(int channel, int x) const {
    return size_t(x >> sourceShiftX(channel)) * bytesOf(plan_.from->type);
  }
  int sourceShiftX(int channel) const {
    const bool chroma = plan_.from->info.family == kipFamilyYCbCr && (channel == 1 || channel == 2);
    return chroma ? plan_.from->info.chromaShiftX : 0;
  }

  /// Rows of the destination that are lanes.
  void placeResults(int row, int x) {
    for (const ResultPart& result : plan_.results) {
      if (result.part.lanes != 1 || result.part.packing != Packing::kPlane) continue;
      uint8_t* to = static_cast<uint8_t*>(dst_.plane[result.part.plane]) + row * dst_.step[result.part.plane];
      lane_[kResultLane + result.part.channel[0]] = to + size_t(x >> result.shiftX) * bytesOf(plan_.to->type);
    }
  }

  void run(const Program& program, const Stage& stage, int row, int x, int end) {
    const size_t samples = shifted(end, stage.shiftX) - (x >> stage.shiftX);
    const uint8_t* in[3];
    uint8_t* out[3];
    for (int k = 0; k < 3; ++k) in[k] = lane_[stage.in[k]], out[k] = lane_[stage.out[k]];
    const int from = static_cast<int>(stage.from), to = static_cast<int>(stage.to);
    switch (stage.kind) {
      case StageKind::kRows:
        return addRows(program, stage, row, x, samples);
      case StageKind::kColumns:
        return resampling_.columns[from][to](plan_.taps[stage.data], in[0], out[0], samples);
      case StageKind::kMatrix: {
        const MatrixKernel kernel = matrices_.matrix[static_cast<int>(stage.types)][stage.outputs - 1];
        return kernel(plan_.matrices[stage.data], in, out, samples, row);
      }
      case StageKind::kScale:
        return matrices_.scale[from][to](plan_.matrices[stage.data], in, out, samples, row);
      case StageKind::kFloatMatrix:
        return floats_.matrix(plan_.floatMatrices[stage.data], stage.inputs, stage.outputs, in, out, samples);
      case StageKind::kRound:
        return floats_.round[to](plan_.roundings[stage.data], in[0], out[0], samples, row);
      case StageKind::kDecode:
      case StageKind::kDecodeBytes:
        return decode(stage, row, x, samples);
      case StageKind::kEncode:
        return encode(program, stage, row, x, end);
      case StageKind::kHalve:
        return halve(program, stage, row, x, samples);
      case StageKind::kCopy:
        std::memcpy(out[0], in[0], samples * bytesOf(stage.to));
        return;
      case StageKind::kFill:
        return fill(out[0], stage.to, stage.data, samples);
    }
  }

  void addRows(const Program& program, const Stage& stage, int row, int x, size_t samples) {
    const int channel = stage.in[0];
    const Taps& taps = program.rowTaps[channel];
    const int first = taps.firstOf(row);
    // Neighbours on both sides, of which the sources have as many.
    const int margin = stage.margins ? kMarginSamples : 0;
    RowsWork work;
    for (int t = 0; t < taps.count; ++t) {
      work.row[t] = sourceRow(channel, first + t) + sourceBytes(channel, x) - margin * bytesOf(stage.from);
    }
    work.weight = taps.weight[row % taps.phases], work.count = taps.count;
    work.mask = static_cast<uint16_t>(stage.inputs), work.shift = stage.data;
    work.out = lane_[stage.out[0]] - margin * bytesOf(stage.to);
    work.samples = samples + 2 * margin;
    resampling_.rows[static_cast<int>(stage.from)][static_cast<int>(stage.to)](work);
  }

  void decode(const Stage& stage, int row, int x, size_t samples) {
    const ResultPart& result = plan_.results[stage.result];
    const bool quad = result.part.lanes == 4,
               alphaFirst = quad && (result.part.channel[0] < 0 || result.part.channel[0] == 3);
    DecodeWork work;
    const bool ofBytes = stage.kind == StageKind::kDecodeBytes;
    work.colours = ofBytes ? &plan_.byteColours[stage.data] : nullptr;
    work.matrix = ofBytes ? nullptr : &plan_.matrices[stage.data];
    work.interleaving = alphaFirst ? Interleaving::kQuadAlphaFirst : quad ? Interleaving::kQuad : Interleaving::kTriple;
    work.luma = lane_[stage.in[0]], work.first = lane_[stage.in[1]], work.third = lane_[stage.in[2]];
    work.alpha = quad ? lane_[result.lane[alphaFirst ? 0 : 3]] : work.luma;
    const int p = result.part.plane;
    work.out = static_cast<uint8_t*>(dst_.plane[p]) + row * dst_.step[p] + rowBytes(plan_.to->info, p, x);
    work.pixels = samples, work.row = row;
    const int columns = static_cast<int>(stage.columns);
    if (ofBytes) {
      byteDecoders_.decode[columns][static_cast<int>(stage.to)](work);
    } else {
      decoders_.decode[columns](work);
    }
  }

  void encode(const Program& program, const Stage& stage, int row, int x, int end) {
    const Part& part = plan_.from->part[0];
    const Taps& rows = program.rowTaps[0];
    EncodeWork work;
    work.matrix = &plan_.byteMatrices[stage.data];
    for (int t = 0; t < 2; ++t) {
      const int r = std::min(rows.firstOf(row) + t, plan_.height - 1);
      work.row[t] = planeRow(part.plane, r) + rowBytes(plan_.from->info, part.plane, x);
    }
    work.rows = stage.inputs, work.mean = stage.mean, work.hasLeft = x != 0;
    work.results = stage.outputs, work.pixels = end - x;
    for (int o = 0; o < stage.outputs; ++o) work.out[o] = lane_[stage.out[o]];
    work.interleaved = stage.result >= 0;
    if (work.interleaved) {
      const ResultPart& result = plan_.results[stage.result];
      const int p = result.part.plane;
      work.out[0] = static_cast<uint8_t*>(dst_.plane[p]) + row * dst_.step[p] + rowBytes(plan_.to->info, p, x);
    }
    (stage.mean == PixelMean::kNone ? encoders_.pixels : encoders_.means)[part.lanes == 4](work);
  }

  void halve(const Program& program, const Stage& stage, int row, int x, size_t samples) {
    const Taps& columns = plan_.taps[stage.data];
    const Taps& rows = program.rowTaps[stage.channel];
    HalveWork work = {};
    for (int t = 0; t < rows.count; ++t) {
      work.row[t] = sourceRow(stage.channel, rows.firstOf(row) + t) + sourceBytes(stage.channel, x) + columns.first[0];
    }
    work.twoRows = rows.count == 2, work.three = columns.count == 3;
    work.out = lane_[stage.out[0]], work.samples = samples;
    resampling_.halve(work);
  }

  void store(int y, int x, int end) {
    for (const ResultPart& result : plan_.results) {
      const bool stored = result.part.lanes == 0 || result.part.packing == Packing::kPlane || result.isStored;
      if (stored || y % (1 << result.shiftY) != 0) continue;
      const uint8_t* lanes[4];
      for (int k = 0; k < result.part.lanes; ++k) lanes[k] = lane_[result.lane[k]];
      const int p = result.part.plane;
      uint8_t* row = static_cast<uint8_t*>(dst_.plane[p]) + (y >> result.shiftY) * dst_.step[p];
      const size_t samples = shifted(end, result.shiftX) - (x >> result.shiftX);
      layouts_.store[static_cast<int>(result.part.packing)](lanes, row + rowBytes(plan_.to->info, p, x), samples);
    }
  }

  const KipPlan& plan_;
  const KipPlanes& src_;
  const KipPlanes& dst_;
  uint8_t* scratch_;
  BayerRows bayer_;
  uint8_t* lane_[kMostLanes] = {};
  static constexpr int kMostRowsKept = 16;
  int loaded_[4][kMostRowsKept];
  const LayoutKernels& layouts_ = layoutKernels();
  const ResamplingKernels& resampling_ = resamplingKernels();
  const MatrixKernels& matrices_ = matrixKernels();
  const FloatKernels& floats_ = floatKernels();
  const DecodeKernels& decoders_ = decodeKernels();
  const EncodeKernels& encoders_ = encodeKernels();
  const DecodeBytesKernels& byteDecoders_ = decodeBytesKernels();
};

/// Rows as they are.
void copyRows(const KipPlan& plan, const KipPlanes& src, const KipPlanes& dst, int first, int last) {
  const KipFormatInfo& info = plan.from->info;
  for (int p = 0; p < info.planes; ++p) {
    const int end = shifted(last, info.rowShift[p]);
    for (int r = first >> info.rowShift[p]; r < end; ++r) {
      std::memcpy(static_cast<uint8_t*>(dst.plane[p]) + r * dst.step[p],
                  static_cast<const uint8_t*>(src.plane[p]) + r * src.step[p], rowBytes(info, p, plan.width));
    }
  }
}

/// Interleaved bytes in another order.
void reorderRows(const KipPlan& plan, const KipPlanes& src, const KipPlanes& dst, int first, int last) {
  const LayoutKernels& layouts = layoutKernels();
  const bool fromQuad = plan.from->part[0].lanes == 4, toQuad = plan.to->part[0].lanes == 4;
  for (int y = first; y < last; ++y) {
    layouts.reorder[fromQuad][toQuad](static_cast<const uint8_t*>(src.plane[0]) + y * src.step[0], plan.order,
                                      static_cast<uint8_t*>(dst.plane[0]) + y * dst.step[0], plan.width);
  }
}

}  // namespace

void runRows(const KipPlan& plan, const KipPlanes& src, const KipPlanes& dst, int first, int last, uint8_t* scratch) {
  if (plan.isReordering) return reorderRows(plan, src, dst, first, last);
  if (plan.isCopy) return copyRows(plan, src, dst, first, last);
  Run run(plan, src, dst, scratch);
  for (int y = first; y < last; ++y) run.row(y);
}

}  // namespace kip::convert
