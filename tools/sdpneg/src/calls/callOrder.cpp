#include "calls/callOrder.h"

#include <utility>

namespace tool {
namespace {

std::size_t bytesOf(const Call& call) {
  std::size_t bytes = sizeof(Call);
  for (const CallMessage& message : call.messages) bytes += sizeof(CallMessage) + message.text.size();
  return bytes;
}

}  // namespace

CallOrder::CallOrder(CallSink sink, std::size_t mostWaiting)
    : sink_(std::move(sink)), mostWaiting_(mostWaiting) {}

void CallOrder::passFirst() {
  Call call = std::move(waiting_.begin()->second);
  waiting_.erase(waiting_.begin());
  bytes_ -= bytesOf(call);
  call.number = ++passed_;
  sink_(std::move(call));
}

void CallOrder::add(Call&& call) {
  bytes_ += bytesOf(call);
  const std::size_t number = call.number;
  waiting_.emplace(number, std::move(call));
  while (bytes_ > mostWaiting_ && !waiting_.empty()) passFirst();
}

void CallOrder::release(std::size_t lowestOpen) {
  while (!waiting_.empty() && waiting_.begin()->first < lowestOpen) passFirst();
}

void CallOrder::finish() {
  while (!waiting_.empty()) passFirst();
}

}  // namespace tool
