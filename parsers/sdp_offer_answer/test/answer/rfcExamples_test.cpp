#include "answer/answerTestSupport.h"

// Exchanges after the examples of the RFCs, with what our side can do as its local description.

using namespace answerTest;

namespace {

constexpr const char* kBob =
    "v=0|o=bob 2808844564 2808844564 IN IP4 biloxi.example.com|s=-|c=IN IP4 biloxi.example.com|t=0 0|";

std::string alice(const char* sections) {
  return std::string(
             "v=0|o=alice 2890844526 2890844526 IN IP4 atlanta.example.com|s=-|c=IN IP4 atlanta.example.com|t=0 0|") +
         sections;
}
std::string bob(const char* sections) { return std::string(kBob) + sections; }

void expectExchange(const char* what, const char* offer, const char* local, const char* answer) {
  expectAnswers({{what, alice(offer).c_str(), bob(local).c_str(), bob(answer).c_str()}});
}

TEST(Rfc4317, ChoosesCodecsOfAudioAndVideo) {
  expectExchange(
      "2.1: one of each",
      "m=audio 49170 RTP/AVP 0 8 97|a=rtpmap:0 PCMU/8000|a=rtpmap:8 PCMA/8000|a=rtpmap:97 iLBC/8000|"
      "m=video 51372 RTP/AVP 31 32|a=rtpmap:31 H261/90000|a=rtpmap:32 MPV/90000|",
      "m=audio 49174 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 49170 RTP/AVP 32|a=rtpmap:32 MPV/90000|",
      "m=audio 49174 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 49170 RTP/AVP 32|a=rtpmap:32 MPV/90000|");
  expectExchange(
      "2.2: two of three",
      "m=audio 49170 RTP/AVP 0 8 97|a=rtpmap:0 PCMU/8000|a=rtpmap:8 PCMA/8000|a=rtpmap:97 iLBC/8000|"
      "m=video 51372 RTP/AVP 31 32|a=rtpmap:31 H261/90000|a=rtpmap:32 MPV/90000|",
      "m=audio 49172 RTP/AVP 8 0|a=rtpmap:0 PCMU/8000|a=rtpmap:8 PCMA/8000|",
      "m=audio 49172 RTP/AVP 0 8|a=rtpmap:0 PCMU/8000|a=rtpmap:8 PCMA/8000|m=video 0 RTP/AVP 31|");
}

TEST(Rfc4317, HasHoldAndResume) {
  const char* const local = "m=audio 49172 RTP/AVP 97|a=rtpmap:97 iLBC/8000|";
  expectExchange("2.3: hold", "m=audio 49170 RTP/AVP 97|a=rtpmap:97 iLBC/8000|a=sendonly|", local,
                 "m=audio 49172 RTP/AVP 97|a=rtpmap:97 iLBC/8000|a=recvonly|");
  expectExchange("2.3: resumed", "m=audio 49170 RTP/AVP 97|a=rtpmap:97 iLBC/8000|a=sendrecv|", local,
                 "m=audio 49172 RTP/AVP 97|a=rtpmap:97 iLBC/8000|");
  expectExchange("2.3: held by both", "m=audio 49170 RTP/AVP 97|a=rtpmap:97 iLBC/8000|a=sendonly|",
                 "m=audio 49172 RTP/AVP 97|a=rtpmap:97 iLBC/8000|a=sendonly|",
                 "m=audio 49172 RTP/AVP 97|a=rtpmap:97 iLBC/8000|a=inactive|");
}

TEST(Rfc4317, HasTelephoneEventsInASectionOfTheirOwn) {
  expectExchange(
      "2.4: for an application server",
      "m=audio 49170 RTP/AVP 0 97|a=rtpmap:0 PCMU/8000|a=rtpmap:97 iLBC/8000|m=audio 49172 RTP/AVP 98|a=rtpmap:"
      "98 telephone-event/8000|a=sendonly|",
      "m=audio 49172 RTP/AVP 97|a=rtpmap:97 iLBC/8000|m=audio 49174 RTP/AVP 98|a=rtpmap:98 "
      "telephone-event/8000|a=recvonly|",
      "m=audio 49172 RTP/AVP 97|a=rtpmap:97 iLBC/8000|m=audio 49174 RTP/AVP 98|a=rtpmap:98 "
      "telephone-event/8000|a=recvonly|");
}

TEST(Rfc4317, AddsAndDropsMedia) {
  const char* const both =
      "m=audio 49174 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 49172 RTP/AVP 31|a=rtpmap:31 H261/90000|";
  expectExchange("3.1: a second medium",
                 "m=audio 49170 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 49172 RTP/AVP 31|a=rtpmap:31 "
                 "H261/90000|",
                 both, both);
  expectExchange("3.2: and away again",
                 "m=audio 49170 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 0 RTP/AVP 31|a=rtpmap:31 "
                 "H261/90000|",
                 both, "m=audio 49174 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 0 RTP/AVP 31|");
}

TEST(Rfc3264, ExchangesOneAudioAndTwoVideoStreams) {
  const char* const offer =
      "m=audio 49170 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 51372 RTP/AVP 31|a=rtpmap:31 H261/90000|m=video 53000 "
      "RTP/AVP 32|a=rtpmap:32 MPV/90000|";
  expectExchange(
      "10.1: one video is refused", offer,
      "m=audio 49920 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 53000 RTP/AVP 32|a=rtpmap:32 MPV/90000|",
      "m=audio 49920 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 0 RTP/AVP 31|m=video 53000 RTP/AVP 32|a=rtpmap:32 "
      "MPV/90000|");
  expectExchange(
      "10.1: then tones are wanted",
      "m=audio 65422 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 0 RTP/AVP 31|m=video 53000 RTP/AVP 32|a=rtpmap:32 "
      "MPV/90000|m=audio 51434 RTP/AVP 110|a=rtpmap:110 telephone-event/8000|a=recvonly|",
      "m=audio 49170 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 53000 RTP/AVP 32|a=rtpmap:32 MPV/90000|m=audio 53122 "
      "RTP/AVP 101|a=rtpmap:101 telephone-event/8000|",
      "m=audio 49170 RTP/AVP 0|a=rtpmap:0 PCMU/8000|m=video 0 RTP/AVP 31|m=video 53000 RTP/AVP 32|a=rtpmap:32 "
      "MPV/90000|m=audio 53122 RTP/AVP 110|a=rtpmap:110 telephone-event/8000|a=sendonly|");
}

TEST(Rfc3264, ChoosesOneOfSeveralCodecs) {
  const char* const local = "m=audio 54344 RTP/AVP 0 4|a=rtpmap:0 PCMU/8000|a=rtpmap:4 G723/8000|";
  expectExchange("10.2: what both have",
                 "m=audio 62986 RTP/AVP 0 4 18|a=rtpmap:0 PCMU/8000|a=rtpmap:4 G723/8000|a=rtpmap:18 "
                 "G729/8000|a=inactive|",
                 local, "m=audio 54344 RTP/AVP 0 4|a=rtpmap:0 PCMU/8000|a=rtpmap:4 G723/8000|a=inactive|");
  expectExchange("10.2: the one that is reserved for",
                 "m=audio 62986 RTP/AVP 4|a=rtpmap:4 G723/8000|a=sendrecv|", local,
                 "m=audio 54344 RTP/AVP 4|a=rtpmap:4 G723/8000|");
}

// RFC 6184, section 8.2.2: packetization modes make payload types, and levels may go down.

TEST(Rfc6184, ChoosesPacketizationModes) {
  const char* const offer =
      "m=video 49170 RTP/AVP 100 99 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42A01E; "
      "packetization-mode=0|a=rtpmap:99 H264/90000|a=fmtp:99 profile-level-id=42A01E; packetization-mode=1|a=rtpmap:100 "
      "H264/90000|a=fmtp:100 profile-level-id=42A01E; packetization-mode=2; sprop-interleaving-depth=45|";
  expectExchange(
      "two of three", offer,
      "m=video 49170 RTP/AVP 96 97|a=rtpmap:96 H264/90000|a=fmtp:96 profile-level-id=42A01E|a=rtpmap:97 "
      "H264/90000|a=fmtp:97 profile-level-id=42A01E; packetization-mode=1|",
      "m=video 49170 RTP/AVP 99 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42A01E|a=rtpmap:99 "
      "H264/90000|a=fmtp:99 profile-level-id=42A01E; packetization-mode=1|");
}

TEST(Rfc6184, LowersLevelsUnlessEachSideHasItsOwn) {
  const char* const offer =
      "m=video 49170 RTP/AVP 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42A01E; "
      "packetization-mode=1;level-asymmetry-allowed=1|";
  expectExchange(
      "ours is lower", offer,
      "m=video 49172 RTP/AVP 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42A00D; packetization-mode=1|",
      "m=video 49172 RTP/AVP 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42A00D; packetization-mode=1|");
  expectExchange(
      "ours is higher", offer,
      "m=video 49172 RTP/AVP 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42A028; packetization-mode=1|",
      "m=video 49172 RTP/AVP 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42a01e; packetization-mode=1|");
  expectExchange("each has its own", offer,
                 "m=video 49172 RTP/AVP 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42A028; "
                 "packetization-mode=1;level-asymmetry-allowed=1|",
                 "m=video 49172 RTP/AVP 98|a=rtpmap:98 H264/90000|a=fmtp:98 profile-level-id=42A028; "
                 "packetization-mode=1;level-asymmetry-allowed=1|");
}

}  // namespace
