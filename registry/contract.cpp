#include "registry/contract.h"

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

using enum Check;

KipiSize larger(KipiSize a, KipiSize b) { return {std::max(a.width, b.width), std::max(a.height, b.height)}; }

/// What follows from the layouts.
void setRules(Contract& c, const Layout& source, const Layout& destination) {
  const bool decodes = source.subsampled() && !destination.subsampled();
  const bool encodes = !source.subsampled() && destination.subsampled();
  const bool relayouts = source.subsampled() && destination.subsampled();
  const KipiSize group = larger(groupOf(source.chroma), groupOf(destination.chroma));
  const bool pairs = group.width == 2 && group.height == 1;
  const bool packed = !relayouts && !(encodes ? destination : source).planar;
  c.order = {kImages, kSize, kPlanes};
  // Packed pairs have a place for a last pixel without a neighbour.
  if (!(pairs && packed)) c.setBlock(group);
  if (pairs || (decodes && source.chroma == Chroma::k411)) c.setWarned({1, 1});
  if (relayouts) c.setLeast({group.width, 1});
  const bool planesFirst =
      relayouts || (encodes && !source.planar) || (decodes && source.planar && source.chroma != Chroma::k420);
  if (planesFirst) c.order = {kImages, kPlanes, kSize};
}

/// Where functions depart from these rules: names, as a regular expression, and what is otherwise for them.
struct Exception {
  const char* names;
  std::vector<Check> order = {};
  KipiSize least = {}, block = {}, warned = {};
};
const Exception kExceptions[] = {
    {.names = ".*(YUV|565|555|444).*", .order = {kImages, kSize, kPlanes}},
    {.names = "kipiRGBToYCbCr420_8u_C3P3R", .order = {kImages, kSize, kPlanes}},
    {.names = ".*YCoCg.*", .order = {kImages, kPlanes}},  // an empty region is nothing to do
    {.names = ".*(Gamma|ColorTwist).*", .order = {kImages, kPlanes, kSize, kSteps}},
    {.names = "kipiGamma.*_32f_.*", .order = {kRange, kImages, kPlanes, kSize, kSteps}},
    {.names = "kipi(BGRToHLS|HLSToBGR)_.*P.*", .order = {kImages, kPlanes, kSteps, kSize}},
    {.names = "kipiBGRToHLS_8u_AC4R", .order = {kImages, kSize, kSteps}},
    {.names = "kipi(RGB|BGR)(565)?To\\1(565)?_.*", .order = {kImages, kSize, kSteps}},
    {.names = ".*ReduceBits.*", .order = {kImages, kSize, kNoise, kLevels, kMethod}},
    {.names = ".*CFAToRGB.*", .order = {kImages, kSize, kGrid}, .least = {2, 2}},
    {.names = ".*DemosaicAHD.*", .order = {kImages, kSize, kGrid}, .least = {5, 5}},

    // Chroma that is an average over whole groups only.
    {.names = "kipiBGR.*ToYC(bCr|rCb)420_.*|kipiRGBToYCrCb420_8u_AC4P3R", .least = {2, 2}},
    {.names = "kipiBGR.*ToYC(bCr|rCb)422_.*", .least = {2, 1}},
    {.names = "kipiRGBToYCbCr422_8u_C3P3R", .least = {2, 1}, .warned = {2, 1}},
    {.names = "kipiBGR.*ToYC(bCr|rCb)411_.*|kipiYC(bCr|rCb)411To(RGB|BGR)_.*", .least = {4, 1}},
    {.names = "kipiYCbCr422ToBGR_.*", .least = {2, 1}},

    {.names = ".*YUV422.*|kipiYC.*422To(RGB|BGR)(565|555|444).*", .block = {1, 1}},
    {.names = "kipiYC.*420To.*Dither.*", .block = {1, 1}},
    {.names = "kipiRGB565ToYUV422_16u8u_C3P3R", .block = {2, 1}, .warned = {2, 2}},  // though no row is left out
    {.names = ".*1620.*", .least = {4, 4}, .block = {1, 1}},  // other sizes than whole blocks are refused
    {.names = ".*Interlace.*", .block = {2, 4}},
    {.names = "kipiYCbCr420To422_Interlace_8u_P3R", .least = {2, 4}},
};

void put(const Exception& exception, Contract& contract) {
  if (!exception.order.empty()) contract.order = exception.order;
  if (exception.least.width) contract.setLeast(exception.least);
  if (exception.block.width) contract.setBlock(exception.block);
  if (exception.warned.width) contract.setWarned(exception.warned);
}

Alpha alphaOf(const NameParts& name, const Layout& destination, const Shape& shape) {
  if (destination.channels != 4) return Alpha::kNone;
  if (shape.alpha) return Alpha::kGiven;
  if (name.has("P3AC4")) return Alpha::kZero;
  if (destination.planar || name.has("AP4C4")) return Alpha::kCopied;
  return destination.alpha ? Alpha::kUntouched : Alpha::kChannel;
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
    : multiple(name.has("1620") ? 4 : 1),
      everyDestinationPlaneChecked(!name.is("kipiRGBToYUV_8u_AC4P4R")),
      destinationChecked(!name.has("ToneMap")),  // looked at only where the source has nothing to show
      diffusesErrors(name.has("ReduceBits")),
      alpha(alphaOf(name, destination, shape)) {
  static const std::vector<std::regex> names = [] {
    std::vector<std::regex> compiled;
    for (const Exception& exception : kExceptions) compiled.emplace_back(exception.names);
    return compiled;
  }();
  setRules(*this, source, destination);
  for (size_t i = 0; i < names.size(); ++i) {
    if (std::regex_match(name.whole, names[i])) put(kExceptions[i], *this);
  }
}

bool Contract::checks(Check check) const { return std::find(order.begin(), order.end(), check) != order.end(); }

}  // namespace kip
