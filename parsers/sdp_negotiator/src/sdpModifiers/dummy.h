#ifndef SDP_MODIFIERS_DUMMY_H
#define SDP_MODIFIERS_DUMMY_H

#include "text/sdpText.h"

// A received body as a dummy body of the library's own.

namespace sdpneg {

/// What a dummy body is to be.
struct DummyKind {
  bool answer;
  bool hold;
  bool third;
};

/// `sdpModifications::sdpCreateDummy`. Tells what it refuses itself.
/// @return 0, or 1 for what was refused; the edits made so far stay
unsigned short createDummy(SdpText& text, const DummyKind& kind, const char* ip, unsigned short port,
                           int& length, unsigned short& oLineEnd, bool modifyOLine);

}  // namespace sdpneg

#endif
