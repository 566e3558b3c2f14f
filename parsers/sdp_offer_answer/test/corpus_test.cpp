#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plainObstacles.h"
#include "sdpAnswerJudge.h"
#include "testFiles.h"

// Every body at hand as an offer to engines of a dozen kinds: that a judge finds nothing wrong with an answer, that it has
// the sections of the offer, and that what it refuses has a reason which can be seen without the library.

namespace {

using plain::PlainBody;
using sdp::Answer;
using sdp::Document;
using sdp::SectionOutcome;

const char* const kLocals[] = {"browser", "data",  "dtls-ice", "fax",  "ipv6",  "mobile",
                               "osrtp",   "phone", "recorder", "sdes", "video", "wideband"};

std::string localNamed(const std::string& name) {
  return readBytes(SDP_TEST_SOURCE_DIR "/parsers/sdp_offer_answer/test/locals/" + name + ".sdp");
}

/// What became of the offered sections.
struct Totals {
  std::size_t bodies = 0;
  std::size_t accepted = 0;
  std::size_t refused = 0;  ///< for a reason that lies in both sides
};

/// An offer, a local description and what came of them.
struct Case {
  const PlainBody& offer;
  const PlainBody& local;
  const Answer& answer;
};

/// Whether a payload type that RTCP has, too, is the offer's own.
bool isReservedByOffer(const Case& c, const sdp::Finding& finding) {
  if (finding.rule != sdp::AnswerRule::payloadReserved) return false;
  const plain::Words formats = c.offer.sections[finding.section].formats();
  return std::any_of(formats.begin(), formats.end(), [](std::string_view payload) {
    return payload.size() == 2 && payload >= "64" && payload <= "95";
  });
}

std::string complaintsOfJudge(const Case& c, const Document& offer) {
  Document answer;
  EXPECT_FALSE(answer.read(c.answer.text));
  const sdp::Judgement judgement = sdp::checkAnswer(offer, answer);
  EXPECT_TRUE(judgement.isComplete);
  std::string complaints;
  for (const sdp::Finding& finding : judgement.findings) {
    if (isReservedByOffer(c, finding)) continue;
    complaints.append(std::to_string(finding.section)).append(": ").append(textOf(finding.rule)).append("; ");
  }
  return complaints;
}

bool isUsed(const Case& c, std::size_t local) {
  return std::any_of(c.answer.sections.begin(), c.answer.sections.end(),
                     [local](const sdp::AnsweredSection& section) { return section.local == local; });
}

/// @return what is wrong with a reason for which a readable section that is not disabled is refused
std::string complaintOfReason(const Case& c, std::size_t number, SectionOutcome outcome) {
  bool isReason = outcome == SectionOutcome::noLocalSection;
  for (std::size_t local = 1; local < c.local.sections.size(); ++local) {
    if (c.local.sections[local].media() != c.offer.sections[number].media()) continue;
    const plain::Obstacles obstacles = plain::obstaclesBetween(c.offer, number, c.local, local);
    if (obstacles.empty() && !isUsed(c, local)) return "refused without a reason; ";
    if (outcome == SectionOutcome::noLocalSection && !isUsed(c, local)) return "a local section is left; ";
    isReason = isReason || obstacles.count(outcome) != 0;
  }
  return isReason ? "" : "another reason; ";
}

/// What is wrong with what became of a section.
std::string complaintsOfSection(const Case& c, std::size_t number, Totals& totals) {
  const plain::PlainSection& offered = c.offer.sections[number];
  const SectionOutcome outcome = c.answer.sections[number - 1].outcome;
  if (!offered.readable) return outcome == SectionOutcome::unreadable ? "" : "readable for the library; ";
  if (!offered.alive) return outcome == SectionOutcome::disabled ? "" : "not disabled for the library; ";
  if (outcome != SectionOutcome::accepted) {
    ++totals.refused;
    return complaintOfReason(c, number, outcome);
  }
  ++totals.accepted;
  const std::uint32_t local = c.answer.sections[number - 1].local;
  if (local == 0 || local >= c.local.sections.size()) return "accepted by no local section; ";
  return c.local.sections[local].media() == offered.media() ? "" : "accepted by another media; ";
}

/// What is wrong with an answer's sections, as they stand there.
std::string complaintsOfText(const Case& c) {
  const PlainBody answer(c.answer.text);
  if (answer.sections.size() != c.offer.sections.size()) return "another number of sections; ";
  std::string complaints;
  for (std::size_t number = 1; number < answer.sections.size(); ++number) {
    const bool isAccepted = c.answer.sections[number - 1].outcome == SectionOutcome::accepted;
    const plain::PlainSection& section = answer.sections[number];
    if (!section.readable || section.zero == isAccepted || section.bundleOnly)
      complaints += "its port does not say what became of it; ";
  }
  return complaints;
}

std::string complaintsAbout(const Case& c, const Document& offer, Totals& totals) {
  const bool hasSections = c.offer.sectionCount() != 0;
  if (c.answer.failure == sdp::AnswerFailure::brokenOffer)
    return hasSections || c.offer.text.starts_with("v=") ? "not broken; " : "";
  if (c.answer.sections.size() != c.offer.sectionCount()) return "another number of outcomes; ";
  const std::size_t accepted = totals.accepted;
  std::string complaints;
  bool areAllDisabled = true;
  for (std::size_t number = 1; number < c.offer.sections.size(); ++number) {
    complaints += complaintsOfSection(c, number, totals);
    areAllDisabled = areAllDisabled && c.offer.sections[number].readable && !c.offer.sections[number].alive;
  }
  const bool isAnswered = areAllDisabled || totals.accepted != accepted;
  if (!isAnswered && c.answer.failure == sdp::AnswerFailure::nothingAccepted) return complaints;
  if (!isAnswered || !c.answer) return complaints + "answered when it must not be, or not when it must; ";
  return complaints + complaintsOfText(c) + complaintsOfJudge(c, offer);
}

Totals tryLocal(const std::vector<std::filesystem::path>& files, const std::string& name) {
  Totals totals;
  const std::string ours = localNamed(name);
  const PlainBody plainLocal(ours);
  Document local;
  EXPECT_FALSE(local.read(ours));
  Document offer;
  for (const auto& file : files) {
    const std::string theirs = readBytes(file);
    const PlainBody plainOffer(theirs);
    EXPECT_FALSE(offer.read(theirs));
    sdp::AnswerOptions options;
    for (const bool isOther : {false, true}) {
      options = {isOther, isOther && totals.bodies % 2 == 0, isOther, nullptr};
      const Answer answer = makeAnswer(offer, local, options);
      EXPECT_EQ(complaintsAbout({plainOffer, plainLocal, answer}, offer, totals), "")
          << file << (isOther ? " otherwise\n" : "\n") << answer.text;
    }
    ++totals.bodies;
  }
  return totals;
}

class EveryOffer : public testing::TestWithParam<const char*> {};

TEST_P(EveryOffer, OfTheProjectsIsAnsweredRightly) {
  const auto files = sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp_document/test/bodies");
  ASSERT_GE(files.size(), 8U);
  EXPECT_GT(tryLocal(files, GetParam()).refused, 0U);
}

TEST_P(EveryOffer, OfACollectionIsAnsweredRightly) {
  const std::string folder = corpusFolder();
  if (folder.empty()) GTEST_SKIP() << "SDP_CORPUS_DIR names no folder of bodies";
  const Totals totals = tryLocal(sdpFilesBelow(folder), GetParam());
  EXPECT_GT(totals.accepted, 0U);
  EXPECT_GT(totals.refused, 0U);
  RecordProperty("bodies", static_cast<int>(totals.bodies));
  RecordProperty("accepted", static_cast<int>(totals.accepted));
  RecordProperty("refused", static_cast<int>(totals.refused));
}

INSTANTIATE_TEST_SUITE_P(Locals, EveryOffer, testing::ValuesIn(kLocals),
                         [](const testing::TestParamInfo<const char*>& local) {
                           std::string name(local.param);
                           name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                           return name;
                         });

}  // namespace
