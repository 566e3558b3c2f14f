#include "sdpModifiers/ports.h"

#include <optional>
#include <string_view>

#include "sdpModifiers/adopt.h"
#include "sdpNegotiatorParser/connectionVersion.h"
#include "text/mLineFields.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// The ports of m-lines.

namespace sdpneg {

namespace {

struct MediaName {
  int type;
  std::string_view name;  ///< which ends in NUL
};

/// In the order in which ports are disabled.
constexpr MediaName kMediaNames[] = {{MEDIA_AUDIO, "audio"},     {MEDIA_VIDEO, "video"},
                                     {MEDIA_MESSAGE, "message"}, {MEDIA_TEXT, "text"},
                                     {MEDIA_IMAGE, "image"},     {MEDIA_APPLICATION, "application"}};

/// @return nothing for another value than one of a medium
std::string_view mediaNameOf(int mediaType) {
  for (const MediaName& media : kMediaNames) {
    if (media.type == mediaType) return media.name;
  }
  return {};
}

Refusal refusalOfMedia(int mediaType) { return {.reason = SDP_REFUSED_UNKNOWN_MEDIA, .number = mediaType}; }

/// The m-lines whose port a request sets.
struct PortFilter {
  std::string_view name;  ///< what follows "m="; empty for any medium
  eIPAddressVersion ipVersion;
  sdpModifications::eMediaSecurityType security;
  eIPAddressVersion sessionVersion;
};

/// The address version of the first c-line from `begin` to the next m-line.
eIPAddressVersion connectionVersion(const NotedText& text, std::size_t begin) {
  const std::size_t cLine = text.notes().find(Noted::cLine, begin, nextMLine(text.notes(), begin));
  return cLine != npos ? versionOfConnection(text.view(), cLine) : kIpVersionUnknown;
}

bool passes(const NotedText& text, const Line& mLine, const PortFilter& filter) {
  if (filter.ipVersion != kIpVersionUnknown) {
    const eIPAddressVersion own = connectionVersion(text, mLine.begin);
    if (filter.ipVersion != (own != kIpVersionUnknown ? own : filter.sessionVersion)) return false;
  }
  if (filter.security == sdpModifications::MEDIA_SECURITY_ANY) return true;
  return isSecure(text.view(), mLine) == (filter.security == sdpModifications::MEDIA_SECURITY_SECURE);
}

/// What became of the m-lines of a filter.
struct PortsSet {
  int count = 0;
  bool failed = false;  ///< at the m-line behind those that are counted, which are changed
};

/// Sets the port of every m-line that passes; ends with the first that cannot be changed.
PortsSet setPorts(NotedText& text, const PortFilter& filter, unsigned int port) {
  PortsSet set;
  std::optional<PortDigits> digits;  // written when an m-line gets them, which is rare
  forEachMLineOf(text, filter.name, [&](std::size_t at) {
    const Line mLine = lineAt(text.view(), at);
    if (!mLine.terminated) return false;
    if (!passes(text, mLine, filter)) return true;
    if (isReservedPort(port)) {
      tell({.reason = SDP_REFUSED_ILLEGAL_PORT, .number = port});
      set.failed = true;
    } else {
      if (!digits) digits = digitsOf(port);
      const std::optional<Span> field = portToReplace(text.view(), mLine, digits->view());
      set.failed = field && text.replace(*field, digits->view()) != Edit::done;
    }
    if (!set.failed) ++set.count;
    return !set.failed;
  });
  return set;
}

const char* shown(eIPAddressVersion version) {
  return version == kIpVersion4 || version == kIpVersion6 ? addressTypeOf(version) : "ANY";
}

const char* shown(sdpModifications::eMediaSecurityType security) {
  if (security == sdpModifications::MEDIA_SECURITY_ANY) return "either secure or non-secure";
  return security == sdpModifications::MEDIA_SECURITY_NON_SECURE ? "non-secure" : "secure";
}

}  // namespace

Refusal setMediaPort(NotedText& text, int mediaType, eIPAddressVersion ipVersion,
                     sdpModifications::eMediaSecurityType security, unsigned int port) {
  const std::string_view name = mediaType == kAnyMedia ? std::string_view() : mediaNameOf(mediaType);
  if (name.empty() && mediaType != kAnyMedia) {
    tell(refusalOfMedia(mediaType));
    return {.reason = SDP_REFUSED_MEDIA_OF_PORT, .number = mediaType};
  }
  if (text.tracing()) {
    trace::progress(
        "Entering sdpSetMediaPort(): set port=%u on all m=%s lines with address type=%s, which are %s", port,
        !name.empty() ? name.data() : "<any>", shown(ipVersion), shown(security));
  }
  if (const Refusal refusal = refusalOfBuffer(text.text(), "sdpSetMediaPort")) return refusal;
  PortsSet set;
  if (text.notes().mayHaveMedia(name)) {
    const bool asksVersion = ipVersion != kIpVersionUnknown;
    const eIPAddressVersion sessionVersion = asksVersion ? connectionVersion(text, 0) : kIpVersionUnknown;
    set = setPorts(text, {name, ipVersion, security, sessionVersion}, port);
  }
  if (set.failed) return {.reason = SDP_REFUSED_PORT_NOT_SET, .number = port};
  if (text.tracing()) {
    trace::progress("Exiting sdpSetMediaPort() : set port=%u on %i m= line(s)", port, set.count);
  }
  return {};
}

Refusal setMediaPort(SdpText& text, int mediaType, eIPAddressVersion ipVersion,
                     sdpModifications::eMediaSecurityType security, unsigned int port) {
  NotedText noted(text);
  return setMediaPort(noted, mediaType, ipVersion, security, port);
}

Refusal disablePorts(SdpText& text, int mediaMask, eIPAddressVersion ipVersion) {
  NotedText noted(text);
  return disablePorts(noted, mediaMask, ipVersion);
}

Refusal disablePorts(NotedText& text, int mediaMask, eIPAddressVersion ipVersion) {
  Refusal last;
  for (const MediaName& media : kMediaNames) {
    if ((mediaMask & media.type) == 0) continue;
    const Refusal refusal =
        setMediaPort(text, media.type, ipVersion, sdpModifications::MEDIA_SECURITY_ANY, 0);
    if (!refusal) continue;
    tell(refusal);
    last = refusal;
  }
  return last;
}

namespace {

/// The medium that an m-line names, by the beginning of what follows its "m="; 0 for another one.
int mediaTypeOf(std::string_view name) {
  for (const MediaName& media : kMediaNames) {
    if (startsWith(name, media.name)) return media.type;
  }
  return 0;
}

}  // namespace

PortsToClose::PortsToClose(const NotedText& text, int mediaType, eIPAddressVersion ipVersion)
    : text_(text),
      mediaType_(mediaType),
      ipVersion_(ipVersion),
      sessionVersion_(connectionVersion(text, 0)) {}

bool PortsToClose::hasVersion(const Line& mLine, eIPAddressVersion ipVersion) const {
  return passes(text_, mLine, {{}, ipVersion, sdpModifications::MEDIA_SECURITY_ANY, sessionVersion_});
}

bool PortsToClose::contain(const Line& mLine) {
  secureOne_ = false;
  const int type = mediaTypeOf(text_.view().substr(mLine.begin + kMLine.size()));
  if (type != 0 && type != mediaType_) return true;
  const bool secure = isSecure(text_.view(), mLine);
  secureOne_ = secure && type == mediaType_;
  return secure || (type == mediaType_ && hasVersion(mLine, ipVersion_));
}

bool closePortsBut(NotedText& text, int mediaType, eIPAddressVersion ipVersion) {
  PortsToClose closed(text, mediaType, ipVersion);
  bool hasSecure = false;
  forEachMLineOf(text, {}, [&](std::size_t at) {
    const Line mLine = lineAt(text.view(), at);
    if (!mLine.terminated) return false;
    if (!closed.contain(mLine)) return true;
    hasSecure = hasSecure || closed.isSecureOne();
    // What is no longer than a port always has room.
    if (const auto field = portToReplace(text.view(), mLine, kClosedPort)) text.replace(*field, kClosedPort);
    return true;
  });
  return hasSecure;
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::getMediaName(int mediaType, char* out, int outSize) {
  const std::string_view name = mediaNameOf(mediaType);
  if (name.empty()) return refuse(refusalOfMedia(mediaType));
  if (out != nullptr && outSize > 0) {
    out[name.copy(out, static_cast<std::size_t>(outSize) - 1)] = '\0';
  }
  return 0;
}

unsigned short sdpModifications::sdpSetMediaPort(char* sdp, int mediaType, eIPAddressVersion ipVersion,
                                                 eMediaSecurityType security, unsigned int port) {
  SdpText text(sdp);
  return statusOf(setMediaPort(text, mediaType, ipVersion, security, port));
}

unsigned short sdpModifications::sdpDisablePort(char* sdp, int mediaMask, eIPAddressVersion ipVersion) {
  SdpText text(sdp);
  return disablePorts(text, mediaMask, ipVersion) ? 1 : 0;
}
