// Device paths on the host: absolute paths are looked up under ORLUNE_DEVICE_ROOT (unset or
// empty: the real root, paths unchanged); realpath results are mapped back to device paths.
#include <platform/device_fs.h>

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <string>

namespace orlune_platform {
namespace {

// The device root without trailing '/', or "" when paths are used unchanged.
std::string DeviceRoot() {
    const char* env = getenv("ORLUNE_DEVICE_ROOT");
    std::string root = env != nullptr ? env : "";
    while (!root.empty() && root.back() == '/') {
        root.pop_back();
    }
    return root;  // "/" (or "//") is the real root: same as unset
}

std::string HostPath(const char* path) {
    std::string root = DeviceRoot();
    if (root.empty() || path[0] != '/') {
        return path;
    }
    return root + path;
}

}  // namespace

bool DevHostPath(const char* path, char* out, size_t outSize) {
    if (path == nullptr || out == nullptr) {
        return false;
    }
    std::string host = HostPath(path);
    if (host.size() + 1 > outSize) {
        return false;
    }
    memcpy(out, host.c_str(), host.size() + 1);
    return true;
}

char* DevRealpath(const char* path, char* resolved) {
    if (path == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
    char hostResolved[PATH_MAX];
    if (realpath(HostPath(path).c_str(), hostResolved) == nullptr) {
        return nullptr;
    }
    std::string result = hostResolved;
    std::string root = DeviceRoot();
    char rootResolved[PATH_MAX];
    if (!root.empty() && realpath(root.c_str(), rootResolved) != nullptr) {
        size_t n = strlen(rootResolved);
        if (n == 1) {
            // The root resolves to "/": nothing to strip.
        } else if (result.compare(0, n, rootResolved) == 0 &&
                   (result.size() == n || result[n] == '/')) {
            result = result.size() == n ? std::string("/") : result.substr(n);
        }
        // A result outside the root (a symlink leading out of it) stays a host path.
    }
    if (resolved == nullptr) {
        resolved = static_cast<char*>(malloc(PATH_MAX));
        if (resolved == nullptr) {
            errno = ENOMEM;
            return nullptr;
        }
    }
    // result is at most as long as hostResolved, which fitted PATH_MAX.
    memcpy(resolved, result.c_str(), result.size() + 1);
    return resolved;
}

int DevAccess(const char* path, int mode) {
    if (path == nullptr) {
        errno = EINVAL;
        return -1;
    }
    return access(HostPath(path).c_str(), mode);
}

int DevStat(const char* path, struct stat* st) {
    if (path == nullptr) {
        errno = EINVAL;
        return -1;
    }
    return stat(HostPath(path).c_str(), st);
}

FILE* DevFopen(const char* path, const char* mode) {
    if (path == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
    return fopen(HostPath(path).c_str(), mode);
}

int DevOpen(const char* path, int flags) {
    if (path == nullptr) {
        errno = EINVAL;
        return -1;
    }
    return open(HostPath(path).c_str(), flags);
}

}  // namespace orlune_platform
