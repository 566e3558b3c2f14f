#ifndef SDP_BENCH_PEERS_H
#define SDP_BENCH_PEERS_H

#include <string>

/// Another parser, measured beside ours: decodes one body and frees what it made.
struct Peer {
  const char* name;
  bool (*decode)(const std::string& body);
  bool (*decodeAndEncode)(const std::string& body);
};

// Null where the parser was not found when the benchmark was built.
const Peer* peerSofia();
const Peer* peerOsip();
const Peer* peerGstreamer();

#endif
