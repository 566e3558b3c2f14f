#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/connection.h"
#include "sdpNegotiatorParser.h"
#include "text/lines.h"

// The address in the connection lines of a session and of its media sections.

namespace {

using namespace sdpneg;

/// The first c-line when it stands in front of all m-lines; else npos.
std::size_t sessionConnection(std::string_view text) {
  const std::size_t cLine = findLine(text, "c=");
  return cLine < findLine(text, "m=") ? cLine : npos;
}

/// Sets the address of a section's c-line when the section has one and its port is not 0.
/// @param line the section's m-line
/// @return the status of the reading of the port or of the edit
unsigned short replaceSectionConnection(SdpText& text, std::size_t line, const char* ip) {
  unsigned short port = 0;
  const unsigned short status = sdpParserMessage::getMediaLinePort(text.view().data() + line, port);
  if (status != 0 || port == 0) return status;
  const std::string_view section = text.view().substr(0, findLine(text.view(), "m=", line));
  const std::size_t cLine = findLine(section, "c=", line);
  return cLine != npos ? replaceConnection(text, cLine, ip) : 0;
}

}  // namespace

unsigned short sdpModifications::sdpModifyCLines(char* sdp, const char* ip) {
  SdpText text(sdp);
  if (!adopted(text, "sdpModifyCLines")) return 1;
  if (const std::size_t cLine = sessionConnection(text.view()); cLine != npos) {
    if (const unsigned short status = replaceConnection(text, cLine, ip); status != 0) return status;
  }
  for (std::size_t line = findLine(text.view(), "m=audio"); line != npos;
       line = findLine(text.view(), "m=audio", line)) {
    if (const unsigned short status = replaceSectionConnection(text, line, ip); status != 0) return status;
  }
  return 0;
}

unsigned short sdpModifications::sdpModifyCLinesAllLines(char* sdp, const char* ip) {
  SdpText text(sdp);
  if (!adopted(text, "sdpModifyCLinesAllLines")) return 1;
  std::size_t line = findLine(text.view(), "m=");
  if (const std::size_t cLine = sessionConnection(text.view()); cLine != npos) {
    if (const unsigned short status = replaceConnection(text, cLine, ip); status != 0) return status;
    // The text's second character then stands for the m-line.
    line = 1;
  }
  return line != npos ? replaceSectionConnection(text, line, ip) : 0;
}
