// How far the work is, on the terminal.
#pragma once

#include <chrono>

#include "input.h"

class Progress {
 public:
  /// Shows nothing where standard error is no terminal, or when `quiet`.
  Progress(const Input& input, bool quiet);
  ~Progress();
  Progress(const Progress&) = delete;

  /// A few times in a second.
  void show(long frames);
  void showLast(long frames);

 private:
  using Clock = std::chrono::steady_clock;

  void print(long frames, double part);

  const Input& input_;
  const bool isShown_;
  const Clock::time_point begin_ = Clock::now();
  Clock::time_point at_ = begin_;
  bool hasPrinted_ = false;
};
