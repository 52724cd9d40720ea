#include "tools/play/PlayOptions.h"

#include <errno.h>
#include <stdlib.h>
#include <string.h>

const char* const kPlayUsage =
        "usage: orlune-play --device-root DIR [--properties FILE] [--block FRAMES]\n"
        "                   [--format s16|s32|f32|s24] [--channels 2|4|8|10]\n"
        "                   [--set ID=VALUE]... [--setf ID=VALUE]... [--sets ID=TEXT]...\n"
        "                   [--at SECONDS:ID=VALUE]... [--atf SECONDS:ID=VALUE]...\n"
        "                   [--ats SECONDS:ID=TEXT]... [--dump] [--compensate] [--log]\n"
        "                   [--report FILE.html]\n"
        "                   [--no-defaults] [--no-progress]\n"
        "                   [--lib PATH] [--algo PATH | --no-algo] [--detect PATH | --no-detect]\n"
        "                   IN.wav OUT.wav\n"
        "       orlune-play --info [--device-root DIR] [--properties FILE] [--lib PATH]\n"
        "                   [--algo PATH | --no-algo] [--log]\n"
        "\n"
        "Runs a WAV file through the effect library as the platform's audio path does and\n"
        "writes the processed audio to a WAV file, then prints what the effect reported.\n"
        "\n"
        "  --device-root DIR   device file system root (configuration, dumps); sets\n"
        "                      ORLUNE_DEVICE_ROOT\n"
        "  --properties FILE   system properties file (key=value lines); sets ORLUNE_PROPERTIES\n"
        "  --block FRAMES      frames per host block, 1 to 7200 (default 480): the effect\n"
        "                      refuses larger blocks of ten channels\n"
        "  --format F          host sample format: s16 (default), s32, f32, s24 (24-bit packed)\n"
        "  --channels N        host layout: 2 stereo; 4 stereo in, 4 channels out; 8; 10\n"
        "  --set ID=VALUE      integer parameter at the start (also --setf float, --sets text)\n"
        "  --at S:ID=VALUE     integer parameter at S seconds into the file (also --atf, --ats);\n"
        "                      e.g. --at 2:12=2 switches to the wired headset at 2 s\n"
        "  --dump              PCM dumps on (parameter 100) into DIR/data/audio_debug\n"
        "  --compensate        drop the effect's latency so the output lines up with the input\n"
        "  --report FILE.html  also write a self-contained HTML page of the run: waveforms,\n"
        "                      levels, timeline of tunings and parameters, the click remover's\n"
        "                      edges, detector metrics, events; under 2 MB for any length\n"
        "  --log               print every log line of the effect to stderr\n"
        "  --no-defaults       do not enable the effect (ids 0, 32) or pick the loudspeaker\n"
        "                      (id 12) by default\n"
        "  --algo PATH         algorithm library to preload (default: the stand-in)\n"
        "  --no-algo           preload none: the effect finds no algorithm and passes through\n"
        "  --info              load the library, set up one instance and report what it found\n";

namespace {

bool ParseInt(const std::string& text, int* value) {
    if (text.empty()) {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    const long v = strtol(text.c_str(), &end, 0);
    if (errno != 0 || *end != '\0' || v < -2147483648L || v > 2147483647L) {
        return false;
    }
    *value = static_cast<int>(v);
    return true;
}

bool ParseFloat(const std::string& text, float* value) {
    if (text.empty()) {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    const float v = strtof(text.c_str(), &end);
    if (errno != 0 || *end != '\0') {
        return false;
    }
    *value = v;
    return true;
}

bool ParseSeconds(const std::string& text, double* value) {
    char* end = nullptr;
    const double v = strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(v >= 0.0)) {
        return false;
    }
    *value = v;
    return true;
}

// "ID=VALUE" (and, with `timed`, "SECONDS:ID=VALUE") into an event of `kind`.
bool ParseEvent(const std::string& arg, ParamEvent::Kind kind, bool timed, ParamEvent* event,
                std::string* error) {
    std::string rest = arg;
    event->kind = kind;
    event->atStart = !timed;
    if (timed) {
        const size_t colon = rest.find(':');
        if (colon == std::string::npos || !ParseSeconds(rest.substr(0, colon), &event->seconds)) {
            *error = "expected SECONDS:ID=VALUE, got '" + arg + "'";
            return false;
        }
        rest = rest.substr(colon + 1);
    }
    const size_t eq = rest.find('=');
    if (eq == std::string::npos || !ParseInt(rest.substr(0, eq), &event->id)) {
        *error = "expected ID=VALUE, got '" + arg + "'";
        return false;
    }
    const std::string value = rest.substr(eq + 1);
    bool ok = true;
    switch (kind) {
        case ParamEvent::INT:
            ok = ParseInt(value, &event->intValue);
            break;
        case ParamEvent::FLOAT:
            ok = ParseFloat(value, &event->floatValue);
            break;
        case ParamEvent::STRING:
            event->text = value;
            break;
    }
    if (!ok) {
        *error = "bad value in '" + arg + "'";
    }
    return ok;
}

bool ParseFormat(const std::string& name, HostFormat* format) {
    if (name == "s16") {
        *format = HostFormat::S16;
    } else if (name == "s32") {
        *format = HostFormat::S32;
    } else if (name == "f32") {
        *format = HostFormat::F32;
    } else if (name == "s24") {
        *format = HostFormat::S24;
    } else {
        return false;
    }
    return true;
}

}  // namespace

const char* HostFormatName(HostFormat format) {
    switch (format) {
        case HostFormat::S16:
            return "s16";
        case HostFormat::S32:
            return "s32";
        case HostFormat::F32:
            return "f32";
        case HostFormat::S24:
            return "s24";
    }
    return "?";
}

bool ParsePlayOptions(int argc, char** argv, PlayOptions* o, std::string* error) {
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        // Options that take a value.
        auto value = [&](std::string* out) {
            if (i + 1 >= argc) {
                *error = a + " needs a value";
                return false;
            }
            *out = argv[++i];
            return true;
        };
        std::string v;
        if (a == "--help" || a == "-h") {
            o->help = true;
        } else if (a == "--info") {
            o->info = true;
        } else if (a == "--dump") {
            o->dump = true;
        } else if (a == "--log") {
            o->log = true;
        } else if (a == "--compensate") {
            o->compensate = true;
        } else if (a == "--no-defaults") {
            o->noDefaults = true;
        } else if (a == "--no-progress") {
            o->progress = false;
        } else if (a == "--no-algo") {
            o->noAlgo = true;
        } else if (a == "--no-detect") {
            o->noDetect = true;
        } else if (a == "--device-root") {
            if (!value(&o->deviceRoot))
                return false;
        } else if (a == "--properties") {
            if (!value(&o->properties))
                return false;
        } else if (a == "--report") {
            if (!value(&o->report))
                return false;
        } else if (a == "--lib") {
            if (!value(&o->effectLib))
                return false;
        } else if (a == "--algo") {
            if (!value(&o->algoLib))
                return false;
        } else if (a == "--detect") {
            if (!value(&o->detectLib))
                return false;
        } else if (a == "--block") {
            if (!value(&v))
                return false;
            if (!ParseInt(v, &o->block) || o->block < 1 || o->block > kMaxBlockFrames) {
                *error = "--block needs a frame count from 1 to " + std::to_string(kMaxBlockFrames);
                return false;
            }
        } else if (a == "--format") {
            if (!value(&v))
                return false;
            if (!ParseFormat(v, &o->format)) {
                *error = "--format must be s16, s32, f32 or s24";
                return false;
            }
        } else if (a == "--channels") {
            if (!value(&v))
                return false;
            if (!ParseInt(v, &o->channels) ||
                (o->channels != 2 && o->channels != 4 && o->channels != 8 && o->channels != 10)) {
                *error = "--channels must be 2, 4, 8 or 10";
                return false;
            }
        } else if (a == "--set" || a == "--setf" || a == "--sets" || a == "--at" || a == "--atf" ||
                   a == "--ats") {
            if (!value(&v))
                return false;
            const char last = a.back();
            const ParamEvent::Kind kind = last == 'f'   ? ParamEvent::FLOAT
                                          : last == 's' ? ParamEvent::STRING
                                                        : ParamEvent::INT;
            ParamEvent event;
            if (!ParseEvent(v, kind, a.compare(0, 4, "--at") == 0, &event, error)) {
                return false;
            }
            o->events.push_back(event);
        } else if (a.size() > 1 && a[0] == '-') {
            *error = "unknown option " + a;
            return false;
        } else {
            files.push_back(a);
        }
    }
    if (o->help) {
        return true;
    }
    if (o->noAlgo && !o->algoLib.empty()) {
        *error = "--algo and --no-algo exclude each other";
        return false;
    }
    if (o->info) {
        if (!files.empty()) {
            *error = "--info takes no files";
            return false;
        }
        return true;
    }
    if (files.size() != 2) {
        *error = "expected IN.wav and OUT.wav";
        return false;
    }
    o->input = files[0];
    o->output = files[1];
    return true;
}
