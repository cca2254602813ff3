// Neighbouring stages that one kernel can do.
#include <algorithm>

#include "plan.h"
#include "sums.h"

namespace kip::convert {
namespace {

bool hasWeights(const Taps& taps, int phase, std::initializer_list<int> weights, int first) {
  return taps.first[phase] == first && taps.count == static_cast<int>(weights.size()) &&
         std::equal(weights.begin(), weights.end(), taps.weight[phase]);
}

/// How chroma gets twice its columns; kEach if in another way.
ChromaColumns chromaColumns(const Taps& taps) {
  if (taps.phases != 2 || taps.advance != 1) return ChromaColumns::kEach;
  if (hasWeights(taps, 0, {1}, 0) && hasWeights(taps, 1, {1}, 0)) return ChromaColumns::kPairs;
  if (hasWeights(taps, 0, {2, 0}, 0) && hasWeights(taps, 1, {1, 1}, 0)) return ChromaColumns::kCosited;
  if (hasWeights(taps, 0, {1, 3}, -1) && hasWeights(taps, 1, {3, 1}, 0)) return ChromaColumns::kMiddle;
  return ChromaColumns::kEach;
}

class Joiner {
 public:
  Joiner(KipPlan& plan, Program& program) : plan_(plan), stages_(program.stages), program_(program) {}

  void join() {
    joinEncoder();
    joinDecoder();
    joinHalves();
  }

 private:
  // -------------------------------------------------------------------------------------------------------------------
  // Chroma columns, a matrix, and a store of interleaved bytes

  void joinDecoder() {
    const auto matrix = std::find_if(stages_.begin(), stages_.end(), [](const Stage& s) {
      return s.kind == StageKind::kMatrix && s.outputs == 3 && s.to == SampleType::kU8;
    });
    if (matrix == stages_.end()) return;
    const int result = resultOf(*matrix);
    if (result < 0) return;
    Stage decode = *matrix;
    decode.kind = StageKind::kDecode;
    decode.result = result;
    const bool blueFirst = isBlueFirst(plan_.results[result].part);
    if (!orderByMemory(blueFirst, decode)) return;
    const bool ofBytes = typeOf(decode.in[0]) == SampleType::kU8;
    if (ofBytes) decode.kind = StageKind::kDecodeBytes;
    if (ofBytes && !addByteColours(blueFirst, decode)) return;
    if (!ofBytes && typeOf(decode.in[1]) != SampleType::kU16) return;
    stages_.erase(matrix);
    joinColumns(decode);
    decode.to = typeOf(decode.in[1]);
    stages_.push_back(decode);
    plan_.results[result].isStored = true;
  }

  /// The part of the destination that is all that a matrix makes; -1 if there is none.
  int resultOf(const Stage& matrix) const {
    for (int i = 0; i < 4; ++i) {
      const Part& part = plan_.results[i].part;
      if (part.packing != Packing::kTriple8 && part.packing != Packing::kQuad8) continue;
      const auto made = [&](int channel) {
        return plan_.results[i].lane[placeOf(part, channel)] == matrix.out[channel];
      };
      if (made(0) && made(1) && made(2)) return i;
    }
    return -1;
  }
  static int placeOf(const Part& part, int channel) {
    return static_cast<int>(std::find(part.channel, part.channel + part.lanes, channel) - part.channel);
  }

  static bool isBlueFirst(const Part& part) { return placeOf(part, 2) < placeOf(part, 0); }

  /// Puts results in the order of memory, and before the third one's chroma that of the first. False where sums are of
  /// another form than the kernel's.
  bool orderByMemory(bool blueFirst, Stage& decode) {
    const IntegerMatrix& made = plan_.matrices[decode.data];
    const int output[3] = {blueFirst ? 2 : 0, 1, blueFirst ? 0 : 2};
    const int input[3] = {0, blueFirst ? 1 : 2, blueFirst ? 2 : 1};
    IntegerMatrix ordered = made;
    int lanes[3];
    for (int k = 0; k < 3; ++k) {
      ordered.mask[k] = made.mask[input[k]], ordered.centre[k] = made.centre[input[k]];
      ordered.raise[k] = made.raise[input[k]], lanes[k] = decode.in[input[k]];
      for (int o = 0; o < 3; ++o) ordered.factor[o][k] = made.factor[output[o]][input[k]];
    }
    for (int o = 0; o < 3; ++o) {
      std::copy_n(&made.start[output[o]][0][0], 16, &ordered.start[o][0][0]);
      ordered.shift[o] = made.shift[output[o]];
    }
    for (int k = 1; k < 3; ++k) {
      if (ordered.centre[k] != 0 || ordered.raise[k] != 0 || ordered.mask[k] != 0xFFFF) return false;
    }
    if (ordered.factor[0][2] != 0 || ordered.factor[2][1] != 0) return false;
    std::copy_n(lanes, 3, decode.in);
    plan_.matrices[decode.data] = ordered;
    return true;
  }

  /// The constants of a decoder of bytes; false where these do not fit.
  bool addByteColours(bool blueFirst, Stage& decode) {
    AffineRow rows[3];
    for (int o = 0; o < 3; ++o) rows[o] = colourMap(plan_.fromMeaning, plan_.toMeaning, blueFirst ? 2 - o : o);
    const int chromaOfFirst = blueFirst ? 1 : 2;
    const auto columns = makerOf(decode.in[1]);
    const bool hasColumns = columns != stages_.end() && columns->kind == StageKind::kColumns;
    const int unit = program_.rowTaps[1].sum * (hasColumns ? plan_.taps[columns->data].sum : 1);
    ByteColours colours;
    if (!fillByteColours(colours, rows, chromaOfFirst, 3 - chromaOfFirst, unit)) return false;
    decode.data = static_cast<int>(plan_.byteColours.size());
    plan_.byteColours.push_back(colours);
    return true;
  }

  void joinColumns(Stage& decode) {
    decode.columns = ChromaColumns::kEach;
    const auto first = makerOf(decode.in[1]);
    if (first == stages_.end() || first->kind != StageKind::kColumns) return;
    const ChromaColumns columns = chromaColumns(plan_.taps[first->data]);
    if (columns == ChromaColumns::kEach) return;
    decode.columns = columns;
    for (int k = 1; k < 3; ++k) {
      const auto maker = makerOf(decode.in[k]);
      decode.in[k] = maker->in[0];
      stages_.erase(maker);
    }
  }

  std::vector<Stage>::iterator makerOf(int lane) {
    return std::find_if(stages_.begin(), stages_.end(), [lane](const Stage& s) { return s.out[0] == lane; });
  }
  SampleType typeOf(int lane) const {
    return lane < kFirstOwnLane ? plan_.from->type : plan_.lanes[lane - kFirstOwnLane].type;
  }

  // -------------------------------------------------------------------------------------------------------------------
  // Interleaved bytes of RGB, means of them, and a matrix to bytes

  void joinEncoder() {
    const Part& source = plan_.from->part[0];
    const bool isBytes = source.packing == Packing::kTriple8 || source.packing == Packing::kQuad8;
    if (!isBytes || plan_.isBayer || plan_.from->info.family != kipFamilyRGB) return;
    const auto matrix =
        std::find_if(stages_.begin(), stages_.end(), [](const Stage& s) { return s.kind == StageKind::kMatrix; });
    if (matrix == stages_.end() || matrix->to != SampleType::kU8) return;
    Stage encode = *matrix;
    encode.kind = StageKind::kEncode;
    if (!findMean(encode) || !addByteMatrix(encode)) return;
    encode.result = pairOf(encode);
    if (encode.result >= 0) storePairs(encode);
    *matrix = encode;
    const auto makesInput = [](const Stage& s) { return s.kind == StageKind::kRows || s.kind == StageKind::kColumns; };
    stages_.erase(std::remove_if(stages_.begin(), matrix, makesInput), matrix);
    std::fill_n(program_.uses, 3, false);
  }

  /// The rows and columns that inputs are sums of, which is one way for all.
  bool findMean(Stage& encode) const {
    const Taps& rows = program_.rowTaps[0];
    const bool oneRow = rows.isSelection() && rows.first[0] == 0 && rows.phases == 1;
    const bool twoRows = rows.phases == 1 && hasWeights(rows, 0, {1, 1}, 0);
    if (!oneRow && !twoRows) return false;
    const auto columns =
        std::find_if(stages_.begin(), stages_.end(), [](const Stage& s) { return s.kind == StageKind::kColumns; });
    const auto meanOf = [](const Taps& taps) {
      if (taps.phases != 1 || taps.advance != 2) return PixelMean::kNone;
      if (hasWeights(taps, 0, {1}, 0)) return PixelMean::kFirst;
      if (hasWeights(taps, 0, {1, 1}, 0)) return PixelMean::kPair;
      if (hasWeights(taps, 0, {1, 2, 1}, -1)) return PixelMean::kThree;
      return PixelMean::kNone;
    };
    const bool everyPixel = columns == stages_.end();
    encode.mean = everyPixel ? PixelMean::kNone : meanOf(plan_.taps[columns->data]);
    encode.inputs = oneRow ? 1 : 2;
    if (everyPixel) return oneRow && rows.advance == 1;
    return encode.mean != PixelMean::kNone && encode.outputs == 2;
  }

  /// The matrix by places in a pixel; false where it is of another form than the kernel's.
  bool addByteMatrix(Stage& encode) {
    const IntegerMatrix& from = plan_.matrices[encode.data];
    ByteMatrix matrix = {};
    for (int o = 0; o < encode.outputs; ++o) {
      if (from.most[o] != UINT8_MAX || from.up[o] != 0) return false;
      for (int k = 0; k < 3; ++k) matrix.factor[o][plan_.placeOf[k]] = from.factor[o][k];
      matrix.start[o] = from.start[o][0][0], matrix.shift[o] = from.shift[o];
    }
    if (encode.mean != PixelMean::kNone && matrix.shift[0] != matrix.shift[1]) return false;
    encode.data = static_cast<int>(plan_.byteMatrices.size());
    plan_.byteMatrices.push_back(matrix);
    return true;
  }

  /// The part of the destination of which the results are the pairs; -1 if there is none.
  int pairOf(const Stage& encode) const {
    for (int i = 0; i < 4 && encode.outputs == 2; ++i) {
      const Part& part = plan_.results[i].part;
      if (part.packing == Packing::kPair8 && part.lanes == 2) return i;
    }
    return -1;
  }

  void storePairs(const Stage& encode) {
    ResultPart& result = plan_.results[encode.result];
    result.isStored = true;
    if (result.part.channel[0] == 1) return;
    ByteMatrix& matrix = plan_.byteMatrices[encode.data];
    std::swap(matrix.factor[0], matrix.factor[1]);
    std::swap(matrix.start[0], matrix.start[1]);
  }

  // -------------------------------------------------------------------------------------------------------------------
  // Half of the columns of bytes, of one row or of the sum of two

  void joinHalves() {
    for (size_t i = 0; i < stages_.size(); ++i) {
      Stage& columns = stages_[i];
      if (columns.kind != StageKind::kColumns || !isHalf(plan_.taps[columns.data])) continue;
      const auto rows = makerOf(columns.in[0]);
      if (rows == stages_.end()) {
        if (columns.from == SampleType::kU8) columns.kind = StageKind::kHalve, columns.channel = columns.in[0];
      } else if (rows->kind == StageKind::kRows && rows->from == SampleType::kU8 && isSum(*rows)) {
        columns.kind = StageKind::kHalve, columns.from = SampleType::kU8, columns.channel = rows->in[0];
        stages_.erase(rows);
        --i;
      }
    }
  }
  static bool isHalf(const Taps& taps) {
    return taps.phases == 1 && taps.advance == 2 &&
           (hasWeights(taps, 0, {1, 1}, 0) || hasWeights(taps, 0, {1, 2, 1}, -1));
  }
  bool isSum(const Stage& rows) const {
    const Taps& taps = program_.rowTaps[rows.in[0]];
    return taps.phases == 1 && hasWeights(taps, 0, {1, 1}, 0) && rows.data == 0;
  }

  KipPlan& plan_;
  std::vector<Stage>& stages_;
  Program& program_;
};

/// Whether all results are lanes of one load of bytes, or opaque; then these are their places.
bool findOrder(KipPlan& plan) {
  const Part &from = plan.from->part[0], &to = plan.to->part[0];
  const auto isBytes = [](const Part& part) {
    return part.packing == Packing::kTriple8 || part.packing == Packing::kQuad8;
  };
  if (plan.isBayer || plan.isCopy || !isBytes(from) || !isBytes(to)) return false;
  for (const Program& program : plan.programs) {
    if (!program.stages.empty()) return false;
  }
  for (int k = 0; k < to.lanes; ++k) {
    const int lane = plan.results[0].lane[k];
    if (lane >= kFirstOwnLane) {
      plan.order[k] = kOpaque;
    } else {
      plan.order[k] = static_cast<uint8_t>(plan.placeOf[lane - kSourceLane]);
    }
  }
  return true;
}

/// Whether a stage or a store reads lanes of this part of the source.
bool isRead(const KipPlan& plan, int part) {
  for (const Program& program : plan.programs) {
    for (int c = 0; c < 4; ++c) {
      const auto reads = [c](const Stage& s) {
        return (s.kind == StageKind::kRows && s.in[0] == c) || (s.kind == StageKind::kHalve && s.channel == c);
      };
      const bool isRead = program.uses[c] || std::any_of(program.stages.begin(), program.stages.end(), reads);
      if (isRead && plan.sourceOf[c] == part) return true;
    }
  }
  return false;
}

}  // namespace

void joinStages(KipPlan& plan) {
  plan.isReordering = findOrder(plan);
  for (Program& program : plan.programs) Joiner(plan, program).join();
  for (int i = 0; i < 4; ++i) plan.sources[i].needed &= isRead(plan, i);
}

}  // namespace kip::convert
