#include "requestTestSupport.h"

// Removal of the keys and media that the other side does not support.

namespace {

using M = sdpModifications;

constexpr std::size_t cleared = 28;

const std::string mikey = "a=key-mgmt:mikey AQAFgM0XflABAAAA\r\n";
const std::string crypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\r\n";

/// A body of plain and secure media, with lines of keys in the session and behind the m-lines.
std::string body(const std::string& keys, bool secure = true, bool plain = true) {
  std::string text = session + keys;
  if (plain) text += "m=audio 5004 RTP/AVP 0\r\n" + keys + "a=ptime:20\r\n";
  if (secure) text += "m=audio 5006 RTP/SAVP 0\r\n" + keys + "a=ptime:20\r\n";
  if (secure) text += "m=video 5008 RTP/SAVPF 31\r\n" + keys;
  if (plain) text += "m=video 5010 RTP/AVP 31\r\n";
  return text;
}

const std::vector<int> secureCodes = {2, 25 + 3};
const std::vector<int> plainCodes = {1, 25 + 4};

const TraceLine mikeyRequest{8, 4, "Request to remove MIKEY secure media streams."};
const TraceLine sdesRequest{8, 4, "Request to remove SDES secure media streams."};
const TraceLine attributesRequest{1, 1, "Request to remove the mi-key attributes."};
const TraceLine noMikey{8, 4, "No MIKEY security in SDP. There is nothing to remove."};
const TraceLine noSdes{8, 4, "No SDES security in SDP. There is nothing to remove."};

Request disable(int kind) {
  return [kind](cSdpNegotiator& object) {
    RemovedRecord removed;
    return object.sdpDisableSRTPMedia(removed.data(), static_cast<eNonSupportedSecurity>(kind));
  };
}

TextEdit removeLines(const char* prefix) {
  return [prefix](char* text) { return M::sdpRemoveSecureAttributes(text, prefix); };
}

unsigned short removeSecure(char* text) {
  char removed[cleared] = {};
  unsigned short oLineEnd = 0;
  return M::sdpDisableSRTPMediaStreams(text, removed, oLineEnd);
}

unsigned short removePlain(char* text) {
  char removed[cleared] = {};
  unsigned short oLineEnd = 0;
  M::sdpRemoveMline(text, removed, oLineEnd, "RTP/AVP", true);
  return 0;
}

RequestCase removeAllSecure(const std::string& name, int kind) {
  return {name,
          disable(kind),
          removeSecure,
          body(mikey + crypto),
          body(crypto, false),
          {{8, 4, "Request to remove all the secure media streams."}},
          {},
          "IP4 0.0.0.0"};
}

const RequestCase removeMikey = {
    "MikeyAttributes",
    [](cSdpNegotiator& o) { return o.sdpRemoveMikeyAttribute(); },
    removeLines("a=key-mgmt:"),
    body(mikey + crypto),
    body(crypto),
    {attributesRequest},
};

const RequestCase removeCrypto = {
    "SdesAttributes",
    [](cSdpNegotiator& o) { return o.sdpDisableSDESCryptoMedia(); },
    removeLines("a=crypto"),
    body(mikey + crypto),
    body(mikey),
    {{8, 4, "Request to remove crypto media streams."}},
};

std::vector<RequestCase> requests() {
  return {
      removeMikey,
      removeCrypto,
      {"MikeyBesideSdes",
       disable(1),
       removeLines("a=key-mgmt:"),
       body(mikey + crypto),
       body(crypto),
       {mikeyRequest,
        {8, 4, "Only the MIKEY attributes will be removed. SDP has also SDES secure media"},
        attributesRequest}},
      {"SdesBesideMikey",
       disable(2),
       removeLines("a=crypto"),
       body(mikey + crypto),
       body(mikey),
       {sdesRequest, {8, 4, "Only the SDES attributes will be removed. SDP has also MIKEY secure media"}}},
      {"MikeyAlone",
       disable(1),
       removeSecure,
       body(mikey),
       body("", false),
       {mikeyRequest, {8, 4, "SDP does not have SDES security. Will remove all secure MIKEY media"}},
       {},
       "IP4 0.0.0.0"},
      {"SdesAlone",
       disable(2),
       removeSecure,
       body(crypto),
       body(crypto, false),
       {sdesRequest, {8, 4, "SDP does not have MIKEY security. Will remove all secure SDES media"}},
       {},
       "IP4 0.0.0.0"},
      {"Plain",
       disable(3),
       removePlain,
       body(mikey + crypto),
       body(mikey + crypto, true, false),
       {{1, 1, "Request to remove RTP media streams."}},
       {},
       "IP4 0.0.0.0"},
      removeAllSecure("All", 0),
      removeAllSecure("AnotherKind", 4),
      removeAllSecure("ANegativeKind", -1),
  };
}

class SecurityRemoval : public testing::TestWithParam<RequestCase> {};

TEST_P(SecurityRemoval, EditsTheTextAndParsesItAgain) { expectEditedAndParsed(GetParam()); }
TEST_P(SecurityRemoval, LeavesTheObjectEmptyWhenTheTextCannotBeStored) {
  expectEmptiedWhenNotStored(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Requests, SecurityRemoval, testing::ValuesIn(requests()), caseName);

TEST(SecurityRemoval, FailsWithoutATextThatCanBeRead) {
  expectFailsWithoutText(removeMikey);
  expectFailsWithoutText(removeCrypto);
  expectFailsWithoutText(removeAllSecure("All", 0));
}

// A text that cannot be read is read a second time, for the secure media.
TEST(PlainRemoval, FailsWithoutATextThatCanBeRead) {
  const TraceLine request{1, 1, "Request to remove RTP media streams."};
  cSdpNegotiator empty = emptyObject();
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(disable(3)(empty), 1); }),
            (Traces{request, buildingText, textIsEmpty, buildingText, textIsEmpty}));
  EXPECT_TRUE(sameBytes(empty, emptyObject()));
  for (const cSdpNegotiator& before : unreadableObjects()) {
    cSdpNegotiator object = before;
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(disable(3)(object), 1); }),
              (Traces{request, buildingText, buildingText}));
    EXPECT_TRUE(sameBytes(object, before));
  }
}

// The result is that of a trace call, 0 while tracing is off.
TEST(KeyedRemoval, WithoutTheKeysLeavesTheObject) {
  struct Case {
    int kind;
    std::string text;
    Traces traces;
  };
  const Case cases[] = {{1, body(""), {mikeyRequest, noMikey}},
                        {1, body(crypto), {mikeyRequest, noMikey}},
                        {2, body(""), {sdesRequest, noSdes}},
                        {2, body(mikey), {sdesRequest, noSdes}}};
  for (const Case& each : cases) {
    const cSdpNegotiator before = parsedObject(each.text);
    cSdpNegotiator object = before;
    RemovedRecord removed;
    EXPECT_EQ(object.sdpDisableSRTPMedia(removed.data(), static_cast<eNonSupportedSecurity>(each.kind)), 0);
    removed.expect({}, cleared);
    EXPECT_EQ(tracesOf([&] { disable(each.kind)(object); }), each.traces);
    EXPECT_TRUE(sameBytes(object, before));
  }
}

// Deliberate: MIKEY is told by the summary, SDES by the text.
TEST(KeyedRemoval, AsksTheSummaryForMikeyAndTheTextForSdes) {
  cSdpNegotiator object = parsedObject(body(mikey));
  object.setSdpAttributes(0);
  const cSdpNegotiator before = object;
  EXPECT_EQ(tracesOf([&] { disable(1)(object); }), (Traces{mikeyRequest, noMikey}));
  EXPECT_TRUE(sameBytes(object, before));
  cSdpNegotiator empty = emptyObject();
  empty.setSdpAttributes(SDP_ATTR_MIKEY);
  EXPECT_EQ(disable(1)(empty), 1);
}

TEST(SecurityRemoval, RecordsTheMLinesThatWent) {
  struct Case {
    int kind;
    std::string text;
    std::vector<int> codes;
  };
  const Case cases[] = {{0, body(crypto), secureCodes}, {1, body(mikey), secureCodes},
                        {2, body(crypto), secureCodes}, {3, body(crypto), plainCodes},
                        {1, body(mikey + crypto), {}},  {2, body(mikey + crypto), {}},
                        {0, body("", false), {}},       {3, body("", true, false), {}}};
  for (const Case& each : cases) {
    cSdpNegotiator object = parsedObject(each.text);
    RemovedRecord removed;
    EXPECT_EQ(object.sdpDisableSRTPMedia(removed.data(), static_cast<eNonSupportedSecurity>(each.kind)), 0);
    removed.expect(each.codes, cleared);
    cSdpNegotiator empty = emptyObject();
    RemovedRecord none;
    empty.sdpDisableSRTPMedia(none.data(), static_cast<eNonSupportedSecurity>(each.kind));
    none.expect({}, cleared);
  }
}

TEST(SecurityRemoval, WithoutARecordRemovesAllTheSame) {
  for (const int kind : {0, 1, 2, 3}) {
    const std::string keys = kind == 1 ? mikey : crypto;
    cSdpNegotiator object = parsedObject(body(keys));
    EXPECT_EQ(object.sdpDisableSRTPMedia(nullptr, static_cast<eNonSupportedSecurity>(kind)), 0);
    // Nothing is recorded, so the o-line stays.
    const std::string after = kind == 3 ? body(keys, true, false) : body(kind == 1 ? "" : keys, false);
    EXPECT_TRUE(sameBytes(object, parsedObject(after))) << kind;
  }
}

// Deliberate: a code is what changes the o-line.
TEST(SecurityRemoval, WithNothingToRemoveKeepsTheOLine) {
  cSdpNegotiator object = parsedObject(body("", false));
  object.setBandwidth(64);
  EXPECT_EQ(disable(0)(object), 0);
  EXPECT_TRUE(sameBytes(object, parsedObject(body("", false))));
}

TEST(SecurityRemoval, ATextThatDoesNotParseLeavesTheObjectEmpty) {
  for (const RequestCase& each : {removeMikey, removeCrypto, removeAllSecure("All", 0)}) {
    cSdpNegotiator object = objectWithText("no body\r\n");
    EXPECT_EQ(each.request(object), 1);
    EXPECT_TRUE(sameBytes(object, emptyObject()));
  }
}

}  // namespace
