#include "calls/anonymizer.h"

#include <cstddef>

#include "calls/anonymousMessage.h"

namespace tool {

std::string Anonymizer::text(std::string_view message) {
  std::string written;
  written.reserve(message.size() + message.size() / 4);
  // What is learned from a message may stand in front of the place that it is learned from, so that is known next time.
  const std::size_t known = replacements_.known();
  writeMessage(replacements_, message, written);
  if (replacements_.known() == known) return written;
  written.clear();
  writeMessage(replacements_, message, written);
  return written;
}

Flow Anonymizer::flow(const Flow& flow) {
  Flow given = flow;
  given.source.address = replacements_.addresses.of(flow.source.address);
  given.destination.address = replacements_.addresses.of(flow.destination.address);
  return given;
}

CapturedMessage Anonymizer::message(const CapturedMessage& message) {
  text_ = text(message.text);
  CapturedMessage given = message;
  given.text = text_;
  given.flow = flow(message.flow);
  return given;
}

}  // namespace tool
