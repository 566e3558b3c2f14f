#ifndef SDPNEG_CAPTURE_H
#define SDPNEG_CAPTURE_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "captures/byteSource.h"
#include "captures/capturedMessage.h"
#include "input/inputFiles.h"

// Any input as messages. What it is, is told by what it begins with.

namespace tool {

class PacketFile;
class PacketReader;
class TextExport;

struct CaptureOptions {
  std::string filter;  ///< an expression of libpcap, for captures of packets
  InputWatch watch;    ///< where an input is to be followed, or its reading may be stopped
};

class Capture {
 public:
  Capture(const Input& input, const CaptureOptions& options, CaptureOutput& output);
  Capture(std::unique_ptr<ByteSource> source, const CaptureOptions& options, CaptureOutput& output);
  ~Capture();
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  /// Reads a little more, and delivers what is complete with it.
  /// @return whether there may be more; false once what was open has been given up as well
  bool step();
  /// Gives up what is open, for those who do not read to the end.
  void finish();

  /// Why there is less than there should be. What was read until then has been delivered.
  std::optional<Problem> problem() const;
  /// Bytes of the file that were read.
  std::size_t position() const { return source_->position(); }

 private:
  void open(const CaptureOptions& options, CaptureOutput& output);
  bool stepFile();
  bool stepText();

  std::unique_ptr<PeekedSource> source_;
  std::unique_ptr<PacketFile> file_;
  std::unique_ptr<PacketReader> packets_;
  std::unique_ptr<TextExport> text_;
  std::optional<Problem> problem_;
  bool isDone_ = false;
};

/// Delivers the messages of an input.
/// @return what is wrong with it
std::optional<Problem> readCapture(const Input& input, const CaptureOptions& options, CaptureOutput& output);

}  // namespace tool

#endif
