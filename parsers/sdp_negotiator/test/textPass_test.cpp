#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "text/sdpText.h"

// Edits of a text from its beginning to its end, in one pass.

using namespace sdpneg;

namespace {

/// A text in a heap buffer of exactly a capacity, so that whatever goes beyond is seen.
class Buffer {
 public:
  Buffer(const std::string& text, std::size_t capacity)
      : capacity_(capacity), bytes_(std::make_unique<char[]>(capacity)) {
    std::memcpy(bytes_.get(), text.c_str(), text.size() + 1);
  }
  SdpText text() { return SdpText(bytes_.get(), capacity_); }
  std::string held() const { return bytes_.get(); }

 private:
  std::size_t capacity_;
  std::unique_ptr<char[]> bytes_;
};

struct PlannedEdit {
  Span span;
  std::string inserted;
};

/// What becomes of a text by changes that all fit.
std::string changed(const std::string& text, const std::vector<PlannedEdit>& changes,
                    std::size_t capacity = 64) {
  Buffer buffer(text, capacity);
  SdpText edited = buffer.text();
  SdpText::Pass pass(edited);
  for (const PlannedEdit& change : changes) {
    EXPECT_EQ(pass.view().substr(change.span.begin), std::string_view(text).substr(change.span.begin));
    EXPECT_EQ(pass.replace(change.span, change.inserted), Edit::done);
    EXPECT_EQ(pass.view().size(), text.size());
  }
  pass.finish();
  EXPECT_EQ(edited.view(), buffer.held());
  return buffer.held();
}

TEST(SdpTextPass, EditsByTheOffsetsThatStoodBefore) {
  const std::string text = "0123456789";
  EXPECT_EQ(changed(text, {}), text);
  EXPECT_EQ(changed(text, {{{0, 1}, "abc"}}), "abc123456789");
  EXPECT_EQ(changed(text, {{{9, 10}, ""}}), "012345678");
  EXPECT_EQ(changed(text, {{{10, 10}, "ab"}}), "0123456789ab");
  EXPECT_EQ(changed(text, {{{0, 0}, "ab"}, {{0, 0}, "cd"}}), "abcd0123456789");
  EXPECT_EQ(changed(text, {{{2, 4}, "ab"}, {{6, 8}, "cd"}}), "01ab45cd89");
  EXPECT_EQ(changed(text, {{{1, 2}, "abc"}, {{4, 8}, ""}, {{9, 9}, "d"}}), "0abc238d9");
  EXPECT_EQ(changed(text, {{{0, 10}, ""}}), "");
}

TEST(SdpTextPass, AnotherMayFollow) {
  Buffer buffer("0123", 16);
  SdpText text = buffer.text();
  SdpText::Pass pass(text);
  EXPECT_EQ(pass.replace({1, 2}, "ab"), Edit::done);
  pass.finish();
  EXPECT_EQ(pass.view(), "0ab23");
  EXPECT_EQ(pass.replace({0, 1}, ""), Edit::done);
  EXPECT_EQ(pass.replace({4, 5}, "cd"), Edit::done);
  pass.finish();
  EXPECT_EQ(text.view(), "ab2cd");
  EXPECT_EQ(buffer.held(), "ab2cd");
}

TEST(SdpTextPass, FillsABufferToItsLastCharacter) {
  // Ten characters and the NUL; the two edits add three.
  const std::vector<PlannedEdit> changes = {{{1, 2}, "ab"}, {{5, 6}, "cde"}};
  EXPECT_EQ(changed("0123456789", changes, 15), "0ab234cde6789");
  EXPECT_EQ(changed("0123456789", changes, 14), "0ab234cde6789");
}

TEST(SdpTextPass, LeavesOutWhatDoesNotFitAndGoesOn) {
  Buffer buffer("0123456789", 13);
  SdpText text = buffer.text();
  SdpText::Pass pass(text);
  EXPECT_EQ(pass.replace({1, 2}, "ab"), Edit::done);
  EXPECT_EQ(pass.replace({5, 6}, "cde"), Edit::noRoom);
  EXPECT_EQ(pass.replace({5, 6}, "cd"), Edit::done);
  EXPECT_EQ(pass.replace({7, 8}, "ef"), Edit::noRoom);
  EXPECT_EQ(pass.replace({8, 10}, ""), Edit::done);
  EXPECT_EQ(pass.replace({10, 10}, "gh"), Edit::done);
  pass.finish();
  EXPECT_EQ(buffer.held(), "0ab234cd67gh");
}

TEST(SdpTextPass, TellsTheRoomThatIsLeft) {
  Buffer buffer("0123456789", 13);
  SdpText text = buffer.text();
  SdpText::Pass pass(text);
  EXPECT_EQ(pass.room(), 2U);
  EXPECT_EQ(pass.replace({1, 2}, "ab"), Edit::done);
  EXPECT_EQ(pass.room(), 1U);
  EXPECT_EQ(pass.replace({2, 5}, "c"), Edit::done);
  EXPECT_EQ(pass.room(), 3U);
  EXPECT_EQ(pass.replace({5, 5}, "defg"), Edit::noRoom);
  EXPECT_EQ(pass.replace({5, 5}, "def"), Edit::done);
  EXPECT_EQ(pass.room(), 0U);
  pass.finish();
  EXPECT_EQ(buffer.held(), "0abcdef56789");
  EXPECT_EQ(pass.room(), 0U);
}

TEST(SdpTextPass, RefusesSpansThatDoNotFollow) {
  Buffer buffer("0123456789", 32);
  SdpText text = buffer.text();
  SdpText::Pass pass(text);
  EXPECT_EQ(pass.replace({4, 3}, "a"), Edit::noRoom);
  EXPECT_EQ(pass.replace({4, 11}, "a"), Edit::noRoom);
  EXPECT_EQ(pass.replace({4, 6}, "a"), Edit::done);
  EXPECT_EQ(pass.replace({5, 7}, "b"), Edit::noRoom);
  pass.finish();
  EXPECT_EQ(buffer.held(), "0123a6789");
}

TEST(SdpTextPass, LeavesABufferWithoutTextAlone) {
  SdpText none(nullptr);
  SdpText::Pass pass(none);
  EXPECT_EQ(pass.view(), "");
  EXPECT_EQ(pass.room(), 0U);
  EXPECT_EQ(pass.replace({0, 0}, "a"), Edit::noRoom);
  pass.finish();
  EXPECT_FALSE(none.usable());
}

/// The same edits one by one, the last one first, which no offset of another one moves.
std::string changedOneByOne(const std::string& text, const std::vector<PlannedEdit>& changes) {
  std::string edited = text;
  for (std::size_t i = changes.size(); i > 0; --i) {
    const auto& [span, inserted] = changes[i - 1];
    edited.replace(span.begin, span.end - span.begin, inserted);
  }
  return edited;
}

TEST(SdpTextPass, MakesOfATextWhatItsEditsMakeOneByOne) {
  std::mt19937 random(3);
  for (int round = 0; round < 2000; ++round) {
    const std::string text(random() % 3000, static_cast<char>('a' + round % 26));
    std::vector<PlannedEdit> changes;
    std::size_t longest = text.size();
    for (std::size_t at = random() % 400; at < text.size(); at += random() % 400) {
      const std::size_t end = std::min(text.size(), at + random() % 30);
      changes.push_back({{at, end}, std::string(random() % 40, '.')});
      longest += changes.back().inserted.size();
      at = end;
    }
    ASSERT_EQ(changed(text, changes, longest + 1), changedOneByOne(text, changes)) << round;
  }
}

}  // namespace
