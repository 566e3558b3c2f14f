#ifndef SDP_MODIFIERS_ORIGIN_LINE_H
#define SDP_MODIFIERS_ORIGIN_LINE_H

namespace sdpneg {

/// Composes a session id from a time: the last six digits of the seconds and the first one to three of the
/// microseconds, which are not padded. With seconds of six digits or fewer the first six characters stay as
/// they are, and the microseconds are appended to the text that they hold.
/// @param id 10 characters
void composeSessionId(char* id, long seconds, long microseconds);

}  // namespace sdpneg

#endif
