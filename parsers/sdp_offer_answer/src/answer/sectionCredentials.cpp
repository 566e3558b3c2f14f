// Writing accepted sections: keys and ICE, also those that come from the session or the group.

#include "answer/iceAttributes.h"
#include "answer/sectionWriter.h"

namespace sdp::exchange {

/// One transport has one role, so that a new section of a group takes that of the others.
void SectionWriter::writeSetup() {
  const std::uint32_t index = section_.offered.index();
  std::string_view previous = context_.previousRole(index);
  if (previous.empty() && section_.group) previous = context_.groupRoles[*section_.group];
  const std::string_view offered = sides_.offered.valueOf(index, Credential::setup);
  out_.addAttribute("setup", answeredSetup(offered, previous, sides_.options));
  isSetupWritten_ = true;
}

/// Adds attributes that the local section has from elsewhere, unless the answer's session has them.
void SectionWriter::addInherited(std::uint32_t local, Credential credential) {
  if (context_.sessionCredentials.have(credential)) return;
  if (sides_.own.placeOf(local, credential) == Place::section) return;
  for (const Attribute& attribute : sides_.own.attributesOf(local, credential)) out_.add(attribute);
}

void SectionWriter::addKeys() {
  const std::uint32_t local = section_.local.index();
  if (section_.keys.protection == Protection::sdes && !isCryptoWritten_)
    out_.addAttribute("crypto", section_.keys.crypto);
  if (hasAnsweredTls(section_)) addInherited(local, Credential::fingerprint);
  if (needsSetup_ && !isSetupWritten_) writeSetup();
  if (hasAnsweredTlsId(sides_, section_)) addInherited(local, Credential::tlsId);
}

/// Each section of a group has the ICE of the first (RFC 8843, section 7.4).
void SectionWriter::writeIceOfLeader() {
  const Section& leader = section_.leader->local;
  for (const Attribute& attribute : leader.attributes()) {
    if (isIceAttribute(attribute.name)) out_.add(attribute);
  }
  addInherited(leader.index(), Credential::iceUfrag);
  addInherited(leader.index(), Credential::icePwd);
  isIceWritten_ = true;
}

void SectionWriter::addIce() {
  if (!hasIce_ || isIceWritten_) return;
  if (section_.leader != &section_) return writeIceOfLeader();
  addInherited(section_.local.index(), Credential::iceUfrag);
  addInherited(section_.local.index(), Credential::icePwd);
}

}  // namespace sdp::exchange
