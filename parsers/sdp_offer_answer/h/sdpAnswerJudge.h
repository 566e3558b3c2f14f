#ifndef SDP_ANSWER_JUDGE_H
#define SDP_ANSWER_JUDGE_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDocument.h"
#include "sdpOfferAnswerExport.h"

// What is wrong with an answer to an offer, whoever made it.

namespace sdp {

/// What an answer can break. The names (textOf) are stable: "section-count".
enum class AnswerRule : std::uint8_t {
  sectionCount,      ///< the answer has another number of sections than the offer
  sectionMedia,      ///< another media than the offer's section
  transport,         ///< another transport
  noFormat,          ///< an accepted section without a format
  direction,         ///< a direction that does not fit that of the offer
  noAddress,         ///< no c-line in section or session
  noPort,            ///< (see the page of the rules)
  disabledAccepted,  ///< a disabled or unreadable section answered with a port
  refusedInGroup,    ///< a group of the answer names a refused section
  codecNotOffered,
  payloadChanged,
  noCodec,
  codecParameters,
  h264Profile,
  h264Mode,
  h264Level,
  groupNotOffered,
  groupWithoutSection,
  bundleOnlyAlone,
  midNotOffered,
  midMissing,
  muxMissing,
  rtcpMuxNotOffered,
  extmapNotOffered,
  iceNotOffered,
  iceShort,
  payloadTwice,
  payloadReserved,
  noRtpmap,
  rtxWithoutCodec,
  cryptoTag,
  cryptoSuite,
  cryptoCount,
  noKey,
  noFingerprint,
  noSetup,
  setupNotOffered,
  setupActpass,
  setupRole,
};
/// The name of a rule: "section-count", "rtcp-mux-not-offered".
SDP_OFFER_ANSWER_API std::string_view textOf(AnswerRule rule) noexcept;

/// How bad it is.
enum class Severity : std::uint8_t {
  error,
  warning  ///< calls usually work all the same
};
/// "error", "warning".
SDP_OFFER_ANSWER_API std::string_view textOf(Severity severity) noexcept;
/// The severity of what breaks a rule.
SDP_OFFER_ANSWER_API Severity severityOf(AnswerRule rule) noexcept;

/// Something that is wrong with an answer.
struct Finding {
  std::uint32_t
      section;  ///< of the offer, or of the answer where the offer has fewer, from 1; 0 for the session
  AnswerRule rule;
  std::string text;  ///< for people: one line, without keys; control characters are shown as `\x0a`
};

/// What is wrong with an answer.
struct Judgement {
  bool isComplete = true;         ///< false when memory ran out
  std::vector<Finding> findings;  ///< by section, in the order of the rules

  /// Nothing is wrong, warnings included.
  bool isGood() const noexcept { return isComplete && findings.empty(); }
};

/// Judges an answer by its offer.
SDP_OFFER_ANSWER_API Judgement checkAnswer(const Document& offer, const Document& answer) noexcept;

}  // namespace sdp

#endif
