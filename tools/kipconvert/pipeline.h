// Reads, converts and writes frames, at the same time.
#pragma once

#include <functional>

#include "converter.h"
#include "stream.h"

struct Pipeline {
  Reader& reader;
  Converter& converter;
  Writer& writer;
  const Shape &from, &to;
  int frames;  ///< how many at most; 0 is all
  /// Makes a read that waits for bytes fail. Called from another thread.
  std::function<void()> interruptReading;
  /// Called from another thread, after each frame, with the number of frames that have been written.
  std::function<void(long)> written;
};

/// Returns the number of frames. A stream that cannot be read further is converted up to there before the error is
/// thrown; the others end the work at once.
long run(const Pipeline& pipeline);
