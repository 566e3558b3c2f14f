#include "captures/hep.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captures/packets.h"

namespace {

using packets::chunk;
using packets::Collected;
using packets::hep;
using packets::hepOf;
using packets::invite;
using packets::u16;
using packets::u8;
using Texts = std::vector<std::string>;

TEST(Hep, GivesTheMessageWithWhatIsToldOfIt) {
  Collected collected;
  tool::takeHep(hepOf(invite()), 5, collected.output);
  ASSERT_EQ(collected.messages.size(), 1U);
  const packets::Read& read = collected.messages[0];
  EXPECT_EQ(read.text, invite());
  EXPECT_EQ(read.transport, "TCP");
  EXPECT_EQ(read.source, "198.51.100.1:5070");
  EXPECT_EQ(read.destination, "198.51.100.2:5080");
  EXPECT_EQ(read.time, 1600000000250000);
  EXPECT_FALSE(read.isCut);
  EXPECT_EQ(collected.troubles(), Texts());
}

TEST(Hep, ReadsIp6AndTakesTheTimeOfItsPacket) {
  Collected collected;
  const std::string one = std::string(15, '\0') + '\1';
  tool::takeHep(hep(chunk(2, u8(17)) + chunk(5, one) + chunk(6, one) + chunk(15, invite())), 5,
                collected.output);
  ASSERT_EQ(collected.messages.size(), 1U);
  EXPECT_EQ(collected.messages[0].transport, "UDP");
  EXPECT_EQ(collected.messages[0].source, "::1");
  EXPECT_EQ(collected.messages[0].time, 5);
}

TEST(Hep, GuessesNothingThatIsNotTold) {
  Collected collected;
  tool::takeHep(hep(chunk(3, "abc") + chunk(9, "abc") + chunk(15, invite()) + chunk(4, "abcd", 7)),
                std::nullopt, collected.output);
  ASSERT_EQ(collected.messages.size(), 1U);
  EXPECT_EQ(collected.messages[0].transport, "unknown");
  EXPECT_EQ(collected.messages[0].source, "unknown");
  EXPECT_EQ(collected.messages[0].destination, "unknown");
  EXPECT_EQ(collected.messages[0].time, std::nullopt);
}

TEST(Hep, PassesOverOtherProtocols) {
  Collected collected;
  tool::takeHep(hepOf("{\"rtcp\": 1}"), 5, collected.output);
  tool::takeHep(hep(""), 5, collected.output);
  EXPECT_EQ(collected.texts(), Texts());
  EXPECT_EQ(collected.troubles(), Texts());
}

TEST(Hep, TellsWhatItCannotRead) {
  for (const std::string& packet : {std::string("HEP3"), "HEP3" + u16(5), hep(chunk(16, "packed")),
                                    hep(u16(0) + u16(1) + u16(5)), hep("abc")}) {
    Collected collected;
    tool::takeHep(packet, 5, collected.output);
    EXPECT_EQ(collected.texts(), Texts());
    EXPECT_EQ(collected.troubles(), Texts{"1 HEP packets that cannot be read"})
        << testing::PrintToString(packet);
  }
}

TEST(Hep, GivesWhatIsThereOfACutPacket) {
  const std::string whole = hepOf(invite());
  const std::size_t payload = whole.size() - invite().size();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    Collected collected;
    tool::takeHep(whole.substr(0, size), 5, collected.output);
    const std::string there = size < payload ? "" : invite().substr(0, size - payload);
    if (there.find('\n') == std::string::npos) {
      EXPECT_EQ(collected.texts(), Texts()) << size;
    } else {
      ASSERT_EQ(collected.texts(), Texts{there}) << size;
      EXPECT_TRUE(collected.messages[0].isCut) << size;
    }
  }
}

TEST(Hep, TellsItsSize) {
  EXPECT_EQ(tool::hepPacketSize("HEP3" + u16(6)), 6U);
  EXPECT_EQ(tool::hepPacketSize("HEP3" + u16(65535)), 65535U);
  EXPECT_EQ(tool::hepPacketSize("HEP3" + u16(5)), std::nullopt);
  EXPECT_EQ(tool::hepPacketSize("HEP3\x01"), std::nullopt);
  EXPECT_EQ(tool::hepPacketSize("HEP2" + u16(6)), std::nullopt);
}

}  // namespace
