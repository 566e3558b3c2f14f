#ifndef SDP_BENCH_PEERS_H
#define SDP_BENCH_PEERS_H

#include <string>

/// Another parser, measured beside ours.
struct Peer {
  const char* name;
  bool (*run)(const std::string& body,
              bool encode);  ///< decodes a body, encodes it again, and frees what it made
};

// Null where the parser was not found when the benchmark was built.
const Peer* peerSofia();
const Peer* peerOsip();
const Peer* peerGstreamer();

#endif
