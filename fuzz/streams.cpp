// What kipconvert reads: YUV4MPEG2, PNG, PGM and PPM, from bytes that are anything.
#include <cstdint>
#include <new>
#include <stdexcept>

#include "containers.h"
#include "converter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  MemoryInput input({data, size});
  try {
    const Container* const container = recognise(input);
    if (!container) return 0;
    const std::unique_ptr<Reader> reader = container->read(input);
    const Stream& stream = reader->stream();
    const Shape shape(stream.picture, rowsInMemory(stream.picture, stream.picture, stream.scan));
    Frame frame(shape);
    while (reader->read(frame)) frame.repeatLastRows();
  } catch (const std::runtime_error&) {  // refused, as most are
  }
  return 0;
}
