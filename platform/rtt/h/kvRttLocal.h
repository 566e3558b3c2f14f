#ifndef KV_RTT_LOCAL_H
#define KV_RTT_LOCAL_H

// How the local trace facility is operated: switching flags, choosing where lines go. A platform with a
// facility of its own does not have these operations.
//
// At start the environment variable KVRTT switches flags on, for example
//   KVRTT="SDP_NEGOTIATOR=INFO,ERROR;OTHER=DEBUG"
// It is read when a flag is declared. Blanks around names do not count; names that nobody declares are
// ignored.

#include <cstddef>

#include "kvRtt.h"

/// What the operations of the facility return; KvRttStatus gives the text.
enum eKvRttStatus : int {
  kvRttSuccess = 0,
  kvRttNullArgument = 1,
  kvRttBadName = 2,
  kvRttBadFlag = 3,
  kvRttComponentsFull = 4,
  kvRttFlagsFull = 5,
  kvRttFlagTaken = 6,
  kvRttUnknownComponent = 7,
  kvRttUnknownFlag = 8,
  kvRttUnknownHandle = 9,
};

inline constexpr int kvRttMaxComponents = 16;
inline constexpr int kvRttMaxFlags = 16;       ///< of each component
inline constexpr int kvRttMaxNameLength = 31;  ///< of a component and of a flag

/// Characters of a line's text that the default sink writes, control characters in their longer form: four
/// times a line of 20480 characters. The rest of a longer one is cut.
inline constexpr int kvRttMaxShownLength = 81920;

/// A finished line on its way to a sink; valid during the call only.
struct KvRttLine {
  const char* component;
  int flag;
  int type;
  int level;
  const char* text;    ///< NUL-terminated, without line end; may hold line ends of its own
  std::size_t length;  ///< of `text` in characters, without the NUL
};

/// Receives one line. Calls never overlap. A sink may switch flags and set another sink. What it traces
/// itself is dropped, and it must not wait for a thread that may trace or set the sink. An exception
/// that leaves it is swallowed. The calling thread is not cancelled inside it, and the sink must not end it
/// (pthread_exit): that ends the program.
using KvRttSink = void (*)(void* context, const KvRttLine* line);

extern "C" {

/// Switches a declared flag on or off.
/// @return 0, kvRttUnknownComponent or kvRttUnknownFlag (null and unusable names are unknown)
KVRTT_API int KvRttSwitchFlag(const char* component, const char* flag, bool on);

/// Sets where lines go from now on. Once it has returned, the former sink is not called any more and
/// its context may end; called from inside that sink itself, this holds once the sink returns.
/// @param sink null restores the default: one line per call on standard error, written in one piece,
///        with the time in UTC, the component, the flag and the level before the text. Control
///        characters in the text other than tabs are shown as "\n", "\r" or "\xHH". What standard error does
///        not take at once (a full pipe in non-blocking mode, a pipe that nobody reads) is lost; neither
///        SIGPIPE nor an error comes of it
/// @param context handed to the sink with each line
KVRTT_API void KvRttSetSink(KvRttSink sink, void* context);
}

#endif
