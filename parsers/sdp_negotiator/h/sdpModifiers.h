#ifndef SDP_MODIFIERS_H
#define SDP_MODIFIERS_H

#include "sdpDataDefinitions.h"
#include "sdpNegotiatorExport.h"

/// Edits of SDP texts (RFC 4566).
///
/// A class of static operations without state. Each edits a caller's buffer of MAX_SDP_PROTOCOL_DATA_SIZE
/// characters, NUL included, in place. A null buffer and one without NUL in these characters are refused, as
/// is an edit whose result would not fit: the text stays as it was, a trace says why. Lines are found by
/// searching for text, end in CR LF or LF, and nothing behind the text's NUL is read. Unless an operation
/// says otherwise its status is 0 for success, with or without something to do, and 1 for failure.
class SDP_NEGOTIATOR_API sdpModifications {
 public:
  /// @name Media attributes (mediaAttributes.cpp)
  /// @{

  /// Adds silence suppression at the text's end, and for off a voice-band-data line for the first codec
  /// (ITU-T V.152). An "a=silenceSupp" that stands anywhere is not added again.
  /// @param mode 1 on, 2 off
  /// @param data the body's summary; only its first audio codec is read
  /// @return 0 also when there was nothing to add; 1 for another mode, a body without audio, or no room
  static unsigned short sdpInsertSilenceSuppression(char* sdp, unsigned char mode,
                                                    const sSdpParsedData& data);
  /// @}

  /// @name Directions (connectionMode.cpp)
  /// @{

  /// Applies a direction request to the session and to the chosen media: every direction becomes what it and
  /// the request have in common (RFC 3264 8.4), and where there is none the requested one is added.
  /// @param mode        1 sendonly, 2 recvonly, 4 inactive; 3 sendrecv is accepted and changes nothing
  /// @param mediaSelect 1 audio, 2 video, another value both
  /// @return 0, or 1 for another mode or no room for a session line; a media line that does not fit is
  ///         left out
  static unsigned short sdpReplaceMode(char* sdp, unsigned char mode, int mediaSelect);
  /// Computes what a current and a requested direction have in common, by their first eight characters.
  /// @param newMode 10 characters, written only when a change is due
  /// @return 1 when a change is due, else 0
  static unsigned short changeConnectionMode(const char* currentMode, const char* requestedMode,
                                             char* newMode);
  /// Applies a direction request to every section of one medium: to its first direction line, or by a line
  /// added at the section's end. A line that does not fit is left out.
  /// @param savedSdp   not used
  /// @param firstMLine the LF in front of the first m-line to look at, in the text `sdp`
  /// @param mediaName  "audio" or another media name
  /// @param mode       a direction word of eight characters
  /// @return 0, or 1 for an argument that is null or outside the text
  static unsigned short setMediaConnectionMode(char* sdp, const char* savedSdp, char* firstMLine,
                                               const char* mediaName, const char* mode);
  /// @}
};

#endif
