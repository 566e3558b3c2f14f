// Reading and changing the parameters of a fmtp.

#include "parameters.h"

#include <algorithm>
#include <limits>

#include "sdpDocumentFields.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// Where a parameter stands in its fmtp.
struct Place {
  std::size_t begin;  ///< of what stands between the semicolons
  std::size_t end;
  std::optional<std::string_view> value;
};

std::optional<Place> placeOf(std::string_view fmtp, std::string_view name) {
  for (std::size_t begin = 0; begin < fmtp.size();) {
    const std::size_t end = std::min(fmtp.find(';', begin), fmtp.size());
    const std::string_view parameter = fmtp.substr(begin, end - begin);
    const std::size_t equals = std::min(parameter.find('='), parameter.size());
    if (sdpneg::equalNoCase(trimmed(parameter.substr(0, equals)), name)) {
      Place place{begin, end, std::nullopt};
      if (equals != parameter.size()) place.value = trimmed(parameter.substr(equals + 1));
      return place;
    }
    begin = end + 1;
  }
  return std::nullopt;
}

std::string joined(std::string_view a, std::string_view b, std::string_view c) {
  std::string text;
  text.reserve(a.size() + b.size() + c.size());
  return text.append(a).append(b).append(c);
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && Fields::isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && Fields::isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::optional<std::string_view> parameterOf(std::string_view fmtp, std::string_view name) {
  const std::optional<Place> place = placeOf(fmtp, name);
  if (!place) return std::nullopt;
  return place->value.value_or(std::string_view());
}

std::optional<std::uint64_t> readNumber(std::string_view text) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  if (text.empty()) return std::nullopt;
  std::uint64_t number = 0;
  for (const char c : text) {
    if (!sdpneg::isDigit(c)) return std::nullopt;
    const auto digit = static_cast<std::uint64_t>(c - '0');
    number = number > (kMost - digit) / 10 ? kMost : number * 10 + digit;
  }
  return number;
}

std::string withParameter(std::string_view fmtp, std::string_view name, std::string_view value) {
  const std::optional<Place> place = placeOf(fmtp, name);
  const std::string parameter = joined(name, "=", value);
  if (!place) return joined(fmtp, trimmed(fmtp).empty() ? "" : ";", parameter);
  if (!place->value) {
    const std::string_view present = trimmed(fmtp.substr(place->begin, place->end - place->begin));
    const auto end = static_cast<std::size_t>(present.data() - fmtp.data()) + present.size();
    return joined(fmtp.substr(0, end), joined("=", value, ""), fmtp.substr(end));
  }
  const auto begin = static_cast<std::size_t>(place->value->data() - fmtp.data());
  return joined(fmtp.substr(0, begin), value, fmtp.substr(begin + place->value->size()));
}

}  // namespace sdp::exchange
