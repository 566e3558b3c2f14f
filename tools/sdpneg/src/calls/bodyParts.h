#ifndef SDPNEG_BODY_PARTS_H
#define SDPNEG_BODY_PARTS_H

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// A part of a body: the session or a section.
struct BodyPart {
  std::string name;  ///< "session", "1 audio": printable
  std::string_view text;
};

/// The parts of a body in their order, the session first, also where it has no line.
std::vector<BodyPart> bodyParts(std::string_view sdp);

}  // namespace tool

#endif
