#include <redirects.h>

#include "calls.h"
#include "rawParty.h"

// Where a call goes when its target sends it elsewhere.

using Uris = std::vector<std::string>;

namespace {

constexpr milliseconds kLongestWait{5'000};
constexpr milliseconds kSilence{300};  ///< after which nothing comes any more

const std::string kOffer =
    "v=0\r\no=alice 21 4 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\nm=audio 49170 RTP/AVP 8\r\n";
const std::string kAnswer =
    "v=0\r\no=bob 33 9 IN IP4 192.0.2.20\r\ns=-\r\nc=IN IP4 192.0.2.20\r\nt=0 0\r\nm=audio 30000 RTP/AVP 8\r\n";

Uris redirectionsOf(const std::string& contacts, const std::vector<std::string>& transports = {"udp"}) {
  su_home_t home[1] = {SU_HOME_INIT(home)};
  sip_t response{};
  response.sip_contact = sip_contact_make(home, contacts.c_str());
  EXPECT_NE(response.sip_contact, nullptr) << contacts;
  b2bua::TransportOptions ways;
  ways.names = transports;
  const Uris uris = b2bua::redirectionsIn(response, ways);
  su_home_deinit(home);
  return uris;
}

class Redirects : public Calls {
 protected:
  void start(const std::vector<std::string>& options) {
    engine_ = std::make_unique<Engine>(folder_, "127.0.0.1", target_.port(), options);
    ASSERT_FALSE(engine_->address().empty());
    caller_.request(engine_->address(), {.body = kOffer});
  }

  std::string invitedAt(const RawParty& party) const { return party.receive("INVITE ", "", kLongestWait); }

  void redirect(const RawParty& from, const std::string& contacts) const {
    // The party's own Contact comes behind, with the lowest preference.
    std::string message =
        from.respond("127.0.0.1:9", invitedAt(from), "302 Moved Temporarily\r\nContact: " + contacts);
    const std::size_t own = message.rfind("Contact: <sip:bob@");
    message.erase(own, message.find("\r\n", own) + 2 - own);
    from.send(engine_->address(), message);
  }

  const RawParty caller_;
  const RawParty target_;
  const RawParty other_;
  const RawParty third_;
  std::unique_ptr<Engine> engine_;
};

}  // namespace

TEST(Redirections, AreOrderedByPreference) {
  EXPECT_EQ(
      redirectionsOf(
          "<sip:a@192.0.2.1>;q=0.2, <sip:b@192.0.2.2:5070>, <sip:192.0.2.3>;q=0.9, <sip:d@192.0.2.4>;q=0.2"),
      (Uris{"sip:b@192.0.2.2:5070", "sip:192.0.2.3:5060", "sip:a@192.0.2.1:5060", "sip:d@192.0.2.4:5060"}));
}

// A preference is a number from 0 to 1 (RFC 3261 25.1).
TEST(Redirections, ComeLastWithAPreferenceThatIsNone) {
  EXPECT_EQ(redirectionsOf("<sip:a@192.0.2.1>;q=nan, <sip:b@192.0.2.1>;q=inf, <sip:c@192.0.2.1>;q=-1, "
                           "<sip:d@192.0.2.1>;q=0.5, <sip:e@192.0.2.1>;q=2, <sip:f@192.0.2.1>;q=x"),
            (Uris{"sip:d@192.0.2.1:5060", "sip:a@192.0.2.1:5060", "sip:b@192.0.2.1:5060",
                  "sip:c@192.0.2.1:5060", "sip:e@192.0.2.1:5060", "sip:f@192.0.2.1:5060"}));
}

TEST(Redirections, AreWhatTheEngineCanReach) {
  EXPECT_EQ(redirectionsOf(
                "<sip:a@example.org>, <tel:+123>, <mailto:a@192.0.2.1>, <sips:b@192.0.2.1>, "
                "<sip:c@192.0.2.1;transport=tcp>, <sip:d@192.0.2.1;transport=sctp>, <sip:e@[2001:db8::1]>"),
            Uris{"sip:e@[2001:db8::1]:5060"});
  EXPECT_EQ(redirectionsOf(
                "<sips:b@192.0.2.1>, <sip:c@192.0.2.1;transport=TCP>, <sips:d@192.0.2.1:5071;transport=tcp>, "
                "<sip:e@192.0.2.1;transport=udp>",
                {"tcp", "tls"}),
            (Uris{"sip:b@192.0.2.1:5061;transport=tls", "sip:c@192.0.2.1:5060;transport=tcp",
                  "sip:d@192.0.2.1:5071;transport=tls"}));
}

TEST(Redirections, KeepNothingElseOfTheirUris) {
  EXPECT_EQ(redirectionsOf("<sip:a:secret@192.0.2.1;lr;maddr=192.0.2.9?Route=%3Csip:x%3E>;expires=3"),
            Uris{"sip:a@192.0.2.1:5060"});
}

TEST_F(Redirects, AreTriedInTheirOrder) {
  start({"--follow-redirects", "3"});
  redirect(target_, "<sip:second@" + other_.address() + ">;q=0.5, <sip:first@" + third_.address() + ">");
  EXPECT_NE(target_.receive("ACK ", "", kLongestWait), "");
  const std::string first = invitedAt(third_);
  EXPECT_TRUE(first.starts_with("INVITE sip:first@" + third_.address() + " SIP/2.0\r\n")) << first;
  third_.respond(engine_->address(), first, "486 Busy Here");
  const std::string second = invitedAt(other_);
  EXPECT_TRUE(second.starts_with("INVITE sip:second@" + other_.address() + " SIP/2.0\r\n")) << second;
  EXPECT_TRUE(second.ends_with(kOffer)) << second;
  other_.respond(engine_->address(), second, "200 OK", kAnswer);
  const std::string accepted = caller_.receive("SIP/2.0 ", "CSeq: 1 INVITE\r\nContact", kLongestWait);
  EXPECT_EQ(statusOf(accepted), 200) << accepted;
  EXPECT_EQ(engine_->counters()["redirections"], 2);
  EXPECT_EQ(engine_->counters()["failovers"], 0);
}

TEST_F(Redirects, ThatTurnInCirclesEnd) {
  start({"--follow-redirects", "9"});
  redirect(target_, "<sip:bob@" + other_.address() + ">, <sip:me@" + engine_->address() + ">");
  redirect(other_, "<sip:bob@" + target_.address() + ">, <sip:bob@" + other_.address() + ">");
  EXPECT_NE(caller_.receive("SIP/2.0 302 ", "", kLongestWait), "");
  EXPECT_EQ(raised(engine_->stop()), (Counters{{"calls", 1}, {"failed", 1}, {"redirections", 1}}));
}

TEST_F(Redirects, AreFollowedNoMoreThanAllowed) {
  start({"--follow-redirects", "1"});
  redirect(target_, "<sip:bob@" + other_.address() + ">");
  redirect(other_, "<sip:bob@" + third_.address() + ">");
  EXPECT_NE(caller_.receive("SIP/2.0 302 ", "", kLongestWait), "");
  EXPECT_EQ(third_.receive("INVITE ", "", kSilence), "");
}

// A contact would lead the caller past the engine.
TEST_F(Redirects, GoOnWithoutContactsWhenTheyAreNotFollowed) {
  start({});
  redirect(target_, "<sip:bob@" + other_.address() + ">");
  const std::string response = caller_.receive("SIP/2.0 302 ", "", kLongestWait);
  EXPECT_NE(response, "");
  EXPECT_EQ(headerOf(response, "Contact"), "") << response;
}

TEST_F(Redirects, ThatARefusalOfAllEndsAreTheCallers) {
  start({"--follow-redirects", "3"});
  redirect(target_, "<sip:bob@" + other_.address() + ">, <sip:bob@" + third_.address() + ">;q=0.1");
  other_.respond(engine_->address(), invitedAt(other_), "603 Decline");
  EXPECT_NE(caller_.receive("SIP/2.0 603 ", "", kLongestWait), "");
  EXPECT_EQ(third_.receive("INVITE ", "", kSilence), "");
}
