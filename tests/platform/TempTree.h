// A temporary directory for one test, removed with everything in it at the end, and a
// scoped environment variable.
#pragma once

#include <string>

class TempTree {
public:
    TempTree();
    ~TempTree();
    const std::string& Path() const { return mPath; }
    // Writes `content` to the file at `relative` (directories are created).
    std::string Write(const std::string& relative, const std::string& content) const;
    std::string MakeDir(const std::string& relative) const;

private:
    std::string mPath;
};

class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value);  // value null: unset
    ~ScopedEnv();

private:
    std::string mName;
    bool mHad;
    std::string mOld;
};
