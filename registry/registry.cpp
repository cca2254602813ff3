#include "registry/registry.h"

#include <algorithm>

namespace kip {
namespace {

Plane chromaPlane(Chroma chroma, KipiSize size, int bytesPerSample) {
  const KipiSize group = groupOf(chroma);
  return {(size.width + group.width - 1) / group.width * bytesPerSample,
          (size.height + group.height - 1) / group.height};
}

template <class F>
Function::Call callOf(F* function) {
  return [function](const Arguments& arguments) { return callWith(function, arguments); };
}

template <class F>
Function describe(const char* group, const char* name, F* function) {
  const NameParts parts(name);
  const Shape shape = shapeOf(function);
  const Layout source(parts.source, parts.sourceLayout), destination(parts.destination, parts.destinationLayout);
  return {name,
          group,
          parts,
          shape,
          source,
          destination,
          Contract(parts, source, destination, shape),
          callOf(function),
          [](void* address) { return callOf(reinterpret_cast<F*>(address)); }};
}

}  // namespace

std::vector<Plane> Function::planes(Side side, KipiSize region) const {
  const Layout& is = layout(side);
  const int sampleBytes = bytesOf(image(side).sample);
  if (!is.planar) return {{region.width * sampleBytes * is.channels, region.height}};
  const Plane full = {region.width * sampleBytes, region.height};
  if (is.chroma == Chroma::kFull) return std::vector<Plane>(is.channels, full);
  const KipiSize whole = contract.converted(region);
  if (is.channels == 2) return {full, chromaPlane(is.chroma, whole, 2)};
  return {full, chromaPlane(is.chroma, whole, 1), chromaPlane(is.chroma, whole, 1)};
}

std::span<const Function> registry() {
#define KIP_ENTRY(group, name) describe(#group, #name, &name),
  static const std::vector<Function> functions = {
#include "entries.inc"
  };
#undef KIP_ENTRY
  return functions;
}

const Function* find(const std::string& name) {
  const auto found =
      std::find_if(registry().begin(), registry().end(), [&](const Function& f) { return f.name == name; });
  return found == registry().end() ? nullptr : &*found;
}

}  // namespace kip
