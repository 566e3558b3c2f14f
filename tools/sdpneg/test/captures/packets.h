#ifndef SDPNEG_TEST_PACKETS_H
#define SDPNEG_TEST_PACKETS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "captures/capturedMessage.h"

// Composes what captures hold, from messages up to files, and collects what is read of them.

namespace packets {

std::string u8(unsigned int value);
std::string u16(unsigned int value);
std::string u32(std::uint32_t value);
std::string u32le(std::uint32_t value);

/// A message with a body of SDP and the lengths that fit.
std::string invite(std::string_view callId = "a@192.0.2.1");
std::string response(std::string_view callId = "a@192.0.2.1", std::string_view status = "180 Ringing");

inline constexpr std::string_view kClient = "192.0.2.1";
inline constexpr std::string_view kServer = "192.0.2.2";
inline constexpr std::string_view kClient6 = "2001:db8::1";
inline constexpr std::string_view kServer6 = "2001:db8::2";

struct Addresses {
  std::string_view source = kClient;
  std::string_view destination = kServer;
};
inline constexpr Addresses kBack = {kServer, kClient};
inline constexpr Addresses k6 = {kClient6, kServer6};

std::string udp(std::string_view payload, unsigned int source = 5060, unsigned int destination = 5062);

struct Tcp {
  std::uint32_t sequence = 0;
  unsigned int flags = 0x10;
  std::string options = {};
};
std::string tcp(std::string_view payload, const Tcp& fields);

struct Ip4 {
  Addresses addresses = {};
  unsigned int protocol = 17;
  unsigned int id = 1;
  unsigned int flagsAndOffset = 0;
  std::string options = {};
  std::optional<unsigned int> totalSize = std::nullopt;
};
std::string ip4(std::string_view payload, const Ip4& fields = {});
std::string ip6(std::string_view payload, unsigned int nextHeader = 17, Addresses addresses = k6);
/// A packet as fragments whose payloads have `size` bytes at most, which is a multiple of 8.
std::vector<std::string> fragments4(std::string_view payload, std::size_t size, const Ip4& fields = {});
std::vector<std::string> fragments6(std::string_view payload, std::size_t size, unsigned int nextHeader = 17);

std::string ethernet(std::string_view payload, unsigned int type = 0x0800, std::string_view tags = {});

/// A WebSocket frame; masked where the mask has four bytes.
std::string frame(std::string_view payload, unsigned int first = 0x81, std::string_view mask = {});

std::string chunk(unsigned int type, std::string_view content, unsigned int vendor = 0);
/// A HEP3 packet of these chunks.
std::string hep(std::string_view chunks);
/// With addresses, ports, a time and a message.
std::string hepOf(std::string_view message);

struct Record {
  std::string bytes;
  std::int64_t time = 1700000000000000;
  std::size_t wireSize = 0;  ///< 0 for the size of the bytes
};
/// A file of little-endian pcap with microseconds.
std::string pcap(const std::vector<Record>& records, std::uint32_t linkType = 1);
/// A file of pcapng with an interface for each link type; record i is of interface i modulo their number.
std::string pcapng(const std::vector<Record>& records, const std::vector<unsigned int>& linkTypes = {1});
std::string gzip(std::string_view bytes);

/// A message that was read, with a copy of its text.
struct Read {
  std::size_t number;
  tool::CaptureTime time;
  std::string transport;
  std::string source;
  std::string destination;
  std::string text;
  bool isCut;
};

/// Collects what readers deliver.
class Collected {
 public:
  Collected();
  Collected(const Collected&) = delete;
  Collected& operator=(const Collected&) = delete;

  tool::CaptureOutput output;
  std::vector<Read> messages;

  std::vector<std::string> texts() const;
  /// The troubles that there were, "2 compressed WebSocket frames".
  std::vector<std::string> troubles() const;
};

}  // namespace packets

#endif
