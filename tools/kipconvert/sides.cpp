#include "sides.h"

namespace {

KipFormatFamily familyOf(const KipPicture& picture) { return kipFormatInfo(picture.format)->family; }

bool isYCbCr(const KipPicture& picture) { return familyOf(picture) == kipFamilyYCbCr; }

bool hasLuma(const KipPicture& picture) { return isYCbCr(picture) || familyOf(picture) == kipFamilyGray; }

bool hasLessChroma(const KipPicture& picture) {
  const KipFormatInfo& info = *kipFormatInfo(picture.format);
  return info.chromaShiftX + info.chromaShiftY > 0;
}

/// Options go before what the stream says.
void apply(const Colour& said, KipPicture& picture) {
  if (said.matrix != kipMatrixUnspecified) picture.matrix = said.matrix;
  if (said.range != kipRangeUnspecified) picture.range = said.range;
  if (said.site != kipSiteUnspecified) picture.site = said.site;
}

/// Where nobody says it, the result's colours are meant as the source's, but for the range of grey and RGB: full.
void inherit(const KipPicture& from, KipPicture& to) {
  const bool haveLuma = hasLuma(from) && hasLuma(to);
  if (haveLuma && to.matrix == kipMatrixUnspecified) to.matrix = from.matrix;
  if (!isYCbCr(to) && to.range == kipRangeUnspecified) to.range = kipRangeFull;
  if (haveLuma && to.range == kipRangeUnspecified) to.range = from.range;
  if (hasLessChroma(from) && to.site == kipSiteUnspecified) to.site = from.site;
}

/// The site that the library takes where none is said, said.
void settleSite(KipPicture& picture, const char* side, std::vector<std::string>& assumed) {
  if (!hasLessChroma(picture) || picture.site != kipSiteUnspecified) return;
  picture.site = picture.range == kipRangeFull ? kipSiteCenter : kipSiteLeft;
  assumed.push_back(std::string("the chroma site of the ") + side + ": " + nameOf(picture.site) +
                    (picture.range == kipRangeFull ? ", as with full range" : ", as with limited range"));
}

/// In `values`, $ stands for the option.
std::string notKnown(const std::string& what, bool ofSource, const std::string& values) {
  const std::string option = (ofSource ? "--" : "--to-") + what;
  std::string text = "the " + what + " of the " + (ofSource ? "source" : "result") + " is not known: add ";
  for (const char c : values) text += c == '$' ? option : std::string(1, c);
  return text;
}

}  // namespace

const char* nameOf(KipChromaSite site) {
  return site == kipSiteLeft ? "left" : site == kipSiteCenter ? "center" : "topleft";
}

Sides settleSides(const Stream& source, const Options& options, const Container& container) {
  Sides sides = {source, source, {}};
  KipPicture &from = sides.from.picture, &to = sides.to.picture;
  apply(options.fromColour, from);
  if (!source.assumedRange.empty() && options.fromColour.range == kipRangeUnspecified) {
    sides.assumed.push_back("the range of the source: " + source.assumedRange);
  }

  if (options.to == kipFormatUnknown && &container == &kRaw) {
    throw Usage("raw frames of which format? Add --to, or name a .y4m, .png, .ppm or .pgm file");
  }
  to.format = options.to != kipFormatUnknown ? options.to : container.formatFor(from.format);
  const KipFormat held = container.formatFor(to.format);
  if (held != to.format) {
    throw Usage(std::string(container.name) + " does not hold " + kipFormatInfo(to.format)->name + "; --to " +
                kipFormatInfo(held)->name + " would do");
  }
  to.matrix = kipMatrixUnspecified;
  to.range = kipRangeUnspecified;
  to.site = kipSiteUnspecified;
  apply(options.toColour, to);
  settleSite(from, "source", sides.assumed);
  inherit(from, to);
  settleSite(to, "result", sides.assumed);
  return sides;
}

std::string explainFailure(KipStatus status, const KipPicture& from, const KipPicture& to) {
  const bool isRgb = familyOf(from) == kipFamilyRGB || familyOf(from) == kipFamilyBayer;
  switch (static_cast<int>(status)) {
    case kipStatusNeedsMatrix:
      return notKnown("matrix", !isRgb && from.matrix == kipMatrixUnspecified,
                      "$ bt709 (HD), $ bt601 (SD, JPEG) or $ bt2020 (UHD)");
    case kipStatusNeedsRange:
      return notKnown("range", isYCbCr(from) && from.range == kipRangeUnspecified,
                      "$ limited (video) or $ full (JPEG)");
    case kipStatusBadMatrix:
      return isRgb && from.matrix != kipMatrixUnspecified
                 ? "the source is RGB and has no matrix; --to-matrix is that of the result"
                 : "the result is RGB and has no matrix; --matrix is that of the source";
    case kipStatusSourceOnly:
      return std::string(kipFormatInfo(to.format)->name) + " cannot be a result";
    default:
      return kipStatusText(status);
  }
}
