// A plan in words.
#include "plan.h"

namespace kip::convert {
namespace {

const char* typeName(SampleType type) {
  return type == SampleType::kU8 ? "8 bits" : type == SampleType::kU16 ? "16 bits" : "floats";
}

std::string tapsText(const Taps& taps) {
  std::string text;
  for (int p = 0; p < taps.phases; ++p) {
    text += p == 0 ? "weights " : ", ";
    for (int t = 0; t < taps.count; ++t) text += (t == 0 ? "" : " : ") + std::to_string(taps.weight[p][t]);
  }
  return text;
}

std::string laneName(const KipPlan& plan, int lane) {
  static constexpr const char* kRgb[] = {"R", "G", "B", "alpha"};
  static constexpr const char* kYcc[] = {"Y", "Cb", "Cr", "alpha"};
  const auto name = [](const Format& format, int channel) {
    return (format.info.family == kipFamilyRGB || format.info.family == kipFamilyBayer ? kRgb : kYcc)[channel];
  };
  if (lane < kResultLane) return std::string("source ") + name(*plan.from, lane);
  if (lane < kFirstOwnLane) return std::string("destination ") + name(*plan.to, lane - kResultLane);
  return "lane " + std::to_string(lane - kFirstOwnLane + 1);
}

std::string lanes(const KipPlan& plan, const int (&lane)[3], int count) {
  std::string text;
  for (int k = 0; k < count; ++k) text += (k == 0 ? "" : ", ") + laneName(plan, lane[k]);
  return text;
}

const char* columnsText(ChromaColumns columns) {
  switch (columns) {
    case ChromaColumns::kPairs:
      return ", chroma twice";
    case ChromaColumns::kCosited:
      return ", chroma with weights 2 : 0, 1 : 1";
    case ChromaColumns::kMiddle:
      return ", chroma with weights 1 : 3, 3 : 1";
    default:
      return "";
  }
}

const char* meanText(PixelMean mean) {
  switch (mean) {
    case PixelMean::kFirst:
      return ", of every second column";
    case PixelMean::kPair:
      return ", columns with weights 1 : 1";
    case PixelMean::kThree:
      return ", columns with weights 1 : 2 : 1";
    default:
      return "";
  }
}

std::string encodeText(const KipPlan& plan, const Program& program, const Stage& stage, const std::string& results) {
  const std::string pixels = "matrix of the pixels of " + std::string(plan.from->info.name);
  const std::string rows = stage.inputs == 2 ? ", rows with " + tapsText(program.rowTaps[0]) : "";
  const bool stored = stage.result >= 0;
  const std::string plane = stored ? std::to_string(plan.results[stage.result].part.plane) : "";
  return (stored ? "store plane " + plane + " of " + plan.to->info.name + ": " : results) + pixels + rows +
         meanText(stage.mean);
}

std::string stageText(const KipPlan& plan, const Program& program, const Stage& stage) {
  const std::string result = lanes(plan, stage.out, stage.outputs) + ": ";
  const std::string types = std::string(", ") + typeName(stage.from) + " to " + typeName(stage.to);
  switch (stage.kind) {
    case StageKind::kRows:
      return result + "rows of " + laneName(plan, stage.in[0]) + ", " + tapsText(program.rowTaps[stage.in[0]]) + types;
    case StageKind::kColumns:
      return result + "columns of " + laneName(plan, stage.in[0]) + ", " + tapsText(plan.taps[stage.data]) + types;
    case StageKind::kMatrix:
    case StageKind::kFloatMatrix:
      return result + "matrix of " + lanes(plan, stage.in, 3) + types;
    case StageKind::kDecode:
    case StageKind::kDecodeBytes:
      return "store plane 0 of " + std::string(plan.to->info.name) + ": matrix of " + lanes(plan, stage.in, 3) +
             columnsText(stage.columns);
    case StageKind::kEncode:
      return encodeText(plan, program, stage, result);
    case StageKind::kHalve:
      return result + "half the columns of " + laneName(plan, stage.channel) + ", rows with " +
             tapsText(program.rowTaps[stage.channel]) + ", columns with " + tapsText(plan.taps[stage.data]);
    case StageKind::kScale:
      return result + "scale of " + laneName(plan, stage.in[0]) + types;
    case StageKind::kRound:
      return result + "rounded " + laneName(plan, stage.in[0]) + types;
    case StageKind::kCopy:
      return result + "copy of " + laneName(plan, stage.in[0]);
    case StageKind::kFill:
      return result + "constant " + std::to_string(stage.data);
  }
  return result;
}

}  // namespace

void describe(KipPlan& plan) {
  std::string& text = plan.description;
  const std::string from = plan.from->info.name, to = plan.to->info.name;
  if (plan.isCopy) {
    text = "copy rows of " + from + "\n";
    return;
  }
  if (plan.isBayer) {
    text += plan.bayer.method == kipDemosaicAHD ? "demosaic by AHD\n" : "demosaic bilinearly\n";
  }
  for (const SourcePart& source : plan.sources) {
    if (!source.needed || !source.cached) continue;
    text += "load plane " + std::to_string(source.part.plane) + " of " + from + "\n";
  }
  for (const Program& program : plan.programs) {
    for (const Stage& stage : program.stages) text += stageText(plan, program, stage) + "\n";
  }
  for (const ResultPart& result : plan.results) {
    if (result.part.lanes == 0 || result.part.packing == Packing::kPlane || result.isStored) continue;
    text += "store plane " + std::to_string(result.part.plane) + " of " + to + "\n";
  }
}

}  // namespace kip::convert
