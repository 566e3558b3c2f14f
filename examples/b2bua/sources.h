#ifndef B2BUA_SOURCES_H
#define B2BUA_SOURCES_H

#include <sys/socket.h>

#include <set>
#include <string>
#include <unordered_map>

#include "perSecond.h"

namespace b2bua {

/// What came from a source within this second.
struct SourceCounts {
  unsigned long messages = 0;
  unsigned long malformed = 0;
  unsigned long calls = 0;
};

/// Counts what comes by its source: an IPv4 address, or an IPv6 network of 64 bits. The memory is bounded: when there are
/// too many sources in a second, the further ones count as one.
class Sources {
 public:
  /// @param address  numeric, without brackets
  void trust(const std::string& address);
  /// @return what the source of an address sent, valid until the next call; null when it is trusted
  SourceCounts* of(const sockaddr& address);

 private:
  std::set<std::string> trusted_;
  std::unordered_map<std::string, SourceCounts> counts_;
  SourceCounts others_;
  PerSecond seconds_;
};

}  // namespace b2bua

#endif
