#include "captures/captureSet.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "captures/packets.h"

namespace {

using packets::invite;

/// A file that goes away with it.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& bytes) {
    char name[] = "/tmp/sdpneg-set-XXXXXX";
    const int number = mkstemp(name);
    if (number < 0) throw std::runtime_error("mkstemp");
    name_ = name;
    std::FILE* const file = fdopen(number, "w");
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
  }
  ~TemporaryFile() { unlink(name_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

/// A capture of INVITEs, each with its own Call-ID and time.
std::string captureOf(const std::vector<std::pair<std::string, std::int64_t>>& calls) {
  std::vector<packets::Record> records;
  records.reserve(calls.size());
  for (const auto& [callId, time] : calls) {
    records.push_back({packets::ethernet(packets::ip4(packets::udp(invite(callId)))), time});
  }
  return packets::pcap(records);
}

struct Taken {
  std::vector<std::string> callIds;
  std::vector<std::size_t> numbers;

  tool::MessageSink sink() {
    return [this](const tool::CapturedMessage& message) {
      const std::string_view text = message.text;
      const std::size_t at = text.find("Call-ID: ") + 9;
      callIds.emplace_back(text.substr(at, text.find('\r', at) - at));
      numbers.push_back(message.number);
    };
  }
};

TEST(CaptureSet, PutsInputsTogetherByTime) {
  const TemporaryFile one(captureOf({{"a1", 1000}, {"a2", 4000}, {"a3", 5000}}));
  const TemporaryFile two(captureOf({{"b1", 2000}, {"b2", 3000}, {"b3", 6000}}));
  Taken taken;
  tool::CaptureSet set({tool::inputOf(one.name()), tool::inputOf(two.name())}, {}, taken.sink());
  while (set.step()) {
  }
  EXPECT_EQ(taken.callIds, (std::vector<std::string>{"a1", "b1", "b2", "a2", "a3", "b3"}));
  EXPECT_EQ(taken.numbers, (std::vector<std::size_t>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(set.messages(), 6U);
  EXPECT_TRUE(set.problems().empty());
}

TEST(CaptureSet, KeepsTheOrderOfAnInputWhoseTimesGoBack) {
  const TemporaryFile one(captureOf({{"a1", 5000}, {"a2", 1000}, {"a3", 7000}}));
  const TemporaryFile two(captureOf({{"b1", 6000}}));
  Taken taken;
  tool::CaptureSet set({tool::inputOf(one.name()), tool::inputOf(two.name())}, {}, taken.sink());
  while (set.step()) {
  }
  EXPECT_EQ(taken.callIds, (std::vector<std::string>{"a1", "a2", "b1", "a3"}));
}

TEST(CaptureSet, TellsWhichInputIsWrongAndReadsTheOthers) {
  const TemporaryFile one(captureOf({{"a1", 1000}}));
  Taken taken;
  tool::CaptureSet set({tool::inputOf("/nowhere/at/all"), tool::inputOf(one.name())}, {}, taken.sink());
  while (set.step()) {
  }
  EXPECT_EQ(taken.callIds, (std::vector<std::string>{"a1"}));
  ASSERT_EQ(set.problems().size(), 1U);
  EXPECT_EQ(set.problems()[0].first, "/nowhere/at/all");
}

TEST(CaptureSet, DeliversWhatItHoldsWhenItEndsEarly) {
  const TemporaryFile one(captureOf({{"a1", 1000}, {"a2", 9000}}));
  const TemporaryFile two(captureOf({{"b1", 2000}}));
  Taken taken;
  tool::CaptureSet set({tool::inputOf(one.name()), tool::inputOf(two.name())}, {}, taken.sink());
  set.step();  // one message of each is read, and the first of them delivered
  EXPECT_EQ(taken.callIds, (std::vector<std::string>{"a1"}));
  set.finish();
  EXPECT_EQ(taken.callIds, (std::vector<std::string>{"a1", "b1"}));
  EXPECT_FALSE(set.step());
}

}  // namespace
