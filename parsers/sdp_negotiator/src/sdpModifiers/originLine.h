#ifndef SDP_MODIFIERS_ORIGIN_LINE_H
#define SDP_MODIFIERS_ORIGIN_LINE_H

#include <string_view>

#include "refusal.h"
#include "sdpModifiers/givenAddress.h"
#include "text/fixedText.h"
#include "text/sdpText.h"

// The o-line of a text. The operations of `sdpModifications` that these stand for say what each does.

namespace sdpneg {

/// `sdpModifyOLine` with values of the caller.
Refusal modifyOriginLine(SdpText& text, const char* sessionId, const char* version,
                         const GivenAddress& address, unsigned short& oLineEnd);

/// `sdpModifyOLine` with a session id and version by the clock.
Refusal renewOriginLine(SdpText& text, const GivenAddress& address, unsigned short& oLineEnd);

/// What `renewOriginLine` puts into a text, and where.
struct NewOriginLine {
  Span old{0, 0};  ///< of the text
  FixedText<337> line;
};

/// Makes that, while nothing is traced.
/// @param made empty before
/// @return false for a text that would be refused
bool makeOriginLine(NewOriginLine& made, std::string_view text, const GivenAddress& address);

/// `renewOriginLine` on the way of an edit that goes on without an o-line: a text that has none, or none that can be
/// replaced, is no reason to have refused anything.
void renewOriginLineIfThere(SdpText& text, unsigned short& oLineEnd);

/// `sdpReplaceVersionNumber` and `sdpReplaceVersionNumberLong`, which traces tell apart.
Refusal setOriginVersion(SdpText& text, unsigned int version, unsigned short& oLineEnd);
Refusal setOriginVersion(SdpText& text, long long version, unsigned short& oLineEnd);

/// `sdpIncVersion`.
Refusal raiseOriginVersion(SdpText& text);

/// Composes a session id from a time: the last six digits of the seconds and the first one to three of the
/// microseconds, which are not padded. With seconds of six digits or fewer the first six characters stay as
/// they are, and the microseconds are appended to the text that they hold.
/// @param id 10 characters
void composeSessionId(char* id, long seconds, long microseconds);

}  // namespace sdpneg

#endif
