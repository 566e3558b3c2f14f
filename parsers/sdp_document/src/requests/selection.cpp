// Selecting sections: audio, video, all, a number, mid=VALUE.

#include "requests/selection.h"

#include "fieldReader.h"
#include "spellings.h"

namespace sdp::core {
namespace {

constexpr std::string_view kMid = "mid=";

bool isChosen(const Model& model, const Part& section, const Selection& selection) {
  switch (selection.by) {
    case Selection::By::all:
      return true;
    case Selection::By::audioAndVideo:
      return section.m.media == "audio" || section.m.media == "video";
    case Selection::By::media:
      return section.m.media == selection.text;
    case Selection::By::index:
      return model.indexOf(section) == selection.index;
    case Selection::By::mid:
      return !selection.text.empty() && midOf(model, section) == selection.text;
  }
  return false;
}

}  // namespace

std::optional<Selection> selectionOf(std::string_view media, Default otherwise) {
  using By = Selection::By;
  if (media.empty() && otherwise == Default::nothing) return std::nullopt;
  if (media.empty()) return Selection{otherwise == Default::all ? By::all : By::audioAndVideo, media, 0};
  if (media == "all") return Selection{By::all, media, 0};
  if (isKnownMedia(media)) return Selection{By::media, media, 0};
  if (const std::optional<std::uint64_t> index = numberOf(media)) return Selection{By::index, media, *index};
  if (media.starts_with(kMid)) return Selection{By::mid, media.substr(kMid.size()), 0};
  return std::nullopt;
}

void choose(Model& model, const Selection& selection, bool withDisabled) {
  model.chosen.clear();
  for (Index n = 1; n < model.parts.size(); ++n) {
    const Part& section = model.parts[n];
    if (!section.m.readable || !isChosen(model, section, selection)) continue;
    if (withDisabled || !isDisabled(model, section)) model.chosen.push_back(n);
  }
}

}  // namespace sdp::core
