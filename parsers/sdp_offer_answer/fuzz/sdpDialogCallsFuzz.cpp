// Calls of a dialog in any order beside a model, also with bodies of any kind from the peer.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "../test/dialog/modelledDialog.h"

namespace {

void require(bool holds, const char* /*what*/) {
  if (!holds) std::abort();
}

/// Bytes are numbers; behind the byte 0xFF a body stands, with its length in front.
class Bytes : public modelledDialog::Source {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool isAtEnd() const { return size_ == 0; }
  std::uint32_t below(std::uint32_t bound) override { return next() % bound; }
  std::optional<std::string> body() override {
    if (isAtEnd() || *data_ != 0xFF) return std::nullopt;
    (void)next();
    const std::size_t length = std::min<std::size_t>(size_, std::size_t{next()} << 8U | next());
    const std::size_t left = std::min(length, size_);
    std::string text(reinterpret_cast<const char*>(data_), left);
    data_ += left;
    size_ -= left;
    return text;
  }

 private:
  std::uint8_t next() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }

  const std::uint8_t* data_;
  std::size_t size_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes source(data, size);
  modelledDialog::ModelledDialog dialog(source, require);
  while (!source.isAtEnd()) dialog.step();
  return 0;
}
