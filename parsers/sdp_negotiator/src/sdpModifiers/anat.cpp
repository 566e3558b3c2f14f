#include "sdpModifiers/anat.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/attributeRemoval.h"
#include "sdpModifiers/originLine.h"
#include "sdpModifiers/recordText.h"
#include "sdpModifiers/removedMLines.h"
#include "text/fixedText.h"
#include "text/mLineFields.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// Alternative network address types (ANAT, RFC 4091).

namespace sdpneg {

namespace {

using Composed = FixedText<MAX_SDP_PROTOCOL_DATA_SIZE>;

/// Set in the code of a removed m-line that was secure.
constexpr unsigned char kSecureBit = 128;

/// Adds the group line that names every m-line by its number but those with port 0.
void addGroupLine(Composed& out, std::string_view text) {
  out.add(kAnat);
  int number = 1;
  forEachMLine(text, [&](std::size_t at) {
    if (!hasZeroPortOfRtp(content(text, lineAt(text, at)))) out.add(" ").add(number);
    ++number;
    return !out.cut();
  });
  out.add("\r\n");
}

/// Adds the media sections, each with a mid line at its end unless it has one.
void addSectionsWithMid(Composed& out, std::string_view text) {
  int number = 1;
  forEachMLine(text, [&](std::size_t at) {
    const std::string_view section = text.substr(at, sectionEnd(text, at) - at);
    out.add(section);
    if (!contains(section, "a=mid:")) {
      out.add(missingLineEnd(section)).add("a=mid:").add(number).add("\r\n");
    }
    ++number;
    return !out.cut();
  });
}

Refusal addAnat(SdpText& text) {
  const std::string_view session = sessionPart(text.view());
  if (session.size() == text.size()) return {};
  Composed edited;
  edited.add(session);
  addGroupLine(edited, text.view());
  addSectionsWithMid(edited, text.view());
  const bool fits = !edited.cut() && text.replace({0, text.size()}, edited.view()) == Edit::done;
  return fits ? Refusal() : Refusal{.reason = SDP_REFUSED_NO_ROOM_FOR_ANAT};
}

/// Writes the codes of removed m-lines.
class AnatRecord {
 public:
  /// @param codes a zero-filled record, or null
  explicit AnatRecord(char* codes) : codes_(codes) {}

  std::size_t count() const { return count_; }

  /// Adds a removed m-line, while there are fewer than 25. One of another medium leaves its secure bit for the next.
  void add(std::string_view text, const Line& mLine, std::size_t position) {
    if (codes_ == nullptr) return;
    const auto code = removedCode(content(text, mLine), position, kAllRecordedMedia);
    if (code && !takesCode(count_, *code, position, "sdpRemoveAnat")) return;
    if (isSecure(text, mLine)) put(kSecureBit, 0);
    if (!code) return;
    put(static_cast<unsigned char>(*code), 0xff);
    ++count_;
  }

 private:
  /// @param kept the bits of the place's old value that stay
  void put(unsigned char bits, unsigned char kept) {
    const unsigned int old = static_cast<unsigned char>(codes_[count_]);
    codes_[count_] = static_cast<char>((old & kept) | bits);
  }

  char* codes_;
  std::size_t count_ = 0;
};

/// What a removal has met.
struct Removed {
  std::size_t codes;  ///< recorded
  /// The place of the first m-line, which may have gone; 0 without m-line, as nothing stands in front of one then.
  std::size_t firstMLine;
};

/// Removes the media sections that hold a connection text, until the record is full.
Removed removeSections(SdpText& text, std::string_view connection, char* codes) {
  AnatRecord record(codes);
  std::size_t position = 0;
  std::size_t firstMLine = 0;
  text.eraseEach([&](std::string_view view, std::size_t from) -> std::optional<Span> {
    while (record.count() < kRecordCapacity) {
      const std::optional<MediaSection> section = findSection(view, from);
      if (!section) return std::nullopt;
      const Span span{section->mLine.begin, section->end};
      if (++position == 1) firstMLine = span.begin;
      if (contains(view.substr(span.begin, span.end - span.begin), connection)) {
        record.add(view, section->mLine, position);
        return span;
      }
      from = span.end;
    }
    return std::nullopt;
  });
  return {record.count(), firstMLine};
}

/// Rebuilds the o-line, which stands where "o=" first does, also behind the first m-line.
/// @return where the text that stood at `place` stands then; the o-line's start when it went with the old o-line
std::size_t rebuildOLine(SdpText& text, std::size_t place, unsigned short& oLineEnd) {
  const std::size_t oLine = findAnywhere(text.view(), kOriginLine);
  const std::size_t fromPlace = text.size() - place;
  renewOriginLineIfThere(text, oLineEnd);
  return oLine < place ? text.size() - std::min(fromPlace, text.size() - oLine) : place;
}

/// Removes the first line with a connection text when it stands in front of an offset.
void removeSessionConnection(SdpText& text, std::string_view connection, std::size_t firstMLine) {
  const std::size_t at = findAnywhere(text.view(), connection);
  if (at == npos || at >= firstMLine) return;
  const Line line = lineAt(text.view(), at);
  if (!line.terminated) return;
  text.erase({line.begin, line.next()});
  trace::info("Removed session level c-line because its IP type matches the removed media.");
}

DummyMLine readCode(unsigned char code) {
  return {static_cast<unsigned char>(code & ~kSecureBit), (code & kSecureBit) != 0};
}

void traceRecord(std::string_view codes) {
  trace::progress("Entering sdpReInsertAnat() method. input is [%s]", recordText<101>(codes).text());
}

}  // namespace

void applyAnat(SdpText& text) {
  if (!text.isNull() && adopted(text, "sdpApplyAnatAttributes")) statusOf(addAnat(text));
}

void removeAnat(SdpText& text, eIPAddressVersion ipVersion, char* removed, unsigned short& oLineEnd,
                bool modifyOLine) {
  trace::progress("Entering sdpRemoveAnat() method.");
  removeAnatAttributes(text);
  if (!text.isNull() && adopted(text, "sdpRemoveAnat")) {
    const std::string_view connection = ipVersion == kIpVersion4 ? "c=IN IP4" : "c=IN IP6";
    Removed sections = removeSections(text, connection, removed);
    if (sections.codes > 0 && modifyOLine) {
      sections.firstMLine = rebuildOLine(text, sections.firstMLine, oLineEnd);
    }
    removeSessionConnection(text, connection, sections.firstMLine);
  }
  trace::progress("Exiting sdpRemoveAnat() method.");
}

void reinsertAnat(SdpText& text, const char* removed, unsigned short& oLineEnd, bool modifyOLine) {
  constexpr const char* kOperation = "sdpReInsertAnat";
  const std::string_view codes = codesOf(removed);
  traceRecord(codes);
  if (modifyOLine) renewOriginLineIfThere(text, oLineEnd);
  if (!text.isNull() && adopted(text, kOperation)) {
    statusOf(putMLinesBack(text, codes, readCode, kOperation));
  }
  applyAnat(text);
}

}  // namespace sdpneg

using namespace sdpneg;

void sdpModifications::sdpApplyAnatAttributes(char* sdp) {
  SdpText text(sdp);
  applyAnat(text);
}

unsigned short sdpModifications::sdpRemoveAnat(char* sdp, eIPAddressVersion ipVersion, char* removed,
                                               unsigned short& oLineEnd, bool modifyOLine) {
  SdpText text(sdp);
  removeAnat(text, ipVersion, removed, oLineEnd, modifyOLine);
  return 0;
}

unsigned short sdpModifications::sdpReInsertAnat(char* sdp, const char* removed, unsigned short& oLineEnd,
                                                 bool modifyOLine) {
  SdpText text(sdp);
  reinsertAnat(text, removed, oLineEnd, modifyOLine);
  return 0;
}
