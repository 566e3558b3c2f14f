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
Refusal replaceSessionConnection(NotedText& text, const NewConnection& connection, bool& present) {
  const std::size_t cLine = text.notes().find(Noted::cLine, 0, nextMLine(text.notes()));
  present = cLine != npos;
  if (!present) return {};
  const Refusal refusal = connection.replaceIn(text, cLine);
  text.settle();
  return refusal;
}

/// Sets the address of a section's c-line when the section has one and its port is not 0.
/// @param line the section's m-line
/// @return the refusal of the port or of the edit
Refusal replaceSectionConnection(NotedText& text, std::size_t line, const NewConnection& connection) {
  const std::optional<unsigned short> port = portAt(text.view(), line);
  if (!port) return {.reason = SDP_REFUSED_PORT_NOT_READ};
  if (*port == 0) return {};
  const std::size_t cLine = text.notes().find(Noted::cLine, line + 1, nextMLine(text.notes(), line));
  return cLine != npos ? connection.replaceIn(text, cLine) : Refusal{};
}

}  // namespace

Refusal replaceSessionAndAudioConnections(NotedText& text, const GivenAddress& address) {
  Refusal refusal = refusalOfBuffer(text.text(), "sdpModifyCLines");
  if (refusal) return refusal;
  const NewConnection connection(address);
  bool hasSessionConnection = false;
  refusal = replaceSessionConnection(text, connection, hasSessionConnection);
  if (refusal) return refusal;
  forEachMLineOf(text, "audio", [&](std::size_t mLine) {
    refusal = replaceSectionConnection(text, mLine, connection);
    return !refusal;
  });
  return refusal;
}

Refusal replaceSessionOrFirstConnection(NotedText& text, const GivenAddress& address) {
  if (const Refusal refusal = refusalOfBuffer(text.text(), "sdpModifyCLinesAllLines")) return refusal;
  const NewConnection connection(address);
  std::size_t mLine = nextMLine(text.notes());
  bool hasSessionConnection = false;
  if (const Refusal refusal = replaceSessionConnection(text, connection, hasSessionConnection))
    return refusal;
  // The text's second character then stands for the m-line.
  if (hasSessionConnection) mLine = 1;
  const Refusal refusal = mLine != npos ? replaceSectionConnection(text, mLine, connection) : Refusal{};
  text.settle();
  return refusal;
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpModifyCLines(char* sdp, const char* ip) {
  SdpText text(sdp);
  NotedText noted(text);
  return statusOf(replaceSessionAndAudioConnections(noted, GivenAddress(ip)));
}

unsigned short sdpModifications::sdpModifyCLinesAllLines(char* sdp, const char* ip) {
  SdpText text(sdp);
  NotedText noted(text);
  return statusOf(replaceSessionOrFirstConnection(noted, GivenAddress(ip)));
}
