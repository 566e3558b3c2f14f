#ifndef SDP_SESSION_DESCRIPTION_H
#define SDP_SESSION_DESCRIPTION_H

/// @file
/// The session-description codec: an SDP body (RFC 4566) as a plain record, and back.
///
/// The records have fixed capacities (sdpCapacities.h), hold no pointers and are never cleared as a whole:
/// only what the counts and the line-presence sets name is valid. Who fills an entry by hand sets each of its
/// members, the `suffix` of a connection and the `hasColon` of an attribute included. All operations are
/// reentrant; they keep no state. Texts that the getters return point into the record.

#include "aLine.h"
#include "bLine.h"
#include "cLine.h"
#include "commonFns.h"
#include "eLine.h"
#include "iLine.h"
#include "kLine.h"
#include "mLine.h"
#include "oLine.h"
#include "pLine.h"
#include "sLine.h"
#include "tLine.h"
#include "uLine.h"
#include "vLine.h"
#include "zLine.h"

/// One media description: an m-line and the lines that belong to it.
struct mDescription {
  m_line mLine;
  c_line cLine;
  b_line bLine;
  a_line aLine;
  unsigned int linePresence;  ///< eSdpLinePresence bits
  i_line iLine;
  k_line kLine;
};

/// One decoded SDP body.
struct sDescription {
  o_line oLine;
  c_line cLine;
  b_line bLine;
  a_line aLine;
  mDescription media[SDP_MEDIA_CAPACITY];
  int noOfMDs;                ///< m-lines met in the text; the first SDP_MEDIA_CAPACITY of them are held
  unsigned int linePresence;  ///< eSdpLinePresence bits of the session
  unsigned int mediaKinds;    ///< eMediaType bits; 0 after decoding, for the use of the analysis
  int incomplete;             ///< 1 when something of the text was cut or left out, else 0
  v_line vLine;
  s_line sLine;
  i_line iLine;
  u_line uLine;
  e_line eLine;
  p_line pLine;
  t_line tLine;
  r_line rLine;
  z_line zLine;
  k_line kLine;
};

/// Decodes an SDP body.
///
/// A line ends at CR LF, LF or the text's end, in front of which a CR counts as well; a text with any other CR is
/// refused, since who searches it for LFs would miss the lines behind. Empty lines are skipped. Session lines may stand in any order, and
/// any of them but the first `v=` may be absent. Fields of o-, c- and m-lines may be separated by several
/// blanks or tabs, and blanks may stand around a b-line's number; they are not kept. What exceeds the
/// capacities is cut or left out, as are lines of unknown letters and repeated lines of a kind that a body
/// has once; the description is then marked as incomplete.
///
/// @param description receives the body; empty after a failure
/// @param text        the body, ended by NUL
/// @param type        the kind of body; all are treated alike
/// @param error       null, or SDP_ERROR_TEXT_SIZE characters for the message of a failure, empty on success:
///                    "line N, column M: expected ..., found ..."
/// @param option      without effect
/// @param oLineStart  receives the o-line's offset in the text, in characters
/// @param oLineEnd    receives the offset behind the o-line's line end; both are 0 when there is no o-line or
///                    it does not end within the first 65535 characters
/// @return 0, or 1 when the text is no SDP body or `description` is null
SDP_CODEC_API unsigned short sdp_decodeOpt_r(sDescription* description, const char* text, eSdpType type,
                                             char* error, bool option, unsigned short& oLineStart,
                                             unsigned short& oLineEnd);

/// Writes a description as text, in the line order of RFC 4566 and with CR LF.
/// @param description what to write; at most the media descriptions held are written
/// @param type        the kind of body; all are treated alike
/// @param text        null, or the result of an earlier encoding operation; it is allocated with malloc,
/// grown
///                    with realloc and released by the caller with free
/// @param length      receives the length of the text without its NUL
/// @param size        the allocated size of the text; read when the text is not null
/// @return 0, or 1 when the description is null or memory ran out; the text then is still the caller's, and
/// after
///         running out of memory it is empty and `size` says what is allocated
SDP_CODEC_API unsigned short sdp_encode_r(const sDescription* description, eSdpType type, char*& text,
                                          int& length, int& size);

/// @param description a decoded body, or null
/// @return the number of m-lines met in the text, which may exceed SDP_MEDIA_CAPACITY; 0 for null
SDP_CODEC_API int sdp_getNoOfMDs(const sDescription* description);

/// @param description a decoded body, or null
/// @return whether the description holds all lines of its text whole; false for null
SDP_CODEC_API bool sdp_isComplete(const sDescription* description);

/// Copies a media description, of its lists only what is in use.
/// @param to   receives the copy; nothing happens when it or `from` is null
/// @param from the media description to copy
SDP_CODEC_API void sdp_copyMedia(mDescription* to, const mDescription* from);

/// Copies a description, of its lists only what is in use.
/// @param to   receives the copy; nothing happens when it or `from` is null
/// @param from the description to copy
SDP_CODEC_API void sdp_copyDescription(sDescription* to, const sDescription* from);

#endif
