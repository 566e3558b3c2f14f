#include "editSteps.h"

#include <random>

#include "documentTestSupport.h"
#include "editModel.h"
#include "testFiles.h"

// Edits, requests and questions in any order: a document that is kept is at each step what its text is.

namespace {

using plain::EditSteps;

/// Steps with one document and one body after the other.
void expectSteps(sdp::Document& document, const std::string& body, std::uint32_t seed, std::size_t count,
                 std::size_t dumpEach = 1) {
  std::mt19937 numbers(seed);
  EditSteps steps(document, body, dumpEach);
  for (std::size_t n = 0; n < count; ++n) {
    const std::size_t kind = numbers();
    const std::size_t a = numbers();
    const std::size_t b = numbers();
    const std::string complaint = steps.step(kind, a, b, numbers());
    ASSERT_EQ(complaint, "") << "step " << n << " of seed " << seed << " of\n" << body;
  }
}

TEST(StepsOfEdits, LeaveADocumentThatIsKeptWhatItsTextIs) {
  sdp::Document document;
  std::size_t bodies = 0;
  for (const auto& file : sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp_document/test/bodies")) {
    SCOPED_TRACE(file);
    const std::string body = readBytes(file);
    for (std::uint32_t seed = 0; seed < 3; ++seed) expectSteps(document, body, seed, 30);
    ++bodies;
  }
  EXPECT_GE(bodies, 8U);
}

TEST(StepsOfEdits, MayBeOfOddBodies) {
  sdp::Document document;
  const char* const bodies[] = {
      "",
      "|",
      "v=0",
      "v=0|||",
      "m=audio 9 RTP/AVP 0",
      "|m=  audio\t9 /  RTP/AVP 0|",
      "v=0|m= audio  9/2\tRTP/AVP  0  8  |i=x||i=y|||",
      "a=group:BUNDLE 0 1 2|a=mid:0|m=x 1 y z||m=audio 9 RTP/AVP 0|a=mid:0",
      "v=0|a=sendonly|a=ice-options:trickle|m=audio 9 RTP/AVP 0|a=inactive|a=sendonly|"};
  for (const char* const body : bodies) {
    for (const std::string_view end : {"\n", "\r\n"}) {
      for (std::uint32_t seed = 100; seed < 103; ++seed)
        expectSteps(document, documentTest::withEnds(body, end), seed, 40);
    }
  }
}

TEST(StepsOfEdits, MayBeMany) {
  // So many that what edits made outgrows the text again and again.
  sdp::Document document;
  std::string body = "v=0\r\na=group:BUNDLE 0 1 2\r\n";
  for (int n = 0; n < 6; ++n) {
    body += "m=audio 9 RTP/AVP 0 96\r\na=mid:" + std::to_string(n) + "\r\na=rtpmap:96 opus/48000/2\r\n";
  }
  expectSteps(document, body, 7, 400, 25);
}

/// The model is judged where edits are told by hand, too.
TEST(TheModelOfEdits, KnowsWhatTheyDo) {
  using plain::Edit;
  using sdp::Reason;
  struct Case {
    const char* before;
    Edit edit;
    Reason reason;
    const char* after;
  };
  const char* const audio = "v=0|m=audio  9/2 RTP/AVP 0\t8 |a=x|||";
  using Kind = Edit::Kind;
  const Case cases[] = {
      {audio, {Kind::port, 1, 5004}, Reason::none, "v=0|m=audio  5004/2 RTP/AVP 0\t8 |a=x|||"},
      {audio, {Kind::port, 2, 5004}, Reason::noSuchSection, audio},
      {"m=x|", {Kind::port, 1, 5004}, Reason::unreadableSection, "m=x|"},
      {audio, {Kind::transport, 1, 0, {}, "udptl"}, Reason::none, "v=0|m=audio  9/2 udptl 0\t8 |a=x|||"},
      {audio, {Kind::transport, 1, 0, {}, "a b"}, Reason::wrongText, audio},
      {audio, {Kind::formats, 1, 0, {}, "3  4"}, Reason::none, "v=0|m=audio  9/2 RTP/AVP 3 4|a=x|||"},
      {audio,
       {Kind::connection, 1, 0, {}, "::"},
       Reason::none,
       "v=0|m=audio  9/2 RTP/AVP 0\t8 |c=IN IP6 ::|a=x|||"},
      {audio,
       {Kind::connection, 0, 0, {}, "1.2.3.4"},
       Reason::none,
       "v=0|c=IN IP4 1.2.3.4|m=audio  9/2 RTP/AVP 0\t8 |a=x|||"},
      {audio,
       {Kind::direction, 1, 0, sdp::Direction::inactive},
       Reason::none,
       "v=0|m=audio  9/2 RTP/AVP 0\t8 |a=x|a=inactive|||"},
      {audio, {Kind::direction, 1, 0, sdp::Direction::sendrecv}, Reason::none, audio},
      {audio,
       {Kind::setAttribute, 1, 0, {}, "x", "1"},
       Reason::none,
       "v=0|m=audio  9/2 RTP/AVP 0\t8 |a=x:1|||"},
      {audio,
       {Kind::addAttribute, 1, 0, {}, "x", "1"},
       Reason::none,
       "v=0|m=audio  9/2 RTP/AVP 0\t8 |a=x|a=x:1|||"},
      {audio, {Kind::removeAttributes, 1, 0, {}, "x"}, Reason::none, "v=0|m=audio  9/2 RTP/AVP 0\t8 |||"}};
  for (const Case& c : cases) {
    for (const std::string_view end : {"\n", "\r\n"}) {
      const plain::Edited found = plain::edited(documentTest::withEnds(c.before, end), c.edit);
      EXPECT_EQ(textOf(found.reason), textOf(c.reason)) << plain::wordsFor(c.edit);
      EXPECT_EQ(found.text, documentTest::withEnds(c.after, end)) << plain::wordsFor(c.edit);
    }
  }
}

}  // namespace
