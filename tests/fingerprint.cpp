// Prints one line for each exported function: its name, and a hash of what it makes of fixed images. The lines of two
// builds of the library, for other processors or other word sizes, must be equal.
#include <cstdio>

#include "support/call_case.h"

namespace {

uint64_t hashOf(const kip::Function& function) {
  uint64_t hash = 14695981039346656037u;
  const auto add = [&](uint8_t byte) { hash = (hash ^ byte) * 1099511628211u; };
  for (const KipiSize wanted : {KipiSize{1, 1}, {37, 5}, {128, 8}, {1021, 6}}) {
    const KipiSize size = kip::allowed(function, wanted);
    for (const kip::Arguments& settings : kip::settingsOf(function)) {
      const kip::Case that(function, size, settings);
      kip::Trial trial(that, kip::plainPlacement(function));
      add(static_cast<uint8_t>(trial()));
      for (const kip::PlaneContent& plane : trial.destination()) {
        for (const uint8_t byte : plane.bytes) add(byte);
      }
    }
  }
  return hash;
}

}  // namespace

int main() {
  for (const kip::Function& function : kip::registry()) {
    std::printf("%s %016llx\n", function.name.c_str(), static_cast<unsigned long long>(hashOf(function)));
  }
}
