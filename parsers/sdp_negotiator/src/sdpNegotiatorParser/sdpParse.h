#ifndef SDP_PARSER_PARSE_H
#define SDP_PARSER_PARSE_H

#include <string_view>

#include "sdpDataDefinitions.h"
#include "sessionDescription.h"

// The parse of a text whose length is known, and what of it follows the decoding.

namespace sdpneg {

/// Condenses a body that has been decoded into a summary, as `sdpParserMessage::sdpParse` goes on behind the codec.
/// @param sdp the text that the description is of
/// @return 0, or 1 for a body that is refused, which is told
unsigned short analyse(sSdpParsedData& data, const sDescription& description, std::string_view sdp);

/// Notes where the o-line of a text is, as the codec does: the first line that is one.
/// @param description of the text
void takeOriginPlace(sSdpParsedData& data, const sDescription& description, std::string_view text);

/// `sdpParserMessage::sdpParse`.
/// @param sdp ended by NUL; without data it is a null text
unsigned short parseText(sSdpParsedData& data, std::string_view sdp, eSdpType type);

}  // namespace sdpneg

#endif
