// The feedback that both sides have.

#include "agreedFeedback.h"

#include <algorithm>
#include <tuple>

#include "parameters.h"

namespace sdp::exchange {
namespace {

using Value = FeedbackValues::Value;

const Value* find(std::span<const Value> values, std::string_view text) {
  const auto place =
      std::lower_bound(values.begin(), values.end(), text,
                       [](const Value& value, std::string_view asked) { return value.text < asked; });
  return place != values.end() && place->text == text ? &*place : nullptr;
}

}  // namespace

FeedbackValues::FeedbackValues(const Section& section, const CodecList& codecs) : codecCount_(codecs.size()) {
  std::size_t line = 0;
  for (const Attribute& attribute : section.attributes("rtcp-fb")) {
    ++line;
    const Fields fields = attribute.fields();
    const Fields::Iterator payload = fields.begin();
    if (payload == Fields::end()) continue;
    const Codec* const codec = codecs.find(*payload);
    if (codec == nullptr && *payload != "*") continue;
    const std::size_t place = codec == nullptr ? codecCount_ : codecs.placeOf(*codec);
    values_.push_back({place, trimmed(payload.rest()), line});
  }
  std::sort(values_.begin(), values_.end(), [](const Value& a, const Value& b) {
    return std::tie(a.codec, a.text, a.line) < std::tie(b.codec, b.text, b.line);
  });
  const auto isSame = [](const Value& a, const Value& b) { return a.codec == b.codec && a.text == b.text; };
  values_.erase(std::unique(values_.begin(), values_.end(), isSame), values_.end());
}

std::span<const Value> FeedbackValues::of(std::size_t codec) const {
  const auto begin =
      std::lower_bound(values_.begin(), values_.end(), codec,
                       [](const Value& value, std::size_t asked) { return value.codec < asked; });
  const auto end = std::upper_bound(
      begin, values_.end(), codec, [](std::size_t asked, const Value& value) { return asked < value.codec; });
  return {begin, end};
}

CommonFeedback::CommonFeedback(const FeedbackValues& ours, const FeedbackValues& theirs)
    : ours_(ours), theirs_(theirs) {
  for (const Value& value : ours.ofAll()) {
    if (find(theirs.ofAll(), value.text) != nullptr) ofAll_.push_back(value);
  }
}

std::vector<std::string> CommonFeedback::of(std::size_t codec, std::size_t other) const {
  std::vector<Value> common = ofAll_;
  const std::span<const Value> others = theirs_.of(other);
  for (const Value& value : ours_.of(codec)) {
    const bool isTheirs = find(others, value.text) != nullptr || find(theirs_.ofAll(), value.text) != nullptr;
    if (isTheirs) common.push_back(value);
  }
  for (const Value& value : others) {
    const Value* const own = find(ours_.ofAll(), value.text);
    if (own != nullptr) common.push_back(*own);
  }
  std::sort(common.begin(), common.end(), [](const Value& a, const Value& b) {
    return std::tie(a.text, a.line) < std::tie(b.text, b.line);
  });
  const auto isSame = [](const Value& a, const Value& b) { return a.text == b.text; };
  common.erase(std::unique(common.begin(), common.end(), isSame), common.end());
  std::sort(common.begin(), common.end(), [](const Value& a, const Value& b) { return a.line < b.line; });
  std::vector<std::string> texts;
  texts.reserve(common.size());
  for (const Value& value : common) texts.emplace_back(value.text);
  return texts;
}

}  // namespace sdp::exchange
