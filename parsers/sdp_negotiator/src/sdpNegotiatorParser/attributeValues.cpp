#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "sdpNegotiatorParser.h"
#include "text/search.h"
#include "trace.h"

// Values of attribute lines: periods, silence suppression, echo cancellation, voice-band data.

namespace sdpneg {
namespace {

/// What separates the words of these values.
constexpr std::string_view kSeparators = " \n";

/// Leaves a value that cannot be taken. The body is not refused for it, so this is an error line and no refusal.
/// @return 1
unsigned short leave(const char* message) {
  trace::error("%s", message);
  return 1;
}

void inform(const char* message) { trace::info("%s", message); }

std::optional<std::uint8_t> featureStateOf(std::string_view word) {
  if (word == "-") return FEATURE_STATE_NOT_SPECIFIED;
  if (word == "on") return FEATURE_STATE_ON;
  if (word == "off") return FEATURE_STATE_OFF;
  return std::nullopt;
}

/// Digits, spaces and at most one hyphen, which is neither the first character nor the last.
bool isPtime(std::string_view value) {
  const auto isAllowed = [](char c) { return isDigit(c) || c == ' ' || c == '-'; };
  return std::all_of(value.begin(), value.end(), isAllowed) &&
         std::count(value.begin(), value.end(), '-') <= 1 && !value.starts_with('-') && !value.ends_with('-');
}

/// A period that an mptime value may hold.
std::optional<std::uint8_t> mptimeOf(std::string_view word) {
  if (word == "10") return std::uint8_t{10};
  if (word == "20") return std::uint8_t{20};
  if (word == "30") return std::uint8_t{30};
  return std::nullopt;
}

}  // namespace
}  // namespace sdpneg

unsigned short sdpParserMessage::setCodecPtime(sSdpParsedData& data, const char* value) {
  using namespace sdpneg;
  if (value == nullptr) return 0;
  const std::string_view text = value;
  if (!isPtime(text)) return leave("Invalid a=ptime:<attribute>");
  const std::size_t hyphen = text.find('-');
  data.packetizationPeriod[0] = numberOrZero<std::uint8_t>(text.substr(0, hyphen));
  if (hyphen != npos) data.packetizationPeriod[1] = numberOrZero<std::uint8_t>(text.substr(hyphen + 1));
  return 0;
}

unsigned short sdpParserMessage::setCodecMptime(unsigned char* periods, int noOfFormats, const char* value) {
  using namespace sdpneg;
  if (value == nullptr) return 0;
  Words words(value, kSeparators);
  std::optional<std::uint8_t> period;
  int count = 0;
  for (std::string_view word = words.next(); !word.empty(); word = words.next(), ++count) {
    if (word != "-") {
      period = mptimeOf(word);
      if (!period) return leave("a=mptime:<...> contains invalid values.");
    } else if (!period) {
      return leave("a=mptime:<...> cannnot start with '-'.");
    }
    if (periods != nullptr && count < MAX_SDP_NEGOTIATOR_AUDIO_CODECS) periods[count] = *period;
  }
  if (count == noOfFormats) return 0;
  return leave("a=mptime:<...> must have same no. of packetizations as m=<...> codecs");
}

unsigned short sdpParserMessage::setSilenceSuppression(sSdpParsedData& data, const char* value) {
  using namespace sdpneg;
  if (value == nullptr) return 0;
  const std::optional<std::uint8_t> state = featureStateOf(Words(value, kSeparators).next());
  if (!state) return leave("Invalid a=silenceSupp:<attribute>...");
  data.silenceSuppression = *state;
  return 0;
}

unsigned short sdpParserMessage::setEchoCancellation(sSdpParsedData& data, const char* value) {
  using namespace sdpneg;
  if (value == nullptr) return 0;
  const std::string_view word = Words(value, kSeparators).next();
  const std::optional<std::uint8_t> state = featureStateOf(word);
  if (state) {
    data.echoCancellation = *state;
  } else {
    inform(word.empty() ? "Illegal a=ecan:<attribute>..." : "Unrecognized ecan value");
  }
  return 0;
}

unsigned short sdpParserMessage::setVoiceBandData(sSdpParsedData& data, const char* value) {
  using namespace sdpneg;
  if (value == nullptr) return 0;
  const std::string_view text = value;
  if (!startsWith(text, "0") && !startsWith(text, "8")) {
    inform("Unrecognized gpmd value : SUCCESS returned");
    return 0;
  }
  if (contains(text, "vbd=yes")) {
    constexpr std::int16_t voiceBandDataGain = 44;
    data.silenceSuppression = FEATURE_STATE_OFF;
    data.echoCancellation = FEATURE_STATE_OFF;
    data.gainControl = voiceBandDataGain;
    return 0;
  }
  return contains(text, "vbd=no") ? 1 : 0;
}
