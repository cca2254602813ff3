// Fill and statistics of planes, for the families' own use. Steps are in bytes and are not checked.
#pragma once

#include "kipcc.h"

namespace kip {

/// Writes the value to every sample of the region.
KipStatus kipiSet_8u_C1R(Kip8u value, Kip8u* pDst, int dstStep, KipiSize roiSize);

/// The largest sample; a sample that is not a number is passed over.
KipStatus kipiMax_32f_C1R(const Kip32f* pSrc, int srcStep, KipiSize roiSize, Kip32f* pMax);

/// The sum. Samples of a row are added in single precision in sixteen partial sums, rows in extended precision.
KipStatus kipiSum_32f_C1R(const Kip32f* pSrc, int srcStep, KipiSize roiSize, double* pSum);

/// The sum divided by the number of samples.
KipStatus kipiMean_32f_C1R(const Kip32f* pSrc, int srcStep, KipiSize roiSize, double* pMean);

}  // namespace kip
