#include "captures/logContext.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>

#include "text/search.h"

namespace tool {
namespace {

constexpr std::int64_t kMicroseconds = 1000000;
constexpr int kSecondsOfDay = 86400;

/// Takes the fields of a date and time from a text's front.
class TimeFields {
 public:
  explicit TimeFields(std::string_view text) : rest_(text) {}

  bool isGood() const { return isGood_; }
  bool atEnd() const { return rest_.empty(); }

  /// A number of exactly so many digits.
  int number(std::size_t digits) {
    int value = 0;
    for (std::size_t i = 0; i < digits; ++i) value = value * 10 + digit();
    return value;
  }
  /// One of some characters.
  char oneOf(std::string_view characters) {
    const char c = rest_.empty() ? '\0' : rest_.front();
    isGood_ = isGood_ && !rest_.empty() && sdpneg::contains(characters, std::string_view(&c, 1));
    if (isGood_) rest_.remove_prefix(1);
    return c;
  }
  /// Microseconds behind a point, where there is one.
  std::int64_t fraction() {
    if (rest_.size() < 2 || (rest_[0] != '.' && rest_[0] != ',') || !sdpneg::isDigit(rest_[1])) return 0;
    rest_.remove_prefix(1);
    std::int64_t value = 0;
    for (std::int64_t unit = kMicroseconds / 10; !rest_.empty() && sdpneg::isDigit(rest_.front());
         unit /= 10) {
      value += unit * (rest_.front() - '0');
      rest_.remove_prefix(1);
    }
    return value;
  }
  /// Seconds by which the local time is ahead of UTC. What is no zone is left.
  int zone() {
    if (sdpneg::startsWith(rest_, "Z")) {
      rest_.remove_prefix(1);
      return 0;
    }
    if (rest_.empty() || (rest_.front() != '+' && rest_.front() != '-')) return 0;
    const bool isBehind = rest_.front() == '-';
    TimeFields fields(rest_.substr(1));
    const int hours = fields.number(2);
    if (!fields.rest_.empty() && fields.rest_.front() == ':') fields.oneOf(":");
    const int minutes = fields.number(2);
    if (!fields.isGood_ || hours > 14 || minutes > 59) return 0;
    const int seconds = (hours * 60 + minutes) * 60;
    rest_ = fields.rest_;
    return isBehind ? -seconds : seconds;
  }

 private:
  int digit() {
    isGood_ = isGood_ && !rest_.empty() && sdpneg::isDigit(rest_.front());
    if (!isGood_) return 0;
    const int value = rest_.front() - '0';
    rest_.remove_prefix(1);
    return value;
  }

  std::string_view rest_;
  bool isGood_ = true;
};

/// The time that some fields begin with.
CaptureTime timeOf(TimeFields& fields) {
  const std::chrono::year year(fields.number(4));
  const char separator = fields.oneOf("-/");
  const std::chrono::month month(static_cast<unsigned int>(fields.number(2)));
  fields.oneOf(std::string_view(&separator, 1));
  const std::chrono::day day(static_cast<unsigned int>(fields.number(2)));
  fields.oneOf(" T");
  const int hours = fields.number(2);
  fields.oneOf(":");
  const int minutes = fields.number(2);
  fields.oneOf(":");
  const int seconds = fields.number(2);
  const std::chrono::year_month_day date(year, month, day);
  if (!fields.isGood() || !date.ok() || hours > 23 || minutes > 59 || seconds > 60) return std::nullopt;
  const std::int64_t fraction = fields.fraction();
  const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  const std::int64_t ofDay = (hours * 60 + minutes) * 60 + seconds - fields.zone();
  const std::int64_t time = (days * kSecondsOfDay + ofDay) * kMicroseconds + fraction;
  return time < 0 ? CaptureTime() : time;
}

/// An endpoint with a transport in front of it, as in "UDP:192.0.2.1:5060" or "udp/[192.0.2.1]:5060", and without what
/// ends a sentence or a list.
struct LogEndpoint {
  Transport transport = Transport::unknown;
  Endpoint endpoint;
};

Transport transportOf(std::string_view name) {
  if (sdpneg::equalNoCase(name, "udp")) return Transport::udp;
  if (sdpneg::equalNoCase(name, "tcp")) return Transport::tcp;
  return sdpneg::equalNoCase(name, "ws") ? Transport::webSocket : Transport::unknown;
}

std::optional<LogEndpoint> parseLogEndpoint(std::string_view word) {
  constexpr std::string_view kAround = "<>(),;'\"";
  word.remove_prefix(std::min(word.find_first_not_of(kAround), word.size()));
  while (!word.empty() && sdpneg::contains(":<>(),;'\"", word.substr(word.size() - 1))) {
    word.remove_suffix(1);
  }
  LogEndpoint found;
  if (const auto endpoint = parseEndpoint(word)) {
    found.endpoint = *endpoint;
    return found;
  }
  const std::size_t mark = word.find_first_of(":/");
  if (mark == std::string_view::npos) return std::nullopt;
  const auto endpoint = parseEndpoint(word.substr(mark + 1));
  if (!endpoint) return std::nullopt;
  return LogEndpoint{transportOf(word.substr(0, mark)), *endpoint};
}

}  // namespace

CaptureTime findTime(std::string_view line) {
  for (std::size_t at = 0; at + 19 <= line.size(); ++at) {
    const bool begins = sdpneg::isDigit(line[at]) && (line[at + 4] == '-' || line[at + 4] == '/') &&
                        (at == 0 || !sdpneg::isDigit(line[at - 1]));
    if (!begins) continue;
    TimeFields fields(line.substr(at));
    if (const CaptureTime time = timeOf(fields)) return time;
  }
  return std::nullopt;
}

CaptureTime parseTime(std::string_view text) {
  constexpr std::string_view kShort = "2024-01-02 10:11";
  constexpr std::string_view kDate = "2024-01-02";
  std::string whole(text);
  if (text.size() == kDate.size()) whole += " 00:00";
  if (whole.size() == kShort.size()) whole += ":00";
  TimeFields fields(whole);
  const CaptureTime time = timeOf(fields);
  return fields.atEnd() ? time : std::nullopt;
}

void LogContext::readLine(std::string_view line) {
  if (const CaptureTime found = findTime(line)) time = found;
  std::optional<LogEndpoint> before;
  std::string_view mark;
  sdpneg::Words words(line);
  for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
    const std::optional<LogEndpoint> found = parseLogEndpoint(word);
    if (found && mark == "->" && before) {
      flow = {before->endpoint, found->endpoint};
    } else if (found && sdpneg::equalNoCase(mark, "from")) {
      flow.source = found->endpoint;
    } else if (found && sdpneg::equalNoCase(mark, "to")) {
      flow.destination = found->endpoint;
    }
    if (found && found->transport != Transport::unknown) transport = found->transport;
    if (word != "->") before = found;
    mark = word;
  }
}

bool hasArrow(std::string_view line) {
  if (!sdpneg::contains(line, " -> ")) return false;
  LogContext context;
  context.readLine(line);
  return context.flow.source.isKnown() && context.flow.destination.isKnown();
}

}  // namespace tool
