#ifndef SDPNEG_PACKET_FILE_H
#define SDPNEG_PACKET_FILE_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "captures/byteSource.h"
#include "captures/capturedMessage.h"

struct pcap;

// Files of captured frames, read by libpcap: pcap and pcapng.

namespace tool {

struct Frame {
  std::string_view bytes;  ///< what was captured; serves until the next one is read
  CaptureTime time;
};

class PacketFile {
 public:
  /// @param source must stay there
  /// @param filter an expression of libpcap; empty for all frames
  PacketFile(ByteSource& source, const std::string& filter);
  ~PacketFile();
  PacketFile(const PacketFile&) = delete;
  PacketFile& operator=(const PacketFile&) = delete;

  /// Nothing at the end or where there is a problem.
  std::optional<Frame> next();

  /// What is wrong with the file or the filter.
  const std::optional<Problem>& problem() const { return problem_; }
  int linkType() const { return linkType_; }

 private:
  void setFilter(const std::string& filter);

  struct pcap* capture_ = nullptr;
  int linkType_ = -1;
  std::optional<Problem> problem_;
};

}  // namespace tool

#endif
