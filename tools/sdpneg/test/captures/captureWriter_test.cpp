#include "captures/captureWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "captures/byteSource.h"
#include "captures/capture.h"
#include "captures/packets.h"

namespace {

using tool::Transport;

constexpr std::int64_t kTime = 1700000000123456;

/// A message to write.
struct Message {
  std::string text;
  std::string source = "192.0.2.1:5060";
  std::string destination = "198.51.100.2:5062";
  Transport transport = Transport::udp;
  bool isCut = false;
  tool::CaptureTime time = kTime;
};

std::string written(const std::vector<Message>& messages) {
  std::string file;
  tool::CaptureWriter writer([&](std::string_view bytes) { file += bytes; });
  EXPECT_EQ(file.size(), 24U);  // its header is there at once
  for (const Message& message : messages) {
    const tool::Flow flow = {tool::parseEndpoint(message.source).value_or(tool::Endpoint{}),
                             tool::parseEndpoint(message.destination).value_or(tool::Endpoint{})};
    writer.write({0, message.time, message.transport, flow, message.text, message.isCut});
  }
  return file;  // and all the rest without an end that somebody would have to call
}

/// What is read of it again, as "time transport source destination text".
std::vector<std::string> readAgain(const std::string& file) {
  packets::Collected collected;
  tool::Capture capture(tool::sourceOf(file), {}, collected.output);
  while (capture.step()) {
  }
  EXPECT_FALSE(capture.problem());
  EXPECT_EQ(collected.troubles(), std::vector<std::string>());
  std::vector<std::string> messages;
  for (const packets::Read& one : collected.messages) {
    messages.push_back(std::to_string(one.time.value_or(-1)) + " " + one.transport + " " + one.source + " " +
                       one.destination + " " + one.text);
  }
  return messages;
}

std::string withBody(std::size_t size) {
  return "MESSAGE sip:b@192.0.2.1 SIP/2.0\r\nContent-Length: " + std::to_string(size) + "\r\n\r\n" +
         std::string(size, 'b');
}

const std::string kAt = std::to_string(kTime);

TEST(CaptureWriter, WritesWhatIsReadAgain) {
  const std::string ends = " 192.0.2.1:5060 198.51.100.2:5062 ";
  const std::string back = " 198.51.100.2:5062 192.0.2.1:5060 ";
  const std::string noLength = "OPTIONS sip:b@192.0.2.1 SIP/2.0\r\nVia: x\r\n\r\nand more";
  const Message tcp = {packets::invite(), "192.0.2.1:5060", "198.51.100.2:5062", Transport::tcp};
  Message answer = {packets::response(), "198.51.100.2:5062", "192.0.2.1:5060", Transport::tcp};
  answer.time = kTime + 1;
  Message webSocket = tcp;
  webSocket.transport = Transport::webSocket;
  webSocket.time = std::nullopt;  // that of the one before
  EXPECT_EQ(readAgain(written({{packets::invite()}, {noLength}, tcp, answer, webSocket})),
            (std::vector<std::string>{
                kAt + " UDP" + ends + packets::invite(),
                kAt + " UDP" + ends + noLength,
                kAt + " TCP" + ends + packets::invite(),
                std::to_string(kTime + 1) + " TCP" + back + packets::response(),
                std::to_string(kTime + 1) + " TCP" + ends + packets::invite(),
            }));
}

TEST(CaptureWriter, PutsAddressesWhereNoneAreKnown) {
  struct Case {
    std::string source;
    std::string destination;
    std::string read;
  };
  for (const Case& one : {
           Case{"", "", "0.0.0.0:5060 0.0.0.0:5060"},
           Case{"192.0.2.1", "", "192.0.2.1:5060 0.0.0.0:5060"},
           Case{"", "[2001:db8::1]:7000", "[::]:5060 [2001:db8::1]:7000"},
           Case{"192.0.2.1:1", "[2001:db8::1]:2", "[::ffff:192.0.2.1]:1 [2001:db8::1]:2"},
       }) {
    Message message = {packets::invite(), one.source, one.destination, Transport::unknown};
    message.time = 0;
    EXPECT_EQ(readAgain(written({message})),
              std::vector<std::string>{"0 UDP " + one.read + " " + packets::invite()});
  }
}

TEST(CaptureWriter, WritesWhatFitsIntoNoDatagramAsAStream) {
  const std::string ends = " 192.0.2.1:5060 198.51.100.2:5062 ";
  const std::size_t head = withBody(10000).size() - 10000;  // a length of five digits
  for (const std::size_t size : {std::size_t{65507}, std::size_t{65508}, std::size_t{90000}}) {
    const std::string text = withBody(size - head);
    ASSERT_EQ(text.size(), size);
    EXPECT_EQ(readAgain(written({{text}})),
              std::vector<std::string>{kAt + (size > 65507 ? " TCP" : " UDP") + ends + text});
  }
  const std::string large = withBody(1000000);
  EXPECT_EQ(readAgain(written({{large}})), std::vector<std::string>{kAt + " TCP" + ends + large});
}

TEST(CaptureWriter, KeepsStreamsInStepBehindMessagesThatDoNotEndWhereTheySay) {
  Message cut = {withBody(50).substr(0, 70), "192.0.2.1:5060", "198.51.100.2:5062", Transport::tcp, true};
  const Message next = {packets::invite(), "192.0.2.1:5060", "198.51.100.2:5062", Transport::tcp};
  packets::Collected collected;
  const std::string file = written({next, cut, next, next});
  tool::Capture capture(tool::sourceOf(file), {}, collected.output);
  while (capture.step()) {
  }
  std::vector<std::string> texts = collected.texts();
  std::ranges::sort(texts);  // the cut one is given up when it must be
  EXPECT_EQ(texts,
            (std::vector<std::string>{packets::invite(), packets::invite(), packets::invite(), cut.text}));
}

/// The check sum of some bytes with theirs among them (RFC 1071): 0.
unsigned int sumOf(std::string_view bytes) {
  unsigned int sum = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    sum += i % 2 == 0 ? static_cast<unsigned int>(byte) * 256U : byte;
    sum = (sum & 0xFFFFU) + (sum >> 16U);
  }
  return 0xFFFFU - sum;
}

TEST(CaptureWriter, ComputesLengthsAndCheckSums) {
  const std::string text = "ACK sip:b SIP/2.0\r\n\r\n";
  const std::string packet = written({{text}}).substr(24 + 16);
  ASSERT_EQ(packet.size(), 20U + 8U + text.size());
  EXPECT_EQ(packet.substr(2, 2), packets::u16(static_cast<unsigned int>(packet.size())));
  EXPECT_EQ(sumOf(packet.substr(0, 20)), 0U);
  EXPECT_EQ(packet.substr(24, 2), packets::u16(static_cast<unsigned int>(8 + text.size())));
  const std::string pseudo = packet.substr(12, 8) + packets::u16(17) + packet.substr(24, 2);
  EXPECT_EQ(sumOf(pseudo + packet.substr(20)), 0U);
  const Message tcp6 = {text, "[2001:db8::1]:5060", "[2001:db8::2]:5060", Transport::tcp};
  const std::string stream = written({tcp6}).substr(24 + 16);
  ASSERT_EQ(stream.size(), 40U + 20U + text.size());
  EXPECT_EQ(stream.substr(4, 2), packets::u16(static_cast<unsigned int>(20 + text.size())));
  EXPECT_EQ(sumOf(stream.substr(8, 32) + packets::u16(6) + stream.substr(4, 2) + stream.substr(40)), 0U);
}

}  // namespace
