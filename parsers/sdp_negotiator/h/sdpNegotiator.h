#ifndef SDP_NEGOTIATOR_H
#define SDP_NEGOTIATOR_H

#include <vector>

#include "commonFns.h"
#include "oLine.h"
#include "sdpDataDefinitions.h"
#include "sdpNegotiatorExport.h"

// The object: one SDP body with its summary, and the requests of a call-control engine.

/// Characters of a body that an object stores as they are, a NUL included; a longer body is stored deflated
/// and must fit the same number of bytes.
inline constexpr int SDP_STORED_TEXT_SIZE = 2560;

/// Entries of the codec array that `cSdpNegotiator::getVideoCodecs` fills.
inline constexpr int SDP_VIDEO_CODEC_LIST_SIZE = 8;

/// Status of `cSdpNegotiator::sdpModifyVersionAndMlines` alone: m-lines are missing and cannot be added.
inline constexpr unsigned short SDP_M_LINES_NOT_ADDED = 3;

/// One SDP body (RFC 4566) with the summary of what it says.
///
/// An object is a plain record of 2692 bytes without constructor, destructor and pointers: it may be copied byte for
/// byte. One that `empty` or `sdpParse` made is empty or has a body; one with `{}` alone has no text; one without an initialiser is undefined until `sdpParse` was called, with an empty text if need be.
/// Objects whose bytes come from elsewhere may claim anything; no operation trusts the claims.
///
/// Status results are 0 for success and 1 for failure unless an operation says otherwise. Texts end in NUL;
/// a null text counts as an empty one unless an operation says otherwise. Operations report through
/// `cNegotTraceManager`, and none throws. Why a request was refused is told by `sdpLastRefusal` (sdpRefusal.h) as well,
/// also of those that are not traced.
///
/// Threads: distinct objects may be used on different threads at once; calls on one object are serialised by
/// the caller. Operations that need the text want 20480 characters of stack, and those that decode it the
/// size of an `sDescription` on top, several hundred kilobytes.
///
/// Memory: texts of 2560 characters and more are deflated (RFC 1950) and inflated at every request, by libdeflate or by
/// zlib as the library was built. A thread that does so makes what that takes once (with libdeflate some 230 KB for
/// storing and 10 KB more for expanding; with zlib 260 KB and 40 KB, also where libdeflate leaves a text to zlib), uses
/// it ever after, and gives it back when it ends. It shares none of it with other threads, so there is no lock,
/// and as it is allocated when it is needed, a process may load the library while it runs. What is called
/// still later, from a destructor of the thread's own, makes and releases a state of its own.
class SDP_NEGOTIATOR_API cSdpNegotiator {
 public:
  /// Makes an empty object: no text, and the summary in its initial state.
  static cSdpNegotiator empty() noexcept;

  /// @name Body and parse (sdpNegotiator/parse.cpp)
  /// @{

  /// Replaces body and summary. Whatever the object held is gone, also after a failure, which leaves the
  /// object empty.
  /// @param sdp  the body, at most 20480 characters
  /// @param type handed to the codec unchanged
  /// @return 0; 1 for a null, empty or too long text, one that the analysis refuses, or when there is no
  ///         memory to deflate it; 2 when the body is 2560 characters or longer and does not deflate into 2560 bytes. All
  ///         but the last two are traced.
  unsigned short sdpParse(const char* sdp, eSdpType type);

  /// Empties the codec list of the summary.
  void initAudioCodecs();
  /// Sets the 20 packetization periods of the summary to SDP_PACKETIZATION_NOT_SET.
  void initPacketizationPeriod();
  /// Sets the port of the summary to SDP_PORT_NOT_SET and its address to the zero address.
  void initSdpDescriptor();
  /// @}

  /// @name Stored text (sdpNegotiator/storage.cpp)
  /// @{

  /// Stores a text without a look at it; the summary stays as it is. Texts of up to 2559 characters are kept
  /// as they are, longer ones deflated (RFC 1950).
  /// @param sdp the text
  /// @return 0; 1 when `sdp` is null or there is no memory, nothing changed then; 2 when the deflated text
  ///         does not fit 2560 bytes: the former text is destroyed then, though its recorded form stays, and
  ///         the object is to be reset
  unsigned short setRawSDP(const char* sdp);

  /// Copies or expands the stored text.
  /// @param dst receives the text and always ends in NUL; what lies behind the NUL is undefined, except that
  ///            behind a text that is not deflated the last character is NUL as well
  /// @param len characters that `dst` has room for; nothing is written behind them
  /// @return 0, also when a text that is not deflated was cut to `len` - 1 characters; 1 when a deflated text
  ///         is damaged or does not fit with its NUL (`dst` holds what could be expanded), and when `len` is
  ///         0 or `dst` is null
  unsigned short getRawSDP(char* dst, unsigned int len) const;

  /// Copies or expands the stored text as `getRawSDP` does, and traces it.
  /// @param dst receives the text; not written when the object is empty
  /// @param len characters that `dst` has room for
  /// @return as `getRawSDP`; 1 when the object is empty
  unsigned short getSDP(char* dst, unsigned int len) const;

  /// @return the length of the stored text in characters; 0 when it is empty, damaged, or with its NUL longer
  ///         than 20480 characters
  unsigned int getRawSdpSize() const;

  /// @return whether a text is stored
  bool isSdpPresent() const;
  /// @}

  /// @name Summary (sdpNegotiator/queries.cpp, summary.cpp)
  /// @{

  /// @return the summary, which lives as long as the object
  const sSdpParsedData& getParsedData() const;

  /// Takes a summary over through the setters, and the direction and silence suppression that differ into
  /// the text as well.
  /// @param data the summary; it may be the object's own
  void setParsedData(const sSdpParsedData& data);

  /// @return whether nothing was parsed into the summary or set in it, as `sSdpParsedData::isInitialized`
  ///         tells
  bool isParsedDataInitialized() const;
  /// @return whether a text is stored or the summary is not in its initial state
  bool isParsedDataPresent() const;

  /// @return whether media are secured: SDP_ATTR_SECURE_RTP
  bool isSecureCall() const;
  /// @return whether video is secured: SDP_ATTR_SECURE_VIDEO
  bool isSecureVideo() const;
  /// @return whether video is received only: SDP_ATTR_RECVONLY_VIDEO
  bool isRecvOnlyVideo() const;
  /// @return whether ICE lite is announced (RFC 8839): SDP_ATTR_ICE_LITE
  bool isIceLitePresent() const;
  /// @return whether full ICE is announced (RFC 8839): SDP_ATTR_FULL_ICE
  bool isFullIcePresent() const;
  /// @return whether there is a MIKEY key management attribute (RFC 4567): SDP_ATTR_MIKEY
  bool isMikeyPresent() const;
  /// @return whether an ICE candidate matches the connection data: SDP_ATTR_ICE_CANDIDATES_MATCH
  bool IceCandidatesMatch() const;

  /// @return whether the session is sendonly or inactive, or else the connection address is the unspecified
  ///         one, "0.0.0.0" or "::" (RFC 3264 8.4)
  bool isHoldState() const;
  /// @}

  /// @name Search in the text (sdpNegotiator/queries.cpp)
  /// @{

  /// @param text what to look for, letters compared exactly; an empty text is always found, null never
  /// @return whether the stored text holds it. Of a damaged text what can be expanded is searched.
  bool contains(const char* text) const;
  /// @return whether the text contains "a=crypto" (RFC 4568)
  bool isSDESPresent() const;
  /// @return whether the text contains "a=group:ANAT" (RFC 4091)
  bool isAnatPresent() const;
  /// @return whether the text contains "o=IRM ": it is a dummy offer of this library
  bool isRmDummySdp() const;
  /// @}

  /// @name Comparison (sdpNegotiator/compare.cpp)
  /// @{

  /// Compares from the first "s=" to the end, so two versions of a session that differ only in their o-lines
  /// are the same.
  /// @param sdp the other text
  /// @return 0 when both are the same; 1 when they differ, `sdp` is null, the object is empty or one of the
  ///         texts has no "s="
  unsigned short compareSdpByBody(const char* sdp) const;
  /// @param other the object with the other text; an empty one has an empty text
  /// @return 0 when both are the same; 1 when they differ, `other` is null, this object is empty or one of the
  ///         texts has no "s="
  unsigned short compareSdpByBody(const cSdpNegotiator* other) const;
  /// @}

  /// @name Display (sdpNegotiator/display.cpp)
  /// @{

  /// Traces the text, cut to what a trace line holds.
  void displaySDPRawData() const;
  /// Traces the summary field by field.
  void displaySDPData() const;
  /// Traces a summary field by field.
  static void displaySDPData(const sSdpParsedData& data);
  /// @}

  /// @name Media (sdpNegotiator/media.cpp)
  /// @{

  /// Lists the active video and application m-lines; m-lines of one label (RFC 4574) share an entry.
  /// @param media replaced by the list; left alone on failure
  /// @return 0; 1 when the object is empty or the text cannot be expanded; the codec's own status when it
  ///         refuses the text
  unsigned short getMedia(std::vector<mediaStruct>& media) const;

  /// Lists the codecs of the first video m-line that has a port other than 0 and no attribute "inactive".
  /// @param codecs      8 entries: receives the values of `videoCodecTable` in m-line order, then 0
  /// @param attributes  receives the bits of eSdpAttribute of the summary; unchanged on failure
  /// @param h264Profile receives the eH264_profile_id of the last H.264 format listed; unchanged when there
  ///                    is none
  /// @return 0, also when there is no such m-line; 1 when `codecs` is null or the text cannot be expanded;
  ///         the codec's own status when it refuses the text
  unsigned short getVideoCodecs(unsigned char* codecs, unsigned int& attributes, int& h264Profile) const;
  /// Lists the codecs of that m-line without the H.264 profile.
  unsigned short getVideoCodecs(unsigned char* codecs, unsigned int& attributes) const;
  /// @}

  /// @name Settings (sdpNegotiator/settings.cpp)
  ///
  /// They change the summary alone and hold until the next parse. A refused value is traced and changes
  /// nothing, unless an operation says otherwise.
  /// @{

  /// Replaces the codec list.
  /// @param codecs values of `audioCodecTable`, 0 to 38
  /// @param count  entries of `codecs`; at most 20 are taken, fewer than 1 leave the list empty
  /// @return 0; 1 for a null list or a value above 38, and the list is empty then
  unsigned short setAudioCodecs(const unsigned char* codecs, int count);
  /// @param codec a value of `audioCodecTable`, 0 to 38
  /// @param slot  0 to 19, or -1 for the first empty slot; without one nothing happens
  /// @return true on failure
  bool addAudioCodec(unsigned char codec, int slot);
  /// Replaces the first periods of the list and leaves the others.
  /// @param periods in milliseconds, SDP_PACKETIZATION_NOT_SET where there is none
  /// @param count   entries of `periods`; at most 20 are taken
  /// @return 0; 1 for a null list
  unsigned short setPacketizationPeriod(const unsigned char* periods, int count);
  /// @param period in milliseconds
  /// @param slot   0 to 19, or -1 for the first slot without a period; without one nothing happens
  /// @return true on failure
  bool setPacketizationPeriod(unsigned char period, int slot);
  /// @param port 0, or 1024 to 65535
  /// @return 0, or 1 for another port
  unsigned short setMediaPort(unsigned int port);
  /// @param mediaType bits of eMediaType, 0 to 63
  /// @return 0, or 1 for a larger value
  unsigned short setMediaType(unsigned int mediaType);
  /// @param value 0 to 3
  /// @return 0, or 1 for a larger value
  unsigned short setResourceReserve(unsigned char value);
  /// @param value an eFeatureState
  /// @return 0
  unsigned short setEchoCancellation(unsigned char value);
  /// @param value any
  /// @return 0
  unsigned short setEchoCancelDirection(unsigned char value);
  /// @param value in bit/s
  /// @return 0
  unsigned short setT38MaxBitRate(unsigned int value);
  /// @param value bits of eSdpAttribute
  /// @return 0
  unsigned short setSdpAttributes(unsigned int value);
  /// @param value any
  /// @return 0
  unsigned short setGainControl(short value);
  /// @param value the session's bandwidth
  /// @return 0
  unsigned short setBandwidth(unsigned int value);
  /// Sets address and port together, unchecked.
  /// @return 0
  unsigned short setSdpDescriptor(sSDPDescriptor descriptor);
  /// @}

  /// @name Codec names (sdpNegotiator/codecNames.cpp)
  /// @{

  /// @param codecText a text name of `audioCodecTable`, in any letter case
  /// @return the value of the first row with that name, 0 when there is none
  static unsigned char getAudioCodecValue(const char* codecText);
  /// @param encodingName an encoding name of `audioCodecTable`, in any letter case
  /// @return the value of the first row with that name, 0 when there is none
  static unsigned char getRtpMapAudioCodecValue(const char* encodingName);
  /// @param encodingName a name of `videoCodecTable`, in any letter case
  /// @return the value of the first row with that name, 0 when there is none
  static unsigned char getVideoCodecValue(const char* encodingName);
  /// @return the text name of the first row of `audioCodecTable` with that value, "" when there is none
  static const char* getAudioCodecText(unsigned char value);
  /// @return the name of the first row of `videoCodecTable` with that value, "" when there is none
  static const char* getVideoCodecText(unsigned char value);
  /// @}

  /// @name Texts from values (sdpNegotiator/generation.cpp)
  /// @{

  /// Writes a body from the object's own summary, as `sdpModifications::sdpEncoder`.
  /// @param out 20480 characters
  /// @return 0
  unsigned short sdpEncode(char* out, int version, int& length) const;
  /// Writes a body for a codec list, as `sdpModifications::createSDPUserRequest`. The object plays no part.
  /// @param out  20480 characters
  /// @param port 0, or 1024 to 65535
  /// @return 0; 1 for an invalid address or port
  static unsigned short sdpCreateMessage(char* out, const char* ip, unsigned int port, const char* codecs,
                                         bool inactive);
  /// Writes an answer that accepts nothing: the unspecified address, and two audio m-lines with port 0.
  /// @param out         20480 characters
  /// @param sessionOnly leaves the m-lines out
  /// @param length      receives the length of the text
  /// @param version     the version of the address
  /// @return 0
  static unsigned short generateDummyAnswer(char* out, bool sessionOnly, int& length,
                                            eIPAddressVersion version);
  /// @}

  /// @name Transfer (sdpNegotiator/transfer.cpp)
  ///
  /// The transfer form is the object's own leading bytes, in the host's byte order: the summary and of the
  /// stored text what is in use, 133 to 2692 bytes.
  /// @{

  /// @return the size of the transfer form in bytes
  unsigned int getObjectSize() const;
  /// @param out  receives an array of `size` + 1 bytes, the last of them 0, to be released with array delete
  /// @param size receives the size of the transfer form
  /// @return 0; 1 when `out` is null or there is no memory, and the array is null then
  unsigned short compressObject(unsigned char** out, unsigned int& size) const;
  /// Takes an object over from its transfer form. Bytes of the stored text behind it stay as they are.
  /// @return 0; 1 with a trace, nothing changed, for null, a size below 132 or above 2692, or a form that
  ///         contradicts itself: more deflated bytes than there are, a plain text without NUL
  unsigned short uncompressObject(const unsigned char* in, unsigned int size);
  /// @}

  /// @name Origin line (sdpNegotiator/originLine.cpp)
  ///
  /// The requests store the text and leave the summary but for the o-line's end. Their result is the first
  /// status that is not 0: 1 for an empty object, the edit's own, that of storing. With status 1 of storing the
  /// object stays as it was; with 2 the stored text is destroyed, and the object is to be parsed anew.
  /// @{

  /// @param line   receives a new array with the o-line without its end, to be released with array delete; an
  ///               empty text for an empty object and where the summary's offsets do not lie in the text; null
  ///               when there is no memory
  /// @param length receives its length
  /// @return 0
  unsigned short getOLine(char*& line, int& length) const;
  /// @param record receives the fields, cut to their sizes; all bytes are 0 when there is no o-line
  void getOLine(o_line& record) const;
  /// @return 0 when the o-line is `line`, else 1
  unsigned short compareSdpOLine(const char* line) const;
  /// @return 0 when both have the same o-line, else 1
  unsigned short compareSdpOLine(const cSdpNegotiator* other) const;
  /// @return whether the other o-line has the same fields and a session version that is not greater
  bool compareSdpOLineUpdate(const cSdpNegotiator* other) const;
  /// Takes the other object's o-line over; without one nothing changes. Where its offsets span several lines only the
  /// first is taken.
  /// @return 0; 1 for null, no room or a text that cannot be expanded; or the status of storing
  unsigned short copyOLine(const cSdpNegotiator* other);
  /// `sdpModifications::sdpReplaceVersionNumber` on the text.
  unsigned short sdpSetVersionNumber(unsigned int version);
  /// `sdpModifications::sdpReplaceVersionNumberLong` on the text.
  unsigned short sdpSetVersionNumberLong(long long version);
  /// `sdpModifications::sdpModifyOLine` on the text.
  /// @param sessionId at most 64 characters
  /// @param version   at most 64 characters
  /// @param ip        null for the unspecified address
  /// @return for a refused argument the result of a trace call: 0 while tracing is off
  unsigned short sdpModifyOLine(const char* sessionId, const char* version, const char* ip);
  /// `sdpModifications::sdpModifyOLine` on the text, with the unspecified address.
  unsigned short sdpModifyOLine(const char* sessionId, const char* version);
  /// `sdpModifications::sdpModifyOLine` on the text, with a session id and version by the time of day and the
  /// unspecified address.
  unsigned short sdpModifyOLine();
  /// `sdpModifications::sdpIncVersion` on the text. The recorded end of the o-line stays, also where the line
  /// grows by a digit; `getOLine` then cuts one that ends in a bare LF by one character.
  unsigned short sdpIncVersion();
  /// @}

  /// @name Audio codec policy (sdpNegotiator/codecLists.cpp)
  ///
  /// Codec lists end at their first 0, or with their count. A restriction parses the new text; the others leave the
  /// summary but for the slots as the last parse had it, the o-line's place too.
  /// @{

  /// Keeps the audio codecs that a list shares with the body, at most 20; telephone events and comfort noise stay.
  /// @param count   entries of `codecs`, however many
  /// @param reorder the list's order counts, else the body's
  /// @return 1 when text and summary were rewritten; 0 when nothing was done, also for a text that cannot be expanded
  unsigned short sdpRestrictAudioCodecsTo(const unsigned char* codecs, int count, bool reorder);
  /// Puts an audio codec of the body first. The periods stay in their slots.
  /// @return 0
  unsigned short sdpChangeAudioCodecPreference(unsigned char codec);
  /// Orders the audio codecs by a list, which is taken as it is.
  /// @param count entries of `codecs`; at most 20 are taken, and fewer than 1 empty the slots and leave the text
  /// @return 0
  unsigned short sdpReorderAudioCodecPreference(const unsigned char* codecs, int count);
  /// @}

  /// @name Video (sdpNegotiator/videoSections.cpp, videoCodecs.cpp)
  ///
  /// The object is unchanged after a failure, also when the new text cannot be stored. They store the text
  /// and leave the summary as it is.
  /// @{

  /// Puts media sections in the place of the video section: each in turn, so that the last one remains. That is exact
  /// for a text that begins with "m=" and a body whose first "m=video" is its last section; otherwise more goes, since
  /// what is taken of the text, and replaced in the body, is as long as the place of the next "m=" counted from its
  /// start says. A body that holds no "video" anywhere gets the text at its end as it is. A text of the body above
  /// 20479 characters, or one that cannot be stored, is refused with a trace.
  /// @param sections media sections of any length, each beginning with "m="; null is refused with a trace
  void sdpAddVideoDescriptions(const char* sections);
  /// `sdpModifications::getVideoDescriptions` on the text.
  /// @param out  receives the video sections, and is empty when they do not fit; null takes none
  /// @param size characters of `out`
  /// @param flag takes them out of the body, also when they do not fit `out`
  /// @return 1; 0 with a trace for an empty object, a refusal, or a new text that cannot be stored
  unsigned short sdpGetVideoDescriptions(char* out, unsigned int size, bool flag);
  /// Removes from every video section the formats of known codecs that are not allowed, with their rtpmap and fmtp
  /// lines; formats of unknown codecs stay. Of an m-line 64 formats are looked at. The first place of a format on its
  /// m-line counts, the port's too.
  /// @param allowed values of `videoCodecTable`, ended by `count` or the first 0; null allows none
  /// @return 1 when every video section has an allowed codec; 0 with the object unchanged when one has none, there is no
  ///         video section, or the new text cannot be stored
  unsigned short sdpRestrictVideoCodecsTo(const unsigned char* allowed, int count);
  /// @}

  /// @name Security (sdpNegotiator/security.cpp)
  ///
  /// The queries search the text, wherever what they look for stands in it. The removals parse what is left, so the
  /// summary tells of the new text; a text that does not parse leaves the object empty.
  /// @{

  /// How the media are secured, by the profiles RTP/AVP and RTP/SAVP (and so AVPF and SAVPF) and, for a body with
  /// the plain one, the attributes setup, fingerprint, key-mgmt and crypto.
  /// @return SECURITY_NONE, SECURITY_RTP_ONLY, SECURITY_SRTP_ONLY or SECURITY_BOTH
  eSecurityType getSdpSecurityType() const;
  /// @return whether the text contains "a=setup" or "a=fingerprint" (RFC 5763)
  bool isDTLSPresent() const;
  /// Removes media or their keys, by what the other side does not support: plain RTP media; or, of MIKEY (RFC 4567)
  /// and SDES (RFC 4568), the attributes when the body has both, and else all secure media; or all secure media for
  /// another value. Of MIKEY the summary tells (`isMikeyPresent`), of SDES the text.
  /// @param removed receives the record of the removed m-lines, see `sdpModifications::sdpRemoveMline`; its first 28
  ///                bytes are cleared first. Nothing is recorded in null.
  /// @param kind    an eNonSupportedSecurity
  /// @return the first status that is not 0: 1 when the text cannot be expanded, the parse's. Without the MIKEY or
  ///         SDES that is to go the result of a trace call: 0 while tracing is off, and nothing is changed
  unsigned short sdpDisableSRTPMedia(char* removed, eNonSupportedSecurity kind);
  /// Removes the lines of MIKEY, "a=key-mgmt:" (RFC 4567).
  /// @return 0, also when there was none; 1 when the text cannot be expanded; or the status of the parse
  unsigned short sdpRemoveMikeyAttribute();
  /// Removes the lines of SDES, "a=crypto" (RFC 4568).
  /// @return as `sdpRemoveMikeyAttribute`
  unsigned short sdpDisableSDESCryptoMedia();
  /// `sdpModifications::sdpRemoveDTLSAttributes` on the text.
  /// @return 0, whatever the parse says; 1 without such attributes or when the text cannot be expanded
  unsigned short sdpRemoveDTLSAttributes();
  /// @}

  /// @name Best-effort SRTP (sdpNegotiator/bestEffort.cpp, plainAndSecure.cpp)
  /// @{

  /// Tells the form in which the body offers secure media without insisting on them: one m-line per medium with
  /// keys, or two. A body whose security is plain by `getSdpSecurityType` is tried for the first form and one with
  /// both for the second.
  /// @return SECURITY_RTP_ONLY or BE_SRTP_1m_LINE; SECURITY_SRTP_ONLY with "a=crypto"; BE_SRTP_2m_LINE; otherwise
  ///         SRTP_UKNOWN, also for a body that cannot be decoded
  eSecurityType getSdpBestEffortSrtpType() const;
  /// `sdpModifications::sdpChangeSdpType` on the text, which is parsed again also when that fails. A text that does not
  /// parse leaves the object empty, which the result does not tell.
  /// @param from    the form that the body has
  /// @param to      the form that it is to have
  /// @param removed receives the record of the removed m-lines; its first 32 bytes are cleared first. Nothing is
  ///                recorded in null.
  /// @return the status of the edit; 1 when the text cannot be expanded
  unsigned short sdpChangeSdpType(eSecurityType from, eSecurityType to, char* removed);
  /// @return whether the body has exactly one m-line, by `sdpModifications::isSingleMLineSdp`
  bool isSingleLineSDP() const;
  /// `sdpModifications::sdpBuild2mLineSDP` on the text. The edit's status does not count: a text that it refuses is
  /// parsed as it is.
  /// @return 0; 1 for an empty object or a text that cannot be expanded, the object unchanged; or the status of the
  ///         parse, the object empty
  unsigned short sdpBuild2mLineSDP();
  /// @}

  /// @name Offer versions (sdpNegotiator/offerVersion.cpp)
  /// @{

  /// Whether this is the session of an earlier offer, one version on: all six fields of the o-line (RFC 4566 5.2) are
  /// there, the session version is higher by exactly one, and the others are the same. Versions are read as signed
  /// numbers of 64 bits, larger ones as the largest.
  /// @return 1 or 0; 1 with a trace for null
  unsigned short isSdpVersionIncreased(const cSdpNegotiator* earlier) const;
  /// Takes over the o-line of an earlier body with its version raised by one, in both objects. Where the earlier body has
  /// more m-lines, those of media types that this one has not are added; a second m-line of a type that it has is not.
  /// @param keepOnly handed to `sdpModifications::correctMLines`; without effect, since transports are not compared
  /// @return 0 when both bodies have as many m-lines, or the earlier one had more and this one was corrected;
  ///         1 when the earlier body has fewer or an object is empty; 65534 when a text is no SDP body; with these the
  ///         o-line has been taken over as far as there is one.
  ///         1 for null or the largest version, with a trace, and the status of storing when a raised version or the
  ///         o-line cannot be stored or does not fit: both objects are unchanged.
  ///         SDP_M_LINES_NOT_ADDED when m-lines are missing and `sdpModifications::correctMLines` refuses to add them,
  ///         for the codec cannot hold a body whole or there is no room: both objects are unchanged.
  ///         The status of `sdpParse` when the corrected text does not parse or cannot be stored: this object is empty.
  unsigned short sdpModifyVersionAndMlines(cSdpNegotiator* earlier, bool keepOnly);
  /// @}

  /// @name Media requests (sdpNegotiator/connectionMode.cpp, mediaAttributes.cpp, connectionLines.cpp, ports.cpp,
  ///       videoDisabling.cpp)
  ///
  /// Each changes the text and parses it again. The result is the first status that is not 0, unless an operation
  /// says otherwise: 1 for an empty object or a text that cannot be expanded, the edit's own (`sdpModifications`),
  /// the parse's. The object is unchanged after the first two and empty after the third.
  /// @{

  /// `sdpModifications::sdpReplaceMode` on the text.
  unsigned short sdpReplaceMode(unsigned char mode, int mediaMask);
  /// `sdpModifications::sdpReplaceMode` on the text, for audio and video.
  /// @return the result of a trace call, which says nothing of the request: 0 while tracing is off
  unsigned short sdpReplaceMode(unsigned char mode);
  /// `sdpModifications::sdpInsertSilenceSuppression` on the text, with the object's own summary.
  unsigned short sdpInsertSilenceSuppression(unsigned char value);
  /// `sdpModifications::sdpInsertEchoCancellation` on the text.
  unsigned short sdpInsertEchoCancellation(unsigned char echoCancellation, unsigned char direction);
  /// `sdpModifications::sdpReplaceCxIP` on the text.
  unsigned short sdpReplaceCxIP(const char* ip);
  /// `sdpModifications::sdpDisablePort` on the text, for any address version.
  /// @param mediaMask bits of media; with video, application m-lines are disabled too
  unsigned short sdpDisablePort(unsigned int mediaMask);
  /// Sets port 0 on the m-lines that have RTP/SAVP on them.
  unsigned short sdpDisableSAVPPorts();
  /// Sets port 0 on the other m-lines.
  unsigned short sdpDisableAVPPorts();
  /// `sdpModifications::sdpRemoveVideoMedia` on the text: port 0 for video, and of its sections only the c-line is
  /// left.
  unsigned short sdpRemoveAllVideoMedia();
  /// `sdpModifications::sdpRemoveVideoMedia` on the text: port 0 for video.
  unsigned short sdpRemoveVideoMedia();
  /// @}

  /// @name Transports (sdpNegotiator/transports.cpp)
  ///
  /// The text is changed and parsed again; one that does not parse or cannot be stored leaves the object empty
  /// (`sdpParse`).
  /// @{

  /// `sdpModifications::sdpSetMediaTransportType` on the text, for all media that it has.
  void sdpModifyTransportTypes(const char* fromTransport, const char* toTransport);
  /// `sdpModifications::sdpReplaceTransProtocol` on the text: puts dummy m-lines back for the secure ones that were
  /// removed.
  /// @param removed the record of the removed m-lines, at most 25 codes
  /// @param flag    changes the o-line
  /// @return 0; 1 when the text cannot be expanded; the status of the parse; for null the result of a trace call: 0
  ///         while tracing is off, and nothing is changed
  unsigned short sdpReplaceTransportProtocol(char* removed, bool flag);
  /// @}

  /// @name ANAT (sdpNegotiator/anat.cpp)
  ///
  /// The text is changed and parsed again; one that does not parse or cannot be stored leaves the object empty.
  /// @{

  /// `sdpModifications::sdpRemoveAnat` on a text with an ANAT group (RFC 4091): removes the media of an address
  /// version.
  /// @param version 2 IPv4, 10 IPv6
  /// @param removed receives the record of the removed m-lines; its first 26 bytes are cleared first. Nothing is
  ///                recorded in null.
  /// @param flag    changes the o-line when m-lines were recorded
  /// @return the result of a trace call, which says nothing of the request: 0 while tracing is off
  unsigned short sdpRemoveANAT(eIPAddressVersion version, char* removed, bool flag);
  /// `sdpModifications::sdpReInsertAnat` on the text: puts dummy m-lines back for those that `sdpRemoveANAT` removed,
  /// and groups all (RFC 4091).
  /// @param removed the record of the removed m-lines, at most 25 codes
  /// @param flag    changes the o-line
  /// @return as `sdpReplaceTransportProtocol`
  unsigned short sdpReInsertANAT(char* removed, bool flag);
  /// @}

  /// @name ICE (sdpNegotiator/ice.cpp)
  /// @{

  /// `sdpModifications::sdpRemoveICE` on the text, which is stored; of the summary SDP_ATTR_ICE_LITE and
  /// SDP_ATTR_FULL_ICE are cleared. The object is unchanged when the text cannot be stored.
  /// @return 1 when neither is set, else 0, also when the text could not be read or stored
  unsigned short sdpRemoveIce();
  /// `sdpModifications::sdpRemoveDualStackIce` on the text, which is parsed again; one that does not parse leaves the
  /// object empty.
  /// @return 0, also when nothing was removed, the object unchanged; or the status of the parse
  unsigned short sdpRemoveDualStackIce();
  /// @}

  /// @name Preconditions (sdpNegotiator/preconditions.cpp)
  ///
  /// The requests store the text and leave the summary. The object is unchanged when the text cannot be stored.
  /// @{

  /// @return whether the text contains "a=curr:", "a=des:" or "a=conf:" (RFC 3312)
  bool sdpPreconditionsExist() const;
  /// `sdpModifications::sdpDelPreconditions` on the text.
  /// @return 0; 1 for an empty object or a text that cannot be expanded; 2 when the text cannot be stored
  unsigned short sdpDelPrecondions();
  /// `sdpModifications::sdpInsertPrecondions` on the text; an empty object has an empty one.
  /// @param a             1 adds
  /// @param b             the number of records
  /// @param preconditions the records
  /// @return 0; 1 for null, a text that cannot be expanded, or when the edit fails; 2 when the text cannot be stored
  unsigned short sdpInsertPrecondions(int a, int b, const sSdpPrecondions* preconditions);
  /// @}

  /// @name M-lines of port 0 (sdpNegotiator/zeroPorts.cpp)
  /// @{

  /// `sdpModifications::sdpRemoveMlinesZeroPort` on the text. The object is unchanged when that fails; a text that
  /// does not parse then leaves it empty.
  void sdpRemoveMlinesZeroPort();
  /// @}

  /// @name Answer update (sdpNegotiator/answerUpdate.cpp)
  /// @{

  /// `sdpModifications::sdpUpdateSdp` on the text, which is an answer: brings it up to date with a new offer.
  /// Takes the stack of three texts besides that of the edit.
  /// @param offer  the offer that was answered
  /// @param answer the new offer
  /// @return 0; 1 for null, an empty object, a text that cannot be expanded, or when the edit refuses, the object
  ///         unchanged; or the status of the parse, the object empty
  unsigned short sdpUpdateAnswer(const cSdpNegotiator* offer, const cSdpNegotiator* answer);
  /// @}

  /// @name Dummy bodies (sdpNegotiator/dummy.cpp)
  /// @{

  /// Replaces the body by an offer that stands for one to come: a secure audio m-line on the loopback address. A body
  /// of this kind is told by `isRmDummySdp`.
  /// @param sessionId of the o-line
  /// @param version   of the o-line
  /// @param ipv6      the address is FD00:127::1, otherwise 127.0.0.1
  /// @return the status of the parse
  unsigned short sdpCreateRmDummyOffer(unsigned int sessionId, unsigned int version, bool ipv6);
  /// `sdpModifications::sdpCreateDummy` on the text: turns the other side's body into one of this side that stands
  /// for the real one. On failure the object is as it was.
  /// @param answer      an answer, otherwise an acknowledgement
  /// @param holdFlag    the media are to be on hold
  /// @param third       the acknowledgement is one that keeps receiving
  /// @param ip          this side's address
  /// @param port        of secure audio, which gets it when it stands alone or all active media use SDES alone
  /// @param modifyOLine gives the body an o-line of this side's
  /// @return 0; 1 when the text cannot be expanded or the edit fails; or the status of the parse
  unsigned short createDummy(bool answer, bool holdFlag, bool third, const char* ip, unsigned short port,
                             bool modifyOLine);
  /// `createDummy` with an o-line of this side's and without `third`.
  unsigned short createDummy(bool answer, bool holdFlag, const char* ip, unsigned short port);
  /// `createDummy` for an answer, with an o-line of this side's.
  unsigned short createDummyAnswer(bool holdFlag, const char* ip, unsigned short port);
  /// `createDummy` for an acknowledgement that keeps receiving, with an o-line of this side's.
  unsigned short createDummyAck(bool holdFlag, const char* ip, unsigned short port);
  /// `createDummy` for an acknowledgement that keeps receiving, which then keeps the audio codecs of a list, in its
  /// order: `sdpRestrictAudioCodecsTo`, whose result does not count.
  /// @param codecNames encoding names of `audioCodecTable` with commas between them, in any letter case; at most 20
  ///                   are taken. An unknown one is passed over, and an empty one repeats the codec in front of it.
  ///                   Nothing is restricted by null or without a codec that the body has.
  unsigned short createDummyAck(bool holdFlag, const char* ip, unsigned short port, const char* codecNames);
  /// @}

  /// @name Video limit (sdpNegotiator/videoLimits.cpp)
  /// @{

  /// Lowers the bandwidth of video b-lines and the level of H.264 formats, each when it is below what the summary
  /// tells, and records them there.
  /// @param bandwidth as the b-lines have it
  /// @param profile   an eH264_profile_id
  /// @return 0; 1 for an empty object or a text that cannot be expanded, 2 when the text cannot be stored, the object
  ///         unchanged; with neither to be lowered the result of a trace call: 0 while tracing is off
  unsigned short sdpLimitVideoMediaBandwidth(unsigned int bandwidth, eH264_profile_id profile);
  /// @}

 private:
  // Two members and nothing between them: these bytes are also what travels when an object is transferred.
  sSdpParsedData parsedData;  ///< its `storedSdpLength` tells the form of `rawSdp`
  char rawSdp[SDP_STORED_TEXT_SIZE];
};

#endif
