#include "conversions.h"

#include <algorithm>
#include <optional>

namespace accuracy {
namespace {

constexpr Coding kCodings[] = {
    {"BT.601, limited", kipMatrixBT601, kipRangeLimited, 0.299, 0.114},
    {"BT.601, full", kipMatrixBT601, kipRangeFull, 0.299, 0.114},
    {"BT.709, limited", kipMatrixBT709, kipRangeLimited, 0.2126, 0.0722},
    {"BT.709, full", kipMatrixBT709, kipRangeFull, 0.2126, 0.0722},
    {"BT.2020, limited", kipMatrixBT2020, kipRangeLimited, 0.2627, 0.0593},
    {"BT.2020, full", kipMatrixBT2020, kipRangeFull, 0.2627, 0.0593},
};

constexpr KipFormat k444 = kipFormatYUV444P, k420 = kipFormatYUV420P, kGray = kipFormatGray8;
struct Library {
  const char* name;
  Convert (*convert)(const PictureConversion&);
  std::vector<KipFormat> formats;
  bool isPeer = true;

  bool has(KipFormat format) const { return std::find(formats.begin(), formats.end(), format) != formats.end(); }
};
/// swscale's and zimg's filters of shared chroma reach beyond a group.
const Library kLibraries[] = {
    {"libkipconvert", kipconvertConvert, {k444, k420, kGray}, false},
    {"libkipcct7", kipcct7Convert, {k444, k420, kGray}, false},
#ifdef KIPCC_ACCURACY_LIBYUV
    {"libyuv", libyuvConvert, {k444, k420, kGray}},
#endif
#ifdef KIPCC_ACCURACY_OPENCV
    {"OpenCV", opencvConvert, {k420, kGray}},
#endif
#ifdef KIPCC_ACCURACY_SWSCALE
    {"swscale", swscaleConvert, {k444, kGray}},
#endif
#ifdef KIPCC_ACCURACY_ZIMG
    {"zimg", zimgConvert, {k444, kGray}},
#endif
};

constexpr Scale kRgb = {{1 / 255., 1 / 255., 1 / 255.}, {}, 0, 255};
constexpr Scale kFull = {{1 / 255., 1 / 255., 1 / 255.}, {0, -128 / 255., -128 / 255.}, 0, 255};
constexpr Scale kLimited = {{1 / 219., 1 / 224., 1 / 224.}, {-16 / 219., -128 / 224., -128 / 224.}, 0, 255};

Real formula(const PictureConversion& conversion, const Real& c) {
  const double red = conversion.coding.red, blue = conversion.coding.blue, green = 1 - red - blue;
  if (conversion.encodes) {
    const double y = red * c[0] + green * c[1] + blue * c[2];
    if (conversion.format == kGray) return {y, 0, 0};
    return {y, (c[2] - y) / (2 - 2 * blue), (c[0] - y) / (2 - 2 * red)};
  }
  const double r = c[0] + (2 - 2 * red) * c[2], b = c[0] + (2 - 2 * blue) * c[1];
  return {r, (c[0] - red * r - blue * b) / green, b};
}

/// A column of a table.
struct Column {
  Pictures pictures;
  Convert convert;
  Errors errors = {};
};

void measure(Column& column, const std::vector<std::optional<Real>>& should, int channels, size_t from, int stride) {
  Errors errors = column.errors;  // in registers
  for (size_t i = from; i < should.size(); i += stride) {
    if (!should[i]) continue;
    const Real is = column.pictures.result(i);
    for (int c = 0; c < channels; ++c) errors.add(std::fabs(is[c] - (*should[i])[c]));
  }
  column.errors = errors;
}

}  // namespace

std::string PictureConversion::name() const {
  const std::string yuv = sharesChroma() ? "YUV420P" : format == kGray ? "GRAY8" : "YUV444P";
  return (encodes ? "RGB24 to " + yuv : yuv + " to RGB24") + ", " + coding.name;
}

Pictures::Pictures(const PictureConversion& conversion)
    : encodes_(conversion.encodes),
      group_(conversion.sharesChroma() ? 2 : 1),
      rgb_(3 * pixels()),
      yuv_(pixels() + size_t{2} * kSide * kSide) {
  for (size_t i = 0; i < pixels(); ++i) {
    rgb_[3 * i + 1] = static_cast<Kip8u>(i / side() / group_);
    rgb_[3 * i + 2] = static_cast<Kip8u>(i % side() / group_);
  }
  for (int i = 0; i < kSide * kSide; ++i) {
    plane(1)[i] = static_cast<Kip8u>(i / kSide);
    plane(2)[i] = static_cast<Kip8u>(i % kSide);
  }
}

void Pictures::setFirst(Kip8u first) {
  const ptrdiff_t step = encodes_ ? 3 : 1;
  Kip8u* sample = encodes_ ? rgb() : plane(0);
  for (size_t i = 0; i < pixels(); ++i, sample += step) *sample = first;
}

Real Pictures::result(size_t colour) {
  const size_t pixel = (colour / kSide * side() + colour % kSide) * group_;
  if (encodes_) return {double(plane(0)[pixel]), double(plane(1)[colour]), double(plane(2)[colour])};
  return {double(rgb_[3 * pixel]), double(rgb_[3 * pixel + 1]), double(rgb_[3 * pixel + 2])};
}

std::vector<const char*> librariesOf(KipFormat format) {
  std::vector<const char*> names;
  for (const Library& library : kLibraries) {
    if (library.has(format)) names.push_back(library.name);
  }
  return names;
}

std::vector<PictureConversion> pictureConversions(KipFormat format) {
  std::vector<PictureConversion> conversions;
  for (const bool encodes : {true, false}) {
    if (!encodes && format == kGray) continue;
    for (const Coding& coding : kCodings) conversions.push_back({format, encodes, coding});
  }
  return conversions;
}

Accuracy accuracyOf(const PictureConversion& conversion, int stride) {
  std::vector<Column> columns;
  for (const Library& library : kLibraries) {
    if (!library.has(conversion.format)) continue;
    const bool leftOut = library.isPeer && stride > 1;
    columns.push_back({Pictures(conversion), leftOut ? nullptr : library.convert(conversion)});
  }
  const Scale& yuv = conversion.isLimited() ? kLimited : kFull;
  const Scale &source = conversion.encodes ? kRgb : yuv, &result = conversion.encodes ? yuv : kRgb;
  std::vector<std::optional<Real>> should(kSide * kSide);
  for (int first = 0; first < 256; ++first) {
    const int from = first % stride;
    for (int i = from; i < kSide * kSide; i += stride) {
      const Real value = formula(conversion, source.value({double(first), double(i / kSide), double(i % kSide)}));
      should[i] = result.holds(value) ? std::optional(result.sample(value)) : std::nullopt;
    }
    for (Column& column : columns) {
      if (!column.convert) continue;
      column.pictures.setFirst(static_cast<Kip8u>(first));
      column.convert(column.pictures);
      measure(column, should, conversion.encodes ? conversion.planes() : 3, from, stride);
    }
  }
  Accuracy accuracy;
  for (const Column& column : columns) {
    accuracy.push_back(column.convert ? std::optional(column.errors) : std::nullopt);
  }
  return accuracy;
}

}  // namespace accuracy
