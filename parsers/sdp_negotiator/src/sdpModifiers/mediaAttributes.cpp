#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "trace.h"
#include "vocabulary.h"

namespace {

using namespace sdpneg;

/// The voice-band-data line of the first codec; another codec than the two of G.711 leaves the payload out.
void addVoiceBandLine(FixedText<512>& lines, unsigned char firstCodec) {
  lines.add("a=gpmd:")
      .add(firstCodec == kCodecPcmu   ? "0"
           : firstCodec == kCodecPcma ? "8"
                                      : "")
      .add(" vbd=yes\r\n");
}

/// Whether an a-line with echo cancellation stands behind an offset. The search ends at an a-line without LF.
bool hasEchoCancellation(std::string_view text, std::size_t from) {
  for (std::size_t at = findAnywhere(text, "a=", from); at != npos;) {
    if (startsWithNoCase(text.substr(at + 2), "ecan")) return true;
    const Line line = lineAt(text, at);
    if (!line.terminated) {
      trace::info("NewLine not found, breaking from loop");
      return false;
    }
    at = findAnywhere(text, "a=", line.next());
  }
  return false;
}

/// The line of a side and a state; empty, with a trace, for another value of either.
FixedText<20> echoCancellationLine(unsigned char state, unsigned char side) {
  constexpr const char* kSides[] = {"f", "b", "fb"};
  FixedText<20> line;
  if (side < 1 || side > std::size(kSides)) {
    trace::error("Invalid echo cancellation entry. Exiting.");
  } else if (state != FEATURE_STATE_ON && state != FEATURE_STATE_OFF) {
    trace::error("Invalid echo cancellation direction entry. Exiting.");
  } else {
    line.add("a=ecan:").add(kSides[side - 1]).add(state == FEATURE_STATE_ON ? " on -\r\n" : " off -\r\n");
  }
  return line;
}

/// Where the first audio section ends: at the next m-line, or at the text's end.
struct SectionEnd {
  std::size_t at;
  bool needsLineEnd;
};

SectionEnd audioSectionEnd(std::string_view text, const Line& mLine) {
  const std::size_t next = mLine.terminated ? findAnywhere(text, "m=", mLine.next()) : npos;
  if (next != npos) return {next, false};
  const bool ended = text.back() == '\n';  // an audio m-line without LF ends the text
  if (!ended) trace::info("NewLine not found, will attempt to add one");
  return {text.size(), !ended};
}

}  // namespace

unsigned short sdpModifications::sdpInsertSilenceSuppression(char* sdp, unsigned char mode,
                                                             const sSdpParsedData& data) {
  trace::progress("Entering sdpInsertSilenceSuppression() method.");
  SdpText text(sdp);
  if (!adopted(text, "sdpInsertSilenceSuppression")) return 1;
  if (findAnywhere(text.view(), "m=audio") == npos) {
    trace::error("No audio <mline> found.");
    return 1;
  }
  if (mode != FEATURE_STATE_ON && mode != FEATURE_STATE_OFF) {
    trace::error("Invalid silence suppression entry. Exiting.");
    return 1;
  }
  FixedText<512> lines;
  if (findAnywhere(text.view(), "a=silenceSupp") == npos) {
    lines.add("a=silenceSupp:").add(mode == FEATURE_STATE_ON ? "on" : "off").add(" - - - -\r\n");
  }
  if (mode == FEATURE_STATE_OFF) addVoiceBandLine(lines, data.audioCodec[0]);
  if (text.append(lines.view()) != Edit::done) {
    trace::info(
        "The silence suppression attributes have NOT been added. Possibility to overflow "
        "the buffer size. Exiting.");
    return 1;
  }
  trace::progress("The silence suppression attributes have been added to the SDP. Exiting.");
  return 0;
}

unsigned short sdpModifications::sdpInsertEchoCancellation(char* sdp, unsigned char state,
                                                           unsigned char side) {
  trace::progress("Entering sdpInsertEchoCancellation() method.");
  const FixedText<20> line = echoCancellationLine(state, side);
  if (line.size() == 0) return 1;
  SdpText text(sdp);
  if (!adopted(text, "sdpInsertEchoCancellation")) return 1;
  const std::size_t audio = findAnywhere(text.view(), "m=audio");
  if (audio == npos) {
    trace::error("No audio <mline> found. Exiting...");
    return 1;
  }
  const Line mLine = lineAt(text.view(), audio);
  const SectionEnd end = audioSectionEnd(text.view(), mLine);
  if (hasEchoCancellation(text.view(), mLine.next())) {
    trace::error("Echo cancellation already exists in SDP. Exiting...");
    return 1;
  }
  const FixedText<24> added = FixedText<24>().add(end.needsLineEnd ? "\r\n" : "").add(line.view());
  if (text.insert(end.at, added.view()) != Edit::done) {
    trace::info(
        "The echo cancellation attributes have NOT been added. Possibility to overflow "
        "the buffer size. Exiting.");
    return 1;
  }
  trace::progress("The echo cancellation attributes have been added succesfully. Exiting...");
  return 0;
}
