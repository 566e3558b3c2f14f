#ifndef SDPNEG_BODY_LINES_H
#define SDPNEG_BODY_LINES_H

#include <cstddef>
#include <string_view>
#include <vector>

#include "input/place.h"

namespace tool {

/// The lines of an SDP body, told as the codec tells them, with their places in the input around it.
class BodyLines {
 public:
  /// @param firstLine the line of the input with which the body begins
  BodyLines(std::string_view body, std::size_t firstLine);

  /// The number of m-lines.
  std::size_t mediaCount() const { return media_.size(); }
  /// The line of the input that an m-line stands in; 0 when there is none.
  std::size_t mediaLine(std::size_t index) const;

  /// The place of a field, counted from 0, of an m-line.
  Place mediaField(std::size_t index, std::size_t field) const;
  /// The place of a field of the first c-line of an m-line's section.
  Place mediaConnectionField(std::size_t index, std::size_t field) const;
  /// The place of a field of the session's first c-line.
  Place sessionConnectionField(std::size_t field) const;
  /// The place of an offset in the body.
  Place offset(std::size_t offset) const;
  /// What stands from a line and column of the body on, up to the line's end; empty where there is nothing.
  std::string_view textFrom(std::size_t line, std::size_t column) const;
  /// A line and column of the body as the codec counts them.
  Place bodyPlace(std::size_t line, std::size_t column) const { return {firstLine_ + line - 1, column}; }

 private:
  struct Line {
    std::size_t number;
    std::string_view text;
  };

  Place fieldOf(std::size_t index, std::size_t field) const;
  Place connectionField(std::size_t begin, std::size_t end, std::size_t field) const;
  std::size_t sectionEnd(std::size_t index) const;

  std::string_view body_;
  std::size_t firstLine_;
  std::vector<Line> lines_;
  std::vector<std::size_t> media_;  // indexes of the m-lines in lines_
};

}  // namespace tool

#endif
