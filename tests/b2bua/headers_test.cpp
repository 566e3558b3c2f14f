#include <sip.h>

#include <csignal>

#include "../testFiles.h"
#include "calls.h"
#include "rawParty.h"

// Headers of any length: what of them the engine keeps and sends again.

namespace {

constexpr milliseconds kLongestWait{5'000};

const std::string kOffer =
    "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n"
    "m=audio 49170 RTP/AVP 8\r\n";
const std::string kAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\n"
    "m=audio 30000 RTP/AVP 8\r\n";

std::string letters(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += static_cast<char>('a' + i % 26);
  return text;
}

/// Headers of the stack, freed at the end.
class Headers : public testing::Test {
 protected:
  ~Headers() override { su_home_deinit(home_); }
  su_home_t home_[1] = {SU_HOME_INIT(home_)};
};

}  // namespace

TEST_F(Headers, HaveTheirWholeValueWhateverItsLength) {
  for (std::size_t size = 0; size < 2'200; ++size) {
    const std::string text = '"' + letters(size) + "\" <sip:" + letters(size % 300 + 1) + "@192.0.2.1:5070;" +
                             letters(size % 130) + ">;tag=" + letters(size % 270 + 1);
    ASSERT_EQ(b2bua::headerText(sip_from_make(home_, text.c_str())), text);
  }
}

TEST_F(Headers, OfOneKindStandBehindEachOther) {
  const std::string text =
      "<sip:" + letters(300) + ";lr>, <sip:192.0.2.7;lr>;x=" + letters(5'000) + ", <sip:192.0.2.8;lr>";
  EXPECT_EQ(b2bua::headerText(sip_record_route_make(home_, text.c_str())), text);
  EXPECT_EQ(b2bua::headerText(static_cast<sip_route_t*>(nullptr)), "");
}

namespace {

class LongHeaders : public Calls {
 protected:
  /// A call in which all that a party tells of itself is long, ended by the target.
  void expectThemToStay(std::size_t size) {
    const std::string from = "\"" + letters(size) + "\" <sip:alice@127.0.0.1>";
    const std::string to = "<sip:bob-" + letters(size) + "@127.0.0.1>";
    const std::string contact = "<sip:alice-" + letters(size) + "@" + caller_.address() + ">";
    const std::string route = "<sip:" + caller_.address() + ";lr;hop=" + letters(size) + ">";
    caller_.request(engine_->address(), {.call = ++number_,
                                         .body = kOffer,
                                         .header = "Record-Route: " + route + "\r\n",
                                         .from = from,
                                         .to = to,
                                         .contact = contact});
    const std::string invited = target_.receive("INVITE ", "", kLongestWait);
    EXPECT_TRUE(headerOf(invited, "From").starts_with(from + ";tag=")) << invited;
    const std::string answered = target_.respond(
        engine_->address(), invited,
        "200 OK\r\nRecord-Route: <sip:" + target_.address() + ";lr;hop=" + letters(size) + ">", kAnswer);
    const std::string tag = toTagOf(caller_.receive("SIP/2.0 200 ", "", kLongestWait));
    caller_.request(engine_->address(),
                    {.method = "ACK", .call = number_, .toTag = tag, .from = from, .to = to});
    const std::string acknowledged = target_.receive("ACK ", "", kLongestWait);
    EXPECT_EQ(headerOf(acknowledged, "Route"), "<sip:" + target_.address() + ";lr;hop=" + letters(size) + ">")
        << acknowledged;
    // The target hangs up.
    target_.send(engine_->address(), "BYE sip:b2bua@" + engine_->address() + " SIP/2.0\r\nVia: SIP/2.0/UDP " +
                                         target_.address() + ";branch=z9hG4bKbye" + std::to_string(number_) +
                                         "\r\nMax-Forwards: 70\r\nFrom: " + headerOf(answered, "To") +
                                         "\r\nTo: " + headerOf(invited, "From") +
                                         "\r\nCall-ID: " + headerOf(invited, "Call-ID") +
                                         "\r\nCSeq: 7 BYE\r\nContent-Length: 0\r\n\r\n");
    EXPECT_NE(target_.receive("SIP/2.0 200 ", "7 BYE", kLongestWait), "");
    const std::string ended = caller_.receive("BYE ", "", kLongestWait);
    EXPECT_TRUE(ended.starts_with("BYE " + contact.substr(1, contact.size() - 2) + " SIP/2.0\r\n")) << ended;
    EXPECT_EQ(headerOf(ended, "To"), from + ";tag=" + std::to_string(number_));
    EXPECT_EQ(headerOf(ended, "From"), to + tag);
    EXPECT_EQ(headerOf(ended, "Route"), route);
    caller_.respond(engine_->address(), ended, "200 OK");
  }

  void start(const std::vector<std::string>& runner = {}) {
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", target_.port(), std::vector<std::string>{}, "0",
                                       "engine", runner);
    ASSERT_FALSE(engine_->address().empty()) << engine_->process().output();
  }

  const RawParty caller_;
  const RawParty target_;
  std::unique_ptr<Engine> engine_;
  int number_ = 0;
};

}  // namespace

TEST_F(LongHeaders, StayWholeThroughACall) {
  start();
  // 127 and 256 are where buffers end.
  for (const std::size_t size : {60U, 100U, 127U, 150U, 220U, 256U, 500U, 1000U, 5000U})
    expectThemToStay(size);
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 9}, {"established", 9}, {"ended", 9}}));
}

class MemoryCheck : public LongHeaders {};

TEST_F(MemoryCheck, FindsNothingInCallsWithLongHeaders) {
  start({VALGRIND_PROGRAM, "--quiet", "--error-exitcode=9", "--log-file=" + folder_.path("valgrind.log")});
  for (const std::size_t size : {10U, 150U, 1000U, 5000U}) expectThemToStay(size);
  engine_->process().signal(SIGTERM);
  EXPECT_EQ(engine_->process().wait(kLongestCall), 0);
  EXPECT_EQ(readBytes(folder_.path("valgrind.log")), "");
}
