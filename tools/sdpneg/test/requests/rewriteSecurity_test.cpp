#include "rewriteCases.h"

// Requests for security, ICE and alternative addresses.

namespace {

using namespace rewriting;

const std::string session = "v=0\r\no=ann 17 18 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
const std::string rtpmap = "a=rtpmap:0 PCMU/8000\r\n";
const std::string crypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNk\r\n";
const std::string mikey = "a=key-mgmt:mikey AQAF\r\n";
const std::string plainAudio = "m=audio 49170 RTP/AVP 0\r\n" + rtpmap;
const std::string secureAudio = "m=audio 49170 RTP/SAVP 0\r\n" + rtpmap + crypto;
const std::string plainVideo = "m=video 49172 RTP/AVP 31\r\n";
const std::string secureVideo = "m=video 49172 RTP/SAVP 31\r\n" + crypto;

const std::string plain = session + plainAudio;
const std::string secure = session + secureAudio;
const std::string bestEffort = session + plainAudio + secureAudio + plainVideo + secureVideo;

const std::string iceKeys = "a=ice-ufrag:abcd\r\na=ice-pwd:abcdefghijklmnopqrstuv\r\n";
const std::string candidate4 = "a=candidate:1 1 UDP 2130706431 192.0.2.10 49170 typ host\r\n";
const std::string candidate6 = "a=candidate:2 1 UDP 2130706430 2001:db8::10 49170 typ host\r\n";

const std::string anatSession = "v=0\r\no=ann 17 18 IN IP4 192.0.2.10\r\ns=-\r\nt=0 0\r\n";
const std::string anat4 = "m=audio 49170 RTP/AVP 0\r\nc=IN IP4 192.0.2.10\r\na=mid:1\r\n";
const std::string anat6 = "m=audio 49180 RTP/SAVP 0\r\nc=IN IP6 2001:db8::10\r\na=mid:2\r\n";
const std::string anat = anatSession + "a=group:ANAT 1 2\r\n" + anat4 + anat6;

class RewriteSecurity : public testing::TestWithParam<Case> {};
TEST_P(RewriteSecurity, GivesTheNewBodyByteForByte) { expectBody(GetParam()); }

const Case cases[] = {
    {"removeIce", {"remove-ice"}, plain + iceKeys + candidate4, plain},
    {"removeCandidates",
     {"remove-candidates"},
     plain + iceKeys + candidate4 + candidate6 + "a=remote-candidates:1 192.0.2.20 5000\r\n",
     plain + iceKeys},
    {"removeCandidatesOfABodyWithout", {"remove-candidates"}, plain, plain},
    {"removeDualStackIce",
     {"remove-dual-stack-ice"},
     plain + iceKeys + candidate4 + candidate6,
     plain + iceKeys + candidate4},
    {"removeDtls", {"remove-dtls"}, plain + "a=setup:actpass\r\na=fingerprint:sha-1 AB:CD\r\n", plain},
    {"removeMikey", {"remove-mikey"}, secure + mikey, secure},
    {"removeMikeyOfABodyWithout", {"remove-mikey"}, plain, plain},
    {"removeSdes", {"remove-sdes"}, secure + mikey, without(secure, crypto) + mikey},
    {"removeSecure",
     {"remove-secure"},
     bestEffort,
     renewed(session + plainAudio + plainVideo),
     "remove-secure removed 2,29\n"},
    {"removeSecureOfAPlainBody", {"remove-secure"}, plain, plain},
    {"removeMikeyMedia",
     {"remove-secure", "mikey"},
     session + "m=audio 49170 RTP/SAVP 0\r\n" + mikey,
     renewed(session),
     "remove-secure removed 1\n"},
    {"removeMikeyBesideSdes", {"remove-secure", "mikey"}, secure + mikey, secure},
    {"removeSdesBesideMikey", {"remove-secure", "SDES"}, secure + mikey, without(secure, crypto) + mikey},
    {"removeSdesMedia",
     {"remove-secure", "sdes"},
     session + plainAudio + secureAudio,
     renewed(plain),
     "remove-secure removed 2\n"},
    {"removePlain",
     {"remove-plain"},
     bestEffort,
     renewed(session + secureAudio + secureVideo),
     "remove-plain removed 1,28\n"},
    {"removePlainOfASecureBody", {"remove-plain"}, secure, secure},
    {"restoreSecure",
     {"restore-secure", "1,28"},
     session + secureAudio + secureVideo,
     renewed(session + "m=audio 0 RTP/SAVP 0\r\n" + secureAudio + "m=video 0 RTP/SAVP 31\r\n" + secureVideo)},
    {"restoreSecureAtTheEnd",
     {"restore-secure", "2,29"},
     plain,
     renewed(plain + "m=audio 0 RTP/SAVP 0\r\nm=video 0 RTP/SAVP 31\r\n")},
    {"changeToOneMLine",
     {"change-security", "best-effort2", "best-effort1"},
     bestEffort,
     replaced(session + secureAudio + secureVideo, "SAVP", "AVP"),
     "change-security removed 1,28\n"},
    {"changeToOneMLineOnlyWherePortsAreTheSame",
     {"change-security", "best-effort2", "best-effort1"},
     replaced(bestEffort, "49172 RTP/SAVP", "49174 RTP/SAVP"),
     session + replaced(secureAudio, "SAVP", "AVP") + replaced(secureVideo, "49172", "49174"),
     "change-security removed 1,28\n"},
    {"changeToSecureOnly",
     {"change-security", "Best-Effort2", "secure"},
     bestEffort,
     session + secureAudio + secureVideo,
     "change-security removed 1,28\n"},
    {"doubleMLines",
     {"double-mlines"},
     session + plainAudio + plainVideo,
     session + "m=audio 49170 RTP/AVP 0\r\n" + without(secureAudio, crypto) + plainVideo +
         without(secureVideo, crypto)},
    {"removeAnat6", {"remove-anat", "6"}, anat, renewed(anatSession + anat4), "remove-anat removed 130\n"},
    {"removeAnat4", {"remove-anat", "4"}, anat, renewed(anatSession + anat6), "remove-anat removed 1\n"},
    {"reinsertAnat",
     {"reinsert-anat", "130"},
     anatSession + anat4,
     renewed(anatSession + "a=group:ANAT 1\r\n" + anat4 + "m=audio 0 RTP/SAVP 0\r\na=mid:2\r\n")},
    {"severalRecords",
     {"remove-plain", "--", "remove-secure", "sdes"},
     bestEffort,
     renewed(session),
     "remove-plain removed 1,28\nremove-secure removed 1,27\n"}};

INSTANTIATE_TEST_SUITE_P(Requests, RewriteSecurity, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

/// The record in a line "REQUEST removed RECORD".
std::string recordIn(const std::string& line, const std::string& request) {
  const std::string begin = request + " removed ";
  EXPECT_TRUE(line.starts_with(begin)) << line;
  return line.substr(begin.size(), line.find('\n') - begin.size());
}

TEST(RewriteRecord, IsTakenBackByRestoreSecure) {
  const Outcome removed = runRewrite({"remove-secure"}, bestEffort);
  const Outcome restored = runRewrite({"restore-secure", recordIn(removed.err, "remove-secure")},
                                      replaced(removed.out, "TIME", "1"));
  EXPECT_EQ(restored.out, renewed(session + plainAudio + "m=audio 0 RTP/SAVP 0\r\n" + plainVideo +
                                  "m=video 0 RTP/SAVP 31\r\n"));
  EXPECT_EQ(restored.err, "");
}

TEST(RewriteRecord, IsTakenBackByReinsertAnat) {
  const Outcome removed = runRewrite({"remove-anat", "4"}, anat);
  const Outcome restored =
      runRewrite({"reinsert-anat", recordIn(removed.err, "remove-anat")}, replaced(removed.out, "TIME", "1"));
  EXPECT_EQ(restored.out,
            renewed(anatSession + "a=group:ANAT 2\r\nm=audio 0 RTP/AVP 0\r\na=mid:1\r\n" + anat6));
}

TEST(RewriteRecord, IsNotWrittenWhenALaterRequestIsRefused) {
  const Outcome outcome = runRewrite({"remove-plain", "--", "restrict-audio", "G722"}, bestEffort);
  EXPECT_EQ(
      outcome.err,
      "sdpneg: (standard input): request 2, restrict-audio, is refused: No common codecs found. Don't restrict any codec.\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, 1);
}

class RewriteSecurityRefused : public testing::TestWithParam<Refusal> {};
TEST_P(RewriteSecurityRefused, SaysWhyAndWritesNothing) { expectRefusal(GetParam()); }

const std::string notARecord = "RECORD of restore-secure is what a removal said that it removed";

std::string many(int count) {
  std::string record = "1";
  for (int i = 1; i < count; ++i) record += ",1";
  return record;
}

const Refusal refusals[] = {
    {"noFamily",
     {"remove-anat", "5"},
     anat,
     64,
     "FAMILY of remove-anat is an address family: 4 or 6, not '5'"},
    {"changeFromAnotherType",
     {"change-security", "plain", "secure"},
     bestEffort,
     1,
     "change-security is refused: only best-effort2 can be changed, into best-effort1 or secure"},
    {"changeToAnotherType", {"change-security", "best-effort2", "none"}, bestEffort, 1, "can be changed"},
    {"changeToWhatIsNone", {"change-security", "plain", "sdes"}, bestEffort, 64, "TO of change-security is"},
    {"doubleWithoutRoom",
     {"double-mlines"},
     full(plain),
     1,
     "double-mlines is refused: sdpBuild2mLineSDP(): The SDP buffer has no room for another m-line."},
    {"restoreWithoutRoom",
     {"restore-secure", "1"},
     full(plain),
     1,
     "restore-secure is refused: sdpReplaceTransProtocol(): The SDP buffer has no room for another m-line."},
    {"reinsertWithoutRoom",
     {"reinsert-anat", "1"},
     full(plain),
     1,
     "reinsert-anat is refused: sdpApplyAnatAttributes(): The ANAT attributes do not fit the SDP buffer."},
    {"recordOfZero", {"restore-secure", "0"}, plain, 64, notARecord},
    {"recordOf256", {"restore-secure", "256"}, plain, 64, notARecord},
    {"recordWithAGap", {"restore-secure", "1,,2"}, plain, 64, notARecord},
    {"recordOf26", {"restore-secure", many(26)}, plain, 64, notARecord},
    {"emptyRecord", {"reinsert-anat", ""}, plain, 64, "RECORD of reinsert-anat is"}};

INSTANTIATE_TEST_SUITE_P(Requests, RewriteSecurityRefused, testing::ValuesIn(refusals),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
