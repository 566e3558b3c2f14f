#include "dialogBytesSupport.h"
#include "dialogTestSupport.h"

// Dialogs as bytes: they come back as they were, and whatever was done to the bytes is told.

namespace {

using namespace dialogTest;

/// A dialog of each state, with all that one can have.
std::vector<Dialog> samples() {
  std::vector<Dialog> dialogs;
  dialogs.emplace_back();
  Dialog dialog;
  EXPECT_TRUE(dialog.offer(ours("1", kAudio)));
  dialogs.push_back(dialog);
  EXPECT_TRUE(dialog.receiveAnswer(theirs("1", kPeersAudio)));
  dialogs.push_back(dialog);
  EXPECT_TRUE(dialog.hold());
  dialogs.push_back(dialog);
  EXPECT_TRUE(dialog.receiveAnswer(theirs("2", kPeersAudio)));
  EXPECT_TRUE(dialog.receiveOffer(theirs("3", kPeersAudio)));
  dialogs.push_back(dialog);
  return dialogs;
}

TEST(DialogBytes, ComeBackAsTheyWere) {
  for (const Dialog& dialog : samples()) expectRoundTrip(dialog);
}

TEST(DialogBytes, AreThoseOfTheFormat) {
  // The mark, format 1, the length, stable, offered by nobody, five empty texts, twice no hold and no direction.
  std::string expected("SDPD\x01\0", 6);
  const std::size_t length = 4 + 2 + 8 + 1 + 1 + 5 * 8 + 2 * (1 + 8) + 8;
  expected.append(1, static_cast<char>(length)).append(7, '\0').append(1, '\0').append(1, '\2');
  expected.append(5 * 8 + 2 * (1 + 8), '\0');
  const std::string bytes = Dialog().serialise().bytes;
  ASSERT_EQ(bytes.size(), length);
  EXPECT_EQ(bytes.substr(0, length - 8), expected);
}

TEST(DialogBytes, TheCheckSumIsThatOfItsStandard) {
  // CRC-64 of the catalogue's check text, as XZ has it.
  EXPECT_EQ(dialogBytes::sumOf("123456789"), 0x995DC9BBDF1939FAULL);
}

TEST(DialogBytes, EverySingleByteThatIsDamagedIsTold) {
  for (const Dialog& dialog : samples()) {
    const std::string bytes = dialog.serialise().bytes;
    Dialog restored = dialog;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      for (const int change : {1, 0x80, 0xFF}) {
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ change);
        ASSERT_EQ(restored.restore(damaged).failure, DialogFailure::damaged) << at;
      }
      ASSERT_TRUE(restored == dialog);
    }
  }
}

TEST(DialogBytes, EveryPartAndEverythingMoreIsTold) {
  const Dialog dialog = samples().back();
  const std::string bytes = dialog.serialise().bytes;
  Dialog restored;
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    ASSERT_EQ(restored.restore(bytes.substr(0, length)).failure, DialogFailure::damaged) << length;
  }
  EXPECT_EQ(restored.restore(bytes + '\0').failure, DialogFailure::damaged);
  EXPECT_EQ(restored.restore(bytes + bytes).failure, DialogFailure::damaged);
  EXPECT_TRUE(restored == Dialog());
}

TEST(DialogBytes, ALaterFormatIsToldAsSuch) {
  std::string bytes = Dialog().serialise().bytes;
  for (const char format : {'\0', '\2'}) {
    bytes[4] = format;
    Dialog restored;
    EXPECT_EQ(restored.restore(dialogBytes::withSum(bytes)).failure, DialogFailure::unknownFormat);
  }
  bytes[4] = '\1';
  Dialog restored;
  EXPECT_TRUE(restored.restore(dialogBytes::withSum(bytes)));
}

/// Bytes with a good check sum that no dialog makes.
TEST(DialogBytes, WhatNoDialogHoldsIsRefused) {
  struct Change {
    const char* what;
    std::size_t at;
    char byte;
  };
  const Change cases[] = {
      {"another length", 6, 1},
      {"a state that is none", 14, 3},
      {"an offer without a body", 14, 1},
      {"an offerer who is nobody's", 15, 3},
      {"an offerer of nothing", 15, 0},
      {"a text beyond the end", 16, 1},
      {"a text of any length", 23, '\x7F'},
      {"a hold that is neither", 56, 2},
      {"directions beyond the end", 57, 100},
      {"directions without end", 64, '\x7F'},
      {"an intent of an offer that is not there", 65, 1},
  };
  for (const Change& change : cases) {
    SCOPED_TRACE(change.what);
    std::string bytes = Dialog().serialise().bytes;
    ASSERT_NE(bytes[change.at], change.byte);
    bytes[change.at] = change.byte;
    Dialog restored;
    EXPECT_EQ(restored.restore(dialogBytes::withSum(bytes)).failure, DialogFailure::damaged);
    EXPECT_TRUE(restored == Dialog());
  }
}

/// The bytes of a dialog in which a piece of its bodies is another one of the same length.
std::string withOther(const Dialog& dialog, std::string_view piece, std::string_view other) {
  std::string bytes = dialog.serialise().bytes;
  EXPECT_EQ(piece.size(), other.size());
  const std::size_t first = bytes.find(piece);
  EXPECT_NE(first, std::string::npos) << piece;
  for (std::size_t at = first; at != std::string::npos; at = bytes.find(piece, at + piece.size())) {
    bytes.replace(at, piece.size(), other);
  }
  return dialogBytes::withSum(bytes);
}

TEST(DialogBytes, BodiesThatNoDialogHoldsAreRefused) {
  Dialog offering;
  EXPECT_TRUE(offering.offer(ours("1", kAudio)));
  Dialog asked;
  EXPECT_TRUE(asked.receiveOffer(theirs("1", "")));
  const Dialog agreed = offered(ours("1", kAudio), theirs("1", kPeersAudio));
  const Dialog empty = offered(ours("1", ""), theirs("1", ""));
  Dialog again = agreed;
  EXPECT_TRUE(again.hold());  // its body is told from the current one by its direction
  struct Change {
    const char* what;
    const Dialog& dialog;
    std::string piece;
    std::string other;
  };
  const Change cases[] = {
      {"a local section less", agreed, "m=audio 4000", "i=audio 4000"},
      {"a section of the peer's less", agreed, "m=audio 5000", "i=audio 5000"},
      {"a local section that cannot be read", agreed, "m=audio 4000", "m=audio x000"},
      {"a local body that is none", empty, "v=0\r\no=a", "x=0\r\no=a"},
      {"a peer's body that is none", empty, "v=0\r\no=b", "x=0\r\no=b"},
      {"an offer that cannot be read", offering, "m=audio 4000", "m=audio x000"},
      {"a peer's offer that is none", asked, "v=0", "x=0"},
      {"a local offer with fewer sections", again, "m=audio 4000 RTP/AVP 0\r\na=sendonly",
       "i=audio 4000 RTP/AVP 0\r\na=sendonly"},
  };
  for (const Change& change : cases) {
    SCOPED_TRACE(change.what);
    Dialog restored;
    ASSERT_TRUE(restored.restore(withOther(change.dialog, change.piece, change.piece)));
    EXPECT_EQ(restored.restore(withOther(change.dialog, change.piece, change.other)).failure,
              DialogFailure::damaged);
    EXPECT_TRUE(restored == change.dialog);
  }
}

TEST(DialogBytes, ARestoredDialogGoesOnAsTheOther) {
  for (const Dialog& dialog : samples()) {
    Dialog restored;
    ASSERT_TRUE(restored.restore(dialog.serialise().bytes));
    Dialog other = dialog;
    const std::string next = ours("1", "m=audio 4000 RTP/AVP 8|m=video 4002 RTP/AVP 31|");
    EXPECT_EQ(restored.resume().text, other.resume().text);
    (void)restored.rollback();
    (void)other.rollback();
    EXPECT_EQ(restored.offer(next).text, other.offer(next).text);
    EXPECT_TRUE(restored == other);
  }
}

}  // namespace
