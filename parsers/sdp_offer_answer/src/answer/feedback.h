#ifndef SDP_OFFER_ANSWER_FEEDBACK_H
#define SDP_OFFER_ANSWER_FEEDBACK_H

// RTCP feedback (RFC 4585) that a section offers.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sdpDocumentViews.h"

namespace sdp::exchange {

/// The fields of a text with one blank between.
std::string joinedFields(std::string_view text);

/// What rtcp-fb attributes say, read once.
class OfferedFeedback {
 public:
  explicit OfferedFeedback(const Section& section);
  /// Whether a value ("nack pli") is offered for a payload type, or for `*` as such.
  bool has(std::string_view payload, std::string_view value) const;

 private:
  std::vector<std::pair<std::string_view, std::string>> values_;  ///< sorted
};

}  // namespace sdp::exchange

#endif
