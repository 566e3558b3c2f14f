#ifndef SDP_MODIFIERS_DUMMY_PLAN_H
#define SDP_MODIFIERS_DUMMY_PLAN_H

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

/// Makes a text a dummy with its keys as they are: the same as edit after edit makes of it. The notes do not follow.
/// @param gone receives what went; null where that is not asked for
/// @return whether that could be done; otherwise nothing was, for a text that edits refuse or make other lines of
bool makeDummyAtOnce(NotedText& text, const DummyRequest& request, unsigned short& oLineEnd, GoneLines* gone);

}  // namespace sdpneg

#endif
