#include <cstddef>
#include <optional>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/removedMLines.h"
#include "trace.h"

// Removal of the media sections of a transport. Which ones went is recorded.

namespace {

using namespace sdpneg;

/// Finds the sections to remove and records their m-lines. A section begins where an "m=" stands and the search
/// goes on from there, so nothing that a removal joins can make another "m=".
class SectionRemoval {
 public:
  SectionRemoval(const char* operation, std::string_view transport, std::size_t mediaCount, char* record)
      : operation_(operation), transport_(transport), mediaCount_(mediaCount), record_(record) {}

  std::optional<Span> next(std::string_view text, std::size_t from) {
    for (auto section = findSection(text, from); section; section = findSection(text, section->end)) {
      const Line& line = section->mLine;
      const std::string_view mLine = text.substr(line.begin, line.lf - line.begin);
      ++position_;
      if (!contains(mLine, transport_)) continue;
      record(mLine);
      return Span{line.begin, section->end};
    }
    return std::nullopt;
  }

  bool hasRecorded() const { return recorded_ != 0; }

 private:
  void record(std::string_view mLine) {
    if (record_ == nullptr) return;
    const auto code = removedCode(mLine, position_, mediaCount_);
    if (!code || !takesCode(recorded_, *code, position_, operation_)) return;
    record_[recorded_++] = static_cast<char>(*code);
  }

  const char* operation_;
  std::string_view transport_;
  std::size_t mediaCount_;
  char* record_;
  std::size_t recorded_ = 0;
  std::size_t position_ = 0;
};

void removeSections(char* sdp, const char* operation, SectionRemoval removal, unsigned short& oLineEnd,
                    bool modifyOLine) {
  if (sdp == nullptr) return;
  SdpText text(sdp);
  if (!adopted(text, operation)) return;
  text.eraseEach([&](std::string_view view, std::size_t from) { return removal.next(view, from); });
  if (modifyOLine && removal.hasRecorded()) sdpModifications::sdpModifyOLine(sdp, nullptr, oLineEnd);
}

}  // namespace

void sdpModifications::sdpRemoveMline(char* sdp, char* removed, unsigned short& oLineEnd,
                                      const char* transport, bool modifyOLine) {
  if (transport == nullptr) {
    trace::error("sdpRemoveMline(): The transport is null. Exiting.");
    return;
  }
  const SectionRemoval removal("sdpRemoveMline", transport, recordedMediaWithoutImage, removed);
  removeSections(sdp, "sdpRemoveMline", removal, oLineEnd, modifyOLine);
}

void sdpModifications::sdpRemoveSecurity(char* sdp, char* removed, unsigned short& oLineEnd,
                                         bool modifyOLine) {
  const SectionRemoval removal("sdpRemoveSecurity", "RTP/SAVP", allRecordedMedia, removed);
  removeSections(sdp, "sdpRemoveSecurity", removal, oLineEnd, modifyOLine);
}

unsigned short sdpModifications::sdpDisableSRTPMediaStreams(char* sdp, char* removed,
                                                            unsigned short& oLineEnd) {
  trace::progress("Entering sdpDisableSRTPMediaStreams() method.");
  sdpRemoveSecureAttributes(sdp, "a=key-mgmt:");
  sdpRemoveSecurity(sdp, removed, oLineEnd, true);
  trace::progress("Exiting sdpDisableSRTPMediaStreams() method.");
  return 0;
}
