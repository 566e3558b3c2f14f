#ifndef B2BUA_CONFIG_H
#define B2BUA_CONFIG_H

#include <sdpNegotiator.h>

#include <string>
#include <vector>

#include "endpoint.h"

namespace b2bua {

/// The command line.
struct Options {
  Endpoint listen;
  Endpoint target;
  std::string policyFile;
  std::string state;  ///< "redis://HOST:PORT", or empty
  std::string logFile;
  std::size_t maxCalls = 10'000;
  bool show = false;
  bool trace = false;
  bool help = false;
};

extern const char* const kUsage;

/// Throws std::invalid_argument with what is wrong.
Options readOptions(int count, char** arguments);

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

/// Reads "key = value" lines; "#" begins a comment. Throws std::runtime_error with the file and line.
Policy readPolicy(const std::string& file);

}  // namespace b2bua

#endif
