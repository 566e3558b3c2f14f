// Choosing formats: codecs by a list, and what serves them by what it serves.

#include "requests/codecChoice.h"

#include <algorithm>

#include "fieldReader.h"

namespace sdp::core {
namespace {

/// One choice. Formats that serve others wait for these; each that is decided tells those that wait for it.
class Choice {
 public:
  explicit Choice(Model& model) : model_(model), table_(model.formats) {
    table_.waiting.clear();
    table_.news.clear();
    for (FormatEntry& entry : table_.entries) {
      entry.waiting = kNone;
      entry.waitsFor = 0;
      entry.chosen = false;
      entry.isListed = placeIn(model.list, entry) != model.list.size();
    }
  }

  /// Everything that stays when the list is kept.
  void keep();
  /// Everything that goes when the list is dropped.
  void drop();

 private:
  bool hasClockOfCodec(const FormatEntry& entry) const;
  void keepEvents();
  void choose(Index entry);
  void tellOthers(bool onlyWhenAllAreThere);
  /// Calls `visit(Index)` for each payload type that a format is for: the apt of rtx, those that red carries. What the
  /// m-line lacks is kNone.
  template <typename Visit>
  void forEachServed(FormatEntry& entry, Visit visit);
  void wait(Index entry);

  Model& model_;
  FormatTable& table_;
};

template <typename Visit>
void Choice::forEachServed(FormatEntry& entry, Visit visit) {
  if (entry.role == Role::rtx) {
    const std::string_view apt = aptOf(model_, entry);
    return visit(apt.empty() ? kNone : table_.find(apt));
  }
  if (entry.fmtp == kNone) return;
  std::string_view carried = behindPayload(model_.lines[entry.fmtp]);
  carried = firstField(carried.substr(0, carried.find(';')));
  while (!carried.empty()) {
    const std::size_t slash = std::min(carried.find('/'), carried.size());
    const std::string_view payload = carried.substr(0, slash);
    if (isDigits(payload)) visit(table_.find(payload));
    carried.remove_prefix(std::min(slash + 1, carried.size()));
  }
}

/// Lets a format wait for those that it serves.
void Choice::wait(Index index) {
  forEachServed(table_.entries[index], [&](Index served) {
    ++table_.entries[index].waitsFor;
    if (served == kNone) return;
    table_.waiting.push_back({index, table_.entries[served].waiting});
    table_.entries[served].waiting = static_cast<Index>(table_.waiting.size() - 1);
  });
}

void Choice::choose(Index index) {
  FormatEntry& entry = table_.entries[index];
  if (entry.chosen) return;
  entry.chosen = true;
  table_.news.push_back(index);
}

/// Passes on what was chosen to those that wait for it.
void Choice::tellOthers(bool onlyWhenAllAreThere) {
  while (!table_.news.empty()) {
    const Index come = table_.news.back();
    table_.news.pop_back();
    for (Index w = table_.entries[come].waiting; w != kNone; w = table_.waiting[w].next) {
      FormatEntry& waiter = table_.entries[table_.waiting[w].entry];
      if (--waiter.waitsFor == 0 || !onlyWhenAllAreThere) choose(table_.waiting[w].entry);
    }
  }
}

bool Choice::hasClockOfCodec(const FormatEntry& entry) const {
  return std::binary_search(model_.clocks.begin(), model_.clocks.end(), entry.encoding.clock);
}

void Choice::keepEvents() {
  bool fits = false;
  for (int all = 0; all < 2 && !fits; ++all) {
    for (Index i = 0; i < table_.entries.size(); ++i) {
      const FormatEntry& entry = table_.entries[i];
      if (entry.role != Role::telephoneEvent || !entry.isListed) continue;
      if (all == 0 && entry.encoding.clock != 8000 && !hasClockOfCodec(entry)) continue;
      choose(i);
      fits = true;
    }
  }
}

void Choice::keep() {
  model_.clocks.clear();
  for (Index i = 0; i < table_.entries.size(); ++i) {
    const FormatEntry& entry = table_.entries[i];
    if (entry.role != Role::codec || !entry.isListed) continue;
    choose(i);
    if (!entry.encoding.name.text().empty()) model_.clocks.push_back(entry.encoding.clock);
  }
  std::sort(model_.clocks.begin(), model_.clocks.end());
  keepEvents();
  for (Index i = 0; i < table_.entries.size(); ++i) {
    const FormatEntry& entry = table_.entries[i];
    const bool fits = entry.isListed && (entry.role == Role::otherCompanion ||
                                         (entry.role == Role::comfortNoise && hasClockOfCodec(entry)));
    if (fits) choose(i);
    if (entry.role == Role::rtx || (entry.role == Role::red && entry.isListed)) {
      wait(i);
      if (table_.entries[i].waitsFor == 0) choose(i);
    }
  }
  tellOthers(true);
}

void Choice::drop() {
  for (Index i = 0; i < table_.entries.size(); ++i) {
    const FormatEntry& entry = table_.entries[i];
    if (entry.isListed) choose(i);
    if (entry.role == Role::rtx || entry.role == Role::red) wait(i);
  }
  tellOthers(false);
  for (FormatEntry& entry : table_.entries) entry.chosen = !entry.chosen;
}

}  // namespace

void chooseKept(Model& model) { Choice(model).keep(); }
void chooseUndropped(Model& model) { Choice(model).drop(); }

bool isWithoutCodec(const FormatTable& table) {
  bool hadCodec = false;
  bool hasCodec = false;
  bool hasAny = false;
  for (const FormatEntry& entry : table.entries) {
    const bool codec = entry.role == Role::codec;
    hadCodec = hadCodec || codec;
    hasCodec = hasCodec || (codec && entry.chosen);
    hasAny = hasAny || entry.chosen;
  }
  return !hasAny || (hadCodec && !hasCodec);
}

}  // namespace sdp::core
