#ifndef B2BUA_BENCODE_H
#define B2BUA_BENCODE_H

#include <charconv>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace b2bua {

// Bencode, in which rtpengine is spoken to. What is written is made of encoded parts.

std::string bencodeText(std::string_view text);
std::string bencodeList(const std::vector<std::string_view>& texts);
std::string bencodeDictionary(const std::map<std::string, std::string>& encodedMembers);

constexpr std::size_t kDeepestBencode = 32;  ///< lists and dictionaries in one another that are read

/// Reads a dictionary, which is all of the text.
/// @return its members that are texts; none for what is no such dictionary
std::optional<std::map<std::string, std::string>> textsOfBencode(std::string_view text);

/// Takes a number and the character behind it from the front of a text.
/// @return whether they are there
template <typename Number>
bool takeNumber(std::string_view& text, char end, Number& number) {
  const char* const last = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), last, number);
  if (error != std::errc() || behind == last || *behind != end) return false;
  text.remove_prefix(static_cast<std::size_t>(behind + 1 - text.data()));
  return true;
}

}  // namespace b2bua

#endif
