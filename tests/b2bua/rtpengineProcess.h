#ifndef B2BUA_TEST_RTPENGINE_PROCESS_H
#define B2BUA_TEST_RTPENGINE_PROCESS_H

#include <nlohmann/json.hpp>
#include <string>

#include "calls.h"
#include "rawParty.h"

/// What the relay says of one side of its only call.
struct RelayedSide {
  long packets = 0;    ///< RTP that came from it
  long errors = 0;     ///< packets that could not be used, as with other keys
  std::string codec;   ///< encoding name and clock of the last one
  std::string crypto;  ///< suite; empty for plain RTP
};

/// rtpengine in userspace, on loopback.
class RtpengineProcess {
 public:
  /// @param port  of its control; empty for a free one
  explicit RtpengineProcess(const TemporaryFolder& folder, const std::string& port = "");

  const std::string& port() const { return port_; }
  std::vector<std::string> options() const { return {"--media", "rtpengine", "udp:127.0.0.1:" + port_}; }
  Process& process() { return process_; }
  /// How many calls it has.
  std::size_t calls() const { return list().size(); }
  /// @param tag  what the side's tag ends with: "-c" or "-t"
  RelayedSide side(const std::string& tag) const;
  /// Waits until so many more packets have come from both sides.
  bool hasFlow(long packets = 25) const;
  /// Waits until nothing comes from a side any more; what is on its way still arrives.
  bool isSilent(const std::string& tag) const;

 private:
  /// @return its reply; empty for none
  nlohmann::json ask(const nlohmann::json& members) const;
  nlohmann::json list() const;

  const RawParty party_;
  std::string port_;
  Process process_;
};

#endif
