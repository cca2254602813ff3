// Streams of frames: what reads and writes them, whatever the file is.
#pragma once

#include <memory>
#include <string>

#include "frame.h"
#include "input.h"
#include "kipconvert.h"
#include "output.h"

/// What a stream says of all its frames.
struct Stream {
  KipPicture picture = {kipFormatUnknown, 0, 0, kipMatrixUnspecified, kipRangeUnspecified, kipSiteUnspecified};
  std::string rate = "25:1";   ///< frames per second
  std::string aspect = "0:0";  ///< of a pixel; unknown
  char scan = 'p';             ///< p progressive; t and b interlaced, top or bottom field first; m by frame; ? unknown
  std::string assumedRange = {};  ///< where the stream does not say its range: which one was taken, and why
};

/// How the frames of a stream were scanned, where each frame does not say it.
inline Scan scanOf(char scan) { return scan == 't' || scan == 'b' ? Scan::kInterlaced : Scan::kProgressive; }

/// Reads frames. Errors are std::runtime_error.
class Reader {
 public:
  virtual ~Reader() = default;
  /// False at the end of the stream. Frames have the shape of the stream's pictures.
  virtual bool read(Frame& frame) = 0;
  const Stream& stream() const { return stream_; }

 protected:
  explicit Reader(const Stream& stream) : stream_(stream) {}
  const Stream stream_;
};

/// Writes frames. Errors are std::runtime_error.
class Writer {
 public:
  virtual ~Writer() = default;
  virtual void write(const Frame& frame) = 0;
  /// After the last frame; without it no file is left behind.
  virtual void finish() = 0;
};

/// Reads the samples of a frame, as they lie in memory. False at the end of the stream, if `mayEnd`.
bool readSamples(Input& input, Frame& frame, bool mayEnd);
void writeSamples(const Frame& frame, Output& output);
