#include "bencode.h"

#include <utility>

namespace b2bua {

namespace {

/// Goes from value to value; what lists and dictionaries it is in stands on a stack of its own.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  std::optional<std::map<std::string, std::string>> run() {
    if (!rest_.starts_with('d') || !open()) return std::nullopt;
    while (!levels_.empty()) {
      if (rest_.empty() || !takeOne()) return std::nullopt;
    }
    return rest_.empty() ? std::optional(std::move(members_)) : std::nullopt;
  }

 private:
  /// What comes next in a list, or in a dictionary.
  enum class Next { element, key, value };

  bool takeOne() {
    Next& next = levels_.back();
    const char first = rest_.front();
    if (first == 'e') return next != Next::value && close();
    if (next == Next::key) {
      next = Next::value;
      return takeText(key_);
    }
    if (next == Next::value) next = Next::key;
    if (first == 'd' || first == 'l') return open();
    if (first == 'i') return skipNumber();
    std::string value;
    if (!takeText(value)) return false;
    if (levels_.size() == 1) members_[key_] = std::move(value);
    return true;
  }

  bool open() {
    if (levels_.size() == kDeepestBencode) return false;
    levels_.push_back(rest_.front() == 'd' ? Next::key : Next::element);
    rest_.remove_prefix(1);
    return true;
  }

  bool close() {
    levels_.pop_back();
    rest_.remove_prefix(1);
    return true;
  }

  /// LENGTH:BYTES
  bool takeText(std::string& text) {
    std::size_t length = 0;
    if (!takeNumber(rest_, ':', length) || length > rest_.size()) return false;
    text = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return true;
  }

  /// iDIGITSe
  bool skipNumber() {
    long long number = 0;
    rest_.remove_prefix(1);
    return takeNumber(rest_, 'e', number);
  }

  std::string_view rest_;
  std::vector<Next> levels_;
  std::string key_;
  std::map<std::string, std::string> members_;
};

}  // namespace

std::string bencodeText(std::string_view text) {
  return std::to_string(text.size()).append(":").append(text);
}

std::string bencodeList(const std::vector<std::string_view>& texts) {
  std::string list = "l";
  for (const std::string_view text : texts) list += bencodeText(text);
  return list + "e";
}

std::string bencodeDictionary(const std::map<std::string, std::string>& encodedMembers) {
  std::string dictionary = "d";
  for (const auto& [key, value] : encodedMembers) dictionary += bencodeText(key) + value;
  return dictionary + "e";
}

std::optional<std::map<std::string, std::string>> textsOfBencode(std::string_view text) {
  return Reader(text).run();
}

}  // namespace b2bua
