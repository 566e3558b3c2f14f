#ifndef SDPNEG_CAPTURE_CHECKS_H
#define SDPNEG_CAPTURE_CHECKS_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "captures/capturedMessage.h"
#include "captures/sipView.h"

// What the fuzz targets of the readers of captures share.

namespace fuzzing {

inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

/// Keeps the texts that are delivered, and asks each message all that there is to ask.
class Delivered {
 public:
  Delivered() : output([this](const tool::CapturedMessage& message) { check(message); }) {}
  Delivered(const Delivered&) = delete;
  Delivered& operator=(const Delivered&) = delete;

  tool::CaptureOutput output;
  std::vector<std::string> texts;

 private:
  void check(const tool::CapturedMessage& message) {
    texts.emplace_back(message.text);
    require(message.number == texts.size(), "messages are not numbered one by one");
    require(message.text.size() <= tool::kMaxMessageSize + 70000, "a message is too long");
    const tool::SipView view(message.text);
    require(view.kind() != tool::StartLine::none, "a message has no start line");
    const std::string_view body = view.body();
    require(body.empty() || message.text.find(body) != std::string_view::npos,
            "a body is not of its message");
    const auto sdp = view.sdp();
    require(!sdp || message.text.find(*sdp) != std::string_view::npos, "SDP is not of its message");
    for (const auto& field : view.fields()) {
      require(!view.values(field.name).empty() || field.name.size() <= 1, "a field is not found by its name");
      require(tool::unfolded(field.value).find('\n') == std::string::npos, "a value is still folded");
    }
  }
};

}  // namespace fuzzing

#endif
