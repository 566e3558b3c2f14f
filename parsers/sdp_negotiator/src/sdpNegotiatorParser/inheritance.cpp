#include "descriptionView.h"
#include "sdpNegotiatorParser.h"

// What media have from the session, put into their records.

namespace sdpneg {
namespace {

// Records are never cleared: nothing but the entry in use is copied.
void inheritConnection(mDescription& media, const c_line& session) {
  media.cLine.entries[0] = session.entries[0];
  media.cLine.count = 1;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

void sdpParserMessage::sdpPreProcessDescription(sDescription& description) {
  const unsigned int inherited = inheritedLines(description);
  for (mDescription& media : mediaOf(description)) {
    const unsigned int missing = missingLines(inherited, media);
    if ((missing & SDP_HAS_C_LINE) != 0) inheritConnection(media, description.cLine);
    if ((missing & SDP_HAS_A_LINE) != 0) sdp_Acopy(&media.aLine, &description.aLine);
  }
}
