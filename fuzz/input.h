// The bytes that a fuzzer hands out, read as numbers; zeros when they are used up.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

namespace fuzz {

class Input {
 public:
  Input(const uint8_t* data, size_t size) : left_(data, size) {}

  template <class T>
  T take() {
    T value = {};
    const size_t bytes = std::min(sizeof value, left_.size());
    std::memcpy(&value, left_.data(), bytes);
    left_ = left_.subspan(bytes);
    return value;
  }
  /// A number below a limit of at most 2^16.
  size_t below(size_t limit) { return take<uint16_t>() % limit; }

  std::span<const uint8_t> left() const { return left_; }

 private:
  std::span<const uint8_t> left_;
};

}  // namespace fuzz
