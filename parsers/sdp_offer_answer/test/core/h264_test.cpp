#include "h264.h"

#include "core/coreTestSupport.h"

namespace {

using sdp::exchange::ProfileLevelId;

ProfileLevelId idOf(std::string_view text) {
  const auto id = sdp::exchange::readProfileLevelId(text);
  EXPECT_TRUE(id) << text;
  return id.value_or(ProfileLevelId{});
}

// RFC 6184, table 5: what the bytes of each row may be, with the flags that do not count set and not.
TEST(H264Profiles, AreTheRowsOfTheTable) {
  const std::initializer_list<std::initializer_list<const char*>> rows = {
      {"42401e", "42c01e", "42601e", "42501e", "42f01e", "4d801e", "4df01e", "4dc01e", "58c01e", "58f01e"},
      {"42001e", "42801e", "42201e", "42b01e", "58801e", "58b01e", "58901e"},
      {"4d001e", "4d401e", "4d101e", "4d501e"},
      {"58001e", "58201e", "58101e", "58301e"},
      {"64001e", "640028"},
      {"6e001e"},
      {"7a001e"},
      {"f4001e"},
      {"6e101e"},
      {"7a101e"},
      {"f4101e"},
      {"2c101e"},
      {"640c1e"},
      {"42411e"},
      {"42811e"},
      {"4d201e"},
      {"58401e"},
      {"2c001e"},
      {"53001e"}};
  for (const auto& row : rows) {
    for (const auto& other : rows) {
      for (const char* const a : row) {
        for (const char* const b : other) {
          EXPECT_EQ(profileOf(idOf(a)) == profileOf(idOf(b)), &row == &other) << a << " " << b;
        }
      }
    }
  }
}

TEST(H264Levels, HaveAnOrder) {
  const std::initializer_list<std::initializer_list<const char*>> levels = {
      {"42000a", "64000a", "42100a"},
      {"42100b", "4d100b", "58f00b", "420009", "640009"},
      {"42000b", "64100b", "6e100b"},
      {"42000c"},
      {"42000d"},
      {"420014"},
      {"42f01e"},
      {"4200ff"}};
  for (const auto& level : levels) {
    for (const auto& other : levels) {
      for (const char* const a : level) {
        for (const char* const b : other)
          EXPECT_EQ(rankOf(idOf(a)) < rankOf(idOf(b)), &level < &other) << a << " " << b;
      }
    }
  }
}

TEST(H264Levels, AreSpeltAsTheProfileDoes) {
  const struct {
    const char* id;
    const char* level;
    const char* expected;
  } cases[] = {{"42E01F", "42000d", "42e00d"}, {"42e01f", "42f00b", "42f00b"}, {"64001f", "42f00b", "640009"},
               {"42e01f", "640009", "42f00b"}, {"42f01f", "42e00b", "42e00b"}, {"42f00b", "42e00a", "42f00a"},
               {"64101f", "42e00b", "64100b"}, {"4df028", "4d001e", "4df01e"}};
  for (const auto& c : cases) EXPECT_EQ(textOf(withLevelOf(idOf(c.id), idOf(c.level))), c.expected) << c.id;
}

TEST(H264Profiles, AreSixDigits) {
  for (const char* const text : {"", "42e01", "42e01f0", "42e01g", "0x42e0", "-42e01"})
    EXPECT_FALSE(sdp::exchange::readProfileLevelId(text)) << text;
  EXPECT_EQ(textOf(idOf("AbCdEf")), "abcdef");
}

}  // namespace
