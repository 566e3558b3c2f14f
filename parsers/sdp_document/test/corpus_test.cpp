#include <array>

#include "changeChecker.h"
#include "documentDump.h"
#include "documentTestSupport.h"
#include "requestSamples.h"
#include "testFiles.h"

// Every request with many arguments on every body at hand, alone and in sequences: what a checker says of the two texts
// that shares nothing with the library, and that a document behind edits is what a reading of its text is.

namespace {

using requestSamples::Request;
using sdp::Document;

std::string textOf(const Request& request) {
  std::string text;
  for (const std::string_view word : request) text.append(word).append(" ");
  return text;
}

std::string joined(const std::vector<std::string>& complaints) {
  std::string text;
  for (const std::string& complaint : complaints) text += complaint + "; ";
  return text;
}

/// What was done and what was refused.
struct Totals {
  std::size_t bodies = 0;
  std::size_t done = 0;
  std::size_t changed = 0;
  std::size_t refused = 0;
};

/// Does a request.
/// @param[in,out] text what the document holds
/// @return complaints
std::string tryRequest(Document& document, const Request& request, std::string& text, Totals& totals) {
  const sdp::Refusal refusal = perform(document, request);
  const std::string after(document.text());
  if (refusal) {
    ++totals.refused;
    if (refusal.isOfArguments() || document.explanation().empty()) return "a refusal without a reason";
    return after == text ? "" : "a refusal that changed the text";
  }
  ++totals.done;
  std::string complaints = joined(plain::complaintsAbout(request, text, after));
  if (after != text) ++totals.changed;
  text = after;
  return complaints;
}

/// Every argument of a kind of request on every body.
Totals tryKind(const std::vector<std::filesystem::path>& files, std::size_t kind) {
  Totals totals;
  Document document;
  const std::vector<Request> requests = requestSamples::allOf(kind);
  for (const auto& file : files) {
    const std::string body = readBytes(file);
    ++totals.bodies;
    for (const Request& request : requests) {
      EXPECT_FALSE(document.read(body));
      std::string text = body;
      const std::string complaints = tryRequest(document, request, text, totals);
      EXPECT_EQ(complaints, "") << file << ": " << textOf(request);
      if (text == body) continue;
      // Another time there is nothing left to do.
      const sdp::Refusal again = perform(document, request);
      EXPECT_EQ(sdp::textOf(again.reason), "") << file << ": " << textOf(request);
      EXPECT_EQ(document.text(), text) << file << ": " << textOf(request) << "a second time";
    }
  }
  return totals;
}

/// A linear congruential generator, so that the sequences are the same everywhere.
class Numbers {
 public:
  std::size_t next() {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>(state_ >> 33U);
  }

 private:
  std::uint64_t state_ = 15;
};

Totals trySequences(const std::vector<std::filesystem::path>& files, int sequences) {
  Totals totals;
  Document document;
  Numbers numbers;
  for (const auto& file : files) {
    const std::string body = readBytes(file);
    ++totals.bodies;
    for (int n = 0; n < sequences; ++n) {
      EXPECT_FALSE(document.read(body));
      std::string text = body;
      std::string names;
      for (std::size_t left = 2 + numbers.next() % 3; left != 0; --left) {
        const std::size_t kind = numbers.next();
        const std::size_t first = numbers.next();
        const Request request = requestSamples::chosen(kind, first, numbers.next());
        names += textOf(request) + "/ ";
        EXPECT_EQ(tryRequest(document, request, text, totals), "") << file << ": " << names;
      }
      Document fresh;
      EXPECT_FALSE(fresh.read(text));
      EXPECT_EQ(documentDump::dumpOf(document), documentDump::dumpOf(fresh)) << file << ": " << names;
    }
  }
  return totals;
}

std::vector<std::filesystem::path> ownBodies() {
  return sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp_document/test/bodies");
}

TEST(RequestSamples, AreRightArguments) {
  for (std::size_t kind = 0; kind < requestSamples::kinds().size(); ++kind) {
    for (const Request& request : requestSamples::allOf(kind)) {
      EXPECT_FALSE(sdp::checkArguments(request)) << textOf(request);
    }
  }
  ASSERT_EQ(requestSamples::kinds().size(), sdp::requestDescriptions().size());
}

class EveryRequest : public testing::TestWithParam<std::size_t> {};

TEST_P(EveryRequest, LeavesTheProjectsBodiesAsItShould) {
  const auto files = ownBodies();
  ASSERT_GE(files.size(), 8U);
  const Totals totals = tryKind(files, GetParam());
  EXPECT_GT(totals.changed, 0U);
}

TEST_P(EveryRequest, LeavesACollectionOfBodiesAsItShould) {
  const std::string folder = corpusFolder();
  if (folder.empty()) GTEST_SKIP() << "SDP_CORPUS_DIR names no folder of bodies";
  const Totals totals = tryKind(sdpFilesBelow(folder), GetParam());
  EXPECT_GT(totals.changed, 0U);
  RecordProperty("bodies", static_cast<int>(totals.bodies));
  RecordProperty("done", static_cast<int>(totals.done));
  RecordProperty("refused", static_cast<int>(totals.refused));
}

INSTANTIATE_TEST_SUITE_P(Documents, EveryRequest,
                         testing::Range<std::size_t>(0, requestSamples::kinds().size()),
                         [](const testing::TestParamInfo<std::size_t>& kind) {
                           std::string name(requestSamples::kinds()[kind.param].name);
                           name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                           return name;
                         });

TEST(Sequences, LeaveTheProjectsBodiesAsTheyShould) {
  const Totals totals = trySequences(ownBodies(), 150);
  EXPECT_GT(totals.changed, totals.refused);
}

TEST(Sequences, LeaveACollectionOfBodiesAsTheyShould) {
  const std::string folder = corpusFolder();
  if (folder.empty()) GTEST_SKIP() << "SDP_CORPUS_DIR names no folder of bodies";
  const Totals totals = trySequences(sdpFilesBelow(folder), 20);
  EXPECT_GT(totals.changed, totals.refused);
}

}  // namespace
