// Streams of frames: YUV4MPEG2, and raw video without any header. All functions throw std::runtime_error.
#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "frame.h"
#include "route.h"

/// What a stream says of itself before its first frame.
struct Header {
  const Format* format = nullptr;
  KipiSize picture = {0, 0};
  std::string rate = "25:1";
  std::string aspect = "0:0";  ///< of a pixel; unknown
  char scan = 'p';             ///< p progressive, t and b interlaced, m by frame, ? unknown
  bool fullRange = false;
};

/// Numbers of 1..16384 around an x; digits around a colon.
KipiSize parseSize(const std::string& text);
std::string parseRatio(const std::string& text);

Header readHeader(std::FILE* file);
void writeHeader(const Header& header, std::FILE* file);

/// What comes before each frame: how it was scanned and, in a mixed stream, two letters on how its fields follow one
/// another in time.
struct FrameHeader {
  Scan scan;
  std::string timing = "1p";
};

/// Nothing at the end of the stream.
std::optional<FrameHeader> readFrameHeader(const Header& header, std::FILE* file);
void writeFrameHeader(const Header& header, const FrameHeader& frame, std::FILE* file);

/// False at the end of raw video, which may not come within a frame.
bool readPixels(Frame& frame, Scan scan, std::FILE* file);
void writePixels(const Frame& frame, std::FILE* file);
