#include "captures/packets.h"

#include <zlib.h>

#include <algorithm>

#include "captures/endpoint.h"

namespace packets {
namespace {

std::string bytesOf(std::string_view address) {
  const tool::IpAddress parsed = tool::parseAddress(address).value();
  const std::size_t size = parsed.family == tool::AddressFamily::ip4 ? 4 : 16;
  return {reinterpret_cast<const char*>(parsed.bytes.data()), size};
}

std::string u16le(unsigned int value) { return u8(value & 0xFFU) + u8(value >> 8U); }

std::string padded(std::string text) {
  text.resize((text.size() + 3) / 4 * 4, '\0');
  return text;
}

std::string block(std::uint32_t type, const std::string& content) {
  const auto size = static_cast<std::uint32_t>(content.size() + 12);
  return u32le(type) + u32le(size) + content + u32le(size);
}

}  // namespace

std::string u8(unsigned int value) { return {static_cast<char>(value & 0xFFU)}; }
std::string u16(unsigned int value) { return u8(value >> 8U) + u8(value); }
std::string u32(std::uint32_t value) { return u16(value >> 16U) + u16(value & 0xFFFFU); }
std::string u32le(std::uint32_t value) { return u16le(value & 0xFFFFU) + u16le(value >> 16U); }

std::string invite(std::string_view callId) {
  const std::string body =
      "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n";
  return "INVITE sip:bob@example.com SIP/2.0\r\nCall-ID: " + std::string(callId) +
         "\r\nContent-Type: application/sdp\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         body;
}

std::string response(std::string_view callId, std::string_view status) {
  return "SIP/2.0 " + std::string(status) + "\r\nCall-ID: " + std::string(callId) +
         "\r\nContent-Length: 0\r\n\r\n";
}

std::string udp(std::string_view payload, unsigned int source, unsigned int destination) {
  const auto size = static_cast<unsigned int>(payload.size() + 8);
  return u16(source) + u16(destination) + u16(size) + u16(0) + std::string(payload);
}

std::string tcp(std::string_view payload, const Tcp& fields) {
  const auto words = static_cast<unsigned int>(5 + fields.options.size() / 4);
  return u16(5060) + u16(5062) + u32(fields.sequence) + u32(0) + u8(words << 4U) + u8(fields.flags) +
         u16(65535) + u16(0) + u16(0) + fields.options + std::string(payload);
}

std::string ip4(std::string_view payload, const Ip4& fields) {
  const std::size_t headerSize = 20 + fields.options.size();
  const auto words = static_cast<unsigned int>(headerSize / 4);
  const unsigned int total =
      fields.totalSize.value_or(static_cast<unsigned int>(headerSize + payload.size()));
  return u8(0x40 | words) + u8(0) + u16(total) + u16(fields.id) + u16(fields.flagsAndOffset) + u8(64) +
         u8(fields.protocol) + u16(0) + bytesOf(fields.addresses.source) +
         bytesOf(fields.addresses.destination) + fields.options + std::string(payload);
}

std::string ip6(std::string_view payload, unsigned int nextHeader, Addresses addresses) {
  return u32(0x60000000) + u16(static_cast<unsigned int>(payload.size())) + u8(nextHeader) + u8(64) +
         bytesOf(addresses.source) + bytesOf(addresses.destination) + std::string(payload);
}

std::vector<std::string> fragments4(std::string_view payload, std::size_t size, const Ip4& fields) {
  std::vector<std::string> fragments;
  for (std::size_t at = 0; at < payload.size(); at += size) {
    Ip4 own = fields;
    const unsigned int more = at + size < payload.size() ? 0x2000 : 0;
    own.flagsAndOffset = more | static_cast<unsigned int>(at / 8);
    fragments.push_back(ip4(payload.substr(at, size), own));
  }
  return fragments;
}

std::vector<std::string> fragments6(std::string_view payload, std::size_t size, unsigned int nextHeader) {
  std::vector<std::string> fragments;
  for (std::size_t at = 0; at < payload.size(); at += size) {
    const unsigned int more = at + size < payload.size() ? 1 : 0;
    const std::string header = u8(nextHeader) + u8(0) + u16(static_cast<unsigned int>(at) | more) + u32(7);
    fragments.push_back(ip6(header + std::string(payload.substr(at, size)), 44));
  }
  return fragments;
}

std::string ethernet(std::string_view payload, unsigned int type, std::string_view tags) {
  return std::string(12, '\x02') + std::string(tags) + u16(type) + std::string(payload);
}

std::string frame(std::string_view payload, unsigned int first, std::string_view mask) {
  const auto size = static_cast<unsigned int>(payload.size());
  const unsigned int masked = mask.empty() ? 0 : 0x80;
  std::string bytes = u8(first);
  if (size < 126) {
    bytes += u8(masked | size);
  } else if (size < 65536) {
    bytes += u8(masked | 126) + u16(size);
  } else {
    bytes += u8(masked | 127) + u32(0) + u32(size);
  }
  bytes += mask;
  for (std::size_t i = 0; i < payload.size(); ++i) {
    bytes += mask.empty() ? payload[i] : static_cast<char>(payload[i] ^ mask[i % 4]);
  }
  return bytes;
}

std::string chunk(unsigned int type, std::string_view content, unsigned int vendor) {
  return u16(vendor) + u16(type) + u16(static_cast<unsigned int>(content.size() + 6)) + std::string(content);
}

std::string hep(std::string_view chunks) {
  return "HEP3" + u16(static_cast<unsigned int>(chunks.size() + 6)) + std::string(chunks);
}

std::string hepOf(std::string_view message) {
  return hep(chunk(1, u8(2)) + chunk(2, u8(6)) + chunk(3, bytesOf("198.51.100.1")) +
             chunk(4, bytesOf("198.51.100.2")) + chunk(7, u16(5070)) + chunk(8, u16(5080)) +
             chunk(9, u32(1600000000)) + chunk(10, u32(250000)) + chunk(11, u8(1)) + chunk(12, u32(3)) +
             chunk(15, message));
}

std::string pcap(const std::vector<Record>& records, std::uint32_t linkType) {
  std::string file =
      u32le(0xA1B2C3D4) + u16le(2) + u16le(4) + u32le(0) + u32le(0) + u32le(262144) + u32le(linkType);
  for (const Record& record : records) {
    const std::size_t wire = record.wireSize == 0 ? record.bytes.size() : record.wireSize;
    file += u32le(static_cast<std::uint32_t>(record.time / 1000000)) +
            u32le(static_cast<std::uint32_t>(record.time % 1000000)) +
            u32le(static_cast<std::uint32_t>(record.bytes.size())) + u32le(static_cast<std::uint32_t>(wire)) +
            record.bytes;
  }
  return file;
}

std::string pcapng(const std::vector<Record>& records, const std::vector<unsigned int>& linkTypes) {
  std::string file =
      block(0x0A0D0D0A, u32le(0x1A2B3C4D) + u16le(1) + u16le(0) + u32le(0xFFFFFFFF) + u32le(0xFFFFFFFF));
  for (const unsigned int type : linkTypes) file += block(1, u16le(type) + u16le(0) + u32le(262144));
  for (std::size_t i = 0; i < records.size(); ++i) {
    const auto time = static_cast<std::uint64_t>(records[i].time);
    const auto size = static_cast<std::uint32_t>(records[i].bytes.size());
    file += block(6, u32le(static_cast<std::uint32_t>(i % linkTypes.size())) +
                         u32le(static_cast<std::uint32_t>(time >> 32U)) +
                         u32le(static_cast<std::uint32_t>(time)) + u32le(size) + u32le(size) +
                         padded(records[i].bytes));
  }
  return file;
}

std::string gzip(std::string_view bytes) {
  z_stream stream{};
  deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  std::string packed(deflateBound(&stream, bytes.size()) + 64, '\0');
  std::string input(bytes);
  stream.next_in = reinterpret_cast<Bytef*>(input.data());
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

Collected::Collected()
    : output([this](const tool::CapturedMessage& message) {
        messages.push_back({message.number, message.time, std::string(tool::textOf(message.transport)),
                            message.flow.source.text(), message.flow.destination.text(),
                            std::string(message.text), message.isCut});
      }) {}

std::vector<std::string> Collected::texts() const {
  std::vector<std::string> texts;
  for (const Read& message : messages) texts.push_back(message.text);
  return texts;
}

std::vector<std::string> Collected::troubles() const {
  std::vector<std::string> troubles;
  for (std::size_t i = 0; i < tool::kCaptureTroubles; ++i) {
    const auto trouble = static_cast<tool::CaptureTrouble>(i);
    const std::size_t count = output.count(trouble);
    if (count != 0) troubles.push_back(std::to_string(count) + " " + std::string(textOf(trouble)));
  }
  return troubles;
}

}  // namespace packets
