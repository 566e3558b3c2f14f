#include <random>

#include "modifiersTestSupport.h"
#include "sdpNegotiatorParser.h"
#include "traceCapture.h"

// Whether crypto attributes of SDES (RFC 4568) alone secure a body.

namespace {

const std::string start = "v=0\r\n";
const std::string secure = "m=audio 5004 RTP/SAVP 0\r\n";
const std::string usable = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 ";

TEST(SdesOnly, IsToldBySectionsThatAreActive) {
  struct Case {
    std::string media;
    bool wanted;
  };
  const std::string crypto = usable + "inline:a\r\n";
  const std::string keys = "a=key-mgmt:mikey x\r\n";
  const std::string plain = "m=audio 5004 RTP/AVP 0\r\n";
  const std::string idle = "m=audio 0 RTP/AVP 0\r\n";
  const Case cases[] = {
      {"", true},
      {idle, true},
      {idle + keys + idle, true},
      {"m=audio x RTP/AVP 0\r\n", true},  // no port, not active
      {"m=audio 5004\r\n", false},
      {secure + crypto, true},
      {secure, false},
      {plain + crypto, false},
      {"m=audio 5004 RTP/AVPF 0\r\n" + crypto, false},
      {"m=audio 5004 RTP/SAVPF 0\r\n" + crypto, true},
      {"m=audio 5004 udp/x 0\r\n" + crypto, true},
      {secure + "a=note:RTP/AVP\r\n" + crypto, false},  // anywhere in the section
      {secure + crypto + idle, true},
      {secure + crypto + plain, false},
      {plain + secure + crypto, false},
      {secure + keys + crypto, false},
      {secure + crypto + keys, false},
      {keys + secure + crypto, false},
      {idle + keys + secure + crypto, false},  // in front of an active section
      {secure + crypto + idle + keys, true},
      // A crypto attribute of a later section counts, of an earlier one does not.
      {secure + secure + crypto, true},
      {secure + idle + crypto, true},
      {secure + crypto + secure, false},
      {"a=crypto:\r\n" + secure, false},
      {secure + "A=CRYPTO:1\r\n", false},
      {secure + "a=crypto", false},
      {secure + "a=crypto:", true},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.media);
    expectUntouched(
        start + each.media,
        [](char* sdp) { return static_cast<unsigned short>(sdpModifications::isSDESonly(sdp) ? 1 : 0); },
        each.wanted ? 1 : 0);
  }
}

// An m-line in the text's first line is none, for it has no LF in front.
TEST(SdesOnly, DoesNotSeeAnMLineThatBeginsTheText) {
  EXPECT_TRUE(sdpModifications::isSDESonly("m=audio 5004 RTP/AVP 0\r\n"));
  EXPECT_FALSE(sdpModifications::isSDESonly("\nm=audio 5004 RTP/AVP 0\r\n"));
  EXPECT_TRUE(sdpModifications::isSDESonly(""));
}

TEST(SdesOnly, ATextThatIsNullOrHasNoEndIsRefused) {
  const TraceLine unusable{4, 3, "isSDESonly(): The SDP buffer is null or holds no end of text. Exiting."};
  TraceCapture trace;
  EXPECT_FALSE(sdpModifications::isSDESonly(nullptr));
  EXPECT_EQ(trace.takeLines(), Traces{unusable});
  const std::vector<char> endless = unterminatedBuffer();
  EXPECT_FALSE(sdpModifications::isSDESonly(endless.data()));
  EXPECT_EQ(trace.takeLines(), Traces{unusable});
}

/// Whether SDES alone secures a text, step by step.
bool askStepByStep(const std::string& text) {
  std::size_t keys = text.find("a=key-mgmt:");
  for (std::size_t at = text.find("\nm="); at != std::string::npos; at = text.find("\nm=", at + 1)) {
    unsigned short port = 0;
    if (sdpParserMessage::getMediaLinePort(text.c_str() + at, port) != 0 || port == 0) continue;
    if (keys != std::string::npos && keys < at) return false;
    const std::size_t end = std::min(text.find("\nm=", at + 1), text.size());
    if (text.find("RTP/AVP", at) < end) return false;
    keys = text.find("a=key-mgmt:", at);
    if (keys < end) return false;
    if (text.find("a=crypto:", at) == std::string::npos) return false;
  }
  return true;
}

TEST(SdesOnly, AnswersWhatEachStepByItselfAnswers) {
  const std::vector<std::string> pieces = {"\nm=audio 5004 RTP/SAVP 0\r\n",
                                           "\nm=audio 5004 RTP/SAVP 0\r\n\na=crypto:1 x y\r\n",
                                           "\nm=audio 0 RTP/AVP 0\r\n",
                                           "a=crypto:1 x y\r\n",
                                           "a=key-mgmt:mikey\r\n",
                                           "RTP/AVP",
                                           "m=",
                                           "\n",
                                           "5 "};
  std::mt19937 random(21);
  int yes = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (std::size_t n = random() % 7; n != 0; --n) text += pieces[random() % pieces.size()];
    const bool wanted = askStepByStep(text);
    yes += wanted ? 1 : 0;
    ASSERT_EQ(sdpModifications::isSDESonly(text.c_str()), wanted) << text;
  }
  EXPECT_GT(yes, 1000);
  EXPECT_LT(yes, 19000);
}

}  // namespace
