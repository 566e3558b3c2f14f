#ifndef JUDGE_TEST_SUPPORT_H
#define JUDGE_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sdpAnswerJudge.h"

// What tests of the judge share.

namespace judgeTest {

using Names = std::vector<std::string>;

inline const std::string kSession =
    "v=0\r\n"
    "o=- 4711 1 IN IP4 192.0.2.7\r\n"
    "s=-\r\n"
    "c=IN IP4 192.0.2.7\r\n"
    "t=0 0\r\n";

/// A body with these lines behind the usual ones of a session; each line ends with LF in the source.
inline std::string bodyOf(const std::string& lines) {
  std::string body = kSession;
  for (const char c : lines) {
    if (c == '\n') body += '\r';
    body += c;
  }
  return body;
}

inline std::vector<sdp::Finding> findingsOf(const std::string& offer, const std::string& answer) {
  sdp::Document offered;
  sdp::Document answered;
  EXPECT_FALSE(offered.read(offer));
  EXPECT_FALSE(answered.read(answer));
  const sdp::Judgement judgement = sdp::checkAnswer(offered, answered);
  EXPECT_TRUE(judgement.isComplete);
  EXPECT_EQ(judgement.isGood(), judgement.findings.empty());
  return judgement.findings;
}

/// "1: direction" for each finding.
inline Names namesOf(const std::string& offer, const std::string& answer) {
  Names names;
  for (const sdp::Finding& finding : findingsOf(offer, answer)) {
    names.push_back(std::to_string(finding.section) + ": " + std::string(textOf(finding.rule)));
  }
  return names;
}

/// "1: direction: ..." for each finding.
inline Names linesOf(const std::string& offer, const std::string& answer) {
  Names lines;
  for (const sdp::Finding& finding : findingsOf(offer, answer)) {
    lines.push_back(std::to_string(finding.section) + ": " + std::string(textOf(finding.rule)) + ": " +
                    finding.text);
  }
  return lines;
}

/// An answer that breaks a rule, and nearly the same that keeps it. Lines behind those of a session.
struct RuleCase {
  const char* what;
  const char* offer;
  const char* broken;
  const char* kept;
  Names findings;  ///< of the one that is broken: "1: direction: ..."
};

inline void expectRule(const RuleCase& each) {
  const std::string offer = bodyOf(each.offer);
  EXPECT_EQ(linesOf(offer, bodyOf(each.broken)), each.findings) << each.what;
  EXPECT_EQ(linesOf(offer, bodyOf(each.kept)), Names{}) << each.what;
}

}  // namespace judgeTest

#endif
