#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpNegotiatorParser/codecValues.h"
#include "sdpNegotiatorTrace.h"
#include "text/fixedText.h"
#include "text/lines.h"

namespace {

using namespace sdpneg;

/// The voice-band-data line of the first codec; another codec than the two of G.711 leaves the payload out.
void addVoiceBandLine(FixedText<512>& lines, unsigned char firstCodec) {
  lines.add("a=gpmd:")
      .add(firstCodec == codecPcmu   ? "0"
           : firstCodec == codecPcma ? "8"
                                     : "")
      .add(" vbd=yes\r\n");
}

}  // namespace

unsigned short sdpModifications::sdpInsertSilenceSuppression(char* sdp, unsigned char mode,
                                                             const sSdpParsedData& data) {
  cNegotTraceManager::writeTraceMsg(8, 4, "Entering sdpInsertSilenceSuppression() method.");
  SdpText text(sdp);
  if (!adopted(text, "sdpInsertSilenceSuppression")) return 1;
  if (findAnywhere(text.view(), "m=audio") == npos) {
    cNegotTraceManager::writeTraceMsg(4, 3, "No audio <mline> found.");
    return 1;
  }
  if (mode != FEATURE_STATE_ON && mode != FEATURE_STATE_OFF) {
    cNegotTraceManager::writeTraceMsg(4, 3, "Invalid silence suppression entry. Exiting.");
    return 1;
  }
  FixedText<512> lines;
  if (findAnywhere(text.view(), "a=silenceSupp") == npos) {
    lines.add("a=silenceSupp:").add(mode == FEATURE_STATE_ON ? "on" : "off").add(" - - - -\r\n");
  }
  if (mode == FEATURE_STATE_OFF) addVoiceBandLine(lines, data.audioCodec[0]);
  if (text.append(lines.view()) != Edit::done) {
    cNegotTraceManager::writeTraceMsg(
        2, 2,
        "The silence suppression attributes have NOT been added. Possibility to overflow "
        "the buffer size. Exiting.");
    return 1;
  }
  cNegotTraceManager::writeTraceMsg(
      8, 4, "The silence suppression attributes have been added to the SDP. Exiting.");
  return 0;
}
