#include "describe.h"

namespace kip::python {
namespace {

const char* typeName(Sample sample) {
  constexpr const char* kNames[] = {"uint8", "int8", "uint16", "int16", "int32", "float32"};
  return kNames[static_cast<int>(sample)];
}

/// "uint8, shape (height, width, 3)", or what the planes are.
std::string arrays(const PictureShape& shape) {
  std::string text = typeName(shape.image.sample);
  if (!shape.layout.planar) return text + " of shape " + shape.text(0);
  text = std::to_string(shape.count()) + " planes, " + text + " of shapes ";
  for (int i = 0; i < shape.count(); ++i) text += (i ? ", " : "") + shape.text(i);
  return text;
}

constexpr struct {
  Parameter parameter;
  const char* text;
} kTexts[] = {
    {Parameter::kOut, "out: where the result goes, instead of new arrays."},
    {Parameter::kCopy, "copy: True copies sources whose pixels are not contiguous, which are refused else."},
    {Parameter::kAlpha, "aval: the fourth sample of every pixel."},
    {Parameter::kWeights, "coeffs: three weights; None for those of BT.601."},
    {Parameter::kMatrix, "twist: the matrix, a row of four numbers for each channel of the result."},
    {Parameter::kLow, "vMin, vMax: the samples of black and white."},
    {Parameter::kNoise, "noise: 0..100 percent."},
    {Parameter::kMethod, "dtype: the dither method, such as kipcc.kipDitherBayer."},
    {Parameter::kLevels, "levels: how many levels the result has."},
    {Parameter::kGrid, "grid: the filters, such as kipcc.kipiBayerRGGB."},
    {Parameter::kRegion, "srcRoi: (x, y, width, height), the part of the source to convert; None for all of it."},
};

}  // namespace

std::string docOf(const Function& function, const PictureShape& source, const PictureShape& destination,
                  const Parameters& parameters, const char* brief) {
  const bool inPlace = function.shape.inPlace();
  const std::string named = parameters.text();
  std::string doc = function.name + (inPlace ? "(image, /" : "(source, /") + (named.empty() ? "" : ", *, ") + named;
  doc += std::string(")\n--\n\n") + brief + "\n\n";
  if (inPlace) {
    doc += "image: " + arrays(destination) + ", converted where it is, and returned.\n";
  } else {
    doc += "source: " + arrays(source) + ".\nReturns " + arrays(destination) + ".\n";
  }
  for (const auto& [parameter, text] : kTexts) {
    if (parameters.has(parameter)) doc += std::string(text) + "\n";
  }
  if (!inPlace && function.contract.alpha == Alpha::kUntouched) {
    doc +=
        "Alpha is left as it is in `out`; in new arrays it is the source's where it has the same type, else opaque.\n";
  }
  return doc + "\nMore: print(kipcc.manual.PAGES[\"" + function.group + "\"])";
}

}  // namespace kip::python
