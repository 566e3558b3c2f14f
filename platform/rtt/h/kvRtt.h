#ifndef KV_RTT_H
#define KV_RTT_H

// The real-time trace facility and the log of the platform: components register by name, declare the
// flags that an operator may switch, ask before each line whether a flag is on, and hand over finished
// lines. All operations may be called from several threads, from static initialisers and at unload.
// Texts are NUL-terminated. How the local facility is operated stands in kvRttLocal.h.

/// Marks what the library exports.
#define KVRTT_API __attribute__((visibility("default")))

extern "C" {

/// Prepares the facility for a component that is about to register.
/// @param handle where the component keeps its handle; its value is left alone
/// @return 0, or a registration status when `handle` is null
KVRTT_API int pvxTraceRttInit(int* handle);

/// Registers a component, with all its flags off. A name that is registered already gives the same
/// handle again.
/// @param handle receives the component's handle (1 or greater); written on success only
/// @param component the name: 1 to 31 characters without blanks, '=', ',' and ';'
/// @return 0, or a registration status (see KvRttStatus): null handle, unusable name, no room
KVRTT_API int KvRttRegFacility(int* handle, const char* component);

/// Declares a flag of a registered component. It starts switched off, unless the environment variable
/// KVRTT names it. Declaring the same flag again changes nothing.
/// @param component the component's name
/// @param flag the flag's value, a single bit from 1 to 0x40000000
/// @param name the flag's name, formed like a component's
/// @return 0, or a registration status: unusable name, not a single bit, unknown component, value or
///         name declared otherwise already, no room
KVRTT_API int KvRttRegFlag(const char* component, int flag, const char* name);

/// Tells whether a flag is on. Asked before every trace line: one atomic load.
/// @param handle a component's handle; any other number, 0 and -1 included, is answered with 0
/// @param flag a flag's value; one that is not declared is off
/// @return 1 when the flag is on, otherwise 0
KVRTT_API int KvRttTstFlag(int handle, int flag);

/// @param status any value that an operation of the facility returned
/// @return a text that describes it; never null, never to be released
KVRTT_API const char* KvRttStatus(int status);

/// Writes one line to the trace stream. The line is text: conversions in it are not interpreted and
/// further arguments are not read. Whether a flag is on is not asked here.
/// @param handle the component's handle
/// @param flag the kind of line, handed on to the sink; it need not be declared
/// @param type a number of the component's, handed on to the sink
/// @param level the weight of the line, handed on to the sink
/// @param line the finished line; null counts as an empty text
/// @return 0, or a status when the handle is unknown. A line that a sink traces is dropped and counts as
///         written: callers may hand the result on as a status of their own
KVRTT_API int pvxTraceRtt(int handle, int flag, int type, int level, const char* line, ...);

/// Writes an entry to the platform's log, which is syslog (facility "user") here.
/// @param file,line where the report comes from; a null file counts as an empty text
/// @param kind not used here
/// @param severity a syslog severity (RFC 5424, 6.2.1) from 0 to 7; any other counts as 3, "error"
/// @param code the report's number, written in hexadecimal
/// @param format,... the message as for printf; cut at 1023 characters; null counts as an empty text
KVRTT_API void KvLogReport(const char* file, int line, int kind, int severity, int code, const char* format,
                           ...) __attribute__((format(printf, 6, 7)));
}

#endif
