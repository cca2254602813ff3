#include "options.h"

#include <getopt.h>

#include <algorithm>
#include <iterator>
#include <vector>

const char kHelp[] =
    "usage: kipconvert [options] [IN [OUT]]\n"
    "\n"
    "Converts pictures and video between pixel formats. IN is a YUV4MPEG2 stream, PNG, PGM, PPM, or raw frames; "
    "without\n"
    "IN and OUT, or where they are -, it reads standard input and writes standard output.\n"
    "\n"
    "The source:\n"
    "  --from FORMAT        raw frames in this format\n"
    "  --size WxH           of raw frames\n"
    "  --rate N:D           frames per second of raw frames, for YUV4MPEG2 (25:1)\n"
    "  --scan p|t|b         raw frames are progressive, or interlaced with the top or the bottom field first (p)\n"
    "  --matrix M           bt601, bt709, bt2020 or ycgco\n"
    "  --range R            limited or full\n"
    "  --site S             of chroma samples: left, center or topleft\n"
    "The result:\n"
    "  -o, --output OUT     .y4m, .png, .ppm and .pgm, others are raw; out%04d.png makes a file for each frame\n"
    "  --as C               what OUT is, whatever its name: y4m, png, pnm or raw\n"
    "  --to FORMAT          default: what OUT can hold and is nearest to the source\n"
    "  --to-matrix, --to-range, --to-site    as for the source, whose they are unless said\n"
    "The work:\n"
    "  --chroma C           linear or nearest (linear)\n"
    "  --dither D           where samples lose bits: none or ordered (none)\n"
    "  --demosaic D         of Bayer sources: bilinear or ahd (bilinear)\n"
    "  --threads N          for converting, besides reading and writing; 0 is one for each processor (1)\n"
    "  --frames N           stop after N frames\n"
    "  --quiet              no progress on the terminal\n"
    "Instead of it:\n"
    "  --explain            what would be done, and what is assumed\n"
    "  --formats            a table of the formats\n"
    "  --help, --version\n"
    "\n"
    "  kipconvert --from nv12 --size 1920x1080 --matrix bt709 --range limited --to rgb24 <in >out\n"
    "  kipconvert --matrix bt601 in.y4m out.png\n";

namespace {

/// Option values by name; the first name of each value is the one to suggest.
template <class Value>
struct Word {
  const char* name;
  Value value;
};

constexpr Word<KipMatrix> kMatrices[] = {
    {"bt601", kipMatrixBT601},     {"bt709", kipMatrixBT709},     {"bt2020", kipMatrixBT2020},
    {"ycgco", kipMatrixYCgCo},     {"smpte170m", kipMatrixBT601}, {"bt470bg", kipMatrixBT601},
    {"bt2020nc", kipMatrixBT2020},
};
constexpr Word<KipRange> kRanges[] = {
    {"limited", kipRangeLimited}, {"full", kipRangeFull}, {"tv", kipRangeLimited}, {"pc", kipRangeFull}};
constexpr Word<KipChromaSite> kSites[] = {
    {"left", kipSiteLeft}, {"center", kipSiteCenter}, {"topleft", kipSiteTopLeft}, {"centre", kipSiteCenter}};
constexpr Word<KipChromaFilter> kChroma[] = {{"linear", kipChromaLinear}, {"nearest", kipChromaNearest}};
constexpr Word<KipDitherType> kDithers[] = {
    {"none", kipDitherNone}, {"ordered", kipDitherBayer}, {"bayer", kipDitherBayer}};
constexpr Word<KipDemosaic> kDemosaics[] = {{"bilinear", kipDemosaicBilinear}, {"ahd", kipDemosaicAHD}};
constexpr Word<char> kScans[] = {{"p", 'p'}, {"t", 't'}, {"b", 'b'}};

template <class Value, size_t kCount>
Value valueOf(const std::string& text, const Word<Value> (&words)[kCount]) {
  std::string names;
  for (const Word<Value>& word : words) {
    if (text == word.name) return word.value;
    names += (names.empty() ? "" : ", ") + std::string(word.name);
  }
  throw Usage("'" + text + "' is none of " + names);
}

KipFormat formatOf(const std::string& name) {
  const KipFormat format = kipFormatByName(name.c_str());
  if (format == kipFormatUnknown) throw Usage("'" + name + "' is not a format; --formats lists them");
  return format;
}

const Container* containerOf(const std::string& name) {
  const Container* container = containerNamed(name);
  if (!container) throw Usage("'" + name + "' is none of y4m, png, pnm, raw");
  return container;
}

/// What is said of raw frames, which makes sense together only.
struct RawOptions {
  std::string from, size, rate;
  char scan = 'p';

  std::optional<Stream> stream() const {
    if (from.empty()) {
      if (!size.empty() || !rate.empty() || scan != 'p') {
        throw Usage("--size, --rate and --scan are for raw frames: add --from with their format");
      }
      return {};
    }
    if (size.empty()) throw Usage("raw frames have a size: add --size 1920x1080 or what it is");
    Stream stream;
    stream.picture.format = formatOf(from);
    stream.picture.width = parseSize(size).width;
    stream.picture.height = parseSize(size).height;
    if (!rate.empty()) stream.rate = parseRatio(rate);
    stream.scan = scan;
    return stream;
  }
};

/// An option, and what it does with its value.
struct Option {
  const char* name;
  bool hasValue;
  void (*take)(const std::string& value, Options& options, RawOptions& raw);
};

constexpr Option kOptions[] = {
    {"from", true, [](const std::string& v, Options&, RawOptions& raw) { raw.from = v; }},
    {"size", true, [](const std::string& v, Options&, RawOptions& raw) { raw.size = v; }},
    {"rate", true, [](const std::string& v, Options&, RawOptions& raw) { raw.rate = v; }},
    {"scan", true, [](const std::string& v, Options&, RawOptions& raw) { raw.scan = valueOf(v, kScans); }},
    {"matrix", true,
     [](const std::string& v, Options& o, RawOptions&) { o.fromColour.matrix = valueOf(v, kMatrices); }},
    {"range", true, [](const std::string& v, Options& o, RawOptions&) { o.fromColour.range = valueOf(v, kRanges); }},
    {"site", true, [](const std::string& v, Options& o, RawOptions&) { o.fromColour.site = valueOf(v, kSites); }},
    {"output", true, [](const std::string& v, Options& o, RawOptions&) { o.output = v; }},
    {"as", true, [](const std::string& v, Options& o, RawOptions&) { o.container = containerOf(v); }},
    {"to", true, [](const std::string& v, Options& o, RawOptions&) { o.to = formatOf(v); }},
    {"to-matrix", true,
     [](const std::string& v, Options& o, RawOptions&) { o.toColour.matrix = valueOf(v, kMatrices); }},
    {"to-range", true, [](const std::string& v, Options& o, RawOptions&) { o.toColour.range = valueOf(v, kRanges); }},
    {"to-site", true, [](const std::string& v, Options& o, RawOptions&) { o.toColour.site = valueOf(v, kSites); }},
    {"chroma", true, [](const std::string& v, Options& o, RawOptions&) { o.plan.chroma = valueOf(v, kChroma); }},
    {"dither", true, [](const std::string& v, Options& o, RawOptions&) { o.plan.dither = valueOf(v, kDithers); }},
    {"demosaic", true, [](const std::string& v, Options& o, RawOptions&) { o.plan.demosaic = valueOf(v, kDemosaics); }},
    {"threads", true, [](const std::string& v, Options& o, RawOptions&) { o.threads = parseInteger(v, 0); }},
    {"frames", true, [](const std::string& v, Options& o, RawOptions&) { o.frames = parseInteger(v, 1); }},
    {"quiet", false, [](const std::string&, Options& o, RawOptions&) { o.quiet = true; }},
    {"explain", false, [](const std::string&, Options& o, RawOptions&) { o.action = Action::kExplain; }},
    {"formats", false, [](const std::string&, Options& o, RawOptions&) { o.action = Action::kListFormats; }},
    {"help", false, [](const std::string&, Options& o, RawOptions&) { o.action = Action::kHelp; }},
    {"version", false, [](const std::string&, Options& o, RawOptions&) { o.action = Action::kVersion; }},
};

std::vector<option> forGetopt() {
  std::vector<option> all;
  for (size_t i = 0; i < std::size(kOptions); ++i) {
    all.push_back({kOptions[i].name, kOptions[i].hasValue ? required_argument : no_argument, nullptr, int(i)});
  }
  all.push_back({});
  return all;
}

/// The index of the next option in the table; -1 after the last one.
int nextOption(int argc, char** argv, const std::vector<option>& all) {
  const auto output = std::ranges::find(kOptions, std::string_view("output"), &Option::name) - kOptions;
  const int found = getopt_long(argc, argv, ":o:", all.data(), nullptr);
  if (found == 'o') return static_cast<int>(output);
  if (found == ':') throw Usage(std::string(argv[optind - 1]) + " lacks its value");
  if (found == '?') throw Usage("there is no option " + std::string(argv[optind - 1]) + "; --help lists them");
  return found;
}

}  // namespace

Options parseOptions(int argc, char** argv) try {
  Options options;
  RawOptions raw;
  const std::vector<option> all = forGetopt();
  opterr = 0;
  for (int i = nextOption(argc, argv, all); i >= 0; i = nextOption(argc, argv, all)) {
    kOptions[i].take(optarg ? optarg : "", options, raw);
  }
  const std::vector<std::string> names(argv + optind, argv + argc);
  if (names.size() > 2) throw Usage("'" + names[2] + "' is one name too many");
  if (names.size() == 2 && options.output != "-")
    throw Usage("there are two outputs, " + names[1] + " and " + options.output);
  if (!names.empty()) options.input = names[0];
  if (names.size() == 2) options.output = names[1];
  options.raw = raw.stream();
  return options;
} catch (const std::runtime_error& error) {
  throw Usage(error.what());
}
