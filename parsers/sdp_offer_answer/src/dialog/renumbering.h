#ifndef SDP_OFFER_ANSWER_RENUMBERING_H
#define SDP_OFFER_ANSWER_RENUMBERING_H

// Writing a section with other payload numbers.

#include <string>

#include "codecs.h"
#include "payloads.h"

namespace sdp::exchange {

/// Writes the lines of a section with other payload numbers: in the m-line, in the attributes of formats, and where
/// parameters name formats (rtx, red, rid).
class RenumberedSection {
 public:
  RenumberedSection(const Section& section, const Renumbering& numbers);

  /// A line of the section as it is to be, without an end.
  std::string written(std::string_view line) const;
  /// The rtpmap lines that numbers want whose codec RFC 3551 had told, each with CR LF.
  std::string addedMaps() const;

 private:
  std::string mLine(std::string_view line) const;
  std::string parametersOf(std::string_view payload, std::string_view text) const;
  std::string rid(std::string_view line) const;
  std::string list(std::string_view payloads, char separator) const;

  const Section& section_;
  const Renumbering& numbers_;
  CodecList codecs_;
};

}  // namespace sdp::exchange

#endif
