#include "captures/capture.h"

#include <utility>

#include "captures/packetFile.h"
#include "captures/packetReader.h"
#include "captures/textExport.h"
#include "input/captureFile.h"
#include "text/search.h"

namespace tool {
namespace {

/// Enough to tell a capture from a text.
constexpr std::size_t kTelling = 512;
constexpr std::size_t kTextChunk = std::size_t{64} * 1024;

}  // namespace

Capture::Capture(const Input& input, const CaptureOptions& options, CaptureOutput& output)
    : Capture(openInput(input, options.watch), options, output) {}

Capture::Capture(std::unique_ptr<ByteSource> source, const CaptureOptions& options, CaptureOutput& output)
    : source_(inflated(std::move(source))) {
  open(options, output);
}

Capture::~Capture() = default;

void Capture::open(const CaptureOptions& options, CaptureOutput& output) {
  const std::string_view front = source_->peek(kTelling);
  const char* const format = captureFormat(front);
  if (source_->problem() && front.empty()) return;
  if (format == nullptr && sdpneg::contains(front, std::string_view("\0", 1))) {
    problem_ = Problem{{}, "is neither a capture (pcap, pcapng) nor a text"};
  } else if (format == nullptr && !options.filter.empty()) {
    problem_ = Problem{{}, "is a text, and packets alone can be filtered"};
  } else if (format == nullptr) {
    text_ = std::make_unique<TextExport>(output);
  } else if (format == std::string_view("snoop")) {
    problem_ = Problem{{}, "is a capture file (snoop) of a format that is not read"};
  } else {
    file_ = std::make_unique<PacketFile>(*source_, options.filter);
    packets_ = std::make_unique<PacketReader>(file_->linkType(), output);
  }
}

bool Capture::step() {
  if (isDone_) return false;
  if (file_ ? stepFile() : text_ && stepText()) return true;
  finish();
  return false;
}

bool Capture::stepFile() {
  const std::optional<Frame> frame = file_->next();
  if (frame) packets_->take(frame->bytes, frame->time);
  return frame.has_value();
}

bool Capture::stepText() {
  char bytes[kTextChunk];
  const std::size_t length = source_->read(bytes, sizeof bytes);
  text_->take({bytes, length});
  return length != 0;
}

void Capture::finish() {
  if (isDone_) return;
  isDone_ = true;
  if (packets_) packets_->flush();
  if (text_) text_->flush();
}

std::optional<Problem> Capture::problem() const {
  if (problem_) return problem_;
  const std::optional<Problem> ofSource = source_->problem();
  return ofSource || !file_ ? ofSource : file_->problem();
}

std::optional<Problem> readCapture(const Input& input, const CaptureOptions& options, CaptureOutput& output) {
  Capture capture(input, options, output);
  while (capture.step()) {
  }
  return capture.problem();
}

}  // namespace tool
