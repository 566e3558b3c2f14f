#include "inspection/refusal.h"

#include <algorithm>
#include <iterator>

#include "inspection/heldMedia.h"
#include "sdpNegotiator.h"

namespace tool {
namespace {

constexpr std::size_t kPortField = 1;
constexpr std::size_t kAddressField = 2;

std::string quoted(const char* text) { return std::string("\"").append(sdpneg::viewOf(text)).append("\""); }

constexpr std::string_view kFound = ", found \"";

/// Whether a line may tell a key, or a password. One that cannot be read need not look as such a line should.
bool mayHaveKeys(std::string_view line) {
  constexpr std::string_view kMarks[] = {"crypto", "inline:", "key-mgmt", "pwd", "password", "authorization"};
  return sdpneg::startsWithNoCase(line, "k") ||
         std::any_of(std::begin(kMarks), std::end(kMarks), [line](std::string_view mark) {
           return sdpneg::findNoCase(line, mark) != sdpneg::npos;
         });
}

/// The codec's words without what it quotes.
std::string withoutQuotation(std::string words) {
  const std::size_t found = words.find(kFound);
  if (found != std::string::npos) words.resize(found);
  return words;
}

/// The codec's words with what it quotes as it stands in the text. The codec puts "?" for every byte that is no
/// printable ASCII character.
std::string withQuotation(std::string words, std::string_view text) {
  const std::size_t found = words.find(kFound);
  const std::size_t end = words.rfind('"');
  if (found == std::string::npos || end < found + kFound.size()) return words;
  const std::size_t begin = found + kFound.size();
  for (std::size_t i = begin; i < end && i - begin < text.size(); ++i) {
    const char c = text[i - begin];
    const bool hidden = words[i] == '?' && (c < ' ' || c > '~');
    if (!hidden && words[i] != c) return words;  // it quotes something else
    words[i] = c;
  }
  return words;
}

/// A body that is refused, with the section that it is for.
struct Refused {
  const sSdpRefusal& refusal;
  const sDescription& description;
  const BodyLines& lines;

  std::size_t index() const { return static_cast<std::size_t>(refusal.section) - 1; }
  /// Null for the session.
  const mDescription* media() const {
    const auto media = heldMedia(description);
    return refusal.section > 0 && index() < media.size() ? &media[index()] : nullptr;
  }
  std::string mediaName() const {
    return "m-line " + std::to_string(refusal.section) + " (" + media()->mLine.media + ")";
  }
};

Problem explainSessionType(const Refused& body) {
  const c_line& line = body.description.cLine;
  const std::string_view type = sdpneg::viewOf(sdp_CgetAddressType(&line, 0));
  return {body.lines.sessionConnectionField(kAddressField),
          "the session's c-line has the type " + std::string(type) + ", but " +
              quoted(sdp_CgetAddress(&line, 0)) + " is no " +
              (sdpneg::equalNoCase(type, "IP4") ? "IPv4" : "IPv6") + " address"};
}

Problem explainCount(const Refused& body) {
  return {body.lines.mediaField(SDP_MEDIA_CAPACITY, 0),
          "the body has " + std::to_string(sdp_getNoOfMDs(&body.description)) + " m-lines, and at most " +
              std::to_string(SDP_MEDIA_CAPACITY) + " are read"};
}

Problem explainPort(const Refused& body) {
  const mDescription* media = body.media();
  if (media == nullptr) return {{}, body.refusal.text};
  return {body.lines.mediaField(body.index(), kPortField),
          "the port of " + body.mediaName() + ", " + sdp_MgetPort(&media->mLine) + ", is " +
              (portOf(*media) < 1024 ? "below 1024" : "above 65535")};
}

Problem explainAddress(const Refused& body) {
  const mDescription* media = body.media();
  if (media == nullptr) return {{}, body.refusal.text};
  const bool inherited = !hasConnection(media->cLine);
  const std::string address = quoted(sdp_CgetAddress(inherited ? &body.description.cLine : &media->cLine, 0));
  return {inherited ? body.lines.sessionConnectionField(kAddressField)
                    : body.lines.mediaConnectionField(body.index(), kAddressField),
          (inherited
               ? "the session's c-line, which " + body.mediaName() + " has its address from, names " + address
               : "the c-line of " + body.mediaName() + " names " + address) +
              ", which is no IP address"};
}

Problem explainLength(const Refused& body) {
  return {body.lines.offset(MAX_SDP_PROTOCOL_DATA_SIZE),
          "the body is longer than " + std::to_string(MAX_SDP_PROTOCOL_DATA_SIZE) + " characters"};
}

std::string cannotBeStored() {
  return "the text cannot be stored: it does not deflate into " + std::to_string(SDP_STORED_TEXT_SIZE) +
         " bytes";
}

}  // namespace

Problem explainDecoding(const sSdpRefusal& refusal, const BodyLines& lines) {
  std::string_view message = refusal.text;
  if (refusal.line == 0) return {{}, std::string(message)};
  constexpr std::string_view kBehindPlace = ": ";
  message.remove_prefix(std::min(message.find(kBehindPlace), message.size() - kBehindPlace.size()) +
                        kBehindPlace.size());
  const auto line = static_cast<std::size_t>(refusal.line);
  const auto column = static_cast<std::size_t>(std::max(refusal.column, 1));
  const Place place = lines.bodyPlace(line, column);
  if (mayHaveKeys(lines.textFrom(line, 1))) {
    return {place, withoutQuotation(std::string(message)) + "; it is not shown, since it may have keys"};
  }
  return {place, withQuotation(std::string(message), lines.textFrom(line, column))};
}

Problem explainRefusal(const sSdpRefusal& refusal, const sDescription& description, const BodyLines& lines) {
  const Refused body{refusal, description, lines};
  switch (refusal.reason) {
    case SDP_REFUSED_SESSION_ADDRESS_TYPE:
      return explainSessionType(body);
    case SDP_REFUSED_TOO_MANY_M_LINES:
      return explainCount(body);
    case SDP_REFUSED_INVALID_PORT:
      return explainPort(body);
    case SDP_REFUSED_INVALID_ADDRESS:
      return explainAddress(body);
    case SDP_REFUSED_TEXT_TOO_LONG:
      return explainLength(body);
    case SDP_REFUSED_NOT_STORED:
      return {lines.bodyPlace(1, 1), cannotBeStored()};
    default:
      return {{}, refusal.kind == SDP_REFUSAL_KIND_MEMORY ? "out of memory" : refusal.text};
  }
}

std::string explainRefusedRequest(const RefusalWatch& watch, unsigned short status) {
  if (!watch.sawOne()) return "status " + std::to_string(status);
  const sSdpRefusal& refusal = sdpLastRefusal();
  switch (refusal.reason) {
    case SDP_REFUSED_NOT_STORED:
      return cannotBeStored();
    case SDP_REFUSED_TOO_MANY_M_LINES:
      return "what comes of it has more than the " + std::to_string(SDP_MEDIA_CAPACITY) +
             " m-lines that are read";
    case SDP_REFUSED_NOT_DECODED:
      // The body itself has been read before.
      return "what comes of it cannot be read: " + withoutQuotation(refusal.text);
    default:
      return refusal.text;
  }
}

}  // namespace tool
