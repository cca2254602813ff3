// kipbayer2rgb: its frames are those of the library's functions, whatever the formats.

#include <gtest/gtest.h>

#include <cmath>

#include "harness.h"
#include "kipcc.h"

namespace {

struct Sensor {
  const char* format;
  KipiBayerGrid grid;
  int bits;
};
constexpr Sensor kSensors[] = {{"bggr", kipiBayerBGGR, 8},      {"gbrg", kipiBayerGBRG, 8},
                               {"grbg", kipiBayerGRBG, 8},      {"rggb", kipiBayerRGGB, 8},
                               {"rggb10le", kipiBayerRGGB, 10}, {"bggr12le", kipiBayerBGGR, 12},
                               {"grbg14le", kipiBayerGRBG, 14}, {"gbrg16le", kipiBayerGBRG, 16}};
constexpr const char* kFrames[] = {"RGB",  "BGR",  "RGBx", "BGRx",   "xRGB",      "xBGR",      "RGBA",
                                   "BGRA", "ARGB", "ABGR", "ARGB64", "RGBA64_LE", "BGRA64_LE", "ABGR64_LE"};

std::string sized(KipiSize size) {
  return ",width=" + std::to_string(size.width) + ",height=" + std::to_string(size.height) + ",framerate=30/1";
}
std::string bayerCaps(const Sensor& sensor, KipiSize size) {
  return std::string("video/x-bayer,format=") + sensor.format + sized(size);
}
std::string rawCaps(const char* format, KipiSize size) {
  return std::string("video/x-raw,format=") + format + sized(size);
}

/// A picture of noise. Unused bits of deep samples are clear.
struct Picture {
  Picture(const Sensor& sensor, KipiSize size) : sensor(sensor), size(size) {
    uint32_t state = 1;
    for (int i = 0; i < size.width * size.height; ++i) {
      state = state * 1664525 + 1013904223;
      samples.push_back(static_cast<uint16_t>(state >> 16 >> (16 - sensor.bits)));
    }
  }

  Buffer buffer() const {
    const int bytes = sensor.bits == 8 ? 1 : 2, step = (size.width * bytes + 3) / 4 * 4;
    std::vector<uint8_t> memory(size_t(step) * size.height, 0xEE);
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width * bytes; ++x) {
        memory[y * step + x] = uint8_t(samples[y * size.width + x / bytes] >> (x % bytes * 8));
      }
    }
    return bufferOf(memory.data(), memory.size());
  }

  Sensor sensor;
  KipiSize size;
  std::vector<uint16_t> samples;
};

/// R, G, B of all pixels, in as many bits as the frame has.
std::vector<uint16_t> demosaiced(const Picture& picture, bool ahd, int bits) {
  const KipiSize size = picture.size;
  const KipiRect all = {0, 0, size.width, size.height};
  const KipiBayerGrid grid = picture.sensor.grid;
  const int width = size.width;
  if (picture.sensor.bits == 8 && bits == 8) {
    const std::vector<uint8_t> in(picture.samples.begin(), picture.samples.end());
    std::vector<uint8_t> out(3 * in.size());
    ahd ? kipiDemosaicAHD_8u_C1C3R(in.data(), all, size, width, out.data(), 3 * width, grid, nullptr, 0)
        : kipiCFAToRGB_8u_C1C3R(in.data(), all, size, width, out.data(), 3 * width, grid);
    return {out.begin(), out.end()};
  }
  std::vector<uint16_t> in = picture.samples, out(3 * in.size());
  for (uint16_t& sample : in) sample = uint16_t(std::lround(sample * 65535.0 / ((1 << picture.sensor.bits) - 1)));
  ahd ? kipiDemosaicAHD_16u_C1C3R(in.data(), all, size, 2 * width, out.data(), 6 * width, grid, nullptr, 0)
      : kipiCFAToRGB_16u_C1C3R(in.data(), all, size, 2 * width, out.data(), 6 * width, grid);
  if (bits == 8) {
    for (uint16_t& sample : out) sample = uint16_t(std::lround(sample / 257.0));
  }
  return out;
}

/// Samples in the order of the frame's memory; what is no colour is full scale.
void expectFrame(const Picture& picture, bool ahd, const Frame& frame) {
  const GstVideoInfo& info = frame.info();
  const int bits = GST_VIDEO_INFO_COMP_DEPTH(&info, 0), bytes = bits / 8;
  const int pixelBytes = GST_VIDEO_INFO_COMP_PSTRIDE(&info, 0), width = picture.size.width;
  const std::vector<uint16_t> rgb = demosaiced(picture, ahd, bits);
  for (int y = 0; y < picture.size.height; ++y) {
    std::vector<uint8_t> expected(size_t(width) * pixelBytes, 0xFF);
    for (int x = 0; x < width; ++x) {
      for (int c = 0; c < 3; ++c) {
        const uint16_t sample = rgb[3 * (y * width + x) + c];
        memcpy(&expected[x * pixelBytes + GST_VIDEO_INFO_COMP_POFFSET(&info, c)], &sample, bytes);
      }
    }
    const std::vector<uint8_t> row(frame.row(0, y), frame.row(0, y) + expected.size());
    ASSERT_EQ(row, expected) << "row " << y << " of " << GST_VIDEO_INFO_NAME(&info) << " from " << picture.sensor.format
                             << (ahd ? ", ahd" : "");
  }
}

TEST(KipBayer2Rgb, FramesAreThoseOfTheFunctions) {
  for (const Sensor& sensor : kSensors) {
    for (const char* format : kFrames) {
      for (const bool ahd : {false, true}) {
        const Picture picture(sensor, {75, 71});
        const std::string out = rawCaps(format, picture.size);
        Harness harness(ahd ? "kipbayer2rgb method=ahd n-threads=3" : "kipbayer2rgb", bayerCaps(sensor, picture.size),
                        out);
        const Buffer buffer = harness.convert(picture.buffer());
        expectFrame(picture, ahd, Frame(out, buffer));
      }
    }
  }
}

// Written past the caches, in rows of which one in four begins at a multiple of 16 bytes.
TEST(KipBayer2Rgb, LargeFrames) {
  const Picture picture(kSensors[0], {601, 441});
  for (const char* format : {"xBGR", "RGBA64_LE"}) {
    const std::string out = rawCaps(format, picture.size);
    Harness harness("kipbayer2rgb n-threads=2", bayerCaps(picture.sensor, picture.size), out);
    const Buffer buffer = harness.convert(picture.buffer());
    expectFrame(picture, false, Frame(out, buffer));
  }
}

TEST(KipBayer2Rgb, StridesOfDownstreamsOwn) {
  const Picture picture(kSensors[0], {37, 6});
  const std::string out = rawCaps("BGR", picture.size);
  Harness harness("kipbayer2rgb n-threads=2", bayerCaps(picture.sensor, picture.size), out, 16);
  const Buffer buffer = harness.convert(picture.buffer());
  const Frame frame(out, buffer);
  EXPECT_GT(frame.row(0, 1) - frame.row(0, 0), 3 * 37 + 3);
  expectFrame(picture, false, frame);
}

TEST(KipBayer2Rgb, CapsAndPropertiesChangeInMidStream) {
  Harness harness("kipbayer2rgb", bayerCaps(kSensors[0], {8, 8}), "video/x-raw,format={RGB,ARGB64}");
  const Picture small(kSensors[0], {8, 8}), deep(kSensors[5], {33, 17});
  const Buffer first = harness.convert(small.buffer());
  expectFrame(small, false, Frame(rawCaps("RGB", small.size), first));

  harness.setIn(bayerCaps(deep.sensor, deep.size));
  gst_harness_set(harness.get(), "kipbayer2rgb", "method", 1, "n-threads", 4u, nullptr);
  const Buffer second = harness.convert(deep.buffer());
  EXPECT_EQ(harness.outField("format"), "ARGB64") << "deep samples keep their bits";
  expectFrame(deep, true, Frame(rawCaps("ARGB64", deep.size), second));
}

TEST(KipBayer2Rgb, RefusesWhatItCannotConvert) {
  const Picture tiny(kSensors[0], {4, 4});
  Harness ahd("kipbayer2rgb method=ahd", bayerCaps(tiny.sensor, tiny.size), rawCaps("RGB", tiny.size));
  EXPECT_EQ(gst_harness_push(ahd.get(), tiny.buffer().release()), GST_FLOW_ERROR);
  Harness cut("kipbayer2rgb", bayerCaps(tiny.sensor, tiny.size), rawCaps("RGB", tiny.size));
  EXPECT_EQ(gst_harness_push(cut.get(), bufferOf(tiny.samples.data(), 15).release()), GST_FLOW_ERROR);
}

}  // namespace
