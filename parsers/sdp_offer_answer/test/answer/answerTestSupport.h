#ifndef ANSWER_TEST_SUPPORT_H
#define ANSWER_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>

#include "sdpAnswer.h"
#include "sdpAnswerJudge.h"

// Bodies in tables are written with `|` for the end of a line, so that each case is read with LF and with CR LF.

namespace answerTest {

inline constexpr std::string_view kOfferHead = "v=0|o=- 1 1 IN IP4 192.0.2.1|s=-|c=IN IP4 192.0.2.1|t=0 0|";
inline constexpr std::string_view kLocalHead = "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=9 9|";
/// What stands in front of the first section of an answer when both sides have these heads.
inline constexpr std::string_view kAnswerHead =
    "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|";

inline std::string withEnds(std::string_view text, std::string_view end) {
  std::string result;
  for (const char c : text) c == '|' ? result.append(end) : result.append(1, c);
  return result;
}

/// A text behind a head, unless it has a session of its own.
inline std::string withHead(std::string_view head, std::string_view text) {
  return text.starts_with("v=") ? std::string(text) : std::string(head).append(text);
}

inline sdp::Document documentOf(std::string_view text) {
  sdp::Document document;
  EXPECT_FALSE(document.read(text));
  return document;
}

/// What a judge finds wrong with an answer, one a line.
inline std::string complaints(const sdp::Document& offer, std::string_view answer) {
  const sdp::Judgement judgement = checkAnswer(offer, documentOf(answer));
  EXPECT_TRUE(judgement.isComplete);
  std::string text;
  for (const sdp::Finding& finding : judgement.findings) {
    text.append(std::to_string(finding.section)).append(": ").append(textOf(finding.rule)).append("\n");
  }
  return text;
}

/// An offer and a local description, and the answer; each text may lack the session.
struct Answered {
  const char* what;
  const char* offer;
  const char* local;
  const char* answer;
};

inline void expectAnswers(std::initializer_list<Answered> cases, const sdp::AnswerOptions& options = {}) {
  for (const Answered& c : cases) {
    for (const std::string_view end : {"\n", "\r\n"}) {
      SCOPED_TRACE(std::string(c.what) + (end.size() == 1 ? ", LF" : ", CR LF"));
      const sdp::Document offer = documentOf(withEnds(withHead(kOfferHead, c.offer), end));
      const sdp::Document local = documentOf(withEnds(withHead(kLocalHead, c.local), end));
      const sdp::Answer answer = makeAnswer(offer, local, options);
      EXPECT_EQ(textOf(answer.failure), "");
      EXPECT_EQ(answer.text, withEnds(withHead(kAnswerHead, c.answer), "\r\n"));
      EXPECT_EQ(complaints(offer, answer.text), "");
      EXPECT_EQ(makeAnswer(offer, local, options).text, answer.text);
    }
  }
}

/// An offer that is not answered, and what becomes of its sections.
struct Refused {
  const char* what;
  const char* offer;
  const char* local;
  std::initializer_list<sdp::SectionOutcome> outcomes;
};

inline void expectRefusals(std::initializer_list<Refused> cases, const sdp::AnswerOptions& options = {}) {
  for (const Refused& c : cases) {
    SCOPED_TRACE(c.what);
    const sdp::Document offer = documentOf(withEnds(withHead(kOfferHead, c.offer), "\r\n"));
    const sdp::Document local = documentOf(withEnds(withHead(kLocalHead, c.local), "\r\n"));
    const sdp::Answer answer = makeAnswer(offer, local, options);
    EXPECT_FALSE(answer);
    EXPECT_EQ(textOf(answer.failure), "no section would be accepted");
    EXPECT_EQ(answer.text, "");
    std::string outcomes;
    for (const sdp::AnsweredSection& section : answer.sections) {
      outcomes.append(textOf(section.outcome)).append("|");
      EXPECT_EQ(section.local, 0U);
    }
    std::string expected;
    for (const sdp::SectionOutcome outcome : c.outcomes) expected.append(textOf(outcome)).append("|");
    EXPECT_EQ(outcomes, expected);
  }
}

}  // namespace answerTest

#endif
