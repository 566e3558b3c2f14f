#include <gtest/gtest.h>

#include "bodies.h"
#include "process.h"

namespace {

const std::string body(bodies::audioCall);

std::string created(const std::string& address, const std::string& port, const std::string& formats,
                    const std::string& lines) {
  return "v=0\r\no=- 0 0 IN IP4 " + address + "\r\ns=-\r\nc=IN IP4 " + address + "\r\nt=0 0\r\nm=audio " +
         port + " RTP/AVP" + formats + "\r\n" + lines;
}

TEST(Create, WritesABody) {
  const std::string pcmu = "a=rtpmap:0 PCMU/8000\r\n";
  const std::string pcma = "a=rtpmap:8 PCMA/8000\r\n";
  const struct {
    std::vector<std::string> words;
    std::string expected;
  } cases[] = {
      {{"192.0.2.1", "4000"}, created("192.0.2.1", "4000", " 0", pcmu)},
      {{"192.0.2.1", "0", "PCMA"}, created("192.0.2.1", "0", " 8", pcma)},
      {{"192.0.2.1", "65535", "pcma,PCMU"}, created("192.0.2.1", "65535", " 8 0", pcma + pcmu)},
      {{"192.0.2.1", "1024", "G729", "g723,telephone-event"},
       created("192.0.2.1", "1024", " 18 4 101",
               "a=rtpmap:18 G729/8000\r\na=rtpmap:4 G723/8000\r\na=rtpmap:101 telephone-event/8000\r\n")},
      {{"--inactive", "192.0.2.1", "4000"}, created("192.0.2.1", "4000", " 0", pcmu + "a=inactive\r\n")}};
  for (const auto& each : cases) {
    std::vector<std::string> arguments = {"create"};
    arguments.insert(arguments.end(), each.words.begin(), each.words.end());
    const Outcome outcome = runSdpneg(arguments);
    EXPECT_EQ(outcome.out, each.expected);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
  }
}

TEST(Create, WritesTheAddressTypeOfAnIPv6Address) {
  for (const std::string& address : {std::string("2001:db8::1"), std::string("::ffff:192.0.2.1")}) {
    const Outcome outcome = runSdpneg({"create", address, "4000"});
    EXPECT_EQ(outcome.out, "v=0\r\no=- 0 0 IN IP6 " + address + "\r\ns=-\r\nc=IN IP6 " + address +
                               "\r\nt=0 0\r\nm=audio 4000 RTP/AVP 0\r\na=rtpmap:0 PCMU/8000\r\n");
    EXPECT_EQ(outcome.status, 0);
    const Outcome inspected = runSdpneg({"inspect"}, {.input = outcome.out});
    EXPECT_NE(inspected.out.find("  address           " + address + " (IPv6)\n"), std::string::npos)
        << inspected.out;
    EXPECT_EQ(inspected.err, "");
  }
}

TEST(Create, SaysWhyTheLibraryRefuses) {
  const Outcome port = runSdpneg({"create", "192.0.2.1", "80"});
  EXPECT_EQ(port.err, "sdpneg: create is refused: Invalid port number (80) entry.\n");
  EXPECT_EQ(port.out, "");
  EXPECT_EQ(port.status, 1);
  const Outcome address = runSdpneg({"create", "host", "4000"});
  EXPECT_EQ(address.err,
            "sdpneg: create is refused: Invalid IP address. Cannot create SDP message. Exiting.\n");
  EXPECT_EQ(address.status, 1);
}

TEST(Create, WritesADummyAnswer) {
  const auto session = [](const std::string& address) {
    return "v=0\r\no=QnSIP 0 1 IN " + address + "\r\ns=SIP Call\r\nc=IN " + address + "\r\nt=0 0\r\n";
  };
  const auto media = [](const std::string& transport) {
    return "m=audio 0 " + transport +
           " 8 0 18 4 96 98 99\r\n"
           "a=rtpmap:8 PCMA/8000\r\na=rtpmap:0 PCMU/8000\r\na=rtpmap:18 G729/8000\r\na=rtpmap:4 G723/8000\r\n"
           "a=rtpmap:96 CLEARMODE/8000\r\na=rtpmap:98 telephone-event/8000\r\na=rtpmap:99 red/8000\r\n"
           "a=silenceSupp:off - - - -\r\na=fmtp:18 annexb=yes\r\na=fmtp:4 annexa=no\r\n"
           "a=fmtp:98 0-15,32-36,49\r\na=fmtp:99 98\r\n";
  };
  EXPECT_EQ(runSdpneg({"create", "--dummy-answer"}).out,
            session("IP4 0.0.0.0") + media("RTP/SAVP") + media("RTP/AVP"));
  EXPECT_EQ(runSdpneg({"create", "--dummy-answer", "--session-only"}).out, session("IP4 0.0.0.0"));
  const Outcome outcome = runSdpneg({"create", "--dummy-answer", "--ipv6", "--session-only"});
  EXPECT_EQ(outcome.out, session("IP6 ::"));
  EXPECT_EQ(outcome.status, 0);
}

TEST(Create, RefusesWrongUsage) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"create"},
                                                    {"create", "192.0.2.1"},
                                                    {"create", "192.0.2.1", "x"},
                                                    {"create", "192.0.2.1", "-1"},
                                                    {"create", "192.0.2.1", "4294967296"},
                                                    {"create", "192.0.2.1", "4000", "opus"},
                                                    {"create", "192.0.2.1", "4000", "--ipv6"},
                                                    {"create", "192.0.2.1", "4000", "--session-only"},
                                                    {"create", "--dummy-answer", "192.0.2.1"},
                                                    {"create", "--dummy-answer", "--inactive"}}) {
    const Outcome outcome = runSdpneg(arguments);
    EXPECT_EQ(outcome.status, 64) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.out, "");
  }
}

class Compare : public testing::Test {
 protected:
  Outcome compare(const std::string& a, const std::string& b) {
    return runSdpneg({"compare", folder.write("a", a), folder.write("b", b)});
  }
  std::string names() const { return "\n--- " + folder.path("a") + "\n+++ " + folder.path("b") + "\n"; }

  TemporaryFolder folder;
};

TEST_F(Compare, FindsTheSame) {
  const Outcome outcome = compare(body, body);
  EXPECT_EQ(outcome.out,
            "  bodies            the same (o-lines aside)\n"
            "  origin lines      equal\n"
            "  B updates A       yes\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(Compare, TellsAnUpdateFromItsReverse) {
  const std::string later = replaced(body, " 17 18 ", " 17 19 ");
  const Outcome update = compare(body, later);
  EXPECT_EQ(
      update.out,
      "  bodies            the same (o-lines aside)\n"
      "  origin lines      different\n"
      "  B updates A       yes\n" +
          names() +
          "@@ -1,5 +1,5 @@\n v=0\n-o=ann 17 18 IN IP4 192.0.2.10\n+o=ann 17 19 IN IP4 192.0.2.10\n s=-\n"
          " c=IN IP4 192.0.2.10\n b=AS:80\n");
  EXPECT_EQ(update.status, 0);
  const Outcome reverse = compare(later, body);
  EXPECT_NE(reverse.out.find("  B updates A       no\n"), std::string::npos);
  EXPECT_EQ(reverse.status, 0);
}

TEST_F(Compare, DoesNotTakeAnotherSessionForAnUpdate) {
  for (const char* origin : {" 16 19 ", " 18 19 "}) {
    EXPECT_NE(compare(body, replaced(body, " 17 18 ", origin)).out.find("  B updates A       no\n"),
              std::string::npos);
  }
}

TEST_F(Compare, FindsADifference) {
  const Outcome outcome = compare(body, body + "a=sendonly\n");
  EXPECT_EQ(outcome.out,
            "  bodies            different (o-lines aside)\n"
            "  origin lines      equal\n"
            "  B updates A       yes\n" +
                names() +
                "@@ -8,3 +8,4 @@\n a=rtpmap:8 PCMA/8000\n a=rtpmap:101 telephone-event/8000\n a=ptime:20\n"
                "+a=sendonly\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(Compare, TakesBodiesWithoutSLineForDifferent) {
  const std::string text = replaced(body, "s=-\n", "");
  const Outcome outcome = compare(text, text);
  EXPECT_TRUE(outcome.out.starts_with("  bodies            different")) << outcome.out;
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(Compare, TakesTheBodiesOutOfMessages) {
  const Outcome outcome = compare("SIP/2.0 200 OK\nCSeq: 1 INVITE\n\n" + body, body);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out.find("@@"), std::string::npos);
}

TEST_F(Compare, SaysWhatIsWrongWithBothInputs) {
  const Outcome outcome = compare("hello\n", std::string(bodies::browserOffer));
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "sdpneg: " + folder.path("a") + ":1:1: expected a first line \"v=\", found \"hello\"\n" +
                "sdpneg: " + folder.path("b") + ":5:9: the port of m-line 1 (audio), 9, is below 1024\n");
  EXPECT_EQ(outcome.status, 2);
}

TEST_F(Compare, RefusesWrongUsage) {
  const std::string file = folder.write("a", body);
  EXPECT_EQ(runSdpneg({"compare"}).status, 64);
  EXPECT_EQ(runSdpneg({"compare", file}).status, 64);
  EXPECT_EQ(runSdpneg({"compare", file, file, file}).status, 64);
  EXPECT_EQ(runSdpneg({"compare", "-", "-"}, {.input = body}).status, 64);
  EXPECT_EQ(runSdpneg({"compare", "-", file}, {.input = body}).status, 0);
}

}  // namespace
