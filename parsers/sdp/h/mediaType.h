#ifndef SDP_MEDIA_TYPE_H
#define SDP_MEDIA_TYPE_H

/// The media kinds of m-lines (RFC 4566 5.14), usable as a bit set. A media name that is none of these has
/// the kind 0.
enum eMediaType : unsigned int {
  MEDIA_AUDIO = 1,
  MEDIA_VIDEO = 2,
  MEDIA_MESSAGE = 4,
  MEDIA_IMAGE = 8,
  MEDIA_APPLICATION = 16,
  MEDIA_TEXT = 32
};

#endif
