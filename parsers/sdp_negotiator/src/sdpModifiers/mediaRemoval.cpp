#include "sdpModifiers/mediaRemoval.h"

#include <cstddef>
#include <optional>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/attributeRemoval.h"
#include "sdpModifiers/originLine.h"
#include "sdpModifiers/removedMLines.h"
#include "trace.h"
#include "vocabulary.h"

// Removal of the media sections of a transport.

namespace sdpneg {

namespace {

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

void removeSections(SdpText& text, const char* operation, SectionRemoval removal, unsigned short& oLineEnd,
                    bool modifyOLine) {
  if (text.isNull() || !adopted(text, operation)) return;
  text.eraseEach([&](std::string_view view, std::size_t from) { return removal.next(view, from); });
  if (modifyOLine && removal.hasRecorded()) renewOriginLineIfThere(text, oLineEnd);
}

}  // namespace

void removeMLines(SdpText& text, char* removed, unsigned short& oLineEnd, const char* transport,
                  bool modifyOLine) {
  constexpr const char* kOperation = "sdpRemoveMline";
  if (transport == nullptr) {
    tell({.reason = SDP_REFUSED_NO_TRANSPORT, .operation = kOperation});
    return;
  }
  const SectionRemoval removal(kOperation, transport, kRecordedMediaWithoutImage, removed);
  removeSections(text, kOperation, removal, oLineEnd, modifyOLine);
}

void removeSecureMLines(SdpText& text, char* removed, unsigned short& oLineEnd, bool modifyOLine) {
  constexpr const char* kOperation = "sdpRemoveSecurity";
  const SectionRemoval removal(kOperation, kSecureTransport, kAllRecordedMedia, removed);
  removeSections(text, kOperation, removal, oLineEnd, modifyOLine);
}

void removeSecureMedia(SdpText& text, char* removed, unsigned short& oLineEnd) {
  trace::progress("Entering sdpDisableSRTPMediaStreams() method.");
  removeSecureAttributes(text, kKeyManagement);
  removeSecureMLines(text, removed, oLineEnd, true);
  trace::progress("Exiting sdpDisableSRTPMediaStreams() method.");
}

}  // namespace sdpneg

using namespace sdpneg;

void sdpModifications::sdpRemoveMline(char* sdp, char* removed, unsigned short& oLineEnd,
                                      const char* transport, bool modifyOLine) {
  SdpText text(sdp);
  removeMLines(text, removed, oLineEnd, transport, modifyOLine);
}

void sdpModifications::sdpRemoveSecurity(char* sdp, char* removed, unsigned short& oLineEnd,
                                         bool modifyOLine) {
  SdpText text(sdp);
  removeSecureMLines(text, removed, oLineEnd, modifyOLine);
}

unsigned short sdpModifications::sdpDisableSRTPMediaStreams(char* sdp, char* removed,
                                                            unsigned short& oLineEnd) {
  SdpText text(sdp);
  removeSecureMedia(text, removed, oLineEnd);
  return 0;
}
