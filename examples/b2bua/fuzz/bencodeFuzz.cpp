// Any text: what is read of it is written again, and read the same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "../bencode.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto texts = b2bua::textsOfBencode(text);
  if (!texts) return 0;
  std::size_t length = 0;
  std::map<std::string, std::string> encoded;
  for (const auto& [key, value] : *texts) {
    length += key.size() + value.size();
    encoded[key] = b2bua::bencodeText(value);
  }
  if (length > size || b2bua::textsOfBencode(b2bua::bencodeDictionary(encoded)) != texts) std::abort();
  return 0;
}
