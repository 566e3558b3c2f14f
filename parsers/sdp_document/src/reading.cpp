// Reading a text: its lines, its sections, and the fields of their m-lines.

#include <cstring>

#include "fieldReader.h"
#include "model.h"

namespace sdp::core {
namespace {

/// The line that begins at `begin`, and where the next one does.
const char* readLine(const char* begin, const char* textEnd, Line& line) {
  const auto left = static_cast<std::size_t>(textEnd - begin);
  const auto* const lf = static_cast<const char*>(std::memchr(begin, '\n', left));
  const char* const stop = lf != nullptr ? lf : textEnd;
  const bool cr = stop != begin && stop[-1] == '\r';
  line.begin = begin;
  line.length = static_cast<Index>(stop - begin - (cr ? 1 : 0));
  line.endLength = static_cast<std::uint8_t>((cr ? 1 : 0) + (lf != nullptr ? 1 : 0)) & 3U;
  line.gone = 0;
  line.added = 0;
  classify(line.content(), line);
  return lf != nullptr ? lf + 1 : textEnd;
}

void readPortField(MLine& m) {
  const std::size_t slash = m.port.find('/');
  const std::optional<std::uint64_t> port = numberOf(m.port.substr(0, slash));
  const std::optional<std::uint64_t> count =
      slash == std::string_view::npos ? std::optional<std::uint64_t>(1) : numberOf(m.port.substr(slash + 1));
  m.readable = port.has_value() && *port <= 65535 && count.has_value() && *count >= 1;
  if (!m.readable) return;
  m.portNumber = static_cast<std::uint16_t>(*port);
  m.portCount = *count;
}

}  // namespace

void readMLine(const Model& model, Part& section) {
  const std::string_view value = model.lines[section.first].content().substr(2);
  FieldReader fields(value);
  MLine& m = section.m;
  m = {};
  m.media = fields.next();
  m.port = fields.next();
  m.transport = fields.next();
  const std::string_view format = fields.next();
  if (format.empty()) return;
  m.formats = fields.from(format);
  readPortField(m);
}

void read(Model& model, std::string_view text) {
  model.text.assign(text);
  model.arena.forgetAll();
  model.lines.clear();
  model.parts.resize(1);
  model.parts[0] = {};
  const char* at = model.text.data();
  const char* const end = at + model.text.size();
  Part* part = model.parts.data();
  while (at != end) {
    Line& line = model.lines.emplace_back();
    at = readLine(at, end, line);
    if (line.kind == Kind::media) {
      const auto index = static_cast<Index>(model.lines.size() - 1);
      part->end = index;
      part = &model.parts.emplace_back();
      part->first = index;
      part->number = index + 1;
      readMLine(model, *part);
    }
    part->kinds |= one(line.kind);
  }
  part->end = static_cast<Index>(model.lines.size());
  model.length = text.size();
  model.linesRead = model.lines.size();
  model.isRendered = false;
  findSessionKinds(model);
  reserveForQuestions(model);
}

void reserveForQuestions(Model& model) {
  model.formats.forget();
  model.groups.forget();
  std::size_t formats = 0;
  for (std::size_t n = 1; n < model.parts.size(); ++n) {
    const std::string_view text = model.parts[n].m.formats;
    if (text.size() / 2 >= formats) formats = std::max(formats, formatCount(text));
  }
  model.formats.reserve(formats);
  std::size_t mids = 0;
  forEach(model, model.session(), one(Kind::group), [&](Index i) { mids += model.lines[i].length / 2; });
  model.groups.reserve(mids, mids == 0 ? 0 : model.sectionCount());
  model.rendered.reserve(model.length);
}

}  // namespace sdp::core
