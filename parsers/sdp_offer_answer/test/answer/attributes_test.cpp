#include "answer/answerTestSupport.h"

// Directions, RTCP, ICE, header extensions, fax, and what is taken over as it is.

using namespace answerTest;

namespace {

TEST(Directions, PromiseNoMoreThanEitherSideDoes) {
  const char* const words[] = {"sendrecv", "sendonly", "recvonly", "inactive"};
  // By direction of the offer and of the local section.
  const char* const expected[4][4] = {{"sendrecv", "sendonly", "recvonly", "inactive"},
                                      {"recvonly", "inactive", "recvonly", "inactive"},
                                      {"sendonly", "sendonly", "inactive", "inactive"},
                                      {"inactive", "inactive", "inactive", "inactive"}};
  for (std::size_t offered = 0; offered < 4; ++offered) {
    for (std::size_t local = 0; local < 4; ++local) {
      const std::string offer = std::string("m=audio 4000 RTP/AVP 0|a=") + words[offered] + "|";
      const std::string ours = std::string("m=audio 5000 RTP/AVP 0|a=") + words[local] + "|a=ptime:20|";
      const std::string answer =
          std::string("m=audio 5000 RTP/AVP 0|a=") + expected[offered][local] + "|a=ptime:20|";
      expectAnswers({{words[offered], offer.c_str(), ours.c_str(), answer.c_str()}});
    }
  }
}

TEST(Directions, StandWhereTheLocalOneDoesOrAtTheEnd) {
  expectAnswers(
      {{"added", "m=audio 4000 RTP/AVP 0|a=sendonly|", "m=audio 5000 RTP/AVP 0|a=ptime:20|",
        "m=audio 5000 RTP/AVP 0|a=ptime:20|a=recvonly|"},
       {"of the sessions", "a=recvonly|m=audio 4000 RTP/AVP 0|", "a=sendonly|m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|a=sendonly|"},
       {"nothing is said of both", "m=audio 4000 RTP/AVP 0|a=sendrecv|", "m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|"},
       {"further ones go", "m=audio 4000 RTP/AVP 0|", "m=audio 5000 RTP/AVP 0|a=sendonly|a=x|a=inactive|",
        "m=audio 5000 RTP/AVP 0|a=sendonly|a=x|"}});
}

TEST(Directions, TakeAnUnspecifiedAddressForHold) {
  const char* const local = "m=audio 5000 RTP/AVP 0|";
  const char* const held = "m=audio 5000 RTP/AVP 0|a=recvonly|";
  expectAnswers({{"of old", "m=audio 4000 RTP/AVP 0|c=IN IP4 0.0.0.0|", local, held},
                 {"IPv6", "m=audio 4000 RTP/AVP 0|c=IN IP6 ::|", local, held},
                 {"not with port 9", "m=audio 9 RTP/AVP 0|c=IN IP4 0.0.0.0|", local, local},
                 {"not with ICE", "a=ice-ufrag:abcd|m=audio 4000 RTP/AVP 0|c=IN IP4 0.0.0.0|", local, local},
                 {"nor of another direction", "m=audio 4000 RTP/AVP 0|c=IN IP4 0.0.0.0|a=recvonly|", local,
                  "m=audio 5000 RTP/AVP 0|a=sendonly|"}});
}

TEST(Rtcp, IsMultiplexedWhereBothDoSo) {
  const char* const local = "m=audio 5000 RTP/AVP 0|a=rtcp:5001|a=rtcp-mux|a=rtcp-rsize|a=rtcp-mux-only|";
  expectAnswers({{"both", "m=audio 4000 RTP/AVP 0|a=rtcp-mux|", local, "m=audio 5000 RTP/AVP 0|a=rtcp-mux|"},
                 {"we alone", "m=audio 4000 RTP/AVP 0|a=rtcp-rsize|", local,
                  "m=audio 5000 RTP/AVP 0|a=rtcp:5001|a=rtcp-rsize|"},
                 {"only so", "m=audio 4000 RTP/AVP 0|a=rtcp-mux|a=rtcp-mux-only|", local,
                  "m=audio 5000 RTP/AVP 0|a=rtcp-mux|a=rtcp-mux-only|"},
                 {"they alone", "m=audio 4000 RTP/AVP 0|a=rtcp-mux|", "m=audio 5000 RTP/AVP 0|a=rtcp:5001|",
                  "m=audio 5000 RTP/AVP 0|a=rtcp:5001|"}});
}

TEST(Ice, IsAnsweredWhereBothCredentialsAreOffered) {
  const char* const local =
      "a=ice-lite|a=ice-options:ice2|m=audio 5000 RTP/AVP 0|a=ice-ufrag:ours|a=candidate:1 1 UDP 1 192.0.2.2 5000 typ "
      "host|a=ice-pwd:oursoursoursoursoursour|a=end-of-candidates|";
  const char* const plain = "m=audio 5000 RTP/AVP 0|";
  expectAnswers(
      {{"both", "m=audio 4000 RTP/AVP 0|a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|", local,
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=ice-lite|a=ice-options:ice2|m=audio 5000 RTP/AVP "
        "0|a=ice-ufrag:ours|a=candidate:1 1 UDP 1 192.0.2.2 5000 typ "
        "host|a=ice-pwd:oursoursoursoursoursour|a=end-of-candidates|"},
       {"one is missing", "m=audio 4000 RTP/AVP 0|a=ice-ufrag:them|", local, plain},
       {"one is empty", "m=audio 4000 RTP/AVP 0|a=ice-ufrag:them|a=ice-pwd:|", local, plain},
       {"neither", "m=audio 4000 RTP/AVP 0|", local, plain},
       {"one of ours is missing", "m=audio 4000 RTP/AVP 0|a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|",
        "m=audio 5000 RTP/AVP 0|a=ice-ufrag:ours|", plain},
       {"of the sessions", "a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|m=audio 4000 RTP/AVP 0|",
        "a=ice-pwd:oursoursoursoursoursour|a=ice-ufrag:ours|m=audio 5000 RTP/AVP 0|a=ptime:20|",
        "a=ice-pwd:oursoursoursoursoursour|a=ice-ufrag:ours|m=audio 5000 RTP/AVP 0|a=ptime:20|"},
       {"a group has that of its first",
        "a=group:BUNDLE 1 2|m=audio 4000 RTP/AVP 0|a=mid:1|a=rtcp-mux|a=ice-ufrag:them|a=ice-pwd:themthemthemthemthemth|m="
        "video 4000 RTP/AVP 31|a=mid:2|a=rtcp-mux|",
        "a=group:BUNDLE x y|m=audio 5000 RTP/AVP "
        "0|a=mid:x|a=rtcp-mux|a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|a=candidate:1 1 UDP 1 192.0.2.2 5000 typ "
        "host|m=video 5002 RTP/AVP "
        "31|a=mid:y|a=ice-ufrag:more|a=ice-pwd:moremoremoremoremoremo|a=candidate:1 1 UDP 1 192.0.2.2 5002 typ "
        "host|a=rtcp-mux|",
        "v=0|o=me 7 3 IN IP4 192.0.2.2|s=us|c=IN IP4 192.0.2.2|t=0 0|a=group:BUNDLE 1 2|m=audio 5000 RTP/AVP "
        "0|a=mid:1|a=rtcp-mux|a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|a=candidate:1 1 UDP 1 192.0.2.2 5000 typ "
        "host|m=video 5000 RTP/AVP "
        "31|a=mid:2|a=ice-ufrag:ours|a=ice-pwd:oursoursoursoursoursour|a=candidate:1 1 UDP 1 192.0.2.2 5000 typ "
        "host|a=rtcp-mux|"}});
}

TEST(HeaderExtensions, HaveTheNumbersOfTheOffer) {
  expectAnswers(
      {{"those both have", "m=audio 4000 RTP/AVP 0|a=extmap:3 urn:a|a=extmap:4 urn:b|a=extmap:5 urn:a|",
        "m=audio 5000 RTP/AVP 0|a=extmap:1 urn:c|a=extmap:2 urn:a  x|a=extmap:9 urn:a|",
        "m=audio 5000 RTP/AVP 0|a=extmap:3 urn:a  x|"},
       {"with directions",
        "m=audio 4000 RTP/AVP 0|a=extmap:3/sendonly urn:a|a=extmap:4/recvonly urn:b|a=extmap:5 urn:c|",
        "m=audio 5000 RTP/AVP 0|a=extmap:1 urn:a|a=extmap:2/recvonly urn:b|a=extmap:3/sendrecv urn:c|",
        "m=audio 5000 RTP/AVP 0|a=extmap:3/recvonly urn:a|a=extmap:4/inactive urn:b|a=extmap:5/sendrecv urn:c|"},
       {"of the sessions", "a=extmap:7 urn:a|m=audio 4000 RTP/AVP 0|a=extmap:8 urn:b|",
        "a=extmap:1 urn:b|m=audio 5000 RTP/AVP 0|a=extmap:2 urn:a|a=ptime:20|",
        "m=audio 5000 RTP/AVP 0|a=extmap:7 urn:a|a=ptime:20|a=extmap:8 urn:b|"},
       {"encrypted ones by what they encrypt",
        "m=audio 4000 RTP/AVP 0|a=extmap:3 urn:ietf:params:rtp-hdrext:encrypt urn:a|",
        "m=audio 5000 RTP/AVP 0|a=extmap:1 urn:ietf:params:rtp-hdrext:encrypt urn:b|a=extmap:2 "
        "urn:ietf:params:rtp-hdrext:encrypt urn:a|a=extmap:4 urn:a|",
        "m=audio 5000 RTP/AVP 0|a=extmap:3 urn:ietf:params:rtp-hdrext:encrypt urn:a|"},
       {"mixed where that is offered", "a=extmap-allow-mixed|m=audio 4000 RTP/AVP 0|m=audio 4002 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|a=extmap-allow-mixed|m=audio 5002 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|a=extmap-allow-mixed|m=audio 5002 RTP/AVP 0|"},
       {"and not where it is not", "m=audio 4000 RTP/AVP 0|",
        "a=extmap-allow-mixed|m=audio 5000 RTP/AVP 0|a=extmap-allow-mixed|", "m=audio 5000 RTP/AVP 0|"}});
}

TEST(Fax, NegotiatesItsLimits) {
  const char* const local =
      "m=image 5000 udptl t38|a=T38FaxVersion:3|a=T38MaxBitRate:14400|a=T38FaxMaxBuffer:1024|a=T38FaxMaxDatagram:238|a="
      "T38FaxRateManagement:transferredTCF|a=T38FaxUdpEC:t38UDPRedundancy|";
  expectAnswers(
      {{"the lower ones",
        "m=image 4000 udptl t38|a=T38FaxVersion:0|a=T38MaxBitRate:9600|a=T38FaxMaxBuffer:2000|a=T38FaxMaxDatagram:100|a="
        "T38FaxRateManagement:TransferredTCF|a=T38FaxUdpEC:T38UDPRedundancy|",
        local,
        "m=image 5000 udptl t38|a=T38FaxVersion:0|a=T38MaxBitRate:9600|a=T38FaxMaxBuffer:1024|a=T38FaxMaxDatagram:238|a="
        "T38FaxRateManagement:transferredTCF|a=T38FaxUdpEC:T38UDPRedundancy|"},
       {"ours where nothing is offered", "m=image 4000 udptl t38|a=T38FaxUdpEC:t38UDPFEC|", local,
        "m=image 5000 udptl t38|a=T38FaxVersion:3|a=T38MaxBitRate:14400|a=T38FaxMaxBuffer:1024|a=T38FaxMaxDatagram:238|a="
        "T38FaxRateManagement:transferredTCF|"},
       {"nothing that we do not have", "m=image 4000 udptl t38|a=T38FaxVersion:2|a=T38FaxUdpEC:t38UDPFEC|",
        "m=image 5000 udptl t38|", "m=image 5000 udptl t38|"}});
  expectRefusals({{"another rate management",
                   "m=image 4000 udptl t38|a=T38FaxRateManagement:localTCF|",
                   local,
                   {sdp::SectionOutcome::otherRateManagement}}});
}

TEST(Attributes, OfTheLocalSectionAreTakenOver) {
  expectAnswers(
      {{"those of the section and its bandwidth", "m=audio 4000 RTP/AVP 0|b=AS:9|a=ptime:30|a=label:5|",
        "m=audio 5000 RTP/AVP 0|a=ptime:20|k=clear:x|a=label:1|b=AS:64|i=speech|a=content:main|b=TIAS:64000|a=ssrc:1 "
        "cname:c|a=msid:- t|a=max-message-size:100|a=x|c=IN IP4 192.0.2.7|",
        "m=audio 5000 RTP/AVP 0|i=speech|c=IN IP4 192.0.2.7|b=AS:64|b=TIAS:64000|a=ptime:20|a=label:1|a=content:main|a=ssrc:"
        "1 cname:c|a=msid:- t|a=max-message-size:100|a=x|"},
       {"but not what negotiates more", "m=audio 4000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 0|a=simulcast:send h|a=rid:h send|a=tcap:1 RTP/SAVP|a=acap:1 x|a=pcfg:1 t=1|a=mid:x|",
        "m=audio 5000 RTP/AVP 0|"},
       {"mid is the offer's", "m=audio 4000 RTP/AVP 0|a=mid:them|",
        "m=audio 5000 RTP/AVP 0|a=mid:us|a=ptime:20|", "m=audio 5000 RTP/AVP 0|a=mid:them|a=ptime:20|"},
       {"also where we have none", "m=audio 4000 RTP/AVP 0|a=mid:them|", "m=audio 5000 RTP/AVP 0|a=ptime:20|",
        "m=audio 5000 RTP/AVP 0|a=ptime:20|a=mid:them|"}});
}

}  // namespace
