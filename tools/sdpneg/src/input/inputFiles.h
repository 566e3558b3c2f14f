#ifndef SDPNEG_INPUT_FILES_H
#define SDPNEG_INPUT_FILES_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "input/place.h"

namespace tool {

/// Bytes that an input of the analysis may have. No SDP body and no SIP message comes near it.
inline constexpr std::size_t kMaxInputSize = std::size_t{1024} * 1024;

/// Bytes that an input of the document layer may have.
inline constexpr std::size_t kMaxDocumentInputSize = std::size_t{64} * 1024 * 1024;

/// Something to read: a file, standard input, or what could not even be listed.
struct Input {
  std::string name;  ///< as it was given, below a folder as the folder's name and the path inside it
  bool standardInput = false;
  std::optional<Problem> problem;
};

/// What the operands of a command name.
struct InputList {
  std::vector<Input> inputs;
  bool several = false;  ///< more than one operand, or a folder
};

/// What an operand names: a file, or standard input for "-".
Input inputOf(const std::string& operand);

/// Lists inputs in the operands' order. A folder stands for all files "*.sdp" in it and below it, in the
/// order of their names; symbolic links to folders are not followed there.
/// @param operands files, folders, and "-" for standard input, which no operand stands for too
InputList listInputs(const std::vector<std::string>& operands);

/// The bytes of an input, or why they cannot be read.
struct InputBytes {
  std::string bytes;
  std::optional<Problem> problem;
};

/// That an input cannot be read.
Problem cannotRead(const std::string& why);

/// That an input is longer than it may be.
Problem tooLong(std::size_t maxSize);

InputBytes readInput(const Input& input, std::size_t maxSize = kMaxInputSize);

}  // namespace tool

#endif
