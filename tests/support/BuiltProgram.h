// Starting a program of this build from a test. A cross build's programs do not run on the
// build machine by themselves (containers have no binfmt_misc), so the build's emulator, given
// as ORLUNE_TEST_EMULATOR, goes in front; natively it is empty.
#pragma once

#include <string>

// The shell command line, without arguments, that runs the built program at `path`.
inline std::string BuiltProgramCommand(const std::string& path) {
    const std::string emulator = ORLUNE_TEST_EMULATOR;
    return emulator.empty() ? path : emulator + " " + path;
}
