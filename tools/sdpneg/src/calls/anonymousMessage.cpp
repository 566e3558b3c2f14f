#include "calls/anonymousMessage.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

#include "calls/anonymousHeader.h"
#include "calls/anonymousSdp.h"
#include "calls/anonymousUri.h"
#include "captures/sipStart.h"
#include "captures/sipView.h"
#include "input/multipart.h"
#include "text/lines.h"

namespace tool {
namespace {

constexpr int kDeepestMultipart = 8;

/// What a header says of its body.
struct BodyFacts {
  struct Length {
    std::size_t begin;  ///< of its digits in what is written
    std::size_t size;
    std::size_t value;
  };
  std::vector<Length> lengths;
  std::optional<std::size_t> length;  ///< of the first Content-Length, if it is one
  bool hasLength = false;
  std::optional<std::string> type;  ///< with its parameters
  bool isEncoded = false;
};

bool isPlain(std::string_view encoding) {
  constexpr std::string_view kPlain[] = {"identity", "7bit", "8bit", "binary"};
  return std::ranges::any_of(kPlain,
                             [&](std::string_view one) { return sdpneg::equalNoCase(one, encoding); });
}

void takeField(BodyFacts& facts, const HeaderLines::Field& field) {
  if (isHeaderName(field.name, "Content-Type") && !facts.type) facts.type = unfolded(field.value);
  if (isHeaderName(field.name, "Content-Encoding") || isHeaderName(field.name, "Content-Transfer-Encoding")) {
    facts.isEncoded = facts.isEncoded || !isPlain(field.value);
  }
}

/// Writes the value of a Content-Length, and where it was written.
bool writeLength(BodyFacts& facts, const HeaderLines::Field& field, std::string& out) {
  if (!isHeaderName(field.name, "Content-Length")) return false;
  const std::optional<std::size_t> value = parseContentLength(field.value);
  if (!facts.hasLength) facts.length = value;
  facts.hasLength = true;
  if (!value) return false;
  facts.lengths.push_back({out.size(), field.value.size(), *value});
  out += field.value;
  return true;
}

/// Writes a header behind the first line of a text.
/// @return where the body begins in the text
std::size_t writeHeader(Replacements& replacements, std::string_view text, BodyFacts& facts,
                        std::string& out) {
  std::size_t at = sdpneg::lineAt(text, 0).next();
  const auto writeUpTo = [&](const char* end) {
    const auto to = static_cast<std::size_t>(end - text.data());
    writeOpen(replacements, text.substr(at, to - at), out);
    at = to;
  };
  HeaderLines lines(text);
  while (const std::optional<HeaderLines::Field> field = lines.next()) {
    writeUpTo(field->name.data());
    writeText(replacements, field->name, Care::protocol, out);
    at += field->name.size();
    writeUpTo(field->value.data());
    takeField(facts, *field);
    if (!writeLength(facts, *field, out)) writeHeaderValue(replacements, field->name, field->value, out);
    at += field->value.size();
  }
  writeUpTo(text.data() + lines.bodyBegin());
  return lines.bodyBegin();
}

/// The length that is said of a body that has `after` bytes, where `said` was of one of `before`: right or wrong by as much.
std::size_t lengthOf(std::size_t said, std::size_t before, std::size_t after) {
  if (said < before) return after - std::min(after, before - said);
  return after + std::min(said - before, std::numeric_limits<std::size_t>::max() - after);
}

/// Says the length of a body where another one was said before.
void correctLengths(const BodyFacts& facts, std::size_t before, std::size_t after, std::string& out) {
  if (facts.lengths.empty()) return;
  const std::size_t first = facts.lengths.front().begin;
  std::string corrected;
  std::size_t at = first;
  for (const BodyFacts::Length& length : facts.lengths) {
    corrected.append(out, at, length.begin - at);
    const std::size_t value = lengthOf(length.value, before, after);
    at = length.begin + length.size;
    if (value == length.value) {
      corrected.append(out, length.begin, length.size);
    } else {
      corrected += std::to_string(value);
    }
  }
  corrected.append(out, at);
  out.replace(first, std::string::npos, corrected);
}

void writeStartLine(Replacements& replacements, std::string_view line, std::string& out) {
  const StartLine kind = startLineOf(line);
  const std::size_t first = line.find(' ');
  if (kind == StartLine::request) {
    const std::size_t last = line.rfind(' ');
    writeText(replacements, line.substr(0, first + 1), Care::protocol, out);
    writeUri(replacements, line.substr(first + 1, last - first - 1), out);
    writeText(replacements, line.substr(last), Care::protocol, out);
  } else if (kind == StartLine::response) {
    const std::size_t reason = std::min(line.find(' ', first + 1), line.size());
    out += line.substr(0, reason);
    writeOpen(replacements, line.substr(reason), out);
  } else {
    writeOpen(replacements, line, out);
  }
}

/// Writes what a body is: of SDP, nothing yet, or bytes.
template <typename WriteInner>
void writeSized(Replacements& replacements, std::string_view text, BodyFacts& facts, std::string& out,
                const WriteInner& writeInner) {
  const std::size_t bodyBegin = writeHeader(replacements, text, facts, out);
  const std::string_view behind = text.substr(bodyBegin);
  const std::string_view body = behind.substr(0, facts.length.value_or(behind.size()));
  const std::size_t written = out.size();
  writeInner(facts, body, out);
  const std::size_t size = out.size() - written;
  writeHidden(behind.substr(body.size()), out);
  correctLengths(facts, body.size(), size, out);
}

enum class BodyKind { sdp, fragment, multipart, other };

BodyKind kindOf(const BodyFacts& facts, std::string_view body) {
  if (facts.isEncoded) return BodyKind::other;
  if (!facts.type) return body.starts_with("v=0") ? BodyKind::sdp : BodyKind::other;
  const std::string_view type = valueWithoutParameters(*facts.type);
  if (sdpneg::equalNoCase(type, "application/sdp")) return BodyKind::sdp;
  if (sdpneg::equalNoCase(type, "message/sipfrag") || sdpneg::equalNoCase(type, "message/sip")) {
    return BodyKind::fragment;
  }
  return sdpneg::startsWithNoCase(type, "multipart/") ? BodyKind::multipart : BodyKind::other;
}

void writeSdpOrHidden(Replacements& replacements, const BodyFacts& facts, std::string_view body,
                      std::string& out) {
  if (kindOf(facts, body) == BodyKind::sdp) {
    writeSdp(replacements, body, out);
  } else {
    writeHidden(body, out);
  }
}

/// A piece of a SIP message (RFC 3420), which may begin with a header.
void writeFragment(Replacements& replacements, std::string_view body, std::string& out) {
  const sdpneg::Line first = sdpneg::lineAt(body, 0);
  const bool hasStartLine = startLineOf(sdpneg::content(body, first)) != StartLine::none;
  // The header is written behind a first line.
  const std::string text = hasStartLine ? std::string(body) : "\n" + std::string(body);
  if (hasStartLine) {
    const std::string_view line = sdpneg::content(body, first);
    writeStartLine(replacements, line, out);
    out += body.substr(line.size(), first.next() - line.size());
  }
  BodyFacts facts;
  writeSized(replacements, text, facts, out,
             [&](const BodyFacts& inner, std::string_view bytes, std::string& to) {
               writeSdpOrHidden(replacements, inner, bytes, to);
             });
}

/// What stands between parts: the lines of the boundary, and text that nobody reads.
void writeBetweenParts(Replacements& replacements, std::string_view text, std::string_view boundary,
                       std::string& out) {
  for (std::size_t at = 0; at < text.size();) {
    const auto [line, next] = headerLineAt(text, at, text.size());
    if (line.starts_with("--") && line.substr(2).starts_with(boundary)) {
      out += "--";
      writeText(replacements, boundary, Care::protocol, out);
      writeText(replacements, line.substr(2 + boundary.size()), Care::open, out);
    } else {
      writeHidden(line, out);
    }
    out += text.substr(at + line.size(), next - at - line.size());
    at = next;
  }
}

/// Writes a body by its type. How deep bodies hold bodies is bounded when this is compiled.
template <int Depth>
void writeBody(Replacements& replacements, const BodyFacts& facts, std::string_view body, std::string& out) {
  const BodyKind kind = kindOf(facts, body);
  if (kind == BodyKind::fragment) return writeFragment(replacements, body, out);
  if constexpr (Depth > 0) {
    const std::optional<std::string> boundary =
        kind == BodyKind::multipart ? findParameter(*facts.type, "boundary") : std::nullopt;
    if (boundary && !boundary->empty()) {
      std::size_t at = 0;
      Parts parts(body, {0, body.size()}, *boundary);
      while (const std::optional<Part> part = parts.next()) {
        // The header is written behind the line that ends in front of it.
        const std::size_t lineEnd = part->begin - 1;
        writeBetweenParts(replacements, body.substr(at, part->begin - at), *boundary, out);
        BodyFacts inner;
        const std::string_view whole = body.substr(lineEnd, part->body.end - lineEnd);
        writeSized(replacements, whole, inner, out,
                   [&](const BodyFacts& partFacts, std::string_view bytes, std::string& to) {
                     writeBody<Depth - 1>(replacements, partFacts, bytes, to);
                   });
        at = part->body.end;
      }
      return writeBetweenParts(replacements, body.substr(at), *boundary, out);
    }
  }
  writeSdpOrHidden(replacements, facts, body, out);
}

}  // namespace

void writeMessage(Replacements& replacements, std::string_view message, std::string& out) {
  const sdpneg::Line first = sdpneg::lineAt(message, 0);
  const std::string_view line = sdpneg::content(message, first);
  writeStartLine(replacements, line, out);
  out += message.substr(line.size(), first.next() - line.size());
  BodyFacts facts;
  writeSized(replacements, message, facts, out,
             [&](const BodyFacts& inner, std::string_view body, std::string& to) {
               writeBody<kDeepestMultipart>(replacements, inner, body, to);
             });
}

}  // namespace tool
