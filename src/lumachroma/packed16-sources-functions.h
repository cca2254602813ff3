// The functions from packed 16-bit RGB: name, arguments, rules, kernel.
// clang-format off
// The lowest field goes to the first byte, whatever its colour.
KIP_FUNCTION(kipiRGB565ToRGB_16u8u_C3R,           KIP_C_C(Kip16u, Kip8u),      kPositiveSteps,  Convert<Same, Rgb565, C3<>>)
KIP_FUNCTION(kipiBGR565ToBGR_16u8u_C3R,           KIP_C_C(Kip16u, Kip8u),      kPositiveSteps,  Convert<Same, Rgb565, C3<>>)

KIP_FUNCTION(kipiBGR555ToYCbCr411_16u8u_C3P3R,    KIP_C_PS(Kip16u, Kip8u, 3),  kQuads,          YCbCr<Bgr555, Planar411>)
KIP_FUNCTION(kipiBGR555ToYCbCr420_16u8u_C3P3R,    KIP_C_PS(Kip16u, Kip8u, 3),  kBlocks,         YCbCr<Bgr555, Planar420>)
KIP_FUNCTION(kipiBGR555ToYCrCb420_16u8u_C3P3R,    KIP_C_PS(Kip16u, Kip8u, 3),  kBlocks,         YCbCr<Bgr555, Planar420Swapped>)
KIP_FUNCTION(kipiBGR555ToYCbCr422_16u8u_C3C2R,    KIP_C_C(Kip16u, Kip8u),      kPairs,          PackedPairs<Bgr555>)
KIP_FUNCTION(kipiBGR555ToYCbCr422_16u8u_C3P3R,    KIP_C_PS(Kip16u, Kip8u, 3),  kPairs,          YCbCr<Bgr555, Planar422>)
KIP_FUNCTION(kipiBGR555ToYUV420_16u8u_C3P3R,      KIP_C_PS(Kip16u, Kip8u, 3),  kYuv420,         Yuv420<Bgr555>)

KIP_FUNCTION(kipiBGR565ToYCbCr411_16u8u_C3P3R,    KIP_C_PS(Kip16u, Kip8u, 3),  kQuads,          YCbCr<Bgr565, Planar411>)
KIP_FUNCTION(kipiBGR565ToYCbCr420_16u8u_C3P3R,    KIP_C_PS(Kip16u, Kip8u, 3),  kBlocks,         YCbCr<Bgr565, Planar420>)
KIP_FUNCTION(kipiBGR565ToYCrCb420_16u8u_C3P3R,    KIP_C_PS(Kip16u, Kip8u, 3),  kBlocks,         YCbCr<Bgr565, Planar420Swapped>)
KIP_FUNCTION(kipiBGR565ToYCbCr422_16u8u_C3C2R,    KIP_C_C(Kip16u, Kip8u),      kPairs,          PackedPairs<Bgr565>)
KIP_FUNCTION(kipiBGR565ToYCbCr422_16u8u_C3P3R,    KIP_C_PS(Kip16u, Kip8u, 3),  kPairs,          YCbCr<Bgr565, Planar422>)
KIP_FUNCTION(kipiBGR565ToYUV420_16u8u_C3P3R,      KIP_C_PS(Kip16u, Kip8u, 3),  kYuv420,         Yuv420<Bgr565>)
KIP_FUNCTION(kipiRGB565ToYUV420_16u8u_C3P3R,      KIP_C_PS(Kip16u, Kip8u, 3),  kYuv420,         Yuv420<Rgb565>)
KIP_FUNCTION(kipiRGB565ToYUV422_16u8u_C3P3R,      KIP_C_PS(Kip16u, Kip8u, 3),  kYuv422,         Yuv422<Rgb565>)
// clang-format on
