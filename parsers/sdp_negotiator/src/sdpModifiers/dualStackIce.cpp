#include "sdpModifiers/dualStackIce.h"

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

namespace sdpneg {

namespace {

constexpr const char* kOperation = "sdpRemoveDualStackIce";

/// The address version of the first connection.
/// @param level begins the trace
/// @return nothing for another address type
std::optional<eIPAddressVersion> versionOf(const c_line& line, const char* level) {
  const std::string_view type = viewOf(sdp_CgetAddressType(&line, 0));
  if (type != kIp4 && type != kIp6) return std::nullopt;
  trace::progress("%s version %c", level, type.back());
  return type == kIp4 ? kIpVersion4 : kIpVersion6;
}

/// The address version of the session; unknown for one without connection.
Refusal readSessionVersion(const sDescription& description, eIPAddressVersion& version) {
  version = kIpVersionUnknown;
  if (!hasConnection(description.cLine)) return {};
  const auto own = versionOf(description.cLine, "Session level IP");
  if (!own) {
    return {.reason = SDP_REFUSED_ICE_SESSION_ADDRESS_TYPE, .field = SDP_REFUSAL_FIELD_ADDRESS_TYPE};
  }
  version = *own;
  return {};
}

/// The address version of a section: its own, or what `version` holds.
/// @param media the section's number, from 0
Refusal readMediaVersion(const mDescription& section, int media, eIPAddressVersion& version) {
  if (!hasConnection(section.cLine)) return {};
  const auto own = versionOf(section.cLine, "IP");
  if (!own) {
    return {.reason = SDP_REFUSED_ICE_ADDRESS_TYPE,
            .what = keptForRefusal(viewOf(sdp_CgetAddressType(&section.cLine, 0))),
            .section = media + 1,
            .field = SDP_REFUSAL_FIELD_ADDRESS_TYPE};
  }
  version = *own;
  return {};
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
/// @param media   the section's number, from 0
/// @param removed set when there was one of the other version
Refusal filterCandidates(a_line& lines, int media, eIPAddressVersion version, bool& removed) {
  trace::progress("Processing Media number %d", media);
  const int count = std::clamp(lines.count, 0, SDP_ATTRIBUTE_CAPACITY);
  lines.count = 0;
  for (int i = 0; i < count; ++i) {
    const std::optional<Verdict> verdict = judgeAttribute(lines.entries[i], media, i, version);
    if (!verdict) {
      return {.reason = SDP_REFUSED_CANDIDATE_WITHOUT_ADDRESS,
              .section = media + 1,
              .field = SDP_REFUSAL_FIELD_ADDRESS};
    }
    removed = removed || *verdict == Verdict::dropOtherVersion;
    if (*verdict != Verdict::keep) continue;
    if (lines.count != i) lines.entries[lines.count] = lines.entries[i];
    ++lines.count;
  }
  trace::debug("Modified index of MD %d", media + 1);
  return {};
}

/// Drops the candidates of every section that are not of its version.
Refusal filterAllCandidates(sDescription& description, bool& removed) {
  eIPAddressVersion ofSession = kIpVersionUnknown;
  if (const Refusal refusal = readSessionVersion(description, ofSession)) return refusal;
  int media = 0;
  for (mDescription& section : mediaOf(description)) {
    eIPAddressVersion version = ofSession;
    if (const Refusal refusal = readMediaVersion(section, media, version)) return refusal;
    if (const Refusal refusal = filterCandidates(section.aLine, media, version, removed)) return refusal;
    ++media;
  }
  return {};
}

Refusal removeDecoded(SdpText& text, sDescription& description) {
  if (const int status = decodeText(description, text.view().data()); status != 0) {
    return {.reason = SDP_REFUSED_ICE_NOT_DECODED, .number = status};
  }
  if (!sdp_isComplete(&description)) return {.reason = SDP_REFUSED_ICE_NOT_HELD};
  bool removed = false;
  if (const Refusal refusal = filterAllCandidates(description, removed)) return refusal;
  if (const Refusal refusal = replaceByEncoded(text, description, kOperation, "encoded SDP")) return refusal;
  if (!removed) return {.reason = SDP_REFUSED_NO_OTHER_CANDIDATES};
  trace::info("Dual stack ice candidates have been removed from the SDP");
  return {};
}

}  // namespace

Refusal removeDualStackIce(SdpText& text) {
  trace::progress("Entering sdpRemoveDualStackIce() method.");
  if (const Refusal refusal = refusalOfBuffer(text, kOperation)) return refusal;
  return withDescription([&](sDescription& description) { return removeDecoded(text, description); });
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpRemoveDualStackIce(char* sdp) {
  SdpText text(sdp);
  return statusOf(removeDualStackIce(text));
}
