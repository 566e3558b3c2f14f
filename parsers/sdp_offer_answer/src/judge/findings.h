#ifndef SDP_OFFER_ANSWER_JUDGE_FINDINGS_H
#define SDP_OFFER_ANSWER_JUDGE_FINDINGS_H

// What the judge has found so far, and texts of bodies as they may be shown to people.

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "sdpAnswerJudge.h"

namespace sdp::exchange {

/// A piece of a body for people: control characters, bytes that are no UTF-8 and characters that change the direction
/// of writing are shown as `\x0a`, and what is long is cut.
std::string shown(std::string_view piece);

class Findings {
 public:
  /// Keeps as many as a judgement may have.
  /// @param pieces of the text; those that come of a body are `shown`
  void add(std::uint32_t section, AnswerRule rule, std::initializer_list<std::string_view> pieces);
  /// Those that were kept by section and rule; those of one rule in the order in which they were found.
  std::vector<Finding> take();
  /// Whether more were found than were kept.
  bool hasMore() const { return hasMore_; }

 private:
  std::vector<Finding> findings_;
  std::bitset<static_cast<std::size_t>(AnswerRule::setupRole) + 1> broken_;  ///< the rules of what was kept
  bool hasMore_ = false;
};

}  // namespace sdp::exchange

#endif
