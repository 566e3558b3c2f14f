#ifndef SDP_MODIFIERS_ATTRIBUTE_REMOVAL_H
#define SDP_MODIFIERS_ATTRIBUTE_REMOVAL_H

#include <cstddef>
#include <string_view>

#include "sdpModifiers/notes.h"

// Removal of all lines that hold one of some texts. None is a failure: each tells why a buffer cannot be edited, but
// nothing of a null one, and goes on.

namespace sdpneg {

/// `sdpModifications::sdpRemoveSecureAttributes`.
/// @param prefix null or empty removes nothing
/// @return the number of lines removed
std::size_t removeSecureAttributes(SdpText& text, const char* prefix);
/// The same of key management, by the notes of a text and in step with them.
void removeKeyManagement(NotedText& text);
/// `sdpModifications::sdpRemoveDTLSAttributes`.
void removeDtlsAttributes(SdpText& text);
/// `sdpModifications::sdpRemoveAnatAttributes`.
void removeAnatAttributes(SdpText& text);
/// `sdpModifications::sdpRemoveICE`.
void removeIce(SdpText& text);
void removeIce(NotedText& text);
/// Whether a text begins with one of the attributes of ICE.
bool isIceAttribute(std::string_view text);
/// `sdpModifications::sdpRemoveCandidates`.
void removeCandidates(SdpText& text);

}  // namespace sdpneg

#endif
