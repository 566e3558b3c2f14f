#ifndef SDPNEG_TROUBLE_FINDER_H
#define SDPNEG_TROUBLE_FINDER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "calls/bodyCache.h"
#include "calls/call.h"
#include "calls/callKeys.h"
#include "calls/sdpFacts.h"
#include "calls/segments.h"

// What those who look for troubles share: bodies, hops, and where troubles are put. Its cost is bounded by the size of the
// call.

namespace tool {

inline constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

/// A place in a call.
struct TroublePlace {
  std::size_t message = 0;
  std::uint32_t section = 0;  ///< 0 for the session
  std::size_t line = 0;       ///< of the body, from 1; 0 for its m-line or first line
};

class TroubleFinder {
 public:
  /// @param bodies of this call
  TroubleFinder(Call& call, BodyCache& bodies);

  const Call& call() const { return call_; }
  const Segments& segments() const { return segments_; }
  BodyCache& bodies() { return bodies_; }

  /// Tells a trouble of a known rule.
  void tell(std::string_view rule, const TroublePlace& place, std::string text);
  /// Tells one of any rule, so many as a call may have.
  void tell(std::string_view rule, bool isWarning, const TroublePlace& place, std::string text);
  /// How many were told, those that are too many included.
  std::size_t told() const { return count_; }
  /// Whether this is asked for the first time of a rule and the texts of two bodies: proxies repeat both.
  bool isNews(std::string_view rule, std::size_t first, std::size_t second);

  /// The message that a hop sent for what came in.
  std::size_t cameAs(std::size_t message) const { return before_[message]; }
  std::size_t wentAs(std::size_t message) const { return after_[message]; }
  /// The exchange of which a message is the answer; nothing where it is none.
  const Exchange* answeredBy(std::size_t message) const;
  /// That of which it is the offer and that was answered last.
  const Exchange* offeredBy(std::size_t message) const;

  /// Puts them in the order of messages.
  void finish();

 private:
  std::size_t lineOf(const TroublePlace& place);
  std::size_t textOf(std::size_t message);

  Call& call_;
  Segments segments_;
  BodyCache& bodies_;
  std::vector<std::size_t> before_;
  std::vector<std::size_t> after_;
  std::vector<std::size_t> answers_;  ///< by message: an exchange
  std::vector<std::size_t> offers_;
  NumberedKeys<std::string_view> texts_;
  std::vector<std::size_t> textNumbers_;  ///< by message
  std::set<std::tuple<std::size_t, std::size_t, std::string_view>> told_;
  std::pair<std::size_t, std::size_t> counted_{kNowhere,
                                               0};  ///< a message and the lines in front of its body
  std::size_t count_ = 0;
  bool hasMore_ = false;
};

/// Whether what was offered came to be used, as far as the capture tells.
bool wasAccepted(const Call& call, const Exchange& exchange);

// The troubles by topic.

void findJudgedTroubles(TroubleFinder& finder);   ///< what the judge finds
void findCodecTroubles(TroubleFinder& finder);    ///< no-common-codec, dtmf-clock
void findAddressTroubles(TroubleFinder& finder);  ///< private-address
void findHopTroubles(TroubleFinder& finder);  ///< hop-lost-candidates, hop-lost-keys, profile-without-keys
void findDirectionTroubles(TroubleFinder& finder);   ///< one-way
void findHoldTroubles(TroubleFinder& finder);        ///< hold-not-resumed
void findFaxTroubles(TroubleFinder& finder);         ///< t38-refused
void findRepetitionTroubles(TroubleFinder& finder);  ///< version-..., retransmission-differs

}  // namespace tool

#endif
