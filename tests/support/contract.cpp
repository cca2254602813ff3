#include "support/contract.h"

#include <regex>
#include <stdexcept>

namespace kip {
namespace {

bool contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

Chroma chromaOf(const std::string& space) {
  if (contains(space, "1620")) return Chroma::k1620;
  if (contains(space, "422")) return Chroma::k422;
  if (contains(space, "420")) return Chroma::k420;
  return contains(space, "411") ? Chroma::k411 : Chroma::kFull;
}

bool isWord(const std::string& space) { return std::regex_search(space, std::regex("(RGB|BGR)(565|555|444)")); }

}  // namespace

NameParts::NameParts(const std::string& name) : whole(name) {
  static const std::regex pattern(
      "kipi(.*?)(?:To((?![a-z]).*?))?(_[0-9A-Z][A-Za-z0-9]*?[A-Za-z]{3,})?_"
      "((?:[0-9]+[suf])+)_I?(A?[CP][0-9])(A?[CP][0-9])?I?R?");
  std::smatch part;
  if (!std::regex_match(name, part, pattern)) throw std::invalid_argument("no function's name: " + name);
  source = part[1];
  destination = part[2].matched ? part[2] : part[1];
  variant = part[3];
  sourceLayout = part[5];
  destinationLayout = part[6].matched ? part[6] : part[5];
}

Layout::Layout(const std::string& space, const std::string& descriptor)
    : planar(contains(descriptor, "P")),
      channels(descriptor.back() - '0'),
      chroma(chromaOf(space)),
      word(isWord(space)),
      packed422(!planar && chroma != Chroma::kFull),
      alpha(contains(descriptor, "A") || descriptor == "P4") {
  if (word) channels = 1;
}

Contract::Contract(const NameParts& name, const Layout& source, const Layout& destination, const Shape& shape) {
  const bool words = source.word || destination.word;
  setBlocks(name, source.chroma, destination.chroma, source.packed422 || destination.packed422, words);
  setMinimum(name, source.chroma, destination.chroma, words);
  setOrder(name, source, destination);
  setAlpha(name, destination, shape);
  emptyIsOk = name.has("YCoCg");
  everyDestinationPlaneChecked = name.whole != "kipiRGBToYUV_8u_AC4P4R";
  destinationChecked = !name.has("ToneMap");  // it is looked at where there is nothing else to do
  threadsMatter = name.has("ReduceBits");
}

void Contract::setBlocks(const NameParts& name, Chroma source, Chroma destination, bool packed422, bool words) {
  const auto either = [&](Chroma c) { return source == c || destination == c; };
  const bool layouts = source != Chroma::kFull && destination != Chroma::kFull;
  if (source == destination && source == Chroma::kFull) return;
  if (either(Chroma::k1620)) {
    multiple = 4;
    return;
  }
  if (layouts) {
    blockWidth = either(Chroma::k411) ? 4 : 2;
    blockHeight = name.has("Interlace") ? 4 : either(Chroma::k420) ? 2 : 1;
    if (source != Chroma::k422 || destination != Chroma::k422) warnWidth = blockWidth, warnHeight = blockHeight;
    return;
  }
  const bool encodes = destination != Chroma::kFull;
  const bool yuv = name.has("YUV");
  if (either(Chroma::k420) && (yuv || !name.has("Dither"))) {
    blockWidth = blockHeight = warnWidth = warnHeight = 2;
  } else if (either(Chroma::k411)) {
    blockWidth = 4;
    if (encodes) warnWidth = 4;
  } else if (either(Chroma::k422) && !packed422 && !yuv && (encodes || !words)) {
    blockWidth = 2;
    if (name.whole == "kipiRGBToYCbCr422_8u_C3P3R") warnWidth = 2;
  }
}

void Contract::setMinimum(const NameParts& name, Chroma source, Chroma destination, bool words) {
  const auto either = [&](Chroma c) { return source == c || destination == c; };
  if (name.has("CFAToRGB")) minWidth = minHeight = 2;
  if (name.has("DemosaicAHD")) minWidth = minHeight = 5;
  if (source == Chroma::kFull && destination == Chroma::kFull) return;
  if (source != Chroma::kFull && destination != Chroma::kFull) {
    minWidth = either(Chroma::k411) || either(Chroma::k1620) ? 4 : 2;
    if (either(Chroma::k1620) || name.whole == "kipiYCbCr420To422_Interlace_8u_P3R") minHeight = 4;
    return;
  }
  if (name.has("YUV")) return;
  if (destination == Chroma::kFull) {
    if (words) return;
    if (name.has("YCbCr422ToBGR")) minWidth = 2;
    if (source == Chroma::k411) minWidth = 4;
    return;
  }
  const bool boxAverage = (contains(name.source, "BGR") && !name.has("CbYCr")) ||
                          name.whole == "kipiRGBToYCbCr422_8u_C3P3R" || name.whole == "kipiRGBToYCrCb420_8u_AC4P3R";
  if (!boxAverage) return;
  minWidth = destination == Chroma::k411 ? 4 : 2;
  if (destination == Chroma::k420) minHeight = 2;
}

void Contract::setOrder(const NameParts& name, const Layout& source, const Layout& destination) {
  const std::vector<Check> planesFirst = {Check::kImages, Check::kPlanes, Check::kSize};
  const bool yuv = name.has("YUV"), words = source.word || destination.word;
  const bool encodes = source.chroma == Chroma::kFull && destination.chroma != Chroma::kFull;
  const bool decodes = source.chroma != Chroma::kFull && destination.chroma == Chroma::kFull;
  if (source.chroma != Chroma::kFull && destination.chroma != Chroma::kFull) order = planesFirst;
  if (encodes && !yuv && !words && !source.planar && name.whole != "kipiRGBToYCbCr420_8u_C3P3R") order = planesFirst;
  if (decodes && !yuv && !words && source.planar && source.chroma != Chroma::k420) order = planesFirst;
  if (name.has("ColorTwist") || name.has("Gamma")) order = planesFirst;
  const bool planarHue = (name.has("BGRToHLS") || name.has("HLSToBGR")) && name.whole != "kipiBGRToHLS_8u_AC4R";
  if (planarHue) order = {Check::kImages, Check::kPlanes, Check::kSteps, Check::kSize};
  const bool repacks =
      words && source.chroma == Chroma::kFull && destination.chroma == Chroma::kFull && !contains(name.source, "YCbCr");
  if (name.has("ColorTwist") || name.has("Gamma") || name.whole == "kipiBGRToHLS_8u_AC4R" || repacks) {
    order.push_back(Check::kSteps);
  }
  if (name.has("Gamma") && name.has("_32f_")) order.insert(order.begin(), Check::kRange);
  if (name.has("ReduceBits")) order.insert(order.end(), {Check::kNoise, Check::kLevels, Check::kMethod});
  if (name.has("CFA") || name.has("Demosaic")) order.push_back(Check::kGrid);
  if (name.has("YCoCg")) order = {Check::kImages, Check::kPlanes};
}

void Contract::setAlpha(const NameParts& name, const Layout& destination, const Shape& shape) {
  if (destination.channels != 4) return;
  if (shape.alpha) {
    alpha = Alpha::kGiven;
  } else if (name.has("P3AC4")) {
    alpha = Alpha::kZero;
  } else if (destination.planar || name.has("AP4C4")) {
    alpha = Alpha::kCopied;
  } else {
    alpha = destination.alpha ? Alpha::kUntouched : Alpha::kChannel;
  }
}

}  // namespace kip
