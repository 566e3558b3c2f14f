#include "sdpModifiers/videoDisabling.h"

#include <optional>
#include <utility>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/connection.h"
#include "text/mLineFields.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// Video sections that stay with port 0.

namespace sdpneg {

namespace {

/// What becomes of a video section: its m-line gets port 0, the next c-line is copied over the text behind it, as
/// much of that as the copy takes, and, if all goes, so does the rest of the section.
class VideoDisabling {
 public:
  VideoDisabling(std::string_view text, bool allMedia)
      : allMedia_(allMedia), at_(nextMLineOf(text, kVideo)) {}

  std::optional<Change> next(std::string_view text) {
    if (behindMLine_) return std::exchange(behindMLine_, std::nullopt);
    while (at_ != npos) {
      const Line mLine = lineAt(text, at_);
      if (!mLine.terminated) break;
      ++count_;
      behindMLine_ = lineBehind(text, mLine);
      at_ = nextVideo(text, behindMLine_ ? behindMLine_->span.end : mLine.next());
      if (const auto port = portChange(text, mLine.begin, zero_)) return port;
      if (behindMLine_) return std::exchange(behindMLine_, std::nullopt);
    }
    return std::nullopt;
  }

  int count() const { return count_; }

 private:
  std::optional<Change> lineBehind(std::string_view text, const Line& mLine) {
    const std::string_view copy = connectionBehind(text, mLine);
    const std::size_t begin = mLine.next();
    std::size_t end = begin + copy.size();
    if (allMedia_ && !startsWith(text.substr(end), kMLine)) end = sectionEnd(text, end);
    return begin != end ? std::optional(Change{{begin, end}, copy}) : std::nullopt;
  }

  /// The next c-line behind an m-line, through its LF; empty without one that has an LF.
  std::string_view connectionBehind(std::string_view text, const Line& mLine) {
    if (cLine_ && cLine_->begin <= mLine.lf) {
      const std::size_t found = findLine(text, kCLine, mLine.lf);
      cLine_ = found != npos ? std::optional(lineAt(text, found)) : std::nullopt;
      if (cLine_ && !cLine_->terminated) cLine_ = std::nullopt;
    }
    return cLine_ ? text.substr(cLine_->begin, cLine_->next() - cLine_->begin) : std::string_view();
  }

  /// The next video m-line. One may begin where a copied c-line, or what has gone, ends.
  static std::size_t nextVideo(std::string_view text, std::size_t lineStart) {
    const std::string_view line = text.substr(lineStart);
    if (startsWith(line, kMLine) && startsWith(line.substr(kMLine.size()), kVideo)) return lineStart;
    return nextMLineOf(text, kVideo, lineStart);
  }

  static constexpr std::string_view kVideo = "video";

  PortDigits zero_ = PortDigits().add(0);
  bool allMedia_;
  std::size_t at_;                      ///< the next video m-line
  std::optional<Line> cLine_ = Line{};  ///< the last c-line that was found; nothing when there is no more
  int count_ = 0;
  std::optional<Change> behindMLine_;
};

}  // namespace

void disableVideo(SdpText& text, bool allMedia) {
  trace::progress("Entering sdpRemoveVideoMedia(AllMedia=%s) method.", allMedia ? "Yes" : "No");
  VideoDisabling disabling(text.view(), allMedia);
  if (adopted(text, "sdpRemoveVideoMedia")) {
    text.changeEach([&](std::string_view view, std::size_t /*from*/, std::size_t /*room*/) {
      return disabling.next(view);
    });
  }
  trace::progress("Found %i m=video lines: port(s) disabled and line(s) removed", disabling.count());
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpRemoveVideoMedia(char* sdp, bool allMedia) {
  SdpText text(sdp);
  disableVideo(text, allMedia);
  return 0;
}
