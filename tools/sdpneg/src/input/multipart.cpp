#include "input/multipart.h"

#include <utility>

#include "text/search.h"

namespace tool {
namespace {

enum class Delimiter { none, next, last };

Delimiter delimiterOf(std::string_view line, std::string_view boundary) {
  if (!sdpneg::startsWith(line, "--") || !sdpneg::startsWith(line.substr(2), boundary))
    return Delimiter::none;
  line.remove_prefix(2 + boundary.size());
  const bool last = sdpneg::startsWith(line, "--");
  if (last) line.remove_prefix(2);
  if (line.find_first_not_of(" \t") != std::string_view::npos) return Delimiter::none;
  return last ? Delimiter::last : Delimiter::next;
}

/// The line end in front of a boundary belongs to it. SDP lines all have one, so where the text before it
/// ends in none of its own, it is the text's.
std::size_t withoutDelimiterLineEnd(std::string_view text, Range body) {
  std::size_t end = body.end;
  if (end > body.begin && text[end - 1] == '\n') --end;
  if (end < body.end && end > body.begin && text[end - 1] == '\r') --end;
  return end > body.begin && text[end - 1] == '\n' ? end : body.end;
}

bool isOfType(const Part& part, std::string_view type) {
  const HeaderField* field = findField(part.header, "Content-Type", "c");
  return field != nullptr && sdpneg::startsWithNoCase(valueWithoutParameters(field->value), type);
}

}  // namespace

std::optional<Part> Parts::next() {
  if (!more_) return std::nullopt;
  const std::size_t begin = at_;
  Range range{begin, skipToDelimiter()};
  Part part{begin, readHeader(text_, range), {}};
  part.body = {part.header.bodyBegin.value_or(range.end), range.end};
  part.body.end = withoutDelimiterLineEnd(text_, part.body);
  return part;
}

std::size_t Parts::skipToDelimiter() {
  while (at_ < end_) {
    const auto [line, next] = headerLineAt(text_, at_, end_);
    const Delimiter delimiter = delimiterOf(line, boundary_);
    const std::size_t begin = std::exchange(at_, next);
    if (delimiter == Delimiter::none) continue;
    more_ = delimiter == Delimiter::next;
    return begin;
  }
  more_ = false;
  return end_;
}

std::optional<Part> findSdpPart(std::string_view text, Range multipart, std::string_view boundary) {
  std::optional<Part> nested;
  Parts parts(text, multipart, boundary);
  while (std::optional<Part> part = parts.next()) {
    if (isOfType(*part, "application/sdp")) return part;
    if (!nested && isOfType(*part, "multipart/")) nested = std::move(part);
  }
  return nested;
}

}  // namespace tool
