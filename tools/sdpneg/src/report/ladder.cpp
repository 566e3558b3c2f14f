#include "report/ladder.h"

#include <algorithm>
#include <array>
#include <vector>

#include "calls/media.h"
#include "output/printable.h"
#include "report/bodyDiff.h"
#include "report/callLines.h"
#include "report/times.h"

namespace tool {
namespace {

/// Width in front of the first participant's line: number and time of a message.
constexpr std::size_t kMargin = 20;
/// Widths between the lines of two participants that stand side by side.
constexpr std::size_t kLeastSpan = 22;
constexpr std::size_t kMostSpan = 48;
/// Participants that have a line each; more of them share the last one.
constexpr std::size_t kMostColumns = 64;
/// Characters that a label has beside it in an arrow: blanks, dashes and the head.
constexpr std::size_t kArrow = 8;

/// A text cut so that it fits, its end shown as "..".
std::string fitted(std::string text, std::size_t width) {
  if (text.size() <= width) return text;
  return text.substr(0, width - std::min<std::size_t>(width, 2)) + "..";
}

std::string_view roleText(BodyRole role) {
  constexpr std::array<std::string_view, 4> kTexts = {"", " (offer)", " (answer)", " (SDP)"};
  return kTexts[static_cast<std::size_t>(role)];
}

/// What is written into a message's arrow.
std::string messageLabel(const CallMessage& message) {
  std::string label = printable(message.first());
  if (message.status != 0 && !message.method.empty() && message.method != "INVITE")
    label += " " + printable(message.method);
  label += roleText(message.body);
  if (message.retransmissionOf) label += " again";
  if (message.isCut) label += " cut";
  return label;
}

std::optional<Style> styleOf(const CallMessage& message) {
  if (message.retransmissionOf || message.status == 0) return std::nullopt;
  if (message.status >= 300) return Style::bad;
  if (message.status >= 200) return Style::good;
  return std::nullopt;
}

/// The participants' lines: where each stands in a row.
class Columns {
 public:
  Columns(const Call& call, const Names& names) : participants_(call) {
    const std::size_t all = participants_.size();
    const std::size_t alone = all > kMostColumns ? kMostColumns - 1 : all;
    for (std::size_t i = 0; i < alone; ++i) labels_.push_back(tool::labelOf(names, participants_.at(i)));
    if (alone < all) labels_.push_back(std::to_string(all - alone) + " others");
    std::vector<std::size_t> spans(labels_.size(), kLeastSpan);
    for (const CallMessage& message : call.messages) {
      const auto [from, to] = columnsOf(message);
      const std::size_t left = std::min(from, to);
      if (from != to && std::max(from, to) == left + 1)
        spans[left] = std::clamp(messageLabel(message).size() + kArrow, spans[left], kMostSpan);
    }
    for (std::size_t i = 0, at = kMargin; i < labels_.size(); ++i) {
      places_.push_back(at);
      at += std::clamp(std::max(spans[i], labels_[i].size() + 3), kLeastSpan, kMostSpan);
    }
  }

  std::pair<std::size_t, std::size_t> endsOf(const CallMessage& message) const {
    return {participants_.indexOf(message.flow.source), participants_.indexOf(message.flow.destination)};
  }
  /// Where its ends are drawn.
  std::pair<std::size_t, std::size_t> columnsOf(const CallMessage& message) const {
    const auto [from, to] = endsOf(message);
    return {std::min(from, kMostColumns - 1), std::min(to, kMostColumns - 1)};
  }
  std::size_t placeOf(std::size_t column) const { return places_[column]; }
  const Participants& participants() const { return participants_; }

  /// A row with every line in it.
  std::string row(std::string front) const {
    front.resize(places_.empty() ? kMargin : places_.back() + 1, ' ');
    for (const std::size_t place : places_) front[place] = '|';
    return front;
  }
  /// The participants' names above their lines.
  std::string heading() const {
    std::string row(kMargin, ' ');
    for (std::size_t i = 0; i < labels_.size(); ++i) {
      row.resize(std::max(row.size(), places_[i]), ' ');
      row += fitted(labels_[i], kMostSpan - 3);
    }
    return row;
  }

 private:
  Participants participants_;
  std::vector<std::string> labels_;
  std::vector<std::size_t> places_;
};

std::string frontOf(const Call& call, const CallMessage& message) {
  const std::string number = "#" + std::to_string(message.number);
  const std::string time = secondsBetween(call.start, message.time);
  std::string front(number.size() < 7 ? 7 - number.size() : 0, ' ');
  front += number + " ";
  front.append(front.size() + time.size() < kMargin - 2 ? kMargin - 2 - front.size() - time.size() : 0, ' ');
  return front + time;
}

/// The row of a message: "   #1     0.000  |--- INVITE (offer) --->|".
std::string arrowRow(const Call& call, const CallMessage& message, const Columns& columns,
                     const Palette& palette) {
  std::string row = columns.row(frontOf(call, message));
  const auto [from, to] = columns.columnsOf(message);
  const std::string label = messageLabel(message);
  const std::optional<Style> style = styleOf(message);
  const auto painted = [&](const std::string& text) { return style ? palette.paint(*style, text) : text; };
  if (from == to) {
    const auto [source, destination] = columns.endsOf(message);
    const std::string ways = message.flow.source.text() + " -> " + message.flow.destination.text();
    return row + " " + painted(label + " (" + (source == destination ? "to itself" : ways) + ")") + "\n";
  }
  const std::size_t left = columns.placeOf(std::min(from, to)) + 1;
  const std::size_t width = columns.placeOf(std::max(from, to)) - left;
  const std::string shown = " " + fitted(label, width - 4) + " ";
  std::string arrow(width, '-');
  (from < to ? arrow.back() : arrow.front()) = from < to ? '>' : '<';
  const std::size_t at = (width - shown.size()) / 2;
  return row.substr(0, left) + painted(arrow.replace(at, shown.size(), shown)) + row.substr(left + width) +
         "\n";
}

std::string headOf(const Call& call) {
  std::string head = "Call " + std::to_string(call.number) + ": " + printable(call.from) + " -> " +
                     printable(call.to) + "\n";
  head += "  " + readableTime(call.start) + " UTC, " + secondsBetween(call.start, call.end) + " s, " +
          stateText(call) + "\n";
  for (std::size_t i = 0; i < call.legs.size(); ++i) {
    const Leg& leg = call.legs[i];
    head += "  leg " + std::to_string(i + 1) + ": " + printable(leg.callId);
    if (leg.joinedBy != JoinedBy::first) {
      head +=
          ", joined to leg " + std::to_string(leg.joinedTo + 1) + " by " + std::string(textOf(leg.joinedBy));
      if (!leg.joinDetail.empty()) head += " (" + printable(leg.joinDetail) + ")";
    }
    head += "\n";
  }
  return head;
}

std::string troubleRows(const Call& call, std::size_t message, std::size_t& next, const Palette& palette) {
  std::string rows;
  for (; next < call.troubles.size() && call.troubles[next].message == message; ++next) {
    const Trouble& trouble = call.troubles[next];
    rows += std::string(kMargin, ' ') + "! " + palette.paint(tool::styleOf(trouble), trouble.rule) + ": ";
    if (trouble.section != 0) rows += "section " + std::to_string(trouble.section) + ": ";
    rows += printable(trouble.text) + "\n";
  }
  return rows;
}

/// A diff for a terminal: what went in one colour, what came in another.
std::string paintedDiff(const std::string& lines, const Palette& palette) {
  std::string out;
  for (std::size_t at = 0; at < lines.size();) {
    const std::size_t end = std::min(lines.find('\n', at), lines.size() - 1);
    const std::string line = printable(std::string_view(lines).substr(at, end - at));
    out += "    " +
           (line.starts_with('-')   ? palette.paint(Style::bad, line)
            : line.starts_with('+') ? palette.paint(Style::good, line)
                                    : line) +
           "\n";
    at = end + 1;
  }
  return out;
}

/// What a participant made of a body that came to it.
std::string hopText(const Call& call, const Hop& hop, const Columns& columns, const LadderOptions& options,
                    const Palette& palette) {
  const CallMessage& before = call.messages[hop.before];
  const CallMessage& after = call.messages[hop.after];
  const std::size_t participant = columns.participants().indexOf(after.flow.source);
  const std::string name = labelOf(options.names, columns.participants().at(participant));
  const std::vector<SectionDiff> diffs = bodyDiff(before.sdp(), after.sdp());
  const std::string from = " of #" + std::to_string(before.number);
  if (diffs.empty()) return "  " + name + " changed nothing" + from + "\n";
  std::string text = "  " + name + " changed" + from + ":\n";
  for (const SectionDiff& diff : diffs) {
    text += "   " + palette.paint(Style::label, diff.section) + "\n" + paintedDiff(diff.lines, palette);
  }
  return text;
}

std::string indentedLines(std::string_view text) {
  std::string out;
  const std::string shown = printableLines(text);
  for (std::size_t at = 0; at < shown.size();) {
    const std::size_t end = std::min(shown.find('\n', at), shown.size());
    out += "    " + shown.substr(at, end - at) + "\n";
    at = end + 1;
  }
  return out;
}

std::string bodies(const Call& call, const Columns& columns, const LadderOptions& options,
                   const Palette& palette) {
  std::vector<std::vector<std::size_t>> hopsTo(call.messages.size());
  for (std::size_t i = 0; i < call.hops.size(); ++i) hopsTo[call.hops[i].after].push_back(i);
  std::string text;
  for (std::size_t i = 0; i < call.messages.size(); ++i) {
    const CallMessage& message = call.messages[i];
    if (message.sdpSize == 0 && hopsTo[i].empty()) continue;
    if (message.retransmissionOf) continue;
    const auto [from, to] = columns.endsOf(message);
    text +=
        "\n" +
        palette.paint(Style::heading, "#" + std::to_string(message.number) + " " + messageLabel(message)) +
        " " + labelOf(options.names, columns.participants().at(from)) + " -> " +
        labelOf(options.names, columns.participants().at(to)) + "\n" + indentedLines(message.sdp());
    for (const std::size_t hop : hopsTo[i]) text += hopText(call, call.hops[hop], columns, options, palette);
  }
  return text;
}

}  // namespace

std::string ladder(const Call& call, const LadderOptions& options, const Palette& palette) {
  const Columns columns(call, options.names);
  std::string text = headOf(call) + "\n" + palette.paint(Style::heading, columns.heading()) + "\n";
  std::size_t nextTrouble = 0;
  for (std::size_t i = 0; i < call.messages.size(); ++i) {
    const CallMessage& message = call.messages[i];
    text += arrowRow(call, message, columns, palette);
    if (message.sdpSize != 0 && !message.retransmissionOf)
      text += std::string(kMargin + 2, ' ') +
              palette.paint(Style::label, printable(shortForm(message.sdp()))) + "\n";
    text += troubleRows(call, i, nextTrouble, palette);
  }
  return options.withBodies ? text + bodies(call, columns, options, palette) : text;
}

}  // namespace tool
