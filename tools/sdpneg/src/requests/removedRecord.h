#ifndef SDPNEG_REMOVED_RECORD_H
#define SDPNEG_REMOVED_RECORD_H

#include <optional>
#include <string>
#include <string_view>

// The record of removed m-lines that requests write and take, as numbers between commas.

namespace tool {

/// A record with room for what the library clears of it, and a NUL behind.
class RemovedRecord {
 public:
  char* data() { return codes_; }

  /// "1,28"; an empty text when nothing was removed.
  std::string text() const;
  /// @return nothing when a text is not one to 25 numbers of 1 to 255 between commas
  static std::optional<RemovedRecord> read(std::string_view text);

 private:
  static constexpr int kCodes = 25;
  static constexpr int kCleared = 32;

  char codes_[kCleared + 1] = {};
};

bool isRemovedRecord(std::string_view word);

}  // namespace tool

#endif
