#ifndef SDP_DOCUMENT_REQUESTS_H
#define SDP_DOCUMENT_REQUESTS_H

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

#include "sdpDocument.h"

/// @file
/// Requests: what an engine does to a body, section by section. Each is done whole or changes nothing, and then tells
/// why; Document::explanation() has it in words. Views of the document end with each.
///
/// `media` selects the sections: audio, video, text, application, message or image, all, a number, or mid=VALUE. Sections
/// count from 1, and a number that none has selects nothing, 0 among them. Empty is audio and video for what is about
/// codecs, and all for the rest; `disable` wants one. What selects no section is no failure. Disabled sections (port 0
/// without `a=bundle-only`) are left alone by all but setDirection, anchor and canonicalise; unreadable ones by all.
///
/// `list` names codecs, with commas between: NAME, NAME/CLOCK, NAME/CLOCK/CHANNELS, or a payload type. Names compare
/// without regard to case; clocks are in Hz.
///
/// Arguments that fit no document are refused as wrongMedia, wrongCodecList and so on (Refusal::isOfArguments). All may
/// return noMemory and textTooLong.

namespace sdp {

/// Keeps the codecs that a list names. rtx stays with its payload; red, CN, telephone-event and the like when the list
/// names them too: red with all that it carries, CN and telephone-event of a clock rate that is left, telephone-event
/// also of 8000 Hz, and where none would stay so, all that are named. What goes takes its attributes along; a section
/// without a codec is put away.
/// @return noCommonCodec when no section with a port is left
SDP_DOCUMENT_API Refusal keepCodecs(Document& document, std::string_view list,
                                    std::string_view media = {}) noexcept;
/// Drops the codecs that a list names, and what served them.
/// @return noCommonCodec when no section with a port is left
SDP_DOCUMENT_API Refusal dropCodecs(Document& document, std::string_view list,
                                    std::string_view media = {}) noexcept;
/// Puts the formats that a list names in front of the others, in its order.
SDP_DOCUMENT_API Refusal orderCodecs(Document& document, std::string_view list,
                                     std::string_view media = {}) noexcept;

/// Leads the media by way of one address, from a port on: c-lines, ports, `a=rtcp`; ICE and its candidates go. Members
/// of one BUNDLE group with one port share one. The o-line stays.
/// @param address a literal of either family, without brackets or scope
/// @param port even, from 1024; each section takes two, or two for each of its `/count`
/// @return noPortLeft, unreadableSection or pathAttribute
SDP_DOCUMENT_API Refusal anchor(Document& document, std::string_view address, std::uint16_t port) noexcept;

/// Gives RTP sections a profile, and takes away the keys and feedback that do not go with it.
/// @param profile RTP/AVP, RTP/AVPF, RTP/SAVP, RTP/SAVPF, UDP/TLS/RTP/SAVP or UDP/TLS/RTP/SAVPF
/// @return noKeys, noFingerprint, sessionKeysInUse or differentTransports
SDP_DOCUMENT_API Refusal setProfile(Document& document, std::string_view profile,
                                    std::string_view media = {}) noexcept;
/// Makes protected RTP sections opportunistic (RFC 8643): a plain profile beside the keys.
/// @return differentTransports
SDP_DOCUMENT_API Refusal makeOpportunistic(Document& document, std::string_view media = {}) noexcept;
/// Gives opportunistic RTP sections the secure profile of their keys.
/// @return differentTransports
SDP_DOCUMENT_API Refusal makeSecureOnly(Document& document, std::string_view media = {}) noexcept;

/// Dissolves BUNDLE groups (RFC 8843). Sections that were bundled only get the port of their group, so that two may
/// then have one port: `anchor` is meant to follow.
SDP_DOCUMENT_API Refusal unbundle(Document& document) noexcept;
/// Removes attributes, from the session as well when all sections are selected. group, mid and bundle-only stay.
/// @param names with commas between; each may end in `*`, which stands for any characters
SDP_DOCUMENT_API Refusal stripAttributes(Document& document, std::string_view names,
                                         std::string_view media = {}) noexcept;
/// Gives sections a direction.
SDP_DOCUMENT_API Refusal setDirection(Document& document, Direction direction,
                                      std::string_view media = {}) noexcept;
/// Puts sections away: port 0, out of their groups. In a BUNDLE group another member takes the port over.
SDP_DOCUMENT_API Refusal disable(Document& document, std::string_view media) noexcept;
/// Puts the sections of these numbers away, as disable() does one after the other in the document's order, in about the
/// time of one. Numbers may stand in any order, and more than once.
SDP_DOCUMENT_API Refusal disableSections(Document& document,
                                         std::span<const std::uint32_t> sections) noexcept;
/// Brings the text into the form on which all readers agree: CR LF, no empty lines, single blanks in m-lines, known
/// words in their spelling. For texts from outside, before anything decides about them.
/// @return nulCharacter, loneCarriageReturn, noLine, noVersionLine or unreadableSection
SDP_DOCUMENT_API Refusal canonicalise(Document& document) noexcept;

/// Does a request by its name and arguments, as policies and command lines have them: keep-codecs LIST [MEDIA],
/// drop-codecs LIST [MEDIA], order-codecs LIST [MEDIA], anchor ADDRESS PORT, set-profile PROFILE [MEDIA], opportunistic
/// [MEDIA], secure-only [MEDIA], unbundle, strip-attributes NAMES [MEDIA], direction DIRECTION [MEDIA], disable MEDIA,
/// canonical.
/// @param words the name, and the arguments behind it
/// @return unknownRequest, argumentCount, or what the request returns
SDP_DOCUMENT_API Refusal perform(Document& document, std::span<const std::string_view> words) noexcept;
/// Does a request that stands in one line: "keep-codecs opus,PCMA audio".
/// @param line its words, with blanks or tabs between; there is no quoting
SDP_DOCUMENT_API Refusal perform(Document& document, std::string_view line) noexcept;
/// Does a request whose words are written out: `perform(document, {"direction", word})`.
inline Refusal perform(Document& document, std::initializer_list<std::string_view> words) noexcept {
  return perform(document, std::span(words.begin(), words.size()));
}
/// Judges the arguments alone, before there is a document.
/// @return what fits no document; none when the arguments are right
SDP_DOCUMENT_API Refusal checkArguments(std::span<const std::string_view> words) noexcept;
/// Judges a request that stands in one line.
SDP_DOCUMENT_API Refusal checkArguments(std::string_view line) noexcept;
/// Judges a request whose words are written out.
inline Refusal checkArguments(std::initializer_list<std::string_view> words) noexcept {
  return checkArguments(std::span(words.begin(), words.size()));
}

/// A request, and the arguments that it takes, for help and completion.
struct RequestDescription {
  std::string_view name;
  std::string_view arguments;  ///< "LIST [MEDIA]"
};
/// All requests, in the order in which they are documented.
SDP_DOCUMENT_API std::span<const RequestDescription> requestDescriptions() noexcept;

}  // namespace sdp

#endif
