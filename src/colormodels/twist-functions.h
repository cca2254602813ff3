// The colour twists: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiColorTwist_32f_C3R,        KIP_TWIST_C_C(Kip32f, 3),   kTwist, Twist32f<C3<float>>)
KIP_FUNCTION(kipiColorTwist_32f_AC4R,       KIP_TWIST_C_C(Kip32f, 3),   kTwist, Twist32f<AC4<float>>)
KIP_FUNCTION(kipiColorTwist_32f_P3R,        KIP_TWIST_P_P(Kip32f),      kTwist, Twist32f<P3<float>>)
KIP_FUNCTION(kipiColorTwist_32f_C3IR,       KIP_TWIST_I_C(Kip32f),      kTwist, Twist32f<C3<float>>)
KIP_FUNCTION(kipiColorTwist_32f_AC4IR,      KIP_TWIST_I_C(Kip32f),      kTwist, Twist32f<AC4<float>>)
KIP_FUNCTION(kipiColorTwist_32f_IP3R,       KIP_TWIST_I_P(Kip32f),      kTwist, Twist32f<P3<float>>)

KIP_FUNCTION(kipiColorTwist32f_8u_C3R,      KIP_TWIST_C_C(Kip8u, 3),    kTwist, Twist8u<C3<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8u_AC4R,     KIP_TWIST_C_C(Kip8u, 3),    kTwist, Twist8u<AC4<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8u_P3R,      KIP_TWIST_P_P(Kip8u),       kTwist, Twist8u<P3<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8u_C3IR,     KIP_TWIST_I_C(Kip8u),       kTwist, Twist8u<C3<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8u_AC4IR,    KIP_TWIST_I_C(Kip8u),       kTwist, Twist8u<AC4<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8u_IP3R,     KIP_TWIST_I_P(Kip8u),       kTwist, Twist8u<P3<uint8_t>>)

KIP_FUNCTION(kipiColorTwist32f_8s_C3R,      KIP_TWIST_C_C(Kip8s, 3),    kTwist, Twist8s<C3<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8s_AC4R,     KIP_TWIST_C_C(Kip8s, 3),    kTwist, Twist8s<AC4<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8s_P3R,      KIP_TWIST_P_P(Kip8s),       kTwist, Twist8s<P3<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8s_C3IR,     KIP_TWIST_I_C(Kip8s),       kTwist, Twist8s<C3<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8s_AC4IR,    KIP_TWIST_I_C(Kip8s),       kTwist, Twist8s<AC4<uint8_t>>)
KIP_FUNCTION(kipiColorTwist32f_8s_IP3R,     KIP_TWIST_I_P(Kip8s),       kTwist, Twist8s<P3<uint8_t>>)

KIP_FUNCTION(kipiColorTwist32f_16u_C3R,     KIP_TWIST_C_C(Kip16u, 3),   kTwist, Twist16u<C3<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16u_AC4R,    KIP_TWIST_C_C(Kip16u, 3),   kTwist, Twist16u<AC4<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16u_P3R,     KIP_TWIST_P_P(Kip16u),      kTwist, Twist16u<P3<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16u_C3IR,    KIP_TWIST_I_C(Kip16u),      kTwist, Twist16u<C3<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16u_AC4IR,   KIP_TWIST_I_C(Kip16u),      kTwist, Twist16u<AC4<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16u_IP3R,    KIP_TWIST_I_P(Kip16u),      kTwist, Twist16u<P3<uint16_t>>)

KIP_FUNCTION(kipiColorTwist32f_16s_C3R,     KIP_TWIST_C_C(Kip16s, 3),   kTwist, Twist16s<C3<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16s_AC4R,    KIP_TWIST_C_C(Kip16s, 3),   kTwist, Twist16s<AC4<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16s_P3R,     KIP_TWIST_P_P(Kip16s),      kTwist, Twist16s<P3<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16s_C3IR,    KIP_TWIST_I_C(Kip16s),      kTwist, Twist16s<C3<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16s_AC4IR,   KIP_TWIST_I_C(Kip16s),      kTwist, Twist16s<AC4<uint16_t>>)
KIP_FUNCTION(kipiColorTwist32f_16s_IP3R,    KIP_TWIST_I_P(Kip16s),      kTwist, Twist16s<P3<uint16_t>>)

KIP_FUNCTION(kipiColorTwist_32f_C4R,        KIP_TWIST_C_C(Kip32f, 4),   kTwist, FourChannels)
// clang-format on
