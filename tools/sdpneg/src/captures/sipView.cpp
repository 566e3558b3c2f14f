#include "captures/sipView.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "input/sipMessage.h"
#include "text/lines.h"

namespace tool {
namespace {

using sdpneg::equalNoCase;

/// Compact forms as IANA lists them.
constexpr std::array<std::pair<char, std::string_view>, 20> kCompactForms = {{
    {'a', "Accept-Contact"},
    {'b', "Referred-By"},
    {'c', "Content-Type"},
    {'d', "Request-Disposition"},
    {'e', "Content-Encoding"},
    {'f', "From"},
    {'i', "Call-ID"},
    {'j', "Reject-Contact"},
    {'k', "Supported"},
    {'l', "Content-Length"},
    {'m', "Contact"},
    {'n', "Identity-Info"},
    {'o', "Event"},
    {'r', "Refer-To"},
    {'s', "Subject"},
    {'t', "To"},
    {'u', "Allow-Events"},
    {'v', "Via"},
    {'x', "Session-Expires"},
    {'y', "Identity"},
}};

constexpr std::size_t kUsualFields = 24;

/// Whether a name of as many characters is this one, which it mostly is in the same case.
template <std::size_t Size>
bool isName(std::string_view name, const char (&longForm)[Size]) {
  return std::memcmp(name.data(), longForm, Size - 1) == 0 || equalNoCase(name, longForm);
}

/// What a name is in its long or compact form; nothing for any other name.
std::optional<KnownField> knownField(std::string_view name) {
  const auto either = [&](KnownField field, const auto& longForm) {
    return isName(name, longForm) ? std::optional(field) : std::nullopt;
  };
  const char first = name.empty() ? '\0' : sdpneg::lower(name.front());
  switch (name.size()) {
    case 1:
      switch (first) {
        case 'c':
          return KnownField::contentType;
        case 'e':
          return KnownField::contentEncoding;
        case 'f':
          return KnownField::from;
        case 'i':
          return KnownField::callId;
        case 'l':
          return KnownField::contentLength;
        case 't':
          return KnownField::to;
        case 'v':
          return KnownField::via;
        default:
          return std::nullopt;
      }
    case 2:
      return either(KnownField::to, "To");
    case 3:
      return either(KnownField::via, "Via");
    case 4:
      if (first == 'c') return either(KnownField::cseq, "CSeq");
      if (first == 'f') return either(KnownField::from, "From");
      return sdpneg::lower(name[1]) == 'a' ? either(KnownField::rack, "RAck")
                                           : either(KnownField::rseq, "RSeq");
    case 7:
      return either(KnownField::callId, "Call-ID");
    case 12:
      return either(KnownField::contentType, "Content-Type");
    case 14:
      return either(KnownField::contentLength, "Content-Length");
    case 16:
      return either(KnownField::contentEncoding, "Content-Encoding");
    default:
      return std::nullopt;
  }
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isFoldCharacter(char c) { return isBlank(c) || c == '\r' || c == '\n'; }

/// Behind the LF of the line at a place. Header lines are long enough to be worth a call.
const char* behindLine(const char* at, const char* end) {
  const void* const lf = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
  return lf == nullptr ? end : static_cast<const char*>(lf) + 1;
}

/// Of a line that has a character at least.
bool isEmptyLine(const char* begin, const char* end) {
  if (*begin != '\r' && *begin != '\n') return false;
  return end - begin == 1 || (end - begin == 2 && *begin == '\r' && begin[1] == '\n');
}

inline std::string_view trimmed(const char* begin, const char* end) {
  while (begin != end && isFoldCharacter(*begin)) ++begin;
  while (begin != end && isFoldCharacter(end[-1])) --end;
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

HeaderLines::HeaderLines(std::string_view text) : text_(text), at_(sdpneg::lineAt(text, 0).next()) {}

std::optional<HeaderLines::Field> HeaderLines::next() {
  const char* const textEnd = text_.data() + text_.size();
  const char* at = text_.data() + at_;
  while (!atEnd_ && at != textEnd) {
    const char* const begin = at;
    at = behindLine(at, textEnd);
    atEnd_ = isEmptyLine(begin, at);
    if (atEnd_) break;
    while (at != textEnd && isBlank(*at)) at = behindLine(at, textEnd);
    // Names are short.
    const char* colon = begin;
    while (colon != at && *colon != ':') ++colon;
    if (colon == at) continue;
    at_ = static_cast<std::size_t>(at - text_.data());
    return Field{trimmed(begin, colon), trimmed(colon + 1, at)};
  }
  atEnd_ = true;
  at_ = static_cast<std::size_t>(at - text_.data());
  return std::nullopt;
}

bool isHeaderName(std::string_view field, std::string_view name) {
  if (field.size() != 1) return equalNoCase(field, name);
  for (const auto& [compact, longForm] : kCompactForms) {
    if (compact == sdpneg::lower(field.front())) return equalNoCase(longForm, name);
  }
  return false;
}

std::string unfolded(std::string_view value) {
  if (value.find('\n') == std::string_view::npos && value.find('\r') == std::string_view::npos)
    return std::string(value);
  std::string result;
  result.reserve(value.size());
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (value[at] != '\r' && value[at] != '\n') {
      result += value[at];
      continue;
    }
    while (!result.empty() && isBlank(result.back())) result.pop_back();
    while (at + 1 < value.size() && isFoldCharacter(value[at + 1])) ++at;
    result += ' ';
  }
  return result;
}

std::optional<std::size_t> parseContentLength(std::string_view value) {
  if (value.empty() || !std::all_of(value.begin(), value.end(), sdpneg::isDigit)) return std::nullopt;
  return sdpneg::leadingNumber<std::size_t>(value)->value;
}

void SipView::read(std::string_view text) {
  text_ = text;
  startLine_ = sdpneg::content(text, sdpneg::lineAt(text, 0));
  kind_ = startLineOf(startLine_);
  fields_.clear();
  fields_.reserve(kUsualFields);
  known_.fill(0);
  HeaderLines lines(text);
  while (const auto field = lines.next()) {
    fields_.push_back(*field);
    if (const auto known = knownField(field->name)) {
      std::size_t& place = known_[static_cast<std::size_t>(*known)];
      if (place == 0) place = fields_.size();
    }
  }
  bodyBegin_ = lines.bodyBegin();
}

std::string_view SipView::method() const {
  return kind_ == StartLine::request ? startLine_.substr(0, startLine_.find(' ')) : std::string_view();
}

std::string_view SipView::requestUri() const {
  if (kind_ != StartLine::request) return {};
  const std::size_t begin = startLine_.find(' ') + 1;
  return startLine_.substr(begin, startLine_.rfind(' ') - begin);
}

int SipView::status() const {
  if (kind_ != StartLine::response) return 0;
  return sdpneg::numberOrZero<int>(startLine_.substr(startLine_.find(' ') + 1, 3));
}

std::optional<std::string_view> SipView::value(std::string_view name) const {
  for (const HeaderLines::Field& field : fields_) {
    if (isHeaderName(field.name, name)) return field.value;
  }
  return std::nullopt;
}

std::vector<std::string_view> SipView::values(std::string_view name) const {
  std::vector<std::string_view> found;
  for (const HeaderLines::Field& field : fields_) {
    if (isHeaderName(field.name, name)) found.push_back(field.value);
  }
  return found;
}

std::string_view SipView::body() const {
  const std::string_view behind = text_.substr(bodyBegin_);
  const std::optional<std::size_t> length = parseContentLength(value(KnownField::contentLength).value_or(""));
  return length ? behind.substr(0, *length) : behind;
}

std::optional<std::string_view> SipView::sdp() const {
  const std::string_view all = body();
  const std::optional<std::string_view> type = value(KnownField::contentType);
  if (all.empty() || !type) return std::nullopt;
  if (equalNoCase(*type, "application/sdp") && !value(KnownField::contentEncoding)) return all;
  const BodyRange found = findSdpBody(text_);
  if (found.problem) return std::nullopt;
  return found.range.of(text_);
}

}  // namespace tool
