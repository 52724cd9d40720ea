// Opening a configuration file that may be damaged or replaced in the field. The open never
// blocks (a FIFO or device node in place of a file would otherwise hang set-up), and what was
// opened is checked on the descriptor itself, so nothing can be swapped in between: only a
// regular file no larger than its kind's limit is handed out. A refused file is one error
// line; callers treat it as a missing file.
#pragma once

#include <stddef.h>
#include <stdio.h>

enum class ConfigFileKind {
    Xml,    // the main and virtual-map XML, the downloaded XML, the detector's configuration
    Table,  // the binary coefficient tables
    Text,   // version files and device-tree nodes
};

// The largest file of each kind that is read, in bytes.
size_t ConfigFileLimit(ConfigFileKind kind);

struct ConfigFileOpen {
    FILE* file = nullptr;  // open for reading ("rb"), or null
    bool refused = false;  // the path exists but is not a regular file or is too large
    int error = 0;         // the open error (ENOENT: no such file), 0 otherwise
    char reason[96] = {};  // why `file` is null: the refusal, or the open error's text
};

// Opens the device path `path`. A refusal is logged as "config file <path> refused: <reason>";
// a file that cannot be opened at all (missing, unreadable) is not logged here, the caller
// keeps its own message for that.
ConfigFileOpen OpenConfigFile(const char* path, ConfigFileKind kind);

// The kind a file's name implies: ".bin" tables, ".txt" text, anything else XML.
ConfigFileKind ConfigFileKindOf(const char* path);
