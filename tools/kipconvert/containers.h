// The kinds of file.
#pragma once

#include <memory>
#include <string>

#include "stream.h"

/// A kind of file.
struct Container {
  const char* name;
  const char* extensions;  ///< of file names, separated and enclosed by blanks
  /// Whether this is one, by its first bytes.
  bool (*recognises)(Input& input);
  std::unique_ptr<Reader> (*read)(Input& input);
  /// Of the formats that it holds, the one for pictures of another format; that format itself if it is held.
  KipFormat (*formatFor)(KipFormat format);
  std::unique_ptr<Writer> (*write)(const std::string& name, const Stream& stream);
};

/// YUV4MPEG2: a header, and before the samples of each frame another one. Besides the samplings of 8 bits it has grey
/// and those of more bits under the names that FFmpeg gives them.
extern const Container kY4m;
/// PNG: grey, RGB and RGBA of 8 and 16 bits. Others are read as these: palettes and few bits as 8 bits, grey with alpha
/// as RGBA.
extern const Container kPng;
/// PGM and PPM, binary (P5 and P6): 8 and 16 bits, grey also 10 and 12.
extern const Container kPnm;
/// Raw frames: samples and nothing else.
extern const Container kRaw;

/// `stream` says what the frames are.
std::unique_ptr<Reader> readRaw(Input& input, const Stream& stream);

/// The container of a stream that begins like this; null for none.
const Container* recognise(Input& input);
/// By its name; null for none.
const Container* containerNamed(const std::string& name);
/// By the extension of a file's name; raw frames for those of others.
const Container& containerOfFile(const std::string& name);
