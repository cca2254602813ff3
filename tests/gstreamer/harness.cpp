#include "harness.h"

#include <gst/video/gstvideopool.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <sstream>
#include <stdexcept>

Buffer bufferOf(const void* data, size_t bytes) { return Buffer(gst_buffer_new_memdup(data, bytes)); }

Buffer copyOf(const Buffer& buffer) { return Buffer(gst_buffer_ref(buffer.get())); }

GstVideoInfo infoOf(const std::string& text) {
  GstCaps* caps = gst_caps_from_string(text.c_str());
  GstVideoInfo info;
  if (!gst_video_info_from_caps(&info, caps)) throw std::runtime_error("not understood: " + text);
  gst_caps_unref(caps);
  return info;
}

Frame::Frame(const std::string& caps, const Buffer& buffer) {
  const GstVideoInfo info = infoOf(caps);
  if (!gst_video_frame_map(&frame_, &info, buffer.get(), GST_MAP_READ)) throw std::runtime_error("no frame of " + caps);
}

namespace {

GstBufferPool* paddedPool(GstCaps* caps, unsigned pixels, guint* size) {
  GstVideoInfo info;
  gst_video_info_from_caps(&info, caps);
  GstVideoAlignment padding;
  gst_video_alignment_reset(&padding);
  padding.padding_left = padding.padding_right = padding.padding_top = padding.padding_bottom = pixels;
  GstBufferPool* pool = gst_video_buffer_pool_new();
  GstStructure* config = gst_buffer_pool_get_config(pool);
  gst_buffer_pool_config_set_params(config, caps, GST_VIDEO_INFO_SIZE(&info), 0, 0);
  gst_buffer_pool_config_add_option(config, GST_BUFFER_POOL_OPTION_VIDEO_META);
  gst_buffer_pool_config_add_option(config, GST_BUFFER_POOL_OPTION_VIDEO_ALIGNMENT);
  gst_buffer_pool_config_set_video_alignment(config, &padding);
  gst_buffer_pool_set_config(pool, config);
  config = gst_buffer_pool_get_config(pool);  // padding has made it larger
  gst_buffer_pool_config_get_params(config, nullptr, size, nullptr, nullptr);
  gst_structure_free(config);
  return pool;
}

GstPadProbeReturn answerAllocation(GstPad*, GstPadProbeInfo* info, gpointer pixels) {
  GstQuery* query = GST_PAD_PROBE_INFO_QUERY(info);
  if (GST_QUERY_TYPE(query) != GST_QUERY_ALLOCATION) return GST_PAD_PROBE_OK;
  GstCaps* caps;
  gst_query_parse_allocation(query, &caps, nullptr);
  guint size;
  GstBufferPool* pool = paddedPool(caps, GPOINTER_TO_UINT(pixels), &size);
  gst_query_add_allocation_pool(query, pool, size, 0, 0);
  gst_query_add_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
  gst_object_unref(pool);
  return GST_PAD_PROBE_HANDLED;
}

}  // namespace

Harness::Harness(const std::string& element, const std::string& in, const std::string& out, unsigned padding)
    : harness_(gst_harness_new_parse(element.c_str())) {
  if (padding > 0) {
    gst_pad_add_probe(harness_->sinkpad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, answerAllocation,
                      GUINT_TO_POINTER(padding), nullptr);
  }
  setOut(out);
  setIn(in);
}

Buffer Harness::convert(Buffer in) {
  EXPECT_EQ(GST_FLOW_OK, gst_harness_push(harness_, in.release()));
  Buffer out(gst_harness_try_pull(harness_));
  if (!out) throw std::runtime_error("nothing came out");
  return out;
}

std::string Harness::outField(const char* name) const {
  GstCaps* caps = gst_pad_get_current_caps(harness_->sinkpad);
  const char* text = caps ? gst_structure_get_string(gst_caps_get_structure(caps, 0), name) : nullptr;
  const std::string copy = text ? text : "";
  gst_clear_caps(&caps);
  return copy;
}

Buffer noise(const std::string& caps, unsigned padding) {
  GstCaps* parsed = gst_caps_from_string(caps.c_str());
  guint size;
  GstBufferPool* pool = paddedPool(parsed, padding, &size);
  gst_caps_unref(parsed);
  GstBuffer* buffer = nullptr;
  gst_buffer_pool_set_active(pool, TRUE);
  gst_buffer_pool_acquire_buffer(pool, &buffer, nullptr);
  GstMapInfo map;
  gst_buffer_map(buffer, &map, GST_MAP_WRITE);
  std::mt19937 random(7);
  std::generate(map.data, map.data + map.size, [&] { return uint8_t(random()); });
  gst_buffer_unmap(buffer, &map);
  gst_buffer_pool_set_active(pool, FALSE);
  gst_object_unref(pool);
  return Buffer(buffer);
}

Buffer firstFrame(const std::string& pipeline) {
  GstHarness* harness = gst_harness_new_parse((pipeline + " ! identity").c_str());
  gst_harness_play(harness);
  Buffer frame(gst_harness_pull(harness));
  gst_harness_teardown(harness);
  if (!frame) throw std::runtime_error("no frame came out of " + pipeline);
  return frame;
}

int largestDifference(const Buffer& a, const Buffer& b, const std::string& caps) {
  const Frame frames[] = {{caps, a}, {caps, b}};
  const GstVideoInfo& info = frames[0].info();
  int largest = 0;
  for (unsigned c = 0; c < GST_VIDEO_INFO_N_COMPONENTS(&info); ++c) {
    const int bytes = GST_VIDEO_INFO_COMP_DEPTH(&info, c) > 8 ? 2 : 1;
    const auto sample = [&](const Frame& frame, int x, int y) {
      const uint8_t* at = frame.row(GST_VIDEO_INFO_COMP_PLANE(&info, c), y) + GST_VIDEO_INFO_COMP_POFFSET(&info, c) +
                          x * GST_VIDEO_INFO_COMP_PSTRIDE(&info, c);
      return bytes == 1 ? at[0] : at[0] + 256 * at[1];
    };
    for (int y = 0; y < GST_VIDEO_INFO_COMP_HEIGHT(&info, c); ++y) {
      for (int x = 0; x < GST_VIDEO_INFO_COMP_WIDTH(&info, c); ++x) {
        largest = std::max(largest, std::abs(sample(frames[0], x, y) - sample(frames[1], x, y)));
      }
    }
  }
  return largest;
}

int main(int count, char** arguments) {
  std::istringstream variables(TEST_ENVIRONMENT);
  for (std::string name, value; std::getline(variables, name, '=') && std::getline(variables, value, '|');) {
    g_setenv(name.c_str(), value.c_str(), TRUE);
  }
  gst_init(&count, &arguments);
  testing::InitGoogleTest(&count, arguments);
  const int status = RUN_ALL_TESTS();
  gst_deinit();  // where the tracer tells of leaks
  return status;
}
