// The functions between RGB and photo YCC: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiRGBToYCC_8u_C3R,   KIP_C_C(Kip8u, Kip8u),   kSplit, Convert<EncodeBytes, C3<>>)
KIP_FUNCTION(kipiRGBToYCC_8u_AC4R,  KIP_C_C(Kip8u, Kip8u),   kSplit, Convert<EncodeBytes, AC4<>>)
KIP_FUNCTION(kipiRGBToYCC_16u_C3R,  KIP_C_C(Kip16u, Kip16u), kSplit, Convert<EncodeWords, C3<Kip16u>>)
KIP_FUNCTION(kipiRGBToYCC_16u_AC4R, KIP_C_C(Kip16u, Kip16u), kSplit, Convert<EncodeWords, AC4<Kip16u>>)
KIP_FUNCTION(kipiRGBToYCC_16s_C3R,  KIP_C_C(Kip16s, Kip16s), kSplit, Convert<EncodeWords, Biased<C3<Kip16u>>>)
KIP_FUNCTION(kipiRGBToYCC_16s_AC4R, KIP_C_C(Kip16s, Kip16s), kSplit, Convert<EncodeWords, Biased<AC4<Kip16u>>>)
KIP_FUNCTION(kipiRGBToYCC_32f_C3R,  KIP_C_C(Kip32f, Kip32f), kSplit, Convert<EncodeFloats, C3<Kip32f>>)
KIP_FUNCTION(kipiRGBToYCC_32f_AC4R, KIP_C_C(Kip32f, Kip32f), kSplit, Convert<EncodeFloats, AC4<Kip32f>>)

KIP_FUNCTION(kipiYCCToRGB_8u_C3R,   KIP_C_C(Kip8u, Kip8u),   kSplit, Convert<DecodeBytes, C3<>>)
KIP_FUNCTION(kipiYCCToRGB_8u_AC4R,  KIP_C_C(Kip8u, Kip8u),   kSplit, Convert<DecodeBytes, AC4<>>)
KIP_FUNCTION(kipiYCCToRGB_16u_C3R,  KIP_C_C(Kip16u, Kip16u), kSplit, Convert<DecodeWords, C3<Kip16u>>)
KIP_FUNCTION(kipiYCCToRGB_16u_AC4R, KIP_C_C(Kip16u, Kip16u), kSplit, Convert<DecodeWords, AC4<Kip16u>>)
KIP_FUNCTION(kipiYCCToRGB_16s_C3R,  KIP_C_C(Kip16s, Kip16s), kSplit, Convert<DecodeWords, Biased<C3<Kip16u>>>)
KIP_FUNCTION(kipiYCCToRGB_16s_AC4R, KIP_C_C(Kip16s, Kip16s), kSplit, Convert<DecodeWords, Biased<AC4<Kip16u>>>)
KIP_FUNCTION(kipiYCCToRGB_32f_C3R,  KIP_C_C(Kip32f, Kip32f), kSplit, Convert<DecodeFloats, C3<Kip32f>>)
KIP_FUNCTION(kipiYCCToRGB_32f_AC4R, KIP_C_C(Kip32f, Kip32f), kSplit, Convert<DecodeFloats, AC4<Kip32f>>)
// clang-format on
