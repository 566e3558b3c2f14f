#ifndef SDP_OFFER_ANSWER_PARAMETERS_H
#define SDP_OFFER_ANSWER_PARAMETERS_H

// The parameters of a format, as its fmtp has them: NAME=VALUE or NAME, with semicolons between (RFC 4855, section 3).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sdp::exchange {

/// A text without the blanks around it.
std::string_view trimmed(std::string_view text);

/// The value of the first parameter of a name, which compares without regard to case: empty for one without a value,
/// nothing where there is none.
std::optional<std::string_view> parameterOf(std::string_view fmtp, std::string_view name);
/// A fmtp in which a parameter has a value: in the place of the present value, else behind the others.
std::string withParameter(std::string_view fmtp, std::string_view name, std::string_view value);
/// The number that a text of digits is, at most that of the type; nothing for others.
std::optional<std::uint64_t> readNumber(std::string_view text);

}  // namespace sdp::exchange

#endif
