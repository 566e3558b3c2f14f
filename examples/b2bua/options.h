#ifndef B2BUA_OPTIONS_H
#define B2BUA_OPTIONS_H

#include <string>
#include <vector>

#include <sdpNegotiator.h>

#include "log.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace b2bua {

enum class Video { on, off, capped };
enum class Security { asIs, plain, secure, bestEffort1, bestEffort2 };

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
};

struct Options {
  std::string listen = "127.0.0.1:5060";
  std::string target;
  std::string state;    ///< "redis://HOST:PORT", or empty
  std::string logFile;  ///< standard error when empty
  LogFormat logFormat = LogFormat::text;
  std::size_t maxCalls = 10'000;
  unsigned int maxInvites = 400;          ///< per second
  unsigned int maxTransactions = 60'000;  ///< at a time, those that are only remembered included
  unsigned int drainSeconds = 0;          ///< that running calls have after SIGTERM
  bool show = false;
  bool trace = false;
  Policy policy;
};

/// Adds the options to a command line; the rules of the policy stand there or, without their hyphens, in its file.
void addOptions(CLI::App& app, Options& options);

/// @param words  the command line
/// @return file and line of the policy that an error is about, with what stands behind them; empty for other errors
std::string placeOf(const CLI::ParseError& error, const CLI::App& app, const std::vector<std::string>& words);

}  // namespace b2bua

#endif
