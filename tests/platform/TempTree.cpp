#include "tests/platform/TempTree.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

TempTree::TempTree() {
    std::string pattern = (fs::temp_directory_path() / "orlune_platform_XXXXXX").string();
    char* made = mkdtemp(&pattern[0]);
    mPath = made != nullptr ? made : "";
}

TempTree::~TempTree() {
    std::error_code ec;
    if (!mPath.empty()) {
        fs::remove_all(mPath, ec);
    }
}

std::string TempTree::Write(const std::string& relative, const std::string& content) const {
    fs::path path = fs::path(mPath) / relative;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
}

std::string TempTree::MakeDir(const std::string& relative) const {
    fs::path path = fs::path(mPath) / relative;
    fs::create_directories(path);
    return path.string();
}

ScopedEnv::ScopedEnv(const char* name, const char* value) : mName(name) {
    const char* old = getenv(name);
    mHad = old != nullptr;
    mOld = mHad ? old : "";
    if (value != nullptr) {
        setenv(name, value, 1);
    } else {
        unsetenv(name);
    }
}

ScopedEnv::~ScopedEnv() {
    if (mHad) {
        setenv(mName.c_str(), mOld.c_str(), 1);
    } else {
        unsetenv(mName.c_str());
    }
}
