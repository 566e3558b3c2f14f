#ifndef SDP_OFFER_ANSWER_JUDGE_FINDINGS_H
#define SDP_OFFER_ANSWER_JUDGE_FINDINGS_H

// What the judge has found so far, and texts of bodies as they may be shown to people.

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
  /// @param pieces of the text; those that come of a body are `shown`
  void add(std::uint32_t section, AnswerRule rule, std::initializer_list<std::string_view> pieces);
  /// All of them by section and rule; those of one rule in the order in which they were found.
  std::vector<Finding> take();

 private:
  std::vector<Finding> findings_;
};

}  // namespace sdp::exchange

#endif
