#include "sdpModifiers/addedVideo.h"

#include <new>
#include <string>

#include "text/sections.h"

// Video sections that are put into a text.

namespace sdpneg {

namespace {

constexpr std::string_view kVideoMLine = "m=video";

/// The place of the next "m=" behind one; the text's length when there is none.
std::size_t nextOrEnd(std::string_view text, std::size_t mLine) {
  return orEnd(nextMAnywhereBehind(text, mLine), text);
}

/// A text with each section in turn in the place of the first "m=video". The place of the next "m=", in the sections and
/// in the text, counts as a length, whatever stands in front of the first one. What begins with "m=" makes no new
/// "m=video" with what stands in front of it, so the search goes on where the last one ended.
std::string withVideo(std::string text, std::string_view sections) {
  std::size_t video = 0;
  for (std::size_t at = nextMAnywhere(sections); at != npos; at = nextMAnywhere(sections)) {
    const std::size_t taken = nextOrEnd(sections, at);
    video = findAnywhere(text, kVideoMLine, video);
    if (video == npos) break;
    text.replace(video, nextOrEnd(text, video), sections.substr(at, taken));
    sections.remove_prefix(taken);
  }
  return text;
}

Edit putVideo(SdpText& text, std::string_view sections) {
  if (findAnywhere(text.view(), "video") == npos) return text.append(sections);
  return text.replace({0, text.size()}, withVideo(std::string(text.view()), sections));
}

}  // namespace

Refusal addVideo(SdpText& text, std::string_view sections) {
  try {
    if (putVideo(text, sections) == Edit::done) return {};
    return {.reason = SDP_REFUSED_VIDEO_DOES_NOT_FIT};
  } catch (const std::bad_alloc&) {
    return {.reason = SDP_REFUSED_NO_MEMORY_TO_ADD_VIDEO};
  }
}

}  // namespace sdpneg
