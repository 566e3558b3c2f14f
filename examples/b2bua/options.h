#ifndef B2BUA_OPTIONS_H
#define B2BUA_OPTIONS_H

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <sdpNegotiator.h>

#include "targets.h"

#include "log.h"

namespace CLI {
class App;
}  // namespace CLI

namespace b2bua {

enum class Video { on, off, capped };
enum class Security { asIs, plain, secure, bestEffort1, bestEffort2 };

/// A request of the document layer: its name, and its arguments.
using NamedRequest = std::vector<std::string>;

/// What is done to bodies; as it is here, nothing.
struct Policy {
  std::vector<unsigned char> audioCodecs;  ///< allowed, in this order; empty allows all
  Video video = Video::on;
  unsigned int videoBandwidth = 0;
  eH264_profile_id videoLevel = H264_LEVEL_5_1;
  bool removeIce = false;
  Security security = Security::asIs;
  eIPAddressVersion addressFamily = IP_VERSION_UNKNOWN;  ///< unknown keeps both
  std::string connectionAddress;
  std::array<std::vector<NamedRequest>, 12> requests;  ///< by party and direction, see namedRequests.h
};

/// How long sessions last without a sign of life (RFC 4028), in seconds.
struct SessionLimits {
  unsigned int interval = 1'800;  ///< 0 for without end
  unsigned int minimum = 90;
};

enum class MediaKind { none, rtpengine, anchor };
/// What a party speaks, to whom media are led by way of rtpengine.
enum class PartyKind { asIs, rtp, srtp, webrtc };

inline constexpr unsigned short kLowestPort = 1024;  ///< of those for media

struct MediaOptions {
  MediaKind kind = MediaKind::none;
  std::string relay;  ///< HOST:PORT of rtpengine, or the address of an anchor
  unsigned short firstPort = 0;
  unsigned short lastPort = 0;
  std::array<PartyKind, 2> parties{};  ///< caller and target
};

struct TransportOptions {
  std::vector<std::string> names = {"udp"};  ///< udp, tcp and tls
  unsigned int tlsPort = 5'061;              ///< at the address of the others
  std::string certificates;    ///< folder with agent.pem and cafile.pem, as the stack wants them
  bool verifyCallers = false;  ///< certificates of who connects; those of targets are always verified
  unsigned int maxConnections = 1'000;
  unsigned int idleSeconds = 180;  ///< after which a connection without messages is closed

  bool has(const std::string& name) const { return std::ranges::find(names, name) != names.end(); }
};

struct Options {
  std::string listen = "127.0.0.1:5060";
  std::vector<Target> targets;
  unsigned int targetSeconds = 4;    ///< of silence, after which a call goes on to the next one
  unsigned int followRedirects = 0;  ///< contacts of a call that are tried
  TransportOptions transports;
  std::vector<std::string> passHeaders = {"P-Asserted-Identity", "Privacy", "Diversion", "X-*"};
  std::string state;    ///< of a RedisLink, or empty
  std::string http;     ///< HOST:PORT of metrics and health, or empty
  std::string logFile;  ///< standard error when empty
  LogFormat logFormat = LogFormat::text;
  unsigned int maxCalls = 10'000;
  unsigned int maxInvites = 400;          ///< per second
  unsigned int maxTransactions = 60'000;  ///< at a time, those that are only remembered included
  unsigned int maxCallsPerSource = 0;     ///< per second; 0 for any number, here and below
  unsigned int maxMessagesPerSource = 0;  ///< per second
  unsigned int maxMemory = 0;             ///< MB
  std::vector<std::string> trusted;       ///< addresses that may send any number
  unsigned int drainSeconds = 0;          ///< that running calls have after SIGTERM
  SessionLimits session;
  bool show = false;
  bool trace = false;
  std::string policyFile;
  std::string configFile;
  std::vector<std::string> checked;  ///< a policy and bodies, which are shown instead of calls
  MediaOptions media;
  Policy policy;
};

/// Reads the command line, the configuration that it may name, and the policy that either may name: what was read
/// first counts. Throws CLI::ParseError, which for a file tells where, "FILE:LINE:COLUMN: ".
/// @param app  a new one; its options refer to `options`
void parseOptions(CLI::App& app, Options& options, const std::vector<std::string>& words);

/// @return the address of a HOST:PORT, without brackets
std::string hostOf(const std::string& endpoint);

}  // namespace b2bua

#endif
