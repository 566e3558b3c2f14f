#include "calls/keyedHash.h"

#include <sys/random.h>

#include <bit>
#include <chrono>
#include <cstddef>
#include <cstring>

namespace tool {
namespace {

/// What SipHash adds words to.
struct State {
  std::uint64_t a, b, c, d;

  void round() {
    a += b;
    c += d;
    b = std::rotl(b, 13) ^ a;
    d = std::rotl(d, 16) ^ c;
    a = std::rotl(a, 32);
    c += b;
    a += d;
    b = std::rotl(b, 17) ^ c;
    d = std::rotl(d, 21) ^ a;
    c = std::rotl(c, 32);
  }
  void add(std::uint64_t word) {
    d ^= word;
    round();
    round();
    a ^= word;
  }
};

/// At most eight bytes, the first one the lowest.
std::uint64_t wordOf(std::string_view bytes) {
  std::uint64_t word = 0;
  for (std::size_t i = bytes.size(); i-- != 0;) word = word << 8U | static_cast<unsigned char>(bytes[i]);
  return word;
}

}  // namespace

HashKey HashKey::random() {
  HashKey key;
  if (::getentropy(&key, sizeof key) == 0) return key;
  key.first = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
  key.second = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  return key;
}

std::uint64_t keyedHash(const HashKey& key, std::string_view text) {
  State state = {key.first ^ 0x736F6D6570736575U, key.second ^ 0x646F72616E646F6DU,
                 key.first ^ 0x6C7967656E657261U, key.second ^ 0x7465646279746573U};
  const std::uint64_t size = text.size();
  for (; text.size() >= 8; text.remove_prefix(8)) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data(), sizeof word);
    if constexpr (std::endian::native != std::endian::little) word = wordOf(text.substr(0, 8));
    state.add(word);
  }
  state.add(size << 56U | wordOf(text));
  state.c ^= 0xFFU;
  for (int i = 0; i < 4; ++i) state.round();
  return state.a ^ state.b ^ state.c ^ state.d;
}

std::size_t KeyedHasher::operator()(std::string_view text) const {
  static const HashKey key = HashKey::random();
  return static_cast<std::size_t>(keyedHash(key, text));
}

}  // namespace tool
