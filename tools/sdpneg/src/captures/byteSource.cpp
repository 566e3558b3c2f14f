#include "captures/byteSource.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "captures/gzipSource.h"
#include "input/descriptor.h"

namespace tool {
namespace {

class FileSource : public ByteSource {
 public:
  FileSource(const Input& input, InputWatch watch)
      : file_(input), watch_(std::move(watch)), problem_(input.problem) {
    if (!problem_ && file_.number() < 0) problem_ = failure();
  }

  std::size_t read(char* bytes, std::size_t size) override {
    while (!problem_ && !isAtEnd_) {
      const ssize_t length = ::read(file_.number(), bytes, size);
      if (length > 0) {
        position_ += static_cast<std::size_t>(length);
        return static_cast<std::size_t>(length);
      }
      if (length == 0) isAtEnd_ = !watch_.waitForMore || !watch_.waitForMore();
      if (length < 0 && errno != EINTR) problem_ = failure();
      if (length < 0 && !problem_) isAtEnd_ = watch_.isStopped && watch_.isStopped();
    }
    return 0;
  }
  std::optional<Problem> problem() const override { return problem_; }
  std::size_t position() const override { return position_; }

 private:
  static Problem failure() { return cannotRead(std::generic_category().message(errno)); }

  Descriptor file_;
  InputWatch watch_;
  std::optional<Problem> problem_;
  bool isAtEnd_ = false;
  std::size_t position_ = 0;
};

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : rest_(bytes), size_(bytes.size()) {}

  std::size_t read(char* bytes, std::size_t size) override {
    const std::size_t taken = rest_.copy(bytes, size);
    rest_.remove_prefix(taken);
    return taken;
  }
  std::size_t position() const override { return size_ - rest_.size(); }

 private:
  std::string_view rest_;
  std::size_t size_;
};

}  // namespace

std::unique_ptr<ByteSource> openInput(const Input& input, InputWatch watch) {
  return std::make_unique<FileSource>(input, std::move(watch));
}

std::unique_ptr<ByteSource> sourceOf(std::string_view bytes) { return std::make_unique<MemorySource>(bytes); }

std::string_view PeekedSource::peek(std::size_t size) {
  while (front_.size() < size) {
    char more[512];
    const std::size_t length = source_->read(more, std::min(sizeof more, size - front_.size()));
    if (length == 0) break;
    front_.append(more, length);
  }
  return front_;
}

std::size_t PeekedSource::read(char* bytes, std::size_t size) {
  if (front_.empty()) return source_->read(bytes, size);
  const std::size_t taken = front_.copy(bytes, size);
  front_.erase(0, taken);
  return taken;
}

std::unique_ptr<PeekedSource> inflated(std::unique_ptr<ByteSource> source) {
  auto peeked = std::make_unique<PeekedSource>(std::move(source));
  if (!isGzip(peeked->peek(kGzipMark.size()))) return peeked;
  return std::make_unique<PeekedSource>(std::make_unique<GzipSource>(std::move(peeked)));
}

}  // namespace tool
