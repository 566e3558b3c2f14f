// Finding lines of a document, and rendering them.

#include "model.h"

#include <cstring>

#include "attributeNames.h"
#include "fieldReader.h"

namespace sdp::core {
namespace {

bool isOfKind(const Line& line, Kinds kinds) { return line.gone == 0 && has(kinds, line.kind); }

/// The session is asked for each section, so where its kinds begin is kept. Lines only go, so what was found
/// once is at most passed by.
Index firstOfSession(const Model& model, Kind kind) {
  Index& first = model.sessionFirst[static_cast<std::size_t>(kind)];
  if (first == kNone) return kNone;
  while (first < model.session().end && !isOfKind(model.lines[first], one(kind))) ++first;
  if (first >= model.session().end) first = kNone;
  return first;
}

}  // namespace

Index firstOf(const Model& model, const Part& part, Kinds kinds) {
  Kinds present = part.kinds & kinds;
  if (&part == &model.session()) {
    Index first = kNone;
    for (; present != 0; present &= present - 1) {
      first = std::min(first, firstOfSession(model, static_cast<Kind>(std::countr_zero(present))));
    }
    return first;
  }
  if (present == 0) return kNone;
  for (Index i = part.first; i < part.end; ++i) {
    if (isOfKind(model.lines[i], present)) return i;
  }
  return kNone;
}

void findSessionKinds(const Model& model) {
  model.sessionFirst.fill(kNone);
  const Part& session = model.session();
  for (Index i = session.end; i-- > session.first;) {
    model.sessionFirst[static_cast<std::size_t>(model.lines[i].kind)] = i;
  }
}

std::string_view nameOf(const Line& line) {
  const std::string_view behind = line.content().substr(2);
  if (line.kind != Kind::attribute) {
    return behind.substr(0, kNameLengths[static_cast<std::size_t>(line.kind)]);
  }
  return behind.substr(0, line.detail == kLongName ? behind.find(':') : line.detail);
}

std::optional<std::string_view> valueOf(const Line& line) {
  const std::size_t colon = 2 + nameOf(line).size();
  if (colon >= line.length) return std::nullopt;
  return line.content().substr(colon + 1);
}

std::string_view firstFieldOf(const Line& line) { return firstField(textBehindColon(line)); }

std::string_view midOf(const Model& model, const Part& section) {
  const Index line = firstOf(model, section, one(Kind::mid));
  return line == kNone ? std::string_view() : firstFieldOf(model.lines[line]);
}

std::string_view render(const Model& model) {
  if (model.isRendered) return model.rendered;
  std::string& text = model.rendered;
  text.clear();
  const char* begin = nullptr;
  const char* end = nullptr;
  for (const Part& part : model.parts) {
    const Line* const behind = model.lines.begin() + part.end;
    for (const Line* line = model.lines.begin() + part.first; line != behind; ++line) {
      if (line->gone != 0) continue;
      const std::string_view whole = line->whole();
      if (whole.data() != end) {
        text.append(begin, end);
        begin = whole.data();
      }
      end = whole.data() + whole.size();
    }
  }
  text.append(begin, end);
  model.isRendered = true;
  return text;
}

}  // namespace sdp::core
