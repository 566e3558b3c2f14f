#include "report/callLines.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "output/printable.h"
#include "report/times.h"

namespace tool {
namespace {

/// A column's heading and the width that it has where its texts are no longer.
struct Column {
  std::string_view heading;
  std::size_t width;
};
constexpr std::array<Column, 8> kColumns = {{{"CALL", 5},
                                             {"START (UTC)", 23},
                                             {"FROM", 26},
                                             {"TO", 26},
                                             {"RESULT", 13},
                                             {"CODECS", 14},
                                             {"SECURITY", 9},
                                             {"ODD", 0}}};

/// A URI without its scheme, which is nearly always the same.
std::string partyText(const std::string& uri) {
  const std::string_view text = uri;
  const std::string_view shown = text.starts_with("sip:") ? text.substr(4) : text;
  return shown.empty() ? "-" : printable(shown);
}

std::string listed(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ",") + word;
  return text.empty() ? "-" : printable(text);
}

/// The rules that are broken, each once with the number of times.
std::string oddText(const Call& call) {
  std::vector<std::pair<std::string_view, std::size_t>> rules;
  for (const Trouble& trouble : call.troubles) {
    const auto found =
        std::ranges::find(rules, trouble.rule, &std::pair<std::string_view, std::size_t>::first);
    if (found == rules.end()) {
      rules.emplace_back(trouble.rule, 1);
    } else {
      ++found->second;
    }
  }
  std::string text;
  for (const auto& [rule, count] : rules) {
    text += (text.empty() ? "" : ", ") + std::string(rule);
    if (count > 1) text += " (" + std::to_string(count) + ")";
  }
  return text;
}

/// Bytes that go on a character are no columns of their own.
std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

std::string laidOut(const std::array<std::string, kColumns.size()>& texts,
                    const std::array<std::optional<Style>, kColumns.size()>& styles, const Palette& palette) {
  std::string line;
  std::size_t open = 0;  // blanks that the next text stands behind
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (texts[i].empty()) continue;
    line.append(open, ' ');
    line += styles[i] ? palette.paint(*styles[i], texts[i]) : texts[i];
    open = 2 + kColumns[i].width - std::min(kColumns[i].width, widthOf(texts[i]));
  }
  return line + "\n";
}

Style worstOf(const Call& call) {
  const bool hasError =
      std::ranges::any_of(call.troubles, [](const Trouble& each) { return !each.isWarning; });
  return hasError ? Style::bad : Style::warning;
}

std::optional<Style> stateStyle(CallState state) {
  if (state == CallState::failed) return Style::bad;
  if (state == CallState::up || state == CallState::ended) return Style::good;
  return std::nullopt;
}

}  // namespace

std::string callLineHeading(const Palette& palette) {
  std::array<std::string, kColumns.size()> texts;
  std::array<std::optional<Style>, kColumns.size()> styles;
  for (std::size_t i = 0; i < kColumns.size(); ++i) texts[i] = kColumns[i].heading;
  styles.fill(Style::heading);
  return laidOut(texts, styles, palette);
}

std::string stateText(const Call& call) {
  std::string text(textOf(call.state));
  if (call.result != 0) text += " " + std::to_string(call.result);
  return text;
}

Style styleOf(const Trouble& trouble) { return trouble.isWarning ? Style::warning : Style::bad; }

std::string callLine(const Call& call, const Palette& palette) {
  std::string odd = oddText(call);
  if (call.isGivenUp) odd += odd.empty() ? "not whole" : ", not whole";
  std::array<std::optional<Style>, kColumns.size()> styles;
  styles[4] = stateStyle(call.state);
  styles[7] = worstOf(call);
  return laidOut(
      {std::to_string(call.number), readableTime(call.start), partyText(call.from), partyText(call.to),
       stateText(call), listed(call.codecs), call.security.empty() ? "-" : printable(call.security), odd},
      styles, palette);
}

std::string troubleLines(const Call& call, const Palette& palette) {
  std::string lines;
  for (const Trouble& trouble : call.troubles) {
    lines += "call " + std::to_string(call.number) + ", message " +
             std::to_string(call.messages[trouble.message].number);
    if (trouble.line != 0) lines += ", line " + std::to_string(trouble.line);
    if (trouble.section != 0) lines += ", section " + std::to_string(trouble.section);
    lines += ": " + palette.paint(styleOf(trouble), trouble.rule) + ": " + printable(trouble.text) + "\n";
  }
  return lines;
}

}  // namespace tool
