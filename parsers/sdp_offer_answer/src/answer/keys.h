#ifndef SDP_OFFER_ANSWER_KEYS_H
#define SDP_OFFER_ANSWER_KEYS_H

// How the media of an answer are protected, and by which keys.

#include <map>
#include <string>
#include <utility>

#include "bundles.h"
#include "sdpAnswer.h"
#include "transports.h"

namespace sdp::exchange {

/// What protects the media of an answer.
enum class Protection : std::uint8_t {
  none,
  sdes,
  dtls,  ///< DTLS with SRTP
  tls    ///< TLS or DTLS that the transport has, without RTP
};

/// The keys of an answer.
struct KeyChoice {
  Protection protection = Protection::none;
  std::string crypto;                 ///< the value of the crypto attribute
  const char* cryptoPlace = nullptr;  ///< where the value of the local one stands
};

/// A section with the groups of its body.
struct KeySide {
  const Section& section;
  const Bundles& bundles;

  bool has(Credential credential) const { return bundles.has(section.index(), credential); }
};

/// Chooses what protects answers, whose transports are those of the offer.
class KeyChooser {
 public:
  /// @param choice is filled when the section can be accepted
  /// @return accepted, noCommonKeys or notProtected
  SectionOutcome choose(const KeySide& offered, const KeySide& local, KeyChoice& choice);

 private:
  KeyChoice chooseSdes(const KeySide& offered, const KeySide& local);

  /// By the section that has the offered keys, and the local one: a whole group may have the keys of one section.
  std::map<std::pair<std::uint32_t, std::uint32_t>, KeyChoice> crypto_;
};

/// Whether a transport is over TCP, where setup tells who connects (RFC 4145).
bool isOverTcp(std::string_view transport);

/// The role of DTLS or TCP that answers an offered one (RFC 5763, section 5; RFC 4145, section 4).
/// @param previous the role that was answered before; empty without
std::string_view answeredSetup(std::string_view offered, std::string_view previous,
                               const AnswerOptions& options);

}  // namespace sdp::exchange

#endif
