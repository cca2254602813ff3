#include "input.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "files.h"

namespace {

constexpr size_t kLongestLine = 4096;

int openForReading(const std::string& name) {
  if (name == "-") return STDIN_FILENO;
  const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) failOn(name);
  return file;
}

/// In bytes; 0 for what has no length, such as a pipe.
uint64_t lengthOf(int file) {
  struct stat status = {};
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

}  // namespace

size_t Input::read(uint8_t* to, size_t size) {
  size_t got = std::min(size, buffered());
  std::memcpy(to, buffer_.data() + begin_, got);
  begin_ += got;
  while (got < size) {
    const size_t more = fetch(to + got, size - got);
    if (more == 0) break;
    got += more;
  }
  read_ += got;
  return got;
}

std::span<const uint8_t> Input::peek(size_t size) {
  while (buffered() < size && fill()) {
  }
  return {buffer_.data() + begin_, std::min(size, buffered())};
}

int Input::get() {
  if (buffered() == 0 && !fill()) return -1;
  ++read_;
  return buffer_[begin_++];
}

std::optional<std::string> Input::line() {
  if (atEnd()) return {};
  std::string line;
  for (int byte = get(); byte != '\n'; byte = get()) {
    if (byte < 0) throw std::runtime_error("the stream ends within a header");
    line += static_cast<char>(byte);
    if (line.size() > kLongestLine) throw std::runtime_error("a header has no end");
  }
  return line;
}

std::optional<double> Input::progress() const {
  if (length_ == 0) return {};
  return std::min(1., double(read_) / length_);
}

bool Input::fill() {
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, buffered());
    end_ -= std::exchange(begin_, 0);
  }
  const size_t more = fetch(buffer_.data() + end_, buffer_.size() - end_);
  end_ += more;
  return more > 0;
}

FileInput::FileInput(const std::string& name) : FileInput(openForReading(name), name) {}

FileInput::FileInput(int file, std::string name)
    : Input(lengthOf(file)), file_(file), interrupted_(eventfd(0, EFD_CLOEXEC)), name_(std::move(name)) {
  if (interrupted_ < 0) failOn("eventfd");
  enlargePipe(file_);
}

FileInput::~FileInput() {
  close(interrupted_);
  if (file_ != STDIN_FILENO) close(file_);
}

void FileInput::interrupt() { eventfd_write(interrupted_, 1); }

size_t FileInput::fetch(uint8_t* to, size_t size) {
  pollfd files[] = {{file_, POLLIN, 0}, {interrupted_, POLLIN, 0}};
  for (;;) {
    if (poll(files, std::size(files), -1) < 0 && errno != EINTR) failOn(name_);
    if (files[1].revents) throw std::runtime_error("reading was interrupted");
    const ssize_t got = ::read(file_, to, size);
    if (got >= 0) return got;
    if (errno != EINTR && errno != EAGAIN) failOn(name_);
  }
}

size_t MemoryInput::fetch(uint8_t* to, size_t size) {
  const size_t got = std::min(size, rest_.size());
  std::memcpy(to, rest_.data(), got);
  rest_ = rest_.subspan(got);
  return got;
}
