// The YCoCg functions: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiRGBToYCoCg_8u_C3P3R,            KIP_C_P(Kip8u, Kip8u, 3),   kPointersOnly, Convert<ForwardBytes, C3<>, P3<>>)
KIP_FUNCTION(kipiYCoCgToRGB_8u_P3C3R,            KIP_P_C(Kip8u, Kip8u, 3),   kPointersOnly, Convert<InverseBytes, P3<>, C3<>>)

KIP_FUNCTION(kipiBGRToYCoCg_8u16s_C3P3R,         KIP_C_P(Kip8u, Kip16s, 3),  kPointersOnly, Convert<Forward<int16_t>, Bgr<Kip8u, Kip16s>, P3<Kip16s>>)
KIP_FUNCTION(kipiSBGRToYCoCg_16s_C3P3R,          KIP_C_P(Kip16s, Kip16s, 3), kPointersOnly, Convert<ForwardWords, Bgr<Kip16s, Kip16s>, P3<Kip16s>>)
KIP_FUNCTION(kipiSBGRToYCoCg_16s32s_C3P3R,       KIP_C_P(Kip16s, Kip32s, 3), kPointersOnly, Convert<Forward<int32_t>, Bgr<Kip16s, Kip32s>, P3<Kip32s>>)
KIP_FUNCTION(kipiBGRToYCoCg_8u16s_C4P3R,         KIP_C_P(Kip8u, Kip16s, 3),  kPointersOnly, Convert<Forward<int16_t>, Bgrx<Kip8u, Kip16s>, P3<Kip16s>>)
KIP_FUNCTION(kipiSBGRToYCoCg_16s_C4P3R,          KIP_C_P(Kip16s, Kip16s, 3), kPointersOnly, Convert<ForwardWords, Bgrx<Kip16s, Kip16s>, P3<Kip16s>>)
KIP_FUNCTION(kipiSBGRToYCoCg_16s32s_C4P3R,       KIP_C_P(Kip16s, Kip32s, 3), kPointersOnly, Convert<Forward<int32_t>, Bgrx<Kip16s, Kip32s>, P3<Kip32s>>)

KIP_FUNCTION(kipiBGRToYCoCg_Rev_8u16s_C3P3R,     KIP_C_P(Kip8u, Kip16s, 3),  kPointersOnly, Convert<Lift<int16_t>, Bgr<Kip8u, Kip16s>, P3<Kip16s>>)
KIP_FUNCTION(kipiSBGRToYCoCg_Rev_16s_C3P3R,      KIP_C_P(Kip16s, Kip16s, 3), kPointersOnly, Convert<Lift<int16_t>, Bgr<Kip16s, Kip16s>, P3<Kip16s>>)
KIP_FUNCTION(kipiSBGRToYCoCg_Rev_16s32s_C3P3R,   KIP_C_P(Kip16s, Kip32s, 3), kPointersOnly, Convert<Lift<int32_t>, Bgr<Kip16s, Kip32s>, P3<Kip32s>>)
KIP_FUNCTION(kipiBGRToYCoCg_Rev_8u16s_C4P3R,     KIP_C_P(Kip8u, Kip16s, 3),  kPointersOnly, Convert<Lift<int16_t>, Bgrx<Kip8u, Kip16s>, P3<Kip16s>>)
KIP_FUNCTION(kipiSBGRToYCoCg_Rev_16s_C4P3R,      KIP_C_P(Kip16s, Kip16s, 3), kPointersOnly, Convert<Lift<int16_t>, Bgrx<Kip16s, Kip16s>, P3<Kip16s>>)
KIP_FUNCTION(kipiSBGRToYCoCg_Rev_16s32s_C4P3R,   KIP_C_P(Kip16s, Kip32s, 3), kPointersOnly, Convert<Lift<int32_t>, Bgrx<Kip16s, Kip32s>, P3<Kip32s>>)

KIP_FUNCTION(kipiYCoCgToBGR_16s8u_P3C3R,         KIP_P_C(Kip16s, Kip8u, 3),  kPointersOnly, Convert<Inverse<int16_t>, P3<Kip16s>, Bgr<Kip8u, Kip16s>>)
KIP_FUNCTION(kipiYCoCgToSBGR_16s_P3C3R,          KIP_P_C(Kip16s, Kip16s, 3), kPointersOnly, Convert<Inverse<int16_t>, P3<Kip16s>, Bgr<Kip16s, Kip16s>>)
KIP_FUNCTION(kipiYCoCgToSBGR_32s16s_P3C3R,       KIP_P_C(Kip32s, Kip16s, 3), kPointersOnly, Convert<Inverse<int32_t>, P3<Kip32s>, Bgr<Kip16s, Kip32s>>)
KIP_FUNCTION(kipiYCoCgToBGR_16s8u_P3C4R,         KIP_P_CA(Kip16s, Kip8u, 3), kPointersOnly, Convert<Inverse<int16_t>, P3<Kip16s>, Bgra<Kip8u, Kip16s>>)
KIP_FUNCTION(kipiYCoCgToSBGR_16s_P3C4R,          KIP_P_CA(Kip16s, Kip16s, 3),kPointersOnly, Convert<Inverse<int16_t>, P3<Kip16s>, Bgra<Kip16s, Kip16s>>)
KIP_FUNCTION(kipiYCoCgToSBGR_32s16s_P3C4R,       KIP_P_CA(Kip32s, Kip16s, 3),kPointersOnly, Convert<Inverse<int32_t>, P3<Kip32s>, Bgra<Kip16s, Kip32s>>)

KIP_FUNCTION(kipiYCoCgToBGR_Rev_16s8u_P3C3R,     KIP_P_C(Kip16s, Kip8u, 3),  kPointersOnly, Convert<Unlift<int16_t>, P3<Kip16s>, Bgr<Kip8u, Kip16s>>)
KIP_FUNCTION(kipiYCoCgToSBGR_Rev_16s_P3C3R,      KIP_P_C(Kip16s, Kip16s, 3), kPointersOnly, Convert<Unlift<int16_t>, P3<Kip16s>, Bgr<Kip16s, Kip16s>>)
KIP_FUNCTION(kipiYCoCgToSBGR_Rev_32s16s_P3C3R,   KIP_P_C(Kip32s, Kip16s, 3), kPointersOnly, Convert<Unlift<int32_t>, P3<Kip32s>, Bgr<Kip16s, Kip32s>>)
KIP_FUNCTION(kipiYCoCgToBGR_Rev_16s8u_P3C4R,     KIP_P_CA(Kip16s, Kip8u, 3), kPointersOnly, Convert<Unlift<int16_t>, P3<Kip16s>, Bgra<Kip8u, Kip16s>>)
KIP_FUNCTION(kipiYCoCgToSBGR_Rev_16s_P3C4R,      KIP_P_CA(Kip16s, Kip16s, 3),kPointersOnly, Convert<Unlift<int16_t>, P3<Kip16s>, Bgra<Kip16s, Kip16s>>)
KIP_FUNCTION(kipiYCoCgToSBGR_Rev_32s16s_P3C4R,   KIP_P_CA(Kip32s, Kip16s, 3),kPointersOnly, Convert<Unlift<int32_t>, P3<Kip32s>, Bgra<Kip16s, Kip32s>>)
// clang-format on
