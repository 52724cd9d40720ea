// Android.bp, which nothing here can build, kept in step with this build: the library module
// lists every product source that CMake compiles into the shipped library and every device
// implementation of the platform seam, and nothing else; every file any module lists exists;
// and no module lists a host-only file (the host layer, the stand-ins, the host tools).
#include <gtest/gtest.h>

#include <string.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const char* const kLibraryModule = "liborlunemutilmobile7_1";
const char* const kHostOnly[] = {"platform/src/", "standin/", "tools/"};

// One module of a blueprint file: its name and the file names it lists.
struct Module {
    std::string name;
    std::vector<std::string> sources;      // every "srcs" list, nested ones too
    std::vector<std::string> files;        // single files: version_script
    std::vector<std::string> includeDirs;  // every "*include_dirs" list
};

// The quoted strings of `text`.
std::vector<std::string> Strings(const std::string& text) {
    std::vector<std::string> out;
    for (size_t open = text.find('"'); open != std::string::npos; open = text.find('"', open)) {
        const size_t close = text.find('"', open + 1);
        if (close == std::string::npos) {
            break;
        }
        out.push_back(text.substr(open + 1, close - open - 1));
        open = close + 1;
    }
    return out;
}

std::string WithoutComments(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size();) {
        if (text.compare(i, 2, "//") == 0) {
            i = std::min(text.find('\n', i), text.size());
        } else if (text.compare(i, 2, "/*") == 0) {
            i = std::min(text.find("*/", i), text.size() - 2) + 2;
        } else {
            out += text[i++];
        }
    }
    return out;
}

// The modules of a blueprint file in the layout bpfmt gives it: each module opens with a line
// `type {` and closes with a line `}`; its name is its first property.
std::vector<Module> ReadBlueprint(const std::string& text) {
    std::vector<Module> modules;
    std::istringstream lines(WithoutComments(text));
    std::string body;
    bool inModule = false;
    for (std::string line; std::getline(lines, line);) {
        if (!inModule) {
            inModule = !line.empty() && line[0] != ' ' && line.back() == '{';
            body.clear();
            continue;
        }
        if (line != "}") {
            body += line + "\n";
            continue;
        }
        inModule = false;
        Module m;
        const std::vector<std::string> first = Strings(body.substr(0, body.find('\n')));
        const size_t lead = body.find_first_not_of(' ');
        if (lead != std::string::npos && body.compare(lead, 5, "name:") == 0 && !first.empty()) {
            m.name = first[0];
        }
        // Every `key: [ ... ]` list, nested ones too.
        for (size_t at = body.find(": ["); at != std::string::npos; at = body.find(": [", at + 1)) {
            const size_t keyStart = body.find_last_of(" \n{", at) + 1;
            const std::string key = body.substr(keyStart, at - keyStart);
            const std::vector<std::string> values =
                    Strings(body.substr(at, body.find(']', at) - at));
            if (key == "srcs") {
                m.sources.insert(m.sources.end(), values.begin(), values.end());
            } else if (key.find("include_dirs") != std::string::npos) {
                m.includeDirs.insert(m.includeDirs.end(), values.begin(), values.end());
            }
        }
        const size_t script = body.find("version_script: ");
        if (script != std::string::npos) {
            m.files.push_back(Strings(body.substr(script, body.find('\n', script) - script))[0]);
        }
        modules.push_back(m);
    }
    return modules;
}

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
    const std::vector<Module> modules = ReadBlueprint(blueprint);
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
    const std::string lib = "cc_library_shared {\n    name: \"liborlunemutilmobile7_1\",\n";
    const std::string both = "    srcs: [\"effect/Orlune.cpp\", \"effect/SwapFade.cpp\"],\n";
    const struct {
        std::string blueprint;
        std::vector<std::string> problems;
    } cases[] = {
            {lib + both + "}\n", {}},
            {lib + "    srcs: [\"effect/Orlune.cpp\"],\n}\n",
             {"liborlunemutilmobile7_1 misses effect/SwapFade.cpp"}},
            {lib + both + "    target: { android: { srcs: [\"platform/src/clock.cpp\"] } },\n" +
                     "    local_include_dirs: [\"platform/src/include\"],\n" +
                     "    version_script: \"effect/none.map\",\n}\n",
             {"liborlunemutilmobile7_1 lists a host-only file: platform/src/clock.cpp",
              "liborlunemutilmobile7_1 lists a missing file: effect/none.map",
              "liborlunemutilmobile7_1 includes a host-only folder: platform/src/include"}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Problems(c.blueprint, sources, ORLUNE_SOURCE_DIR), c.problems) << c.blueprint;
    }
}

}  // namespace
