// From the description of two pictures to the stages between them.
#include <algorithm>
#include <bit>
#include <cmath>

#include "plan.h"
#include "sums.h"

namespace kip::convert {
namespace {

constexpr int kPixelSegment = 1920, kFloatSegment = 768;  // multiples of the formats' groups, and of vectors

bool isChroma(const Meaning& meaning, int channel) {
  return meaning.family == kipFamilyYCbCr && (channel == 1 || channel == 2);
}

/// A lane on its way to a matrix.
struct Operand {
  int lane;
  SampleType type;
  InputCode code;
};

class Builder {
 public:
  explicit Builder(KipPlan& plan) : plan_(plan), from_(*plan.from), to_(*plan.to) {}

  void build() {
    plan_.unit = 1 << (to_.info.family == kipFamilyYCbCr ? to_.info.chromaShiftY : 0);
    plan_.segment = kPixelSegment;
    placeSources();
    placeResults();
    plan_.isCopy = isSame();
    if (!plan_.isCopy) {
      const int channels = to_.info.family == kipFamilyGray ? 1 : 3;
      const bool subsampled = to_.info.chromaShiftX + to_.info.chromaShiftY > 0;
      std::vector<int> pixels = {0}, chroma;
      for (int c = 1; c < channels; ++c) (subsampled ? chroma : pixels).push_back(c);
      if (to_.info.hasAlpha) pixels.push_back(3);
      if (!chroma.empty()) addProgram(chroma, plan_.toChroma);
      constexpr Grid kPixels[2] = {kEveryPixel, kEveryPixel};
      addProgram(pixels, kPixels);
      fillUnused();
    }
  }

 private:
  // -------------------------------------------------------------------------------------------------------------------
  // Sources and results

  void placeSources() {
    for (int i = 0; i < 4; ++i) {
      SourcePart& source = plan_.sources[i];
      source.part = from_.part[i];
      if (plan_.isBayer) source.part.packing = from_.type == SampleType::kU8 ? Packing::kTriple8 : Packing::kTriple16;
      source.cached = source.part.packing != Packing::kPlane;
      source.rowsKept = 1;
      for (int k = 0; k < source.part.lanes; ++k) {
        const int channel = source.part.channel[k];
        if (channel == kUnused) continue;
        plan_.sourceOf[channel] = i, plan_.placeOf[channel] = k;
      }
      const bool chroma = source.part.lanes > 0 && isChroma(plan_.fromMeaning, source.part.channel[0]);
      source.shiftX = chroma ? from_.info.chromaShiftX : 0;
      source.shiftY = chroma ? from_.info.chromaShiftY : 0;
    }
  }

  void placeResults() {
    for (int i = 0; i < 4; ++i) {
      ResultPart& result = plan_.results[i];
      result.part = to_.part[i];
      const bool chroma = result.part.lanes > 0 && isChroma(plan_.toMeaning, result.part.channel[0]);
      result.shiftX = chroma ? to_.info.chromaShiftX : 0;
      result.shiftY = chroma ? to_.info.chromaShiftY : 0;
      for (int k = 0; k < result.part.lanes; ++k) {
        if (result.part.channel[k] != kUnused) result.lane[k] = kResultLane + result.part.channel[k];
      }
    }
  }

  bool isPlane(int channel) const {
    for (const ResultPart& result : plan_.results) {
      if (result.part.lanes == 1 && result.part.channel[0] == channel) return result.part.packing == Packing::kPlane;
    }
    return false;
  }

  /// The samples of a channel of the result are already in a lane.
  void resultIs(int channel, int lane) {
    for (ResultPart& result : plan_.results) {
      for (int k = 0; k < result.part.lanes; ++k) {
        if (result.part.channel[k] == channel) result.lane[k] = lane;
      }
    }
  }

  /// Where a channel of the result goes: a row of the destination, or a lane that is stored from.
  int resultLane(int channel) {
    if (isPlane(channel)) return kResultLane + channel;
    const int lane = ownLane(to_.type);
    resultIs(channel, lane);
    return lane;
  }

  void fillUnused() {
    for (ResultPart& result : plan_.results) {
      for (int k = 0; k < result.part.lanes; ++k) {
        if (result.part.channel[k] == kUnused) result.lane[k] = constantLane(0xFF);
      }
    }
  }

  int ownLane(SampleType type) {
    plan_.lanes.push_back({0, type, false, 0});
    return kFirstOwnLane + static_cast<int>(plan_.lanes.size()) - 1;
  }
  int constantLane(int value) {
    const int lane = ownLane(to_.type);
    plan_.lanes.back().isConstant = true, plan_.lanes.back().value = value;
    return lane;
  }

  /// Whether nothing but the place of rows changes.
  bool isSame() const {
    if (from_.info.format != to_.info.format) return false;
    if (plan_.fromMeaning.matrix != plan_.toMeaning.matrix && from_.info.family == kipFamilyYCbCr) return false;
    if (plan_.fromMeaning.range != plan_.toMeaning.range) return false;
    for (int axis = 0; axis < 2; ++axis) {
      if (!makeTaps(plan_.fromChroma[axis], plan_.toChroma[axis], plan_.chroma).isIdentity()) return false;
    }
    return true;
  }

  // -------------------------------------------------------------------------------------------------------------------
  // Programs

  void addProgram(const std::vector<int>& channels, const Grid (&grid)[2]) {
    plan_.programs.push_back({});
    program_ = &plan_.programs.back();
    program_->shiftY = grid[1].shift;
    shiftX_ = grid[0].shift;
    grid_ = grid;
    for (Taps& taps : program_->rowTaps) taps = makeTaps(kEveryPixel, kEveryPixel, plan_.chroma);

    std::vector<int> mixed, single;
    AffineRow rows[4];
    for (int c : channels) {
      rows[c] = rowOf(c);
      if (rows[c].inputs() > 1) mixed.push_back(c);
      if (rows[c].inputs() == 1) single.push_back(c);
      if (rows[c].inputs() == 0) addConstant(c, rows[c].zero);
    }
    inFloats_ = needsFloats(rows, channels);
    if (inFloats_) plan_.segment = kFloatSegment;
    std::fill(std::begin(operands_), std::end(operands_), Operand{-1, {}, {}});
    if (!mixed.empty()) addMatrix(mixed, rows);
    for (int c : single) addScale(c, rows[c]);
  }

  AffineRow rowOf(int channel) const {
    if (channel != 3) return colourMap(plan_.fromMeaning, plan_.toMeaning, channel);
    if (from_.info.hasAlpha) return alphaMap(plan_.fromMeaning, plan_.toMeaning);
    return {{}, {}, plan_.toMeaning.coding(3).scale};
  }

  /// The channel of the source that is input k of a row.
  static int inputChannel(int channel, int k) { return channel == 3 ? 3 : k; }

  Taps axisTaps(int source, int axis) const {
    const Grid own = isChroma(plan_.fromMeaning, source) ? plan_.fromChroma[axis] : kEveryPixel;
    return makeTaps(own, grid_[axis], plan_.chroma);
  }

  /// Integers will do where samples, and their weighted sums, have 16 bits.
  bool needsFloats(const AffineRow (&rows)[4], const std::vector<int>& channels) const {
    if (from_.info.isFloat || to_.info.isFloat) return true;
    for (int c : channels) {
      for (int k = 0; k < 3; ++k) {
        if (rows[c].factor[k] == 0) continue;
        const int source = inputChannel(c, k);
        const int64_t most = (int64_t{1} << from_.info.bits[source]) - 1;
        if (most * axisTaps(source, 0).sum * axisTaps(source, 1).sum > 0xFFFF) return true;
      }
    }
    return false;
  }

  void addConstant(int channel, double value) {
    const int code = static_cast<int>(std::lround(value)) << to_.shift;
    if (!isPlane(channel)) return resultIs(channel, constantLane(code));
    Stage& fill = addStage(StageKind::kFill, to_.type, to_.type);
    fill.out[0] = kResultLane + channel, fill.data = code;
  }

  void addCopy(int channel, int lane) {
    Stage& copy = addStage(StageKind::kCopy, to_.type, to_.type);
    copy.in[0] = lane, copy.out[0] = kResultLane + channel;
  }

  Stage& addStage(StageKind kind, SampleType from, SampleType to) {
    program_->stages.push_back({});
    Stage& stage = program_->stages.back();
    stage.kind = kind, stage.from = from, stage.to = to, stage.shiftX = shiftX_;
    return stage;
  }

  /// A channel of the source on the program's grid. The sums of rows and of columns are made once for each.
  const Operand& operand(int channel) {
    if (operands_[channel].lane < 0) operands_[channel] = makeOperand(channel);
    return operands_[channel];
  }

  Operand makeOperand(int channel) {
    SourcePart& source = plan_.sources[plan_.sourceOf[channel]];
    source.needed = true;
    const Taps rows = axisTaps(channel, 1), columns = axisTaps(channel, 0);
    program_->rowTaps[channel] = rows;
    source.rowsKept = std::max(source.rowsKept, static_cast<int>(std::bit_ceil(static_cast<unsigned>(rows.count))));
    const bool sumsColumns = !columns.isSelection();
    Operand operand = {kSourceLane + channel, from_.type, sourceCode(channel)};
    if (!columns.isIdentity()) source.cached = source.margins = true;
    const bool toFloats = inFloats_ && from_.type != SampleType::kF32;
    const bool unscaled = operand.code.mask != 0xFFFF || operand.code.unit != 1;
    if (!rows.isSelection() || toFloats || (sumsColumns && unscaled)) {
      addRows(operand, channel, rows, !columns.isIdentity());
    } else {
      program_->uses[channel] = true;
    }
    if (!columns.isIdentity()) addColumns(operand, columns, sumsColumns);
    return operand;
  }

  InputCode sourceCode(int channel) const {
    InputCode code;
    const int bits = from_.info.bits[channel];
    code.unit = 1 << from_.shift;
    code.mask = from_.type == SampleType::kU16 && !plan_.isBayer ? ((1 << bits) - 1) << from_.shift : 0xFFFF;
    code.most = from_.info.isFloat ? 1
                : plan_.isBayer    ? (1 << 8 * bytesOf(from_.type)) - 1
                                   : ((1 << bits) - 1) << from_.shift;
    return code;
  }

  void addRows(Operand& operand, int channel, const Taps& rows, bool margins) {
    const SampleType type = inFloats_ ? SampleType::kF32 : SampleType::kU16;
    Stage& stage = addStage(StageKind::kRows, operand.type, type);
    const int sourceShift = isChroma(plan_.fromMeaning, channel) ? from_.info.chromaShiftX : 0;
    stage.shiftX = sourceShift;
    stage.in[0] = channel, stage.margins = margins;
    stage.data = plan_.isBayer ? 0 : from_.shift;
    stage.out[0] = ownLane(type);
    const bool scaled = stage.data != 0;
    operand.code.unit = (scaled ? 1 : operand.code.unit) * rows.sum;
    operand.code.most = (scaled ? operand.code.most >> stage.data : operand.code.most) * rows.sum;
    stage.inputs = operand.code.mask;
    operand.code.mask = 0xFFFF;
    operand.lane = stage.out[0], operand.type = type;
  }

  void addColumns(Operand& operand, const Taps& columns, bool sums) {
    const SampleType type = sums && operand.type == SampleType::kU8 ? SampleType::kU16 : operand.type;
    Stage& stage = addStage(StageKind::kColumns, operand.type, type);
    stage.in[0] = operand.lane, stage.out[0] = ownLane(type);
    stage.data = static_cast<int>(plan_.taps.size());
    plan_.taps.push_back(columns);
    operand.code.unit *= columns.sum, operand.code.most *= columns.sum;
    operand.lane = stage.out[0], operand.type = type;
  }

  ResultCode resultCode(int channel) const {
    const int bits = to_.info.bits[channel], most = to_.info.isFloat ? 1 : (1 << bits) - 1;
    const int fromBits = from_.info.bits[channel == 3 ? 3 : 0];
    const bool dithered = plan_.dither == kipDitherBayer && channel != 3 && bits < fromBits;
    return {most, to_.shift, dithered};
  }

  void addMatrix(const std::vector<int>& channels, const AffineRow (&rows)[4]) {
    bool used[3] = {};
    for (int c : channels) {
      for (int k = 0; k < 3; ++k) used[k] |= rows[c].factor[k] != 0;
    }
    Operand inputs[3];
    const int any = used[0] ? 0 : 1;
    for (int k = 0; k < 3; ++k) inputs[k] = operand(used[k] ? k : any);
    combine(channels, rows, inputs, 3);
  }

  void addScale(int channel, const AffineRow& row) {
    int source = 0;
    AffineRow one = row;
    for (int k = 0; k < 3; ++k) {
      if (row.factor[k] == 0) continue;
      source = inputChannel(channel, k);
      one.factor[0] = row.factor[k], one.inputZero[0] = row.inputZero[k];
    }
    one.factor[1] = one.factor[2] = 0;
    const Operand from = operand(source);
    const double factor = one.factor[0] / from.code.unit * (1 << to_.shift);
    constexpr double kNoise = 1e-9;
    const bool sameBits = from_.info.bits[source] == to_.info.bits[channel];
    if (from.type == to_.type && sameBits && std::abs(factor - 1) < kNoise && std::abs(one.constant()) < kNoise) {
      return isPlane(channel) ? addCopy(channel, from.lane) : resultIs(channel, from.lane);
    }
    AffineRow rows[4];
    rows[channel] = one;
    combine({channel}, rows, {from, from, from}, 1);
  }

  void combine(const std::vector<int>& channels, const AffineRow (&rows)[4], const Operand (&inputs)[3], int count) {
    if (inFloats_) return combineFloats(channels, rows, inputs, count);
    const InputCode codes[3] = {inputs[0].code, inputs[1].code, inputs[2].code};
    IntegerMatrix matrix = {};
    for (size_t o = 0; o < channels.size(); ++o) {
      const ResultCode result = resultCode(channels[o]);
      fillMatrix(matrix, static_cast<int>(o), rows[channels[o]], codes, count, result, to_.type);
    }
    const StageKind kind = count == 1 ? StageKind::kScale : StageKind::kMatrix;
    Stage stage = {};
    stage.kind = kind, stage.from = inputs[0].type, stage.to = to_.type, stage.shiftX = shiftX_;
    stage.types = matrixTypes(inputs[0].type, inputs[1].type, to_.type);
    stage.inputs = count, stage.outputs = static_cast<int>(channels.size());
    for (int k = 0; k < 3; ++k) stage.in[k] = inputs[k].lane;
    for (size_t o = 0; o < channels.size(); ++o) stage.out[o] = resultLane(channels[o]);
    stage.data = static_cast<int>(plan_.matrices.size());
    plan_.matrices.push_back(matrix);
    program_->stages.push_back(stage);
  }

  static MatrixTypes matrixTypes(SampleType first, SampleType others, SampleType result) {
    const bool wide = result == SampleType::kU16;
    if (first == SampleType::kU16) return wide ? MatrixTypes::k161616 : MatrixTypes::k16168;
    if (others == SampleType::kU16) return wide ? MatrixTypes::k81616 : MatrixTypes::k8168;
    return wide ? MatrixTypes::k8816 : MatrixTypes::k888;
  }

  void combineFloats(const std::vector<int>& channels, const AffineRow (&rows)[4], const Operand (&inputs)[3],
                     int count) {
    FloatMatrix matrix = {};
    Stage stage = {};
    stage.kind = StageKind::kFloatMatrix, stage.from = stage.to = SampleType::kF32, stage.shiftX = shiftX_;
    stage.inputs = count, stage.outputs = static_cast<int>(channels.size());
    for (int k = 0; k < 3; ++k) stage.in[k] = inputs[k].lane;
    std::vector<Stage> rounds;
    for (size_t o = 0; o < channels.size(); ++o) {
      const AffineRow& row = rows[channels[o]];
      for (int k = 0; k < count; ++k) matrix.factor[o][k] = static_cast<float>(row.factor[k] / inputs[k].code.unit);
      matrix.constant[o] = static_cast<float>(row.constant());
      const int lane = resultLane(channels[o]);
      stage.out[o] = lane;
      if (to_.info.isFloat) continue;
      stage.out[o] = ownLane(SampleType::kF32);
      rounds.push_back(roundStage(channels[o], stage.out[o], lane));
    }
    stage.data = static_cast<int>(plan_.floatMatrices.size());
    plan_.floatMatrices.push_back(matrix);
    program_->stages.push_back(stage);
    program_->stages.insert(program_->stages.end(), rounds.begin(), rounds.end());
  }

  Stage roundStage(int channel, int from, int to) {
    Stage stage = {};
    stage.kind = StageKind::kRound, stage.from = SampleType::kF32, stage.to = to_.type, stage.shiftX = shiftX_;
    stage.in[0] = from, stage.out[0] = to, stage.data = static_cast<int>(plan_.roundings.size());
    plan_.roundings.push_back(makeRounding(resultCode(channel)));
    return stage;
  }

  KipPlan& plan_;
  const Format &from_, &to_;
  Program* program_ = nullptr;
  const Grid* grid_ = nullptr;
  int shiftX_ = 0;
  bool inFloats_ = false;
  Operand operands_[4];
};

}  // namespace

void buildStages(KipPlan& plan) { Builder(plan).build(); }

}  // namespace kip::convert
