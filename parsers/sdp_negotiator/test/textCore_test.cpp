#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "text/fixedText.h"
#include "text/lines.h"
#include "text/sdpText.h"

// The text-editing core: one writer that keeps a text and its NUL inside a capacity.

using namespace sdpneg;

namespace {

/// A buffer of an exact capacity with guard bytes behind it.
class Buffer {
 public:
  explicit Buffer(const std::string& text, std::size_t capacity)
      : capacity_(capacity), bytes_(std::make_unique<char[]>(capacity + kGuard)) {
    std::memset(bytes_.get(), '#', capacity + kGuard);
    std::memcpy(bytes_.get(), text.c_str(), std::min(text.size() + 1, capacity));
  }
  char* data() { return bytes_.get(); }
  SdpText text() { return SdpText(bytes_.get(), capacity_); }
  void expectText(const std::string& wanted) const {
    EXPECT_EQ(std::string(bytes_.get()), wanted);
    EXPECT_EQ(std::string(bytes_.get() + capacity_, kGuard), std::string(kGuard, '#'));
  }

 private:
  static constexpr std::size_t kGuard = 16;
  std::size_t capacity_;
  std::unique_ptr<char[]> bytes_;
};

TEST(SdpText, HoldsTheTextUpToItsNul) {
  Buffer buffer("v=0\r\n", 20);
  const SdpText text = buffer.text();
  EXPECT_TRUE(text.usable());
  EXPECT_EQ(text.view(), "v=0\r\n");
  EXPECT_EQ(text.room(), 14U);
}

TEST(SdpText, ATextWithoutNulInItsCapacityIsNeitherReadNorWritten) {
  Buffer buffer("0123456789", 10);
  SdpText text = buffer.text();
  EXPECT_FALSE(text.usable());
  EXPECT_EQ(text.view(), "");
  EXPECT_EQ(text.room(), 0U);
  EXPECT_EQ(text.replace({0, 0}, ""), Edit::noRoom);
  EXPECT_EQ(text.append("x"), Edit::noRoom);
  text.truncate(0);
  const std::string_view prefixes[] = {"0"};
  EXPECT_EQ(text.removeLines(prefixes), 0U);
  EXPECT_EQ(std::string(buffer.data(), 10), "0123456789");
}

TEST(SdpText, ANullBufferIsNotUsable) {
  SdpText text(nullptr);
  EXPECT_FALSE(text.usable());
  EXPECT_EQ(text.append("x"), Edit::noRoom);
  EXPECT_EQ(text.view(), "");
}

TEST(SdpText, AnEditMustFitWithTheNul) {
  for (const std::size_t inserted : {4U, 5U, 6U}) {
    Buffer buffer("abcdef", 12);
    SdpText text = buffer.text();
    const Edit edit = text.insert(3, std::string(inserted, '+'));
    const bool fits = inserted <= 5;
    EXPECT_EQ(edit, fits ? Edit::done : Edit::noRoom);
    buffer.expectText(fits ? "abc" + std::string(inserted, '+') + "def" : "abcdef");
    EXPECT_EQ(text.view(), std::string(buffer.data()));
  }
}

TEST(SdpText, OffsetsOutsideTheTextAreRefused) {
  Buffer buffer("abc", 12);
  SdpText text = buffer.text();
  EXPECT_EQ(text.replace({2, 1}, "x"), Edit::noRoom);
  EXPECT_EQ(text.replace({0, 4}, "x"), Edit::noRoom);
  EXPECT_EQ(text.insert(4, "x"), Edit::noRoom);
  text.truncate(9);
  buffer.expectText("abc");
}

TEST(SdpText, InsertedTextMayLieInTheBufferItself) {
  Buffer buffer("m=audio 1\r\na=x\r\n", 40);
  SdpText text = buffer.text();
  EXPECT_EQ(text.insert(0, text.view().substr(11, 5)), Edit::done);
  buffer.expectText("a=x\r\nm=audio 1\r\na=x\r\n");
  EXPECT_EQ(text.replace({5, 16}, text.view()), Edit::done);
  buffer.expectText("a=x\r\na=x\r\nm=audio 1\r\na=x\r\na=x\r\n");
}

TEST(SdpText, RandomEditsAgreeWithAString) {
  std::mt19937 random(20260);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  for (int round = 0; round < 200; ++round) {
    const std::size_t capacity = 1 + below(200);
    std::string model(below(capacity), 'o');
    Buffer buffer(model, capacity);
    SdpText text = buffer.text();
    for (int step = 0; step < 100; ++step) {
      const std::size_t begin = below(model.size() + 1);
      const std::size_t end = begin + below(model.size() - begin + 1);
      const bool own = below(3) == 0;
      const std::string inserted =
          own ? model.substr(begin, below(20)) : std::string(below(20), static_cast<char>('a' + below(26)));
      const bool fits = model.size() - (end - begin) + inserted.size() < capacity;
      const Edit edit = text.replace(
          {begin, end}, own ? text.view().substr(begin, inserted.size()) : std::string_view(inserted));
      ASSERT_EQ(edit, fits ? Edit::done : Edit::noRoom);
      if (fits) model.replace(begin, end - begin, inserted);
      ASSERT_EQ(text.view(), model);
      ASSERT_EQ(std::strlen(buffer.data()), model.size());
    }
    buffer.expectText(model);
  }
}

/// The removal as described: the first prefix in the list's order that occurs goes, at its first place, and
/// the search begins again at the text's start.
std::string removedOneByOne(std::string text, const std::vector<std::string_view>& prefixes,
                            std::size_t& count) {
  for (count = 0;; ++count) {
    std::size_t match = std::string::npos;
    for (const std::string_view prefix : prefixes) {
      match = text.find(prefix);
      if (match != std::string::npos) break;
    }
    if (match == std::string::npos) return text;
    const std::size_t lf = text.find('\n', match);
    if (lf == std::string::npos) return text;
    text.erase(match, lf + 1 - match);
  }
}

struct Removal {
  const char* name;
  std::string before;
  std::vector<std::string_view> prefixes;
  std::string after;
};

class LineRemoval : public testing::TestWithParam<Removal> {};

TEST_P(LineRemoval, GivesWhatRemovingOneByOneGives) {
  const Removal& removal = GetParam();
  Buffer buffer(removal.before, 200);
  SdpText text = buffer.text();
  std::size_t count = 0;
  EXPECT_EQ(removedOneByOne(removal.before, removal.prefixes, count), removal.after);
  EXPECT_EQ(text.removeLines(removal.prefixes), count);
  buffer.expectText(removal.after);
  EXPECT_EQ(text.view(), removal.after);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LineRemoval,
    testing::Values(
        Removal{"none", "v=0\r\na=x\r\n", {"a=y"}, "v=0\r\na=x\r\n"},
        Removal{"all", "a=x:1\r\na=x:2\na=x\r\n", {"a=x"}, ""},
        Removal{"between", "v=0\r\na=x:1\r\ns=-\r\na=x:2\r\nt=0\r\n", {"a=x"}, "v=0\r\ns=-\r\nt=0\r\n"},
        Removal{"insideALine", "i=say a=x loud\r\ns=-\r\n", {"a=x"}, "i=say s=-\r\n"},
        Removal{"overASeam", "a=a=x\n:1\nt=0\n", {"a=x:"}, "a=a=x\n:1\nt=0\n"},
        Removal{"newMatchAtASeam", "pa=a=x:1\nx:2\nend\n", {"a=x:"}, "pend\n"},
        Removal{"anLfOfThePrefixEndsTheLine", "a\r\na=\r\n\r\na=b\r\n", {"\r\na="}, "aa=a=b\r\n"},
        Removal{"seamTwice", "a=xa=xa=x:\n:\n:\nrest\n", {"a=x:"}, "rest\n"},
        Removal{"unterminatedStops", "a=x:1\nv\na=x:2", {"a=x:"}, "v\na=x:2"},
        Removal{"firstPrefixFirst", "bb1\naa1\nbb2\naa2\n", {"aa", "bb"}, ""},
        Removal{"earlierPrefixMadeByALaterOne", "abb\na1\nz\n", {"aa", "bb"}, "z\n"},
        Removal{"unterminatedStopsLaterPrefixesToo", "bb1\naa2", {"aa", "bb"}, "bb1\naa2"}),
    [](const auto& tested) { return tested.param.name; });

TEST(LineRemoval, AgreesWithRemovingOneByOneOnRandomTexts) {
  std::mt19937 random(7);
  const std::vector<std::vector<std::string_view>> lists = {
      {"ab"}, {"aba"}, {"ab", "ba"}, {"aab", "b"}, {"abab", "aa", "bb"}, {"\na"}, {"a\nb"}, {"\n\n", "ab"}};
  for (int round = 0; round < 20000; ++round) {
    const auto& prefixes = lists[random() % lists.size()];
    std::string before(random() % 40, ' ');
    for (char& c : before) c = "aabb\n"[random() % 5];
    std::size_t count = 0;
    const std::string wanted = removedOneByOne(before, prefixes, count);
    Buffer buffer(before, 41);
    SdpText text = buffer.text();
    ASSERT_EQ(text.removeLines(prefixes), count) << before;
    ASSERT_EQ(text.view(), wanted) << before;
    buffer.expectText(wanted);
  }
}

TEST(Lines, EndAtLfAndHideACr) {
  const std::string_view text = "v=0\r\ns=-\nt=0 0\r";
  const Line first = lineAt(text, 0);
  EXPECT_EQ(content(text, first), "v=0");
  EXPECT_EQ(first.next(), 5U);
  const Line second = lineAt(text, first.next());
  EXPECT_EQ(content(text, second), "s=-");
  const Line last = lineAt(text, second.next());
  EXPECT_FALSE(last.terminated);
  EXPECT_EQ(content(text, last), "t=0 0");
  EXPECT_EQ(last.next(), text.size());
  EXPECT_EQ(content("\n", lineAt("\n", 0)), "");
  EXPECT_EQ(content("\r", lineAt("\r", 0)), "");
  EXPECT_EQ(content("a\rb", lineAt("a\rb", 0)), "a\rb");
}

TEST(Lines, AreFoundBehindAnLfOnly) {
  const std::string_view text = "a=1\r\ni=a=x\r\na=2\r\n";
  EXPECT_EQ(findLine(text, "a="), 12U);
  EXPECT_EQ(findLine(text, "a=", 11), 12U);
  EXPECT_EQ(findLine(text, "a=", 12), npos);
  EXPECT_EQ(findAnywhere(text, "a="), 0U);
  EXPECT_EQ(findAnywhere(text, "a=", 1), 7U);
  EXPECT_EQ(orEnd(npos, text), text.size());
}

TEST(Lines, AreAppendedBehindALineEnd) {
  for (const char* const ended : {"", "\n", "v=0\r\n", "v=0\n"})
    EXPECT_EQ(missingLineEnd(ended), "") << ended;
  for (const char* const open : {"v=0", "v=0\r", "v=0\r\ns=-"})
    EXPECT_EQ(missingLineEnd(open), "\r\n") << open;
}

TEST(FixedText, CutsAndRemembers) {
  FixedText<6> text;
  text.add("ab").add(12);
  EXPECT_EQ(text.view(), "ab12");
  EXPECT_FALSE(text.cut());
  text.add(-345);
  EXPECT_STREQ(text.text(), "ab12-");
  EXPECT_TRUE(text.cut());
  EXPECT_EQ(FixedText<24>().add(std::numeric_limits<long long>::min()).view(), "-9223372036854775808");
}

struct Number {
  const char* text;
  bool found;
  unsigned int asUnsigned;
  int asInt;
  std::size_t length;
};

TEST(Numbers, SaturateAndTellAbsentFromBad) {
  const Number cases[] = {{"", false, 0, 0, 0},
                          {"x1", false, 0, 0, 0},
                          {"-", false, 0, 0, 0},
                          {"0", true, 0, 0, 1},
                          {"65535", true, 65535, 65535, 5},
                          {"65536", true, 65536, 65536, 5},
                          {"+1", true, 1, 1, 2},
                          {"  12a", true, 12, 12, 4},
                          {"-7", true, 0, -7, 2},
                          {"2147483647", true, 2147483647U, 2147483647, 10},
                          {"2147483648", true, 2147483648U, 2147483647, 10},
                          {"4294967295", true, 4294967295U, 2147483647, 10},
                          {"4294967296", true, 4294967295U, 2147483647, 10},
                          {"-2147483649", true, 0, -2147483647 - 1, 11},
                          {"99999999999999999999999999", true, 4294967295U, 2147483647, 26}};
  for (const Number& one : cases) {
    const auto asUnsigned = leadingNumber<unsigned int>(one.text);
    const auto asInt = leadingNumber<int>(one.text);
    ASSERT_EQ(asUnsigned.has_value(), one.found) << one.text;
    ASSERT_EQ(asInt.has_value(), one.found) << one.text;
    EXPECT_EQ(numberOrZero<int>(one.text), one.asInt) << one.text;
    EXPECT_EQ(numberOrZeroOf<int>(std::string(one.text).c_str()), one.asInt) << one.text;
    if (!one.found) continue;
    EXPECT_EQ(asUnsigned->value, one.asUnsigned) << one.text;
    EXPECT_EQ(asUnsigned->length, one.length) << one.text;
    EXPECT_EQ(asInt->value, one.asInt) << one.text;
  }
  EXPECT_EQ(leadingNumber<unsigned short>("65536")->value, 65535);
  EXPECT_EQ(leadingNumberOf<unsigned short>("65536")->value, 65535);
  EXPECT_EQ(leadingNumberOf<unsigned short>("0065535x")->value, 65535);
  EXPECT_EQ(leadingNumberOf<unsigned short>("0065535x")->length, 7U);
  EXPECT_EQ(leadingNumberOf<std::uint8_t>("256")->value, 255);
  EXPECT_EQ(leadingNumberOf<std::uint8_t>("99")->value, 99);
  EXPECT_EQ(leadingNumberOf<int>("123456789")->value, 123456789);
  EXPECT_EQ(leadingNumberOf<int>("2147483647")->value, 2147483647);
  EXPECT_EQ(leadingNumberOf<int>("2147483648")->value, 2147483647);
  EXPECT_EQ(leadingNumberOf<int>("-12 3")->length, 3U);
  EXPECT_FALSE(leadingNumberOf<int>(""));
  EXPECT_FALSE(leadingNumberOf<int>("x1"));
  EXPECT_EQ(numberOrZeroOf<int>(nullptr), 0);
  EXPECT_EQ(leadingNumber<unsigned int>(std::string(1000, '9'))->value, 4294967295U);
  EXPECT_EQ(leadingNumber<long long>("9223372036854775808")->value, 9223372036854775807LL);
  EXPECT_EQ(leadingNumber<long long>("-9223372036854775809")->value, -9223372036854775807LL - 1);
}

TEST(Words, AreSeparatedByWhiteSpace) {
  Words words(" 97 \tPCMU/8000\r\n");
  EXPECT_EQ(words.next(), "97");
  EXPECT_EQ(words.rest(), " \tPCMU/8000\r\n");
  EXPECT_EQ(words.next(), "PCMU/8000");
  EXPECT_EQ(words.next(), "");
  EXPECT_EQ(words.next(), "");
}

TEST(Search, IgnoresTheCaseOfAsciiLettersOnly) {
  EXPECT_TRUE(equalNoCase("A=Ice-LITE", "a=ice-lite"));
  EXPECT_FALSE(equalNoCase("a", "ab"));
  EXPECT_FALSE(equalNoCase("\xC4", "\xE4"));
  EXPECT_FALSE(equalNoCase("[", "{"));
  EXPECT_TRUE(startsWithNoCase("Opus/48000", "OPUS"));
  EXPECT_FALSE(startsWithNoCase("op", "opus"));
  EXPECT_EQ(findNoCase("x a=CANDIDATE", "a=candidate"), 2U);
  EXPECT_EQ(findNoCase("x", "xy"), npos);
  EXPECT_EQ(findNoCase("abAB", "ab", 1), 2U);
}

}  // namespace
