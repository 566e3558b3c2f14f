#include "sdpModifiers/ports.h"

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
  const char* name;
};

/// In the order in which ports are disabled.
constexpr MediaName kMediaNames[] = {{MEDIA_AUDIO, "audio"},     {MEDIA_VIDEO, "video"},
                                     {MEDIA_MESSAGE, "message"}, {MEDIA_TEXT, "text"},
                                     {MEDIA_IMAGE, "image"},     {MEDIA_APPLICATION, "application"}};

/// @return null for another value than one of a medium
const char* mediaNameOf(int mediaType) {
  for (const MediaName& media : kMediaNames) {
    if (media.type == mediaType) return media.name;
  }
  return nullptr;
}

Refusal refusalOfMedia(int mediaType) { return {.reason = SDP_REFUSED_UNKNOWN_MEDIA, .number = mediaType}; }

/// The m-lines whose port a request sets.
struct PortFilter {
  std::string_view name;  ///< what follows "m="; empty for any medium
  eIPAddressVersion ipVersion;
  sdpModifications::eMediaSecurityType security;
  eIPAddressVersion sessionVersion;
};

bool passes(const SdpText& text, const Line& mLine, const PortFilter& filter) {
  const std::string_view view = text.view();
  if (filter.ipVersion != kIpVersionUnknown) {
    // From an m-line on, the first c-line in front of the next one is its own.
    const eIPAddressVersion own = connectionVersion(view.substr(mLine.begin));
    if (filter.ipVersion != (own != kIpVersionUnknown ? own : filter.sessionVersion)) return false;
  }
  if (filter.security == sdpModifications::MEDIA_SECURITY_ANY) return true;
  return isSecure(view, mLine) == (filter.security == sdpModifications::MEDIA_SECURITY_SECURE);
}

/// What became of the m-lines of a filter.
struct PortsSet {
  int count = 0;
  bool failed = false;  ///< at the m-line behind those that are counted, which are changed
};

/// Sets the port of every m-line that passes; ends with the first that cannot be changed.
PortsSet setPorts(SdpText& text, const PortFilter& filter, unsigned int port) {
  PortsSet set;
  forEachMLineOf(text, filter.name, [&](std::size_t at) {
    const Line mLine = lineAt(text.view(), at);
    if (!mLine.terminated) return false;
    if (!passes(text, mLine, filter)) return true;
    if (isReservedPort(port)) {
      tell({.reason = SDP_REFUSED_ILLEGAL_PORT, .number = port});
      set.failed = true;
    } else {
      set.failed = replacePort(text, mLine, port) != Edit::done;
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

Refusal setMediaPort(SdpText& text, int mediaType, eIPAddressVersion ipVersion,
                     sdpModifications::eMediaSecurityType security, unsigned int port) {
  const char* const name = mediaType == kAnyMedia ? "" : mediaNameOf(mediaType);
  if (name == nullptr) {
    tell(refusalOfMedia(mediaType));
    return {.reason = SDP_REFUSED_MEDIA_OF_PORT, .number = mediaType};
  }
  trace::progress(
      "Entering sdpSetMediaPort(): set port=%u on all m=%s lines with address type=%s, which are %s", port,
      name[0] != '\0' ? name : "<any>", shown(ipVersion), shown(security));
  if (const Refusal refusal = refusalOfBuffer(text, "sdpSetMediaPort")) return refusal;
  const eIPAddressVersion sessionVersion =
      ipVersion != kIpVersionUnknown ? connectionVersion(text.view()) : kIpVersionUnknown;
  const PortsSet set = setPorts(text, {name, ipVersion, security, sessionVersion}, port);
  if (set.failed) return {.reason = SDP_REFUSED_PORT_NOT_SET, .number = port};
  trace::progress("Exiting sdpSetMediaPort() : set port=%u on %i m= line(s)", port, set.count);
  return {};
}

Refusal disablePorts(SdpText& text, int mediaMask, eIPAddressVersion ipVersion) {
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

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::getMediaName(int mediaType, char* out, int outSize) {
  const char* const name = mediaNameOf(mediaType);
  if (name == nullptr) return refuse(refusalOfMedia(mediaType));
  if (out != nullptr && outSize > 0) {
    out[std::string_view(name).copy(out, static_cast<std::size_t>(outSize) - 1)] = '\0';
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
