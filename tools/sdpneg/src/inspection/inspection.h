#ifndef SDPNEG_INSPECTION_H
#define SDPNEG_INSPECTION_H

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/place.h"
#include "inspection/bestEffort.h"
#include "inspection/bodyLines.h"
#include "inspection/traceLines.h"
#include "sdpDocument.h"
#include "sdpNegotiator.h"
#include "sessionDescription.h"

namespace tool {

enum class Result {
  parsed,       ///< a summary
  refused,      ///< SDP, but the analysis refuses it
  undecodable,  ///< no SDP
  unreadable    ///< nothing to decode
};

/// A decoded description is several hundred kilobytes.
using DescriptionPointer = std::unique_ptr<sDescription>;

/// What there is to say about one input.
struct Inspection {
  Result result = Result::unreadable;
  std::optional<Problem> problem;
  std::vector<Problem> notes;
  std::vector<TraceLine> trace;
  std::optional<cSdpNegotiator> object;    ///< of a parsed body
  std::vector<mediaStruct> media;          ///< of a parsed body: its active video and application media
  std::vector<unsigned char> videoCodecs;  ///< of a parsed body
  std::optional<BestEffort> bestEffort;    ///< of a parsed body
  DescriptionPointer description;          ///< of a parsed or refused body
  std::vector<std::size_t> mediaLines;     ///< the lines of the input with the m-lines of the description
  std::optional<sdp::Document> document;   ///< of every body
  std::size_t firstLine = 1;               ///< the line of the input with which the body begins

  /// Whether there is a body that the codec reads.
  bool isSdp() const { return result == Result::parsed || result == Result::refused; }
  /// Whether what is known of it from the description is all that there is.
  bool isWhole() const;
};

/// What is to be found out.
enum class Detail {
  object,  ///< the object of a parsed body, or what is wrong
  all      ///< all that there is to say of a parsed body too, for which it is decoded again
};

/// Inspects the bytes of an input: an SDP body or a SIP message with one.
Inspection inspect(std::string_view bytes, Detail detail);

/// An input that cannot be read.
Inspection unreadable(Problem problem);

/// The name of a result in the JSON output.
const char* resultName(Result result);

}  // namespace tool

#endif
