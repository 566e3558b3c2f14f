#ifndef PARSER_TEST_SUPPORT_H
#define PARSER_TEST_SUPPORT_H

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDataDefinitions.h"
#include "sessionDescription.h"

/// A text in a heap buffer of exactly its size, so that the sanitizers see a read behind its NUL.
class ExactText {
 public:
  explicit ExactText(std::string_view text)
      : text_(std::make_unique_for_overwrite<char[]>(text.size() + 1)), size_(text.size()) {
    text_[text.copy(text_.get(), text.size())] = '\0';
  }
  operator const char*() const { return text_.get(); }
  const char* end() const { return text_.get() + size_; }

 private:
  std::unique_ptr<char[]> text_;
  std::size_t size_;
};

template <class Record>
std::unique_ptr<Record> usedRecord() {
  auto record = std::make_unique_for_overwrite<Record>();
  // What earlier use left in a record must not show.
  std::memset(static_cast<void*>(record.get()), 0xA5, sizeof(Record));
  return record;
}

/// Fills a block with attribute lines given as they stand behind "a=".
inline void setAttributes(a_line& block, const std::vector<std::string>& lines) {
  block.count = 0;
  for (const std::string& line : lines) {
    const std::size_t colon = std::min(line.find(':'), line.size());
    const std::string name = line.substr(0, colon);
    const std::string value = line.substr(std::min(colon + 1, line.size()));
    a_line::entry& entry = block.entries[block.count++];
    entry.name[name.copy(entry.name, sizeof entry.name - 1)] = '\0';
    entry.value[value.copy(entry.value, sizeof entry.value - 1)] = '\0';
    entry.hasColon = colon < line.size() ? 1 : 0;
  }
}

/// A block of attribute lines.
class Attributes {
 public:
  explicit Attributes(const std::vector<std::string>& lines) { setAttributes(*block_, lines); }
  operator const a_line*() const { return block_.get(); }
  a_line* operator->() const { return block_.get(); }

 private:
  std::unique_ptr<a_line> block_ = usedRecord<a_line>();
};

/// A summary in which nothing was parsed.
inline sSdpParsedData emptySummary() {
  sSdpParsedData data;
  data.init();
  return data;
}

#endif
