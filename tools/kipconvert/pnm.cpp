#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <utility>
#include <vector>

#include "containers.h"
#include "pictures.h"
#include "text.h"

namespace {

struct Kind {
  char type;  ///< the second letter of the file
  int greatest;
  KipFormat format;
};

constexpr Kind kKinds[] = {
    {'5', 255, kipFormatGray8},    {'5', 1023, kipFormatGray10}, {'5', 4095, kipFormatGray12},
    {'5', 65535, kipFormatGray16}, {'6', 255, kipFormatRGB24},   {'6', 65535, kipFormatRGB48},
};

[[noreturn]] void fail(const std::string& why) { throw std::runtime_error(why); }

/// A number of a header and the one blank behind it. Before it may be more blanks, and comments.
int readNumber(Input& input) {
  int c = input.get();
  while (std::isspace(c) || c == '#') {
    if (c == '#') input.line();
    c = input.get();
  }
  std::string digits;
  constexpr size_t kMost = 10;
  for (; c >= 0 && !std::isspace(c) && digits.size() <= kMost; c = input.get()) digits += static_cast<char>(c);
  if (c < 0) fail("the picture ends within its header");
  return parseInteger(digits, 1);
}

/// 16-bit samples are big-endian in these files.
void exchangeBytes(uint8_t* samples, size_t bytes) {
  for (size_t i = 0; i + 1 < bytes; i += 2) std::swap(samples[i], samples[i + 1]);
}

class PnmDecoder {
 public:
  explicit PnmDecoder(Input& input) : input_(input) {
    const char type = input.get() == 'P' ? static_cast<char>(input.get()) : '\0';
    if (type != '5' && type != '6') fail("this is not a picture in PGM or PPM, binary (P5 or P6)");
    picture_.width = readNumber(input);
    picture_.height = readNumber(input);
    const int greatest = readNumber(input);
    const auto kind =
        std::ranges::find_if(kKinds, [&](const Kind& k) { return k.type == type && k.greatest == greatest; });
    if (kind == std::end(kKinds)) {
      fail("samples up to " + std::to_string(greatest) + " are not supported; up to 255 and 65535 they are");
    }
    picture_.format = kind->format;
  }

  const KipPicture& picture() const { return picture_; }

  void decode(Frame& frame) {
    readSamples(input_, frame, false);
    if (kipFormatInfo(picture_.format)->sampleBytes == 2) exchangeBytes(frame.reserve(0), frame.shape().bytes(0));
  }

 private:
  Input& input_;
  KipPicture picture_ = Stream().picture;
};

void encode(const KipPicture& picture, const Frame& frame, Output& output) {
  const Kind& kind = *std::ranges::find(kKinds, picture.format, &Kind::format);
  output.write(std::string("P") + kind.type + "\n" + std::to_string(picture.width) + " " +
               std::to_string(picture.height) + "\n" + std::to_string(kind.greatest) + "\n");
  if (kind.greatest <= 255) return writeSamples(frame, output);
  std::vector<uint8_t> samples(frame.plane(0), frame.plane(0) + frame.shape().bytes(0));
  exchangeBytes(samples.data(), samples.size());
  output.write(samples);
}

KipFormat formatFor(KipFormat format) {
  const KipFormatInfo& info = *kipFormatInfo(format);
  if (info.family != kipFamilyGray) return info.bits[0] <= 8 ? kipFormatRGB24 : kipFormatRGB48;
  return info.bits[0] <= 8    ? kipFormatGray8
         : info.bits[0] <= 10 ? kipFormatGray10
         : info.bits[0] <= 12 ? kipFormatGray12
                              : kipFormatGray16;
}

}  // namespace

const Container kPnm = {
    .name = "pnm",
    .extensions = " .pnm .ppm .pgm ",
    .recognises =
        [](Input& input) {
          const auto begin = input.peek(2);
          return begin.size() == 2 && begin[0] == 'P' && (begin[1] == '5' || begin[1] == '6');
        },
    .read = [](Input& input) -> std::unique_ptr<Reader> { return std::make_unique<PictureReader<PnmDecoder>>(input); },
    .formatFor = formatFor,
    .write = [](const std::string& name, const Stream& stream) -> std::unique_ptr<Writer> {
      return std::make_unique<PictureWriter>(name, stream.picture, encode);
    },
};
