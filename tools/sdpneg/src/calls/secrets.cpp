#include "calls/secrets.h"

#include <map>
#include <string>
#include <string_view>

#include "calls/secretFinder.h"

namespace tool {
namespace {

/// Numbers of secrets in the order in which they appear.
using Numbers = std::map<std::string, std::size_t, std::less<>>;

std::size_t numberOf(Numbers& numbers, std::string_view secret) {
  const auto known = numbers.find(secret);
  if (known != numbers.end()) return known->second;
  return numbers.emplace(secret, numbers.size() + 1).first->second;
}

/// What stands for a secret: lines stay as many as they were, and folded.
std::string maskOf(Numbers& numbers, std::string_view secret) {
  std::string mask = "[key " + std::to_string(numberOf(numbers, secret)) + "]";
  const std::size_t size = mask.size();
  for (const char c : secret) {
    if (c == '\r' || c == '\n') mask += c;
  }
  if (mask.size() != size) mask += ' ';
  return mask;
}

/// Masks a text that is told of a call.
void maskText(std::string& text, Numbers& numbers) {
  std::string masked;
  std::size_t at = 0;
  for (const SecretPlace& place : findSecrets(text)) {
    masked.append(text, at, place.begin - at);
    masked += maskOf(numbers, std::string_view(text).substr(place.begin, place.end - place.begin));
    at = place.end;
  }
  if (at != 0) text = masked.append(text, at);
}

void maskTold(Call& call, Numbers& numbers) {
  maskText(call.from, numbers);
  maskText(call.to, numbers);
  for (Leg& leg : call.legs) maskText(leg.joinDetail, numbers);
}

/// Writes a text anew and follows two places of it.
void maskMessage(CallMessage& message, Numbers& numbers) {
  const std::vector<SecretPlace> places = findSecrets(message.text);
  if (places.empty()) return;
  const std::string_view text = message.text;
  std::string masked;
  masked.reserve(text.size());
  const std::size_t oldEnd = message.sdpBegin + message.sdpSize;
  std::size_t begin = message.sdpBegin;
  std::size_t end = oldEnd;
  std::size_t at = 0;
  for (const SecretPlace& place : places) {
    masked += text.substr(at, place.begin - at);
    const std::size_t maskBegin = masked.size();
    masked += maskOf(numbers, text.substr(place.begin, place.end - place.begin));
    // A body that begins or ends within a secret has all of its mask.
    const auto moved = [&](std::size_t old, std::size_t within) {
      return old < place.end ? within : masked.size() + (old - place.end);
    };
    if (message.sdpBegin > place.begin) begin = moved(message.sdpBegin, maskBegin);
    if (oldEnd > place.begin) end = moved(oldEnd, masked.size());
    at = place.end;
  }
  masked += text.substr(at);
  message.sdpBegin = begin;
  message.sdpSize = end - begin;
  message.text = std::move(masked);
}

}  // namespace

void maskSecrets(Call& call) {
  Numbers numbers;
  for (CallMessage& message : call.messages) maskMessage(message, numbers);
  maskTold(call, numbers);
}

void maskSecretsTold(Call& call) {
  Numbers numbers;
  maskTold(call, numbers);
}

}  // namespace tool
