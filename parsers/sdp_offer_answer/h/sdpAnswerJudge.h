#ifndef SDP_ANSWER_JUDGE_H
#define SDP_ANSWER_JUDGE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDocument.h"
#include "sdpOfferAnswerExport.h"

// What is wrong with an answer to an offer, whoever made it.

namespace sdp {

/// What an answer can break. The names (textOf) are stable: "section-count".
///
/// Sections are those of the same number. A section of an answer is refused when it has port 0, and accepted when it has
/// another port and what it answers can be read and is not disabled. Where nothing else is said, a rule is asked of
/// accepted sections alone. The same encoding means the same name without regard to case, clock rate and channels.
/// Keys, roles and ICE credentials are those of the section, else of the session (but not of SDES), else of the first
/// section of its BUNDLE group that has such and is not disabled.
enum class AnswerRule : std::uint8_t {
  // Sections.

  /// The answer has another number of sections than the offer (RFC 3264, section 6). Told of the session; those that
  /// both have are judged all the same.
  sectionCount,
  /// Another media than that of the offered section (RFC 3264, section 6). Also of a refused section, and of one that
  /// cannot be read.
  sectionMedia,
  /// Another transport than that of the offered section (RFC 3264, section 6.1), which compares exactly for RTP, else
  /// without regard to case. Also of a refused section.
  transport,
  /// None of its formats was offered (RFC 3264, section 6.1): of RTP neither a payload type, whatever it means, nor an
  /// encoding; else no format without regard to case.
  noFormat,
  /// A direction that the offered one does not allow (RFC 3264, section 6.1): what the offer does not take is sent, or
  /// what it does not send is received. The address 0.0.0.0, by which peers of old hold media, is not looked at.
  direction,
  /// No c-line with an address in section or session (RFC 4566, section 5.7), nor in a section with which it is bundled.
  noAddress,
  /// The m-line cannot be read: it lacks a field, or has a port or count out of range (RFC 4566, section 5.14). Of such
  /// a section nothing else is told but its media, its mid and the groups.
  noPort,
  /// A port for a section that the offer has disabled, or has with an m-line that cannot be read (RFC 3264, section 6).
  /// Beside it media, transport and mid are judged.
  disabledAccepted,
  /// A group of the answer names a refused section (RFC 5888, section 9.2; RFC 8843, section 7.3.3).
  refusedInGroup,

  // Codecs, of RTP.

  /// An encoding, or a payload type of which nothing is known, that was not offered. RFC 3264, section 6.1, lets answers
  /// add formats, which the peer need not know.
  codecNotOffered,
  /// The payload type means another encoding than in the offer (RFC 3264, section 6.1).
  payloadChanged,
  /// Codecs were offered, and the answer has what serves codecs alone: comfort noise, telephone events, retransmission
  /// and the like.
  noCodec,
  /// Parameters of AMR, AMR-WB (RFC 4867, section 8.3), VP9 (RFC 9628), H265 (RFC 7798, section 7.2.2) or AV1 that were
  /// not offered. They are compared, as all below, with the offered format of the same payload type when that has the
  /// same encoding, else with all of the encoding, one of which must fit.
  codecParameters,
  /// A profile of H.264 that was not offered, as RFC 6184, table 5, tells profiles apart. Here and in the next two a
  /// format without profile-level-id fits all.
  h264Profile,
  /// Another packetization-mode of H.264 than was offered (RFC 6184, section 8.2.2).
  h264Mode,
  /// A higher level of H.264 than was offered with the profile, unless both have level-asymmetry-allowed=1 (RFC 6184,
  /// section 8.2.2).
  h264Level,

  // Groups and mids.

  /// No group of the offer has these semantics and all these members (RFC 5888, section 9.2; RFC 8843, section 7.3).
  /// Told of the session, once for each group. The search has an end: where answers have very many groups, and offers too,
  /// the last may count as not offered.
  groupNotOffered,
  /// A group names a mid that no section of the answer has (RFC 5888, section 6). Told of the session.
  groupWithoutSection,
  /// A section that was offered bundle-only with port 0, and that is in no BUNDLE group of the answer with one that has a
  /// port and was offered with one (RFC 8843, section 6).
  bundleOnlyAlone,
  /// A mid that is not that of the offered section (RFC 5888, section 9.1). Of refused sections too, and of those that
  /// cannot be read.
  midNotOffered,
  /// No mid, where the offered section has one that a group of the answer names (RFC 8843, section 7.3). Of refused
  /// sections too, and of those that cannot be read.
  midMissing,
  /// No rtcp-mux in a BUNDLE group of the answer, where it was offered (RFC 8843, section 9.3).
  muxMissing,

  // RTCP, header extensions and ICE.

  /// rtcp-mux that was not offered (RFC 5761, section 5.1.1).
  rtcpMuxNotOffered,
  /// A header extension of RTP that was not offered, in section or session, or was under another number; those that
  /// were offered under 4096 or more may have any (RFC 8285, section 7). Extensions of the answer's session are told of
  /// that, when no section was offered such.
  extmapNotOffered,
  /// An attribute of ICE, and the offered section has no ice-ufrag and ice-pwd (RFC 8839, section 4.2.3); ice-options and
  /// ice-pacing may stand in any answer. Told once for each section, and of the session when no section that is not
  /// disabled was offered with ICE.
  iceNotOffered,
  /// An ice-ufrag of less than 4, or an ice-pwd of less than 22 characters (RFC 8839, section 5.4), of section or
  /// session.
  iceShort,

  // Payload types, of RTP.

  /// A payload type that stands in the m-line again, told once for each.
  payloadTwice,
  /// A payload type from 64 to 95 beside rtcp-mux, which readers may take for RTCP (RFC 5761, section 4).
  payloadReserved,
  /// A payload type from 96 on without a rtpmap (RFC 3551, section 3).
  noRtpmap,
  /// Retransmission whose apt names no format of the section (RFC 4588, section 8.1).
  rtxWithoutCodec,

  // Keys.

  /// A crypto attribute with a tag that was not offered (RFC 4568, section 5.1.2). This and the next two are asked of
  /// RTP without TLS.
  cryptoTag,
  /// Another suite than was offered with its tag (RFC 4568, section 5.1.2).
  cryptoSuite,
  /// More than one crypto attribute (RFC 4568, section 5.1.2).
  cryptoCount,
  /// A secure profile without TLS, and no keys of a kind (crypto, key-mgmt, fingerprint) that was offered (RFC 4568,
  /// section 5.1.2; RFC 5763, section 5).
  noKey,
  /// TLS in the transport, and no fingerprint (RFC 8122, section 5; RFC 5763, section 5). Media without RTP may do
  /// without when none was offered.
  noFingerprint,
  /// No setup, where one was offered (RFC 8842, section 5.3). Here and in setupRole it counts with TLS, TCP or a
  /// fingerprint of the answer; words other than active, passive and actpass count as none.
  noSetup,
  /// A setup that was not offered. With TLS or TCP, or a fingerprint of its own, an offer without one counts as active
  /// (RFC 4145, section 4).
  setupNotOffered,
  /// actpass, which leaves a choice that answers have to make (RFC 4145, section 4.1).
  setupActpass,
  /// Both are active, or both passive (RFC 4145, section 4.1).
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
/// The severity of what breaks a rule: a warning for codecNotOffered and payloadReserved, else an error.
SDP_OFFER_ANSWER_API Severity severityOf(AnswerRule rule) noexcept;

/// Something that is wrong with an answer.
struct Finding {
  std::uint32_t section;  ///< from 1; 0 for the session
  AnswerRule rule;
  /// For people: one line, without keys. Of what bodies have there, control characters, characters that change the
  /// direction of writing and bytes that are no UTF-8 are shown as `\x0a`, and what is long is cut.
  std::string text;
};

/// What is wrong with an answer.
struct Judgement {
  /// So many findings are told. Of a rule that none of them is of, the first is told beside them.
  static constexpr std::size_t kMostFindings = 1000;

  bool isComplete = true;         ///< false when memory ran out; there are no findings then
  std::vector<Finding> findings;  ///< by section, then in the order of the rules
  bool hasMore = false;  ///< there were more than are told; every rule that is broken is told all the same

  /// Nothing is wrong, warnings included.
  bool isGood() const noexcept { return isComplete && findings.empty(); }
};

/// Judges an answer by its offer, whoever made either: both may be any text. Without sections in both there is nothing
/// to judge, and nothing is wrong. The time that it takes grows with the bodies nearly as their length.
/// A document is used by one thread at a time, also where it is const: two threads judge by documents of their own.
[[nodiscard]] SDP_OFFER_ANSWER_API Judgement checkAnswer(const Document& offer,
                                                         const Document& answer) noexcept;

}  // namespace sdp

#endif
