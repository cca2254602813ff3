#include "support/memory.h"

#include <pthread.h>
#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace kip {
namespace {

constexpr int kSlots = 2 * kMostPlanes;
constexpr size_t kMargin = 64;  // known bytes on the mapped side of guarded rows

/// Chunks of mapped pages with an unmapped page before, between and behind them.
class Arena {
 public:
  Arena(int chunks, size_t pages) : Arena(chunks, pages, (pages + 1) * pageSize()) {}
  Arena(int chunks, size_t pages, size_t stride) : bytes_(pages * pageSize()), stride_(stride) {
    const size_t total = chunks * stride_ + pageSize();
    void* all = mmap(nullptr, total, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (all == MAP_FAILED) throw std::runtime_error("no memory for guarded images");
    first_ = static_cast<uint8_t*>(all) + pageSize();
    for (int c = 0; c < chunks; ++c) mprotect(begin(c), bytes_, PROT_READ | PROT_WRITE);
  }
  uint8_t* begin(int chunk) const { return first_ + chunk * stride_; }
  uint8_t* end(int chunk) const { return begin(chunk) + bytes_; }
  size_t stride() const { return stride_; }

  static size_t pageSize() {
    static const size_t size = sysconf(_SC_PAGESIZE);
    return size;
  }

 private:
  size_t bytes_, stride_;
  uint8_t* first_;
};

constexpr int kGuardedRows = 12, kFarRows = 4;
constexpr size_t kRowPages = 2, kImagePages = 512;
constexpr size_t kFar = 0x44000000;  // twice that is beyond the range of an int

bool guardsRows(Placement placement) { return placement >= Placement::kRowEnds; }

/// An arena for each plane of a call, made when it is first needed.
const Arena& arenaOf(Placement placement, int slot) {
  static std::unique_ptr<Arena> arenas[3][kSlots];
  const int kind = !guardsRows(placement) ? 0 : placement == Placement::kFarApart ? 2 : 1;
  std::unique_ptr<Arena>& arena = arenas[kind][slot];
  if (!arena) {
    arena.reset(kind == 0   ? new Arena(1, kImagePages)
                : kind == 1 ? new Arena(kGuardedRows, kRowPages)
                            : new Arena(kFarRows, kRowPages, kFar));
  }
  return *arena;
}

sigjmp_buf afterFault;
const uint8_t* volatile faultAddress;
pthread_t faultThread;

void onFault(int signal, siginfo_t* info, void*) {
  if (!pthread_equal(pthread_self(), faultThread)) {  // a worker's fault cannot be taken back
    ::signal(signal, SIG_DFL);
    return;
  }
  faultAddress = static_cast<const uint8_t*>(info->si_addr);
  siglongjmp(afterFault, 1);
}

}  // namespace

const char* nameOf(Placement placement) {
  constexpr const char* kNames[] = {"padded rows",
                                    "padded rows at an odd address",
                                    "tight rows before unmapped memory",
                                    "tight rows behind unmapped memory",
                                    "each row before unmapped memory",
                                    "each row behind unmapped memory",
                                    "each row before unmapped memory, bottom-up",
                                    "rows a gigabyte apart"};
  return kNames[static_cast<int>(placement)];
}

bool fits(Placement placement, Plane plane) {
  if (guardsRows(placement)) {
    const int rows = placement == Placement::kFarApart ? kFarRows : kGuardedRows;
    return plane.rows <= rows && plane.rowBytes + kMargin <= kRowPages * Arena::pageSize();
  }
  return (plane.rowBytes + kMargin) * (plane.rows + 2) <= kImagePages * Arena::pageSize();
}

PlaneMemory::PlaneMemory(Placement placement, int slot, Plane plane, int gap) : plane(plane) {
  const size_t rowBytes = plane.rowBytes, all = rowBytes * plane.rows;
  const Arena& arena = arenaOf(placement, slot);
  const bool atEnd = placement != Placement::kRowStarts && placement != Placement::kTightStart;
  if (guardsRows(placement)) {
    for (int y = 0; y < plane.rows; ++y) {
      extents_.push_back({atEnd ? arena.end(y) - rowBytes - kMargin : arena.begin(y), rowBytes + kMargin});
    }
    const bool bottomUp = placement == Placement::kBottomUp;
    const int top = bottomUp ? plane.rows - 1 : 0;
    step = static_cast<int>(bottomUp ? -arena.stride() : arena.stride());
    first = atEnd ? arena.end(top) - rowBytes : arena.begin(top);
  } else if (placement == Placement::kPadded || placement == Placement::kOddPadded) {
    step = static_cast<int>(rowBytes) + gap;
    first = arena.begin(0) + kMargin + gap + (placement == Placement::kOddPadded && gap % 2 == 0);
    extents_ = {{arena.begin(0), 2 * kMargin + gap + static_cast<size_t>(step) * plane.rows}};
  } else {
    step = static_cast<int>(rowBytes);
    first = atEnd ? arena.end(0) - all : arena.begin(0);
    extents_ = {{atEnd ? first - kMargin : first, all + kMargin}};
  }
}

void PlaneMemory::clear(uint8_t fill) const {
  for (const Extent& e : extents_) std::memset(e.begin, fill, e.size);
}

void PlaneMemory::put(const PlaneContent& content) const {
  for (int y = 0; y < plane.rows; ++y) std::copy_n(content.row(y), plane.rowBytes, row(y));
}

PlaneContent PlaneMemory::get() const {
  PlaneContent content{plane, {}};
  for (int y = 0; y < plane.rows; ++y) content.bytes.insert(content.bytes.end(), row(y), row(y) + plane.rowBytes);
  return content;
}

std::string PlaneMemory::difference(const PlaneContent& expected, uint8_t fill) const {
  std::ostringstream text;
  for (int y = 0; y < plane.rows; ++y) {
    const uint8_t* is = row(y);
    const uint8_t* end = is + plane.rowBytes;
    const auto [at, should] = std::mismatch(is, end, expected.row(y));
    if (at == end) continue;
    text << "row " << y << " byte " << at - is << " is " << int{*at} << " instead of " << int{*should};
    return text.str();
  }
  for (int y = 0; y < plane.rows; ++y) std::memset(row(y), fill, plane.rowBytes);
  for (const Extent& e : extents_) {
    const uint8_t* end = e.begin + e.size;
    const uint8_t* at = std::find_if(e.begin, const_cast<uint8_t*>(end), [&](uint8_t b) { return b != fill; });
    if (at == end) continue;
    text << "outside the rows, byte " << at - first << " from the first row's start (step " << step << ") is "
         << int{*at};
    return text.str();
  }
  return "";
}

std::optional<const uint8_t*> faultOf(const std::function<void()>& function) {
  struct sigaction action = {}, before;
  faultThread = pthread_self();
  action.sa_sigaction = onFault;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  sigaction(SIGSEGV, &action, &before);
  const bool faulted = sigsetjmp(afterFault, 1) != 0;
  if (!faulted) function();
  sigaction(SIGSEGV, &before, nullptr);
  return faulted ? std::optional<const uint8_t*>(faultAddress) : std::nullopt;
}

}  // namespace kip
