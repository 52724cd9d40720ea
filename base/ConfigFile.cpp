#include "base/ConfigFile.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <platform/device_fs.h>

#include "base/Log.h"

namespace {

// Generous: the bundled sample's files are at most 300 KB (XML), 131 KB (tables) and a few
// bytes (text), so each limit is over 50 times the largest of its kind.
constexpr size_t kXmlLimitBytes = 16u << 20;
constexpr size_t kTableLimitBytes = 8u << 20;
constexpr size_t kTextLimitBytes = 64u << 10;

const char* FileTypeName(mode_t mode) {
    switch (mode & S_IFMT) {
        case S_IFDIR:
            return "a directory";
        case S_IFIFO:
            return "a FIFO";
        case S_IFCHR:
            return "a character device";
        case S_IFBLK:
            return "a block device";
        case S_IFSOCK:
            return "a socket";
        default:
            return "not a regular file";
    }
}

bool EndsWith(const char* text, const char* suffix) {
    const size_t n = strlen(text);
    const size_t m = strlen(suffix);
    return n >= m && strcmp(text + n - m, suffix) == 0;
}

}  // namespace

size_t ConfigFileLimit(ConfigFileKind kind) {
    switch (kind) {
        case ConfigFileKind::Table:
            return kTableLimitBytes;
        case ConfigFileKind::Text:
            return kTextLimitBytes;
        case ConfigFileKind::Xml:
        default:
            return kXmlLimitBytes;
    }
}

ConfigFileKind ConfigFileKindOf(const char* path) {
    if (path != nullptr && EndsWith(path, ".bin")) {
        return ConfigFileKind::Table;
    }
    if (path != nullptr && EndsWith(path, ".txt")) {
        return ConfigFileKind::Text;
    }
    return ConfigFileKind::Xml;
}

ConfigFileOpen OpenConfigFile(const char* path, ConfigFileKind kind) {
    ConfigFileOpen result;
    const int fd = orlune_platform::DevOpen(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        result.error = errno;
        snprintf(result.reason, sizeof(result.reason), "%s", strerror(result.error));
        return result;
    }
    struct stat st;
    const size_t limit = ConfigFileLimit(kind);
    if (fstat(fd, &st) != 0) {
        result.error = errno;
        snprintf(result.reason, sizeof(result.reason), "%s", strerror(result.error));
    } else if (!S_ISREG(st.st_mode)) {
        result.refused = true;
        snprintf(result.reason, sizeof(result.reason), "%s, not a regular file",
                 FileTypeName(st.st_mode));
    } else if (static_cast<unsigned long long>(st.st_size) > limit) {
        result.refused = true;
        snprintf(result.reason, sizeof(result.reason), "%lld bytes, larger than the limit of %zu",
                 static_cast<long long>(st.st_size), limit);
    } else {
        // Reads of a regular file do not block; the flag is dropped all the same, so that the
        // stream behaves as one opened by fopen.
        fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
        result.file = fdopen(fd, "rb");
        if (result.file != nullptr) {
            return result;
        }
        result.error = errno;
        snprintf(result.reason, sizeof(result.reason), "%s", strerror(result.error));
    }
    close(fd);
    if (result.refused) {
        ORLUNE_LOGE(kTagMobile, "config file %s refused: %s", path, result.reason);
    }
    return result;
}
