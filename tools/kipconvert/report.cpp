#include "report.h"

#include <cstdio>

namespace {

std::string sampling(const KipFormatInfo& info) {
  if (info.family != kipFamilyYCbCr) return "";
  switch (10 * info.chromaShiftX + info.chromaShiftY) {
    case 0:
      return "4:4:4";
    case 1:
      return "4:4:0";
    case 10:
      return "4:2:2";
    case 11:
      return "4:2:0";
    case 20:
      return "4:1:1";
    default:
      return "4:1:0";
  }
}

std::string bits(const KipFormatInfo& info) {
  if (info.isFloat) return "float";
  const std::string first = std::to_string(info.bits[0]);
  const bool areEqual = info.bits[1] == 0 || (info.bits[0] == info.bits[1] && info.bits[1] == info.bits[2]);
  return areEqual ? first : first + ", " + std::to_string(info.bits[1]) + ", " + std::to_string(info.bits[2]);
}

const char* family(const KipFormatInfo& info) {
  constexpr const char* kNames[] = {"grey", "RGB", "YCbCr", "Bayer"};
  return kNames[info.family];
}

std::string row(const std::string& name, const std::string& what, const std::string& bits, const std::string& order,
                const std::string& otherNames) {
  char line[512];
  std::snprintf(line, sizeof line, "| %-16s | %-11s | %-7s | %-13s | %s |\n", name.c_str(), what.c_str(), bits.c_str(),
                order.c_str(), otherNames.c_str());
  return line;
}

const char* nameOf(KipMatrix matrix) {
  switch (matrix) {
    case kipMatrixBT709:
      return "BT.709";
    case kipMatrixBT601:
      return "BT.601";
    case kipMatrixBT2020:
      return "BT.2020";
    case kipMatrixYCgCo:
      return "YCgCo";
    default:
      return "matrix not said";
  }
}

const char* nameOf(KipRange range) {
  return range == kipRangeLimited ? "limited" : range == kipRangeFull ? "full" : "range not said";
}

std::string describe(const char* side, const KipPicture& picture) {
  const KipFormatInfo& info = *kipFormatInfo(picture.format);
  std::string text =
      std::string(side) + ": " + info.name + " " + std::to_string(picture.width) + "x" + std::to_string(picture.height);
  if (info.family == kipFamilyYCbCr) text += std::string(", ") + nameOf(picture.matrix) + ", " + nameOf(picture.range);
  if (info.chromaShiftX + info.chromaShiftY > 0) text += std::string(", chroma ") + nameOf(picture.site);
  return text + "\n";
}

}  // namespace

std::string formatTable() {
  std::string table = row("name", "what", "bits", "memory", "other names");
  table += row("----------------", "-----------", "-------", "-------------", "-----------");
  for (int f = 1; const KipFormatInfo* info = kipFormatInfo(static_cast<KipFormat>(f)); ++f) {
    const std::string chroma = sampling(*info);
    table += row(info->name, family(*info) + (chroma.empty() ? "" : " " + chroma), bits(*info), info->order,
                 info->otherNames);
  }
  return table;
}

std::string explanation(const Sides& sides, const std::string& plan) {
  std::string text = describe("source", sides.from.picture) + describe("result", sides.to.picture);
  for (const std::string& assumed : sides.assumed) text += "assumed: " + assumed + "\n";
  return text + plan;
}
