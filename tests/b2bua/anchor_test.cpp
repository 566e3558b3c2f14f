#include <CLI/CLI.hpp>

#include <anchor.h>

#include "calls.h"
#include "rawParty.h"

// Media that are led by way of a relay with an address and a range of ports, and the options that say where media go.

namespace {

constexpr milliseconds kLongestWait{5'000};

/// @param sections  how many m-lines
std::string offer(int version, int sections = 1) {
  std::string body = "v=0\r\no=alice 21 " + std::to_string(version) +
                     " IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
  for (int i = 0; i < sections; ++i) body += "m=audio " + std::to_string(49170 + 2 * i) + " RTP/AVP 0 8\r\n";
  return body;
}

const std::string kAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\nm=audio 30000 RTP/AVP 8\r\n";

std::string bodyIn(const std::string& message) { return message.substr(message.find("\r\n\r\n") + 4); }

class Anchored : public Calls {
 protected:
  void start(const std::string& ports) {
    engine_ = std::make_unique<Engine>(
        folder_, "127.0.0.1", target_.port(),
        std::vector<std::string>{"--policy",
                                 folder_.write("policy", "media = anchor 198.51.100.7 " + ports + "\n")});
    ASSERT_FALSE(engine_->address().empty());
  }

  /// Sends an offer and gives the port that the target has of it; 0 for none.
  int offeredPort(const RawRequest& asked) {
    caller_.request(engine_->address(), asked);
    invited_ = target_.receive("INVITE ", "", kLongestWait);
    const std::size_t media = invited_.find("\r\nm=audio ");
    return media == std::string::npos ? 0 : std::stoi(invited_.substr(media + 10));
  }

  /// Answers it, and gives the caller's body.
  std::string accept(int call, int cseq, const std::string& answer) {
    target_.respond(engine_->address(), invited_, "200 OK", answer);
    const std::string response = caller_.receive("SIP/2.0 200 ", " INVITE", kLongestWait);
    tag_ = toTagOf(response);
    caller_.request(engine_->address(), {.method = "ACK", .call = call, .cseq = cseq, .toTag = tag_});
    EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
    return bodyIn(response);
  }

  const RawParty caller_;
  const RawParty target_;
  std::string invited_;
  std::string tag_;
  std::unique_ptr<Engine> engine_;
};

std::string refusalOf(const std::vector<std::string>& words) {
  CLI::App app;
  b2bua::Options options;
  std::vector<std::string> all = {"--target", "127.0.0.1:9"};
  all.insert(all.end(), words.begin(), words.end());
  try {
    b2bua::parseOptions(app, options, all);
  } catch (const CLI::ParseError& error) {
    return error.what();
  }
  return "";
}

}  // namespace

TEST_F(Anchored, EachSideOfACallHasPortsOfItsOwn) {
  start("20000-20007");
  EXPECT_EQ(offeredPort({.body = offer(4)}), 20000);
  EXPECT_EQ(bodyIn(invited_),
            "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 198.51.100.7\r\nt=0 0\r\n"
            "m=audio 20000 RTP/AVP 0 8\r\n");
  EXPECT_EQ(accept(1, 1, kAnswer),
            "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 198.51.100.7\r\nt=0 0\r\n"
            "m=audio 20002 RTP/AVP 8\r\n");
  EXPECT_EQ(raised(engine_->stop()),
            (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}, {"media_requests", 2}}));
}

TEST_F(Anchored, ASideKeepsItsPortsUntilItHasMoreSections) {
  start("20000-20015");
  EXPECT_EQ(offeredPort({.body = offer(4)}), 20000);
  accept(1, 1, kAnswer);
  const std::string tag = tag_;
  EXPECT_EQ(offeredPort({.cseq = 2, .toTag = tag, .body = offer(5) + "a=sendonly\r\n"}), 20000);
  accept(1, 2, kAnswer);
  EXPECT_EQ(offeredPort({.cseq = 3, .toTag = tag, .body = offer(6, 2)}), 20004);
  EXPECT_NE(invited_.find("\r\nm=audio 20006 RTP/AVP 0 8\r\n"), std::string::npos) << invited_;
  accept(1, 3, kAnswer + "m=audio 0 RTP/AVP 8\r\n");
  EXPECT_EQ(offeredPort({.cseq = 4, .toTag = tag, .body = offer(7)}), 20004);
}

TEST_F(Anchored, PortsComeBackWithTheEndOfTheirCall) {
  start("20000-20007");
  EXPECT_EQ(offeredPort({.call = 1, .body = offer(4)}), 20000);
  accept(1, 1, kAnswer);
  const std::string first = tag_;
  EXPECT_EQ(offeredPort({.call = 2, .body = offer(4)}), 20004);
  accept(2, 1, kAnswer);
  const std::string response = caller_.ask(engine_->address(), {.call = 3, .body = offer(4)}, kLongestWait);
  EXPECT_EQ(statusOf(response), 503);
  EXPECT_EQ(headerOf(response, "Warning"), "399 " + engine_->address() + " \"no ports are left\"");
  EXPECT_EQ(statusOf(caller_.ask(engine_->address(), {.method = "BYE", .call = 1, .cseq = 2, .toTag = first},
                                 kLongestWait)),
            200);
  EXPECT_EQ(offeredPort({.call = 4, .body = offer(4)}), 20000);
}

TEST_F(Anchored, ABodyThatTakesTooManyPortsIsRefused) {
  start("20000-29999");
  const auto layers = [](const std::string& count) {
    return replaced(offer(4), " 49170 ", " 49170/" + count + " ");
  };
  EXPECT_EQ(offeredPort({.call = 1, .body = layers("32")}), 20000);
  int call = 1;
  for (const char* const count : {"33", "4294967295"}) {
    const std::string body = layers(count);
    const std::string response =
        caller_.ask(engine_->address(), {.call = ++call, .body = body}, kLongestWait);
    EXPECT_EQ(statusOf(response), 488) << body;
  }
}

// A session without a section, as the relay hears of it when an offer came to nothing.
TEST(Ports, OfABodyWithoutSectionsAreSuchToo) {
  b2bua::MediaOptions options;
  options.relay = "198.51.100.7";
  options.firstPort = 20'000;
  options.lastPort = 20'007;
  b2bua::Counters counters;
  b2bua::Anchor anchor(options, counters);
  b2bua::Call call;
  const std::string body = "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nt=0 0\r\n";
  anchor.relay(call, b2bua::kCaller, false, body,
               [&](const std::string& led, const b2bua::BodyRefusal&) { EXPECT_EQ(led, body); });
  EXPECT_EQ(textOf(call.legs[b2bua::kTarget].ports), "20000/1,");
}

TEST(Ports, AreKeptAsTextAndReadAsFarAsTheyAreSuch) {
  const auto again = [](const std::string& text) { return b2bua::textOf(b2bua::portsOf(text)); };
  for (const char* text : {"", "20000/1,", "20000/1,65534/32,"}) EXPECT_EQ(again(text), text);
  for (const char* text : {"20000", "20000/", "20000/1", "/1,", "20001/1,", "1022/1,", "20000/0,",
                           "20000/33,", "-20000/1,", "65536/1,", "20000/1;", "x"}) {
    EXPECT_EQ(again(text), "") << text;
    EXPECT_EQ(again(std::string("30000/2,") + text), "30000/2,") << text;
  }
  std::string many;
  for (int i = 0; i < 33; ++i) many += "20000/1,";
  EXPECT_EQ(again(many).size(), 32 * 8U);
}

TEST(MediaOptions, AreRefusedWhereTheySayNothingUsable) {
  const std::string form = "media is none, rtpengine udp:HOST:PORT or anchor ADDRESS FIRST-LAST";
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"none"}, ""},
      {{"rtpengine", "udp:127.0.0.1:2223"}, ""},
      {{"rtpengine", "udp:[::1]:2223"}, ""},
      {{"rtpengine udp:127.0.0.1:2223"}, ""},
      {{"anchor 192.0.2.1 1024-1025"}, ""},
      {{"anchor", "192.0.2.1", "1024-1025"}, ""},
      {{"anchor", "2001:db8::1", "20000-65535"}, ""},
      {{"nothing"}, form},
      {{"none", "none"}, form},
      {{"rtpengine"}, form},
      {{"rtpengine", "127.0.0.1:2223"}, form},
      {{"rtpengine", "udp:relay:2223"}, "no numeric HOST:PORT: relay:2223"},
      {{"rtpengine", "udp:127.0.0.1"}, "no numeric HOST:PORT: 127.0.0.1"},
      {{"anchor", "192.0.2.1"}, form},
      {{"anchor", "relay", "20000-20001"}, "no address: relay"},
      {{"anchor", "192.0.2.1", "20000"}, "no ports from an even one on: 20000"},
      {{"anchor", "192.0.2.1", "20001-20009"}, "no ports from an even one on: 20001-20009"},
      {{"anchor", "192.0.2.1", "1022-1030"}, "no ports from an even one on: 1022-1030"},
      {{"anchor", "192.0.2.1", "20002-20001"}, "no ports from an even one on: 20002-20001"},
      {{"anchor", "192.0.2.1", "20000-65536"}, "no ports from an even one on: 20000-65536"},
  };
  for (const auto& [words, refusal] : cases) {
    std::vector<std::string> all = {"--media"};
    all.insert(all.end(), words.begin(), words.end());
    EXPECT_EQ(refusalOf(all), refusal.empty() ? "" : "--media: " + refusal);
  }
}

TEST(MediaOptions, AreRefusedWhereTheyContradictThePolicy) {
  const std::vector<std::string> relay = {"--media", "rtpengine", "udp:127.0.0.1:2223"};
  const std::string both = "--media: media and connection-address both say where media go";
  const std::string against = "--media: media-caller or media-target is against the policy";
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"--connection-address", "192.0.2.1"}, both},
      {{"--media-caller", "webrtc", "--media-target", "rtp"}, ""},
      {{"--media-caller", "webrtc", "--security", "plain"}, against},
      {{"--media-target", "srtp", "--security", "plain"}, against},
      {{"--media-target", "rtp", "--security", "plain"}, ""},
      {{"--media-target", "rtp", "--security", "secure"}, against},
      {{"--media-caller", "webrtc", "--ice", "remove"}, against},
      {{"--media-caller", "srtp", "--ice", "remove"}, ""},
  };
  for (const auto& [words, refusal] : cases) {
    std::vector<std::string> all = relay;
    all.insert(all.end(), words.begin(), words.end());
    EXPECT_EQ(refusalOf(all), refusal) << words[1];
  }
  EXPECT_EQ(refusalOf({"--media", "anchor", "192.0.2.1", "20000-20009", "--connection-address", "192.0.2.1"}),
            both);
  EXPECT_EQ(refusalOf({"--media-target", "rtp"}),
            "--media: media-caller and media-target need media = rtpengine");
}
