#include "report/times.h"

#include <chrono>

namespace tool {
namespace {

using std::chrono::microseconds;

constexpr std::int64_t kSecond = 1000000;

std::string padded(std::int64_t value, std::size_t width) {
  std::string digits = std::to_string(value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

struct Parts {
  std::string date;       ///< "2026-11-22"
  std::string timeOfDay;  ///< "10:00:00"
  std::int64_t fraction;  ///< in microseconds
};

/// Years have four digits in what is written here.
std::optional<Parts> partsOf(CaptureTime time) {
  if (!time) return std::nullopt;
  const std::chrono::sys_time<microseconds> point{microseconds(*time)};
  const auto day = std::chrono::floor<std::chrono::days>(point);
  const std::chrono::year_month_day date{day};
  const int year = static_cast<int>(date.year());
  if (!date.ok() || year < 0 || year > 9999) return std::nullopt;
  const std::int64_t rest = (point - day).count();
  const std::int64_t seconds = rest / kSecond;
  return Parts{padded(year, 4) + "-" + padded(static_cast<unsigned int>(date.month()), 2) + "-" +
                   padded(static_cast<unsigned int>(date.day()), 2),
               padded(seconds / 3600, 2) + ":" + padded(seconds / 60 % 60, 2) + ":" + padded(seconds % 60, 2),
               rest % kSecond};
}

}  // namespace

std::string readableTime(CaptureTime time) {
  const std::optional<Parts> parts = partsOf(time);
  if (!parts) return "-";
  return parts->date + " " + parts->timeOfDay + "." + padded(parts->fraction / 1000, 3);
}

std::string secondsBetween(CaptureTime from, CaptureTime to) {
  if (!from || !to) return "-";
  // Times of hostile captures are as far apart as numbers can be.
  const std::uint64_t between = *to >= *from
                                    ? static_cast<std::uint64_t>(*to) - static_cast<std::uint64_t>(*from)
                                    : static_cast<std::uint64_t>(*from) - static_cast<std::uint64_t>(*to);
  const auto milliseconds = static_cast<std::int64_t>(between / 1000);
  return (*to >= *from ? "" : "-") + std::to_string(milliseconds / 1000) + "." +
         padded(milliseconds % 1000, 3);
}

}  // namespace tool
