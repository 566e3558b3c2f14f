#include "sdpModifiers/connectionLines.h"

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/connection.h"
#include "text/mLineFields.h"
#include "text/sections.h"
#include "vocabulary.h"

// The address in the connection lines of a session and of its media sections.

namespace sdpneg {

namespace {

/// Sets the address of the session's c-line.
/// @param present receives whether there is one
Refusal replaceSessionConnection(SdpText& text, const char* ip, bool& present) {
  const std::size_t cLine = findLine(sessionPart(text.view()), kCLine);
  present = cLine != npos;
  return present ? replaceConnection(text, cLine, ip) : Refusal{};
}

/// Sets the address of a section's c-line when the section has one and its port is not 0.
/// @param line the section's m-line
/// @return the refusal of the port or of the edit
Refusal replaceSectionConnection(SdpText& text, std::size_t line, const char* ip) {
  const std::optional<unsigned short> port = portAt(text.view(), line);
  if (!port) return {.reason = SDP_REFUSED_PORT_NOT_READ};
  if (*port == 0) return {};
  const std::string_view section = text.view().substr(0, sectionEnd(text.view(), line));
  const std::size_t cLine = findLine(section, kCLine, line);
  return cLine != npos ? replaceConnection(text, cLine, ip) : Refusal{};
}

}  // namespace

Refusal replaceSessionAndAudioConnections(SdpText& text, const char* ip) {
  Refusal refusal = refusalOfBuffer(text, "sdpModifyCLines");
  bool hasSessionConnection = false;
  if (!refusal) refusal = replaceSessionConnection(text, ip, hasSessionConnection);
  if (refusal) return refusal;
  forEachMLineOf(text, "audio", [&](std::size_t mLine) {
    refusal = replaceSectionConnection(text, mLine, ip);
    return !refusal;
  });
  return refusal;
}

Refusal replaceSessionOrFirstConnection(SdpText& text, const char* ip) {
  if (const Refusal refusal = refusalOfBuffer(text, "sdpModifyCLinesAllLines")) return refusal;
  std::size_t mLine = nextMLine(text.view());
  bool hasSessionConnection = false;
  if (const Refusal refusal = replaceSessionConnection(text, ip, hasSessionConnection)) return refusal;
  // The text's second character then stands for the m-line.
  if (hasSessionConnection) mLine = 1;
  return mLine != npos ? replaceSectionConnection(text, mLine, ip) : Refusal{};
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpModifyCLines(char* sdp, const char* ip) {
  SdpText text(sdp);
  return statusOf(replaceSessionAndAudioConnections(text, ip));
}

unsigned short sdpModifications::sdpModifyCLinesAllLines(char* sdp, const char* ip) {
  SdpText text(sdp);
  return statusOf(replaceSessionOrFirstConnection(text, ip));
}
