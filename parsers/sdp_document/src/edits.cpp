// What every edit is made of. This is the only place that changes lines.

#include "edits.h"

#include <algorithm>
#include <cstring>
#include <utility>

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

Part& partOf(Model& model, Index line) {
  const auto behind = std::upper_bound(model.parts.begin() + 1, model.parts.end(), line,
                                       [](Index index, const Part& part) { return index < part.first; });
  return *(behind - 1);
}

/// A line is about something else than before.
void changeKind(Model& model, Index line, Kind kind) {
  Part& part = partOf(model, line);
  part.kinds |= one(kind);
  if (&part != &model.session()) return;
  Index& first = model.sessionFirst[static_cast<std::size_t>(kind)];
  first = std::min(first, line);
}

/// Stores a line in the place of one that is remembered.
void store(Model& model, Index index, Line line) {
  Line& place = model.lines[index];
  model.before.push_back({index, place});
  if (line.kind != place.kind) changeKind(model, index, line.kind);
  if (isOfGroups(line.kind) || isOfGroups(place.kind)) model.groups.forget();
  model.length += line.whole().size();
  model.length -= place.whole().size();
  model.mostMids += mostMidsOf(line);
  model.mostMids -= mostMidsOf(place);
  line.added = place.added;
  line.number = place.number;
  place = line;
}

/// Stores a line whose fields may be others than before: those of an m-line are views into it.
void storeAnew(Model& model, Index index, const Line& line) {
  store(model, index, line);
  if (line.kind != Kind::media) return;
  Part& section = partOf(model, index);
  readMLine(model, section);
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
  store(model, section.first, made);
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
  // Lines that are gone leave the index here, too.
  const char* at = model.text.data();
  Index to = 0;
  for (Part& part : model.parts) {
    const Index first = std::exchange(part.first, to);
    for (Index from = first; from < part.end; ++from) {
      Line line = model.lines[from];
      if (line.gone != 0) continue;
      line.begin = at;
      at += line.whole().size();
      model.lines[to++] = line;
    }
    part.end = to;
  }
  model.lines.shrink(to);
  findSessionKinds(model);
  for (std::size_t n = 1; n < model.parts.size(); ++n) readMLine(model, model.parts[n]);
}

/// Room for a text that grows bit by bit.
void reserve(std::string& text, std::size_t size) {
  if (size > text.capacity()) text.reserve(std::max(size, text.capacity() + text.capacity() / 2));
}

}  // namespace

void insertAdditions(Model& model) {
  std::size_t left = model.additions.size();
  if (left == 0) return;
  std::sort(model.additions.begin(), model.additions.end(), [](const Addition& a, const Addition& b) {
    return a.behind != b.behind ? a.behind < b.behind : a.order < b.order;
  });
  model.groups.forget();
  model.formats.forget();
  // From the end to the beginning, so that each line moves once.
  std::size_t from = model.lines.size();
  model.lines.grow(left);
  std::size_t to = model.lines.size();
  for (std::size_t n = model.parts.size(); n-- > 0 && left != 0;) {
    Part& part = model.parts[n];
    const Index first = part.first;
    part.hasAdditions = false;
    part.end += static_cast<Index>(left);
    while (from > first) {
      while (left != 0 && model.additions[left - 1].behind == from - 1) {
        model.lines[--to] = model.additions[--left].line;
        part.kinds |= one(model.lines[to].kind);
      }
      model.lines[--to] = model.lines[--from];
    }
    part.first += static_cast<Index>(left);
  }
  model.additions.clear();
  findSessionKinds(model);
}

void replaceLine(Model& model, Index line, Pieces content) {
  storeAnew(model, line, makeLine(model, content, model.lines[line].end()));
}

void endLine(Model& model, Index line, std::string_view end) {
  storeAnew(model, line, makeLine(model, {model.lines[line].content()}, end));
}

void removeLines(Model& model, const Part& part, Kinds kinds) {
  forEach(model, part, kinds, [&](Index line) { removeLine(model, line); });
}

void addBehind(Model& model, Index line, Pieces content) {
  if (!model.lines[line].endsInLf()) endLine(model, line, kCrLf);
  Line added = makeLine(model, content, model.lines[line].end());
  model.mostMids += mostMidsOf(added);
  added.added = 1;
  model.length += added.whole().size();
  model.additions.push_back({line, static_cast<Index>(model.additions.size()), added});
  partOf(model, line).hasAdditions = true;
}

void setPort(Model& model, Part& section, Pieces port) {
  replaceField(model, section, section.m.port, port);
  readPortField(section.m);
}

void setTransport(Model& model, Part& section, std::string_view transport) {
  if (section.m.transport != transport) replaceField(model, section, section.m.transport, {transport});
}

LineWriter::LineWriter(Model& model, Index line, std::size_t room)
    : model_(model),
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
  storeAnew(model_, line_, lineOf(begin_, length, model_.lines[line_].endLength));
}

void LineWriter::finishFormats(Part& section, std::size_t formats) {
  const char* const before = model_.lines[line_].begin;
  Line made = model_.lines[line_];
  made.begin = begin_;
  made.length = static_cast<Index>(endLine());
  store(model_, line_, made);
  MLine& m = section.m;
  for (std::string_view* view : {&m.media, &m.port, &m.transport}) {
    *view = {begin_ + (view->data() - before), view->size()};
  }
  m.formats = made.content().substr(formats);
}

void beginEdit(Model& model) {
  model.before.clear();
  model.removed.clear();
  model.explanation.clear();
  model.lengthBefore = model.length;
  model.mostMidsBefore = model.mostMids;
  model.additionsBefore = model.additions.size();
  model.arenaBefore = model.arena.place();
}

void keepEdits(Model& model) {
  if (model.before.empty() && model.removed.empty() && model.additions.size() == model.additionsBefore) {
    return model.arena.forgetSince(model.arenaBefore);
  }
  const bool outgrown = isOutgrown(model);
  std::string spare;
  if (outgrown && model.text.capacity() < model.length + kReadRoom) spare.reserve(model.length + kReadRoom);
  reserve(model.rendered, model.length + kReadRoom);
  model.lines.reserve(model.lines.size() + model.additions.size());
  // Not while the request uses the tables, which move here.
  reserveForGroups(model);
  model.isRendered = false;
  model.sessionTrickles.reset();
  model.formats.forget();
  // Not before the request: its arguments may be views into what is forgotten here.
  if (outgrown) {
    insertAdditions(model);
    settle(model, spare);
  }
}

void takeBackEdits(Model& model) {
  for (const Index line : model.removed) model.lines[line].gone = 0;
  for (auto edit = model.before.rbegin(); edit != model.before.rend(); ++edit) {
    model.lines[edit->index] = edit->line;
    if (edit->line.kind == Kind::media) readMLine(model, partOf(model, edit->index));
  }
  model.length = model.lengthBefore;
  model.mostMids = model.mostMidsBefore;
  model.before.clear();
  model.removed.clear();
  model.additions.resize(model.additionsBefore);
  model.arena.forgetSince(model.arenaBefore);
  findSessionKinds(model);
  model.formats.forget();
  model.groups.forget();
}

}  // namespace sdp::core
