#include "documentTestSupport.h"

// Arguments that fit no document, and requests by their names.

namespace {

using documentTest::documentBehindHead;
using documentTest::wordsOf;
using sdp::Document;
using sdp::Reason;

struct Wrong {
  std::vector<std::string_view> words;
  Reason reason;
  std::string_view shown;  ///< in the explanation
};

TEST(Arguments, ThatAreWrongAreRefusedWhateverTheDocument) {
  const std::string longText(100, 'x');
  std::string umlauts(1, 'x');  // the 64th byte is the first of two
  std::string shownUmlauts(1, 'x');
  for (int n = 0; n < 40; ++n) umlauts += "\xc3\xa4";
  for (int n = 0; n < 31; ++n) shownUmlauts += "\xc3\xa4";
  shownUmlauts += "...";
  const Wrong cases[] = {
      {{}, Reason::unknownRequest, "(nothing)"},
      {{""}, Reason::unknownRequest, "(nothing)"},
      {{"keep"}, Reason::unknownRequest, "keep"},
      {{"Keep-codecs", "x"}, Reason::unknownRequest, "Keep-codecs"},
      {{"keep-codecs "}, Reason::unknownRequest, "keep-codecs "},
      {{"keep-codecs"}, Reason::argumentCount, "keep-codecs"},
      {{"keep-codecs", "x", "all", "all"}, Reason::argumentCount, "keep-codecs"},
      {{"drop-codecs"}, Reason::argumentCount, "drop-codecs"},
      {{"order-codecs"}, Reason::argumentCount, "order-codecs"},
      {{"anchor", "1.1.1.1"}, Reason::argumentCount, "anchor"},
      {{"anchor", "1.1.1.1", "2000", "all"}, Reason::argumentCount, "anchor"},
      {{"set-profile"}, Reason::argumentCount, "set-profile"},
      {{"opportunistic", "all", "all"}, Reason::argumentCount, "opportunistic"},
      {{"secure-only", "all", "all"}, Reason::argumentCount, "secure-only"},
      {{"unbundle", "all"}, Reason::argumentCount, "unbundle"},
      {{"strip-attributes"}, Reason::argumentCount, "strip-attributes"},
      {{"direction"}, Reason::argumentCount, "direction"},
      {{"disable"}, Reason::argumentCount, "disable"},
      {{"disable", "all", "all"}, Reason::argumentCount, "disable"},
      {{"canonical", "all"}, Reason::argumentCount, "canonical"},
      // lists of codecs
      {{"keep-codecs", ""}, Reason::wrongCodecList, "(nothing)"},
      {{"keep-codecs", ","}, Reason::wrongCodecList, ","},
      {{"keep-codecs", "PCMU,"}, Reason::wrongCodecList, "PCMU,"},
      {{"keep-codecs", ",PCMU"}, Reason::wrongCodecList, ",PCMU"},
      {{"drop-codecs", "PCMU,,PCMA"}, Reason::wrongCodecList, "PCMU,,PCMA"},
      {{"drop-codecs", "PCMU, PCMA"}, Reason::wrongCodecList, "PCMU, PCMA"},
      {{"order-codecs", "opus\t"}, Reason::wrongCodecList, "opus\\x09"},
      {{"order-codecs", "opus/"}, Reason::wrongCodecList, "opus/"},
      {{"keep-codecs", "/8000"}, Reason::wrongCodecList, "/8000"},
      {{"keep-codecs", "opus/x"}, Reason::wrongCodecList, "opus/x"},
      {{"keep-codecs", "opus/-1"}, Reason::wrongCodecList, "opus/-1"},
      {{"keep-codecs", "opus/48000/"}, Reason::wrongCodecList, "opus/48000/"},
      {{"keep-codecs", "opus/48000/x"}, Reason::wrongCodecList, "opus/48000/x"},
      {{"keep-codecs", "opus/48000/2/2"}, Reason::wrongCodecList, "opus/48000/2/2"},
      // selections
      {{"keep-codecs", "x", ""}, Reason::wrongMedia, "(nothing)"},
      {{"keep-codecs", "x", "Audio"}, Reason::wrongMedia, "Audio"},
      {{"set-profile", "RTP/AVP", "-1"}, Reason::wrongMedia, "-1"},
      {{"opportunistic", "1x"}, Reason::wrongMedia, "1x"},
      {{"secure-only", "audio,video"}, Reason::wrongMedia, "audio,video"},
      {{"strip-attributes", "x", "mid"}, Reason::wrongMedia, "mid"},
      {{"direction", "sendonly", "session"}, Reason::wrongMedia, "session"},
      {{"disable", ""}, Reason::wrongMedia, "(nothing)"},
      {{"disable", "MID=0"}, Reason::wrongMedia, "MID=0"},
      {{"disable", longText},
       Reason::wrongMedia,
       "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx..."},
      // addresses
      {{"anchor", "", "2000"}, Reason::wrongAddress, "(nothing)"},
      {{"anchor", "host.example", "2000"}, Reason::wrongAddress, "host.example"},
      {{"anchor", "1.1.1", "2000"}, Reason::wrongAddress, "1.1.1"},
      {{"anchor", "1.1.1.1.1", "2000"}, Reason::wrongAddress, "1.1.1.1.1"},
      {{"anchor", "1.1.1.256", "2000"}, Reason::wrongAddress, "1.1.1.256"},
      {{"anchor", "1.1.1.01", "2000"}, Reason::wrongAddress, "1.1.1.01"},
      {{"anchor", "1..1.1", "2000"}, Reason::wrongAddress, "1..1.1"},
      {{"anchor", "1.1.1.1/127", "2000"}, Reason::wrongAddress, "1.1.1.1/127"},
      {{"anchor", "1.1.1.4294967297", "2000"}, Reason::wrongAddress, "1.1.1.4294967297"},
      {{"anchor", "+1.1.1.1", "2000"}, Reason::wrongAddress, "+1.1.1.1"},
      {{"anchor", ":", "2000"}, Reason::wrongAddress, ":"},
      {{"anchor", ":::", "2000"}, Reason::wrongAddress, ":::"},
      {{"anchor", "1::2::3", "2000"}, Reason::wrongAddress, "1::2::3"},
      {{"anchor", "1:2:3:4:5:6:7", "2000"}, Reason::wrongAddress, "1:2:3:4:5:6:7"},
      {{"anchor", "1:2:3:4:5:6:7:8:9", "2000"}, Reason::wrongAddress, "1:2:3:4:5:6:7:8:9"},
      {{"anchor", "1:2:3:4:5:6:7:8::", "2000"}, Reason::wrongAddress, "1:2:3:4:5:6:7:8::"},
      {{"anchor", ":1:2:3:4:5:6:7", "2000"}, Reason::wrongAddress, ":1:2:3:4:5:6:7"},
      {{"anchor", "1:2:3:4:5:6:7:", "2000"}, Reason::wrongAddress, "1:2:3:4:5:6:7:"},
      {{"anchor", "::12345", "2000"}, Reason::wrongAddress, "::12345"},
      {{"anchor", "::g", "2000"}, Reason::wrongAddress, "::g"},
      {{"anchor", "fe80::1%eth0", "2000"}, Reason::wrongAddress, "fe80::1%eth0"},
      {{"anchor", "[::1]", "2000"}, Reason::wrongAddress, "[::1]"},
      {{"anchor", "::1.1.1", "2000"}, Reason::wrongAddress, "::1.1.1"},
      {{"anchor", "1.1.1.1::", "2000"}, Reason::wrongAddress, "1.1.1.1::"},
      {{"anchor", "1.1.1.1\n", "2000"}, Reason::wrongAddress, "1.1.1.1\\x0a"},
      // ports
      {{"anchor", "1.1.1.1", ""}, Reason::wrongPort, "(nothing)"},
      {{"anchor", "1.1.1.1", "0"}, Reason::wrongPort, "0"},
      {{"anchor", "1.1.1.1", "1022"}, Reason::wrongPort, "1022"},
      {{"anchor", "1.1.1.1", "1025"}, Reason::wrongPort, "1025"},
      {{"anchor", "1.1.1.1", "65535"}, Reason::wrongPort, "65535"},
      {{"anchor", "1.1.1.1", "65536"}, Reason::wrongPort, "65536"},
      {{"anchor", "1.1.1.1", "67536"}, Reason::wrongPort, "67536"},
      {{"anchor", "1.1.1.1", "4294969296"}, Reason::wrongPort, "4294969296"},
      {{"anchor", "1.1.1.1", "18446744073709553616"}, Reason::wrongPort, "18446744073709553616"},
      {{"anchor", "1.1.1.1", "-2000"}, Reason::wrongPort, "-2000"},
      {{"anchor", "1.1.1.1", "2000x"}, Reason::wrongPort, "2000x"},
      // the rest
      {{"set-profile", ""}, Reason::wrongProfile, "(nothing)"},
      {{"set-profile", "rtp/avp"}, Reason::wrongProfile, "rtp/avp"},
      {{"set-profile", "TCP/RTP/AVP"}, Reason::wrongProfile, "TCP/RTP/AVP"},
      {{"set-profile", "udptl", "all"}, Reason::wrongProfile, "udptl"},
      {{"direction", "both"}, Reason::wrongDirection, "both"},
      {{"direction", "SendOnly", "all"}, Reason::wrongDirection, "SendOnly"},
      {{"direction", ""}, Reason::wrongDirection, "(nothing)"},
      {{"strip-attributes", ""}, Reason::wrongNames, "(nothing)"},
      {{"strip-attributes", "x,"}, Reason::wrongNames, "x,"},
      {{"strip-attributes", ",x"}, Reason::wrongNames, ",x"},
      {{"strip-attributes", "*x"}, Reason::wrongNames, "*x"},
      {{"strip-attributes", "x*y"}, Reason::wrongNames, "x*y"},
      {{"strip-attributes", "x**"}, Reason::wrongNames, "x**"},
      {{"strip-attributes", "x:1"}, Reason::wrongNames, "x:1"},
      {{"strip-attributes", "x y"}, Reason::wrongNames, "x y"},
      {{"strip-attributes", "x\ty"}, Reason::wrongNames, "x\\x09y"},
      // what a log line could be forged or turned round with
      {{"disable", "a\xc2\x80\xc2\x9f\xc2\xa0z"}, Reason::wrongMedia, "a\\xc2\\x80\\xc2\\x9f\xc2\xa0z"},
      {{"disable", "\xff\xc3(\xe2\x82"}, Reason::wrongMedia, "\\xff\\xc3(\\xe2\\x82"},
      {{"disable", "\xc0\x8a\xed\xa0\x80"}, Reason::wrongMedia, "\\xc0\\x8a\\xed\\xa0\\x80"},
      {{"disable", "\xd8\x9c"}, Reason::wrongMedia, "\\xd8\\x9c"},
      {{"disable", "\xe2\x80\x8e\xe2\x80\x8f"}, Reason::wrongMedia, "\\xe2\\x80\\x8e\\xe2\\x80\\x8f"},
      {{"disable", "\xe2\x80\xa8\xe2\x80\xaa\xe2\x80\xae\xe2\x80\xaf"},
       Reason::wrongMedia,
       "\\xe2\\x80\\xa8\\xe2\\x80\\xaa\\xe2\\x80\\xae\xe2\x80\xaf"},
      {{"disable", "\xe2\x81\xa5\xe2\x81\xa6\xe2\x81\xa9"},
       Reason::wrongMedia,
       "\xe2\x81\xa5\\xe2\\x81\\xa6\\xe2\\x81\\xa9"},
      {{"disable", "\xc3\xa9\xf0\x9f\x8e\xa5\\"}, Reason::wrongMedia, "\xc3\xa9\xf0\x9f\x8e\xa5\\"},
      // a character is not cut
      {{"disable", umlauts}, Reason::wrongMedia, shownUmlauts},
      // the first that is wrong is told
      {{"keep-codecs", ",", "nosuch"}, Reason::wrongCodecList, ","},
      {{"anchor", "x", "y"}, Reason::wrongAddress, "x"},
  };
  for (const Wrong& c : cases) {
    std::string request;
    for (const std::string_view word : c.words) request.append("[").append(word).append("]");
    SCOPED_TRACE(request);
    // One that the request would change, one that it would refuse, and none.
    for (const char* const text : {"m=audio 9 RTP/AVP 0 8|a=x|", "m=audio|", ""}) {
      Document document = documentBehindHead(text);
      const std::string before(document.text());
      const sdp::Refusal refusal = perform(document, c.words);
      EXPECT_EQ(textOf(refusal.reason), textOf(c.reason));
      EXPECT_TRUE(refusal.isOfArguments());
      EXPECT_EQ(refusal.section, 0U);
      EXPECT_EQ(refusal.line, 0U);
      EXPECT_EQ(document.text(), before);
      EXPECT_EQ(document.explanation(), std::string(textOf(c.reason)) + ": " + std::string(c.shown));
      EXPECT_EQ(sdp::checkArguments(c.words), refusal);
    }
  }
}

TEST(Arguments, ThatAreRightAreSoForEveryDocument) {
  for (const char* const request : {"keep-codecs opus",
                                    "keep-codecs opus,PCMU/8000,L16/44100/2,96,telephone-event all",
                                    "keep-codecs 97/8000 1",
                                    "keep-codecs x/99999999999999999999/99999999999999999999",
                                    "drop-codecs red mid=0",
                                    "order-codecs 0 007",
                                    "anchor 0.0.0.0 1024",
                                    "anchor 255.255.255.255 65534",
                                    "anchor :: 2000",
                                    "anchor ::1 02000",
                                    "anchor 1:2:3:4:5:6:7:8 2000",
                                    "anchor 1::8 2000",
                                    "anchor 1:2:3:4:5:6:7:: 2000",
                                    "anchor ::2:3:4:5:6:7:8 2000",
                                    "anchor ::ffff:192.0.2.1 2000",
                                    "anchor 1:2:3:4:5:6:192.0.2.1 2000",
                                    "anchor ABCD:ef01:: 2000",
                                    "set-profile RTP/AVP",
                                    "set-profile UDP/TLS/RTP/SAVPF mid=a=b",
                                    "opportunistic",
                                    "opportunistic all",
                                    "secure-only",
                                    "secure-only 18446744073709551616",
                                    "unbundle",
                                    "strip-attributes *",
                                    "strip-attributes x,y*,z 0",
                                    "direction sendrecv",
                                    "direction inactive message",
                                    "disable mid=",
                                    "canonical"}) {
    SCOPED_TRACE(request);
    EXPECT_EQ(sdp::checkArguments(wordsOf(request)), sdp::Refusal{});
    Document document = documentBehindHead("");
    EXPECT_FALSE(perform(document, wordsOf(request)));
  }
}

TEST(Requests, InOneLineAreSeparatedByBlanksAndTabs) {
  struct Case {
    std::string_view line;
    std::vector<std::string_view> words;
  };
  const Case cases[] = {
      {"canonical", {"canonical"}},
      {"keep-codecs PCMA", {"keep-codecs", "PCMA"}},
      {"  keep-codecs \t PCMA\taudio ", {"keep-codecs", "PCMA", "audio"}},
      {"keep-codecs PCMA audio and more", {"keep-codecs", "PCMA", "audio", "and"}},
      {"keep-codecs 'PCMA, opus'", {"keep-codecs", "'PCMA,", "opus'"}},
      {"keep-codecs PCMA audio\r", {"keep-codecs", "PCMA", "audio\r"}},
      {"anchor 192.0.2.9 2000", {"anchor", "192.0.2.9", "2000"}},
      {"disable", {"disable"}},
      {"nosuch 1", {"nosuch", "1"}},
      {"", {}},
      {" \t", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.line);
    Document asLine = documentBehindHead("m=audio 9 RTP/AVP 0 8|a=x|");
    Document asWords = asLine;
    const sdp::Refusal refusal = perform(asWords, c.words);
    EXPECT_EQ(perform(asLine, c.line), refusal);
    EXPECT_EQ(asLine.text(), asWords.text());
    EXPECT_EQ(asLine.explanation(), asWords.explanation());
    EXPECT_EQ(sdp::checkArguments(c.line), sdp::checkArguments(c.words));
  }
  Document document = documentBehindHead("m=audio 9 RTP/AVP 0 8|");
  EXPECT_FALSE(perform(document, "\tdrop-codecs   0\taudio "));
  EXPECT_EQ(document.section(1).lines().begin()->content, "m=audio 9 RTP/AVP 8");
  EXPECT_EQ(sdp::checkArguments("keep-codecs PCMA audio video").reason, Reason::argumentCount);
}

TEST(Requests, MayBeWrittenOut) {
  Document document = documentBehindHead("m=audio 9 RTP/AVP 0 8|");
  EXPECT_FALSE(sdp::perform(document, {"drop-codecs", "0"}));
  EXPECT_EQ(document.section(1).lines().begin()->content, "m=audio 9 RTP/AVP 8");
  EXPECT_EQ(sdp::perform(document, {"drop-codecs"}).reason, Reason::argumentCount);
  EXPECT_EQ(sdp::checkArguments({"canonical", "x"}).reason, Reason::argumentCount);
  EXPECT_FALSE(sdp::checkArguments({"canonical"}));
}

struct Named {
  const char* request;
  std::function<sdp::Refusal(Document&)> call;
};

TEST(Requests, DoTheSameByTheirNamesAndAsFunctions) {
  const char* const bodies[] = {
      "a=group:BUNDLE 0 1|a=fingerprint:x|a=y|m=audio 9 RTP/AVP 0 8|a=mid:0|a=crypto:1 x y|a=y|m=video 0 "
      "RTP/AVP 31|a=mid:1|a=bundle-only|",
      "m=audio 9 RTP/SAVP 0 8|a=crypto:1 x y|m=video 9 RTP/AVP 31|a=y|",
      "m=audio 0|",
  };
  const Named requests[] = {
      {"keep-codecs PCMA", [](Document& d) { return keepCodecs(d, "PCMA"); }},
      {"keep-codecs PCMA all", [](Document& d) { return keepCodecs(d, "PCMA", "all"); }},
      {"keep-codecs opus", [](Document& d) { return keepCodecs(d, "opus"); }},
      {"drop-codecs 8 audio", [](Document& d) { return dropCodecs(d, "8", "audio"); }},
      {"order-codecs PCMA 1", [](Document& d) { return orderCodecs(d, "PCMA", "1"); }},
      {"anchor ::9 2000", [](Document& d) { return anchor(d, "::9", 2000); }},
      {"set-profile RTP/AVPF", [](Document& d) { return setProfile(d, "RTP/AVPF"); }},
      {"set-profile RTP/SAVPF audio", [](Document& d) { return setProfile(d, "RTP/SAVPF", "audio"); }},
      {"opportunistic", [](Document& d) { return makeOpportunistic(d); }},
      {"opportunistic audio", [](Document& d) { return makeOpportunistic(d, "audio"); }},
      {"secure-only", [](Document& d) { return makeSecureOnly(d); }},
      {"secure-only audio", [](Document& d) { return makeSecureOnly(d, "audio"); }},
      {"unbundle", [](Document& d) { return unbundle(d); }},
      {"strip-attributes y", [](Document& d) { return stripAttributes(d, "y"); }},
      {"strip-attributes y video", [](Document& d) { return stripAttributes(d, "y", "video"); }},
      {"direction recvonly", [](Document& d) { return setDirection(d, sdp::Direction::recvonly); }},
      {"direction inactive 2", [](Document& d) { return setDirection(d, sdp::Direction::inactive, "2"); }},
      {"disable mid=0", [](Document& d) { return disable(d, "mid=0"); }},
      {"canonical", [](Document& d) { return canonicalise(d); }},
  };
  std::size_t changed = 0;
  for (const char* const body : bodies) {
    for (const Named& request : requests) {
      SCOPED_TRACE(request.request);
      Document named = documentBehindHead(body);
      Document called = named;
      const std::string before(named.text());
      EXPECT_EQ(perform(named, wordsOf(request.request)), request.call(called));
      EXPECT_EQ(named.text(), called.text());
      EXPECT_EQ(named.explanation(), called.explanation());
      changed += named.text() != before;
    }
  }
  EXPECT_GE(changed, 25U);
}

TEST(Requests, AsFunctionsRefuseWrongArgumentsToo) {
  struct Case {
    Reason reason;
    std::function<sdp::Refusal(Document&)> call;
  };
  const Case cases[] = {
      {Reason::wrongCodecList, [](Document& d) { return keepCodecs(d, ""); }},
      {Reason::wrongCodecList, [](Document& d) { return dropCodecs(d, "a b"); }},
      {Reason::wrongMedia, [](Document& d) { return orderCodecs(d, "0", "nosuch"); }},
      {Reason::wrongAddress, [](Document& d) { return anchor(d, "x", 2000); }},
      {Reason::wrongPort, [](Document& d) { return anchor(d, "::1", 2001); }},
      {Reason::wrongPort, [](Document& d) { return anchor(d, "::1", 1022); }},
      {Reason::wrongPort, [](Document& d) { return anchor(d, "::1", 65535); }},
      {Reason::wrongProfile, [](Document& d) { return setProfile(d, "RTP"); }},
      {Reason::wrongMedia, [](Document& d) { return makeOpportunistic(d, "x"); }},
      {Reason::wrongMedia, [](Document& d) { return makeSecureOnly(d, "x"); }},
      {Reason::wrongNames, [](Document& d) { return stripAttributes(d, ""); }},
      {Reason::wrongMedia, [](Document& d) { return setDirection(d, sdp::Direction::inactive, "x"); }},
      {Reason::wrongMedia, [](Document& d) { return disable(d, ""); }},
  };
  for (const Case& c : cases) {
    Document document = documentBehindHead("m=audio 9 RTP/AVP 0 8|");
    const std::string before(document.text());
    const sdp::Refusal refusal = c.call(document);
    EXPECT_EQ(textOf(refusal.reason), textOf(c.reason));
    EXPECT_TRUE(refusal.isOfArguments());
    EXPECT_EQ(document.text(), before);
  }
}

TEST(Requests, AreDescribedInTheOrderOfTheirDocumentation) {
  std::string text;
  for (const sdp::RequestDescription& description : sdp::requestDescriptions()) {
    text.append(description.name).append(" ").append(description.arguments).append("\n");
  }
  EXPECT_EQ(
      text,
      "keep-codecs LIST [MEDIA]\ndrop-codecs LIST [MEDIA]\norder-codecs LIST [MEDIA]\nanchor ADDRESS PORT\n"
      "set-profile PROFILE [MEDIA]\nopportunistic [MEDIA]\nsecure-only [MEDIA]\nunbundle \n"
      "strip-attributes NAMES [MEDIA]\ndirection DIRECTION [MEDIA]\ndisable MEDIA\ncanonical \n");
}

TEST(Reasons, AreWordsOfTheirOwn) {
  constexpr Reason kFirstOfEachKind[] = {Reason::noMemory, Reason::unknownRequest, Reason::noSuchSection};
  constexpr Reason kLastOfEachKind[] = {Reason::textTooLong, Reason::wrongText, Reason::noVersionLine};
  std::vector<std::string_view> texts;
  for (std::size_t kind = 0; kind < std::size(kFirstOfEachKind); ++kind) {
    for (int reason = static_cast<int>(kFirstOfEachKind[kind]);
         reason <= static_cast<int>(kLastOfEachKind[kind]); ++reason) {
      texts.push_back(sdp::textOf(static_cast<Reason>(reason)));
      EXPECT_NE(texts.back(), "") << reason;
      EXPECT_EQ(sdp::Refusal{.reason = static_cast<Reason>(reason)}.isOfArguments(), kind == 1) << reason;
    }
  }
  EXPECT_EQ(texts.size(), 25U);
  std::sort(texts.begin(), texts.end());
  EXPECT_EQ(std::adjacent_find(texts.begin(), texts.end()), texts.end());
  EXPECT_EQ(sdp::textOf(Reason::none), "");
  EXPECT_FALSE(sdp::Refusal{});
  EXPECT_FALSE(sdp::Refusal{.reason = Reason::noMemory}.isOfArguments());
  EXPECT_FALSE(sdp::Refusal{.reason = Reason::noCommonCodec}.isOfArguments());
}

// --- chains ------------------------------------------------------------------------------------------------

TEST(Chains, WorkOnWhatTheRequestBeforeHasLeft) {
  Document document = documentBehindHead(
      "a=group:BUNDLE 0 1|a=ice-lite|m=Audio 9 UDP/TLS/RTP/SAVPF 111 0 8 126|c=IN IP4 0.0.0.0|a=rtpmap:111 "
      "opus/48000/2|"
      "a=rtpmap:126 telephone-event/8000|a=mid:0|a=fingerprint:sha-256 "
      "AA|a=setup:actpass|a=rtcp-mux|a=ice-ufrag:x|"
      "a=rtcp-fb:111 transport-cc|m=video 0 UDP/TLS/RTP/SAVPF 96|c=IN IP4 0.0.0.0|a=rtpmap:96 "
      "VP8/90000|a=mid:1|a=bundle-only|"
      "a=fingerprint:sha-256 AA|");
  for (const char* const request :
       {"canonical", "keep-codecs PCMA,telephone-event audio", "disable video", "anchor 192.0.2.9 2000",
        "set-profile RTP/AVP", "strip-attributes rtcp-mux", "direction sendonly audio"}) {
    EXPECT_FALSE(perform(document, wordsOf(request))) << request << ": " << document.explanation();
  }
  EXPECT_EQ(document.text(),
            documentTest::withEnds(std::string(documentTest::kHead) +
                                       "a=group:BUNDLE 0|m=audio 2000 RTP/AVP 8 126|c=IN IP4 "
                                       "192.0.2.9|a=rtpmap:126 telephone-event/8000|"
                                       "a=mid:0|a=sendonly|m=video 0 UDP/TLS/RTP/SAVPF 96|c=IN IP4 0.0.0.0|"
                                       "a=rtpmap:96 VP8/90000|a=mid:1|a=fingerprint:sha-256 AA|",
                                   "\r\n"));
}

TEST(Chains, GoOnBehindARefusal) {
  Document document = documentBehindHead("m=audio 9 RTP/AVP 0 8|a=x|");
  EXPECT_FALSE(dropCodecs(document, "8"));
  EXPECT_TRUE(dropCodecs(document, "0"));
  EXPECT_NE(document.explanation(), "");
  EXPECT_FALSE(document.addAttribute(1, "y"));
  EXPECT_TRUE(setProfile(document, "RTP/SAVP"));
  EXPECT_FALSE(stripAttributes(document, "x"));
  EXPECT_EQ(document.text(),
            documentTest::withEnds(std::string(documentTest::kHead) + "m=audio 9 RTP/AVP 0|a=y|", "\n"));
  EXPECT_TRUE(document.section(1).has("y"));
  EXPECT_FALSE(document.section(1).has("x"));
}

}  // namespace
