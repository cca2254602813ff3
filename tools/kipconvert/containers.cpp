#include "containers.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace {

constexpr const Container* kContainers[] = {&kY4m, &kPng, &kPnm, &kRaw};

}  // namespace

const Container* recognise(Input& input) {
  const auto found = std::ranges::find_if(kContainers, [&](const Container* c) { return c->recognises(input); });
  return found == std::end(kContainers) ? nullptr : *found;
}

const Container* containerNamed(const std::string& name) {
  const auto found = std::ranges::find_if(kContainers, [&](const Container* c) { return c->name == name; });
  return found == std::end(kContainers) ? nullptr : *found;
}

const Container& containerOfFile(const std::string& name) {
  std::string extension(1, ' ');
  extension.append(std::filesystem::path(name).extension().string()).append(1, ' ');
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (const Container* container : kContainers) {
    if (std::string(container->extensions).find(extension) != std::string::npos) return *container;
  }
  return kRaw;
}
