// Running a program of this build, or any shell command, from the tools' tests, and reading the
// files they write.
#pragma once

#include <stdio.h>
#include <sys/wait.h>

#include <fstream>
#include <sstream>
#include <string>

// Exit status of a shell command (-1 when it did not exit); its standard output, and its error
// output when `withErrors`, goes to `out`.
inline int Shell(const std::string& command, std::string* out = nullptr, bool withErrors = false) {
    FILE* pipe = popen((command + (withErrors ? " 2>&1" : " 2>/dev/null")).c_str(), "r");
    char buf[65536];
    for (size_t n; pipe != nullptr && (n = fread(buf, 1, sizeof(buf), pipe)) > 0;) {
        if (out != nullptr) {
            out->append(buf, n);
        }
    }
    const int status = pipe != nullptr ? pclose(pipe) : -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline std::string ReadText(const std::string& path) {
    std::stringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}
