#include "body.h"

#include <cstring>

// What the steps of the analysis ask of a decoded body.

namespace sdpneg {

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
  const unsigned int inherited = isWhole ? inheritedLines(description) : 0;
  if (isWhole) readSession();
  lines_ = {0, KindSet::none()};
  const auto media = mediaOf(description);
  count_ = media.size();
  for (std::size_t i = 0; i < count_; ++i) {
    Section& section = sections_[i];
    section.media_ = &media.data()[i];
    const unsigned int missing = missingLines(inherited, *section.media_);
    section.attributes_ = (missing & SDP_HAS_A_LINE) != 0 ? &session_ : nullptr;
    section.connection_ = (missing & SDP_HAS_C_LINE) != 0 ? &description.cLine : &section.media_->cLine;
    section.hasPort_ = isWhole;
    if (isWhole) {
      section.port_ = portOf(*section.media_);
      if (section.attributes_ == nullptr) addLines(section.attributes());
    }
    // A record that is filled by hand may have several bits, and is of no kind then.
    const unsigned int kind = section.kind();
    kinds_ |= (kind & (kind - 1)) == 0 ? kind : 0;
  }
  if (isWhole) addLines(session_);
  hasLines_ = isWhole;
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
