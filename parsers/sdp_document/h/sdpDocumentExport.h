#ifndef SDP_DOCUMENT_EXPORT_H
#define SDP_DOCUMENT_EXPORT_H

/// What the library exports; everything else stays inside it.
#define SDP_DOCUMENT_API __attribute__((visibility("default")))

#endif
