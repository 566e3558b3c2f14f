#ifndef B2BUA_GATE_H
#define B2BUA_GATE_H

#include <functional>
#include <string>

#include "sources.h"

namespace b2bua {

/// Stands in front of the stack's UDP socket, whose datagrams it may take out before the stack reads them: to drop one
/// takes a fraction of what it takes to read a message, be it to find that it is none.
class Gate {
 public:
  /// @param mostMessages  of a source in a second; 0 for any number
  Gate(Sources& sources, unsigned long mostMessages) : sources_(sources), mostMessages_(mostMessages) {}

  /// @param port  at which the stack listens
  void open(const std::string& port);
  /// Takes out what is beyond the limits, up to the first datagram that is not. The stack reads no more than that one
  /// before this is called again.
  /// @param malformed  what the stack has found unreadable so far; asked only about sources that are
  /// not trusted, since the stack adds up all of its figures for it
  /// @return how many were dropped
  unsigned long sift(const std::function<unsigned long()>& malformed);
  /// Counts a message that did not come as a datagram.
  /// @return whether it is beyond the limits of its source
  bool isBeyond(const sockaddr& address);

 private:
  bool mayCome(const SourceCounts& counts) const;

  Sources& sources_;
  unsigned long mostMessages_;
  unsigned long malformed_ = 0;  ///< before the stack reads that datagram
  int socket_ = -1;
  sockaddr_storage next_{};   ///< where the datagram is from that the stack reads next
  bool isNextKnown_ = false;  ///< there is one, and it is counted
};

}  // namespace b2bua

#endif
