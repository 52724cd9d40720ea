// The file-system calls through which the effect touches device paths. On the handset they
// are the plain system calls (platform/device); on a host every absolute device path is looked
// up under the directory named by ORLUNE_DEVICE_ROOT, and realpath results are mapped back
// (platform/src), so product code and its log lines only ever see device paths.
#pragma once

#include <stdio.h>
#include <sys/stat.h>

namespace orlune_platform {

char* DevRealpath(const char* path, char* resolved);  // resolved: PATH_MAX (4096) bytes
int DevAccess(const char* path, int mode);
int DevStat(const char* path, struct stat* st);
FILE* DevFopen(const char* path, const char* mode);
// open(2) on a device path (flags as for open, no O_CREAT).
int DevOpen(const char* path, int flags);

// The host path that a device path maps to (for tools and tests); `out` of `outSize` bytes.
// Returns false when it does not fit.
bool DevHostPath(const char* path, char* out, size_t outSize);

}  // namespace orlune_platform
