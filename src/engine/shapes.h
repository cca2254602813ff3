// The argument shapes of the exported functions. Each expands to: the parameter list, the source, the destination,
// the optional arguments; S and D are the sample types. In the names, C is one interleaved image, P planes with one
// step for all, PS planes with a step each; A adds the alpha value, I means in place.
//
// KIP_WITH(shape, trailing) adds what comes behind the images and the size; `trailing` expands to two things in
// parentheses: those parameters, and the optional arguments that they become.
#pragma once

#define KIP_WITH(shape, trailing) KIP_EXPAND(KIP_APPEND, trailing, shape)
#define KIP_APPEND(more, optional, parameters, source, target, ...) \
  (KIP_BARE parameters, KIP_BARE more), source, target, KIP_BARE optional
#define KIP_BARE(...) __VA_ARGS__
#define KIP_EXPAND(macro, ...) macro(__VA_ARGS__)

#define KIP_ALPHA(D) (D aval), ({.alpha = aval})

#define KIP_C_C(S, D)                                                                               \
  (const S* pSrc, int srcStep, D* pDst, int dstStep, KipiSize roiSize), interleaved(pSrc, srcStep), \
      interleaved(pDst, dstStep), {}
#define KIP_C_CA(S, D) KIP_WITH(KIP_C_C(S, D), KIP_ALPHA(D))
#define KIP_C_P(S, D, n)                                                                               \
  (const S* pSrc, int srcStep, D* pDst[n], int dstStep, KipiSize roiSize), interleaved(pSrc, srcStep), \
      planar(pDst, n, dstStep), {}
// Four planes of which the fourth, alpha, is not checked.
#define KIP_C_P4(S, D)                                                                                 \
  (const S* pSrc, int srcStep, D* pDst[4], int dstStep, KipiSize roiSize), interleaved(pSrc, srcStep), \
      planar(pDst, 4, dstStep, 3), {}
#define KIP_C_PS(S, D, n)                                                                                 \
  (const S* pSrc, int srcStep, D* pDst[n], int dstStep[n], KipiSize roiSize), interleaved(pSrc, srcStep), \
      planar(pDst, n, dstStep), {}
#define KIP_P_C(S, D, n)                                                                             \
  (const S* pSrc[n], int srcStep, D* pDst, int dstStep, KipiSize roiSize), planar(pSrc, n, srcStep), \
      interleaved(pDst, dstStep), {}
#define KIP_P_CA(S, D, n) KIP_WITH(KIP_P_C(S, D, n), KIP_ALPHA(D))
#define KIP_P_P(S, D, n)                                                                                \
  (const S* pSrc[n], int srcStep, D* pDst[n], int dstStep, KipiSize roiSize), planar(pSrc, n, srcStep), \
      planar(pDst, n, dstStep), {}
#define KIP_P_PS(S, D, n)                                                                                  \
  (const S* pSrc[n], int srcStep, D* pDst[n], int dstStep[n], KipiSize roiSize), planar(pSrc, n, srcStep), \
      planar(pDst, n, dstStep), {}
#define KIP_PS_C(S, D, n)                                                                               \
  (const S* pSrc[n], int srcStep[n], D* pDst, int dstStep, KipiSize roiSize), planar(pSrc, n, srcStep), \
      interleaved(pDst, dstStep), {}
#define KIP_PS_CA(S, D, n) KIP_WITH(KIP_PS_C(S, D, n), KIP_ALPHA(D))
#define KIP_PS_P(S, D, n)                                                                                  \
  (const S* pSrc[n], int srcStep[n], D* pDst[n], int dstStep, KipiSize roiSize), planar(pSrc, n, srcStep), \
      planar(pDst, n, dstStep), {}
#define KIP_PS_PS(S, D, n, m)                                                                                 \
  (const S* pSrc[n], int srcStep[n], D* pDst[m], int dstStep[m], KipiSize roiSize), planar(pSrc, n, srcStep), \
      planar(pDst, m, dstStep), {}

// One interleaved image, or planes, that are both source and destination.
#define KIP_I_C(T)                                                                                                     \
  (T * pSrcDst, int srcDstStep, KipiSize roiSize), interleaved(pSrcDst, srcDstStep), interleaved(pSrcDst, srcDstStep), \
  {}
#define KIP_I_P(T, n) \
  (T * pSrcDst[n], int srcDstStep, KipiSize roiSize), planar(pSrcDst, n, srcDstStep), planar(pSrcDst, n, srcDstStep), {}
