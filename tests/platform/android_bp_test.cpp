// Android.bp, which nothing here can build, kept in step with this build: the library module
// lists every product source that CMake compiles into the shipped library and every device
// implementation of the platform seam, and nothing else; every file any module lists exists;
// and no module lists a host-only file (the host layer, the stand-ins, the host tools).
#include <gtest/gtest.h>

#include <ctype.h>
#include <string.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const char* const kLibraryModule = "liborlunemutilmobile7_1";
const char* const kHostOnly[] = {"platform/src/", "standin/", "tools/"};

// One module of a blueprint file: its type, its name and the file names it lists.
struct Module {
    std::string type;
    std::string name;
    std::vector<std::string> sources;      // every "srcs" list, at any depth
    std::vector<std::string> files;        // other single files: version_script
    std::vector<std::string> includeDirs;  // every "*include_dirs" list
};

// A small reader of the blueprint syntax Android.bp uses: modules `type { key: value, ... }`,
// values being strings, lists, nested maps, booleans and numbers; // and /* */ comments.
class Blueprint {
public:
    explicit Blueprint(const std::string& text) : mText(text) {}

    // The modules, or an empty list with `error` set when the text does not parse.
    std::vector<Module> Modules(std::string* error) {
        std::vector<Module> modules;
        for (Skip(); mPos < mText.size(); Skip()) {
            Module m;
            m.type = Word();
            Skip();
            if (m.type.empty() || !Take('{') || !Map(&m, "")) {
                *error = "does not parse at offset " + std::to_string(mPos);
                return {};
            }
            modules.push_back(m);
        }
        return modules;
    }

private:
    void Skip() {
        for (;;) {
            while (mPos < mText.size() && isspace(static_cast<unsigned char>(mText[mPos]))) {
                ++mPos;
            }
            if (mText.compare(mPos, 2, "//") == 0) {
                mPos = mText.find('\n', mPos);
            } else if (mText.compare(mPos, 2, "/*") == 0) {
                mPos = mText.find("*/", mPos);
                mPos = mPos == std::string::npos ? mPos : mPos + 2;
            } else {
                return;
            }
            if (mPos == std::string::npos) {
                mPos = mText.size();
            }
        }
    }
    bool Take(char c) {
        Skip();
        if (mPos < mText.size() && mText[mPos] == c) {
            ++mPos;
            return true;
        }
        return false;
    }
    std::string Word() {
        size_t start = mPos;
        while (mPos < mText.size() &&
               (isalnum(static_cast<unsigned char>(mText[mPos])) || mText[mPos] == '_')) {
            ++mPos;
        }
        return mText.substr(start, mPos - start);
    }
    bool String(std::string* out) {
        if (!Take('"')) {
            return false;
        }
        size_t end = mText.find('"', mPos);
        if (end == std::string::npos) {
            return false;
        }
        *out = mText.substr(mPos, end - mPos);
        mPos = end + 1;
        return true;
    }
    // The map body after '{'; `key` names the property that holds it ("" for the module).
    bool Map(Module* m, const std::string& key) {
        while (!Take('}')) {
            Skip();
            std::string name = Word();
            if (name.empty() || !Take(':') || !Value(m, name, key.empty())) {
                return false;
            }
            if (!Take(',')) {
                return Take('}');
            }
        }
        return true;
    }
    bool Value(Module* m, const std::string& key, bool topLevel) {
        Skip();
        if (Take('{')) {
            return Map(m, key);
        }
        if (Take('[')) {
            while (!Take(']')) {
                if (!Value(m, key, false)) {
                    return false;
                }
                if (!Take(',')) {
                    return Take(']');
                }
            }
            return true;
        }
        if (mPos < mText.size() && mText[mPos] == '"') {
            std::string s;
            if (!String(&s)) {
                return false;
            }
            Record(m, key, topLevel, s);
            return true;
        }
        return !Word().empty();  // true, false, a number
    }
    static void Record(Module* m, const std::string& key, bool topLevel, const std::string& s) {
        const std::string dirs = "include_dirs";
        if (key == "name" && topLevel) {
            m->name = s;
        } else if (key == "srcs") {
            m->sources.push_back(s);
        } else if (key == "version_script") {
            m->files.push_back(s);
        } else if (key.size() >= dirs.size() &&
                   key.compare(key.size() - dirs.size(), dirs.size(), dirs) == 0) {
            m->includeDirs.push_back(s);
        }
    }

    std::string mText;
    size_t mPos = 0;
};

bool HostOnly(const std::string& path) {
    for (const char* prefix : kHostOnly) {
        const std::string dir(prefix, strlen(prefix) - 1);
        if (path.rfind(prefix, 0) == 0 || path == dir) {
            return true;
        }
    }
    return false;
}

// What is wrong with `blueprint` against the sources the library must have, one line each.
std::vector<std::string> Problems(const std::string& blueprint,
                                  const std::set<std::string>& librarySources,
                                  const fs::path& sourceDir) {
    std::string error;
    std::vector<Module> modules = Blueprint(blueprint).Modules(&error);
    if (!error.empty()) {
        return {error};
    }
    std::vector<std::string> problems;
    const Module* library = nullptr;
    for (const Module& m : modules) {
        library = m.name == kLibraryModule ? &m : library;
        std::vector<std::string> listed = m.sources;
        listed.insert(listed.end(), m.files.begin(), m.files.end());
        for (const std::string& f : listed) {
            if (HostOnly(f)) {
                problems.push_back(m.name + " lists a host-only file: " + f);
            } else if (!fs::is_regular_file(sourceDir / f)) {
                problems.push_back(m.name + " lists a missing file: " + f);
            }
        }
        for (const std::string& d : m.includeDirs) {
            if (HostOnly(d + "/")) {
                problems.push_back(m.name + " includes a host-only folder: " + d);
            }
        }
    }
    if (library == nullptr) {
        return {std::string("no module named ") + kLibraryModule};
    }
    const std::set<std::string> listed(library->sources.begin(), library->sources.end());
    for (const std::string& s : librarySources) {
        if (listed.count(s) == 0) {
            problems.push_back(std::string(kLibraryModule) + " misses " + s);
        }
    }
    for (const std::string& s : listed) {
        if (librarySources.count(s) == 0 && !HostOnly(s)) {
            problems.push_back(std::string(kLibraryModule) + " lists a non-product file: " + s);
        }
    }
    return problems;
}

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The product sources of this build (one per line, relative to the source folder), plus the
// device implementations of the platform seam, which only the device build compiles.
std::set<std::string> LibrarySources() {
    std::set<std::string> sources;
    std::istringstream lines(ReadFile(ORLUNE_PRODUCT_SOURCES));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) {
            sources.insert(line);
        }
    }
    for (const char* dir : {"platform/device", "platform/common"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(ORLUNE_SOURCE_DIR) / dir)) {
            if (entry.path().extension() == ".cpp") {
                sources.insert(std::string(dir) + "/" + entry.path().filename().string());
            }
        }
    }
    return sources;
}

TEST(AndroidBp, MatchesTheProductSourcesOfThisBuild) {
    const std::set<std::string> sources = LibrarySources();
    ASSERT_GT(sources.size(), 30u);  // the list was generated
    ASSERT_EQ(sources.count("effect/Exports.cpp"), 1u);
    ASSERT_EQ(sources.count("platform/device/device_fs.cpp"), 1u);
    const std::string bp = ReadFile(fs::path(ORLUNE_SOURCE_DIR) / "Android.bp");
    ASSERT_FALSE(bp.empty());
    EXPECT_EQ(Problems(bp, sources, ORLUNE_SOURCE_DIR), std::vector<std::string>{});
}

// The check itself, on small blueprints: each drift is reported, comments and nesting are read.
TEST(AndroidBp, ReportsEachKindOfDrift) {
    const std::set<std::string> sources = {"effect/Orlune.cpp", "effect/SwapFade.cpp"};
    const std::string lib = "cc_library_shared { name: \"liborlunemutilmobile7_1\", ";
    const struct {
        std::string blueprint;
        std::vector<std::string> problems;
    } cases[] = {
            {lib + "srcs: [\"effect/Orlune.cpp\", \"effect/SwapFade.cpp\"], }", {}},
            {"// srcs: [\"tools/x.cpp\"]\n/* { */" + lib +
                     "srcs: [\"effect/SwapFade.cpp\", /* \"a\" */ \"effect/Orlune.cpp\"] }",
             {}},
            {lib + "srcs: [\"effect/Orlune.cpp\"] }",
             {"liborlunemutilmobile7_1 misses effect/SwapFade.cpp"}},
            {lib + "srcs: [\"effect/Orlune.cpp\", \"effect/SwapFade.cpp\", \"effect/Gone.cpp\"] }",
             {"liborlunemutilmobile7_1 lists a missing file: effect/Gone.cpp",
              "liborlunemutilmobile7_1 lists a non-product file: effect/Gone.cpp"}},
            {lib + "srcs: [\"effect/Orlune.cpp\", \"effect/SwapFade.cpp\"], " +
                     "target: { android: { srcs: [\"platform/src/clock.cpp\"] } }, " +
                     "local_include_dirs: [\"platform/src/include\"], " +
                     "version_script: \"effect/none.map\" }",
             {"liborlunemutilmobile7_1 lists a host-only file: platform/src/clock.cpp",
              "liborlunemutilmobile7_1 lists a missing file: effect/none.map",
              "liborlunemutilmobile7_1 includes a host-only folder: platform/src/include"}},
            {lib + "srcs: [\"effect/Orlune.cpp\", \"effect/SwapFade.cpp\"] }\n" +
                     "cc_test { name: \"t\", srcs: [\"standin/algorithm/StandinAlgo.cpp\"] }",
             {"t lists a host-only file: standin/algorithm/StandinAlgo.cpp"}},
            {"cc_test { name: \"t\", srcs: [] }", {"no module named liborlunemutilmobile7_1"}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Problems(c.blueprint, sources, ORLUNE_SOURCE_DIR), c.problems) << c.blueprint;
    }
    const auto cut = Problems(lib + "srcs: [\"effect/Orlune.cpp\"", sources, ORLUNE_SOURCE_DIR);
    ASSERT_EQ(cut.size(), 1u);
    EXPECT_EQ(cut[0].rfind("does not parse at offset", 0), 0u) << cut[0];
}

}  // namespace
