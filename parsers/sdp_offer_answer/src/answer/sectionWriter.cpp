// Writing accepted sections: what becomes of each line of the local one.

#include "answer/sectionWriter.h"

#include <algorithm>
#include <array>

#include "answer/direction.h"
#include "answer/fax.h"
#include "answer/iceAttributes.h"
#include "plainText.h"

namespace sdp::exchange {

WritingContext::WritingContext(const Sides& theSides, const Matches& matches)
    : sides(theSides),
      previous(theSides.options.previous),
      sessionExtensions(theSides.offer.session().attributes("extmap")),
      isMixOffered(theSides.offer.session().has("extmap-allow-mixed")) {
  if (previous != nullptr) previousBundles.emplace(*previous);
  for (const AnsweredGroup& group : matches.groups()) {
    std::string_view& role = groupRoles.emplace_back();
    for (const std::size_t member : group.members) {
      if (role.empty()) role = previousRole(matches.accepted()[member].offered.index());
    }
  }
}

std::string_view WritingContext::previousRole(std::uint32_t section) const {
  if (previous == nullptr || section > previous->sectionCount()) return {};
  const Section before = previous->section(section);
  if (!before.isReadable() || before.isDisabled()) return {};
  const std::string_view role = previousBundles->valueOf(section, Credential::setup);
  return role == "active" || role == "passive" ? role : std::string_view();
}

bool hasAnsweredIce(const Sides& sides, const Accepted& section) {
  const Accepted& leader = *section.leader;
  return sides.offered.hasIce(leader.offered.index()) && sides.own.hasIce(leader.local.index());
}

/// What becomes of an attribute.
struct SectionWriter::Rule {
  std::string_view name;
  void (SectionWriter::*take)(const Attribute& attribute);
};

const SectionWriter::Rule* SectionWriter::ruleOf(std::string_view name) {
  using Writer = SectionWriter;
  static constexpr Rule kRules[] = {{"mid", &Writer::takeMid},
                                    {"sendrecv", &Writer::takeDirection},
                                    {"sendonly", &Writer::takeDirection},
                                    {"recvonly", &Writer::takeDirection},
                                    {"inactive", &Writer::takeDirection},
                                    {"rtcp-mux", &Writer::takeRtcpMux},
                                    {"rtcp", &Writer::takeRtcp},
                                    {"rtcp-mux-only", &Writer::takeMuxOnly},
                                    {"rtcp-rsize", &Writer::takeIfOffered},
                                    {"extmap-allow-mixed", &Writer::takeMix},
                                    {"crypto", &Writer::takeCrypto},
                                    {"fingerprint", &Writer::takeFingerprint},
                                    {"setup", &Writer::takeSetup},
                                    {"tls-id", &Writer::takeTlsId},
                                    {"extmap", &Writer::takeExtension},
                                    {"rtpmap", &Writer::takeFormat},
                                    {"fmtp", &Writer::takeParameters},
                                    {"rtcp-fb", &Writer::takeFeedback},
                                    {"imageattr", &Writer::takeFormat},
                                    {"framesize", &Writer::takeFormat},
                                    {"gpmd", &Writer::takeFormat},
                                    {"key-mgmt", &Writer::leaveOut},
                                    {"group", &Writer::leaveOut},
                                    {"bundle-only", &Writer::leaveOut},
                                    {"simulcast", &Writer::leaveOut},
                                    {"rid", &Writer::leaveOut},
                                    {"tcap", &Writer::leaveOut},
                                    {"acap", &Writer::leaveOut},
                                    {"pcfg", &Writer::leaveOut}};
  static constexpr Rule kIce{"", &Writer::takeIce};
  static constexpr Rule kFax{"", &Writer::takeFax};
  static constexpr Rule kOther{"", &Writer::copy};
  const auto* const rule =
      std::find_if(std::begin(kRules), std::end(kRules), [name](const Rule& r) { return r.name == name; });
  if (rule != std::end(kRules)) return rule;
  if (isIceAttribute(name)) return &kIce;
  return isNegotiatedForFax(name) ? &kFax : &kOther;
}

SectionWriter::SectionWriter(const WritingContext& context, const Accepted& section, Lines& out)
    : context_(context),
      sides_(context.sides),
      section_(section),
      out_(out),
      hasIce_(hasAnsweredIce(context.sides, section)),
      needsSetup_(section.keys.protection >= Protection::dtls || isOverTcp(section.offered.transport())),
      feedback_(section.offered),
      extensions_(section.offered.attributes("extmap")),
      answers_(section.localFormats->size()),
      fmtpCount_(section.localFormats->size()),
      hasRtpmap_(section.localFormats->size()) {
  const std::vector<FormatPair>& pairs = section.formats.pairs;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    answers_[section.localFormats->placeOf(*pairs[i].local)].push_back(i);
    parameters_.emplace_back(pairs[i], section.formats, *section.localFormats);
  }
}

void SectionWriter::write() {
  writeHead();
  for (const Attribute& attribute : section_.local.attributes())
    (this->*ruleOf(attribute.name)->take)(attribute);
  addKeys();
  addIce();
  for (const Attribute& attribute : sides_.local.session().attributes("extmap")) takeExtension(attribute);
  addFormats();
  if (!isDirectionWritten_ && direction() != Direction::sendrecv) out_.add({"a=", textOf(direction())});
  writeMid();
}

void SectionWriter::writeHead() {
  // The port as it is written there, with its count.
  const std::string_view mLine = (*section_.leader->local.lines().begin()).content.substr(2);
  const std::string_view port = Fields(mLine)[1];
  std::string formats;
  for (const FormatPair& pair : section_.formats.pairs) formats.append(" ").append(pair.offered->payload);
  out_.add({"m=", section_.offered.media(), " ", port, " ", section_.offered.transport(), formats});
  writeLines(section_.local, "i=");
  writeLines(section_.leader->local, "c=");
  writeLines(section_.local, "b=");
}

void SectionWriter::writeLines(const Section& from, std::string_view kind) {
  for (const Line& line : from.lines()) {
    if (line.content.starts_with(kind)) out_.add({line.content});
  }
}

void SectionWriter::copy(const Attribute& attribute) { out_.add(attribute); }
void SectionWriter::leaveOut(const Attribute& /*attribute*/) {}

void SectionWriter::takeMid(const Attribute& /*attribute*/) { writeMid(); }

void SectionWriter::writeMid() {
  const std::string_view mid = plainOrEmpty(section_.offered.mid());
  if (!isMidWritten_ && !mid.empty()) out_.addAttribute("mid", mid);
  isMidWritten_ = true;
}

Direction SectionWriter::direction() const {
  return answeredDirection(offeredDirection(section_.offered, sides_.offered), section_.local.direction());
}

void SectionWriter::takeDirection(const Attribute& /*attribute*/) {
  if (!isDirectionWritten_) out_.add({"a=", textOf(direction())});
  isDirectionWritten_ = true;
}

void SectionWriter::takeIfOffered(const Attribute& attribute) {
  if (section_.offered.has(attribute.name)) out_.add(attribute);
}

void SectionWriter::takeRtcpMux(const Attribute& attribute) {
  if (isMuxed()) out_.add(attribute);
}

void SectionWriter::takeRtcp(const Attribute& attribute) {
  if (!isMuxed()) out_.add(attribute);
}

void SectionWriter::takeMuxOnly(const Attribute& attribute) {
  if (isMuxed()) takeIfOffered(attribute);
}

void SectionWriter::takeMix(const Attribute& attribute) {
  if (context_.isMixOffered || section_.offered.has(attribute.name)) out_.add(attribute);
}

void SectionWriter::takeCrypto(const Attribute& attribute) {
  const KeyChoice& keys = section_.keys;
  if (keys.protection != Protection::sdes || !attribute.value || attribute.value->data() != keys.cryptoPlace)
    return;
  out_.addAttribute("crypto", keys.crypto);
  isCryptoWritten_ = true;
}

void SectionWriter::takeFingerprint(const Attribute& attribute) {
  if (hasTlsKeys()) out_.add(attribute);
}

void SectionWriter::takeSetup(const Attribute& /*attribute*/) {
  if (needsSetup_ && !isSetupWritten_) writeSetup();
}

void SectionWriter::takeTlsId(const Attribute& attribute) {
  if (isTlsIdAnswered()) out_.add(attribute);
}

void SectionWriter::takeIce(const Attribute& attribute) {
  if (!hasIce_) return;
  if (section_.leader == &section_) return out_.add(attribute);
  if (!isIceWritten_) writeIceOfLeader();
}

void SectionWriter::takeExtension(const Attribute& attribute) {
  const std::optional<Extension> local = readExtension(attribute);
  if (!local) return;
  const auto isSame = [&local](const Extension& other) { return isSameExtension(*local, other); };
  if (std::any_of(writtenExtensions_.begin(), writtenExtensions_.end(), isSame)) return;
  const Extension* offered = extensions_.find(*local);
  if (offered == nullptr) offered = context_.sessionExtensions.find(*local);
  if (offered == nullptr) return;
  out_.addAttribute("extmap", answeredExtension(*offered, *local));
  writtenExtensions_.push_back(*local);
}

void SectionWriter::takeFax(const Attribute& attribute) {
  if (const auto value = answeredForFax(attribute, section_.offered))
    out_.addAttribute(attribute.name, *value);
}

}  // namespace sdp::exchange
