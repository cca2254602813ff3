#include "peers/peers.h"

#include <map>

namespace bench {
namespace {

std::multimap<std::string, Peer>& known() {
  static std::multimap<std::string, Peer> peers;
  return peers;
}

}  // namespace

PeerTable::PeerTable(std::string library, std::vector<PeerRow> rows) {
  for (const PeerRow& row : rows) {
    for (const std::string& function : row.functions) {
      known().insert({function, {library + " " + row.name, row.result, row.prepare}});
    }
  }
}

std::vector<Peer> peersOf(const std::string& function) {
  std::vector<Peer> peers;
  const auto [first, last] = known().equal_range(function);
  for (auto it = first; it != last; ++it) peers.push_back(it->second);
  return peers;
}

}  // namespace bench
