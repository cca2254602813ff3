// What other libraries have for the same conversions, as tables: one file per library.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "images.h"

namespace bench {

/// Prepares a conversion of a call's images (contexts, graphs, headers) and returns the conversion itself.
using Prepare = std::function<std::function<void()>(const Call&)>;

/// A peer whose result is as exact as ours, or one that is coarser: fewer bits in its coefficients, or chroma taken
/// from one pixel of several.
enum class Result { kExact, kCoarser };

struct PeerRow {
  std::vector<std::string> functions;  ///< ours that it is a peer of
  std::string name;
  Result result;
  Prepare prepare;
};

struct Peer {
  std::string name;  ///< with its library
  Result result;
  Prepare prepare;
};

/// The rows about one library. To define one is to make it known.
struct PeerTable {
  PeerTable(std::string library, std::vector<PeerRow> rows);
};

std::vector<Peer> peersOf(const std::string& function);

/// For conversions that need no preparation.
template <class Convert>
Prepare direct(Convert convert) {
  return [convert](const Call& call) { return [convert, call] { convert(call); }; };
}

}  // namespace bench
