#include "sdpModifiers/attributeRemoval.h"

#include <span>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "trace.h"
#include "vocabulary.h"

// Removal of all lines that hold one of some texts.

namespace sdpneg {

namespace {

constexpr std::string_view kIceLines[] = {
    "a=candidate:", "a=remote-candidates:", "a=ice-mismatch:", "a=ice-pwd:",
    "a=ice-ufrag:", "a=ice-options:",       "a=ice-lite"};
constexpr std::string_view kCandidateLines[] = {"a=candidate:", "a=remote-candidates:"};
constexpr std::string_view kAnatGroupLines[] = {kAnat};

/// @return the number of lines removed; 0 for null and, with a trace, for a buffer that holds no text
std::size_t removeLines(SdpText& text, std::span<const std::string_view> prefixes, const char* operation) {
  return !text.isNull() && adopted(text, operation) ? text.removeLines(prefixes) : 0;
}

}  // namespace

std::size_t removeSecureAttributes(SdpText& text, const char* prefix) {
  trace::progress("Entering sdpRemoveSecureAttributes() method.");
  const std::string_view prefixes[] = {viewOf(prefix)};
  const bool given = !prefixes[0].empty();
  const std::size_t removed = given ? removeLines(text, prefixes, "sdpRemoveSecureAttributes") : 0;
  if (removed > 0) {
    trace::info("The %s attribute has been removed from the SDP. Exiting...", prefix);
  } else {
    trace::info("No %s attribute found. Exiting.", given ? prefix : "");
  }
  return removed;
}

void removeDtlsAttributes(SdpText& text) {
  trace::progress("Entering sdpRemoveDTLSAttributes() method.");
  removeSecureAttributes(text, "a=setup:");
  removeSecureAttributes(text, "a=fingerprint:");
  trace::progress("Exiting sdpRemoveDTLSAttributes() method.");
}

void removeAnatAttributes(SdpText& text) {
  trace::progress("Entering sdpRemoveAnatAttributes() method.");
  removeLines(text, kAnatGroupLines, "sdpRemoveAnatAttributes");
  trace::progress("The ANAT attributes have been removed from the SDP. Exiting...");
}

void removeIce(SdpText& text) {
  trace::progress("Entering sdpRemoveFullICE() method.");
  removeLines(text, kIceLines, "sdpRemoveICE");
  // No error: the pair of this line is another than its words suggest.
  trace::error("The ICE attributes have been removed. Exiting...");
}

void removeCandidates(SdpText& text) {
  trace::progress("Entering sdpRemoveCandidates() method.");
  removeLines(text, kCandidateLines, "sdpRemoveCandidates");
  trace::progress("The candidates have been removed from the SDP. Exiting...");
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpRemoveSecureAttributes(char* sdp, const char* prefix) {
  SdpText text(sdp);
  removeSecureAttributes(text, prefix);
  return 0;
}

unsigned short sdpModifications::sdpRemoveDTLSAttributes(char* sdp) {
  SdpText text(sdp);
  removeDtlsAttributes(text);
  return 0;
}

void sdpModifications::sdpRemoveAnatAttributes(char* sdp) {
  SdpText text(sdp);
  removeAnatAttributes(text);
}

unsigned short sdpModifications::sdpRemoveICE(char* sdp) {
  SdpText text(sdp);
  removeIce(text);
  return 0;
}

unsigned short sdpModifications::sdpRemoveCandidates(char* sdp) {
  SdpText text(sdp);
  removeCandidates(text);
  return 0;
}
