// Hands things from one thread to another.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

template <class T>
class Queue {
 public:
  /// False, and nothing is kept, when the queue is closed.
  bool push(T value) {
    {
      const std::lock_guard lock(mutex_);
      if (closed_) return false;
      values_.push_back(std::move(value));
    }
    changed_.notify_one();
    return true;
  }

  /// Waits for a value. Nothing when the queue is closed and empty.
  std::optional<T> pop() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return closed_ || !values_.empty(); });
    if (values_.empty()) return {};
    std::optional<T> value = std::move(values_.front());
    values_.pop_front();
    return value;
  }

  /// No more values; those that are there can still be popped.
  void close() {
    {
      const std::lock_guard lock(mutex_);
      closed_ = true;
    }
    changed_.notify_all();
  }

  /// No more values, and none of those that are there.
  void abandon() {
    {
      const std::lock_guard lock(mutex_);
      values_.clear();
    }
    close();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<T> values_;
  bool closed_ = false;
};
