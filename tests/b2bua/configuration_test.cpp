#include <options.h>

#include <CLI/CLI.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "../testFiles.h"
#include "calls.h"

// Policies and configurations as files, and what is told of them without a call.

namespace {

const std::string kExamples = std::string(B2BUA_TEST_FOLDER) + "/../../examples/b2bua/";

using Keys = std::set<std::string>;
using Words = std::vector<std::string>;

/// What a run of the program gave.
struct Ended {
  int status = -1;
  std::string output;  ///< both of its streams
};

class Configuration : public Calls {
 protected:
  Ended run(const Words& words) const {
    Process process(B2BUA_PROGRAM, words, folder_.path(), "run");
    const int status = process.wait(kLongestStart).value_or(-1);
    return {status, process.output()};
  }

  /// @return what is said of a file, without its name
  std::string faultOf(const std::string& option, const std::string& text) const {
    const std::string file = folder_.write("file", text);
    const Ended ended = run({option, file});
    EXPECT_EQ(ended.status, 2) << text;
    const std::string first = ended.output.substr(0, ended.output.find('\n'));
    return first.starts_with(file + ":") ? first.substr(file.size() + 1) : "elsewhere: " + first;
  }

  /// Reads options as the program does.
  b2bua::Options read(const Words& words) const {
    b2bua::Options options;
    CLI::App app;
    b2bua::parseOptions(app, options, words);
    return options;
  }

  /// @return the options that may stand in a file: all, or those of the policy
  Keys options(bool ofPolicy) const {
    const std::string help = run({"--help"}).output;
    std::istringstream lines(help.substr(ofPolicy ? help.find("[Option Group: Policy]") : 0));
    const std::regex option("^ +(?:-h,)?--([a-z0-9-]+).*");
    Keys keys;
    std::smatch match;
    for (std::string line; std::getline(lines, line);) {
      if (std::regex_match(line, match, option)) keys.insert(match[1]);
    }
    for (const char* none : {"help", "version", "config", "check-policy"}) keys.erase(none);
    return keys;
  }
};

class CheckPolicy : public Configuration {};

/// A file with examples in comments, too.
struct Example {
  explicit Example(const std::string& name) : text(readBytes(kExamples + name)) {
    const std::regex key("^(# )?([a-z0-9-]+) = .*");
    std::istringstream lines(text);
    std::smatch match;
    for (std::string line; std::getline(lines, line);) {
      const bool isKey = std::regex_match(line, match, key);
      if (isKey) keys.insert(match[2]);
      whole += line.substr(isKey ? static_cast<std::size_t>(match.length(1)) : 0) + "\n";
    }
  }

  std::string text;
  std::string whole;  ///< with the comments that are examples as lines
  Keys keys;
};

}  // namespace

TEST_F(Configuration, TellsThePlaceInAPolicyThatCannotBeUsed) {
  const struct {
    const char* policy;
    std::string fault;
  } cases[] = {
      {"to-target = keep-codecs PCMA; drop-kodecs PCMU\n", "1:31: --to-target: unknown request: drop-kodecs"},
      {"ice = keep\n\n  from-caller=disable\n",
       "3:15: --from-caller: too few or too many arguments: disable; disable takes MEDIA"},
      {"to-caller = unbundle all\n",
       "1:22: --to-caller: too few or too many arguments: all; unbundle takes nothing"},
      {"to-caller = keep-codecs PCMA audio 1 2\n",
       "1:36: --to-caller: too few or too many arguments: 1; keep-codecs takes LIST [MEDIA]"},
      {"offer-to-caller = anchor 192.0.2.1 1025\n",
       "1:36: --offer-to-caller: not an even port from 1024 to 65534: 1025; anchor takes ADDRESS PORT"},
      {"answer-to-target = direction up audio\n",
       "1:30: --answer-to-target: not a direction (sendrecv, sendonly, recvonly, inactive): up; direction takes "
       "DIRECTION [MEDIA]"},
      {"to-target = ; \n", "1:12: no value for to-target"},
      {"ice =   # nothing\n", "1:6: no value for ice"},
      {"video = cap 512 9\n", "1:17: --video: video is on, off or cap BANDWIDTH LEVEL"},
      {"video = cap 512 3 4\n", "1:19: --video: video is on, off or cap BANDWIDTH LEVEL"},
      {"video = off now\n", "1:13: --video: video is on, off or cap BANDWIDTH LEVEL"},
      {"audio-codecs = PCMA,NO , PCMU\r\n", "1:21: --audio-codecs: unknown codec: NO"},
      {"\tconnection-address = home\n", "1:23: --connection-address: no address: home"},
      {"ice = keep\r\nice = keep\r\n", "2:1: given twice: ice"},
      {"target = 127.0.0.1:9\n", "1:1: unknown key: target"},
      {" ice\n", "1:2: no KEY = VALUE: ice"},
  };
  for (const auto& each : cases) EXPECT_EQ(faultOf("--check-policy", each.policy), each.fault) << each.policy;
}

TEST_F(Configuration, TellsThePlaceInAConfigurationThatCannotBeUsed) {
  const std::string target = "target = \"127.0.0.1:9\"\n";
  const struct {
    std::string toml;
    std::string fault;
  } cases[] = {
      {target + "colour = 1\n", "2:1: unknown key: colour"},
      {target + "[limits]\nmax-calls = 3\n", "2:2: unknown key: limits"},
      {target + "config = \"other\"\n", "2:1: unknown key: config"},
      {"target = 5\n", "1:10: target is a text, or an array of texts"},
      {target + "max-calls = \"5\"\n", "2:13: max-calls is a whole number"},
      {target + "max-calls = 5.5\n", "2:13: max-calls is a whole number"},
      {target + "max-calls = -5\n", "2:13: max-calls is a whole number"},
      {target + "show = 1\n", "2:8: show is true or false"},
      {target + "ice = true\n", "2:7: ice is a text"},
      {target + "ice = [\"keep\"]\n", "2:7: ice is a text"},
      {target + "audio-codecs = []\n", "2:16: no value for audio-codecs"},
      {target + "audio-codecs = [\"PCMA\", \"NO\"]\n", "2:25: --audio-codecs: unknown codec: NO"},
      {target + "audio-codecs = [\"PCMA\", 8]\n", "2:25: audio-codecs is a text, or an array of texts"},
      {target + "video = \"cap 512 9\"\n", "2:18: --video: video is on, off or cap BANDWIDTH LEVEL"},
      {target + "transports = [\"udp\", \"sctp\"]\n", "2:22: --transports: sctp not in {udp,tcp,tls}"},
      {target + "listen = \"127.0.0.1:0x50\"\n", "2:11: --listen: no numeric HOST:PORT: 127.0.0.1:0x50"},
      {target + "target-seconds = 31\n", "2:18: --target-seconds: Value 31 not in range 1 to 30"},
      {target + "media-caller = \"phone\"\n",
       "2:17: --media-caller: none of as-is, rtp, srtp, webrtc: phone"},
      {"target = \"nonsense\"\n", "1:11: --target: no numeric HOST:PORT: nonsense"},
  };
  for (const auto& each : cases) EXPECT_EQ(faultOf("--config", each.toml), each.fault) << each.toml;
  EXPECT_TRUE(faultOf("--config", target + "listen = \n").starts_with("2:10: "));
}

TEST_F(Configuration, CountsTheCommandLineBeforeItAndThePolicyBehindIt) {
  const std::string policy = folder_.write("policy", "video = on\nice = remove\naudio-codecs = PCMA\n");
  const std::string config =
      folder_.write("config",
                    "target = \"127.0.0.1:9\"\nmax-calls = 7\nmax-invites = 8\nshow = true\n"
                    "trace = false\nvideo = \"off\"\nsecurity = \"plain\"\npolicy = \"" +
                        policy + "\"\n");
  const b2bua::Options options = read({"--max-calls", "5", "--security", "secure", "--config", config});
  EXPECT_EQ(options.targets.at(0).address, "127.0.0.1:9");
  EXPECT_EQ(options.maxCalls, 5U);
  EXPECT_EQ(options.maxInvites, 8U);
  EXPECT_TRUE(options.show);
  EXPECT_FALSE(options.trace);
  EXPECT_EQ(options.policy.security, b2bua::Security::secure);
  EXPECT_EQ(options.policy.video, b2bua::Video::off);
  EXPECT_TRUE(options.policy.removeIce);
  EXPECT_EQ(options.policy.audioCodecs.size(), 1U);
}

TEST_F(Configuration, TakesListsAsTextsAndAsArrays) {
  const b2bua::NamedRequest keep = {"keep-codecs", "PCMA,PCMU", "audio"};
  const b2bua::NamedRequest unbundle = {"unbundle"};
  for (const char* requests :
       {"\"keep-codecs PCMA,PCMU audio; unbundle\"", "[\"keep-codecs PCMA,PCMU  audio\", \"unbundle\"]",
        "'''keep-codecs PCMA,PCMU audio;unbundle;'''"}) {
    const std::string config = folder_.write(
        "config", std::string("target = \"127.0.0.1:9\"\nvideo = [\"cap\", \"64\", \"1b\"]\nto-target = ") +
                      requests + "\n");
    const b2bua::Options options = read({"--config", config});
    EXPECT_EQ(options.policy.videoBandwidth, 64U);
    EXPECT_EQ(options.policy.videoLevel, H264_LEVEL_1B);
    EXPECT_EQ(options.policy.requests[3], (std::vector<b2bua::NamedRequest>{keep, unbundle})) << requests;
  }
}

// As on the command line: what holds for a policy holds for these, too.
TEST_F(Configuration, TakesSeveralWordsInOne) {
  const Words words = {"--target", "127.0.0.1:9", "--target", "127.0.0.1:10;weight=2,127.0.0.1:11"};
  EXPECT_EQ(read(words).targets.size(), 3U);
  EXPECT_EQ(read({"--target", "127.0.0.1:9", "--video", "cap 64 1b"}).policy.videoLevel, H264_LEVEL_1B);
}

TEST_F(Configuration, IsToldWhenItCannotBeRead) {
  for (const char* option : {"--config", "--check-policy"}) {
    for (const std::string& file : {folder_.path(), folder_.path("none")}) {
      const Ended ended = run({option, file});
      EXPECT_EQ(ended.status, 2) << option << " " << file;
      EXPECT_TRUE(ended.output.starts_with(file + ": cannot be read\n")) << ended.output;
    }
  }
}

TEST_F(Configuration, HasAnExampleOfEachOption) {
  const Example example("example.toml");
  EXPECT_EQ(example.keys, options(false));
  for (const std::string& text : {example.text, example.whole}) {
    const Ended ended =
        run({"--config", folder_.write("config", text), "--check-policy", kExamples + "example.policy"});
    EXPECT_EQ(ended.status, 0) << ended.output;
  }
}

TEST_F(Configuration, HasAnExampleOfEachRuleOfAPolicy) {
  const Example example("example.policy");
  EXPECT_EQ(example.keys, options(true));
  for (const std::string& text : {example.text, example.whole}) {
    const Ended ended = run({"--check-policy", folder_.write("policy", text)});
    EXPECT_EQ(ended.status, 0) << ended.output;
  }
}

TEST_F(Configuration, IsDocumented) {
  const std::string manual = readBytes(kExamples + "README.md");
  const Keys rules = options(true);
  EXPECT_FALSE(rules.empty());
  for (const std::string& key : options(false)) {
    const std::string told = rules.contains(key) ? "`" + key + "`" : "| `--" + key;
    EXPECT_NE(manual.find(told), std::string::npos) << told;
  }
}

TEST_F(Configuration, HasAVersion) {
  const Ended ended = run({"--version"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_TRUE(std::regex_match(ended.output, std::regex("b2bua [0-9]+\\.[0-9]+\\.[0-9]+\n"))) << ended.output;
}

TEST_F(CheckPolicy, ShowsWhatBecomesOfABodyFromEitherParty) {
  const std::string policy =
      folder_.write("policy", "to-target = drop-codecs PCMU\nanswer-to-caller = direction sendonly\n");
  const std::string file = folder_.write("body",
                                         "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\n"
                                         "t=0 0\r\nm=audio 4000 RTP/AVP 0 8\r\n");
  const std::string head = "  v=0\n  o=- 1 1 IN IP4 192.0.2.1\n  s=-\n  c=IN IP4 192.0.2.1\n  t=0 0\n";
  const std::string dropped = "- m=audio 4000 RTP/AVP 0 8\n+ m=audio 4000 RTP/AVP 8\n";
  const std::string same = "  m=audio 4000 RTP/AVP 0 8\n";
  const Ended ended = run({"--check-policy", policy, file});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.output, "-- " + file + ": offer from the caller\n" + head + dropped +  //
                              "-- " + file + ": offer from the target\n" + head + same + "-- " + file +
                              ": answer from the caller\n" + head + dropped + "-- " + file +
                              ": answer from the target\n" + head + same + "+ a=sendonly\n");
}

TEST_F(CheckPolicy, TellsWhyABodyIsRefusedAndGoesOn) {
  const std::string policy = folder_.write("policy", "offer-to-target = keep-codecs PCMA\n");
  const std::string first = folder_.write("first",
                                          "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\n"
                                          "t=0 0\r\nm=audio 4000 RTP/AVP 0\r\n");
  const std::string second = folder_.write("second", std::string("v=0\r\n\0x\r\n", 9));
  const std::string third = folder_.write("third", std::string(std::size_t{1} << 20, 'v'));
  const Ended ended = run({"--check-policy", policy, first, second, third, folder_.path("none")});
  EXPECT_EQ(ended.status, 1);
  const auto expectRefused = [&](const std::string& title, const std::string& reason) {
    EXPECT_NE(ended.output.find("-- " + title + "\nrefused: " + reason + "\n"), std::string::npos)
        << title << "\n"
        << ended.output;
  };
  expectRefused(
      first + ": offer from the caller",
      "offer-to-target keep-codecs: section 1 audio: no common codec: it has PCMU; kept would be PCMA");
  EXPECT_EQ(ended.output.find(first + ": answer from the caller\nrefused"), std::string::npos);
  for (const std::string title : {": offer from the caller", ": offer from the target",
                                  ": answer from the caller", ": answer from the target"}) {
    expectRefused(second + title, "line 2: a NUL");
    expectRefused(third + title, "the body is too large to be kept");
    expectRefused(folder_.path("none") + title, "the file cannot be read");
  }
}

TEST_F(CheckPolicy, TakesThePortOfABrowserWhereThereIsARelay) {
  const std::string file =
      folder_.write("body",
                    "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n"
                    "m=audio 9 UDP/TLS/RTP/SAVPF 0\r\nc=IN IP4 0.0.0.0\r\na=ice-ufrag:abcd\r\n");
  const Ended relayed =
      run({"--check-policy", folder_.write("relayed", "media = rtpengine udp:127.0.0.1:2223\n"), file});
  EXPECT_EQ(relayed.status, 0);
  EXPECT_NE(relayed.output.find("- m=audio 9 UDP/TLS/RTP/SAVPF 0\n+ m=audio 1024 UDP/TLS/RTP/SAVPF 0\n"),
            std::string::npos)
      << relayed.output;
  const Ended direct = run({"--check-policy", folder_.write("direct", "media = none\n"), file});
  EXPECT_EQ(direct.status, 1);
  EXPECT_NE(direct.output.find("refused: Invalid port number found in m=audio: 9\n"), std::string::npos)
      << direct.output;
}

TEST_F(CheckPolicy, IsNoPlaceForKeys) {
  const std::string file =
      folder_.write("body",
                    "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n"
                    "m=audio 4000 RTP/SAVP 0\r\n"
                    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:SECRET\r\n");
  const std::string policy = folder_.write("policy", "to-target = direction sendonly\n");
  const Ended ended = run({"--check-policy", policy, file});
  EXPECT_EQ(ended.status, 0);
  EXPECT_NE(ended.output.find("+ a=sendonly\n"), std::string::npos) << ended.output;
  EXPECT_EQ(ended.output.find("SECRET"), std::string::npos) << ended.output;
}
