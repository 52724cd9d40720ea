// Raw PCM taps at four points of the pipeline, for comparing what the host gave, what the
// algorithm got and returned, and what went back. Files are headerless 32-bit samples.
#include <errno.h>
#include <string.h>

#include <utility>

#include <platform/device_fs.h>

#include "base/Log.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

namespace {

constexpr const char* kDumpDir = "/data/audio_debug";
constexpr const char* kDumpStems[DUMP_HANDLE_COUNT] = {"brisel_handle_in", "brisel_algo_in",
                                                       "brisel_algo_out", "brisel_handle_out"};
constexpr int kDumpPathBytes = 256;  // the fixed path buffer; the longest dump path takes 50

void LogMissingFile(DumpHandle which) {
    static const char* const kFn = "DumpPcm";
    switch (which) {
        case DUMP_HANDLE_IN:
            ORLUNE_LOGE(kTagMobile, "%s: Audio dump handle_in is nullptr", kFn);
            break;
        case DUMP_ALGO_IN:
            ORLUNE_LOGE(kTagMobile, "%s: Audio dump algo_in is nullptr", kFn);
            break;
        case DUMP_ALGO_OUT:
            ORLUNE_LOGE(kTagMobile, "%s: Audio dump algo_out is nullptr", kFn);
            break;
        default:
            ORLUNE_LOGE(kTagMobile, "%s: Audio dump handle_out is nullptr", kFn);
            break;
    }
}

void CloseFiles(FILE* (&files)[DUMP_HANDLE_COUNT]) {
    for (FILE*& f : files) {
        if (f != nullptr) {
            fclose(f);
            f = nullptr;
        }
    }
}

}  // namespace

// Switching runs on a parameter or control thread while the audio thread may be writing:
// files are opened before they are handed to the block and closed after they were taken from
// it, each hand-over under the instance lock, so a block never sees a file being closed and
// the audio thread never waits for an open or a close.
void Orlune::SetAudioDump(int on) {
    std::lock_guard<std::mutex> dumpLock(mDumpLock);
    const bool enabled = DumpEnabled();
    if (on != 0) {
        if (enabled) {
            ORLUNE_LOGI(kTagMobile, "%s %d: Audio dump has already been enabled", "SetAudioDump",
                        1752);
        } else {
            EnableAudioDump();
        }
    } else if (!enabled) {
        ORLUNE_LOGI(kTagMobile, "%s %d: Audio dump has already been disabled", "SetAudioDump",
                    1758);
    } else {
        DisableAudioDump();
    }
}

bool Orlune::DumpEnabled() {
    InstanceLock lock(*this);
    return mDumpEnabled != 0;
}

// Called with mDumpLock held.
void Orlune::EnableAudioDump() {
    const unsigned number = ++gAudiodumpCount;
    {
        InstanceLock lock(*this);
        bool allOpen = true;
        for (FILE* f : mDumpFiles) {
            allOpen = allOpen && f != nullptr;
        }
        if (mDumpEnabled != 0 && allOpen) {
            ORLUNE_LOGI(kTagMobile, "%s %d: OrluneAudioDump already enabled", "EnableAudioDump",
                        1690);
            return;
        }
    }

    FILE* files[DUMP_HANDLE_COUNT] = {};
    bool allOpen = true;
    int openErrno = 0;
    for (int i = 0; i < DUMP_HANDLE_COUNT; ++i) {
        char path[kDumpPathBytes] = {};
        if (snprintf_s(path, sizeof(path), sizeof(path) - 1, "%s/%s_%u%s", kDumpDir, kDumpStems[i],
                       number, ".pcm") < 0) {
            openErrno = ENAMETOOLONG;
            allOpen = false;
            continue;
        }
        files[i] = orlune_platform::DevFopen(path, "wb");
        if (files[i] == nullptr) {
            allOpen = false;
            if (openErrno == 0) {
                openErrno = errno;
            }
        }
    }
    if (allOpen) {
        {
            InstanceLock lock(*this);
            // Left over from a half-open tap: replaced, and closed below.
            for (int i = 0; i < DUMP_HANDLE_COUNT; ++i) {
                std::swap(mDumpFiles[i], files[i]);
            }
            mDumpEnabled = 1;
        }
        CloseFiles(files);
        ORLUNE_LOGI(kTagMobile, "%s %d: OrluneAudioDump enabled.", "EnableAudioDump", 1717);
        return;
    }
    CloseFiles(files);
    ORLUNE_LOGE(kTagMobile, "%s %d:  OrluneAudioDump fopen failed, errno = %d reason = %s.",
                "EnableAudioDump", 1719, openErrno, strerror(openErrno));
    DisableAudioDump();
}

// Called with mDumpLock held. Returns with the files complete and closed.
void Orlune::DisableAudioDump() {
    uint32_t count = gAudiodumpCount.load();
    while (count > 0 && !gAudiodumpCount.compare_exchange_weak(count, count - 1)) {
    }
    CloseDumpFiles();
    ORLUNE_LOGI(kTagMobile, "%s %d: OrluneAudioDump disabled", "DisableAudioDump", 1745);
}

// Takes the files from the block and closes them; the process-wide count is left alone.
void Orlune::CloseDumpFiles() {
    FILE* files[DUMP_HANDLE_COUNT] = {};
    {
        InstanceLock lock(*this);
        mDumpEnabled = 0;
        for (int i = 0; i < DUMP_HANDLE_COUNT; ++i) {
            std::swap(mDumpFiles[i], files[i]);
        }
    }
    CloseFiles(files);
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
