#include "sdpModifiers/notes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "modifiersTestSupport.h"

// Where a text has the lines that edits look for.

using namespace sdpneg;

namespace {

using Places = std::vector<std::size_t>;

Places placesOf(const Notes& notes, Noted what) {
  Places places;
  for (std::size_t at = notes.find(what, 0); at != npos; at = notes.find(what, at + 1)) places.push_back(at);
  return places;
}

TEST(Notes, OfLinesAreThoseAtALinesStartButTheFirst) {
  const Notes notes(
      "m=audio 1\nm=audio m=2\nc=IN\n c=\na=sendonly\nb=a=recvonly\na=inactivex\na=confrnce\na=sendon");
  EXPECT_EQ(placesOf(notes, Noted::mLine), Places({10}));
  EXPECT_EQ(placesOf(notes, Noted::cLine), Places({22}));
  EXPECT_EQ(placesOf(notes, Noted::direction), Places({31, 55}));
}

TEST(Notes, OfAttributesAreThoseAnywhere) {
  const Notes notes(
      "a=key-mgmt:x\ni=a=crypto:1 a=ice-lite\na=crypto\na=ice-mismatch\na=key-mgmt:\na=candidate:");
  EXPECT_EQ(placesOf(notes, Noted::keyManagement), Places({0, 61}));
  EXPECT_EQ(placesOf(notes, Noted::crypto), Places({15}));
  EXPECT_EQ(placesOf(notes, Noted::ice), Places({26, 73}));
  EXPECT_EQ(notes.last(Noted::keyManagement), 61U);
  EXPECT_EQ(notes.last(Noted::mLine), npos);
  EXPECT_FALSE(notes.mayHave(Noted::direction));
  EXPECT_TRUE(notes.mayHave(Noted::ice));
}

TEST(Notes, AreFoundFromOneOffsetToAnother) {
  const Notes notes("v=0\nm=a\nm=b\nm=c\n");
  EXPECT_EQ(notes.find(Noted::mLine, 4), 4U);
  EXPECT_EQ(notes.find(Noted::mLine, 5), 8U);
  EXPECT_EQ(notes.find(Noted::mLine, 13), npos);
  EXPECT_EQ(notes.find(Noted::mLine, 9, 12), npos);
  EXPECT_EQ(notes.find(Noted::mLine, 9, 13), 12U);
  EXPECT_EQ(notes.find(Noted::mLine, 0), 4U);
}

TEST(Notes, TellWhichMediaThereMayBe) {
  const Notes notes("v=0\nm=audio\nm=");
  EXPECT_TRUE(notes.mayHaveMedia("audio"));
  EXPECT_TRUE(notes.mayHaveMedia(""));
  EXPECT_FALSE(notes.mayHaveMedia("video"));
  EXPECT_FALSE(Notes("v=0\n").mayHaveMedia(""));
}

TEST(Notes, HoldTheMostThatATextCan) {
  std::string text = "v=0";
  while (text.size() + 3 < MAX_SDP_PROTOCOL_DATA_SIZE) text += "\nm=";
  const Notes notes(text);
  EXPECT_EQ(placesOf(notes, Noted::mLine).size(), 6825U);
  EXPECT_EQ(notes.last(Noted::mLine), text.size() - 2);
}

// Texts are searched in windows, the last of which overlaps the one before.
TEST(Notes, AreTheSameWhereverALineStands) {
  const std::string lines = "m=audio 1\nc=IN\na=inactive\na=candidate:1\na=key-mgmt:x\na=crypto:1\nm=b\n";
  for (std::size_t front = 0; front <= 140; ++front) {
    for (const std::size_t behind : {0U, 1U, 2U, 3U, 63U, 64U, 65U, 66U, 67U, 68U, 1100U}) {
      const Notes notes(std::string(front, 'x') + "\n" + lines + std::string(behind, '='));
      const std::size_t at = front + 1;
      EXPECT_EQ(placesOf(notes, Noted::mLine), Places({at, at + 64})) << front << " " << behind;
      EXPECT_EQ(placesOf(notes, Noted::cLine), Places({at + 10})) << front << " " << behind;
      EXPECT_EQ(placesOf(notes, Noted::direction), Places({at + 15})) << front << " " << behind;
      EXPECT_EQ(placesOf(notes, Noted::ice), Places({at + 26})) << front << " " << behind;
      EXPECT_EQ(placesOf(notes, Noted::keyManagement), Places({at + 40})) << front << " " << behind;
      EXPECT_EQ(placesOf(notes, Noted::crypto), Places({at + 53})) << front << " " << behind;
    }
  }
}

TEST(Notes, OfOneWindowMayBeMany) {
  std::string text = "v=0\n";
  Places places;
  for (int i = 0; i < 1000; ++i) {
    places.push_back(text.size());
    text += "m=\n";
  }
  EXPECT_EQ(placesOf(Notes(text), Noted::mLine), places);
}

/// A text with notes, edited by a test.
struct Edited {
  explicit Edited(const std::string& body) : buffer(body), text(buffer.data()), noted(text) {}

  SdpBuffer buffer;
  SdpText text;
  NotedText noted;
};

TEST(NotedText, NotesGoWithTheEdits) {
  Edited body("v=0\nc=1\nm=a\nm=b\na=sendonly\n");
  EXPECT_EQ(body.noted.replace({4, 8}, "c=IN IP4\n"), Edit::done);
  EXPECT_EQ(body.noted.insert(12, "b=1\n"), Edit::done);
  EXPECT_EQ(body.noted.replace({18, 26}, "inactive"), Edit::done);
  body.noted.settle();
  EXPECT_EQ(body.text.view(), "v=0\nc=IN IP4\nm=a\nb=1\nm=b\na=inactive\n");
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::cLine), Places({4}));
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::mLine), Places({13, 21}));
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::direction), Places({25}));
}

TEST(NotedText, WhatStoodInAReplacedSpanIsGone) {
  Edited body("v=0\no=x\nm=a\nc=1\ns=y\nm=b\n");
  EXPECT_EQ(body.text.replace({4, 16}, "o=ZEV\n"), Edit::done);
  body.noted.noteReplaced({4, 16}, {4, 10});
  EXPECT_EQ(body.text.view(), "v=0\no=ZEV\ns=y\nm=b\n");
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::mLine), Places({14}));
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::cLine), Places());
}

TEST(NotedText, BehindALineThatLosesItsEndNoneBegins) {
  Edited body("v=0\nc=1\nm=a\nm=b\n");
  EXPECT_EQ(body.noted.replace({4, 8}, "c=IN"), Edit::done);
  EXPECT_EQ(body.noted.notes().find(Noted::mLine, 8), 12U);
  body.noted.settle();
  EXPECT_EQ(body.text.view(), "v=0\nc=INm=a\nm=b\n");
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::mLine), Places({12}));
}

TEST(NotedText, AnAttributeInWhatIsPutInMayBeAny) {
  Edited body("v=0\nc=1\n");
  EXPECT_EQ(body.noted.replace({4, 8}, "c=a=ice-lite\n"), Edit::done);
  body.noted.settle();
  EXPECT_TRUE(body.noted.notes().mayHave(Noted::ice));
  EXPECT_EQ(body.noted.removeLines(Noted::ice), std::nullopt);
  body.noted.noteAgain();
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::ice), Places({6}));
}

TEST(NotedText, RemovesNotedLinesInOnePass) {
  Edited body("v=0\na=ice-lite\nm=a\na=candidate:1\r\na=mid:1\na=ice-pwd:x\nm=b\n");
  EXPECT_EQ(body.noted.removeLines(Noted::ice), 3U);
  EXPECT_EQ(body.text.view(), "v=0\nm=a\na=mid:1\nm=b\n");
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::mLine), Places({4, 16}));
  EXPECT_EQ(placesOf(body.noted.notes(), Noted::ice), Places());
}

TEST(NotedText, RemovesNoneWhereThatWouldMakeOtherLines) {
  for (const char* const text :
       {"v=0\na=ice-lite\ni=a=ice-lite\nm=a\n", "v=0\na=ice-lite\na=ice-pwd:", "a=ice-lite\nm=a\n"}) {
    Edited body(text);
    EXPECT_EQ(body.noted.removeLines(Noted::ice), std::nullopt) << text;
    EXPECT_EQ(body.text.view(), text);
  }
}

}  // namespace
