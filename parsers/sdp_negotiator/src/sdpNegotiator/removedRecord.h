#ifndef SDP_NEGOTIATOR_REMOVED_RECORD_H
#define SDP_NEGOTIATOR_REMOVED_RECORD_H

#include <cstddef>
#include <cstring>

namespace sdpneg {

/// Empties a caller's record of removed m-lines, which may be null, before a request fills it.
inline void clearRecord(char* removed, std::size_t size) {
  if (removed != nullptr) std::memset(removed, 0, size);
}

}  // namespace sdpneg

#endif
