// All exported image functions, made from the public header, each with its argument shape, its layouts and what is
// promised about it.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "registry/contract.h"

namespace kip {

enum class Side { kSource, kDestination };

/// The part of a plane that a region covers.
struct Plane {
  int rowBytes;
  int rows;
};

struct Function {
  std::string name, group;  ///< the group of the documentation
  NameParts parts;
  Shape shape;
  Layout source, destination;
  Contract contract;
  using Call = std::function<KipStatus(const Arguments&)>;
  Call call;
  std::function<Call(void* address)> callAt;  ///< the same function of another build of the library

  const Layout& layout(Side side) const { return side == Side::kSource ? source : destination; }
  /// The side that the samples to convert are on before a call.
  Side input() const { return shape.inPlace() ? Side::kDestination : Side::kSource; }
  const ImageShape& image(Side side) const { return side == Side::kSource ? shape.source : shape.destination; }

  /// The planes of one side of a region of this size; interleaved images are one plane. Chroma planes are as large as
  /// the part that is converted needs them.
  std::vector<Plane> planes(Side side, KipiSize region) const;
};

/// The functions in the order of the header.
std::span<const Function> registry();

/// The function of this name, or null.
const Function* find(const std::string& name);

}  // namespace kip
