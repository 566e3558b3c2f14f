// The rules of groups and mids.

#include <string>
#include <utility>
#include <vector>

#include "judge/bodies.h"
#include "judge/offeredGroups.h"

namespace sdp::exchange {
namespace {

Words midsOf(const Document& document) {
  std::vector<std::string_view> mids;
  for (const Section& section : document.sections()) mids.push_back(midOf(section));
  return Words(std::move(mids));
}

/// "BUNDLE 0 1", to be shown.
std::string textOf(const Group& group, const MidSet& members) {
  constexpr std::size_t kEnough = 128;  // more than is shown
  std::string text(group.semantics);
  for (const std::string_view mid : members) {
    if (text.size() > kEnough) break;
    text.append(" ").append(mid);
  }
  return shown(text);
}

void judgeMid(const Pair& pair, Findings& findings) {
  const std::string_view offered = midOf(pair.offered);
  const std::string_view answered = midOf(pair.answered);
  const AnswerGroups& groups = pair.bodies.groups;
  if (!answered.empty() && answered != offered) {
    findings.add(pair.number, AnswerRule::midNotOffered,
                 {shown(answered), "; offered was ", offered.empty() ? "none" : shown(offered)});
  }
  if (answered.empty() && !offered.empty() && groups.names(offered)) {
    findings.add(pair.number, AnswerRule::midMissing,
                 {"a group names ", shown(offered), ", and it has no mid"});
  }
  const bool isRefused = pair.answered.isReadable() && pair.answered.port() == 0;
  if (isRefused && groups.names(answered)) {
    findings.add(pair.number, AnswerRule::refusedInGroup,
                 {"a group names ", shown(answered), ", which is refused"});
  }
}

void judgeBundle(const Pair& pair, Findings& findings) {
  if (pair.offered.port() == 0 && !pair.bodies.groups.havePort(pair.number)) {
    findings.add(pair.number, AnswerRule::bundleOnlyAlone,
                 {"it was offered bundle-only, and nothing that it is bundled with has a port"});
  }
  const bool isBundled = pair.bodies.answerBundles.groupOf(pair.number).has_value();
  if (isBundled && pair.offered.hasRtcpMux() && !pair.answered.hasRtcpMux()) {
    findings.add(pair.number, AnswerRule::muxMissing, {"it is bundled, and has no rtcp-mux"});
  }
}

}  // namespace

void judgeGroups(const Bodies& bodies, Findings& findings) {
  const Words mids = midsOf(bodies.answer);
  OfferedGroups offered(bodies.offer.session());
  for (const Group& group : bodies.answer.session().groups()) {
    const MidSet members(group.mids);
    if (!offered.contain(group.semantics, members)) {
      findings.add(0, AnswerRule::groupNotOffered,
                   {textOf(group, members), ": no such group of the offer has all these members"});
    }
    for (const std::string_view mid : members) {
      if (mids.has(mid)) continue;
      findings.add(0, AnswerRule::groupWithoutSection,
                   {"the group ", shown(group.semantics), " names ", shown(mid), ", which no section has"});
    }
  }
}

void judgeMembership(const Pair& pair, bool isAccepted, Findings& findings) {
  judgeMid(pair, findings);
  if (isAccepted) judgeBundle(pair, findings);
}

}  // namespace sdp::exchange
