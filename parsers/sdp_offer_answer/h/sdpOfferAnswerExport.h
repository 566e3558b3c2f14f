#ifndef SDP_OFFER_ANSWER_EXPORT_H
#define SDP_OFFER_ANSWER_EXPORT_H

/// What the library exports; everything else stays inside it.
#define SDP_OFFER_ANSWER_API __attribute__((visibility("default")))

#endif
