// The functions from colour to grey: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiRGBToGray_8u_C3C1R,        KIP_C_C(Kip8u, Kip8u),   kGray, GrayBytes<C3<>>)
KIP_FUNCTION(kipiColorToGray_8u_C3C1R,      KIP_WEIGHTS_C_C(Kip8u),  kGray, GrayBytes<C3<>>)
KIP_FUNCTION(kipiRGBToGray_8u_AC4C1R,       KIP_C_C(Kip8u, Kip8u),   kGray, GrayBytes<AC4<>>)
KIP_FUNCTION(kipiColorToGray_8u_AC4C1R,     KIP_WEIGHTS_C_C(Kip8u),  kGray, GrayBytes<AC4<>>)
KIP_FUNCTION(kipiRGBToGray_16u_C3C1R,       KIP_C_C(Kip16u, Kip16u), kGray, Gray16u<C3<uint16_t>>)
KIP_FUNCTION(kipiColorToGray_16u_C3C1R,     KIP_WEIGHTS_C_C(Kip16u), kGray, Gray16u<C3<uint16_t>>)
KIP_FUNCTION(kipiRGBToGray_16u_AC4C1R,      KIP_C_C(Kip16u, Kip16u), kGray, Gray16u<AC4<uint16_t>>)
KIP_FUNCTION(kipiColorToGray_16u_AC4C1R,    KIP_WEIGHTS_C_C(Kip16u), kGray, Gray16u<AC4<uint16_t>>)
KIP_FUNCTION(kipiRGBToGray_16s_C3C1R,       KIP_C_C(Kip16s, Kip16s), kGray, Gray16s<C3<uint16_t>>)
KIP_FUNCTION(kipiColorToGray_16s_C3C1R,     KIP_WEIGHTS_C_C(Kip16s), kGray, Gray16s<C3<uint16_t>>)
KIP_FUNCTION(kipiRGBToGray_16s_AC4C1R,      KIP_C_C(Kip16s, Kip16s), kGray, Gray16s<AC4<uint16_t>>)
KIP_FUNCTION(kipiColorToGray_16s_AC4C1R,    KIP_WEIGHTS_C_C(Kip16s), kGray, Gray16s<AC4<uint16_t>>)
KIP_FUNCTION(kipiRGBToGray_32f_C3C1R,       KIP_C_C(Kip32f, Kip32f), kGrayFloats, Gray32f<C3<float>>)
KIP_FUNCTION(kipiColorToGray_32f_C3C1R,     KIP_WEIGHTS_C_C(Kip32f), kGrayFloats, Gray32f<C3<float>>)
KIP_FUNCTION(kipiRGBToGray_32f_AC4C1R,      KIP_C_C(Kip32f, Kip32f), kGrayFloats, Gray32f<AC4<float>>)
KIP_FUNCTION(kipiColorToGray_32f_AC4C1R,    KIP_WEIGHTS_C_C(Kip32f), kGrayFloats, Gray32f<AC4<float>>)
// clang-format on
