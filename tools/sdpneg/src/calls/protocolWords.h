#ifndef SDPNEG_PROTOCOL_WORDS_H
#define SDPNEG_PROTOCOL_WORDS_H

#include <string_view>

namespace tool {

/// Whether a word of letters and digits is one of SIP, of SDP, of codecs, or of programs that speak them, in whichever
/// case: it says nothing of anybody.
bool isProtocolWord(std::string_view word);

}  // namespace tool

#endif
