#include "refusal.h"

#include <algorithm>
#include <functional>
#include <iterator>

#include "text/fixedText.h"
#include "text/search.h"
#include "trace.h"

// The one table of refusals: what kind each is, how it is traced, and with which words.

namespace sdpneg {

namespace {

using Verb = int (*)(const char* format, ...);

/// No line is traced.
constexpr Verb kNone = nullptr;

struct Row {
  eSdpRefusal reason;
  eSdpRefusalKind kind;
  Verb verb;
  std::string_view message;  ///< with the names of fields of a `Refusal` in braces
};

constexpr Row kRows[] = {
    {SDP_REFUSED_NOTHING, SDP_REFUSAL_KIND_NONE, kNone, ""},
    {SDP_REFUSED_UNUSABLE_BUFFER, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "{operation}(): The SDP buffer is null or holds no end of text. Exiting."},
    {SDP_REFUSED_CONTROL_CHARACTER, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "{operation}(): An argument holds a control character. Exiting."},
    {SDP_REFUSED_NO_ROOM, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "{operation}(): The {what} does not fit the SDP buffer. Exiting."},
    {SDP_REFUSED_NO_ROOM_FOR_M_LINE, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "{operation}(): The SDP buffer has no room for another m-line. Exiting."},
    {SDP_REFUSED_NOT_ENCODED, SDP_REFUSAL_KIND_MEMORY, trace::error,
     "{operation}(): The codec cannot encode the SDP. Exiting."},
    {SDP_REFUSED_EDITED_NOT_DECODED, SDP_REFUSAL_KIND_BODY, trace::error,
     "{operation}(): The codec cannot decode the edited SDP. Exiting."},
    {SDP_REFUSED_NO_MEMORY_FOR_DESCRIPTION, SDP_REFUSAL_KIND_MEMORY, trace::error,
     "There is no memory for the description of the SDP."},
    {SDP_REFUSED_NO_MEMORY_FOR_MEDIA, SDP_REFUSAL_KIND_MEMORY, trace::error,
     "There is no memory for a list of media."},
    {SDP_REFUSED_NOT_STORED, SDP_REFUSAL_KIND_STORAGE, kNone,
     "The text cannot be stored: it does not deflate into the room for it."},
    {SDP_REFUSED_NOT_EXPANDED, SDP_REFUSAL_KIND_STORAGE, kNone, "The stored text cannot be expanded."},
    {SDP_REFUSED_NO_TEXT, SDP_REFUSAL_KIND_BODY, trace::error, "The raw SDP buffer is empty."},
    {SDP_REFUSED_EDITED_NOT_STORED, SDP_REFUSAL_KIND_STORAGE, trace::error,
     "The edited SDP cannot be stored. The SDP is left as it was."},
    {SDP_REFUSED_INVALID_PACKED_OBJECT, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "The packed object of {number} bytes is invalid. Exiting."},
    {SDP_REFUSED_EMPTY_TEXT, SDP_REFUSAL_KIND_ARGUMENT, trace::error, "Empty buffer. Nothing to be parsed."},
    {SDP_REFUSED_TEXT_TOO_LONG, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "The SDP size={number} exceeds MAX_SDP_PROTOCOL_DATA_SIZE={limit}"},
    {SDP_REFUSED_NOT_DECODED, SDP_REFUSAL_KIND_BODY, trace::error, "{what}"},
    {SDP_REFUSED_SESSION_ADDRESS_TYPE, SDP_REFUSAL_KIND_BODY, trace::error,
     "The c-line is malformed. There is no correspondance between IP address and IP type."},
    {SDP_REFUSED_TOO_MANY_M_LINES, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "The noOfMDs > {limit}; data corrupted!"},
    {SDP_REFUSED_INVALID_PORT, SDP_REFUSAL_KIND_BODY, trace::error,
     "Invalid port number found in m={what}: {number}"},
    {SDP_REFUSED_INVALID_ADDRESS, SDP_REFUSAL_KIND_BODY, trace::error,
     "Invalid ip address ({what}) found in c-line"},
    {SDP_REFUSED_NO_O_LINE, SDP_REFUSAL_KIND_BODY, trace::error, "No <oline> found. Exiting."},
    {SDP_REFUSED_UNENDED_O_LINE, SDP_REFUSAL_KIND_BODY, trace::error, "Bad <oline> termination. Exiting."},
    {SDP_REFUSED_VERSION_TOO_LONG, SDP_REFUSAL_KIND_BODY, trace::error,
     "Attempt to increment <oline> version past maximum length. Exiting."},
    {SDP_REFUSED_NO_ORIGIN_BUFFER, SDP_REFUSAL_KIND_ARGUMENT, trace::info,
     "The raw sdp buffer is empty. Exiting..."},
    {SDP_REFUSED_ORIGIN_WITHOUT_O_LINE, SDP_REFUSAL_KIND_BODY, trace::info,
     "The o-line is not present within the SDP. Exiting..."},
    {SDP_REFUSED_ORIGIN_WITHOUT_S_LINE, SDP_REFUSAL_KIND_BODY, trace::info,
     "The s-line is not present within the SDP. Exiting..."},
    {SDP_REFUSED_ORIGIN_ADDRESS, SDP_REFUSAL_KIND_ARGUMENT, trace::invalidArgument,
     "sdpModifyOLine(): The provided IP is not valid, exiting"},
    {SDP_REFUSED_ORIGIN_CUT, SDP_REFUSAL_KIND_CAPACITY, trace::info, "Bad termination of s-line. Exiting..."},
    {SDP_REFUSED_ORIGIN_IDS, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "The input values of session id or the session version are invalid."},
    {SDP_REFUSED_O_LINE_DOES_NOT_FIT, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "copyOLine(): The o-line does not fit the SDP buffer."},
    {SDP_REFUSED_NO_O_LINE_GIVEN, SDP_REFUSAL_KIND_ARGUMENT, trace::error, "The o-line buffer is empty."},
    {SDP_REFUSED_NO_OBJECT_TO_COMPARE, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "The sdpNegotiator class is NULL."},
    {SDP_REFUSED_VERSION_CANNOT_BE_RAISED, SDP_REFUSAL_KIND_BODY, trace::error,
     "sdpModifyVersionAndMlines(): The session version cannot be raised. Exiting."},
    {SDP_REFUSED_NO_EARLIER_OBJECT, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid input object. Cannot continue. Exiting."},
    {SDP_REFUSED_NO_EARLIER_OFFER, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid input object. Cannot check the required elements of the SDP. Exiting."},
    {SDP_REFUSED_MALFORMED_ADDRESS, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "The new IP address is malformed. Exiting..."},
    {SDP_REFUSED_NO_C_LINE, SDP_REFUSAL_KIND_BODY, trace::error, "No <cline> found. Exiting."},
    {SDP_REFUSED_UNENDED_C_LINE, SDP_REFUSAL_KIND_BODY, trace::error, "Bad termination of <cline>. Exiting."},
    {SDP_REFUSED_UNKNOWN_MEDIA, SDP_REFUSAL_KIND_ARGUMENT, trace::error, "mediaType={number} not supported"},
    {SDP_REFUSED_MEDIA_OF_PORT, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "sdpSetMediaPort(): incorrect mediaType (0x{hex})"},
    {SDP_REFUSED_PORT_NOT_SET, SDP_REFUSAL_KIND_BODY, trace::error,
     "sdpSetMediaPort(): error while trying to set media connection port {number}"},
    {SDP_REFUSED_ILLEGAL_PORT, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "setMediaLinePort(): illegal connection port {number}"},
    {SDP_REFUSED_UNENDED_M_LINE, SDP_REFUSAL_KIND_BODY, trace::error,
     "setMediaLinePort(): Bad termination of m-line."},
    {SDP_REFUSED_UNSUPPORTED_MODE, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "sdpReplaceMode(): Unsupported mode ({number}) found. Exiting."},
    {SDP_REFUSED_NO_ROOM_FOR_MODE, SDP_REFUSAL_KIND_CAPACITY, trace::progress,
     "sdpReplaceMode(): Not enough room to add a={what} line at the session level. Exiting."},
    {SDP_REFUSED_TRANSPORT_OF_LINE, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "sdpReplaceMLineTransportProtocol(): {what} Exiting."},
    {SDP_REFUSED_NO_TRANSPORT, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "{operation}(): The transport is null. Exiting."},
    {SDP_REFUSED_NO_TRANSPORTS, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "{operation}(): A transport is null. Exiting."},
    {SDP_REFUSED_TRANSPORT_DOES_NOT_FIT, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "sdpSetMediaTransportType(): The new transport does not fit the SDP buffer."},
    {SDP_REFUSED_NO_MEMORY_FOR_TRANSPORTS, SDP_REFUSAL_KIND_MEMORY, trace::error,
     "sdpModifyTransportTypes(): There is no memory for the media of the SDP."},
    {SDP_REFUSED_NO_CODECS, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Empty audio codecs array. Exiting from sdpRestrictAudioCodecsTo"},
    {SDP_REFUSED_NO_COMMON_CODEC, SDP_REFUSAL_KIND_BODY, trace::info,
     "No common codecs found. Don't restrict any codec."},
    {SDP_REFUSED_CODEC_NOT_TO_PREFER, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid audio codec {what} entry"},
    {SDP_REFUSED_CODEC_NOT_IN_BODY, SDP_REFUSAL_KIND_BODY, trace::debug,
     "The preferable Audio Codec {what} not found in the SDP"},
    {SDP_REFUSED_INVALID_ORDER, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "sdpReorderAudioCodecPreference exit - Invalid audio codec entry"},
    {SDP_REFUSED_NO_AUDIO, SDP_REFUSAL_KIND_BODY, trace::error, "No audio <mline> found."},
    {SDP_REFUSED_NO_AUDIO_FOR_ECHO, SDP_REFUSAL_KIND_BODY, trace::error,
     "No audio <mline> found. Exiting..."},
    {SDP_REFUSED_INVALID_SILENCE, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid silence suppression entry. Exiting."},
    {SDP_REFUSED_NO_ROOM_FOR_SILENCE, SDP_REFUSAL_KIND_CAPACITY, trace::info,
     "The silence suppression attributes have NOT been added. Possibility to overflow the buffer size. Exiting."},
    {SDP_REFUSED_INVALID_ECHO_SIDE, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid echo cancellation entry. Exiting."},
    {SDP_REFUSED_INVALID_ECHO_STATE, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid echo cancellation direction entry. Exiting."},
    {SDP_REFUSED_ECHO_EXISTS, SDP_REFUSAL_KIND_BODY, trace::error,
     "Echo cancellation already exists in SDP. Exiting..."},
    {SDP_REFUSED_NO_ROOM_FOR_ECHO, SDP_REFUSAL_KIND_CAPACITY, trace::info,
     "The echo cancellation attributes have NOT been added. Possibility to overflow the buffer size. Exiting."},
    {SDP_REFUSED_NO_PRECONDITIONS, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "sdpInsertPrecondions(): There is no list of preconditions. Exiting."},
    {SDP_REFUSED_PRECONDITION_FIELD, SDP_REFUSAL_KIND_ARGUMENT, trace::error, "Invalid precondition {what}."},
    {SDP_REFUSED_NO_ROOM_FOR_PRECONDITIONS, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "The new sdpLength is larger than allowedSdpSize."},
    {SDP_REFUSED_NO_PRECONDITIONS_GIVEN, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "The preconditions buffer is empty."},
    {SDP_REFUSED_PRECONDITIONS_NOT_ADDED, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "Preconditions attributes cannot add to the buffer,since it exceeds the MAX_SDP_PROTOCOL_DATA_SIZE"},
    {SDP_REFUSED_H264_LEVEL, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Incompatible type of H264 profile ({number})"},
    {SDP_REFUSED_NO_H264, SDP_REFUSAL_KIND_NOTHING, trace::error,
     "Request to update the profile level id while H264 codec is not present. Ignoring."},
    {SDP_REFUSED_UNKNOWN_H264_LEVEL, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Wrong profile level id input."},
    {SDP_REFUSED_H264_LEVEL_NOT_LOWER, SDP_REFUSAL_KIND_NOTHING, trace::error,
     "The given H264 profile level is larger than the current value. Nothing to do."},
    {SDP_REFUSED_BANDWIDTH_NOT_LOWER, SDP_REFUSAL_KIND_NOTHING, trace::error,
     "The given bandwidth is larger than the current value. b-lines will not be modified."},
    {SDP_REFUSED_VIDEO_BUFFER_TOO_SMALL, SDP_REFUSAL_KIND_CAPACITY, trace::info,
     "The size of Video part of SDP is bigger than the videoDescription buffer size"},
    {SDP_REFUSED_NO_MEMORY_FOR_VIDEO, SDP_REFUSAL_KIND_MEMORY, trace::error,
     "getVideoDescriptions(): There is no memory. Exiting."},
    {SDP_REFUSED_NO_VIDEO_GIVEN, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "The request to add videoDescriptions  is invalid."},
    {SDP_REFUSED_VIDEO_DOES_NOT_FIT, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "sdpAddVideoDescriptions(): The SDP with the videoDescriptions does not fit its buffer."},
    {SDP_REFUSED_NO_MEMORY_TO_ADD_VIDEO, SDP_REFUSAL_KIND_MEMORY, trace::error,
     "sdpAddVideoDescriptions(): There is no memory for the SDP with the videoDescriptions."},
    {SDP_REFUSED_VIDEO_NOT_STORED, SDP_REFUSAL_KIND_STORAGE, trace::error,
     "sdpAddVideoDescriptions(): The SDP with the videoDescriptions cannot be stored."},
    {SDP_REFUSED_VIDEO_NOT_TAKEN, SDP_REFUSAL_KIND_BODY, trace::error,
     "The request to get the video descriptions is invalid."},
    {SDP_REFUSED_RESTRICTED_NOT_STORED, SDP_REFUSAL_KIND_STORAGE, trace::error,
     "sdpRestrictVideoCodecsTo(): The restricted SDP cannot be stored."},
    {SDP_REFUSED_NO_ROOM_FOR_ANAT, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "sdpApplyAnatAttributes(): The ANAT attributes do not fit the SDP buffer. Exiting."},
    {SDP_REFUSED_NO_ANAT, SDP_REFUSAL_KIND_NOTHING, trace::progress,
     "group ANAT attribute is not present, nothing to remove."},
    {SDP_REFUSED_NO_IP_VERSION, SDP_REFUSAL_KIND_ARGUMENT, trace::progress,
     "removeAddrVersion(={number}) is not IP4 or IP6. exiting sdpRemoveANAT."},
    {SDP_REFUSED_NO_ANAT_RECORD, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "The Request to re-insert the ANAT is invalid."},
    {SDP_REFUSED_NO_SECURE_RECORD, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "The request to restore the RTP/SAVP is invalid."},
    {SDP_REFUSED_NOTHING_RECORDED, SDP_REFUSAL_KIND_NOTHING, trace::info,
     "The m-line indices is empty. Nothing to change."},
    {SDP_REFUSED_NO_SUCH_KEYS, SDP_REFUSAL_KIND_NOTHING, trace::progress,
     "No {what} security in SDP. There is nothing to remove."},
    {SDP_REFUSED_NO_ICE, SDP_REFUSAL_KIND_NOTHING, kNone, "There is no ICE in the SDP."},
    {SDP_REFUSED_ICE_SESSION_ADDRESS_TYPE, SDP_REFUSAL_KIND_BODY, trace::info,
     "Session level invalid address type"},
    {SDP_REFUSED_ICE_ADDRESS_TYPE, SDP_REFUSAL_KIND_BODY, trace::info,
     "Error : invalid first address type in media {what}"},
    {SDP_REFUSED_ICE_NOT_DECODED, SDP_REFUSAL_KIND_BODY, trace::info, "Decoding Error {number}"},
    {SDP_REFUSED_ICE_NOT_HELD, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "sdpRemoveDualStackIce(): The SDP holds more than its description can. Exiting."},
    {SDP_REFUSED_NO_OTHER_CANDIDATES, SDP_REFUSAL_KIND_NOTHING, kNone,
     "There is no ICE candidate of the other address version."},
    {SDP_REFUSED_CANDIDATE_WITHOUT_ADDRESS, SDP_REFUSAL_KIND_BODY, kNone, "An ICE candidate has no address."},
    {SDP_REFUSED_NO_OBJECTS_TO_UPDATE, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid input objects. Cannot create the update SDP. Exiting."},
    {SDP_REFUSED_MALFORMED_ANSWER, SDP_REFUSAL_KIND_BODY, trace::error, "The {what} is malformed, exiting."},
    {SDP_REFUSED_ANSWER_NOT_HELD, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "sdpUpdateSdp(): The sdpAnswer holds more than can be written anew. Exiting."},
    {SDP_REFUSED_VIDEO_WITHOUT_FORMAT, SDP_REFUSAL_KIND_BODY, trace::error,
     "sdpUpdateSdp(): The video m-line of the newSdpOffer has no format. Exiting."},
    {SDP_REFUSED_OFFERS_DIFFER_IN_ADDRESS, SDP_REFUSAL_KIND_BODY, trace::error,
     "Different IPs between the two Offers. Exiting"},
    {SDP_REFUSED_OFFERS_DIFFER_IN_PORT, SDP_REFUSAL_KIND_BODY, trace::error,
     "Different ports between the two Offers. Exiting."},
    {SDP_REFUSED_OFFER_WITH_MANY_AUDIO, SDP_REFUSAL_KIND_BODY, trace::error,
     "More than one active non-secure audio m lines found in new offer. Exiting."},
    {SDP_REFUSED_ANSWER_IS_SECURE, SDP_REFUSAL_KIND_BODY, trace::error,
     "The sdpAnswer contains security. Cannot update the SDP."},
    {SDP_REFUSED_ANSWER_CODEC_NOT_OFFERED, SDP_REFUSAL_KIND_BODY, trace::error,
     "The first codec in the sdpAnswer is not present to the SDP Offer."},
    {SDP_REFUSED_ANSWER_WITH_MANY_AUDIO, SDP_REFUSAL_KIND_BODY, trace::error,
     "More than one active non-secure audio m lines found in answer. Exiting."},
    {SDP_REFUSED_ANSWER_O_LINE, SDP_REFUSAL_KIND_BODY, trace::error,
     "Failed to update the o-line in the sdpAnswer."},
    {SDP_REFUSED_NO_DUMMY_ADDRESS, SDP_REFUSAL_KIND_ARGUMENT, trace::invalidArgument,
     "sdpCreateDummy(): NULL IP provided. Cannot create dummy SDP."},
    {SDP_REFUSED_NO_DUMMY, SDP_REFUSAL_KIND_BODY, trace::error, "Failed to create a dummy SDP {what}"},
    {SDP_REFUSED_M_LINES_NOT_HELD, SDP_REFUSAL_KIND_CAPACITY, trace::error,
     "correctMLines(): A description does not hold all lines of its SDP. Exiting."},
    {SDP_REFUSED_NO_REQUEST_ARGUMENTS, SDP_REFUSAL_KIND_ARGUMENT, trace::info,
     "Invalid input arguments. Cannot create SDP message."},
    {SDP_REFUSED_MESSAGE_ADDRESS, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid IP address. Cannot create SDP message. Exiting."},
    {SDP_REFUSED_MESSAGE_PORT, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid port number ({number}) entry."},
    {SDP_REFUSED_INVALID_CODEC, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid audio codec ({number}) entry"},
    {SDP_REFUSED_INVALID_SLOT, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid slot ({number}) entry. MUST not exceed to MAX_SDP_NEGOTIATOR_AUDIO_CODECS"},
    {SDP_REFUSED_NO_CODECS_GIVEN, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Empty audio codecs input. Exiting..."},
    {SDP_REFUSED_NO_PERIODS_GIVEN, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Empty packetization time input. Exiting..."},
    {SDP_REFUSED_INVALID_MEDIA_TYPE, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid mediaType entry ({number})"},
    {SDP_REFUSED_INVALID_RESERVATION, SDP_REFUSAL_KIND_ARGUMENT, trace::error,
     "Invalid eResourceReserve entry ({number})"},
    {SDP_REFUSED_NO_TEXT_TO_COMPARE, SDP_REFUSAL_KIND_ARGUMENT, trace::error, "Empty Buffer! Exiting..."},
    {SDP_REFUSED_NO_BUFFER, SDP_REFUSAL_KIND_ARGUMENT, trace::error, "The SDP buffer is NULL."},
    {SDP_REFUSED_PORT_NOT_READ, SDP_REFUSAL_KIND_BODY, kNone, "The port of an m-line cannot be read."},
    {SDP_REFUSED_TRANSPORT_NOT_NAMED, SDP_REFUSAL_KIND_BODY, kNone,
     "The m-line does not name the transport that is to be replaced."},
    {SDP_REFUSED_NO_C_LINE_FOR_VIDEO, SDP_REFUSAL_KIND_BODY, kNone,
     "There is no c-line for the sections of video."},
    {SDP_REFUSED_DIRECTION_ARGUMENTS, SDP_REFUSAL_KIND_ARGUMENT, kNone,
     "An argument of a direction is null or lies outside the text."},
    {SDP_REFUSED_NO_M_LINE, SDP_REFUSAL_KIND_BODY, kNone, "There is no m-line behind the first line."},
    {SDP_REFUSED_BODY, SDP_REFUSAL_KIND_BODY, kNone, "{what}"},
    {SDP_REFUSED_NO_CODEC_LIST, SDP_REFUSAL_KIND_ARGUMENT, kNone, "There is no list of codecs."},
    {SDP_REFUSED_CRYPTO_NOT_READ, SDP_REFUSAL_KIND_BODY, kNone,
     "A crypto attribute has no tag, no suite or no line end."},
    {SDP_REFUSED_NULL, SDP_REFUSAL_KIND_ARGUMENT, kNone,
     "{operation}(): An argument is null or has no size."},
    {SDP_REFUSED_NO_MEMORY_TO_STORE, SDP_REFUSAL_KIND_MEMORY, kNone,
     "There is no memory to deflate the text."},
    {SDP_REFUSED_NO_MEMORY_FOR_ARRAY, SDP_REFUSAL_KIND_MEMORY, kNone,
     "There is no memory for an array to hand out."},
    {SDP_REFUSED_STORED_NOT_DECODED, SDP_REFUSAL_KIND_BODY, kNone, "The codec cannot decode the stored SDP."},
    {SDP_REFUSED_FEWER_M_LINES, SDP_REFUSAL_KIND_BODY, kNone, "The earlier SDP has fewer m-lines."},
    {SDP_REFUSED_NO_VIDEO, SDP_REFUSAL_KIND_BODY, kNone, "No video m-line found that can be decoded."},
    {SDP_REFUSED_NO_ALLOWED_VIDEO_CODEC, SDP_REFUSAL_KIND_BODY, trace::debug,
     "No allowed codecs in media: leaving SDP unchanged and returning false"},
};

constexpr bool isInOrder() {
  return std::ranges::adjacent_find(kRows, std::ranges::greater_equal(), &Row::reason) == std::end(kRows);
}
static_assert(isInOrder(), "a row is found by its reason");

const Row& rowOf(eSdpRefusal reason) { return *std::ranges::lower_bound(kRows, reason, {}, &Row::reason); }

using Message = FixedText<1024>;

void addField(Message& message, std::string_view name, const Refusal& refusal) {
  if (name == "operation") message.add(refusal.operation);
  if (name == "what") message.add(refusal.what);
  if (name == "number") message.add(refusal.number);
  if (name == "limit") message.add(refusal.limit);
  if (name == "hex") message.addHex(static_cast<unsigned int>(refusal.number));
}

Message messageOf(const Refusal& refusal) {
  Message message;
  std::string_view rest = rowOf(refusal.reason).message;
  for (std::size_t brace = rest.find('{'); brace != npos; brace = rest.find('{')) {
    const std::size_t end = rest.find('}', brace);
    message.add(rest.substr(0, brace));
    addField(message, rest.substr(brace + 1, end - brace - 1), refusal);
    rest.remove_prefix(end + 1);
  }
  message.add(rest);
  return message;
}

thread_local sSdpRefusal lastRefusal{};

void keep(const Refusal& refusal, const Row& row, std::string_view message) {
  sSdpRefusal& last = lastRefusal;
  ++last.number;
  last.reason = refusal.reason;
  last.kind = row.kind;
  last.section = refusal.section;
  last.field = refusal.field;
  last.line = refusal.line;
  last.column = refusal.column;
  last.text[message.copy(last.text, sizeof last.text - 1)] = '\0';
}

}  // namespace

std::string_view keptForRefusal(std::string_view text) {
  static thread_local FixedText<sizeof sSdpRefusal::text> kept;
  return (kept = FixedText<sizeof sSdpRefusal::text>().add(text)).view();
}

int tell(const Refusal& refusal) {
  const Row& row = rowOf(refusal.reason);
  const Message message = messageOf(refusal);
  keep(refusal, row, message.view());
  return row.verb != kNone ? row.verb("%s", message.text()) : 0;
}

void tellAgain(const Refusal& refusal, unsigned int times) {
  if (times == 0) return;
  tell(refusal);
  lastRefusal.number += times - 1;
}

int mention(const Refusal& refusal) {
  const Row& row = rowOf(refusal.reason);
  return row.verb != kNone ? row.verb("%s", messageOf(refusal).text()) : 0;
}

}  // namespace sdpneg

using namespace sdpneg;

const sSdpRefusal& sdpLastRefusal() noexcept { return lastRefusal; }
