#include "report/callReport.h"

#include <utility>

#include "report/callLines.h"

namespace tool {
namespace {

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

/// "12 messages (1 repeated, 2 of no call), 2 calls".
std::string summary(const CallTotals& totals, std::size_t calls) {
  std::string text = counted(totals.messages, "message", "messages");
  std::string inside;
  if (totals.retransmissions != 0) inside = std::to_string(totals.retransmissions) + " repeated";
  if (totals.otherMessages != 0)
    inside += (inside.empty() ? "" : ", ") + std::to_string(totals.otherMessages) + " of no call";
  if (!inside.empty()) text += " (" + inside + ")";
  return text + ", " + counted(calls, "call", "calls") + "\n";
}

class LineReport : public CallReport {
 public:
  LineReport(Output& out, const Palette& palette) : out_(out), palette_(palette) {}

  void add(const Call& call) override {
    if (calls_++ == 0) out_.write(callLineHeading(palette_));
    out_.write(callLine(call, palette_));
  }
  void end(const CallTotals& totals) override { out_.write(summary(totals, calls_)); }

 private:
  Output& out_;
  Palette palette_;
  std::size_t calls_ = 0;
};

class TroubleReport : public CallReport {
 public:
  TroubleReport(Output& out, const Palette& palette) : out_(out), palette_(palette) {}

  void add(const Call& call) override {
    if (!call.troubles.empty()) out_.write(troubleLines(call, palette_));
  }
  void end(const CallTotals& /*totals*/) override {}

 private:
  Output& out_;
  Palette palette_;
};

class LadderReport : public CallReport {
 public:
  LadderReport(Output& out, const Palette& palette, std::size_t call, LadderOptions options)
      : out_(out), palette_(palette), call_(call), options_(std::move(options)) {}

  void add(const Call& call) override {
    if (call.number != call_) return;
    out_.write(ladder(call, options_, palette_));
    isDone_ = true;
  }
  bool isDone() const override { return isDone_; }
  void end(const CallTotals& /*totals*/) override {}

 private:
  Output& out_;
  Palette palette_;
  std::size_t call_;
  LadderOptions options_;
  bool isDone_ = false;
};

class JsonReport : public CallReport {
 public:
  JsonReport(Output& out, const CallJsonOptions& options) : out_(out), json_(out_, options) {}

  void add(const Call& call) override { json_.add(call); }
  void end(const CallTotals& totals) override { json_.end(totals); }

 private:
  BufferedOutput out_;
  CallsJson json_;
};

}  // namespace

std::unique_ptr<CallReport> callLineReport(Output& out, const Palette& palette) {
  return std::make_unique<LineReport>(out, palette);
}

std::unique_ptr<CallReport> ladderReport(Output& out, const Palette& palette, std::size_t call,
                                         const LadderOptions& options) {
  return std::make_unique<LadderReport>(out, palette, call, options);
}

std::unique_ptr<CallReport> troubleReport(Output& out, const Palette& palette) {
  return std::make_unique<TroubleReport>(out, palette);
}

std::unique_ptr<CallReport> jsonReport(Output& out, const CallJsonOptions& options) {
  return std::make_unique<JsonReport>(out, options);
}

}  // namespace tool
