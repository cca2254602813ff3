#include "progress.h"

#include <unistd.h>

#include <cstdio>

Progress::Progress(const Input& input, bool quiet) : input_(input), isShown_(!quiet && isatty(STDERR_FILENO)) {}

Progress::~Progress() {
  if (hasPrinted_) std::fprintf(stderr, "\n");
}

void Progress::show(long frames) {
  constexpr auto kPause = std::chrono::milliseconds(200);
  if (!isShown_ || Clock::now() - at_ < kPause) return;
  at_ = Clock::now();
  print(frames, input_.progress().value_or(0));
}

void Progress::showLast(long frames) {
  if (isShown_) print(frames, 0);
}

void Progress::print(long frames, double part) {
  const double seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
  constexpr char kClearLine[] = "\r\033[K";
  std::fprintf(stderr, "%s%ld frame%s, %.0f per second", kClearLine, frames, frames == 1 ? "" : "s", frames / seconds);
  if (part > 0) std::fprintf(stderr, ", %.0f %%, %.0f s to go", 100 * part, seconds * (1 - part) / part);
  std::fflush(stderr);
  hasPrinted_ = true;
}
