#ifndef SDPNEG_LEG_JOINER_H
#define SDPNEG_LEG_JOINER_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include "calls/joinKeys.h"
#include "calls/keyedHash.h"
#include "calls/openCalls.h"

// Tells which open legs are of one call: by what their messages have in common, or by when and whom they call.

namespace tool {

class LegJoiner {
 public:
  LegJoiner(OpenCalls& calls, std::vector<std::string> joinHeaders)
      : calls_(&calls), joinHeaders_(std::move(joinHeaders)) {}

  /// Joins the leg of a message with those that the message tells of.
  /// @param view of the message
  /// @param sequence in which it came
  void look(OpenLeg& leg, const SipView& view, const CallMessage& message, std::size_t sequence);
  /// Joins a leg by time and numbers, unless that was tried.
  void compare(OpenLeg& leg);
  /// Compares time and numbers of a call's legs with those of others, where that was not done.
  void compareAll(const OpenCall& call);
  /// Forgets the legs of a call that is given away.
  void forget(const OpenCall& call);

 private:
  struct Named {
    OpenLeg* leg;
    JoinedBy by;
    std::string detail;
  };
  /// A leg in which bodies of some origin were sent.
  struct OriginUse {
    OpenLeg* leg;
    CaptureTime time;
    std::vector<Flow> flows;
    std::vector<std::string> senders;  ///< as Via names them, where addresses are not known
    bool isTaken = false;              ///< another leg was joined to it by this
  };
  /// A body's message.
  struct Sending {
    const CallMessage& message;
    std::string sender;  ///< as in OriginUse; empty where the address is known
  };
  enum class Way : std::uint8_t {
    none,
    received,  ///< the sender got it
    possible   ///< the sender has another address to that side
  };
  /// Numbers, time and the leg's sequence.
  using Attempt = std::tuple<JoinHash, std::int64_t, std::size_t>;
  struct Nearest {
    OpenLeg* leg = nullptr;
    std::int64_t time = 0;
    bool isAmbiguous = false;
  };

  void lookByCallId(OpenLeg& leg);
  void lookByHeaders(OpenLeg& leg, const SipView& view);
  void lookByOrigin(OpenLeg& leg, const SipView& view, const CallMessage& message);
  void lookByOriginKey(OpenLeg& leg, const Sending& sending, JoinHash key, const OriginKey& origin);
  void keep(OpenLeg& leg, const JoinKey& key);
  void noteInvite(OpenLeg& leg, const SipView& view, const CallMessage& message);
  void findNearest(const OpenLeg& leg, const LegAttempt& attempt, Nearest& nearest) const;

  static OriginUse* findSentOn(std::vector<OriginUse>& uses, const OpenLeg& leg, const Sending& sending);
  static Way wayOf(const OriginUse& use, const Sending& sending);

  OpenCalls* calls_;
  std::vector<std::string> joinHeaders_;
  std::unordered_map<JoinHash, Named, HashedAlready> named_;
  std::unordered_map<JoinHash, std::vector<OriginUse>, HashedAlready> origins_;
  std::map<Attempt, OpenLeg*> attempts_;
};

}  // namespace tool

#endif
