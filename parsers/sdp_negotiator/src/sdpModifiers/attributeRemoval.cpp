#include <span>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "trace.h"

// Removal of all lines that hold one of some texts.

namespace {

using namespace sdpneg;

constexpr std::string_view kIceLines[] = {
    "a=candidate:", "a=remote-candidates:", "a=ice-mismatch:", "a=ice-pwd:",
    "a=ice-ufrag:", "a=ice-options:",       "a=ice-lite"};
constexpr std::string_view kCandidateLines[] = {"a=candidate:", "a=remote-candidates:"};
constexpr std::string_view kAnatGroupLines[] = {"a=group:ANAT"};

/// @return the number of lines removed; 0 for null and, with a trace, for a buffer that holds no text
std::size_t removeLines(char* sdp, std::span<const std::string_view> prefixes, const char* operation) {
  if (sdp == nullptr) return 0;
  SdpText text(sdp);
  return adopted(text, operation) ? text.removeLines(prefixes) : 0;
}

}  // namespace

unsigned short sdpModifications::sdpRemoveSecureAttributes(char* sdp, const char* prefix) {
  trace::progress("Entering sdpRemoveSecureAttributes() method.");
  const std::string_view prefixes[] = {viewOf(prefix)};
  const bool given = !prefixes[0].empty();
  if (given && removeLines(sdp, prefixes, "sdpRemoveSecureAttributes") > 0) {
    trace::info("The %s attribute has been removed from the SDP. Exiting...", prefix);
  } else {
    trace::info("No %s attribute found. Exiting.", given ? prefix : "");
  }
  return 0;
}

unsigned short sdpModifications::sdpRemoveDTLSAttributes(char* sdp) {
  trace::progress("Entering sdpRemoveDTLSAttributes() method.");
  sdpRemoveSecureAttributes(sdp, "a=setup:");
  sdpRemoveSecureAttributes(sdp, "a=fingerprint:");
  trace::progress("Exiting sdpRemoveDTLSAttributes() method.");
  return 0;
}

void sdpModifications::sdpRemoveAnatAttributes(char* sdp) {
  trace::progress("Entering sdpRemoveAnatAttributes() method.");
  removeLines(sdp, kAnatGroupLines, "sdpRemoveAnatAttributes");
  trace::progress("The ANAT attributes have been removed from the SDP. Exiting...");
}

unsigned short sdpModifications::sdpRemoveICE(char* sdp) {
  trace::progress("Entering sdpRemoveFullICE() method.");
  removeLines(sdp, kIceLines, "sdpRemoveICE");
  trace::error("The ICE attributes have been removed. Exiting...");
  return 0;
}

unsigned short sdpModifications::sdpRemoveCandidates(char* sdp) {
  trace::progress("Entering sdpRemoveCandidates() method.");
  removeLines(sdp, kCandidateLines, "sdpRemoveCandidates");
  trace::progress("The candidates have been removed from the SDP. Exiting...");
  return 0;
}
