// y4m --to 420|422|411|444|rgb24|bgra
// y4m --from rgb24|bgra --size WxH [--rate N:D] --to 420|422|411|444
//
// Converts the frames of a YUV4MPEG2 stream, or of raw video, from standard input to standard output; to 4:2:0, 4:2:2,
// 4:1:1 or 4:4:4 as a YUV4MPEG2 stream, else as raw video. It stands between two others:
//
//   ffmpeg -i in.mp4 -f yuv4mpegpipe - | y4m --to 422 | ffmpeg -i - out.mkv

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <stdexcept>

#include "stream.h"

namespace {

const char kUsage[] =
    "usage: y4m --to 420|422|411|444|rgb24|bgra\n"
    "       y4m --from rgb24|bgra --size WxH [--rate N:D] --to 420|422|411|444\n";

struct Usage : std::runtime_error {
  using runtime_error::runtime_error;
};

struct Options {
  const Format* to = nullptr;
  std::optional<Header> raw;  ///< what standard input holds, if it is raw video
};

const Format& formatNamed(const std::string& name) {
  for (const Format* format : {&k420, &k422, &k411, &k444, &kRgb24, &kBgra}) {
    if (format->name == name) return *format;
  }
  throw Usage("'" + name + "' is not a format");
}

Options parse(int argc, char** argv) {
  std::map<std::string, std::string> values;
  for (int i = 1; i < argc; i += 2) {
    if (i + 1 == argc) throw Usage(std::string(argv[i]) + " lacks its value");
    values[argv[i]] = argv[i + 1];
  }
  const auto take = [&](const std::string& name) {
    const auto value = values.extract(name);
    return value ? value.mapped() : std::string();
  };
  Options options;
  options.to = &formatNamed(take("--to"));
  if (const std::string from = take("--from"); !from.empty()) {
    options.raw.emplace();
    options.raw->format = &formatNamed(from);
    options.raw->picture = parseSize(take("--size"));
    if (const std::string rate = take("--rate"); !rate.empty()) options.raw->rate = parseRatio(rate);
    if (!options.raw->format->tag.empty() || options.to->tag.empty()) throw Usage("raw video is RGB and goes to YCbCr");
  }
  if (!values.empty()) throw Usage("what is " + values.begin()->first + "?");
  return options;
}

/// The number of frames on the terminal, a few times in a second.
class Progress {
 public:
  ~Progress() {
    if (shown_) std::fprintf(stderr, "\n");
  }
  void show(long frames, bool last) {
    const Clock::time_point now = Clock::now();
    if (!isTerminal_ || (!last && now - at_ < std::chrono::milliseconds(200))) return;
    const double seconds = std::chrono::duration<double>(now - begin_).count();
    std::fprintf(stderr, "\r%ld frames, %.0f per second ", frames, frames / seconds);
    at_ = now;
    shown_ = true;
  }

 private:
  using Clock = std::chrono::steady_clock;
  const bool isTerminal_ = isatty(STDERR_FILENO);
  const Clock::time_point begin_ = Clock::now();
  Clock::time_point at_;
  bool shown_ = false;
};

/// The routes for both ways of scanning, made when they are needed.
class Routes {
 public:
  Routes(const Header& from, const Format& to) : from_(from), to_(to) {}

  Route& of(Scan scan) {
    std::unique_ptr<Route>& route = routes_[scan];
    if (!route) {
      route = std::make_unique<Route>(*from_.format, to_, scan, from_.picture);
      if (from_.fullRange && route->hasRgb()) {
        throw std::runtime_error("colours at full range are not supported; ffmpeg's scale filter has out_range=tv");
      }
    }
    return *route;
  }

 private:
  const Header& from_;
  const Format& to_;
  std::map<Scan, std::unique_ptr<Route>> routes_;
};

/// False at the end of the stream.
bool convertFrame(const Header& from, const Header& to, Routes& routes) {
  const std::optional<FrameHeader> header = readFrameHeader(from, stdin);
  if (!header) return false;
  Route& route = routes.of(header->scan);
  if (!readPixels(route.first(), header->scan, stdin)) return false;
  route.run();
  writeFrameHeader(to, *header, stdout);
  writePixels(route.last(), stdout);
  return true;
}

void convertStream(const Options& options) {
  const Header from = options.raw ? *options.raw : readHeader(stdin);
  Header to = from;
  to.format = options.to;
  writeHeader(to, stdout);
  Routes routes(from, *to.format);
  Progress progress;
  long frames = 0;
  try {
    while (convertFrame(from, to, routes)) progress.show(++frames, false);
  } catch (const std::exception& error) {
    throw std::runtime_error("frame " + std::to_string(frames) + ": " + error.what());
  }
  progress.show(frames, true);
  if (std::fflush(stdout) != 0) throw std::runtime_error("cannot write");
}

}  // namespace

int main(int argc, char** argv) try { convertStream(parse(argc, argv)); } catch (const Usage& usage) {
  std::fprintf(stderr, "y4m: %s\n%s", usage.what(), kUsage);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "y4m: %s\n", error.what());
  return 1;
}
