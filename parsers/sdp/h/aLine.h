#ifndef SDP_A_LINE_H
#define SDP_A_LINE_H

#include "commonFns.h"

/// The attribute lines of the session or of a media description (RFC 4566 5.13), in their order.
struct a_line {
  struct entry {
    char name[SDP_ATTRIBUTE_NAME_SIZE];
    char value[SDP_ATTRIBUTE_VALUE_SIZE];
    unsigned char hasColon;  ///< tells "a=name:" from "a=name" where the value is empty
  };
  entry entries[SDP_ATTRIBUTE_CAPACITY];
  int count;
};

/// @param line attribute lines, or null
/// @return the number of entries, 0 for a null record
SDP_CODEC_API int sdp_AgetNoOfAs(const a_line* line);

/// @param line  attribute lines, or null
/// @param index of the entry, from 0
/// @return the attribute's name, inside the record; null when there is no such entry
SDP_CODEC_API const char* sdp_AgetAttributeField(const a_line* line, int index);

/// @param line  attribute lines, or null
/// @param index of the entry, from 0
/// @return the attribute's value, inside the record; null when there is no such entry or it has no value
SDP_CODEC_API const char* sdp_AgetAttributeValue(const a_line* line, int index);

/// @param line attribute lines, or null
/// @param name an attribute's name, compared exactly; or null
/// @return the value of the first entry with that name, inside the record, an empty text when it has none;
///         null when there is no such entry
SDP_CODEC_API const char* sdp_AfindAttribute(const a_line* line, const char* name);

/// Copies the entries in use, and nothing else.
/// @param to   receives the lines; nothing happens when it or `from` is null
/// @param from the lines to copy
SDP_CODEC_API void sdp_Acopy(a_line* to, const a_line* from);

#endif
