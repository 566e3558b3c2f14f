#include "commands/commandTable.h"

#include "commands/answerCommand.h"
#include "commands/callsCommand.h"
#include "commands/checkAnswerCommand.h"
#include "commands/compareCommand.h"
#include "commands/createCommand.h"
#include "commands/inspectCommand.h"
#include "commands/offerCommands.h"
#include "commands/rewriteCommand.h"
#include "commands/sectionsCommand.h"
#include "commands/transferCommands.h"

namespace tool {
namespace {

constexpr std::string_view kColourValues[] = {"auto", "always", "never"};

constexpr OptionRow kTraceOption = {
    "--trace", "", {}, "", "Write the library's own trace lines to standard error."};
constexpr OptionRow kColourOption = {"--color", "WHEN", kColourValues, "auto",
                                     "Use colours: on a terminal, always or never."};
constexpr OptionRow kOutputOption = {"--output", "OUT", {}, "", "Write this file; - is standard output.",
                                     "-o",       true};

constexpr OptionRow kInspectOptions[] = {
    {"--json", "", {}, "", "Write a JSON document instead of tables."}, kTraceOption, kColourOption};

constexpr OperandRow kInspectOperands[] = {
    {"FILE", "Bodies, SIP messages, folders of *.sdp, or - for standard input.", true, false, true}};

constexpr OptionRow kSectionsOptions[] = {{"--json", "", {}, "", "Write a JSON document instead of tables."},
                                          kColourOption};

constexpr OptionRow kRewriteOptions[] = {
    {"--diff", "", {}, "", "Show a unified diff instead of the new body."},
    {"--in-place", "", {}, "", "Write the new body into FILE."},
    {"--verbose", "", {}, "", "Say on standard error which requests had nothing to do."},
    kTraceOption,
    kColourOption};

constexpr OperandRow kRewriteOperands[] = {
    {"REQUEST", "A request with its arguments; -- stands between requests.", false, true, true},
    {"FILE", "A body, a SIP message, or - for standard input.", true, false, false}};

constexpr OptionRow kRequestsOptions[] = {
    {"--operations", "", {}, "", "List the operations of the library that each reaches instead."}};

constexpr OptionRow kCreateOptions[] = {
    {"--inactive", "", {}, "", "Make the media inactive."},
    {"--dummy-answer", "", {}, "", "Write an answer that accepts nothing, without operands."},
    {"--ipv6", "", {}, "", "Give the answer the unspecified address of IPv6."},
    {"--session-only", "", {}, "", "Leave the m-lines of the answer out."}};

constexpr OperandRow kCreateOperands[] = {
    {"ADDRESS", "The IP address of origin and connection.", false, false, false},
    {"PORT", "0, or 1024 to 65535.", false, false, false},
    {"CODEC", "PCMU, PCMA, G729, G723 or telephone-event, or several with commas; PCMU without.", false,
     false, true}};

constexpr OptionRow kCompareOptions[] = {kColourOption};

constexpr OperandRow kCompareOperands[] = {
    {"A", "A body, a SIP message, or - for standard input.", true, true, false},
    {"B", "The other one.", true, true, false}};

constexpr std::string_view kPreferences[] = {"local", "offer"};
constexpr std::string_view kSetups[] = {"passive"};

constexpr OptionRow kAnswerOptions[] = {
    {"--local", "FILE", {}, "", "What the engine can do, as a body.", {}, true},
    {"--prefer", "SIDE", kPreferences, "offer", "Whose order of formats counts."},
    {"--single", "", {}, "", "Leave one codec in each section, and what serves it."},
    {"--setup", "ROLE", kSetups, "", "Take the passive role of DTLS where the offer leaves the choice."},
    {"--previous", "FILE", {}, "", "The answer given before in the dialog: its session and roles go on."}};

constexpr OperandRow kAnswerOperands[] = {
    {"OFFER", "A body, a SIP message, or - for standard input.", true, true, false}};

constexpr OptionRow kCheckAnswerOptions[] = {
    {"--json", "", {}, "", "Write a JSON document instead of lines."}};

constexpr OperandRow kCheckAnswerOperands[] = {
    {"OFFER", "A body, a SIP message, or - for standard input.", true, true, false},
    {"ANSWER", "The answer to it.", true, true, false}};

constexpr OptionRow kOfferOptions[] = {kTraceOption};

constexpr OperandRow kUpdateOperands[] = {
    {"OWN", "The answer that was given, a body, a SIP message, or - for standard input.", true, true, false},
    {"OFFER", "The offer that it answers.", true, true, false},
    {"NEW", "The new offer.", true, true, false}};

constexpr OperandRow kVersionOperands[] = {
    {"OLD", "A body, a SIP message, or - for standard input.", true, true, false},
    {"NEW", "The later one.", true, true, false}};

constexpr OptionRow kTransferOptions[] = {kOutputOption};

constexpr OperandRow kPackOperands[] = {
    {"FILE", "A body, a SIP message, or - for standard input.", true, false, false}};
constexpr OperandRow kUnpackOperands[] = {
    {"FILE", "A transfer form, or - for standard input.", true, false, false}};

constexpr OptionRow kCallsOptions[] = {
    {"--call", "NUMBER", {}, "", "Draw the ladder of this call."},
    {"--bodies",
     "",
     {},
     "",
     "Show the bodies of that call too, and what each hop changed; with --json all texts."},
    {"--check", "", {}, "", "Show what is wrong only. The exit status is 1 when there is anything."},
    {"--json", "", {}, "", "Write a JSON document."},
    {"--html", "PAGE", {}, "", "Write this file as well: one page that shows everything."},
    {"--name",
     "ADDRESS=NAME",
     {},
     "",
     "Call a participant so; its address may have a port.",
     {},
     false,
     true},
    {"--call-id", "ID", {}, "", "Only calls with a Call-ID; * stands for any text.", {}, false, true},
    {"--from", "TEXT", {}, "", "Only calls whose caller has that in its URI."},
    {"--to", "TEXT", {}, "", "Only calls whose callee has that in its URI."},
    {"--address",
     "ADDRESS",
     {},
     "",
     "Only calls with a participant at this address, or address and port.",
     {},
     false,
     true},
    {"--since", "TIME", {}, "", "Only calls that last until this time (UTC) or longer: 2026-11-22 10:00:00."},
    {"--until", "TIME", {}, "", "Only calls that begin before this time."},
    {"--filter", "EXPRESSION", {}, "", "Read only packets that an expression of libpcap selects."},
    {"--join-header",
     "HEADER",
     {},
     "",
     "Join calls in which this header has the same value.",
     {},
     false,
     true},
    {"--follow", "", {}, "", "Go on reading while the capture grows."},
    {"--show-keys", "", {}, "", "Show keys and credentials, on a terminal only."},
    {"--anonymize", "", {}, "", "Replace addresses, numbers, names and keys everywhere."},
    {"--write", "CAPTURE", {}, "", "Write the calls into this file (pcap), anonymised."},
    kColourOption};

constexpr OperandRow kCallsOperands[] = {
    {"INPUT", "Captures (pcap, pcapng), logs of SIP messages, gzip of these, or - for standard input.", true,
     false, true}};

constexpr CommandRow kCommands[] = {
    {"inspect", "Show what SDP bodies say",
     "Parses SDP bodies and shows the summary of each: address and port, codecs, directions, security, ICE, "
     "hold state, video, fax, and the m-lines. An input is a bare body or a whole SIP message, of which the "
     "part application/sdp is taken. Without FILE, standard input is read. What is wrong with an input is "
     "said on standard error in one line with file, line and column, and the others are still shown. A body "
     "that is SDP but is refused by the analysis is shown as a table of its m-lines. Where the analysis "
     "refuses a body or does not hold all of it, its sections follow as the command sections shows them.",
     kInspectOptions, kInspectOperands, runInspect},
    {"sections", "List the sections of bodies of any kind",
     "Shows each section of a body in one line: number, mid, media, address and port, profile, security, "
     "direction, whether RTCP is multiplexed, the number of its BUNDLE group among all groups, and the "
     "codecs by name. Bodies that the analysis refuses are shown as well: every section, address and codec "
     "is. With --json there is more of each. An input is what it is for inspect, of up to 64 MB.",
     kSectionsOptions, kInspectOperands, runSections},
    {"rewrite", "Apply requests to a body",
     "Applies requests to a body in their order and writes the new body to standard output, byte for byte. "
     "Between requests stands --. The last word is FILE when it is no argument of the last request: an "
     "argument that may be left out is taken where the word can be one, so that a file named 2 or audio is "
     "given as ./2 or ./audio. Without FILE, standard input is read. Options may stand anywhere. Of a SIP "
     "message everything else stays, but Content-Length is corrected. The requests from keep-codecs to "
     "canonical take every body; the others one that the analysis does not refuse, where their turn comes. "
     "MEDIA selects sections; without it, those for codecs take audio and video, the rest all. When a "
     "request is refused, one line on standard error says which and why, the exit status is 1, and nothing "
     "is written. To have nothing to do is no refusal.",
     kRewriteOptions, kRewriteOperands, runRewrite,
     "REQUEST [ARGUMENT...] [-- REQUEST [ARGUMENT...]]... [FILE]"},
    {"requests",
     "List the requests that rewrite takes",
     "Lists all requests of rewrite with their arguments, one a line; or with the operations of the library "
     "behind each, of cSdpNegotiator where no class is named.",
     kRequestsOptions,
     {},
     runRequests},
    {"create", "Write a body from values",
     "Writes a body with one audio m-line, or a dummy answer, to standard output. When the library refuses a "
     "value, one line on standard error says why, and the exit status is 1.",
     kCreateOptions, kCreateOperands, runCreate},
    {"compare", "Say how two bodies differ",
     "Says whether two bodies are the same from their s-lines on, whether their o-lines are equal, and "
     "whether the o-line of B updates that of A: all but the session version is the same, and that is not "
     "lower. Then the lines that differ follow as a unified diff. The exit status is 0 when the bodies are "
     "the same, whatever their o-lines, 1 when they differ, and 2 when something is wrong with an input.",
     kCompareOptions, kCompareOperands, runCompare},
    {"answer", "Answer an offer from a local description",
     "Writes the answer to OFFER of an engine that ends the media. What the engine can do is a body: for each "
     "medium a section with address, port, profile, formats in its order of preference, fmtp, direction, keys "
     "and ICE. The answer has the sections of the offer in its order; those that no local section can serve "
     "have port 0. When no section would be accepted, or the offer is no session description, standard error "
     "says why, and the exit status is 1; it is 2 when the local description has no section.",
     kAnswerOptions, kAnswerOperands, runAnswer},
    {"check-answer", "List what is wrong with an answer",
     "Lists what an answer to an offer breaks of the rules of RFC 3264 and its extensions, one a line: the "
     "number of the section, or 0 for the session, the name of the rule, and what is wrong. An answer may be "
     "of any peer. The exit status is 0 when nothing is wrong, 1 otherwise, and 2 when an input cannot be "
     "read.",
     kCheckAnswerOptions, kCheckAnswerOperands, runCheckAnswer},
    {"calls", "Show the calls of captures and logs",
     "Reads captures (pcap, pcapng; SIP over UDP, TCP, WebSocket and HEP) and logs of SIP messages, and shows a "
     "line for each call: start, caller, callee, result, codecs and security that were agreed, and what is wrong. "
     "The legs of a B2BUA are one call. With --call, a call is drawn as a ladder of its messages. Each offer is "
     "judged with its answer, and each hop by what it made of a body. Several inputs are one capture. Keys and "
     "credentials are masked. SIGINT ends the reading, and what was read is shown. The exit status is 2 when an "
     "input cannot be read to its end; what was read is shown all the same.",
     kCallsOptions, kCallsOperands, runCalls},
    {"update-answer", "Bring an answer up to date with a new offer",
     "Writes OWN without the audio codecs that NEW no longer has, with port 0 for video of NEW, and where "
     "one of these applies with a new o-line. Both offers must have the same session address and audio port, "
     "and OWN no secure media in use; else one line on standard error says why, and the exit status is 1.",
     kOfferOptions, kUpdateOperands, runUpdateAnswer},
    {"version-increased", "Say whether a body is the next version of another",
     "Says yes when the o-lines differ in the session version alone and that of NEW is higher by one, else "
     "no. The exit status is 0 for yes, 1 for no, and 2 when something is wrong with an input.",
     kOfferOptions, kVersionOperands, runVersionIncreased},
    {"align", "Align a body with an earlier one",
     "Writes NEW with the o-line of OLD, its version raised by one. Where OLD has more m-lines, those of "
     "media types that NEW lacks are added at its end, without the lines that follow them. When the library "
     "refuses that, one line on standard error says why, and the exit status is 1.",
     kOfferOptions, kVersionOperands, runAlign},
    {"pack", "Write the transfer form of a body",
     "Writes a body with its summary in the form in which the library hands objects on. It has the byte order of the machine.",
     kTransferOptions, kPackOperands, runPack},
    {"unpack", "Write the body of a transfer form",
     "Writes the body that a transfer form holds. A damaged form is refused with one line on standard error, and the exit status is 2.",
     kTransferOptions, kUnpackOperands, runUnpack}};

}  // namespace

std::string_view Arguments::value(std::string_view option) const {
  const auto found = values_.find(option);
  return found != values_.end() ? std::string_view(found->second) : std::string_view();
}

std::vector<std::string> Arguments::values(std::string_view option) const {
  const auto found = manyValues_.find(option);
  return found != manyValues_.end() ? found->second : std::vector<std::string>();
}

std::span<const CommandRow> commandTable() { return kCommands; }

}  // namespace tool
