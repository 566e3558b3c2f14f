#ifndef B2BUA_MEDIA_POLICY_H
#define B2BUA_MEDIA_POLICY_H

#include <sdpDocument.h>
#include <sdpNegotiator.h>

#include <string>

#include "options.h"

namespace b2bua {

/// An object that holds no body until it parses one.
struct Body : cSdpNegotiator {
  Body() : cSdpNegotiator(kEmpty) {}

  static inline const cSdpNegotiator kEmpty = empty();
};

/// How an offer's m-lines were changed for its security, so that the answer can be changed back.
enum class MLineChange { none, secureRemoved, plainRemoved, merged, split, madeSecure };

/// What an offer lost on its way; its answer gets it back as refused m-lines.
struct OfferChanges {
  char anat[32]{};      ///< record of the media of the other address family
  char security[32]{};  ///< record of the media of the other security
  MLineChange mLines = MLineChange::none;
};

/// Applies the policy to an offer. What the library cannot do with a body stays undone; what the policy forbids is
/// refused.
/// @return why the offer cannot be used; empty when it can
std::string applyToOffer(const Policy& policy, Body& offer, OfferChanges& changes);

/// Applies the policy to an answer and makes it fit the offer as it was before its changes.
/// @return why the answer cannot be used; empty when it can
std::string applyToAnswer(const Policy& policy, Body& answer, const OfferChanges& changes);

std::string textOf(const Body& object);
sdp::Document documentOf(const std::string& text);

bool hasMedia(const Body& body);
bool hasPort(const sdp::Document& document);

/// Parses an edited text into the body that it was read from.
/// @return why that cannot be done; empty when it can
std::string store(const std::string& text, Body& body);
std::string store(const sdp::Document& document, Body& body);

/// @return whether two offers differ in their o-lines and in formats of audio, with their rtpmap and fmtp lines, alone
bool onlyCodecsDiffer(const Body& one, const Body& other);

/// The offer that stands for the caller's until the caller has sent one.
void makeDummyOffer(const Policy& policy, bool ipv6, Body& offer);

}  // namespace b2bua

#endif
