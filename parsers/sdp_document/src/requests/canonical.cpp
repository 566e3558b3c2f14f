// The form on which all readers agree.

#include <algorithm>

#include "edits.h"
#include "fieldReader.h"
#include "refusals.h"
#include "requests/media.h"
#include "spellings.h"

namespace sdp::core {
namespace {

constexpr std::string_view kCrLf = "\r\n";

bool isLine(std::string_view content) {
  return content.size() >= 2 && content[0] >= 'a' && content[0] <= 'z' && content[1] == '=';
}

std::optional<Reason> faultOf(const Line& line) {
  const std::string_view content = line.content();
  if (sdpneg::contains(content, std::string_view("\0", 1))) return Reason::nulCharacter;
  if (sdpneg::contains(content, "\r")) return Reason::loneCarriageReturn;
  if (!content.empty() && !isLine(content)) return Reason::noLine;
  return std::nullopt;
}

Refusal refuseLines(const Model& model) {
  bool first = true;
  for (const Part& part : model.parts) {
    for (Index i = part.first; i < part.end; ++i) {
      if (model.lines[i].gone != 0) continue;
      std::optional<Reason> fault = faultOf(model.lines[i]);
      if (first && !fault && model.lines[i].kind != Kind::version) fault = Reason::noVersionLine;
      if (fault) return {*fault, model.indexOf(part), model.lines[i].number};
      first = false;
    }
  }
  if (first) return {Reason::noVersionLine, 0, 1};
  return {};
}

template <typename Known>
std::string_view spelt(std::string_view text, const Known& known) {
  const auto found = std::find_if(known.begin(), known.end(),
                                  [text](std::string_view k) { return sdpneg::equalNoCase(k, text); });
  return found == known.end() ? text : *found;
}

std::string_view withoutLeadingZeros(std::string_view digits) {
  const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size() - 1);
  return digits.substr(first);
}

/// Writes an m-line with single blanks and known words in their spelling.
void straightenMLine(Model& model, Part& section) {
  const MLine& m = section.m;
  const std::string_view content = model.lines[section.first].content();
  const std::size_t slash = m.port.find('/');
  LineWriter line(model, section, section.first, content.size());
  line.add("m=").add(spelt(m.media, kMedia)).add(" ").add(withoutLeadingZeros(m.port.substr(0, slash)));
  if (slash != std::string_view::npos) line.add("/").add(withoutLeadingZeros(m.port.substr(slash + 1)));
  line.add(" ").add(spelt(m.transport, kTransports));
  for (const std::string_view format : Fields(m.formats)) line.add(" ").add(format);
  if (line.view() == content) return line.drop();
  line.finish();
}

void straightenAttribute(Model& model, Part& part, Index index) {
  const std::string_view name = nameOf(model.lines[index]);
  const Kind kind = attributeKindNoCase(name);
  if (kind == Kind::attribute) return;
  replaceLine(model, part, index, {"a=", nameOf(kind), model.lines[index].content().substr(2 + name.size())});
}

}  // namespace

Refusal canonicalise(Model& model) {
  if (const Refusal refusal = refuseLines(model)) return refusal;
  for (std::size_t n = 1; n < model.parts.size(); ++n) {
    if (!model.parts[n].m.readable) return refusalIn(model, model.parts[n], Reason::unreadableSection);
  }
  for (std::size_t n = 0; n < model.parts.size(); ++n) {
    Part& part = model.parts[n];
    if (n != 0) straightenMLine(model, part);
    for (Index i = part.first; i < part.end; ++i) {
      if (model.lines[i].gone != 0) continue;
      if (model.lines[i].kind == Kind::empty) {
        removeLine(model, i);
        continue;
      }
      if (model.lines[i].kind == Kind::attribute) straightenAttribute(model, part, i);
      if (model.lines[i].end() != kCrLf) endLine(model, part, i, kCrLf);
    }
  }
  return {};
}

}  // namespace sdp::core
