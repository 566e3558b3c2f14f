#include "body.h"

#include <cstring>

// What the steps of the analysis ask of a decoded body.

namespace sdpneg {
namespace {

/// Whether a transport is RTP/AVP as most are written.
bool isPlainTransport(const char (&transport)[SDP_TRANSPORT_SIZE]) {
  static constexpr char kPlain[] = "RTP/AVP";
  return std::memcmp(transport, kPlain, sizeof kPlain) == 0;
}

}  // namespace

const cMsgIPAddress& ReadAddress::readAnother(const char* text) {
  const bool isSame = isRead_ && text != nullptr && text_ != nullptr && std::strcmp(text, text_) == 0;
  text_ = text;
  if (isSame) return address_;
  if (text != nullptr) {
    address_.setIPAddress(text);
  } else {
    address_.init();
  }
  isRead_ = true;
  return address_;
}

Body::Body(const sDescription& description, BodyReading reading) : description_(description) {
  const auto media = mediaOf(description);
  count_ = media.size();
  lines_ = {0, KindSet::none()};
  const unsigned int inherited = reading == BodyReading::whole ? inheritedLines(description) : 0;
  for (std::size_t i = 0; i < count_; ++i) {
    Section& section = sections_[i];
    section.media_ = &media.data()[i];
    const unsigned int missing = missingLines(inherited, *section.media_);
    section.attributes_ = (missing & SDP_HAS_A_LINE) != 0 ? &session_ : nullptr;
    section.connection_ = (missing & SDP_HAS_C_LINE) != 0 ? &description.cLine : &section.media_->cLine;
    section.hasPort_ = false;
    // A record that is filled by hand may have several bits, and is of no kind then.
    const unsigned int kind = section.kind();
    kinds_ |= (kind & (kind - 1)) == 0 ? kind : 0;
  }
  if (reading == BodyReading::whole) readWhole();
}

void Body::readWhole() {
  addLines(session());
  unsigned int otherTransport = 0;
  unsigned int otherConnection = 0;
  unsigned int inUse = 0;
  for (Section& section : sections()) {
    inUse |= static_cast<unsigned int>(section.port() != 0);
    otherTransport |= static_cast<unsigned int>(!isPlainTransport(section.media_->mLine.transport));
    otherConnection |= static_cast<unsigned int>(section.connection_ != sections_[0].connection_);
    if (section.attributes_ == nullptr) addLines(section.attributes());
  }
  otherTransport_ = otherTransport != 0;
  oneConnection_ = otherConnection == 0;
  inUse_ = inUse != 0;
  hasLines_ = true;
}

void Body::readSession() {
  session_.read(&description_.aLine);
  hasSession_ = true;
}

void Body::readLines() {
  addLines(session());
  for (Section& section : sections()) {
    if (section.attributes_ != &session_) addLines(section.attributes());
  }
  hasLines_ = true;
}

}  // namespace sdpneg
