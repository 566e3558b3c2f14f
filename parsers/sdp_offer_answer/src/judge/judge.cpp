// Judging an answer, section by section.

#include <algorithm>
#include <new>
#include <stdexcept>

#include "judge/bodies.h"

namespace sdp {
namespace exchange {
namespace {

void judgePair(const Pair& pair, Findings& findings) {
  const bool isAccepted = judgeSection(pair, findings);
  judgeMembership(pair, isAccepted, findings);
  if (!isAccepted) return;
  judgeFormats(pair, findings);
  judgeConnectivity(pair, findings);
  judgeKeys(pair, findings);
}

Judgement judge(const Document& offer, const Document& answer) {
  const Bodies bodies(offer, answer);
  Findings findings;
  judgeSectionCount(bodies, findings);
  judgeGroups(bodies, findings);
  judgeSessionConnectivity(bodies, findings);
  const std::uint32_t count = std::min(offer.sectionCount(), answer.sectionCount());
  for (std::uint32_t number = 1; number <= count; ++number) judgePair(Pair(bodies, number), findings);
  Judgement judgement;
  judgement.findings = findings.take();
  judgement.hasMore = findings.hasMore();
  return judgement;
}

}  // namespace
}  // namespace exchange

Judgement checkAnswer(const Document& offer, const Document& answer) noexcept {
  Judgement judgement;
  try {
    judgement = exchange::judge(offer, answer);
  } catch (const std::bad_alloc&) {
    judgement.isComplete = false;
  } catch (const std::length_error&) {
    judgement.isComplete = false;
  }
  return judgement;
}

}  // namespace sdp
