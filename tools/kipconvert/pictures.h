// Kinds of file that hold one picture each. Such pictures may follow one another in a stream, if they are alike.
#pragma once

#include <memory>
#include <stdexcept>

#include "stream.h"

/// A Decoder is made from an Input, of which it reads the header; picture() is what that says, and decode(Frame&) reads
/// the rest.
template <class Decoder>
class PictureReader : public Reader {
 public:
  explicit PictureReader(Input& input) : PictureReader(input, std::make_unique<Decoder>(input)) {}

  bool read(Frame& frame) override {
    if (!next_) {
      if (input_.atEnd()) return false;
      next_ = std::make_unique<Decoder>(input_);
      requireLikeFirst(next_->picture());
    }
    next_->decode(frame);
    next_.reset();
    return true;
  }

 private:
  PictureReader(Input& input, std::unique_ptr<Decoder> first)
      : Reader({.picture = first->picture()}), input_(input), next_(std::move(first)) {}

  void requireLikeFirst(const KipPicture& picture) const {
    const KipPicture& first = stream_.picture;
    if (picture.format != first.format || picture.width != first.width || picture.height != first.height) {
      throw std::runtime_error("this picture has another size or another format than the first one");
    }
  }

  Input& input_;
  std::unique_ptr<Decoder> next_;  ///< of the picture that comes next, where its header has been read
};

/// Writes pictures one after the other to standard output; to a file one only; and to a file each where the name has a
/// number's place, %d or %04d, which count from 1.
class PictureWriter : public Writer {
 public:
  using Encode = void (*)(const KipPicture& picture, const Frame& frame, Output& output);

  PictureWriter(const std::string& name, const KipPicture& picture, Encode encode);
  void write(const Frame& frame) override;
  void finish() override;

 private:
  std::string numbered(int number) const;

  const std::string name_;
  const size_t place_;  ///< of the % in the name
  const KipPicture picture_;
  const Encode encode_;
  int pictures_ = 0;
  std::unique_ptr<Output> output_;  ///< where all pictures go to one
};
