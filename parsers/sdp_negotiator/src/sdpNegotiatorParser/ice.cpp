#include <algorithm>

#include "descriptionView.h"
#include "sdpNegotiatorParser.h"
#include "steps.h"
#include "text/find.h"
#include "text/fixedText.h"
#include "text/occurrences.h"
#include "trace.h"
#include "vocabulary.h"

// ICE (RFC 8839): whether a text has it, full or lite, and whether a candidate matches the summary.

namespace sdpneg {
namespace {

void setBit(sSdpParsedData& data, eSdpAttribute bit, bool on) {
  const auto mask = static_cast<std::uint32_t>(bit);
  data.sdpAttributes = on ? data.sdpAttributes | mask : data.sdpAttributes & ~mask;
}

struct IceNames {
  bool lite = false;
  bool full = false;
};

bool isFullIceName(std::string_view text) {
  switch (text.empty() ? '\0' : lower(text[0])) {
    case 'c':
      return startsWithNoCase(text, "candidate:");
    case 'r':
      return startsWithNoCase(text, "remote-candidates:");
    case 'i':
      return startsWithNoCase(text, "ice-mismatch") || startsWithNoCase(text, "ice-pwd:") ||
             startsWithNoCase(text, "ice-ufrag:") || startsWithNoCase(text, "ice-options:");
    default:
      return false;
  }
}

/// Whether the names of ICE may begin so.
bool mayBeginName(char first) {
  const char c = lower(first);
  return c == 'i' || c == 'c' || c == 'r';
}

/// @param text what follows an "a=", as far as its first colon at least
void takeName(IceNames& names, std::string_view text) {
  names.lite = names.lite || startsWithNoCase(text, "ice-lite");
  names.full = names.full || isFullIceName(text);
}

/// Looks behind each "a=" of a text, inside lines as well, in one pass.
IceNames iceNamesIn(std::string_view text) {
  IceNames found;
  if (text.empty()) return found;
  // An equals sign at either end of the text begins no name.
  const std::string_view inside = text.substr(0, text.size() - 1);
  forEachPlace(inside, '=', [&](std::size_t at) {
    if (!mayBeginName(text[at + 1]) || at == 0 || lower(text[at - 1]) != 'a') return;
    takeName(found, text.substr(at + 1));
  });
  return found;
}

constexpr KindSet kIceLines(AttributeKind::candidate, AttributeKind::iceWithValue,
                            AttributeKind::remoteOrIce);

void takeNames(IceNames& names, const AttributeIndex& attributes) {
  attributes.forEach(kIceLines, [&](const a_line::entry& line, AttributeKind kind) {
    if (kind != AttributeKind::remoteOrIce) {
      names.full = names.full || valueOf(line) != nullptr;
      return true;
    }
    FixedText<sizeof line.name + 1> text;
    text.add(line.name);
    if (valueOf(line) != nullptr) text.add(":");
    takeName(names, text.view());
    return true;
  });
}

/// Whether each "a=" of the text is the beginning of an attribute line that is held whole, so that the lines' names tell
/// what the text holds.
bool isToldByLines(Body& body, const BodyText& text) {
  return sdp_isComplete(&body.description()) && text.attributeStarts == body.lines().count;
}

void noteIce(sSdpParsedData& data, IceNames found) {
  setBit(data, SDP_ATTR_ICE_LITE, found.lite);
  if (found.lite) {
    trace::progress("There is an ice-lite attribute in the SDP.");
    return;
  }
  setBit(data, SDP_ATTR_FULL_ICE, found.full);
  if (found.full) trace::progress("There is ice attributes in the SDP.");
}

std::size_t nextCandidate(std::string_view text, std::size_t from) {
  // "da" stands in few other places.
  constexpr std::string_view candidate = "a=candidate:";
  return findByPair(text, candidate, candidate.find("da"), from);
}

/// Goes over the candidate lines of a text until one tells whether they match. The bit stays as it is when the lines
/// run out.
/// @return 0, or 1 for a line without LF, which leaves the bit as well
unsigned short matchCandidates(sSdpParsedData& data, std::string_view text, std::string_view address,
                               std::string_view port) {
  std::size_t line = nextCandidate(text, 0);
  if (line == npos) return 0;
  OccurrencesNoCase ports(text, port);
  OccurrencesNoCase addresses(text, address);
  NextPlace lineFeeds(text, {"\n"});
  for (; line != npos; line = nextCandidate(text, line + 1)) {
    const std::size_t lineFeed = lineFeeds.from(line);
    if (lineFeed == npos) return 1;
    const std::size_t last = std::max(ports.from(line), addresses.from(line));
    if (last == npos) {
      trace::info("Ice mismatch occurred within the SDP");
      setBit(data, SDP_ATTR_ICE_CANDIDATES_MATCH, false);
      return 0;
    }
    if (last < lineFeed) {
      setBit(data, SDP_ATTR_ICE_CANDIDATES_MATCH, true);
      return 0;
    }
  }
  return 0;
}

/// The IP version that active media indicate so far.
struct Indication {
  eIPAddressVersion candidate = kIpVersionUnknown;   ///< of the last candidate, whatever it was
  eIPAddressVersion connection = kIpVersionUnknown;  ///< of the c-lines, where IPv6 outweighs IPv4
};

/// @return true when a candidate has an IPv6 address, which decides
bool takeCandidates(Indication& indication, const AttributeIndex& attributes) {
  attributes.forEach(KindSet(AttributeKind::candidate), [&](const a_line::entry& line, AttributeKind) {
    indication.candidate = cMsgIPAddress::getIPAddressVersion(line.value);
    return indication.candidate != kIpVersion6;
  });
  return indication.candidate == kIpVersion6;
}

void takeConnection(Indication& indication, ReadAddress& addresses, const c_line& line) {
  if (!hasConnection(line)) return;
  const bool isFirst = indication.connection == kIpVersionUnknown;
  if (addresses.versionOf(addressOf(line)) == kIpVersion6) {
    indication.connection = kIpVersion6;
  } else if (isFirst) {
    indication.connection = kIpVersion4;
  }
}

}  // namespace

bool findIce(sSdpParsedData& data, Body& body, const BodyText& text) {
  if (!isToldByLines(body, text)) {
    noteIce(data, iceNamesIn(text.text));
    return true;
  }
  IceNames found;
  if (body.lines().kinds.hasAnyOf(kIceLines)) {
    takeNames(found, body.session());
    for (Section& section : body.sections()) takeNames(found, section.attributes());
  }
  noteIce(data, found);
  return body.lines().kinds.has(AttributeKind::candidate);
}

unsigned short matchCandidates(sSdpParsedData& data, const sDescription& description, std::string_view text) {
  const auto media = mediaOf(description);
  const std::string_view address = viewOf(addressOf(description.cLine));
  if (media.empty() || address.empty()) return 1;
  const std::string_view port = viewOf(sdp_MgetPort(&media[0].mLine));
  if (port.empty()) return 1;
  return matchCandidates(data, text, address, port);
}

unsigned int indicatedVersion(Body& body) {
  Indication indication;
  const auto connection = body.connectionOfAll();
  if (connection && !body.lines().kinds.has(AttributeKind::candidate)) {
    if (*connection != nullptr) takeConnection(indication, body.addresses(), **connection);
    return static_cast<unsigned int>(indication.connection);
  }
  for (Section& section : body.sections()) {
    if (section.port() == 0) continue;
    if (takeCandidates(indication, section.attributes())) return kIpVersion6;
    takeConnection(indication, body.addresses(), section.connection());
  }
  const bool byCandidate = indication.candidate != kIpVersionUnknown;
  return static_cast<unsigned int>(byCandidate ? indication.candidate : indication.connection);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::checkIce(const char* sdp, sSdpParsedData& data) {
  noteIce(data, iceNamesIn(viewOf(sdp)));
  return 0;
}

unsigned short sdpParserMessage::checkFullIceAttributes(const char* sdp, sSdpParsedData& data,
                                                        const sDescription& description) {
  return matchCandidates(data, description, viewOf(sdp));
}

unsigned int sdpParserMessage::checkMediaStreamsForIPIndication(const sDescription& description) {
  Body body(description);
  return indicatedVersion(body);
}
