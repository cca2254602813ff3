/**
 * @file kipconvert.h
 * Any picture to any picture: libkipconvert.so.1.
 *
 * One call converts between any two of the formats below. What the colours mean is said in the terms of ITU-T H.273,
 * and never guessed: the matrix, the range, and the site of the chroma samples.
 *
 * @code
 * KipPicture nv12 = {.format = kipFormatNV12, .width = 1920, .height = 1080,
 *                    .matrix = kipMatrixBT709, .range = kipRangeLimited};
 * KipPicture rgb = {.format = kipFormatRGB24, .width = 1920, .height = 1080};
 * KipPlanes from = {{y, uv}, {1920, 1920}}, to = {{pixels}, {3 * 1920}};
 * KipStatus status = kipConvertPicture(&nv12, &from, &rgb, &to);
 * if (status != kipStatusOk) fprintf(stderr, "%s\n", kipStatusText(status));
 * @endcode
 *
 * For many pictures of one kind make a plan once and run it for each.
 *
 * @section meaning What a picture's samples mean
 * R, G, B, Y are 0..1 and Cb, Cr are -0.5..0.5 in real numbers, non-linear (gamma-corrected), and are coded in n bits
 * as
 *
 * | range   | R, G, B, Y                | Cb, Cr                       |
 * |---------|---------------------------|------------------------------|
 * | full    | v (2^n - 1)               | v (2^n - 1) + 2^(n - 1)      |
 * | limited | (219 v + 16) 2^(n - 8)    | (224 v + 128) 2^(n - 8)      |
 *
 * Float samples are v itself, and their range is always full; Cb, Cr have no float format. Y = Kr R + Kg G + Kb B,
 * Cb = (B - Y) / (2 - 2 Kb), Cr = (R - Y) / (2 - 2 Kr), with the weights of the matrix. YCgCo has Cg in the place of Cb
 * and Co in the place of Cr: Y = (R + 2 G + B) / 4, Cg = (2 G - R - B) / 4, Co = (R - B) / 2; its limited range has 219
 * in place of 224, as H.273 has it. Alpha is always full range. Primaries and transfer characteristics are not
 * converted: a picture of other primaries wants a colour management system.
 *
 * @section accuracy Exactness
 * Every sample is the formula above in real numbers, rounded once, halves up, and saturated: results of 8 bits and less
 * are within 0.53 of a step of the formula, those of 9 to 16 bits within 0.51 (0.52 where chroma of 16 bits is
 * interpolated or averaged), before saturation. Bytes are the same on every processor, with any number of threads, any
 * split in rows and any alignment. Chroma that is interpolated or averaged is not rounded in between. Float results are
 * within 4 x 10^-7 of the formula. Source samples of n bits that are stored in more are taken modulo 2^n, where they
 * are stored in the lower bits; float samples beyond 0..1 saturate in integer results, and NaN becomes the least value.
 *
 * Bayer pictures are demosaiced with the arithmetic of kipiCFAToRGB or kipiDemosaicAHD; what follows has one further
 * rounding.
 *
 * @section chroma Chroma
 * Chroma planes are ceil(width / 2) x ceil(height / 2) for 4:2:0, and alike for the others: odd sizes are whole
 * pictures, from 1 x 1. Outside a picture its edge samples go on. With kipChromaLinear, missing chroma samples are
 * interpolated linearly between those on both sides, by the sites; where chroma becomes less, a sample is the mean of
 * the colour over the area for which it stands, as wide as the distance of two chroma samples and centred on its site
 * (two pixels with equal weights, or three with 1 : 2 : 1). With kipChromaNearest, every pixel of a group takes the
 * group's chroma sample, and a chroma sample is that of the group's first pixel in its first row.
 */
#ifndef KIPCONVERT_H
#define KIPCONVERT_H

#include <stddef.h>

#include "kipcc.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @defgroup formats Formats
 *  How samples lie in memory. Names are FFmpeg's. Samples of more than one byte, and packed pixels, are little-endian.
 *  Formats are numbered without gaps from 1, so that kipFormatInfo, asked for 1, 2, ... until it is null, lists all;
 *  later releases append.
 *
 *  Unused bits of packed pixels are written as 0, unused bytes (rgb0 and its like) as 255, which those who take them
 * for alpha see as opaque; they are never looked at.
 *  @{ */

/** The formats. */
typedef enum KIP_INT {
  kipFormatUnknown = 0,

  /* Grey: one plane. */
  kipFormatGray8 = 1,   /**< 8 bits */
  kipFormatGray10 = 2,  /**< 10 bits, in the lower bits of 16 */
  kipFormatGray12 = 3,  /**< 12 bits, in the lower bits of 16 */
  kipFormatGray16 = 4,  /**< 16 bits */
  kipFormatGrayF32 = 5, /**< single precision, 0..1 */

  /* RGB, interleaved, 8 bits: the order of the name in memory. */
  kipFormatRGB24 = 6, /**< R, G, B */
  kipFormatBGR24 = 7, /**< B, G, R */
  kipFormatRGBA = 8,  /**< R, G, B, alpha */
  kipFormatBGRA = 9,  /**< B, G, R, alpha */
  kipFormatARGB = 10, /**< alpha, R, G, B */
  kipFormatABGR = 11, /**< alpha, B, G, R */
  kipFormatRGB0 = 12, /**< R, G, B, unused */
  kipFormatBGR0 = 13, /**< B, G, R, unused */
  kipFormat0RGB = 14, /**< unused, R, G, B */
  kipFormat0BGR = 15, /**< unused, B, G, R */

  /* RGB, interleaved, deep. */
  kipFormatRGB48 = 16,  /**< R, G, B, 16 bits each */
  kipFormatBGR48 = 17,  /**< B, G, R, 16 bits each */
  kipFormatRGBA64 = 18, /**< R, G, B, alpha, 16 bits each */
  kipFormatRGBF32 = 19, /**< R, G, B, single precision */

  /* RGB in planes: green, blue, red. */
  kipFormatGBRP = 20,    /**< 8 bits */
  kipFormatGBRP10 = 21,  /**< 10 bits, in the lower bits of 16 */
  kipFormatGBRP16 = 22,  /**< 16 bits */
  kipFormatGBRPF32 = 23, /**< single precision */

  /* RGB, 16 bits a pixel; the channel named first is in the upper bits. */
  kipFormatRGB565 = 24, /**< red 5, green 6, blue 5 */
  kipFormatBGR565 = 25, /**< blue 5, green 6, red 5 */
  kipFormatRGB555 = 26, /**< unused 1, red 5, green 5, blue 5 */
  kipFormatBGR555 = 27, /**< unused 1, blue 5, green 5, red 5 */
  kipFormatRGB444 = 28, /**< unused 4, red 4, green 4, blue 4 */
  kipFormatBGR444 = 29, /**< unused 4, blue 4, green 4, red 4 */

  /* YCbCr, 8 bits, planes Y, Cb, Cr. */
  kipFormatYUV444P = 30,  /**< 4:4:4 */
  kipFormatYUV422P = 31,  /**< 4:2:2 */
  kipFormatYUV420P = 32,  /**< 4:2:0, also I420 */
  kipFormatYUV440P = 33,  /**< 4:4:0: half the rows */
  kipFormatYUV411P = 34,  /**< 4:1:1: a quarter of the columns */
  kipFormatYUV410P = 35,  /**< 4:1:0: a quarter of columns and rows */
  kipFormatYUVA420P = 36, /**< 4:2:0 and a fourth plane, alpha */

  /* YCbCr, 8 bits, a plane Y and one of chroma pairs. */
  kipFormatNV12 = 37, /**< 4:2:0; Cb, Cr */
  kipFormatNV21 = 38, /**< 4:2:0; Cr, Cb */
  kipFormatNV16 = 39, /**< 4:2:2; Cb, Cr */
  kipFormatNV61 = 40, /**< 4:2:2; Cr, Cb */
  kipFormatNV24 = 41, /**< 4:4:4; Cb, Cr */
  kipFormatNV42 = 42, /**< 4:4:4; Cr, Cb */

  /* YCbCr, 8 bits, one plane. The last pixel of an odd width is a whole group whose second luma is written as the
     first. */
  kipFormatYUYV422 = 43, /**< 4:2:2; Y0, Cb, Y1, Cr; also YUY2 */
  kipFormatUYVY422 = 44, /**< 4:2:2; Cb, Y0, Cr, Y1 */
  kipFormatYVYU422 = 45, /**< 4:2:2; Y0, Cr, Y1, Cb */
  kipFormatVUYA = 46,    /**< 4:4:4; Cr, Cb, Y, alpha */

  /* YCbCr, deep, planes Y, Cb, Cr; samples in the lower bits of 16. */
  kipFormatYUV420P10 = 47, /**< 4:2:0, 10 bits */
  kipFormatYUV422P10 = 48, /**< 4:2:2, 10 bits */
  kipFormatYUV444P10 = 49, /**< 4:4:4, 10 bits */
  kipFormatYUV420P12 = 50, /**< 4:2:0, 12 bits */
  kipFormatYUV422P12 = 51, /**< 4:2:2, 12 bits */
  kipFormatYUV444P12 = 52, /**< 4:4:4, 12 bits */
  kipFormatYUV420P16 = 53, /**< 4:2:0, 16 bits */
  kipFormatYUV422P16 = 54, /**< 4:2:2, 16 bits */
  kipFormatYUV444P16 = 55, /**< 4:4:4, 16 bits */

  /* YCbCr, deep, a plane Y and one of pairs Cb, Cr; samples in the upper bits of 16, the lower bits 0. */
  kipFormatP010 = 56, /**< 4:2:0, 10 bits */
  kipFormatP012 = 57, /**< 4:2:0, 12 bits */
  kipFormatP016 = 58, /**< 4:2:0, 16 bits */
  kipFormatP210 = 59, /**< 4:2:2, 10 bits */

  /* YCbCr, deep, one plane. */
  kipFormatY210 = 60, /**< 4:2:2, 10 bits, in the upper bits of 16; Y0, Cb, Y1, Cr */
  kipFormatV210 = 61, /**< 4:2:2, 10 bits, six pixels in 16 bytes; the last group of a row is whole */

  /* Bayer sensors: sources only. The name has the colours of the first two rows, from the left. */
  kipFormatBayerRGGB8 = 62,   /**< 8 bits */
  kipFormatBayerBGGR8 = 63,   /**< 8 bits */
  kipFormatBayerGRBG8 = 64,   /**< 8 bits */
  kipFormatBayerGBRG8 = 65,   /**< 8 bits */
  kipFormatBayerRGGB16 = 66,  /**< 16 bits */
  kipFormatBayerBGGR16 = 67,  /**< 16 bits */
  kipFormatBayerGRBG16 = 68,  /**< 16 bits */
  kipFormatBayerGBRG16 = 69,  /**< 16 bits */
  kipFormatBayerRGGB10P = 70, /**< 10 bits, MIPI RAW10: four pixels in 5 bytes */
  kipFormatBayerBGGR10P = 71, /**< the same */
  kipFormatBayerGRBG10P = 72, /**< the same */
  kipFormatBayerGBRG10P = 73, /**< the same */
  kipFormatBayerRGGB12P = 74, /**< 12 bits, MIPI RAW12: two pixels in 3 bytes */
  kipFormatBayerBGGR12P = 75, /**< the same */
  kipFormatBayerGRBG12P = 76, /**< the same */
  kipFormatBayerGBRG12P = 77  /**< the same */
} KipFormat;

/** What the channels of a format are. */
typedef enum KIP_INT { kipFamilyGray = 0, kipFamilyRGB = 1, kipFamilyYCbCr = 2, kipFamilyBayer = 3 } KipFormatFamily;

/** A format, described. All of it is constant. */
typedef struct {
  KipFormat format;       /**< the format */
  const char* name;       /**< FFmpeg's name; for packed Bayer samples one in the same manner */
  const char* otherNames; /**< what else kipFormatByName knows it by, separated by blanks; may be empty */
  const char* order; /**< the channels in memory, planes separated by blanks: "BGRA", "Y UV", "YUYV"; X is unused */
  KipFormatFamily family; /**< what the channels are */
  int hasAlpha;           /**< 1 with alpha, else 0 */
  int isFloat;            /**< 1 for single precision, else 0 */
  int sourceOnly;         /**< 1 where the format cannot be a result (Bayer), else 0 */
  int bits[4];            /**< bits of R, G, B, alpha or of Y, Cb, Cr, alpha; 0 for channels that it lacks */
  int sampleBytes;        /**< bytes of a sample: 1, 2, 4; 0 where samples share bytes (565, v210, packed Bayer) */
  int chromaShiftX;       /**< chroma planes are ceil(width / 2^this) wide */
  int chromaShiftY;       /**< and ceil(height / 2^this) high; both are 0 for grey, RGB and Bayer */
  int planes;             /**< planes, 1 to 4 */
  int groupPixels[4];     /**< a row of plane p is ceil(width / groupPixels[p]) groups */
  int groupBytes[4];      /**< of so many bytes */
  int rowShift[4];        /**< plane p has ceil(height / 2^rowShift[p]) rows */
} KipFormatInfo;

/** The format of a name: FFmpeg's, V4L2's, GStreamer's or a FourCC, in upper or lower case: "nv12", "YUY2", "yuyv422",
 *  "GRAY16_LE", "pRAA". Blanks at the end do not count. kipFormatUnknown for other names and for null. */
KIPAPI KipFormat kipFormatByName(const char* name);

/** The description of a format; null for a number that is none. */
KIPAPI const KipFormatInfo* kipFormatInfo(KipFormat format);

/** @} */

/** @defgroup pictures Pictures
 *  What a picture is, and where it lies.
 *  @{ */

/** H.273 MatrixCoefficients. */
typedef enum KIP_INT {
  kipMatrixIdentity = 0,    /**< RGB */
  kipMatrixBT709 = 1,       /**< Kr 0.2126, Kb 0.0722: HD */
  kipMatrixUnspecified = 2, /**< not known */
  kipMatrixBT601 = 6,       /**< Kr 0.299, Kb 0.114: SD, JPEG; 5 is taken as the same */
  kipMatrixYCgCo = 8,       /**< luma, green and orange differences */
  kipMatrixBT2020 = 9       /**< Kr 0.2627, Kb 0.0593: UHD, non-constant luminance */
} KipMatrix;

/** Which codes are black and white. */
typedef enum KIP_INT {
  kipRangeUnspecified = 0, /**< full for RGB and grey, not known for YCbCr */
  kipRangeLimited = 1,     /**< 16..235 of 8 bits, chroma 16..240: video, "TV", "MPEG" */
  kipRangeFull = 2         /**< 0..255 of 8 bits: "PC", "JPEG" */
} KipRange;

/** Where a chroma sample lies, where there are fewer of them than pixels. */
typedef enum KIP_INT {
  kipSiteUnspecified = 0, /**< left, or centre for full range */
  kipSiteLeft = 1,        /**< on a column of luma, between the rows of its group: MPEG-2, H.264, H.265 */
  kipSiteCenter = 2,      /**< in the middle of its group: JPEG, MPEG-1 */
  kipSiteTopLeft = 3      /**< on the first luma sample of its group: BT.2020 */
} KipChromaSite;

/** What a picture is, not where it lies. A structure of zeros with format and size will do for RGB and grey. */
typedef struct {
  KipFormat format; /**< how samples lie in memory */
  int width;        /**< columns, at least 1 */
  int height;       /**< rows, at least 1 */
  /** Of YCbCr, and of grey: must be said where the other side is RGB (for grey: is a source of colour) or has another
   *  matrix. Of RGB and Bayer: identity or unspecified. Grey with an unspecified matrix has that of the YCbCr picture
   * on the other side. A structure of zeros has the identity, which is taken as unspecified for grey. */
  KipMatrix matrix;
  /** Of YCbCr: must be said where the other side is not YCbCr of unspecified range and the same bits. Of RGB and grey:
   *  unspecified means full. Of Bayer and floats: full or unspecified. */
  KipRange range;
  KipChromaSite site; /**< of YCbCr with less chroma; not looked at elsewhere */
} KipPicture;

/** Where a picture lies: the first byte of the first row of each plane, in the order of the format, and the distance in
 *  bytes from one row to the next, which may be negative. Any alignment will do. */
typedef struct {
  void* plane[4];    /**< planes that the format lacks are not looked at */
  ptrdiff_t step[4]; /**< in bytes */
} KipPlanes;

/** A picture in one block of memory. */
typedef struct {
  size_t bytes;      /**< the size of the block */
  size_t offset[4];  /**< where the planes begin; 0 for those that the format lacks */
  ptrdiff_t step[4]; /**< from row to row */
} KipLayout;

/** The layout of one block of memory for a picture: planes one after the other, rows and planes on multiples of
 *  @p alignment bytes (a power of two; 1 for no gaps). Format, width and height count only.
 *
 *  kipStatusNullPointer; kipStatusUnknownFormat; kipStatusBadSize below 1 x 1, for rows of 2^31 bytes or more, and
 *  where the block would be larger than PTRDIFF_MAX; kipStatusBadArgument for the alignment. */
KIPAPI KipStatus kipPictureLayout(const KipPicture* picture, size_t alignment, KipLayout* layout);

/** @} */

/** @defgroup plans Plans
 *  A plan is a conversion, prepared: constant once made, so that any number of threads may run it at once.
 *
 *  Alpha is kept where both sides have it, opaque where only the result has it, dropped where only the source has it.
 *  RGB becomes grey by the luma of the grey picture's matrix; grey becomes RGB with R = G = B.
 *
 *  Source and destination must not overlap.
 *  @{ */

/* Status codes of this library, besides those of kipcc.h. */
#define kipStatusUnknownFormat ((KipStatus)-40) /**< the format is none of KipFormat */
#define kipStatusSourceOnly ((KipStatus)-39)    /**< the format cannot be a result: Bayer */
#define kipStatusSizesDiffer ((KipStatus)-38)   /**< source and destination have different sizes */
#define kipStatusNeedsMatrix ((KipStatus)-37)   /**< a matrix must be said, and is not, or is the identity */
#define kipStatusBadMatrix ((KipStatus)-36)     /**< no matrix of KipMatrix, or one for RGB */
#define kipStatusNeedsRange ((KipStatus)-35)    /**< a range must be said, and is not */
#define kipStatusBadRange ((KipStatus)-34)      /**< no range of KipRange, or limited for floats or Bayer */
#define kipStatusBadSite ((KipStatus)-33)       /**< no site of KipChromaSite */
#define kipStatusBadOptions ((KipStatus)-32)    /**< an option that does not exist: size, filter, demosaic, threads */
#define kipStatusDitherMethod ((KipStatus)-31)  /**< error diffusion, which rows by themselves cannot have */
#define kipStatusBadRows ((KipStatus)-30)       /**< rows that are not whole units, or outside the picture */

/** How chroma is interpolated and averaged. */
typedef enum KIP_INT {
  kipChromaLinear = 0, /**< linearly, by the sites */
  kipChromaNearest = 1 /**< one sample for all pixels of its group, and of the group's first pixel */
} KipChromaFilter;

/** How Bayer pictures become RGB. */
typedef enum KIP_INT {
  kipDemosaicBilinear = 0, /**< as kipiCFAToRGB, for pictures of at least 2 x 2 */
  kipDemosaicAHD = 1       /**< as kipiDemosaicAHD: slower, fewer coloured fringes; for pictures of at least 5 x 5 */
} KipDemosaic;

/** The dither methods of kipcc.h, of which plans have kipDitherNone and kipDitherBayer. */
typedef KipiDitherType KipDitherType;

/** What may be chosen. Zeros, but for the size, are the defaults, and as many threads as there are processors. */
typedef struct {
  size_t size;            /**< sizeof(KipPlanOptions): later fields are defaults for callers compiled before them */
  KipChromaFilter chroma; /**< chroma; default linear */
  /** Where samples lose bits: rounded to the nearest (default), or up and down by a 4 x 4 ordered pattern
   *  (kipDitherBayer), which begins at the picture's first pixel, in each plane. Alpha is always rounded. */
  KipDitherType dither;
  KipDemosaic demosaic; /**< for Bayer sources */
  int threads;          /**< of kipPlanRun: 0 is as many as ownGetNumThreads tells then, n is at most n, the caller's
                             included; without options 1 */
} KipPlanOptions;

/** A conversion, prepared. */
typedef struct KipPlan KipPlan;

/** Makes a plan from one picture to another of the same size. @p options may be null for the defaults. The plan goes to
 *  @p *plan, and back with kipPlanFree.
 *
 *  Checks, in this order; on failure @p *plan is null: null pointers (kipStatusNullPointer); formats
 *  (kipStatusUnknownFormat, kipStatusSourceOnly); sizes below 1 x 1, rows of 2^31 bytes or more, pictures larger than
 *  PTRDIFF_MAX, Bayer pictures smaller than their method takes (kipStatusBadSize), different sizes
 *  (kipStatusSizesDiffer); matrices (kipStatusBadMatrix, kipStatusNeedsMatrix); ranges (kipStatusBadRange,
 *  kipStatusNeedsRange); sites (kipStatusBadSite); options (kipStatusDitherMethod, kipStatusBadOptions); memory
 *  (kipStatusNoMemory). */
KIPAPI KipStatus kipPlanMake(const KipPicture* from, const KipPicture* to, const KipPlanOptions* options,
                             KipPlan** plan);

/** Converts a picture. Null pointers, also of planes that the formats have, give kipStatusNullPointer; no memory for
 *  scratch kipStatusNoMemory; nothing is written then. */
KIPAPI KipStatus kipPlanRun(const KipPlan* plan, const KipPlanes* src, const KipPlanes* dst);

/** Converts rows firstRow to firstRow + rows - 1 on the caller's thread, without allocating. The planes are those of
 * the whole pictures, of which neighbouring rows of the source may be read. Rows are whole units of kipPlanRowUnit, but
 * for the last of the picture: else kipStatusBadRows. @p scratch has kipPlanScratchBytes bytes of any alignment, which
 * no other call uses at the time. Null pointers give kipStatusNullPointer. */
KIPAPI KipStatus kipPlanRunRows(const KipPlan* plan, const KipPlanes* src, const KipPlanes* dst, int firstRow, int rows,
                                void* scratch);

/** Rows of kipPlanRunRows come in multiples of this, but for the last: a power of two, at most 16. 0 for null. */
KIPAPI int kipPlanRowUnit(const KipPlan* plan);

/** Bytes of scratch memory that each call of kipPlanRunRows needs; at least 1. 0 for null. */
KIPAPI size_t kipPlanScratchBytes(const KipPlan* plan);

/** What the plan does, to read: one line per stage, each with a line feed at its end. It lives as long as the plan. An
 *  empty string for null. */
KIPAPI const char* kipPlanDescription(const KipPlan* plan);

/** Releases a plan; null is ignored. */
KIPAPI void kipPlanFree(KipPlan* plan);

/** Makes a plan with the defaults, runs it, and releases it: the status of whichever fails. */
KIPAPI KipStatus kipConvertPicture(const KipPicture* from, const KipPlanes* src, const KipPicture* to,
                                   const KipPlanes* dst);

/** A status code of this library or of kipcc.h as a sentence. Never null. */
KIPAPI const char* kipStatusText(KipStatus status);

/** @} */

#ifdef __cplusplus
}
#endif
#endif
