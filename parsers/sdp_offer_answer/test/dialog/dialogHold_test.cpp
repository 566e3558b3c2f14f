#include "dialogTestSupport.h"

// Hold and resume, on both sides.

namespace {

using namespace dialogTest;

std::string withDirection(std::string_view media, std::string_view direction) {
  std::string text(media);
  if (!direction.empty()) text.append("a=").append(direction).append("|");
  return text;
}

/// The peer takes the pending offer.
void accept(Dialog& dialog, std::string_view version, std::string_view direction) {
  ASSERT_TRUE(dialog.receiveAnswer(theirs(version, withDirection(kPeersAudio, direction))));
}

struct Held {
  const char* before;
  const char* during;
  const char* after;
};

TEST(DialogHold, TheDirectionBeforeTheHoldComesBack) {
  const Held cases[] = {{"sendrecv", "sendonly", "sendrecv"},
                        {"recvonly", "inactive", "recvonly"},
                        {"sendonly", "sendonly", "sendonly"},
                        {"inactive", "inactive", "inactive"}};
  for (const Held& held : cases) {
    SCOPED_TRACE(held.before);
    const std::string description = ours("1", withDirection(kAudio, held.before));
    Dialog dialog = offered(description, theirs("1", kPeersAudio));
    const bool isChanged = std::string_view(held.before) != held.during;
    EXPECT_FALSE(dialog.isHeld());
    const sdp::LocalBody hold = dialog.hold();
    expectReoffer(dialog, hold, isChanged ? "2" : "1", withDirection(kAudio, held.during));
    EXPECT_EQ(hold.isRefresh, !isChanged);
    EXPECT_TRUE(dialog.isHeld());
    accept(dialog, "2", "recvonly");
    EXPECT_TRUE(dialog.isHeld());
    expectRoundTrip(dialog);
    expectReoffer(dialog, dialog.resume(), isChanged ? "3" : "1", withDirection(kAudio, held.after));
    EXPECT_FALSE(dialog.isHeld());
    accept(dialog, "3", "sendrecv");
    EXPECT_FALSE(dialog.isHeld());
  }
}

TEST(DialogHold, EachSectionHasItsOwn) {
  const std::string_view before =
      "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|a=recvonly|m=text 0 RTP/AVP 98|m=video 4004 RTP/AVP 31|a=sendonly|";
  Dialog dialog =
      offered(ours("1", before), theirs("1",
                                        "m=audio 5000 RTP/AVP 0|m=video 5002 RTP/AVP 31|a=sendonly|"
                                        "m=text 0 RTP/AVP 98|m=video 5004 RTP/AVP 31|a=recvonly|"));
  expectReoffer(dialog, dialog.hold(), "2",
                "m=audio 4000 RTP/AVP 0|a=sendonly|m=video 4002 RTP/AVP 31|a=inactive|m=text 0 RTP/AVP 98|"
                "m=video 4004 RTP/AVP 31|a=sendonly|");
  ASSERT_TRUE(
      dialog.receiveAnswer(theirs("2",
                                  "m=audio 5000 RTP/AVP 0|a=recvonly|m=video 5002 RTP/AVP 31|a=inactive|"
                                  "m=text 0 RTP/AVP 98|m=video 5004 RTP/AVP 31|a=recvonly|")));
  expectReoffer(dialog, dialog.resume(), "3",
                "m=audio 4000 RTP/AVP 0|a=sendrecv|m=video 4002 RTP/AVP 31|a=recvonly|m=text 0 RTP/AVP 98|"
                "m=video 4004 RTP/AVP 31|a=sendonly|");
}

TEST(DialogHold, HoldingTwiceKeepsTheDirectionBeforeTheFirst) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  expectReoffer(dialog, dialog.hold(), "2", withDirection(kAudio, "sendonly"));
  accept(dialog, "2", "recvonly");
  const sdp::LocalBody again = dialog.hold();
  EXPECT_TRUE(again.isRefresh);
  expectReoffer(dialog, again, "2", withDirection(kAudio, "sendonly"));
  accept(dialog, "2", "recvonly");
  expectReoffer(dialog, dialog.resume(), "3", withDirection(kAudio, "sendrecv"));
}

TEST(DialogHold, ResumingWithoutHoldOffersTheSameAgain) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  const sdp::LocalBody same = dialog.resume();
  EXPECT_TRUE(same.isRefresh);
  expectReoffer(dialog, same, "1", kAudio);
}

TEST(DialogHold, AHoldThatIsRefusedIsNone) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.hold());
  ASSERT_TRUE(dialog.rollback());
  EXPECT_FALSE(dialog.isHeld());
  // The peer is back at the first body.
  const sdp::LocalBody same = dialog.resume();
  EXPECT_TRUE(same.isRefresh);
  expectReoffer(dialog, same, "1", kAudio);
}

TEST(DialogHold, AResumeThatIsRefusedLeavesTheHold) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.hold());
  accept(dialog, "2", "recvonly");
  ASSERT_TRUE(dialog.resume());
  ASSERT_TRUE(dialog.rollback());
  EXPECT_TRUE(dialog.isHeld());
}

TEST(DialogHold, APeerThatHoldsMeanwhileDoesNotChangeWhatComesBack) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.hold());
  accept(dialog, "2", "recvonly");
  ASSERT_TRUE(dialog.receiveOffer(theirs("3", withDirection(kPeersAudio, "inactive"))));
  ASSERT_TRUE(dialog.answerAsIs(ours("3", withDirection(kAudio, "inactive"))));
  EXPECT_TRUE(dialog.isHeld());
  expectReoffer(dialog, dialog.resume(), "4", withDirection(kAudio, "sendrecv"));
}

TEST(DialogHold, APeerThatHeldBeforeIsHeldInactive) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.receiveOffer(theirs("2", withDirection(kPeersAudio, "sendonly"))));
  ASSERT_TRUE(dialog.answerAsIs(ours("2", withDirection(kAudio, "recvonly"))));
  expectReoffer(dialog, dialog.hold(), "3", withDirection(kAudio, "inactive"));
  accept(dialog, "3", "inactive");
  // What the engine had wanted: the peer answers recvonly or sendonly as it holds.
  expectReoffer(dialog, dialog.resume(), "4", withDirection(kAudio, "sendrecv"));
}

TEST(DialogHold, DescriptionsDuringAHoldAreHeldToo) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.hold());
  accept(dialog, "2", "recvonly");
  expectReoffer(dialog, dialog.offer(ours("1", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|a=recvonly|")),
                "3", "m=audio 4000 RTP/AVP 0|a=sendonly|m=video 4002 RTP/AVP 31|a=inactive|");
  ASSERT_TRUE(dialog.receiveAnswer(
      theirs("3", "m=audio 5000 RTP/AVP 0|a=recvonly|m=video 5002 RTP/AVP 31|a=inactive|")));
  expectReoffer(dialog, dialog.resume(), "4",
                "m=audio 4000 RTP/AVP 0|a=sendrecv|m=video 4002 RTP/AVP 31|a=recvonly|");
}

TEST(DialogHold, AnswersDuringAHoldAreHeldToo) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.hold());
  accept(dialog, "2", "recvonly");
  ASSERT_TRUE(dialog.receiveOffer(theirs("3", withDirection(kPeersAudio, "sendrecv"))));
  EXPECT_EQ(textOf(dialog.answer(ours("1", kAudio))), ours("2", withDirection(kAudio, "sendonly")));
  EXPECT_TRUE(dialog.isHeld());
  expectReoffer(dialog, dialog.resume(), "3", withDirection(kAudio, "sendrecv"));
}

TEST(DialogHold, AFinishedBodyThatReceivesEndsTheHold) {
  Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  ASSERT_TRUE(dialog.hold());
  accept(dialog, "2", "recvonly");
  ASSERT_TRUE(dialog.offerAsIs(ours("3", kAudio)));
  EXPECT_FALSE(dialog.isHeld());
}

TEST(DialogHold, WhatThePeerRefusedStaysDisabled) {
  Dialog dialog =
      offered(ours("1", "a=group:BUNDLE a v|m=audio 4000 RTP/AVP 0|a=mid:a|m=video 4000 RTP/AVP 31|a=mid:v|"),
              theirs("1", "a=group:BUNDLE a|m=audio 5000 RTP/AVP 0|a=mid:a|m=video 0 RTP/AVP 31|a=mid:v|"));
  expectReoffer(dialog, dialog.hold(), "2",
                "a=group:BUNDLE a|m=audio 4000 RTP/AVP 0|a=mid:a|a=sendonly|m=video 0 RTP/AVP 31|a=mid:v|");
}

TEST(DialogHold, WhatIsNoRtpIsNotHeld) {
  Dialog dialog = offered(
      ours("1", "m=audio 4000 RTP/AVP 0|m=message 4002 TCP/MSRP *|m=image 4004 udptl t38|a=sendrecv|"),
      theirs("1", "m=audio 5000 RTP/AVP 0|m=message 5002 TCP/MSRP *|m=image 5004 udptl t38|"));
  expectReoffer(
      dialog, dialog.hold(), "2",
      "m=audio 4000 RTP/AVP 0|a=sendonly|m=message 4002 TCP/MSRP *|m=image 4004 udptl t38|a=sendrecv|");
}

TEST(DialogHold, RolesOfDtlsAreOfferedAnew) {
  const std::string_view offer = "m=audio 5000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 AA|a=setup:actpass|";
  const std::string_view answer = "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 BB|a=setup:active|";
  Dialog dialog = answered(theirs("1", offer), ours("1", answer));
  expectReoffer(dialog, dialog.hold(), "2",
                "m=audio 4000 UDP/TLS/RTP/SAVP 0|a=fingerprint:sha-256 BB|a=setup:actpass|a=sendonly|");
}

struct Meant {
  const char* what;
  const char* section;
  Direction direction;
  bool isOldHold;
};

TEST(DialogHold, AnUnspecifiedAddressIsToldAsSendonly) {
  const Meant cases[] = {
      {"hold of old", "m=audio 5000 RTP/AVP 0|c=IN IP4 0.0.0.0|", Direction::sendonly, true},
      {"with IPv6", "m=audio 5000 RTP/AVP 0|c=IN IP6 ::|", Direction::sendonly, true},
      {"an address", "m=audio 5000 RTP/AVP 0|c=IN IP4 0.0.0.1|", Direction::sendrecv, false},
      {"a direction of its own", "m=audio 5000 RTP/AVP 0|c=IN IP4 0.0.0.0|a=recvonly|", Direction::recvonly,
       false},
      {"inactive besides", "m=audio 5000 RTP/AVP 0|c=IN IP4 0.0.0.0|a=inactive|", Direction::inactive, false},
      {"port 9", "m=audio 9 RTP/AVP 0|c=IN IP4 0.0.0.0|", Direction::sendrecv, false},
      {"ICE", "m=audio 5000 RTP/AVP 0|c=IN IP4 0.0.0.0|a=ice-ufrag:abcd|", Direction::sendrecv, false},
      {"the plain word", "m=audio 5000 RTP/AVP 0|a=sendonly|", Direction::sendonly, false},
  };
  for (const Meant& meant : cases) {
    SCOPED_TRACE(meant.what);
    Dialog dialog = offered(ours("1", kAudio), theirs("1", kPeersAudio));
    const sdp::ReceivedOffer offer = dialog.receiveOffer(theirs("2", meant.section));
    ASSERT_TRUE(offer);
    ASSERT_EQ(offer.sections.size(), 1U);
    EXPECT_EQ(offer.sections[0].direction, meant.direction);
    EXPECT_EQ(offer.sections[0].isOldHold, meant.isOldHold);
    EXPECT_EQ(offer.sections[0].change, sdp::SectionChange::changed);
  }
}

}  // namespace
