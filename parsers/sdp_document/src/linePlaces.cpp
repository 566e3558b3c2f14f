// Parts that grow, and places that nobody needs any more.

#include "linePlaces.h"

#include <algorithm>

#include "edits.h"

namespace sdp::core {
namespace {

Index sizeOf(const Part& part) { return part.end - part.first; }

/// What a part that moves takes at most: half of its lines more, so that moving is rare.
std::size_t mostOf(const Part& part) { return sizeOf(part) + sizeOf(part) / 2 + 1; }

/// Lets a part begin elsewhere, without lines that are gone. What comes there is not behind what is there now.
/// @return where one of its lines lies now; `line` itself when that is none of them
Index layDown(Model& model, Part& part, Index to, Index line) {
  Index found = line;
  Index at = to;
  for (Index i = part.first; i < part.end; ++i) {
    if (model.lines[i].gone != 0) continue;
    if (i == line) found = at;
    model.lines[at++] = model.lines[i];
  }
  part.first = to;
  part.end = at;
  if (&part == &model.session()) findSessionKinds(model);
  return found;
}

/// Makes room for a line in a part that has none: in place of lines that are gone when they are many, else behind all
/// other parts.
/// @return where one of its lines lies now
Index makeRoom(Model& model, Part& part, Index line) {
  const Line* const lines = model.lines.begin();
  const auto gone = static_cast<Index>(
      std::count_if(lines + part.first, lines + part.end, [](const Line& one) { return one.gone != 0; }));
  if (gone > sizeOf(part) / 4) {
    const Index now = layDown(model, part, part.first, line);
    part.room = gone;
    return now;
  }
  const std::size_t to = model.lines.size();
  const std::size_t most = mostOf(part);
  model.unused += sizeOf(part);
  model.lines.grow(most);
  const Index now = layDown(model, part, static_cast<Index>(to), line);
  part.room = static_cast<Index>(to + most) - part.end;
  return now;
}

/// Puts a line into a part that has room for it.
void insert(Model& model, Part& part, Index at, const Line& line) {
  Line* const lines = model.lines.begin();
  // Where all that follows is gone, nothing has to move up.
  while (at < part.end && lines[at].gone != 0) ++at;
  std::copy_backward(lines + at, lines + part.end, lines + part.end + 1);
  lines[at] = line;
  ++part.end;
  --part.room;
  part.kinds |= one(line.kind);
  const bool ofSession = &part == &model.session();
  if (ofSession && line.kind == Kind::group) {
    model.groups.addGroup(model, at);
  } else if (has(kKept, line.kind)) {
    forgetKept(model, ofSession, one(line.kind));
  }
  if (!ofSession) return;
  Index& first = model.sessionFirst[static_cast<std::size_t>(line.kind)];
  first = std::min(first, at);
}

}  // namespace

void reserveForAdditions(Model& model) {
  if (model.additions.empty()) return;
  std::size_t most = model.lines.size();
  for (const Addition& addition : model.additions) {
    if (addition.part->room == 0) most += mostOf(*addition.part);
  }
  model.lines.reserve(most);
  reserveForPacking(model);
}

void takeAdditionsIn(Model& model) {
  for (const Addition& addition : model.additions) {
    Part& part = *addition.part;
    const Index behind = part.room != 0 ? addition.behind : makeRoom(model, part, addition.behind);
    insert(model, part, behind + 1, addition.line);
  }
  model.additions.clear();
  if (model.unused > model.lines.size() - model.unused) packLines(model);
}

void packLines(Model& model) {
  // Each moves towards the beginning, so that none comes to lie on one that is still to move.
  model.places.clear();
  for (Index n = 0; n < model.parts.size(); ++n) model.places.push_back(n);
  std::sort(model.places.begin(), model.places.end(), [&model](Index a, Index b) {
    const Part& first = model.parts[a];
    const Part& second = model.parts[b];
    return first.first != second.first ? first.first < second.first : first.end < second.end;
  });
  Index to = 0;
  for (const Index n : model.places) {
    Part& part = model.parts[n];
    layDown(model, part, to, kNone);
    part.room = std::min(part.room, sizeOf(part));
    to = part.end + part.room;
  }
  model.lines.shrink(to);
  model.unused = 0;
}

}  // namespace sdp::core
