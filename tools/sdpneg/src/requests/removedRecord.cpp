#include "requests/removedRecord.h"

#include <vector>

#include "inspection/names.h"
#include "requests/requestArguments.h"
#include "requests/wholeNumber.h"

namespace tool {

std::string RemovedRecord::text() const {
  std::vector<std::string> numbers;
  for (int i = 0; i < kCodes && codes_[i] != 0; ++i) {
    numbers.push_back(std::to_string(static_cast<unsigned char>(codes_[i])));
  }
  return joined(numbers, ",");
}

std::optional<RemovedRecord> RemovedRecord::read(std::string_view text) {
  RemovedRecord record;
  int count = 0;
  for (const std::string_view piece : splitAt(text, ',')) {
    const auto number = wholeNumber<unsigned char>(piece);
    if (!number || *number == 0 || count == kCodes) return std::nullopt;
    record.codes_[count++] = static_cast<char>(*number);
  }
  return record;
}

bool isRemovedRecord(std::string_view word) { return RemovedRecord::read(word).has_value(); }

}  // namespace tool
