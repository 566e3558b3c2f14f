#ifndef SDPNEG_TEXT_EXPORT_H
#define SDPNEG_TEXT_EXPORT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "captures/capturedMessage.h"
#include "captures/logContext.h"

// Messages out of texts: logs with something in front of each line, exports with a line of addresses in front of each
// message, or nothing but messages one after another.

namespace tool {

class TextExport {
 public:
  explicit TextExport(CaptureOutput& output) : output_(&output) {}

  /// Takes what follows, cut anywhere.
  void take(std::string_view bytes);
  /// Nothing follows.
  void flush();

  /// Bytes that are kept.
  std::size_t size() const { return line_.size() + message_.size(); }

 private:
  enum class Place : std::uint8_t { between, header, body };

  /// Takes a line, which has its end, or the front of it.
  /// @return what of it stands behind a message that ends in it
  std::string_view takeLine(std::string_view line);
  void takeLines(std::string_view line);
  std::string_view takeOutside(std::string_view line);
  std::string_view takeHeaderLine(std::string_view line);
  std::string_view takeBodyLine(std::string_view line);
  std::string_view takeMeasuredLine(std::string_view line);
  std::string_view takeOpenLine(std::string_view line);
  void begin(std::string_view line, std::size_t prefix);
  void endHeader();
  bool isNextMessage(std::string_view line) const;
  bool goesOn(std::string_view line) const;
  std::string_view withoutPrefix(std::string_view line) const;
  bool hasPrefix(std::string_view line) const;
  bool add(std::string_view line);
  void end(bool isCut);

  static constexpr std::size_t kContextLines = 4;

  CaptureOutput* output_;
  std::string line_;                               ///< whose end has not come
  std::array<std::string, kContextLines> before_;  ///< the last lines in front of a message, as a ring
  std::size_t linesBefore_ = 0;

  Place place_ = Place::between;
  std::string prefix_;
  LogContext context_;
  std::string message_;
  std::size_t headerLines_ = 0;
  std::size_t bodyBegin_ = 0;
  std::optional<std::size_t> length_;  ///< that the header tells of the body
  bool isExact_ = false;               ///< the text has the message's own line ends
  bool holdsMessages_ = false;         ///< there may be start lines in the body
  std::size_t lineEnds_ = 0;           ///< CR that the body's lines may have lost
  bool isMaybeDone_ = false;           ///< the body is whole if its lines ended in CR LF
};

}  // namespace tool

#endif
