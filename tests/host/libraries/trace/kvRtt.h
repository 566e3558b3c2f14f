#ifndef HOST_KV_RTT_H
#define HOST_KV_RTT_H

// The trace operations as this host declares them.
extern "C" {
int pvxTraceRttInit(int* handle);
int KvRttRegFacility(int* handle, const char* component);
int KvRttRegFlag(const char* component, int flag, const char* name);
int KvRttTstFlag(int handle, int flag);
const char* KvRttStatus(int status);
int pvxTraceRtt(int handle, int flag, int kind, int level, const char* line, ...);
void KvLogReport(const char* file, int line, int first, int second, int code, const char* format, ...);
}

#endif
