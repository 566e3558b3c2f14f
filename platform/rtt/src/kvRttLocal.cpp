#include "kvRttLocal.h"

#include "kvRttRegistry.h"
#include "kvRttSink.h"

// How the local trace facility is operated.

int KvRttSwitchFlag(const char* component, const char* flag, bool on) {
  return kvrtt::registry.switchFlag(kvrtt::nameView(component), kvrtt::nameView(flag), on);
}

void KvRttSetSink(KvRttSink sink, void* context) { kvrtt::setSink(sink, context); }
