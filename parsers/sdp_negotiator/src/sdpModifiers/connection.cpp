#include "sdpModifiers/connection.h"

#include <cstdint>
#include <string_view>

#include "cMsgIPAddress.h"
#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/transport.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/portField.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "trace.h"

// Where media flow: the connection address and the ports of m-lines.

namespace {

using namespace sdpneg;

constexpr std::size_t kMediaNameSize = 24;

struct MediaName {
  int type;
  const char* name;
};

/// In the order in which ports are disabled.
constexpr MediaName kMediaNames[] = {{MEDIA_AUDIO, "audio"},     {MEDIA_VIDEO, "video"},
                                     {MEDIA_MESSAGE, "message"}, {MEDIA_TEXT, "text"},
                                     {MEDIA_IMAGE, "image"},     {MEDIA_APPLICATION, "application"}};

const char* addressTypeName(int version) { return version == 2 ? "IP4" : version == 10 ? "IP6" : "ANY"; }

/// The m-lines whose port a request sets.
struct PortFilter {
  std::string_view name;  ///< what follows "m="; empty for any medium
  int ipVersion;          ///< 0 for any
  sdpModifications::eMediaSecurityType security;
  int sessionVersion;
};

bool passes(const SdpText& text, const Line& mLine, const PortFilter& filter) {
  const std::string_view view = text.view();
  if (!startsWith(view.substr(mLine.begin + 2), filter.name)) return false;
  if (filter.ipVersion != 0) {
    // From an m-line on, the first c-line in front of the next one is its own.
    const int own = sdpParserMessage::getcLineIPVersion(view.data() + mLine.begin);
    if (filter.ipVersion != (own != 0 ? own : filter.sessionVersion)) return false;
  }
  if (filter.security == sdpModifications::MEDIA_SECURITY_ANY) return true;
  return isSecure(view, mLine) == (filter.security == sdpModifications::MEDIA_SECURITY_SECURE);
}

/// Sets the port of every m-line that passes; ends with the first that cannot be changed.
/// @return the number of m-lines; nothing after a failure, and what was changed before stays
std::optional<int> setPorts(SdpText& text, const PortFilter& filter, unsigned int port) {
  int count = 0;
  for (std::size_t at = findLine(text.view(), "m="); at != npos; at = findLine(text.view(), "m=", at)) {
    const Line mLine = lineAt(text.view(), at);
    if (!mLine.terminated) break;
    if (!passes(text, mLine, filter)) continue;
    if (refusesPort(port) || replacePort(text, mLine, port) != Edit::done) return std::nullopt;
    ++count;
  }
  return count;
}

/// Copies the next c-line, through its LF, over the text behind the m-line.
/// @return where the section's other lines begin; nothing without a c-line that has an LF
std::optional<std::size_t> pullConnection(SdpText& text, const Line& mLine) {
  const std::size_t found = findLine(text.view(), "c=", mLine.lf);
  if (found == npos) return std::nullopt;
  const Line cLine = lineAt(text.view(), found);
  if (!cLine.terminated) return std::nullopt;
  const std::size_t end = mLine.next() + (cLine.next() - cLine.begin);
  text.replace({mLine.next(), end}, text.view().substr(cLine.begin, cLine.next() - cLine.begin));
  return end;
}

/// Sets the port of a video m-line to 0.
/// @return whether that could be done
bool disableVideo(SdpText& text, std::size_t at, bool allMedia) {
  if (!lineAt(text.view(), at).terminated || replacePort(text, lineAt(text.view(), at), 0) != Edit::done)
    return false;
  const Line mLine = lineAt(text.view(), at);
  const std::size_t begin = pullConnection(text, mLine).value_or(mLine.next());
  if (allMedia) text.erase({begin, orEnd(findLine(text.view(), "m=", begin - 1), text.view())});
  return true;
}

}  // namespace

unsigned short sdpneg::replaceConnection(SdpText& text, std::size_t from, const char* ip) {
  trace::progress("Entering sdpReplaceCxIP() method. ip=[%s]", ip != nullptr ? ip : "(null)");
  const int version = cMsgIPAddress::getIPAddressVersion(ip);
  if (version == 0) {
    trace::error("The new IP address is malformed. Exiting...");
    return 1;
  }
  if (!adopted(text, "sdpReplaceCxIP") || !areLineTexts({viewOf(ip)}, "sdpReplaceCxIP")) return 1;
  const std::size_t found = findAnywhere(text.view(), "c=", from);
  if (found == npos) {
    trace::error("No <cline> found. Exiting.");
    return 1;
  }
  const Line cLine = lineAt(text.view(), found);
  if (!cLine.terminated) {
    trace::error("Bad termination of <cline>. Exiting.");
    return 1;
  }
  FixedText<255> line;
  line.add("c=IN ").add(version == 2 ? "IP4 " : "IP6 ").add(ip).add("\r\n");
  if (text.replace({cLine.begin, cLine.next()}, line.view()) != Edit::done) {
    trace::error("sdpReplaceCxIP(): The new c-line does not fit the SDP buffer. Exiting.");
    return 1;
  }
  trace::progress("The IP address has been changed to %s. Exiting.", ip);
  return 0;
}

unsigned short sdpModifications::sdpReplaceCxIP(char* sdp, const char* ip) {
  SdpText text(sdp);
  return replaceConnection(text, 0, ip);
}

unsigned short sdpModifications::getMediaName(int mediaType, char* out, int outSize) {
  for (const MediaName& media : kMediaNames) {
    if (media.type != mediaType) continue;
    const std::string_view name = media.name;
    if (out != nullptr && outSize > 0) out[name.copy(out, static_cast<std::size_t>(outSize) - 1)] = '\0';
    return 0;
  }
  trace::error("mediaType=%d not supported", mediaType);
  return 1;
}

unsigned short sdpModifications::sdpSetMediaPort(char* sdp, int mediaType, eIPAddressVersion ipVersion,
                                                 eMediaSecurityType security, unsigned int port) {
  char name[kMediaNameSize] = "";
  if (mediaType != -1 && getMediaName(mediaType, name, sizeof name) != 0) {
    trace::error("sdpSetMediaPort(): incorrect mediaType (0x%x)", static_cast<unsigned int>(mediaType));
    return 1;
  }
  const int version = ipVersion;
  trace::progress(
      "Entering sdpSetMediaPort(): set port=%u on all m=%s lines with address type=%s, which are %s", port,
      name[0] != '\0' ? name : "<any>", addressTypeName(version),
      security == MEDIA_SECURITY_ANY          ? "either secure or non-secure"
      : security == MEDIA_SECURITY_NON_SECURE ? "non-secure"
                                              : "secure");
  SdpText text(sdp);
  if (!adopted(text, "sdpSetMediaPort")) return 1;
  const int sessionVersion = version != 0 ? sdpParserMessage::getcLineIPVersion(sdp) : 0;
  const std::optional<int> count = setPorts(text, {name, version, security, sessionVersion}, port);
  if (!count) {
    trace::error("sdpSetMediaPort(): error while trying to set media connection port %u", port);
    return 1;
  }
  trace::progress("Exiting sdpSetMediaPort() : set port=%u on %i m= line(s)", port, *count);
  return 0;
}

unsigned short sdpModifications::sdpDisablePort(char* sdp, int mediaMask, eIPAddressVersion ipVersion) {
  unsigned int failures = 0;
  for (const MediaName& media : kMediaNames) {
    if ((mediaMask & media.type) != 0)
      failures += sdpSetMediaPort(sdp, media.type, ipVersion, MEDIA_SECURITY_ANY, 0);
  }
  return failures != 0 ? 1 : 0;
}

unsigned short sdpModifications::sdpRemoveVideoMedia(char* sdp, bool allMedia) {
  trace::progress("Entering sdpRemoveVideoMedia(AllMedia=%s) method.", allMedia ? "Yes" : "No");
  SdpText text(sdp);
  int count = 0;
  if (adopted(text, "sdpRemoveVideoMedia")) {
    for (std::size_t at = findLine(text.view(), "m=video"); at != npos;
         at = findLine(text.view(), "m=video", at)) {
      if (disableVideo(text, at, allMedia)) ++count;
    }
  }
  trace::progress("Found %i m=video lines: port(s) disabled and line(s) removed", count);
  return 0;
}
