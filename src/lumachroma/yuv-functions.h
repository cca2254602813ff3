// The functions between RGB and YUV: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiRGBToYUV_8u_C3R,      KIP_C_C(Kip8u, Kip8u),      kEveryPixel, ConvertRuns<16, ForwardRun, ForwardRest, C3<>, C3<>>)
KIP_FUNCTION(kipiRGBToYUV_8u_AC4R,     KIP_C_C(Kip8u, Kip8u),      kEveryPixel, ConvertRuns<16, ForwardRunAlpha, ForwardRest, AC4<>, AC4<>>)
KIP_FUNCTION(kipiRGBToYUV_8u_C3P3R,    KIP_C_P(Kip8u, Kip8u, 3),   kEveryPixel, ConvertRuns<16, ForwardRun, ForwardRest, C3<>, P3<>>)
KIP_FUNCTION(kipiRGBToYUV_8u_P3R,      KIP_P_P(Kip8u, Kip8u, 3),   kEveryPixel, ConvertRuns<16, ForwardRun, ForwardRest, P3<>, P3<>>)
KIP_FUNCTION(kipiRGBToYUV_8u_AC4P4R,   KIP_C_P4(Kip8u, Kip8u),     kEveryPixel, ConvertRuns<8, DifferenceRun, DifferenceRest, AC4<>, P4<>>)

KIP_FUNCTION(kipiYUVToRGB_8u_C3R,      KIP_C_C(Kip8u, Kip8u),      kEveryPixel, Convert<PerPixel<Inverse1>, C3<>, C3<>>)
KIP_FUNCTION(kipiYUVToRGB_8u_AC4R,     KIP_C_C(Kip8u, Kip8u),      kEveryPixel, Convert<PerPixel<Inverse1>, AC4<>, AC4<>>)
KIP_FUNCTION(kipiYUVToRGB_8u_P3C3R,    KIP_P_C(Kip8u, Kip8u, 3),   kEveryPixel, Convert<PerPixel<Inverse2>, P3<>, C3<>>)
KIP_FUNCTION(kipiYUVToRGB_8u_P3R,      KIP_P_P(Kip8u, Kip8u, 3),   kEveryPixel, Convert<PerPixel<Inverse3>, P3<>, P3<>>)

KIP_FUNCTION(kipiRGBToYUV422_8u_C3C2R, KIP_C_C(Kip8u, Kip8u),      kEveryPixel, Encode422<C3<>, Packed422<>>)
KIP_FUNCTION(kipiRGBToYUV422_8u_C3P3R, KIP_C_PS(Kip8u, Kip8u, 3),  kEveryPixel, Encode422<C3<>, Planar422>)
KIP_FUNCTION(kipiRGBToYUV422_8u_P3R,   KIP_P_PS(Kip8u, Kip8u, 3),  kEveryPixel, Encode422<P3<>, Planar422>)
KIP_FUNCTION(kipiRGBToYUV420_8u_C3P3R, KIP_C_PS(Kip8u, Kip8u, 3),  kWholeBlocks420, Encode420<C3<>>)
KIP_FUNCTION(kipiRGBToYUV420_8u_P3R,   KIP_P_PS(Kip8u, Kip8u, 3),  kWholeBlocks420, Encode420<P3<>>)
KIP_FUNCTION(kipiBGRToYUV420_8u_AC4P3R, KIP_C_PS(Kip8u, Kip8u, 3), kWholeBlocks420, Encode420<BgrAlpha>)

KIP_FUNCTION(kipiYUV422ToRGB_8u_C2C3R, KIP_C_C(Kip8u, Kip8u),      kEveryPixel, DecodeC2<Inverse2, Packed422<>, C3<>>)
KIP_FUNCTION(kipiYUV422ToRGB_8u_P3C3R, KIP_PS_C(Kip8u, Kip8u, 3),  kEveryPixel, Decode2<Planar422, C3<>>)
KIP_FUNCTION(kipiYUV422ToRGB_8u_P3R,   KIP_PS_P(Kip8u, Kip8u, 3),  kEveryPixel, Decode2<Planar422, P3<>>)
KIP_FUNCTION(kipiYUV422ToRGB_8u_P3AC4R, KIP_PS_C(Kip8u, Kip8u, 3), kEveryPixel, Decode4<Planar422>)
KIP_FUNCTION(kipiYUV420ToRGB_8u_P3C3R, KIP_PS_C(Kip8u, Kip8u, 3),  kWholeBlocks420, Decode2<Planar420, C3<>>)
KIP_FUNCTION(kipiYUV420ToRGB_8u_P3R,   KIP_PS_P(Kip8u, Kip8u, 3),  kWholeBlocks420, Decode2<Planar420, P3<>>)
KIP_FUNCTION(kipiYUV420ToRGB_8u_P3AC4R, KIP_PS_C(Kip8u, Kip8u, 3), kWholeBlocks420, Decode4<Planar420>)
KIP_FUNCTION(kipiYUV420ToBGR_8u_P3C3R, KIP_PS_C(Kip8u, Kip8u, 3),  kWholeBlocks420, DecodeAll<InverseDoubled<kFactors1>, Planar420, Bgr>)
// clang-format on
