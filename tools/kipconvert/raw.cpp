#include "containers.h"

namespace {

class RawReader : public Reader {
 public:
  RawReader(Input& input, const Stream& stream) : Reader(stream), input_(input) {}

  bool read(Frame& frame) override {
    frame.scan = scanOf(stream_.scan);
    return readSamples(input_, frame, true);
  }

 private:
  Input& input_;
};

class RawWriter : public Writer {
 public:
  explicit RawWriter(const std::string& name) : output_(name) {}
  void write(const Frame& frame) override { writeSamples(frame, output_); }
  void finish() override { output_.finish(); }

 private:
  Output output_;
};

}  // namespace

const Container kRaw = {
    .name = "raw",
    .extensions = "",
    .recognises = [](Input&) { return false; },
    .read = nullptr,
    .formatFor = [](KipFormat format) { return format; },
    .write = [](const std::string& name, const Stream&) -> std::unique_ptr<Writer> {
      return std::make_unique<RawWriter>(name);
    },
};

std::unique_ptr<Reader> readRaw(Input& input, const Stream& stream) {
  return std::make_unique<RawReader>(input, stream);
}
