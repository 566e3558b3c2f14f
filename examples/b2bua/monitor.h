#ifndef B2BUA_MONITOR_H
#define B2BUA_MONITOR_H

#include <memory>
#include <string>

#include "snapshot.h"

namespace b2bua {

/// Tells over HTTP how the engine is, in threads of its own that know nothing but its last snapshot.
class Monitor {
 public:
  /// @param address  HOST:PORT, port 0 for a free one; nobody is told when it is empty. Throws std::runtime_error.
  explicit Monitor(const std::string& address);

  /// @return the port; 0 when nobody is told
  int port() const;
  void show(const Snapshot& snapshot);

 private:
  struct Server;

  std::shared_ptr<Server> server_;  ///< none when nobody is told
};

}  // namespace b2bua

#endif
