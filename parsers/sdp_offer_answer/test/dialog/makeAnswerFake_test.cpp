// Stands in for the answers of the library until they are there.

#include "sdpAnswer.h"

namespace sdp {

Answer makeAnswer(const Document& offer, const Document& local, const AnswerOptions& /*options*/) noexcept {
  Answer answer;
  if (local.sectionCount() == 0) {
    answer.failure = AnswerFailure::noLocalSection;
    return answer;
  }
  for (const Line& line : local.session().lines()) answer.text.append(line.content).append("\r\n");
  bool isAny = offer.sectionCount() == 0;
  for (const Section& offered : offer.sections()) {
    const Section own = local.section(offered.index());
    if (own.isReadable() && own.media() == offered.media() && !offered.isDisabled()) {
      for (const Line& line : own.lines()) answer.text.append(line.content).append("\r\n");
      answer.sections.push_back({SectionOutcome::accepted, offered.index()});
      isAny = true;
    } else {
      answer.text.append("m=").append(offered.media()).append(" 0 ").append(offered.transport());
      answer.text.append(" ").append(offered.formats().begin()->format).append("\r\n");
      answer.sections.push_back(
          {offered.isDisabled() ? SectionOutcome::disabled : SectionOutcome::noLocalSection, 0});
    }
  }
  if (!isAny) answer.failure = AnswerFailure::nothingAccepted;
  if (!isAny) answer.text.clear();
  return answer;
}

}  // namespace sdp
