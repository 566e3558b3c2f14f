// Edits of one section or of the session: port, transport, formats, connection, direction, attributes.

#include <algorithm>
#include <charconv>

#include "access.h"
#include "fieldReader.h"
#include "keys.h"
#include "refusals.h"
#include "requests/media.h"

namespace sdp {
namespace {

using core::Kind;
using core::kNone;
using core::Model;
using core::Part;

bool endsLine(char c) { return c == '\r' || c == '\n' || c == '\0'; }
bool staysInLine(std::string_view text) { return std::none_of(text.begin(), text.end(), endsLine); }
bool isField(std::string_view text) {
  return !text.empty() && staysInLine(text) && text.find_first_of(" \t") == std::string_view::npos;
}
bool isAttributeName(std::string_view name) {
  return isField(name) && name.find(':') == std::string_view::npos;
}

bool haveSameFields(std::string_view one, std::string_view other) {
  while (true) {
    const std::string_view field = Fields::takeField(one);
    if (field != Fields::takeField(other)) return false;
    if (field.empty()) return true;
  }
}

/// What an edit is about.
enum class Of : std::uint8_t {
  section,
  sectionOrSession  ///< the session is section 0
};

/// Does an edit of a readable section or of the session.
/// @param edit called with the model and the part; returns why it cannot be done
template <typename Edit>
Refusal performOn(Document& document, std::uint32_t section, Of of, Edit edit) noexcept {
  return DocumentAccess::perform(document, [&](Model& model) {
    Refusal refusal;
    if (section > model.sectionCount() || (section == 0 && of == Of::section)) {
      refusal.reason = Reason::noSuchSection;
    } else {
      Part& part = model.parts[section];
      if (section != 0 && !part.m.readable) {
        refusal = core::refusalIn(model, part, Reason::unreadableSection);
      } else if (const Reason reason = edit(model, part); reason != Reason::none) {
        refusal = {reason, section, part.number};
      }
    }
    if (refusal) core::explain(model, refusal);
    return refusal;
  });
}

/// Where a c-line of the session belongs: behind the last of the lines that go in front of one.
core::Index lineBeforeConnection(const Model& model) {
  core::Index behind = kNone;
  for (core::Index i = model.session().first; i < model.session().end; ++i) {
    const core::Line& line = model.lines[i];
    if (line.gone != 0 || line.length == 0) continue;
    if (!sdpneg::contains("vosiuep", std::string_view(line.begin, 1))) break;
    behind = i;
  }
  return behind;
}

bool saysConnection(const core::Line& line, const core::AddressLiteral& literal) {
  std::string_view rest = line.content().substr(2);
  for (const std::string_view field : {std::string_view("IN"), literal.type, literal.text}) {
    if (Fields::takeField(rest) != field) return false;
  }
  return Fields::takeField(rest).empty();
}

core::Index firstNamed(const Model& model, const Part& part, std::string_view name) {
  const Kind kind = core::attributeKind(name);
  if ((part.kinds & core::one(kind)) == 0) return kNone;
  for (core::Index i = part.first; i < part.end; ++i) {
    const core::Line& line = model.lines[i];
    if (line.gone == 0 && line.kind == kind && core::nameOf(line) == name) return i;
  }
  return kNone;
}

Reason add(Model& model, Part& part, std::string_view name, std::optional<std::string_view> value) {
  if (!isAttributeName(name) || !staysInLine(value.value_or(""))) return Reason::wrongText;
  const bool added = core::addAtEnd(model, part, {"a=", name, value ? ":" : "", value.value_or("")});
  return added ? Reason::none : Reason::noSuchSection;
}

}  // namespace

Refusal Document::setPort(std::uint32_t section, std::uint16_t port) noexcept {
  return performOn(*this, section, Of::section, [port](Model& model, Part& part) {
    if (part.m.portNumber == port) return Reason::none;
    char digits[8];
    const auto end = std::to_chars(digits, digits + sizeof digits, port);
    const std::size_t slash = std::min(part.m.port.find('/'), part.m.port.size());
    core::setPort(model, part,
                  {{digits, static_cast<std::size_t>(end.ptr - digits)}, part.m.port.substr(slash)});
    return Reason::none;
  });
}

Refusal Document::setTransport(std::uint32_t section, std::string_view transport) noexcept {
  return performOn(*this, section, Of::section, [transport](Model& model, Part& part) {
    if (!isField(transport)) return Reason::wrongText;
    core::setTransport(model, part, transport);
    return Reason::none;
  });
}

Refusal Document::setFormats(std::uint32_t section, std::string_view formats) noexcept {
  return performOn(*this, section, Of::section, [formats](Model& model, Part& part) {
    if (core::firstField(formats).empty() || !staysInLine(formats)) return Reason::wrongText;
    if (haveSameFields(part.m.formats, formats)) return Reason::none;
    const std::string_view content = model.lines[part.first].content();
    const auto begin = static_cast<std::size_t>(part.m.formats.data() - content.data());
    core::LineWriter line(model, part, part.first, begin + 2 * formats.size());
    line.add(content.substr(0, begin));
    std::string_view separator;
    for (const std::string_view format : Fields(formats)) {
      line.add(separator).add(format);
      separator = " ";
    }
    line.finish();
    return Reason::none;
  });
}

Refusal Document::setConnection(std::uint32_t section, std::string_view address) noexcept {
  return performOn(*this, section, Of::sectionOrSession, [address](Model& model, Part& part) {
    const std::optional<core::AddressLiteral> literal = core::addressLiteralOf(address);
    if (!literal) return Reason::wrongAddress;
    const core::Pieces content = {"c=IN ", literal->type, " ", literal->text};
    const core::Index own = core::firstOf(model, part, core::one(Kind::connection));
    if (own != kNone) {
      if (!saysConnection(model.lines[own], *literal)) core::replaceLine(model, part, own, content);
      return Reason::none;
    }
    const bool isSession = &part == &model.session();
    const core::Index behind =
        isSession ? lineBeforeConnection(model) : core::lineBeforeConnection(model, part);
    if (behind == kNone) return Reason::noSuchSection;
    core::addBehind(model, part, behind, content);
    return Reason::none;
  });
}

Refusal Document::setDirection(std::uint32_t section, Direction direction) noexcept {
  return performOn(*this, section, Of::section, [direction](Model& model, Part& part) {
    core::setDirectionOf(model, part, direction);
    return Reason::none;
  });
}

Refusal Document::setAttribute(std::uint32_t section, std::string_view name,
                               std::optional<std::string_view> value) noexcept {
  return performOn(*this, section, Of::sectionOrSession, [&](Model& model, Part& part) {
    if (!isAttributeName(name)) return Reason::wrongText;
    const core::Index first = firstNamed(model, part, name);
    if (first == kNone) return add(model, part, name, value);
    if (!staysInLine(value.value_or(""))) return Reason::wrongText;
    core::replaceLine(model, part, first, {"a=", name, value ? ":" : "", value.value_or("")});
    return Reason::none;
  });
}

Refusal Document::addAttribute(std::uint32_t section, std::string_view name,
                               std::optional<std::string_view> value) noexcept {
  return performOn(*this, section, Of::sectionOrSession,
                   [&](Model& model, Part& part) { return add(model, part, name, value); });
}

Refusal Document::removeAttributes(std::uint32_t section, std::string_view name) noexcept {
  return performOn(*this, section, Of::sectionOrSession, [&](Model& model, Part& part) {
    core::forEach(model, part, ~(core::one(Kind::attribute) - 1), [&](core::Index i) {
      if (core::nameOf(model.lines[i]) == name) core::removeLine(model, i);
    });
    return Reason::none;
  });
}

}  // namespace sdp
