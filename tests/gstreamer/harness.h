// One of the elements between two pads of the test's.
#pragma once

#include <gst/check/gstharness.h>
#include <gst/video/video.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct Unref {
  void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
};
using Buffer = std::unique_ptr<GstBuffer, Unref>;

/// A buffer that holds these bytes.
Buffer bufferOf(const void* data, size_t bytes);

/// Another reference, for those who take theirs.
Buffer copyOf(const Buffer& buffer);

/// The video that caps tell of.
GstVideoInfo infoOf(const std::string& caps);

/// A frame of noise, whose rows are padded by this many pixels left and right, and planes by rows above and below.
Buffer noise(const std::string& caps, unsigned padding = 0);

/// A readable frame, with the strides and offsets that its buffer tells.
class Frame {
 public:
  Frame(const std::string& caps, const Buffer& buffer);
  ~Frame() { gst_video_frame_unmap(&frame_); }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

  const GstVideoInfo& info() const { return frame_.info; }
  const uint8_t* row(int plane, int y) const {
    const auto data = static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, plane));
    return data + ptrdiff_t{y} * GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, plane);
  }

 private:
  GstVideoFrame frame_;
};

class Harness {
 public:
  /// Takes the element as a pipeline's text has it. Downstream offers it frames whose rows are padded by this many
  /// pixels left and right, and planes by rows above and below.
  Harness(const std::string& element, const std::string& in, const std::string& out, unsigned padding = 0);
  ~Harness() { gst_harness_teardown(harness_); }
  Harness(const Harness&) = delete;
  Harness& operator=(const Harness&) = delete;

  void setIn(const std::string& caps) { gst_harness_set_src_caps_str(harness_, caps.c_str()); }
  void setOut(const std::string& caps) { gst_harness_set_sink_caps_str(harness_, caps.c_str()); }
  GstHarness* get() const { return harness_; }

  /// What the element makes of a buffer; fails where it makes nothing.
  Buffer convert(Buffer in);
  /// The field of text in the caps that the element has sent downstream; empty where there is none.
  std::string outField(const char* name) const;

 private:
  GstHarness* harness_;
};

/// The first frame of a pipeline without a sink.
Buffer firstFrame(const std::string& pipeline);

/// The largest difference of two samples of frames with the same caps.
int largestDifference(const Buffer& a, const Buffer& b, const std::string& caps);
