// The formats, a row each, their names, and the layout of a picture in memory.
#include "formats.h"

#include <cctype>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kip::convert {
namespace {

using enum Packing;
using enum SampleType;

constexpr KipFormatFamily kGray = kipFamilyGray, kRGB = kipFamilyRGB, kYCC = kipFamilyYCbCr, kBayerRGB = kipFamilyBayer;

// Parts, by the channels that their lanes are: 0 to 2 for R, G, B or Y, Cb, Cr; 3 for alpha.
constexpr Part plane(int8_t which, int8_t channel) { return {which, kPlane, 1, {channel}}; }
constexpr Part pair(Packing packing, int8_t first, int8_t second) { return {1, packing, 2, {first, second}}; }
constexpr Part triple(Packing packing, int8_t a, int8_t b, int8_t c) { return {0, packing, 3, {a, b, c}}; }
constexpr Part quad(Packing packing, int8_t a, int8_t b, int8_t c, int8_t d) { return {0, packing, 4, {a, b, c, d}}; }
constexpr int8_t kR = 0, kG = 1, kB = 2, kA = 3, kY = 0, kCb = 1, kCr = 2, kX = kUnused;

struct Parts {
  Part part[4];
};
constexpr Parts kOnePlane = {{plane(0, kY)}};
constexpr Parts kThreePlanes = {{plane(0, kY), plane(1, kCb), plane(2, kCr)}};
constexpr Parts kFourPlanes = {{plane(0, kY), plane(1, kCb), plane(2, kCr), plane(3, kA)}};
constexpr Parts kGreenBlueRed = {{plane(0, kG), plane(1, kB), plane(2, kR)}};
constexpr Parts one(Part part) { return {{part}}; }
constexpr Parts lumaAnd(Part chroma) { return {{plane(0, kY), chroma}}; }

// Groups of pixels in a row: how many, and their bytes.
struct Group {
  int pixels, bytes;
};

constexpr bool isChromaPlane(KipFormatFamily family, int p) { return family == kYCC && (p == 1 || p == 2); }

/// A row of the table. `group` is that of plane 0 without subsampling, `chroma` that of the chroma planes, before
/// subsampling.
constexpr Format row(KipFormat format, const char* name, const char* others, const char* order, KipFormatFamily family,
                     SampleType type, int bits, int shift, int alpha, int chromaX, int chromaY, Group group,
                     Group chroma, Parts parts) {
  Format f{};
  const int channels = family == kGray ? 1 : 3;
  f.info.format = format, f.info.name = name, f.info.otherNames = others, f.info.order = order;
  f.info.family = family, f.info.hasAlpha = alpha, f.info.isFloat = type == kF32;
  f.info.sourceOnly = family == kBayerRGB;
  for (int c = 0; c < channels; ++c) f.info.bits[c] = bits;
  if (alpha) f.info.bits[3] = bits;
  f.info.sampleBytes = bytesOf(type);
  f.info.chromaShiftX = chromaX, f.info.chromaShiftY = chromaY;
  for (int i = 0; i < 4; ++i) {
    const Part& part = parts.part[i];
    f.part[i] = part;
    if (part.lanes == 0) continue;
    const int p = part.plane;
    f.info.planes = p + 1 > f.info.planes ? p + 1 : f.info.planes;
    const bool subsampled = isChromaPlane(family, p);
    const Group g = p == 0 || !subsampled ? group : chroma;
    f.info.groupPixels[p] = g.pixels << (subsampled ? chromaX : 0);
    f.info.groupBytes[p] = g.bytes;
    f.info.rowShift[p] = subsampled ? chromaY : 0;
  }
  f.type = type, f.shift = shift;
  return f;
}

constexpr Format gray(KipFormat format, const char* name, const char* others, SampleType type, int bits) {
  return row(format, name, others, "Y", kGray, type, bits, 0, 0, 0, 0, {1, bytesOf(type)}, {}, kOnePlane);
}
constexpr Format rgb(KipFormat format, const char* name, const char* others, const char* order, SampleType type,
                     int alpha, Part part) {
  const int bits = 8 * bytesOf(type);
  return row(format, name, others, order, kRGB, type, bits, 0, alpha, 0, 0, {1, part.lanes * bytesOf(type)}, {},
             one(part));
}
constexpr Format gbr(KipFormat format, const char* name, const char* others, SampleType type, int bits) {
  return row(format, name, others, "G B R", kRGB, type, bits, 0, 0, 0, 0, {1, bytesOf(type)}, {}, kGreenBlueRed);
}
constexpr Format packed16(KipFormat format, const char* name, const char* others, const char* order, Packing packing,
                          int bits, int green, bool blueFirst) {
  const Part part = blueFirst ? triple(packing, kB, kG, kR) : triple(packing, kR, kG, kB);
  Format f = row(format, name, others, order, kRGB, kU8, bits, 0, 0, 0, 0, {1, 2}, {}, one(part));
  f.info.bits[1] = green, f.info.sampleBytes = 0;
  return f;
}
constexpr Format planar(KipFormat format, const char* name, const char* others, int bits, int chromaX, int chromaY) {
  const SampleType type = bits > 8 ? kU16 : kU8;
  const Group g = {1, bytesOf(type)};
  return row(format, name, others, "Y U V", kYCC, type, bits, 0, 0, chromaX, chromaY, g, g, kThreePlanes);
}
constexpr Format semiPlanar(KipFormat format, const char* name, const char* others, const char* order, int bits,
                            int chromaX, int chromaY, bool swapped = false) {
  const SampleType type = bits > 8 ? kU16 : kU8;
  const Packing packing = bits > 8 ? kPair16 : kPair8;
  const int bytes = bytesOf(type);
  return row(format, name, others, order, kYCC, type, bits, bits > 8 ? 16 - bits : 0, 0, chromaX, chromaY, {1, bytes},
             {1, 2 * bytes}, lumaAnd(swapped ? pair(packing, kCr, kCb) : pair(packing, kCb, kCr)));
}
constexpr Format packed422(KipFormat format, const char* name, const char* others, const char* order, Packing packing,
                           int bits, int shift, Group group, Part part) {
  Format f = row(format, name, others, order, kYCC, bits > 8 ? kU16 : kU8, bits, shift, 0, 1, 0, group, {}, one(part));
  f.part[0].packing = packing;
  if (packing == kV210) f.info.sampleBytes = 0;
  return f;
}
constexpr Format bayer(KipFormat format, const char* name, const char* others, const char* order, KipiBayerGrid grid,
                       int bits, Group group) {
  const SampleType type = bits > 8 ? kU16 : kU8;
  const Part part = triple(kBayer, kR, kG, kB);
  Format f =
      row(format, name, others, order, kBayerRGB, type, bits, bits > 8 ? 16 - bits : 0, 0, 0, 0, group, {}, one(part));
  f.info.sampleBytes = group.pixels == 1 ? bytesOf(type) : 0;
  f.bayerGrid = grid;
  return f;
}

constexpr Group kRaw8 = {1, 1}, kRaw16 = {1, 2}, kRaw10 = {4, 5}, kRaw12 = {2, 3};

// In the order of KipFormat, from 1.
constexpr Format kFormats[] = {
    gray(kipFormatGray8, "gray", "gray8 grey y8 y800", kU8, 8),
    gray(kipFormatGray10, "gray10le", "y10 gray10_le16", kU16, 10),
    gray(kipFormatGray12, "gray12le", "y12 gray12_le16", kU16, 12),
    gray(kipFormatGray16, "gray16le", "y16 gray16_le", kU16, 16),
    gray(kipFormatGrayF32, "grayf32le", "", kF32, 32),

    rgb(kipFormatRGB24, "rgb24", "rgb rgb3", "RGB", kU8, 0, triple(kTriple8, kR, kG, kB)),
    rgb(kipFormatBGR24, "bgr24", "bgr bgr3", "BGR", kU8, 0, triple(kTriple8, kB, kG, kR)),
    rgb(kipFormatRGBA, "rgba", "ab24", "RGBA", kU8, 1, quad(kQuad8, kR, kG, kB, kA)),
    rgb(kipFormatBGRA, "bgra", "ar24", "BGRA", kU8, 1, quad(kQuad8, kB, kG, kR, kA)),
    rgb(kipFormatARGB, "argb", "ba24", "ARGB", kU8, 1, quad(kQuad8, kA, kR, kG, kB)),
    rgb(kipFormatABGR, "abgr", "ra24", "ABGR", kU8, 1, quad(kQuad8, kA, kB, kG, kR)),
    rgb(kipFormatRGB0, "rgb0", "rgbx xb24", "RGBX", kU8, 0, quad(kQuad8, kR, kG, kB, kX)),
    rgb(kipFormatBGR0, "bgr0", "bgrx xr24", "BGRX", kU8, 0, quad(kQuad8, kB, kG, kR, kX)),
    rgb(kipFormat0RGB, "0rgb", "xrgb bx24", "XRGB", kU8, 0, quad(kQuad8, kX, kR, kG, kB)),
    rgb(kipFormat0BGR, "0bgr", "xbgr rx24", "XBGR", kU8, 0, quad(kQuad8, kX, kB, kG, kR)),

    rgb(kipFormatRGB48, "rgb48le", "", "RGB", kU16, 0, triple(kTriple16, kR, kG, kB)),
    rgb(kipFormatBGR48, "bgr48le", "", "BGR", kU16, 0, triple(kTriple16, kB, kG, kR)),
    rgb(kipFormatRGBA64, "rgba64le", "rgba64_le", "RGBA", kU16, 1, quad(kQuad16, kR, kG, kB, kA)),
    rgb(kipFormatRGBF32, "rgbf32le", "", "RGB", kF32, 0, triple(kTripleF32, kR, kG, kB)),

    gbr(kipFormatGBRP, "gbrp", "gbr", kU8, 8),
    gbr(kipFormatGBRP10, "gbrp10le", "gbr_10le", kU16, 10),
    gbr(kipFormatGBRP16, "gbrp16le", "gbr_16le", kU16, 16),
    gbr(kipFormatGBRPF32, "gbrpf32le", "", kF32, 32),

    packed16(kipFormatRGB565, "rgb565le", "rgb16 rgbp", "RGB", k565, 5, 6, false),
    packed16(kipFormatBGR565, "bgr565le", "bgr16", "BGR", k565, 5, 6, true),
    packed16(kipFormatRGB555, "rgb555le", "rgb15 rgbo xr15", "XRGB", k555, 5, 5, false),
    packed16(kipFormatBGR555, "bgr555le", "bgr15 xb15", "XBGR", k555, 5, 5, true),
    packed16(kipFormatRGB444, "rgb444le", "r444 xr12", "XRGB", k444, 4, 4, false),
    packed16(kipFormatBGR444, "bgr444le", "xb12", "XBGR", k444, 4, 4, true),

    planar(kipFormatYUV444P, "yuv444p", "y444 i444 ym24 yu24", 8, 0, 0),
    planar(kipFormatYUV422P, "yuv422p", "y42b i422 422p ym16 yu16", 8, 1, 0),
    planar(kipFormatYUV420P, "yuv420p", "i420 iyuv yu12 ym12", 8, 1, 1),
    planar(kipFormatYUV440P, "yuv440p", "", 8, 0, 1),
    planar(kipFormatYUV411P, "yuv411p", "y41b 411p", 8, 2, 0),
    planar(kipFormatYUV410P, "yuv410p", "yuv9", 8, 2, 2),
    row(kipFormatYUVA420P, "yuva420p", "a420", "Y U V A", kYCC, kU8, 8, 0, 1, 1, 1, {1, 1}, {1, 1}, kFourPlanes),

    semiPlanar(kipFormatNV12, "nv12", "nm12", "Y UV", 8, 1, 1),
    semiPlanar(kipFormatNV21, "nv21", "nm21", "Y VU", 8, 1, 1, true),
    semiPlanar(kipFormatNV16, "nv16", "nm16", "Y UV", 8, 1, 0),
    semiPlanar(kipFormatNV61, "nv61", "nm61", "Y VU", 8, 1, 0, true),
    semiPlanar(kipFormatNV24, "nv24", "", "Y UV", 8, 0, 0),
    semiPlanar(kipFormatNV42, "nv42", "", "Y VU", 8, 0, 0, true),

    packed422(kipFormatYUYV422, "yuyv422", "yuyv yuy2 yuvs", "YUYV", kLumaFirst8, 8, 0, {2, 4},
              triple(kLumaFirst8, kY, kCb, kCr)),
    packed422(kipFormatUYVY422, "uyvy422", "uyvy 2vuy", "UYVY", kChromaFirst8, 8, 0, {2, 4},
              triple(kChromaFirst8, kY, kCb, kCr)),
    packed422(kipFormatYVYU422, "yvyu422", "yvyu", "YVYU", kLumaFirst8, 8, 0, {2, 4},
              triple(kLumaFirst8, kY, kCr, kCb)),
    row(kipFormatVUYA, "vuya", "vuya32", "VUYA", kYCC, kU8, 8, 0, 1, 0, 0, {1, 4}, {},
        one(quad(kQuad8, kCr, kCb, kY, kA))),

    planar(kipFormatYUV420P10, "yuv420p10le", "i420_10le", 10, 1, 1),
    planar(kipFormatYUV422P10, "yuv422p10le", "i422_10le", 10, 1, 0),
    planar(kipFormatYUV444P10, "yuv444p10le", "y444_10le", 10, 0, 0),
    planar(kipFormatYUV420P12, "yuv420p12le", "i420_12le", 12, 1, 1),
    planar(kipFormatYUV422P12, "yuv422p12le", "i422_12le", 12, 1, 0),
    planar(kipFormatYUV444P12, "yuv444p12le", "y444_12le", 12, 0, 0),
    planar(kipFormatYUV420P16, "yuv420p16le", "", 16, 1, 1),
    planar(kipFormatYUV422P16, "yuv422p16le", "", 16, 1, 0),
    planar(kipFormatYUV444P16, "yuv444p16le", "y444_16le", 16, 0, 0),

    semiPlanar(kipFormatP010, "p010le", "p010_10le", "Y UV", 10, 1, 1),
    semiPlanar(kipFormatP012, "p012le", "p012_le", "Y UV", 12, 1, 1),
    semiPlanar(kipFormatP016, "p016le", "p016_le", "Y UV", 16, 1, 1),
    semiPlanar(kipFormatP210, "p210le", "", "Y UV", 10, 1, 0),

    packed422(kipFormatY210, "y210le", "", "YUYV", kLumaFirst16, 10, 6, {2, 8}, triple(kLumaFirst16, kY, kCb, kCr)),
    packed422(kipFormatV210, "v210", "", "UYVYUY VYUYVY", kV210, 10, 0, {6, 16}, triple(kV210, kY, kCb, kCr)),

    bayer(kipFormatBayerRGGB8, "bayer_rggb8", "srggb8 rggb", "RG GB", kipiBayerRGGB, 8, kRaw8),
    bayer(kipFormatBayerBGGR8, "bayer_bggr8", "sbggr8 ba81 bggr", "BG GR", kipiBayerBGGR, 8, kRaw8),
    bayer(kipFormatBayerGRBG8, "bayer_grbg8", "sgrbg8 grbg", "GR BG", kipiBayerGRBG, 8, kRaw8),
    bayer(kipFormatBayerGBRG8, "bayer_gbrg8", "sgbrg8 gbrg", "GB RG", kipiBayerGBRG, 8, kRaw8),
    bayer(kipFormatBayerRGGB16, "bayer_rggb16le", "srggb16", "RG GB", kipiBayerRGGB, 16, kRaw16),
    bayer(kipFormatBayerBGGR16, "bayer_bggr16le", "sbggr16 byr2", "BG GR", kipiBayerBGGR, 16, kRaw16),
    bayer(kipFormatBayerGRBG16, "bayer_grbg16le", "sgrbg16 gr16", "GR BG", kipiBayerGRBG, 16, kRaw16),
    bayer(kipFormatBayerGBRG16, "bayer_gbrg16le", "sgbrg16 gb16", "GB RG", kipiBayerGBRG, 16, kRaw16),
    bayer(kipFormatBayerRGGB10P, "bayer_rggb10p", "srggb10p praa", "RG GB", kipiBayerRGGB, 10, kRaw10),
    bayer(kipFormatBayerBGGR10P, "bayer_bggr10p", "sbggr10p pbaa", "BG GR", kipiBayerBGGR, 10, kRaw10),
    bayer(kipFormatBayerGRBG10P, "bayer_grbg10p", "sgrbg10p", "GR BG", kipiBayerGRBG, 10, kRaw10),
    bayer(kipFormatBayerGBRG10P, "bayer_gbrg10p", "sgbrg10p", "GB RG", kipiBayerGBRG, 10, kRaw10),
    bayer(kipFormatBayerRGGB12P, "bayer_rggb12p", "srggb12p prcc", "RG GB", kipiBayerRGGB, 12, kRaw12),
    bayer(kipFormatBayerBGGR12P, "bayer_bggr12p", "sbggr12p pbcc", "BG GR", kipiBayerBGGR, 12, kRaw12),
    bayer(kipFormatBayerGRBG12P, "bayer_grbg12p", "sgrbg12p", "GR BG", kipiBayerGRBG, 12, kRaw12),
    bayer(kipFormatBayerGBRG12P, "bayer_gbrg12p", "sgbrg12p", "GB RG", kipiBayerGBRG, 12, kRaw12),
};
constexpr int kFormatCount = sizeof(kFormats) / sizeof(kFormats[0]);

constexpr bool inOrder() {
  for (int i = 0; i < kFormatCount; ++i) {
    if (kFormats[i].info.format != i + 1) return false;
  }
  return true;
}
static_assert(inOrder());

bool sameLetters(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (lower(a[i]) != b[i]) return false;
  }
  return true;
}

/// FFmpeg's names of formats in the machine's byte order lack the "le".
bool isName(std::string_view asked, std::string_view name) {
  constexpr std::string_view kLittleEndian = "le";
  if (sameLetters(asked, name)) return true;
  return name.ends_with(kLittleEndian) && sameLetters(asked, name.substr(0, name.size() - kLittleEndian.size()));
}

bool isKnownBy(const KipFormatInfo& info, std::string_view asked) {
  if (isName(asked, info.name)) return true;
  for (std::string_view others = info.otherNames; !others.empty();) {
    const size_t end = others.find(' ');
    if (sameLetters(asked, others.substr(0, end))) return true;
    others.remove_prefix(end == std::string_view::npos ? others.size() : end + 1);
  }
  return false;
}

}  // namespace

const Format* findFormat(KipFormat format) {
  return format >= 1 && format <= kFormatCount ? &kFormats[format - 1] : nullptr;
}

int64_t rowBytes(const KipFormatInfo& info, int plane, int64_t width) {
  return (width + info.groupPixels[plane] - 1) / info.groupPixels[plane] * info.groupBytes[plane];
}

int64_t planeRows(const KipFormatInfo& info, int plane, int64_t height) {
  return (height + (1 << info.rowShift[plane]) - 1) >> info.rowShift[plane];
}

KipStatus checkSize(const KipFormatInfo& info, int width, int height) {
  if (width < 1 || height < 1) return kipStatusBadSize;
  int64_t left = PTRDIFF_MAX;
  for (int p = 0; p < info.planes; ++p) {
    const int64_t bytes = rowBytes(info, p, width);
    if (bytes > INT32_MAX) return kipStatusBadSize;
    left -= bytes * planeRows(info, p, height);
    if (left < 0) return kipStatusBadSize;
  }
  return kipStatusOk;
}

}  // namespace kip::convert

using namespace kip::convert;

KipFormat kipFormatByName(const char* name) {
  std::string_view asked = name ? name : "";
  while (asked.ends_with(' ')) asked.remove_suffix(1);
  for (const Format& format : kFormats) {
    if (isKnownBy(format.info, asked)) return format.info.format;
  }
  return kipFormatUnknown;
}

const KipFormatInfo* kipFormatInfo(KipFormat format) {
  const Format* row = findFormat(format);
  return row ? &row->info : nullptr;
}

KipStatus kipPictureLayout(const KipPicture* picture, size_t alignment, KipLayout* layout) {
  if (picture == nullptr || layout == nullptr) return kipStatusNullPointer;
  const KipFormatInfo* info = kipFormatInfo(picture->format);
  if (info == nullptr) return kipStatusUnknownFormat;
  if (const KipStatus status = checkSize(*info, picture->width, picture->height)) return status;
  constexpr uint64_t kMostAlignment = uint64_t{1} << 30;
  if (alignment == 0 || (alignment & (alignment - 1)) != 0 || alignment > kMostAlignment) return kipStatusBadArgument;
  KipLayout made = {};
  uint64_t bytes = 0;
  for (int p = 0; p < info->planes; ++p) {
    const uint64_t step = (rowBytes(*info, p, picture->width) + alignment - 1) / alignment * alignment;
    const uint64_t plane = step * planeRows(*info, p, picture->height);
    if (step > INT32_MAX || plane > PTRDIFF_MAX - bytes) return kipStatusBadSize;
    made.offset[p] = bytes, made.step[p] = step;
    bytes += plane;
  }
  made.bytes = bytes;
  *layout = made;
  return kipStatusOk;
}
