#ifndef SDP_MODIFIERS_PORTS_H
#define SDP_MODIFIERS_PORTS_H

#include "refusal.h"
#include "sdpModifiers.h"
#include "sdpModifiers/notes.h"

// The ports of m-lines.

namespace sdpneg {

/// `sdpModifications::sdpSetMediaPort`. What it owes to another refusal it tells itself before it gives its own.
Refusal setMediaPort(NotedText& text, int mediaType, eIPAddressVersion ipVersion,
                     sdpModifications::eMediaSecurityType security, unsigned int port);
Refusal setMediaPort(SdpText& text, int mediaType, eIPAddressVersion ipVersion,
                     sdpModifications::eMediaSecurityType security, unsigned int port);

/// `sdpModifications::sdpDisablePort`. Goes on behind a medium that is refused.
/// @return the last refusal; all have been told
Refusal disablePorts(NotedText& text, int mediaMask, eIPAddressVersion ipVersion);
Refusal disablePorts(SdpText& text, int mediaMask, eIPAddressVersion ipVersion);

/// Which ports are set to 0 as, while nothing is traced, `setMediaPort` does for secure m-lines of any medium,
/// `disablePorts` for all media but one, and `setMediaPort` for that one with addresses of a version.
class PortsToClose {
 public:
  PortsToClose(const NotedText& text, int mediaType, eIPAddressVersion ipVersion);

  /// @param mLine with its LF; asked from the first one on
  bool contain(const Line& mLine);
  /// Whether the last one is a secure one of the medium that keeps its ports otherwise.
  bool isSecureOne() const { return secureOne_; }
  /// Whether an m-line, or the session in its place, has an address of a version.
  bool hasVersion(const Line& mLine, eIPAddressVersion ipVersion) const;

 private:
  const NotedText& text_;
  int mediaType_;
  eIPAddressVersion ipVersion_;
  eIPAddressVersion sessionVersion_;
  bool secureOne_ = false;
};

/// Sets those ports.
/// @return whether the medium has secure m-lines
bool closePortsBut(NotedText& text, int mediaType, eIPAddressVersion ipVersion);

}  // namespace sdpneg

#endif
