#ifndef SDP_ANALYSIS_STEPS_H
#define SDP_ANALYSIS_STEPS_H

#include <string_view>

#include "body.h"
#include "sdpDataDefinitions.h"

// The steps of the analysis on a body that is looked at once. The public operations of the same names do the same for a
// description by itself; what they return and trace is told there.

namespace sdpneg {

/// A body's text, and what one look at it has told.
struct BodyText {
  std::string_view text;
  std::size_t attributeStarts;  ///< places of "a=" in either case, inside lines as well
  bool mayHoldTelephoneEvent;
};

// security.cpp
void findMikey(sSdpParsedData& data, Body& body);
void findSecureMedia(sSdpParsedData& data, Body& body, int noOfMDs);

// ice.cpp
/// @return whether the text may hold candidates
bool findIce(sSdpParsedData& data, Body& body, const BodyText& text);
/// @return 0 or 1
unsigned short matchCandidates(sSdpParsedData& data, const sDescription& description, std::string_view text);
/// @return the eIPAddressVersion that active media indicate
unsigned int indicatedVersion(Body& body);

// audioMedia.cpp, otherMedia.cpp
/// @return 0 or 1, as the operations below
unsigned short takeAudio(sSdpParsedData& data, Body& body, unsigned int& count, int noOfMDs,
                         unsigned char* periods);
unsigned short takeVideo(sSdpParsedData& data, Body& body, int noOfMDs);
unsigned short takeMessage(sSdpParsedData& data, Body& body, int noOfMDs);
unsigned short takeText(sSdpParsedData& data, Body& body, int noOfMDs);
unsigned short takeImage(sSdpParsedData& data, Body& body, int noOfMDs);
unsigned short takeApplication(sSdpParsedData& data, Body& body, int noOfMDs);

// mediaList.cpp
/// Condenses the video of a body's list of media, as `sdpParserMessage::getMedia` gives it, into a summary: whether
/// some is received only, the largest bandwidth, the highest H.264 level.
void takeVideoList(sSdpParsedData& data, Body& body);

}  // namespace sdpneg

#endif
