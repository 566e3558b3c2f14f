#include "captures/streamContent.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captures/packets.h"

namespace {

using packets::Collected;
using packets::frame;
using packets::hepOf;
using packets::invite;
using packets::response;
using Texts = std::vector<std::string>;

/// One way of a connection.
class Content {
 public:
  explicit Content(const std::vector<std::string>& pieces = {}) {
    for (const std::string& piece : pieces) content.take(piece, ++time);
  }

  Collected collected;
  std::int64_t time = 0;
  tool::StreamContent content{{}, collected.output};

  Texts texts() const { return collected.texts(); }
};

/// A text in pieces of so many bytes.
std::vector<std::string> cut(const std::string& text, std::size_t size) {
  std::vector<std::string> pieces;
  for (std::size_t at = 0; at < text.size(); at += size) pieces.push_back(text.substr(at, size));
  return pieces;
}

TEST(StreamContent, EndsMessagesAtTheirLengths) {
  const std::string all = invite("one") + response("two") + "\r\n\r\n" + invite("three");
  for (std::size_t size = 1; size <= all.size(); ++size) {
    Content content(cut(all, size));
    ASSERT_EQ(content.texts(), (Texts{invite("one"), response("two"), invite("three")})) << size;
    EXPECT_EQ(content.collected.troubles(), Texts()) << size;
    EXPECT_EQ(content.collected.messages[0].transport, "TCP");
  }
}

TEST(StreamContent, GivesTheTimeOfTheLastByte) {
  Content content(
      {invite().substr(0, 50), invite().substr(50) + response().substr(0, 1), response().substr(1)});
  ASSERT_EQ(content.collected.messages.size(), 2U);
  EXPECT_EQ(content.collected.messages[0].time, 2);
  EXPECT_EQ(content.collected.messages[1].time, 3);
}

TEST(StreamContent, TakesKeepAlivesForNothing) {
  Content content({"\r\n\r\n", "\r\n", response(), "\r\n\r\n"});
  EXPECT_EQ(content.texts(), Texts{response()});
  EXPECT_EQ(content.collected.troubles(), Texts());
}

TEST(StreamContent, EndsBodiesWithoutLengthAtTheNextMessage) {
  const std::string open = "MESSAGE sip:b SIP/2.0\r\nContent-Type: text/plain\r\n\r\nhello\r\n";
  EXPECT_EQ(Content({open + response()}).texts(), (Texts{open, response()}));
  EXPECT_EQ(Content({open, response()}).texts(), (Texts{open, response()}));
}

TEST(StreamContent, FindsItsWayBehindWhatIsNoMessage) {
  Content content(
      {response("one") + "nonsense\r\nmore\r\n" + response("two"), "\x80\x81\r\n", response("three")});
  EXPECT_EQ(content.texts(), (Texts{response("one"), response("two"), response("three")}));
  EXPECT_EQ(content.collected.troubles(),
            Texts{"2 places in TCP streams where something else follows a message"});
}

TEST(StreamContent, BeginsInsideAMessage) {
  Content content({"=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\n" + response()});
  EXPECT_EQ(content.texts(), Texts{response()});
  EXPECT_EQ(content.collected.troubles(), Texts());
}

TEST(StreamContent, GivesWhatIsThereOfAMessageThatBreaksOff) {
  Content content({invite().substr(0, 100)});
  content.content.breakOff(9);
  ASSERT_EQ(content.collected.messages.size(), 1U);
  EXPECT_EQ(content.collected.messages[0].text, invite().substr(0, 100));
  EXPECT_TRUE(content.collected.messages[0].isCut);
  EXPECT_EQ(content.collected.troubles(), Texts{"1 messages whose end was not captured"});
  content.content.take(response(), 10);
  EXPECT_EQ(content.texts().back(), response());
}

TEST(StreamContent, PassesOverMessagesThatAreTooLong) {
  const std::string size = std::to_string(tool::kMaxMessageSize + 1);
  const std::string head = "MESSAGE sip:b SIP/2.0\r\nContent-Length: " + size + "\r\n\r\n";
  Content content({head + "body\r\n" + response()});
  EXPECT_EQ(content.texts(), Texts{response()});
  EXPECT_EQ(content.collected.troubles(), Texts{"1 messages that are too long"});
  Content huge({"MESSAGE sip:b SIP/2.0\r\nl: 99999999999999999999\r\n\r\n" + response()});
  EXPECT_EQ(huge.texts(), Texts{response()});
}

TEST(StreamContent, WaitsForNoHeaderWithoutEnd) {
  Content content({"OPTIONS sip:b SIP/2.0\r\n"});
  const std::string line = "X: " + std::string(997, 'x') + "\r\n";
  for (int i = 0; i < 300; ++i) {
    content.content.take(line, 1);
    ASSERT_LT(content.content.size(), 400000U);
  }
  content.content.take(response(), 2);
  EXPECT_EQ(content.texts(), Texts{response()});
  EXPECT_EQ(content.collected.troubles(), Texts{"1 messages that are too long"});
}

TEST(StreamContent, KeepsNothingOfALargeMessage) {
  const std::string body(100000, 'x');
  const std::string large = "MESSAGE sip:b SIP/2.0\r\nl: 100000\r\n\r\n" + body;
  Content content(cut(large, 1400));
  EXPECT_EQ(content.texts(), Texts{large});
  EXPECT_LT(content.content.size(), 8192U);
}

TEST(StreamContent, ReadsWebSocketBehindItsUpgrade) {
  const std::string request =
      "GET /ws HTTP/1.1\r\nHost: example.com\r\nUpgrade: WebSocket\r\nConnection: Upgrade\r\n\r\n";
  const std::string all =
      request + frame(invite(), 0x81, "abcd") + frame("", 0x89, "abcd") + frame(response(), 0x82);
  for (std::size_t size = 1; size <= all.size(); ++size) {
    Content content(cut(all, size));
    ASSERT_EQ(content.texts(), (Texts{invite(), response()})) << size;
    EXPECT_EQ(content.collected.messages[0].transport, "WS");
  }
  const std::string agreed = "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\n\r\n";
  EXPECT_EQ(Content({agreed, frame(response())}).texts(), Texts{response()});
}

TEST(StreamContent, ReadsNoWebSocketBehindOtherHttp) {
  Content content({"GET / HTTP/1.1\r\nHost: example.com\r\n\r\n", response()});
  EXPECT_EQ(content.texts(), Texts{response()});
  Content endless({"GET / HTTP/1.1\r\n" + std::string(20000, 'x'), "\r\n" + response()});
  EXPECT_EQ(endless.texts(), Texts{response()});
}

TEST(StreamContent, RecognisesWebSocketMidway) {
  Content content({frame("hello"), frame(invite(), 0x81, "\x01\x02\x03\x04"), frame(response())});
  EXPECT_EQ(content.texts(), (Texts{invite(), response()}));
}

TEST(StreamContent, ReadsHepPackets) {
  const std::string all = hepOf(invite("one")) + hepOf(response("two"));
  for (std::size_t size = 4; size <= all.size(); ++size) {
    Content content(cut(all, size));
    EXPECT_EQ(content.texts(), (Texts{invite("one"), response("two")})) << size;
  }
  Content content({hepOf(invite("one")) + "HEP3" + packets::u16(5) + "\r\n" + response("two")});
  EXPECT_EQ(content.texts(), (Texts{invite("one"), response("two")}));
}

TEST(StreamContent, TellsStreamsWithTls) {
  Content content({std::string("\x16\x03\x01\x02\x00", 5), response(), response()});
  EXPECT_EQ(content.texts(), Texts());
  content.content.breakOff(1);
  content.content.take(response(), 2);
  EXPECT_EQ(content.texts(), Texts());
  EXPECT_EQ(content.collected.troubles(), Texts{"1 TCP streams with TLS"});
}

}  // namespace
