// The functions between RGB and LUV: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiRGBToLUV_8u_C3R,   KIP_C_C(Kip8u, Kip8u),   kWholeSteps<Kip8u>,  Convert<EncodeBytes, C3<>>)
KIP_FUNCTION(kipiRGBToLUV_8u_AC4R,  KIP_C_C(Kip8u, Kip8u),   kWholeSteps<Kip8u>,  Convert<EncodeBytes, AC4<>>)
KIP_FUNCTION(kipiRGBToLUV_16u_C3R,  KIP_C_C(Kip16u, Kip16u), kWholeSteps<Kip16u>, Convert<Encode<WordScale>, C3<Kip16u>>)
KIP_FUNCTION(kipiRGBToLUV_16u_AC4R, KIP_C_C(Kip16u, Kip16u), kWholeSteps<Kip16u>, Convert<Encode<WordScale>, AC4<Kip16u>>)
KIP_FUNCTION(kipiRGBToLUV_16s_C3R,  KIP_C_C(Kip16s, Kip16s), kWholeSteps<Kip16s>, Convert<Encode<WordScale>, Biased<C3<Kip16u>>>)
KIP_FUNCTION(kipiRGBToLUV_16s_AC4R, KIP_C_C(Kip16s, Kip16s), kWholeSteps<Kip16s>, Convert<Encode<WordScale>, Biased<AC4<Kip16u>>>)
KIP_FUNCTION(kipiRGBToLUV_32f_C3R,  KIP_C_C(Kip32f, Kip32f), kWholeSteps<Kip32f>, Convert<Encode<FloatScale>, C3<Kip32f>>)
KIP_FUNCTION(kipiRGBToLUV_32f_AC4R, KIP_C_C(Kip32f, Kip32f), kWholeSteps<Kip32f>, Convert<Encode<FloatScale>, AC4<Kip32f>>)

KIP_FUNCTION(kipiLUVToRGB_8u_C3R,   KIP_C_C(Kip8u, Kip8u),   kWholeSteps<Kip8u>,  Decode<Bytes, C3<>>)
KIP_FUNCTION(kipiLUVToRGB_8u_AC4R,  KIP_C_C(Kip8u, Kip8u),   kWholeSteps<Kip8u>,  Decode<Bytes, AC4<>>)
KIP_FUNCTION(kipiLUVToRGB_16u_C3R,  KIP_C_C(Kip16u, Kip16u), kWholeSteps<Kip16u>, Decode<Words, C3<Kip16u>>)
KIP_FUNCTION(kipiLUVToRGB_16u_AC4R, KIP_C_C(Kip16u, Kip16u), kWholeSteps<Kip16u>, Decode<Words, AC4<Kip16u>>)
KIP_FUNCTION(kipiLUVToRGB_16s_C3R,  KIP_C_C(Kip16s, Kip16s), kWholeSteps<Kip16s>, Decode<Words, Biased<C3<Kip16u>>>)
KIP_FUNCTION(kipiLUVToRGB_16s_AC4R, KIP_C_C(Kip16s, Kip16s), kWholeSteps<Kip16s>, Decode<Words, Biased<AC4<Kip16u>>>)
KIP_FUNCTION(kipiLUVToRGB_32f_C3R,  KIP_C_C(Kip32f, Kip32f), kWholeSteps<Kip32f>, Convert<DecodeFloats, C3<Kip32f>>)
KIP_FUNCTION(kipiLUVToRGB_32f_AC4R, KIP_C_C(Kip32f, Kip32f), kWholeSteps<Kip32f>, Convert<DecodeFloats, AC4<Kip32f>>)
// clang-format on
