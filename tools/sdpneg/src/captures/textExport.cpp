#include "captures/textExport.h"

#include <algorithm>
#include <utility>

#include "captures/linePrefix.h"
#include "captures/sipStart.h"
#include "captures/sipView.h"
#include "text/lines.h"

namespace tool {
namespace {

constexpr std::size_t kMaxLine = std::size_t{64} * 1024;
constexpr std::size_t kMaxContextLine = 512;

/// A line without its end; there is one line alone.
std::string_view contentOf(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r\n") == std::string_view::npos; }

bool isHeaderField(std::string_view line) {
  const std::string_view name = line.substr(0, line.find_first_of(": \t"));
  const std::size_t colon = line.find_first_not_of(" \t", name.size());
  return !name.empty() && colon != std::string_view::npos && line[colon] == ':';
}

bool isSdpLine(std::string_view line) {
  return line.size() >= 2 && line[0] >= 'a' && line[0] <= 'z' && line[1] == '=';
}

/// A text without the blank lines that it ends in.
std::string_view withoutBlankLines(std::string_view text, std::size_t from) {
  const std::size_t last = text.find_last_not_of(" \t\r\n");
  const std::size_t end = std::max(from, last == std::string_view::npos ? 0 : last + 1);
  return text.substr(0, sdpneg::lineAt(text, end).next());
}

}  // namespace

void TextExport::take(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t lf = bytes.find('\n');
    const std::string_view front = bytes.substr(0, lf == std::string_view::npos ? lf : lf + 1);
    bytes.remove_prefix(front.size());
    if (line_.empty() && lf != std::string_view::npos) {
      takeLines(front);
      continue;
    }
    line_.append(front);
    if (lf == std::string_view::npos && line_.size() < kMaxLine) return;
    const std::string line = std::move(line_);
    line_.clear();
    takeLines(line);
  }
}

void TextExport::flush() {
  const std::string line = std::move(line_);
  line_.clear();
  takeLines(line);
  if (place_ != Place::between) end(place_ == Place::header || (length_ && !isMaybeDone_));
}

void TextExport::takeLines(std::string_view line) {
  while (!line.empty()) line = takeLine(line);
}

std::string_view TextExport::takeLine(std::string_view line) {
  if (place_ != Place::between && message_.size() + line.size() > kMaxMessageSize) {
    output_->note(CaptureTrouble::messageTooLong);
    end(true);
  }
  switch (place_) {
    case Place::header:
      return takeHeaderLine(line);
    case Place::body:
      return takeBodyLine(line);
    case Place::between:
      break;
  }
  return takeOutside(line);
}

std::string_view TextExport::takeOutside(std::string_view line) {
  const std::string_view content = contentOf(line);
  if (const auto prefix = findStartLine(content)) {
    begin(line, *prefix);
  } else if (!isBlank(content)) {
    before_[linesBefore_++ % kContextLines].assign(content.substr(0, kMaxContextLine));
  }
  return {};
}

void TextExport::begin(std::string_view line, std::size_t prefix) {
  context_ = {};
  for (std::size_t i = std::min(linesBefore_, kContextLines); i > 0; --i) {
    context_.readLine(before_[(linesBefore_ - i) % kContextLines]);
  }
  linesBefore_ = 0;
  prefix_.assign(line.substr(0, prefix));
  context_.readLine(prefix_);
  message_.assign(line.substr(prefix));
  headerLines_ = 0;
  length_.reset();
  place_ = Place::header;
}

bool TextExport::hasPrefix(std::string_view line) const {
  return samePrefix(prefix_, contentOf(line)).has_value();
}

std::string_view TextExport::withoutPrefix(std::string_view line) const {
  return line.substr(samePrefix(prefix_, contentOf(line)).value_or(0));
}

/// Whether a start line stands where those of this log do, or behind a time. Anywhere else it is a part of a message.
bool TextExport::isNextMessage(std::string_view line) const {
  if (startLineOf(contentOf(withoutPrefix(line))) != StartLine::none) return true;
  const std::optional<std::size_t> prefix = findStartLine(contentOf(line));
  return prefix && findTime(line.substr(0, *prefix)).has_value();
}

std::string_view TextExport::takeHeaderLine(std::string_view line) {
  // Many a log has its prefix in front of the first line alone.
  if (headerLines_ == 0 && !hasPrefix(line) && isHeaderField(contentOf(line))) prefix_.clear();
  if (!hasPrefix(line) || isNextMessage(line)) {
    end(true);
    return line;
  }
  const std::string_view bare = withoutPrefix(line);
  message_.append(bare);
  if (contentOf(bare).empty()) {
    isExact_ = prefix_.empty() && bare == "\r\n";
    endHeader();
  } else {
    ++headerLines_;
  }
  return {};
}

/// A body has a length, or a type at least; otherwise there is none.
void TextExport::endHeader() {
  HeaderLines lines(message_);
  bool hasType = false;
  holdsMessages_ = false;
  while (const auto field = lines.next()) {
    if (isHeaderName(field->name, "Content-Length")) length_ = parseContentLength(field->value);
    if (!isHeaderName(field->name, "Content-Type")) continue;
    hasType = true;
    holdsMessages_ = sdpneg::startsWithNoCase(field->value, "message/") ||
                     sdpneg::startsWithNoCase(field->value, "multipart/");
  }
  bodyBegin_ = message_.size();
  lineEnds_ = 0;
  isMaybeDone_ = false;
  place_ = Place::body;
  if (length_ ? *length_ == 0 : !hasType) end(false);
}

std::string_view TextExport::takeBodyLine(std::string_view line) {
  const bool isOther = !hasPrefix(line) || (!holdsMessages_ && isNextMessage(line));
  if (isOther || (isMaybeDone_ && !goesOn(line))) {
    end(length_ && !isMaybeDone_);
    return line;
  }
  return length_ ? takeMeasuredLine(line) : takeOpenLine(line);
}

/// Whether a body that may be whole has a further line, since the message's lines ended in LF alone.
bool TextExport::goesOn(std::string_view line) const {
  const std::string_view body = std::string_view(message_).substr(bodyBegin_);
  return sdpneg::startsWith(body, "v=") && isSdpLine(withoutPrefix(line));
}

/// A log may have taken CR out of the lines that Content-Length counts, so the length is looked for both ways, and
/// the last line may have gained an end.
std::string_view TextExport::takeMeasuredLine(std::string_view line) {
  const std::size_t missing = *length_ - (message_.size() - bodyBegin_);
  if (isExact_) {
    message_.append(line.substr(0, missing));
    if (line.size() < missing) return {};
    end(false);
    return line.substr(missing);
  }
  const std::string_view bare = withoutPrefix(line);
  const std::size_t lineEnd = bare.size() - contentOf(bare).size();
  message_.append(bare);
  lineEnds_ += lineEnd == 1 ? 1 : 0;
  const std::size_t size = message_.size() - bodyBegin_;
  const std::size_t onWire = size + lineEnds_;
  const std::size_t lastEnd = lineEnd == 0 ? 0 : 2;
  isMaybeDone_ = isMaybeDone_ || onWire == *length_ || onWire - lastEnd == *length_;
  const bool isDone = size - lineEnd >= *length_ || size == *length_;
  if (isDone) end(false);
  return {};
}

/// Without a length, SDP ends at an empty line, and anything else where something else begins.
std::string_view TextExport::takeOpenLine(std::string_view line) {
  const std::string_view bare = withoutPrefix(line);
  const bool isSdp = sdpneg::startsWith(std::string_view(message_).substr(bodyBegin_), "v=");
  if ((isSdp && isBlank(bare)) || hasArrow(contentOf(line))) {
    end(false);
    return isBlank(bare) ? std::string_view() : line;
  }
  message_.append(bare);
  return {};
}

/// Delivers what has been read, if there is a header to the start line.
void TextExport::end(bool isCut) {
  place_ = Place::between;
  const bool isOpenBody = bodyBegin_ != 0 && !length_;
  const std::string_view text = isOpenBody ? withoutBlankLines(message_, bodyBegin_) : message_;
  if (headerLines_ != 0) output_->deliver({0, context_.time, context_.transport, context_.flow, text, isCut});
  message_.clear();
  headerLines_ = bodyBegin_ = 0;
}

}  // namespace tool
