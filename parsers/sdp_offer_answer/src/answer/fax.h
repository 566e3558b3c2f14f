#ifndef SDP_OFFER_ANSWER_FAX_H
#define SDP_OFFER_ANSWER_FAX_H

// What T.38 negotiates (ITU-T T.38, annex D).

#include <optional>
#include <string>

#include "sdpDocumentViews.h"

namespace sdp::exchange {

/// Whether both tell a rate management, and differ.
bool differInRateManagement(const Section& offered, const Section& local);

/// Whether an attribute is one of T.38 that the answer may not take over as it is.
bool isNegotiatedForFax(std::string_view name);
/// The value of such an attribute in the answer; nothing when the answer has none.
std::optional<std::string> answeredForFax(const Attribute& local, const Section& offered);

}  // namespace sdp::exchange

#endif
