#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "modifiersTestSupport.h"

// A received body as a dummy body of the library's own.

namespace {

const std::string head = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\n";
const std::string theirs = "c=IN IP4 192.0.2.1\r\n";
const std::string ours = "c=IN IP4 198.51.100.7\r\n";
const std::string theirs6 = "c=IN IP6 2001:db8::1\r\n";
const std::string ours6 = "c=IN IP6 2001:db8::7\r\n";
const std::string time = "t=0 0\r\n";
const char* const ip4 = "198.51.100.7";
const char* const ip6 = "2001:db8::7";
const std::string crypto = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:";

constexpr int kNoLength = -7;
constexpr unsigned short kNoOffset = 77;

/// The arguments of a request; port 7000.
struct Request {
  bool answer = false;
  bool hold = false;
  std::optional<bool> third;  ///< without it the shorter form is called
  const char* ip = ip4;
  bool modifyOLine = false;
  unsigned short port = 7000;
};

struct Result {
  unsigned short status;
  std::string text;
  int length;
  unsigned short oLineEnd;
};

Result create(const std::string& body, const Request& request) {
  using M = sdpModifications;
  EditBuffer buffer(body);
  Result result{9, {}, kNoLength, kNoOffset};
  const Request& r = request;
  result.status = r.third ? M::sdpCreateDummy(buffer.data(), r.answer, r.hold, *r.third, r.ip, r.port,
                                              result.length, result.oLineEnd, r.modifyOLine)
                          : M::sdpCreateDummy(buffer.data(), r.answer, r.hold, r.ip, r.port, result.length,
                                              result.oLineEnd, r.modifyOLine);
  buffer.expectGuard();
  result.text = buffer.text();
  return result;
}

const Request inactive;
const Request holdAnswer{true, true, {}, ip4, false, 7000};
const Request holdOffer{false, true, {}, ip4, false, 7000};
const Request holdThird{false, true, true, ip4, false, 7000};
const Request inactive6{false, false, {}, ip6, false, 7000};

struct Dummy {
  const char* name;
  std::string before;
  Request request;
  std::string after;
};

class DummyBody : public testing::TestWithParam<Dummy> {};

TEST_P(DummyBody, IsMadeOfAReceivedOne) {
  const Dummy& one = GetParam();
  TraceCapture trace;
  const Result result = create(one.before, one.request);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.text, one.after);
  EXPECT_EQ(result.length, static_cast<int>(one.after.size()));
  EXPECT_EQ(result.oLineEnd, kNoOffset);  // the o-line stays
  EXPECT_TRUE(trace.has(8, 4, "A dummy SDP message has been succesfully created."));
  EXPECT_FALSE(trace.has(2, 3, "FRN4034: SRTP-only scenario with SDES only."));
}

std::string body(const std::string& connection, const std::string& media) {
  return head + connection + time + media;
}

const std::string plain = "m=audio 5004 RTP/AVP 0\r\n";

INSTANTIATE_TEST_SUITE_P(
    Directions, DummyBody,
    testing::Values(
        Dummy{"withoutHoldOneWayBecomesInactive",
              body(theirs, "a=recvonly\r\n" + plain + "a=sendonly\r\na=ptime:20\r\na=sendonly\r\n"), inactive,
              body(ours, "a=inactive\r\n" + plain + "a=inactive\r\na=ptime:20\r\na=inactive\r\n")},
        Dummy{"withoutHoldBothWaysStays", body(theirs, plain + "a=sendrecv\r\na=SENDONLY\r\ni=sendonly\r\n"),
              inactive, body(ours, plain + "a=sendrecv\r\na=SENDONLY\r\ni=sendonly\r\n")},
        Dummy{"withoutHoldByTheStartOfTheLine", body(theirs, plain + "a=sendonly:x\n"), inactive,
              body(ours, plain + "a=inactive:x\n")},
        Dummy{"withoutHoldForAnswersAndThirdsToo", body(theirs, plain + "a=sendonly\r\n"),
              Request{true, false, true, ip4, false, 7000}, body(ours, plain + "a=inactive\r\n")},
        // The session gets a line of its own, and so does a section without one.
        Dummy{"holdInAnAnswer", body(theirs, plain + "a=sendrecv\r\n" + plain), holdAnswer,
              body(ours, "a=inactive\r\n" + plain + "a=inactive\r\n" + plain + "a=inactive\r\n")},
        Dummy{"holdInAnAnswerForAThird", body(theirs, plain + "a=sendonly\r\n"),
              Request{true, true, true, ip4, false, 7000},
              body(ours, "a=inactive\r\n" + plain + "a=inactive\r\n")},
        Dummy{"holdInAnOffer",
              body(theirs,
                   "m=audio 5004 RTP/AVP 0\r\na=sendrecv\r\nm=audio 5006 RTP/AVP 8\r\na=sendonly\r\n"
                   "m=video 5008 RTP/AVP 31\r\n"),
              holdOffer,
              body(ours,
                   "m=audio 5004 RTP/AVP 0\r\na=recvonly\r\nm=audio 5006 RTP/AVP 8\r\na=inactive\r\n"
                   "m=video 0 RTP/AVP 31\r\na=recvonly\r\n")},
        Dummy{"holdInAnOfferForNoThird", body(theirs, plain + "a=sendonly\r\n"),
              Request{false, true, false, ip4, false, 7000}, body(ours, plain + "a=inactive\r\n")},
        Dummy{"holdForAThird",
              body(theirs, "a=sendonly\r\n" + plain + "a=sendonly\r\na=recvonly\r\na=sendrecv\r\n" + plain),
              holdThird,
              body(ours, "a=recvonly\r\n" + plain + "a=recvonly\r\na=recvonly\r\na=sendrecv\r\n" + plain)}),
    [](const auto& tested) { return tested.param.name; });

const std::string secure = "m=audio 5004 RTP/SAVP 0\r\n";

// What stands in the port's place is closed; with it goes all that told that the audio is secure, so that no port is opened.
TEST(DummyOfMisplacedTransport, HasNoPort) {
  const Result result = create(body(theirs, "m=audio  RTP/SAVP 0\r\n" + theirs), inactive);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.text, body(ours, "m=audio  0 0\r\n" + theirs));
}

const std::string otherMedia =
    "m=video 5006 RTP/AVP 31\r\nm=message 5008 msrp *\r\nm=text 5010 RTP/AVP 98\r\nm=image 5012 udptl t38\r\n"
    "m=application 5014 udp wb\r\nm=foo 5016 udp x\r\n";
const std::string otherMediaClosed =
    "m=video 0 RTP/AVP 31\r\nm=message 0 msrp *\r\nm=text 0 RTP/AVP 98\r\nm=image 0 udptl t38\r\n"
    "m=application 0 udp wb\r\nm=foo 5016 udp x\r\n";

INSTANTIATE_TEST_SUITE_P(
    Media, DummyBody,
    testing::Values(
        Dummy{"onlyPlainAudioKeepsItsPort", body(theirs, plain + otherMedia), inactive,
              body(ours, plain + otherMediaClosed)},
        // Key management keeps this from being SDES alone, so that no key is made.
        Dummy{"singleSecure",
              body(theirs, "a=key-mgmt:mikey AQ\r\n" + secure + theirs + "a=key-mgmt:mikey AQ\r\n" + crypto +
                               "old\r\n"),
              inactive, body(ours, "m=audio 7000 RTP/SAVP 0\r\n" + ours + crypto + "old\r\n")},
        Dummy{"aSingleSecureVideoIsClosed", body(theirs, "m=video 5004 RTP/SAVP 31\r\na=key-mgmt:x\r\n"),
              inactive, body(ours, "m=video 0 RTP/SAVP 31\r\n")},
        Dummy{"bestEffortOfTwoMLines", body(theirs, plain + secure + crypto + "old\r\n"), inactive,
              body(ours, plain + "m=audio 0 RTP/SAVP 0\r\n" + crypto + "old\r\n")},
        Dummy{"severalSecureOnes", body(theirs, secure + "a=x\r\n" + secure + "a=y\r\n"), inactive,
              body(ours, "m=audio 0 RTP/SAVP 0\r\na=x\r\nm=audio 0 RTP/SAVP 0\r\na=y\r\n")},
        Dummy{"ice",
              body(theirs, "a=ice-lite\r\n" + plain +
                               "a=candidate:1 1 UDP 1 192.0.2.1 5004 typ host\r\na=x\r\na=ice-ufrag:u\r\n"
                               "a=ice-pwd:p\r\n"),
              inactive, body(ours, plain + "a=x\r\n")}),
    [](const auto& tested) { return tested.param.name; });

const std::string audio4 = "m=audio 5004 RTP/AVP 0\r\n" + theirs;
const std::string audio6 = "m=audio 5006 RTP/AVP 0\r\n" + theirs6;

INSTANTIATE_TEST_SUITE_P(
    Addresses, DummyBody,
    testing::Values(
        Dummy{"ofVersion4CloseAudioOfVersion6", body(theirs, audio4 + audio6), inactive,
              body(ours, "m=audio 5004 RTP/AVP 0\r\n" + ours + "m=audio 0 RTP/AVP 0\r\n" + theirs6)},
        Dummy{"ofVersion6CloseAudioOfVersion4", body(theirs, audio4 + audio6), inactive6,
              body(ours6, "m=audio 0 RTP/AVP 0\r\n" + theirs + "m=audio 5006 RTP/AVP 0\r\n" + ours6)},
        Dummy{"theSessionsVersionCountsForASectionWithout", body(theirs, plain + audio6), inactive6,
              body(ours6, "m=audio 0 RTP/AVP 0\r\nm=audio 5006 RTP/AVP 0\r\n" + ours6)},
        Dummy{"ofASingleSecureOneOfTheOtherVersion", body(theirs, secure + "a=x\r\n"), inactive6,
              body(ours6, "m=audio 0 RTP/SAVP 0\r\na=x\r\n")},
        Dummy{"ofASingleSecureOneOfVersion6", body(theirs6, secure + "a=x\r\n"), inactive6,
              body(ours6, "m=audio 7000 RTP/SAVP 0\r\na=x\r\n")},
        Dummy{"onlySectionsHaveOne", head + time + audio4, inactive,
              head + time + "m=audio 5004 RTP/AVP 0\r\n" + ours},
        Dummy{"videoKeepsItsOwn", body(theirs, plain + "m=video 5006 RTP/AVP 31\r\n" + theirs), inactive,
              body(ours, plain + "m=video 0 RTP/AVP 31\r\n" + theirs)},
        Dummy{"thereIsNone", head + time + plain, inactive, head + time + plain}),
    [](const auto& tested) { return tested.param.name; });

/// The text with "KEY" in the place of a new key of 40 characters; the old ones are shorter.
std::string maskedKey(std::string text) {
  constexpr std::size_t kKeyLength = 40;
  const std::size_t at = text.find(crypto);
  if (at == std::string::npos) return text;
  const std::size_t key = at + crypto.size();
  const std::size_t end = text.find("\r\n", key);
  const bool made = end == key + kKeyLength;
  return made ? text.replace(key, kKeyLength, "KEY") : text;
}

TEST(DummyBodyOfSdes, GetsAKeyOfItsOwn) {
  const std::string before =
      body(theirs, secure + crypto +
                       "old|2^20|1:4\r\na=crypto:2 AES_CM_128_HMAC_SHA1_32 inline:old\r\na=sendonly\r\n" +
                       "m=video 5006 RTP/SAVP 31\r\n" + crypto + "old\r\na=x\r\n");
  const std::string after = body(
      ours, "m=audio 7000 RTP/SAVP 0\r\n" + crypto + "KEY\r\na=inactive\r\nm=video 0 RTP/SAVP 31\r\na=x\r\n");
  TraceCapture trace;
  const Result result = create(before, inactive);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(maskedKey(result.text), after);
  EXPECT_EQ(result.length, static_cast<int>(after.size() + 40 - 3));
  EXPECT_EQ(trace.count(2, 3, "FRN4034: SRTP-only scenario with SDES only."), 1);
}

TEST(DummyBodyOfSdes, GetsThePortOnEverySecureAudioMLine) {
  const std::string two = "m=audio 5006 RTP/SAVP 8\r\n";
  const std::string before = body(theirs, secure + "a=x\r\n" + two + crypto + "old\r\n");
  const std::string after =
      body(ours, "m=audio 7000 RTP/SAVP 0\r\na=x\r\nm=audio 7000 RTP/SAVP 8\r\n" + crypto + "KEY\r\n");
  const Result result = create(before, inactive);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(maskedKey(result.text), after);
}

// Without an active m-line all of them, which are none, are secured by SDES alone.
TEST(DummyBodyOfSdes, IsOneWithoutActiveMLinesToo) {
  const std::string media = "m=audio 0 RTP/SAVP 0\r\na=x\r\nm=video 0 RTP/AVP 31\r\n";
  TraceCapture trace;
  const Result result = create(body(theirs, media), inactive);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.text, body(ours, "m=audio 7000 RTP/SAVP 0\r\na=x\r\nm=video 0 RTP/AVP 31\r\n"));
  EXPECT_TRUE(trace.has(2, 3, "FRN4034: SRTP-only scenario with SDES only."));
  EXPECT_EQ(create(head + theirs + time, inactive).text, head + ours + time);
}

// The directions and addresses have been edited by then, and stay so.
TEST(DummyBodyOfSdes, StopsAtACryptoLineWithoutASuite) {
  const std::string media = secure + "a=sendonly\r\na=crypto:1\r\n";
  const Result result = create(body(theirs, media), inactive);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.text, body(ours, "m=audio 7000 RTP/SAVP 0\r\na=inactive\r\na=crypto:1\r\n"));
  EXPECT_EQ(result.length, kNoLength);
}

// A section without crypto attributes in front of one with them, and one that a line of another kind begins.
TEST(DummyBodyOfSdes, ReplacesTheKeysOfLaterSectionsToo) {
  const std::string old = crypto + "old\r\n";
  const std::string made = "m=audio 7000 RTP/SAVP 0\r\n" + crypto;
  const Result result = create(
      body(theirs, secure + "a=x\r\n" + secure + old + old + "a=y\r\n" + secure + old + "a=z\r\n"), inactive);
  EXPECT_EQ(result.status, 0);
  const std::string start = body(ours, "m=audio 7000 RTP/SAVP 0\r\na=x\r\n" + made);
  ASSERT_EQ(result.text.substr(0, start.size()), start);
  constexpr std::size_t kKeyLength = 40;
  const std::string middle = "\r\na=y\r\n" + made;
  EXPECT_EQ(result.text.substr(start.size() + kKeyLength, middle.size()), middle);
  EXPECT_EQ(result.text.substr(start.size() + kKeyLength + middle.size() + kKeyLength), "\r\na=z\r\n");
  EXPECT_EQ(result.text.find("old"), std::string::npos);
  // Not every line that begins with "m" has a port.
  EXPECT_EQ(create(body(theirs, secure + "a=x\r\nmore\r\n" + old), inactive).status, 1);
  const Result port = create(body(theirs, "m=audio 0 RTP/AVP 0\r\nmore 0 x\r\n" + old + "a=z\r\n"), inactive);
  EXPECT_EQ(port.text, body(ours, "m=audio 0 RTP/AVP 0\r\nmore 0 x\r\na=z\r\n"));
}

TEST(DummyBodyOriginLine, IsRebuiltWhenAskedTo) {
  Request request = inactive;
  request.modifyOLine = true;
  const Result result = create(body(theirs, plain), request);
  EXPECT_EQ(result.status, 0);
  const std::string start = "v=0\r\no=ZEV ";
  ASSERT_EQ(result.text.substr(0, start.size()), start);
  const std::size_t space = result.text.find(' ', start.size());
  const std::string id = result.text.substr(start.size(), space - start.size());
  EXPECT_GE(id.size(), 7U);
  EXPECT_LE(id.size(), 9U);
  EXPECT_EQ(id.find_first_not_of("0123456789"), std::string::npos);
  const std::string origin = start + id + " " + id + " IN IP4 198.51.100.7\r\n";
  EXPECT_EQ(result.text, origin + "s=-\r\n" + ours + time + plain);
  EXPECT_EQ(result.oLineEnd, origin.size());
  EXPECT_EQ(result.length, static_cast<int>(result.text.size()));
}

TEST(DummyBodyOriginLine, EndsTheRequestWhenItCannotBeRebuilt) {
  Request request = inactive;
  request.modifyOLine = true;
  const std::string media = "m=video 5006 RTP/AVP 31\r\na=sendonly\r\n";
  const Result result = create("v=0\r\n" + theirs + media, request);  // no o-line
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.text, "v=0\r\n" + theirs + "m=video 0 RTP/AVP 31\r\na=sendonly\r\n");
  EXPECT_EQ(result.length, kNoLength);
  EXPECT_EQ(result.oLineEnd, kNoOffset);
}

TEST(DummyBodyRefusal, NeedsAnAddressAndAText) {
  Request request = inactive;
  request.ip = nullptr;
  TraceCapture trace;
  const Result result = create(body(theirs, plain), request);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.text, body(theirs, plain));
  EXPECT_EQ(result.length, kNoLength);
  EXPECT_EQ(trace.takeLines(),
            (Traces{{2, 3, "sdpCreateDummy(): NULL IP provided. Cannot create dummy SDP."}}));
  int length = kNoLength;
  unsigned short oLineEnd = kNoOffset;
  const TextEdit edit = [&](char* sdp) {
    return sdpModifications::sdpCreateDummy(sdp, false, false, ip4, 7000, length, oLineEnd, true);
  };
  EXPECT_EQ(edit(nullptr), 1);
  const TraceLine unusable = {4, 3,
                              "sdpCreateDummy(): The SDP buffer is null or holds no end of text. Exiting."};
  EXPECT_EQ(trace.takeLines(), Traces{unusable});
  expectUntouched(withoutNul(body(theirs, plain)), edit, 1);
  EXPECT_EQ(length, kNoLength);
  EXPECT_EQ(oLineEnd, kNoOffset);
}

// An address of no version closes audio of version 4, before it is found invalid.
TEST(DummyBodyRefusal, KeepsTheEditsInFrontOfAnInvalidAddress) {
  Request request = inactive;
  request.ip = "abc";
  const Result result = create(body(theirs, plain + "a=sendonly\r\na=key-mgmt:x\r\n"), request);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.text, body(theirs, "m=audio 0 RTP/AVP 0\r\na=sendonly\r\n"));
  EXPECT_EQ(result.length, kNoLength);
}

TEST(DummyBodyRefusal, KeepsTheEditsInFrontOfAReservedPort) {
  Request request = inactive;
  request.port = 1023;
  const Result result = create(body(theirs, secure + "a=key-mgmt:x\r\na=sendonly\r\n"), request);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.text, body(theirs, "m=audio 0 RTP/SAVP 0\r\na=sendonly\r\n"));
  EXPECT_EQ(result.length, kNoLength);
  // It is not asked for without a secure medium to set it on.
  EXPECT_EQ(create(body(theirs, plain), request).status, 0);
}

TEST(DummyBodyRefusal, KeepsTheEditsInFrontOfAConnectionThatDoesNotFit) {
  const std::string before = filledTo(kLongestBody - 2, body(theirs, plain));  // three characters more
  const Result result = create(before, inactive);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.text, before);
  EXPECT_EQ(result.length, kNoLength);
  const std::string fitting = filledTo(kLongestBody - 3, body(theirs, plain));
  EXPECT_EQ(create(fitting, inactive).text, filledTo(kLongestBody, body(ours, plain)));
}

// The length is set although there was no room for the session's direction.
TEST(DummyBodyRefusal, HandsOutTheLengthWhenTheDirectionsDoNotFit) {
  const std::string fitting = filledTo(kLongestBody - 27, body(theirs, plain));
  const Result done = create(fitting, holdAnswer);
  EXPECT_EQ(done.status, 0);
  EXPECT_EQ(done.length, static_cast<int>(kLongestBody));
  const std::string before = filledTo(kLongestBody - 3 - 11, body(theirs, plain));
  const Result result = create(before, holdAnswer);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.text, filledTo(kLongestBody - 11, body(ours, plain)));
  EXPECT_EQ(result.length, static_cast<int>(kLongestBody - 11));
}

}  // namespace
