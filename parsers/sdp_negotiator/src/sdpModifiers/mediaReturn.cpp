#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/removedMLines.h"
#include "trace.h"

// The return of removed m-lines as secure dummy m-lines.

namespace {

using namespace sdpneg;

DummyMLine secureDummy(unsigned char code) { return {code, true}; }

}  // namespace

unsigned short sdpModifications::sdpReplaceTransProtocol(char* sdp, char* removed, unsigned short& oLineEnd,
                                                         bool modifyOLine) {
  trace::progress("Entering sdpReplaceTransProtocol() method.");
  const std::string_view codes = codesOf(removed);
  if (codes.empty()) {
    trace::info("The m-line indices is empty. Nothing to change.");
    return 0;
  }
  if (modifyOLine) sdpModifyOLine(sdp, nullptr, oLineEnd);
  SdpText text(sdp);
  if (adopted(text, "sdpReplaceTransProtocol")) {
    if (const Refusal refusal = putMLinesBack(text, codes, secureDummy, "sdpReplaceTransProtocol"))
      tell(refusal);
  }
  trace::progress("Exiting sdpReplaceTransProtocol() method.");
  return 0;
}
