#ifndef SDP_AGREED_H
#define SDP_AGREED_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDialogFailure.h"
#include "sdpDocumentViews.h"
#include "sdpOfferAnswerExport.h"

// What was agreed in a dialog: what a media stack needs to start.

namespace sdp {

/// A format that both sides have: the same by its parameters too, else one under the same number that has the same name,
/// or none on one side. checkAnswer() tells where parameters do not fit.
struct AgreedCodec {
  std::string payload;  ///< the number that the receiving side gave it; in sections without RTP the format
  /// Of the encoding, as the receiving side writes it, else as the other does; empty in sections without RTP.
  std::string name;
  std::uint32_t clockRate = 0;
  std::uint32_t channels = 1;
  std::string fmtp;                   ///< of the receiving side
  std::vector<std::string> feedback;  ///< "nack pli": what both have
  bool isCompanion = false;  ///< it serves other formats (rtx, red, CN, telephone-event and the like)
};

/// What one side of a section receives by. Has keys: it is not for logs.
struct AgreedSide {
  std::string address;      ///< as it is written, `/ttl` included; of a bundled section that of its transport
  std::string addressType;  ///< "IP4" or "IP6"
  std::uint16_t port = 0;
  std::string rtcpAddress;  ///< that for media where no other is told
  std::uint16_t rtcpPort =
      0;  ///< that for media with rtcp-mux, else that of a=rtcp, else the next; 0 where there is none
  std::vector<AgreedCodec>
      codecs;                  ///< what is sent to this side, by its numbers and in its order of preference
  std::uint32_t ptime = 0;     ///< in ms; 0 where nothing is told
  std::uint32_t maxptime = 0;  ///< in ms; 0 where nothing is told
  std::string crypto;   ///< the value of the crypto attribute that was chosen: keys of what this side sends
  std::string keyMgmt;  ///< the value of its key-mgmt attribute
  std::vector<std::string> fingerprints;  ///< "sha-256 12:34:..."
  std::string setup;                      ///< as it is written: "actpass"
  std::string tlsId;
  std::string iceUfrag;
  std::string icePwd;
  std::vector<std::string> candidates;  ///< values of its candidate attributes
  bool isIceLite = false;
};

/// The role of one's own side in DTLS.
enum class DtlsRole : std::uint8_t {
  none,    ///< no fingerprints of both sides
  client,  ///< it begins
  server
};
/// "none", "client", "server".
SDP_OFFER_ANSWER_API std::string_view textOf(DtlsRole role) noexcept;

/// What was agreed of a section.
struct AgreedSection {
  DialogFailure failure = DialogFailure::none;
  std::uint32_t index = 0;  ///< from 1
  bool isAccepted =
      false;  ///< neither side has it disabled; else nothing below counts but media, transport and mid
  std::string media;
  std::string transport;  ///< of the answer
  std::string mid;        ///< empty without one
  /// From one's own side: sendonly when one sends and the peer receives. Whoever has hold of old does not receive.
  Direction direction = Direction::inactive;
  /// What protects the media: plain, sdes, mikey or dtls, and keyless where the transport of either side wants keys that
  /// one lacks: an answer that drops the profile of a secure offer leaves nothing plain.
  /// Keys beside a profile that is not secure are told as sdes, mikey or dtls.
  Security security = Security::plain;
  DtlsRole dtlsRole = DtlsRole::none;
  bool usesRtcpMux = false;
  bool usesReducedRtcp = false;  ///< rtcp-rsize (RFC 5506)
  bool usesIce = false;          ///< both sides have credentials
  /// The section whose address, port and ICE it uses: the first of its BUNDLE group, itself outside of one.
  std::uint32_t transportSection = 0;
  AgreedSide local;   ///< what one receives by
  AgreedSide remote;  ///< what one sends by

  /// True when there is such a section, accepted or not.
  explicit operator bool() const noexcept { return failure == DialogFailure::none; }
};

/// What was agreed of all sections; none before the first answer.
struct AgreedMedia {
  DialogFailure failure = DialogFailure::none;  ///< noMemory
  std::vector<AgreedSection> sections;

  /// True when memory sufficed.
  explicit operator bool() const noexcept { return failure == DialogFailure::none; }
};

}  // namespace sdp

#endif
