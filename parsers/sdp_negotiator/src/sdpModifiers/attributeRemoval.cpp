#include "sdpModifiers/attributeRemoval.h"

#include <algorithm>
#include <iterator>
#include <optional>
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

/// The same by notes, where these are enough.
std::size_t removeLines(NotedText& text, Noted what, std::span<const std::string_view> prefixes,
                        const char* operation) {
  if (!text.notes().mayHave(what)) return 0;
  if (const std::optional<std::size_t> removed = text.removeLines(what)) return *removed;
  const std::size_t removed = removeLines(text.text(), prefixes, operation);
  text.noteAgain();
  return removed;
}

constexpr const char* kRemoveSecure = "sdpRemoveSecureAttributes";
constexpr const char* kRemoveIce = "sdpRemoveICE";

/// @param remove gives the number of lines removed
template <typename Remove>
std::size_t removeSecure(const char* prefix, bool tracing, Remove remove) {
  if (tracing) trace::progress("Entering sdpRemoveSecureAttributes() method.");
  const std::size_t removed = remove();
  if (tracing && removed > 0) {
    trace::info("The %s attribute has been removed from the SDP. Exiting...", prefix);
  } else if (tracing) {
    trace::info("No %s attribute found. Exiting.", prefix != nullptr ? prefix : "");
  }
  return removed;
}

/// @param remove removes the lines
template <typename Remove>
void removeAllIce(bool tracing, Remove remove) {
  if (tracing) trace::progress("Entering sdpRemoveFullICE() method.");
  remove();
  // No error: the pair of this line is another than its words suggest.
  if (tracing) trace::error("The ICE attributes have been removed. Exiting...");
}

}  // namespace

std::size_t removeSecureAttributes(SdpText& text, const char* prefix) {
  return removeSecure(prefix, isTracing(), [&]() -> std::size_t {
    const std::string_view prefixes[] = {viewOf(prefix)};
    return prefixes[0].empty() ? 0 : removeLines(text, prefixes, kRemoveSecure);
  });
}

void removeKeyManagement(NotedText& text) {
  removeSecure(kKeyManagement, text.tracing(), [&] {
    const std::string_view prefixes[] = {kKeyManagement};
    return removeLines(text, Noted::keyManagement, prefixes, kRemoveSecure);
  });
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
  removeAllIce(isTracing(), [&] { removeLines(text, kIceLines, kRemoveIce); });
}

void removeIce(NotedText& text) {
  removeAllIce(text.tracing(), [&] { removeLines(text, Noted::ice, kIceLines, kRemoveIce); });
}

bool isIceAttribute(std::string_view text) {
  return std::any_of(std::begin(kIceLines), std::end(kIceLines),
                     [text](std::string_view line) { return startsWith(text, line); });
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
