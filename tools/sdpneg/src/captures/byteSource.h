#ifndef SDPNEG_BYTE_SOURCE_H
#define SDPNEG_BYTE_SOURCE_H

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "input/inputFiles.h"

// The bytes of an input, inflated where it is a gzip file.

namespace tool {

/// How the reading of an input is watched. Functions that are missing say no.
struct InputWatch {
  std::function<bool()>
      waitForMore;  ///< asked where there are no more bytes: whether to look again. It may wait
  std::function<bool()> isStopped =
      {};  ///< asked where a signal ended a wait for bytes: whether that is the end
};

class ByteSource {
 public:
  virtual ~ByteSource() = default;

  /// Reads at most `size` bytes.
  /// @return how many; 0 at the end or where there is a problem
  virtual std::size_t read(char* bytes, std::size_t size) = 0;
  /// Why the end is none.
  virtual std::optional<Problem> problem() const { return std::nullopt; }
  /// Bytes of the file that were read, for telling how far one is.
  virtual std::size_t position() const = 0;
};

/// An input's own bytes. Whether it can be opened is told by problem().
std::unique_ptr<ByteSource> openInput(const Input& input, InputWatch watch = {});

/// Bytes in memory, which must stay there.
std::unique_ptr<ByteSource> sourceOf(std::string_view bytes);

/// A source of which the front can be looked at before it is read.
class PeekedSource : public ByteSource {
 public:
  explicit PeekedSource(std::unique_ptr<ByteSource> source) : source_(std::move(source)) {}

  /// The next `size` bytes, or all that follow where there are fewer.
  std::string_view peek(std::size_t size);

  std::size_t read(char* bytes, std::size_t size) override;
  std::optional<Problem> problem() const override { return source_->problem(); }
  std::size_t position() const override { return source_->position(); }

 private:
  std::unique_ptr<ByteSource> source_;
  std::string front_;
};

/// What a gzip file holds, or the same source where it is none.
std::unique_ptr<PeekedSource> inflated(std::unique_ptr<ByteSource> source);

}  // namespace tool

#endif
