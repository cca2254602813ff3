// Runs a fuzz target over files, in place of a fuzzer: the corpus is tested with every compiler.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int count, char** folders) {
  int inputs = 0;
  for (int i = 1; i < count; ++i) {
    for (const auto& file : std::filesystem::directory_iterator(folders[i])) {
      std::ifstream stream(file.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
      ++inputs;
    }
  }
  std::printf("%d inputs\n", inputs);
  return inputs ? EXIT_SUCCESS : EXIT_FAILURE;
}
