#ifndef B2BUA_TEST_TWO_PARTIES_H
#define B2BUA_TEST_TWO_PARTIES_H

#include <memory>

#include "calls.h"
#include "rawParty.h"

/// An engine between two parties that do what the test says.
class TwoParties : public Calls {
 protected:
  static constexpr milliseconds kLongestWait{5'000};
  static constexpr milliseconds kSilence{300};  ///< after which nothing comes any more

  void start(const std::vector<std::string>& options = {}) {
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", target_.port(), options);
    ASSERT_FALSE(engine_->address().empty());
  }

  std::string ask(const RawRequest& asked) const {
    return caller_.ask(engine_->address(), asked, kLongestWait);
  }

  /// Sends an INVITE and gives what the target has of it.
  std::string invite(const RawRequest& asked) const {
    caller_.request(engine_->address(), asked);
    return atTarget("INVITE ");
  }

  /// What comes next; it must, unless `longest` is short.
  std::string atTarget(const std::string& start, const std::string& part = "",
                       milliseconds longest = kLongestWait) const {
    return target_.receive(start, part, longest);
  }
  std::string atCaller(const std::string& start, const std::string& part = "",
                       milliseconds longest = kLongestWait) const {
    return caller_.receive(start, part, longest);
  }

  /// @param status  with its phrase and further headers
  void answer(const std::string& request, const std::string& status, const std::string& body = "") const {
    target_.respond(engine_->address(), request, status, body);
  }

  /// Sets up a call.
  /// @param asked   header of the INVITE, with its CR LF
  /// @param status  of the target's 200, with further headers
  /// @return the To tag of the engine, for the caller
  std::string establish(const std::string& asked = "", const std::string& status = "200 OK") {
    invited_ = invite({.body = kOffer, .header = asked});
    answer(invited_, status, kAnswer);
    accepted_ = atCaller("SIP/2.0 200 ");
    tag_ = toTagOf(accepted_);
    caller_.request(engine_->address(), {.method = "ACK", .toTag = tag_});
    EXPECT_NE(atTarget("ACK "), "");
    return tag_;
  }

  /// Begins a call whose parties have agreed reliably before it is answered.
  /// @param asked  header of the INVITE, with its CR LF
  void agreeEarly(const std::string& asked = "") {
    invited_ = invite({.body = kOffer, .header = asked + "Supported: 100rel\r\n"});
    answer(invited_, "183 Session Progress\r\nAllow: UPDATE\r\nRequire: 100rel\r\nRSeq: 1", kAnswer);
    answer(atTarget("PRACK "), "200 OK");
    const std::string early = atCaller("SIP/2.0 183 ");
    tag_ = toTagOf(early);
    const std::string rack = "RAck: " + headerOf(early, "RSeq") + " 1 INVITE\r\n";
    EXPECT_EQ(statusOf(ask({.method = "PRACK", .cseq = 2, .toTag = tag_, .header = rack})), 200);
  }

  /// Sends a request of the target within the dialog that the INVITE began.
  void requestOfTarget(const std::string& method, int cseq, const std::string& body = "",
                       const std::string& header = "") const {
    const std::string number = std::to_string(cseq);
    const std::string contact = headerOf(invited_, "Contact");
    const std::string party = headerOf(invited_, "To");
    const std::string tag = party.find(";tag=") == std::string::npos ? ";tag=raw" : "";
    target_.send(engine_->address(),
                 method + " " + contact.substr(1, contact.find('>') - 1) + " SIP/2.0\r\nVia: SIP/2.0/UDP " +
                     target_.address() + ";branch=z9hG4bK" + method + number +
                     "\r\nMax-Forwards: 70\r\nFrom: " + party + tag + "\r\nTo: " +
                     headerOf(invited_, "From") + "\r\nCall-ID: " + headerOf(invited_, "Call-ID") +
                     "\r\nCSeq: " + number + " " + method + "\r\nContact: <sip:bob@" + target_.address() +
                     ">\r\n" + header + (body.empty() ? "" : "Content-Type: application/sdp\r\n") +
                     "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
  }

  const std::string kOffer =
      "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n"
      "m=audio 49170 RTP/AVP 0 8\r\n";
  const std::string kHold =
      "v=0\r\no=alice 21 5 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n"
      "m=audio 49170 RTP/AVP 0 8\r\na=sendonly\r\n";
  const std::string kAnswer =
      "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\n"
      "m=audio 30000 RTP/AVP 8\r\n";

  const RawParty caller_;
  const RawParty target_;
  std::unique_ptr<Engine> engine_;
  std::string invited_;   ///< the INVITE that the target has
  std::string accepted_;  ///< the 200 that the caller has
  std::string tag_;       ///< of the engine, for the caller
};

/// A message without its head.
inline std::string contentOf(const std::string& message) {
  const std::size_t end = message.find("\r\n\r\n");
  return end == std::string::npos ? "" : message.substr(end + 4);
}

#endif
