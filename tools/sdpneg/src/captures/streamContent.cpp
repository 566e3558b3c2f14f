#include "captures/streamContent.h"

#include <algorithm>
#include <optional>

#include "captures/hep.h"
#include "captures/sipStart.h"
#include "captures/sipView.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::size_t kMaxHeaderSize = std::size_t{128} * 1024;
constexpr std::size_t kMaxHttpHead = std::size_t{16} * 1024;
constexpr std::size_t kUsualBuffer = 4096;

bool isHttp(std::string_view bytes) {
  return sdpneg::startsWith(bytes, "GET ") || sdpneg::startsWith(bytes, "HTTP/1.1 ");
}

/// Whether a record of TLS stands there (RFC 8446 5.1).
bool isTls(std::string_view bytes) {
  return bytes.size() >= 3 && bytes[0] >= 0x14 && bytes[0] <= 0x17 && bytes[1] == 3 && bytes[2] >= 0 &&
         bytes[2] <= 4;
}

/// Whether a head asks for WebSocket or agrees to it (RFC 6455 4).
bool isWebSocketUpgrade(std::string_view head) {
  HeaderLines lines(head);
  while (const auto field = lines.next()) {
    if (sdpneg::equalNoCase(field->name, "Upgrade")) return sdpneg::equalNoCase(field->value, "websocket");
  }
  return false;
}

std::optional<std::size_t> bodyLength(std::string_view head) {
  HeaderLines lines(head);
  while (const auto field = lines.next()) {
    if (isHeaderName(field->name, "Content-Length")) return parseContentLength(field->value);
  }
  return std::nullopt;
}

}  // namespace

bool StreamContent::isBeginning(std::string_view bytes) {
  bytes.remove_prefix(std::min(bytes.find_first_not_of("\r\n"), bytes.size()));
  return beginningOf(bytes) == Beginning::whole || sdpneg::startsWith(bytes, kHepMark) || isHttp(bytes) ||
         isTls(bytes) || WebSocketReader::holdsSip(bytes);
}

void StreamContent::take(std::string_view bytes, CaptureTime time) {
  if (buffer_.empty()) {
    isAtStart_ = true;
    buffer_.assign(bytes.substr(takeSteps(bytes, time)));
    return;
  }
  buffer_.append(bytes);
  if (buffer_.size() < wanted_) return;
  buffer_.erase(0, takeSteps(buffer_, time));
  if (buffer_.empty() && buffer_.capacity() > kUsualBuffer) std::string().swap(buffer_);
}

std::size_t StreamContent::takeSteps(std::string_view bytes, CaptureTime time) {
  wanted_ = 0;
  std::size_t at = 0;
  while (at < bytes.size()) {
    const Step done = step(bytes.substr(at), time);
    at += done.size;
    if (done.needsMore) break;
    if (done.size != 0) isAtStart_ = false;
  }
  return at;
}

StreamContent::Step StreamContent::step(std::string_view bytes, CaptureTime time) {
  switch (mode_) {
    case Mode::sip:
      return stepSip(bytes, time);
    case Mode::http:
      return stepHttp(bytes);
    case Mode::webSocket:
      return stepWebSocket(bytes, time);
    case Mode::hep:
      return stepHep(bytes, time);
    case Mode::encrypted:
      break;
  }
  return {bytes.size(), false};
}

StreamContent::Step StreamContent::needMore(std::size_t wanted, std::size_t searched) {
  wanted_ = wanted;
  searched_ = searched;
  return {0, true};
}

StreamContent::Step StreamContent::stepSip(std::string_view bytes, CaptureTime time) {
  if (searched_ != 0) return stepMessage(bytes, time);
  const std::size_t lineEnds = std::min(bytes.find_first_not_of("\r\n"), bytes.size());
  if (lineEnds != 0) return {lineEnds, false};
  const Beginning beginning = beginningOf(bytes);
  if (beginning == Beginning::whole) return stepMessage(bytes, time);
  if (beginning == Beginning::partial) return needMore();
  if (isAtStart_ && startOther(bytes)) return {0, false};
  return skipToBeginning(bytes);
}

StreamContent::Step StreamContent::stepMessage(std::string_view bytes, CaptureTime time) {
  const std::size_t from = searched_ > 3 ? searched_ - 3 : 0;
  const std::size_t end = findHeaderEnd(bytes, from);
  if (end == sdpneg::npos && bytes.size() <= kMaxHeaderSize) return needMore(0, bytes.size());
  searched_ = 0;
  const std::optional<std::size_t> length = bodyLength(bytes.substr(0, end));
  if (end == sdpneg::npos || length.value_or(0) > kMaxMessageSize) {
    output_->note(CaptureTrouble::messageTooLong);
    hasUnits_ = false;  // so that what is passed over is no further trouble
    return skipToBeginning(bytes);
  }
  // Without a length, a body ends at the next message, or with what there is.
  const std::size_t size = length ? end + *length : findWholeBeginning(bytes, end);
  if (bytes.size() < size) return needMore(size, end);
  deliver(bytes.substr(0, size), time, Transport::tcp, false);
  return {size, false};
}

StreamContent::Step StreamContent::skipToBeginning(std::string_view bytes) {
  if (hasUnits_) output_->note(CaptureTrouble::streamUnreadable);
  hasUnits_ = false;
  const std::size_t lf = bytes.find('\n');
  return {lf == sdpneg::npos ? bytes.size() : findBeginning(bytes, lf + 1), false};
}

/// Goes over to what is no SIP by itself.
bool StreamContent::startOther(std::string_view bytes) {
  isAtStart_ = false;
  if (isTls(bytes)) {
    output_->note(CaptureTrouble::streamEncrypted);
    mode_ = Mode::encrypted;
  } else if (sdpneg::startsWith(bytes, kHepMark)) {
    mode_ = Mode::hep;
  } else if (isHttp(bytes)) {
    mode_ = Mode::http;
  } else if (WebSocketReader::holdsSip(bytes)) {
    mode_ = Mode::webSocket;
  }
  return mode_ != Mode::sip;
}

StreamContent::Step StreamContent::stepHttp(std::string_view bytes) {
  const std::size_t end = findHeaderEnd(bytes, searched_ > 3 ? searched_ - 3 : 0);
  if (end == sdpneg::npos && bytes.size() <= kMaxHttpHead) return needMore(0, bytes.size());
  searched_ = 0;
  const bool isUpgrade = end != sdpneg::npos && isWebSocketUpgrade(bytes.substr(0, end));
  mode_ = isUpgrade ? Mode::webSocket : Mode::sip;
  hasUnits_ = isUpgrade;
  return {end == sdpneg::npos ? 0 : end, false};
}

StreamContent::Step StreamContent::stepWebSocket(std::string_view bytes, CaptureTime time) {
  const WebSocketReader::Result frame = webSocket_.take(bytes);
  switch (frame.outcome) {
    case WebSocketReader::Outcome::needsMore:
      return needMore(frame.size);
    case WebSocketReader::Outcome::unreadable:
      output_->note(CaptureTrouble::streamUnreadable);
      hasUnits_ = false;
      webSocket_.reset();
      mode_ = Mode::sip;
      return {0, false};
    case WebSocketReader::Outcome::compressed:
      output_->note(CaptureTrouble::frameCompressed);
      break;
    case WebSocketReader::Outcome::taken:
      deliver(frame.message, time, Transport::webSocket, false);
      break;
  }
  return {frame.size, false};
}

StreamContent::Step StreamContent::stepHep(std::string_view bytes, CaptureTime time) {
  if (bytes.size() < kHepHeaderSize) return needMore(kHepHeaderSize);
  const std::optional<std::size_t> size = hepPacketSize(bytes);
  if (!size) {
    output_->note(CaptureTrouble::streamUnreadable);
    hasUnits_ = false;
    mode_ = Mode::sip;
    return {0, false};
  }
  if (bytes.size() < *size) return needMore(*size);
  takeHep(bytes.substr(0, *size), time, *output_);
  return {*size, false};
}

void StreamContent::breakOff(CaptureTime time) {
  if (mode_ == Mode::sip && beginningOf(buffer_) == Beginning::whole) {
    deliver(buffer_, time, Transport::tcp, true);
  } else if ((mode_ == Mode::webSocket || mode_ == Mode::hep) && (!buffer_.empty() || webSocket_.isOpen())) {
    output_->note(CaptureTrouble::messageCut);
  }
  std::string().swap(buffer_);
  webSocket_.reset();
  searched_ = wanted_ = 0;
  hasUnits_ = false;
  if (mode_ != Mode::encrypted) mode_ = Mode::sip;
}

void StreamContent::deliver(std::string_view text, CaptureTime time, Transport transport, bool isCut) {
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  if (beginningOf(text) != Beginning::whole) return;
  hasUnits_ = true;
  output_->deliver({0, time, transport, flow_, text, isCut});
}

}  // namespace tool
