// How ranges of lines, attributes, formats and sections find one element after the other.

#include "fieldReader.h"
#include "keys.h"
#include "model.h"
#include "sdpDocumentViews.h"

namespace sdp {

using core::Kind;
using core::kNone;

LineCursor::LineCursor(const core::Model& model, const core::Part& part) noexcept
    : model_(&model), at_(part.first), end_(part.end) {}

bool LineCursor::next(Line& line) noexcept {
  while (at_ < end_) {
    const core::Line& found = model_->lines[at_++];
    if (found.gone != 0) continue;
    line = {found.content(), found.end()};
    return true;
  }
  return false;
}

AttributeCursor::AttributeCursor(const core::Model& model, const core::Part& part,
                                 std::optional<std::string_view> name) noexcept
    : model_(&model), at_(part.first), end_(part.end) {
  if (!name) {
    kinds_ = ~(core::one(Kind::attribute) - 1);
    return;
  }
  const Kind kind = core::attributeKind(*name);
  kinds_ = core::one(kind);
  isOther_ = kind == Kind::attribute;
  name_ = *name;
  if ((part.kinds & kinds_) == 0) at_ = end_;
}

bool AttributeCursor::next(Attribute& attribute) noexcept {
  while (at_ < end_) {
    const core::Line& found = model_->lines[at_++];
    if (found.gone != 0 || !core::has(kinds_, found.kind)) continue;
    const std::string_view name = core::nameOf(found);
    if (isOther_ && name != name_) continue;
    attribute = {name, core::valueOf(found)};
    return true;
  }
  return false;
}

bool BandwidthCursor::next(Bandwidth& bandwidth) noexcept {
  for (Line line; lines_.next(line);) {
    if (!line.content.starts_with("b=")) continue;
    const std::string_view value = line.content.substr(2);
    const std::size_t colon = value.find(':');
    bandwidth.type = value.substr(0, colon);
    bandwidth.value.reset();
    if (colon == std::string_view::npos) {
      bandwidth.type = core::withoutBlanksBehind(bandwidth.type);
    } else {
      bandwidth.value = core::numberOf(core::withoutBlanksBehind(value.substr(colon + 1)));
    }
    return true;
  }
  return false;
}

bool CryptoCursor::next(Crypto& crypto) noexcept {
  Attribute attribute;
  if (!attributes_.next(attribute)) return false;
  core::FieldReader fields(attribute.value.value_or(std::string_view()));
  crypto.tag = core::numberOf(fields.next());
  crypto.suite = fields.next();
  // Where the suite is missing, the keys stand in its place.
  if (crypto.suite.find(':') != std::string_view::npos) crypto.suite = {};
  return true;
}

FeedbackCursor::FeedbackCursor(const core::Model& model, std::uint32_t own, std::uint32_t ofAll) noexcept
    : model_(&model), own_(own), ofAll_(ofAll) {}

bool FeedbackCursor::next(std::string_view& value) noexcept {
  if (own_ == kNone && ofAll_ == kNone) return false;
  std::uint32_t& first = own_ < ofAll_ ? own_ : ofAll_;
  const core::Line& line = model_->lines[first];
  first = line.next;
  value = core::behindPayload(line);
  return true;
}

FormatCursor::FormatCursor(const core::Model& model, const core::Part& section) noexcept
    : model_(&model), section_(&section) {
  if (section.m.readable) rest_ = section.m.formats;
}

bool FormatCursor::next(Format& format) noexcept {
  format = {};
  if (!core::isRtp(*section_)) {
    core::FieldReader fields(rest_);
    format.format = fields.next();
    rest_ = fields.behind();
    return !format.format.empty();
  }
  core::FormatTable& table = model_->formats;
  if (rest_.empty()) return false;
  table.read(*model_, *section_);
  if (occurrence_ == table.occurrences.size()) return false;
  core::FormatEntry& entry = table.entries[table.occurrences[occurrence_++].entry];
  format.format = entry.payload;
  const core::EncodingParts& encoding = entry.encoding;
  if (!encoding.name.text().empty()) {
    format.encoding = Encoding{encoding.name.text(), encoding.clock, encoding.channels};
  }
  if (entry.fmtp != kNone) format.fmtp = core::behindPayload(model_->lines[entry.fmtp]);
  format.apt = core::numberOf(core::aptOf(*model_, entry));
  format.isCompanion = entry.role != core::Role::codec;
  format.feedbackCursor = FeedbackCursor(*model_, entry.feedback, table.feedbackOfAll);
  return true;
}

bool GroupCursor::next(Group& group) noexcept {
  Attribute attribute;
  if (!attributes_.next(attribute)) return false;
  core::FieldReader fields(attribute.value.value_or(std::string_view()));
  group.semantics = fields.next();
  group.mids = Fields(fields.behind());
  return true;
}

bool SectionCursor::next(Section& section) noexcept {
  if (model_ == nullptr || index_ == model_->sectionCount()) return false;
  section = Section(*model_, model_->parts[++index_]);
  return true;
}

}  // namespace sdp
