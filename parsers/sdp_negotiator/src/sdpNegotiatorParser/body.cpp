#include "body.h"

#include <cstring>

// What the steps of the analysis ask of a decoded body.

namespace sdpneg {

const cMsgIPAddress& ReadAddress::read(const char* text) {
  const bool isSame = text == text_ || (text != nullptr && text_ != nullptr && std::strcmp(text, text_) == 0);
  if (isRead_ && isSame) return address_;
  if (text != nullptr) {
    address_.setIPAddress(text);
  } else {
    address_.init();
  }
  isRead_ = true;
  text_ = text;
  return address_;
}

Body::Body(const sDescription& description, Inheritance inheritance) : description_(description) {
  const unsigned int inherited = inheritance == Inheritance::yes ? inheritedLines(description) : 0;
  if ((inherited & SDP_HAS_A_LINE) != 0) session();
  const auto media = mediaOf(description);
  count_ = media.size();
  for (std::size_t i = 0; i < count_; ++i) {
    Section& section = sections_[i];
    section.media_ = &media[i];
    section.hasPort_ = false;
    const unsigned int missing = missingLines(inherited, media[i]);
    section.attributes_ = (missing & SDP_HAS_A_LINE) != 0 ? &session_ : nullptr;
    section.connection_ = (missing & SDP_HAS_C_LINE) != 0 ? &description.cLine : &media[i].cLine;
    // A record that is filled by hand may have several bits, and is of no kind then.
    const unsigned int kind = section.kind();
    if (kind != 0 && (kind & (kind - 1)) == 0) kinds_ |= kind;
  }
}

const AttributeIndex& Body::session() {
  if (!hasSession_) session_.read(&description_.aLine);
  hasSession_ = true;
  return session_;
}

std::size_t Body::attributeLines() {
  std::size_t count = session().lines().size();
  for (Section& section : sections()) {
    if (section.attributes_ != &session_) count += section.attributes().lines().size();
  }
  return count;
}

}  // namespace sdpneg
