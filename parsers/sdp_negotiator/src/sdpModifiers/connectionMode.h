#ifndef SDP_MODIFIERS_CONNECTION_MODE_H
#define SDP_MODIFIERS_CONNECTION_MODE_H

#include <optional>
#include <string_view>

#include "refusal.h"
#include "sdpModifiers/changes.h"
#include "sdpModifiers/notes.h"
#include "text/fixedText.h"

// The directions of a session and of its media sections.

namespace sdpneg {

/// `sdpModifications::sdpReplaceMode`.
Refusal replaceMode(NotedText& text, unsigned char mode, int mediaSelect);
Refusal replaceMode(SdpText& text, unsigned char mode, int mediaSelect);

/// What a current and a requested direction have in common, by their first eight characters; nothing when the
/// current one stays.
/// @param tracing whether trace lines are written
std::optional<std::string_view> commonMode(std::string_view current, std::string_view requested,
                                           bool tracing);

/// `replaceMode` for a text that is gone through once from its beginning to its end, where nothing is traced.
class ModePlan {
 public:
  /// @param text    has an m-line
  /// @param mode    a direction other than that for both ways
  /// @param changes receives what there is to change, in its order; to be made while this exists
  ModePlan(std::string_view text, unsigned char mode, int mediaSelect, PlannedChanges& changes);

  // Tell what comes next.
  void direction(std::size_t line);
  void mLine(std::size_t line);
  void end() { endSection(text_.size()); }

 private:
  void endSection(std::size_t at);

  std::string_view text_;
  std::string_view mode_;
  int mediaSelect_;
  PlannedChanges& changes_;
  FixedText<16> line_;  ///< one of its own, for a section without
  bool inSession_ = true;
  bool wanted_ = true;  ///< whether the section is one of those that are changed
  bool has_ = false;    ///< whether it needs no line, and no further one is looked at
};

}  // namespace sdpneg

#endif
