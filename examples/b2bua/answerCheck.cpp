#include "answerCheck.h"

#include <sdpAnswerJudge.h>

namespace b2bua {

namespace {

std::string lineOf(const sdp::Finding& finding) {
  std::string line = finding.section == 0 ? "session" : "section " + std::to_string(finding.section);
  line.append(": ").append(sdp::textOf(finding.rule));
  line.append(" (").append(sdp::textOf(sdp::severityOf(finding.rule))).append("): ");
  return line + finding.text;
}

}  // namespace

std::vector<std::string> whatIsWrong(std::string_view offer, std::string_view answer) {
  // One thread does everything, and they need not get their memory anew for each answer.
  static sdp::Document offered;
  static sdp::Document answered;
  if (offered.read(offer) || answered.read(answer)) return {"not judged: it cannot be read"};
  const sdp::Judgement judgement = sdp::checkAnswer(offered, answered);
  if (!judgement.isComplete) return {"not judged: memory ran out"};
  std::vector<std::string> lines;
  for (const sdp::Finding& finding : judgement.findings) {
    if (lines.size() == kMostFindings) {
      lines.push_back((judgement.hasMore ? "at least " : "") +
                      std::to_string(judgement.findings.size() - kMostFindings) + " more findings");
      break;
    }
    lines.push_back(lineOf(finding));
  }
  return lines;
}

}  // namespace b2bua
