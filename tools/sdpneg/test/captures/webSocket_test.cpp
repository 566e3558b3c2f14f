#include "captures/webSocket.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captures/capturedMessage.h"
#include "captures/packets.h"

namespace {

using packets::frame;
using tool::WebSocketReader;
using Outcome = WebSocketReader::Outcome;

constexpr unsigned int kText = 0x81, kFirst = 0x01, kMiddle = 0x00, kLast = 0x80, kPing = 0x89, kClose = 0x88;

TEST(WebSocket, UnmasksPayloadsOfAllLengths) {
  for (const std::size_t size : {0U, 1U, 3U, 125U, 126U, 127U, 65535U, 65536U}) {
    std::string payload(size, 'x');
    if (size > 2) payload[2] = 'y';
    for (const std::string_view mask : {std::string_view(), std::string_view("\x00\xFF\x20\x7F", 4)}) {
      WebSocketReader reader;
      const std::string bytes = frame(payload, kText, mask);
      const auto result = reader.take(bytes + "behind");
      EXPECT_EQ(result.outcome, Outcome::taken) << size;
      EXPECT_EQ(result.size, bytes.size()) << size;
      EXPECT_EQ(result.message, payload) << size;
    }
  }
}

TEST(WebSocket, JoinsTheFramesOfAMessage) {
  WebSocketReader reader;
  EXPECT_EQ(reader.take(frame("one ", kFirst, "abcd")).message, "");
  EXPECT_TRUE(reader.isOpen());
  EXPECT_EQ(reader.take(frame("ping", kPing)).message, "");
  EXPECT_EQ(reader.take(frame("two ", kMiddle, "efgh")).message, "");
  EXPECT_EQ(reader.take(frame("three", kLast)).message, "one two three");
  EXPECT_FALSE(reader.isOpen());
  EXPECT_EQ(reader.take(frame("four", kText)).message, "four");
}

TEST(WebSocket, WaitsForWhatIsMissing) {
  for (const std::string& bytes :
       {frame("hello", kText, "abcd"), frame(std::string(200, 'x'), kText, "abcd")}) {
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      WebSocketReader reader;
      const auto result = reader.take(std::string_view(bytes).substr(0, size));
      EXPECT_EQ(result.outcome, Outcome::needsMore) << size;
      EXPECT_GT(result.size, size);
      EXPECT_LE(result.size, bytes.size());
    }
  }
}

TEST(WebSocket, RefusesWhatIsNoFrame) {
  const std::string large = packets::u8(kText) + packets::u8(127) + packets::u32(0) +
                            packets::u32(static_cast<std::uint32_t>(tool::kMaxMessageSize + 1));
  const std::string huge = packets::u8(kText) + packets::u8(127) + std::string(8, '\xFF');
  for (const std::string& bytes :
       {frame("x", 0x83), frame("x", 0x8B), frame("x", 0x91), frame("x", 0xA1), frame("x", kMiddle),
        frame("x", 0x09), frame(std::string(126, 'x'), kClose), large, huge}) {
    WebSocketReader reader;
    EXPECT_EQ(reader.take(bytes).outcome, Outcome::unreadable) << testing::PrintToString(bytes.substr(0, 10));
  }
  WebSocketReader reader;
  reader.take(frame("x", kFirst));
  EXPECT_EQ(reader.take(frame("x", kText)).outcome, Outcome::unreadable);
}

TEST(WebSocket, KeepsNoMoreThanAMessageMayHave) {
  WebSocketReader reader;
  const std::string half(tool::kMaxMessageSize / 2, 'x');
  EXPECT_EQ(reader.take(frame(half, kFirst)).outcome, Outcome::taken);
  EXPECT_EQ(reader.take(frame(half, kMiddle)).outcome, Outcome::taken);
  EXPECT_EQ(reader.take(frame("x", kLast)).outcome, Outcome::unreadable);
}

TEST(WebSocket, PassesOverCompressedMessages) {
  WebSocketReader reader;
  const std::string bytes = frame("packed", 0xC1);
  EXPECT_EQ(reader.take(bytes).outcome, Outcome::compressed);
  EXPECT_EQ(reader.take(bytes).size, bytes.size());
  EXPECT_EQ(reader.take(frame("packed", 0x41)).outcome, Outcome::compressed);
  EXPECT_EQ(reader.take(frame("more", kLast)).outcome, Outcome::compressed);
  EXPECT_EQ(reader.take(frame("plain", kText)).message, "plain");
}

TEST(WebSocket, IsRecognisedBySipInIt) {
  EXPECT_TRUE(WebSocketReader::holdsSip(frame(packets::invite(), kText, "abcd")));
  EXPECT_TRUE(WebSocketReader::holdsSip(frame(packets::response(), 0x82)));
  EXPECT_TRUE(WebSocketReader::holdsSip(frame(packets::invite(), kFirst, "abcd").substr(0, 30)));
  EXPECT_FALSE(WebSocketReader::holdsSip(frame("not a SIP message", kText, "abcd")));
  EXPECT_FALSE(WebSocketReader::holdsSip(frame(packets::invite(), kPing)));
  EXPECT_FALSE(WebSocketReader::holdsSip(frame(packets::invite(), kLast)));
  EXPECT_FALSE(WebSocketReader::holdsSip(packets::invite()));
  EXPECT_FALSE(WebSocketReader::holdsSip(""));
  EXPECT_FALSE(WebSocketReader::holdsSip("\x81"));
}

}  // namespace
