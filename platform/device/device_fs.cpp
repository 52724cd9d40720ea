// Device paths on the device: they are the real paths, so every call is the plain system call.
#include <platform/device_fs.h>

#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

namespace orlune_platform {

char* DevRealpath(const char* path, char* resolved) {
    return realpath(path, resolved);
}

int DevAccess(const char* path, int mode) {
    return access(path, mode);
}

int DevStat(const char* path, struct stat* st) {
    return stat(path, st);
}

FILE* DevFopen(const char* path, const char* mode) {
    return fopen(path, mode);
}

int DevOpen(const char* path, int flags) {
    return open(path, flags);
}

bool DevHostPath(const char* path, char* out, size_t outSize) {
    if (path == nullptr || out == nullptr) {
        return false;
    }
    size_t n = strlen(path);
    if (n + 1 > outSize) {
        return false;
    }
    memcpy(out, path, n + 1);
    return true;
}

}  // namespace orlune_platform
