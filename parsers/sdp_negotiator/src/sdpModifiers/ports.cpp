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

bool passes(std::string_view text, std::size_t mLine, const PortFilter& filter) {
  if (filter.ipVersion != kIpVersionUnknown) {
    // From an m-line on, the first c-line in front of the next one is its own.
    const eIPAddressVersion own = connectionVersion(text.substr(mLine));
    if (filter.ipVersion != (own != kIpVersionUnknown ? own : filter.sessionVersion)) return false;
  }
  if (filter.security == sdpModifications::MEDIA_SECURITY_ANY) return true;
  return isSecure(text, lineAt(text, mLine)) == (filter.security == sdpModifications::MEDIA_SECURITY_SECURE);
}

/// Sets the port of every m-line that passes; ends with the first that cannot be changed.
class PortChanges {
 public:
  PortChanges(std::string_view text, const PortFilter& filter, unsigned int port)
      : filter_(filter), port_(port), digits_(PortDigits().add(port)), lastLf_(text.rfind('\n')) {}

  std::optional<Change> next(std::string_view text, std::size_t room) {
    while (!failed_) {
      at_ = nextMLineOf(text, filter_.name, at_);
      // One without LF ends the text.
      if (at_ == npos || at_ > lastLf_) break;
      if (!passes(text, at_, filter_)) continue;
      const std::optional<Change> change = isReservedPort(port_) ? refuse() : portChange(text, at_, digits_);
      failed_ = failed_ || (change && takes(*change) > room);
      if (failed_) break;
      ++count_;
      if (change) return change;
    }
    return std::nullopt;
  }

  int count() const { return count_; }
  /// Whether the m-line behind those that are counted could not be changed.
  bool failed() const { return failed_; }

 private:
  std::optional<Change> refuse() {
    tell({.reason = SDP_REFUSED_ILLEGAL_PORT, .number = port_});
    failed_ = true;
    return std::nullopt;
  }

  const PortFilter& filter_;
  unsigned int port_;
  PortDigits digits_;
  std::size_t lastLf_;
  std::size_t at_ = 0;
  int count_ = 0;
  bool failed_ = false;
};

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
  const PortFilter filter{name, ipVersion, security, sessionVersion};
  PortChanges changes(text.view(), filter, port);
  text.changeEach([&](std::string_view view, std::size_t /*from*/, std::size_t room) {
    return changes.next(view, room);
  });
  if (changes.failed()) return {.reason = SDP_REFUSED_PORT_NOT_SET, .number = port};
  trace::progress("Exiting sdpSetMediaPort() : set port=%u on %i m= line(s)", port, changes.count());
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
