// What the library uses of OpenMP's runtime, on the standard library's threads: ThreadSanitizer sees how these wait for
// one another, which inside libgomp it does not. For programs that are built with it.
#include <thread>
#include <vector>

namespace {

struct Member {
  int number = 0, of = 1;
};
thread_local Member self;

}  // namespace

#pragma GCC visibility push(default)  // or the library calls libgomp's
extern "C" {

void GOMP_parallel(void (*work)(void*), void* data, unsigned threads, unsigned) {
  const int count = static_cast<int>(threads);
  const Member outside = self;
  std::vector<std::thread> others;
  for (int number = 1; number < count; ++number) {
    others.emplace_back([=] {
      self = {number, count};
      work(data);
    });
  }
  self = {0, count};
  work(data);
  self = outside;
  for (std::thread& other : others) other.join();
}
int omp_get_thread_num() { return self.number; }
int omp_get_num_threads() { return self.of; }
int omp_in_parallel() { return self.of > 1; }

}  // extern "C"
#pragma GCC visibility pop
