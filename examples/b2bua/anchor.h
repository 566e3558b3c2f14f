#ifndef B2BUA_ANCHOR_H
#define B2BUA_ANCHOR_H

#include <string_view>
#include <vector>

#include "mediaRelay.h"

namespace b2bua {

/// FIRST/PAIRS of each, with commas, as the state of a call has them.
std::string textOf(const std::vector<PortRun>& runs);
/// @return the runs up to the first that is none
std::vector<PortRun> portsOf(std::string_view text);

/// Gives bodies the address of a relay that the operator runs, and ports of its own for each side of each call.
class Anchor final : public MediaRelay {
 public:
  explicit Anchor(const MediaOptions& options, Counters& counters);

  void relay(Call& call, Side from, bool isAnswer, const std::string& body, Done done) override;
  void resume(const Call& call) override { mark(call, true); }
  void release(const Call& call) override { mark(call, false); }

 private:
  std::string anchored(Leg& to, std::string& body);
  bool giveRun(Leg& leg, unsigned short pairs);
  void mark(const PortRun& run, bool taken);
  void mark(const Call& call, bool taken);

  const MediaOptions& options_;
  Counters& counters_;
  std::vector<bool> taken_;  ///< pairs of ports, from the first one
  std::size_t next_ = 0;     ///< where the search goes on, so that ports rest
};

}  // namespace b2bua

#endif
