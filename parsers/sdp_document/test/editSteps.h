#ifndef EDIT_STEPS_H
#define EDIT_STEPS_H

#include <cstddef>
#include <string>
#include <string_view>

#include "sdpDocument.h"

namespace plain {

/// Edits, requests and questions in turn, of a document that is kept. Each is judged by the text alone: edits by what the
/// model makes of it, requests by what a document makes of it that never was edited.
class EditSteps {
 public:
  /// @param document is used again
  /// @param dumpEach of so many edits or requests one is followed by asking everything; the text is compared each time
  EditSteps(sdp::Document& document, std::string_view body, std::size_t dumpEach = 1);

  /// Does what four numbers of any size tell.
  /// @return what was wrong; empty when all is right
  std::string step(std::size_t kind, std::size_t a, std::size_t b, std::size_t c);
  const std::string& text() const { return text_; }

 private:
  void edit(std::size_t kind, std::size_t a, std::size_t b, std::size_t c);
  void request(std::size_t a, std::size_t b, std::size_t c);
  void ask(std::size_t a);
  void compare(std::string_view what);

  sdp::Document& document_;
  std::string text_;
  std::size_t dumpEach_;
  std::size_t compared_ = 0;
  std::string complaint_;
};

}  // namespace plain

#endif
