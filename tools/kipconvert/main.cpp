// kipconvert: pictures and video from any pixel format to any other. See --help.

#include <unistd.h>

#include <cstdio>
#include <new>

#include "kipcore.h"
#include "pipeline.h"
#include "progress.h"
#include "report.h"

namespace {

/// What the input holds, by what is said of it or by its first bytes.
std::unique_ptr<Reader> openReader(Input& input, const Options& options) {
  if (options.raw) return readRaw(input, *options.raw);
  const Container* container = recognise(input);
  if (!container) {
    throw std::runtime_error(
        "the input is neither YUV4MPEG2 nor PNG, PGM or PPM; for raw frames add --from nv12 --size 1920x1080 or what "
        "they are");
  }
  return container->read(input);
}

/// The pictures as they lie in memory.
KipPicture inMemory(KipPicture picture, int rows) {
  picture.height = rows;
  return picture;
}

void convert(const Options& options) {
  if (options.input == "-" && isatty(STDIN_FILENO)) throw Usage("there is no input: name a file, or use a pipe");
  const Container& container = options.container ? *options.container : containerOfFile(options.output);
  FileInput input(options.input);
  const std::unique_ptr<Reader> reader = openReader(input, options);
  const Sides sides = settleSides(reader->stream(), options, container);
  const KipPicture &from = sides.from.picture, &to = sides.to.picture;
  const int rows = rowsInMemory(from, to, sides.from.scan);
  Converter converter(inMemory(from, rows), inMemory(to, rows), options.plan, sides.from.scan);
  if (options.action == Action::kExplain) {
    std::fputs(explanation(sides, converter.description()).c_str(), stdout);
    return;
  }
  if (options.output == "-" && isatty(STDOUT_FILENO)) {
    throw Usage("pictures are not written to a terminal: name a file with -o, or use a pipe");
  }
  const Shape fromShape(from, rows), toShape(to, rows);
  const std::unique_ptr<Writer> writer = container.write(options.output, sides.to);
  Progress progress(input, options.quiet);
  const long frames = run({.reader = *reader,
                           .converter = converter,
                           .writer = *writer,
                           .from = fromShape,
                           .to = toShape,
                           .frames = options.frames,
                           .interruptReading = [&] { input.interrupt(); },
                           .written = [&](long frames) { progress.show(frames); }});
  writer->finish();
  progress.showLast(frames);
}

void act(const Options& options) {
  switch (options.action) {
    case Action::kListFormats:
      std::fputs(formatTable().c_str(), stdout);
      break;
    case Action::kHelp:
      std::fputs(kHelp, stdout);
      break;
    case Action::kVersion:
      std::puts("kipconvert " KIPCONVERT_VERSION);
      break;
    default:
      kipSetNumThreads(options.threads);
      convert(options);
  }
  if (std::fflush(stdout) != 0) throw std::runtime_error("cannot write standard output");
}

}  // namespace

int main(int argc, char** argv) try { act(parseOptions(argc, argv)); } catch (const Usage& usage) {
  std::fprintf(stderr, "kipconvert: %s\n", usage.what());
  return 2;
} catch (const std::bad_alloc&) {
  std::fputs("kipconvert: there is not enough memory\n", stderr);
  return 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "kipconvert: %s\n", error.what());
  return 1;
}
