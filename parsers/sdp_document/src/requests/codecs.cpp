// Keeping, dropping and ordering codecs.

#include "requests/codecs.h"

#include <algorithm>
#include <array>

#include "edits.h"
#include "fieldReader.h"
#include "refusals.h"
#include "requests/codecChoice.h"
#include "requests/putAway.h"

namespace sdp::core {
namespace {

/// How many codecs an explanation names.
constexpr std::size_t kMostNamed = 12;

/// Writes the m-line of the section that the table has read anew, with what `addFormats` adds in place of its formats.
/// @param separatorLength of what stands in front of the first
template <typename AddFormats>
void writeFormats(Model& model, Part& section, std::size_t separatorLength, AddFormats addFormats) {
  const std::span<const Occurrence> formats = model.formats.occurrences;
  const std::string_view content = model.lines[section.first].content();
  const auto offsetOf = [&content](const char* place) {
    return static_cast<std::size_t>(place - content.data());
  };
  const std::size_t begin = offsetOf(formats.front().begin);
  LineWriter line(model, section, section.first, content.size());
  line.add(content.substr(0, begin));
  addFormats(line);
  line.add(content.substr(offsetOf(formats.back().end()))).finishFormats(begin + separatorLength);
}

/// Removes the formats that were not chosen, with what speaks of them.
void takeFormatsOut(Model& model, Part& section) {
  FormatTable& table = model.formats;
  const bool all = std::all_of(table.entries.begin(), table.entries.end(),
                               [](const FormatEntry& entry) { return entry.chosen; });
  if (all) return;
  for (const FormatEntry& entry : table.entries) {
    if (entry.chosen) continue;
    for (Index i = entry.firstLine; i != kNone; i = model.lines[i].next) removeLine(model, i);
    for (Index i = entry.feedback; i != kNone; i = model.lines[i].next) removeLine(model, i);
  }
  const auto isChosen = [&table](const Occurrence& format) { return table.entries[format.entry].chosen; };
  const auto first = std::find_if(table.occurrences.begin(), table.occurrences.end(), isChosen);
  writeFormats(model, section, first->separatorLength, [&](LineWriter& line) {
    // Those that stand side by side stay so.
    for (auto format = first; format != table.occurrences.end();) {
      const auto end = std::find_if_not(format, table.occurrences.end(), isChosen);
      line.add({format->begin, (end - 1)->end()});
      format = std::find_if(end, table.occurrences.end(), isChosen);
    }
  });
}

/// Puts the formats that the list names in front. Each takes the place of another, between the separators there.
void orderFormats(Model& model, Part& section) {
  FormatTable& table = model.formats;
  table.read(model, section);
  for (FormatEntry& entry : table.entries) entry.place = static_cast<Index>(placeIn(model.list, entry));
  std::vector<Occurrence>& ordered = model.ordered;
  ordered.assign(table.occurrences.begin(), table.occurrences.end());
  std::sort(ordered.begin(), ordered.end(), [&table](const Occurrence& a, const Occurrence& b) {
    const Index first = table.entries[a.entry].place;
    const Index second = table.entries[b.entry].place;
    return first != second ? first < second : a.begin < b.begin;
  });
  const bool isAsBefore =
      std::equal(ordered.begin(), ordered.end(), table.occurrences.begin(),
                 [](const Occurrence& a, const Occurrence& b) { return a.entry == b.entry; });
  if (isAsBefore) return;
  writeFormats(model, section, table.occurrences.front().separatorLength, [&](LineWriter& line) {
    for (std::size_t i = 0; i < ordered.size(); ++i)
      line.add(table.occurrences[i].separator()).add(ordered[i].format());
  });
}

/// "it has opus, G722, PCMU"
std::string codecsOf(const FormatTable& table) {
  std::array<std::string_view, kMostNamed> named;
  std::size_t count = 0;
  std::string text;
  for (const FormatEntry& entry : table.entries) {
    if (entry.role != Role::codec) continue;
    const std::string_view name =
        entry.encoding.name.text().empty() ? entry.payload : entry.encoding.name.text();
    const auto* const end = named.begin() + count;
    if (std::any_of(named.cbegin(), end, [name](std::string_view n) { return sdpneg::equalNoCase(n, name); }))
      continue;
    if (count == kMostNamed) return text.append(", ...");
    if (count != 0) text.append(", ");
    named[count++] = name;
    addForPeople(text, name);
  }
  return count == 0 ? "no codec" : text;
}

Refusal refuseNoCodec(Model& model, const Part& section, std::string_view verb, std::string_view list) {
  const Refusal refusal = refusalIn(model, section, Reason::noCommonCodec);
  model.formats.forget();
  model.formats.read(model, section);
  std::string given;
  addForPeople(given, list);
  explain(model, refusal, {"it has ", codecsOf(model.formats), "; ", verb, " would be ", given});
  return refusal;
}

Refusal restrictCodecs(Model& model, const Selection& selection, void (*chooseFormats)(Model&),
                       std::string_view verb, std::string_view list) {
  choose(model, selection);
  std::size_t away = 0;
  for (const Index n : model.chosen) {
    Part& section = model.parts[n];
    if (!isRtp(section)) continue;
    model.formats.read(model, section);
    chooseFormats(model);
    if (isWithoutCodec(model.formats)) {
      model.chosen[away++] = n;
    } else {
      takeFormatsOut(model, section);
    }
  }
  if (away == 0) return {};
  model.chosen.resize(away);
  PuttingAway putting(model);
  for (const Index n : model.chosen) putting.putAway(model.parts[n]);
  if (hasNoPort(model)) return refuseNoCodec(model, model.parts[model.chosen.front()], verb, list);
  putting.finish();
  return {};
}

}  // namespace

Refusal keepCodecs(Model& model, std::string_view list, const Selection& selection) {
  return restrictCodecs(model, selection, chooseKept, "kept", list);
}

Refusal dropCodecs(Model& model, std::string_view list, const Selection& selection) {
  return restrictCodecs(model, selection, chooseUndropped, "dropped", list);
}

Refusal orderCodecs(Model& model, const Selection& selection) {
  choose(model, selection);
  for (const Index n : model.chosen) {
    if (isRtp(model.parts[n])) orderFormats(model, model.parts[n]);
  }
  return {};
}

}  // namespace sdp::core
