#include "calls/messageFacts.h"

#include <algorithm>
#include <array>
#include <utility>

#include "input/messageHeader.h"
#include "text/search.h"

namespace tool {
namespace {

/// A value of the form `"name" <uri>;parameters` (RFC 3261 25.1, name-addr and addr-spec).
struct NamedAddress {
  std::string_view uri;
  std::string_view parameters;  ///< from their first semicolon on
};

std::string_view orNothing(std::string_view text, std::size_t begin) {
  return begin < text.size() ? text.substr(begin) : std::string_view();
}

std::size_t behindQuotes(std::string_view value) {
  if (!sdpneg::startsWith(value, "\"")) return 0;
  for (std::size_t at = 1; at < value.size(); ++at) {
    if (value[at] == '\\') {
      ++at;
    } else if (value[at] == '"') {
      return at + 1;
    }
  }
  return 0;
}

NamedAddress addressOf(std::string_view value) {
  const std::string_view rest = value.substr(behindQuotes(value));
  const std::size_t open = rest.find('<');
  if (open == std::string_view::npos) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    return {rest.substr(0, end), rest.substr(end)};
  }
  const std::size_t close = std::min(rest.find('>', open), rest.size());
  const std::string_view behind = rest.substr(close);
  return {rest.substr(open + 1, close - open - 1), orNothing(behind, behind.find(';'))};
}

/// Empty without one.
std::string parameterOf(std::string_view value, std::string_view name) {
  std::optional<std::string> found = findParameter(value, name);
  return found ? *std::move(found) : std::string();
}

std::string tagOf(const SipView& view, KnownField name) {
  const std::optional<std::string_view> value = view.value(name);
  if (!value) return {};
  const std::string_view parameters = addressOf(*value).parameters;
  return parameters.empty() ? std::string() : parameterOf(parameters, "tag");
}

std::string branchOf(const SipView& view) {
  const std::string_view value = view.value(KnownField::via).value_or("");
  return parameterOf(value.substr(0, value.find(',')), "branch");
}

std::uint64_t numberOf(std::string_view word) {
  return !word.empty() && sdpneg::isDigit(word.front()) ? sdpneg::numberOrZero<std::uint64_t>(word) : 0;
}

TransactionFacts transactionOf(const SipView& view) {
  TransactionFacts facts;
  facts.branch = branchOf(view);
  facts.rseq = numberOf(view.value(KnownField::rseq).value_or(""));
  if (const auto rack = view.value(KnownField::rack)) {
    sdpneg::Words words(*rack);
    facts.ackRseq = numberOf(words.next());
    facts.ackCseq = numberOf(words.next());
  }
  return facts;
}

}  // namespace

std::optional<MessageFacts> factsOf(const SipView& view) {
  const std::optional<std::string_view> callId = view.value(KnownField::callId);
  const std::optional<std::string_view> cseq = view.value(KnownField::cseq);
  if (!callId || callId->empty() || !cseq) return std::nullopt;
  sdpneg::Words words(*cseq);
  const std::string_view number = words.next();
  const std::string_view method = words.next();
  if (number.empty() || !sdpneg::isDigit(number.front()) || method.empty()) return std::nullopt;
  MessageFacts facts;
  facts.callId = unfolded(*callId);
  facts.status = view.status();
  facts.method = facts.status == 0 ? view.method() : method;
  facts.cseq = numberOf(number);
  facts.fromTag = tagOf(view, KnownField::from);
  facts.toTag = tagOf(view, KnownField::to);
  facts.transaction = transactionOf(view);
  return facts;
}

bool asksForAnother(int status) {
  constexpr std::array kStatuses = {401, 407, 413, 415, 416, 420, 421, 422, 488, 494};
  return status / 100 == 3 || std::ranges::find(kStatuses, status) != kStatuses.end();
}

std::string uriOf(std::string_view value) {
  std::string_view uri = addressOf(value).uri;
  // A user part may have parameters of its own.
  const std::size_t at = uri.find('@');
  uri = uri.substr(0, uri.find_first_of(";?", at == std::string_view::npos ? 0 : at));
  return unfolded(uri.substr(std::min(uri.find_first_not_of(" \t\r\n"), uri.size())));
}

std::string_view userOf(std::string_view uri) {
  const std::size_t scheme = uri.find(':');
  if (scheme == std::string_view::npos) return {};
  std::string_view rest = uri.substr(scheme + 1);
  const std::size_t at = rest.rfind('@');
  if (at == std::string_view::npos && !sdpneg::startsWithNoCase(uri, "tel:")) return {};
  rest = rest.substr(0, at);
  return rest.substr(0, rest.find_first_of(";:"));
}

std::string comparableUser(std::string_view user) {
  constexpr std::string_view kSeparators = "-.()";
  std::string digits;
  for (const char c : user) {
    if (sdpneg::isDigit(c)) {
      digits += c;
    } else if (kSeparators.find(c) == std::string_view::npos && !(c == '+' && digits.empty())) {
      return std::string(user);
    }
  }
  if (digits.empty()) return std::string(user);
  return sdpneg::startsWith(digits, "00") ? digits.substr(2) : digits;
}

}  // namespace tool
