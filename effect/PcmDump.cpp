// Raw PCM taps at four points of the pipeline, for comparing what the host gave, what the
// algorithm got and returned, and what went back. Files are headerless 32-bit samples.
#include <errno.h>
#include <string.h>

#include <platform/device_fs.h>

#include "effect/LogTags.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

namespace {

constexpr const char* kDumpDir = "/data/audio_debug";
constexpr const char* kDumpStems[DUMP_HANDLE_COUNT] = {"brisel_handle_in", "brisel_algo_in",
                                                       "brisel_algo_out", "brisel_handle_out"};
constexpr int kDumpPathBytes = 256;

void LogMissingFile(DumpHandle which) {
    static const char* const kFn = "DumpPcm";
    switch (which) {
        case DUMP_HANDLE_IN:
            ORLUNE_LOGE("%s: Audio dump handle_in is nullptr", kFn);
            break;
        case DUMP_ALGO_IN:
            ORLUNE_LOGE("%s: Audio dump algo_in is nullptr", kFn);
            break;
        case DUMP_ALGO_OUT:
            ORLUNE_LOGE("%s: Audio dump algo_out is nullptr", kFn);
            break;
        default:
            ORLUNE_LOGE("%s: Audio dump handle_out is nullptr", kFn);
            break;
    }
}

}  // namespace

void Orlune::SetAudioDump(int on) {
    if (on != 0) {
        if (mDumpEnabled != 0) {
            ORLUNE_LOGI("%s %d: Audio dump has already been enabled", "SetAudioDump", 1752);
        } else {
            EnableAudioDump();
        }
    } else if (mDumpEnabled == 0) {
        ORLUNE_LOGI("%s %d: Audio dump has already been disabled", "SetAudioDump", 1758);
    } else {
        DisableAudioDump();
    }
}

void Orlune::EnableAudioDump() {
    const unsigned number = ++gAudiodumpCount;
    bool allOpen = true;
    for (FILE* f : mDumpFiles) {
        allOpen = allOpen && f != nullptr;
    }
    if (mDumpEnabled != 0 && allOpen) {
        ORLUNE_LOGI("%s %d: OrluneAudioDump already enabled", "EnableAudioDump", 1690);
        return;
    }

    int openErrno = 0;
    for (int i = 0; i < DUMP_HANDLE_COUNT; ++i) {
        if (mDumpFiles[i] != nullptr) {  // left over from a half-open tap: start afresh
            fclose(mDumpFiles[i]);
            mDumpFiles[i] = nullptr;
        }
        char path[kDumpPathBytes] = {};
        if (snprintf_s(path, sizeof(path), sizeof(path) - 1, "%s/%s_%u%s", kDumpDir, kDumpStems[i],
                       number, ".pcm") < 0) {
            openErrno = ENAMETOOLONG;
            continue;
        }
        mDumpFiles[i] = orlune_platform::DevFopen(path, "wb");
        if (mDumpFiles[i] == nullptr && openErrno == 0) {
            openErrno = errno;
        }
    }
    allOpen = true;
    for (FILE* f : mDumpFiles) {
        allOpen = allOpen && f != nullptr;
    }
    if (allOpen) {
        mDumpEnabled = 1;
        ORLUNE_LOGI("%s %d: OrluneAudioDump enabled.", "EnableAudioDump", 1717);
        return;
    }
    ORLUNE_LOGE("%s %d:  OrluneAudioDump fopen failed, errno = %d reason = %s.", "EnableAudioDump",
                1719, openErrno, strerror(openErrno));
    DisableAudioDump();
}

void Orlune::DisableAudioDump() {
    if (gAudiodumpCount > 0) {
        --gAudiodumpCount;
    }
    // The audio thread checks the flag before each write: clear it before the files go.
    mDumpEnabled = 0;
    for (FILE*& f : mDumpFiles) {
        if (f != nullptr) {
            FILE* closing = f;
            f = nullptr;
            fclose(closing);
        }
    }
    ORLUNE_LOGI("%s %d: OrluneAudioDump disabled", "DisableAudioDump", 1745);
}

void Orlune::DumpPcm(const void* buf, int samples, DumpHandle which) {
    if (buf == nullptr || mDumpEnabled == 0 || which < DUMP_HANDLE_IN ||
        which >= DUMP_HANDLE_COUNT) {
        return;
    }
    FILE* file = mDumpFiles[which];
    if (file == nullptr) {
        LogMissingFile(which);
        return;
    }
    if (samples > 0) {
        fwrite(buf, sizeof(int32_t), static_cast<size_t>(samples), file);  // errors ignored
    }
}
