#include "answer/answerTestSupport.h"

// Which local section serves which section of the offer, and what refused ones look like.

using namespace answerTest;
using sdp::SectionOutcome;

namespace {

TEST(Sections, AreAnsweredInTheOrderOfTheOffer) {
  expectAnswers(
      {{"by media", "m=video 4002 RTP/AVP 31|m=audio 4000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|m=video 5002 RTP/AVP 31|", "m=video 5002 RTP/AVP 31|m=audio 5000 RTP/AVP 0|"},
       {"what we do not have is refused",
        "m=audio 4000 RTP/AVP 0|m=video 4002/2 RTP/AVP 31 34|a=mid:v|a=sendonly|", "m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|m=video 0 RTP/AVP 31|a=mid:v|"},
       {"a local section serves once", "m=audio 4000 RTP/AVP 0|m=audio 4002 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|", "m=audio 5000 RTP/AVP 0|m=audio 0 RTP/AVP 0|"},
       {"one that does not serve is left for others", "m=audio 4000 RTP/AVP 8|m=audio 4002 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|m=audio 5002 RTP/AVP 8|", "m=audio 5002 RTP/AVP 8|m=audio 5000 RTP/AVP 0|"},
       {"disabled ones do not serve", "m=audio 4000 RTP/AVP 0|",
        "m=audio 0 RTP/AVP 0|m=audio 5002 RTP/AVP 0|", "m=audio 5002 RTP/AVP 0|"},
       {"with a count of ports as it stands", "m=audio 4000 RTP/AVP 0|", "m=audio 5000/2 RTP/AVP 0|",
        "m=audio 5000/2 RTP/AVP 0|"}});
}

TEST(Sections, HaveTheTransportOfTheOffer) {
  expectAnswers(
      {{"with feedback or without", "m=audio 4000 RTP/AVPF 0|", "m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVPF 0|"},
       {"as the offer writes it", "m=image 4000 UDPTL T38|", "m=image 5000 udptl t38|",
        "m=image 5000 UDPTL T38|"},
       {"RTP in lower case, whose formats are words",
        "m=audio 4000 rtp/avp 0 97 101|a=rtpmap:97 opus/48000/2|",
        "m=audio 5000 RTP/AVP 101 98 0|a=rtpmap:101 telephone-event/8000|a=rtpmap:98 opus/48000/2|",
        "m=audio 5000 rtp/avp 0 101|a=rtpmap:101 telephone-event/8000|"},
       {"whose parameters are the local ones", "m=audio 4000 rtp/avp 101|",
        "m=audio 5000 RTP/AVP 101|a=rtpmap:101 telephone-event/8000|a=fmtp:101 0-16|",
        "m=audio 5000 rtp/avp 101|a=rtpmap:101 telephone-event/8000|a=fmtp:101 0-16|"},
       {"the words in common", "m=message 4000 TCP/MSRP a * A|a=setup:active|",
        "m=message 5000 TCP/MSRP * b A|", "m=message 5000 TCP/MSRP a *|a=setup:passive|"},
       {"an unknown one of RTP", "m=audio 4000 RTP/X 0|", "m=audio 5000 RTP/X 0|", "m=audio 5000 RTP/X 0|"}});
  expectRefusals(
      {{"over TCP",
        "m=audio 4000 TCP/RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|",
        {SectionOutcome::otherTransport}},
       {"unknown", "m=audio 4000 RTP/X 0|", "m=audio 5000 RTP/AVP 0|", {SectionOutcome::otherTransport}},
       {"secure RTP in lower case, which has no keys",
        "m=audio 4000 rtp/savp 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:A|",
        "m=audio 5000 RTP/SAVP 0|a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:B|",
        {SectionOutcome::notProtected}},
       {"without RTP", "m=audio 4000 udp 0|", "m=audio 5000 RTP/AVP 0|", {SectionOutcome::otherTransport}},
       {"no word in common",
        "m=image 4000 udptl t38|",
        "m=image 5000 udptl t39|",
        {SectionOutcome::noCommonFormat}}});
}

TEST(Sections, ThatAreRefusedKeepMediaTransportAndMid) {
  expectAnswers(
      {{"one format suffices",
        "m=audio 4000 RTP/AVP 0|m=text  4002  RTP/AVP  98 99|i=x|c=IN IP4 192.0.2.9|a=mid:t  x|",
        "m=audio 5000 RTP/AVP 0|", "m=audio 5000 RTP/AVP 0|m=text 0 RTP/AVP 98|a=mid:t|"},
       {"a disabled one", "m=audio 0 RTP/AVP 0|m=audio 4000 RTP/AVP 0|", "m=audio 5000 RTP/AVP 0|",
        "m=audio 0 RTP/AVP 0|m=audio 5000 RTP/AVP 0|"},
       {"an unreadable one",
        "m=audio 4000 RTP/AVP 0|m=|m=video|m=video 4002 RTP/AVPF|m=text x RTP/AVP 98|a=mid:1|",
        "m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|m=audio 0 RTP/AVP 0|m=video 0 RTP/AVP 0|m=video 0 RTP/AVPF 0|m=text 0 RTP/AVP "
        "98|a=mid:1|"}});
}

TEST(Sections, OfAMulticastAddressWantTheSame) {
  expectAnswers(
      {{"the same", "m=audio 4000 RTP/AVP 0|c=IN IP4 233.252.0.1/127|",
        "m=audio 5000 RTP/AVP 0|c=IN IP4 233.252.0.1/31|", "m=audio 5000 RTP/AVP 0|c=IN IP4 233.252.0.1/31|"},
       {"not below the range", "m=audio 4000 RTP/AVP 0|c=IN IP4 223.255.255.1|", "m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|"},
       {"not above the range", "m=audio 4000 RTP/AVP 0|c=IN IP4 240.0.0.1|", "m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|"}});
  expectRefusals({{"the first",
                   "m=audio 4000 RTP/AVP 0|c=IN IP4 224.0.0.1|",
                   "m=audio 5000 RTP/AVP 0|",
                   {SectionOutcome::otherMulticast}},
                  {"the last",
                   "m=audio 4000 RTP/AVP 0|c=IN IP4 239.255.255.255/1|",
                   "m=audio 5000 RTP/AVP 0|",
                   {SectionOutcome::otherMulticast}},
                  {"IPv6",
                   "m=audio 4000 RTP/AVP 0|c=IN IP6 FF02::1|",
                   "m=audio 5000 RTP/AVP 0|",
                   {SectionOutcome::otherMulticast}}});
}

TEST(Sections, ThatAreAllRefusedMakeNoAnswer) {
  expectRefusals({{"none fits",
                   "m=audio 4000 RTP/AVP 18|m=video 4002 RTP/AVP 31|m=audio 0 RTP/AVP 0|m=audio|",
                   "m=audio 5000 RTP/AVP 0|",
                   {SectionOutcome::noCommonFormat, SectionOutcome::noLocalSection, SectionOutcome::disabled,
                    SectionOutcome::unreadable}}});
  expectAnswers({{"but disabled ones do", "m=audio 0 RTP/AVP 0|m=video 0 RTP/AVP 31|",
                  "m=audio 5000 RTP/AVP 0|", "m=audio 0 RTP/AVP 0|m=video 0 RTP/AVP 31|"},
                 {"and no sections", "a=x|", "m=audio 5000 RTP/AVP 0|", ""}});
}

TEST(Sections, AreWantedInTheLocalDescriptionAndInSomethingThatIsOne) {
  const sdp::Document local = documentOf("m=audio 5000 RTP/AVP 0\r\n");
  EXPECT_EQ(makeAnswer(documentOf("v=0\r\n"), documentOf("v=0\r\n")).failure,
            sdp::AnswerFailure::noLocalSection);
  EXPECT_EQ(makeAnswer(documentOf(""), local).failure, sdp::AnswerFailure::brokenOffer);
  EXPECT_EQ(makeAnswer(documentOf("hello\r\n"), local).failure, sdp::AnswerFailure::brokenOffer);
  EXPECT_TRUE(makeAnswer(documentOf("m=audio 4000 RTP/AVP 0\n"), local));
}

constexpr const char* kLocalBundle =
    "a=group:BUNDLE x y z|m=audio 5000 RTP/AVP 0|a=mid:x|a=rtcp-mux|m=video 5002 RTP/AVP 31|c=IN IP4 "
    "192.0.2.3|a=mid:y|a=rtcp-mux|m=application 5004 udp wb|a=mid:z|";

TEST(Bundles, ShareThePortAndTheAddressOfTheFirst) {
  expectAnswers(
      {{"all",
        "a=group:BUNDLE 1 2 3|m=audio 4000 RTP/AVP 0|a=mid:1|a=rtcp-mux|m=video 4000 RTP/AVP "
        "31|a=mid:2|a=rtcp-mux|m=application 4000 udp wb|a=mid:3|",
        kLocalBundle,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1 2 3|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|m=video 5000 RTP/AVP 31|a=mid:2|a=rtcp-mux|m=application 5000 udp wb|a=mid:3|"},
       {"the group's order counts",
        "a=group:BUNDLE 2 1|m=audio 4000 RTP/AVP 0|a=mid:1|a=rtcp-mux|m=video 4000 RTP/AVP "
        "31|a=mid:2|a=rtcp-mux|",
        kLocalBundle,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 2 1|m=audio 5002 RTP/AVP 0|c=IN IP4 "
        "192.0.2.3|a=mid:1|a=rtcp-mux|m=video 5002 RTP/AVP 31|c=IN IP4 192.0.2.3|a=mid:2|a=rtcp-mux|"},
       {"without rtcp-mux a section stands alone",
        "a=group:BUNDLE 1 2|m=audio 4000 RTP/AVP 0|a=mid:1|a=rtcp-mux|m=video 4002 RTP/AVP 31|a=mid:2|",
        kLocalBundle,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|m=video 5002 RTP/AVP 31|c=IN IP4 192.0.2.3|a=mid:2|"},
       {"refused ones are no members, and other groups are not answered",
        "a=group:LS 1 2|a=group:BUNDLE 1 2|m=audio 4000 RTP/AVP 0|a=mid:1|a=rtcp-mux|m=video 4000 RTP/AVP "
        "34|a=mid:2|a=rtcp-mux|",
        kLocalBundle,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|m=video 0 RTP/AVP 34|a=mid:2|"},
       {"nothing is bundled that was not offered so", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|",
        kLocalBundle, "m=audio 5000 RTP/AVP 0|m=video 5002 RTP/AVP 31|c=IN IP4 192.0.2.3|"}});
}

TEST(Bundles, CarrySectionsThatAreBundledOnly) {
  expectAnswers(
      {{"with another that has a port",
        "a=group:BUNDLE 1 2|m=audio 4000 RTP/AVP 0|a=mid:1|a=rtcp-mux|m=video 0 RTP/AVP "
        "31|a=mid:2|a=rtcp-mux|a=bundle-only|",
        kLocalBundle,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1 2|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|m=video 5000 RTP/AVP 31|a=mid:2|a=rtcp-mux|"},
       {"also in front of it, and not at its cost",
        "a=group:BUNDLE 1 2|m=audio 0 RTP/AVP 0|a=mid:1|a=rtcp-mux|a=bundle-only|m=audio 4000 RTP/AVP "
        "0|a=mid:2|a=rtcp-mux|",
        kLocalBundle,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 2|m=audio 0 RTP/AVP 0|a=mid:1|m=audio "
        "5000 RTP/AVP 0|a=mid:2|a=rtcp-mux|"},
       {"not without rtcp-mux",
        "a=group:BUNDLE 1 2|m=audio 4000 RTP/AVP 0|a=mid:1|a=rtcp-mux|m=video 0 RTP/AVP 31|a=mid:2|a=bundle-only|",
        kLocalBundle,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|m=video 0 RTP/AVP 31|a=mid:2|"},
       {"a local one that is bundled only gets the port of the first",
        "a=group:BUNDLE 1 2|m=audio 4000 RTP/AVP 0|a=mid:1|a=rtcp-mux|m=video 4000 RTP/AVP 31|a=mid:2|a=rtcp-mux|",
        "a=group:BUNDLE x y|m=audio 5000 RTP/AVP 0|a=mid:x|a=rtcp-mux|m=video 0 RTP/AVP "
        "31|a=mid:y|a=rtcp-mux|a=bundle-only|",
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1 2|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|m=video 5000 RTP/AVP 31|a=mid:2|a=rtcp-mux|"},
       {"and none without a group", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|",
        "a=group:BUNDLE x y|m=audio 5000 RTP/AVP 0|a=mid:x|a=rtcp-mux|m=video 0 RTP/AVP "
        "31|a=mid:y|a=rtcp-mux|a=bundle-only|",
        "m=audio 5000 RTP/AVP 0|m=video 0 RTP/AVP 31|"}});
  expectRefusals({{"alone",
                   "a=group:BUNDLE 1|m=audio 0 RTP/AVP 0|a=mid:1|a=rtcp-mux|a=bundle-only|",
                   kLocalBundle,
                   {SectionOutcome::notInGroup}},
                  {"in two local groups",
                   "a=group:BUNDLE 1 2|m=audio 4000 RTP/AVP 18|a=mid:1|a=rtcp-mux|m=video 0 RTP/AVP "
                   "31|a=mid:2|a=rtcp-mux|a=bundle-only|",
                   kLocalBundle,
                   {SectionOutcome::noCommonFormat, SectionOutcome::notInGroup}}});
}

}  // namespace
