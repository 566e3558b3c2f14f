#include "commands/callsCommand.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "calls/anonymizer.h"
#include "calls/bodyCache.h"
#include "calls/callOrder.h"
#include "calls/media.h"
#include "calls/secrets.h"
#include "calls/troubles.h"
#include "captures/captureSet.h"
#include "captures/captureWriter.h"
#include "commands/callsOptions.h"
#include "commands/exitStatus.h"
#include "commands/orderedWork.h"
#include "commands/readAhead.h"
#include "output/fileReplacement.h"
#include "output/progress.h"
#include "page/page.h"
#include "report/callReport.h"

namespace tool {
namespace {

/// Bytes of calls that are over and wait for those that began before them.
constexpr std::size_t kMostWaiting = std::size_t{64} * 1024 * 1024;

/// Calls that are analysed together, and bytes of them.
constexpr std::size_t kCallsOfPiece = 32;
constexpr std::size_t kBytesOfPiece = std::size_t{1} * 1024 * 1024;

volatile std::sig_atomic_t isInterrupted = 0;

void noteInterrupt(int /*signal*/) { isInterrupted = 1; }

/// Has SIGINT end the reading, and what was read is told. Waits for input end by it.
void takeInterrupts() {
  struct sigaction action {};
  if (sigaction(SIGINT, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
  action.sa_handler = noteInterrupt;
  action.sa_flags = 0;
  sigaction(SIGINT, &action, nullptr);
}

/// The size of a file, 0 for what has none.
std::size_t sizeOf(const Input& input) {
  struct stat status {};
  if (input.standardInput || ::stat(input.name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return 0;
  return static_cast<std::size_t>(status.st_size);
}

std::size_t sizeOf(const std::vector<Input>& inputs) {
  std::size_t size = 0;
  for (const Input& input : inputs) size += sizeOf(input);
  return size;
}

/// Inputs of fewer bytes are read sooner than a thread has begun.
constexpr std::size_t kLeastReadAhead = std::size_t{1} * 1024 * 1024;

/// How long a file that has ended is left alone.
constexpr std::chrono::milliseconds kPause{200};
/// Where nothing came for so long, calls of the past that have ended are told.
constexpr std::chrono::milliseconds kQuiet{2000};

std::int64_t now() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::unique_ptr<CallReport> reportFor(const CallsOptions& options, const Palette& palette, Streams streams) {
  if (options.asJson) return jsonReport(streams.out, {options.withBodies, options.names});
  if (options.troublesOnly) return troubleReport(streams.out, palette);
  if (options.call)
    return ladderReport(streams.out, palette, *options.call, {options.names, options.withBodies});
  return callLineReport(streams.out, palette);
}

/// A run of the command: inputs to messages, messages to calls, calls to what is written.
class Run {
 public:
  Run(CallsOptions options, const Palette& palette, Streams streams)
      : options_(std::move(options)),
        streams_(streams),
        isOnTerminal_(streams.out.isTerminal()),
        showsKeys_(options_.showsKeys && isOnTerminal_),
        showsTexts_(options_.asJson || options_.call || !options_.page.empty()),
        progress_(streams.err, sizeOf(options_.inputs)),
        report_(reportFor(options_, palette, streams)),
        order_([this](Call&& call) { takeCall(call); }, options_.isFollowed ? 0 : kMostWaiting),
        table_(options_.table, ClosedCallSink([this](ClosedCall&& call) { keep(std::move(call)); })),
        set_(options_.inputs, captureOptions(),
             [this](const CapturedMessage& message) { takeMessage(message); }) {}

  int run() {
    if (!openFiles()) return exitOutput;
    if (options_.showsKeys && !showsKeys_)
      streams_.err.write("sdpneg: keys are shown on a terminal only, and stay masked\n");
    readsAhead() ? readAhead() : read();
    set_.finish();
    table_.finish();
    finishWork();
    order_.finish();
    progress_.hide();
    const CallTotals totals{table_.messages(), retransmissions_, table_.otherMessages()};
    report_->end(totals);
    const bool areWritten = closeFiles(totals);
    const bool areRead = tellProblems();
    const bool isFound = !options_.call || report_->isDone();
    if (!isFound) writeProblem(streams_.err, "", {{}, "there is no call " + std::to_string(*options_.call)});
    if (!areWritten) return exitOutput;
    if (!areRead || !isFound) return exitBadInput;
    return options_.troublesOnly && hasTroubles_ ? exitFindings : exitSuccess;
  }

 private:
  CaptureOptions captureOptions() {
    CaptureOptions options;
    options.filter = options_.packetFilter;
    options.watch.isStopped = [] { return isInterrupted != 0; };
    // What is no file has ended when it ends.
    if (options_.isFollowed && sizeOf(options_.inputs) != 0)
      options.watch.waitForMore = [this] { return wait(); };
    return options;
  }

  /// Whether another thread may read: files alone, which end and do not keep it waiting.
  bool readsAhead() const {
    const bool areFiles =
        std::ranges::all_of(options_.inputs, [](const Input& input) { return sizeOf(input) != 0; });
    return !options_.isFollowed && areFiles && sizeOf(options_.inputs) >= kLeastReadAhead &&
           std::thread::hardware_concurrency() > 1;
  }

  void read() {
    while (isInterrupted == 0 && !isEnough() && set_.step()) {
      lowestOpen_ = table_.lowestOpen();
      showProgress(set_.position());
    }
  }

  void readAhead() {
    ReadAhead ahead;
    ahead_ = &ahead;
    if (!ahead.begin({[this] { return set_.step(); }, [this] { return set_.position(); }})) {
      ahead_ = nullptr;
      return read();
    }
    while (ReadAhead::Batch* const batch = ahead.next()) {
      for (std::size_t i = 0; i < batch->size(); ++i) {
        table_.take((*batch)[i]);
        lowestOpen_ = table_.lowestOpen();
      }
      showProgress(batch->position());
      if (isInterrupted != 0 || isEnough()) ahead.stop();
    }
    ahead_ = nullptr;
  }

  /// Whether nothing more is to be told. Files beside standard output have all calls.
  bool isDone() const { return report_->isDone() && !page_ && !writer_; }

  /// Whether nothing more can be told, or is to be.
  bool isEnough() const { return isEnough_.load(std::memory_order_relaxed); }

  /// Waits for a file to grow; calls go on to end meanwhile.
  bool wait() {
    finishWork();
    order_.release(table_.lowestOpen());
    noteEnough();
    std::this_thread::sleep_for(kPause);
    quiet_ += kPause;
    table_.passTime(std::chrono::microseconds(kPause).count(), quiet_ < kQuiet ? 0 : now());
    return isInterrupted == 0 && !isEnough();
  }

  /// A call that is over, and the lowest number of an open one then.
  struct Over {
    ClosedCall closed;
    std::size_t lowestOpen;
    Call call = {};
  };

  void keep(ClosedCall&& call) {
    keptBytes_ += call.bytes();
    kept_.push_back({std::move(call), lowestOpen_});
    if (kept_.size() == kCallsOfPiece || keptBytes_ >= kBytesOfPiece) passOn();
  }

  /// Has what is kept analysed and told.
  void passOn() {
    const auto piece = std::make_shared<std::vector<Over>>(std::exchange(kept_, {}));
    keptBytes_ = 0;
    work_.add({[this, piece](std::size_t thread) {
                 for (Over& over : *piece) analyse(over, bodies_[thread]);
               },
               [this, piece] {
                 for (Over& over : *piece) {
                   retransmissions_ += over.call.retransmissions();
                   order_.release(over.lowestOpen);
                   order_.add(std::move(over.call));
                 }
                 noteEnough();
               }});
  }

  void finishWork() {
    if (!kept_.empty()) passOn();
    work_.finish();
  }

  void analyse(Over& over, BodyCache& bodies) const {
    over.call = over.closed.analysed();
    if (!options_.filter.matches(over.call)) return;
    bodies.begin(over.call);
    describeMedia(over.call, bodies);
    findTroubles(over.call, bodies);
  }

  void noteEnough() { isEnough_ = !streams_.out.good() || isDone(); }

  void showProgress(std::size_t position) {
    const std::unique_lock lock = terminal();
    progress_.show(position);
  }

  /// Calls are told by another thread than progress.
  std::unique_lock<std::mutex> terminal() {
    return isOnTerminal_ ? std::unique_lock(terminal_) : std::unique_lock<std::mutex>();
  }

  void takeMessage(const CapturedMessage& message) {
    const CapturedMessage& shown = options_.isAnonymous ? anonymizer_.message(message) : message;
    if (ahead_ != nullptr) return ahead_->add(shown);
    quiet_ = {};
    table_.take(shown);
  }

  void takeCall(Call& call) {
    if (!options_.filter.matches(call)) return;
    hasTroubles_ = hasTroubles_ || !call.troubles.empty();
    if (options_.troublesOnly && options_.asJson && call.troubles.empty()) return;
    if (writer_) writeMessages(call);
    if (!showsKeys_) showsTexts_ ? maskSecrets(call) : maskSecretsTold(call);
    if (isDone()) return;
    const std::unique_lock lock = terminal();
    if (isOnTerminal_) progress_.hide();
    report_->add(call);
    if (page_) page_->add(call);
  }

  void writeMessages(const Call& call) {
    for (const CallMessage& message : call.messages)
      writer_->write(
          {message.number, message.time, message.transport, message.flow, message.text, message.isCut});
  }

  /// Opens what is written beside standard output.
  bool openFiles() {
    return (options_.page.empty() || openPage()) && (options_.capture.empty() || openCapture());
  }

  bool openPage() {
    pageFile_ = std::make_unique<FileReplacement>(options_.page);
    if (tellFile(options_.page, pageFile_->problem())) return false;
    pageOutput_ = std::make_unique<BufferedOutput>(pageFile_->output());
    page_ = std::make_unique<Page>(*pageOutput_, options_.names);
    return true;
  }

  bool openCapture() {
    captureFile_ = std::make_unique<FileReplacement>(options_.capture);
    if (tellFile(options_.capture, captureFile_->problem())) return false;
    writer_ = std::make_unique<CaptureWriter>(
        [this](std::string_view bytes) { captureFile_->output().write(bytes); });
    return true;
  }

  /// @return whether there was a problem
  bool tellFile(const std::string& name, const std::optional<Problem>& problem) {
    if (problem) writeProblem(streams_.err, name, *problem);
    return problem.has_value();
  }

  PageSummary pageSummary(const CallTotals& totals) const {
    PageSummary summary;
    for (const Input& input : options_.inputs)
      summary.title += (summary.title.empty() ? "" : ", ") + input.name;
    // Files may be named after people.
    if (options_.isAnonymous) summary.title = "anonymised";
    summary.totals = totals;
    for (const auto& [name, problem] : set_.problems())
      summary.notes.push_back((options_.isAnonymous ? "an input" : name) + ": " + problem.reason);
    for (const std::string& note : troubleNotes()) summary.notes.push_back(note);
    for (const TroubleRule& rule : troubleRules()) summary.rules.emplace(rule.name, rule.meaning);
    return summary;
  }

  /// What of the inputs could not be read, "3 messages whose end was not captured".
  std::vector<std::string> troubleNotes() const {
    std::vector<std::string> notes;
    for (std::size_t i = 0; i < kCaptureTroubles; ++i) {
      const auto trouble = static_cast<CaptureTrouble>(i);
      if (const std::size_t count = set_.count(trouble); count != 0)
        notes.push_back(std::to_string(count) + " " + std::string(textOf(trouble)));
    }
    return notes;
  }

  bool closeFiles(const CallTotals& totals) {
    bool isGood = true;
    if (page_) {
      page_->end(pageSummary(totals));
      pageOutput_.reset();
      isGood = !tellFile(options_.page, pageFile_->finish());
    }
    if (writer_) isGood = !tellFile(options_.capture, captureFile_->finish()) && isGood;
    return isGood;
  }

  /// Says what is wrong with inputs, and what of them could not be read.
  /// @return whether all could be read
  bool tellProblems() {
    const auto problems = set_.problems();
    for (const auto& [name, problem] : problems) writeProblem(streams_.err, name, problem);
    for (const std::string& note : troubleNotes()) streams_.err.write("sdpneg: " + note + "\n");
    return problems.empty();
  }

  CallsOptions options_;
  Streams streams_;
  bool isOnTerminal_;
  bool showsKeys_;
  bool showsTexts_;  ///< lines tell nothing of which there is a key
  bool hasTroubles_ = false;
  std::chrono::milliseconds quiet_{};
  Progress progress_;
  std::unique_ptr<CallReport> report_;
  std::unique_ptr<FileReplacement> pageFile_;
  std::unique_ptr<BufferedOutput> pageOutput_;
  std::unique_ptr<Page> page_;
  std::unique_ptr<FileReplacement> captureFile_;
  std::unique_ptr<CaptureWriter> writer_;
  Anonymizer anonymizer_;
  std::array<BodyCache, OrderedWork::kThreads> bodies_;
  std::mutex terminal_;
  std::atomic<bool> isEnough_ = false;
  std::size_t retransmissions_ = 0;
  CallOrder order_;
  std::vector<Over> kept_;  ///< calls that were not passed on yet
  std::size_t keptBytes_ = 0;
  std::size_t lowestOpen_ = 0;
  CallTable table_;
  OrderedWork work_;
  ReadAhead* ahead_ = nullptr;  ///< while another thread reads
  CaptureSet
      set_;  // which waits for the front of a followed file when it is made, and needs all of the above
};

}  // namespace

int runCalls(const Arguments& arguments, Streams streams) {
  CallsOptions options = callsOptions(arguments);
  takeInterrupts();
  return Run(std::move(options), paletteFor(arguments.value("--color"), streams.out), streams).run();
}

}  // namespace tool
