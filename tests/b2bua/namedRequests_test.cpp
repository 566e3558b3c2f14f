#include <namedRequests.h>
#include <options.h>
#include <policyCheck.h>
#include <policySteps.h>

#include <CLI/CLI.hpp>

#include "calls.h"
#include "rawParty.h"

// Requests by name in a policy: whose bodies they change, in which order, and what becomes of those that are refused.

namespace {

constexpr milliseconds kLongestWait{5'000};
constexpr std::size_t kCapacity = 20'480;  ///< of a text with its NUL

const std::string kSession =
    "v=0\n"
    "o=alice 21 4 IN IP4 192.0.2.10\n"
    "s=-\n"
    "c=IN IP4 192.0.2.10\n"
    "t=0 0\n";
const std::string kAudio =
    "m=audio 49170 RTP/AVP 0 8\n"
    "a=sendrecv\n";

using Bodies = std::vector<std::string>;

/// @param rules  the lines of a policy
b2bua::Policy policyOf(const std::string& rules) {
  const TemporaryFolder folder;
  b2bua::Options options;
  CLI::App app;
  b2bua::parseOptions(app, options, {"--check-policy", folder.write("policy", rules)});
  return options.policy;
}

/// @return what becomes of a body with CR LF on its way, or "refused: " and why
std::string passed(const b2bua::Policy& policy, b2bua::Side from, bool isAnswer, const std::string& text) {
  sdp::Document document;
  b2bua::Body received;
  b2bua::OfferChanges changes;
  std::string reason = b2bua::takeIn(text, document);
  if (reason.empty()) reason = b2bua::parse(document, received);
  b2bua::Body body = received;
  if (reason.empty()) reason = b2bua::applyBefore(policy, from, isAnswer, body, changes);
  if (reason.empty()) reason = b2bua::applyBehind(policy, from, isAnswer, body, changes);
  if (reason.empty()) reason = b2bua::whatIsForbidden(policy, b2bua::textOf(body), false);
  return reason.empty() ? b2bua::textOf(body) : "refused: " + reason;
}

/// A body without a direction, padded to a length.
std::string ofLength(std::size_t length) {
  std::string text = withCrLf(kSession + "m=audio 49170 RTP/AVP 0 8\n");
  constexpr std::size_t kLine = 1'000;
  while (length - text.size() > kLine) text += "a=x:" + std::string(kLine / 2, 'y') + "\r\n";
  const std::string last = "a=x:\r\n";
  return text + "a=x:" + std::string(length - text.size() - last.size(), 'y') + "\r\n";
}

std::string withoutTheirLine(const std::string& body, const std::string& line) {
  return replaced(body, line + "\n", "");
}

class NamedRequests : public Calls {
 protected:
  const RawParty caller_;
  const RawParty target_;
};

}  // namespace

TEST(RequestLists, HaveAKeyForEachPartyDirectionAndKindOfBody) {
  std::vector<std::string> keys;
  for (std::size_t list = 0; list < 12; ++list) keys.push_back(b2bua::keyOf(list));
  EXPECT_EQ(keys, (std::vector<std::string>{"from-caller", "from-target", "to-caller", "to-target",
                                            "offer-from-caller", "offer-from-target", "offer-to-caller",
                                            "offer-to-target", "answer-from-caller", "answer-from-target",
                                            "answer-to-caller", "answer-to-target"}));
}

TEST(RequestLists, AreDoneInTheirOrder) {
  const std::string body = kSession + kAudio;
  const struct {
    const char* name;
    std::string policy;
    b2bua::Side from;
    bool isAnswer;
    std::string expected;
  } cases[] = {
      {"offers alone behind all", "offer-to-target = direction inactive\nto-target = direction sendonly\n",
       b2bua::kCaller, false, replaced(body, "sendrecv", "inactive")},
      {"answers alone behind all", "answer-from-target=direction inactive\nfrom-target=direction sendonly\n",
       b2bua::kTarget, true, replaced(body, "sendrecv", "inactive")},
      {"one behind the other", "to-target = direction inactive; direction recvonly audio;\n", b2bua::kCaller,
       false, replaced(body, "sendrecv", "recvonly")},
      {"from a party, in front of the keys", "audio-codecs = PCMA\nfrom-caller = drop-codecs PCMA\n",
       b2bua::kCaller, false, "refused: no allowed audio codec"},
      {"to a party, behind the keys", "audio-codecs = PCMA, PCMU\nto-target = order-codecs PCMU\n",
       b2bua::kCaller, false, body},
      {"the keys alone", "audio-codecs = PCMA, PCMU\n", b2bua::kCaller, false,
       replaced(body, " 0 8", " 8 0")},
      {"of another party", "from-caller = direction inactive\nto-target = direction inactive\n",
       b2bua::kTarget, false, body},
      {"of offers, for an answer", "offer-to-caller = disable audio\n", b2bua::kTarget, true, body},
      {"of answers, for an offer", "answer-to-caller = disable audio\n", b2bua::kTarget, false, body},
  };
  for (const auto& each : cases) {
    const std::string expected =
        each.expected.starts_with("refused") ? each.expected : withCrLf(each.expected);
    EXPECT_EQ(passed(policyOf(each.policy), each.from, each.isAnswer, withCrLf(body)), expected) << each.name;
  }
}

TEST(RequestLists, RefuseABodyOrHaveNothingToDo) {
  const std::string body = kSession + kAudio;
  const struct {
    const char* name;
    std::string policy;
    bool isAnswer;
    std::string expected;
  } cases[] = {
      {"without a codec", "to-target = direction sendonly; keep-codecs G729\n", false,
       "refused: to-target keep-codecs: section 1 audio: no common codec: it has PCMU, PCMA; kept would be "
       "G729"},
      {"without media", "offer-to-target = disable audio\n", false,
       "refused: offer-to-target: no media left"},
      {"an answer without media", "to-target = disable audio\n", true, replaced(body, " 49170 ", " 0 ")},
      {"what another key forbids", "connection-address = 192.0.2.99\nto-target = anchor 192.0.2.50 20000\n",
       false, "refused: the policy forbids another connection address, m-line 1"},
      {"what no key forbids", "to-target = anchor 192.0.2.50 20000\n", false,
       replaced(replaced(body, "c=IN IP4 192.0.2.10", "c=IN IP4 192.0.2.50"), " 49170 ", " 20000 ")},
      {"what is not there", "to-target = drop-codecs G729; disable video; strip-attributes x-*; disable 7\n",
       false, body},
  };
  for (const auto& each : cases) {
    const std::string expected =
        each.expected.starts_with("refused") ? each.expected : withCrLf(each.expected);
    EXPECT_EQ(passed(policyOf(each.policy), b2bua::kCaller, each.isAnswer, withCrLf(body)), expected)
        << each.name;
  }
}

TEST(RequestLists, LeaveTheBodyWhenOneIsRefused) {
  const std::string text = withCrLf(kSession + kAudio);
  b2bua::Body body;
  ASSERT_EQ(body.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN), 0);
  const b2bua::Policy policy =
      policyOf("to-target = direction sendonly\noffer-to-target = keep-codecs G729\n");
  EXPECT_NE(b2bua::applyRequests(policy, b2bua::Way::to, b2bua::kTarget, false, body), "");
  EXPECT_EQ(b2bua::textOf(body), text);
}

TEST(RequestLists, TellNoKeys) {
  const std::string text = withCrLf(kSession +
                                    "m=audio 49170 RTP/SAVP 0\n"
                                    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:SECRET\n"
                                    "a=ice-pwd:SECRET\n");
  const std::string refused =
      passed(policyOf("to-target = set-profile UDP/TLS/RTP/SAVP\n"), b2bua::kCaller, false, text);
  EXPECT_EQ(refused, "refused: to-target set-profile: section 1 audio: no fingerprint");
}

TEST(RequestLists, RefuseWhatWouldBeTooLong) {
  const b2bua::Policy policy = policyOf("to-target = direction sendonly\n");
  const std::string line = "a=sendonly\r\n";
  const std::string fits = ofLength(kCapacity - 1 - line.size());
  EXPECT_EQ(passed(policy, b2bua::kCaller, false, fits), fits + line);
  EXPECT_EQ(passed(policy, b2bua::kCaller, false, ofLength(kCapacity - line.size())),
            "refused: too long after the policy");
}

// Each is cut off somewhere, as no sender should.
TEST(RequestLists, KeepTheSectionsOfWhateverPasses) {
  const b2bua::Policy policy = policyOf(
      "from-caller = unbundle; strip-attributes rtcp*\n"
      "to-target = keep-codecs PCMA audio; set-profile RTP/AVP; anchor 192.0.2.50 20000; direction sendonly\n");
  const std::string whole = withCrLf(kSession +
                                     "a=group:BUNDLE 1 2\n"
                                     "m=audio 49170 RTP/SAVP 0 8\n"
                                     "a=mid:1\n"
                                     "a=rtcp:49171\n"
                                     "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:SECRET\n"
                                     "m=video 0 RTP/SAVP 97\n"
                                     "a=mid:2\n"
                                     "a=bundle-only\n");
  const auto sectionsOf = [](const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find("\nm=", at)) != std::string::npos; ++at) ++count;
    return count;
  };
  int usable = 0;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const std::string result = passed(policy, b2bua::kCaller, false, whole.substr(0, length));
    EXPECT_EQ(result.find("SECRET"), std::string::npos) << length;
    if (result.starts_with("refused: ")) continue;
    ++usable;
    EXPECT_EQ(sectionsOf(result), sectionsOf(whole.substr(0, length))) << result;
  }
  EXPECT_GE(usable, 100);
}

TEST_F(NamedRequests, AreDoneToTheBodiesOfACall) {
  const std::string offer = kSession +
                            "m=audio 49170 RTP/AVP 0 8 18 101\n"
                            "a=rtpmap:101 telephone-event/8000\n"
                            "a=x-line:4\n"
                            "a=sendrecv\n"
                            "m=video 51372 RTP/AVP 97\n"
                            "a=rtpmap:97 H264/90000\n";
  const std::string answer =
      "v=0\n"
      "o=bob 33 9 IN IP4 192.0.2.20\n"
      "s=-\n"
      "c=IN IP4 192.0.2.20\n"
      "t=0 0\n"
      "m=audio 30000 RTP/AVP 8 101\n"
      "a=rtpmap:101 telephone-event/8000\n"
      "a=x-line:5\n"
      "a=sendrecv\n"
      "m=video 0 RTP/AVP 97\n";
  Plan plan;
  plan.policy =
      "from-caller = strip-attributes x-line\n"
      "to-target = keep-codecs PCMA,telephone-event audio; disable video\n"
      "offer-from-target = disable audio   # the target offers nothing here\n"
      "answer-to-caller = direction sendonly audio\n";
  plan.bodies = {{"offer", offer}, {"answer", answer}};
  const Played played = play(plan);
  std::string offered = withoutTheirLine(replaced(offer, " 0 8 18 101", " 8 101"), "a=x-line:4");
  offered = replaced(offered, "m=video 51372 ", "m=video 0 ");
  EXPECT_EQ(played.atTarget, Bodies{offered});
  EXPECT_EQ(played.atCaller, Bodies{replaced(answer, "a=sendrecv", "a=sendonly")});
  EXPECT_EQ(raised(played.counters), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
}

// One version on and with other codecs alone: the answer that was given was to what the requests had made of the offer.
TEST_F(NamedRequests, AreDoneToEachReoffer) {
  const std::string offer = kSession + "m=audio 49170 RTP/AVP 0 8 18\n";
  const auto version = [](const std::string& body, const std::string& from, const std::string& to) {
    return replaced(body, " " + from + " IN", " " + to + " IN");
  };
  const std::string answer =
      "v=0\no=bob 33 9 IN IP4 192.0.2.20\ns=-\nc=IN IP4 192.0.2.20\nt=0 0\nm=audio 30000 RTP/AVP 8\n";
  Plan plan;
  plan.callerScenario = "hold-caller";
  plan.targetScenario = "hold-target";
  plan.policy = "to-target = drop-codecs PCMU\n";
  plan.bodies = {{"offer", offer},
                 {"answer", answer},
                 {"hold", replaced(version(offer, "4", "5"), " 0 8 18", " 0 8")},
                 {"hold-answer", answer},
                 {"resume", version(offer, "4", "6")},
                 {"resume-answer", answer}};
  const Played played = play(plan);
  EXPECT_EQ(played.atTarget,
            (Bodies{replaced(offer, " 0 8 18", " 8 18"), replaced(version(offer, "4", "5"), " 0 8 18", " 8"),
                    replaced(version(offer, "4", "6"), " 0 8 18", " 8 18")}));
  EXPECT_EQ(played.atCaller, (Bodies{answer, answer, answer}));
}

TEST_F(NamedRequests, AreDoneToADummyOffer) {
  Engine engine(folder_, "127.0.0.1", target_.port(),
                {"--audio-codecs", "PCMA", "--to-target", "direction sendonly; set-profile RTP/AVPF"});
  caller_.request(engine.address(), {});
  const std::string invited = target_.receive("INVITE ", "", kLongestWait);
  EXPECT_NE(invited.find("\r\n\r\nv=0\r\no=IRM 1 1 IN IP4 127.0.0.1\r\ns=IRM\r\nc=IN IP4 127.0.0.1\r\n"
                         "t=0 0\r\nm=audio 5004 RTP/AVPF 8\r\na=sendonly\r\n"),
            std::string::npos)
      << invited;
  target_.respond(engine.address(), invited, "486 Busy Here");
}

TEST_F(NamedRequests, ThatAreRefusedRefuseTheBody) {
  Engine engine(folder_, "127.0.0.1", target_.port(), {"--offer-to-target", "keep-codecs LPC audio"});
  const std::string reason =
      "offer-to-target keep-codecs: section 1 audio: no common codec: it has PCMU, PCMA; kept would be LPC";
  const std::string refused =
      caller_.ask(engine.address(), {.body = withCrLf(kSession + kAudio)}, kLongestWait);
  EXPECT_EQ(statusOf(refused), 488);
  EXPECT_EQ(headerOf(refused, "Warning"), "399 " + engine.address() + " \"" + reason + "\"");
  EXPECT_NE(engine.log().find(" body refused: " + reason), std::string::npos) << engine.log();
  // An INVITE without a body is a dummy offer for the target.
  EXPECT_EQ(statusOf(caller_.ask(engine.address(), {.call = 2}, kLongestWait)), 488);
  EXPECT_EQ(raised(engine.stop()), (Counters{{"calls", 2}, {"failed", 2}, {"refused_bodies", 2}}));
}
