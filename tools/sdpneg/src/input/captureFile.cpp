#include "input/captureFile.h"

#include <array>
#include <iterator>

#include "text/search.h"

namespace tool {
namespace {

using sdpneg::startsWith;
using Magic = std::string_view;

/// Of pcap, in both byte orders, with times in micro- and in nanoseconds.
constexpr std::array<Magic, 4> kPcapMagics = {"\xA1\xB2\xC3\xD4", "\xD4\xC3\xB2\xA1", "\xA1\xB2\x3C\x4D",
                                              "\x4D\x3C\xB2\xA1"};
/// Of pcapng: its first block's type could begin a text, so the mark of the byte order counts as well.
constexpr Magic kPcapngType = "\n\r\r\n";
constexpr std::size_t kPcapngMarkAt = 8;
constexpr std::array<Magic, 2> kPcapngMarks = {"\x1A\x2B\x3C\x4D", "\x4D\x3C\x2B\x1A"};
/// Of snoop (RFC 1761).
constexpr Magic kSnoopMagic = {"snoop\0\0\0", 8};

template <std::size_t Count>
bool startsWithOneOf(std::string_view bytes, const std::array<Magic, Count>& magics) {
  for (const Magic magic : magics) {
    if (startsWith(bytes, magic)) return true;
  }
  return false;
}

}  // namespace

const char* captureFormat(std::string_view bytes) {
  if (startsWithOneOf(bytes, kPcapMagics)) return "pcap";
  if (startsWith(bytes, kSnoopMagic)) return "snoop";
  const bool isPcapng = startsWith(bytes, kPcapngType) && bytes.size() > kPcapngMarkAt &&
                        startsWithOneOf(bytes.substr(kPcapngMarkAt), kPcapngMarks);
  return isPcapng ? "pcapng" : nullptr;
}

std::optional<Problem> captureProblem(std::string_view bytes) {
  const char* const format = captureFormat(bytes);
  if (format == nullptr) return std::nullopt;
  const bool isRead = std::string_view(format) != "snoop";
  return Problem{{},
                 std::string("is a capture file (") + format +
                     (isRead ? "): 'sdpneg calls' reads it" : "), which is not read")};
}

}  // namespace tool
