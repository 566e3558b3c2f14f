// RTCP feedback of an offer.

#include "answer/feedback.h"

#include <algorithm>

namespace sdp::exchange {

std::string joinedFields(std::string_view text) {
  std::string joined;
  for (const std::string_view field : Fields(text)) {
    if (!joined.empty()) joined += ' ';
    joined += field;
  }
  return joined;
}

OfferedFeedback::OfferedFeedback(const Section& section) {
  for (const Attribute& attribute : section.attributes("rtcp-fb")) {
    const Fields fields = attribute.fields();
    const Fields::Iterator payload = fields.begin();
    values_.emplace_back(*payload, joinedFields(payload.rest()));
  }
  std::sort(values_.begin(), values_.end());
}

bool OfferedFeedback::has(std::string_view payload, std::string_view value) const {
  const auto isLess = [](const auto& a, const std::pair<std::string_view, std::string_view>& b) {
    return a.first != b.first ? a.first < b.first : a.second < b.second;
  };
  const std::pair wanted(payload, value);
  const auto place = std::lower_bound(values_.begin(), values_.end(), wanted, isLess);
  return place != values_.end() && place->first == payload && place->second == value;
}

}  // namespace sdp::exchange
