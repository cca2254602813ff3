// The functions from RGB to YCbCr: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiRGBToYCbCr_8u_C3R,           KIP_C_C(Kip8u, Kip8u),      kAnySize, FullInterleaved<kBt601, C3<>>)
KIP_FUNCTION(kipiRGBToYCbCr_8u_AC4R,          KIP_C_C(Kip8u, Kip8u),      kAnySize, FullInterleaved<kBt601, AC4<>>)
KIP_FUNCTION(kipiRGBToYCbCr_8u_C3P3R,         KIP_C_P(Kip8u, Kip8u, 3),   kAnySize, Full<kBt601, C3<>, P3<>>)
KIP_FUNCTION(kipiRGBToYCbCr_8u_P3R,           KIP_P_P(Kip8u, Kip8u, 3),   kAnySize, Full<kBt601, P3<>, P3<>>)
KIP_FUNCTION(kipiRGBToYCbCr_8u_AC4P3R,        KIP_C_P(Kip8u, Kip8u, 3),   kAnySize, Full<kBt601, AC4<>, P3<>>)

KIP_FUNCTION(kipiRGBToYCbCr422_8u_C3C2R,      KIP_C_C(Kip8u, Kip8u),      kAnySize, Packed<kBt601, kOddLumaTruncated, Rgb, YCbYCr>)
KIP_FUNCTION(kipiRGBToYCbCr422_8u_P3C2R,      KIP_P_C(Kip8u, Kip8u, 3),   kAnySize, Packed<kBt601, kOddLumaTruncated, P3<>, YCbYCr>)
KIP_FUNCTION(kipiRGBToYCrCb422_8u_C3C2R,      KIP_C_C(Kip8u, Kip8u),      kAnySize, Packed<kBt601, kOddLumaTruncated, Rgb, YCrYCb>)
KIP_FUNCTION(kipiRGBToYCrCb422_8u_P3C2R,      KIP_P_C(Kip8u, Kip8u, 3),   kAnySize, Packed<kBt601, kOddLumaTruncated, P3<>, YCrYCb>)
KIP_FUNCTION(kipiBGRToYCbCr422_8u_C3C2R,      KIP_C_C(Kip8u, Kip8u),      kWide,    Packed<kBt601, kChromaEighth, Bgr, YCbYCr>)
KIP_FUNCTION(kipiBGRToYCbCr422_8u_AC4C2R,     KIP_C_C(Kip8u, Kip8u),      kWide,    Packed<kBt601, kChromaEighth, BgrAlpha, YCbYCr>)
// The last pixel of an odd width is read as R, G, B, on purpose.
KIP_FUNCTION(kipiBGRToCbYCr422_8u_AC4C2R,     KIP_C_C(Kip8u, Kip8u),      kAnySize, Packed<kBt601, kCrLess, BgrAlpha, CbYCrY, RgbAlpha>)
KIP_FUNCTION(kipiBGRToCbYCr422_709HDTV_8u_AC4C2R, KIP_C_C(Kip8u, Kip8u),  kAnySize, Packed<kBt709Hdtv, kCrLess, BgrAlpha, CbYCrY>)
KIP_FUNCTION(kipiBGRToCbYCr422_709HDTV_8u_C3C2R,  KIP_C_C(Kip8u, Kip8u),  kAnySize, Packed<kBt709Hdtv, kCrLess, Bgr, CbYCrY>)
KIP_FUNCTION(kipiRGBToCbYCr422_8u_C3C2R,      KIP_C_C(Kip8u, Kip8u),      kAnySize, Smoothed<Linear>)
KIP_FUNCTION(kipiRGBToCbYCr422Gamma_8u_C3C2R, KIP_C_C(Kip8u, Kip8u),      kPositiveSteps, Smoothed<Transferred>)

KIP_FUNCTION(kipiRGBToYCbCr422_8u_C3P3R,      KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes422Warn, Groups<kBt601, kChromaEighth, Rgb, Planar422>)
KIP_FUNCTION(kipiBGRToYCbCr422_8u_C3P3R,      KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes422, Groups<kBt601, kChromaEighth, Bgr, Planar422>)
KIP_FUNCTION(kipiBGRToYCbCr422_8u_AC4P3R,     KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes422, Groups<kBt601, kChromaEighth, BgrAlpha, Planar422>)
KIP_FUNCTION(kipiBGRToYCbCr411_8u_C3P3R,      KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes411, Groups<kBt601, kChromaEighth, Bgr, Planar411>)
KIP_FUNCTION(kipiBGRToYCbCr411_8u_AC4P3R,     KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes411, Groups<kBt601, kChromaEighth, BgrAlpha, Planar411>)

KIP_FUNCTION(kipiRGBToYCbCr420_8u_C3P3R,      KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes420Any, Groups<kBt601, kChromaEighth, Rgb, Planar420>)
KIP_FUNCTION(kipiRGBToYCrCb420_8u_AC4P3R,     KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes420, Groups<kBt601, kChromaEighth, RgbAlpha, Planar420Swapped>)
KIP_FUNCTION(kipiBGRToYCbCr420_8u_C3P3R,      KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes420, Groups<kBt601, kChromaEighth, Bgr, Planar420>)
KIP_FUNCTION(kipiBGRToYCbCr420_8u_AC4P3R,     KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes420, Groups<kBt601, kChromaEighth, BgrAlpha, Planar420>)
KIP_FUNCTION(kipiBGRToYCrCb420_8u_C3P3R,      KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes420, Groups<kBt601, kChromaEighth, Bgr, Planar420Swapped>)
KIP_FUNCTION(kipiBGRToYCrCb420_8u_AC4P3R,     KIP_C_PS(Kip8u, Kip8u, 3),  kPlanes420, Groups<kBt601, kChromaEighth, BgrAlpha, Planar420Swapped>)
KIP_FUNCTION(kipiBGRToYCbCr420_709CSC_8u_C3P3R,   KIP_C_PS(Kip8u, Kip8u, 3), kPlanes420, Groups<kBt709Csc, kChromaEighth, Bgr, Planar420>)
KIP_FUNCTION(kipiBGRToYCbCr420_709CSC_8u_AC4P3R,  KIP_C_PS(Kip8u, Kip8u, 3), kPlanes420, Groups<kBt709Csc, kChromaEighth, BgrAlpha, Planar420>)
KIP_FUNCTION(kipiBGRToYCrCb420_709CSC_8u_C3P3R,   KIP_C_PS(Kip8u, Kip8u, 3), kPlanes420, Groups<kBt709Csc, kChromaEighth, Bgr, Planar420Swapped>)
KIP_FUNCTION(kipiBGRToYCrCb420_709CSC_8u_AC4P3R,  KIP_C_PS(Kip8u, Kip8u, 3), kPlanes420, Groups<kBt709Csc, kChromaEighth, BgrAlpha, Planar420Swapped>)
KIP_FUNCTION(kipiBGRToYCbCr420_709HDTV_8u_AC4P3R, KIP_C_PS(Kip8u, Kip8u, 3), kPlanes420, Groups<kBt709Hdtv, kChromaEighth, BgrAlpha, Planar420>)
// clang-format on
