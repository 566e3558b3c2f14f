// Choosing keys.

#include "answer/keys.h"

#include <algorithm>
#include <vector>

#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// A crypto attribute (RFC 4568, section 9.1).
struct CryptoLine {
  std::string_view tag;
  std::string_view suite;
  std::string_view keys;
  Fields parameters;  ///< of the session
  const char* place;
};

/// @return nothing when a field is missing, or the tag no number
std::optional<CryptoLine> readCrypto(const Attribute& attribute) {
  const Fields fields = attribute.fields();
  Fields::Iterator field = fields.begin();
  CryptoLine line{};
  for (std::string_view* const part : {&line.tag, &line.suite, &line.keys}) {
    if (field == Fields::end()) return std::nullopt;
    *part = *field;
    if (part != &line.keys) ++field;
  }
  if (!readNumber(line.tag)) return std::nullopt;
  line.parameters = Fields(field.rest());
  line.place = attribute.value->data();
  return line;
}

bool has(const Fields& fields, std::string_view wanted) {
  for (const std::string_view field : fields) {
    if (field == wanted) return true;
  }
  return false;
}

/// What need not be understood begins with a dash (RFC 4568, section 6.3.7).
bool hasParameters(const CryptoLine& local, const CryptoLine& offered) {
  for (const std::string_view parameter : offered.parameters) {
    if (!parameter.starts_with('-') && !has(local.parameters, parameter)) return false;
  }
  return true;
}

std::string answeredCrypto(const CryptoLine& offered, const CryptoLine& local) {
  std::string value(offered.tag);
  value.append(" ").append(local.suite).append(" ").append(local.keys);
  for (const std::string_view parameter : local.parameters) {
    if (has(offered.parameters, parameter)) value.append(" ").append(parameter);
  }
  return value;
}

std::vector<CryptoLine> cryptoLinesOf(const KeySide& side) {
  std::vector<CryptoLine> lines;
  for (const Attribute& attribute : side.bundles.attributesOf(side.section.index(), Credential::crypto)) {
    if (const std::optional<CryptoLine> line = readCrypto(attribute)) lines.push_back(*line);
  }
  return lines;
}

/// The first offered crypto of a suite that a local one has with all that it wants of the session.
KeyChoice chooseCrypto(const KeySide& offered, const KeySide& local) {
  const std::vector<CryptoLine> ours = cryptoLinesOf(local);
  if (ours.empty()) return {};
  for (const CryptoLine& line : cryptoLinesOf(offered)) {
    const auto equal = std::find_if(ours.begin(), ours.end(), [&line](const CryptoLine& other) {
      return other.suite == line.suite && hasParameters(other, line);
    });
    if (equal != ours.end()) return {Protection::sdes, answeredCrypto(line, *equal), equal->place};
  }
  return {};
}

bool chooseDtls(const KeySide& offered, const KeySide& local, KeyChoice& choice) {
  if (!offered.has(Credential::fingerprint) || !local.has(Credential::fingerprint)) return false;
  choice.protection = Protection::dtls;
  return true;
}

bool isSecure(std::string_view transport) { return sdpneg::contains(transport, "SAVP") || hasTls(transport); }

bool hasAnyKey(const KeySide& side) {
  return side.has(Credential::crypto) || side.has(Credential::fingerprint) || side.has(Credential::keyMgmt);
}

}  // namespace

bool isOverTcp(std::string_view transport) { return transport.starts_with("TCP"); }

KeyChoice KeyChooser::chooseSdes(const KeySide& offered, const KeySide& local) {
  const std::uint32_t holder = offered.bundles.holderOf(offered.section.index(), Credential::crypto);
  if (holder == 0) return {};
  const auto [known, isNew] = crypto_.try_emplace({holder, local.section.index()});
  if (isNew) known->second = chooseCrypto(offered, local);
  return known->second;
}

SectionOutcome KeyChooser::choose(const KeySide& offered, const KeySide& local, KeyChoice& choice) {
  const std::string_view transport = offered.section.transport();
  if (!offered.section.isRtp()) {
    // A transport of RTP in another spelling has no keys.
    if (local.section.isRtp() && isSecure(local.section.transport())) return SectionOutcome::notProtected;
    choice.protection = hasTls(transport) ? Protection::tls : Protection::none;
    return SectionOutcome::accepted;
  }
  if (!hasTls(transport)) choice = chooseSdes(offered, local);
  if (choice.protection == Protection::sdes) return SectionOutcome::accepted;
  if (chooseDtls(offered, local, choice)) return SectionOutcome::accepted;
  if (isSecure(transport))
    return hasAnyKey(local) ? SectionOutcome::noCommonKeys : SectionOutcome::notProtected;
  if (!isSecure(local.section.transport())) return SectionOutcome::accepted;
  return hasAnyKey(offered) ? SectionOutcome::noCommonKeys : SectionOutcome::notProtected;
}

std::string_view answeredSetup(std::string_view offered, std::string_view previous,
                               const AnswerOptions& options) {
  constexpr std::string_view kActive = "active";
  constexpr std::string_view kPassive = "passive";
  if (offered == kPassive) return kActive;
  if (offered != "actpass") return kPassive;
  if (previous == kActive || previous == kPassive) return previous;
  return options.isPassive ? kPassive : kActive;
}

}  // namespace sdp::exchange
