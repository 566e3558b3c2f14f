#include "captures/packetFile.h"

#include <pcap/pcap.h>

#include <cerrno>
#include <cstdio>

#include "captures/linkLayer.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::int64_t kMicroseconds = 1000000;
/// The end of the year 9999; a later time is a damaged one.
constexpr std::int64_t kLastSecond = 253402300799;

ssize_t readSource(void* source, char* bytes, std::size_t size) {
  return static_cast<ssize_t>(static_cast<ByteSource*>(source)->read(bytes, size));
}

/// A stream over a source, as libpcap wants it.
std::FILE* streamOver(ByteSource& source) {
  cookie_io_functions_t functions{};
  functions.read = readSource;
  return ::fopencookie(&source, "rb", functions);
}

CaptureTime timeOf(const timeval& time) {
  if (time.tv_sec < 0 || time.tv_sec > kLastSecond) return std::nullopt;
  if (time.tv_usec < 0 || time.tv_usec >= kMicroseconds) return std::nullopt;
  return time.tv_sec * kMicroseconds + time.tv_usec;
}

Problem damaged(const std::string& why) { return {{}, "is a damaged capture: " + why}; }

/// libpcap reads frames of one link type alone.
Problem readProblem(const std::string& why) {
  const bool isOfTwoTypes = sdpneg::contains(why, "different from the type of the first interface");
  if (!isOfTwoTypes) return damaged(why);
  return {{}, "has interfaces with different link types, of which libpcap reads the first alone: " + why};
}

std::string linkTypeName(int linkType) {
  const char* const name = ::pcap_datalink_val_to_name(linkType);
  return name != nullptr ? name : std::to_string(linkType);
}

}  // namespace

PacketFile::PacketFile(ByteSource& source, const std::string& filter) {
  char why[PCAP_ERRBUF_SIZE] = "";
  std::FILE* const stream = streamOver(source);
  if (stream == nullptr) {
    problem_ = cannotRead("no memory");
    return;
  }
  capture_ = ::pcap_fopen_offline(stream, why);
  if (capture_ == nullptr) {
    std::fclose(stream);
    problem_ = damaged(why);
    return;
  }
  linkType_ = ::pcap_datalink(capture_);
  if (!isKnownLinkType(linkType_)) {
    problem_ = Problem{{}, "has frames of the link type " + linkTypeName(linkType_) + ", which are not read"};
  } else if (!filter.empty()) {
    setFilter(filter);
  }
}

PacketFile::~PacketFile() {
  if (capture_ != nullptr) ::pcap_close(capture_);
}

void PacketFile::setFilter(const std::string& filter) {
  bpf_program program{};
  if (::pcap_compile(capture_, &program, filter.c_str(), 1, PCAP_NETMASK_UNKNOWN) != 0) {
    problem_ = Problem{{}, "cannot be filtered: " + std::string(::pcap_geterr(capture_))};
    return;
  }
  if (::pcap_setfilter(capture_, &program) != 0) {
    problem_ = Problem{{}, "cannot be filtered: " + std::string(::pcap_geterr(capture_))};
  }
  ::pcap_freecode(&program);
}

std::optional<Frame> PacketFile::next() {
  if (problem_) return std::nullopt;
  pcap_pkthdr* header = nullptr;
  const unsigned char* bytes = nullptr;
  const int status = ::pcap_next_ex(capture_, &header, &bytes);
  if (status == 1) return Frame{{reinterpret_cast<const char*>(bytes), header->caplen}, timeOf(header->ts)};
  if (status == PCAP_ERROR) problem_ = readProblem(::pcap_geterr(capture_));
  return std::nullopt;
}

}  // namespace tool
