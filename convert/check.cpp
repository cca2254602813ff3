// What two pictures have to say before one can become the other.
#include <algorithm>
#include <cstring>

#include "plan.h"

namespace kip::convert {
namespace {

bool isMatrix(KipMatrix m) {
  switch (static_cast<int>(m)) {
    case kipMatrixIdentity:
    case kipMatrixBT709:
    case kipMatrixUnspecified:
    case 5:
    case kipMatrixBT601:
    case kipMatrixYCgCo:
    case kipMatrixBT2020:
      return true;
    default:
      return false;
  }
}

constexpr KipMatrix kBT470BG = static_cast<KipMatrix>(5);

/// The matrix of a picture; unspecified for none.
KipMatrix matrixOf(const KipPicture& picture, KipFormatFamily family) {
  if (family == kipFamilyRGB || family == kipFamilyBayer) return kipMatrixUnspecified;
  if (picture.matrix == kipMatrixIdentity) return kipMatrixUnspecified;
  return picture.matrix == kBT470BG ? kipMatrixBT601 : picture.matrix;
}

KipStatus checkMatrix(const KipPicture& picture, KipFormatFamily family) {
  if (!isMatrix(picture.matrix)) return kipStatusBadMatrix;
  const bool said = picture.matrix != kipMatrixIdentity && picture.matrix != kipMatrixUnspecified;
  const bool isRgb = family == kipFamilyRGB || family == kipFamilyBayer;
  return isRgb && said ? kipStatusBadMatrix : kipStatusOk;
}

/// Settles the matrices of two pictures. Grey becomes YCbCr or RGB without one.
KipStatus settleMatrices(Meaning& from, Meaning& to) {
  const bool fromRgb = from.family == kipFamilyRGB, fromYcc = from.family == kipFamilyYCbCr;
  const bool toRgb = to.family == kipFamilyRGB;
  if (to.family == kipFamilyGray && to.matrix == kipMatrixUnspecified && fromYcc) to.matrix = from.matrix;
  const bool differ = fromYcc && !toRgb && from.matrix != to.matrix;
  const bool needsFrom = differ || (fromYcc && toRgb), needsTo = differ || (fromRgb && !toRgb);
  const bool missing =
      (needsFrom && from.matrix == kipMatrixUnspecified) || (needsTo && to.matrix == kipMatrixUnspecified);
  return missing ? kipStatusNeedsMatrix : kipStatusOk;
}

KipStatus checkRange(const KipPicture& picture, const Format& format) {
  if (picture.range < kipRangeUnspecified || picture.range > kipRangeFull) return kipStatusBadRange;
  const bool onlyFull = format.info.isFloat || format.info.family == kipFamilyBayer;
  return onlyFull && picture.range == kipRangeLimited ? kipStatusBadRange : kipStatusOk;
}

/// Settles the ranges of two pictures.
KipStatus settleRanges(Meaning& from, Meaning& to) {
  for (Meaning* m : {&from, &to}) {
    if (m->family != kipFamilyYCbCr && m->range == kipRangeUnspecified) m->range = kipRangeFull;
  }
  const bool unsaid = from.range == kipRangeUnspecified, toUnsaid = to.range == kipRangeUnspecified;
  if (!unsaid && !toUnsaid) return kipStatusOk;
  if (unsaid != toUnsaid || from.bits[0] != to.bits[0] || from.matrix != to.matrix) return kipStatusNeedsRange;
  from.range = to.range = kipRangeLimited;  // samples stay as they are, whatever it is
  return kipStatusOk;
}

Grid gridOf(const KipFormatInfo& info, KipChromaSite site, bool vertical) {
  const int shift = vertical ? info.chromaShiftY : info.chromaShiftX;
  const bool onFirst = vertical ? site == kipSiteTopLeft : site != kipSiteCenter;
  constexpr int kMiddle4[] = {0, 2, 6};  // of one, two, four pixels, in quarters
  return {shift, onFirst ? 0 : kMiddle4[shift]};
}

KipStatus settleSite(const KipPicture& picture, const KipFormatInfo& info, Grid (&grids)[2]) {
  if (picture.site < kipSiteUnspecified || picture.site > kipSiteTopLeft) return kipStatusBadSite;
  KipChromaSite site = picture.site;
  if (site == kipSiteUnspecified) site = picture.range == kipRangeFull ? kipSiteCenter : kipSiteLeft;
  grids[0] = gridOf(info, site, false), grids[1] = gridOf(info, site, true);
  return kipStatusOk;
}

/// The options that a caller knows of, and the defaults of the others.
KipStatus readOptions(const KipPlanOptions* given, KipPlanOptions& options) {
  options = {};
  options.threads = 1;
  if (given == nullptr) return kipStatusOk;
  if (given->size < sizeof(size_t)) return kipStatusBadOptions;
  std::memcpy(&options, given, std::min(given->size, sizeof options));
  if (options.dither != kipDitherNone && options.dither != kipDitherBayer) return kipStatusDitherMethod;
  const bool good = options.chroma >= kipChromaLinear && options.chroma <= kipChromaNearest &&
                    options.demosaic >= kipDemosaicBilinear && options.demosaic <= kipDemosaicAHD &&
                    options.threads >= 0;
  return good ? kipStatusOk : kipStatusBadOptions;
}

Meaning meaningOf(const KipPicture& picture, const Format& format) {
  Meaning m = {};
  m.family = format.info.family == kipFamilyBayer ? kipFamilyRGB : format.info.family;
  m.matrix = matrixOf(picture, format.info.family);
  m.range = picture.range;
  std::copy_n(format.info.bits, 4, m.bits);
  m.isFloat = format.info.isFloat;
  return m;
}

KipStatus checkSizes(const KipPicture& from, const KipPicture& to, const KipPlan& plan, KipDemosaic method) {
  if (const KipStatus status = checkSize(plan.from->info, from.width, from.height)) return status;
  if (const KipStatus status = checkSize(plan.to->info, to.width, to.height)) return status;
  if (plan.isBayer) {
    const int least = method == kipDemosaicAHD ? 5 : 2;
    if (from.width < least || from.height < least) return kipStatusBadSize;
  }
  return from.width == to.width && from.height == to.height ? kipStatusOk : kipStatusSizesDiffer;
}

}  // namespace

KipStatus checkPlan(const KipPicture& from, const KipPicture& to, const KipPlanOptions* given, KipPlan& plan) {
  plan.from = findFormat(from.format), plan.to = findFormat(to.format);
  if (plan.from == nullptr || plan.to == nullptr) return kipStatusUnknownFormat;
  if (plan.to->info.sourceOnly) return kipStatusSourceOnly;
  plan.isBayer = plan.from->info.family == kipFamilyBayer;
  KipPlanOptions options;
  const KipStatus optionStatus = readOptions(given, options);
  if (const KipStatus status = checkSizes(from, to, plan, options.demosaic)) return status;
  plan.width = from.width, plan.height = from.height;

  Meaning &source = plan.fromMeaning = meaningOf(from, *plan.from), &result = plan.toMeaning = meaningOf(to, *plan.to);
  if (const KipStatus status = checkMatrix(from, plan.from->info.family)) return status;
  if (const KipStatus status = checkMatrix(to, plan.to->info.family)) return status;
  if (const KipStatus status = settleMatrices(source, result)) return status;
  if (const KipStatus status = checkRange(from, *plan.from)) return status;
  if (const KipStatus status = checkRange(to, *plan.to)) return status;
  if (const KipStatus status = settleRanges(source, result)) return status;
  if (const KipStatus status = settleSite(from, plan.from->info, plan.fromChroma)) return status;
  if (const KipStatus status = settleSite(to, plan.to->info, plan.toChroma)) return status;
  if (optionStatus) return optionStatus;
  plan.chroma = options.chroma, plan.dither = options.dither, plan.threads = options.threads;
  plan.bayer.method = options.demosaic;
  return kipStatusOk;
}

}  // namespace kip::convert
