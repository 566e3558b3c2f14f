#ifndef SDP_DOCUMENT_REFUSAL_H
#define SDP_DOCUMENT_REFUSAL_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "sdpDocumentExport.h"

// Why something was refused, as a value.

namespace sdp {

/// Why a text was not read, an edit or a request not done.
enum class Reason : std::uint8_t {
  none,         ///< nothing was refused
  noMemory,     ///< memory ran out
  textTooLong,  ///< the text has, or would have, more than Document::kMaximumLength characters

  // Wrong arguments: they fit no document.
  unknownRequest = 16,  ///< no request has this name
  argumentCount,        ///< too few arguments, or too many
  wrongCodecList,       ///< an entry is none of NAME, NAME/CLOCK, NAME/CLOCK/CHANNELS and digits
  wrongMedia,           ///< no selection of sections
  wrongAddress,         ///< no literal of an IPv4 or IPv6 address
  wrongPort,            ///< odd, or not from 1024 to 65534
  wrongProfile,         ///< none of the six that setProfile has
  wrongDirection,       ///< none of sendrecv, sendonly, recvonly and inactive
  wrongNames,  ///< an empty name, one with a blank, a colon or a control character, or `*` elsewhere than at its end
  wrongText,  ///< a text that would not stay within its field or its line

  // What the document does not allow.
  noSuchSection = 64,   ///< the document has fewer, or a session without a line
  unreadableSection,    ///< its m-line lacks a field, or has a port or count out of range
  noCommonCodec,        ///< no codec is left, and no section with a port
  noPortLeft,           ///< a section would need a port above 65534
  pathAttribute,        ///< `a=path` may tell an address (RFC 4975)
  noKeys,               ///< neither crypto nor key-mgmt for a secure profile
  noFingerprint,        ///< no fingerprint for a profile with DTLS
  sessionKeysInUse,     ///< another section rests on keys of the session that would go
  differentTransports,  ///< RTP sections of one BUNDLE group would have different transports
  nulCharacter,         ///< a NUL in a line
  loneCarriageReturn,   ///< a CR that ends no line
  noLine,               ///< neither empty nor a lower-case letter and `=`
  noVersionLine,        ///< the first line is no v-line
};

/// What was refused, and where. Nothing was changed then. Converts to true when something was refused, so that
/// `if (const Refusal refusal = keepCodecs(...))` is the way to ask. Who does not want to know says so with `(void)`.
struct [[nodiscard]] Refusal {
  Reason reason = Reason::none;  ///< Reason::none when nothing was refused
  std::uint32_t section = 0;     ///< from 1; 0 when it concerns no single section
  std::size_t line = 0;          ///< from 1, as the text was read; 0 when it concerns no single line

  /// True when something was refused.
  explicit operator bool() const noexcept { return reason != Reason::none; }
  /// True when the arguments were wrong, whatever the document.
  bool isOfArguments() const noexcept {
    return reason >= Reason::unknownRequest && reason < Reason::noSuchSection;
  }
  /// The same reason at the same place.
  bool operator==(const Refusal&) const noexcept = default;
};

/// A reason in words, as "no common codec"; empty for Reason::none. Document::explanation() has more: the section, and
/// what is there or missing.
SDP_DOCUMENT_API std::string_view textOf(Reason reason) noexcept;

}  // namespace sdp

#endif
