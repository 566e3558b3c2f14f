#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <vector>

#include "modifiersTestSupport.h"
#include "sdpModifiers.h"

// SDP texts written from values, and m-lines doubled into a plain and a secure one.

namespace {

// --- a summary written as a body

/// A summary with an address, port 5004 and nothing else.
sSdpParsedData summary(const char* address = "192.0.2.1") {
  sSdpParsedData data;
  data.init();
  data.address.setIPAddress(address);
  data.port = 5004;
  return data;
}

sSdpParsedData summaryOf(const std::vector<unsigned char>& codecs) {
  sSdpParsedData data = summary();
  std::copy(codecs.begin(), codecs.end(), data.audioCodec);
  return data;
}

/// What encodes a summary in exactly the size that it may take.
std::string encoded(const sSdpParsedData& data, int version = 3) {
  SdpBuffer buffer(std::string(100, 'x'));
  int length = -1;
  EXPECT_EQ(sdpModifications::sdpEncoder(buffer.data(), data, version, length), 0);
  const std::string text = buffer.data();
  EXPECT_EQ(length, static_cast<int>(text.size()));
  buffer.expectGuard();
  return text;
}

/// The body of `summary()` with a list of formats and the lines behind the m-line.
std::string body(const std::string& formats, const std::string& attributes) {
  return "v=0\r\ns=-\r\nt=0 0\r\no=- 3 3 IN IP4 192.0.2.1\r\nc=IN IP4 192.0.2.1\r\nm=audio 5004 RTP/AVP " +
         formats + "\r\n" + attributes;
}

TEST(Encoder, WritesCodecsPacketTimeAndSilenceSuppression) {
  sSdpParsedData data = summaryOf({3, 1, 29});
  data.packetizationPeriod[0] = 20;
  data.silenceSuppression = FEATURE_STATE_OFF;
  const std::string lines =
      "a=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\na=rtpmap:102 telephone-event/8000\r\n";
  EXPECT_EQ(encoded(data), body("0 8 102", lines + "a=ptime:20\r\na=silenceSupp:off - - - -\r\n"));
  data.packetizationPeriod[0] = 255;
  EXPECT_EQ(encoded(data), body("0 8 102", lines + "a=silenceSupp:off - - - -\r\n"));
}

// Kept: the session's lines do not stand in the order of RFC 4566 5, which is v, o, s, c, t.
TEST(Encoder, KeepsTheSessionLinesInTheOrderVSTOC) {
  std::string letters;
  const std::string text = encoded(summary());
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) letters += text[at];
  EXPECT_EQ(letters, "vstocm");
}

TEST(Encoder, TracesThatItIsDone) {
  TraceCapture trace;
  encoded(summary());
  EXPECT_EQ(trace.lines(), (Traces{{8, 4, "The encoding of the SDP succesfully built"}}));
}

/// Format and attribute line of each codec value that has them.
const std::map<int, std::pair<std::string, std::string>> kPayloads = {
    {1, {"8 ", "a=rtpmap:8 PCMA/8000\r\n"}},         {3, {"0 ", "a=rtpmap:0 PCMU/8000\r\n"}},
    {5, {"9 ", "a=rtpmap:9 G722/8000\r\n"}},         {8, {"4 ", "a=rtpmap:4 G723/8000\r\n"}},
    {9, {"15 ", "a=rtpmap:15 G728/8000\r\n"}},       {10, {"18 ", "a=rtpmap:18 G729/8000\r\n"}},
    {11, {"18 ", "a=rtpmap:18 G729/8000\r\n"}},      {14, {"18 ", "a=rtpmap:18 G729/8000\r\n"}},
    {15, {"18 ", "a=rtpmap:18 G729/8000\r\n"}},      {20, {"101 ", "a=rtpmap:101 G726-40/8000\r\n"}},
    {21, {"100 ", "a=rtpmap:100 G726-32/8000\r\n"}}, {22, {"99 ", "a=rtpmap:99 G726-24/8000\r\n"}},
    {23, {"98 ", "a=rtpmap:98 G726-16/8000\r\n"}},   {29, {"102", "a=rtpmap:102 telephone-event/8000\r\n"}}};

TEST(Encoder, WritesEachCodecWithItsStaticPayload) {
  for (int codec = 0; codec <= 255; ++codec) {
    SCOPED_TRACE(codec);
    const auto payload = kPayloads.find(codec);
    const bool known = payload != kPayloads.end();
    EXPECT_EQ(encoded(summaryOf({static_cast<unsigned char>(codec)})),
              known ? body(payload->second.first, payload->second.second) : body("", ""));
  }
}

// Kept: all formats but that of the telephone events have a blank behind them.
TEST(Encoder, KeepsTelephoneEventsWithoutABlankBehindThem) {
  EXPECT_EQ(encoded(summaryOf({29, 3})),
            body("1020 ", "a=rtpmap:102 telephone-event/8000\r\na=rtpmap:0 PCMU/8000\r\n"));
  EXPECT_EQ(encoded(summaryOf({3})), body("0 ", "a=rtpmap:0 PCMU/8000\r\n"));
}

// Kept: 101 is G726-40 in an encoded summary and the telephone events in a user request.
TEST(Generation, KeepsPayload101ForTwoCodecs) {
  EXPECT_EQ(encoded(summaryOf({20})), body("101 ", "a=rtpmap:101 G726-40/8000\r\n"));
  SdpBuffer buffer("");
  sdpModifications::createSDPUserRequest(buffer.data(), "192.0.2.1", 5004, "telephone-event", false);
  EXPECT_NE(std::string(buffer.data()).find("a=rtpmap:101 telephone-event/8000\r\n"), std::string::npos);
}

TEST(Encoder, PassesOverUnknownAndEmptySlotsAndRepeatsWhatIsRepeated) {
  EXPECT_EQ(encoded(summaryOf({0, 10, 2, 15, 0, 200, 5})),
            body("18 18 9 ", "a=rtpmap:18 G729/8000\r\na=rtpmap:18 G729/8000\r\na=rtpmap:9 G722/8000\r\n"));
  std::vector<unsigned char> slots(20, 0);
  slots[19] = 3;
  EXPECT_EQ(encoded(summaryOf(slots)), body("0 ", "a=rtpmap:0 PCMU/8000\r\n"));
}

std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

// A telephone-event line has 35 characters, a PCMU line 22, a G729 line 23: 12 * 35 + 22 + 3 * 23 = 511.
TEST(Encoder, LeavesOutAttributeLinesThatTheirAreaCannotHoldWhole) {
  const std::string event = "a=rtpmap:102 telephone-event/8000\r\n";
  const std::string g729 = "a=rtpmap:18 G729/8000\r\n";
  const std::string pcmu = "a=rtpmap:0 PCMU/8000\r\n";
  ASSERT_EQ(12 * event.size() + pcmu.size() + 3 * g729.size(), 511U);
  std::vector<unsigned char> slots(12, 29);
  slots.insert(slots.end(), {3, 10, 10, 10});
  EXPECT_EQ(encoded(summaryOf(slots)),
            body(repeated(12, "102") + "0 18 18 18 ", repeated(12, event) + pcmu + repeated(3, g729)));
  slots[12] = 10;  // 512
  EXPECT_EQ(encoded(summaryOf(slots)),
            body(repeated(12, "102") + "18 18 18 18 ", repeated(12, event) + repeated(3, g729)));
  EXPECT_EQ(encoded(summaryOf(std::vector<unsigned char>(20, 29))),
            body(repeated(20, "102"), repeated(14, event)));
  slots.assign(20, 29);
  slots[14] = 21;  // 27 characters do not fit behind 490
  EXPECT_EQ(encoded(summaryOf(slots)),
            body(repeated(14, "102") + "100 " + repeated(5, "102"), repeated(14, event)));
  slots.assign(20, 29);
  slots[13] = 21;  // 455 and 27; then a telephone event does not fit and PCMU does
  slots[15] = 3;
  EXPECT_EQ(encoded(summaryOf(slots)), body(repeated(13, "102") + "100 1020 " + repeated(4, "102"),
                                            repeated(13, event) + "a=rtpmap:100 G726-32/8000\r\n" + pcmu));
}

TEST(Encoder, WritesVersionPortAndPacketTimeAsNumbers) {
  const auto wanted = [](const std::string& version, const std::string& port, const std::string& rest) {
    return "v=0\r\ns=-\r\nt=0 0\r\no=- " + version + " " + version +
           " IN IP4 192.0.2.1\r\nc=IN IP4 192.0.2.1\r\nm=audio " + port + " RTP/AVP \r\n" + rest;
  };
  sSdpParsedData data = summary();
  EXPECT_EQ(encoded(data, 0), wanted("0", "5004", ""));
  EXPECT_EQ(encoded(data, std::numeric_limits<int>::min()), wanted("-2147483648", "5004", ""));
  EXPECT_EQ(encoded(data, std::numeric_limits<int>::max()), wanted("2147483647", "5004", ""));
  data.port = 0;
  EXPECT_EQ(encoded(data, 1), wanted("1", "0", ""));
  data.port = 2147483647U;
  EXPECT_EQ(encoded(data, 1), wanted("1", "2147483647", ""));
  data.port = 2147483648U;
  EXPECT_EQ(encoded(data, 1), wanted("1", "-2147483648", ""));
  data.port = 4294967295U;
  EXPECT_EQ(encoded(data, 1), wanted("1", "-1", ""));
  data.port = 9;
  data.packetizationPeriod[0] = 0;
  EXPECT_EQ(encoded(data, 1), wanted("1", "9", "a=ptime:0\r\n"));
  data.packetizationPeriod[0] = 254;
  data.packetizationPeriod[1] = 30;
  EXPECT_EQ(encoded(data, 1), wanted("1", "9", "a=ptime:254\r\n"));
}

TEST(Encoder, WritesSilenceSuppressionOnlyWhenItIsOnOrOff) {
  sSdpParsedData data = summary();
  for (const int state : {0, 3, 255}) {
    data.silenceSuppression = static_cast<std::uint8_t>(state);
    EXPECT_EQ(encoded(data), body("", ""));
  }
  data.silenceSuppression = 1;
  EXPECT_EQ(encoded(data), body("", "a=silenceSupp:on - - - -\r\n"));
  data.silenceSuppression = 2;
  EXPECT_EQ(encoded(data), body("", "a=silenceSupp:off - - - -\r\n"));
}

// Kept: the address type is IP4 whatever the address is.
TEST(Encoder, KeepsTheAddressTypeIP4ForEveryAddress) {
  const auto wanted = [](const std::string& address) {
    return "v=0\r\ns=-\r\nt=0 0\r\no=- 3 3 IN IP4 " + address + "\r\nc=IN IP4 " + address +
           "\r\nm=audio 5004 RTP/AVP \r\n";
  };
  for (const char* address : {"2001:db8::1", "2001:db8:1111:2222:3333:4444:5555:6666", "255.255.255.255"}) {
    EXPECT_EQ(encoded(summary(address)), wanted(address));
  }
  EXPECT_EQ(encoded(summary("none")), wanted("0.0.0.0"));
}

TEST(Encoder, WritesNothingIntoANullText) {
  int length = -1;
  EXPECT_EQ(sdpModifications::sdpEncoder(nullptr, summary(), 1, length), 0);
  EXPECT_EQ(length, 0);
}

// --- a body for a list of codec names

std::string requested(const std::string& ip, unsigned int port, const std::string& codecs, bool inactive) {
  SdpBuffer buffer(std::string(100, 'x'));
  EXPECT_EQ(sdpModifications::createSDPUserRequest(buffer.data(), ip.c_str(), port, codecs.c_str(), inactive),
            0);
  const std::string text = buffer.data();
  EXPECT_LE(text.size(), kLongestBody);
  buffer.expectGuard();
  return text;
}

std::string requestBody(const std::string& ip, const std::string& port, const std::string& formats,
                        const std::string& attributes) {
  return "v=0\r\no=- 0 0 IN IP4 " + ip + "\r\ns=-\r\nc=IN IP4 " + ip + "\r\nt=0 0\r\nm=audio " + port +
         " RTP/AVP" + formats + "\r\n" + attributes;
}

const std::string kPcmu = "a=rtpmap:0 PCMU/8000\r\n";
const std::string kPcma = "a=rtpmap:8 PCMA/8000\r\n";
const std::string kG729 = "a=rtpmap:18 G729/8000\r\n";
const std::string kG723 = "a=rtpmap:4 G723/8000\r\n";
const std::string kEvent = "a=rtpmap:101 telephone-event/8000\r\n";

struct Request {
  const char* name;
  std::string codecs;
  std::string formats;
  std::string attributes;
};

class UserRequest : public testing::TestWithParam<Request> {};

TEST_P(UserRequest, ListsTheCodecsThatItsItemsName) {
  const Request& one = GetParam();
  EXPECT_EQ(requested("192.0.2.1", 5004, one.codecs, false),
            requestBody("192.0.2.1", "5004", one.formats, one.attributes));
  EXPECT_EQ(requested("192.0.2.1", 5004, one.codecs, true),
            requestBody("192.0.2.1", "5004", one.formats, one.attributes + "a=inactive\r\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UserRequest,
    testing::Values(Request{"one", "G729", " 18", kG729},
                    Request{"allInTheListsOrder", "telephone-event,G723,G729,PCMA,PCMU", " 101 4 18 8 0",
                            kEvent + kG723 + kG729 + kPcma + kPcmu},
                    Request{"unknownAddsNothing", "G729,foo", " 18", kG729},
                    Request{"pcmuWhenAllAreUnknown", "foo", " 0", kPcmu},
                    Request{"pcmuForAnEmptyList", "", " 0", kPcmu},
                    Request{"pcmuForCommasOnly", ",,,", " 0", kPcmu},
                    Request{"repeatedItemsRepeat", "PCMA,PCMA", " 8 8", kPcma + kPcma},
                    Request{"severalNamesInOneItemInFixedOrder", "telephone-event G723 PCMA PCMU G729",
                            " 0 8 18 4 101", kPcmu + kPcma + kG729 + kG723 + kEvent},
                    Request{"aNameTwiceInOneItemIsOne", "PCMA PCMA", " 8", kPcma},
                    Request{"namesInsideWords", "xPCMAy,G729/8000", " 8 18", kPcma + kG729},
                    Request{"emptyItems", ",PCMA,,G729,", " 8 18", kPcma + kG729},
                    Request{"caseCounts", "pcma,g729", " 0", kPcmu},
                    Request{"aNameOverTwoItemsIsNone", "PC,MA", " 0", kPcmu},
                    Request{"longItem", std::string(18000, 'x') + "PCMA" + std::string(18000, 'x') + ",G729",
                            " 8 18", kPcma + kG729},
                    Request{"conversionsAndBytesAbove127", "%s%n,\xFF\x80,PCMA", " 8", kPcma}),
    [](const auto& tested) { return tested.param.name; });

TEST(UserRequest, WritesAddressAndPortAsGiven) {
  EXPECT_EQ(requested("", 0, "PCMA", false), requestBody("", "0", " 8", kPcma));
  EXPECT_EQ(requested("%s::%n", 4294967295U, "PCMA", false),
            requestBody("%s::%n", "4294967295", " 8", kPcma));
}

TEST(UserRequest, IsCutAtTheCapacity) {
  // The address stands twice, so that the port makes odd lengths.
  const auto whole = [](const std::string& ip, unsigned int port, bool inactive) {
    return requestBody(ip, std::to_string(port), " 8", kPcma + (inactive ? "a=inactive\r\n" : ""));
  };
  const std::size_t beside = whole("", 1, true).size();
  const std::size_t half = (kLongestBody - beside) / 2;
  for (std::size_t length = half - 10; length < half + 30; ++length) {
    for (const unsigned int port : {1U, 10U}) {
      const std::string ip(length, '1');
      EXPECT_EQ(requested(ip, port, "PCMA", true), whole(ip, port, true).substr(0, kLongestBody));
    }
  }
  const std::string huge(60000, '1');
  EXPECT_EQ(requested(huge, 1, "PCMA", true), whole(huge, 1, true).substr(0, kLongestBody));
  std::string formats;
  std::string codecs;
  for (int i = 0; i < 10000; ++i) {
    formats += " 18";
    codecs += "G729,";
  }
  EXPECT_EQ(requested("1", 1, codecs, true), requestBody("1", "1", formats, "").substr(0, kLongestBody));
}

TEST(UserRequest, RefusesNullArguments) {
  SdpBuffer buffer("before");
  const std::string all = buffer.all();
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::createSDPUserRequest(buffer.data(), nullptr, 1, "PCMA", false), 1);
  EXPECT_EQ(sdpModifications::createSDPUserRequest(buffer.data(), "192.0.2.1", 1, nullptr, false), 1);
  EXPECT_EQ(sdpModifications::createSDPUserRequest(nullptr, "192.0.2.1", 1, "PCMA", false), 1);
  EXPECT_EQ(trace.lines(), Traces(3, TraceLine{2, 2, "Invalid input arguments. Cannot create SDP message."}));
  EXPECT_TRUE(buffer.all() == all);
}

// --- a disabled m-line

TEST(DummyMLine, IsOfTheMediaThatTheCodeTells) {
  const auto line = [](int code, bool secure) {
    const auto out = std::make_unique<char[]>(30);
    const int length = sdpModifications::buildDummyMLine(out.get(), static_cast<char>(code), secure);
    const std::string text = out.get();
    EXPECT_EQ(length, static_cast<int>(text.size()));
    return text;
  };
  for (int code = -128; code <= 127; ++code) {
    const char* plain = code < 26   ? "m=audio 0 RTP/AVP 0\r\n"
                        : code < 51 ? "m=video 0 RTP/AVP 31\r\n"
                        : code < 76 ? "m=application 0 RTP/AVP 0\r\n"
                                    : "m=image 0 RTP/AVP 0\r\n";
    const char* secure = code < 26   ? "m=audio 0 RTP/SAVP 0\r\n"
                         : code < 51 ? "m=video 0 RTP/SAVP 31\r\n"
                         : code < 76 ? "m=application 0 RTP/SAVP 0\r\n"
                                     : "m=image 0 RTP/SAVP 0\r\n";
    EXPECT_EQ(line(code, false), plain) << code;
    EXPECT_EQ(line(code, true), secure) << code;
  }
  EXPECT_EQ(sdpModifications::buildDummyMLine(nullptr, 1, true), 0);
}

// --- m-lines doubled

const std::string kSession = "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n";

struct Doubling {
  const char* name;
  std::string before;
  std::string after;
};

class MLineDoubling : public testing::TestWithParam<Doubling> {};

TEST_P(MLineDoubling, MakesAPlainAndASecureMLineOfEach) {
  expectEdit(GetParam().before, sdpModifications::sdpBuild2mLineSDP, 0, GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MLineDoubling,
    testing::Values(
        Doubling{"audio", kSession + "m=audio 4000 RTP/AVP 0 8\r\na=rtpmap:0 PCMU/8000\r\na=sendrecv\r\n",
                 kSession + "m=audio 4000 RTP/AVP 0 8\r\nm=audio 4000 RTP/SAVP 0 8\r\n"
                            "a=rtpmap:0 PCMU/8000\r\na=sendrecv\r\n"},
        Doubling{"audioAndVideo",
                 kSession + "m=audio 4000 RTP/AVP 0\r\na=ptime:20\r\nm=video 4002 RTP/AVP 97\r\n"
                            "a=rtpmap:97 H264/90000\r\n",
                 kSession + "m=audio 4000 RTP/AVP 0\r\nm=audio 4000 RTP/SAVP 0\r\na=ptime:20\r\n"
                            "m=video 4002 RTP/AVP 97\r\nm=video 4002 RTP/SAVP 97\r\n"
                            "a=rtpmap:97 H264/90000\r\n"},
        Doubling{"bareLf", "v=0\nm=audio 4000 RTP/AVP 0\na=x\n",
                 "v=0\nm=audio 4000 RTP/AVP 0\nm=audio 4000 RTP/SAVP 0\na=x\n"},
        Doubling{"secureAlready", "m=audio 4000 RTP/SAVP 0\r\na=x\r\n",
                 "m=audio 4000 RTP/SAVP 0\r\nm=audio 4000 RTP/SAVP 0\r\na=x\r\n"},
        Doubling{"secureWithFeedback", "m=audio 4000 RTP/SAVPF 0\r\n",
                 "m=audio 4000 RTP/SAVPF 0\r\nm=audio 4000 RTP/SAVPF 0\r\n"},
        Doubling{"plainWithFeedback", "m=audio 4000 RTP/AVPF 0\r\n",
                 "m=audio 4000 RTP/AVPF 0\r\nm=audio 4000 RTP/SAVP 0\r\n"},
        Doubling{"noFormats", "m=audio 4000 RTP/AVP\r\n", "m=audio 4000 RTP/AVP\r\nm=audio 4000 RTP/AVP\r\n"},
        Doubling{"noPort", "m=audio RTP/AVP 0\r\n", "m=audio RTP/AVP 0\r\nm=audio RTP/AVP 0\r\n"},
        Doubling{"otherTransport", "m=image 4000 udptl t38\r\n",
                 "m=image 4000 udptl t38\r\nm=image 4000 udptl t38\r\n"},
        Doubling{"prefixOnly", "m=\n", "m=\nm=\n"}, Doubling{"noMLine", kSession, kSession},
        Doubling{"empty", "", ""}, Doubling{"withoutLf", "m=audio 4000 RTP/AVP 0", "m=audio 4000 RTP/AVP 0"},
        Doubling{"secondWithoutLf", "m=audio 4000 RTP/AVP 0\r\nm=video 4002 RTP/AVP 97",
                 "m=audio 4000 RTP/AVP 0\r\nm=audio 4000 RTP/SAVP 0\r\nm=video 4002 RTP/AVP 97"},
        Doubling{"bytesAbove127", "m=\xFF\x80 1 RTP/AVP 0\r\n",
                 "m=\xFF\x80 1 RTP/AVP 0\r\nm=\xFF\x80 1 RTP/SAVP 0\r\n"},
        Doubling{"nothingBehindTheNul", std::string("v=0\r\n\0m=audio 1 RTP/AVP 0\r\n", 28), "v=0\r\n"}),
    [](const auto& tested) { return tested.param.name; });

// Kept: "m=" is searched for anywhere, inside values too.
INSTANTIATE_TEST_SUITE_P(
    MatchesInsideValuesCount, MLineDoubling,
    testing::Values(Doubling{"keyEndingInAnEqualSign", "m=audio 1 RTP/SAVP 0\r\na=key:Rm==\r\na=x\r\n",
                             "m=audio 1 RTP/SAVP 0\r\nm=audio 1 RTP/SAVP 0\r\na=key:Rm==\r\nm==\r\na=x\r\n"},
                    Doubling{"sessionName", "s=m=audio 0 RTP/AVP 0\r\nt=0 0\r\n",
                             "s=m=audio 0 RTP/AVP 0\r\nm=audio 0 RTP/SAVP 0\r\nt=0 0\r\n"}),
    [](const auto& tested) { return tested.param.name; });

TEST(Build2mLineSDP, TracesItsWay) {
  TraceCapture trace;
  SdpBuffer buffer("m=audio 4000 RTP/AVP 0\r\nm=image 4002 udptl t38\r\n");
  sdpModifications::sdpBuild2mLineSDP(buffer.data());
  EXPECT_EQ(trace.takeLines(),
            (Traces{{2, 2, "Entering sdpBuild2mLineSDP() method."},
                    {2, 2, "Entering sdpReplaceMLineTransportProtocol() method."},
                    {2, 2, " sdpReplaceMLineTransportProtocol() method. Changing transport type"},
                    {2, 2, "Entering sdpReplaceMLineTransportProtocol() method."},
                    {2, 2, "Exiting sdpBuild2mLineSDP() method."}}));
  EXPECT_EQ(sdpModifications::sdpBuild2mLineSDP(nullptr), 0);
  EXPECT_EQ(trace.takeLines(), (Traces{{2, 2, "Entering sdpBuild2mLineSDP() method."},
                                       {2, 2, "Exiting sdpBuild2mLineSDP() method."}}));
}

TEST(Build2mLineSDP, LeavesATextWithoutNulAlone) {
  const std::string text = withoutNul("m=audio 4000 RTP/AVP 0\r\n");
  expectUntouched(text, sdpModifications::sdpBuild2mLineSDP, 0);
  TraceCapture trace;
  SdpBuffer buffer(text);
  sdpModifications::sdpBuild2mLineSDP(buffer.data());
  EXPECT_EQ(
      trace.count(4, 3, "sdpBuild2mLineSDP(): The SDP buffer is null or holds no end of text. Exiting."), 1);
}

const TraceLine kNoRoomForMLine = {
    4, 3, "sdpBuild2mLineSDP(): The SDP buffer has no room for another m-line. Exiting."};

// The m-line has 24 characters and one more when it is secure.
TEST(Build2mLineSDP, LeavesAnMLineAsItIsWhenItsCopyDoesNotFit) {
  const std::string before = "m=audio 4000 RTP/AVP 0\r\n";
  const std::string after = before + "m=audio 4000 RTP/SAVP 0\r\n";
  for (const std::size_t room : {25U, 26U}) {
    expectEdit(filledTo(kLongestBody - room, before), sdpModifications::sdpBuild2mLineSDP, 0,
               filledTo(kLongestBody - room + 25, after));
  }
  for (const std::size_t room : {0U, 23U, 24U}) {  // 24: the copy fits, the longer transport does not
    const std::string full = filledTo(kLongestBody - room, before);
    expectEdit(full, sdpModifications::sdpBuild2mLineSDP, 0, full);
    TraceCapture trace;
    SdpBuffer buffer(full);
    sdpModifications::sdpBuild2mLineSDP(buffer.data());
    EXPECT_EQ(trace.count(kNoRoomForMLine.flag, kNoRoomForMLine.level, kNoRoomForMLine.text), 1);
    EXPECT_EQ(trace.lines().back(), (TraceLine{2, 2, "Exiting sdpBuild2mLineSDP() method."}));
  }
}

TEST(Build2mLineSDP, KeepsThePairsMadeBeforeTheOneThatDoesNotFit) {
  const std::string audio = "m=audio 4000 RTP/AVP 0\r\n";
  const std::string video = "m=video 4002 RTP/AVP 31\r\n";
  const std::string doubled = audio + "m=audio 4000 RTP/SAVP 0\r\n";
  expectEdit(filledTo(kLongestBody - 50, audio + video), sdpModifications::sdpBuild2mLineSDP, 0,
             filledTo(kLongestBody - 25, doubled + video));
}

TEST(Build2mLineSDP, EndsOnALineThatHoldsItsOwnPrefix) {
  // The line's second "m=" is taken for the copy's, so that every copy is doubled again until the text is full.
  const std::string line = "m=x m=y\n";
  expectEdit(line, sdpModifications::sdpBuild2mLineSDP, 0,
             repeated(static_cast<int>(kLongestBody / line.size()), line));
  // Here the search goes on inside the first copy, at its third "m=".
  expectEdit("m=m=m=\n", sdpModifications::sdpBuild2mLineSDP, 0, repeated(2047, "m=m=m=\nm=\n") + "m=m=m=\n");
}

TEST(Build2mLineSDP, DoublesHundredsOfMLines) {
  std::string before;
  std::string after;
  for (int port = 1000; port < 1300; ++port) {
    const std::string number = std::to_string(port);
    before += "m=audio " + number + " RTP/AVP 0\r\n";
    after += "m=audio " + number + " RTP/AVP 0\r\nm=audio " + number + " RTP/SAVP 0\r\n";
  }
  ASSERT_LE(after.size(), kLongestBody);
  expectEdit(before, sdpModifications::sdpBuild2mLineSDP, 0, after);
}

}  // namespace
