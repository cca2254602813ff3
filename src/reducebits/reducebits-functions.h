// The bit reductions: name, arguments, types of samples, kernel.
// clang-format off
KIP_FUNCTION(kipiReduceBits_8u_C1R,         KIP_REDUCE(Kip8u,  Kip8u,  kC1),  k8u,      Reduce<Kip8u, Kip8u>)
KIP_FUNCTION(kipiReduceBits_8u_C3R,         KIP_REDUCE(Kip8u,  Kip8u,  kC3),  k8u,      Reduce<Kip8u, Kip8u>)
KIP_FUNCTION(kipiReduceBits_8u_C4R,         KIP_REDUCE(Kip8u,  Kip8u,  kC4),  k8u,      Reduce<Kip8u, Kip8u>)
KIP_FUNCTION(kipiReduceBits_8u_AC4R,        KIP_REDUCE(Kip8u,  Kip8u,  kAC4), k8u,      Reduce<Kip8u, Kip8u>)

KIP_FUNCTION(kipiReduceBits_16u_C1R,        KIP_REDUCE(Kip16u, Kip16u, kC1),  k16u,     Reduce<Kip16u, Kip16u>)
KIP_FUNCTION(kipiReduceBits_16u_C3R,        KIP_REDUCE(Kip16u, Kip16u, kC3),  k16u,     Reduce<Kip16u, Kip16u>)
KIP_FUNCTION(kipiReduceBits_16u_C4R,        KIP_REDUCE(Kip16u, Kip16u, kC4),  k16u,     Reduce<Kip16u, Kip16u>)
KIP_FUNCTION(kipiReduceBits_16u_AC4R,       KIP_REDUCE(Kip16u, Kip16u, kAC4), k16u,     Reduce<Kip16u, Kip16u>)

KIP_FUNCTION(kipiReduceBits_16s_C1R,        KIP_REDUCE(Kip16s, Kip16s, kC1),  k16s,     Reduce<Kip16s, Kip16s>)
KIP_FUNCTION(kipiReduceBits_16s_C3R,        KIP_REDUCE(Kip16s, Kip16s, kC3),  k16s,     Reduce<Kip16s, Kip16s>)
KIP_FUNCTION(kipiReduceBits_16s_C4R,        KIP_REDUCE(Kip16s, Kip16s, kC4),  k16s,     Reduce<Kip16s, Kip16s>)
KIP_FUNCTION(kipiReduceBits_16s_AC4R,       KIP_REDUCE(Kip16s, Kip16s, kAC4), k16s,     Reduce<Kip16s, Kip16s>)

KIP_FUNCTION(kipiReduceBits_16u8u_C1R,      KIP_REDUCE(Kip16u, Kip8u,  kC1),  k16u8u,   Reduce<Kip16u, Kip8u>)
KIP_FUNCTION(kipiReduceBits_16u8u_C3R,      KIP_REDUCE(Kip16u, Kip8u,  kC3),  k16u8u,   Reduce<Kip16u, Kip8u>)
KIP_FUNCTION(kipiReduceBits_16u8u_C4R,      KIP_REDUCE(Kip16u, Kip8u,  kC4),  k16u8u,   Reduce<Kip16u, Kip8u>)
KIP_FUNCTION(kipiReduceBits_16u8u_AC4R,     KIP_REDUCE(Kip16u, Kip8u,  kAC4), k16u8u,   Reduce<Kip16u, Kip8u>)

KIP_FUNCTION(kipiReduceBits_16s8u_C1R,      KIP_REDUCE(Kip16s, Kip8u,  kC1),  k16s8u,   Reduce<Kip16s, Kip8u>)
KIP_FUNCTION(kipiReduceBits_16s8u_C3R,      KIP_REDUCE(Kip16s, Kip8u,  kC3),  k16s8u,   Reduce<Kip16s, Kip8u>)
KIP_FUNCTION(kipiReduceBits_16s8u_C4R,      KIP_REDUCE(Kip16s, Kip8u,  kC4),  k16s8u,   Reduce<Kip16s, Kip8u>)
KIP_FUNCTION(kipiReduceBits_16s8u_AC4R,     KIP_REDUCE(Kip16s, Kip8u,  kAC4), k16s8u,   Reduce<Kip16s, Kip8u>)

KIP_FUNCTION(kipiReduceBits_32f8u_C1R,      KIP_REDUCE(Kip32f, Kip8u,  kC1),  k32f8u,   Reduce<Kip32f, Kip8u>)
KIP_FUNCTION(kipiReduceBits_32f8u_C3R,      KIP_REDUCE(Kip32f, Kip8u,  kC3),  k32f8u,   Reduce<Kip32f, Kip8u>)
KIP_FUNCTION(kipiReduceBits_32f8u_C4R,      KIP_REDUCE(Kip32f, Kip8u,  kC4),  k32f8u,   Reduce<Kip32f, Kip8u>)
KIP_FUNCTION(kipiReduceBits_32f8u_AC4R,     KIP_REDUCE(Kip32f, Kip8u,  kAC4), k32f8u,   Reduce<Kip32f, Kip8u>)

KIP_FUNCTION(kipiReduceBits_32f16u_C1R,     KIP_REDUCE(Kip32f, Kip16u, kC1),  k32f16u,  Reduce<Kip32f, Kip16u>)
KIP_FUNCTION(kipiReduceBits_32f16u_C3R,     KIP_REDUCE(Kip32f, Kip16u, kC3),  k32f16u,  Reduce<Kip32f, Kip16u>)
KIP_FUNCTION(kipiReduceBits_32f16u_C4R,     KIP_REDUCE(Kip32f, Kip16u, kC4),  k32f16u,  Reduce<Kip32f, Kip16u>)
KIP_FUNCTION(kipiReduceBits_32f16u_AC4R,    KIP_REDUCE(Kip32f, Kip16u, kAC4), k32f16u,  Reduce<Kip32f, Kip16u>)

KIP_FUNCTION(kipiReduceBits_32f16s_C1R,     KIP_REDUCE(Kip32f, Kip16s, kC1),  k32f16s,  Reduce<Kip32f, Kip16s>)
KIP_FUNCTION(kipiReduceBits_32f16s_C3R,     KIP_REDUCE(Kip32f, Kip16s, kC3),  k32f16s,  Reduce<Kip32f, Kip16s>)
KIP_FUNCTION(kipiReduceBits_32f16s_C4R,     KIP_REDUCE(Kip32f, Kip16s, kC4),  k32f16s,  Reduce<Kip32f, Kip16s>)
KIP_FUNCTION(kipiReduceBits_32f16s_AC4R,    KIP_REDUCE(Kip32f, Kip16s, kAC4), k32f16s,  Reduce<Kip32f, Kip16s>)
// clang-format on
