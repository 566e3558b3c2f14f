#include "captures/capture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "captures/packets.h"

namespace {

using packets::Collected;
using packets::ethernet;
using packets::fragments4;
using packets::gzip;
using packets::invite;
using packets::ip4;
using packets::ip6;
using packets::pcap;
using packets::pcapng;
using packets::Record;
using packets::response;
using packets::tcp;
using packets::udp;
using Texts = std::vector<std::string>;

/// What is read of some bytes, and what is wrong with them.
struct Outcome {
  explicit Outcome(const std::string& bytes, const tool::CaptureOptions& options = {}) {
    tool::Capture capture(tool::sourceOf(bytes), options, collected.output);
    while (capture.step()) {
    }
    if (const auto found = capture.problem()) problem = found->reason;
  }

  Collected collected;
  std::string problem;

  Texts texts() const { return collected.texts(); }
};

std::string udpFrame(const std::string& payload) { return ethernet(ip4(udp(payload))); }
std::string tcpFrame(const std::string& payload, std::uint32_t sequence) {
  return ethernet(ip4(tcp(payload, {.sequence = sequence}), {.protocol = 6}));
}

TEST(Capture, ReadsPcap) {
  const Outcome read(pcap(
      {{udpFrame(invite()), 1700000000123456}, {ethernet(ip6(udp(response())), 0x86DD), 1700000001000000}}));
  ASSERT_EQ(read.collected.messages.size(), 2U);
  const packets::Read& first = read.collected.messages[0];
  EXPECT_EQ(first.number, 1U);
  EXPECT_EQ(first.time, 1700000000123456);
  EXPECT_EQ(first.transport, "UDP");
  EXPECT_EQ(first.source, "192.0.2.1:5060");
  EXPECT_EQ(first.destination, "192.0.2.2:5062");
  EXPECT_EQ(first.text, invite());
  const packets::Read& second = read.collected.messages[1];
  EXPECT_EQ(second.number, 2U);
  EXPECT_EQ(second.source, "[2001:db8::1]:5060");
  EXPECT_EQ(second.destination, "[2001:db8::2]:5062");
  EXPECT_EQ(second.text, response());
  EXPECT_EQ(read.problem, "");
  EXPECT_EQ(read.collected.troubles(), Texts());
}

TEST(Capture, ReadsPcapng) {
  const Outcome read(pcapng({{udpFrame(invite()), 1700000000123456}, {udpFrame(response())}}));
  EXPECT_EQ(read.texts(), (Texts{invite(), response()}));
  EXPECT_EQ(read.collected.messages[0].time, 1700000000123456);
  EXPECT_EQ(read.problem, "");
}

TEST(Capture, ReadsGzipOfAnyInput) {
  const std::string file = pcap({{udpFrame(invite())}, {udpFrame(response())}});
  const Texts both{invite(), response()};
  EXPECT_EQ(Outcome(gzip(file)).texts(), both);
  EXPECT_EQ(Outcome(gzip(pcapng({{udpFrame(invite())}, {udpFrame(response())}}))).texts(), both);
  EXPECT_EQ(Outcome(gzip(invite() + response())).texts(), both);
  // Several members, and what pads the last one.
  const Outcome members(gzip(file.substr(0, 100)) + gzip(file.substr(100)) + std::string(10, '\0'));
  EXPECT_EQ(members.texts(), both);
  EXPECT_EQ(members.problem, "");
}

TEST(Capture, GivesWhatThereIsOfADamagedGzip) {
  const std::string packed = gzip(invite() + response());
  for (std::size_t size = 4; size < packed.size(); ++size) {
    const Outcome read(packed.substr(0, size));
    EXPECT_EQ(read.problem, "is a damaged gzip file: its end is missing") << size;
  }
  std::string broken = packed;
  broken[broken.size() - 5] ^= 1;  // of the check sum
  const Outcome read(broken);
  EXPECT_EQ(read.problem, "is a damaged gzip file: incorrect data check");
  EXPECT_EQ(read.texts(), (Texts{invite(), response()}));
}

TEST(Capture, GivesWhatThereIsOfADamagedCapture) {
  const std::string whole = pcap({{udpFrame(invite())}, {udpFrame(response())}});
  const Outcome cut(whole.substr(0, whole.size() - 1));
  EXPECT_EQ(cut.texts(), Texts{invite()});
  EXPECT_EQ(cut.problem.substr(0, 22), "is a damaged capture: ");
  const Outcome header(whole.substr(0, 20));
  EXPECT_EQ(header.texts(), Texts());
  EXPECT_EQ(header.problem.substr(0, 22), "is a damaged capture: ");
}

TEST(Capture, TellsOfInterfacesWithDifferentLinkTypes) {
  const Outcome read(pcapng({{udpFrame(invite())}, {ip4(udp(response()))}}, {1, 101}));
  EXPECT_EQ(read.problem.substr(0, 85),
            "has interfaces with different link types, of which libpcap reads the first alone: an ");
  const Outcome same(pcapng({{udpFrame(invite())}, {udpFrame(response())}}, {1, 1}));
  EXPECT_EQ(same.texts(), (Texts{invite(), response()}));
}

TEST(Capture, ReadsAllLinkTypes) {
  const std::string packet = ip4(udp(invite()));
  const std::string cooked = std::string(14, '\1') + packets::u16(0x0800) + packet;
  const std::string cooked2 = packets::u16(0x0800) + std::string(18, '\1') + packet;
  EXPECT_EQ(Outcome(pcap({{packet}}, 101)).texts(), Texts{invite()});
  EXPECT_EQ(Outcome(pcap({{packet}}, 228)).texts(), Texts{invite()});
  EXPECT_EQ(Outcome(pcap({{packets::u32le(2) + packet}}, 0)).texts(), Texts{invite()});
  EXPECT_EQ(Outcome(pcap({{packets::u32(2) + packet}}, 108)).texts(), Texts{invite()});
  EXPECT_EQ(Outcome(pcap({{cooked}}, 113)).texts(), Texts{invite()});
  EXPECT_EQ(Outcome(pcap({{cooked2}}, 276)).texts(), Texts{invite()});
  EXPECT_EQ(Outcome(pcap({{packet}}, 105)).problem,
            "has frames of the link type IEEE802_11, which are not read");
}

TEST(Capture, AppliesFilters) {
  const std::string file = pcap({{udpFrame(invite())}, {ethernet(ip4(udp(response(), 1, 2)))}});
  EXPECT_EQ(Outcome(file, {"udp port 5060", {}}).texts(), Texts{invite()});
  EXPECT_EQ(Outcome(file, {"host 192.0.2.9", {}}).texts(), Texts());
  const Outcome wrong(file, {"udp prot 5060", {}});
  EXPECT_EQ(wrong.texts(), Texts());
  EXPECT_EQ(wrong.problem.substr(0, 20), "cannot be filtered: ");
  EXPECT_EQ(Outcome(invite(), {"udp", {}}).problem, "is a text, and packets alone can be filtered");
}

TEST(Capture, TellsInputsOfOtherKinds) {
  EXPECT_EQ(Outcome(std::string("snoop\0\0\0\0\0\0\2", 12)).problem,
            "is a capture file (snoop) of a format that is not read");
  EXPECT_EQ(Outcome(std::string("\x7F"
                                "ELF\0\0",
                                6))
                .problem,
            "is neither a capture (pcap, pcapng) nor a text");
  EXPECT_EQ(Outcome("").problem, "");
  EXPECT_EQ(Outcome("").texts(), Texts());
}

TEST(Capture, PutsFragmentsOfUdpAndTcpTogether) {
  std::vector<Record> records;
  for (const std::string& packet : fragments4(udp(invite()), 64)) records.push_back({ethernet(packet)});
  std::reverse(records.begin(), records.end());
  for (const std::string& packet : packets::fragments6(tcp(response(), {.sequence = 5}), 32, 6)) {
    records.push_back({ethernet(packet, 0x86DD)});
  }
  const Outcome read(pcap(records));
  EXPECT_EQ(read.texts(), (Texts{invite(), response()}));
  EXPECT_EQ(read.collected.messages[1].transport, "TCP");
  records.erase(records.begin());  // the last fragment of the first
  const Outcome cut(pcap(records));
  EXPECT_EQ(cut.texts().size(), 2U);
  EXPECT_EQ(cut.texts()[0], response());
  EXPECT_EQ(cut.texts()[1], invite().substr(0, cut.texts()[1].size()));
  EXPECT_TRUE(cut.collected.messages[1].isCut);
}

TEST(Capture, PassesOverHeadersInsideFragments) {
  const std::string options = packets::u8(17) + packets::u8(1) + std::string(14, '\0');
  std::vector<Record> records;
  for (const std::string& packet : packets::fragments6(options + udp(invite()), 64, 60)) {
    records.push_back({ethernet(packet, 0x86DD)});
  }
  EXPECT_EQ(Outcome(pcap(records)).texts(), Texts{invite()});
  // The options reach beyond what there is.
  const std::string broken = packets::u8(17) + packets::u8(9) + std::string(14, '\0');
  std::vector<Record> bad;
  for (const std::string& packet : packets::fragments6(broken, 8, 60))
    bad.push_back({ethernet(packet, 0x86DD)});
  EXPECT_EQ(Outcome(pcap(bad)).collected.troubles(), Texts{"1 packets whose headers cannot be read"});
}

TEST(Capture, TellsWhatOfAMessageWasNotCaptured) {
  const std::string frame = udpFrame(invite());
  const Outcome read(pcap({{frame.substr(0, 120), 0, frame.size()}}));
  ASSERT_EQ(read.texts(), Texts{invite().substr(0, 120 - 42)});  // 14 + 20 + 8 bytes of headers
  EXPECT_TRUE(read.collected.messages[0].isCut);
  EXPECT_EQ(read.collected.troubles(), Texts{"1 messages whose end was not captured"});
}

TEST(Capture, TakesTheLengthOfADatagramFromItsHeader) {
  std::string longer = udp(response());
  longer[5] = static_cast<char>(longer.size() + 1);
  const Outcome cut(pcap({{ethernet(ip4(longer))}}));
  ASSERT_EQ(cut.texts(), Texts{response()});
  EXPECT_TRUE(cut.collected.messages[0].isCut);
  // What is missing behind the datagram is none of it.
  const std::string frame = ethernet(ip4(udp(response()) + "more"));
  const Outcome whole(pcap({{frame.substr(0, frame.size() - 3), 0, frame.size()}}));
  ASSERT_EQ(whole.texts(), Texts{response()});
  EXPECT_FALSE(whole.collected.messages[0].isCut);
}

TEST(Capture, ReadsTcp) {
  const std::string all = invite("one") + response("two");
  const Outcome read(
      pcap({{tcpFrame(all.substr(0, 100), 1)},
            {tcpFrame(all.substr(150), 151)},
            {tcpFrame(all.substr(90, 60), 91)},
            {ethernet(ip4(tcp("", {.sequence = 9, .flags = 0x10, .options = std::string(12, '\1')}),
                          {.protocol = 6}))}}));
  EXPECT_EQ(read.texts(), (Texts{invite("one"), response("two")}));
  EXPECT_EQ(read.collected.messages[0].source, "192.0.2.1:5060");
  EXPECT_EQ(read.collected.messages[0].destination, "192.0.2.2:5062");
}

TEST(Capture, ReadsHepPackets) {
  const Outcome read(pcap({{udpFrame(packets::hepOf(invite()))}}));
  EXPECT_EQ(read.texts(), Texts{invite()});
  EXPECT_EQ(read.collected.messages[0].source, "198.51.100.1:5070");
}

TEST(Capture, TakesOnlySipOutOfUdp) {
  const Outcome read(pcap({{udpFrame({"\x80\x00rtp", 5})},
                           {udpFrame("\r\n\r\n")},
                           {udpFrame("")},
                           {udpFrame("\r\n" + invite())},
                           {udpFrame("INVITE sip:b HTTP/2.0\r\n")}}));
  EXPECT_EQ(read.texts(), Texts{invite()});
  EXPECT_EQ(read.collected.troubles(), Texts());
}

TEST(Capture, CountsPacketsWhoseHeadersCannotBeRead) {
  const std::string noUdp = ethernet(ip4("short"));
  const std::string noTcp = ethernet(ip4(tcp("", {}).substr(0, 19), {.protocol = 6}));
  std::string offset = tcp("payload", {});
  offset[12] = '\x40';
  std::string size = udp("payload");
  size[5] = 7;
  const Outcome read(pcap({{"short"},
                           {ethernet("x")},
                           {noUdp},
                           {noTcp},
                           {ethernet(ip4(offset, {.protocol = 6}))},
                           {ethernet(ip4(size))},
                           {ethernet(ip4("other", {.protocol = 1}))}}));
  EXPECT_EQ(read.collected.troubles(), Texts{"6 packets whose headers cannot be read"});
}

TEST(Capture, NumbersTheMessagesOfAllItsInputs) {
  Collected collected;
  for (const std::string& bytes : {pcap({{udpFrame(invite())}}), response() + response()}) {
    tool::Capture capture(tool::sourceOf(bytes), {}, collected.output);
    while (capture.step()) {
    }
  }
  ASSERT_EQ(collected.messages.size(), 3U);
  EXPECT_EQ(collected.messages[2].number, 3U);
}

TEST(Capture, TellsFilesThatCannotBeRead) {
  Collected collected;
  const auto problem = tool::readCapture(tool::inputOf("/nonexistent/x.pcap"), {}, collected.output);
  ASSERT_TRUE(problem);
  EXPECT_EQ(problem->reason, "cannot be read: No such file or directory");
  EXPECT_EQ(tool::readCapture(tool::inputOf("/"), {}, collected.output)->reason,
            "cannot be read: Is a directory");
}

TEST(Capture, TakesNoTimeFromADamagedRecord) {
  std::string file = pcap({{udpFrame(invite())}});
  file.replace(28, 4, packets::u32le(1000000));  // microseconds of the record
  EXPECT_EQ(Outcome(file).collected.messages[0].time, std::nullopt);
}

}  // namespace
