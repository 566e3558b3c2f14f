#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sdpModifiers.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "text/lines.h"
#include "text/sdpText.h"
#include "trace.h"

// The video sections of a body as text, and the transports of its m-lines.

namespace {

using namespace sdpneg;

constexpr std::string_view kMLine = "m=";
constexpr std::string_view kVideoMLine = "m=video";

/// The place of the next "m=" behind one; the text's length when there is none.
std::size_t nextMLine(std::string_view text, std::size_t mLine) {
  return orEnd(findAnywhere(text, kMLine, mLine + kMLine.size()), text);
}

/// A text with each section in turn in the place of the first "m=video". The place of the next "m=", in the sections and
/// in the text, counts as a length, whatever stands in front of the first one. What begins with "m=" makes no new
/// "m=video" with what stands in front of it, so the search goes on where the last one ended.
std::string withVideo(std::string text, std::string_view sections) {
  std::size_t video = 0;
  for (std::size_t at = findAnywhere(sections, kMLine); at != npos; at = findAnywhere(sections, kMLine)) {
    const std::size_t taken = nextMLine(sections, at);
    video = findAnywhere(text, kVideoMLine, video);
    if (video == npos) break;
    text.replace(video, nextMLine(text, video), sections.substr(at, taken));
    sections.remove_prefix(taken);
  }
  return text;
}

/// Puts sections in the place of the video section, or at the end of a text that does not name video. Only the result
/// has to fit: a section that is too long for the buffer may be replaced by the next one.
Edit addVideo(SdpText& text, std::string_view sections) {
  if (findAnywhere(text.view(), "video") == npos) return text.append(sections);
  return text.replace({0, text.size()}, withVideo(std::string(text.view()), sections));
}

/// The same with a trace of a failure.
/// @return whether it was done
bool addVideoOrTrace(SdpText& text, std::string_view sections) {
  try {
    if (addVideo(text, sections) == Edit::done) return true;
    trace::error("sdpAddVideoDescriptions(): The SDP with the videoDescriptions does not fit its buffer.");
  } catch (const std::bad_alloc&) {
    trace::error("sdpAddVideoDescriptions(): There is no memory for the SDP with the videoDescriptions.");
  }
  return false;
}

/// The media names of a text's m-lines.
/// @return nothing when they cannot be told
std::optional<std::vector<std::string>> mediaNames(char* text) {
  try {
    std::vector<mDescription> mLines;
    if (sdpModifications::getMLines(text, mLines) != 0) return std::nullopt;
    std::vector<std::string> names;
    for (const mDescription& media : mLines) {
      names.emplace_back(media.mLine.media);
      trace::debug("sdpModifyTransportTypes():Request to modify transport type for all m = %s",
                   media.mLine.media);
    }
    return names;
  } catch (const std::bad_alloc&) {
    trace::error("sdpModifyTransportTypes(): There is no memory for the media of the SDP.");
    return std::nullopt;
  }
}

}  // namespace

void cSdpNegotiator::sdpAddVideoDescriptions(const char* sections) {
  if (sections == nullptr) {
    trace::error("The request to add videoDescriptions  is invalid.");
    return;
  }
  trace::debug("Request to add videoDescriptions: %s", sections);
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (getSDP(buffer, sizeof buffer) != 0) return;
  SdpText text(buffer);
  if (!addVideoOrTrace(text, sections)) return;
  if (storeOrKeep(*this, buffer) != 0) {
    trace::error("sdpAddVideoDescriptions(): The SDP with the videoDescriptions cannot be stored.");
  } else {
    trace::debug("Updated SDP: %s", buffer);
  }
}

unsigned short cSdpNegotiator::sdpGetVideoDescriptions(char* out, unsigned int size, bool flag) {
  trace::debug("Request to get the video descriptions");
  const unsigned short status = editText(
      *this, [&](char* text) { return sdpModifications::getVideoDescriptions(text, out, size, flag); },
      [this](const char* text) { return storeOrKeep(*this, text); });
  if (status == 0) return 1;
  trace::error("The request to get the video descriptions is invalid.");
  return 0;
}

void cSdpNegotiator::sdpModifyTransportTypes(const char* fromTransport, const char* toTransport) {
  trace::debug("sdpModifyTransportTypes():Request to modify transport type for all m-lines");
  editAndParse(*this, [&](char* text) -> unsigned short {
    const auto names = mediaNames(text);
    return names ? sdpModifications::sdpSetMediaTransportType(text, fromTransport, toTransport, *names) : 1;
  });
  // The text that ends this request names another one.
  trace::debug("Exiting sdpRemoveMlinesZeroPort()");
}
