#include "sdpModifiers/codecLists.h"

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/audioSections.h"
#include "sdpModifiers/codecRecords.h"
#include "sdpModifiers/codecText.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "text/sections.h"
#include "trace.h"

// A description that holds its text whole is edited and written again by the codec, which gives the text the codec's
// form. One that does not would lose what it could not hold: there, and where the lists might outgrow a description, the
// text of the audio sections is edited line by line, so that every line that nobody asked to change survives.

namespace sdpneg {

namespace {

bool isAudio(std::string_view section) {
  return startsWith(section, kMLine) && Words(section.substr(kMLine.size()), " \t").next() == "audio";
}

std::span<const unsigned char> listOf(const unsigned char* codecs) {
  return valuesOf(codecs, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
}

/// What a refusal names an edited text.
constexpr const char* kEditedText = "edited SDP";

/// Puts an edited text in the place of the old one, in the codec's form when it and the old one are complete.
Refusal keepEdited(SdpText& text, const Composed& edited, sDescription& description, const char* operation) {
  if (edited.cut()) return refusalOfRoom(operation, kEditedText);
  if (!sdp_isComplete(&description)) {
    const bool fits = text.replace({0, text.size()}, edited.view()) == Edit::done;
    return fits ? Refusal() : refusalOfRoom(operation, kEditedText);
  }
  if (decodeText(description, edited.text()) != 0) {
    return {.reason = SDP_REFUSED_EDITED_NOT_DECODED, .operation = operation};
  }
  return replaceByEncoded(text, description, operation, kEditedText);
}

/// Composes a text whose audio sections an edit writes.
template <typename SectionEdit>
void composeSections(std::string_view text, SectionEdit edit, Composed& edited) {
  while (!text.empty()) {
    const std::string_view lines = text.substr(0, orEnd(nextMLine(text), text));
    text.remove_prefix(lines.size());
    if (isAudio(lines)) {
      AudioSection section(lines);
      edit(section, edited);
    } else {
      edited.add(lines);
    }
  }
}

/// How an edit of codec lists is named.
struct Names {
  const char* operation;
  const char* done;  ///< traced when it is done
};

/// Edits a text line by line.
/// @param description of the text; of no use afterwards
/// @param edit        takes an audio section, where to write it, and the attribute lines that it may have
template <typename SectionEdit>
Refusal editLines(SdpText& text, sDescription& description, const Names& names, SectionEdit edit) {
  const int limit = sdp_isComplete(&description) ? SDP_ATTRIBUTE_CAPACITY : MAX_SDP_PROTOCOL_DATA_SIZE;
  Composed edited;
  composeSections(
      text.view(), [&](AudioSection& section, Composed& out) { edit(section, out, limit); }, edited);
  return keepEdited(text, edited, description, names.operation);
}

/// Whether the lines of a text cannot become too many or too long for it: none but the last one's end is added.
bool holdsItsLines(const SdpText& text) {
  constexpr std::size_t kLineEnd = 2;
  return text.room() >= kLineEnd;
}

bool hasRepeats(std::span<const unsigned char> codecs) {
  for (std::size_t i = 1; i < codecs.size(); ++i) {
    if (holds(codecs.first(i), codecs[i])) return true;
  }
  return false;
}

/// Edits the audio sections of a text, by its description where that holds all of it, else line by line.
/// @param byRecord  false for what a description may not hold afterwards
/// @param describes receives whether the description is that of the edited text
template <typename RecordEdit, typename SectionEdit>
Refusal editAudioSections(SdpText& text, sDescription& description, bool& describes, const Names& names,
                          bool byRecord, RecordEdit editRecord, SectionEdit editSection) {
  describes = false;
  if (const Refusal refusal = refusalOfBuffer(text, names.operation)) return refusal;
  if (const Refusal refusal = decode(description, text.view())) return refusal;
  Refusal refusal;
  if (byRecord && sdp_isComplete(&description) && holdsItsLines(text)) {
    editRecord(description);
    refusal = replaceByEncoded(text, description, names.operation, kEditedText);
    describes = !refusal;
  } else {
    refusal = editLines(text, description, names, editSection);
  }
  if (!refusal) trace::progress("%s", names.done);
  return refusal;
}

}  // namespace

Refusal removeCodecs(SdpText& text, const unsigned char* keep, sDescription& description, bool& describes) {
  if (keep == nullptr) return {.reason = SDP_REFUSED_NO_CODEC_LIST};
  return editAudioSections(
      text, description, describes,
      {"sdpRemoveCodecs", "The selected audio codecs have been removed from the SDP"}, true,
      [keep](sDescription& record) { keepCodecs(record, listOf(keep)); },
      [keep](AudioSection& section, Composed& out, int /*attributeLimit*/) {
        keepCodecs(section, listOf(keep), out);
      });
}

Refusal reorderCodecs(SdpText& text, const unsigned char* order, sDescription& description, bool& describes) {
  if (order == nullptr) return {.reason = SDP_REFUSED_NO_CODEC_LIST};
  const CodecOrder codecs(listOf(order));
  return editAudioSections(
      text, description, describes, {"sdpCodecsReordering", "The audio codecs reordering has been done"},
      !hasRepeats(listOf(order)), [order](sDescription& record) { orderCodecs(record, listOf(order)); },
      [&codecs](AudioSection& section, Composed& out, int attributeLimit) {
        orderCodecs(section, codecs, attributeLimit, out);
      });
}

Refusal removeCodecs(SdpText& text, const unsigned char* keep) {
  return withDescription([&](sDescription& description) -> Refusal {
    bool describes = false;
    return removeCodecs(text, keep, description, describes);
  });
}

Refusal reorderCodecs(SdpText& text, const unsigned char* order) {
  return withDescription([&](sDescription& description) -> Refusal {
    bool describes = false;
    return reorderCodecs(text, order, description, describes);
  });
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpRemoveCodecs(char* sdp, const unsigned char* keep) {
  SdpText text(sdp);
  return statusOf(removeCodecs(text, keep));
}

unsigned short sdpModifications::sdpCodecsReordering(char* sdp, const unsigned char* order) {
  SdpText text(sdp);
  return statusOf(reorderCodecs(text, order));
}
