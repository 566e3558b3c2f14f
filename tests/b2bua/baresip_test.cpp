#include <csignal>
#include <iostream>

#include "calls.h"

// A call between two SIP clients that people use.

namespace {

const std::string kHost = "127.0.0.1";

/// A port whose next one, where the client takes TLS, is free too.
std::string freePortPair() {
  std::string port = freePort();
  while (isTaken(std::to_string(std::stoi(port) + 1))) port = freePort();
  return port;
}

/// A baresip that hears and says nothing, and answers by itself.
class Client {
 public:
  Client(const TemporaryFolder& folder, const std::string& user, const std::vector<std::string>& options = {})
      : port_(freePortPair()),
        process_(BARESIP_PROGRAM, prepare(folder, user, options), folder.path(), user) {
    EXPECT_TRUE(waitUntil([this] { return says("baresip is ready."); }, kLongestStart)) << process_.output();
  }

  const std::string& port() const { return port_; }
  Process& process() { return process_; }
  bool says(const std::string& text) const { return process_.output().find(text) != std::string::npos; }

  /// The body of a message in its trace of what it sends and gets; empty without one.
  /// @param start  first line, and what stands before it
  std::string body(const std::string& start) const {
    const std::string output = process_.output();
    const std::size_t message = output.find(start);
    const std::size_t length = output.find("\r\nContent-Length: ", message);
    const std::size_t body = output.find("\r\n\r\n", length);
    if (message == std::string::npos || body == std::string::npos) return "";
    return replaced(output.substr(body + 4, std::stoul(output.substr(length + 18))), "\r\n", "\n");
  }

 private:
  std::vector<std::string> prepare(const TemporaryFolder& folder, const std::string& user,
                                   const std::vector<std::string>& options) const {
    const std::string address = kHost + ":" + port_;
    folder.write(user + "/config", "sip_listen " + address +
                                       "\n"
                                       "net_interface " +
                                       kHost +
                                       "\n"
                                       "module_path " BARESIP_MODULES
                                       "\n"
                                       "module g711.so\n"
                                       "module aubridge.so\n"
                                       "module_tmp account.so\n"
                                       "module_app menu.so\n"
                                       "audio_player aubridge,nothing\n"
                                       "audio_source aubridge,nothing\n"
                                       "audio_alert aubridge,nothing\n");
    folder.write(user + "/accounts", "<sip:" + user + "@" + address +
                                         ">;regint=0;answermode=auto;audio_codecs=PCMU/8000/1,PCMA/8000/1\n");
    folder.write(user + "/contacts", "");
    std::vector<std::string> arguments = {"-s", "-f", folder.path(user)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return arguments;
  }

  std::string port_;
  Process process_;
};

class Baresip : public Calls {};

}  // namespace

// Both clients prefer PCMU, the policy wants PCMA first.
TEST_F(Baresip, TwoClientsTalkWithTheCodecOrderOfThePolicy) {
  Client bob(folder_, "bob");
  Engine engine(folder_, kHost, bob.port(),
                {"--policy", folder_.write("policy", "audio-codecs = PCMA, PCMU, telephone-event\n")});
  Client alice(folder_, "alice", {"-e", "/dial sip:bob@" + engine.address()});
  EXPECT_TRUE(waitUntil([&] { return engine.counters().at("established") == 1; }, kLongestCall));
  EXPECT_TRUE(waitUntil([&] { return bob.says("Call established") && alice.says("Call established"); },
                        kLongestCall));
  EXPECT_TRUE(waitUntil([&] { return bob.says("Set audio encoder: PCMA"); }, kLongestCall));
  EXPECT_TRUE(waitUntil([&] { return alice.says("Set audio encoder: PCMA"); }, kLongestCall));

  // alice's end ends the call for bob too.
  alice.process().signal(SIGINT);
  EXPECT_EQ(alice.process().wait(kLongestStart), 0);
  EXPECT_TRUE(waitUntil([&] { return bob.says("session closed"); }, kLongestCall));
  bob.process().signal(SIGINT);
  EXPECT_EQ(bob.process().wait(kLongestStart), 0);
  const Counters counters = engine.stop();
  EXPECT_EQ(counters.at("ended"), 1);
  EXPECT_EQ(counters.at("failed"), 0);
  EXPECT_EQ(counters.at("active"), 0);

  const std::string offer = alice.body("\nINVITE sip:");
  const std::string own = " RTP/AVP 0 8 101\na=rtpmap:0 PCMU/8000\na=rtpmap:8 PCMA/8000\n";
  EXPECT_NE(offer.find(own), std::string::npos) << offer;
  EXPECT_EQ(bob.body("\nINVITE sip:"),
            replaced(offer, own, " RTP/AVP 8 0 101\na=rtpmap:8 PCMA/8000\na=rtpmap:0 PCMU/8000\n"));
  const std::string answer = bob.body("\nSIP/2.0 200 ");
  EXPECT_NE(answer.find(" RTP/AVP 8 "), std::string::npos) << answer;
  EXPECT_EQ(alice.body("\nSIP/2.0 200 "), answer);
  if (HasFailure()) std::cout << alice.process().output() << bob.process().output();
}
