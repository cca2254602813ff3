// The functions between RGB and XYZ: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiRGBToXYZ_8u_C3R,   KIP_C_C(Kip8u, Kip8u),   kWholeSteps<Kip8u>,  ConvertBytes<kForwardRun, kForwardRest, C3<>>)
KIP_FUNCTION(kipiRGBToXYZ_8u_AC4R,  KIP_C_C(Kip8u, Kip8u),   kWholeSteps<Kip8u>,  ConvertBytes<kForwardRun, kForwardRest, AC4<>>)
KIP_FUNCTION(kipiRGBToXYZ_16u_C3R,  KIP_C_C(Kip16u, Kip16u), kWholeSteps<Kip16u>, Convert<Words<kRgbToXyz>, C3<Kip16u>>)
KIP_FUNCTION(kipiRGBToXYZ_16u_AC4R, KIP_C_C(Kip16u, Kip16u), kWholeSteps<Kip16u>, Convert<Words<kRgbToXyz>, AC4<Kip16u>>)
KIP_FUNCTION(kipiRGBToXYZ_16s_C3R,  KIP_C_C(Kip16s, Kip16s), kWholeSteps<Kip16s>, Convert<Words<kRgbToXyz>, Biased<C3<Kip16u>>>)
KIP_FUNCTION(kipiRGBToXYZ_16s_AC4R, KIP_C_C(Kip16s, Kip16s), kWholeSteps<Kip16s>, Convert<Words<kRgbToXyz>, Biased<AC4<Kip16u>>>)
KIP_FUNCTION(kipiRGBToXYZ_32f_C3R,  KIP_C_C(Kip32f, Kip32f), kWholeSteps<Kip32f>, Convert<FloatForward, C3<Kip32f>>)
KIP_FUNCTION(kipiRGBToXYZ_32f_AC4R, KIP_C_C(Kip32f, Kip32f), kWholeSteps<Kip32f>, Convert<FloatForward, AC4<Kip32f>>)

KIP_FUNCTION(kipiXYZToRGB_8u_C3R,   KIP_C_C(Kip8u, Kip8u),   kWholeSteps<Kip8u>,  ConvertBytes<kInverseRun, kInverseRest, C3<>>)
KIP_FUNCTION(kipiXYZToRGB_8u_AC4R,  KIP_C_C(Kip8u, Kip8u),   kWholeSteps<Kip8u>,  ConvertBytes<kInverseRun, kInverseRest, AC4<>>)
KIP_FUNCTION(kipiXYZToRGB_16u_C3R,  KIP_C_C(Kip16u, Kip16u), kWholeSteps<Kip16u>, Convert<Words<kXyzToRgb>, C3<Kip16u>>)
KIP_FUNCTION(kipiXYZToRGB_16u_AC4R, KIP_C_C(Kip16u, Kip16u), kWholeSteps<Kip16u>, Convert<Words<kXyzToRgb>, AC4<Kip16u>>)
KIP_FUNCTION(kipiXYZToRGB_16s_C3R,  KIP_C_C(Kip16s, Kip16s), kWholeSteps<Kip16s>, Convert<Words<kXyzToRgb>, Biased<C3<Kip16u>>>)
KIP_FUNCTION(kipiXYZToRGB_16s_AC4R, KIP_C_C(Kip16s, Kip16s), kWholeSteps<Kip16s>, Convert<Words<kXyzToRgb>, Biased<AC4<Kip16u>>>)
KIP_FUNCTION(kipiXYZToRGB_32f_C3R,  KIP_C_C(Kip32f, Kip32f), kWholeSteps<Kip32f>, Convert<FloatInverse, C3<Kip32f>>)
KIP_FUNCTION(kipiXYZToRGB_32f_AC4R, KIP_C_C(Kip32f, Kip32f), kWholeSteps<Kip32f>, Convert<FloatInverse, AC4<Kip32f>>)
// clang-format on
