#include "sdpModifiers/mediaAttributes.h"

#include <iterator>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// Silence suppression and echo cancellation (RFC 3108) of audio.

namespace sdpneg {

namespace {

constexpr std::string_view kAudio = "audio";

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
  for (std::size_t at = findAnywhere(text, kAttribute, from); at != npos;) {
    if (startsWithNoCase(text.substr(at + kAttribute.size()), "ecan")) return true;
    const Line line = lineAt(text, at);
    if (!line.terminated) {
      trace::info("NewLine not found, breaking from loop");
      return false;
    }
    at = findAnywhere(text, kAttribute, line.next());
  }
  return false;
}

using EchoCancellationLine = FixedText<20>;
constexpr const char* kEchoSides[] = {"f", "b", "fb"};

bool isOnOrOff(unsigned char state) { return state == FEATURE_STATE_ON || state == FEATURE_STATE_OFF; }

Refusal refusalOfEcho(unsigned char state, unsigned char side) {
  if (side < 1 || side > std::size(kEchoSides)) return {.reason = SDP_REFUSED_INVALID_ECHO_SIDE};
  if (!isOnOrOff(state)) return {.reason = SDP_REFUSED_INVALID_ECHO_STATE};
  return {};
}

EchoCancellationLine echoCancellationLine(unsigned char state, unsigned char side) {
  return EchoCancellationLine()
      .add("a=ecan:")
      .add(kEchoSides[side - 1])
      .add(state == FEATURE_STATE_ON ? " on -\r\n" : " off -\r\n");
}

/// Where the first audio section ends: at the next m-line, or at the text's end.
struct SectionEnd {
  std::size_t at;
  bool needsLineEnd;
};

SectionEnd audioSectionEnd(std::string_view text, const Line& mLine) {
  const std::size_t next = mLine.terminated ? nextMAnywhere(text, mLine.next()) : npos;
  if (next != npos) return {next, false};
  const bool ended = text.back() == '\n';  // an audio m-line without LF ends the text
  if (!ended) trace::info("NewLine not found, will attempt to add one");
  return {text.size(), !ended};
}

}  // namespace

Refusal insertSilenceSuppression(SdpText& text, unsigned char mode, const sSdpParsedData& data) {
  trace::progress("Entering sdpInsertSilenceSuppression() method.");
  if (const Refusal refusal = refusalOfBuffer(text, "sdpInsertSilenceSuppression")) return refusal;
  if (nextMAnywhereOf(text.view(), kAudio) == npos) return {.reason = SDP_REFUSED_NO_AUDIO};
  if (!isOnOrOff(mode)) return {.reason = SDP_REFUSED_INVALID_SILENCE};
  FixedText<512> lines;
  if (findAnywhere(text.view(), "a=silenceSupp") == npos) {
    lines.add("a=silenceSupp:").add(mode == FEATURE_STATE_ON ? "on" : "off").add(" - - - -\r\n");
  }
  if (mode == FEATURE_STATE_OFF) addVoiceBandLine(lines, data.audioCodec[0]);
  if (text.append(lines.view()) != Edit::done) return {.reason = SDP_REFUSED_NO_ROOM_FOR_SILENCE};
  trace::progress("The silence suppression attributes have been added to the SDP. Exiting.");
  return {};
}

Refusal insertEchoCancellation(SdpText& text, unsigned char state, unsigned char side) {
  trace::progress("Entering sdpInsertEchoCancellation() method.");
  if (const Refusal refusal = refusalOfEcho(state, side)) return refusal;
  if (const Refusal refusal = refusalOfBuffer(text, "sdpInsertEchoCancellation")) return refusal;
  const std::size_t audio = nextMAnywhereOf(text.view(), kAudio);
  if (audio == npos) return {.reason = SDP_REFUSED_NO_AUDIO_FOR_ECHO};
  const Line mLine = lineAt(text.view(), audio);
  const SectionEnd end = audioSectionEnd(text.view(), mLine);
  if (hasEchoCancellation(text.view(), mLine.next())) return {.reason = SDP_REFUSED_ECHO_EXISTS};
  const EchoCancellationLine line = echoCancellationLine(state, side);
  const FixedText<24> added = FixedText<24>().add(end.needsLineEnd ? "\r\n" : "").add(line.view());
  if (text.insert(end.at, added.view()) != Edit::done) return {.reason = SDP_REFUSED_NO_ROOM_FOR_ECHO};
  trace::progress("The echo cancellation attributes have been added succesfully. Exiting...");
  return {};
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpInsertSilenceSuppression(char* sdp, unsigned char mode,
                                                             const sSdpParsedData& data) {
  SdpText text(sdp);
  return statusOf(insertSilenceSuppression(text, mode, data));
}

unsigned short sdpModifications::sdpInsertEchoCancellation(char* sdp, unsigned char state,
                                                           unsigned char side) {
  SdpText text(sdp);
  return statusOf(insertEchoCancellation(text, state, side));
}
