// What every edit is made of. This is the only place that changes lines.

#include "edits.h"

#include <algorithm>
#include <cstring>

#include "linePlaces.h"

namespace sdp::core {
namespace {

constexpr std::string_view kCrLf = "\r\n";

std::size_t sizeOf(Pieces pieces) {
  std::size_t size = 0;
  for (const std::string_view piece : pieces) size += piece.size();
  return size;
}

char* put(char* at, std::string_view piece) { return std::copy(piece.begin(), piece.end(), at); }

/// A line of the arena, whose text stands from `begin` on.
Line lineOf(const char* begin, std::size_t length, std::size_t endLength) {
  Line line{};
  line.begin = begin;
  line.length = static_cast<Index>(length);
  line.endLength = static_cast<std::uint8_t>(endLength) & 3U;
  classify(line);
  return line;
}

Line makeLine(Model& model, Pieces content, std::string_view end) {
  const std::size_t length = sizeOf(content);
  char* const begin = model.arena.room(length + end.size());
  char* at = begin;
  for (const std::string_view piece : content) at = put(at, piece);
  put(at, end);
  return lineOf(begin, length, end.size());
}

/// A line of a part is about something else than before.
void changeKind(Model& model, Part& part, Index line, Kind kind) {
  part.kinds |= one(kind);
  if (&part != &model.session()) return;
  Index& first = model.sessionFirst[static_cast<std::size_t>(kind)];
  first = std::min(first, line);
}

/// Stores a line in the place of one that is remembered.
void store(Model& model, Part& part, Index index, Line line) {
  Line& place = model.lines[index];
  model.before.push_back({&part, index, place});
  if (line.kind != place.kind) changeKind(model, part, index, line.kind);
  if ((kindsOf(line.kind, place.kind) & kKept) != 0) {
    forgetKept(model, &part == &model.session(), kindsOf(line.kind, place.kind));
  }
  model.length += line.whole().size();
  model.length -= place.whole().size();
  model.mostMids += mostMidsOf(line);
  model.mostMids -= mostMidsOf(place);
  line.added = place.added;
  line.number = place.number;
  place = line;
}

/// Stores a line whose fields may be others than before: those of an m-line are views into it.
void storeAnew(Model& model, Part& part, Index index, const Line& line) {
  store(model, part, index, line);
  if (line.kind != Kind::media) return;
  readMLine(model, part);
  reserveForFormats(model);
}

/// Gives one field of an m-line another text. The other fields are where they were, before it or behind it.
void replaceField(Model& model, Part& section, std::string_view& field, Pieces text) {
  const std::string_view content = model.lines[section.first].content();
  const auto begin = static_cast<std::size_t>(field.data() - content.data());
  const std::string_view end = model.lines[section.first].end();
  const std::size_t size = sizeOf(text);
  const std::size_t length = content.size() - field.size() + size;
  char* const line = model.arena.room(length + end.size());
  char* at = put(line, content.substr(0, begin));
  for (const std::string_view piece : text) at = put(at, piece);
  put(put(at, content.substr(begin + field.size())), end);
  Line made = model.lines[section.first];
  made.begin = line;
  made.length = static_cast<Index>(length);
  store(model, section, section.first, made);
  const char* const behind = field.data();
  const std::size_t fieldSize = field.size();
  MLine& m = section.m;
  for (std::string_view* view : {&m.media, &m.port, &m.transport, &m.formats}) {
    const auto offset = static_cast<std::size_t>(view->data() - content.data());
    const bool isBehind = view->data() > behind;
    const std::size_t now = isBehind ? offset - fieldSize + size : offset;
    *view = {line + now, view == &field ? size : view->size()};
  }
}

/// The lines that edits made take so much more than the text that it is to be put together anew.
bool isOutgrown(const Model& model) { return model.arena.taken() > model.length + kLargestText / 1024; }

/// The edited text becomes the text. Allocates nothing.
/// @param spare has room for the text where the former one has not
void settle(Model& model, std::string& spare) {
  render(model);
  model.text.swap(model.rendered);
  model.text.append(kReadRoom, '\0');
  if (model.rendered.capacity() < model.length + kReadRoom) model.rendered.swap(spare);
  model.isRendered = false;
  model.arena.forgetAll();
  const char* at = model.text.data();
  for (Part& part : model.parts) {
    for (Index i = part.first; i < part.end; ++i) {
      Line& line = model.lines[i];
      if (line.gone != 0) continue;
      line.begin = at;
      at += line.whole().size();
    }
    if (&part != &model.session()) readMLine(model, part);
  }
  packLines(model);
  model.groups.forget();
}

/// The request in hand has changed something.
bool hasChanged(const Model& model) {
  return !model.before.empty() || !model.removed.empty() || !model.additions.empty();
}

/// Room for a text that grows bit by bit.
void reserve(std::string& text, std::size_t size) {
  if (size > text.capacity()) text.reserve(std::max(size, text.capacity() + text.capacity() / 2));
}

}  // namespace

void forgetKept(Model& model, bool ofSession, Kinds kinds) {
  if (has(kinds, Kind::mid)) model.groups.forgetSections();
  if (!ofSession) return;
  if (has(kinds, Kind::group)) model.groups.forget();
  if (has(kinds, Kind::iceOptions)) model.sessionTrickles.reset();
}

void replaceLine(Model& model, Part& part, Index line, Pieces content) {
  storeAnew(model, part, line, makeLine(model, content, model.lines[line].end()));
}

void endLine(Model& model, Part& part, Index line, std::string_view end) {
  storeAnew(model, part, line, makeLine(model, {model.lines[line].content()}, end));
}

void removeLines(Model& model, const Part& part, Kinds kinds) {
  forEach(model, part, kinds, [&](Index line) { removeLine(model, line); });
}

void addBehind(Model& model, Part& part, Index line, Pieces content) {
  if (!model.lines[line].endsInLf()) endLine(model, part, line, kCrLf);
  Line added = makeLine(model, content, model.lines[line].end());
  added.added = 1;
  model.additions.push_back({&part, line, added});
  model.mostMids += mostMidsOf(added);
  model.length += added.whole().size();
}

void setPort(Model& model, Part& section, Pieces port) {
  replaceField(model, section, section.m.port, port);
  readPortField(section.m);
}

void setTransport(Model& model, Part& section, std::string_view transport) {
  if (section.m.transport != transport) replaceField(model, section, section.m.transport, {transport});
}

LineWriter::LineWriter(Model& model, Part& part, Index line, std::size_t room)
    : model_(model),
      part_(part),
      line_(line),
      room_(room + model.lines[line].end().size()),
      begin_(model.arena.room(room_)),
      end_(begin_) {}

LineWriter& LineWriter::add(std::string_view piece) {
  end_ = put(end_, piece);
  return *this;
}

/// Adds the line's end and gives back what is not needed.
/// @return the length of the content
std::size_t LineWriter::endLine() {
  const std::string_view end = model_.lines[line_].end();
  const auto length = static_cast<std::size_t>(end_ - begin_);
  add(end);
  model_.arena.giveBack(room_ - length - end.size());
  return length;
}

void LineWriter::finish() {
  const std::size_t length = endLine();
  storeAnew(model_, part_, line_, lineOf(begin_, length, model_.lines[line_].endLength));
}

void LineWriter::finishFormats(std::size_t formats) {
  const char* const before = model_.lines[line_].begin;
  Line made = model_.lines[line_];
  made.begin = begin_;
  made.length = static_cast<Index>(endLine());
  store(model_, part_, line_, made);
  MLine& m = part_.m;
  for (std::string_view* view : {&m.media, &m.port, &m.transport}) {
    *view = {begin_ + (view->data() - before), view->size()};
  }
  m.formats = made.content().substr(formats);
}

void beginEdit(Model& model) {
  model.before.clear();
  model.removed.clear();
  model.additions.clear();
  model.explanation.clear();
  model.lengthBefore = model.length;
  model.mostMidsBefore = model.mostMids;
  model.arenaBefore = model.arena.place();
}

void keepEdits(Model& model) {
  if (!hasChanged(model)) return model.arena.forgetSince(model.arenaBefore);
  const bool outgrown = isOutgrown(model);
  std::string spare;
  if (outgrown && model.text.capacity() < model.length + kReadRoom) spare.reserve(model.length + kReadRoom);
  if (outgrown) reserveForPacking(model);
  reserve(model.rendered, model.length + kReadRoom);
  reserveForAdditions(model);
  // Not while the request uses the tables, which move here.
  reserveForGroups(model);
  model.isRendered = false;
  model.formats.forget();
  takeAdditionsIn(model);
  // Not before the request: its arguments may be views into what is forgotten here.
  if (outgrown) settle(model, spare);
}

void takeBackEdits(Model& model) {
  if (!hasChanged(model)) return model.arena.forgetSince(model.arenaBefore);
  for (const Index line : model.removed) {
    model.lines[line].gone = 0;
    if (isOfSession(model, line)) changeKind(model, model.parts[0], line, model.lines[line].kind);
  }
  for (auto edit = model.before.rbegin(); edit != model.before.rend(); ++edit) {
    model.lines[edit->index] = edit->line;
    changeKind(model, *edit->part, edit->index, edit->line.kind);
    if (edit->line.kind == Kind::media) readMLine(model, *edit->part);
  }
  model.length = model.lengthBefore;
  model.mostMids = model.mostMidsBefore;
  model.before.clear();
  model.removed.clear();
  model.additions.clear();
  model.arena.forgetSince(model.arenaBefore);
  model.sessionTrickles.reset();
  model.formats.forget();
  model.groups.forget();
}

void forgetHalfDone(Model& model) {
  model.explanation.clear();
  model.formats.forget();
  model.groups.forget();
}

}  // namespace sdp::core
