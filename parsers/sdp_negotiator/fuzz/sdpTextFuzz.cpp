// The text-editing core against std::string: any sequence of edits gives the same text, stays inside its capacity,
// and refuses exactly what does not fit.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "text/sdpText.h"

using namespace sdpneg;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

/// Takes the input apart into numbers and texts.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  bool empty() const { return rest_.empty(); }
  std::size_t number(std::size_t limit) {
    std::size_t value = 0;
    for (int i = 0; i < 2 && !rest_.empty(); ++i) {
      value = value * 256 + static_cast<unsigned char>(rest_[0]);
      rest_.remove_prefix(1);
    }
    return value % limit;
  }
  /// Without NUL, which would end the text.
  std::string text(std::size_t length) {
    std::string taken(rest_.substr(0, length));
    rest_.remove_prefix(taken.size());
    for (char& c : taken) c = c == '\0' ? '0' : c;
    return taken;
  }

 private:
  std::string_view rest_;
};

void replaceOnce(Input& input, SdpText& text, std::string& model, std::size_t capacity) {
  const std::size_t begin = input.number(model.size() + 1);
  const std::size_t end = begin + input.number(model.size() - begin + 1);
  const bool own = input.number(4) == 0;
  const std::size_t length = input.number(32);
  const std::string inserted = own ? model.substr(begin, length) : input.text(length);
  const std::string_view given =
      own ? text.view().substr(begin, inserted.size()) : std::string_view(inserted);
  const bool fits = model.size() - (end - begin) + inserted.size() < capacity;
  require((text.replace({begin, end}, given) == Edit::done) == fits);
  if (fits) model.replace(begin, end - begin, inserted);
}

/// The removal as it is described: one line at a time, each search from the start.
std::size_t removeOneByOne(std::string& text, const std::string_view (&prefixes)[2]) {
  for (std::size_t count = 0;; ++count) {
    std::size_t match = text.find(prefixes[0]);
    if (match == std::string::npos) match = text.find(prefixes[1]);
    const std::size_t lf = match == std::string::npos ? match : text.find('\n', match);
    if (lf == std::string::npos) return count;
    text.erase(match, lf + 1 - match);
  }
}

void removeOnce(Input& input, SdpText& text, std::string& model) {
  static constexpr std::string_view kPrefixes[][2] = {
      {"a=x:", "a=candidate:"}, {"aa", "ab"}, {"aba", "b"}, {"a=", "m="}};
  const auto& prefixes = kPrefixes[input.number(4)];
  require(text.removeLines(prefixes) == removeOneByOne(model, prefixes));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::size_t capacity = 1 + input.number(2048);
  std::string model = input.text(input.number(capacity));
  // An exactly sized block lets the sanitizer see every access behind the capacity.
  const auto buffer = std::make_unique<char[]>(capacity);
  std::memcpy(buffer.get(), model.c_str(), model.size() + 1);
  SdpText text(buffer.get(), capacity);
  for (int step = 0; step < 64 && !input.empty(); ++step) {
    if (input.number(4) == 0) {
      removeOnce(input, text, model);
    } else {
      replaceOnce(input, text, model, capacity);
    }
    require(text.view() == model && std::strlen(buffer.get()) == model.size());
    require(text.room() == capacity - 1 - model.size());
  }
  return 0;
}
