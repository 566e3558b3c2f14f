#include <algorithm>
#include <optional>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/codecText.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "text/fixedText.h"
#include "trace.h"
#include "vocabulary.h"

// ICE candidates (RFC 8839) of the address version that a media section does not use.

namespace {

using namespace sdpneg;

/// The address version of the first connection.
/// @param level begins the trace
/// @return nothing for another address type
std::optional<eIPAddressVersion> versionOf(const c_line& line, const char* level) {
  const std::string_view type = viewOf(sdp_CgetAddressType(&line, 0));
  if (type != "IP4" && type != "IP6") return std::nullopt;
  trace::progress("%s version %c", level, type.back());
  return type == "IP4" ? kIpVersion4 : kIpVersion6;
}

std::optional<eIPAddressVersion> sessionVersion(const sDescription& description) {
  if (!hasConnection(description.cLine)) return kIpVersionUnknown;
  const std::optional<eIPAddressVersion> version = versionOf(description.cLine, "Session level IP");
  if (!version) trace::info("Session level invalid address type");
  return version;
}

std::optional<eIPAddressVersion> mediaVersion(const mDescription& media, eIPAddressVersion ofSession) {
  if (!hasConnection(media.cLine)) return ofSession;
  const std::optional<eIPAddressVersion> version = versionOf(media.cLine, "IP");
  if (!version) {
    trace::info("Error : invalid first address type in media %s", sdp_CgetAddressType(&media.cLine, 0));
  }
  return version;
}

using Address = FixedText<SDP_ATTRIBUTE_VALUE_SIZE>;

/// The text between the fourth space of a candidate and the fifth; nothing when one of them is missing.
std::optional<Address> addressOf(std::string_view candidate) {
  constexpr int kFurtherSpaces = 3;
  std::size_t space = candidate.find(' ');
  for (int i = 0; i < kFurtherSpaces; ++i) {
    if (space != npos) space = candidate.find(' ', space + 1);
    if (space == npos) return std::nullopt;
    trace::debug("Found space in iteration %d", i);
  }
  trace::debug("Found 4th space..ip should follow");
  const std::size_t end = candidate.find(' ', space + 1);
  if (end == npos) return std::nullopt;
  return Address().add(candidate.substr(space + 1, end - space - 1));
}

enum class Verdict { keep, drop, dropOtherVersion };

/// What becomes of a candidate with that address in a section of that version.
Verdict judge(const Address& address, eIPAddressVersion version) {
  const bool is4 = cMsgIPAddress::isIPv4(address.text());
  if (version == kIpVersionUnknown || (!is4 && !cMsgIPAddress::isIPv6(address.text()))) return Verdict::drop;
  const int wanted = version == kIpVersion4 ? 4 : 6;
  const int found = is4 ? 4 : 6;
  if (found == wanted) {
    trace::debug("Ipv%d adding ipv%d a line", wanted, found);
    return Verdict::keep;
  }
  trace::debug("Ipv%d Bypassing ipv%d a line", wanted, found);
  return Verdict::dropOtherVersion;
}

/// What becomes of an attribute; nothing for a candidate without an address field.
std::optional<Verdict> judgeAttribute(const a_line::entry& line, int media, int index,
                                      eIPAddressVersion version) {
  trace::progress("Processing Aline %d of Media number %d", index, media);
  if (!isNamed(line, "candidate")) {
    // The two numbers stand in each other's place.
    trace::progress("Not found a=candidate in media %d aline %d", index, media);
    return Verdict::keep;
  }
  const std::optional<Address> address = addressOf(viewOf(valueOf(line)));
  if (!address) return std::nullopt;
  return judge(*address, version);
}

/// Drops the candidates that are not of a version.
/// @param media the section's number, from 0
/// @return whether there was one of the other version; nothing when a candidate has no address field
std::optional<bool> filterCandidates(a_line& lines, int media, eIPAddressVersion version) {
  trace::progress("Processing Media number %d", media);
  const int count = std::clamp(lines.count, 0, SDP_ATTRIBUTE_CAPACITY);
  bool removed = false;
  lines.count = 0;
  for (int i = 0; i < count; ++i) {
    const std::optional<Verdict> verdict = judgeAttribute(lines.entries[i], media, i, version);
    if (!verdict) return std::nullopt;
    removed = removed || *verdict == Verdict::dropOtherVersion;
    if (*verdict != Verdict::keep) continue;
    if (lines.count != i) lines.entries[lines.count] = lines.entries[i];
    ++lines.count;
  }
  trace::debug("Modified index of MD %d", media + 1);
  return removed;
}

/// The same for all sections.
/// @return nothing also when an address type is neither IP4 nor IP6
std::optional<bool> filterAllCandidates(sDescription& description) {
  const std::optional<eIPAddressVersion> ofSession = sessionVersion(description);
  if (!ofSession) return std::nullopt;
  bool removed = false;
  int number = 0;
  for (mDescription& media : mediaOf(description)) {
    const std::optional<eIPAddressVersion> version = mediaVersion(media, *ofSession);
    if (!version) return std::nullopt;
    const std::optional<bool> removedHere = filterCandidates(media.aLine, number, *version);
    if (!removedHere) return std::nullopt;
    removed = removed || *removedHere;
    ++number;
  }
  return removed;
}

unsigned short removeDualStackIce(SdpText& text, sDescription& description) {
  if (const int status = decodeText(description, text.view().data()); status != 0) {
    trace::info("Decoding Error %d", status);
    return 1;
  }
  if (!sdp_isComplete(&description)) {
    trace::error("sdpRemoveDualStackIce(): The SDP holds more than its description can. Exiting.");
    return 1;
  }
  const std::optional<bool> removed = filterAllCandidates(description);
  if (!removed) return 1;
  if (!replaceByEncoded(text, description, "sdpRemoveDualStackIce", "encoded SDP")) return 1;
  if (!*removed) return 1;
  trace::info("Dual stack ice candidates have been removed from the SDP");
  return 0;
}

}  // namespace

unsigned short sdpModifications::sdpRemoveDualStackIce(char* sdp) {
  trace::progress("Entering sdpRemoveDualStackIce() method.");
  SdpText text(sdp);
  if (!adopted(text, "sdpRemoveDualStackIce")) return 1;
  return withDescription([&](sDescription& description) { return removeDualStackIce(text, description); });
}
