// Other libraries that read subtitle files, to compare with; they are built in only on demand.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

struct Peer {
  std::string name;
  bool readsSubRip;
  /// Opens the file, reads it, and returns how many cues it has; 0 if it is refused.
  std::size_t (*read)(const std::string& path);
};

#ifdef KSSUBTITLE_BENCHMARK_PEERS
std::vector<Peer> peers();
#else
inline std::vector<Peer> peers() { return {}; }
#endif

}  // namespace bench
