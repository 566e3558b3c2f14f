#include "input/sipMessage.h"

#include <algorithm>
#include <string>

#include "input/multipart.h"
#include "text/search.h"

namespace tool {
namespace {

using sdpneg::equalNoCase;
using sdpneg::startsWithNoCase;

constexpr int kDeepestMultipart = 8;
constexpr std::string_view kContentLength = "Content-Length";
constexpr std::string_view kCompactLength = "l";

std::size_t startLineBegin(std::string_view text) {
  return std::min(text.find_first_not_of("\r\n"), text.size());
}

BodyRange noBody(std::string_view text, std::size_t offset, std::string reason) {
  return {{offset, offset}, {}, Problem{placeOf(text, offset), std::move(reason)}, {}};
}

/// Whether the value of a Content-Length field is one (RFC 3261 20.14).
bool isLength(std::string_view value) {
  value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));  // of a folded field
  return !value.empty() && std::all_of(value.begin(), value.end(), sdpneg::isDigit);
}

/// Cuts a body at its Content-Length. A larger one than there are bytes is what a file has whose line ends
/// became shorter when it was saved.
void applyContentLength(std::string_view text, const Header& header, BodyRange& body) {
  const HeaderField* field = findField(header, kContentLength, kCompactLength);
  if (field == nullptr) return;
  if (!isLength(field->value)) {
    body.notes.push_back({placeOf(text, field->offset), "Content-Length is \"" + field->value +
                                                            "\", which is no length, and does not matter"});
    return;
  }
  const auto given = sdpneg::leadingNumber<std::size_t>(field->value);
  const std::size_t there = body.range.end - body.range.begin;
  if (!given || given->value == there) return;
  const bool longer = given->value > there;
  body.range.end = body.range.begin + std::min(given->value, there);
  const std::string_view behind = text.substr(body.range.end);
  if (!longer && behind.find_first_not_of("\r\n \t") == std::string_view::npos) return;
  body.notes.push_back({placeOf(text, field->offset), "Content-Length is " + std::to_string(given->value) +
                                                          ", but " + std::to_string(there) +
                                                          " bytes follow the header" +
                                                          (longer ? "" : "; those behind it are not read")});
}

/// The digits of a Content-Length field; nothing when its value does not begin with a number.
std::optional<Range> lengthDigits(std::string_view text, const HeaderField& field) {
  if (!sdpneg::leadingNumber<std::size_t>(field.value)) return std::nullopt;
  const std::size_t begin = text.find_first_of("0123456789", text.find(':', field.offset));
  std::size_t end = begin;
  while (end < text.size() && sdpneg::isDigit(text[end])) ++end;
  return Range{begin, end};
}

Enclosing enclosing(std::string_view text, const Header& header, Range body) {
  Enclosing result{body, {}};
  for (const HeaderField& field : header.fields) {
    if (!equalNoCase(field.name, kContentLength) && !equalNoCase(field.name, kCompactLength)) continue;
    if (const auto digits = lengthDigits(text, field)) result.lengths.push_back(*digits);
  }
  return result;
}

/// The type of a body or part; without a field that says otherwise, of what one is looking for.
std::string_view typeOf(const HeaderField* contentType) {
  return contentType == nullptr ? "application/sdp" : valueWithoutParameters(contentType->value);
}

bool isPlain(std::string_view encoding) {
  return equalNoCase(encoding, "7bit") || equalNoCase(encoding, "8bit") || equalNoCase(encoding, "binary") ||
         equalNoCase(encoding, "identity");
}

/// A body or part whose bytes are not the text itself.
std::optional<Problem> encodingProblem(std::string_view text, const Header& header) {
  const HeaderField* content = findField(header, "Content-Encoding", "e");
  const HeaderField* field = content != nullptr ? content : findField(header, "Content-Transfer-Encoding");
  if (field == nullptr || isPlain(field->value)) return std::nullopt;
  return Problem{placeOf(text, field->offset),
                 "the body is encoded as \"" + field->value + "\", which is not read"};
}

/// Goes from a message's body down to the part that is SDP.
BodyRange descend(std::string_view text, const Header& header, BodyRange body) {
  Header current = header;
  for (int depth = 0;; ++depth) {
    body.around.push_back(enclosing(text, current, body.range));
    const HeaderField* contentType = findField(current, "Content-Type", "c");
    const std::string_view type = typeOf(contentType);
    const bool isSdp = equalNoCase(type, "application/sdp");
    const std::size_t place = contentType != nullptr ? contentType->offset : body.range.begin;
    if (!isSdp && !startsWithNoCase(type, "multipart/")) {
      return noBody(text, place, "the body is \"" + std::string(type) + "\", not application/sdp");
    }
    body.problem = encodingProblem(text, current);
    if (isSdp || body.problem) return body;
    if (depth == kDeepestMultipart) return noBody(text, place, "multipart bodies are nested too deep");
    const std::optional<std::string> boundary = findParameter(contentType->value, "boundary");
    if (!boundary || boundary->empty()) return noBody(text, place, "the multipart body has no boundary");
    std::optional<Part> part = findSdpPart(text, body.range, *boundary);
    if (!part) return noBody(text, place, "the multipart body has no part application/sdp");
    current = std::move(part->header);
    body.range = part->body;
  }
}

}  // namespace

bool isSipMessage(std::string_view text) {
  const std::size_t begin = startLineBegin(text);
  sdpneg::Words words(headerLineAt(text, begin, text.size()).text, " ");
  const std::string_view first = words.next();
  if (startsWithNoCase(first, "SIP/")) return true;
  words.next();
  return startsWithNoCase(words.next(), "SIP/") && words.next().empty();
}

BodyRange findSdpBody(std::string_view text) {
  BodyRange body{{0, text.size()}, {}, std::nullopt, {}};
  if (!isSipMessage(text)) return body;
  const std::size_t headerBegin = headerLineAt(text, startLineBegin(text), text.size()).next;
  const Header header = readHeader(text, {headerBegin, text.size()});
  body.range.begin = header.bodyBegin.value_or(text.size());
  applyContentLength(text, header, body);
  if (body.range.begin == body.range.end)
    return noBody(text, body.range.begin, "the SIP message has no body");
  return descend(text, header, std::move(body));
}

}  // namespace tool
