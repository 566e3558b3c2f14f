#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "text/sdpText.h"

// Changes of a text, one after the other, in one pass.

using namespace sdpneg;

namespace {

/// Makes changes of a text in a block of just its capacity.
std::string changed(const std::string& text, std::size_t capacity, const std::vector<Change>& changes) {
  const auto block = std::make_unique<char[]>(capacity);
  std::memcpy(block.get(), text.c_str(), text.size() + 1);
  SdpText edited(block.get(), capacity);
  std::size_t next = 0;
  edited.changeEach([&](std::string_view view, std::size_t from, std::size_t) -> std::optional<Change> {
    EXPECT_EQ(view, text);
    EXPECT_EQ(from, next == 0 ? 0 : changes[next - 1].span.end);
    return next < changes.size() ? std::optional(changes[next++]) : std::nullopt;
  });
  EXPECT_EQ(edited.view(), std::string_view(block.get()));
  return block.get();
}

TEST(ChangeEach, ReplacesInsertsAndErases) {
  EXPECT_EQ(changed("abcdef", 20, {}), "abcdef");
  EXPECT_EQ(changed("abcdef", 20, {{{0, 0}, "1"}, {{2, 4}, ""}, {{4, 5}, "234"}, {{6, 6}, "5"}}), "1ab234f5");
  EXPECT_EQ(changed("abcdef", 20, {{{0, 6}, "x"}}), "x");
  EXPECT_EQ(changed("", 20, {{{0, 0}, "x"}}), "x");
}

TEST(ChangeEach, FillsTheCapacityAndNoMore) {
  EXPECT_EQ(changed("abc", 6, {{{1, 1}, "12"}}), "a12bc");
  // One that does not fit ends the pass, and the changes in front of it stay.
  EXPECT_EQ(changed("abc", 6, {{{1, 1}, "123"}}), "abc");
  EXPECT_EQ(changed("abc", 6, {{{1, 1}, "1"}, {{2, 2}, "23"}}), "a1bc");
}

TEST(ChangeEach, TellsTheRoomThatIsLeft) {
  char block[10] = "abcde";
  SdpText text(block, sizeof block);
  std::vector<std::size_t> rooms;
  text.changeEach([&](std::string_view, std::size_t from, std::size_t room) -> std::optional<Change> {
    rooms.push_back(room);
    if (from == 0) return Change{{0, 1}, "123"};
    if (from == 1) return Change{{1, 4}, ""};
    return std::nullopt;
  });
  EXPECT_EQ(rooms, (std::vector<std::size_t>{4, 2, 5}));
  EXPECT_STREQ(block, "123e");
}

TEST(ChangeEach, TakesTextFromBehindTheChange) {
  EXPECT_EQ(changed("ab\ncd\n", 20, {}), "ab\ncd\n");
  char block[12] = "ab\ncd\n";
  SdpText text(block, sizeof block);
  bool done = false;
  text.changeEach([&](std::string_view view, std::size_t, std::size_t) -> std::optional<Change> {
    if (done) return std::nullopt;
    done = true;
    return Change{{0, 0}, view.substr(3)};
  });
  EXPECT_STREQ(block, "cd\nab\ncd\n");
}

TEST(ChangeEach, LeavesATextWithoutNulAlone) {
  char block[4] = {'a', 'b', 'c', 'd'};
  SdpText text(block, sizeof block);
  text.changeEach([](std::string_view, std::size_t, std::size_t) -> std::optional<Change> {
    ADD_FAILURE() << "there is nothing to change";
    return std::nullopt;
  });
  EXPECT_EQ(std::string(block, sizeof block), "abcd");
}

}  // namespace
