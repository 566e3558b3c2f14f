#ifndef SDPNEG_MULTIPART_H
#define SDPNEG_MULTIPART_H

#include <cstddef>
#include <optional>
#include <string_view>

#include "input/messageHeader.h"

namespace tool {

/// A part of a multipart body (RFC 2046 5.1).
struct Part {
  std::size_t begin = 0;  ///< of its header, behind the boundary's line
  Header header;
  Range body;
};

/// Goes through the parts of a multipart body.
class Parts {
 public:
  /// @param boundary must stay where it is as long as there are parts to come, as the text must
  Parts(std::string_view text, Range multipart, std::string_view boundary)
      : text_(text), boundary_(boundary), at_(multipart.begin), end_(multipart.end) {
    skipToDelimiter();  // the preamble
  }

  /// The next part; nothing behind the last one.
  std::optional<Part> next();

 private:
  /// Goes behind the next delimiter line.
  /// @return where the line began
  std::size_t skipToDelimiter();

  std::string_view text_;
  std::string_view boundary_;
  std::size_t at_;
  std::size_t end_;
  bool more_ = false;
};

/// The first part of a multipart body that is application/sdp, or else the first that is multipart itself. A
/// body that lacks its last boundary ends with its text.
std::optional<Part> findSdpPart(std::string_view text, Range multipart, std::string_view boundary);

}  // namespace tool

#endif
