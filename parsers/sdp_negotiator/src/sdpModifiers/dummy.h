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

/// What becomes of a text that is to be a dummy without the codec.
enum class Undecoded { made, untouched, lost };

/// `createDummy` without a look at what the codec says to the text, for one that is decoded as a dummy. Only while nothing is
/// traced; nothing is told. The codec, which reads line by line, accepts the text as it was when it accepts the dummy: the
/// lines that the dummy lacks or has others for are such that it does.
/// @return what was made of the text; what is not a dummy then has to be made one by `createDummy`
Undecoded createDummyUndecoded(SdpText& text, const DummyKind& kind, const char* ip, unsigned short port,
                               bool modifyOLine);

}  // namespace sdpneg

#endif
