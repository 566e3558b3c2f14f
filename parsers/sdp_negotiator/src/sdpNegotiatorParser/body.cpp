#include "body.h"

#include <cstring>

#include "namePattern.h"

// What the steps of the analysis ask of a decoded body.

namespace sdpneg {
namespace {

/// The transport of most media.
constexpr NamePattern kPlainName(kPlainTransport, NameTest::whole);

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
  const bool isWhole = reading == BodyReading::whole;
  lines_ = {0, KindSet::none()};
  if (isWhole) addLines(session());
  const auto media = mediaOf(description);
  const unsigned int inherited = isWhole ? inheritedLines(description) : 0;
  unsigned int otherTransport = isWhole ? 0 : 1;
  unsigned int otherConnection = isWhole ? 0 : 1;
  unsigned int inUse = 0;
  count_ = media.size();
  for (std::size_t i = 0; i < count_; ++i) {
    Section& section = sections_[i];
    section.look(media.data()[i], inherited, *this);
    // A record that is filled by hand may have several bits, and is of no kind then.
    const unsigned int kind = section.kind();
    kinds_ |= (kind & (kind - 1)) == 0 ? kind : 0;
    if (!isWhole) continue;
    inUse |= static_cast<unsigned int>(section.port() != 0);
    otherTransport |= static_cast<unsigned int>(!kPlainName.matchesAt(section.media_->mLine.transport));
    otherConnection |= static_cast<unsigned int>(section.connection_ != sections_[0].connection_);
    if (section.attributes_ == nullptr) addLines(section.attributes());
  }
  otherTransport_ = otherTransport != 0;
  oneConnection_ = otherConnection == 0;
  inUse_ = inUse != 0;
  hasLines_ = isWhole;
}

void Section::look(const mDescription& media, unsigned int inherited, const Body& body) {
  const unsigned int missing = missingLines(inherited, media);
  media_ = &media;
  attributes_ = (missing & SDP_HAS_A_LINE) != 0 ? &body.session_ : nullptr;
  connection_ = (missing & SDP_HAS_C_LINE) != 0 ? &body.description_.cLine : &media.cLine;
  hasPort_ = false;
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
