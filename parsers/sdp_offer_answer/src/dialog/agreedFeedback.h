#ifndef SDP_OFFER_ANSWER_AGREED_FEEDBACK_H
#define SDP_OFFER_ANSWER_AGREED_FEEDBACK_H

// The feedback (RFC 4585) that formats of two sections have in common. Lines for all formats are compared once for both
// sections, whatever number of formats they serve.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "codecs.h"

namespace sdp::exchange {

/// The values of a section's rtcp-fb attributes by its formats.
class FeedbackValues {
 public:
  struct Value {
    std::size_t codec;  ///< by its place; behind the last one for those of all formats
    std::string_view text;
    std::size_t line;  ///< among the rtcp-fb of the section
  };

  /// @param codecs of the section
  FeedbackValues(const Section& section, const CodecList& codecs);

  /// Those of a format alone, each once, in the order of their texts.
  std::span<const Value> of(std::size_t codec) const;
  /// Those of `*`, each once, in the order of their texts.
  std::span<const Value> ofAll() const { return of(codecCount_); }

 private:
  std::size_t codecCount_;
  std::vector<Value> values_;
};

/// What formats of one section have in common with those of another.
class CommonFeedback {
 public:
  /// @param ours must outlive this, as `theirs`
  CommonFeedback(const FeedbackValues& ours, const FeedbackValues& theirs);

  /// The values that two formats have in common, each once, in the order in which they stand in one's own section.
  std::vector<std::string> of(std::size_t codec, std::size_t other) const;

 private:
  const FeedbackValues& ours_;
  const FeedbackValues& theirs_;
  std::vector<FeedbackValues::Value> ofAll_;  ///< those for all formats on both sides
};

}  // namespace sdp::exchange

#endif
