#include "sdpModifiers/videoDisabling.h"

#include <optional>

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

/// Copies the next c-line, through its LF, over the text behind the m-line.
/// @return where the section's other lines begin; nothing without a c-line that has an LF
std::optional<std::size_t> pullConnection(SdpText& text, const Line& mLine) {
  const std::size_t found = findLine(text.view(), kCLine, mLine.lf);
  if (found == npos) return std::nullopt;
  const Line cLine = lineAt(text.view(), found);
  if (!cLine.terminated) return std::nullopt;
  const std::size_t end = mLine.next() + (cLine.next() - cLine.begin);
  text.replace({mLine.next(), end}, text.view().substr(cLine.begin, cLine.next() - cLine.begin));
  return end;
}

/// Sets the port of a video m-line to 0.
/// @return whether that could be done
bool disableSection(SdpText& text, std::size_t at, bool allMedia) {
  const Line found = lineAt(text.view(), at);
  if (!found.terminated || replacePort(text, found, 0) != Edit::done) return false;
  const Line mLine = lineAt(text.view(), at);
  const std::size_t begin = pullConnection(text, mLine).value_or(mLine.next());
  if (allMedia) text.erase({begin, sectionEnd(text.view(), begin - 1)});
  return true;
}

}  // namespace

void disableVideo(SdpText& text, bool allMedia) {
  trace::progress("Entering sdpRemoveVideoMedia(AllMedia=%s) method.", allMedia ? "Yes" : "No");
  int count = 0;
  if (adopted(text, "sdpRemoveVideoMedia")) {
    forEachMLineOf(text, "video", [&](std::size_t mLine) {
      if (disableSection(text, mLine, allMedia)) ++count;
    });
  }
  trace::progress("Found %i m=video lines: port(s) disabled and line(s) removed", count);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpRemoveVideoMedia(char* sdp, bool allMedia) {
  SdpText text(sdp);
  disableVideo(text, allMedia);
  return 0;
}
