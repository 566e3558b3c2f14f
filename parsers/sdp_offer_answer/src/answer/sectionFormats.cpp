// Writing accepted sections: the attributes of formats, in the numbers of the offer.

#include <algorithm>

#include "answer/sectionWriter.h"
#include "parameters.h"

namespace sdp::exchange {
namespace {

/// An attribute of a format: the value in front of its payload type, that, and what stands behind.
struct FormatLine {
  std::string_view before;
  std::string_view payload;
  std::string_view behind;
};

FormatLine readFormatLine(const Attribute& attribute) {
  const std::string_view value = attribute.value.value_or(std::string_view());
  const Fields::Iterator field = attribute.fields().begin();
  const std::string_view payload = *field;
  const std::string_view behind = field.rest();
  return {value.substr(0, value.size() - payload.size() - behind.size()), payload, behind};
}

constexpr std::string_view kAll = "*";

bool isNumber(std::string_view text) { return readNumber(text).has_value(); }

/// Whether what stands behind a payload type is NAME/CLOCK or NAME/CLOCK/CHANNELS; other rtpmap say nothing.
bool tellsEncoding(std::string_view behind) {
  const std::string_view encoding = Fields(behind)[0];
  const std::size_t slash = std::min(encoding.find('/'), encoding.size());
  const std::string_view numbers = encoding.substr(std::min(slash + 1, encoding.size()));
  const std::size_t next = numbers.find('/');
  if (slash == 0 || !isNumber(numbers.substr(0, next))) return false;
  return next == std::string_view::npos || isNumber(numbers.substr(next + 1));
}

}  // namespace

const std::vector<std::size_t>& SectionWriter::answersTo(std::string_view localPayload) const {
  static const std::vector<std::size_t> kNone;
  const Codec* const codec = section_.localFormats->find(localPayload);
  return codec == nullptr ? kNone : answers_[section_.localFormats->placeOf(*codec)];
}

void SectionWriter::takeFormat(const Attribute& attribute) {
  const FormatLine line = readFormatLine(attribute);
  if (line.payload == kAll) return out_.add(attribute);
  if (attribute.name == "rtpmap" && tellsEncoding(line.behind)) {
    const Codec* const codec = section_.localFormats->find(line.payload);
    if (codec != nullptr) hasRtpmap_[section_.localFormats->placeOf(*codec)] = true;
  }
  for (const std::size_t pair : answersTo(line.payload)) {
    const std::string_view payload = section_.formats.pairs[pair].offered->payload;
    out_.add({"a=", attribute.name, ":", line.before, payload, line.behind});
  }
}

void SectionWriter::takeParameters(const Attribute& attribute) {
  const FormatLine line = readFormatLine(attribute);
  if (line.payload == kAll) return out_.add(attribute);
  const Codec* const codec = section_.localFormats->find(line.payload);
  if (codec == nullptr) return;
  const std::size_t number = fmtpCount_[section_.localFormats->placeOf(*codec)]++;
  for (const std::size_t pair : answersTo(line.payload)) {
    const std::string_view payload = section_.formats.pairs[pair].offered->payload;
    out_.add({"a=fmtp:", line.before, payload, parameters_[pair].applied(number, line.behind)});
  }
}

void SectionWriter::takeFeedback(const Attribute& attribute) {
  const FormatLine line = readFormatLine(attribute);
  const std::string value = joinedFields(line.behind);
  const bool isForAll = line.payload == kAll;
  const bool isOfferedForAll = feedback_.has(kAll, value);
  if (isForAll && isOfferedForAll) return writeFeedback(kAll, line.behind);
  const auto writeIfOffered = [&](const FormatPair& pair) {
    const std::string_view payload = pair.offered->payload;
    if (isOfferedForAll || feedback_.has(payload, value)) writeFeedback(payload, line.behind);
  };
  const std::vector<FormatPair>& pairs = section_.formats.pairs;
  if (isForAll) {
    for (const FormatPair& pair : pairs) writeIfOffered(pair);
  } else {
    for (const std::size_t pair : answersTo(line.payload)) writeIfOffered(pairs[pair]);
  }
}

/// Writes a line that does not stand there yet.
void SectionWriter::writeFeedback(std::string_view payload, std::string_view rest) {
  const std::string key = std::string(payload).append(" ").append(joinedFields(rest));
  if (writtenFeedback_.insert(key).second) out_.add({"a=rtcp-fb:", payload, rest});
}

/// What the local section does not say, since it has another number that needs no words.
void SectionWriter::addFormats() {
  const std::vector<FormatPair>& pairs = section_.formats.pairs;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const Codec& codec = *pairs[i].offered;
    const bool hasRtpmap = hasRtpmap_[section_.localFormats->placeOf(*pairs[i].local)];
    if (section_.offered.isRtp() && !hasRtpmap && codec.payload != pairs[i].local->payload) {
      const std::string channels = codec.channels == 1 ? "" : "/" + std::to_string(codec.channels);
      out_.add({"a=rtpmap:", codec.payload, " ", codec.name, "/", std::to_string(codec.clockRate), channels});
    }
    if (parameters_[i].needsLine()) out_.add({"a=fmtp:", codec.payload, parameters_[i].applied(0, "")});
  }
}

}  // namespace sdp::exchange
