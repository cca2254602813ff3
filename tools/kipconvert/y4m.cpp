#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "containers.h"
#include "text.h"

namespace {

const std::string kMagic = "YUV4MPEG2", kFrameMagic = "FRAME";

struct Sampling {
  const char* tag;
  KipFormat format;
  KipChromaSite site = kipSiteUnspecified;  ///< where the tag says one
};

// For reading, "420" is what old streams have for 420jpeg.
constexpr Sampling kSamplings[] = {
    {"420jpeg", kipFormatYUV420P, kipSiteCenter},
    {"420mpeg2", kipFormatYUV420P, kipSiteLeft},
    {"420paldv", kipFormatYUV420P, kipSiteTopLeft},
    {"420", kipFormatYUV420P, kipSiteCenter},
    {"422", kipFormatYUV422P},
    {"444", kipFormatYUV444P},
    {"411", kipFormatYUV411P},
    {"mono", kipFormatGray8},
    {"420p10", kipFormatYUV420P10},
    {"422p10", kipFormatYUV422P10},
    {"444p10", kipFormatYUV444P10},
    {"mono10", kipFormatGray10},
    {"420p12", kipFormatYUV420P12},
    {"422p12", kipFormatYUV422P12},
    {"444p12", kipFormatYUV444P12},
    {"mono12", kipFormatGray12},
    {"420p16", kipFormatYUV420P16},
    {"422p16", kipFormatYUV422P16},
    {"444p16", kipFormatYUV444P16},
    {"mono16", kipFormatGray16},
};

[[noreturn]] void fail(const std::string& why) { throw std::runtime_error(why); }

/// The words of a line, of which the first must be `magic`.
std::vector<std::string> wordsAfter(const std::string& magic, const std::string& line, const std::string& otherwise) {
  std::istringstream words(line);
  std::string word;
  if (!(words >> word) || word != magic) fail(otherwise);
  std::vector<std::string> rest;
  while (words >> word) rest.push_back(word);
  return rest;
}

const Sampling& samplingOf(const std::string& tag) {
  for (const Sampling& sampling : kSamplings) {
    if (tag == sampling.tag) return sampling;
  }
  fail("chroma sampling '" + tag + "' is not supported; 420, 422, 444 of 8, 10, 12, 16 bits, 411, and mono are");
}

char parseScan(const std::string& value) {
  if (value.size() != 1 || !std::strchr("ptbm?", value[0])) fail("'I" + value + "' is not a way of scanning");
  return value[0];
}

void take(const std::string& word, Stream& stream) {
  const std::string value = word.substr(1);
  KipPicture& picture = stream.picture;
  switch (word[0]) {
    case 'W':
      picture.width = parseInteger(value, 1);
      break;
    case 'H':
      picture.height = parseInteger(value, 1);
      break;
    case 'C': {
      const Sampling& sampling = samplingOf(value);
      picture.format = sampling.format;
      picture.site = sampling.site;
      break;
    }
    case 'F':
      stream.rate = parseRatio(value);
      break;
    case 'A':
      stream.aspect = parseRatio(value);
      break;
    case 'I':
      stream.scan = parseScan(value);
      break;
    case 'X':
      if (value == "COLORRANGE=FULL") picture.range = kipRangeFull;
      if (value == "COLORRANGE=LIMITED") picture.range = kipRangeLimited;
      break;
    default:
      fail("'" + word + "' has no meaning in a header");
  }
}

Stream readHeader(Input& input) {
  Stream stream;
  stream.picture.format = kipFormatYUV420P;
  stream.picture.site = kipSiteCenter;
  for (const std::string& word : wordsAfter(kMagic, input.line().value_or(""), "this is not a YUV4MPEG2 stream")) {
    take(word, stream);
  }
  KipPicture& picture = stream.picture;
  if (picture.width == 0 || picture.height == 0) fail("the header does not say how large the frames are");
  if (picture.range == kipRangeUnspecified) {
    picture.range = kipRangeLimited;
    stream.assumedRange = "limited, as YUV4MPEG2 has it where the header does not say XCOLORRANGE=FULL";
  }
  return stream;
}

class Y4mReader : public Reader {
 public:
  explicit Y4mReader(Input& input) : Reader(readHeader(input)), input_(input) {}

  bool read(Frame& frame) override {
    const std::optional<std::string> line = input_.line();
    if (!line) return false;
    frame.scan = scanOf(stream_.scan);
    for (const std::string& word :
         wordsAfter(kFrameMagic, *line, "there is something else where a frame should begin")) {
      // Of a stream that is mixed, the third letter tells to which rows the chroma belongs.
      if (stream_.scan == 'm' && word.size() == 4 && word[0] == 'I') {
        frame.scan = word[3] == 'i' ? Scan::kInterlaced : Scan::kProgressive;
        frame.timing = word.substr(1, 2);
      }
    }
    return readSamples(input_, frame, false);
  }

 private:
  Input& input_;
};

const char* tagOf(const KipPicture& picture) {
  for (const Sampling& sampling : kSamplings) {
    const bool hasSite = sampling.site == kipSiteUnspecified || sampling.site == picture.site;
    if (sampling.format == picture.format && hasSite) return sampling.tag;
  }
  fail(std::string("YUV4MPEG2 does not hold ") + kipFormatInfo(picture.format)->name);
}

std::string rangeWord(KipRange range) {
  if (range == kipRangeUnspecified) return "";
  return range == kipRangeFull ? " XCOLORRANGE=FULL" : " XCOLORRANGE=LIMITED";
}

class Y4mWriter : public Writer {
 public:
  Y4mWriter(const std::string& name, const Stream& stream) : scan_(stream.scan), output_(name) {
    const KipPicture& picture = stream.picture;
    output_.write(kMagic + " W" + std::to_string(picture.width) + " H" + std::to_string(picture.height) + " F" +
                  stream.rate + " I" + scan_ + " A" + stream.aspect + " C" + tagOf(picture) + rangeWord(picture.range) +
                  "\n");
  }

  void write(const Frame& frame) override {
    const std::string mixed = " I" + frame.timing + (frame.scan == Scan::kInterlaced ? 'i' : 'p');
    output_.write(kFrameMagic + (scan_ == 'm' ? mixed : "") + "\n");
    writeSamples(frame, output_);
  }

  void finish() override { output_.finish(); }

 private:
  const char scan_;
  Output output_;
};

/// Of one kind, colour or grey, and with this sampling, the least depth that loses nothing, or else the greatest; 4:4:4
/// for samplings that a stream cannot have.
KipFormat formatFor(KipFormat format) {
  const KipFormatInfo& wanted = *kipFormatInfo(format);
  KipFormat best = kipFormatUnknown;
  for (const Sampling& sampling : kSamplings) {
    const KipFormatInfo& info = *kipFormatInfo(sampling.format);
    const bool isKind = (info.family == kipFamilyGray) == (wanted.family == kipFamilyGray) &&
                        info.chromaShiftX == wanted.chromaShiftX && info.chromaShiftY == wanted.chromaShiftY;
    const bool wasEnough = best != kipFormatUnknown && kipFormatInfo(best)->bits[0] >= wanted.bits[0];
    if (isKind && !wasEnough) best = sampling.format;
  }
  return best == kipFormatUnknown ? kipFormatYUV444P : best;
}

}  // namespace

const Container kY4m = {
    .name = "y4m",
    .extensions = " .y4m ",
    .recognises =
        [](Input& input) {
          const auto begin = input.peek(kMagic.size());
          return std::equal(begin.begin(), begin.end(), kMagic.begin(), kMagic.end());
        },
    .read = [](Input& input) -> std::unique_ptr<Reader> { return std::make_unique<Y4mReader>(input); },
    .formatFor = formatFor,
    .write = [](const std::string& name, const Stream& stream) -> std::unique_ptr<Writer> {
      return std::make_unique<Y4mWriter>(name, stream);
    },
};
