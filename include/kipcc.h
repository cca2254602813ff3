/**
 * @file kipcc.h
 * Colour conversion for images: libkipcct7.so.6.1.
 *
 * @section images Images
 * An image argument is a pointer to the first pixel of the region of interest and a step: the distance in bytes from
 * one row to the next, which may be negative for bottom-up images unless a group says otherwise. The library reads the
 * region's rows of the source, writes the region's rows of the destination, and touches nothing else. Samples of the
 * destination that keep their values, such as alpha, may be read and stored again.
 *
 * @section names Names
 * `kipi` + source space + `To` + destination space + variant + `_` + sample types + `_` + layout. The space names the
 * order of interleaved channels and of planes: RGB is R, G, B in memory, BGR is B, G, R. The layouts:
 *
 * | layout   | meaning |
 * |----------|---------|
 * | C1 C3 C4 | 1, 3, 4 interleaved channels; as a destination C4 gets the caller's alpha in its fourth |
 * | AC4      | 4 interleaved channels, the fourth is alpha: not converted, and kept as it was in the destination |
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
 * @section memory Memory
 * Source and destination must not overlap, unless the function is in place or its group allows that both are the same
 * image. Rows may begin at any address, those of 16-bit and 32-bit samples at odd ones too, and steps need not be whole
 * samples unless a group rounds them.
 *
 * @section exactness Exactness
 * The same input gives the same bytes on every processor, in 32 and 64 bits, with any number of threads and any
 * alignment, where floats are rounded as they are when a program starts: to nearest, with subnormal numbers. There is
 * one exception, error diffusion (@ref reducebits). A float result that is not a number is some NaN: its sign and its
 * payload are unspecified, and differ between processors.
 *
 * A call computes with its caller's floating-point state - rounding, subnormals, traps - on all its threads, and leaves
 * the state of every thread as it was; exception flags may be raised.
 *
 * @section threads Threads
 * All functions may be called from any thread at any time. A function runs on the thread that calls it, but where its
 * group says that the rows are split over threads: over as many as ownGetNumThreads tells, which kipSetNumThreads sets,
 * or as there are processors where these are fewer, and back only when all are done. Within a parallel region of OpenMP
 * none is split. OpenMP ends the process when the system refuses it a thread.
 *
 * The threads of a process are not those of its forked children. A child forked after a call had split its rows converts
 * on the calling thread only. Where the program has had parallel regions of its own, OpenMP may still hang in a child:
 * kipSetNumThreads(1) there keeps the library from using it.
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

/* Enumerations are signed 32-bit numbers; C++ has to be told that all of them may be passed. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define KIP_INT : int
#else
#define KIP_INT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** @defgroup types Types
 *  Sample types, sizes, status codes and the version record.
 *  @{ */

typedef uint8_t Kip8u;   /**< 0..255 */
typedef int8_t Kip8s;    /**< -128..127 */
typedef uint16_t Kip16u; /**< 0..65535, in the machine's byte order */
typedef int16_t Kip16s;  /**< -32768..32767 */
typedef int32_t Kip32s;  /**< signed, 32 bits */
typedef float Kip32f;    /**< single precision */

/** The size of a region, in pixels. */
typedef struct {
  int width;  /**< columns */
  int height; /**< rows */
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
  kipStatusOk = 0,                /**< everything was converted */
  kipStatusNoOperation = 1,       /**< warning: nothing to do, nothing written */
  kipStatusOddSize = 35           /**< warning: a size that is not whole chroma blocks; the whole part was converted */
} KipStatus;

/** What kipccGetLibVersion tells. */
typedef struct {
  int major;             /**< 6 */
  int minor;             /**< 1 */
  int majorBuild;        /**< the build of the major version */
  int build;             /**< the build */
  char targetCpu[4];     /**< the library's variant, zero-padded */
  const char* Name;      /**< the shared object */
  const char* Version;   /**< the version and its build, to read */
  const char* BuildDate; /**< the date of the interface that this library has */
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
 *  The full-resolution functions from RGB, and the ones to AC4 from planes, use one arithmetic for the runs of 16 pixels
 *  (in AC4P4R and P3AC4R of 8) that each row begins with and a slightly different one for the pixels left over at its
 *  end, which may come out one step apart.
 *
 *  Odd sizes: 4:2:2 converts every pixel and never warns; the last pixel of an odd width has chroma of its own in
 *  planes, and in C2 it takes up two bytes, Y and U, on output, and borrows the chroma of the pair before it on input,
 *  or, in a region one wide, takes its one chroma byte for both, with factors of its own.
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

/** @defgroup gray Grey
 *  One luminance sample from three colour samples: w[0] R + w[1] G + w[2] B, samples 0, 1, 2 of each pixel in that
 * order. RGBToGray uses the BT.601 weights 0.299, 0.587, 0.114; ColorToGray the caller's, or those for a null pointer.
 * AC4 ignores the fourth sample.
 *
 *  8u: weights x 4096, plus a half, truncated to signed 16 bits; the exact sum / 4096 rounded half up, of which the low
 *  byte is kept. 16u: single precision, truncated, the low 16 bits of a sum below 2^31 kept. 16s: the same on values
 *  raised by 32768, lowered again and saturated. 32f: single precision, summed from left to right; steps are rounded
 *  down to a multiple of 4.
 *  @{ */

KIPAPI KipStatus kipiRGBToGray_8u_C3C1R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiColorToGray_8u_C3C1R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize,
                                          const Kip32f coeffs[3]);
KIPAPI KipStatus kipiRGBToGray_8u_AC4C1R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiColorToGray_8u_AC4C1R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize,
                                           const Kip32f coeffs[3]);
KIPAPI KipStatus kipiRGBToGray_16u_C3C1R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiColorToGray_16u_C3C1R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize,
                                           const Kip32f coeffs[3]);
KIPAPI KipStatus kipiRGBToGray_16u_AC4C1R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiColorToGray_16u_AC4C1R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                            KipiSize roiSize, const Kip32f coeffs[3]);
KIPAPI KipStatus kipiRGBToGray_16s_C3C1R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiColorToGray_16s_C3C1R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize,
                                           const Kip32f coeffs[3]);
KIPAPI KipStatus kipiRGBToGray_16s_AC4C1R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiColorToGray_16s_AC4C1R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep,
                                            KipiSize roiSize, const Kip32f coeffs[3]);
KIPAPI KipStatus kipiRGBToGray_32f_C3C1R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiColorToGray_32f_C3C1R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize,
                                           const Kip32f coeffs[3]);
KIPAPI KipStatus kipiRGBToGray_32f_AC4C1R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiColorToGray_32f_AC4C1R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep,
                                            KipiSize roiSize, const Kip32f coeffs[3]);

/** @} */

/** @defgroup twist Colour twist
 *  An affine matrix in single precision on every pixel:
 *  out[c] = twist[c][0] in[0] + twist[c][1] in[1] + twist[c][2] in[2] + twist[c][3], summed from left to right.
 *  Integer samples are rounded to nearest, ties to even, and saturated, whatever the caller's rounding mode. AC4 leaves
 *  the fourth sample of the destination as it was. kipiColorTwist_32f_C4R takes a linear 4 x 4 matrix instead: the
 * fourth sample is input and output like the others, and there is no constant.
 *
 *  Source and destination of the functions that are not in place may be the same image.
 *  Checks: the image, plane and matrix pointers; the size; then steps below 1 - kipStatusBadStep.
 *  @{ */

KIPAPI KipStatus kipiColorTwist_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize,
                                        const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize,
                                         const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist_32f_P3R(const Kip32f* pSrc[3], int srcStep, Kip32f* pDst[3], int dstStep,
                                        KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist_32f_C3IR(Kip32f* pSrcDst, int srcDstStep, KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist_32f_AC4IR(Kip32f* pSrcDst, int srcDstStep, KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist_32f_IP3R(Kip32f* pSrcDst[3], int srcDstStep, KipiSize roiSize,
                                         const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize,
                                          const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize,
                                           const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep,
                                          KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8u_C3IR(Kip8u* pSrcDst, int srcDstStep, KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8u_AC4IR(Kip8u* pSrcDst, int srcDstStep, KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8u_IP3R(Kip8u* pSrcDst[3], int srcDstStep, KipiSize roiSize,
                                           const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8s_C3R(const Kip8s* pSrc, int srcStep, Kip8s* pDst, int dstStep, KipiSize roiSize,
                                          const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8s_AC4R(const Kip8s* pSrc, int srcStep, Kip8s* pDst, int dstStep, KipiSize roiSize,
                                           const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8s_P3R(const Kip8s* pSrc[3], int srcStep, Kip8s* pDst[3], int dstStep,
                                          KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8s_C3IR(Kip8s* pSrcDst, int srcDstStep, KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8s_AC4IR(Kip8s* pSrcDst, int srcDstStep, KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_8s_IP3R(Kip8s* pSrcDst[3], int srcDstStep, KipiSize roiSize,
                                           const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize,
                                           const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                            KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16u_P3R(const Kip16u* pSrc[3], int srcStep, Kip16u* pDst[3], int dstStep,
                                           KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16u_C3IR(Kip16u* pSrcDst, int srcDstStep, KipiSize roiSize,
                                            const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16u_AC4IR(Kip16u* pSrcDst, int srcDstStep, KipiSize roiSize,
                                             const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16u_IP3R(Kip16u* pSrcDst[3], int srcDstStep, KipiSize roiSize,
                                            const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize,
                                           const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep,
                                            KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16s_P3R(const Kip16s* pSrc[3], int srcStep, Kip16s* pDst[3], int dstStep,
                                           KipiSize roiSize, const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16s_C3IR(Kip16s* pSrcDst, int srcDstStep, KipiSize roiSize,
                                            const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16s_AC4IR(Kip16s* pSrcDst, int srcDstStep, KipiSize roiSize,
                                             const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist32f_16s_IP3R(Kip16s* pSrcDst[3], int srcDstStep, KipiSize roiSize,
                                            const Kip32f twist[3][4]);
KIPAPI KipStatus kipiColorTwist_32f_C4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize,
                                        const Kip32f twist[4][4]);

/** @} */

/** @defgroup demosaicing Demosaicing
 *  One sample per pixel, as a sensor behind a Bayer pattern of colour filters gives it, to R, G, B.
 *
 *  pSrc is the first sample of the whole sensor image, of srcSize; srcRoi is the region of it to convert, which goes to
 *  pDst, its top-left pixel first. Neighbours outside the region but inside the image take part, so a region comes out
 *  as the same part of the whole image would. The grid is anchored at the image's origin, whatever the region. At the
 *  image's edges a missing neighbour is replaced by the one opposite it. The destination must not overlap the source.
 *
 *  The region is cut to the image without an error; when nothing is left of it, nothing is written and the status is
 *  kipStatusOk. Steps may be negative.
 *
 *  Checks, in this order: null pSrc or pDst - kipStatusNullPointer; an image smaller than 2 x 2 (CFAToRGB) or 5 x 5
 *  (DemosaicAHD) - kipStatusBadSize; an unknown grid - kipStatusBadArgument; no scratch memory (DemosaicAHD) -
 *  kipStatusNoMemory.
 *
 *  CFAToRGB interpolates between direct neighbours, rounding halves up: missing red and blue are the mean of the two or
 *  four nearest samples. Green at a red or blue sample is the mean of the two neighbours in the column, or of those in
 *  the row, whichever way the centre's own colour differs less two samples away; when it differs the same both ways, and
 *  on the two outermost rows and columns of the image, it is the mean of all four. A region with a negative origin is
 *  empty.
 *
 *  DemosaicAHD is the adaptive homogeneity-directed method (Hirakawa and Parks, 2005): slower, and with far fewer
 *  coloured fringes. Each pixel is interpolated along its row and along its column with the help of the other colours,
 *  and the candidate is taken that has more neighbours of nearly its own lightness and chroma (CIE L*a*b*) within 3 x 3
 *  pixels; the mean of both, when it is a draw. Results are rounded to nearest, ties to even. A negative x or y of the
 *  region becomes 0 and leaves its size unchanged. Work memory is a fixed 65 KB, whatever the size of the image; pTmp
 *  and tmpStep are not used and may be null and 0.
 *  @{ */

/** A rectangle of an image, in pixels. */
typedef struct {
  int x;      /**< the first column */
  int y;      /**< the first row */
  int width;  /**< columns */
  int height; /**< rows */
} KipiRect;

/** The colours of the image's 2 x 2 cell at (0, 0): the first two letters are its first row. */
typedef enum KIP_INT {
  kipiBayerBGGR = 0, /**< blue, green above green, red */
  kipiBayerRGGB = 1, /**< red, green above green, blue */
  kipiBayerGBRG = 2, /**< green, blue above red, green */
  kipiBayerGRBG = 3  /**< green, red above blue, green */
} KipiBayerGrid;

KIPAPI KipStatus kipiCFAToRGB_8u_C1C3R(const Kip8u* pSrc, KipiRect srcRoi, KipiSize srcSize, int srcStep,
                                       Kip8u* pDst, int dstStep, KipiBayerGrid grid);
KIPAPI KipStatus kipiCFAToRGB_16u_C1C3R(const Kip16u* pSrc, KipiRect srcRoi, KipiSize srcSize, int srcStep,
                                        Kip16u* pDst, int dstStep, KipiBayerGrid grid);
KIPAPI KipStatus kipiDemosaicAHD_8u_C1C3R(const Kip8u* pSrc, KipiRect srcRoi, KipiSize srcSize, int srcStep,
                                          Kip8u* pDst, int dstStep, KipiBayerGrid grid, void* pTmp, int tmpStep);
KIPAPI KipStatus kipiDemosaicAHD_16u_C1C3R(const Kip16u* pSrc, KipiRect srcRoi, KipiSize srcSize, int srcStep,
                                           Kip16u* pDst, int dstStep, KipiBayerGrid grid, void* pTmp, int tmpStep);

/** @} */

/** @defgroup tonemapping Tone mapping
 *  One channel of floats, such as the luminance of a high-dynamic-range image, to 8 bits with one scale for the whole
 *  region. The scale is found first, so the source is read twice.
 *
 *  ToneMapLinear scales by 255 / maximum. There is no clamp: a product is truncated towards zero, and its low 8 bits are
 *  stored, so that -1.5 gives 255. Products beyond 32 bits saturate before: large ones give 255, large negative ones 0.
 *
 *  ToneMapMean scales by 255 / (2 x mean) and clamps the truncated products to 0..255. Rows are summed in single
 *  precision in sixteen partial sums, column x in sum x mod 16, and the rows' sums in extended precision.
 *
 *  Products that are not numbers give 0; the maximum passes over samples that are not numbers.
 *
 *  A maximum or mean below zero gives kipStatusNoOperation, and nothing is written. One from zero to the smallest normal
 *  float (the mean: half of that) fills the destination with 0; only in this case is pDst checked.
 *  @{ */

KIPAPI KipStatus kipiToneMapLinear_32f8u_C1R(const Kip32f* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiToneMapMean_32f8u_C1R(const Kip32f* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);

/** @} */

/** @defgroup layout Chroma layouts
 *  8-bit YCbCr between samplings of the chroma and between layouts. Luma is copied as it is. The figure behind a
 *  space's name is its sampling:
 *
 *  | figure | a sample of Cb and of Cr serves | chroma planes          |
 *  |--------|---------------------------------|------------------------|
 *  | 422    | 2 columns                       | width / 2 x height     |
 *  | 420    | 2 columns and 2 rows            | width / 2 x height / 2 |
 *  | 411    | 4 columns                       | width / 4 x height     |
 *  | 1620   | 4 columns and 4 rows            | width / 4 x height / 4 |
 *
 *  The four bytes of a pixel pair in C2: YCbCr422 is Y0 Cb Y1 Cr, YCrCb422 is Y0 Cr Y1 Cb, CbYCr422 is Cb Y0 Cr Y1. P3
 *  has the planes in the order of the name, so YCrCb is Y, Cr, Cb; the pairs of P2 are Cb, Cr also when the source is
 *  YCrCb.
 *
 *  How chroma is resampled:
 *  - To fewer columns or rows every second sample is kept, the even ones; to more, each is used twice. No averaging.
 *  - YCbCr420To411 averages neighbouring columns and repeats rows, YCbCr411To420 averages rows and repeats columns: (a
 *    + b + 1) >> 1.
 *  - YCbCr420To1620 keeps every second sample of every second row. YCbCr1620To420 puts averages, (a + b + 1) >> 1,
 *    between the columns and then between the rows; beyond the right and the lower edge the nearest sample stands in.
 *  - Filter to 422: row 2k is row k of the source, row 2k + 1 is (9 (c(k) + c(k+1)) - c(k-1) - c(k+2) + 8) >> 4,
 *    limited to 0..255; rows outside the source are replaced by the nearest one. YCbCr420ToYCrCb420_Filter only splits
 *    the plane.
 *  - Interlace: the rows of a frame belong to two fields in turn, which do not mix. From four rows a, b, c, d to two:
 *    (3a + c + 2) >> 2 and (b + 3d + 2) >> 2. From two rows to four, from each field's rows above and below (u, l): (u
 *    + 7l + 4) >> 3, (3u + 5l + 4) >> 3, (5u + 3l + 4) >> 3, (7u + l + 4) >> 3; the first two and the last two rows are
 *    the source's own.
 *
 *  Sizes: the width must be at least 2, with 411 on either side 4, or kipStatusBadSize; 1620 takes multiples of 4 only;
 *  YCbCr420To422_Interlace takes at least 4 rows. Only whole blocks are converted, luma too: 2 columns, or 4 with 411;
 *  2 rows with 420, 4 rows for Interlace. Where that leaves something out the status is kipStatusOddSize, except that
 *  conversions with 422 on both sides do not report an odd width.
 *
 *  The plane pointers are checked before the size. The Interlace functions convert images of at least 128 columns and
 *  132 rows on several threads.
 *  @{ */

KIPAPI KipStatus kipiYCbCr422ToCbYCr422_8u_C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToYCbCr422_8u_C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCrCb422_8u_C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                       KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422_8u_P3C2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                       KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCrCb422_8u_P3C2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToYCbCr422_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb422ToYCbCr422_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420_8u_P3P2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[2], int dstStep[2],
                                       KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3], int dstStep[3],
                                       KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCrCb420_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3],
                                                 int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb420ToYCbCr420_8u_P3P2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[2],
                                                 int dstStep[2], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411_8u_P3P2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[2], int dstStep[2],
                                       KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3], int dstStep[3],
                                       KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCbCr420_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCbCr420_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCbCr420_8u_C2P2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[2], int dstStep[2],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCbCr420_8u_P3P2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[2],
                                                 int dstStep[2], KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToYCbCr420_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToYCbCr420_8u_C2P2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[2], int dstStep[2],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToYCrCb420_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCrCb420_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb422ToYCbCr420_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCbCr422_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCbCr422_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3],
                                                 int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCbCr422_8u_P2C2R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToCbYCr422_8u_P2C2R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb420ToYCbCr422_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb420ToYCbCr422_8u_P3C2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb420ToCbYCr422_8u_P3C2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCbCr411_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCbCr411_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCbCr411_8u_C2P2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[2], int dstStep[2],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToYCbCr411_8u_P3P2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[2],
                                                 int dstStep[2], KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToYCbCr411_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb422ToYCbCr411_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCbCr422_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCbCr422_8u_P3C2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCbCr422_8u_P2C2R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCbCr422_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3],
                                                 int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCrCb422_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCrCb422_8u_P3C2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCbCr420_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCbCr420_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3],
                                                 int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCbCr420_8u_P3P2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[2],
                                                 int dstStep[2], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToYCrCb420_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3],
                                                 int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411To420_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                          KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCbCr411_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3],
                                                 int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCbCr411_8u_P3P2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[2],
                                                 int dstStep[2], KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb420ToYCbCr411_8u_P3P2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[2],
                                                 int dstStep[2], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420To411_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                          KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr1620To420_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                           KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420To1620_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3], int dstStep[3],
                                           KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCbCr422_Filter_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3],
                                                      int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCbCr422_Filter_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3],
                                                        int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCbCr422_Filter_8u_P2C2R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb420ToYCbCr422_Filter_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3],
                                                      int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToYCrCb420_Filter_8u_P2P3R(const Kip8u* pSrc[2], int srcStep[2], Kip8u* pDst[3],
                                                        int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422To420_Interlace_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3],
                                                    int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToYCbCr420_Interlace_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3],
                                                           int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420To422_Interlace_8u_P3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst[3],
                                                    int dstStep[3], KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToCbYCr422_Interlace_8u_P3C2R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst,
                                                           int dstStep, KipiSize roiSize);
/** @} */

/** @defgroup gamma Gamma
 *  The transfer curve of BT.709 on each of three colour samples. Forward, from linear light to coded values:
 *  V = 4.5 L for L < 0.018, else 1.099 L^0.45 - 0.099. Inverse: L = V / 4.5 for V < 0.0812, else
 *  ((V + 0.099) / 1.099)^(1 / 0.45).
 *
 *  8u: the curve on 0..1 times 255, to the nearest integer (forward: ties to even). 16u: the curve on 0..65535, truncated;
 *  kipStatusNoMemory when there is no memory for a table of 65536 values. 32f: the curve on vMin..vMax in double
 *  precision, rounded once; values outside the range are not limited. AC4 leaves the fourth sample of the destination as
 *  it was.
 *
 *  Checks: for 32f, vMax - vMin of zero or less - kipStatusGammaRange - before everything else; then the image and plane
 *  pointers; the size; steps below 1 - kipStatusBadStep.
 *  @{ */

KIPAPI KipStatus kipiGammaFwd_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_8u_C3IR(Kip8u* pSrcDst, int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_8u_AC4IR(Kip8u* pSrcDst, int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_8u_IP3R(Kip8u* pSrcDst[3], int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_16u_P3R(const Kip16u* pSrc[3], int srcStep, Kip16u* pDst[3], int dstStep,
                                      KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_16u_C3IR(Kip16u* pSrcDst, int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_16u_AC4IR(Kip16u* pSrcDst, int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_16u_IP3R(Kip16u* pSrcDst[3], int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaFwd_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize,
                                      Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaFwd_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize,
                                       Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaFwd_32f_P3R(const Kip32f* pSrc[3], int srcStep, Kip32f* pDst[3], int dstStep,
                                      KipiSize roiSize, Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaFwd_32f_C3IR(Kip32f* pSrcDst, int srcDstStep, KipiSize roiSize, Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaFwd_32f_AC4IR(Kip32f* pSrcDst, int srcDstStep, KipiSize roiSize, Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaFwd_32f_IP3R(Kip32f* pSrcDst[3], int srcDstStep, KipiSize roiSize, Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaInv_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_8u_C3IR(Kip8u* pSrcDst, int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_8u_AC4IR(Kip8u* pSrcDst, int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_8u_IP3R(Kip8u* pSrcDst[3], int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_16u_P3R(const Kip16u* pSrc[3], int srcStep, Kip16u* pDst[3], int dstStep,
                                      KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_16u_C3IR(Kip16u* pSrcDst, int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_16u_AC4IR(Kip16u* pSrcDst, int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_16u_IP3R(Kip16u* pSrcDst[3], int srcDstStep, KipiSize roiSize);
KIPAPI KipStatus kipiGammaInv_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize,
                                      Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaInv_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize,
                                       Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaInv_32f_P3R(const Kip32f* pSrc[3], int srcStep, Kip32f* pDst[3], int dstStep,
                                      KipiSize roiSize, Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaInv_32f_C3IR(Kip32f* pSrcDst, int srcDstStep, KipiSize roiSize, Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaInv_32f_AC4IR(Kip32f* pSrcDst, int srcDstStep, KipiSize roiSize, Kip32f vMin, Kip32f vMax);
KIPAPI KipStatus kipiGammaInv_32f_IP3R(Kip32f* pSrcDst[3], int srcDstStep, KipiSize roiSize, Kip32f vMin, Kip32f vMax);

/** @} */

/** @defgroup hue Hue spaces
 *  RGB to and from HLS (hue, lightness, saturation) and HSV (hue, saturation, value): H goes round the circle from red
 *  over yellow, green, cyan, blue and magenta back to red; with max and min the largest and the smallest of R, G, B,
 *  delta = max - min, L = (max + min) / 2 and V = max, S of HLS is delta / (max + min), or delta / (2 - max - min)
 *  where L is above one half, and S of HSV is delta / max. Grey has H = S = 0.
 *
 *  | samples | H | L, S, V and R, G, B |
 *  |---------|---|---------------------|
 *  | 8u      | 0..360 degrees as 0..255 | 0..1 as 0..255 |
 *  | 16u     | 0..360 degrees as 0..65535 | 0..1 as 0..65535 |
 *  | 16s     | the 16u value less 32768 | the 16u value less 32768 |
 *  | 32f     | 0..360 degrees as 0..1 | 0..1 |
 *
 *  Arithmetic is single precision. Integer results are truncated, in both directions, and saturated. Where two channels
 *  are the largest, red goes before green before blue.
 *
 *  To hue from integers, quotients are products with a reciprocal r x 2 - (x x r) x r, where r is 1 / x rounded to 12
 *  significant bits. A full saturation may therefore come out one step below the largest sample.
 *
 *  32f: from RGB the quotients are divided, and saturation is that of grey where delta is at most 1.1920929e-7. To RGB
 *  nothing is limited; the runs of 4 pixels that each row begins with multiply by 1 / 60, the pixels left over at its
 *  end divide by 60, and may come out one step apart.
 *
 *  AC4P4, AP4C4 and AP4 copy alpha. AC4 leaves the fourth sample of the destination as it was.
 *
 *  Checks: BGR functions with planes check the plane pointers, then steps below 1 - kipStatusBadStep -, then the size;
 *  kipiBGRToHLS_8u_AC4R checks steps after the size; the others do not check them. The RGB functions convert images of
 *  more than 4096 pixels on several threads, the BGR functions all images.
 *  @{ */

KIPAPI KipStatus kipiRGBToHLS_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHLS_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHLS_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHLS_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHLS_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHLS_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHLS_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHLS_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToRGB_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToRGB_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToRGB_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToRGB_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToRGB_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToRGB_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToRGB_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToRGB_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHSV_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHSV_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHSV_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToHSV_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHSVToRGB_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHSVToRGB_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHSVToRGB_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHSVToRGB_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToHLS_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToHLS_8u_AC4P4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[4], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToHLS_8u_AP4C4R(const Kip8u* pSrc[4], int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToHLS_8u_AP4R(const Kip8u* pSrc[4], int srcStep, Kip8u* pDst[4], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToHLS_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToHLS_8u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToHLS_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToBGR_8u_AC4P4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[4], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToBGR_8u_AP4C4R(const Kip8u* pSrc[4], int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToBGR_8u_AP4R(const Kip8u* pSrc[4], int srcStep, Kip8u* pDst[4], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToBGR_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToBGR_8u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiHLSToBGR_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);

/** @} */

/** @defgroup reducebits Bit reduction
 *  Samples reduced to a number of evenly spaced levels from 0 to the full scale, of the same or a narrower type, without
 *  dither, with ordered dither or with error diffusion, the last two with noise if wanted.
 *
 *  | types              | source       | destination  | full scale | levels     |
 *  |--------------------|--------------|--------------|------------|------------|
 *  | 8u                 | 0..255       | 0..255       | 255        | 2..256     |
 *  | 16u, 16s           | 16 bits      | 16 bits      | 65535      | 2..65536   |
 *  | 16u8u, 16s8u       | 16 bits      | 0..255       | 255        | 2..256     |
 *  | 32f8u              | nominal 0..1 | 0..255       | 255        | 2..256     |
 *  | 32f16u, 32f16s     | nominal 0..1 | 16 bits      | 65535      | 2..256     |
 *
 *  Signed samples are taken as unsigned ones 32768 higher. Floats outside 0..1 saturate, but for those below where noise
 *  makes a threshold of the ordered dither negative; NaN counts as below. All channels of C1, C3 and C4 are reduced,
 *  each by itself; alpha of AC4 stays as it was.
 *
 *  - kipDitherNone: the nearest level; half an interval rounds down. `noise` is ignored.
 *  - kipDitherBayer: the upper neighbouring level where the sample exceeds the lower one by more than a threshold of
 *    0..15 fifteenths of an interval, which a 4 x 4 matrix gives for the pixel's place in the region. `noise` moves each
 *    pixel's threshold by up to so many percent of an interval up or down. From 16 to 8 bits without noise, the levels
 *    are those of 16 bits shifted right by 8.
 *  - kipDitherFS, kipDitherJJN, kipDitherStucki: the nearest level to the sample plus the errors that its neighbours
 *    above and to the left made, weighted; rows from top to bottom, each from left to right. Results beyond the scale
 *    saturate and hand on no error. `noise` spreads the threshold, half an interval, by up to so many percent of an
 *    interval up or down.
 *
 *  The noise is the same on every call. Ordered dither is split among threads by rows, error diffusion by channels, over
 *  as many threads as ownGetNumThreads tells, however many processors there are. There a thread that has several
 *  channels begins each with the errors of the last rows of the one before, so the bytes of images with more channels
 *  than threads depend on the number of threads that OpenMP grants: the one exception to the rule of exactness. The
 *  destination must not be the source: threads read the channels of a pixel that others write.
 *
 *  Steps are rounded toward zero to whole samples. Checked after the size, in this order: `noise` within 0..100 -
 *  kipStatusNoiseRange; `levels` - kipStatusDitherLevels; a method that does not exist is kipStatusOk, and nothing is
 *  done. Noise and error diffusion need scratch memory - kipStatusNoMemory.
 *  @{ */

/** How bit reduction dithers. */
typedef enum KIP_INT {
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

/** @defgroup ycbcr RGB and YCbCr
 *  8-bit RGB to and from YCbCr, digital television's luma and colour differences, at full resolution and with chroma
 *  shared by 2 (4:2:2), 2 x 2 (4:2:0) or 4 pixels in a row (4:1:1). All sums are 32-bit integers of factors x 2^16,
 *  exact for every pixel wherever it lies.
 *
 *  | set                 | Y                                       | Cb                            | Cr                             |
 *  |---------------------|-----------------------------------------|-------------------------------|--------------------------------|
 *  | BT.601, 16..235     | 16843 R + 33030 G + 6423 B + 16.5 x 2^16 | -9699 R - 19071 G + 28770 B   | 28770 R - 24117 G - 4653 B     |
 *  | _709CSC, 16..235    | 11993 R + 40239 G + 4063 B + 16.5 x 2^16 | -6619 R - 22151 G + 28770 B   | 28770 R - 26149 G - 2621 B     |
 *  | _709HDTV, 0..255    | 13959 R + 46858 G + 4719 B + 0.5 x 2^16  | -7668 R - 25821 G + 33489 B   | 33489 R - 30409 G - 3080 B     |
 *
 *  Chroma is weighted from the sums over its group, with 128 and a rounding added, and floored: 128.5 at full
 *  resolution, in RGBToYCbCr422 C2, RGBToYCrCb422 C2 and BGRToCbYCr422 (there Cr gets 2 / 2^17 less than Cb); 128.125 in
 *  all others. The second luma of each pair of RGBToYCbCr422 C2 and RGBToYCrCb422 C2 is truncated. HDTV saturates.
 *  RGBToCbYCr422 sums pairs in factors x 2^15: luma is (8422 R + 16515 G + 3212 B) / 2^15 + 16.5, floored, and chroma,
 *  with 128.5 - 2^-15, is weighted 2 : 1 : 1 from the first pixel and both neighbours of that; the missing left neighbour
 *  of a row's first pair counts as having no chroma. A single last pixel has the luma of the table, and chroma with
 *  128.5. Gamma sends R, G and B through the transfer curve of BT.709 before.
 *
 *  | back to RGB, (luma, Cr to R, Cb to G, Cr to G, Cb to B) and rounding | functions |
 *  |----------------------------------------------------------|-----------------------------------------------------|
 *  | 76284, 104595, -25690, -53281, 132186, floored           | YCbCrToRGB C3, AC4, P3                              |
 *  | the same, floored after -57, -14, -13 / 2^16 on R, G, B  | YCbCr422, YCrCb422, but YCbCr422ToRGB P3C3          |
 *  | the same, to nearest                                     | YCbCr420 functions without a suffix                 |
 *  | 76282, 104593, -25689, -53279, 132184, floored           | YCbCrToRGB P3C3, P3C4; YCbCrToBGR                   |
 *  | the same, to nearest                                     | CbYCr422; YCbCr422ToRGB P3C3                        |
 *  | 76294, 104595, -25625, -53281, 132186, floored           | 411                                                 |
 *  | 76309, 104597, -25675, -53279, 132201, floored           | _Filter                                             |
 *  | 76284, 117506, -13959, -34996, 138609, to nearest        | _709CSC                                             |
 *  | 65536, 100925, -11993, -30081, 119013, to nearest, luma from 0 | _709HDTV                                      |
 *
 *  There and back at full resolution, RGBToYCbCr and YCbCrToRGB differ from any colour by at most 2 in a channel. Each
 *  chroma sample serves all pixels of its group; only _Filter interpolates, giving the odd pixels of a row the rounded
 *  mean of their sample and the next one, except in the last pair.
 *
 *  C2 of YCbCr422 is Y0, Cb, Y1, Cr, of YCrCb422 Y0, Cr, Y1, Cb, of CbYCr422 Cb, Y0, Cr, Y1. Planes of YCrCb are Y, Cr,
 *  Cb. Chroma planes are floor(width / 2) wide, or floor(width / 4) for 4:1:1. C4 gets the caller's alpha.
 *
 *  Odd sizes. C2 converts every pixel: the last one of an odd width has two bytes, luma and the chroma that comes first,
 *  computed from that pixel alone (which kipiBGRToCbYCr422_8u_AC4C2R reads as R, G, B); back, it borrows the chroma of
 *  the pair before, or, in a region one wide, takes its one chroma byte for both. Planes convert whole groups and leave
 *  the rest of the destination as it was; kipStatusOddSize comes from 4:2:0, from encoding 4:1:1 in widths that are no
 *  multiple of 4, and from kipiRGBToYCbCr422_8u_C3P3R in odd widths.
 *
 *  Smallest regions: 4 wide for 4:1:1; 2 wide for BGRToYCbCr422, YCbCr422ToBGR and kipiRGBToYCbCr422_8u_C3P3R; 2 x 2 for
 *  encoding 4:2:0, but kipiRGBToYCbCr420_8u_C3P3R; 1 x 1 for all others. Plane pointers are checked before the size when
 *  encoding to subsampled planes, but by kipiRGBToYCbCr420_8u_C3P3R, and when decoding from planes of 4:2:2 and 4:1:1;
 *  after it elsewhere. kipiRGBToCbYCr422Gamma_8u_C3C2R checks its steps, after the size.
 *  @{ */

KIPAPI KipStatus kipiRGBToYCbCr_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCbCr_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCbCr_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCbCr_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep,
                                       KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCbCr_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep,
                                          KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB_8u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB_8u_P3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst[3], int dstStep,
                                       KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB_8u_P3C4R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                         KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCbCrToBGR_8u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR_8u_P3C4R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                         KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCbCrToBGR_709CSC_8u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR_709CSC_8u_P3C4R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                                KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiRGBToYCbCr422_8u_C3C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCbCr422_8u_P3C2R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCbCr422_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                            KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCrCb422_8u_C3C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCrCb422_8u_P3C2R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCbCr420_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                            KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCrCb420_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                             KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr422_8u_C3C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr422_8u_AC4C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr422_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                            KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr422_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                             KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr420_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                            KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr420_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                             KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCrCb420_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                            KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCrCb420_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                             KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr411_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                            KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr411_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                             KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr420_709CSC_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr420_709CSC_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                    KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCrCb420_709CSC_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCrCb420_709CSC_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                    KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCbCr420_709HDTV_8u_AC4P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                     KipiSize roiSize);
KIPAPI KipStatus kipiBGRToCbYCr422_8u_AC4C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiBGRToCbYCr422_709HDTV_8u_AC4C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                                     KipiSize roiSize);
KIPAPI KipStatus kipiBGRToCbYCr422_709HDTV_8u_C3C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                                    KipiSize roiSize);
KIPAPI KipStatus kipiRGBToCbYCr422_8u_C3C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToCbYCr422Gamma_8u_C3C2R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                                 KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB_8u_C2C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR_8u_C2C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR_8u_C2C4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                            KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCbCr422ToBGR_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb422ToRGB_8u_C2C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCrCb422ToRGB_8u_C2P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToRGB_8u_C2C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToBGR_8u_C2C4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                            KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiCbYCr422ToBGR_709HDTV_8u_C2C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                                    KipiSize roiSize);
KIPAPI KipStatus kipiCbYCr422ToBGR_709HDTV_8u_C2C4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                                    KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCbCr420ToRGB_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR_8u_P3C4R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                            KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCrCb420ToRGB_8u_P3C4R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                            KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCbCr420ToBGR_709CSC_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR_709HDTV_8u_P3C4R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                                    KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCrCb420ToBGR_Filter_8u_P3C4R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                                   KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCbCr411ToBGR_8u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToBGR_8u_P3C4R(const Kip8u* pSrc[3], int srcStep[3], Kip8u* pDst, int dstStep,
                                            KipiSize roiSize, Kip8u aval);

/** @} */

/** @defgroup cie CIE spaces
 *  RGB with the primaries of sRGB and white D65, taken as linear light, to and from XYZ, L*u*v* (LUV) and L*a*b* (Lab).
 *  RGB and XYZ, LUV and Lab are stored in the order of their names; Lab goes with B, G, R. AC4 leaves the fourth sample
 *  of the destination as it was. 16s is 16u less 32768 in every sample.
 *
 *  | quantity      | 8u                  | 16u                  | 32f     |
 *  |---------------|---------------------|----------------------|---------|
 *  | R G B, X Y Z  | 0..255              | 0..65535             | 0..1    |
 *  | L of LUV      | L* x 255/100        | L* x 65535/100       | 0..100  |
 *  | U             | (u* + 134) x 255/354 | (u* + 134) x 65535/354 | u*    |
 *  | V             | (v* + 140) x 255/262 | (v* + 140) x 65535/262 | v*    |
 *  | L of Lab      | L* x 255/100        | L* x 65535/100       |         |
 *  | a, b          | a* + 128, b* + 128  | (a* + 128) x 255, (b* + 128) x 255 | |
 *
 *  White is X = 0.950456, Y = 1, Z = 1.088754 of full scale, and Z saturates. u'v' of white is 0.197839, 0.468342.
 *
 *  XYZ: 8u is fixed point, floored; the runs of 8 pixels that each row begins with have coarser coefficients than the
 *  up to 7 pixels left over, which may come out one step apart (white is Y = 255 in the runs, 254 in the rest). 16u is
 *  single precision, truncated and saturated. 32f clamps R, G, B and Z to 0..1, and not X and Y.
 *
 *  LUV: 8u and 16u round half up, and saturate; U and V of the 8u encoder keep the low byte instead, which no colour
 *  needs. Black has u* = v* = 0, and back all L* below 0.00009 is black, whatever u* and v* are. The decoders clamp
 *  R, G, B; those to integers measure the up to 3 pixels left over after the runs of 4 that each row begins with
 *  against a white up to 4 x 10^-7 apart.
 *
 *  Lab: rounded to nearest, ties to even, and saturated. The decoder takes ((L* + 16) / 116)^3 for every L*, also below
 *  8, where the encoder has a line: very dark colours come back slightly lighter.
 *
 *  Steps of 16-bit and 32-bit XYZ and LUV images are rounded down to whole samples. Regions above 4096 pixels, and of
 *  Lab all, are split over threads.
 *  @{ */

KIPAPI KipStatus kipiRGBToXYZ_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToXYZ_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToXYZ_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToXYZ_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToXYZ_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToXYZ_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToXYZ_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToXYZ_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiXYZToRGB_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiXYZToRGB_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiXYZToRGB_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiXYZToRGB_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiXYZToRGB_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiXYZToRGB_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiXYZToRGB_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiXYZToRGB_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToLUV_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToLUV_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToLUV_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToLUV_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToLUV_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToLUV_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToLUV_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToLUV_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLUVToRGB_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLUVToRGB_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLUVToRGB_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLUVToRGB_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLUVToRGB_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLUVToRGB_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLUVToRGB_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLUVToRGB_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToLab_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToLab_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLabToBGR_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiLabToBGR_16u8u_C3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);

/** @} */

/** @defgroup ycc Photo YCC and YCoCg
 *  Photo YCC, interleaved: L = 0.299 R + 0.587 G + 0.114 B and, with samples of 0..1, Y = L / 1.402,
 *  C1 = (B - L) x 0.4368627 + 156/255 and C2 = (R - L) x 0.53192 + 137/255. White has Y = 181.9/255. 8u is fixed point,
 *  floored: up to 1.06 steps off that, and 1.29 on the way back. 16u is single precision, truncated and saturated; 16s
 *  is 16u less 32768 in every sample; 32f clamps R, G, B to 0..1 and nothing else. AC4 leaves the fourth sample of the
 *  destination as it was. Regions above 4096 pixels are split over threads.
 *
 *  YCoCg, in planes Y, Co, Cg: Y = (R + 2 G + B + 2) >> 2, Co = (R - B + 1) >> 1, Cg = (2 G - R - B + 2) >> 2; back
 *  R = Y + Co - Cg, G = Y + Cg, B = Y - Co - Cg. The functions on RGB keep Co and Cg 128 higher, clamped to 0..255; those
 *  on BGR and SBGR store them as they are, in 16-bit planes the low 16 bits. SBGR are signed 16-bit colours.
 *
 *  YCoCg_Rev is reversible: Co = R - B, t = B + (Co >> 1), Cg = G - t, Y = t + (Cg >> 1), undone step by step on the way
 *  back. 16-bit planes hold the low 16 bits of every step: every colour comes back exactly, but Co and Cg of 16-bit
 *  colours may have wrapped around, which they never do in 32-bit planes.
 *
 *  Back to 8u, results are taken as signed 16-bit numbers and clamped to 0..255; to 16s their low 16 bits are kept. C4
 *  ignores the fourth sample of a source and writes aval to that of a destination.
 *
 *  Checks of the YCoCg functions: all image and plane pointers - kipStatusNullPointer; nothing else. An empty region is
 *  kipStatusOk.
 *  @{ */

KIPAPI KipStatus kipiRGBToYCC_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCC_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCC_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCC_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCC_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCC_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCC_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCC_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCCToRGB_8u_C3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCCToRGB_8u_AC4R(const Kip8u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCCToRGB_16u_C3R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCCToRGB_16u_AC4R(const Kip16u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCCToRGB_16s_C3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCCToRGB_16s_AC4R(const Kip16s* pSrc, int srcStep, Kip16s* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCCToRGB_32f_C3R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCCToRGB_32f_AC4R(const Kip32f* pSrc, int srcStep, Kip32f* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToYCoCg_8u_C3P3R(const Kip8u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToRGB_8u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCoCg_8u16s_C3P3R(const Kip8u* pSrc, int srcStep, Kip16s* pDst[3], int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiSBGRToYCoCg_16s_C3P3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst[3], int dstStep,
                                           KipiSize roiSize);
KIPAPI KipStatus kipiSBGRToYCoCg_16s32s_C3P3R(const Kip16s* pSrc, int srcStep, Kip32s* pDst[3], int dstStep,
                                              KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCoCg_8u16s_C4P3R(const Kip8u* pSrc, int srcStep, Kip16s* pDst[3], int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiSBGRToYCoCg_16s_C4P3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst[3], int dstStep,
                                           KipiSize roiSize);
KIPAPI KipStatus kipiSBGRToYCoCg_16s32s_C4P3R(const Kip16s* pSrc, int srcStep, Kip32s* pDst[3], int dstStep,
                                              KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToBGR_16s8u_P3C3R(const Kip16s* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                            KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToSBGR_16s_P3C3R(const Kip16s* pSrc[3], int srcStep, Kip16s* pDst, int dstStep,
                                           KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToSBGR_32s16s_P3C3R(const Kip32s* pSrc[3], int srcStep, Kip16s* pDst, int dstStep,
                                              KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToBGR_16s8u_P3C4R(const Kip16s* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                            KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCoCgToSBGR_16s_P3C4R(const Kip16s* pSrc[3], int srcStep, Kip16s* pDst, int dstStep,
                                           KipiSize roiSize, Kip16s aval);
KIPAPI KipStatus kipiYCoCgToSBGR_32s16s_P3C4R(const Kip32s* pSrc[3], int srcStep, Kip16s* pDst, int dstStep,
                                              KipiSize roiSize, Kip16s aval);
KIPAPI KipStatus kipiBGRToYCoCg_Rev_8u16s_C3P3R(const Kip8u* pSrc, int srcStep, Kip16s* pDst[3], int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiSBGRToYCoCg_Rev_16s_C3P3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst[3], int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiSBGRToYCoCg_Rev_16s32s_C3P3R(const Kip16s* pSrc, int srcStep, Kip32s* pDst[3], int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGRToYCoCg_Rev_8u16s_C4P3R(const Kip8u* pSrc, int srcStep, Kip16s* pDst[3], int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiSBGRToYCoCg_Rev_16s_C4P3R(const Kip16s* pSrc, int srcStep, Kip16s* pDst[3], int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiSBGRToYCoCg_Rev_16s32s_C4P3R(const Kip16s* pSrc, int srcStep, Kip32s* pDst[3], int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToBGR_Rev_16s8u_P3C3R(const Kip16s* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToSBGR_Rev_16s_P3C3R(const Kip16s* pSrc[3], int srcStep, Kip16s* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToSBGR_Rev_32s16s_P3C3R(const Kip32s* pSrc[3], int srcStep, Kip16s* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCoCgToBGR_Rev_16s8u_P3C4R(const Kip16s* pSrc[3], int srcStep, Kip8u* pDst, int dstStep,
                                                KipiSize roiSize, Kip8u aval);
KIPAPI KipStatus kipiYCoCgToSBGR_Rev_16s_P3C4R(const Kip16s* pSrc[3], int srcStep, Kip16s* pDst, int dstStep,
                                               KipiSize roiSize, Kip16s aval);
KIPAPI KipStatus kipiYCoCgToSBGR_Rev_32s16s_P3C4R(const Kip32s* pSrc[3], int srcStep, Kip16s* pDst, int dstStep,
                                                  KipiSize roiSize, Kip16s aval);

/** @} */

/** @defgroup packed16 Packed 16-bit RGB
 *  RGB in one 16-bit word per pixel, from 8-bit YCbCr and YUV and RGB, and back. Steps of words are in bytes too.
 *
 *  | space  | bits 15 to 0                      |
 *  |--------|-----------------------------------|
 *  | RGB565 | 5 of B, 6 of G, 5 of R            |
 *  | RGB555 | a zero, 5 of B, 5 of G, 5 of R    |
 *  | RGB444 | four zeros, 4 of B, 4 of G, 4 of R |
 *
 *  The first colour in the name is in the lowest bits; BGR has R and B exchanged.
 *
 *  To words: YCbCr is converted with the BT.601 set, 1.164 (Y - 16) + 1.596 (Cr - 128) and so on, floored; YUV as
 *  kipiYUV420ToRGB_8u_P3C3R does it. Each channel keeps its upper bits. The sampling of the chroma and the order of
 *  packed 422 are those of the 8-bit functions; each sample serves its pixels unchanged.
 *
 *  Dither: each level is raised to the next one where the rest is above a threshold from a 4 x 4 Bayer matrix, whose
 *  first row and column are those of the region. Flat fields get patterns of 4 x 4 pixels. YCbCr has factors of 13 bits
 *  here, each product floored: its colours may differ by one from those of the plain functions.
 *
 *  From words: each field becomes the upper bits of a byte whose lower bits are zero; then the conversion is that of
 *  the 8-bit functions of the same name, with their minimum sizes and warnings. RGB565ToRGB and BGR565ToBGR put the
 *  lowest field into the first byte, RGBToRGB565 and BGRToBGR565 the upper bits of the first byte into the lowest
 *  field.
 *
 *  Sizes: 422 and, with Dither, YCbCr420 convert every pixel, also of odd sizes, so their chroma planes are ceil(width
 *  / 2) wide, those of YCbCr420 Dither ceil(height / 2) high; the last pixel of an odd width in C2 has the chroma of
 *  the pair before it, and a single one has its one chroma byte for both. 420 without Dither and all of YUV420 convert
 *  whole blocks of 2 x 2 and return kipStatusOddSize when width or height is odd. 411 converts whole groups of 4
 *  columns without a warning; RGB565ToYUV422 whole pairs, in every row, with kipStatusOddSize when width or height is
 *  odd.
 *
 *  Only RGB565ToRGB, BGR565ToBGR, RGBToRGB565 and BGRToBGR565 check their steps, after the size: kipStatusBadStep below
 *  1.
 *  @{ */

KIPAPI KipStatus kipiYCbCrToRGB565_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB565_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToRGB565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB555_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB555_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToRGB555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB444_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB444_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB444_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB444_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToRGB444_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB444_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR565_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR565_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToBGR565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR555_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR555_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToBGR555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR444_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                             KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR444_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                               KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR444_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR444_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR444_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToBGR444_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB565Dither_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB565Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                                     KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB565Dither_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                        KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB565Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToRGB565Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB565Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                      int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB555Dither_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB555Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                                     KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB555Dither_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                        KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB555Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToRGB555Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB555Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                      int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB444Dither_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToRGB444Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                                     KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB444Dither_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                        KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToRGB444Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToRGB444Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToRGB444Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                      int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR565Dither_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR565Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                                     KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR565Dither_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                        KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR565Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR565Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToBGR565Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                      int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR555Dither_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR555Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                                     KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR555Dither_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                        KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR555Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR555Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToBGR555Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                      int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR444Dither_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                   KipiSize roiSize);
KIPAPI KipStatus kipiYCbCrToBGR444Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep, Kip16u* pDst, int dstStep,
                                                     KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR444Dither_8u16u_C2C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep,
                                                        KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr422ToBGR444Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr420ToBGR444Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                        int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYUV420ToBGR444Dither_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst,
                                                      int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToBGR565_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiYCbCr411ToBGR555_8u16u_P3C3R(const Kip8u* pSrc[3], int srcStep[3], Kip16u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiRGB565ToRGB_16u8u_C3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGR565ToBGR_16u8u_C3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiRGBToRGB565_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGRToBGR565_8u16u_C3R(const Kip8u* pSrc, int srcStep, Kip16u* pDst, int dstStep, KipiSize roiSize);
KIPAPI KipStatus kipiBGR555ToYCbCr411_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR555ToYCbCr420_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR555ToYCbCr422_16u8u_C3C2R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR555ToYCbCr422_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR555ToYCrCb420_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR555ToYUV420_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                KipiSize roiSize);
KIPAPI KipStatus kipiBGR565ToYCbCr411_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR565ToYCbCr420_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR565ToYCbCr422_16u8u_C3C2R(const Kip16u* pSrc, int srcStep, Kip8u* pDst, int dstStep,
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR565ToYCbCr422_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR565ToYCrCb420_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                  KipiSize roiSize);
KIPAPI KipStatus kipiBGR565ToYUV420_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                KipiSize roiSize);
KIPAPI KipStatus kipiRGB565ToYUV420_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                KipiSize roiSize);
KIPAPI KipStatus kipiRGB565ToYUV422_16u8u_C3P3R(const Kip16u* pSrc, int srcStep, Kip8u* pDst[3], int dstStep[3],
                                                KipiSize roiSize);

/** @} */

#ifdef __cplusplus
}
#endif
#endif
