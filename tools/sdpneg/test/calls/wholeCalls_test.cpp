// Calls from their messages to what is told of them.

#include <gtest/gtest.h>

#include "calls/madeCall.h"
#include "calls/media.h"
#include "calls/messages.h"
#include "calls/secrets.h"
#include "calls/troubles.h"

namespace {

using calling::Sip;
using Strings = std::vector<std::string>;

constexpr std::string_view kIn = "203.0.113.1";
constexpr std::string_view kHop = "203.0.113.2";
constexpr std::string_view kOut = "203.0.113.3";

/// What is told of the only call of some messages, keys masked.
tool::Call told(const std::vector<Sip>& messages) {
  std::vector<tool::Call> calls = calling::callsOf(messages);
  EXPECT_EQ(calls.size(), 1U);
  if (calls.empty()) return {};
  describeMedia(calls[0]);
  findTroubles(calls[0]);
  maskSecrets(calls[0]);
  return std::move(calls[0]);
}

Sip request(const std::string& method, std::string_view from, std::string_view to, const std::string& callId,
            std::string body, const std::string& toTag = {}, int cseq = 1) {
  Sip sip;
  sip.start = method;
  sip.source = from;
  sip.destination = to;
  sip.callId = callId;
  sip.body = std::move(body);
  sip.toTag = toTag;
  sip.cseq = cseq;
  sip.branch = "z9hG4bK" + callId + method + std::to_string(cseq);
  return sip;
}

std::string bodyOf(std::string_view media, int version = 1) {
  return "v=0\r\no=- 11 " + std::to_string(version) +
         " IN IP4 203.0.113.1\r\ns=-\r\nc=IN IP4 203.0.113.1\r\nt=0 0\r\n" + std::string(media);
}

constexpr std::string_view kSecure =
    "m=audio 4000 RTP/SAVP 8\r\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\r\n";
constexpr std::string_view kPlain = "m=audio 4000 RTP/AVP 8\r\n";

TEST(WholeCalls, NameTheHopThatTookTheKeys) {
  const Sip first = request("INVITE", kIn, kHop, "a", bodyOf(kSecure));
  Sip second = request("INVITE", kHop, kOut, "b", bodyOf("m=audio 4000 RTP/SAVP 8\r\n"));
  second.headers = "X-Call-ID: a\r\n";
  const tool::Call call =
      told({first, second, calling::reply(second, "200", bodyOf("m=audio 5000 RTP/SAVP 8\r\n")),
            calling::reply(first, "200", bodyOf("m=audio 5000 RTP/SAVP 8\r\n"))});
  ASSERT_FALSE(made::textOf(call, "hop-lost-keys").empty());
  EXPECT_EQ(made::rulesOf(call)[0].substr(0, 17), "hop-lost-keys 2 1");
  EXPECT_EQ(made::textOf(call, "hop-lost-keys"),
            "audio: crypto was taken away by 203.0.113.2, and the profile is RTP/SAVP");
  EXPECT_EQ(call.security, "keyless");
  EXPECT_EQ(call.codecs, (Strings{"PCMA"}));
  for (const tool::CallMessage& message : call.messages) {
    EXPECT_EQ(message.text.find("WVNf"), std::string::npos) << message.text;
  }
  EXPECT_TRUE(call.messages[0].sdp().ends_with(" inline:[key 1]\r\n")) << call.messages[0].sdp();
}

TEST(WholeCalls, TellTheHopThatMadeAudioOneWayOnce) {
  const Sip first = request("INVITE", kIn, kHop, "a", bodyOf(kPlain));
  const Sip second = request("INVITE", kHop, kOut, "b", bodyOf("m=audio 4000 RTP/AVP 8\r\na=recvonly\r\n"));
  const tool::Call call =
      told({first, second, calling::reply(second, "180"),
            calling::reply(second, "200", bodyOf("m=audio 5000 RTP/AVP 8\r\na=sendonly\r\n")),
            calling::reply(first, "200", bodyOf("m=audio 5000 RTP/AVP 8\r\na=sendonly\r\n"))});
  const std::string front = second.text().substr(0, second.text().find("m=audio"));
  const auto line = std::count(front.begin(), front.end(), '\n') + 1;
  EXPECT_EQ(made::rulesOf(call), (Strings{"one-way 2 1 " + std::to_string(line)}));
  EXPECT_EQ(made::textOf(call, "one-way"),
            "audio came as sendrecv and was made recvonly by 203.0.113.2: 203.0.113.2 does not send");
}

TEST(WholeCalls, AreGoodWithRetransmissionsRingingHoldAndResumption) {
  const Sip invite = request("INVITE", kIn, kOut, "a", bodyOf(kPlain));
  const Sip hold =
      request("INVITE", kIn, kOut, "a", bodyOf(std::string(kPlain) + "a=sendonly\r\n", 2), "t", 2);
  const Sip resume = request("INVITE", kIn, kOut, "a", bodyOf(kPlain, 3), "t", 3);
  const tool::Call call = told(
      {invite, invite, calling::reply(invite, "183", bodyOf(kPlain)),
       calling::reply(invite, "200", bodyOf(kPlain)), request("ACK", kIn, kOut, "a", "", "t"), hold,
       calling::reply(hold, "200", bodyOf(std::string(kPlain) + "a=recvonly\r\n", 2)),
       request("ACK", kIn, kOut, "a", "", "t", 2), resume, calling::reply(resume, "200", bodyOf(kPlain, 3)),
       request("ACK", kIn, kOut, "a", "", "t", 3), request("BYE", kIn, kOut, "a", "", "t", 4)});
  EXPECT_EQ(made::rulesOf(call), Strings{});
  EXPECT_EQ(call.retransmissions(), 1U);
  EXPECT_EQ(call.security, "plain");
}

TEST(WholeCalls, JudgeOffersOfResponsesByTheAcknowledgement) {
  const Sip invite = request("INVITE", kIn, kOut, "a", "");
  const tool::Call call =
      told({invite, calling::reply(invite, "200", bodyOf(kPlain)),
            request("ACK", kIn, kOut, "a", bodyOf("m=audio 4000 RTP/AVP 0\r\na=inactive\r\n"), "t")});
  Strings rules;
  for (const tool::Trouble& trouble : call.troubles)
    rules.push_back(trouble.rule + " " + std::to_string(trouble.message));
  EXPECT_EQ(rules, (Strings{"one-way 2", "no-common-codec 2", "no-format 2", "codec-not-offered 2"}));
}

TEST(WholeCalls, LookAtTheForkThatAcceptsAlone) {
  const Sip invite = request("INVITE", kIn, kOut, "a", bodyOf(kPlain));
  Sip first = calling::reply(invite, "183", bodyOf(kPlain), "one");
  first.headers = "Require: 100rel\r\nRSeq: 1\r\n";
  Sip second = calling::reply(invite, "183", bodyOf(std::string(kPlain) + "a=inactive\r\n"), "two");
  second.headers = first.headers;
  const auto acceptedBy = [&](const std::string& tag) { return calling::reply(invite, "200", "", tag); };
  EXPECT_EQ(made::rulesOf(told({invite, first, second, acceptedBy("one")})), Strings{});
  EXPECT_EQ(made::textOf(told({invite, second, first, acceptedBy("two")}), "one-way"),
            "audio is inactive: nobody sends");
}

}  // namespace
