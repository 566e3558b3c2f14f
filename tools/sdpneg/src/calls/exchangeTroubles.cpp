// What is wrong between an offer and its answer: findings of the judge, and codecs.

#include <algorithm>
#include <set>

#include "calls/troubleFinder.h"
#include "sdpAnswerJudge.h"
#include "text/search.h"

namespace tool {
namespace {

struct BodyPair {
  const sdp::Document* offer = nullptr;
  const sdp::Document* answer = nullptr;

  explicit operator bool() const { return offer != nullptr && answer != nullptr; }
};

/// The bodies of an exchange that has an answer, where their texts are asked for the first time by a rule.
/// @param isFine says of their shapes that the rule has nothing to tell; then they are not read
BodyPair newPair(TroubleFinder& finder, std::string_view rule, const Exchange& exchange,
                 bool ShapeFacts::*isFine) {
  if (!exchange.answer || !finder.isNews(rule, exchange.offer, *exchange.answer)) return {};
  const CallMessage& offer = finder.call().messages[exchange.offer];
  const CallMessage& answer = finder.call().messages[*exchange.answer];
  BodyCache& bodies = finder.bodies();
  if (!bodies.spend(offer.sdpSize + answer.sdpSize)) return {};
  if (bodies.factsOf(exchange.offer, *exchange.answer).*isFine) {
    bodies.passOver(exchange.offer, *exchange.answer);
    return {};
  }
  return {bodies.of(exchange.offer), bodies.of(*exchange.answer)};
}

/// Notes that a rule has nothing to tell of an exchange.
void noteFine(TroubleFinder& finder, const Exchange& exchange, bool ShapeFacts::*isFine) {
  finder.bodies().factsOf(exchange.offer, *exchange.answer).*isFine = true;
}

bool isCompanion(const CodecName& codec) { return codec.isCompanion; }

/// A payload type that means something to one side, or to none.
bool isUnknown(const CodecName& codec) { return codec.clockRate == 0; }

/// What two sections have.
struct CodecPair {
  std::vector<CodecName> there;
  std::vector<CodecName> here;
};

void findCodecTrouble(TroubleFinder& finder, const TroublePlace& place, const sdp::Section& offered,
                      const sdp::Section& answered, CodecPair codecs) {
  if (!commonCodecs(codecs.there, codecs.here).empty()) return;
  std::vector<CodecName>& there = codecs.there;
  std::vector<CodecName>& here = codecs.here;
  std::erase_if(there, isCompanion);
  std::erase_if(here, isCompanion);
  if (there.empty()) return;
  // What payload types without a name mean cannot be told.
  const auto isFormat = [](const sdp::Section& section, const CodecName& codec) {
    return isUnknown(codec) && section.format(codec.name).has_value();
  };
  const bool mayFit =
      std::ranges::any_of(here, [&](const CodecName& codec) { return isFormat(offered, codec); }) ||
      std::ranges::any_of(there, [&](const CodecName& codec) { return isFormat(answered, codec); });
  if (mayFit) return;
  const std::string names = here.empty() ? "none" : namesOf(here);
  finder.tell(
      "no-common-codec", place,
      shownPiece(answered.media()) + ": offered " + namesOf(there) + ", answered and accepted " + names);
}

/// The clock rates of telephone-event, ascending.
std::set<std::uint32_t> eventClocksOf(const std::vector<CodecName>& codecs) {
  std::set<std::uint32_t> clocks;
  for (const CodecName& codec : codecs) {
    if (sdpneg::equalNoCase(codec.name, "telephone-event")) clocks.insert(codec.clockRate);
  }
  return clocks;
}

std::string listOf(const std::set<std::uint32_t>& clocks) {
  std::string list;
  for (const std::uint32_t clock : clocks) {
    if (!list.empty()) list += ", ";
    list += std::to_string(clock);
  }
  return list;
}

void findEventTrouble(TroubleFinder& finder, const TroublePlace& place, const CodecPair& codecs) {
  const std::set<std::uint32_t> there = eventClocksOf(codecs.there);
  const std::set<std::uint32_t> here = eventClocksOf(codecs.here);
  if (there.empty() || here.empty()) return;
  const bool hasCommon =
      std::ranges::any_of(here, [&](std::uint32_t clock) { return there.contains(clock); });
  if (hasCommon) return;
  finder.tell("dtmf-clock", place,
              "telephone-event is offered at " + listOf(there) + " Hz and answered at " + listOf(here));
}

}  // namespace

void findJudgedTroubles(TroubleFinder& finder) {
  for (const Exchange& exchange : finder.call().exchanges) {
    const BodyPair pair = newPair(finder, "", exchange, &ShapeFacts::isJudgedFine);
    if (!pair) continue;
    const sdp::Judgement judgement = sdp::checkAnswer(*pair.offer, *pair.answer);
    if (judgement.isComplete && judgement.findings.empty())
      noteFine(finder, exchange, &ShapeFacts::isJudgedFine);
    for (const sdp::Finding& finding : judgement.findings) {
      const bool isWarning = sdp::severityOf(finding.rule) == sdp::Severity::warning;
      finder.tell(sdp::textOf(finding.rule), isWarning, {*exchange.answer, finding.section}, finding.text);
    }
  }
}

void findCodecTroubles(TroubleFinder& finder) {
  for (const Exchange& exchange : finder.call().exchanges) {
    if (!wasAccepted(finder.call(), exchange)) continue;
    const BodyPair pair = newPair(finder, "no-common-codec", exchange, &ShapeFacts::hasFineCodecs);
    if (!pair) continue;
    const std::size_t told = finder.told();
    for (const sdp::Section& answered : pair.answer->sections()) {
      const sdp::Section offered = pair.offer->section(answered.index());
      if (!isActive(offered) || !isActive(answered) || !offered.isRtp() || !answered.isRtp()) continue;
      const TroublePlace place{*exchange.answer, answered.index()};
      const CodecPair codecs{codecsOf(offered), codecsOf(answered)};
      findCodecTrouble(finder, place, offered, answered, codecs);
      findEventTrouble(finder, place, codecs);
    }
    if (finder.told() == told) noteFine(finder, exchange, &ShapeFacts::hasFineCodecs);
  }
}

}  // namespace tool
