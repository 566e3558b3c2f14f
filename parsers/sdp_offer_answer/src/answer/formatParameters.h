#ifndef SDP_OFFER_ANSWER_FORMAT_PARAMETERS_H
#define SDP_OFFER_ANSWER_FORMAT_PARAMETERS_H

// The fmtp of a format that is answered: the local one, brought to what both can do.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "answer/formatChoice.h"
#include "parameterSets.h"

namespace sdp::exchange {

/// What changes in the fmtp of a format.
class FormatParameters {
 public:
  /// @param local the list of pair.local
  FormatParameters(const FormatPair& pair, const AnsweredFormats& answered, const CodecList& local);

  /// What stands behind the payload type in the answer.
  /// @param line which of the local fmtp of the format, from 0
  /// @param text what stands behind the payload type there, blanks included
  std::string applied(std::size_t line, std::string_view text) const;
  /// Whether something is to be said though the local section has no fmtp for the format.
  bool needsLine() const { return pair_.local->fmtps.empty() && (list_ || !values_.empty()); }

 private:
  struct Value {
    std::string_view name;
    std::string text;
    std::size_t line;
  };

  void set(std::string_view name, std::string_view text);
  void lowerLevel();
  void restrictModes();
  void takeModes(std::string_view text, ModeSet modes);
  void restrictEvents();
  void translateCarried(const AnsweredFormats& answered, const CodecList& local);

  FormatPair pair_;
  std::optional<std::string> list_;  ///< in front of the first semicolon
  std::vector<Value> values_;
};

}  // namespace sdp::exchange

#endif
