// The GStreamer elements beside GStreamer's own, in the same pipelines of a source that repeats a frame, the element
// and a sink that drops frames. The source's own time is measured without an element, and subtracted. GST_PLUGIN_PATH
// names the plugin.
//
//   gstreamer_bench [WIDTHxHEIGHT]

#include <gst/gst.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kUntimed = 10, kTimed = 60, kRounds = 7;

struct Subject {
  const char *title, *in, *out, *peer, *ours;
};
constexpr char kConvert[] = "videoconvert", kKipConvert[] = "kipconvert";
constexpr Subject kSubjects[] = {
    {"NV12 to BGRx", "video/x-raw,format=NV12", "video/x-raw,format=BGRx", kConvert, kKipConvert},
    {"I420 to RGB", "video/x-raw,format=I420", "video/x-raw,format=RGB", kConvert, kKipConvert},
    {"RGB to I420", "video/x-raw,format=RGB", "video/x-raw,format=I420", kConvert, kKipConvert},
    {"UYVY to BGRA", "video/x-raw,format=UYVY", "video/x-raw,format=BGRA", kConvert, kKipConvert},
    {"BGRx to NV12", "video/x-raw,format=BGRx", "video/x-raw,format=NV12", kConvert, kKipConvert},
    {"Bayer to BGRx, bilinear", "video/x-bayer,format=bggr", "video/x-raw,format=BGRx", "bayer2rgb", "kipbayer2rgb"},
    {"Bayer to BGRx, ahd", "video/x-bayer,format=bggr", "video/x-raw,format=BGRx", "bayer2rgb",
     "kipbayer2rgb method=ahd"},
};

/// When frames arrive at the sink.
struct Clock {
  int frames = 0;
  gint64 first = 0, last = 0;  // of the timed ones, microseconds

  void tick() {
    last = g_get_monotonic_time();
    if (++frames == kUntimed) first = last;
  }
  double secondsPerFrame() const { return double(last - first) / 1e6 / (frames - kUntimed); }
};

GstPadProbeReturn tick(GstPad*, GstPadProbeInfo*, gpointer clock) {
  static_cast<Clock*>(clock)->tick();
  return GST_PAD_PROBE_OK;
}

GstElement* parse(const std::string& text) {
  GstElement* pipeline = gst_parse_launch_full(text.c_str(), nullptr, GST_PARSE_FLAG_FATAL_ERRORS, nullptr);
  if (!pipeline) throw std::runtime_error("not to be had: " + text);
  return pipeline;
}

void waitForEnd(GstElement* pipeline) {
  GstBus* bus = gst_element_get_bus(pipeline);
  constexpr auto kEnds = static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR);
  GstMessage* message = gst_bus_timed_pop_filtered(bus, GST_CLOCK_TIME_NONE, kEnds);
  const bool failed = GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR;
  gst_message_unref(message);
  gst_object_unref(bus);
  if (failed) throw std::runtime_error("a pipeline failed");
}

/// One frame with its caps.
GstSample* testFrame(const std::string& caps) {
  GstElement* pipeline = parse("videotestsrc pattern=smpte num-buffers=1 ! " + caps + " ! fakesink name=sink");
  gst_element_set_state(pipeline, GST_STATE_PLAYING);
  waitForEnd(pipeline);
  GstElement* sink = gst_bin_get_by_name(GST_BIN(pipeline), "sink");
  GstSample* sample = nullptr;
  g_object_get(sink, "last-sample", &sample, nullptr);
  gst_object_unref(sink);
  gst_element_set_state(pipeline, GST_STATE_NULL);
  gst_object_unref(pipeline);
  return sample;
}

void pushFrames(GstElement* pipeline, GstSample* frame) {
  GstElement* source = gst_bin_get_by_name(GST_BIN(pipeline), "source");
  GstFlowReturn flow = GST_FLOW_OK;
  for (int i = 0; i < kUntimed + kTimed && flow == GST_FLOW_OK; ++i) {
    g_signal_emit_by_name(source, "push-sample", frame, &flow);
  }
  g_signal_emit_by_name(source, "end-of-stream", &flow);
  gst_object_unref(source);
}

double secondsPerFrame(GstSample* frame, const std::string& rest) {
  GstElement* pipeline = parse("appsrc name=source block=true format=time ! " + rest + "fakesink name=sink");
  GstElement* sink = gst_bin_get_by_name(GST_BIN(pipeline), "sink");
  GstPad* pad = gst_element_get_static_pad(sink, "sink");
  Clock clock;
  gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, tick, &clock, nullptr);
  gst_element_set_state(pipeline, GST_STATE_PLAYING);
  pushFrames(pipeline, frame);
  waitForEnd(pipeline);
  gst_element_set_state(pipeline, GST_STATE_NULL);
  gst_object_unref(pad);
  gst_object_unref(sink);
  gst_object_unref(pipeline);
  return clock.secondsPerFrame();
}

/// Megapixels per second of each element, in the fastest of some rounds in which they take turns.
std::vector<double> race(const Subject& subject, const std::vector<std::string>& elements, int width, int height) {
  const std::string size = ",width=" + std::to_string(width) + ",height=" + std::to_string(height);
  GstSample* frame = testFrame(subject.in + size + ",framerate=30/1");
  double alone = INFINITY;
  std::vector<double> least(elements.size(), INFINITY);
  for (int round = 0; round < kRounds; ++round) {
    alone = std::min(alone, secondsPerFrame(frame, ""));
    for (size_t i = 0; i < elements.size(); ++i) {
      least[i] = std::min(least[i], secondsPerFrame(frame, elements[i] + " ! " + subject.out + " ! "));
    }
  }
  gst_sample_unref(frame);
  for (double& seconds : least) seconds = width * double(height) / 1e6 / (seconds - alone);
  return least;
}

}  // namespace

int main(int count, char** arguments) try {
  gst_init(&count, &arguments);
  int width = 1920, height = 1080;
  if (count > 2 || (count == 2 && sscanf(arguments[1], "%dx%d", &width, &height) != 2)) {
    fprintf(stderr, "usage: gstreamer_bench [WIDTHxHEIGHT]\n");
    return 2;
  }
  printf("Megapixels per second, %d x %d.\n\n", width, height);
  printf("| conversion | peer | its | ours | ratio | ours, 2 threads | of one |\n|---|---|---|---|---|---|---|\n");
  for (const Subject& subject : kSubjects) {
    const std::string ours = subject.ours;
    const auto speeds = race(subject, {subject.peer, ours, ours + " n-threads=2"}, width, height);
    printf("| %s | %s | %.0f | %.0f | %.2f | %.0f | %.2f |\n", subject.title, subject.peer, speeds[0], speeds[1],
           speeds[1] / speeds[0], speeds[2], speeds[2] / speeds[1]);
    fflush(stdout);
  }
} catch (const std::exception& error) {
  fprintf(stderr, "gstreamer_bench: %s\n", error.what());
  return 1;
}
