#ifndef SDP_NEGOTIATOR_PARSER_H
#define SDP_NEGOTIATOR_PARSER_H

#include <vector>

#include "cMsgIPAddress.h"
#include "sdpDataDefinitions.h"
#include "sdpNegotiatorExport.h"
#include "sessionDescription.h"

/// The analysis of SDP bodies (RFC 4566): what a decoded description means to a call-control engine.
///
/// A class of static operations without state; different texts may be analysed on several threads at once.
/// Status results are 0 for success and 1 for failure unless an operation says otherwise. Texts end in NUL
/// and nothing behind their NUL is read; null texts and records are tolerated. Numbers read from text
/// saturate at the largest value of their type.
class SDP_NEGOTIATOR_API sdpParserMessage {
 public:
  /// @name The parse (sdpParse.cpp, inheritance.cpp)
  /// @{

  /// Decodes a body and condenses it into a summary. The order of its steps matters: later ones overwrite
  /// what earlier ones found.
  /// Takes about 600 kB of the calling thread's stack; when the library is built with an attribute capacity
  /// that makes a description larger than 1 MB, the description is allocated for the call instead.
  /// @param sdp  the body, ended by NUL
  /// @param type handed to the codec unchanged
  /// @param data the summary to fill, initialised by the caller; keeps what was written before a failure
  /// @return 0; the codec's own status when it refuses the text; 1 when the session c-line's address is none
  ///         of its type, there are more than 25 media descriptions, a chosen m-line has an invalid port or
  ///         address, or memory ran out. Each failure is traced.
  static unsigned short sdpParse(const char* sdp, eSdpType type, sSdpParsedData& data);

  /// Lets media descriptions without a c-line inherit the session's first one, and those without attribute
  /// lines all of the session's.
  static void sdpPreProcessDescription(sDescription& description);
  /// @}

  /// @name Media selection (audioMedia.cpp, otherMedia.cpp, mediaAddress.cpp)
  /// @{

  /// Fills the summary from the first audio m-line with a non-zero port, or from a zero-port one that is the
  /// last m-line.
  /// @param count   audio codecs in the summary, raised by those found
  /// @param noOfMDs media descriptions to look at
  /// @param periods null, or 20 packetization periods in milliseconds, 255 where none is given
  /// @return 0, or 1 for an invalid port or address of the chosen m-line
  static unsigned short findFirstAudio(sSdpParsedData& data, sDescription& description, unsigned int& count,
                                       int noOfMDs, unsigned char* periods);
  /// Takes the direction of the first video m-line that is active and not inactive, and its address and port
  /// when the body has no audio.
  /// @return 0, or 1 for an invalid port or address
  static unsigned short findFirstVideo(sSdpParsedData& data, sDescription& description, int noOfMDs);
  /// Notes an active message m-line, of the first one only. @return 0
  static unsigned short findFirstMsg(sSdpParsedData& data, sDescription& description, int noOfMDs);
  /// Notes an active text m-line, of the first one only. @return 0
  static unsigned short findFirstTxt(sSdpParsedData& data, sDescription& description, int noOfMDs);
  /// Notes an active image m-line, of the first one only, with its T.38 capability and bit rate (ITU-T T.38
  /// Annex D), and its address and port when the body has no audio.
  /// @return 0, or 1 for an invalid port or address
  static unsigned short findFirstImage(sSdpParsedData& data, sDescription& description, int noOfMDs);
  /// Notes the first active application m-line. @return 0
  static unsigned short findApplication(sSdpParsedData& data, sDescription& description, int noOfMDs);
  /// Takes the first address of a c-line into the summary.
  /// @return 0, or 1 with a trace when it is no valid address
  static unsigned short getIpAddr(sSdpParsedData& data, const c_line& line);
  /// @}

  /// @name Media lists (mediaList.cpp)
  /// @{

  /// @return the eConnectionMode of the last direction attribute of a block, 0 when it has none
  static unsigned char getConnectionMode(const a_line* attributes);
  /// Lists the active video and application m-lines; m-lines of one label share an entry.
  /// @param media replaced by the list
  /// @return 0, or 1 with a trace when memory ran out; the list then is empty
  static unsigned short getMedia(const sDescription& description, std::vector<mediaStruct>& media);
  /// Copies the media descriptions that the description holds.
  /// @param mLines replaced by the copies, more than 20 kB each
  /// @return 0, or 1 with a trace when memory ran out; there are no copies then
  static unsigned short getMLines(const sDescription& description, std::vector<mDescription>& mLines);
  /// @}

  /// @name Security and connectivity (security.cpp, ice.cpp)
  /// @{

  /// Sets the secure media bits from the transports and attribute lines of the first `noOfMDs` m-lines.
  static void containsSecureMedia(sSdpParsedData& data, const sDescription& description, int noOfMDs);
  /// Sets the MIKEY bit when a key-mgmt attribute with a value stands anywhere (RFC 4567).
  static void checkForMickey(sSdpParsedData& data, const sDescription& description);
  /// Sets or clears the ICE lite and full ICE bits from the text (RFC 8839). @return 0
  static unsigned short checkIce(const char* sdp, sSdpParsedData& data);
  /// Sets the bit that says whether a candidate line holds the session's address and the first port, and clears it
  /// when either stands nowhere from a candidate line on. Where candidate lines hold no such pair although both stand
  /// behind each, and without candidate lines, it stays as it was.
  /// @return 0, or 1 when the address or port is missing or a candidate line does not end in LF
  static unsigned short checkFullIceAttributes(const char* sdp, sSdpParsedData& data,
                                               const sDescription& description);
  /// @return the eIPAddressVersion that the active media indicate by candidates or connection lines, 0
  ///         for none
  static unsigned int checkMediaStreamsForIPIndication(const sDescription& description);
  /// @}

  /// @name Audio codecs (audioCodecs.cpp)
  /// @{

  /// @param format     a payload type as text, read by the number that it begins with; PCMU is what begins with "0"
  ///                   and is no other number
  /// @param attributes attribute lines of its m-line, for dynamic payload types
  /// @return the audio codec value, 0 when unknown
  static unsigned char convertCodec(const char* format, const a_line* attributes);
  /// @param payloadType 96 to 127
  /// @return the audio codec value by the rtpmap and fmtp lines, 0 when unknown. Lines without both a number
  ///         and a word behind it do not count; a rate is looked for in the first parameter word only.
  static unsigned char convertDynamicCodec(int payloadType, const a_line* attributes);
  /// Replaces G729 among the first `noOfFormats` codecs of the summary, 20 at most (RFC 4856 annexb).
  static void setG729AnnexB(sSdpParsedData& data, int noOfFormats, unsigned char codec);
  /// @}

  /// @name Video codecs (videoCodecs.cpp)
  /// @{

  /// @param encodingName the name of an rtpmap line, with or without its clock rate; or the format itself
  /// @param format       the format of the m-line
  /// @return the video codec value, 0 when unknown
  static unsigned char convertVideoCodec(const char* encodingName, const char* format);
  /// @return whether the format is a static payload type that needs no rtpmap line
  static bool isStaticPayload(const char* format);
  /// @param profileLevelId six hexadecimal digits (RFC 6184 8.1); what follows them is not looked at
  /// @return the eH264_profile_id, or -1 when the text is null or has fewer than six characters
  static int decodeH264ProfileString(const char* profileLevelId);
  /// @return the eH264_profile_id of the first fmtp line that has one and whose value begins with the format,
  ///         so that format 9 finds the line of 97 as well; 0 when none has
  static int decodeH264ProfileId(const a_line* attributes, const char* format);
  /// @return the video codec value of a format by the rtpmap lines of a text from `begin` up to `end`
  static unsigned char getMediaCodec(const char* begin, const char* end, const char* format);
  /// @}

  /// @name Encoding names (encodingNames.cpp)
  /// @{

  /// Finds the encoding name of a format, with its clock rate, in the rtpmap lines of a media description.
  /// @param name null, or receives the name, cut to `size` characters with its NUL; untouched when there is
  ///             none
  /// @return whether there is one
  static bool getEncodingName(const mDescription* media, const char* format, char* name, unsigned int size);
  /// The same in the rtpmap lines of a text that begin behind one of its line feeds and before `end`.
  static bool getEncodingName(const char* begin, const char* end, const char* format, char* name,
                              unsigned int size);
  /// @param value the value of an rtpmap line, which ends at CR, LF or NUL, at the latest behind the 512th
  ///              character
  /// @param name  null, or receives the encoding name, cut to `size` characters with its NUL; a size of 0
  /// writes
  ///              nothing; untouched when
  ///              the line does not define the format
  /// @return whether the line defines the format
  static bool isEncodingDefinedInAline(const char* value, const char* format, char* name, unsigned int size);
  /// @return 0 when the text, its spaces left out, begins with the pattern; else -1, also for null texts, 100
  ///         spaces in a row and patterns of more than 100 characters
  static int strcmpwospaces(const char* text, const char* pattern);
  /// @}

  /// @name Attribute values (attributeValues.cpp)
  /// @{

  /// Reads a ptime value or a range "20-30" in milliseconds into the first one or two periods of the summary.
  /// A period has one byte: a number of 255 or more reads as 255, which is "not given". An empty value is 0.
  /// @return 0, or 1 with a trace for an invalid value, which changes nothing
  static unsigned short setCodecPtime(sSdpParsedData& data, const char* value);
  /// Reads an mptime value: "10", "20", "30" or "-" (the one before) for each of `noOfFormats` formats.
  /// @param periods receives the periods, the first 20 of them at most
  /// @return 0, or 1 with a trace for an invalid value or another number of them; what was read before stays
  static unsigned short setCodecMptime(unsigned char* periods, int noOfFormats, const char* value);
  /// @return 0, or 1 with a trace for an invalid silenceSupp value
  static unsigned short setSilenceSuppression(sSdpParsedData& data, const char* value);
  /// @return 0, with a trace for an invalid ecan value
  static unsigned short setEchoCancellation(sSdpParsedData& data, const char* value);
  /// Reads a gpmd value of PCMU or PCMA about voice-band data (ITU-T V.152).
  /// @return 1 when it holds "vbd=no", else 0
  static unsigned short setVoiceBandData(sSdpParsedData& data, const char* value);
  /// @}

  /// @name Raw text (mediaLines.cpp)
  /// @{

  /// @param mLine a text that begins with an m-line
  /// @return 0, or 1 when the line has no line feed or no port of 0 to 65535 followed by white space
  static unsigned short getMediaLinePort(const char* mLine, unsigned short& port);
  /// Rewrites the port of the m-line that a text begins with, and moves the rest of the text. The buffer's
  /// capacity is not known here: the caller makes sure that a longer port fits. At most seven digits are written,
  /// the first ones of a longer number, so the text grows by at most six characters.
  /// @param lineEnd the line's LF, found when null; receives its new place
  /// @param port    1 to 1023 are refused; 0 and ports above 65535 are not
  /// @return 0, also when the line has no port field or the field begins with the new digits, which leaves
  ///         it as it is; 1 with a trace for a refused port or a line without LF
  static unsigned short setMediaLinePort(char* mLine, char*& lineEnd, unsigned int port);
  /// @return the version that the session's c-line names, 0 when it has none
  static eIPAddressVersion getcLineIPVersion(const char* sdp);
  /// @param prefix what follows "m=", for example "audio"
  /// @return the "m" of the first m-line that is not at the text's start and begins so; null when there
  ///         is none
  static const char* foundMyMline(const char* sdp, const char* prefix);
  /// @copydoc foundMyMline(const char*, const char*)
  static char* foundMyMline(char* sdp, const char* prefix);
  /// @return whether an attribute's text begins with a direction
  static bool isAline4Mode(const char* attribute);
  /// @}

  /// Traces a summary field by field (dump.cpp).
  static void sdpDumpMediaInfo(const sSdpParsedData& data);
};

#endif
