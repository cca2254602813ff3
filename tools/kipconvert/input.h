// Where bytes come from.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// A stream of bytes, read once from beginning to end. Errors are std::runtime_error.
class Input {
 public:
  virtual ~Input() = default;

  /// Reads until `size` bytes are there or the stream ends; returns how many.
  size_t read(uint8_t* to, size_t size);

  /// The next bytes, which stay unread: `size` of them, up to 64, or fewer at the end of the stream.
  std::span<const uint8_t> peek(size_t size);

  /// The next byte; -1 at the end of the stream.
  int get();

  /// A line without its end; nothing when the stream ends before it begins. Refuses lines of more than 4096 bytes.
  std::optional<std::string> line();

  bool atEnd() { return peek(1).empty(); }

  /// The part of the stream that has been read, 0..1; nothing where its length is not known.
  std::optional<double> progress() const;

 protected:
  explicit Input(uint64_t length = 0) : length_(length), buffer_(kBuffer) {}

  /// Reads up to `size` bytes, and none only at the end.
  virtual size_t fetch(uint8_t* to, size_t size) = 0;

 private:
  static constexpr size_t kBuffer = 1 << 16;

  bool fill();
  size_t buffered() const { return end_ - begin_; }

  const uint64_t length_;           ///< in bytes; 0 is unknown
  std::atomic<uint64_t> read_ = 0;  ///< asked for by other threads
  std::vector<uint8_t> buffer_;
  size_t begin_ = 0, end_ = 0;
};

/// A file, or standard input where the name is "-".
class FileInput : public Input {
 public:
  explicit FileInput(const std::string& name);
  ~FileInput() override;
  FileInput(const FileInput&) = delete;

  /// May be called from another thread: a read that waits for more bytes, and those after it, throw.
  void interrupt();

 protected:
  size_t fetch(uint8_t* to, size_t size) override;

 private:
  FileInput(int file, std::string name);

  const int file_, interrupted_;
  const std::string name_;
};

/// Bytes in memory.
class MemoryInput : public Input {
 public:
  explicit MemoryInput(std::span<const uint8_t> bytes) : Input(bytes.size()), rest_(bytes) {}

 protected:
  size_t fetch(uint8_t* to, size_t size) override;

 private:
  std::span<const uint8_t> rest_;
};
