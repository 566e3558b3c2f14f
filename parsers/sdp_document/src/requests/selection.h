#ifndef SDP_DOCUMENT_SELECTION_H
#define SDP_DOCUMENT_SELECTION_H

// Which sections a request is about.

#include <optional>
#include <string_view>

#include "model.h"

namespace sdp::core {

/// What a request takes where it is told nothing.
enum class Default : std::uint8_t { nothing, all, audioAndVideo };

struct Selection {
  enum class By : std::uint8_t { all, audioAndVideo, media, index, mid };

  By by = By::all;
  std::string_view text;
  std::uint64_t index = 0;

  /// All sections were meant, so that the session is as well.
  bool isAll() const { return by == By::all; }
};

/// @return nothing when the text is no selection, or is empty and stands for nothing
std::optional<Selection> selectionOf(std::string_view media, Default otherwise);

/// Finds the sections of a selection that a request may change: readable ones, and disabled ones where it says so. They
/// stand in model.chosen, in the document's order.
void choose(Model& model, const Selection& selection, bool withDisabled = false);

}  // namespace sdp::core

#endif
