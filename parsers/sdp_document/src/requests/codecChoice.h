#ifndef SDP_DOCUMENT_CODEC_CHOICE_H
#define SDP_DOCUMENT_CODEC_CHOICE_H

// Which formats of a section stay.

#include "formatTable.h"
#include "model.h"

namespace sdp::core {

/// Marks as chosen what stays of a section's formats when only the listed codecs are kept.
void chooseKept(Model& model);
/// Marks as chosen what stays of a section's formats when the listed ones are dropped.
void chooseUndropped(Model& model);

/// No codec is chosen of a section that had one, or nothing at all.
bool isWithoutCodec(const FormatTable& table);

}  // namespace sdp::core

#endif
