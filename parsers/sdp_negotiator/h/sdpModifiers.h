#ifndef SDP_MODIFIERS_H
#define SDP_MODIFIERS_H

#include <string>
#include <vector>

#include "base64_encoding.h"
#include "sdpDataDefinitions.h"
#include "sdpNegotiatorExport.h"
#include "sessionDescription.h"

/// Edits of SDP texts (RFC 4566).
///
/// A class of static operations without state. Each edits a caller's buffer of MAX_SDP_PROTOCOL_DATA_SIZE
/// characters, NUL included, in place. A null buffer and one without NUL in these characters are refused, as
/// is an edit whose result would not fit: the text stays as it was, a trace says why. Lines are found by
/// searching for text, end in CR LF or LF, and nothing behind the text's NUL is read. A value that goes into
/// a line (ids, addresses, transports, directions) and holds a control character, such as a line end, is refused
/// in the same way. Unless an operation says otherwise its status is 0 for success, with or without something to
/// do, and 1 for failure.
class SDP_NEGOTIATOR_API sdpModifications {
 public:
  /// @name Origin line (originLine.cpp)
  /// @{

  /// Replaces the session version of the o-line (RFC 4566 5.2). The field is found by counting spaces from the
  /// text's start: it stands between the second and the third, as in a body whose first line is "v=0". What no
  /// longer fits behind a longer version is cut.
  /// @param oLineEnd receives the offset behind the o-line's LF; unchanged on failure
  /// @return 0; 1 for a text without "o=", with fewer than two spaces, or whose o-line would not end in LF
  static unsigned short sdpReplaceVersionNumber(char* sdp, unsigned int version, unsigned short& oLineEnd);
  /// @copydoc sdpReplaceVersionNumber
  static unsigned short sdpReplaceVersionNumberLong(char* sdp, long long version, unsigned short& oLineEnd);
  /// Rebuilds the o-line with the user name "ZEV". All that stands between "o=" and the next "s=" goes.
  /// @param ip       the address, or null for the unspecified one of the old line's address type
  /// @param oLineEnd receives the offset behind the new o-line; unchanged on failure, but see below
  /// @return 0; 1 for a text without "o=" or "s=" behind it, an invalid address or id, or no room. A line of more than
  ///         336 characters is cut and ends the text: 1, and `oLineEnd` is the text's length.
  static unsigned short sdpModifyOLine(char* sdp, const char* sessionId, const char* version, const char* ip,
                                       unsigned short& oLineEnd);
  /// The same with a session id and version of `generateOLine`.
  static unsigned short sdpModifyOLine(char* sdp, const char* ip, unsigned short& oLineEnd);
  /// Raises the session version of the o-line by one. It is the number that the field begins with, 0 without one. Zeros
  /// in front of a version of digits alone stay, as far as the new digits leave room: 0009 becomes 0010.
  /// @return 0, also for an o-line of fewer than three fields, which stays; 1 without "o=", for an o-line without
  ///         LF, no room, a version that is the largest of 64 bits, or one that is not of digits alone and would become
  ///         shorter than its field
  static unsigned short sdpIncVersion(char* sdp);
  /// Writes a session id by the time of day: the last six digits of the seconds, one to three of the
  /// microseconds.
  /// @param idOut at least 10 characters
  /// @return `idOut`
  static char* generateOLine(char* idOut);
  /// @}

  /// @name Generation (generation.cpp, removedMLines.cpp, plainAndSecure.cpp, transport.cpp)
  /// @{

  /// Writes a body with one audio m-line from a summary: its address, port, audio codecs, first packetization
  /// period and silence suppression. The session's lines stand in the order v, s, t, o, c.
  /// @param out     20480 characters
  /// @param version session id and session version
  /// @param length  receives the length of the text
  /// @return 0
  static unsigned short sdpEncoder(char* out, const sSdpParsedData& data, int version, int& length);
  /// Writes a body with one audio m-line for a list of codec names.
  /// @param out    20480 characters; what does not fit is cut
  /// @param codecs names separated by commas: PCMU, PCMA, G729, G723, telephone-event; PCMU when none is known
  /// @return 0; 1 for a null argument or an address with a control character, `out` as it was
  static unsigned short createSDPUserRequest(char* out, const char* ip, unsigned int port, const char* codecs,
                                             bool inactive);
  /// Writes an m-line with port 0.
  /// @param out       30 characters
  /// @param mediaCode up to 25 audio, to 50 video, to 75 application, above image
  /// @return the number of characters written without the NUL
  static int buildDummyMLine(char* out, char mediaCode, bool secure);
  /// Turns every m-line into a plain and a secure one; the section's other lines stay with the second. An m-line
  /// for which there is no room stays, with all behind it, and is traced.
  /// @return 0
  static unsigned short sdpBuild2mLineSDP(char* sdp);
  /// Sets the third field of an m-line. Where the buffer ends is not known here, so that 20480 characters are
  /// counted from the m-line on: the caller sees to it that there is room for what the field grows by.
  /// @param mLine       the line's start, in a text that ends in NUL
  /// @param lineEnd     the line's LF
  /// @param expected    must occur on the line
  /// @param newProtocol at most 14 characters of it are taken
  /// @return 0, also when there is no field, no blank ends it, or it begins with the new transport; 1 when `expected`
  ///         does not occur, for an argument that is null or outside the text, or no room
  static unsigned short sdpReplaceMLineTransportProtocol(char* mLine, char* lineEnd, const char* expected,
                                                         const char* newProtocol);
  /// @}

  /// @name Codec lists (codecLists.cpp)
  ///
  /// A text that the codec holds whole gets the codec's form; of one that it cannot, every line that the edit does
  /// not concern stays as it is.
  /// @{

  /// Keeps of every audio section the formats, rtpmap and fmtp lines whose codec is in a list, telephone events and
  /// comfort noise.
  /// @param keep 20 values of `audioCodecTable`, ended by the first 0
  /// @return 0; the codec's own status when it refuses the text; 1 for null or no room
  static unsigned short sdpRemoveCodecs(char* sdp, const unsigned char* keep);
  /// Puts the formats of every audio section in the order of a list: the first format of each codec; the others go.
  /// Their rtpmap and fmtp lines come in the same order, in front of the section's other attributes.
  /// @param order 20 values of `audioCodecTable`, ended by the first 0
  /// @return as `sdpRemoveCodecs`
  static unsigned short sdpCodecsReordering(char* sdp, const unsigned char* order);
  /// @}

  /// @name Video limits (videoLimits.cpp)
  /// @{

  /// Writes the two digits of a profile-level-id (RFC 6184 8.1) that name a level.
  /// @param out 3 characters
  /// @return whether it was written; not for H264_PROFILE_NOT_PRESENT and -1, with a trace
  static bool decodeProfileIntToString(char* out, eH264_profile_id id);
  /// The same when a list of video codecs holds H264.
  /// @param videoCodecs values of `videoCodecTable`, ended by `count` or the first 0
  /// @return true also when nothing was written
  static bool decodeProfileIntToString(char* out, const unsigned char* videoCodecs, int count,
                                       eH264_profile_id id);
  /// Lowers the level of every profile-level-id in video sections that is above another; none is raised.
  /// @return 0, or 1 for an id without a level
  static unsigned short sdpModifyProfileId(char* sdp, eH264_profile_id id);
  /// Lowers the value of every b-line in video sections that is above a maximum, whatever its modifier and unit.
  /// @return 0
  static unsigned short sdpApplyBLine(char* sdp, unsigned int maxBandwidth);
  /// @}

  /// @name Preconditions (preconditions.cpp)
  /// @{

  /// Adds precondition lines at the text's end.
  /// @param allowedSdpSize what the text, the lines and two characters more must stay below
  /// @param enable         1 adds; another value does nothing
  /// @param count          records of `list`
  /// @return 0; 1 for an invalid field, a body without audio, or no room
  static unsigned short sdpInsertPrecondions(char* sdp, unsigned int allowedSdpSize, int enable, int count,
                                             const sSdpPrecondions* list);
  /// Removes every precondition line but one in the text's first line.
  /// @return 0
  static unsigned short sdpDelPreconditions(char* sdp);
  /// @}

  /// @name Connection and ports (connection.cpp, ports.cpp, videoDisabling.cpp)
  /// @{

  /// The m-lines that `sdpSetMediaPort` sets; secure is what has RTP/SAVP on its line.
  enum eMediaSecurityType : int {
    MEDIA_SECURITY_ANY = 0,
    MEDIA_SECURITY_NON_SECURE = 1,
    MEDIA_SECURITY_SECURE = 2
  };

  /// Replaces the first c-line; later ones stay.
  /// @return 0; 1 for an invalid address, a text without a c-line that ends in LF, or no room
  static unsigned short sdpReplaceCxIP(char* sdp, const char* ip);
  /// @param mediaType an eMediaType
  /// @param out       receives the media name, cut to `outSize` characters with its NUL
  /// @return 0, or 1 for another value
  static unsigned short getMediaName(int mediaType, char* out, int outSize);
  /// Sets the port of every m-line of a medium, an address version and a security.
  /// @param mediaType an eMediaType, or -1 for any
  /// @param ipVersion 0 for any
  /// @param port      1 to 1023 are refused
  /// @return 0; 1 for another media type, or at the first port that cannot be set, when those before it are changed
  static unsigned short sdpSetMediaPort(char* sdp, int mediaType, eIPAddressVersion ipVersion,
                                        eMediaSecurityType security, unsigned int port);
  /// Sets port 0 for each media type of a bit set.
  /// @return 0, or 1 when a step failed
  static unsigned short sdpDisablePort(char* sdp, int mediaMask, eIPAddressVersion ipVersion);
  /// Sets port 0 on all video m-lines. The next c-line is copied over what follows the m-line, which changes nothing
  /// where it stands there already.
  /// @param allMedia also removes the other lines of the sections
  /// @return 0
  static unsigned short sdpRemoveVideoMedia(char* sdp, bool allMedia);
  /// @}

  /// @name Media attributes (mediaAttributes.cpp)
  /// @{

  /// Adds an echo cancellation line at the end of the first audio section.
  /// @param state 1 on, 2 off
  /// @param side  1 f, 2 b, 3 fb
  /// @return 0; 1 for other values, a body without audio, one that has such a line behind its audio m-line, or no
  ///         room
  static unsigned short sdpInsertEchoCancellation(char* sdp, unsigned char state, unsigned char side);

  /// Adds silence suppression at the text's end, and for off a voice-band-data line for the first codec
  /// (ITU-T V.152). An "a=silenceSupp" that stands anywhere is not added again.
  /// @param mode 1 on, 2 off
  /// @param data the body's summary; only its first audio codec is read
  /// @return 0 also when there was nothing to add; 1 for another mode, a body without audio, or no room
  static unsigned short sdpInsertSilenceSuppression(char* sdp, unsigned char mode,
                                                    const sSdpParsedData& data);
  /// @}

  /// @name Directions (connectionMode.cpp)
  /// @{

  /// Applies a direction request to the session and to the chosen media: every direction becomes what it and
  /// the request have in common (RFC 3264 8.4), and where there is none the requested one is added.
  /// @param mode        1 sendonly, 2 recvonly, 4 inactive; 3 sendrecv is accepted and changes nothing
  /// @param mediaSelect 1 audio, 2 video, another value both
  /// @return 0, or 1 for another mode or no room for a session line; a media line that does not fit is
  ///         left out
  static unsigned short sdpReplaceMode(char* sdp, unsigned char mode, int mediaSelect);
  /// Computes what a current and a requested direction have in common, by their first eight characters.
  /// @param newMode 10 characters, written only when a change is due
  /// @return 1 when a change is due, else 0
  static unsigned short changeConnectionMode(const char* currentMode, const char* requestedMode,
                                             char* newMode);
  /// Applies a direction request to every section of one medium: to its first direction line, or by a line
  /// added at the section's end. A line that does not fit is left out.
  /// @param savedSdp   not used
  /// @param firstMLine the LF in front of the first m-line to look at, in the text `sdp`
  /// @param mediaName  "audio" or another media name
  /// @param mode       a direction word of eight characters
  /// @return 0, or 1 for an argument that is null or outside the text, or a direction with a control character
  static unsigned short setMediaConnectionMode(char* sdp, const char* savedSdp, char* firstMLine,
                                               const char* mediaName, const char* mode);
  /// @}

  /// @name Removal of attributes (attributeRemoval.cpp)
  ///
  /// A line goes from the place where the searched text stands, also in the middle of the line, through its LF; one
  /// without LF stays and ends the removal. Joined texts that match go too. Null holds no such line, and is not traced.
  /// @{

  /// Removes every line with a text, for example "a=key-mgmt:" (RFC 4567) or "a=crypto" (RFC 4568).
  /// @return 0, also when there was none
  static unsigned short sdpRemoveSecureAttributes(char* sdp, const char* prefix);
  /// Removes the attributes of DTLS-SRTP (RFC 5763): "a=setup:" and "a=fingerprint:".
  /// @return 0
  static unsigned short sdpRemoveDTLSAttributes(char* sdp);
  /// Removes the group lines of ANAT (RFC 4091); the mid lines stay.
  static void sdpRemoveAnatAttributes(char* sdp);
  /// Removes the attributes of ICE (RFC 8839) but an "a=ice-mismatch" without a colon.
  /// @return 0
  static unsigned short sdpRemoveICE(char* sdp);
  /// Removes the candidates of ICE, "a=candidate:" and "a=remote-candidates:".
  /// @return 0
  static unsigned short sdpRemoveCandidates(char* sdp);
  /// @}

  /// @name ICE and ANAT (dualStackIce.cpp, anat.cpp)
  ///
  /// With ANAT (RFC 4091) a medium stands in two sections, one for each IP version. `sdpRemoveAnat` writes which
  /// sections it removed into a record of 25 characters that the caller has filled with zeros: the section's number
  /// among all m-lines, from 1, plus 25 for video, 50 for application, 75 for image, plus 128 where it was secure
  /// (RTP/SAVP on its m-line). A zero ends the record.
  /// @{

  /// Removes the ICE candidates (RFC 8839) of every media section that are not of the IP version of its c-line, or of
  /// the session's. The text is then written anew in the codec's form. Candidates whose address is neither IPv4 nor
  /// IPv6 go too, as do all of a section without any c-line.
  /// @return 0 when a candidate of the other version was removed. 1 when there was none, the text then still has the
  ///         codec's form; and 1 with an unchanged text when it cannot be decoded or not be held whole, has another
  ///         address type or a candidate of fewer than six fields, or does not fit the buffer
  static unsigned short sdpRemoveDualStackIce(char* sdp);
  /// Groups all media sections: adds "a=mid:" with its number at the end of each that has no mid line, and in front of
  /// the first m-line the group line with the numbers, without those of port 0. A mid line that a section has stays,
  /// whatever it says. Without an m-line behind a line feed, and without room for all lines, nothing changes. Null is
  /// not traced.
  static void sdpApplyAnatAttributes(char* sdp);
  /// Removes the ANAT group lines and all media sections with a c-line of one IP version, and the session's c-line
  /// when it is of that version. A section without a code goes too: one of another medium leaves its 128 for the next
  /// one. With 25 codes the removal ends.
  /// @param ipVersion   2 for IPv4, any other value for IPv6
  /// @param removed     25 zeros, receives the record; or null
  /// @param oLineEnd    receives the offset behind the o-line when that is rebuilt
  /// @param modifyOLine rebuilds the o-line (`sdpModifyOLine`) when a code was recorded
  /// @return 0
  static unsigned short sdpRemoveAnat(char* sdp, eIPAddressVersion ipVersion, char* removed,
                                      unsigned short& oLineEnd, bool modifyOLine);
  /// Puts a dummy m-line in the place of each section of a record and groups all sections (`sdpApplyAnatAttributes`).
  /// A code whose place the text does not have is appended, as are all codes behind it. The first m-line that does not
  /// fit is left out, and all behind it.
  /// @param removed     a record, or null
  /// @param oLineEnd    receives the offset behind the o-line when that is rebuilt
  /// @param modifyOLine rebuilds the o-line first (`sdpModifyOLine`)
  /// @return 0
  static unsigned short sdpReInsertAnat(char* sdp, const char* removed, unsigned short& oLineEnd,
                                        bool modifyOLine);
  /// @}

  /// @name Connection lines (connectionLines.cpp)
  /// @{

  /// Sets the address of the session's c-line and of the first c-line of every audio section whose port is not 0.
  /// @return 0; 1 at the first m-line without a port that can be read and at the first c-line that cannot be rewritten
  ///         (`sdpReplaceCxIP`), when those before it are changed
  static unsigned short sdpModifyCLines(char* sdp, const char* ip);
  /// Sets the address of the session's c-line, or without one of the first section's c-line when its port is not 0.
  /// With a session c-line the text's second character is then taken for an m-line: its port cannot be read in a body
  /// that begins with "v=0", which gives 1.
  /// @return as `sdpModifyCLines`
  static unsigned short sdpModifyCLinesAllLines(char* sdp, const char* ip);
  /// @}

  /// @name Removal and return of m-lines (mediaRemoval.cpp, mediaReturn.cpp)
  ///
  /// A media section begins with "m=", wherever in the text that stands, and ends where the next one stands behind
  /// its m-line's LF. A record of removed m-lines is an array of at most 25 codes, filled with 0 by the caller and
  /// ended by the first 0. A code is the position of the m-line among all in the text, from 1, plus 0 for "audio",
  /// 25 for "video", 50 for "application" and 75 for "image": the first word in this order that stands anywhere on
  /// the line counts. So behind the 25th m-line a code reads as one of the next medium. A line without these words leaves no
  /// code. Nor does one behind the 25th code, or whose code were above 127, which is traced.
  /// @{

  /// Removes every media section whose m-line holds a transport.
  /// @param removed     record of audio, video and application m-lines; null records nothing
  /// @param oLineEnd    receives the offset behind the o-line's LF when that is rebuilt
  /// @param transport   for example "RTP/AVP", which RTP/AVPF holds but RTP/SAVP does not; null is refused
  /// @param modifyOLine rebuilds the o-line (`sdpModifyOLine` without an address) when something was recorded
  static void sdpRemoveMline(char* sdp, char* removed, unsigned short& oLineEnd, const char* transport,
                             bool modifyOLine);
  /// Removes every media section whose m-line holds "RTP/SAVP", as RTP/SAVPF does (RFC 3711, RFC 5124).
  /// @param removed record of all four media; otherwise as `sdpRemoveMline`
  static void sdpRemoveSecurity(char* sdp, char* removed, unsigned short& oLineEnd, bool modifyOLine);
  /// Removes key management attributes (RFC 4567) and all secure media sections, as `sdpRemoveSecurity` with a new
  /// o-line does.
  /// @return 0
  static unsigned short sdpDisableSRTPMediaStreams(char* sdp, char* removed, unsigned short& oLineEnd);
  /// Puts recorded m-lines back in their places as secure ones with port 0. The first whose place the text does not
  /// have is appended, and so are all behind it; one that does not fit ends this, with a trace.
  /// @param removed     record, or null
  /// @param oLineEnd    receives the offset behind the o-line's LF when that is rebuilt
  /// @param modifyOLine rebuilds the o-line (`sdpModifyOLine` without an address) when the record holds something
  /// @return 0
  static unsigned short sdpReplaceTransProtocol(char* sdp, char* removed, unsigned short& oLineEnd,
                                                bool modifyOLine);
  /// @}

  /// @name Best-effort SRTP (bestEffort.cpp, bestEffortChange.cpp)
  ///
  /// An offer of plain and secure media at once, to choose from: by one m-line per medium with the transport
  /// RTP/AVP and crypto attributes (RFC 4568), or by two, a plain and a secure one.
  /// @{

  /// @param from a text that ends in NUL
  /// @param to   a place in it
  /// @return whether "RTP/SAVP" begins in front of `to`; false for null
  static bool isSAVPMline(char* from, char* to);
  /// Decodes a text.
  /// @param desc receives the description, empty after a failure
  /// @return the codec's status
  static unsigned short getSdpsDescription(char* sdp, sDescription& desc);
  /// Decodes a text into copies of its media descriptions.
  /// @param mLines replaced by the copies, more than 20 kB each; empty after a failure
  /// @return 0; the codec's own status when it refuses the text; 1 when there is no memory
  static unsigned short getMLines(char* sdp, std::vector<mDescription>& mLines);
  /// Recognises offers with two m-lines per medium: pairs of one media type, one with RTP/AVP or RTP/AVPF and the
  /// other with RTP/SAVP or RTP/SAVPF. Only the first pair's secure m-line is asked for a crypto attribute. Of the
  /// formats only those at the index of the pair's first m-line (0, 2, 4 ...) are compared, and two missing ones
  /// are equal.
  /// @return BE_SRTP_2m_LINE or, with a trace that says why, SRTP_UKNOWN
  static eSecurityType is2mLineBeSrtp(std::vector<mDescription> mLines);
  /// Recognises offers with one m-line per medium: no two m-lines in a row of one media type, all with RTP/AVP or
  /// RTP/AVPF, and each with a crypto attribute as its last. An m-line without attributes is as the one before.
  /// @return BE_SRTP_1m_LINE or SRTP_UKNOWN
  static eSecurityType is1mLineBeSrtp(std::vector<mDescription> mLines);
  /// Turns an offer with two m-lines per medium into one with one m-line, or into a secure-only one, by removing
  /// its RTP/AVP sections. For the former the others become RTP/AVP when they are of a medium, audio, video or
  /// application, whose two m-lines had the same port other than "0"; their crypto attributes stay.
  /// @param oldSdpType BE_SRTP_2m_LINE; of another type nothing is changed
  /// @param newSdpType BE_SRTP_1m_LINE or SECURITY_SRTP_ONLY; for another nothing is changed
  /// @param removed    record of removed m-lines, see `sdpRemoveMline`; or null
  /// @param oLineEnd   not changed, nor is the o-line
  /// @return 0; 1 when the codec refuses the text or there is no memory for its description
  static unsigned short sdpChangeSdpType(char* sdp, eSecurityType oldSdpType, eSecurityType newSdpType,
                                         char* removed, unsigned short oLineEnd);
  /// @}

  /// @name SDES (sdes.cpp)
  /// @{

  /// Writes the text of a master key and salt (RFC 4568 6.1): 30 bytes in Base64. They are the C library's random
  /// numbers for the wall clock's seconds as seed, so they are the same for all calls within a second and can be
  /// guessed: no secret, only a key of the right form. An engine that wants security puts a key of its own there.
  /// The process' own random numbers are not disturbed.
  /// @param out    receives 40 characters and a NUL
  /// @param outCap characters of `out`, at least 41
  /// @return 1; 0 when the capacity is too small or `out` is null
  static int generateSDESKey(char* out, unsigned long outCap);
  /// Keeps of a media section's crypto attributes (RFC 4568) the first whose suite, as far as it goes and without
  /// regard to case, is AES_CM_128_HMAC_SHA1 or sorts behind it, gives it a key of `generateSDESKey` instead of all
  /// its parameters, and removes the others; with port 0 it removes all. The section ends where it ended before the
  /// edits, so when lines have gone, the first crypto attributes of the next section may count too. Where the buffer
  /// ends is not known here, so that 20480 characters are counted from the argument on: the caller sees to it that
  /// there is room for the key.
  /// @param mediaStart the LF in front of an m-line, in a text that ends in NUL
  /// @return 0; 1 for a crypto attribute without LF or without a space behind its tag or suite, an m-line without
  ///         port, null or no room: then what was edited before stays
  static unsigned short addSDESLine(char* mediaStart);
  /// Whether all active m-lines, which are those with a port other than 0, are secured by crypto attributes alone:
  /// no "RTP/AVP" in the section, no key management (RFC 4567) in front of its end, and a crypto attribute in it or
  /// in a later one.
  /// @return true also when there is no active m-line; false for a refused text
  static bool isSDESonly(const char* sdp);
  /// @}

  /// @name Sets of m-lines (mediaSet.cpp, mediaTransport.cpp, zeroPorts.cpp)
  /// @{

  /// Compares the numbers of m-lines of two bodies.
  /// @return -1 when the old one has more, 1 when it has fewer, 0 when they are equal; -2 when the codec refuses one
  ///         or memory ran out
  static int compareNumberOfMLines(char* oldSdp, const char* newSdp);
  /// Makes the m-lines of a body answer to those of an older one, and gives the body the codec's form.
  ///
  /// With both flags, of the new m-lines those stay whose medium and transport an old one has, each as many times
  /// as there are such; all stay when that makes 25 or more. Otherwise every old m-line whose medium, and with
  /// `matchTransport` transport, no new one has is added at the end, without the lines that follow it, while there
  /// are fewer than 25. With `matchTransport` its port begins with "0" when the medium is there with another
  /// transport. Media of unknown names are one medium.
  /// Takes the stack of two descriptions, see `sdpParserMessage::sdpParse`.
  /// @param newSdp rewritten; unchanged on failure
  /// @return 0; 1 when the codec refuses a body or cannot hold the new one or the m-lines of the old one whole, no
  ///         room, or memory ran out
  static unsigned short correctMLines(char* oldSdp, char* newSdp, bool keepOnly, bool matchTransport);
  /// @return whether the codec takes the body and it has exactly one m-line
  static bool isSingleMLineSdp(char* sdp);
  /// Removes every m-line of port 0; the lines that follow it stay and so belong to the section in front. With a
  /// secure one goes its first crypto line (RFC 4568) that ends before the LF in front of the next m-line.
  /// @return 1 for a text without m-lines, else 0, or 1 when the port of the last m-line cannot be read
  static unsigned short sdpRemoveMlinesZeroPort(char* sdp);
  /// Sets the transport of every m-line of some media whose line holds another transport. Only the third field is
  /// replaced, whatever it holds; one that begins with the new transport or ends with the line stays. Runs of blanks
  /// separate the fields.
  /// An m-line that would not fit stays too, with a trace.
  /// @param fromTransport must occur on the m-line, for example "RTP/SAVP"
  /// @param toTransport   at most 14 characters of it are taken
  /// @param mediaNames    "audio" and other media names; a line whose medium begins so is meant
  /// @return 0
  static unsigned short sdpSetMediaTransportType(char* sdp, const char* fromTransport,
                                                 const char* toTransport,
                                                 const std::vector<std::string>& mediaNames);
  /// @}

  /// @name Dummy bodies (dummy.cpp)
  /// @{

  /// Turns a received body into one of the library's own: all media but the audio of the address' version get port
  /// 0, the address stands in the c-lines, and key management, ICE and the peer's SDES keys go.
  /// @param answer     with `holdFlag`, the direction to apply is inactive; else it is recvonly
  /// @param holdFlag   false turns sendonly and recvonly into inactive and leaves sendrecv
  /// @param third      with `holdFlag` and no answer, turns sendonly into recvonly and leaves sendrecv
  /// @param ip         the address to be reached at
  /// @param port       of secure audio, when the body has a single m-line or all its active media use SDES alone
  /// @param length     receives the length of the text; unchanged when another step than that of the directions failed
  /// @param oLineEnd   as of `sdpModifyOLine`, only with `modifyOLine`
  /// @param modifyOLine rebuilds the o-line with the address
  /// @return 0; 1 for a null ip or one with a control character; the status of the step that failed, when the edits made
  ///         so far stay
  static unsigned short sdpCreateDummy(char* sdp, bool answer, bool holdFlag, bool third, const char* ip,
                                       unsigned short port, int& length, unsigned short& oLineEnd,
                                       bool modifyOLine);
  /// The same with `third` false.
  static unsigned short sdpCreateDummy(char* sdp, bool answer, bool holdFlag, const char* ip,
                                       unsigned short port, int& length, unsigned short& oLineEnd,
                                       bool modifyOLine);
  /// @}

  /// @name Video sections (videoSections.cpp)
  /// @{

  /// Collects the video sections, each from its m-line up to, but without, the LF in front of the next m-line. One
  /// without a c-line of its own gets the text's first one in front of its attribute lines.
  /// @param out           receives them, if they have at most `outSize` characters, else the empty text; a result
  ///                      of `outSize` characters loses its last one to the NUL
  /// @param outSize       characters of `out`; nothing is written with 0 or a null `out`
  /// @param removeFromSdp also removes them from the text, but not one that directly follows one that was removed;
  ///                      an empty line stays in the place of each but the last
  /// @return 0; 1 when the text has no c-line that ends in LF, or memory ran out
  static unsigned short getVideoDescriptions(char* sdp, char* out, unsigned int outSize, bool removeFromSdp);
  /// @}

  /// @name Answer update (answerUpdate.cpp)
  /// @{

  /// Brings a plain audio answer up to date with a new offer that differs from the old one in its codecs, and may have
  /// video in addition (RFC 3264 8). Audio formats of the answer whose codec the new offer no longer has go with their
  /// rtpmap and fmtp lines; the text then gets the codec's form and its audio m-line 20 formats at most. Of payload
  /// types in these lines only the leading characters are compared: where 96 goes, so do the lines of 9. A video
  /// m-line of the new offer is answered with port 0, and added where the answer has none.
  /// Takes the stack of two `sDescription`, some 1.1 MB; where one is larger than 1 MB they are allocated.
  /// @param sdpAnswer   edited in place; unchanged on failure
  /// @param oldSdpOffer a text of the same capacity, only read
  /// @param newSdpOffer a text of the same capacity, only read
  /// @param length      receives the length of the answer, also on failure
  /// @param oLineEnd    receives the offset behind the o-line when that was rebuilt, and is unchanged otherwise
  /// @param modifyOLine gives the answer a new session id and version (`sdpModifyOLine`) when a format went or the new
  ///                    offer has video
  /// @return 0, also when there was nothing to do; 1 with a trace for a text that is no SDP body, offers with different
  ///         session addresses or audio ports (by their first five characters), several active audio m-lines in the new
  ///         offer or the answer, an answer with an active RTP/SAVP m-line, one whose first known audio codec the new
  ///         offer has not, one that its description does not hold whole and that would lose a format, an offered video
  ///         m-line without format that would be added, an o-line that cannot be rebuilt, no room or memory
  static unsigned short sdpUpdateSdp(char* sdpAnswer, char* oldSdpOffer, char* newSdpOffer, int& length,
                                     unsigned short& oLineEnd, bool modifyOLine);
  /// @}
};

#endif
