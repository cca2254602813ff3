// The functions between layouts of subsampled YCbCr: name, arguments, rules, kernel.
// clang-format off
// The same sampling
KIP_FUNCTION(kipiYCbCr422ToCbYCr422_8u_C2R,                    KIP_C_C(Kip8u, Kip8u),          k422,        Reorder<1, 0, 3, 2>)
KIP_FUNCTION(kipiCbYCr422ToYCbCr422_8u_C2R,                    KIP_C_C(Kip8u, Kip8u),          k422,        Reorder<1, 0, 3, 2>)
KIP_FUNCTION(kipiYCbCr422ToYCrCb422_8u_C2R,                    KIP_C_C(Kip8u, Kip8u),          k422,        Reorder<0, 3, 2, 1>)
KIP_FUNCTION(kipiYCbCr422_8u_C2P3R,                            KIP_C_PS(Kip8u, Kip8u, 3),      k422,        Relayout<YCbCr422C2, YCbCr422P3>)
KIP_FUNCTION(kipiYCbCr422_8u_P3C2R,                            KIP_PS_C(Kip8u, Kip8u, 3),      k422,        Relayout<YCbCr422P3, YCbCr422C2>)
KIP_FUNCTION(kipiYCbCr422ToYCrCb422_8u_P3C2R,                  KIP_PS_C(Kip8u, Kip8u, 3),      k422,        Relayout<YCbCr422P3, YCrCb422C2>)
KIP_FUNCTION(kipiCbYCr422ToYCbCr422_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k422,        Relayout<CbYCr422C2, YCbCr422P3>)
KIP_FUNCTION(kipiYCrCb422ToYCbCr422_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k422,        Relayout<YCrCb422C2, YCbCr422P3>)
KIP_FUNCTION(kipiYCbCr420_8u_P3P2R,                            KIP_PS_PS(Kip8u, Kip8u, 3, 2),  k420,        Relayout<YCbCr420P3, YCbCr420P2>)
KIP_FUNCTION(kipiYCbCr420_8u_P2P3R,                            KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k420,        Relayout<YCbCr420P2, YCbCr420P3>)
KIP_FUNCTION(kipiYCbCr420ToYCrCb420_8u_P2P3R,                  KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k420,        Relayout<YCbCr420P2, YCrCb420P3>)
KIP_FUNCTION(kipiYCrCb420ToYCbCr420_8u_P3P2R,                  KIP_PS_PS(Kip8u, Kip8u, 3, 2),  k420,        Relayout<YCrCb420P3, YCbCr420P2>)
KIP_FUNCTION(kipiYCbCr411_8u_P3P2R,                            KIP_PS_PS(Kip8u, Kip8u, 3, 2),  k411,        Relayout<YCbCr411P3, YCbCr411P2>)
KIP_FUNCTION(kipiYCbCr411_8u_P2P3R,                            KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k411,        Relayout<YCbCr411P2, YCbCr411P3>)

// 4:2:2 to 4:2:0: the chroma of even rows
KIP_FUNCTION(kipiYCbCr422ToYCbCr420_8u_P3R,                    KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k420,        Relayout<YCbCr422P3, YCbCr420P3>)
KIP_FUNCTION(kipiYCbCr422ToYCbCr420_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k420,        Relayout<YCbCr422C2, YCbCr420P3>)
KIP_FUNCTION(kipiYCbCr422ToYCbCr420_8u_C2P2R,                  KIP_C_PS(Kip8u, Kip8u, 2),      k420,        Relayout<YCbCr422C2, YCbCr420P2>)
KIP_FUNCTION(kipiYCbCr422ToYCbCr420_8u_P3P2R,                  KIP_PS_PS(Kip8u, Kip8u, 3, 2),  k420,        Relayout<YCbCr422P3, YCbCr420P2>)
KIP_FUNCTION(kipiCbYCr422ToYCbCr420_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k420,        Relayout<CbYCr422C2, YCbCr420P3>)
KIP_FUNCTION(kipiCbYCr422ToYCbCr420_8u_C2P2R,                  KIP_C_PS(Kip8u, Kip8u, 2),      k420,        Relayout<CbYCr422C2, YCbCr420P2>)
KIP_FUNCTION(kipiCbYCr422ToYCrCb420_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k420,        Relayout<CbYCr422C2, YCrCb420P3>)
KIP_FUNCTION(kipiYCbCr422ToYCrCb420_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k420,        Relayout<YCbCr422C2, YCrCb420P3>)
KIP_FUNCTION(kipiYCrCb422ToYCbCr420_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k420,        Relayout<YCrCb422C2, YCbCr420P3>)

// 4:2:0 to 4:2:2: each row of chroma twice
KIP_FUNCTION(kipiYCbCr420ToYCbCr422_8u_P3R,                    KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k420,        Relayout<YCbCr420P3, YCbCr422P3>)
KIP_FUNCTION(kipiYCbCr420ToYCbCr422_8u_P2P3R,                  KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k420,        Relayout<YCbCr420P2, YCbCr422P3>)
KIP_FUNCTION(kipiYCbCr420ToYCbCr422_8u_P2C2R,                  KIP_PS_C(Kip8u, Kip8u, 2),      k420,        Relayout<YCbCr420P2, YCbCr422C2>)
KIP_FUNCTION(kipiYCbCr420ToCbYCr422_8u_P2C2R,                  KIP_PS_C(Kip8u, Kip8u, 2),      k420,        Relayout<YCbCr420P2, CbYCr422C2>)
KIP_FUNCTION(kipiYCrCb420ToYCbCr422_8u_P3R,                    KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k420,        Relayout<YCrCb420P3, YCbCr422P3>)
KIP_FUNCTION(kipiYCrCb420ToYCbCr422_8u_P3C2R,                  KIP_PS_C(Kip8u, Kip8u, 3),      k420,        Relayout<YCrCb420P3, YCbCr422C2>)
KIP_FUNCTION(kipiYCrCb420ToCbYCr422_8u_P3C2R,                  KIP_PS_C(Kip8u, Kip8u, 3),      k420,        Relayout<YCrCb420P3, CbYCr422C2>)

// 4:2:2 to 4:1:1: every second sample of chroma
KIP_FUNCTION(kipiYCbCr422ToYCbCr411_8u_P3R,                    KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k411,        Relayout<YCbCr422P3, YCbCr411P3>)
KIP_FUNCTION(kipiYCbCr422ToYCbCr411_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k411,        Relayout<YCbCr422C2, YCbCr411P3>)
KIP_FUNCTION(kipiYCbCr422ToYCbCr411_8u_C2P2R,                  KIP_C_PS(Kip8u, Kip8u, 2),      k411,        Relayout<YCbCr422C2, YCbCr411P2>)
KIP_FUNCTION(kipiYCbCr422ToYCbCr411_8u_P3P2R,                  KIP_PS_PS(Kip8u, Kip8u, 3, 2),  k411,        Relayout<YCbCr422P3, YCbCr411P2>)
KIP_FUNCTION(kipiCbYCr422ToYCbCr411_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k411,        Relayout<CbYCr422C2, YCbCr411P3>)
KIP_FUNCTION(kipiYCrCb422ToYCbCr411_8u_C2P3R,                  KIP_C_PS(Kip8u, Kip8u, 3),      k411,        Relayout<YCrCb422C2, YCbCr411P3>)

// 4:1:1 to 4:2:2: each sample of chroma twice
KIP_FUNCTION(kipiYCbCr411ToYCbCr422_8u_P3R,                    KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k411,        Relayout<YCbCr411P3, YCbCr422P3>)
KIP_FUNCTION(kipiYCbCr411ToYCbCr422_8u_P3C2R,                  KIP_PS_C(Kip8u, Kip8u, 3),      k411,        Relayout<YCbCr411P3, YCbCr422C2>)
KIP_FUNCTION(kipiYCbCr411ToYCbCr422_8u_P2C2R,                  KIP_PS_C(Kip8u, Kip8u, 2),      k411,        Relayout<YCbCr411P2, YCbCr422C2>)
KIP_FUNCTION(kipiYCbCr411ToYCbCr422_8u_P2P3R,                  KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k411,        Relayout<YCbCr411P2, YCbCr422P3>)
KIP_FUNCTION(kipiYCbCr411ToYCrCb422_8u_P3R,                    KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k411,        Relayout<YCbCr411P3, YCrCb422P3>)
KIP_FUNCTION(kipiYCbCr411ToYCrCb422_8u_P3C2R,                  KIP_PS_C(Kip8u, Kip8u, 3),      k411,        Relayout<YCbCr411P3, YCrCb422C2>)

// Between 4:1:1 and 4:2:0, by every second and twice
KIP_FUNCTION(kipiYCbCr411ToYCbCr420_8u_P3R,                    KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k411And420,  Relayout<YCbCr411P3, YCbCr420P3>)
KIP_FUNCTION(kipiYCbCr411ToYCbCr420_8u_P2P3R,                  KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k411And420,  Relayout<YCbCr411P2, YCbCr420P3>)
KIP_FUNCTION(kipiYCbCr411ToYCbCr420_8u_P3P2R,                  KIP_PS_PS(Kip8u, Kip8u, 3, 2),  k411And420,  Relayout<YCbCr411P3, YCbCr420P2>)
KIP_FUNCTION(kipiYCbCr411ToYCrCb420_8u_P2P3R,                  KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k411And420,  Relayout<YCbCr411P2, YCrCb420P3>)
KIP_FUNCTION(kipiYCbCr420ToYCbCr411_8u_P2P3R,                  KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k411And420,  Relayout<YCbCr420P2, YCbCr411P3>)
KIP_FUNCTION(kipiYCbCr420ToYCbCr411_8u_P3P2R,                  KIP_PS_PS(Kip8u, Kip8u, 3, 2),  k411And420,  Relayout<YCbCr420P3, YCbCr411P2>)
KIP_FUNCTION(kipiYCrCb420ToYCbCr411_8u_P3P2R,                  KIP_PS_PS(Kip8u, Kip8u, 3, 2),  k411And420,  Relayout<YCrCb420P3, YCbCr411P2>)

// Between 4:1:1 and 4:2:0, with averages
KIP_FUNCTION(kipiYCbCr420To411_8u_P3R,                         KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k411And420,  Relayout<YCbCr420P3, YCbCr411P3, AverageColumns>)
KIP_FUNCTION(kipiYCbCr411To420_8u_P3R,                         KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k411And420,  Relayout<YCbCr411P3, YCbCr420P3, AverageRows>)

// Between 4:2:0 and chroma of every fourth column and row
KIP_FUNCTION(kipiYCbCr1620To420_8u_P3R,                        KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k1620,       Double1620)
KIP_FUNCTION(kipiYCbCr420To1620_8u_P3R,                        KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k1620,       Relayout<YCbCr420P3, YCbCr1620P3>)

// 4:2:0 to 4:2:2, new rows of chroma filtered
KIP_FUNCTION(kipiYCbCr420ToYCbCr422_Filter_8u_P3R,             KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k420,        Relayout<YCbCr420P3, YCbCr422P3, FourTap>)
KIP_FUNCTION(kipiYCbCr420ToYCbCr422_Filter_8u_P2P3R,           KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k420,        Relayout<YCbCr420P2, YCbCr422P3, FourTap>)
KIP_FUNCTION(kipiYCbCr420ToYCbCr422_Filter_8u_P2C2R,           KIP_PS_C(Kip8u, Kip8u, 2),      k420,        Relayout<YCbCr420P2, YCbCr422C2, FourTap>)
KIP_FUNCTION(kipiYCrCb420ToYCbCr422_Filter_8u_P3R,             KIP_PS_PS(Kip8u, Kip8u, 3, 3),  k420,        Relayout<YCrCb420P3, YCbCr422P3, FourTap>)
KIP_FUNCTION(kipiYCbCr420ToYCrCb420_Filter_8u_P2P3R,           KIP_PS_PS(Kip8u, Kip8u, 2, 3),  k420,        Relayout<YCbCr420P2, YCrCb420P3>)

// Between 4:2:2 and 4:2:0, field by field
KIP_FUNCTION(kipiYCbCr422To420_Interlace_8u_P3R,               KIP_PS_PS(Kip8u, Kip8u, 3, 3),  kInterlaced, Relayout<YCbCr422P3, YCbCr420P3, FieldsToHalf>)
KIP_FUNCTION(kipiCbYCr422ToYCbCr420_Interlace_8u_C2P3R,        KIP_C_PS(Kip8u, Kip8u, 3),      kInterlaced, Relayout<CbYCr422C2, YCbCr420P3, FieldsToHalf>)
KIP_FUNCTION(kipiYCbCr420To422_Interlace_8u_P3R,               KIP_PS_PS(Kip8u, Kip8u, 3, 3),  kInterlacedFrom4Rows, Relayout<YCbCr420P3, YCbCr422P3, FieldsToDouble>)
KIP_FUNCTION(kipiYCbCr420ToCbYCr422_Interlace_8u_P3C2R,        KIP_PS_C(Kip8u, Kip8u, 3),      kInterlaced, Relayout<YCbCr420P3, CbYCr422C2, FieldsToDouble>)
// clang-format on
