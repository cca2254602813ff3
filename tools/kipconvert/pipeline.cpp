#include "pipeline.h"

#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "queue.h"

namespace {

using FramePtr = std::unique_ptr<Frame>;

/// One frame is being filled and one emptied; with a third neither waits for the other when their speeds vary.
constexpr int kFramesInFlight = 3;

/// Frames go round: empty ones to where they are filled, full ones to where they are used.
struct Belt {
  explicit Belt(const Shape& shape) {
    for (int i = 0; i < kFramesInFlight; ++i) empty.push(std::make_unique<Frame>(shape));
  }
  void abandon() {
    empty.abandon();
    full.abandon();
  }
  Queue<FramePtr> empty, full;
};

class Run {
 public:
  explicit Run(const Pipeline& pipeline) : p_(pipeline), source_(p_.from), result_(p_.to) {}

  long all() {
    std::thread reader([&] { guard(&Run::read, readError_); });
    std::thread writer([&] { guard(&Run::write, error_); });
    std::exception_ptr convertError;
    guard(&Run::convert, convertError);
    reader.join();
    writer.join();
    for (const std::exception_ptr& error : {error_, convertError, readError_}) {
      if (error) std::rethrow_exception(error);
    }
    return frames_;
  }

 private:
  /// An error ends the work, but for one of reading: what has been read before goes on.
  void guard(void (Run::*part)(), std::exception_ptr& error) {
    try {
      (this->*part)();
    } catch (...) {
      error = std::current_exception();
      if (&error == &readError_) return source_.full.close();
      source_.abandon();
      result_.abandon();
      p_.interruptReading();
    }
  }

  void read() {
    for (long frame = 0; p_.frames == 0 || frame < p_.frames; ++frame) {
      std::optional<FramePtr> empty = source_.empty.pop();
      if (!empty || !readFrame(**empty, frame)) break;
      if (!source_.full.push(std::move(*empty))) break;
    }
    source_.full.close();
  }

  bool readFrame(Frame& frame, long number) try {
    if (!p_.reader.read(frame)) return false;
    frame.repeatLastRows();
    return true;
  } catch (const std::exception& error) {
    throw std::runtime_error("frame " + std::to_string(number) + ": " + error.what());
  }

  void convert() {
    while (std::optional<FramePtr> from = source_.full.pop()) {
      std::optional<FramePtr> to = result_.empty.pop();
      if (!to) break;
      p_.converter.run(**from, **to);
      source_.empty.push(std::move(*from));
      result_.full.push(std::move(*to));
    }
    result_.full.close();
  }

  void write() {
    while (std::optional<FramePtr> frame = result_.full.pop()) {
      p_.writer.write(**frame);
      p_.written(++frames_);
      result_.empty.push(std::move(*frame));
    }
  }

  const Pipeline& p_;
  Belt source_, result_;
  long frames_ = 0;
  std::exception_ptr readError_, error_;
};

}  // namespace

long run(const Pipeline& pipeline) { return Run(pipeline).all(); }
