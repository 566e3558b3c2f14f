// Reading a text: its lines, its sections, and the fields of their m-lines.

#include <cstring>

#include "fieldReader.h"
#include "lineReader.h"
#include "model.h"
#include "scan.h"

namespace sdp::core {
namespace {

constexpr std::uint32_t kHighestPort = 65535;

/// Reads the line that begins at `begin`.
/// @return where the next one begins
const char* readLine(const char* begin, const char* textEnd, Line& line) {
  const auto left = static_cast<std::size_t>(textEnd - begin);
  const auto* const lf = static_cast<const char*>(std::memchr(begin, '\n', left));
  const char* const stop = lf != nullptr ? lf : textEnd;
  const unsigned cr = stop != begin && stop[-1] == '\r' ? 1 : 0;
  line.begin = begin;
  line.length = static_cast<Index>(stop - begin) - cr;
  line.endLength = (cr + (lf != nullptr ? 1U : 0U)) & 3U;
  line.gone = 0;
  line.added = 0;
  readKind(line);
  return lf != nullptr ? lf + 1 : textEnd;
}

/// A number up to 65535 that a text begins with.
/// @return where it ends; its beginning where there is none
const char* readPort(const char* at, const char* end, std::uint32_t& number) {
  number = 0;
  const char* const begin = at;
  for (; at != end && sdpneg::isDigit(*at); ++at) {
    number = number * 10 + static_cast<std::uint32_t>(*at - '0');
    if (number > kHighestPort) return begin;
  }
  return at;
}

}  // namespace

void readPortField(MLine& m) {
  const char* const begin = m.port.data();
  const char* const end = begin + m.port.size();
  std::uint32_t number = 0;
  const char* const at = readPort(begin, end, number);
  m.readable = false;
  if (at == begin || (at != end && *at != '/')) return;
  std::optional<std::uint64_t> count = 1;
  if (at != end) count = numberOf({at + 1, static_cast<std::size_t>(end - at - 1)});
  m.readable = count.has_value() && *count >= 1;
  if (!m.readable) return;
  m.portNumber = static_cast<std::uint16_t>(number);
  m.portCount = *count;
}

void readMLine(Model& model, Part& section) {
  const std::string_view content = model.lines[section.first].content();
  const char* at = content.data() + 2;
  const char* const end = content.data() + content.size();
  MLine& m = section.m;
  model.mostFormats -= m.mostFormats;
  m = {};
  for (std::string_view* field : {&m.media, &m.port, &m.transport}) {
    at = skipBlanks(at, end);
    const char* const behind = findBlank(at, end);
    *field = {at, static_cast<std::size_t>(behind - at)};
    at = behind;
  }
  at = skipBlanks(at, end);
  if (at == end) return;
  m.formats = {at, static_cast<std::size_t>(end - at)};
  m.mostFormats = mostFormatsOf(m.formats);
  model.mostFormats += m.mostFormats;
  readPortField(m);
}

void read(Model& model, std::string_view text) {
  model.text.assign(text);
  model.text.append(kReadRoom, '\0');
  model.arena.forgetAll();
  model.lines.clear();
  model.mostFormats = 0;
  model.unused = 0;
  model.parts.clear();
  Part* part = model.parts.begin();
  const char* at = model.text.data();
  const char* const end = at + text.size();
  while (at != end) {
    Line& line = model.lines.add();
    at = readLine(at, end, line);
    line.number = static_cast<Index>(model.lines.size());
    if (line.kind == Kind::media) {
      const auto index = static_cast<Index>(model.lines.size() - 1);
      part->end = index;
      part = &model.parts.add();
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
  model.sessionTrickles.reset();
  reserveForQuestions(model);
}

void reserveForFormats(Model& model) {
  if (!model.formats.hasRoomFor(model.mostFormats, model.sectionCount())) {
    model.formats.reserve(model.mostFormats, model.sectionCount());
  }
}

void reserveForGroups(Model& model) {
  if (model.mostMids != 0) model.groups.reserve(model.mostMids, model.sectionCount());
}

void reserveForQuestions(Model& model) {
  model.formats.forget();
  model.groups.forget();
  reserveForFormats(model);
  model.mostMids = 0;
  for (const Part& part : model.parts) {
    forEach(model, part, one(Kind::group), [&](Index i) { model.mostMids += mostMidsOf(model.lines[i]); });
  }
  reserveForGroups(model);
  model.rendered.reserve(model.length + kReadRoom);
}

}  // namespace sdp::core
