#include <csignal>
#include <thread>

#include "../testFiles.h"
#include "calls.h"
#include "rawParty.h"
#include "streamParty.h"

// Calls over TCP and TLS.

namespace {

constexpr milliseconds kLongestWait{5'000};
constexpr milliseconds kPromptly{2'500};
constexpr milliseconds kSilence{300};  ///< after which nothing comes any more

const std::string kOffer =
    "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio 49170 RTP/AVP 8\r\n";
const std::string kAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\nm=audio 30000 RTP/AVP 8\r\n";

/// Longer than a datagram should be: 20 lines of 64 characters and CR LF alone are 1320 bytes.
std::string longOffer() {
  std::string body = kOffer;
  for (int i = 0; i < 20; ++i) body += "a=x-long:" + std::string(55, 'x') + "\r\n";
  return body;
}

std::string withBody(const std::string& head, const std::string& body) {
  return head + (body.empty() ? "" : "Content-Type: application/sdp\r\n") +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

/// A request of a caller at an address.
std::string request(const std::string& method, const std::string& transport, const std::string& from,
                    int cseq, const std::string& toTag = "", const std::string& body = "") {
  const std::string branch = method + std::to_string(cseq);
  return withBody(method + " sip:bob@127.0.0.1 SIP/2.0\r\nVia: SIP/2.0/" + transport + " " + from +
                      ";branch=z9hG4bK" + branch +
                      "\r\nMax-Forwards: 70\r\nFrom: <sip:alice@127.0.0.1>;tag=1\r\n" +
                      "To: <sip:bob@127.0.0.1>" + toTag + "\r\nCall-ID: one@" + from +
                      "\r\nCSeq: " + std::to_string(cseq) + " " + method + "\r\nContact: <sip:alice@" + from +
                      ";transport=" + transport + ">\r\n",
                  body);
}

std::string response(const std::string& asked, const std::string& transport, const std::string& contact,
                     const std::string& body = "") {
  const std::string tag = toTagOf(asked).empty() ? ";tag=raw" : "";
  return withBody("SIP/2.0 200 OK\r\nVia: " + headerOf(asked, "Via") +
                      "\r\nFrom: " + headerOf(asked, "From") + "\r\nTo: " + headerOf(asked, "To") + tag +
                      "\r\nCall-ID: " + headerOf(asked, "Call-ID") + "\r\nCSeq: " + headerOf(asked, "CSeq") +
                      "\r\nContact: <sip:bob@" + contact + ";transport=" + transport + ">\r\n",
                  body);
}

class TransportCalls : public Calls {
 protected:
  /// A folder with a certificate that is its own authority.
  std::string certificates(const std::string& name) const {
    folder_.write(name + "/key.pem", "");
    std::string path = folder_.path(name);
    Process made(OPENSSL_PROGRAM,
                 {"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                  "-days", "2", "-subj", "/CN=127.0.0.1", "-keyout", "key.pem", "-out", "cafile.pem"},
                 path, "openssl");
    EXPECT_EQ(made.wait(kLongestCall), 0) << made.output();
    folder_.write(name + "/agent.pem", readBytes(path + "/key.pem") + readBytes(path + "/cafile.pem"));
    return path;
  }

  /// @param target  with its parameters
  void start(const std::string& target, std::vector<std::string> options) {
    options.insert(options.begin(), {"--transports", "udp,tcp,tls", "--tls-port", tlsPort_});
    options.insert(options.end(), {"--certificates", certificates("own")});
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", target, options);
    ASSERT_FALSE(engine_->address().empty()) << engine_->process().output();
  }

  std::string contact(const std::string& transport) const {
    const std::string port = transport == "tls" ? tlsPort_ : engine_->port();
    return "<sip:127.0.0.1:" + port + ";transport=" + transport + ">";
  }

  /// A call over streams, which the caller ends.
  void call(StreamParty& caller, StreamParty& target, const std::string& name, const std::string& transport) {
    ASSERT_TRUE(caller.connect(transport == "tls" ? tlsPort_ : engine_->port()));
    caller.send(request("INVITE", name, caller.address(), 1, "", kOffer));
    ASSERT_TRUE(target.accept(kLongestWait));
    const std::string invited = target.receive("INVITE ", kLongestWait);
    EXPECT_TRUE(headerOf(invited, "Via").starts_with("SIP/2.0/" + name + " 127.0.0.1:")) << invited;
    EXPECT_EQ(headerOf(invited, "Contact"), contact(transport));
    EXPECT_TRUE(invited.ends_with("\r\n\r\n" + kOffer)) << invited;
    target.send(response(invited, transport, target.address(), kAnswer));
    const std::string accepted = caller.receive("SIP/2.0 200 ", kLongestWait);
    EXPECT_EQ(headerOf(accepted, "Contact"), contact(transport));
    EXPECT_TRUE(accepted.ends_with("\r\n\r\n" + kAnswer)) << accepted;
    caller.send(request("ACK", name, caller.address(), 1, toTagOf(accepted)));
    EXPECT_NE(target.receive("ACK ", kLongestWait), "");
    caller.send(request("BYE", name, caller.address(), 2, toTagOf(accepted)));
    EXPECT_NE(caller.receive("SIP/2.0 200 ", kLongestWait), "");
    const std::string ended = target.receive("BYE ", kLongestWait);
    target.send(response(ended, transport, target.address()));
    EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 1}, {"established", 1}, {"ended", 1}}));
  }

  std::unique_ptr<Engine> engine_;
  const std::string tlsPort_ = freePort();
};

}  // namespace

TEST_F(TransportCalls, GoOverTcp) {
  StreamParty caller;
  StreamParty target;
  start(target.port() + ";transport=tcp", {});
  call(caller, target, "TCP", "tcp");
}

TEST_F(TransportCalls, GoOverTls) {
  const std::string folder = certificates("own");
  StreamParty caller(folder);
  StreamParty target(folder);
  // Those of the parties are what the engine has as its own: its authority vouches for all.
  engine_ = std::make_unique<Engine>(
      folder_, "127.0.0.1", target.port() + ";transport=tls",
      std::vector<std::string>{"--transports", "tls,udp", "--tls-port", tlsPort_, "--certificates", folder});
  ASSERT_FALSE(engine_->address().empty()) << engine_->process().output();
  call(caller, target, "TLS", "tls");
}

TEST_F(TransportCalls, OfSippGoOverTcp) {
  const Plan plan{
      .bodies = {{"offer", replaced(kOffer, "\r\n", "\n")}, {"answer", replaced(kAnswer, "\r\n", "\n")}}};
  writeBodies(plan);
  const std::string port = freePort();
  start(port + ";transport=tcp", {});
  Sipp target = startTarget(folder_, "call-target", "127.0.0.1", port, {"-t", "t1", "-m", "20"});
  Sipp caller = startCaller(folder_, "call-caller", "127.0.0.1", engine_->address(),
                            {"-t", "t1", "-m", "20", "-r", "50"});
  EXPECT_TRUE(caller.finish());
  target.finish();
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 20}, {"established", 20}, {"ended", 20}}));
}

TEST_F(TransportCalls, HaveTheContactOfEachSide) {
  StreamParty target;
  const RawParty caller;
  start(target.port() + ";transport=tcp", {});
  caller.request(engine_->address(), {.body = kOffer});
  ASSERT_TRUE(target.accept(kLongestWait));
  const std::string invited = target.receive("INVITE ", kLongestWait);
  EXPECT_EQ(headerOf(invited, "Contact"), contact("tcp"));
  target.send(response(invited, "tcp", target.address(), kAnswer));
  EXPECT_EQ(headerOf(caller.receive("SIP/2.0 200 ", "", kLongestWait), "Contact"), contact("udp"));
}

TEST_F(TransportCalls, DoNotGoToTargetsThatNobodyVouchesFor) {
  StreamParty stranger(certificates("other"));
  const RawParty second;
  const RawParty caller;
  start(stranger.port() + ";transport=tls",
        {"--target", second.address() + ";priority=1", "--target-seconds", "2"});
  caller.request(engine_->address(), {.body = kOffer});
  EXPECT_FALSE(stranger.accept(kLongestWait) && !stranger.receive("INVITE ", kSilence).empty());
  EXPECT_NE(second.receive("INVITE ", "", kLongestWait), "");
}

TEST_F(TransportCalls, GoOnAtOnceWhenNobodyListens) {
  const RawParty second;
  const RawParty caller;
  start(freePort() + ";transport=tcp",
        {"--target", second.address() + ";priority=1", "--target-seconds", "30"});
  caller.request(engine_->address(), {.body = kOffer});
  EXPECT_NE(second.receive("INVITE ", "", kPromptly), "");
  EXPECT_EQ(engine_->counters()["failovers"], 1);
}

TEST_F(TransportCalls, WithLongBodiesGoOverTcp) {
  StreamParty target;
  const RawParty caller;
  start(target.port(), {});
  caller.request(engine_->address(), {.body = longOffer()});
  ASSERT_TRUE(target.accept(kLongestWait));
  EXPECT_TRUE(target.receive("INVITE ", kLongestWait).ends_with("\r\n\r\n" + longOffer()));
}

TEST_F(TransportCalls, WithLongBodiesGoOverUdpToWhoHasNothingElse) {
  const RawParty target;
  const RawParty caller;
  start(target.port(), {});
  caller.request(engine_->address(), {.body = longOffer()});
  EXPECT_TRUE(target.receive("INVITE ", "", kLongestWait).ends_with("\r\n\r\n" + longOffer()));
}

TEST_F(TransportCalls, WithLongBodiesGoOverUdpWhenTheTargetSaysSo) {
  const RawParty target;
  const RawParty caller;
  start(target.port() + ";transport=udp", {});
  caller.request(engine_->address(), {.body = longOffer()});
  EXPECT_TRUE(target.receive("INVITE ", "", kPromptly).ends_with("\r\n\r\n" + longOffer()));
}

TEST_F(TransportCalls, LeaveNoIdleConnections) {
  start("9", {"--idle-seconds", "1"});
  StreamParty plain;
  StreamParty secure(folder_.path("own"));
  ASSERT_TRUE(plain.connect(engine_->port()));
  ASSERT_TRUE(secure.connect(tlsPort_));
  plain.send("INVITE sip:bob@127.0.0.1 SIP/2.0\r\nVia: ");
  EXPECT_TRUE(plain.isClosed(kLongestWait));
  EXPECT_TRUE(secure.isClosed(kLongestWait));
}

// However many connections it has; the target's address is trusted.
TEST_F(TransportCalls, AreLimitedByTheirSource) {
  start("9", {"--max-messages-per-source", "5", "--max-calls-per-source", "1"});
  StreamParty trusted;
  StreamParty plain;
  StreamParty secure(folder_.path("own"));
  ASSERT_TRUE(trusted.connect(engine_->port()));
  ASSERT_TRUE(plain.connect(engine_->port(), "127.0.0.2"));
  ASSERT_TRUE(secure.connect(tlsPort_, "127.0.0.2"));
  plain.send(request("INVITE", "TCP", plain.address(), 1, "", kOffer));
  secure.send(request("INVITE", "TLS", secure.address(), 1, "", kOffer));
  const std::string refused = secure.receive("SIP/2.0 503 ", kLongestWait);
  EXPECT_EQ(headerOf(refused, "Retry-After"), "1");
  std::string many;
  for (int cseq = 2; cseq < 20; ++cseq) many += request("OPTIONS", "TCP", plain.address(), cseq);
  plain.send(many);
  for (int cseq = 1; cseq < 7; ++cseq) {
    trusted.send(request("OPTIONS", "TCP", trusted.address(), cseq));
    EXPECT_NE(trusted.receive("SIP/2.0 200 ", kLongestWait), "");
  }
  int answered = 0;
  while (!plain.receive("SIP/2.0 200 ", kSilence).empty()) ++answered;
  EXPECT_EQ(answered, 3);
  EXPECT_EQ(engine_->counters().at("overload"), 1 + 15);
}

// The stack would be busy with each of them for a second or two, and with it the engine.
TEST_F(TransportCalls, AreNotHeldByMessagesOfHeaders) {
  start("9", {"--idle-seconds", "1"});
  const RawParty other;
  int call = 0;
  const auto expectAnswer = [&] {
    const RawRequest asked{.method = "OPTIONS", .call = ++call};
    EXPECT_EQ(statusOf(other.ask(engine_->address(), asked, milliseconds(300))), 200);
  };
  for (const std::string& line : {std::string("y:\n"), std::string("y\n")}) {
    std::string headers;
    while (headers.size() < 45'000) headers += line;
    for (const bool isSecure : {false, true}) {
      StreamParty party(isSecure ? folder_.path("own") : "");
      ASSERT_TRUE(party.connect(isSecure ? tlsPort_ : engine_->port()));
      // Once behind another message, in two parts, the second one longer than many headers.
      const std::string first = request("OPTIONS", isSecure ? "TLS" : "TCP", party.address(), 1);
      party.send(first + first.substr(0, first.rfind("\r\n")));
      EXPECT_NE(party.receive("SIP/2.0 200 ", kLongestWait), "");
      party.send(headers);
      expectAnswer();
      // It is not read any more, and idle.
      EXPECT_TRUE(party.isClosed(kLongestWait));
    }
  }
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"malformed", 4}}));
}

TEST_F(TransportCalls, MayComeBitByBit) {
  start("9", {});
  StreamParty party;
  ASSERT_TRUE(party.connect(engine_->port()));
  const std::string asked = "\r\n" + request("OPTIONS", "TCP", party.address(), 1, "", kOffer);
  for (const char each : asked) {
    party.send(std::string(1, each));
    std::this_thread::sleep_for(milliseconds(2));
  }
  EXPECT_NE(party.receive("SIP/2.0 200 ", kLongestWait), "");
}

// Behind another one, too, where the stack itself has no limit.
TEST_F(TransportCalls, HaveNoMessagesOfAnyLength) {
  start("9", {});
  StreamParty party;
  ASSERT_TRUE(party.connect(engine_->port()));
  const std::string first = request("OPTIONS", "TCP", party.address(), 1);
  party.send(first + first.substr(0, first.rfind("\r\n")) + "X-Long: ");
  EXPECT_NE(party.receive("SIP/2.0 200 ", kLongestWait), "");
  bool isClosed = false;
  for (int i = 0; i < 10 && !isClosed; ++i) {
    party.send(std::string(8'000, 'x'));
    isClosed = party.isClosed(kSilence);
  }
  EXPECT_TRUE(isClosed);
}

TEST_F(TransportCalls, GetTheCertificatesOfTheLastSighup) {
  start("9", {});
  const auto replace = [&](const std::string& from) {
    for (const char* const file : {"/agent.pem", "/cafile.pem"})
      folder_.write(std::string("own") + file, readBytes(folder_.path(from) + file));
    engine_->process().signal(SIGHUP);
  };
  const auto connects = [&](StreamParty& party) { return party.connect(tlsPort_); };
  StreamParty present(folder_.path("own"));
  StreamParty before(folder_.path("own"));
  StreamParty after(certificates("other"));
  ASSERT_TRUE(connects(present));
  folder_.write("broken/agent.pem", readBytes(folder_.path("own") + "/key.pem"));
  folder_.write("broken/cafile.pem", "");
  replace("broken");
  EXPECT_TRUE(waitUntil(
      [&] { return engine_->log().find("certificates not read anew") != std::string::npos; }, kLongestWait));
  EXPECT_TRUE(connects(before));
  EXPECT_FALSE(connects(after));
  replace("other");
  EXPECT_TRUE(waitUntil([&] { return connects(after); }, kLongestWait));
  EXPECT_FALSE(connects(before));
  present.send(request("OPTIONS", "TLS", present.address(), 1));
  EXPECT_NE(present.receive("SIP/2.0 200 ", kLongestWait), "");
}

// The stack forgets 45 kB of each.
TEST_F(TransportCalls, LeaveLittleOfConnectionsThatComeToNothing) {
  start("9", {});
  const auto connect = [&](int times) {
    for (int i = 0; i < times; ++i) StreamParty().connect(tlsPort_);
    StreamParty secure(folder_.path("own"));
    ASSERT_TRUE(secure.connect(tlsPort_));
  };
  connect(100);
  const long before = engine_->process().residentMemory();
  connect(500);
  EXPECT_LE(engine_->process().residentMemory(), before + 10'000);
}

TEST_F(TransportCalls, HaveAsManyConnectionsAsAllowed) {
  start("9", {"--max-connections", "3"});
  std::vector<std::unique_ptr<StreamParty>> parties;
  for (int i = 0; i < 8; ++i) {
    parties.push_back(std::make_unique<StreamParty>());
    ASSERT_TRUE(parties.back()->connect(engine_->port()));
  }
  EXPECT_TRUE(waitUntil([this] { return engine_->counters()["closed_connections"] == 5; }, kLongestWait));
  int open = 0;
  for (const auto& party : parties) {
    if (party->isClosed(kSilence)) continue;
    ++open;
    party->send(request("OPTIONS", "TCP", party->address(), 1));
    EXPECT_NE(party->receive("SIP/2.0 200 ", kLongestWait), "");
  }
  EXPECT_EQ(open, 3);
}

TEST_F(TransportCalls, NeedWhatTheyAreMadeOf) {
  const auto refused = [&](const std::vector<std::string>& options) {
    Process process(B2BUA_PROGRAM, options, folder_.path(), "refused");
    return process.wait(kLongestStart);
  };
  const std::string listen = "127.0.0.1:" + freePort();
  EXPECT_EQ(refused({"--listen", listen, "--target", "127.0.0.1:9;transport=tcp"}), 2);
  EXPECT_EQ(refused({"--listen", listen, "--target", "127.0.0.1:9", "--transports", "tcp"}), 2);
  EXPECT_EQ(refused({"--listen", listen, "--target", "127.0.0.1:9", "--transports", "udp,sctp"}), 2);
  EXPECT_EQ(refused({"--listen", listen, "--target", "127.0.0.1:9", "--transports", "udp,tls", "--tls-port",
                     tlsPort_, "--certificates", folder_.path("nowhere")}),
            1);
  EXPECT_EQ(refused({"--listen", listen, "--target", listen + ";transport=tcp", "--transports", "udp,tcp"}),
            1);
}
