// The functions between BGR and Lab: name, arguments, rules, kernel.
// clang-format off
KIP_FUNCTION(kipiBGRToLab_8u_C3R,    KIP_C_C(Kip8u, Kip8u),  kAlwaysSplit, Convert<EncodeBytes, Bgr<Kip8u>, C3<>>)
KIP_FUNCTION(kipiBGRToLab_8u16u_C3R, KIP_C_C(Kip8u, Kip16u), kAlwaysSplit, Convert<Encode<Words>, Bgr<Kip16u>, C3<Kip16u>>)
KIP_FUNCTION(kipiLabToBGR_8u_C3R,    KIP_C_C(Kip8u, Kip8u),  kAlwaysSplit, Convert<Decode<Bytes>, C3<>, Bgr<Kip8u>>)
KIP_FUNCTION(kipiLabToBGR_16u8u_C3R, KIP_C_C(Kip16u, Kip8u), kAlwaysSplit, Convert<Decode<Words>, C3<Kip16u>, Bgr<Kip16u>>)
// clang-format on
