// kipconvert: its frames are those of libkipconvert, and its caps what one expects of a converter.

#include <gtest/gtest.h>

#include "harness.h"
#include "kipconvert.h"

namespace {

/// All formats of the element, from its pad's template.
std::vector<std::string> formatsOfElement() {
  GstElement* element = gst_element_factory_make("kipconvert", nullptr);
  GstPad* pad = gst_element_get_static_pad(element, "sink");
  GstCaps* caps = gst_pad_get_pad_template_caps(pad);
  const GValue* list = gst_structure_get_value(gst_caps_get_structure(caps, 0), "format");
  std::vector<std::string> formats;
  for (guint i = 0; i < gst_value_list_get_size(list); ++i) {
    formats.push_back(g_value_get_string(gst_value_list_get_value(list, i)));
  }
  gst_caps_unref(caps);
  gst_object_unref(pad);
  gst_object_unref(element);
  return formats;
}

std::string rawCaps(const std::string& format, int width, int height, const std::string& more = "") {
  return "video/x-raw,format=" + format + ",width=" + std::to_string(width) + ",height=" + std::to_string(height) +
         ",framerate=30/1" + more;
}

/// The planes of a frame in the order of the library's format, which names the channel that each begins with.
KipPlanes planesOf(const Frame& frame, KipFormat format) {
  KipPlanes planes = {};
  const KipFormatInfo& info = *kipFormatInfo(format);
  const std::string order = std::string(" ") + info.order;
  for (int p = 0, at = 0; p < info.planes; ++p, at = int(order.find(' ', at + 1))) {
    const size_t component = std::string(info.family == kipFamilyRGB ? "RGBA" : "YUVA").find(order[at + 1]);
    const int plane = info.planes == 1 ? 0 : GST_VIDEO_INFO_COMP_PLANE(&frame.info(), component);
    planes.plane[p] = const_cast<uint8_t*>(frame.row(plane, 0));
    planes.step[p] = frame.row(plane, 1) - frame.row(plane, 0);
  }
  return planes;
}

/// Every second row, from the first or the second on.
KipPlanes fieldOf(KipPlanes planes, int field) {
  for (int p = 0; p < 4; ++p) {
    planes.plane[p] = static_cast<char*>(planes.plane[p]) + field * planes.step[p];
    planes.step[p] *= 2;
  }
  return planes;
}

/// The library does not know those by name whose planes come in another order.
KipFormat formatNamed(const std::string& name) {
  if (name == "RGBP" || name == "BGRP") return kipFormatGBRP;
  if (name == "YV12") return kipFormatYUV420P;
  return name == "YVU9" ? kipFormatYUV410P : kipFormatByName(name.c_str());
}

/// What small frames are to GStreamer where their caps do not say it.
KipPicture pictureOf(const GstVideoInfo& info) {
  const KipFormat format = formatNamed(GST_VIDEO_INFO_NAME(&info));
  const int width = GST_VIDEO_INFO_WIDTH(&info), height = GST_VIDEO_INFO_HEIGHT(&info);
  if (GST_VIDEO_INFO_IS_YUV(&info)) return {format, width, height, kipMatrixBT601, kipRangeLimited, kipSiteCenter};
  const KipMatrix matrix = GST_VIDEO_INFO_IS_GRAY(&info) ? kipMatrixBT601 : kipMatrixIdentity;
  return {format, width, height, matrix, kipRangeFull, kipSiteUnspecified};
}

/// Whether two pictures have the same samples, paddings aside.
void expectSame(const KipPlanes& a, const KipPlanes& b, const KipPicture& picture) {
  const KipFormatInfo& format = *kipFormatInfo(picture.format);
  for (int p = 0; p < format.planes; ++p) {
    const int groups = (picture.width + format.groupPixels[p] - 1) / format.groupPixels[p];
    const int rows = (picture.height + (1 << format.rowShift[p]) - 1) >> format.rowShift[p];
    for (int y = 0; y < rows; ++y) {
      const auto row = [&](const KipPlanes& of) { return static_cast<char*>(of.plane[p]) + y * of.step[p]; };
      ASSERT_EQ(memcmp(row(a), row(b), size_t(groups) * format.groupBytes[p]), 0) << "plane " << p << " row " << y;
    }
  }
}

/// A conversion as the element should make it: by default what the formats alone say.
struct Wanted {
  Wanted(const std::string& in, const std::string& out) : from(pictureOf(infoOf(in))), to(pictureOf(infoOf(out))) {
    options.size = sizeof options;
    options.dither = kipDitherBayer;
  }

  KipPicture from, to;
  KipPlanOptions options = {};
};

/// Converts a frame of noise, and by the library alone another of the same bytes.
void expectConverts(Harness& harness, const std::string& in, const std::string& out, const Wanted& wanted,
                    unsigned padding = 0, int fields = 1) {
  SCOPED_TRACE(in + " to " + out);
  const Buffer source = noise(in, padding), result = harness.convert(copyOf(source)), expected = noise(out);
  const Frame sourceFrame(in, source), resultFrame(out, result), expectedFrame(out, expected);
  KipPlanes src = planesOf(sourceFrame, wanted.from.format), dst = planesOf(expectedFrame, wanted.to.format);
  for (int field = 0; field < fields; ++field) {
    KipPicture from = wanted.from, to = wanted.to;
    from.height = to.height = (from.height + fields - 1 - field) / fields;
    KipPlan* plan = nullptr;
    ASSERT_EQ(kipPlanMake(&from, &to, &wanted.options, &plan), kipStatusOk);
    const KipPlanes fieldSrc = fields == 1 ? src : fieldOf(src, field),
                    fieldDst = fields == 1 ? dst : fieldOf(dst, field);
    EXPECT_EQ(kipPlanRun(plan, &fieldSrc, &fieldDst), kipStatusOk);
    kipPlanFree(plan);
  }
  expectSame(planesOf(resultFrame, wanted.to.format), dst, wanted.to);
}

TEST(KipConvert, EveryPairOfFormats) {
  const std::vector<std::string> formats = formatsOfElement();
  EXPECT_GE(formats.size(), 45u);
  for (const std::string& from : formats) {
    for (const std::string& to : formats) {
      if (from == to) continue;
      const std::string in = rawCaps(from, 37, 21), out = rawCaps(to, 37, 21);
      Harness harness("kipconvert n-threads=2", in, out);
      ASSERT_NO_FATAL_FAILURE(expectConverts(harness, in, out, Wanted(in, out)));
    }
  }
}

TEST(KipConvert, ColoursAreThoseOfTheCaps) {
  const struct {
    const char* caps;
    int height;
    KipMatrix matrix;
    KipRange range;
    KipChromaSite site;
  } cases[] = {
      {"", 576, kipMatrixBT601, kipRangeLimited, kipSiteCenter},
      {"", 720, kipMatrixBT709, kipRangeLimited, kipSiteLeft},
      {",colorimetry=bt709,chroma-site=mpeg2", 8, kipMatrixBT709, kipRangeLimited, kipSiteLeft},
      {",colorimetry=bt2020,chroma-site=cosited", 8, kipMatrixBT2020, kipRangeLimited, kipSiteTopLeft},
      {",colorimetry=1:4:0:0,chroma-site=jpeg", 8, kipMatrixBT601, kipRangeFull, kipSiteCenter},
  };
  for (const auto& c : cases) {
    const std::string in = rawCaps("NV12", 40, c.height, c.caps), out = rawCaps("RGB", 40, c.height);
    Wanted wanted(in, out);
    wanted.from.matrix = c.matrix, wanted.from.range = c.range, wanted.from.site = c.site;
    Harness harness("kipconvert", in, out);
    expectConverts(harness, in, out, wanted);
  }
}

TEST(KipConvert, FieldsAreConvertedByThemselves) {
  for (const int height : {16, 15, 1}) {
    const std::string mode = ",interlace-mode=interleaved";
    const std::string in = rawCaps("I420", 24, height, mode), out = rawCaps("BGRx", 24, height, mode);
    Harness harness("kipconvert", in, out);
    expectConverts(harness, in, out, Wanted(in, out), 0, std::min(2, height));
  }
}

TEST(KipConvert, StridesAreThoseOfTheBuffers) {
  const std::string in = rawCaps("I420", 33, 19), out = rawCaps("NV24", 33, 19);
  Harness harness("kipconvert n-threads=3", in, out, 16);
  expectConverts(harness, in, out, Wanted(in, out), 16);
}

TEST(KipConvert, CapsAndPropertiesChangeInMidStream) {
  const std::string small = rawCaps("YUY2", 16, 8), large = rawCaps("I420_10LE", 51, 33);
  const std::string out = rawCaps("BGRA", 51, 33);
  Harness harness("kipconvert", small, "video/x-raw,format=BGRA");
  expectConverts(harness, small, rawCaps("BGRA", 16, 8), Wanted(small, rawCaps("BGRA", 16, 8)));
  harness.setIn(large);
  Wanted wanted(large, out);
  expectConverts(harness, large, out, wanted);
  gst_harness_set(harness.get(), "kipconvert", "chroma-filter", kipChromaNearest, "dither", kipDitherNone, nullptr);
  wanted.options.chroma = kipChromaNearest;
  wanted.options.dither = kipDitherNone;
  expectConverts(harness, large, out, wanted);
}

/// Caps of memory that is not the system's.
std::string elsewhere(const std::string& format) {
  std::string caps = rawCaps(format, 16, 8);
  return caps.insert(caps.find(','), "(memory:Elsewhere)");
}

TEST(KipConvert, PassesThroughWhatDoesNotChange) {
  const std::string said = ",colorimetry=bt601,chroma-site=jpeg";
  const struct {
    std::string in, out;
    bool same;
  } cases[] = {
      {rawCaps("NV12", 16, 8), rawCaps("NV12", 16, 8), true},
      {rawCaps("NV12", 16, 8), rawCaps("NV12", 16, 8, said), true},
      {rawCaps("NV12", 16, 8), "video/x-raw", true},
      {elsewhere("NV12"), elsewhere("NV12"), true},
      {rawCaps("NV12", 16, 8), rawCaps("NV12", 16, 8, ",colorimetry=bt709"), false},
      {rawCaps("NV12", 16, 8), rawCaps("NV12", 16, 8, ",chroma-site=mpeg2"), false},
  };
  for (const auto& c : cases) {
    Harness harness("kipconvert", c.in, c.out);
    const Buffer in = noise(c.in), out = harness.convert(copyOf(in));
    EXPECT_EQ(in.get() == out.get(), c.same) << c.in << " to " << c.out;
  }
}

TEST(KipConvert, ChoosesTheFormatThatLosesLeast) {
  const struct {
    const char *in, *offered, *chosen;
  } cases[] = {
      {"NV12", "{RGB,GRAY8,I420,Y444}", "I420"},
      {"NV12", "{RGB,GRAY8}", "RGB"},
      {"I420_10LE", "{NV12,BGRx,P010_10LE}", "P010_10LE"},
      {"BGRA", "{RGB,I420,A420,RGBA}", "RGBA"},
      {"RGB", "{I420,Y444,NV16}", "Y444"},
      {"GRAY8", "{RGB16,RGB,NV12}", "RGB"},
      {"RGB", "{RGB16,BGRx,RGB15}", "BGRx"},
      {"v210", "{UYVY,Y444,I420_10LE}", "UYVY"},
  };
  for (const auto& c : cases) {
    Harness harness("kipconvert", rawCaps(c.in, 16, 16), std::string("video/x-raw,format=") + c.offered);
    harness.convert(noise(rawCaps(c.in, 16, 16)));
    EXPECT_EQ(harness.outField("format"), c.chosen) << c.in << " to " << c.offered;
  }
  Harness colours("kipconvert", rawCaps("NV12", 16, 16, ",colorimetry=bt709,chroma-site=mpeg2"),
                  "video/x-raw,format=I420");
  colours.convert(noise(rawCaps("NV12", 16, 16)));
  EXPECT_EQ(colours.outField("colorimetry"), "bt709");
  EXPECT_EQ(colours.outField("chroma-site"), "mpeg2");
}

TEST(KipConvert, RefusesWhatItCannotConvert) {
  const std::string in = rawCaps("I420", 16, 16, ",colorimetry=smpte240m");
  Harness colours("kipconvert", in, rawCaps("RGB", 16, 16)), luma("kipconvert", in, rawCaps("I420_10LE", 16, 16));
  EXPECT_EQ(gst_harness_push(colours.get(), noise(in).release()), GST_FLOW_NOT_NEGOTIATED);
  EXPECT_TRUE(luma.convert(noise(in)));
  Harness memory("kipconvert", elsewhere("NV12"), elsewhere("RGB"));
  EXPECT_EQ(gst_harness_push(memory.get(), noise(elsewhere("NV12")).release()), GST_FLOW_NOT_NEGOTIATED);
}

/// The formulas are the same, the roundings are not: videoconvert has coefficients of 8 bits, and is off by up to 2 of
/// their steps in YUV, of any depth, and by up to 5 in RGB from limited range; it does better from deep samples.
TEST(KipConvert, ColourBarsAgreeWithVideoconvert) {
  const std::string bars = "videotestsrc pattern=smpte100 ! video/x-raw,format=RGB,width=320,height=240 ! ";
  for (const char* format : {"Y444", "NV12", "UYVY", "I420_10LE"}) {
    for (const char* colours : {"2:4:0:0", "1:4:0:0", "2:3:5:1", "1:3:5:1", "2:6:13:7", "1:6:13:7"}) {
      const std::string yuv = rawCaps(format, 320, 240, std::string(",colorimetry=") + colours);
      const std::string rgb = rawCaps("RGB", 320, 240);
      const auto there = [&](const char* element) { return firstFrame(bars + element + " dither=none ! " + yuv); };
      const auto back = [&](const char* element) {
        return firstFrame(bars + "kipconvert dither=none ! " + yuv + " ! " + element + " dither=none ! " + rgb);
      };
      const bool deep = std::string(format) == "I420_10LE";
      EXPECT_LE(largestDifference(there("kipconvert"), there("videoconvert"), yuv), deep ? 2 * 4 : 2) << yuv;
      EXPECT_LE(largestDifference(back("kipconvert"), back("videoconvert"), rgb), deep ? 2 : 5) << yuv;
    }
  }
}

}  // namespace
