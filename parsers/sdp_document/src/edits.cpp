// What every edit is made of. This is the only place that changes lines.

#include "edits.h"

#include <algorithm>
#include <cstring>

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
  classify(line.content(), line);
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
  model.length += line.whole().size();
  model.length -= place.whole().size();
  line.added = place.added;
  place = line;
  // The fields of an m-line are views into it.
  if (line.kind == Kind::media) readMLine(model, partOf(model, index));
}

/// Where what edits made has outgrown the text that was read, the text as edited takes its place.
void settle(Model& model) {
  model.text.assign(render(model));
  model.arena.forgetAll();
  const char* at = model.text.data();
  for (Line& line : model.lines) {
    const std::size_t size = line.gone != 0 ? 0 : line.whole().size();
    line.begin = at;
    at += size;
  }
  for (std::size_t n = 1; n < model.parts.size(); ++n) readMLine(model, model.parts[n]);
}

/// The same once an edit is done, so that it may take texts of the document itself. Where memory is lacking the next one
/// tries again.
void settleWhenGrown(Model& model) noexcept {
  if (model.arena.taken() <= model.length + kLargestText / 1024) return;
  try {
    settle(model);
  } catch (const std::bad_alloc&) {
  }
}

/// Puts the additions into the index, from its end to its beginning.
void insertAdditions(Model& model) {
  std::size_t left = model.additions.size();
  if (left == 0) return;
  std::size_t from = model.lines.size();
  model.lines.resize(from + left);
  std::size_t to = model.lines.size();
  for (std::size_t n = model.parts.size(); n-- > 0;) {
    Part& part = model.parts[n];
    const auto first = part.first;
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
}

}  // namespace

void replaceLine(Model& model, Index line, Pieces content) {
  store(model, line, makeLine(model, content, model.lines[line].end()));
}

void endLine(Model& model, Index line, std::string_view end) {
  store(model, line, makeLine(model, {model.lines[line].content()}, end));
}

void removeLine(Model& model, Index line) {
  model.before.push_back({line, model.lines[line]});
  model.lines[line].gone = 1;
  model.length -= model.lines[line].whole().size();
}

void removeLines(Model& model, const Part& part, Kinds kinds) {
  forEach(model, part, kinds, [&](Index line) { removeLine(model, line); });
}

void addBehind(Model& model, Index line, Pieces content) {
  if (!model.lines[line].endsInLf()) endLine(model, line, kCrLf);
  Line added = makeLine(model, content, model.lines[line].end());
  added.added = 1;
  model.length += added.whole().size();
  model.additions.push_back({line, added});
}

void setPort(Model& model, Part& section, Pieces port) {
  const std::string_view content = model.lines[section.first].content();
  const auto begin = static_cast<std::size_t>(section.m.port.data() - content.data());
  LineWriter line(model, section.first, content.size() + sizeOf(port));
  line.add(content.substr(0, begin));
  for (const std::string_view piece : port) line.add(piece);
  line.add(content.substr(begin + section.m.port.size())).finish();
}

void setTransport(Model& model, Part& section, std::string_view transport) {
  if (section.m.transport == transport) return;
  const std::string_view content = model.lines[section.first].content();
  const auto begin = static_cast<std::size_t>(section.m.transport.data() - content.data());
  replaceLine(model, section.first,
              {content.substr(0, begin), transport, content.substr(begin + section.m.transport.size())});
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

void LineWriter::finish() {
  const std::string_view end = model_.lines[line_].end();
  const auto length = static_cast<std::size_t>(end_ - begin_);
  add(end);
  model_.arena.giveBack(room_ - length - end.size());
  store(model_, line_, lineOf(begin_, length, end.size()));
}

void beginRequest(Model& model) {
  model.before.clear();
  model.additions.clear();
  model.explanation.clear();
  model.arenaBefore = model.arena.mark();
}

void keepEdits(Model& model) {
  if (model.before.empty() && model.additions.empty()) return;
  model.rendered.reserve(model.length);
  model.lines.reserve(model.lines.size() + model.additions.size());
  if (!model.additions.empty()) {
    insertAdditions(model);
    findSessionKinds(model);
  }
  model.isRendered = false;
  model.sessionTrickles.reset();
  model.formats.forget();
  model.groups.forget();
  settleWhenGrown(model);
}

void takeBackEdits(Model& model) {
  for (auto edit = model.before.rbegin(); edit != model.before.rend(); ++edit) {
    model.length += edit->line.whole().size();
    model.length -= model.lines[edit->index].gone != 0 ? 0 : model.lines[edit->index].whole().size();
    model.lines[edit->index] = edit->line;
    if (edit->line.kind == Kind::media) readMLine(model, partOf(model, edit->index));
  }
  for (const Addition& addition : model.additions) model.length -= addition.line.whole().size();
  model.before.clear();
  model.additions.clear();
  model.arena.rewind(model.arenaBefore);
  findSessionKinds(model);
  model.formats.forget();
  model.groups.forget();
}

}  // namespace sdp::core
