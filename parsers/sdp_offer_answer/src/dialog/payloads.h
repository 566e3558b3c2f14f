#ifndef SDP_OFFER_ANSWER_PAYLOADS_H
#define SDP_OFFER_ANSWER_PAYLOADS_H

// Payload numbers that go on to stand for what they stood for in a dialog (RFC 3264, section 8.3.2).

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "arrangement.h"
#include "sdpDocument.h"

namespace sdp::exchange {

/// What payload types become; those that stay are missing. Views into the description that is renumbered.
using Renumbering = std::map<std::string_view, std::string>;

/// The number for a payload type: itself unless it is told.
std::string_view renumbered(const Renumbering& numbers, std::string_view payload);

/// "opus/48000/2", as an rtpmap has it.
std::string textOf(const Encoding& encoding);

/// What payload numbers of a dialog's local bodies stand for, place by place: a text with a section for each, whose
/// formats are all that were, those of the last body first.
/// @param body that goes out now
/// @param before the text for the bodies before it
std::string remembered(const Document& body, const Document& before);

/// What else is known of the numbers.
struct KnownPayloads {
  const Document& remembered;
  const Document& local;   ///< the current body
  const Document& remote;  ///< the peer's
};

/// The numbers for all sections of a description, as they stand in it, from 0.
std::vector<Renumbering> renumberingsOf(const Document& wanted, const Arrangement& places,
                                        const KnownPayloads& known);

}  // namespace sdp::exchange

#endif
