#include "support/contract.h"

#include <algorithm>
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

bool isPacked16(const std::string& space) {
  static const std::regex pattern("(RGB|BGR)(565|555|444)");
  return std::regex_search(space, pattern);
}

/// What the rules ask about a function.
struct Facts {
  const NameParts& name;
  const Layout& source;
  const Layout& destination;

  bool encodes() const { return !source.subsampled() && destination.subsampled(); }
  bool decodes() const { return source.subsampled() && !destination.subsampled(); }
  bool relayouts() const { return source.subsampled() && destination.subsampled(); }
  bool either(Chroma c) const { return source.chroma == c || destination.chroma == c; }
  bool both(Chroma c) const { return source.chroma == c && destination.chroma == c; }
  bool packed16() const { return source.packed16 || destination.packed16; }
  bool yuv() const { return name.has("YUV"); }
  /// Encoders whose chroma is an average over whole groups of pixels only.
  bool averagesGroups() const {
    const bool bgr = name.source.rfind("BGR", 0) == 0 && !name.has("CbYCr");
    return encodes() && !yuv() &&
           (bgr || name.is("kipiRGBToYCbCr422_8u_C3P3R") || name.is("kipiRGBToYCrCb420_8u_AC4P3R"));
  }
  bool planarHue() const {
    return (name.has("BGRToHLS") || name.has("HLSToBGR")) && (source.planar || destination.planar);
  }
};

KipiSize minimum(const Facts& f) {
  if (f.name.has("CFAToRGB")) return {2, 2};
  if (f.name.has("DemosaicAHD")) return {5, 5};
  if (f.relayouts()) {
    if (f.either(Chroma::k1620)) return {4, 4};
    return {f.either(Chroma::k411) ? 4 : 2, f.name.is("kipiYCbCr420To422_Interlace_8u_P3R") ? 4 : 1};
  }
  if (f.averagesGroups()) return {f.either(Chroma::k411) ? 4 : 2, f.either(Chroma::k420) ? 2 : 1};
  if (f.decodes() && !f.packed16()) {
    if (f.either(Chroma::k411)) return {4, 1};
    if (f.name.has("kipiYCbCr422ToBGR")) return {2, 1};
  }
  return {1, 1};
}

/// The blocks that a region is cut down to.
KipiSize block(const Facts& f) {
  if (f.either(Chroma::k1620)) return {1, 1};  // other sizes than whole blocks are refused
  if (f.relayouts()) {
    return {f.either(Chroma::k411) ? 4 : 2, f.name.has("Interlace") ? 4 : f.either(Chroma::k420) ? 2 : 1};
  }
  if (f.either(Chroma::k411)) return {4, 1};
  if (f.either(Chroma::k420)) return f.name.has("Dither") && !f.yuv() ? KipiSize{1, 1} : KipiSize{2, 2};
  if (f.yuv()) return {f.name.is("kipiRGB565ToYUV422_16u8u_C3P3R") ? 2 : 1, 1};
  const bool planarEncoder = f.encodes() && f.destination.planar;
  const bool planarDecoder = f.decodes() && f.source.planar && !f.packed16();
  return {f.either(Chroma::k422) && (planarEncoder || planarDecoder) ? 2 : 1, 1};
}

/// The blocks whose lack of wholeness is reported.
KipiSize warned(const Facts& f) {
  if (f.name.is("kipiRGB565ToYUV422_16u8u_C3P3R")) return {2, 2};  // though no row is left out
  const bool silent = f.both(Chroma::k422) || (f.decodes() && f.either(Chroma::k411)) ||
                      (!f.relayouts() && f.either(Chroma::k422) && !f.name.is("kipiRGBToYCbCr422_8u_C3P3R"));
  return silent ? KipiSize{1, 1} : block(f);
}

std::vector<Check> orderOf(const Facts& f) {
  using enum Check;
  const NameParts& name = f.name;
  if (name.has("YCoCg")) return {kImages, kPlanes};  // an empty region is nothing to do
  if (name.has("Gamma") || name.has("ColorTwist")) {
    std::vector<Check> order = {kImages, kPlanes, kSize, kSteps};
    if (name.has("_32f_") && name.has("Gamma")) order.insert(order.begin(), kRange);
    return order;
  }
  if (f.planarHue()) return {kImages, kPlanes, kSteps, kSize};
  const bool repacks = f.packed16() && name.has("RGB") + name.has("BGR") == 1 && !name.has("Y");
  if (repacks || name.has("BGRToHLS")) return {kImages, kSize, kSteps};
  if (name.has("ReduceBits")) return {kImages, kSize, kNoise, kLevels, kMethod};
  if (name.has("CFA") || name.has("Demosaic")) return {kImages, kSize, kGrid};
  const bool encoder = f.encodes() && !f.source.planar && !name.is("kipiRGBToYCbCr420_8u_C3P3R");
  const bool decoder = f.decodes() && f.source.planar && !f.either(Chroma::k420);
  const bool planesFirst = f.relayouts() || (!f.yuv() && !f.packed16() && (encoder || decoder));
  if (planesFirst) return {kImages, kPlanes, kSize};
  return {kImages, kSize, kPlanes};
}

Alpha alphaOf(const Facts& f, const Shape& shape) {
  if (f.destination.channels != 4) return Alpha::kNone;
  if (shape.alpha) return Alpha::kGiven;
  if (f.name.has("P3AC4")) return Alpha::kZero;
  if (f.destination.planar || f.name.has("AP4C4")) return Alpha::kCopied;
  return f.destination.alpha ? Alpha::kUntouched : Alpha::kChannel;
}

}  // namespace

NameParts::NameParts(const std::string& name) : whole(name) {
  static const std::regex pattern(
      "kipi(.*?)(?:To((?![a-z]).*?))?(?:_(?:709CSC|709HDTV|Filter|Interlace|Rev))?_"
      "(?:[0-9]+[suf])+_I?(A?[CP][0-9])(A?[CP][0-9])?I?R?");
  std::smatch part;
  if (!std::regex_match(name, part, pattern)) throw std::invalid_argument("no function's name: " + name);
  source = part[1];
  destination = part[2].matched ? part[2] : part[1];
  sourceLayout = part[3];
  destinationLayout = part[4].matched ? part[4] : part[3];
}

Layout::Layout(const std::string& space, const std::string& descriptor)
    : planar(contains(descriptor, "P")),
      channels(descriptor.back() - '0'),
      chroma(chromaOf(space)),
      packed16(isPacked16(space)),
      alpha(contains(descriptor, "A") || descriptor == "P4") {
  if (packed16) channels = 1;
}

Contract::Contract(const NameParts& name, const Layout& source, const Layout& destination, const Shape& shape)
    : everyDestinationPlaneChecked(!name.is("kipiRGBToYUV_8u_AC4P4R")),
      destinationChecked(!name.has("ToneMap")),  // looked at only where the source has nothing to show
      diffusesErrors(name.has("ReduceBits")) {
  const Facts facts = {name, source, destination};
  order = orderOf(facts);
  minWidth = minimum(facts).width, minHeight = minimum(facts).height;
  multiple = facts.either(Chroma::k1620) ? 4 : 1;
  blockWidth = block(facts).width, blockHeight = block(facts).height;
  warnWidth = warned(facts).width, warnHeight = warned(facts).height;
  alpha = alphaOf(facts, shape);
}

bool Contract::checks(Check check) const { return std::find(order.begin(), order.end(), check) != order.end(); }

}  // namespace kip
