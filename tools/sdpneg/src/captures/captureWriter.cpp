#include "captures/captureWriter.h"

#include <pcap/pcap.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include "captures/sipStart.h"
#include "captures/sipView.h"

namespace tool {
namespace {

constexpr int kSnapLength = 262144;
constexpr std::int64_t kMicroseconds = 1000000;
constexpr std::int64_t kLastSecond = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint16_t kSipPort = 5060;
constexpr unsigned int kUdp = 17;
constexpr unsigned int kTcp = 6;
constexpr std::size_t kUdpHeader = 8;
constexpr std::size_t kIp4Header = 20;
constexpr std::size_t kLargestIp = 65535;
/// What fits into a datagram of either family.
constexpr std::size_t kLargestDatagram = kLargestIp - kIp4Header - kUdpHeader;
constexpr std::size_t kSegment = 32768;
constexpr std::uint32_t kFirstSequence = 1;
/// Behind a message that does not say where it ends, the sequence numbers go so far on that what follows is a stream of
/// its own.
constexpr std::uint32_t kAway = 4 * static_cast<std::uint32_t>(kMaxMessageSize);

std::string u8(std::size_t value) { return {static_cast<char>(value & 0xFFU)}; }
std::string u16(std::size_t value) { return u8(value >> 8U) + u8(value); }
std::string u32(std::size_t value) { return u16(value >> 16U) + u16(value); }

/// The check sum of the Internet (RFC 1071).
std::uint16_t checkSum(std::string_view bytes) {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::uint64_t byte = static_cast<unsigned char>(bytes[i]);
    sum += i % 2 == 0 ? byte << 8U : byte;
  }
  while (sum >> 16U != 0) sum = (sum & 0xFFFFU) + (sum >> 16U);
  return static_cast<std::uint16_t>(~sum & 0xFFFFU);
}

void setCheckSum(std::string& bytes, std::size_t at, std::uint16_t sum) { bytes.replace(at, 2, u16(sum)); }

std::string_view bytesOf(const IpAddress& address) {
  const std::size_t size = address.family == AddressFamily::ip4 ? 4 : 16;
  return {reinterpret_cast<const char*>(address.bytes.data()), size};
}

/// An IPv4 address as one of IPv6 (RFC 4291 2.5.5.2).
IpAddress mapped(const IpAddress& address) {
  if (address.family != AddressFamily::ip4) return address;
  IpAddress result{AddressFamily::ip6, {}};
  result.bytes[10] = result.bytes[11] = 0xFF;
  std::copy_n(address.bytes.begin(), 4, result.bytes.begin() + 12);
  return result;
}

/// A flow that has addresses of one family, and ports.
Flow completed(Flow flow) {
  const auto isIp6 = [](const Endpoint& end) { return end.address.family == AddressFamily::ip6; };
  const bool anyIp6 = isIp6(flow.source) || isIp6(flow.destination);
  for (Endpoint* const end : {&flow.source, &flow.destination}) {
    if (!end->isKnown()) end->address = {anyIp6 ? AddressFamily::ip6 : AddressFamily::ip4, {}};
    if (anyIp6) end->address = mapped(end->address);
    if (end->port == 0) end->port = kSipPort;
  }
  return flow;
}

/// A packet with its lengths and check sums.
/// @param checkSumAt where the payload has its own
std::string packetOf(const Flow& flow, unsigned int protocol, std::string payload, std::size_t checkSumAt) {
  const std::string addresses =
      std::string(bytesOf(flow.source.address)) + std::string(bytesOf(flow.destination.address));
  const std::uint16_t sum = checkSum(addresses + u32(payload.size()) + u32(protocol) + payload);
  setCheckSum(payload, checkSumAt, protocol == kUdp && sum == 0 ? 0xFFFF : sum);
  if (flow.source.address.family == AddressFamily::ip6) {
    return u32(0x60000000U) + u16(payload.size()) + u8(protocol) + u8(64) + addresses + payload;
  }
  std::string header = u16(0x4500U) + u16(kIp4Header + payload.size()) + u32(0x00004000U) + u8(64) +
                       u8(protocol) + u16(0) + addresses;
  setCheckSum(header, 10, checkSum(header));
  return header + payload;
}

std::string ports(const Flow& flow) { return u16(flow.source.port) + u16(flow.destination.port); }

std::string datagram(const Flow& flow, std::string_view text) {
  return packetOf(flow, kUdp, ports(flow) + u16(kUdpHeader + text.size()) + u16(0) + std::string(text), 6);
}

std::string segment(const Flow& flow, std::uint32_t sequence, std::uint32_t acknowledged,
                    std::string_view text) {
  constexpr std::size_t kAckAndPush = 0x5018;  // behind the header's size of five words
  return packetOf(flow, kTcp,
                  ports(flow) + u32(sequence) + u32(acknowledged) + u16(kAckAndPush) + u16(0xFFFF) + u32(0) +
                      std::string(text),
                  16);
}

/// Whether a message says itself where it ends.
bool isFramed(const CapturedMessage& message) {
  const SipView view(message.text);
  const std::optional<std::size_t> length = parseContentLength(view.value("Content-Length").value_or(""));
  const std::size_t header = findHeaderEnd(message.text, 0);
  return !message.isCut && header != std::string_view::npos && length &&
         *length == message.text.size() - header;
}

}  // namespace

/// libpcap's file over what gets the bytes.
class CaptureWriter::File {
 public:
  explicit File(std::function<void(std::string_view)> write) : write_(std::move(write)) {
    capture_ = ::pcap_open_dead(DLT_RAW, kSnapLength);
    cookie_io_functions_t functions{};
    functions.write = take;
    std::FILE* const stream = ::fopencookie(this, "wb", functions);
    if (capture_ != nullptr && stream != nullptr) file_ = ::pcap_dump_fopen(capture_, stream);
    if (file_ == nullptr && stream != nullptr) std::fclose(stream);
    if (file_ != nullptr) ::pcap_dump_flush(file_);
  }
  ~File() {
    if (file_ != nullptr) ::pcap_dump_close(file_);
    if (capture_ != nullptr) ::pcap_close(capture_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  void add(std::int64_t time, std::string_view packet) {
    if (file_ == nullptr) return;
    pcap_pkthdr header{};
    const std::int64_t second = std::clamp<std::int64_t>(time / kMicroseconds, 0, kLastSecond);
    header.ts.tv_sec = static_cast<decltype(header.ts.tv_sec)>(second);
    header.ts.tv_usec =
        static_cast<decltype(header.ts.tv_usec)>(std::max<std::int64_t>(time % kMicroseconds, 0));
    header.caplen = header.len = static_cast<bpf_u_int32>(packet.size());
    ::pcap_dump(reinterpret_cast<u_char*>(file_), &header, reinterpret_cast<const u_char*>(packet.data()));
  }
  /// Gives away what there is.
  void flush() {
    if (file_ != nullptr) ::pcap_dump_flush(file_);
  }

 private:
  static ssize_t take(void* file, const char* bytes, std::size_t size) {
    static_cast<File*>(file)->write_({bytes, size});
    return static_cast<ssize_t>(size);
  }

  std::function<void(std::string_view)> write_;
  pcap_t* capture_ = nullptr;
  pcap_dumper_t* file_ = nullptr;
};

bool CaptureWriter::Order::operator()(const Flow& one, const Flow& other) const {
  const auto ordered = [](const Flow& flow) {
    return std::tie(flow.source.address.family, flow.source.address.bytes, flow.source.port,
                    flow.destination.address.family, flow.destination.address.bytes, flow.destination.port);
  };
  return ordered(one) < ordered(other);
}

CaptureWriter::CaptureWriter(std::function<void(std::string_view bytes)> write)
    : file_(std::make_unique<File>(std::move(write))) {}

CaptureWriter::~CaptureWriter() = default;

void CaptureWriter::write(const CapturedMessage& message) {
  time_ = message.time.value_or(time_);
  const Flow flow = completed(message.flow);
  const bool isStream = message.transport == Transport::tcp || message.transport == Transport::webSocket;
  if (isStream || message.text.size() > kLargestDatagram) {
    writeStream(flow, message.text, isFramed(message));
  } else {
    file_->add(time_, datagram(flow, message.text));
  }
  file_->flush();
}

void CaptureWriter::writeStream(const Flow& flow, std::string_view text, bool isFramed) {
  std::uint32_t& sequence = sequences_.try_emplace(flow, kFirstSequence).first->second;
  const auto back = sequences_.find({flow.destination, flow.source});
  const std::uint32_t acknowledged = back != sequences_.end() ? back->second : kFirstSequence;
  for (std::size_t at = 0; at < text.size(); at += kSegment) {
    const std::string_view piece = text.substr(at, kSegment);
    file_->add(time_, segment(flow, sequence, acknowledged, piece));
    sequence += static_cast<std::uint32_t>(piece.size());
  }
  if (!isFramed) sequence += kAway;
}

}  // namespace tool
