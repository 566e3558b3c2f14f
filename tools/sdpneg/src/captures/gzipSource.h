#ifndef SDPNEG_GZIP_SOURCE_H
#define SDPNEG_GZIP_SOURCE_H

#include <zlib.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "captures/byteSource.h"

// gzip files (RFC 1952), also of several members one after another.

namespace tool {

/// What they begin with, deflate being the one way of compression.
inline constexpr std::string_view kGzipMark = "\x1F\x8B\x08";

inline bool isGzip(std::string_view bytes) { return bytes.substr(0, kGzipMark.size()) == kGzipMark; }

class GzipSource : public ByteSource {
 public:
  explicit GzipSource(std::unique_ptr<ByteSource> source);
  ~GzipSource() override;
  GzipSource(const GzipSource&) = delete;
  GzipSource& operator=(const GzipSource&) = delete;

  std::size_t read(char* bytes, std::size_t size) override;
  std::optional<Problem> problem() const override;
  std::size_t position() const override { return source_->position(); }

 private:
  bool fill();
  void startMember();
  void fail(const char* why);

  std::unique_ptr<ByteSource> source_;
  z_stream stream_{};
  std::string input_;
  bool isOpen_ = false;    ///< `stream_` is to be ended
  bool isInside_ = false;  ///< of a member
  bool isAtEnd_ = false;
  std::optional<Problem> problem_;
};

}  // namespace tool

#endif
