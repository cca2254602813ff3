// Measures conversions of pictures on one thread, each in turns with its peers and with memcpy of as many bytes, and
// with linear chroma on two threads.
//
//   kipconvert_bench [--size=WIDTHxHEIGHT] [--only=text] [--target=name] [--against=library.so]
//
// Sizes are 1920x1080 unless told otherwise. Of the pairs, those whose names contain the text are measured, with the
// kernels of the named target or the best ones. With --against another build of the library takes the place of the
// peers. The peers' arithmetic is coarser: libyuv's factors have 6 to 8 bits and its chroma is nearest; swscale's
// default takes nearest chroma and truncates where it has a path for the pair. zimg rounds floats; its chroma is
// linear.

#include <dlfcn.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "kipconvert.h"
#include "race.h"
#include "support/targets.h"

#ifdef KIPCC_CONVERT_libyuv
#include <libyuv.h>
#endif
#ifdef KIPCC_CONVERT_swscale
extern "C" {
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}
#endif
#ifdef KIPCC_CONVERT_zimg
#include <zimg.h>
#endif

namespace bench {
namespace {

using Run = std::function<void()>;
constexpr int kRounds = 10;

struct Options {
  int width = 1920, height = 1080;
  std::string only, target, against;
};

/// A picture with arbitrary samples.
struct Picture {
  Picture(KipFormat format, const Options& options) : info(*kipFormatInfo(format)) {
    const bool rgb = info.family == kipFamilyRGB;
    what = {format,
            options.width,
            options.height,
            rgb ? kipMatrixIdentity : kipMatrixBT601,
            rgb || info.family == kipFamilyGray ? kipRangeFull : kipRangeLimited,
            kipSiteUnspecified};
    KipLayout layout;
    kipPictureLayout(&what, 64, &layout);
    bytes = layout.bytes;
    memory.reset(static_cast<uint8_t*>(std::aligned_alloc(64, (bytes + 63) / 64 * 64)));
    uint32_t random = 1;
    for (size_t i = 0; i < bytes; ++i) memory[i] = (random = random * 1664525 + 1013904223) >> 24;
    for (int p = 0; p < info.planes; ++p) {
      where.plane[p] = memory.get() + layout.offset[p], where.step[p] = layout.step[p];
    }
  }
  uint8_t* plane(int p) const { return static_cast<uint8_t*>(where.plane[p]); }
  int step(int p) const { return static_cast<int>(where.step[p]); }
  double pixels() const { return double(what.width) * what.height; }

  const KipFormatInfo& info;
  KipPicture what;
  KipPlanes where = {};
  size_t bytes;
  struct Free {
    void operator()(uint8_t* at) const { std::free(at); }
  };
  std::unique_ptr<uint8_t[], Free> memory;
};

/// This build of the library, or another one.
struct Library {
  decltype(&kipPlanMake) make = kipPlanMake;
  decltype(&kipPlanRun) run = kipPlanRun;
  decltype(&kipPlanFree) free = kipPlanFree;

  Library() = default;
  explicit Library(const std::string& file) {
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
    if (!library) throw std::runtime_error(dlerror());
    make = reinterpret_cast<decltype(make)>(dlsym(library, "kipPlanMake"));
    run = reinterpret_cast<decltype(run)>(dlsym(library, "kipPlanRun"));
    free = reinterpret_cast<decltype(free)>(dlsym(library, "kipPlanFree"));
    if (!make || !run || !free) throw std::runtime_error(file + ": not libkipconvert");
  }

  Run planned(const Picture& from, const Picture& to, KipChromaFilter chroma, int threads = 1) const {
    KipPlanOptions options = {};
    options.size = sizeof options, options.threads = threads, options.chroma = chroma;
    KipPlan* plan = nullptr;
    if (const KipStatus status = make(&from.what, &to.what, &options, &plan)) {
      throw std::runtime_error(kipStatusText(status));
    }
    const std::shared_ptr<KipPlan> owner(plan, free);
    return [=, run = run, &from, &to] { run(owner.get(), &from.where, &to.where); };
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Pairs, and libyuv's functions for them

using Peer = void (*)(const Picture& from, const Picture& to, int width, int height);
struct Pair {
  KipFormat from, to;
  Peer libyuv = nullptr;
};

#ifdef KIPCC_CONVERT_libyuv
#define KIP_PEER(function, ...) \
  [](const Picture& s, const Picture& d, int width, int height) { libyuv::function(__VA_ARGS__, width, height); }
#else
#define KIP_PEER(...) nullptr
#endif
#define KIP_FROM(p) s.plane(p), s.step(p)
#define KIP_TO(p) d.plane(p), d.step(p)
#define KIP_FROM_16(p) reinterpret_cast<const uint16_t*>(s.plane(p)), s.step(p) / 2
#define KIP_FROM_3 KIP_FROM(0), KIP_FROM(1), KIP_FROM(2)
#define KIP_TO_3 KIP_TO(0), KIP_TO(1), KIP_TO(2)

// libyuv's ARGB is BGRA in memory, its RGB24 BGR24, its RAW RGB24, its ABGR RGBA.
constexpr Pair kPairs[] = {
    {kipFormatNV12, kipFormatBGRA, KIP_PEER(NV12ToARGB, KIP_FROM(0), KIP_FROM(1), KIP_TO(0))},
    {kipFormatNV12, kipFormatRGB24, KIP_PEER(NV12ToRAW, KIP_FROM(0), KIP_FROM(1), KIP_TO(0))},
    {kipFormatYUV420P, kipFormatBGRA, KIP_PEER(I420ToARGB, KIP_FROM_3, KIP_TO(0))},
    {kipFormatYUV420P, kipFormatRGB24, KIP_PEER(I420ToRAW, KIP_FROM_3, KIP_TO(0))},
    {kipFormatYUYV422, kipFormatBGRA, KIP_PEER(YUY2ToARGB, KIP_FROM(0), KIP_TO(0))},
    {kipFormatYUYV422, kipFormatRGB24},
    {kipFormatUYVY422, kipFormatBGRA, KIP_PEER(UYVYToARGB, KIP_FROM(0), KIP_TO(0))},
    {kipFormatUYVY422, kipFormatRGB24},
    {kipFormatYUV444P, kipFormatBGRA, KIP_PEER(I444ToARGB, KIP_FROM_3, KIP_TO(0))},
    {kipFormatBGRA, kipFormatNV12, KIP_PEER(ARGBToNV12, KIP_FROM(0), KIP_TO(0), KIP_TO(1))},
    {kipFormatRGB24, kipFormatNV12},
    {kipFormatBGRA, kipFormatYUV420P, KIP_PEER(ARGBToI420, KIP_FROM(0), KIP_TO_3)},
    {kipFormatRGB24, kipFormatYUV420P, KIP_PEER(RAWToI420, KIP_FROM(0), KIP_TO_3)},
    {kipFormatBGRA, kipFormatYUYV422, KIP_PEER(ARGBToYUY2, KIP_FROM(0), KIP_TO(0))},
    {kipFormatRGB24, kipFormatYUYV422},
    {kipFormatBGRA, kipFormatUYVY422, KIP_PEER(ARGBToUYVY, KIP_FROM(0), KIP_TO(0))},
    {kipFormatRGB24, kipFormatUYVY422},
    {kipFormatBGRA, kipFormatYUV444P, KIP_PEER(ARGBToI444, KIP_FROM(0), KIP_TO_3)},
    {kipFormatRGB24, kipFormatGray8, KIP_PEER(RAWToJ400, KIP_FROM(0), KIP_TO(0))},
    // 10 bits.
    {kipFormatP010, kipFormatBGRA,
     KIP_PEER(P010ToARGBMatrix, KIP_FROM_16(0), KIP_FROM_16(1), KIP_TO(0), &libyuv::kYuvI601Constants)},
    {kipFormatP010, kipFormatRGB48},
    {kipFormatYUV420P10, kipFormatRGB24},
    {kipFormatYUV422P10, kipFormatYUV420P},
    // Planes.
    {kipFormatYUV420P, kipFormatGBRP},
    {kipFormatYUV444P, kipFormatGBRP},
    {kipFormatGBRP, kipFormatYUV420P},
    {kipFormatGBRP, kipFormatYUV444P},
    {kipFormatYUV420P10, kipFormatGBRP},
    {kipFormatYUV420P, kipFormatYUV444P, KIP_PEER(I420ToI444, KIP_FROM_3, KIP_TO_3)},
    // Moves.
    {kipFormatYUV420P, kipFormatYUV420P, KIP_PEER(I420Copy, KIP_FROM_3, KIP_TO_3)},
    {kipFormatYUV420P, kipFormatNV12, KIP_PEER(I420ToNV12, KIP_FROM_3, KIP_TO(0), KIP_TO(1))},
    {kipFormatNV12, kipFormatYUV420P, KIP_PEER(NV12ToI420, KIP_FROM(0), KIP_FROM(1), KIP_TO_3)},
    {kipFormatYUYV422, kipFormatYUV422P, KIP_PEER(YUY2ToI422, KIP_FROM(0), KIP_TO_3)},
    {kipFormatYUV422P, kipFormatYUYV422, KIP_PEER(I422ToYUY2, KIP_FROM_3, KIP_TO(0))},
    {kipFormatRGBA, kipFormatBGRA, KIP_PEER(ABGRToARGB, KIP_FROM(0), KIP_TO(0))},
    {kipFormatBGRA, kipFormatRGB24, KIP_PEER(ARGBToRAW, KIP_FROM(0), KIP_TO(0))},
    {kipFormatRGB24, kipFormatBGRA, KIP_PEER(RAWToARGB, KIP_FROM(0), KIP_TO(0))},
    {kipFormatRGB24, kipFormatGBRP},
    {kipFormatGBRP, kipFormatRGB24},
    {kipFormatRGB24, kipFormatRGB565},
};

// ---------------------------------------------------------------------------------------------------------------------
// swscale and zimg

#ifdef KIPCC_CONVERT_swscale
Run scaled(const Picture& from, const Picture& to, int flags) {
  const auto name = [](const Picture& p) { return av_get_pix_fmt(p.info.name); };
  if (name(from) == AV_PIX_FMT_NONE || name(to) == AV_PIX_FMT_NONE) return nullptr;
  const int width = from.what.width, height = from.what.height;
  const std::shared_ptr<SwsContext> context(
      sws_getContext(width, height, name(from), width, height, name(to), flags, nullptr, nullptr, nullptr),
      sws_freeContext);
  if (!context) return nullptr;
  return [=, &from, &to] {
    const uint8_t* source[4];
    uint8_t* result[4];
    int sourceSteps[4], resultSteps[4];
    for (int p = 0; p < 4; ++p) {
      source[p] = from.plane(p), result[p] = to.plane(p), sourceSteps[p] = from.step(p), resultSteps[p] = to.step(p);
    }
    sws_scale(context.get(), source, sourceSteps, 0, height, result, resultSteps);
  };
}
#endif

#ifdef KIPCC_CONVERT_zimg
/// Planes only.
bool isPlanar(const KipFormatInfo& info) { return info.planes == (info.family == kipFamilyGray ? 1 : 3); }

zimg_image_format describe(const Picture& picture) {
  const KipFormatInfo& info = picture.info;
  const bool rgb = info.family == kipFamilyRGB;
  zimg_image_format f;
  zimg_image_format_default(&f, ZIMG_API_VERSION);
  f.width = picture.what.width, f.height = picture.what.height;
  f.pixel_type = info.bits[0] > 8 ? ZIMG_PIXEL_WORD : ZIMG_PIXEL_BYTE;
  f.subsample_w = info.chromaShiftX, f.subsample_h = info.chromaShiftY;
  f.color_family = rgb ? ZIMG_COLOR_RGB : ZIMG_COLOR_YUV;
  f.matrix_coefficients = rgb ? ZIMG_MATRIX_RGB : ZIMG_MATRIX_ST170_M;
  f.depth = info.bits[0];
  f.pixel_range = rgb ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
  f.chroma_location = ZIMG_CHROMA_LEFT;
  return f;
}

template <class Buffer>
Buffer bufferOf(const Picture& picture) {
  Buffer buffer = {};
  buffer.version = ZIMG_API_VERSION;
  // Planes of RGB lie in the order green, blue, red.
  constexpr int kOrder[2][3] = {{0, 1, 2}, {2, 0, 1}};
  for (int p = 0; p < 3; ++p) {
    const int own = kOrder[picture.info.family == kipFamilyRGB][p];
    buffer.plane[p] = {picture.plane(own), picture.where.step[own], ZIMG_BUFFER_MAX};
  }
  return buffer;
}

Run graph(const Picture& from, const Picture& to) {
  if (!isPlanar(from.info) || !isPlanar(to.info)) return nullptr;
  zimg_graph_builder_params params;
  zimg_graph_builder_params_default(&params, ZIMG_API_VERSION);
  params.resample_filter_uv = ZIMG_RESIZE_BILINEAR;
  params.cpu_type = ZIMG_CPU_AUTO_64B;
  const zimg_image_format in = describe(from), out = describe(to);
  const std::shared_ptr<zimg_filter_graph> built(zimg_filter_graph_build(&in, &out, &params), zimg_filter_graph_free);
  if (!built) return nullptr;
  size_t bytes = 0;
  zimg_filter_graph_get_tmp_size(built.get(), &bytes);
  const std::shared_ptr<void> scratch(std::aligned_alloc(64, (bytes + 63) / 64 * 64), std::free);
  const auto src = bufferOf<zimg_image_buffer_const>(from);
  const auto dst = bufferOf<zimg_image_buffer>(to);
  return [=] { zimg_filter_graph_process(built.get(), &src, &dst, scratch.get(), nullptr, nullptr, nullptr, nullptr); };
}
#endif

// ---------------------------------------------------------------------------------------------------------------------
// The table: a column for each peer

struct Column {
  const char* name;
  Run run;
};

std::vector<Column> peersOf([[maybe_unused]] const Pair& pair, [[maybe_unused]] const Picture& from,
                            [[maybe_unused]] const Picture& to) {
  std::vector<Column> peers;
#ifdef KIPCC_CONVERT_libyuv
  Run libyuv;
  if (pair.libyuv) libyuv = [&] { pair.libyuv(from, to, from.what.width, from.what.height); };
  peers.push_back({"libyuv", libyuv});
#endif
#ifdef KIPCC_CONVERT_swscale
  peers.push_back({"swscale", scaled(from, to, SWS_BILINEAR)});
  constexpr int kAccurate = SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP;
  peers.push_back({"accurate", scaled(from, to, kAccurate)});
#endif
#ifdef KIPCC_CONVERT_zimg
  peers.push_back({"zimg", graph(from, to)});
#endif
  return peers;
}

std::string nameOf(const Pair& pair) {
  return std::string(kipFormatInfo(pair.from)->name) + " to " + kipFormatInfo(pair.to)->name;
}

void printHeading(const Options& options) {
  std::printf("%-26s Mpixel/s: linear nearest   x memcpy    ", "");
  if (!options.against.empty()) {
    std::puts("x the other build");
    return;
  }
#ifdef KIPCC_CONVERT_libyuv
  std::printf("%-14s", "x libyuv");
#endif
#ifdef KIPCC_CONVERT_swscale
  std::printf("%-14s%-14s", "x swscale", "x accurate");
#endif
#ifdef KIPCC_CONVERT_zimg
  std::printf("%-14s", "x zimg");
#endif
  std::puts("2 threads x 1");
}

/// How many times as fast linear and nearest chroma are.
void printRatios(const Contestant& linear, const Contestant& nearest, const Contestant* peer) {
  if (!peer) {
    std::printf("%14s", "");
  } else {
    std::printf("%5.2f %5.2f   ", peer->fastest() / linear.fastest(), peer->fastest() / nearest.fastest());
  }
}

void measure(const Pair& pair, const Options& options) {
  const Picture from(pair.from, options), to(pair.to, options);
  const size_t copied = (from.bytes + to.bytes) / 2;
  const std::vector<uint8_t> memory(copied, 1);
  std::vector<uint8_t> copy(copied);
  const Library library;
  std::vector<Contestant> contestants = {{"linear", library.planned(from, to, kipChromaLinear)},
                                         {"nearest", library.planned(from, to, kipChromaNearest)},
                                         {"memcpy", [&] { std::memcpy(copy.data(), memory.data(), copied); }}};
  const Library other = options.against.empty() ? Library() : Library(options.against);
  const std::vector<Column> peers =
      options.against.empty() ? peersOf(pair, from, to)
                              : std::vector<Column>{{"linear, other", other.planned(from, to, kipChromaLinear)},
                                                    {"nearest, other", other.planned(from, to, kipChromaNearest)}};
  for (const Column& peer : peers) {
    if (peer.run) contestants.push_back({peer.name, peer.run});
  }
  race(contestants, kRounds);
  const Contestant &linear = contestants[0], &nearest = contestants[1];
  const auto speed = [&](const Contestant& c) { return from.pixels() * 1e-6 / c.fastest(); };
  std::printf("%-26s           %6.0f  %6.0f   ", nameOf(pair).c_str(), speed(linear), speed(nearest));
  printRatios(linear, nearest, &contestants[2]);
  if (!options.against.empty()) {
    std::printf("%5.2f %5.2f\n", contestants[3].fastest() / linear.fastest(),
                contestants[4].fastest() / nearest.fastest());
    return;
  }
  size_t next = 3;
  for (const Column& peer : peers) printRatios(linear, nearest, peer.run ? &contestants[next++] : nullptr);

  std::vector<Contestant> teams = {{"one", library.planned(from, to, kipChromaLinear)},
                                   {"two", library.planned(from, to, kipChromaLinear, 2)}};
  race(teams, kRounds, Clock::kWall);
  std::printf("%5.2f\n", teams[0].fastest() / teams[1].fastest());
}

Options optionsOf(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    const auto given = [&](const char* name, std::string& value) {
      if (argument.rfind(name, 0) != 0) return false;
      value = argument.substr(std::strlen(name));
      return true;
    };
    std::string size;
    if (given("--only=", options.only) || given("--target=", options.target) || given("--against=", options.against)) {
      continue;
    }
    if (!given("--size=", size) || std::sscanf(size.c_str(), "%dx%d", &options.width, &options.height) != 2) {
      throw std::runtime_error(argument + ": not an option");
    }
  }
  return options;
}

void selectKernels(const std::string& name) {
  for (const kip::Target& target : kip::vectorTargets()) {
    if (!name.empty() && name != target.name()) continue;
    target.select();
    return;
  }
  throw std::runtime_error(name + ": not on this processor");
}

void measureAll(const Options& options) {
  printHeading(options);
  for (const Pair& pair : kPairs) {
    if (nameOf(pair).find(options.only) != std::string::npos) measure(pair, options);
    std::fflush(stdout);
  }
}

}  // namespace
}  // namespace bench

int main(int count, char** arguments) try {
  const bench::Options options = bench::optionsOf(count, arguments);
  bench::selectKernels(options.target);
  bench::measureAll(options);
} catch (const std::exception& error) {
  std::fprintf(stderr, "kipconvert_bench: %s\n", error.what());
  return 1;
}
