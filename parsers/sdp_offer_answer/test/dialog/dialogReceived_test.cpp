#include "dialogTestSupport.h"

// What the peer sends: what its offers change, and what can be no answer.

namespace {

using namespace dialogTest;
using sdp::OriginChange;
using sdp::SectionChange;

struct Origins {
  const char* what;
  std::string before;
  std::string after;
  OriginChange change;
};

TEST(DialogReceived, TheOLineTellsWhatAnOfferIs) {
  const std::string large(64, '9');
  const std::string larger = "1" + std::string(64, '0');
  const std::string other = "m=audio 5000 RTP/AVP 8|";
  const std::string noOrigin = lines("v=0|s=-|m=audio 5000 RTP/AVP 0|");
  const Origins cases[] = {
      {"the same again", theirs("1", kPeersAudio), theirs("1", kPeersAudio), OriginChange::refresh},
      {"the same with other line ends", theirs("1", kPeersAudio),
       "v=0\no=b 9 1 IN IP4 198.51.100.1\ns=-\nc=IN IP4 198.51.100.1\nt=0 0\nm=audio 5000 RTP/AVP 0\n\n",
       OriginChange::refresh},
      {"the same version and another text", theirs("1", kPeersAudio), theirs("1", other),
       OriginChange::sameVersion},
      {"leading zeros are no difference", theirs("1", kPeersAudio), theirs("001", other),
       OriginChange::sameVersion},
      {"a raised version", theirs("9", kPeersAudio), theirs("10", other), OriginChange::raised},
      {"a raised version and the same text", theirs("1", kPeersAudio), theirs("2", kPeersAudio),
       OriginChange::raised},
      {"beyond any number", theirs(large, kPeersAudio), theirs(larger, other), OriginChange::raised},
      {"a lower version", theirs("10", kPeersAudio), theirs("9", other), OriginChange::notRaised},
      {"another user", theirs("1", kPeersAudio), lines("v=0|o=c 9 2 IN IP4 198.51.100.1|s=-|"),
       OriginChange::otherSession},
      {"another session", theirs("1", kPeersAudio), lines("v=0|o=b 8 2 IN IP4 198.51.100.1|s=-|"),
       OriginChange::otherSession},
      {"another address", theirs("1", kPeersAudio), lines("v=0|o=b 9 2 IN IP4 198.51.100.2|s=-|"),
       OriginChange::otherSession},
      {"a field more", theirs("1", kPeersAudio), lines("v=0|o=b 9 2 IN IP4 198.51.100.1 x|s=-|"),
       OriginChange::otherSession},
      {"a field less", theirs("1", kPeersAudio), lines("v=0|o=b 9 2 IN IP4|s=-|"),
       OriginChange::otherSession},
      {"no o-line any more", theirs("1", kPeersAudio), noOrigin + "a=x\r\n", OriginChange::unreadable},
      {"none before", noOrigin, theirs("1", kPeersAudio), OriginChange::unreadable},
      {"a version that is no number", theirs("1", kPeersAudio), theirs("2.0", kPeersAudio),
       OriginChange::unreadable},
      {"none in both", noOrigin, noOrigin, OriginChange::refresh},
  };
  for (const Origins& origins : cases) {
    SCOPED_TRACE(origins.what);
    Dialog dialog;
    const sdp::ReceivedOffer first = dialog.receiveOffer(origins.before);
    EXPECT_EQ(first.origin, OriginChange::first);
    ASSERT_TRUE(dialog.answerAsIs(ours("1", kAudio)));
    const sdp::ReceivedOffer offer = dialog.receiveOffer(origins.after);
    EXPECT_TRUE(offer);
    EXPECT_EQ(sdp::textOf(offer.origin), sdp::textOf(origins.change));
    EXPECT_EQ(dialog.state(), DialogState::remoteOffer);
    EXPECT_EQ(dialog.pending(), origins.after);
  }
}

struct Changed {
  const char* what;
  std::string before;
  std::string after;
  std::vector<SectionChange> sections;
  bool isSessionChanged;
  bool hasFewerSections;
};

TEST(DialogReceived, OffersTellWhichSectionsChange) {
  const std::string audio = "m=audio 5000 RTP/AVP 0|";
  const std::string video = "m=video 5002 RTP/AVP 31|";
  const Changed cases[] = {
      {"nothing", audio + video, audio + video, {SectionChange::same, SectionChange::same}, false, false},
      {"a format",
       audio + video,
       audio + "m=video 5002 RTP/AVP 34|",
       {SectionChange::same, SectionChange::changed},
       false,
       false},
      {"a direction",
       audio + video,
       audio + "a=sendonly|" + video,
       {SectionChange::changed, SectionChange::same},
       false,
       false},
      {"the direction of all",
       audio + video,
       "a=inactive|" + audio + video,
       {SectionChange::changed, SectionChange::changed},
       true,
       false},
      {"a direction of all where a section has its own",
       audio + "a=sendonly|" + video,
       "a=inactive|" + audio + "a=sendonly|" + video,
       {SectionChange::same, SectionChange::changed},
       true,
       false},
      {"another attribute of all", audio, "a=tool:x|" + audio, {SectionChange::same}, true, false},
      {"one more", audio, audio + video, {SectionChange::same, SectionChange::added}, false, false},
      {"one less", audio + video, audio, {SectionChange::same}, false, true},
      {"one disabled",
       audio + video,
       audio + "m=video 0 RTP/AVP 31|",
       {SectionChange::same, SectionChange::disabled},
       false,
       false},
      {"its place used again",
       audio + "m=video 0 RTP/AVP 31|",
       audio + video,
       {SectionChange::same, SectionChange::added},
       false,
       false},
      {"one that stays disabled",
       "m=video 0 RTP/AVP 31|" + audio,
       "m=video 0 RTP/AVP 31|" + audio,
       {SectionChange::same, SectionChange::same},
       false,
       false},
      {"the direction of all where one stays disabled",
       audio + "m=video 0 RTP/AVP 31|",
       "a=sendonly|" + audio + "m=video 0 RTP/AVP 31|",
       {SectionChange::changed, SectionChange::same},
       true,
       false},
      {"an attribute of one that stays disabled",
       audio + "m=video 0 RTP/AVP 31|",
       audio + "m=video 0 RTP/AVP 31|a=inactive|",
       {SectionChange::same, SectionChange::changed},
       false,
       false},
      {"one that cannot be read any more",
       audio,
       "m=audio x RTP/AVP 0|",
       {SectionChange::disabled},
       false,
       false},
  };
  for (const Changed& changed : cases) {
    SCOPED_TRACE(changed.what);
    const auto count = [](const std::string& text) {
      std::size_t sections = 0;
      for (std::size_t at = text.find("m="); at != std::string::npos; at = text.find("m=", at + 1))
        ++sections;
      return sections;
    };
    std::string local;
    for (std::size_t i = 0; i < count(changed.before); ++i) local.append("m=audio 0 RTP/AVP 0|");
    Dialog dialog = answered(theirs("1", changed.before), ours("1", local));
    const sdp::ReceivedOffer offer = dialog.receiveOffer(theirs("2", changed.after));
    ASSERT_EQ(offer.sections.size(), changed.sections.size());
    for (std::size_t i = 0; i < offer.sections.size(); ++i) {
      EXPECT_EQ(sdp::textOf(offer.sections[i].change), sdp::textOf(changed.sections[i])) << i;
    }
    EXPECT_EQ(offer.isSessionChanged, changed.isSessionChanged);
    EXPECT_EQ(offer.hasFewerSections, changed.hasFewerSections);
  }
}

TEST(DialogReceived, AnAddressOfAllChangesTheSectionsWithoutOne) {
  const std::string sections = "m=audio 5000 RTP/AVP 0|m=video 5002 RTP/AVP 31|c=IN IP4 198.51.100.7|";
  Dialog dialog =
      answered(theirs("1", sections), ours("1", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|"));
  const sdp::ReceivedOffer offer = dialog.receiveOffer(
      lines("v=0|o=b 9 2 IN IP4 198.51.100.1|s=-|c=IN IP4 198.51.100.2|t=0 0|" + sections));
  ASSERT_EQ(offer.sections.size(), 2U);
  EXPECT_EQ(offer.sections[0].change, SectionChange::changed);
  EXPECT_EQ(offer.sections[1].change, SectionChange::same);
  EXPECT_TRUE(offer.isSessionChanged);
}

TEST(DialogReceived, WhatIsNoDescriptionIsNoOffer) {
  for (const char* body : {"", "\r\n\r\n", "hello", "V=0\r\n"}) {
    Dialog dialog;
    EXPECT_EQ(dialog.receiveOffer(body).failure, DialogFailure::brokenBody) << body;
    EXPECT_TRUE(dialog == Dialog());
  }
}

TEST(DialogReceived, AnOfferMayBeWithoutSectionsAndWithoutAVLine) {
  for (const char* body : {"v=0\r\n", "m=audio 5000 RTP/AVP 0\r\n", "m=audio\r\n"}) {
    Dialog dialog;
    EXPECT_TRUE(dialog.receiveOffer(body)) << body;
    EXPECT_EQ(dialog.pending(), body);
  }
}

struct NoAnswer {
  const char* what;
  std::string answer;
  DialogFailure failure;
  std::uint32_t section;
};

TEST(DialogReceived, WhatCannotBeAnAnswerIsRefused) {
  const NoAnswer cases[] = {
      {"nothing", "", DialogFailure::brokenBody, 0},
      {"no description", "hello\r\n", DialogFailure::brokenBody, 0},
      {"a section less", theirs("1", kPeersAudio), DialogFailure::sectionCount, 0},
      {"a section more", theirs("1", "m=audio 5000 RTP/AVP 0|m=video 5002 RTP/AVP 31|m=text 0 RTP/AVP 98|"),
       DialogFailure::sectionCount, 0},
      {"none", theirs("1", ""), DialogFailure::sectionCount, 0},
      {"another media", theirs("1", "m=audio 5000 RTP/AVP 0|m=text 5002 RTP/AVP 98|"),
       DialogFailure::sectionMedia, 2},
      {"none that can be read", theirs("1", "m=audio|m=video|"), DialogFailure::brokenBody, 0},
  };
  for (const NoAnswer& answer : cases) {
    SCOPED_TRACE(answer.what);
    Dialog dialog;
    ASSERT_TRUE(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|")));
    const Dialog before = dialog;
    const sdp::DialogStatus status = dialog.receiveAnswer(answer.answer);
    EXPECT_EQ(sdp::textOf(status.failure), sdp::textOf(answer.failure));
    EXPECT_EQ(status.section, answer.section);
    EXPECT_TRUE(dialog == before);
  }
}

TEST(DialogReceived, WhatIsWrongOtherwiseIsNotTheDialogsToRefuse) {
  for (const char* sections :
       {"m=audio 5000 RTP/SAVP 99|m=text 0 RTP/AVP 98|", "m=audio 5000 RTP/AVP 0|m=video|"}) {
    Dialog dialog;
    ASSERT_TRUE(dialog.offer(ours("1", "m=audio 4000 RTP/AVP 0|m=video 4002 RTP/AVP 31|")));
    EXPECT_TRUE(dialog.receiveAnswer(theirs("1", sections))) << sections;
  }
  Dialog dialog;
  ASSERT_TRUE(dialog.offer(ours("1", "")));
  EXPECT_TRUE(dialog.receiveAnswer(theirs("1", "")));
}

TEST(DialogReceived, AnswersThatCannotBeSentAreRefused) {
  const NoAnswer cases[] = {
      {"nothing", "", DialogFailure::brokenBody, 0},
      {"a section less", ours("1", ""), DialogFailure::sectionCount, 0},
      {"another media", ours("1", "m=video 4000 RTP/AVP 31|"), DialogFailure::sectionMedia, 1},
      {"one that cannot be read", ours("1", "m=audio x RTP/AVP 0|"), DialogFailure::unreadableSection, 1},
  };
  for (const NoAnswer& answer : cases) {
    SCOPED_TRACE(answer.what);
    Dialog dialog;
    ASSERT_TRUE(dialog.receiveOffer(theirs("1", kPeersAudio)));
    const Dialog before = dialog;
    const sdp::LocalBody body = dialog.answerAsIs(answer.answer);
    EXPECT_EQ(sdp::textOf(body.failure), sdp::textOf(answer.failure));
    EXPECT_EQ(body.section, answer.section);
    EXPECT_TRUE(dialog == before);
  }
}

TEST(DialogReceived, AnswersAreMadeOfDescriptions) {
  Dialog dialog;
  ASSERT_TRUE(dialog.receiveOffer(theirs("1", kPeersAudio)));
  const sdp::LocalBody answer = dialog.answer(ours("3", kAudio));
  EXPECT_EQ(textOf(answer), ours("3", kAudio));
  ASSERT_EQ(answer.sections.size(), 1U);
  EXPECT_EQ(answer.sections[0].outcome, sdp::SectionOutcome::accepted);
  EXPECT_EQ(answer.sections[0].local, 1U);
  EXPECT_EQ(dialog.local(), answer.text);

  ASSERT_TRUE(dialog.receiveOffer(theirs("2", kPeersAudio)));
  const sdp::LocalBody same = dialog.answer(ours("99", kAudio));
  EXPECT_TRUE(same.isRefresh);
  EXPECT_EQ(textOf(same), ours("3", kAudio));
  ASSERT_TRUE(dialog.receiveOffer(theirs("3", kPeersAudio)));
  EXPECT_EQ(textOf(dialog.answer(ours("99", "m=audio 4444 RTP/AVP 0|"))),
            ours("4", "m=audio 4444 RTP/AVP 0|"));
}

TEST(DialogReceived, AnOfferOfWhichNothingIsAcceptedStaysPending) {
  Dialog dialog;
  ASSERT_TRUE(dialog.receiveOffer(theirs("1", kPeersAudio)));
  const Dialog before = dialog;
  const sdp::LocalBody refused = dialog.answer(ours("1", "m=video 4000 RTP/AVP 31|"));
  EXPECT_EQ(refused.failure, DialogFailure::nothingAccepted);
  EXPECT_EQ(refused.text, "");
  EXPECT_EQ(dialog.answer(ours("1", "")).failure, DialogFailure::noLocalSection);
  EXPECT_TRUE(dialog == before);
  EXPECT_TRUE(dialog.rollback());
}

TEST(DialogReceived, OffersHaveAtMost4096Sections) {
  std::string sections(kPeersAudio);
  for (int i = 1; i < 4096; ++i) sections.append("m=|");
  Dialog dialog;
  const sdp::ReceivedOffer refused = dialog.receiveOffer(theirs("1", sections + "m=|"));
  EXPECT_EQ(refused.failure, DialogFailure::tooManySections);
  EXPECT_EQ(sdp::textOf(refused.failure), "the offer has too many sections");
  EXPECT_TRUE(refused.sections.empty());
  EXPECT_TRUE(dialog == Dialog());
  const sdp::ReceivedOffer taken = dialog.receiveOffer(theirs("1", sections));
  EXPECT_TRUE(taken);
  EXPECT_EQ(taken.sections.size(), 4096U);
  ASSERT_TRUE(dialog.answer(ours("1", kAudio)));
  EXPECT_EQ(dialog.agreed().sections.size(), 4096U);
}

}  // namespace
