#include "kvRttLocal.h"

#include "kvRttRegistry.h"
#include "kvRttSink.h"

// How the local trace facility is operated.

using namespace kvrtt;

int KvRttSwitchFlag(const char* component, const char* flag, bool on) {
  return registry.switchFlag(nameView(component), nameView(flag), on);
}

void KvRttSetSink(KvRttSink sink, void* context) { setSink(sink, context); }
