/**
 * @file kipcc.h
 * Colour conversion for images: libkipcct7.so.6.1.
 *
 * @section images Images
 * An image argument is a pointer to the first pixel of the region of interest and a step: the distance in bytes from
 * one row to the next, which may be negative for bottom-up images unless a group says otherwise. The library reads the
 * region's rows of the source, writes the region's rows of the destination, and touches nothing else.
 *
 * @section names Names
 * `kipi` + source space + `To` + destination space + variant + `_` + sample types + `_` + layout. The space names the
 * order of interleaved channels and of planes: RGB is R, G, B in memory, BGR is B, G, R. The layouts:
 *
 * | layout   | meaning |
 * |----------|---------|
 * | C1 C3 C4 | 1, 3, 4 interleaved channels; as a destination C4 gets the caller's alpha in its fourth |
 * | AC4      | 4 interleaved channels, the fourth is alpha: not converted, and left untouched in the destination |
 * | C2       | packed 4:2:2, four bytes for each pair of pixels |
 * | P2       | luma plane and one plane of chroma pairs, Cb before Cr |
 * | P3       | one plane per channel, in the order of the space's name |
 * | P4 AP4   | four planes, the fourth alpha |
 * | I        | in place: one image is source and destination |
 * | R        | works on a region: steps and a size are given. Without R: a whole image without gaps between rows |
 *
 * Chroma planes are ceil(width / 2) wide for 4:2:2 and floor(width / 2) x floor(height / 2) for 4:2:0, unless a group
 * says otherwise.
 *
 * @section checks Checks
 * Every function checks, in this order, and returns at the first failure with nothing written: the image pointers (for
 * planes, the arrays) - kipStatusNullPointer; the region, at least 1 x 1 - kipStatusBadSize; the plane pointers, source
 * first - kipStatusNullPointer. Steps are not checked. A group that departs from this says so. The array of steps of
 * subsampled planes is not checked for null.
 *
 * @section exactness Exactness
 * The same input gives the same bytes on every processor, in 32 and 64 bits, with any number of threads and any
 * alignment. All functions may be called from any thread at any time.
 */
#ifndef KIPCC_H
#define KIPCC_H

#include <stdint.h>

#ifndef KIPAPI
#if defined(__GNUC__)
#define KIPAPI __attribute__((visibility("default")))
#else
#define KIPAPI
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** @defgroup types Types
 *  Sample types, sizes, status codes and the version record.
 *  @{ */

typedef uint8_t Kip8u;
typedef int8_t Kip8s;
typedef uint16_t Kip16u;
typedef int16_t Kip16s;
typedef int32_t Kip32s;
typedef float Kip32f;

/** The size of a region, in pixels. */
typedef struct {
  int width;
  int height;
} KipiSize;

/** What a function reports: errors are negative and leave everything unwritten, warnings are positive. */
typedef enum {
  kipStatusDitherLevels = -54,    /**< number of output levels out of range */
  kipStatusNoiseRange = -55,      /**< amount of noise outside 0..100 */
  kipStatusGammaRange = -49,      /**< empty value range */
  kipStatusContextMismatch = -17, /**< a generator state without its tag */
  kipStatusBadStep = -14,         /**< a row step of zero or less, where it must be positive */
  kipStatusNoMemory = -9,         /**< no scratch memory */
  kipStatusNullPointer = -8,      /**< a required pointer or plane pointer is null */
  kipStatusBadSize = -6,          /**< width or height below the minimum */
  kipStatusBadArgument = -5,      /**< a parameter outside its allowed set */
  kipStatusOk = 0,
  kipStatusNoOperation = 1, /**< warning: nothing to do, nothing written */
  kipStatusOddSize = 35     /**< warning: a size that is not whole chroma blocks; the whole part was converted */
} KipStatus;

/** What kipccGetLibVersion tells. */
typedef struct {
  int major;
  int minor;
  int majorBuild;
  int build;
  char targetCpu[4]; /**< zero-padded */
  const char* Name;
  const char* Version;
  const char* BuildDate;
} KipLibraryVersion;

/** The library's version: a constant record, the same on every call. */
KIPAPI const KipLibraryVersion* kipccGetLibVersion(void);

/** @} */

/** @defgroup yuv RGB and YUV
 *  8-bit RGB to and from YUV, the colour-difference space of analogue television at full range, BT.601:
 *  Y = 0.299 R + 0.587 G + 0.114 B, U = 0.492 (B - Y) + 128, V = 0.877 (R - Y) + 128, all 0..255.
 *
 *  4:2:2 and 4:2:0 chroma is that of the mean colour of a pixel pair or of a 2 x 2 block; back, each chroma sample
 *  serves its pair or block. YUV422 C2 is Y0, U, Y1, V for each pixel pair.
 *
 *  The full-resolution functions from RGB, and the ones to AC4 from planes, use one arithmetic for the runs of 16 (or
 *  8) pixels that each row begins with and a slightly different one for the pixels left over at its end, which may come
 *  out one step apart.
 *
 *  Odd sizes: 4:2:2 converts every pixel and never warns; the last pixel of an odd width has chroma of its own in
 *  planes, and in C2 it takes up two bytes, Y and U, on output, and borrows the chroma of the pair before it on input.
 *  4:2:0 converts the even part only and returns kipStatusOddSize when width or height is odd.
 *
 *  The functions without R take whole images without gaps: rows of width bytes in full planes, 3 x width bytes in C3,
 *  ceil(width / 2) in 4:2:2 and floor(width / 2) in 4:2:0 chroma planes.
 *
 *  AC4P4R copies alpha to the fourth plane, whose pointer is not checked. YUV420 and YUV422 P3AC4R write 0 to the
 *  fourth byte of every pixel.
 *  @{ */

KIPAPI KipStatus kipiRGBToYUV_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV_8u_AC4P4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[4], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUVToRGB_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUVToRGB_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUVToRGB_8u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUVToRGB_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV422_8u_C3C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV422_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                          KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV422_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep[3],
                                        KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV422_8u_C3P3(const Kip8u* pSrc, Kip8u* pDst[3], KipiSize imgSize);
KIPAPI KipStatus kipiRGBToYUV422_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize);
KIPAPI KipStatus kipiRGBToYUV420_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                          KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV420_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep[3],
                                        KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYUV420_8u_C3P3(const Kip8u* pSrc, Kip8u* pDst[3], KipiSize imgSize);
KIPAPI KipStatus kipiRGBToYUV420_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize);
KIPAPI KipStatus kipiBGRToYUV420_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                           KipiSize roiSize);
KIPAPI KipStatus kipiYUV422ToRGB_8u_C2C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUV422ToRGB_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                          KipiSize roiSize);
KIPAPI KipStatus kipiYUV422ToRGB_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep,
                                        KipiSize roiSize);
KIPAPI KipStatus kipiYUV422ToRGB_8u_P3AC4R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                           KipiSize roiSize);
KIPAPI KipStatus kipiYUV422ToRGB_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize);
KIPAPI KipStatus kipiYUV422ToRGB_8u_P3C3(const Kip8u* pSrc[3], Kip8u* pDst, KipiSize imgSize);
KIPAPI KipStatus kipiYUV420ToRGB_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                          KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep,
                                        KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB_8u_P3AC4R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                           KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB_8u_P3(const Kip8u* pSrc[3], Kip8u* pDst[3], KipiSize imgSize);
KIPAPI KipStatus kipiYUV420ToRGB_8u_P3C3(const Kip8u* pSrc[3], Kip8u* pDst, KipiSize imgSize);
KIPAPI KipStatus kipiYUV420ToBGR_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                          KipiSize roiSize);

/** @} */

/** @defgroup reducebits Bit reduction
 *  @{ */

/** How bit reduction dithers. */
typedef enum {
  kipDitherNone = 0,   /**< not at all: the nearest level */
  kipDitherFS = 1,     /**< error diffusion: Floyd and Steinberg */
  kipDitherJJN = 2,    /**< error diffusion: Jarvis, Judice and Ninke */
  kipDitherStucki = 3, /**< error diffusion: Stucki */
  kipDitherBayer = 4   /**< ordered, 4 x 4 */
} KipiDitherType;

KIPAPI KipStatus kipiReduceBits_8u_C1R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize,
                                       int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize,
                                       int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_8u_C4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize,
                                       int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize,
                                        int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16u_C1R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize,
                                        int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize,
                                        int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16u_C4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize,
                                        int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                         KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16s_C1R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize,
                                        int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize,
                                        int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16s_C4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize,
                                        int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep,
                                         KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16u8u_C1R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16u8u_C3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16u8u_C4R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16u8u_AC4R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16s8u_C1R(const Kip16s* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16s8u_C3R(const Kip16s* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16s8u_C4R(const Kip16s* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_16s8u_AC4R(const Kip16s* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f8u_C1R(const Kip32f* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f8u_C3R(const Kip32f* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f8u_C4R(const Kip32f* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                          KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f8u_AC4R(const Kip32f* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f16u_C1R(const Kip32f* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f16u_C3R(const Kip32f* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f16u_C4R(const Kip32f* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f16u_AC4R(const Kip32f* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                            KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f16s_C1R(const Kip32f* pSrc, int srcStep, Kip16s* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f16s_C3R(const Kip32f* pSrc, int srcStep, Kip16s* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f16s_C4R(const Kip32f* pSrc, int srcStep, Kip16s* pDst, int dstStep,
                                           KipiSize roiSize, int noise, KipiDitherType dtype, int levels);
KIPAPI KipStatus kipiReduceBits_32f16s_AC4R(const Kip32f* pSrc, int srcStep, Kip16s* pDst, int dstStep,
                                            KipiSize roiSize, int noise, KipiDitherType dtype, int levels);

/** @} */

#ifdef __cplusplus
}
#endif
#endif
