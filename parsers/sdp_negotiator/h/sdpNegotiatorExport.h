#ifndef SDP_NEGOTIATOR_EXPORT_H
#define SDP_NEGOTIATOR_EXPORT_H

/// Marks what the library offers to its callers; everything else stays hidden.
#define SDP_NEGOTIATOR_API __attribute__((visibility("default")))

#endif
