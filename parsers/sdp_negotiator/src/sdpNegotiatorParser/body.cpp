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

const HeldLines& Body::lines() {
  if (hasLines_) return lines_;
  hasLines_ = true;
  lines_ = {session().lines().size(), session().kinds()};
  for (Section& section : sections()) {
    if (section.attributes_ == &session_) continue;
    const AttributeIndex& attributes = section.attributes();
    lines_.count += attributes.lines().size();
    lines_.kinds.add(attributes.kinds());
  }
  return lines_;
}

}  // namespace sdpneg
