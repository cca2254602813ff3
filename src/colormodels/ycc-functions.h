// The functions between RGB and photo YCC: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiRGBToYCC_8u_C3R,   KIP_C_C(Kip8u, Kip8u),   kSplit, Same<EncodeBytes, C3<>>)
KIP_FUNCTION(kipiRGBToYCC_8u_AC4R,  KIP_C_C(Kip8u, Kip8u),   kSplit, Same<EncodeBytes, AC4<>>)
KIP_FUNCTION(kipiRGBToYCC_16u_C3R,  KIP_C_C(Kip16u, Kip16u), kSplit, Same<EncodeWords, C3<Kip16u>>)
KIP_FUNCTION(kipiRGBToYCC_16u_AC4R, KIP_C_C(Kip16u, Kip16u), kSplit, Same<EncodeWords, AC4<Kip16u>>)
KIP_FUNCTION(kipiRGBToYCC_16s_C3R,  KIP_C_C(Kip16s, Kip16s), kSplit, Same<EncodeWords, Biased<C3<Kip16u>>>)
KIP_FUNCTION(kipiRGBToYCC_16s_AC4R, KIP_C_C(Kip16s, Kip16s), kSplit, Same<EncodeWords, Biased<AC4<Kip16u>>>)
KIP_FUNCTION(kipiRGBToYCC_32f_C3R,  KIP_C_C(Kip32f, Kip32f), kSplit, Same<EncodeFloats, C3<Kip32f>>)
KIP_FUNCTION(kipiRGBToYCC_32f_AC4R, KIP_C_C(Kip32f, Kip32f), kSplit, Same<EncodeFloats, AC4<Kip32f>>)

KIP_FUNCTION(kipiYCCToRGB_8u_C3R,   KIP_C_C(Kip8u, Kip8u),   kSplit, Same<DecodeBytes, C3<>>)
KIP_FUNCTION(kipiYCCToRGB_8u_AC4R,  KIP_C_C(Kip8u, Kip8u),   kSplit, Same<DecodeBytes, AC4<>>)
KIP_FUNCTION(kipiYCCToRGB_16u_C3R,  KIP_C_C(Kip16u, Kip16u), kSplit, Same<DecodeWords, C3<Kip16u>>)
KIP_FUNCTION(kipiYCCToRGB_16u_AC4R, KIP_C_C(Kip16u, Kip16u), kSplit, Same<DecodeWords, AC4<Kip16u>>)
KIP_FUNCTION(kipiYCCToRGB_16s_C3R,  KIP_C_C(Kip16s, Kip16s), kSplit, Same<DecodeWords, Biased<C3<Kip16u>>>)
KIP_FUNCTION(kipiYCCToRGB_16s_AC4R, KIP_C_C(Kip16s, Kip16s), kSplit, Same<DecodeWords, Biased<AC4<Kip16u>>>)
KIP_FUNCTION(kipiYCCToRGB_32f_C3R,  KIP_C_C(Kip32f, Kip32f), kSplit, Same<DecodeFloats, C3<Kip32f>>)
KIP_FUNCTION(kipiYCCToRGB_32f_AC4R, KIP_C_C(Kip32f, Kip32f), kSplit, Same<DecodeFloats, AC4<Kip32f>>)
// clang-format on
