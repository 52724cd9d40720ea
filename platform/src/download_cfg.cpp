// Host stub of the maker's customisation service: the file counts as downloaded when it
// exists under the device root, and its version is the first line of "cfg_version" in the
// given folder. Nothing (nullptr) when neither the file nor the folder exists.
#include <vardocust/download_cfg.h>

#include <platform/device_fs.h>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <string.h>
#include <unistd.h>

#include <string>

namespace {

void CopyCut(char* out, size_t size, const char* text) {
    size_t n = strnlen(text, size - 1);
    memcpy(out, text, n);
    out[n] = '\0';
}

FILE* OpenRegular(const char* path) {
    const int fd = orlune_platform::DevOpen(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        return nullptr;
    }
    struct stat st;
    FILE* fp = nullptr;
    if (fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
        fp = fdopen(fd, "r");
    }
    if (fp == nullptr) {
        close(fd);
    }
    return fp;
}

}  // namespace

extern "C" DownloadCfgInfo* get_download_cfg_file(const char* dir, const char* file) {
    using namespace orlune_platform;
    bool fileFound = file != nullptr && DevAccess(file, F_OK) == 0;
    bool dirFound = dir != nullptr && DevAccess(dir, F_OK) == 0;
    if (!fileFound && !dirFound) {
        return nullptr;
    }
    auto* info = static_cast<DownloadCfgInfo*>(calloc(1, sizeof(DownloadCfgInfo)));
    if (info == nullptr || !fileFound) {
        return info;  // found 0, empty path and version
    }
    info->found = 1;
    CopyCut(info->path, sizeof info->path, file);
    if (dir != nullptr) {
        std::string versionFile = dir;
        if (versionFile.empty() || versionFile.back() != '/') {
            versionFile += '/';
        }
        versionFile += "cfg_version";
        // Like the service, never wait on a version file that is not a regular file.
        if (FILE* fp = OpenRegular(versionFile.c_str())) {
            char line[sizeof info->version];
            if (fgets(line, sizeof line, fp) != nullptr) {
                line[strcspn(line, "\r\n")] = '\0';
                CopyCut(info->version, sizeof info->version, line);
            }
            fclose(fp);
        }
    }
    return info;
}
