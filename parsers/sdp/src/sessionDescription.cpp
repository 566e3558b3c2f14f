#include "sessionDescription.h"

#include <iterator>

#include "fields.h"

// Questions to a description, and copies of it that leave out what is not in use.

namespace sdpcodec {
namespace {

template <typename Entry, std::size_t N>
void copyList(Entry (&to)[N], const Entry (&from)[N], int count) {
  copyBytes(to, from, sizeof(Entry) * static_cast<std::size_t>(count));
}

// Copies a list with its count, of its entries those in use.
template <typename Lines>
void copyEntries(Lines& to, const Lines& from) {
  const auto capacity = static_cast<int>(std::size(from.entries));
  to.count = usable(from.count, capacity);
  copyList(to.entries, from.entries, to.count);
}

template <typename Line>
void copyText(Line& to, const Line& from) {
  copyField(to.text, from.text);
}

void copyMediaLine(m_line& to, const m_line& from) {
  to.mediaType = from.mediaType;
  copyField(to.media, from.media);
  copyField(to.port, from.port);
  copyField(to.portSuffix, from.portSuffix);
  copyField(to.transport, from.transport);
  to.incomplete = from.incomplete;
  to.formatCount = sdp_MgetNoOfFormats(&from);
  copyList(to.formats, from.formats, to.formatCount);
}

// The lines that the session and each media description have.
template <typename Section>
void copySection(Section& to, const Section& from) {
  copyEntries(to.cLine, from.cLine);
  copyEntries(to.bLine, from.bLine);
  to.bLine.incomplete = from.bLine.incomplete;
  copyEntries(to.aLine, from.aLine);
  to.linePresence = from.linePresence;
  copyText(to.iLine, from.iLine);
  copyText(to.kLine, from.kLine);
}

}  // namespace
}  // namespace sdpcodec

using namespace sdpcodec;

int sdp_getNoOfMDs(const sDescription* description) {
  return description != nullptr ? description->noOfMDs : 0;
}

bool sdp_isComplete(const sDescription* description) {
  return description != nullptr && description->incomplete == 0;
}

void sdp_copyMedia(mDescription* to, const mDescription* from) {
  if (to == nullptr || from == nullptr || to == from) return;
  copyMediaLine(to->mLine, from->mLine);
  copySection(*to, *from);
}

void sdp_copyDescription(sDescription* to, const sDescription* from) {
  if (to == nullptr || from == nullptr || to == from) return;
  to->oLine = from->oLine;
  copySection(*to, *from);
  to->noOfMDs = from->noOfMDs;
  for (int i = 0; i < usable(from->noOfMDs, SDP_MEDIA_CAPACITY); ++i) {
    sdp_copyMedia(&to->media[i], &from->media[i]);
  }
  to->mediaKinds = from->mediaKinds;
  to->incomplete = from->incomplete;
  copyText(to->vLine, from->vLine);
  copyText(to->sLine, from->sLine);
  copyText(to->uLine, from->uLine);
  copyText(to->zLine, from->zLine);
  copyEntries(to->eLine, from->eLine);
  copyEntries(to->pLine, from->pLine);
  copyEntries(to->tLine, from->tLine);
  copyEntries(to->rLine, from->rLine);
}
