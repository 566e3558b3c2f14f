#ifndef SDP_DOCUMENT_ACCESS_H
#define SDP_DOCUMENT_ACCESS_H

// The way from the exported class to what it holds.

#include "edits.h"
#include "sdpDocument.h"

namespace sdp {

struct DocumentAccess {
  /// What a document holds; an empty model of no document where it holds nothing.
  static const core::Model& model(const Document& document) noexcept;
  /// The same to change it; null when memory is lacking.
  static core::Model* changeable(Document& document) noexcept;

  /// Does a request or edit on a document as a whole or not at all.
  /// @param request called with the model
  template <typename Request>
  static Refusal perform(Document& document, Request request) noexcept {
    core::Model* const model = changeable(document);
    if (model == nullptr) return {.reason = Reason::noMemory};
    return core::perform(*model, [&] { return request(*model); });
  }
};

}  // namespace sdp

#endif
