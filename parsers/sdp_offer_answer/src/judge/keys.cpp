// The rules of keys.

#include <algorithm>
#include <optional>
#include <string>

#include "judge/bodies.h"
#include "text/search.h"
#include "transports.h"

namespace sdp::exchange {
namespace {

enum class Role : std::uint8_t { active, passive, actpass };

/// Other words count as none.
std::optional<Role> roleOf(std::string_view word) {
  if (word == "active") return Role::active;
  if (word == "passive") return Role::passive;
  if (word == "actpass") return Role::actpass;
  return std::nullopt;
}

/// Suites are of capitals, digits and `_`. What is not may be a key.
std::string shownSuite(std::string_view suite) {
  const auto isOfSuite = [](char c) { return (c >= 'A' && c <= 'Z') || sdpneg::isDigit(c) || c == '_'; };
  const bool isSuite = sdpneg::contains(suite, "_") && std::all_of(suite.begin(), suite.end(), isOfSuite);
  return isSuite ? " " + shown(suite) : std::string();
}

/// A tag is a number of at most nine digits. What is not may be a key.
std::string shownTag(std::string_view tag) {
  constexpr std::size_t kMostDigits = 9;
  const bool isTag =
      !tag.empty() && tag.size() <= kMostDigits && std::all_of(tag.begin(), tag.end(), sdpneg::isDigit);
  return isTag ? "tag " + std::string(tag) : "a tag that is none";
}

void judgeCryptos(const Pair& pair, Findings& findings) {
  if (!pair.answered.has("crypto")) return;
  const Cryptos* const ofGroup = pair.bodies.offeredCryptos.ofGroup(pair.number);
  const Cryptos own = ofGroup == nullptr ? pair.bodies.offeredCryptos.own(pair.number) : Cryptos();
  const Cryptos& offered = ofGroup == nullptr ? own : *ofGroup;
  std::size_t count = 0;
  for (const Attribute& attribute : pair.answered.attributes("crypto")) {
    ++count;
    const TagAndSuite crypto = readCrypto(attribute);
    if (!offered.hasTag(crypto.tag)) {
      findings.add(pair.number, AnswerRule::cryptoTag, {shownTag(crypto.tag), " was not offered"});
    } else if (!offered.has(crypto)) {
      findings.add(pair.number, AnswerRule::cryptoSuite,
                   {shownTag(crypto.tag), " was not offered with the suite", shownSuite(crypto.suite)});
    }
  }
  if (count > 1) {
    findings.add(pair.number, AnswerRule::cryptoCount,
                 {std::to_string(count), " crypto attributes, not one"});
  }
}

/// Whether offer and answer have keys of one kind.
bool haveKeysInCommon(const Pair& pair) {
  for (const Credential kind : {Credential::crypto, Credential::keyMgmt, Credential::fingerprint}) {
    if (pair.offers(kind) && pair.answers(kind)) return true;
  }
  return false;
}

/// Whether media have a connection, so that its roles count: TLS, DTLS or TCP.
bool isConnected(const Pair& pair) {
  const std::string_view transport = pair.answered.transport();
  return hasTls(transport) || transport.starts_with("TCP");
}

void judgeRole(const Pair& pair, std::optional<Role> offered, std::optional<Role> answered,
               Findings& findings) {
  if (!answered || *answered == Role::actpass || offered != answered) return;
  const std::string_view word = *answered == Role::active ? "active" : "passive";
  findings.add(pair.number, AnswerRule::setupRole, {"both are ", word});
}

void judgeSetup(const Pair& pair, Findings& findings) {
  std::optional<Role> offered = roleOf(pair.bodies.offerBundles.valueOf(pair.number, Credential::setup));
  const std::optional<Role> answered =
      roleOf(pair.bodies.answerBundles.valueOf(pair.number, Credential::setup));
  const bool counts = isConnected(pair) || pair.answers(Credential::fingerprint);
  if (offered && !answered && counts) {
    findings.add(pair.number, AnswerRule::noSetup, {"setup was offered and has no answer"});
  }
  if (!offered && (isConnected(pair) || pair.offers(Credential::fingerprint))) {
    offered = Role::active;  // RFC 4145, section 4
  }
  if (answered && !offered) {
    findings.add(pair.number, AnswerRule::setupNotOffered, {"setup was not offered"});
  }
  if (answered == Role::actpass) {
    findings.add(pair.number, AnswerRule::setupActpass, {"actpass is for offers alone"});
  }
  if (counts) judgeRole(pair, offered, answered, findings);
}

}  // namespace

void judgeKeys(const Pair& pair, Findings& findings) {
  const std::string_view transport = pair.answered.transport();
  const bool isRtp = pair.answered.isRtp();
  if (isRtp && !hasTls(transport)) judgeCryptos(pair, findings);
  if (isRtp && !hasTls(transport) && sdpneg::contains(transport, "SAVP") && !haveKeysInCommon(pair)) {
    findings.add(pair.number, AnswerRule::noKey,
                 {shown(transport), " without a key of a kind that was offered"});
  }
  const bool wantsFingerprint = isRtp || pair.offers(Credential::fingerprint);
  if (hasTls(transport) && wantsFingerprint && !pair.answers(Credential::fingerprint)) {
    findings.add(pair.number, AnswerRule::noFingerprint, {shown(transport), " without a fingerprint"});
  }
  judgeSetup(pair, findings);
}

}  // namespace sdp::exchange
