#ifndef SDP_MODIFIERS_DUMMY_PLAN_H
#define SDP_MODIFIERS_DUMMY_PLAN_H

#include <string_view>

#include "sdpModifiers/dummy.h"
#include "sdpModifiers/givenAddress.h"
#include "sdpModifiers/notes.h"

// A dummy body in one pass: for the texts that most are, and while nothing is traced.

namespace sdpneg {

/// What a text is made a dummy by, besides its keys.
struct DummyRequest {
  const DummyKind& kind;
  const GivenAddress& address;
  unsigned short port;
  bool keepSecure;  ///< whether secure audio keeps a port
  bool modifyOLine;
};

/// What is known of the lines that a dummy lacks or has others for.
enum class OldLines {
  accepted,  ///< the codec accepts the text
  judged     ///< nothing: they are to be lines of which it is plain that the codec accepts them
};

/// Whether the codec accepts an attribute's line: it does unless a CR stands within.
/// @param line through its LF
bool isAcceptedAttribute(std::string_view line);

/// Makes a text a dummy with its keys as they are: the same as edit after edit makes of it. The notes do not follow.
/// @return whether that could be done; otherwise nothing was, for a text that edits refuse or make other lines of
bool makeDummyAtOnce(NotedText& text, const DummyRequest& request, unsigned short& oLineEnd, OldLines old);

}  // namespace sdpneg

#endif
