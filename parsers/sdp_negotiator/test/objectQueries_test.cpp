#include "objectTestSupport.h"
#include "traceCapture.h"

// Questions about the summary and searches in the text.

namespace {

struct FlagQuery {
  const char* name;
  bool (cSdpNegotiator::*query)() const;
  std::uint32_t bit;
};

constexpr FlagQuery flagQueries[] = {
    {"isSecureCall", &cSdpNegotiator::isSecureCall, 0x1},
    {"isSecureVideo", &cSdpNegotiator::isSecureVideo, 0x2},
    {"isRecvOnlyVideo", &cSdpNegotiator::isRecvOnlyVideo, 0x4},
    {"isIceLitePresent", &cSdpNegotiator::isIceLitePresent, 0x8},
    {"isFullIcePresent", &cSdpNegotiator::isFullIcePresent, 0x10},
    {"isMikeyPresent", &cSdpNegotiator::isMikeyPresent, 0x40},
    {"IceCandidatesMatch", &cSdpNegotiator::IceCandidatesMatch, 0x800},
};

TEST(FlagQueries, EachReadsItsBitAlone) {
  for (const FlagQuery& each : flagQueries) {
    for (unsigned int bit = 0; bit < 32; ++bit) {
      Record record;
      record.data.sdpAttributes = 1U << bit;
      EXPECT_EQ((record.object().*each.query)(), record.data.sdpAttributes == each.bit)
          << each.name << ' ' << bit;
      record.data.sdpAttributes = ~record.data.sdpAttributes;
      EXPECT_EQ((record.object().*each.query)(), record.data.sdpAttributes != ~each.bit) << each.name;
    }
  }
}

TEST(FlagQueries, TheTextIsNotAsked) {
  const cSdpNegotiator object = objectWithText("a=ice-lite\r\na=key-mgmt:mikey x\r\n");
  EXPECT_FALSE(object.isIceLitePresent());
  EXPECT_FALSE(object.isMikeyPresent());
}

TEST(Presence, AnObjectIsPresentByItsTextOrItsLength) {
  EXPECT_FALSE(emptyObject().isSdpPresent());
  EXPECT_TRUE(Record().text("v").object().isSdpPresent());
  EXPECT_FALSE(Record().text(std::string("\0v", 2)).object().isSdpPresent());
  Record deflated;
  deflated.data.storedSdpLength = 1;
  EXPECT_TRUE(deflated.object().isSdpPresent());
}

using Change = void (*)(sSdpParsedData&);

TEST(Presence, EveryExaminedFieldMakesTheSummaryParsed) {
  const Change changes[] = {
      [](sSdpParsedData& d) { d.audioCodec[0] = 1; },
      [](sSdpParsedData& d) { d.packetizationPeriod[0] = 254; },
      [](sSdpParsedData& d) { d.address.setIPAddress("192.0.2.1"); },
      [](sSdpParsedData& d) { d.h264Profile = -1; },
      [](sSdpParsedData& d) { d.port = 0; },
      [](sSdpParsedData& d) { d.mediaType = 1; },
      [](sSdpParsedData& d) { d.T38MaxBitRate = 0; },
      [](sSdpParsedData& d) { d.bandwidth = 1; },
      [](sSdpParsedData& d) { d.sdpAttributes = 0x80000000; },
      [](sSdpParsedData& d) { d.oLineStart = 1; },
      [](sSdpParsedData& d) { d.oLineEnd = 1; },
      [](sSdpParsedData& d) { d.gainControl = -1; },
      [](sSdpParsedData& d) { d.echoCancellation = 1; },
      [](sSdpParsedData& d) { d.echoCancelDirection = 1; },
      [](sSdpParsedData& d) { d.silenceSuppression = 1; },
      [](sSdpParsedData& d) { d.resourceReserve = 1; },
      [](sSdpParsedData& d) { d.sessionMode = 0; },
      [](sSdpParsedData& d) { d.videoBandwidth = 1; },
      [](sSdpParsedData& d) { d.videoMode = 3; },
  };
  EXPECT_TRUE(emptyObject().isParsedDataInitialized());
  for (const Change& change : changes) {
    Record record;
    change(record.data);
    EXPECT_FALSE(record.object().isParsedDataInitialized()) << "change " << &change - changes;
    EXPECT_TRUE(record.object().isParsedDataPresent());
  }
}

// Deliberate: only the first slot of each list is examined.
TEST(Presence, LaterSlotsTheStateWordAndTheTextDoNotMakeTheSummaryParsed) {
  const Change changes[] = {
      [](sSdpParsedData& d) { d.audioCodec[1] = 1; },
      [](sSdpParsedData& d) { d.packetizationPeriod[19] = 20; },
      [](sSdpParsedData& d) { d.state = 7; },
      [](sSdpParsedData& d) { d.storedSdpLength = 100; },
  };
  for (const Change& change : changes) {
    Record record;
    change(record.data);
    EXPECT_TRUE(record.object().isParsedDataInitialized()) << "change " << &change - changes;
  }
}

TEST(Presence, ParsedDataIsPresentWithATextOrASummary) {
  TraceCapture trace;
  EXPECT_FALSE(emptyObject().isParsedDataPresent());
  EXPECT_TRUE(trace.lines().empty());
  Record summaryOnly;
  summaryOnly.data.bandwidth = 64;
  for (const cSdpNegotiator& object : {objectWithText("v=0"), summaryOnly.object()}) {
    EXPECT_TRUE(object.isParsedDataPresent());
    EXPECT_EQ(trace.takeLines(), (std::vector<TraceLine>{{8, 4, "The isParsedDataPresent() is true."}}));
  }
}

TEST(Presence, TheSummaryIsTheObjectsOwn) {
  cSdpNegotiator object = parsedObject(audioBody());
  const sSdpParsedData& data = object.getParsedData();
  EXPECT_EQ(data.port, 5004U);
  object.initSdpDescriptor();
  EXPECT_EQ(data.port, SDP_PORT_NOT_SET);
}

struct HoldCase {
  const char* address;  // null for none
  std::uint8_t mode;
  bool onHold;
};

TEST(HoldState, IsADirectionOrTheUnspecifiedAddress) {
  const HoldCase cases[] = {
      {"192.0.2.1", CONNECTION_MODE_SENDONLY, true},
      {"192.0.2.1", CONNECTION_MODE_INACTIVE, true},
      {nullptr, CONNECTION_MODE_SENDONLY, true},
      {"192.0.2.1", CONNECTION_MODE_RECVONLY, false},
      {"192.0.2.1", CONNECTION_MODE_SENDRECV, false},
      {"192.0.2.1", CONNECTION_MODE_CONFRNCE, false},
      {"192.0.2.1", CONNECTION_MODE_NONE, false},
      {"192.0.2.1", 255, false},
      {"0.0.0.0", CONNECTION_MODE_SENDRECV, true},
      {"0.0.0.0", CONNECTION_MODE_RECVONLY, true},
      {"0.0.0.1", CONNECTION_MODE_SENDRECV, false},
      {"::", CONNECTION_MODE_SENDRECV, true},
      {"0:0:0:0:0:0:0:0", CONNECTION_MODE_SENDRECV, true},
      {"2001:db8::1", CONNECTION_MODE_SENDRECV, false},
      {"::1", CONNECTION_MODE_SENDRECV, false},
      {"::ffff:0.0.0.0", CONNECTION_MODE_SENDRECV, false},
      {nullptr, CONNECTION_MODE_SENDRECV, false},  // no address at all is no unspecified one
  };
  for (const HoldCase& each : cases) {
    Record record;
    if (each.address != nullptr) record.data.address.setIPAddress(each.address);
    record.data.sessionMode = each.mode;
    EXPECT_EQ(record.object().isHoldState(), each.onHold)
        << (each.address != nullptr ? each.address : "none") << ", mode " << int{each.mode};
  }
  EXPECT_FALSE(emptyObject().isHoldState());
}

TEST(HoldState, OfParsedBodies) {
  EXPECT_FALSE(parsedObject(audioBody()).isHoldState());
  const std::string audio = "m=audio 5004 RTP/AVP 0\r\n";
  EXPECT_TRUE(parsedObject(sessionLines("0.0.0.0") + audio + "a=sendrecv\r\n").isHoldState());
  EXPECT_TRUE(parsedObject(audioBody() + "a=sendonly\r\n").isHoldState());
  EXPECT_TRUE(parsedObject(audioBody() + "a=inactive\r\n").isHoldState());
  EXPECT_FALSE(parsedObject(audioBody() + "a=recvonly\r\n").isHoldState());
}

// A text in both forms: as it is, and with something behind it that makes it long enough to be deflated.
class Contains : public testing::TestWithParam<bool> {
 protected:
  static cSdpNegotiator object(const std::string& text) {
    const std::string behind(GetParam() ? 3000 : 0, '~');
    cSdpNegotiator object = objectWithText(text + behind);
    EXPECT_EQ(object.getParsedData().storedSdpLength != 0, GetParam());
    return object;
  }
};

INSTANTIATE_TEST_SUITE_P(PlainAndDeflated, Contains, testing::Bool());

TEST_P(Contains, FindsATextAnywhere) {
  const cSdpNegotiator o = object("v=0\r\na=crypto:1 x");
  for (const char* const text : {"v=0", "v", "\r\na=", "a=crypto:1 x", "x", ""}) {
    EXPECT_TRUE(o.contains(text)) << text;
  }
  for (const char* const text : {"A=crypto", "V=0", "a=crypto:1  x", "v=0\n"}) {
    EXPECT_FALSE(o.contains(text)) << text;
  }
  EXPECT_FALSE(o.contains(nullptr));
  EXPECT_FALSE(o.contains(std::string(30000, '~').c_str()));
}

TEST_P(Contains, TellsSdesAnatAndDummyOffers) {
  struct Case {
    const char* text;
    bool sdes;
    bool anat;
    bool dummy;
  };
  const Case cases[] = {
      {"a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x", true, false, false},
      {"a=group:ANAT 1 2", false, true, false},
      {"o=IRM 1 2 IN IP4 192.0.2.1", false, false, true},
      {"o=IRMA 1 2 IN IP4 192.0.2.1", false, false, false},
      {"a=group:BUNDLE 1 2", false, false, false},
      {"a=Crypto a=group:anat o=irm ", false, false, false},
      {"s=a=cryptoa=group:ANATo=IRM ", true, true, true},  // deliberate: any place counts, line or not
  };
  for (const Case& each : cases) {
    cSdpNegotiator o = object(each.text);
    EXPECT_EQ(o.isSDESPresent(), each.sdes) << each.text;
    EXPECT_EQ(o.isAnatPresent(), each.anat) << each.text;
    EXPECT_EQ(o.isRmDummySdp(), each.dummy) << each.text;
  }
}

TEST(ContainsText, OfAnEmptyObjectFindsOnlyTheEmptyText) {
  EXPECT_TRUE(emptyObject().contains(""));
  EXPECT_FALSE(emptyObject().contains("v"));
}

TEST(ContainsText, FindsTheLastCharactersOfTheLongestBody) {
  const std::string text = paddedTo(20480);
  const cSdpNegotiator object = objectWithText(text);
  EXPECT_TRUE(object.contains(text.c_str()));
  EXPECT_TRUE(object.contains("p\r\n"));
  EXPECT_FALSE(object.contains((text + "p").c_str()));
}

TEST(ContainsText, SearchesThePartOfADamagedTextThatCouldBeExpanded) {
  std::string text = "first";
  while (text.size() < 4000) text += std::to_string(text.size() * 7919);
  Record record(objectWithText(text + "last"));
  record.data.storedSdpLength = static_cast<std::uint16_t>(record.data.storedSdpLength / 2);
  EXPECT_TRUE(record.object().contains("first"));
  EXPECT_FALSE(record.object().contains("last"));
  record.data.storedSdpLength = 65535;
  EXPECT_FALSE(record.object().contains("first"));
}

}  // namespace
