#ifndef SDP_MODIFIERS_TRANSPORT_H
#define SDP_MODIFIERS_TRANSPORT_H

#include <string_view>

#include "text/mLineFields.h"
#include "text/sdpText.h"

// The transport of one m-line.

namespace sdpneg {

/// What of a transport is written to an m-line at most.
inline constexpr std::size_t kLongestTransport = 14;

enum class TransportEdit { done, notExpected, noRoom };

/// Sets the third field of an m-line (`transportBehindBlanks`) to a transport of at most 14 characters.
/// @param expected must occur on the line; the field is replaced whatever it holds itself
/// @return done also when there is no field, or it begins with the new transport already
TransportEdit replaceTransport(SdpText& text, const Line& mLine, std::string_view expected,
                               std::string_view transport);

}  // namespace sdpneg

#endif
