// What payload numbers stood for, kept as a text.

#include <bitset>

#include "parameters.h"
#include "payloads.h"

namespace sdp::exchange {
namespace {

constexpr std::size_t kPayloads = 128;

/// A section of the text.
class Memory {
 public:
  /// Adds formats whose numbers have no meaning yet. Each number counts once, however many zeros a body writes in front
  /// of it: what is remembered would grow with every other spelling.
  void add(const Section& section) {
    for (const Format& format : section.formats()) {
      const std::optional<std::uint64_t> number = readNumber(format.format);
      if (!number || *number >= kPayloads || numbers_.test(*number)) continue;
      numbers_.set(*number);
      const std::string payload = std::to_string(*number);
      formats_.append(" ").append(payload);
      if (format.encoding) addLine("a=rtpmap:", payload, textOf(*format.encoding));
      if (format.fmtp) addLine("a=fmtp:", payload, *format.fmtp);
    }
  }

  void appendTo(std::string& text, std::string_view media) const {
    // A section without RTP keeps the place.
    text.append("m=").append(media).append(formats_.empty() ? " 0 - -" : " 0 RTP/AVP");
    text.append(formats_).append("\r\n").append(lines_);
  }

 private:
  void addLine(std::string_view name, std::string_view payload, std::string_view value) {
    lines_.append(name).append(payload).append(" ").append(value).append("\r\n");
  }
  std::string formats_;
  std::string lines_;
  std::bitset<kPayloads> numbers_;
};

}  // namespace

std::string textOf(const Encoding& encoding) {
  std::string text(encoding.name);
  text.append("/").append(std::to_string(encoding.clockRate));
  if (encoding.channels != 1) text.append("/").append(std::to_string(encoding.channels));
  return text;
}

std::string remembered(const Document& body, const Document& before) {
  std::string text;
  for (const Section& section : body.sections()) {
    const Section past = before.section(section.index());
    const bool isSameMedia = past.isReadable() && past.media() == section.media();
    Memory memory;
    if (section.isRtp() && !section.isDisabled()) memory.add(section);
    if (isSameMedia && past.isRtp()) memory.add(past);
    memory.appendTo(text, section.isReadable() ? section.media() : "-");
  }
  return text;
}

}  // namespace sdp::exchange
