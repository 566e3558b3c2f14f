#include "captures/gzipSource.h"

#include <algorithm>
#include <utility>

namespace tool {
namespace {

constexpr std::size_t kInputSize = std::size_t{64} * 1024;
constexpr int kGzipAlone = 16 + MAX_WBITS;

}  // namespace

GzipSource::GzipSource(std::unique_ptr<ByteSource> source)
    : source_(std::move(source)), input_(kInputSize, '\0') {
  isOpen_ = ::inflateInit2(&stream_, kGzipAlone) == Z_OK;
  isInside_ = isOpen_;
  if (!isOpen_) fail("no memory to inflate it");
}

GzipSource::~GzipSource() {
  if (isOpen_) ::inflateEnd(&stream_);
}

/// Gets compressed bytes where none are left.
/// @return whether there are some
bool GzipSource::fill() {
  if (stream_.avail_in != 0) return true;
  const std::size_t length = source_->read(input_.data(), input_.size());
  stream_.next_in = reinterpret_cast<Bytef*>(input_.data());
  stream_.avail_in = static_cast<uInt>(length);
  return length != 0;
}

/// Goes on with a further member. Zeros that pad the file, and whatever else follows, are its end.
void GzipSource::startMember() {
  isInside_ = fill() && *stream_.next_in == static_cast<unsigned char>(kGzipMark.front()) &&
              ::inflateReset(&stream_) == Z_OK;
  isAtEnd_ = !isInside_;
}

std::size_t GzipSource::read(char* bytes, std::size_t size) {
  stream_.next_out = reinterpret_cast<Bytef*>(bytes);
  const auto wanted = static_cast<uInt>(std::min<std::size_t>(size, kInputSize));
  stream_.avail_out = wanted;
  while (stream_.avail_out == wanted && !isAtEnd_) {
    if (!isInside_) {
      startMember();
      continue;
    }
    if (!fill()) {
      fail("its end is missing");
      break;
    }
    const int status = ::inflate(&stream_, Z_NO_FLUSH);
    if (status == Z_STREAM_END) {
      isInside_ = false;
    } else if (status != Z_OK && status != Z_BUF_ERROR) {
      fail(stream_.msg != nullptr ? stream_.msg : "it cannot be inflated");
    }
  }
  return wanted - stream_.avail_out;
}

std::optional<Problem> GzipSource::problem() const {
  const std::optional<Problem> own = source_->problem();
  return own ? own : problem_;
}

void GzipSource::fail(const char* why) {
  isAtEnd_ = true;
  problem_ = Problem{{}, std::string("is a damaged gzip file: ") + why};
}

}  // namespace tool
