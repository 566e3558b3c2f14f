#include <gtest/gtest.h>

#include "rewriteCases.h"
#include "testFiles.h"

// What `rewrite` says of a body that the requests left, and what it does not let go out.

namespace {

using rewriting::Case;
using rewriting::other;
using rewriting::runRewrite;

const std::string session = "v=0\r\no=ann 17 18 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
const std::string bundle = "a=group:BUNDLE 0 1\r\n";
const std::string audio = "m=audio 49170 RTP/AVP 9 0\r\na=mid:0\r\n";
const std::string video = "m=video 49172 RTP/AVP 31\r\na=mid:1\r\n";
const std::string text = "m=text 49174 RTP/AVP 98\r\na=rtpmap:98 t140/1000\r\n";

class RewriteNotes : public testing::TestWithParam<Case> {};

TEST_P(RewriteNotes, TellWhatARequestLeaves) { rewriting::expectBody(GetParam()); }

const Case cases[] = {
    {"anMLineWithoutAFormat",
     {"reorder-audio", "PCMA"},
     session + audio,
     session + "m=audio 49170 RTP/AVP\r\na=mid:0\r\n",
     "sdpneg: note: reorder-audio leaves an m-line without a format, line 6\n"},
    {"aFormatTwice",
     {"restrict-audio", "PCMU,PCMU", "given"},
     session + audio,
     session + "m=audio 49170 RTP/AVP 0 0\r\na=mid:0\r\n",
     "sdpneg: note: restrict-audio leaves the format 0 more than once in the m-line, line 6\n"},
    {"anEmptyLineAndAGroup",
     {"cut-video"},
     session + bundle + video + audio,
     session + bundle + "\n" + audio,
     "sdpneg: note: cut-video leaves an empty line, line 7\n"
     "sdpneg: note: cut-video leaves a BUNDLE group that names 1, a section that is gone\n"},
    {"aLostSection",
     {"remove-video", "all"},
     session + "m=video 49172 RTP/AVP 31\r\nm=audio 49170 RTP/AVP 0\r\n" + text + "c=IN IP4 192.0.2.10\r\n",
     session + "m=video 0 RTP/AVP 31\r\nc=IN IP4 192.0.2.10\r\n" + text + "c=IN IP4 192.0.2.10\r\n",
     "sdpneg: note: remove-video loses 1 of 1 audio section\n"},
    {"whatBelongsToTheOtherVideo",
     {"add-video", other},
     session + video + text,
     session + "m=video 49172 RTP/AVP 31\r\n",
     "sdpneg: note: add-video loses 1 of 1 text section\n",
     session + "m=video 49172 RTP/AVP 31\r\n"},
    {"eachRequestOfSeveral",
     {"reorder-audio", "PCMA", "--", "cut-video"},
     session + video + audio,
     session + "\n" + "m=audio 49170 RTP/AVP\r\na=mid:0\r\n",
     "sdpneg: note: reorder-audio leaves an m-line without a format, line 8\n"
     "sdpneg: note: cut-video leaves an empty line, line 6\n"}};

INSTANTIATE_TEST_SUITE_P(Requests, RewriteNotes, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

// What the session's 69 characters do not cover of what follows the video stays: "3456789" and CR LF.
const std::string longText = text + "a=label:01234567890123456789\r\n";
const std::string unreadable =
    "what comes of it cannot be read: line 7, column 1: expected a line of a letter, an equals sign and a value, found \"3456789\"\n";
const std::string otherVideo = session + "m=video 49172 RTP/AVP 31\r\n";

TEST(RewriteResult, ThatCannotBeReadIsRefused) {
  const Outcome outcome = runRewrite({"add-video", other}, session + video + longText, otherVideo);
  EXPECT_EQ(outcome.err, "sdpneg: (standard input): request add-video is refused: " + unreadable);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 1);
}

TEST(RewriteResult, OfEachRequestOfSeveralIsRead) {
  const Outcome outcome = runRewrite({"increase-version", "--", "add-video", other, "--", "increase-version"},
                                     session + video + longText, otherVideo);
  EXPECT_EQ(outcome.err, "sdpneg: (standard input): request 2, add-video, is refused: " + unreadable);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 1);
}

TEST(RewriteResult, ThatCannotBeReadLeavesTheFile) {
  const TemporaryFolder folder;
  const std::string body = session + video + longText;
  const std::string file = folder.write("own.sdp", body);
  const Outcome outcome =
      runSdpneg({"rewrite", "--in-place", "add-video", folder.write("other.sdp", otherVideo), file});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(readBytes(file), body);
}

}  // namespace
